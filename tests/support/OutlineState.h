// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Outline.h"

#include <QStringList>

inline QString stateOf(const ForeignRecordList &records)
{
    QStringList parts;
    for (const ForeignRecords &each : records)
        parts.append(QString::number(each.behind) + QString::fromLatin1(each.bytes));
    return parts.join(u' ');
}

// All that an outline holds, a line an entry: what undoing must restore.
inline QStringList contentOf(const Outline &outline)
{
    const EntryTree &tree = outline.tree;
    QStringList lines;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root())) {
        lines.append(
            QStringLiteral("%1 #%2 \"%3\" (%4)%5%6 inserted %7 %8")
                .arg(tree.key(entry))
                .arg(static_cast<quint64>(entry->id()))
                .arg(entry->label(), QString::fromLatin1(tree.storedText(entry)))
                .arg(QLatin1String(entry->tagged() ? " tagged" : ""), QLatin1String(entry->sorted() ? " sorted" : ""))
                .arg(tree.collection().indexOf(entry))
                .arg(stateOf(entry->foreignRecords())));
    }
    lines.append(QStringLiteral("fonts ") + outline.outlineFont.Name() + u' ' + outline.textFont.Name());
    lines.append(QStringLiteral("beside ") + stateOf(outline.foreignHeader) + u' ' +
                 QString::fromLatin1(outline.foreignTrailer));
    return lines;
}

// And what is seen of it.
inline QStringList expansionOf(const Outline &outline)
{
    QStringList lines;
    for (const Entry *entry = outline.tree.root(); entry; entry = nextInOutline(entry, outline.tree.root())) {
        if (entry->expanded())
            lines.append(QString::number(static_cast<quint64>(entry->id())));
    }
    return lines;
}

inline QStringList stateOf(const Outline &outline)
{
    const Entry *selected = outline.tree.selected();
    return contentOf(outline) + expansionOf(outline) +
           QStringList(selected ? outline.tree.key(selected) : QStringLiteral("nothing selected"));
}
