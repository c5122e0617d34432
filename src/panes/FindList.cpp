// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindList.h"

#include "panes/FindHitDelegate.h"
#include "panes/FindHitsModel.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

FindList::FindList(FindHitsModel &model, QWidget *parent)
    : QListView(parent)
    , m_model(model)
{
    setObjectName(u"lstHits"_s);
    setAccessibleName(u"Hits"_s);
    setModel(&model);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerItem);
    setContextMenuPolicy(Qt::NoContextMenu);
    connect(this, &QListView::clicked, this, [this](const QModelIndex &index) { Q_EMIT looked(index.row()); });
}

void FindList::setEmptyText(const QString &text)
{
    m_emptyText = text;
    setAccessibleDescription(m_model.rowCount() == 0 ? text : QString());
    viewport()->update();
}

bool FindList::walk(int hits)
{
    const int step = hits < 0 ? -1 : 1;
    int row = currentIndex().isValid() ? currentIndex().row() : hits < 0 ? m_model.rowCount() : -1;
    bool found = false;
    for (int left = std::abs(hits); left > 0; --left) {
        const int next = m_model.hitRow(row, step);
        if (next < 0)
            break;
        row = next;
        found = true;
    }
    if (!found)
        return false;
    setCurrentIndex(m_model.index(row));
    // With its entry's row where that is next to it.
    if (row > 0 && !m_model.row(row - 1).hit())
        scrollTo(m_model.index(row - 1));
    scrollTo(m_model.index(row));
    tellCurrent();
    return true;
}

// Whoever hears the screen stays in the box, and is told of the row that was walked to.
void FindList::tellCurrent()
{
    if (!QAccessible::isActive() || hasFocus())
        return;
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(currentIndex().row());
    QAccessible::updateAccessibility(&event);
}

QSize FindList::sizeHint() const
{
    constexpr int columns = 44;
    return {fontMetrics().averageCharWidth() * columns, QListView::sizeHint().height()};
}

void FindList::keyPressEvent(QKeyEvent *event)
{
    const QModelIndex before = currentIndex();
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (before.isValid())
            Q_EMIT chosen(before.row());
        return;
    case Qt::Key_Space:
        if (before.flags().testFlag(Qt::ItemIsUserCheckable))
            m_model.setData(before,
                            before.data(Qt::CheckStateRole).toInt() == Qt::Checked ? Qt::Unchecked : Qt::Checked,
                            Qt::CheckStateRole);
        else if (before.isValid())
            Q_EMIT looked(before.row());
        return;
    default:
        QListView::keyPressEvent(event);
    }
    if (currentIndex().isValid() && currentIndex() != before)
        Q_EMIT looked(currentIndex().row());
}

void FindList::mouseDoubleClickEvent(QMouseEvent *event)
{
    QListView::mouseDoubleClickEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid() && event->button() == Qt::LeftButton && !isOnCheck(*event))
        Q_EMIT chosen(index.row());
}

// Two quick clicks on a check mark are two clicks.
bool FindList::isOnCheck(const QMouseEvent &event) const
{
    const QPoint place = event.position().toPoint();
    const QModelIndex index = indexAt(place);
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    const auto *hits = qobject_cast<const FindHitDelegate *>(itemDelegate());
    return hits && hits->isOnCheck(option, index, place);
}

void FindList::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_model.rowCount() > 0 || m_emptyText.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
    const int margin = fontMetrics().height();
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_emptyText);
}
