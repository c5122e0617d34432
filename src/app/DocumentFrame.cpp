// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DocumentFrame.h"

#include "window/frmDocument.h"

#include <QAction>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMenu>

DocumentFrame::DocumentFrame(frmDocument *form, QWidget *parent)
    : QMdiSubWindow(parent)
    , m_form(form)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWidget(form);
    // The frame's own menu would keep keys such as Ctrl+W from every other use.
    for (QAction *action : systemMenu()->actions())
        action->setShortcuts(QList<QKeySequence>());
}

QSize DocumentFrame::sizeHint() const
{
    constexpr int quarters = 3;
    const QSize room = mdiArea() ? mdiArea()->viewport()->size() : QSize(600, 400);
    return (room * quarters / 4).expandedTo(minimumSizeHint());
}

void DocumentFrame::closeEvent(QCloseEvent *event)
{
    QMdiSubWindow::closeEvent(event);
    if (event->isAccepted())
        Q_EMIT closed(this);
}
