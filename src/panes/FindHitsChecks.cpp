// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Which hits are checked to be replaced.

#include "panes/FindHitsModel.h"

#include "document/Document.h"
#include "find/FindRun.h"

#include <algorithm>

void FindHitsModel::setCheckable(bool checkable)
{
    if (std::exchange(m_isCheckable, checkable) != checkable)
        noteChecks();
}

void FindHitsModel::noteChecks()
{
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    Q_EMIT checksChanged();
}

Qt::CheckState FindHitsModel::checkedOf(const Group &group)
{
    const auto left = static_cast<int>(std::ranges::count(group.unchecked, true));
    return left == 0 ? Qt::Checked : left >= group.found.count ? Qt::Unchecked : Qt::PartiallyChecked;
}

Qt::CheckState FindHitsModel::checkedOf(const Section &section)
{
    bool isAny = false;
    bool isAll = true;
    for (const Group &group : section.groups) {
        const Qt::CheckState state = checkedOf(group);
        isAny = isAny || state != Qt::Unchecked;
        isAll = isAll && state == Qt::Checked;
    }
    return isAll ? Qt::Checked : isAny ? Qt::PartiallyChecked : Qt::Unchecked;
}

Qt::CheckState FindHitsModel::checkedOfAll() const
{
    bool isAny = false;
    bool isAll = true;
    for (const auto &section : m_sections) {
        if (section->groups.empty())
            continue;
        const Qt::CheckState state = checkedOf(*section);
        isAny = isAny || state != Qt::Unchecked;
        isAll = isAll && state == Qt::Checked;
    }
    return isAll ? Qt::Checked : isAny ? Qt::PartiallyChecked : Qt::Unchecked;
}

Qt::CheckState FindHitsModel::checkedAt(int row) const
{
    const auto [section, group] = find(row);
    if (!section)
        return Qt::Unchecked;
    if (!group)
        return checkedOf(*section);
    if (row == group->firstRow || group->unchecked.empty())
        return checkedOf(*group);
    const auto number = static_cast<std::size_t>(row - group->firstRow - 1);
    return group->unchecked[number] ? Qt::Unchecked : Qt::Checked;
}

void FindHitsModel::check(Group &group, bool checked)
{
    group.unchecked.clear();
    if (!checked)
        group.unchecked.assign(static_cast<std::size_t>(group.found.count), true);
}

bool FindHitsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !m_isCheckable || !index.isValid())
        return false;
    const bool isChecked = value.toInt() != Qt::Unchecked;
    const auto [foundSection, foundGroup] = find(index.row());
    for (const auto &section : m_sections) {
        if (section.get() != foundSection)
            continue;
        for (Group &group : section->groups) {
            if (!foundGroup || (&group == foundGroup && index.row() == group.firstRow))
                check(group, isChecked);
            else if (&group == foundGroup)
                checkHit(group, index.row() - group.firstRow - 1, isChecked);
        }
    }
    noteChecks();
    return true;
}

void FindHitsModel::checkHit(Group &group, int number, bool checked)
{
    if (number >= static_cast<int>(group.found.hits.size()))
        return;
    // Those that are not listed are left with it: who chooses among hits means those that he sees.
    if (group.unchecked.empty()) {
        group.unchecked.assign(static_cast<std::size_t>(group.found.count), true);
        std::fill_n(group.unchecked.begin(), group.found.hits.size(), false);
    }
    group.unchecked[static_cast<std::size_t>(number)] = !checked;
    if (checkedOf(group) == Qt::Checked)
        group.unchecked.clear();
}

void FindHitsModel::setAllChecked(bool checked)
{
    for (const auto &section : m_sections) {
        for (Group &group : section->groups)
            check(group, checked);
    }
    noteChecks();
}

Qt::ItemFlags FindHitsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (m_isCheckable && row(index.row()).kind != RowKind::More)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

FindReplace::Choice FindHitsModel::choiceOf(const Group &group)
{
    FindReplace::Choice choice = FindReplace::wholeOf(group.found);
    if (group.unchecked.empty())
        return choice;
    choice.isWhole = false;
    choice.hits.clear();
    for (std::size_t number = 0; number < group.found.hits.size(); ++number) {
        if (!group.unchecked[number])
            choice.hits.push_back(group.found.hits[number]);
    }
    choice.count = static_cast<int>(choice.hits.size());
    return choice;
}

std::vector<FindReplace::Choice> FindHitsModel::choicesOf(const Document &document) const
{
    std::vector<FindReplace::Choice> choices;
    for (const auto &section : m_sections) {
        if (section->document != &document)
            continue;
        for (const Group &group : section->groups) {
            if (checkedOf(group) != Qt::Unchecked)
                choices.push_back(choiceOf(group));
        }
    }
    return choices;
}

qint64 FindHitsModel::checkedCount() const
{
    qint64 count = 0;
    for (const auto &section : m_sections) {
        for (const Group &group : section->groups)
            count += group.found.count - std::ranges::count(group.unchecked, true);
    }
    return count;
}
