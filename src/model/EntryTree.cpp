// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryTree.h"

#include "util/RunTimeError.h"

#include <QCollator>

#include <algorithm>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace
{

int subtreeSize(const Entry *top)
{
    int size = 0;
    for (const Entry *entry = top; entry; entry = nextInOutline(entry, top))
        ++size;
    return size;
}

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

EntryTree::~EntryTree()
{
    while (!m_references.empty())
        m_references.back()->clear();
}

Entry *EntryTree::insert(Relationship relationship, Entry *relative)
{
    requireRoomFor(1);
    const Place place = placeFor(relationship, relative);
    return attach(std::unique_ptr<Entry>(new Entry), place);
}

Entry *EntryTree::insertCopy(const EntryTree &sourceTree, const Entry *source, Relationship relationship,
                             Entry *relative)
{
    requireRoomFor(subtreeSize(source));
    const Place place = placeFor(relationship, relative);
    sourceTree.resolvePendingText();

    // The copy is complete before it joins the tree, so a copy into the source's own subtree copies what was there
    // before.
    struct Pair {
        const Entry *source;
        Entry *copy;
    };

    std::unique_ptr<Entry> top(new Entry);
    std::vector<Pair> pending = {{source, top.get()}};
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
    }
    return attach(std::move(top), place);
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

Entry *EntryTree::attach(std::unique_ptr<Entry> subtree, const Place &place)
{
    Entry *top = subtree.get();
    if (announcing())
        beginInsertRows(indexOf(place.parent), place.row, place.row);
    top->m_parent = place.parent;
    if (place.parent) {
        std::vector<std::unique_ptr<Entry>> &siblings = place.parent->m_children;
        siblings.insert(siblings.begin() + place.row, std::move(subtree));
        renumber(place.parent, place.row);
    } else {
        m_root = std::move(subtree);
    }
    bool expansion = false;
    for (Entry *entry = top; entry; entry = nextInOutline(entry, top)) {
        m_collection.append(entry);
        expansion = expansion || entry->m_expanded;
    }
    assertWhole(top);
    if (announcing()) {
        endInsertRows();
        if (expansion)
            Q_EMIT expansionReset();
    }
    return top;
}

void EntryTree::move(Entry *entry, Relationship relationship, Entry *relative)
{
    const Place place = placeFor(relationship, relative);
    if (!entry->m_parent || !place.parent || place.parent == entry || entry->isAncestorOf(place.parent))
        throw RunTimeError(ErrorNumber::InvalidCall, u"An entry cannot be moved into itself"_s);
    Entry *from = entry->m_parent;
    const int row = entry->m_row;
    const bool inPlace = from == place.parent && (place.row == row || place.row == row + 1);
    if (!inPlace) {
        if (announcing())
            beginMoveRows(indexOf(from), row, row, indexOf(place.parent), place.row);
        std::vector<std::unique_ptr<Entry>> &old = from->m_children;
        std::unique_ptr<Entry> moving = std::move(old[static_cast<size_t>(row)]);
        old.erase(old.begin() + row);
        // The place was counted with the entry still among its siblings.
        const int newRow = place.row - (from == place.parent && place.row > row ? 1 : 0);
        entry->m_parent = place.parent;
        std::vector<std::unique_ptr<Entry>> &siblings = place.parent->m_children;
        siblings.insert(siblings.begin() + newRow, std::move(moving));
        renumber(from, from == place.parent ? std::min(row, newRow) : row);
        if (from != place.parent)
            renumber(place.parent, newRow);
        assertWhole(entry);
        if (announcing())
            endMoveRows();
    }
    renewInsertion(entry);
}

void EntryTree::renewInsertion(Entry *entry)
{
    for (Entry *each = entry; each; each = nextInOutline(each, entry)) {
        m_collection.remove(each);
        m_collection.append(each);
    }
    assertWhole(entry);
}

void EntryTree::remove(Entry *entry)
{
    dropReferences([entry](const Entry *each) { return each == entry || entry->isAncestorOf(each); });
    Entry *parent = entry->m_parent;
    const int row = entry->m_row;
    if (announcing())
        beginRemoveRows(indexOf(parent), row, row);
    forget(entry);
    std::unique_ptr<Entry> removed;
    if (parent) {
        std::vector<std::unique_ptr<Entry>> &siblings = parent->m_children;
        removed = std::move(siblings[static_cast<size_t>(row)]);
        siblings.erase(siblings.begin() + row);
        renumber(parent, row);
    } else {
        removed = std::move(m_root);
    }
    assertWhole(parent);
    if (announcing())
        endRemoveRows();
}

void EntryTree::removeAll(const std::vector<Entry *> &entries)
{
    const BulkChange bulk(*this);
    const std::unordered_set<const Entry *> tops(entries.begin(), entries.end());
    dropReferences([&tops](const Entry *each) {
        while (each && !tops.contains(each))
            each = each->m_parent;
        return each != nullptr;
    });
    std::unordered_set<Entry *> parents;
    for (Entry *entry : entries) {
        forget(entry);
        parents.insert(entry->m_parent);
    }
    // Closing the gap behind every single one would cost its number of siblings each time.
    for (Entry *parent : parents) {
        if (!parent) {
            m_root.reset();
            continue;
        }
        std::erase_if(parent->m_children, [&tops](const auto &child) { return tops.contains(child.get()); });
        renumber(parent, 0);
    }
    assertWhole(m_root.get());
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

void EntryTree::setExpandedAll(Entry *entry, bool expanded)
{
    for (Entry *each = entry; each; each = nextInOutline(each, entry))
        each->m_expanded = expanded;
    if (announcing())
        Q_EMIT expansionReset();
}

void EntryTree::expandAncestors(Entry *entry)
{
    for (Entry *ancestor = entry->m_parent; ancestor; ancestor = ancestor->m_parent)
        setExpanded(ancestor, true);
}

void EntryTree::expandToLevel(Entry *entry, int level)
{
    int depth = entry->level();
    Entry *each = entry;
    bool changed = false;
    while (each) {
        const bool open = depth < level;
        if (each->childCount() > 0 && each->m_expanded != open) {
            each->m_expanded = open;
            changed = true;
        }
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
    if (changed && announcing())
        Q_EMIT expansionReset();
}

void EntryTree::setSorted(Entry *entry, bool sorted)
{
    entry->m_sorted = sorted;
    if (sorted)
        sortChildren(entry);
}

void EntryTree::sortChildren(Entry *entry)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const auto before = [&collator](const std::unique_ptr<Entry> &a, const std::unique_ptr<Entry> &b) {
        return collator.compare(a->m_label, b->m_label) < 0;
    };
    std::vector<std::unique_ptr<Entry>> &children = entry->m_children;
    if (std::is_sorted(children.begin(), children.end(), before))
        return;
    const QPersistentModelIndex parent(indexOf(entry));
    if (announcing())
        Q_EMIT layoutAboutToBeChanged({parent}, QAbstractItemModel::VerticalSortHint);
    std::stable_sort(children.begin(), children.end(), before);
    renumber(entry, 0);
    assertWhole(entry);
    if (announcing()) {
        const QModelIndexList from = persistentIndexList();
        QModelIndexList to;
        to.reserve(from.size());
        for (const QModelIndex &index : from)
            to.push_back(indexOf(entryAt(index)));
        changePersistentIndexList(from, to);
        Q_EMIT layoutChanged({parent}, QAbstractItemModel::VerticalSortHint);
    }
}

QByteArray EntryTree::storedText(const Entry *entry) const
{
    if (entry == m_pendingEntry)
        resolvePendingText();
    return entry->m_storedText;
}

void EntryTree::setStoredText(Entry *entry, const QByteArray &storedText)
{
    if (entry == m_pendingEntry) {
        m_pendingEntry = nullptr;
        m_pendingSource = nullptr;
    }
    if (entry == m_shown)
        m_shown = nullptr;
    entry->m_storedText = storedText;
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

// Takes a subtree that goes out of all that is counted and numbered.
void EntryTree::forget(Entry *subtree)
{
    for (Entry *gone = subtree; gone; gone = nextInOutline(gone, subtree)) {
        m_collection.remove(gone);
        m_taggedCount -= gone->m_tagged ? 1 : 0;
    }
}

// Lets go of every entry that goes.
void EntryTree::dropReferences(const std::function<bool(const Entry *)> &goes)
{
    if (m_selected && goes(m_selected))
        select(nullptr);
    if (m_shown && goes(m_shown))
        m_shown = nullptr;
    const std::vector<EntryRef *> references = m_references;
    for (EntryRef *reference : references) {
        if (goes(reference->entry()))
            reference->clear();
    }
    if (m_pendingEntry && goes(m_pendingEntry)) {
        m_pendingEntry = nullptr;
        m_pendingSource = nullptr;
    }
}

void EntryRef::set(EntryTree *tree, Entry *entry)
{
    clear();
    if (!tree || !entry)
        return;
    m_tree = tree;
    m_entry = entry;
    tree->m_references.push_back(this);
}

void EntryRef::clear()
{
    if (m_tree)
        std::erase(m_tree->m_references, this);
    m_tree = nullptr;
    m_entry = nullptr;
}
