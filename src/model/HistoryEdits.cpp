// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The tree's operations as changes.

#include "model/History.h"

#include "model/Outline.h"

#include <utility>

namespace
{

change::Insert insertionOf(Subtree subtree, const EntryTree::Place &place)
{
    change::Insert insert;
    insert.subtrees.push_back({place.parent ? place.parent->id() : EntryId::None, place.row, std::move(subtree)});
    return insert;
}

} // namespace

Entry *History::insert(Relationship relationship, Entry *relative)
{
    m_outline.tree.requireRoomFor(1);
    const EntryTree::Place place = m_outline.tree.placeFor(relationship, relative);
    return apply(insertionOf(Subtree::fresh(), place));
}

Entry *History::insertCopy(const EntryTree &sourceTree, const Entry *source, Relationship relationship, Entry *relative)
{
    m_outline.tree.requireRoomFor(subtreeSize(source));
    const EntryTree::Place place = m_outline.tree.placeFor(relationship, relative);
    return apply(insertionOf(sourceTree.copyOf(source), place));
}

void History::move(Entry *entry, Relationship relationship, Entry *relative)
{
    const EntryTree::Place place = m_outline.tree.placeForMove(entry, relationship, relative);
    apply(change::Move{entry->id(), place.parent->id(), place.row, {}});
}

void History::renewInsertion(Entry *entry)
{
    apply(change::Renew{entry->id(), {}});
}

void History::remove(Entry *entry)
{
    apply(change::Remove{{entry->id()}});
}

void History::removeAll(const std::vector<Entry *> &entries)
{
    change::Remove remove;
    remove.entries.reserve(entries.size());
    for (const Entry *entry : entries)
        remove.entries.push_back(entry->id());
    apply(std::move(remove));
}

void History::setLabel(Entry *entry, const QString &label)
{
    if (entry->label() != label)
        apply(change::Label{entry->id(), label});
}

void History::setTagged(Entry *entry, bool tagged)
{
    if (entry->tagged() != tagged)
        apply(change::Tag{entry->id(), tagged});
}

void History::setExpanded(Entry *entry, bool expanded)
{
    if (entry->expanded() == expanded)
        return;
    Expansion expansion;
    (expanded ? expansion.opened : expansion.closed).push_back(entry->id());
    apply(change::Expand{std::move(expansion), true});
}

void History::setExpandedAll(Entry *entry, bool expanded)
{
    apply(change::Expand{m_outline.tree.expansionOfAll(entry, expanded), false});
}

void History::expandAncestors(Entry *entry)
{
    for (Entry *ancestor = entry->parent(); ancestor; ancestor = ancestor->parent())
        setExpanded(ancestor, true);
}

void History::expandToLevel(Entry *entry, int level)
{
    apply(change::Expand{m_outline.tree.expansionToLevel(entry, level), false});
}

void History::setSorted(Entry *entry, bool sorted)
{
    const Step step(*this, stepName(QLatin1StringView("sorting below"), *entry));
    if (entry->sorted() != sorted)
        apply(change::Sorted{entry->id(), sorted});
    if (!sorted)
        return;
    std::vector<int> order = m_outline.tree.sortedOrder(entry);
    if (!order.empty())
        apply(change::Reorder{entry->id(), std::move(order)});
}

void History::setStoredText(Entry *entry, const QByteArray &storedText)
{
    apply(change::StoredText{entry->id(), storedText, nullptr});
}

void History::setFonts(const clsFont &outlineFont, const clsFont &textFont)
{
    apply(change::Fonts{outlineFont, textFont});
}

void History::setForeignRecords(Entry *entry, const ForeignRecordList &records)
{
    if (entry->foreignRecords() != records)
        apply(change::Foreign{entry->id(), records});
}

void History::setFileForeignRecords(const ForeignRecordList &header, const QByteArray &trailer)
{
    apply(change::FileForeign{header, trailer});
}
