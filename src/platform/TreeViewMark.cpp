// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The frame around an entry that is looked at and not gone to.

#include "platform/TreeView.h"

#include "model/EntryTree.h"

#include <QPainter>
#include <QScrollBar>

void TreeView::mark(const Entry *entry)
{
    if (!m_tree || !entry)
        return;
    if (!m_beforeMark)
        m_beforeMark = QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
    m_marked = m_tree->indexOf(entry);
    scrollTo(m_marked);
    viewport()->update();
}

void TreeView::endMark(AfterMark after)
{
    m_marked = QPersistentModelIndex();
    const std::optional<QPoint> before = std::exchange(m_beforeMark, std::nullopt);
    if (before && after == AfterMark::GoBack) {
        verticalScrollBar()->setValue(before->y());
        horizontalScrollBar()->setValue(before->x());
    }
    viewport()->update();
}

void TreeView::paintEvent(QPaintEvent *event)
{
    m_markedRow = m_marked.isValid() ? nearestShown(m_marked) : QModelIndex();
    QTreeView::paintEvent(event);
    m_markedRow = QModelIndex();
}

void TreeView::drawRow(QPainter *painter, const QStyleOptionViewItem &options, const QModelIndex &index) const
{
    drawSelection(*painter, options, index);
    if (!m_markedRow.isValid() || index != m_markedRow)
        return;
    const QRect row = visualRect(index);
    QRectF frame(row.left(), row.top(), std::min(sizeHintForIndex(index).width(), row.width()), row.height());
    if (isRightToLeft())
        frame.moveRight(row.right() + 1);
    constexpr double thickness = 2;
    constexpr double inset = thickness / 2;
    constexpr double corner = 3;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    // In the text's colour, which stands out of whatever the row has behind it, a selection included.
    const bool isSelected = selectionModel()->isSelected(index) && !isPale(index);
    painter->setPen(QPen(palette().color(isSelected ? QPalette::HighlightedText : QPalette::Highlight), thickness));
    painter->drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), corner, corner);
    painter->restore();
}
