// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/CommandMenus.h"

#include "commands/Dispatcher.h"

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

CommandMenus::CommandMenus(QMenuBar &bar, Dispatcher &dispatcher)
    : QObject(&bar)
    , m_dispatcher(dispatcher)
{
    for (std::size_t row = 0; row < commandTable.size(); ++row) {
        if (isMenuItem(commandTable[row]))
            m_actions[row] = makeItem(commandTable[row], bar);
    }
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
            connect(action, &QAction::triggered, this, [this, name = row.name] { m_dispatcher.run(name); });
        action->setCheckable(row.option || row.marked);
        action->setEnabled(row.kind == RowKind::Separator || m_dispatcher.isBound(row.name));
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
    connect(menu, &QMenu::aboutToShow, this, &CommandMenus::aboutToShow);
    // The bar's item has the caption as its name; a context menu stands alone.
    menu->setAccessibleName(QString(caption).remove(u'&'));
    return menu->menuAction();
}

void CommandMenus::apply(const CommandState &state, const Options &options)
{
    for (std::size_t row = 0; row < commandTable.size(); ++row) {
        const CommandRow &item = commandTable[row];
        if (item.kind != RowKind::Menu && item.kind != RowKind::Command)
            continue;
        const bool runsSomething = item.kind == RowKind::Menu || m_dispatcher.isBound(item.name);
        m_actions[row]->setEnabled(runsSomething && item.rule(state));
        if (item.option)
            m_actions[row]->setChecked(options.*item.option);
        if (item.captionNow)
            m_actions[row]->setText(item.captionNow(state));
    }
}

void CommandMenus::popUp(std::string_view item, const QPoint &place)
{
    const std::size_t row = commandRow(item);
    QMenu *menu = row == noRow ? nullptr : m_actions[row]->menu();
    if (menu && m_dispatcher.isEnabled(item))
        menu->exec(place);
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
    action->setEnabled(m_dispatcher.isBound("mnuFileMRU"));
    action->setVisible(true);
}

QAction *CommandMenus::makeRecentFileItem(int iItem)
{
    QMenu *menu = m_actions[commandRow("mnuFile")]->menu();
    auto *action = new QAction(menu);
    action->setObjectName(u"mnuFileMRU%1"_s.arg(iItem));
    connect(action, &QAction::triggered, this, [this, iItem] { m_dispatcher.run("mnuFileMRU", iItem); });
    menu->insertAction(m_actions[commandRow("mnuFileBar4")], action);
    return action;
}

void CommandMenus::setSeparatorVisible(bool visible)
{
    m_actions[commandRow("mnuFileBarMRU")]->setVisible(visible);
}
