// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandRow.h"

#include <QObject>

#include <map>
#include <string_view>

class Dispatcher;
class QAction;
class QKeyEvent;
class QWidget;
struct KeyBinding;

// The keys that work anywhere in the main window: those that every program of the desktop has, which stand in the
// menus' key column, and the window's own, each of which gets an action of its own. Beside the actions' shortcuts,
// which it gives them, it takes the keys of keyboards with another script's letters, and those whose command cannot be
// run: these do nothing, whatever the pane with the keyboard makes of them otherwise.
class DesktopKeyFilter final : public QObject
{
    Q_OBJECT

public:
    // The menus' items are found below the window by their names.
    DesktopKeyFilter(QWidget &mainWindow, Dispatcher &dispatcher);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void giveShortcuts(CommandKey::Road road);
    bool runByPlace(const KeyBinding &binding, QKeyEvent &press);

    QWidget &m_mainWindow;
    Dispatcher &m_dispatcher;
    // By the command of a desktop key.
    std::map<std::string_view, QAction *> m_actions;
};
