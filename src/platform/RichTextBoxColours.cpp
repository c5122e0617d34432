// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The colours of the text pane.

#include "platform/RichTextBox.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <map>

namespace
{

// How many paragraphs away from where it was before the sight is looked for.
constexpr int mostSteps = 200;

// The first and last position beside which others stand at one height: those of a table's row, else the position alone.
std::pair<int, int> besideEachOther(const QTextCursor &place)
{
    std::pair<int, int> positions(place.position(), place.position());
    for (const QTextFrame *frame = place.currentFrame(); frame; frame = frame->parentFrame()) {
        const auto *table = qobject_cast<const QTextTable *>(frame);
        const QTextTableCell cell = table ? table->cellAt(place.position()) : QTextTableCell();
        if (!cell.isValid())
            continue;
        const int lastRow = cell.row() + cell.rowSpan() - 1;
        positions = {std::min(positions.first, table->cellAt(cell.row(), 0).firstPosition()),
                     std::max(positions.second, table->cellAt(lastRow, table->columns() - 1).lastPosition())};
    }
    return positions;
}

// The first paragraph that reaches down to a height, looked for from a paragraph near it; an invalid one when it is
// far.
QTextBlock paragraphReaching(double height, QTextBlock near)
{
    const QAbstractTextDocumentLayout *layout = near.document()->documentLayout();
    const auto isAbove = [&](const QTextBlock &block) { return layout->blockBoundingRect(block).bottom() < height; };
    bool wentDown = false;
    for (int step = 0; step < mostSteps; ++step) {
        const QTextBlock previous = near.previous();
        if (isAbove(near)) {
            wentDown = true;
            if (!near.next().isValid())
                return near;
            near = near.next();
        } else if (wentDown || !previous.isValid() || isAbove(previous)) {
            return near;
        } else {
            near = previous;
        }
    }
    return {};
}

// The caret before a line's first character, and where it ends.
constexpr double roomForCaret = 2;

// Where the bullet or number of a paragraph is drawn, beside its first line.
QRect placeOfSign(const QTextBlock &paragraph)
{
    if (paragraph.layout()->lineCount() == 0)
        return {};
    const QTextDocument *document = paragraph.document();
    const QPointF corner = document->documentLayout()->blockBoundingRect(paragraph).topLeft();
    const QRectF line = paragraph.layout()->lineAt(0).naturalTextRect().translated(corner);
    const QFontMetricsF metrics(paragraph.charFormat().font().resolve(document->defaultFont()));
    const double width = metrics.lineSpacing() + metrics.horizontalAdvance(paragraph.textList()->itemText(paragraph));
    const double left =
        paragraph.textDirection() == Qt::RightToLeft ? line.right() + roomForCaret : line.left() - roomForCaret - width;
    return QRectF(left, line.top(), width, std::max(line.height(), metrics.height())).toAlignedRect();
}

} // namespace

void RichTextBox::paintEvent(QPaintEvent *event)
{
    colourVisibleText();
    QTextEdit::paintEvent(event);
    if (!m_signs.empty())
        paintSigns();
}

// The layout takes the colour of bullets from the palette alone: what lies beside those paragraphs is drawn once more
// with another palette.
void RichTextBox::paintSigns()
{
    const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const QRect area = viewport()->rect().translated(scrolled);
    std::map<QRgb, QRegion> places;
    for (const ReadableSign &sign : m_signs)
        places[sign.colour.rgb()] += placeOfSign(sign.paragraph).intersected(area);
    QAbstractTextDocumentLayout::PaintContext context;
    QAbstractTextDocumentLayout::Selection selected;
    selected.cursor = textCursor();
    selected.format.setBackground(palette().brush(QPalette::Highlight));
    selected.format.setForeground(palette().brush(QPalette::HighlightedText));
    if (selected.cursor.hasSelection())
        context.selections = {selected};
    QPainter painter(viewport());
    painter.translate(-scrolled);
    for (const auto &[colour, region] : places) {
        context.palette = palette();
        context.palette.setColor(QPalette::Text, QColor::fromRgb(colour));
        context.clip = region.boundingRect();
        painter.setClipRegion(region);
        document()->documentLayout()->draw(&painter, context);
    }
}

// The first and the last paragraph in sight. A paragraph between which and the next one the edge lies is unknown to the
// layout's own look-up, which then goes through the whole text; so it is asked after a leap only.
std::pair<QTextBlock, QTextBlock> RichTextBox::paragraphsInSight() const
{
    const QRect area = viewport()->rect();
    const int scrolled = verticalScrollBar()->value();
    const QTextBlock near = m_coloured ? document()->findBlock(m_coloured->first) : document()->begin();
    QTextBlock first = paragraphReaching(area.top() + scrolled, near.isValid() ? near : document()->begin());
    if (!first.isValid())
        first = cursorForPosition(area.topLeft()).block();
    QTextBlock last = paragraphReaching(area.bottom() + scrolled, first);
    if (!last.isValid())
        last = cursorForPosition(area.bottomRight()).block();
    // The row before may have a cell that reaches further down than its last one.
    const QTextBlock before = first.previous().isValid() ? first.previous() : first;
    const int from = besideEachOther(QTextCursor(before)).first;
    const int to = besideEachOther(QTextCursor(last)).second;
    return {document()->findBlock(std::min(from, to)), document()->findBlock(std::max(from, to))};
}

// Shows what is in sight so that it can be read (see ReadableText.h).
void RichTextBox::colourVisibleText()
{
    const auto [first, last] = paragraphsInSight();
    const Coloured now = {document()->revision(), first.position(), last.position(), palette().cacheKey()};
    if (m_coloured == now)
        return;
    m_coloured = now;
    QList<ExtraSelection> shown;
    for (const auto &found : readableText(first, last, palette())) {
        ExtraSelection selection;
        selection.cursor = found.cursor;
        selection.format = found.format;
        shown.append(selection);
    }
    setExtraSelections(shown);
    m_signs = readableSigns(first, last, palette());
}
