// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Taking subtrees out of the tree and putting them back.

#include "model/EntryTree.h"

#include "util/MakeRoom.h"

#include <algorithm>
#include <unordered_set>

namespace
{

// The taken subtrees of one parent, by row.
using TakenChildren = std::vector<TakenSubtree *>;

std::vector<TakenChildren> byParent(std::vector<TakenSubtree> &taken)
{
    TakenChildren all;
    all.reserve(taken.size());
    for (TakenSubtree &each : taken)
        all.push_back(&each);
    std::ranges::sort(all, [](const TakenSubtree *a, const TakenSubtree *b) {
        return a->parent != b->parent ? a->parent < b->parent : a->row < b->row;
    });
    std::vector<TakenChildren> groups;
    for (TakenSubtree *each : all) {
        if (groups.empty() || groups.back().front()->parent != each->parent)
            groups.emplace_back();
        groups.back().push_back(each);
    }
    return groups;
}

} // namespace

qsizetype EntryTree::weightOf(const Entry &entry)
{
    return qsizetype(sizeof(Entry)) + entry.m_label.size() * qsizetype(sizeof(QChar)) + entry.m_storedText.size();
}

Subtree Subtree::fresh()
{
    return Subtree(std::unique_ptr<Entry>(new Entry), 1, sizeof(Entry));
}

Entry *EntryTree::put(Subtree &subtree, const Place &place)
{
    makeRoomFor(subtree.m_count);
    if (place.parent)
        makeRoomBehind(place.parent->m_children, 1);
    Entry *top = subtree.m_top.get();
    if (announcing())
        beginInsertRows(indexOf(place.parent), place.row, place.row);
    top->m_parent = place.parent;
    if (place.parent) {
        std::vector<std::unique_ptr<Entry>> &siblings = place.parent->m_children;
        siblings.insert(siblings.begin() + place.row, std::move(subtree.m_top));
        renumber(place.parent, place.row);
    } else {
        top->m_row = 0;
        m_root = std::move(subtree.m_top);
    }
    const bool expansion = enter(top);
    subtree = Subtree();
    assertWhole(top);
    if (announcing()) {
        endInsertRows();
        if (expansion)
            Q_EMIT expansionReset();
    }
    return top;
}

void EntryTree::putAll(std::vector<TakenSubtree> &taken)
{
    int count = 0;
    for (const TakenSubtree &each : taken)
        count += each.subtree.m_count;
    makeRoomFor(count);
    const std::vector<TakenChildren> groups = byParent(taken);
    for (const TakenChildren &group : groups) {
        if (Entry *parent = entry(group.front()->parent))
            makeRoomBehind(parent->m_children, group.size());
    }
    const BulkChange bulk(*this);
    for (const TakenChildren &group : groups) {
        Entry *parent = entry(group.front()->parent);
        if (!parent) {
            m_root = std::move(group.front()->subtree.m_top);
            enter(m_root.get());
            continue;
        }
        // From the last to the first, so that each sibling that stays moves once.
        std::vector<std::unique_ptr<Entry>> &siblings = parent->m_children;
        size_t from = siblings.size();
        siblings.resize(from + group.size());
        size_t to = siblings.size();
        for (auto each = group.rbegin(); each != group.rend(); ++each) {
            while (to - 1 > static_cast<size_t>((*each)->row))
                siblings[--to] = std::move(siblings[--from]);
            siblings[--to] = std::move((*each)->subtree.m_top);
            siblings[to]->m_parent = parent;
        }
        renumber(parent, group.front()->row);
        for (const TakenSubtree *each : group)
            enter(parent->child(each->row));
    }
    taken.clear();
    assertWhole(m_root.get());
}

Subtree EntryTree::take(Entry *entry)
{
    letGoOf({entry});
    Entry *parent = entry->m_parent;
    const int row = entry->m_row;
    if (announcing())
        beginRemoveRows(indexOf(parent), row, row);
    Subtree taken;
    taken.m_count = m_collection.count();
    taken.m_weight = leave(entry);
    taken.m_count -= m_collection.count();
    if (parent) {
        std::vector<std::unique_ptr<Entry>> &siblings = parent->m_children;
        taken.m_top = std::move(siblings[static_cast<size_t>(row)]);
        siblings.erase(siblings.begin() + row);
        renumber(parent, row);
    } else {
        taken.m_top = std::move(m_root);
    }
    entry->m_parent = nullptr;
    assertWhole(parent);
    if (announcing())
        endRemoveRows();
    return taken;
}

std::vector<TakenSubtree> EntryTree::takeAll(const std::vector<Entry *> &entries)
{
    std::vector<TakenSubtree> taken;
    taken.reserve(entries.size());
    std::unordered_set<Entry *> parents;
    for (Entry *entry : entries)
        parents.insert(entry->m_parent);
    const BulkChange bulk(*this);
    letGoOf(entries);
    for (Entry *entry : entries) {
        TakenSubtree each{entry->m_parent ? entry->m_parent->m_id : EntryId::None, entry->m_row, Subtree()};
        each.subtree.m_count = m_collection.count();
        each.subtree.m_weight = leave(entry);
        each.subtree.m_count -= m_collection.count();
        each.subtree.m_top =
            std::move(entry->m_parent ? entry->m_parent->m_children[static_cast<size_t>(entry->m_row)] : m_root);
        taken.push_back(std::move(each));
    }
    // Closing the gap behind every single one would cost its number of siblings each time.
    for (Entry *parent : parents) {
        if (!parent)
            continue;
        std::erase(parent->m_children, nullptr);
        renumber(parent, 0);
    }
    for (Entry *entry : entries)
        entry->m_parent = nullptr;
    assertWhole(m_root.get());
    return taken;
}

// Counts and numbers the entries of a subtree that stands in its place; whether any of them is expanded. There must be
// room for them.
bool EntryTree::enter(Entry *top)
{
    bool expansion = false;
    for (Entry *entry = top; entry; entry = nextInOutline(entry, top)) {
        m_collection.add(entry);
        m_byId.add(entry);
        m_taggedCount += entry->m_tagged ? 1 : 0;
        expansion = expansion || entry->m_expanded;
    }
    return expansion;
}

// Takes a subtree that goes out of all that is counted and numbered, and weighs it.
qsizetype EntryTree::leave(Entry *top)
{
    qsizetype weight = 0;
    for (Entry *entry = top; entry; entry = nextInOutline(entry, top)) {
        m_collection.remove(entry);
        m_byId.remove(entry->m_id);
        m_several.erase(entry->m_id);
        m_taggedCount -= entry->m_tagged ? 1 : 0;
        weight += weightOf(*entry);
    }
    if (m_several.size() < 2)
        m_several.clear();
    return weight;
}

// Whether an entry, if any, is one of several or lies below one.
bool EntryTree::liesBelow(const Entry *entry, const std::vector<Entry *> &tops)
{
    if (!entry || tops.empty())
        return false;
    const std::unordered_set<const Entry *> all(tops.begin(), tops.end());
    while (entry && !all.contains(entry))
        entry = entry->m_parent;
    return entry != nullptr;
}

// Lets go of entries that go. A text that is still to be made goes with its entry, made.
void EntryTree::letGoOf(const std::vector<Entry *> &tops)
{
    if (liesBelow(m_pendingEntry, tops))
        resolvePendingText();
    if (liesBelow(m_selected, tops))
        select(nullptr);
}

void EntryTree::makeRoomFor(int more)
{
    requireRoomFor(more);
    m_collection.makeRoom(more);
    m_byId.makeRoom(more);
}
