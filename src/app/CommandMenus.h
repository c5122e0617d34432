// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AppPorts.h"
#include "commands/CommandTable.h"

#include <QObject>

#include <array>

class Dispatcher;
class QAction;
class QMenu;
class QMenuBar;
class QPoint;

// The menu bar made from the command table. Every item exists from the start; one that runs nothing stays disabled,
// whatever its rule says. Items are found by their names, which are also their objects' names.
class CommandMenus final : public QObject, public RecentFileItems
{
    Q_OBJECT

public:
    CommandMenus(QMenuBar &bar, Dispatcher &dispatcher);

    // Enables what the rules allow, and shows the captions and the options' check marks.
    void apply(const CommandState &state, const Options &options);

    // Shows a submenu or top-level menu as a context menu, unless it is disabled, and returns when it has closed.
    void popUp(std::string_view item, const QPoint &place);

Q_SIGNALS:
    // A menu of the bar, or one of theirs, is about to be shown.
    void aboutToShow();

public:
    void hideAll() override;
    void showItem(int iItem, const QString &caption) override;
    void setSeparatorVisible(bool visible) override;

private:
    QAction *makeItem(const CommandRow &row, QMenuBar &bar);
    QAction *makeMenu(const CommandRow &row, QMenuBar &bar);
    QAction *makeRecentFileItem(int iItem);

    Dispatcher &m_dispatcher;
    // By row of the table; null for a command without an item.
    std::array<QAction *, commandTable.size()> m_actions{};
    std::vector<QAction *> m_recentFiles;
};
