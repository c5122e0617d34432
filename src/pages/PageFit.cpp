// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PageFit.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

#include <algorithm>

namespace
{

// What indents leave of the room for a line at least.
constexpr qreal leastLine = 0.25;

// Pictures are made that little smaller than their room, and tables that many pixels, for what rounding adds.
constexpr qreal spare = 0.99;
constexpr qreal tableSpare = 1;

qreal fixedWidth(const QList<QTextLength> &widths)
{
    qreal total = 0;
    for (const QTextLength &width : widths)
        total += width.type() == QTextLength::FixedLength ? width.rawValue() : 0;
    return total;
}

// The room for what stands in a frame, a cell of a table or the page.
qreal roomIn(const QTextFrame *frame, int position, qreal page)
{
    const auto *table = qobject_cast<const QTextTable *>(frame);
    if (!table)
        return page;
    const QTextTableCell cell = table->cellAt(position);
    const QTextTableFormat format = table->format();
    const QList<QTextLength> widths = format.columnWidthConstraints().mid(cell.column(), cell.columnSpan());
    qreal width = fixedWidth(widths);
    if (width <= 0)
        width = roomIn(table->parentFrame(), table->firstPosition() - 1, page) * cell.columnSpan() / table->columns();
    return std::max(1.0, width - 2 * format.cellPadding());
}

void fitTable(QTextTable &table, qreal page)
{
    const QTextTableFormat before = table.format();
    QTextTableFormat format = before;
    const qreal room = roomIn(table.parentFrame(), table.firstPosition() - 1, page);
    const qreal left = std::clamp(before.leftMargin(), 0.0, room * (1 - leastLine));
    const qreal right = std::clamp(before.rightMargin(), 0.0, room * (1 - leastLine) - left);
    const qreal around = 2 * before.border() + (table.columns() + 1) * before.cellSpacing();
    const qreal wide = std::max(room * leastLine, room - left - right) - around - tableSpare;
    QList<QTextLength> widths = before.columnWidthConstraints();
    const qreal total = fixedWidth(widths);
    if (total > wide && wide > 0) {
        const qreal factor = wide / total;
        for (QTextLength &width : widths) {
            if (width.type() == QTextLength::FixedLength)
                width = QTextLength(QTextLength::FixedLength, width.rawValue() * factor);
        }
        format.setColumnWidthConstraints(widths);
        format.setCellPadding(before.cellPadding() * factor);
    }
    if (left != before.leftMargin() || right != before.rightMargin()) {
        format.setLeftMargin(left);
        format.setRightMargin(right);
    }
    if (format != before)
        table.setFormat(format);
}

// A table before those inside it.
void fitTables(const QTextFrame &frame, qreal page)
{
    for (QTextFrame *child : frame.childFrames()) {
        if (auto *table = qobject_cast<QTextTable *>(child))
            fitTable(*table, page);
        fitTables(*child, page);
    }
}

// What a list and the paragraph's own level add to its left margin.
qreal indentOf(const QTextBlock &block)
{
    int steps = block.blockFormat().indent();
    if (const QTextList *list = block.textList())
        steps += list->format().indent();
    return steps * block.document()->indentWidth();
}

void fitIndents(const QTextBlock &block, qreal room)
{
    const QTextBlockFormat before = block.blockFormat();
    const qreal steps = indentOf(block);
    const qreal most = room * (1 - leastLine);
    const qreal left = std::clamp(before.leftMargin() + steps, 0.0, most);
    const qreal right = std::clamp(before.rightMargin(), 0.0, most - left);
    const qreal firstLine = std::clamp(before.textIndent(), -left, most - left - right);
    if (left - steps == before.leftMargin() && right == before.rightMargin() && firstLine == before.textIndent())
        return;
    QTextBlockFormat format = before;
    format.setLeftMargin(left - steps);
    format.setRightMargin(right);
    format.setTextIndent(firstLine);
    QTextCursor(block).setBlockFormat(format);
}

// The size that a picture that is larger than the room for it gets.
QSizeF fitted(const QTextImageFormat &picture, const QSizeF &room)
{
    const QSizeF size(picture.width(), picture.height());
    if (size.width() <= room.width() && size.height() <= room.height())
        return size;
    return size * std::min(room.width() / size.width(), room.height() / size.height()) * spare;
}

void fitPictures(const QTextBlock &block, const QSizeF &room)
{
    for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
        QTextImageFormat picture = it.fragment().charFormat().toImageFormat();
        if (!picture.isValid())
            continue;
        const QSizeF size = fitted(picture, room);
        if (size == QSizeF(picture.width(), picture.height()))
            continue;
        const int from = it.fragment().position();
        const int to = from + it.fragment().length();
        picture.setWidth(size.width());
        picture.setHeight(size.height());
        QTextCursor cursor(block);
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        cursor.setCharFormat(picture);
        it = block.begin();
    }
}

} // namespace

void fitToPage(const QTextBlock &first, const QTextBlock &last, const QSizeF &page)
{
    QTextFrame *root = first.document()->rootFrame();
    const bool hasTables = !root->childFrames().isEmpty();
    fitTables(*root, page.width());
    for (QTextBlock block = first; block.isValid() && block.blockNumber() <= last.blockNumber(); block = block.next()) {
        const QTextFrame *frame = hasTables ? QTextCursor(block).currentFrame() : root;
        const qreal room = roomIn(frame, block.position(), page.width());
        fitIndents(block, room);
        const QTextBlockFormat format = block.blockFormat();
        const qreal line = room - format.leftMargin() - indentOf(block) - format.rightMargin();
        fitPictures(block, QSizeF(line - std::max(0.0, format.textIndent()), page.height()));
    }
}
