// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Content.h"
#include "rtf/FormatCache.h"
#include "rtf/ListPlacer.h"

#include <QTextBlockFormat>
#include <QTextCursor>

class QTextTable;

namespace rtf
{

// Puts paragraphs and tables one behind the other into a text document.
class BlockPlacer
{
public:
    enum class Start : quint8 {
        EmptyDocument, // the first paragraph is the document's own, or an empty one at its end
        InText,        // the first paragraph goes on where the cursor is
    };

    BlockPlacer(QTextCursor &cursor, Start start, FormatCache &formats);

    void place(const Paragraph &paragraph);
    void place(const Table &table);

    // A table at the end is followed by a paragraph: gives it a format of its own.
    void finish();

private:
    // Where a sequence of paragraphs and tables goes: the document, or a cell.
    struct Place {
        QTextCursor &cursor;
        bool hasBlock = false;   // the cursor's block is taken
        bool afterTable = false; // the cursor's block only stands behind a table
        bool isCell = false;
    };

    void place(const Paragraph &paragraph, Place &place);
    void place(const Table &table, Place &place);
    void place(const std::vector<Content> &contents, Place &place);
    bool beginInText(const QTextBlockFormat &block, const QTextCharFormat &mark);
    void applyFirstFormat();
    void fillRow(const Table &table, std::size_t row, QTextTable &target);
    Paragraph plainParagraph();
    QTextTableFormat tableFormat(const Table &table);

    FormatCache &m_formats;
    ListPlacer m_lists;
    Place m_place;
    bool m_isInText;
    std::size_t m_tables = 0; // placed so far
    int m_firstBlock = -1;    // position of a block whose format is to be set if another follows
    QTextBlockFormat m_firstFormat;
};

} // namespace rtf
