// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/Entry.h"

#include <atomic>

namespace
{

EntryId nextEntryId()
{
    static std::atomic<quint64> last = 0;
    return EntryId(++last);
}

} // namespace

Entry::Entry()
    : m_id(nextEntryId())
{
}

Entry::~Entry()
{
    // Taken apart level by level: destroying a chain of thousands of children by recursion would overflow the stack.
    std::vector<std::unique_ptr<Entry>> pending = std::move(m_children);
    while (!pending.empty()) {
        const std::unique_ptr<Entry> entry = std::move(pending.back());
        pending.pop_back();
        for (std::unique_ptr<Entry> &descendant : entry->m_children)
            pending.push_back(std::move(descendant));
        entry->m_children.clear();
    }
}

Entry *Entry::child(int row) const
{
    return row >= 0 && row < childCount() ? m_children[static_cast<size_t>(row)].get() : nullptr;
}

Entry *Entry::next() const
{
    return m_parent ? m_parent->child(m_row + 1) : nullptr;
}

Entry *Entry::previous() const
{
    return m_parent ? m_parent->child(m_row - 1) : nullptr;
}

Entry *Entry::firstSibling() const
{
    return m_parent ? m_parent->firstChild() : const_cast<Entry *>(this);
}

Entry *Entry::lastSibling() const
{
    return m_parent ? m_parent->child(m_parent->childCount() - 1) : const_cast<Entry *>(this);
}

Entry *Entry::root() const
{
    const Entry *entry = this;
    while (entry->m_parent)
        entry = entry->m_parent;
    return const_cast<Entry *>(entry);
}

int Entry::level() const
{
    int level = 1;
    for (const Entry *entry = m_parent; entry; entry = entry->m_parent)
        ++level;
    return level;
}

bool Entry::visible() const
{
    for (const Entry *entry = m_parent; entry; entry = entry->m_parent) {
        if (!entry->m_expanded)
            return false;
    }
    return true;
}

const ForeignRecordList &Entry::foreignRecords() const
{
    static const ForeignRecordList none;
    return m_foreignRecords ? *m_foreignRecords : none;
}

bool Entry::isAncestorOf(const Entry *other) const
{
    for (const Entry *entry = other ? other->m_parent : nullptr; entry; entry = entry->m_parent) {
        if (entry == this)
            return true;
    }
    return false;
}

Entry *nextInOutline(const Entry *entry, const Entry *top)
{
    if (Entry *child = entry->firstChild())
        return child;
    for (; entry != top; entry = entry->parent()) {
        if (Entry *sibling = entry->next())
            return sibling;
    }
    return nullptr;
}

int subtreeSize(const Entry *top)
{
    int size = 0;
    for (const Entry *entry = top; entry; entry = nextInOutline(entry, top))
        ++size;
    return size;
}
