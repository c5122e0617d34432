// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/BranchMoves.h"

#include "outline/SelectedEntries.h"

#include "document/Document.h"
#include "document/modNodes.h"
#include "model/OutlineOrder.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// Behind the entry itself, or behind the last of those that were put there before.
BranchMoves::Planned putBehind(std::unordered_map<const Entry *, Entry *> &moved, Entry *entry, Entry *relative)
{
    const auto [last, isFirst] = moved.try_emplace(relative, entry);
    return {entry, Relationship::tvwNext, isFirst ? relative : std::exchange(last->second, entry)};
}

} // namespace

BranchMoves::BranchMoves(const std::vector<Entry *> &branches)
    : m_branches(branches)
{
    m_previous.reserve(branches.size());
    m_next.reserve(branches.size());
    for (const Entry *branch : branches) {
        m_previous[branch] = nullptr;
        m_next[branch] = nullptr;
    }
    for (const Entry *branch : branches)
        m_previous[branch] = previousThatStays(branch);
    for (auto branch = branches.rbegin(); branch != branches.rend(); ++branch)
        m_next[*branch] = nextThatStays(*branch);
}

Entry *BranchMoves::previousThatStays(const Entry *entry) const
{
    Entry *previous = entry->previous();
    const auto moving = m_previous.find(previous);
    return moving == m_previous.end() ? previous : moving->second;
}

Entry *BranchMoves::nextThatStays(const Entry *entry) const
{
    Entry *next = entry->next();
    const auto moving = m_next.find(next);
    return moving == m_next.end() ? next : moving->second;
}

bool BranchMoves::hasPlace(BranchMove move, const Entry *entry) const
{
    const Entry *parent = entry->parent();
    if (!parent)
        return false;
    switch (move) {
    case BranchMove::Indent:
        return m_previous.at(entry) != nullptr;
    case BranchMove::Unindent:
        return !parent->isRoot();
    case BranchMove::Up:
        return m_previous.at(entry) || previousThatStays(parent);
    case BranchMove::Down:
        return m_next.at(entry) || nextThatStays(parent);
    case BranchMove::First:
        return entry->row() > 0;
    case BranchMove::Last:
        return entry->row() + 1 < parent->childCount();
    }
    return false;
}

bool BranchMoves::arePossible(BranchMove move) const
{
    return !m_branches.empty() &&
           std::ranges::all_of(m_branches, [&](const Entry *branch) { return hasPlace(move, branch); });
}

// Without a relative the entry has nowhere to go.
BranchMoves::Planned BranchMoves::placed(BranchMove move, Entry *entry, Moved &behind, Moved &into) const
{
    const Planned nowhere = {entry, Relationship::tvwNext, nullptr};
    Entry *parent = entry->parent();
    if (!parent)
        return nowhere;
    Entry *previous = m_previous.at(entry);
    Entry *next = m_next.at(entry);
    switch (move) {
    case BranchMove::Indent:
        return {entry, Relationship::tvwChild, previous};
    case BranchMove::Unindent:
        return parent->isRoot() ? nowhere : putBehind(behind, entry, parent);
    case BranchMove::Up:
        if (previous)
            return {entry, Relationship::tvwPrevious, previous};
        return {entry, Relationship::tvwChild, previousThatStays(parent)};
    case BranchMove::Down: {
        if (next)
            return putBehind(behind, entry, next);
        Entry *beyond = nextThatStays(parent);
        if (!beyond)
            return nowhere;
        const auto last = into.find(beyond);
        if (last != into.end())
            return {entry, Relationship::tvwNext, std::exchange(last->second, entry)};
        into[beyond] = entry;
        if (Entry *first = beyond->firstChild())
            return {entry, Relationship::tvwPrevious, first};
        return {entry, Relationship::tvwChild, beyond};
    }
    case BranchMove::First: {
        Entry *first = entry->firstSibling();
        return {entry, Relationship::tvwPrevious, first != entry ? first : nullptr};
    }
    case BranchMove::Last: {
        Entry *last = entry->lastSibling();
        return last != entry ? putBehind(behind, entry, last) : nowhere;
    }
    }
    return nowhere;
}

std::vector<BranchMoves::Planned> BranchMoves::plan(BranchMove move) const
{
    std::vector<Planned> planned;
    planned.reserve(m_branches.size());
    Moved behind;
    Moved into;
    for (Entry *branch : m_branches) {
        planned.push_back(placed(move, branch, behind, into));
        if (!planned.back().relative)
            return {};
    }
    return planned;
}

std::vector<Entry *> BranchMoves::enteredFromAbove() const
{
    std::vector<Entry *> entered;
    for (const Entry *branch : m_branches) {
        Entry *beyond = m_next.at(branch) || !branch->parent() ? nullptr : nextThatStays(branch->parent());
        if (beyond && (entered.empty() || entered.back() != beyond))
            entered.push_back(beyond);
    }
    return entered;
}

void moveSelectedBranches(Document &document, BranchMove move)
{
    const std::vector<Entry *> entries = document.tree.selectedEntries();
    const std::vector<Entry *> branches = branchesOf(entries);
    const BranchMoves moves(branches);
    const std::vector<BranchMoves::Planned> planned = moves.plan(move);
    if (planned.empty())
        return;
    // As for one that moves there: these make room and come back behind what was moved.
    std::vector<Entry *> pushedDown;
    if (move == BranchMove::Down) {
        for (const Entry *entered : moves.enteredFromAbove()) {
            for (Entry *child = entered->firstChild(); child; child = child->next())
                pushedDown.push_back(child);
        }
    }
    const modNodes::ActionScope action;
    const History::Step step(document.history, stepName("move of"_L1, branches));
    {
        const QuietChange quiet(document, branches.size());
        for (const BranchMoves::Planned &each : planned)
            document.history.move(each.entry, each.relationship, each.relative);
        for (Entry *child : pushedDown)
            document.history.renewInsertion(child);
    }
    selectEntries(document, document.tree.selected(), entries);
}
