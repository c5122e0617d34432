// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntriesById.h"
#include "model/Entry.h"
#include "model/EntryCollection.h"
#include "model/EntryRecord.h"
#include "model/Subtree.h"
#include "util/Bracket.h"

#include <QAbstractItemModel>
#include <QPointer>

#include <functional>
#include <unordered_set>
#include <vector>

// Where an entry is inserted, seen from a relative entry.
enum class Relationship { tvwFirst = 0, tvwLast = 1, tvwNext = 2, tvwPrevious = 3, tvwChild = 4 };

// Entries to be expanded and collapsed.
struct Expansion {
    std::vector<EntryId> opened;
    std::vector<EntryId> closed;
};

// The outline of one document: a single-rooted, ordered tree of entries with the selected entries and the order of
// insertion. It is the item model that the outline pane shows (one column; the label is the edit role, and the display
// role what is shown of it).
// At most 32767 entries: one more is run-time error 6. No operation recurses on the depth of the tree. An operation
// that fails, for lack of memory say, leaves the tree as it was.
class EntryTree final : public QAbstractItemModel
{
    Q_OBJECT

public:
    static constexpr int maximumCount = 32767;

    // The item's image by name: "Folder" or "FolderTagged", and the same for the selected item.
    enum Role { ImageRole = Qt::UserRole, SelectedImageRole };

    explicit EntryTree(QObject *parent = nullptr);
    ~EntryTree() override;

    Entry *root() const { return m_root.get(); }

    // The entry of that id; null when it is not in this tree, be it that it was taken out.
    Entry *entry(EntryId id) const { return m_byId.find(id); }

    int entryCount() const { return m_collection.count(); }

    const EntryCollection &collection() const { return m_collection; }

    int taggedCount() const { return m_taggedCount; }

    // A place as the parent (null for the root's) and the row that the entry will have.
    struct Place {
        Entry *parent;
        int row;
    };

    // The place that a relationship names; error 5 when it does not exist.
    Place placeFor(Relationship relationship, Entry *relative) const;

    // Error 6 when the tree could not take that many entries more.
    void requireRoomFor(int more) const;

    // Adds an empty entry; with no relative the tree must be empty and the entry becomes the root. Errors: 6 when the
    // tree is full, 5 when the place does not exist (a sibling of the root).
    Entry *insert(Relationship relationship, Entry *relative);
    // Adds a copy of the source's subtree as it stands now, which may be of another tree: labels, stored texts and
    // expansion, never tags. Errors as insert(); a refused copy changes nothing.
    Entry *insertCopy(const EntryTree &sourceTree, const Entry *source, Relationship relationship, Entry *relative);
    // Such a copy, in no tree yet.
    Subtree copyOf(const Entry *source) const;
    // Puts an entry with its subtree, as it is, at another place of this tree; it goes to the end of the order of
    // insertion. Error 5 when the place lies inside the subtree or does not exist.
    void move(Entry *entry, Relationship relationship, Entry *relative);
    // The place that a move leads to, counted without the entry; errors as move().
    Place placeForMove(const Entry *entry, Relationship relationship, Entry *relative) const;
    // Moves there, and in the order of insertion to the places that insertionPlaces() gave, or to its end without any.
    void moveTo(Entry *entry, const Place &place, const std::vector<qint64> &insertion = {});
    // Moves an entry's subtree to the end of the order of insertion, or back to its places.
    void renewInsertion(Entry *entry, const std::vector<qint64> &insertion = {});
    // The places of an entry and its descendants, in outline order, in the order of insertion.
    std::vector<qint64> insertionPlaces(const Entry *entry) const;
    // Removes an entry with its subtree; a selection inside is dropped.
    void remove(Entry *entry);
    // The same for many, none of which lies inside another; announced as one reset.
    void removeAll(const std::vector<Entry *> &entries);
    // Removes an entry and hands it over with its subtree; put() is its exact inverse.
    Subtree take(Entry *entry);
    std::vector<TakenSubtree> takeAll(const std::vector<Entry *> &entries);
    // Puts a subtree, which is empty afterwards, at a place that exists; null is the root's parent. Error 6 when the
    // tree is full, and then the subtree is as it was.
    Entry *put(Subtree &subtree, const Place &place);
    // Puts back what takeAll() took, with the tree as that left it; announced as one reset.
    void putAll(std::vector<TakenSubtree> &taken);
    // A subtree as values, with the texts as they are stored: what is pending is not made for it.
    static EntryRecords recordsOf(const Entry *top);
    // New entries, with new ids, for the records of one subtree; error 321 when they are not those of one.
    static Subtree subtreeOf(const EntryRecords &records);
    void clear();

    // "KEY" + the path: "0" for the root, and the parent's path + "." + the 1-based place for any other entry. Always
    // current, because it is derived from the entry's place.
    QString key(const Entry *entry) const;
    // The entry of that key; error 35601 when there is none.
    Entry *itemByKey(const QString &key) const;
    // The same for a path, which is the key without its prefix.
    Entry *itemByPath(QByteArrayView path) const;

    void setLabel(Entry *entry, const QString &label);
    void setTagged(Entry *entry, bool tagged);
    void setExpanded(Entry *entry, bool expanded);
    // Expands or collapses an entry and every descendant.
    void setExpandedAll(Entry *entry, bool expanded);
    // Expands every ancestor of an entry.
    void expandAncestors(Entry *entry);
    // Expands the entry's subtree so that levels up to `level` are open, and closes the entries of that level; what
    // lies below a closed entry keeps its state.
    void expandToLevel(Entry *entry, int level);
    // What that would open and close.
    Expansion expansionToLevel(const Entry *entry, int level) const;
    // What setExpandedAll() would.
    Expansion expansionOfAll(const Entry *entry, bool expanded) const;
    // Opens and closes entries of this tree, announced at once.
    void setExpansion(const Expansion &expansion);
    // Sets the sorted state of an entry; setting it sorts the children once, by label.
    void setSorted(Entry *entry, bool sorted);

    // The state alone.
    void markSorted(Entry *entry, bool sorted) { entry->m_sorted = sorted; }

    // The rows of the children in the order of their labels; empty when they stand so.
    std::vector<int> sortedOrder(const Entry *entry) const;
    // Puts the children into an order of their rows.
    void reorder(Entry *entry, const std::vector<int> &order);

    // The text that was stored last, whatever is pending.
    static const QByteArray &textLastStored(const Entry *entry) { return entry->m_storedText; }

    // The entry's text in its stored form.
    QByteArray storedText(const Entry *entry) const;
    void setStoredText(Entry *entry, const QByteArray &storedText);
    // Lets an entry's stored text be made when it is next read, from a source that must stay valid until then: the text
    // pane stores every change at once, but compresses only what somebody reads. At most one entry is pending.
    void setPendingText(Entry *entry, std::function<QByteArray()> source);
    void resolvePendingText() const;

    bool isPending(const Entry *entry) const { return entry == m_pendingEntry; }

    // What a file says of an entry that this program does not know. Copies have it too.
    void setForeignRecords(Entry *entry, ForeignRecordList records);

    // The current entry, whose text is shown: the selected one, unless several are.
    Entry *selected() const { return m_selected; }

    // Makes an entry the current one. Another than was current is the only one selected then.
    void select(Entry *entry);
    // Selects exactly these, or the current one alone where they are fewer than two. The current one need not be one of
    // several.
    void select(Entry *current, const std::vector<Entry *> &several);

    bool areSeveralSelected() const { return !m_several.empty(); }

    bool isSelected(const Entry *entry) const;
    int selectedCount() const;
    // In the order of the outline.
    std::vector<Entry *> selectedEntries() const;
    // The ids of several, in any order; none while one is selected.
    std::vector<EntryId> severalIds() const;
    // The entries of ids that are in this tree.
    std::vector<Entry *> entriesOf(const std::vector<EntryId> &ids) const;

    // The model index of an entry, and the entry of an index (null for an invalid one).
    QModelIndex indexOf(const Entry *entry) const;
    Entry *entryAt(const QModelIndex &index) const;

    // Between these two, changes are not announced one by one; the end announces a reset. They nest.
    void beginBulkChange();
    void endBulkChange();

    // Who puts down the labels that views edit, instead of the tree itself.
    void setLabelWriter(std::function<void(Entry *, const QString &)> writer) { m_labelWriter = std::move(writer); }

    // What is wrong with the tree's structure, in words; empty when nothing is.
    QString brokenInvariant() const;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    using QObject::parent;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    void selectedChanged(Entry *entry);
    // Others are selected, be it beside the same current one. Not told of entries that go.
    void severalChanged();
    void expandedChanged(Entry *entry, bool expanded);
    // The expansion of many entries changed at once: whoever mirrors it reads it again as a whole.
    void expansionReset();
    void labelChanged(Entry *entry);
    // Not by the source that makes a text when it is read.
    void storedTextChanged(const Entry *entry);

private:
    void makeRoomFor(int more);
    void renumber(Entry *parent, int fromRow);
    static qsizetype weightOf(const Entry &entry);
    bool enter(Entry *top);
    qsizetype leave(Entry *top);
    static bool liesBelow(const Entry *entry, const std::vector<Entry *> &tops);
    void letGoOf(const std::vector<Entry *> &tops);
    void forgetPendingText();
    void deselectHidden();
    // In debug builds, goes down where the tree is not whole: around an entry, and as a whole where it is small.
    void assertWhole(const Entry *entry) const;

    bool announcing() const { return m_bulkDepth == 0; }

    std::unique_ptr<Entry> m_root;
    EntryCollection m_collection;
    EntriesById m_byId;
    Entry *m_selected = nullptr;
    // Two or more, or none where only the current one is selected.
    std::unordered_set<EntryId> m_several;
    mutable Entry *m_pendingEntry = nullptr;
    mutable std::function<QByteArray()> m_pendingSource;
    std::function<void(Entry *, const QString &)> m_labelWriter;
    int m_taggedCount = 0;
    int m_bulkDepth = 0;
};

// Announces what happens to a tree while it lives as one reset, so that the pane is laid out once.
using BulkChange = Bracket<EntryTree, &EntryTree::beginBulkChange, &EntryTree::endBulkChange>;

// A reference to an entry that is empty as long as the entry is not in its tree, and when the tree is gone.
class EntryRef
{
public:
    EntryRef() = default;

    EntryRef(const EntryTree *tree, const Entry *entry) { set(tree, entry); }

    void set(const EntryTree *tree, const Entry *entry)
    {
        m_tree = entry ? tree : nullptr;
        m_id = tree && entry ? entry->id() : EntryId::None;
    }

    void clear() { set(nullptr, nullptr); }

    EntryId id() const { return m_id; }

    Entry *entry() const { return m_tree ? m_tree->entry(m_id) : nullptr; }

    // Null unless the entry is in it.
    const EntryTree *tree() const { return entry() ? m_tree.data() : nullptr; }

private:
    QPointer<const EntryTree> m_tree;
    EntryId m_id = EntryId::None;
};
