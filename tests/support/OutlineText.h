// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryTree.h"
#include "model/StoredText.h"
#include "rtf/Rtf.h"

#include <QStringList>

#include <vector>

// Outlines as indented text: one line an entry, one blank more for each level, and behind the label the marks of its
// state: "+" expanded, "*" tagged, "<" selected. A mark is set off from the label by one blank, marks follow each
// other:
//
//     Root +
//      First *
//      Second <

// Fills an empty tree.
inline void plantOutline(EntryTree &tree, const QStringList &lines)
{
    std::vector<Entry *> path;
    for (const QString &line : lines) {
        qsizetype depth = 0;
        while (line.startsWith(QString(depth + 1, u' ')))
            ++depth;
        path.resize(static_cast<size_t>(depth));
        Entry *entry = tree.insert(Relationship::tvwChild, path.empty() ? nullptr : path.back());
        path.push_back(entry);
        QString label = line.mid(depth);
        const qsizetype blank = label.lastIndexOf(u' ');
        const QString marks = blank < 0 ? QString() : label.mid(blank + 1);
        const bool marked = !marks.isEmpty() && QString(marks).remove(u'+').remove(u'*').remove(u'<').isEmpty();
        if (marked)
            label.truncate(blank);
        tree.setLabel(entry, label);
        tree.setExpanded(entry, marked && marks.contains(u'+'));
        tree.setTagged(entry, marked && marks.contains(u'*'));
        if (marked && marks.contains(u'<'))
            tree.select(entry);
    }
}

// The whole tree as such lines.
inline QStringList dumpOutline(const EntryTree &tree)
{
    QStringList lines;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root())) {
        QString marks;
        marks += QLatin1String(entry->expanded() ? "+" : "");
        marks += QLatin1String(entry->tagged() ? "*" : "");
        marks += QLatin1String(entry == tree.selected() ? "<" : "");
        lines.append(QString(entry->level() - 1, u' ') + entry->label() + (marks.isEmpty() ? QString() : u' ' + marks));
    }
    return lines;
}

// An entry's text without its formatting.
inline QString plainTextOf(const EntryTree &tree, const Entry *entry)
{
    return rtf::toPlainText(NodeTextDecompressIfRequired(tree.storedText(entry)));
}

// The first entry of that label in outline order; null when there is none.
inline Entry *entryLabelled(const EntryTree &tree, const QString &label)
{
    const Entry *entry = tree.root();
    while (entry && entry->label() != label)
        entry = nextInOutline(entry, tree.root());
    return const_cast<Entry *>(entry);
}
