// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Ports.h"

#include <QFont>

class EntryTree;
class QTextBlock;
class QTextCursor;
class QTextDocument;

// Composes what is printed of a document into one rich text: each entry's label as a heading, which is smaller the
// deeper the entry lies below the one that printing begins with, and under it the entry's text as the text pane shows
// it. An entry without label or text leaves out what it does not have.
class PrintComposition
{
public:
    // The extent's document must not change while this lives. `base` is the font of text that names none.
    PrintComposition(const PrintExtent &extent, const QFont &base);

    enum class Damage { Report, Ignore };

    // The entry that printing begins with.
    const Entry *first() const { return m_top; }

    // Composes the text of some entries in outline order into an empty document: from one on until the text has some
    // `characters` or the last entry is in it. The entry that comes next; null when none is left.
    // A text that is damaged is left out and, unless the same entries are composed again, reported.
    const Entry *compose(QTextDocument &document, const Entry *from, qsizetype characters,
                         Damage damage = Damage::Report) const;

    // The size of a heading in points, by its depth from 0.
    static qreal headingSize(int depth);
    // Whether a paragraph is an entry's label.
    static bool isHeading(const QTextBlock &block);

private:
    void addHeading(QTextCursor &cursor, const Entry *entry, bool isFirst) const;
    void addText(QTextCursor &cursor, const Entry *entry, Damage damage) const;

    const EntryTree &m_tree;
    const Entry *m_top;
    bool m_bDescendants;
    QFont m_base;
};
