// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Entry.h"

// A tree's entries in the order in which they were inserted, numbered from 1 without gaps: a removal closes up the
// indices behind it. Appending and removing cost O(1); the numbering is brought up to date when it is next asked for.
class EntryCollection
{
public:
    int count() const { return m_count; }

    void append(Entry *entry);
    void remove(Entry *entry);
    void clear();

    // The 1-based index of an entry of this collection.
    int indexOf(const Entry *entry) const;
    // The entry at a 1-based index, or null beyond the range.
    Entry *at(int index) const;

private:
    void closeUp() const;

    mutable std::vector<Entry *> m_slots;
    mutable bool m_hasGaps = false;
    int m_count = 0;
};
