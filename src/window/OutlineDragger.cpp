// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/OutlineDragger.h"

#include "window/ConfirmMenus.h"
#include "window/DragIcon.h"
#include "window/frmDocument.h"

#include "outline/EntryDrag.h"
#include "outline/modOutline.h"

#include "platform/TreeView.h"

#include "document/Globals.h"
#include "document/Ports.h"
#include "document/modNodes.h"

#include "util/Procedure.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QTimerEvent>

namespace
{

constexpr int scrollInterval = 50;
constexpr int scrollMargin = 16;

DragButton dragButton(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return DragButton::Left;
    case Qt::RightButton:
        return DragButton::Right;
    default:
        return DragButton::None;
    }
}

} // namespace

OutlineDragger::OutlineDragger(frmDocument &form)
    : QObject(&form)
    , m_form(form)
{
    form.treeView->viewport()->installEventFilter(this);
}

OutlineDragger::~OutlineDragger()
{
    if (m_active)
        ResetDraggingFlags();
}

bool OutlineDragger::eventFilter(QObject *watched, QEvent *event)
{
    endWithoutEntry();
    const bool idle = !m_active && m_swallowed == Qt::NoButton;
    if (idle && (m_form.document().tree.root() == nullptr || bBusy))
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        mouseDown(*static_cast<QMouseEvent *>(event));
        return m_active;
    case QEvent::MouseMove:
        mouseMove(*static_cast<QMouseEvent *>(event));
        return m_active;
    case QEvent::MouseButtonRelease:
        return mouseUp(*static_cast<QMouseEvent *>(event));
    default:
        return QObject::eventFilter(watched, event);
    }
}

void OutlineDragger::mouseDown(const QMouseEvent &event)
{
    procedure("frmDocument trvOutline_MouseDown", [&] {
        if (event.button() == m_swallowed)
            m_swallowed = Qt::NoButton;
        const DragButton button = dragButton(event.button());
        if (button == DragButton::None || m_active)
            return;
        m_pressedAt = event.position();
        Document &document = m_form.document();
        // A press on a branch sign is about the branch; it does not select the entry either.
        Entry *pressed = m_form.treeView->HitTestRow(event.position().toPoint());
        dragState().entry.set(&document.tree, document.bReadOnly() ? nullptr : pressed);
    });
}

void OutlineDragger::mouseMove(const QMouseEvent &event)
{
    procedure("frmDocument trvOutline_MouseMove", [&] {
        if (!(event.buttons() & (Qt::LeftButton | Qt::RightButton)) || !dragState().entry.entry())
            return;
        dragState().dragging = true;
        m_pointer = event.position();
        Entry *hovered = m_form.treeView->HitTest(event.position().toPoint());
        const QPointF moved = event.position() - m_pressedAt;
        // A distance of just the threshold is not to pass it because it cannot be written exactly in pixels.
        const double limit = (threshold + 0.01) * m_form.logicalDpiX() / 1440.0;
        const bool begins = !m_active && (qAbs(moved.x()) > limit || qAbs(moved.y()) > limit);
        // The direction is that from where the button went down. Once a drag has begun, only a way that would begin one
        // turns it: a hand does not hold still, and does not move straight down either.
        if (hovered == dragState().entry.entry() && (begins || (m_active && qAbs(moved.x()) > limit)))
            dragState().indent = moved.x() > 0;
        if (begins)
            begin(event);
        // Ctrl may be pressed and let go of during the drag.
        if (m_active && hovered && hovered != dragState().entry.entry())
            dragState().copy = event.modifiers().testFlag(Qt::ControlModifier);
        if (m_active)
            dragOver(hovered);
    });
}

void OutlineDragger::begin(const QMouseEvent &event)
{
    dragState().button = event.buttons().testFlag(Qt::RightButton) ? DragButton::Right : DragButton::Left;
    m_active = true;
    m_form.treeView->pressBecomesDrag();
    m_scrollTimer.start(scrollInterval, this);
    showIcon(true);
}

void OutlineDragger::dragOver(const Entry *hovered)
{
    if (hovered != m_hovered) {
        m_hovered = hovered;
        m_openTimer.start(openDelay, this);
    }
    // Away from every entry a drop does nothing, so what was shown last may stay.
    const bool allowed = hovered ? dropAllowed(*hovered) : m_iconAllowed;
    showIcon(allowed);
}

bool OutlineDragger::mouseUp(const QMouseEvent &event)
{
    if (event.button() == m_swallowed) {
        m_swallowed = Qt::NoButton;
        return true;
    }
    const bool wasActive = m_active;
    procedure("frmDocument trvOutline_MouseUp", [&] {
        if (wasActive) {
            Entry *target = m_form.treeView->HitTest(event.position().toPoint());
            // While the drop's menu is open, nothing scrolls or opens behind it.
            stop();
            drop(target);
        } else if (event.button() == Qt::RightButton) {
            ResetDraggingFlags();
            Q_EMIT m_form.menuWanted("mnuoutline", event.globalPosition().toPoint());
        }
    });
    end();
    return wasActive;
}

void OutlineDragger::drop(Entry *target)
{
    procedure("frmDocument trvOutline_DragDrop", [&] {
        const Entry *dragged = dragState().entry.entry();
        // The window may no longer be the active one, and the commands work on the active document.
        if (!target || !dragged || !dragState().dragging || DocumentActive() != &m_form.document())
            return;
        m_form.treeView->viewport()->unsetCursor();
        if (target == dragged)
            dropOnItself();
        else
            dropOn(*target);
    });
}

void OutlineDragger::dropOn(Entry &target)
{
    DragState &state = dragState();
    const DropPlacements placements = dropPlacements(target);
    if (!placements.any())
        return;
    EntryRef targetReference(&m_form.document().tree, &target);
    if (state.button == DragButton::Right) {
        state.dragging = false;
        confirmDrop(placements);
        if (!state.dragging || !state.entry.entry() || !targetReference.entry())
            return;
    } else {
        state.relationship = plainRelationship(placements);
    }
    dropEntry(m_form.document(), target);
}

void OutlineDragger::dropOnItself()
{
    DragState &state = dragState();
    if (state.button == DragButton::Right) {
        state.dragging = false;
        confirmIndent();
        if (!state.dragging || !state.entry.entry())
            return;
    }
    // The commands work on the selected entries.
    const EntryTree &tree = m_form.document().tree;
    if (!tree.areSeveralSelected() || !tree.isSelected(state.entry.entry()))
        modNodes::NodeSelect(m_form.document(), state.entry.entry());
    if (state.indent)
        modOutline::OutlineIndent();
    else
        modOutline::OutlineUnindent();
}

void OutlineDragger::cancel()
{
    // The button is still down. When it comes up, it is to open neither a menu nor an editor.
    m_swallowed = dragState().button == DragButton::Right ? Qt::RightButton : Qt::LeftButton;
    end();
}

// A dragged entry may go away, with its document or by a command.
void OutlineDragger::endWithoutEntry()
{
    if (m_active && !dragState().entry.entry())
        cancel();
}

void OutlineDragger::stop()
{
    m_active = false;
    m_scrollTimer.stop();
    m_openTimer.stop();
}

void OutlineDragger::end()
{
    stop();
    m_hovered = nullptr;
    m_iconShown = false;
    m_form.treeView->viewport()->unsetCursor();
    ResetDraggingFlags();
}

void OutlineDragger::showIcon(bool allowed)
{
    const bool copy = dragState().copy;
    if (m_iconShown && m_iconAllowed == allowed && m_iconCopy == copy)
        return;
    m_iconShown = true;
    m_iconAllowed = allowed;
    m_iconCopy = copy;
    ChangeDragIcon(*m_form.treeView->viewport(), allowed);
}

void OutlineDragger::timerEvent(QTimerEvent *event)
{
    endWithoutEntry();
    if (!m_active)
        return;
    if (event->timerId() == m_scrollTimer.timerId())
        scrollNearEdge();
    else if (event->timerId() == m_openTimer.timerId())
        openUnderPointer();
    else
        QObject::timerEvent(event);
}

void OutlineDragger::scrollNearEdge()
{
    QScrollBar *bar = m_form.treeView->verticalScrollBar();
    const int height = m_form.treeView->viewport()->height();
    if (m_pointer.y() < scrollMargin)
        bar->triggerAction(QAbstractSlider::SliderSingleStepSub);
    else if (m_pointer.y() > height - scrollMargin)
        bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    else
        return;
    dragOver(m_form.treeView->HitTest(m_pointer.toPoint()));
}

void OutlineDragger::openUnderPointer()
{
    m_openTimer.stop();
    Entry *hovered = m_form.treeView->HitTest(m_pointer.toPoint());
    // The dragged entry itself stays as it is: the pointer rests on it when it is to be indented.
    const bool another = hovered && hovered != dragState().entry.entry();
    if (another && hovered == m_hovered && hovered->childCount() > 0 && !hovered->expanded())
        m_form.document().history.setExpanded(hovered, true);
}
