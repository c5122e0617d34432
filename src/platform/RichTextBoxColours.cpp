// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The colours of the text pane.

#include "platform/RichTextBox.h"

#include "model/ReadableText.h"

#include <QPaintEvent>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

#include <algorithm>

namespace
{

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

} // namespace

void RichTextBox::paintEvent(QPaintEvent *event)
{
    colourVisibleText();
    QTextEdit::paintEvent(event);
}

// Shows what is in sight so that it can be read (see ReadableText.h).
void RichTextBox::colourVisibleText()
{
    const QRect area = viewport()->rect();
    const int from = besideEachOther(cursorForPosition(area.topLeft())).first;
    const int to = besideEachOther(cursorForPosition(area.bottomRight())).second;
    const QTextBlock first = document()->findBlock(std::min(from, to));
    const QTextBlock last = document()->findBlock(std::max(from, to));
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
}
