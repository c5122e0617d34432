// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/PlainText.h"

#include "rtf/CellRange.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

#include <algorithm>

namespace rtf
{

namespace
{

// The text of the part [from, to) of one paragraph, a picture as U+FFFC.
void appendBlock(QString &text, const QTextBlock &block, int from, int to)
{
    const qsizetype begin = text.size();
    text += QStringView(block.text()).mid(from, to - from);
    for (qsizetype i = begin; i < text.size(); ++i) {
        if (text[i] == QChar::LineSeparator) {
            text[i] = QLatin1Char('\n');
        }
    }
}

QString findableRange(const QTextDocument &document, int from, int to)
{
    QString text;
    text.reserve(to - from + 16);
    for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() <= to; block = block.next()) {
        if (block.position() > from) {
            text += QStringLiteral("\r\n");
        }
        const int last = block.position() + block.length() - 1;
        appendBlock(text, block, qMax(from, block.position()) - block.position(), qMin(to, last) - block.position());
    }
    return text;
}

QString plainRange(const QTextDocument &document, int from, int to)
{
    return findableRange(document, from, to).replace(QChar::ObjectReplacementCharacter, QLatin1Char(' '));
}

// Row by row. A place that a joined cell covers is an empty one, so that the columns stay below each other.
QString plainCells(const QTextDocument &document, const CellRange &cells)
{
    QString text;
    for (int row = cells.firstRow; row < cells.endRow(); ++row) {
        if (row > cells.firstRow) {
            text += QStringLiteral("\r\n");
        }
        for (int column = cells.firstColumn; column < cells.endColumn(); ++column) {
            if (column > cells.firstColumn) {
                text += QLatin1Char('\t');
            }
            const QTextTableCell cell = cells.table->cellAt(row, column);
            if (row == std::max(cell.row(), cells.firstRow) && column == std::max(cell.column(), cells.firstColumn)) {
                text += plainRange(document, cell.firstPosition(), cell.lastPosition());
            }
        }
    }
    return text;
}

// The position behind the last character.
int endOf(const QTextDocument &document)
{
    return document.characterCount() - 1;
}

} // namespace

QString plainText(const QTextDocument &document)
{
    return plainRange(document, 0, endOf(document));
}

QString findableText(const QTextDocument &document)
{
    return findableRange(document, 0, endOf(document));
}

QString plainText(const QTextCursor &selection)
{
    if (!selection.hasSelection()) {
        return {};
    }
    if (const std::optional<CellRange> cells = selectedCells(selection)) {
        return plainCells(*selection.document(), *cells);
    }
    return plainRange(*selection.document(), selection.selectionStart(), selection.selectionEnd());
}

int textOffset(const QTextDocument &document, int position)
{
    const int place = qBound(0, position, endOf(document));
    return place + document.findBlock(place).blockNumber();
}

int documentPosition(const QTextDocument &document, int offset)
{
    int low = 0;
    int high = document.blockCount() - 1;
    while (low < high) {
        const int middle = (low + high + 1) / 2;
        if (document.findBlockByNumber(middle).position() + middle <= offset) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    const QTextBlock block = document.findBlockByNumber(low);
    return qBound(block.position(), offset - low, block.position() + block.length() - 1);
}

} // namespace rtf
