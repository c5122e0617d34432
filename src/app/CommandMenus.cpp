// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/CommandMenus.h"

#include "app/TableText.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A recent file's caption as a menu shows it: the access key in front is meant, an "&" in the name is not.
QString shownCaption(const QString &caption)
{
    constexpr qsizetype prefix = 3;
    QString name = caption.mid(prefix);
    name.replace(u'&', u"&&"_s);
    for (QChar &character : name) {
        if (character.category() == QChar::Other_Control)
            character = u' ';
    }
    return caption.left(prefix) + name;
}

} // namespace

CommandMenus::CommandMenus(QMenuBar &bar, BoundRoutines routines)
    : QObject(&bar)
    , m_routines(std::move(routines))
{
    for (std::size_t row = 0; row < commandTable.size(); ++row)
        m_actions[row] = makeItem(commandTable[row], bar);
    for (const CheckRule &rule : checkRules())
        m_actions[commandRow(rule.item)]->setCheckable(true);
    m_actions[commandRow("mnuFileMRU")]->setVisible(false);
    setSeparatorVisible(false);
}

QAction *CommandMenus::makeItem(const CommandRow &row, QMenuBar &bar)
{
    QAction *action = nullptr;
    if (row.kind == RowKind::Menu) {
        action = makeMenu(row, bar);
    } else {
        QMenu *parent = m_actions[commandRow(row.parent)]->menu();
        action = row.kind == RowKind::Separator ? parent->addSeparator() : parent->addAction(toText(row.caption));
        if (row.kind == RowKind::Command)
            bind(action, row.routine, row.argument);
        action->setEnabled(isBound(row));
    }
    action->setObjectName(toText(row.name));
    return action;
}

QAction *CommandMenus::makeMenu(const CommandRow &row, QMenuBar &bar)
{
    const QString caption = toText(row.caption);
    QMenu *menu =
        row.parent.empty() ? bar.addMenu(caption) : m_actions[commandRow(row.parent)]->menu()->addMenu(caption);
    menu->setObjectName(toText(row.name));
    // The bar's item has the caption as its name; a context menu stands alone.
    menu->setAccessibleName(QString(caption).remove(u'&'));
    return menu->menuAction();
}

void CommandMenus::bind(QAction *action, Routine routine, int argument)
{
    const auto bound = m_routines.find(routine);
    if (bound != m_routines.end())
        connect(action, &QAction::triggered, this, [run = bound->second, argument] { run(argument); });
}

bool CommandMenus::isBound(const CommandRow &row) const
{
    return row.kind == RowKind::Menu || row.kind == RowKind::Separator || m_routines.contains(row.routine);
}

void CommandMenus::applyRules(std::span<const EnableRule> rules, const CommandState &state)
{
    for (const EnableRule &rule : rules) {
        const std::size_t row = commandRow(rule.item);
        m_actions[row]->setEnabled(rule.enabled(state) && isBound(commandTable[row]));
    }
}

void CommandMenus::applyCheckMarks(const Options &options)
{
    for (const CheckRule &rule : checkRules())
        m_actions[commandRow(rule.item)]->setChecked(options.*rule.option);
}

void CommandMenus::setCaption(std::string_view item, const QString &caption)
{
    m_actions[commandRow(item)]->setText(caption);
}

void CommandMenus::popUp(std::string_view item, const QPoint &place)
{
    const std::size_t row = commandRow(item);
    QMenu *menu = row == noRow ? nullptr : m_actions[row]->menu();
    if (menu && isEnabled(item))
        menu->exec(place);
}

bool CommandMenus::isEnabled(std::string_view item) const
{
    for (std::size_t row = commandRow(item); row != noRow; row = commandRow(commandTable[row].parent)) {
        if (!m_actions[row]->isEnabled())
            return false;
    }
    return commandRow(item) != noRow;
}

void CommandMenus::hideAll()
{
    for (QAction *action : m_recentFiles) {
        action->setEnabled(false);
        action->setVisible(false);
    }
}

void CommandMenus::showItem(int iItem, const QString &caption)
{
    while (static_cast<int>(m_recentFiles.size()) < iItem)
        m_recentFiles.push_back(makeRecentFileItem(static_cast<int>(m_recentFiles.size()) + 1));
    QAction *action = m_recentFiles[static_cast<std::size_t>(iItem) - 1];
    action->setText(shownCaption(caption));
    action->setEnabled(m_routines.contains(Routine::FileMRU));
    action->setVisible(true);
}

QAction *CommandMenus::makeRecentFileItem(int iItem)
{
    QMenu *menu = m_actions[commandRow("mnuFile")]->menu();
    auto *action = new QAction(menu);
    action->setObjectName(u"mnuFileMRU%1"_s.arg(iItem));
    bind(action, Routine::FileMRU, iItem);
    menu->insertAction(m_actions[commandRow("mnuFileBar4")], action);
    return action;
}

void CommandMenus::setSeparatorVisible(bool visible)
{
    m_actions[commandRow("mnuFileBarMRU")]->setVisible(visible);
}
