// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AppPorts.h"
#include "app/CommandState.h"
#include "app/CommandTable.h"

#include <QObject>

#include <array>
#include <functional>
#include <map>

class QAction;
class QMenu;
class QMenuBar;
class QPoint;

// What routines do; the argument is that of the item's row, or the number of an indexed item.
using BoundRoutines = std::map<Routine, std::function<void(int)>>;

// The menu bar made from the command table. Every item exists from the start; an item whose routine is not bound stays
// disabled, whatever the rules say. Items are found by their names, which are also their objects' names.
class CommandMenus final : public QObject, public RecentFileItems
{
    Q_OBJECT

public:
    CommandMenus(QMenuBar &bar, BoundRoutines routines);

    void applyRules(std::span<const EnableRule> rules, const CommandState &state);
    void applyCheckMarks(const Options &options);
    void setCaption(std::string_view item, const QString &caption);

    // Whether an item can be chosen: it and every menu that it is in are enabled.
    bool isEnabled(std::string_view item) const;
    // Shows a submenu or top-level menu as a context menu, unless it is disabled, and returns when it has closed.
    void popUp(std::string_view item, const QPoint &place);

    void hideAll() override;
    void showItem(int iItem, const QString &caption) override;
    void setSeparatorVisible(bool visible) override;

private:
    QAction *makeItem(const CommandRow &row, QMenuBar &bar);
    QAction *makeMenu(const CommandRow &row, QMenuBar &bar);
    void bind(QAction *action, Routine routine, int argument);
    bool isBound(const CommandRow &row) const;
    QAction *makeRecentFileItem(int iItem);

    BoundRoutines m_routines;
    // By row of the table.
    std::array<QAction *, commandTable.size()> m_actions{};
    std::vector<QAction *> m_recentFiles;
};
