// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryTree.h"

#include <unordered_map>
#include <vector>

class Document;

// How several selected entries can be moved, each with its branch, as the same command moves one.
enum class BranchMove { Indent, Unindent, Up, Down, First, Last };

// Where the branches of several entries go. They keep their order: what stands before one of them and is moved itself
// is no neighbour.
class BranchMoves
{
public:
    // In the order of the outline, and none inside another.
    explicit BranchMoves(const std::vector<Entry *> &branches);

    struct Planned {
        Entry *entry;
        Relationship relationship;
        Entry *relative;
    };

    // The moves that do it, one after the other; none where one of the branches has nowhere to go.
    std::vector<Planned> plan(BranchMove move) const;

    // Whether there are any. It is asked of many entries at each key, so that nothing is planned for it.
    bool arePossible(BranchMove move) const;

    // The entries into which a move down leads from the end of another's children.
    std::vector<Entry *> enteredFromAbove() const;

private:
    Entry *previousThatStays(const Entry *entry) const;
    Entry *nextThatStays(const Entry *entry) const;

    using Moved = std::unordered_map<const Entry *, Entry *>;
    bool hasPlace(BranchMove move, const Entry *entry) const;
    Planned placed(BranchMove move, Entry *entry, Moved &behind, Moved &into) const;

    const std::vector<Entry *> m_branches;
    // The neighbours of each branch that are none themselves; null for none.
    std::unordered_map<const Entry *, Entry *> m_previous;
    std::unordered_map<const Entry *, Entry *> m_next;
};

// Moves the branches of the selected entries in one step, if each has somewhere to go; the same stay selected.
void moveSelectedBranches(Document &document, BranchMove move);
