// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PageFormatter.h"

#include "model/ReadableText.h"
#include "pages/LineFilter.h"
#include "pages/PageFit.h"
#include "rtf/Looks.h"
#include "rtf/PlainText.h"
#include "util/RunTimeError.h"

#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>
#include <QTextTable>

#include <algorithm>
#include <cmath>
#include <map>

namespace
{

// What a text document counts its lengths in.
constexpr qreal screenDpi = 96;

// The layout counts in such parts of a pixel, and cuts off what is between two.
constexpr qreal layoutSteps = 64;

qreal cutOff(qreal length)
{
    return std::floor(length * layoutSteps) / layoutSteps;
}

// The colours of what is printed.
QPalette paper()
{
    QPalette palette;
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Link, QColor(0, 0, 238));
    return palette;
}

} // namespace

PageFormatter::PageFormatter(std::unique_ptr<QTextDocument> document, QPaintDevice &device, const QSizeF &size,
                             const Place *above)
    : m_document(std::move(document))
{
    QTextBlock first = m_document->begin();
    while (first.next().isValid() && !first.isVisible())
        first = first.next();
    QTextBlock end = m_document->lastBlock();
    while (end != first && !end.isVisible())
        end = end.previous();
    m_firstBlock = first.blockNumber();
    m_lastBlock = end.blockNumber();
    layOut(device, size, above);
}

PageFormatter::~PageFormatter() = default;

void PageFormatter::layOut(QPaintDevice &device, const QSizeF &size, const Place *above)
{
    m_document->setDocumentMargin(0);
    m_scale = device.logicalDpiX() / screenDpi;
    checkCells();
    fitToPage(begin(), last(), size / m_scale);
    scaleIndents(m_scale);
    if (above)
        goOnBelow(*above);
    m_document->documentLayout()->setPaintDevice(&device);
    // Whole pixels, so that every page begins where the layout has it: it cuts off parts of them.
    m_document->setPageSize(QSizeF(std::floor(size.width()), std::floor(size.height())));
    finishLayout();
    checkHeight();
    keepWithNext();
    m_length = offsetOf(last().position() + last().length() - 1);
    findPages();
    m_readable = readableText(begin(), last(), paper());
}

QTextBlock PageFormatter::begin() const
{
    return m_document->findBlockByNumber(m_firstBlock);
}

QTextBlock PageFormatter::last() const
{
    return m_document->findBlockByNumber(m_lastBlock);
}

// A text that goes on below another one begins with an empty paragraph as tall as what is above: the layout leaves no
// distance above a text's first paragraph.
void PageFormatter::goOnBelow(const Place &above)
{
    QTextCursor cursor(begin());
    const QTextBlockFormat first = cursor.blockFormat();
    const QTextCharFormat mark = cursor.blockCharFormat();
    cursor.insertBlock(first, mark);
    cursor.movePosition(QTextCursor::PreviousBlock);
    QTextBlockFormat format;
    // Half a step more, so that the layout does not cut a step off.
    constexpr qreal half = 0.5 / layoutSteps;
    format.setLineHeight((above.y + half) / m_scale, QTextBlockFormat::FixedHeight);
    format.setBottomMargin((above.distance + half) / m_scale);
    cursor.setBlockFormat(format);
    ++m_firstBlock;
    ++m_lastBlock;
    m_beginsOnTop = above.y <= 0;
}

// The layout works ahead by small steps only, unless somebody asks how many pages there are.
void PageFormatter::finishLayout()
{
    m_document->documentLayout()->pageCount();
}

// The layout does not come to an end with a cell beyond its greatest height, so a cell's is estimated beforehand.
void PageFormatter::checkCells() const
{
    constexpr int charactersALine = 80;
    // Half of what there is: lines may be shorter than that.
    constexpr qreal greatestHeight = 1 << 24;
    if (m_document->rootFrame()->childFrames().isEmpty())
        return;
    int cell = -1;
    qreal height = 0;
    for (QTextBlock block = begin(); block.isValid() && block.blockNumber() <= m_lastBlock; block = block.next()) {
        const QTextTable *table = QTextCursor(block).currentTable();
        const int place = table ? table->cellAt(block.position()).firstPosition() : -1;
        if (place != cell)
            height = 0;
        cell = place;
        if (!table)
            continue;
        const QFontMetricsF font(block.charFormat().font());
        const int lines = 1 + block.length() / charactersALine;
        height += lines * font.lineSpacing() * m_scale;
        if (height > greatestHeight)
            throw RunTimeError(ErrorNumber::Overflow);
    }
}

// The layout's heights are of 32 bits. Behind their end it goes on far above the paper, so that nothing would be seen.
void PageFormatter::checkHeight() const
{
    QAbstractTextDocumentLayout &layout = *m_document->documentLayout();
    for (QTextBlock block = begin(); block.isValid() && block.blockNumber() <= m_lastBlock; block = block.next()) {
        const qreal top = layout.blockBoundingRect(block).top();
        const QTextLayout &lines = *block.layout();
        for (int i = 0; i < lines.lineCount(); ++i) {
            if (top + lines.lineAt(i).y() < -1)
                throw RunTimeError(ErrorNumber::Overflow);
        }
    }
}

// Moves paragraphs that are to stay with the next one to its page: headings do not stand at a page's foot. Where that
// would leave much of the page empty, they stay.
void PageFormatter::keepWithNext()
{
    const qreal mostEmpty = m_document->pageSize().height() / 4;
    QTextBlock first; // of those in a row that stay with the next
    for (QTextBlock block = begin(); block.blockNumber() < m_lastBlock; block = block.next()) {
        if (!rtf::staysWithNext(block.blockFormat())) {
            first = QTextBlock();
            continue;
        }
        if (!first.isValid())
            first = block;
        const QTextBlock before =
            m_beginsOnTop && first.blockNumber() == m_firstBlock ? QTextBlock() : first.previous();
        if (sheetOf(lineTop(block.next(), 0)) == sheetOf(lineTop(block, block.layout()->lineCount() - 1)) ||
            !before.isValid())
            continue;
        const qreal top = lineTop(first, 0);
        if (sheetOf(top) == sheetOf(lineTop(before, before.layout()->lineCount() - 1)) &&
            sheetOf(top) == sheetOf(lineTop(block, 0)) && lineTop(block, 0) - top < mostEmpty) {
            QTextCursor cursor(first);
            QTextBlockFormat format = first.blockFormat();
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            cursor.setBlockFormat(format);
            finishLayout();
        }
        first = QTextBlock();
    }
}

// Where a line stands, from the top of the first sheet.
qreal PageFormatter::lineTop(const QTextBlock &block, int line) const
{
    const QTextLine place = block.layout()->lineAt(std::max(0, line));
    return m_document->documentLayout()->blockBoundingRect(block).top() + (place.isValid() ? place.y() : 0);
}

int PageFormatter::sheetOf(qreal y) const
{
    return static_cast<int>(std::floor(y / m_document->pageSize().height()));
}

PageFormatter::Place PageFormatter::end() const
{
    const QTextBlock block = last();
    const QTextBlockFormat format = block.blockFormat();
    const QRectF rect = m_document->documentLayout()->blockBoundingRect(block);
    qreal y = rect.top();
    if (block.length() == 1 && block.previous().isValid() && QTextCursor(block.previous()).currentTable()) {
        // The layout takes an empty paragraph behind a table back up into it.
        y += rect.height();
    } else if (block.layout()->lineCount() > 0) {
        // The layout moves a line within its height when the paragraph sets that.
        const QTextLine line = block.layout()->lineAt(block.layout()->lineCount() - 1);
        const qreal height =
            cutOff(format.lineHeight(std::ceil(line.ascent() + line.descent() + line.leading()), m_scale));
        qreal moved = 0;
        if (format.lineHeightType() == QTextBlockFormat::FixedHeight)
            moved = line.ascent() + std::max(line.leading(), 0.0) - cutOff(height * 4 / 5);
        else if (format.lineHeightType() == QTextBlockFormat::MinimumHeight)
            moved = line.height() - height;
        y += line.y() + moved + height;
    }
    return {y, format.bottomMargin() * m_scale};
}

// A layout for another device scales every length but the indents of paragraphs.
void PageFormatter::scaleIndents(qreal factor)
{
    QTextCursor cursor(m_document.get());
    cursor.beginEditBlock();
    for (QTextBlock block = begin(); block.isValid() && block.blockNumber() <= m_lastBlock; block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        if (format.leftMargin() == 0 && format.rightMargin() == 0 && format.textIndent() == 0)
            continue;
        format.setLeftMargin(format.leftMargin() * factor);
        format.setRightMargin(format.rightMargin() * factor);
        format.setTextIndent(format.textIndent() * factor);
        cursor.setPosition(block.position());
        cursor.setBlockFormat(format);
    }
    cursor.endEditBlock();
}

int PageFormatter::offsetOf(int position) const
{
    return rtf::textOffset(*m_document, position) - rtf::textOffset(*m_document, begin().position());
}

// One walk over the lines: the layout has put each on a page already.
void PageFormatter::findPages()
{
    const qreal height = m_document->pageSize().height();
    QAbstractTextDocumentLayout &layout = *m_document->documentLayout();
    std::map<int, int> starts; // by page of the layout
    for (QTextBlock block = begin(); block.isValid() && block.blockNumber() <= m_lastBlock; block = block.next()) {
        const qreal top = layout.blockBoundingRect(block).top();
        const QTextLayout &lines = *block.layout();
        for (int i = 0; i < lines.lineCount(); ++i) {
            const QTextLine line = lines.lineAt(i);
            const int page =
                std::max(0, int(std::floor((top + line.y() + std::min(line.height(), height) / 2) / height)));
            const int position = block.position() + line.textStart();
            const auto [known, isNew] = starts.try_emplace(page, position);
            if (!isNew)
                known->second = std::min(known->second, position);
        }
    }
    if (starts.empty())
        starts.emplace(0, 0);
    int previous = -1;
    for (const auto &[page, position] : starts) {
        // Cells side by side may break in another order than their text stands in; every page moves on all the same.
        const int start = std::max(offsetOf(position), previous + 1);
        m_sheets.push_back(page);
        m_starts.push_back(m_starts.empty() ? 0 : start);
        previous = m_starts.back();
    }
}

void PageFormatter::drawSheet(QPainter &painter, const QPointF &corner, int sheet) const
{
    const QSizeF size = m_document->pageSize();
    const qreal top = sheet * size.height();
    painter.save();
    painter.translate(corner);
    painter.setClipRect(QRectF(QPointF(0, 0), size), Qt::IntersectClip);
    painter.translate(0, -top);
    LineFilter filter(painter, top, top + size.height());
    QPainter inner(&filter);
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = QRectF(0, top, size.width(), size.height());
    context.palette = paper();
    context.selections = m_readable;
    m_document->documentLayout()->draw(&inner, context);
    inner.end();
    painter.restore();
}
