// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Which entries are open.

#include "model/EntryTree.h"

void EntryTree::setExpanded(Entry *entry, bool expanded)
{
    if (entry->m_expanded == expanded)
        return;
    entry->m_expanded = expanded;
    if (announcing())
        Q_EMIT expandedChanged(entry, expanded);
    if (!expanded)
        deselectHidden();
}

void EntryTree::setExpansion(const Expansion &expansion)
{
    for (const EntryId id : expansion.opened)
        entry(id)->m_expanded = true;
    for (const EntryId id : expansion.closed)
        entry(id)->m_expanded = false;
    if (announcing())
        Q_EMIT expansionReset();
    if (!expansion.closed.empty())
        deselectHidden();
}

Expansion EntryTree::expansionOfAll(const Entry *entry, bool expanded) const
{
    Expansion expansion;
    std::vector<EntryId> &changed = expanded ? expansion.opened : expansion.closed;
    for (const Entry *each = entry; each; each = nextInOutline(each, entry)) {
        if (each->m_expanded != expanded)
            changed.push_back(each->m_id);
    }
    return expansion;
}

void EntryTree::setExpandedAll(Entry *entry, bool expanded)
{
    for (Entry *each = entry; each; each = nextInOutline(each, entry))
        each->m_expanded = expanded;
    if (announcing())
        Q_EMIT expansionReset();
    if (!expanded)
        deselectHidden();
}

void EntryTree::expandAncestors(Entry *entry)
{
    for (Entry *ancestor = entry->m_parent; ancestor; ancestor = ancestor->m_parent)
        setExpanded(ancestor, true);
}

Expansion EntryTree::expansionToLevel(const Entry *entry, int level) const
{
    Expansion expansion;
    int depth = entry->level();
    const Entry *each = entry;
    while (each) {
        const bool open = depth < level;
        if (each->childCount() > 0 && each->m_expanded != open)
            (open ? expansion.opened : expansion.closed).push_back(each->m_id);
        // What lies below a closed entry is not visited: it keeps its state.
        if (open && each->childCount() > 0) {
            each = each->firstChild();
            ++depth;
            continue;
        }
        while (each != entry && !each->next()) {
            each = each->m_parent;
            --depth;
        }
        each = each == entry ? nullptr : each->next();
    }
    return expansion;
}

void EntryTree::expandToLevel(Entry *entry, int level)
{
    const Expansion expansion = expansionToLevel(entry, level);
    if (!expansion.opened.empty() || !expansion.closed.empty())
        setExpansion(expansion);
}
