// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Which entries are selected.

#include "model/EntryTree.h"
#include "model/OutlineOrder.h"

void EntryTree::select(Entry *entry)
{
    if (m_selected != entry)
        select(entry, {});
}

void EntryTree::select(Entry *current, const std::vector<Entry *> &several)
{
    std::unordered_set<EntryId> ids;
    if (current && several.size() > 1) {
        ids.reserve(several.size());
        for (const Entry *each : several)
            ids.insert(each->m_id);
    }
    if (ids.size() < 2)
        ids.clear();
    const bool isSame = m_several == ids;
    m_several.swap(ids);
    if (m_selected != current) {
        m_selected = current;
        assertWhole(current);
        if (announcing())
            Q_EMIT selectedChanged(current);
    }
    if (!isSame && announcing())
        Q_EMIT severalChanged();
}

bool EntryTree::isSelected(const Entry *entry) const
{
    return m_several.empty() ? entry && entry == m_selected : m_several.contains(entry->m_id);
}

int EntryTree::selectedCount() const
{
    if (m_several.empty())
        return m_selected ? 1 : 0;
    return static_cast<int>(m_several.size());
}

std::vector<Entry *> EntryTree::selectedEntries() const
{
    if (m_several.empty())
        return m_selected ? std::vector{m_selected} : std::vector<Entry *>();
    return inOutlineOrder(entriesOf(severalIds()));
}

std::vector<EntryId> EntryTree::severalIds() const
{
    return {m_several.begin(), m_several.end()};
}

std::vector<Entry *> EntryTree::entriesOf(const std::vector<EntryId> &ids) const
{
    std::vector<Entry *> entries;
    entries.reserve(ids.size());
    for (const EntryId id : ids) {
        if (Entry *found = entry(id))
            entries.push_back(found);
    }
    return entries;
}

// Nothing is done to an entry of several that nobody sees to be selected.
void EntryTree::deselectHidden()
{
    if (m_several.empty())
        return;
    std::vector<Entry *> shown;
    for (Entry *each : entriesOf(severalIds())) {
        if (each->visible())
            shown.push_back(each);
    }
    if (shown.size() < m_several.size())
        select(m_selected, shown);
}
