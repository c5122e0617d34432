// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/SelectedEntries.h"

#include "outline/BranchMoves.h"

#include "document/Document.h"
#include "document/modNodes.h"
#include "model/OutlineOrder.h"

#include <algorithm>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace
{

// Where more entries than this change, one reset is quicker than an announcement of each.
constexpr size_t mostToldOf = 16;

} // namespace

bool areNeighbours(const std::vector<Entry *> &branches)
{
    for (size_t i = 1; i < branches.size(); ++i) {
        if (branches[i - 1]->next() != branches[i])
            return false;
    }
    return branches.size() > 1;
}

SeveralSelected severalSelected(const Document &document)
{
    SeveralSelected several;
    if (!document.tree.areSeveralSelected())
        return several;
    const std::vector<Entry *> entries = document.tree.selectedEntries();
    const std::vector<Entry *> branches = branchesOf(entries);
    const BranchMoves moves(branches);
    several.count = static_cast<int>(entries.size());
    several.withRoot = document.tree.isSelected(document.tree.root());
    several.tagged = std::ranges::all_of(entries, &Entry::tagged);
    several.indentable = moves.arePossible(BranchMove::Indent);
    several.unindentable = moves.arePossible(BranchMove::Unindent);
    several.movableUp = moves.arePossible(BranchMove::Up);
    several.movableDown = moves.arePossible(BranchMove::Down);
    several.movableFirst = moves.arePossible(BranchMove::First);
    several.movableLast = moves.arePossible(BranchMove::Last);
    several.joinable = areNeighbours(branches);
    return several;
}

QString stepName(QLatin1StringView what, const std::vector<Entry *> &entries)
{
    return entries.size() == 1 ? stepName(what, *entries.front()) : u"%1 %2 entries"_s.arg(what).arg(entries.size());
}

void selectEntries(Document &document, Entry *current, const std::vector<Entry *> &entries)
{
    modNodes::NodeSelect(document, current);
    std::unordered_set<const Entry *> opened;
    for (Entry *entry : entries) {
        if (opened.insert(entry->parent()).second)
            document.history.expandAncestors(entry);
    }
    document.history.select(current, entries);
}

void selectCurrentAlone(Document &document)
{
    document.history.select(document.tree.selected(), {});
}

std::vector<Entry *> insertCopies(Document &document, const EntryTree &tree, const std::vector<Entry *> &branches,
                                  Relationship relationship, Entry *relative)
{
    int count = 0;
    for (const Entry *branch : branches)
        count += subtreeSize(branch);
    std::vector<Entry *> copies;
    modNodes::withRoom(document, [&] {
        document.tree.requireRoomFor(count);
        return relative;
    });
    const QuietChange quiet(document, branches.size());
    for (const Entry *branch : branches) {
        copies.push_back(document.history.insertCopy(tree, branch, relationship, relative));
        modNodes::noteExpandedCopy(document, *copies.back());
        // In front of the relative and at its end they come one behind the other as it is.
        if (relationship == Relationship::tvwNext)
            relative = copies.back();
    }
    return copies;
}

Entry *survivorOf(const std::vector<Entry *> &branches, Entry *current)
{
    const std::unordered_set<const Entry *> going(branches.begin(), branches.end());
    const Entry *branch = current;
    while (branch && !going.contains(branch))
        branch = branch->parent();
    if (!branch)
        return current;
    for (Entry *previous = branch->previous(); previous; previous = previous->previous()) {
        if (!going.contains(previous))
            return previous;
    }
    for (Entry *next = branch->next(); next; next = next->next()) {
        if (!going.contains(next))
            return next;
    }
    return branch->parent();
}

QuietChange::QuietChange(Document &document, size_t count)
{
    if (count > mostToldOf)
        m_bulk.emplace(document.history);
}
