// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryTree.h"

class Document;

// Dragging an entry within the outline: what may be dropped where, and what a drop does. The window tells this room
// what the mouse does; one drag goes on at a time.

enum class DragButton { None = 0, Left = 1, Right = 2 };

// The drag that goes on.
struct DragState {
    // The entry under the pointer when a button went down; empty when no drag can start.
    EntryRef entry;
    bool dragging = false;
    // The drop copies instead of moving.
    bool copy = false;
    // A drop of the entry on itself indents it; otherwise it unindents it.
    bool indent = false;
    DragButton button = DragButton::None;
    Relationship relationship = Relationship::tvwNext;
};

DragState &dragState();
void ResetDraggingFlags();

// Where a drop beside or into a target may put the dragged entry.
struct DropPlacements {
    bool previous = false;
    bool next = false;
    bool child = false;

    bool any() const { return previous || next || child; }

    bool operator==(const DropPlacements &other) const = default;
};

DropPlacements dropPlacements(const Entry &dragged, const Entry &target);

// Whether the drag icon allows a drop on an entry, which may be the dragged one itself.
bool dropAllowed(const Entry &dragged, const Entry &target, bool indent);

// What goes with the drag: the branches of all selected entries where the dragged one is among several, and otherwise
// its own.
std::vector<Entry *> draggedBranches();

// The same as above for the drag that goes on, which must have an entry: what holds for all that goes with it.
DropPlacements dropPlacements(const Entry &target);
bool dropAllowed(const Entry &target);

// What a drop without a question does: next if possible, else previous, else child.
Relationship plainRelationship(const DropPlacements &placements);

// Puts what is dragged, or copies of it, beside or into the target as the drag state says, and selects it.
void dropEntry(Document &document, Entry &target);
