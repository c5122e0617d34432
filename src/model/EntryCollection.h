// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Entry.h"

// A tree's entries in the order in which they were inserted, numbered from 1 without gaps: a removal closes up the
// indices behind it. Adding and removing cost O(1); the numbering is brought up to date when it is next asked for.
class EntryCollection
{
public:
    int count() const { return m_count; }

    // Lets the next `more` calls of add() or renew() succeed; throws where there is no memory.
    void makeRoom(int more);
    // An entry that never was in the order of insertion goes to its end, any other back to its place in it.
    void add(Entry *entry) noexcept;
    void remove(Entry *entry) noexcept;
    // Puts an entry at the place that an earlier insertion number says, or with 0 at the end.
    void renew(Entry *entry, qint64 insertion) noexcept;

    // The 1-based index of an entry of this collection.
    int indexOf(const Entry *entry) const;
    // The entry at a 1-based index, or null beyond the range.
    Entry *at(int index) const;

private:
    void closeUp() const noexcept;

    // Those that came back lie behind the others, unordered, until somebody asks for a number.
    mutable std::vector<Entry *> m_slots;
    mutable size_t m_ordered = 0;
    mutable qint64 m_lastOrdered = 0;
    mutable bool m_tidy = true;
    qint64 m_lastInsertion = 0;
    int m_count = 0;
};
