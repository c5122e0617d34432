// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The tree as an item model: what the outline pane reads and is told.

#include "model/EntryTree.h"
#include "model/ShownLabel.h"

using namespace Qt::StringLiterals;

QModelIndex EntryTree::indexOf(const Entry *entry) const
{
    return entry ? createIndex(entry->m_row, 0, const_cast<Entry *>(entry)) : QModelIndex();
}

Entry *EntryTree::entryAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Entry *>(index.internalPointer()) : nullptr;
}

void EntryTree::beginBulkChange()
{
    if (m_bulkDepth++ == 0)
        beginResetModel();
}

void EntryTree::endBulkChange()
{
    if (--m_bulkDepth == 0)
        endResetModel();
}

QModelIndex EntryTree::index(int row, int column, const QModelIndex &parent) const
{
    if (column != 0 || row < 0)
        return QModelIndex();
    if (!parent.isValid())
        return row == 0 ? indexOf(m_root.get()) : QModelIndex();
    return indexOf(entryAt(parent)->child(row));
}

QModelIndex EntryTree::parent(const QModelIndex &child) const
{
    const Entry *entry = entryAt(child);
    return entry ? indexOf(entry->m_parent) : QModelIndex();
}

int EntryTree::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return parent.column() == 0 ? entryAt(parent)->childCount() : 0;
    return m_root ? 1 : 0;
}

int EntryTree::columnCount(const QModelIndex &) const
{
    return 1;
}

bool EntryTree::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

QVariant EntryTree::data(const QModelIndex &index, int role) const
{
    const Entry *entry = entryAt(index);
    if (!entry)
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
        return shownLabel(entry->m_label);
    case Qt::EditRole:
        return entry->m_label;
    case Qt::AccessibleDescriptionRole:
        return u"Level %1"_s.arg(entry->level()) + (entry->m_tagged ? u", tagged"_s : QString());
    case ImageRole:
        return entry->m_tagged ? u"FolderTagged"_s : u"Folder"_s;
    case SelectedImageRole:
        return entry->m_tagged ? u"FolderTaggedSelected"_s : u"FolderSelected"_s;
    default:
        return QVariant();
    }
}

bool EntryTree::setData(const QModelIndex &index, const QVariant &value, int role)
{
    Entry *entry = entryAt(index);
    if (!entry || role != Qt::EditRole)
        return false;
    if (m_labelWriter)
        m_labelWriter(entry, value.toString());
    else
        setLabel(entry, value.toString());
    return true;
}

Qt::ItemFlags EntryTree::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
}

void EntryTree::setLabel(Entry *entry, const QString &label)
{
    if (entry->m_label == label)
        return;
    entry->m_label = label;
    if (!announcing())
        return;
    const QModelIndex index = indexOf(entry);
    Q_EMIT dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
    Q_EMIT labelChanged(entry);
}

void EntryTree::setTagged(Entry *entry, bool tagged)
{
    if (entry->m_tagged == tagged)
        return;
    entry->m_tagged = tagged;
    m_taggedCount += tagged ? 1 : -1;
    assertWhole(entry);
    if (!announcing())
        return;
    const QModelIndex index = indexOf(entry);
    Q_EMIT dataChanged(index, index, {ImageRole, SelectedImageRole, Qt::AccessibleDescriptionRole});
}
