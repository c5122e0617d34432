// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"
#include "model/ForeignRecords.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

class EntryTree;

// One entry of an outline. Read through its own members, changed only through the EntryTree that owns it. What
// remembers an entry beyond a single operation holds its id, or an EntryRef.
class Entry
{
public:
    ~Entry();
    Entry(const Entry &) = delete;
    Entry &operator=(const Entry &) = delete;

    EntryId id() const { return m_id; }

    const QString &label() const { return m_label; }

    bool tagged() const { return m_tagged; }

    bool expanded() const { return m_expanded; }

    bool sorted() const { return m_sorted; }

    // What its file says of the entry that this program does not know.
    const ForeignRecordList &foreignRecords() const;

    Entry *parent() const { return m_parent; }

    bool isRoot() const { return !m_parent; }

    int childCount() const { return static_cast<int>(m_children.size()); }

    // The child at a 0-based row, or null beyond the last.
    Entry *child(int row) const;

    Entry *firstChild() const { return child(0); }

    // The 0-based place among the siblings; 0 for the root.
    int row() const { return m_row; }

    Entry *next() const;
    Entry *previous() const;
    Entry *firstSibling() const;
    Entry *lastSibling() const;
    Entry *root() const;
    // 1 for the root and one more for each ancestor.
    int level() const;
    // Whether all ancestors are expanded, so that the outline pane has a row for the entry.
    bool visible() const;
    bool isAncestorOf(const Entry *other) const;

private:
    friend class EntryTree;
    friend class EntryCollection;
    friend class Subtree;
    Entry();

    const EntryId m_id;
    QString m_label;
    QByteArray m_storedText;
    Entry *m_parent = nullptr;
    std::vector<std::unique_ptr<Entry>> m_children;
    int m_row = 0;
    // Its place in the order of insertion: the slot in the collection, while in a tree, and the number that says what
    // was inserted before what, which it keeps; 0 before it first is in a tree.
    qsizetype m_slot = -1;
    qint64 m_insertion = 0;
    // Null for nearly every entry.
    std::unique_ptr<const ForeignRecordList> m_foreignRecords;
    bool m_tagged = false;
    bool m_expanded = false;
    bool m_sorted = false;
};

// The entry behind this one in outline order (its first child, else the nearest following sibling of it or an ancestor)
// that still lies below `top`; null at the end. Walks a whole subtree without recursion.
Entry *nextInOutline(const Entry *entry, const Entry *top);

// How many entries a subtree has.
int subtreeSize(const Entry *top);
