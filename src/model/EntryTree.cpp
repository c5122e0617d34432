// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryTree.h"

#include "util/MakeRoom.h"
#include "util/RunTimeError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// The place that a component of a path names; 0 when it is not written as keys are, since keys are compared as texts
// and "0.01" names nothing even where "0.1" exists.
int placeNumber(QByteArrayView component)
{
    constexpr qsizetype maximumDigits = 5;
    const bool plain = !component.isEmpty() && component.size() <= maximumDigits && component[0] != '0' &&
                       std::all_of(component.begin(), component.end(), [](char c) { return c >= '0' && c <= '9'; });
    return plain ? component.toInt() : 0;
}

constexpr auto rootKey = "KEY0"_L1;

} // namespace

EntryTree::EntryTree(QObject *parent)
    : QAbstractItemModel(parent)
{
}

EntryTree::~EntryTree() = default;

Entry *EntryTree::insert(Relationship relationship, Entry *relative)
{
    requireRoomFor(1);
    const Place place = placeFor(relationship, relative);
    Subtree subtree = Subtree::fresh();
    return put(subtree, place);
}

Entry *EntryTree::insertCopy(const EntryTree &sourceTree, const Entry *source, Relationship relationship,
                             Entry *relative)
{
    requireRoomFor(subtreeSize(source));
    const Place place = placeFor(relationship, relative);
    // The copy is complete before it joins the tree, so a copy into the source's own subtree copies what was there
    // before.
    Subtree copy = sourceTree.copyOf(source);
    return put(copy, place);
}

Subtree EntryTree::copyOf(const Entry *source) const
{
    resolvePendingText();

    struct Pair {
        const Entry *source;
        Entry *copy;
    };

    std::unique_ptr<Entry> top(new Entry);
    std::vector<Pair> pending = {{source, top.get()}};
    int count = 0;
    qsizetype weight = 0;
    while (!pending.empty()) {
        const auto [from, to] = pending.back();
        pending.pop_back();
        to->m_label = from->m_label;
        to->m_storedText = from->m_storedText;
        to->m_expanded = from->m_expanded;
        if (from->m_foreignRecords)
            to->m_foreignRecords = std::make_unique<const ForeignRecordList>(*from->m_foreignRecords);
        to->m_children.reserve(from->m_children.size());
        for (const std::unique_ptr<Entry> &child : from->m_children) {
            std::unique_ptr<Entry> copy(new Entry);
            copy->m_parent = to;
            copy->m_row = child->m_row;
            pending.push_back({child.get(), copy.get()});
            to->m_children.push_back(std::move(copy));
        }
        ++count;
        weight += weightOf(*to);
    }
    return Subtree(std::move(top), count, weight);
}

EntryTree::Place EntryTree::placeFor(Relationship relationship, Entry *relative) const
{
    if (!relative) {
        if (m_root)
            throw RunTimeError(ErrorNumber::InvalidCall, u"An outline has only one root"_s);
        return {nullptr, 0};
    }
    if (relationship == Relationship::tvwChild)
        return {relative, relative->childCount()};
    Entry *parent = relative->parent();
    if (!parent)
        throw RunTimeError(ErrorNumber::InvalidCall, u"The root has no siblings"_s);
    switch (relationship) {
    case Relationship::tvwFirst:
        return {parent, 0};
    case Relationship::tvwLast:
        return {parent, parent->childCount()};
    case Relationship::tvwPrevious:
        return {parent, relative->row()};
    default:
        return {parent, relative->row() + 1};
    }
}

EntryTree::Place EntryTree::placeForMove(const Entry *entry, Relationship relationship, Entry *relative) const
{
    Place place = placeFor(relationship, relative);
    if (!entry->m_parent || !place.parent || place.parent == entry || entry->isAncestorOf(place.parent))
        throw RunTimeError(ErrorNumber::InvalidCall, u"An entry cannot be moved into itself"_s);
    if (entry->m_parent == place.parent && place.row > entry->m_row)
        --place.row;
    return place;
}

void EntryTree::move(Entry *entry, Relationship relationship, Entry *relative)
{
    moveTo(entry, placeForMove(entry, relationship, relative));
}

void EntryTree::moveTo(Entry *entry, const Place &place, const std::vector<qint64> &insertion)
{
    m_collection.makeRoom(subtreeSize(entry));
    Entry *from = entry->m_parent;
    const int row = entry->m_row;
    const bool sameParent = from == place.parent;
    if (!sameParent || place.row != row) {
        std::vector<std::unique_ptr<Entry>> &siblings = place.parent->m_children;
        makeRoomBehind(siblings, 1);
        // The item model counts the place with the entry still among its siblings.
        const int countedRow = place.row + (sameParent && place.row > row ? 1 : 0);
        if (announcing())
            beginMoveRows(indexOf(from), row, row, indexOf(place.parent), countedRow);
        std::vector<std::unique_ptr<Entry>> &old = from->m_children;
        std::unique_ptr<Entry> moving = std::move(old[static_cast<size_t>(row)]);
        old.erase(old.begin() + row);
        entry->m_parent = place.parent;
        siblings.insert(siblings.begin() + place.row, std::move(moving));
        renumber(from, sameParent ? std::min(row, place.row) : row);
        if (!sameParent)
            renumber(place.parent, place.row);
        assertWhole(entry);
        if (announcing())
            endMoveRows();
    }
    renewInsertion(entry, insertion);
}

void EntryTree::renewInsertion(Entry *entry, const std::vector<qint64> &insertion)
{
    m_collection.makeRoom(subtreeSize(entry));
    size_t at = 0;
    for (Entry *each = entry; each; each = nextInOutline(each, entry))
        m_collection.renew(each, at < insertion.size() ? insertion[at++] : 0);
    assertWhole(entry);
}

std::vector<qint64> EntryTree::insertionPlaces(const Entry *entry) const
{
    std::vector<qint64> places;
    for (const Entry *each = entry; each; each = nextInOutline(each, entry))
        places.push_back(each->m_insertion);
    return places;
}

void EntryTree::remove(Entry *entry)
{
    if (liesBelow(m_pendingEntry, {entry}))
        forgetPendingText();
    take(entry);
}

void EntryTree::removeAll(const std::vector<Entry *> &entries)
{
    if (liesBelow(m_pendingEntry, entries))
        forgetPendingText();
    takeAll(entries);
}

void EntryTree::clear()
{
    beginBulkChange();
    if (m_root)
        remove(m_root.get());
    endBulkChange();
}

QString EntryTree::key(const Entry *entry) const
{
    std::vector<int> places;
    for (; entry->m_parent; entry = entry->m_parent)
        places.push_back(entry->m_row + 1);
    QString key = rootKey;
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        key += u'.' + QString::number(*place);
    return key;
}

Entry *EntryTree::itemByPath(QByteArrayView path) const
{
    Entry *entry = path.startsWith('0') ? m_root.get() : nullptr;
    qsizetype at = 1;
    while (entry && at < path.size() && path[at] == '.') {
        qsizetype end = path.indexOf('.', at + 1);
        if (end < 0)
            end = path.size();
        entry = entry->child(placeNumber(path.sliced(at + 1, end - at - 1)) - 1);
        at = end;
    }
    if (!entry || at < path.size()) {
        const QString shown = QString::fromLatin1(path.first(qMin(path.size(), qsizetype(80))));
        throw RunTimeError(ErrorNumber::ElementNotFound, u"Element not found: no entry has the key KEY%1"_s.arg(shown));
    }
    return entry;
}

Entry *EntryTree::itemByKey(const QString &key) const
{
    const QByteArray bytes = key.toUtf8();
    // A key without the prefix names nothing, and neither does the empty path.
    return itemByPath(bytes.startsWith("KEY") ? QByteArrayView(bytes).sliced(3) : QByteArrayView());
}

QByteArray EntryTree::storedText(const Entry *entry) const
{
    if (entry == m_pendingEntry)
        resolvePendingText();
    return entry->m_storedText;
}

void EntryTree::setStoredText(Entry *entry, const QByteArray &storedText)
{
    if (entry == m_pendingEntry)
        forgetPendingText();
    entry->m_storedText = storedText;
    Q_EMIT storedTextChanged(entry);
}

void EntryTree::setForeignRecords(Entry *entry, ForeignRecordList records)
{
    entry->m_foreignRecords = records.empty() ? nullptr : std::make_unique<const ForeignRecordList>(std::move(records));
}

void EntryTree::setPendingText(Entry *entry, std::function<QByteArray()> source)
{
    if (entry != m_pendingEntry)
        resolvePendingText();
    m_pendingEntry = entry;
    m_pendingSource = std::move(source);
}

void EntryTree::resolvePendingText() const
{
    if (!m_pendingEntry)
        return;
    // When it cannot be made now, for lack of memory say, it is still to be made: nothing else holds what was typed.
    m_pendingEntry->m_storedText = m_pendingSource();
    m_pendingEntry = nullptr;
    m_pendingSource = nullptr;
}

void EntryTree::forgetPendingText()
{
    m_pendingEntry = nullptr;
    m_pendingSource = nullptr;
}

void EntryTree::requireRoomFor(int more) const
{
    if (entryCount() + more > maximumCount)
        throw RunTimeError(ErrorNumber::Overflow, u"Overflow: an outline holds at most %1 entries"_s.arg(maximumCount));
}

void EntryTree::renumber(Entry *parent, int fromRow)
{
    for (int row = fromRow; row < parent->childCount(); ++row)
        parent->m_children[static_cast<size_t>(row)]->m_row = row;
}
