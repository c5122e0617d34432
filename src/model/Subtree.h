// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Entry.h"

#include <vector>

// Entries that are in no tree: new ones, copies, or what was taken out of a tree and can be put back as it was. The
// entries keep their ids, and those that were in a tree keep their places in its order of insertion.
class Subtree
{
public:
    Subtree() = default;

    // A new entry without label, text and children.
    static Subtree fresh();

    // Null once it was put into a tree.
    const Entry *top() const { return m_top.get(); }

    explicit operator bool() const { return m_top != nullptr; }

    int count() const { return m_count; }

    // The memory that it holds, in bytes, about. Texts that somebody else holds too are counted whole.
    qsizetype weight() const { return m_weight; }

private:
    friend class EntryTree;

    Subtree(std::unique_ptr<Entry> top, int count, qsizetype weight)
        : m_top(std::move(top))
        , m_count(count)
        , m_weight(weight)
    {
    }

    std::unique_ptr<Entry> m_top;
    int m_count = 0;
    qsizetype m_weight = 0;
};

// A subtree with the place that it was taken from: its parent (none for the root) and its row, as both were before
// anything was taken that was taken with it.
struct TakenSubtree {
    EntryId parent = EntryId::None;
    int row = 0;
    Subtree subtree;
};
