// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CommandTable.h"

#include <QObject>
#include <QString>

#include <array>

class QAction;
class QKeyEvent;
class QWidget;

// The keys that every program of the desktop has for its commands, as a table: they stand in the menus' key column, in
// the tool tips of the toolbar and in the manual. They work anywhere in the main window, while their item is enabled.
// A key of the document window's own map is not among them.

struct DesktopKey {
    std::string_view item;
    QKeyCombination key;
};

inline constexpr std::array desktopKeys{
    DesktopKey{"mnuFileNew", Qt::CTRL | Qt::Key_N},
    DesktopKey{"mnuFileOpen", Qt::CTRL | Qt::Key_O},
    DesktopKey{"mnuFileClose", Qt::CTRL | Qt::Key_W},
    DesktopKey{"mnuFileSave", Qt::CTRL | Qt::Key_S},
    DesktopKey{"mnuFileSaveAs", Qt::CTRL | Qt::SHIFT | Qt::Key_S},
    DesktopKey{"mnuFilePrint", Qt::CTRL | Qt::Key_P},
    DesktopKey{"mnuFileExit", Qt::CTRL | Qt::Key_Q},
    DesktopKey{"mnuEditFormatBold", Qt::CTRL | Qt::Key_B},
    DesktopKey{"mnuEditFormatItalic", Qt::CTRL | Qt::Key_I},
    DesktopKey{"mnuEditFormatUnderline", Qt::CTRL | Qt::Key_U},
    DesktopKey{"mnuSearchFind", Qt::CTRL | Qt::Key_F},
    DesktopKey{"mnuSearchReplace", Qt::CTRL | Qt::Key_H},
    DesktopKey{"mnuSearchRepeat", QKeyCombination(Qt::Key_F3)},
};

constexpr bool desktopKeysAreSound()
{
    for (const DesktopKey &each : desktopKeys) {
        if (commandRow(each.item) == noRow || commandTable[commandRow(each.item)].kind != RowKind::Command)
            return false;
        int same = 0;
        for (const DesktopKey &other : desktopKeys)
            same += other.key == each.key || other.item == each.item ? 1 : 0;
        if (same != 1)
            return false;
    }
    return true;
}

static_assert(desktopKeysAreSound(), "each key has one item and each item one key");

// The key of a menu item, "Ctrl+N"; that of the table above, else the one that its caption shows. Empty without one.
QString keyTextOf(const CommandRow &row);

// Beside the actions' own shortcuts, which it gives them, it takes the keys of keyboards with another script's letters,
// and those whose item is disabled: these do nothing, whatever the pane with the keyboard makes of them otherwise.
class DesktopKeyFilter final : public QObject
{
    Q_OBJECT

public:
    // The items are found below the window by their names.
    explicit DesktopKeyFilter(QWidget &mainWindow);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget &m_mainWindow;
    // By place in the table.
    std::array<QAction *, desktopKeys.size()> m_actions{};
};
