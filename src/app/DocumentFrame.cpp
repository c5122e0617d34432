// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DocumentFrame.h"

#include "app/UnsavedIcon.h"
#include "window/frmDocument.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMenu>
#include <QStyle>

#include <utility>

using namespace Qt::StringLiterals;

// The program's. Without one of its own, a frame would have that of the toolkit.
QIcon DocumentFrame::ownIcon() const
{
    const QIcon icon = QApplication::windowIcon();
    return icon.isNull() ? style()->standardIcon(QStyle::SP_TitleBarMenuButton, nullptr, this) : icon;
}

DocumentFrame::DocumentFrame(frmDocument *form, QWidget *parent)
    : QMdiSubWindow(parent)
    , m_form(form)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWidget(form);
    // The frame's own menu would keep keys such as Ctrl+W from every other use.
    for (QAction *action : systemMenu()->actions())
        action->setShortcuts(QList<QKeySequence>());
    setWindowIcon(ownIcon());
    m_positionChanges =
        connect(&form->document().history, &History::positionChanged, this, &DocumentFrame::showUnsaved);
    showUnsaved();
}

// The form, which goes after it, may still tell of its document.
DocumentFrame::~DocumentFrame()
{
    disconnect(m_positionChanges);
}

// What closing would not ask about is not worth a dot.
void DocumentFrame::showUnsaved()
{
    const Document &document = m_form->document();
    const bool isUnsaved = document.hasUnsavedChanges() && document.mayBeSavedAsSeen();
    if (std::exchange(m_showsUnsaved, isUnsaved) == isUnsaved)
        return;
    setWindowIcon(isUnsaved ? unsavedIcon(ownIcon()) : ownIcon());
    setAccessibleDescription(isUnsaved ? u"Unsaved changes"_s : QString());
}

QSize DocumentFrame::sizeHint() const
{
    constexpr int quarters = 3;
    const QSize room = mdiArea() ? mdiArea()->viewport()->size() : QSize(600, 400);
    return (room * quarters / 4).expandedTo(minimumSizeHint());
}

// Minimising and maximising hide the form for a moment, and Qt hands the focus on from pane to pane meanwhile.
void DocumentFrame::changeEvent(QEvent *event)
{
    const bool stateChanges = event->type() == QEvent::WindowStateChange;
    // Some of its places are drawn once and kept.
    if ((event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) &&
        std::exchange(m_showsUnsaved, false))
        showUnsaved();
    if (stateChanges)
        m_form->holdPane();
    QMdiSubWindow::changeEvent(event);
    if (!stateChanges)
        return;
    // Losing to another window is such a change too, and the area still calls this one the active one then.
    if (windowState().testFlag(Qt::WindowActive) && mdiArea() && mdiArea()->activeSubWindow() == this)
        m_form->restorePaneFocus();
    m_form->releasePane();
}

// A frame that was maximised while the main window was hidden has its caption still to put into the main title.
void DocumentFrame::showEvent(QShowEvent *event)
{
    QMdiSubWindow::showEvent(event);
    if (!isMaximized())
        return;
    QEvent change(QEvent::WindowTitleChange);
    QApplication::sendEvent(this, &change);
}

void DocumentFrame::closeEvent(QCloseEvent *event)
{
    QMdiSubWindow::closeEvent(event);
    if (event->isAccepted())
        Q_EMIT closed(this);
}
