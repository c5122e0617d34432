// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/EntryDrag.h"

#include "outline/BranchMoves.h"
#include "outline/SelectedEntries.h"

#include "document/Document.h"
#include "document/modNodes.h"
#include "model/OutlineOrder.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Whether the dragged entry takes others with it.
bool dragsSeveral()
{
    const EntryRef &dragged = dragState().entry;
    const EntryTree *tree = dragged.tree();
    return tree && tree->areSeveralSelected() && tree->isSelected(dragged.entry());
}

// Whether an entry is one of those that are dragged along, or lies below one.
bool goesWithDrag(const Entry &entry)
{
    const Entry *each = &entry;
    while (each && !dragState().entry.tree()->isSelected(each))
        each = each->parent();
    return each != nullptr;
}

// In their order, the first of them where one would go.
void dropSeveral(Document &document, Relationship relationship, Entry *relative)
{
    const DragState &state = dragState();
    std::vector<Entry *> entries = document.tree.selectedEntries();
    const std::vector<Entry *> branches = branchesOf(entries);
    Entry *current = document.tree.selected();
    const History::Step step(document.history,
                             stepName(state.copy ? "insertion of copies of"_L1 : "move of"_L1, branches));
    if (state.copy) {
        entries = insertCopies(document, *state.entry.tree(), branches, relationship, relative);
        current = entries.back();
    } else {
        const QuietChange quiet(document, branches.size());
        for (Entry *branch : branches) {
            document.history.move(branch, relationship, relative);
            if (relationship == Relationship::tvwNext)
                relative = branch;
        }
    }
    selectEntries(document, current, entries);
}

} // namespace

DragState &dragState()
{
    static DragState state;
    return state;
}

void ResetDraggingFlags()
{
    DragState &state = dragState();
    state.copy = false;
    state.dragging = false;
    state.indent = false;
    state.button = DragButton::None;
    state.entry.clear();
}

DropPlacements dropPlacements(const Entry &dragged, const Entry &target)
{
    // The root's own first child goes to its end.
    if (target.isRoot())
        return {false, false, true};
    if (dragged.isAncestorOf(&target) || target.firstChild() == &dragged)
        return {};
    return {target.previous() != &dragged, target.next() != &dragged, true};
}

bool dropAllowed(const Entry &dragged, const Entry &target, bool indent)
{
    if (&target != &dragged)
        return !dragged.isAncestorOf(&target);
    if (indent)
        return dragged.previous() != nullptr;
    return !dragged.isRoot() && !dragged.parent()->isRoot();
}

std::vector<Entry *> draggedBranches()
{
    const EntryRef &dragged = dragState().entry;
    return dragsSeveral() ? branchesOf(dragged.tree()->selectedEntries()) : std::vector{dragged.entry()};
}

DropPlacements dropPlacements(const Entry &target)
{
    if (!dragsSeveral())
        return dropPlacements(*dragState().entry.entry(), target);
    if (goesWithDrag(target))
        return {};
    DropPlacements all = {true, true, true};
    for (const Entry *branch : draggedBranches()) {
        const DropPlacements each = dropPlacements(*branch, target);
        all = {all.previous && each.previous, all.next && each.next, all.child && each.child};
    }
    return all;
}

bool dropAllowed(const Entry &target)
{
    const DragState &state = dragState();
    const Entry &dragged = *state.entry.entry();
    if (!dragsSeveral())
        return dropAllowed(dragged, target, state.indent);
    if (&target != &dragged)
        return !goesWithDrag(target);
    return BranchMoves(draggedBranches()).arePossible(state.indent ? BranchMove::Indent : BranchMove::Unindent);
}

Relationship plainRelationship(const DropPlacements &placements)
{
    if (placements.next)
        return Relationship::tvwNext;
    return placements.previous ? Relationship::tvwPrevious : Relationship::tvwChild;
}

void dropEntry(Document &document, Entry &target)
{
    DragState &state = dragState();
    Entry *dragged = state.entry.entry();
    Entry *relative = &target;
    Relationship relationship = state.relationship;
    Entry *first = target.firstChild();
    const bool several = dragsSeveral();
    if (target.isRoot() && first && !(several ? goesWithDrag(*first) : first == dragged)) {
        relative = first;
        relationship = Relationship::tvwPrevious;
    }
    document.history.touch();
    const modNodes::ActionScope action;
    if (several) {
        dropSeveral(document, relationship, relative);
        return;
    }
    const History::Step step(document.history,
                             stepName(QLatin1StringView(state.copy ? "insertion of a copy of" : "move of"), *dragged));
    if (state.copy) {
        dragged = modNodes::NodeDuplicate(document, *state.entry.tree(), dragged, relative, relationship);
    } else {
        document.history.move(dragged, relationship, relative);
    }
    modNodes::NodeSelect(document, dragged);
}
