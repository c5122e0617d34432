// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Entry.h"

// Steps through an outline, keeping the level of the entry that it stands on; the root's is 1.
class LevelWalk
{
public:
    explicit LevelWalk(const Entry *root)
        : m_entry(root)
    {
    }

    // Null behind the last entry.
    const Entry *entry() const { return m_entry; }

    int level() const { return m_level; }

    // Goes to the first child, or without one as pass().
    void next()
    {
        if (m_entry->childCount() == 0) {
            pass();
            return;
        }
        m_entry = m_entry->firstChild();
        ++m_level;
    }

    // Goes on behind all that lies below the entry.
    void pass()
    {
        while (m_entry && !m_entry->next()) {
            m_entry = m_entry->parent();
            --m_level;
        }
        m_entry = m_entry ? m_entry->next() : nullptr;
    }

private:
    const Entry *m_entry;
    int m_level = 1;
};
