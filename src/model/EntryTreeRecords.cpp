// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Subtrees as values, and back.

#include "model/EntryTree.h"

#include "util/RunTimeError.h"

using namespace Qt::StringLiterals;

EntryRecords EntryTree::recordsOf(const Entry *top)
{
    EntryRecords records;
    int level = 0;
    for (const Entry *entry = top; entry;) {
        records.push_back({entry->m_id, level, entry->m_insertion, entry->m_label, entry->m_storedText,
                           entry->foreignRecords(), entry->m_tagged, entry->m_expanded, entry->m_sorted});
        if (const Entry *child = entry->firstChild()) {
            entry = child;
            ++level;
            continue;
        }
        while (entry != top && !entry->next()) {
            entry = entry->m_parent;
            --level;
        }
        entry = entry == top ? nullptr : entry->next();
    }
    return records;
}

Subtree EntryTree::subtreeOf(const EntryRecords &records)
{
    // The entry of each level that was made last.
    std::vector<Entry *> path;
    Subtree subtree;
    for (const EntryRecord &record : records) {
        const auto level = static_cast<size_t>(record.level);
        if (record.level < 0 || level > path.size() || (level == 0) != path.empty())
            throw RunTimeError(ErrorNumber::InvalidFileFormat, u"An entry has no parent"_s);
        std::unique_ptr<Entry> made(new Entry);
        made->m_insertion = record.insertion;
        made->m_label = record.label;
        made->m_storedText = record.storedText;
        made->m_tagged = record.tagged;
        made->m_expanded = record.expanded;
        made->m_sorted = record.sorted;
        if (!record.foreignRecords.empty())
            made->m_foreignRecords = std::make_unique<const ForeignRecordList>(record.foreignRecords);
        Entry *entry = made.get();
        subtree.m_weight += weightOf(*entry);
        ++subtree.m_count;
        path.resize(level);
        if (path.empty()) {
            subtree.m_top = std::move(made);
        } else {
            entry->m_parent = path.back();
            entry->m_row = entry->m_parent->childCount();
            entry->m_parent->m_children.push_back(std::move(made));
        }
        path.push_back(entry);
    }
    return subtree;
}
