// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"

#include <vector>

class Entry;

// A tree's entries by their ids. An open-addressed table: opening a large file fills it in a few milliseconds, and what
// was removed comes back without memory that might not be there.
class EntriesById
{
public:
    // Lets the next `more` calls of add() succeed; throws where there is no memory, and then nothing has changed.
    void makeRoom(int more);
    void add(Entry *entry) noexcept;
    void remove(EntryId id) noexcept;

    // Null when the tree has no such entry.
    Entry *find(EntryId id) const noexcept;

    int count() const { return m_count; }

private:
    struct Cell {
        EntryId id = EntryId::None;
        Entry *entry = nullptr;
    };

    size_t home(EntryId id) const noexcept;
    size_t cellOf(EntryId id) const noexcept;
    void place(const Cell &cell) noexcept;

    // A power of two, at most two thirds full; empty at first.
    std::vector<Cell> m_cells;
    int m_count = 0;
};
