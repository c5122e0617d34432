// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryTree.h"
#include "platform/TreeView.h"

#include <QItemSelectionModel>

inline QString described(const Entry *entry)
{
    return entry ? QLatin1Char('"') + entry->label() + QLatin1Char('"') : QStringLiteral("no entry");
}

// How the rows that an outline pane shows differ from its tree, in words; empty when they do not.
inline QString shownDifference(const TreeView &view, const EntryTree &tree)
{
    QModelIndex row = tree.index(0, 0);
    const Entry *entry = tree.root();
    int level = 1;
    while (entry && row.isValid()) {
        if (tree.entryAt(row) != entry || row.data().toString() != entry->label())
            return QStringLiteral("the pane shows %1 instead of %2")
                .arg(described(tree.entryAt(row)), described(entry));
        const bool open = entry->expanded() && entry->childCount() > 0 && level <= TreeView::deepestOpenLevel;
        if (view.isExpanded(row) != open)
            return QStringLiteral("the pane shows %1 %2")
                .arg(described(entry), open ? QStringLiteral("closed") : QStringLiteral("open"));
        row = view.indexBelow(row);
        if (open) {
            entry = entry->firstChild();
            ++level;
            continue;
        }
        while (entry && !entry->next()) {
            entry = entry->parent();
            --level;
        }
        entry = entry ? entry->next() : nullptr;
    }
    if (entry || row.isValid())
        return entry ? QStringLiteral("the pane lacks %1").arg(described(entry))
                     : QStringLiteral("the pane shows too many rows");
    const QModelIndexList marked = view.selectionModel()->selectedIndexes();
    if (!tree.selected())
        return marked.isEmpty() ? QString() : QStringLiteral("the pane marks a row, and none is selected");
    const QModelIndex selected = tree.indexOf(tree.selected());
    if (view.currentIndex() != selected || marked != QModelIndexList{selected})
        return QStringLiteral("the pane does not mark %1").arg(described(tree.selected()));
    return QString();
}
