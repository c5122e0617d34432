// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryCollection.h"

void EntryCollection::append(Entry *entry)
{
    entry->m_slot = static_cast<qsizetype>(m_slots.size());
    m_slots.push_back(entry);
    ++m_count;
}

void EntryCollection::remove(Entry *entry)
{
    m_slots[static_cast<size_t>(entry->m_slot)] = nullptr;
    entry->m_slot = -1;
    --m_count;
    m_hasGaps = true;
    // Without this a long run of insertions and removals that nobody numbers would keep a slot for every one of them.
    if (m_slots.size() > 64 && m_slots.size() / 2 > static_cast<size_t>(m_count))
        closeUp();
}

void EntryCollection::clear()
{
    m_slots.clear();
    m_count = 0;
    m_hasGaps = false;
}

int EntryCollection::indexOf(const Entry *entry) const
{
    closeUp();
    return static_cast<int>(entry->m_slot) + 1;
}

Entry *EntryCollection::at(int index) const
{
    closeUp();
    return index >= 1 && index <= m_count ? m_slots[static_cast<size_t>(index) - 1] : nullptr;
}

void EntryCollection::closeUp() const
{
    if (!m_hasGaps)
        return;
    std::erase(m_slots, nullptr);
    for (size_t slot = 0; slot < m_slots.size(); ++slot)
        m_slots[slot]->m_slot = static_cast<qsizetype>(slot);
    m_hasGaps = false;
}
