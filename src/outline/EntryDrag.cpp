// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/EntryDrag.h"

#include "document/Document.h"
#include "document/modNodes.h"

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
    if (Entry *first = target.firstChild(); target.isRoot() && first && first != dragged) {
        relative = first;
        relationship = Relationship::tvwPrevious;
    }
    document.history.touch();
    const modNodes::ActionScope action;
    const History::Step step(document.history,
                             stepName(QLatin1StringView(state.copy ? "insertion of a copy of" : "move of"), *dragged));
    if (state.copy) {
        dragged = modNodes::NodeDuplicate(document, *state.entry.tree(), dragged, relative, relationship);
    } else {
        document.history.move(dragged, relationship, relative);
    }
    modNodes::NodeSelect(document, dragged);
}
