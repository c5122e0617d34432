// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryCollection.h"

#include "util/MakeRoom.h"

#include <algorithm>

void EntryCollection::makeRoom(int more)
{
    makeRoomBehind(m_slots, static_cast<size_t>(more));
}

void EntryCollection::add(Entry *entry) noexcept
{
    if (entry->m_insertion == 0)
        entry->m_insertion = ++m_lastInsertion;
    // An entry of another tree brings a number that this one has not reached.
    m_lastInsertion = std::max(m_lastInsertion, entry->m_insertion);
    if (m_ordered == m_slots.size() && entry->m_insertion > m_lastOrdered) {
        ++m_ordered;
        m_lastOrdered = entry->m_insertion;
    } else {
        m_tidy = false;
    }
    entry->m_slot = static_cast<qsizetype>(m_slots.size());
    m_slots.push_back(entry);
    ++m_count;
}

void EntryCollection::remove(Entry *entry) noexcept
{
    m_slots[static_cast<size_t>(entry->m_slot)] = nullptr;
    entry->m_slot = -1;
    --m_count;
    m_tidy = false;
    // Without this a long run of insertions and removals that nobody numbers would keep a slot for every one of them.
    if (m_slots.size() > 64 && m_slots.size() / 2 > static_cast<size_t>(m_count))
        closeUp();
}

void EntryCollection::renew(Entry *entry, qint64 insertion) noexcept
{
    remove(entry);
    entry->m_insertion = insertion;
    add(entry);
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

void EntryCollection::closeUp() const noexcept
{
    if (m_tidy)
        return;
    const auto earlier = [](const Entry *a, const Entry *b) { return a->m_insertion < b->m_insertion; };
    const auto place = [this](size_t slot) { return m_slots.begin() + static_cast<std::ptrdiff_t>(slot); };
    m_ordered -= static_cast<size_t>(std::count(m_slots.begin(), place(m_ordered), nullptr));
    std::erase(m_slots, nullptr);
    std::sort(place(m_ordered), m_slots.end(), earlier);
    std::inplace_merge(m_slots.begin(), place(m_ordered), m_slots.end(), earlier);
    m_ordered = m_slots.size();
    m_lastOrdered = m_slots.empty() ? 0 : m_slots.back()->m_insertion;
    for (size_t slot = 0; slot < m_slots.size(); ++slot)
        m_slots[slot]->m_slot = static_cast<qsizetype>(slot);
    m_tidy = true;
}
