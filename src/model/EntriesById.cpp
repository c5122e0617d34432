// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntriesById.h"

#include "model/Entry.h"

#include <utility>

void EntriesById::makeRoom(int more)
{
    const size_t needed = (static_cast<size_t>(m_count) + static_cast<size_t>(more)) * 3 / 2 + 1;
    if (needed <= m_cells.size())
        return;
    size_t size = 16;
    while (size < needed)
        size *= 2;
    std::vector<Cell> old(size);
    m_cells.swap(old);
    for (const Cell &cell : old) {
        if (cell.entry)
            place(cell);
    }
}

void EntriesById::add(Entry *entry) noexcept
{
    place({entry->id(), entry});
    ++m_count;
}

void EntriesById::remove(EntryId id) noexcept
{
    size_t gap = cellOf(id);
    if (!m_cells[gap].entry)
        return;
    --m_count;
    // Whoever had to step aside for what goes moves up, so that a search may end at the first empty cell.
    const size_t mask = m_cells.size() - 1;
    for (size_t next = (gap + 1) & mask; m_cells[next].entry; next = (next + 1) & mask) {
        const size_t steps = (next - home(m_cells[next].id)) & mask;
        if (steps >= ((next - gap) & mask)) {
            m_cells[gap] = m_cells[next];
            gap = next;
        }
    }
    m_cells[gap] = Cell();
}

Entry *EntriesById::find(EntryId id) const noexcept
{
    return m_cells.empty() ? nullptr : m_cells[cellOf(id)].entry;
}

// Ids are counted up: neighbours are spread over the table by the golden section.
size_t EntriesById::home(EntryId id) const noexcept
{
    const quint64 spread = static_cast<quint64>(id) * 0x9E37'79B9'7F4A'7C15U;
    return static_cast<size_t>(spread >> 32U) & (m_cells.size() - 1);
}

// The cell that holds the id, or the empty one where it would stand.
size_t EntriesById::cellOf(EntryId id) const noexcept
{
    size_t at = home(id);
    while (m_cells[at].entry && m_cells[at].id != id)
        at = (at + 1) & (m_cells.size() - 1);
    return at;
}

void EntriesById::place(const Cell &cell) noexcept
{
    m_cells[cellOf(cell.id)] = cell;
}
