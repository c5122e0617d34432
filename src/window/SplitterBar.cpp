// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/SplitterBar.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace
{

// Tells assistive technology that the bars are splitters; Qt takes them for containers.
QAccessibleInterface *splitterInterface(const QString &className, QObject *object)
{
    if (className != "SplitterBar"_L1 && className != "GhostBar"_L1)
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::Splitter);
}

} // namespace

SplitterBar::SplitterBar(QWidget *parent)
    : QWidget(parent)
{
    // A second installation of the same factory changes nothing.
    QAccessible::installFactory(splitterInterface);
    setObjectName(u"imgSplitter"_s);
    setCursor(Qt::SplitHCursor);
    setAccessibleName(tr("Split between outline and text"));
}

void SplitterBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_grabOffset = event->position().toPoint().x();
    Q_EMIT grabbed();
}

void SplitterBar::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton))
        Q_EMIT dragged(mapToParent(event->position().toPoint()).x() - m_grabOffset);
}

void SplitterBar::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT released();
}

void SplitterBar::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT doubleClicked();
}

GhostBar::GhostBar(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(u"picSplitter"_s);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("New place of the split"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void GhostBar::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        Q_EMIT stepped(-1);
        break;
    case Qt::Key_Right:
        Q_EMIT stepped(1);
        break;
    case Qt::Key_Escape:
        Q_EMIT cancelled();
        break;
    default:
        Q_EMIT accepted();
        // The window does with it what it does with every key.
        event->ignore();
    }
}

void GhostBar::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    // A menu that drops down only borrows the focus.
    if (event->reason() != Qt::PopupFocusReason)
        Q_EMIT accepted();
}

void GhostBar::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), palette().color(QPalette::Highlight));
}
