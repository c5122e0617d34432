// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

#include <QFont>

#include <unordered_set>

class EntryTree;
class QTextBlock;
class QTextCursor;
class QTextDocument;

// Where a piece of a composed text begins: with an entry's label, or within its text behind so many paragraphs.
struct PrintPlace {
    const Entry *entry = nullptr; // null: behind the last entry
    int paragraph = 0;

    bool operator==(const PrintPlace &other) const = default;
};

// How long a piece becomes before it ends: with an entry when it has so many characters, within an entry's text when
// that has so many lines. It is somewhat longer when what follows belongs to it.
struct PieceLength {
    qsizetype characters = 100000;
    // Counted roughly. A device cannot be laid out for beyond some 33 million pixels, and a line has a hundred or so.
    qsizetype lines = 50000;
};

// Composes what is printed of a document into one rich text: each entry's label as a heading, which is smaller the
// deeper the entry lies below the one that printing begins with, and under it the entry's text as the text pane shows
// it. An entry without label or text leaves out what it does not have.
class PrintComposition
{
public:
    // The extent's document must not change while this lives. `base` is the font of text that names none.
    PrintComposition(const PrintExtent &extent, const QFont &base);

    enum class Damage { Report, Ignore };

    // What printing begins with.
    PrintPlace first() const { return {m_top, 0}; }

    // Composes a piece of the text, from a place on, into an empty document. The place that comes next. Of a text that
    // is broken across pieces the document holds all, and what does not belong to the piece is not visible in it.
    // A text that is damaged is left out and, unless the same entries are composed again, reported.
    PrintPlace compose(QTextDocument &document, const PrintPlace &from, const PieceLength &length,
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
    // Entries whose text can be laid out whole. Finding that out builds the text once more than printing it takes, and
    // it is composed again for each of its pieces and each time that one is shown.
    mutable std::unordered_set<const Entry *> m_whole;
};
