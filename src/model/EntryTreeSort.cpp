// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The order of siblings.

#include "model/EntryTree.h"

#include <QCollator>

#include <algorithm>
#include <numeric>

void EntryTree::setSorted(Entry *entry, bool sorted)
{
    markSorted(entry, sorted);
    if (!sorted)
        return;
    const std::vector<int> order = sortedOrder(entry);
    if (!order.empty())
        reorder(entry, order);
}

std::vector<int> EntryTree::sortedOrder(const Entry *entry) const
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const auto before = [&](int a, int b) {
        return collator.compare(entry->child(a)->m_label, entry->child(b)->m_label) < 0;
    };
    std::vector<int> order(entry->m_children.size());
    std::iota(order.begin(), order.end(), 0);
    if (std::is_sorted(order.begin(), order.end(), before))
        return {};
    std::stable_sort(order.begin(), order.end(), before);
    return order;
}

void EntryTree::reorder(Entry *entry, const std::vector<int> &order)
{
    std::vector<std::unique_ptr<Entry>> reordered(order.size());
    QList<QPersistentModelIndex> parents;
    if (announcing()) {
        parents.append(QPersistentModelIndex(indexOf(entry)));
        Q_EMIT layoutAboutToBeChanged(parents, QAbstractItemModel::VerticalSortHint);
    }
    for (size_t row = 0; row < order.size(); ++row)
        reordered[row] = std::move(entry->m_children[static_cast<size_t>(order[row])]);
    entry->m_children.swap(reordered);
    renumber(entry, 0);
    assertWhole(entry);
    if (!announcing())
        return;
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex &index : from)
        to.push_back(indexOf(entryAt(index)));
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged(parents, QAbstractItemModel::VerticalSortHint);
}
