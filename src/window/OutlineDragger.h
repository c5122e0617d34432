// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPointF>

class Entry;
class QMouseEvent;
class frmDocument;

// Turns what the mouse does in an outline into dragging entries: the left button moves, or copies with Ctrl; the right
// button asks at the drop. The pane scrolls when the pointer nears its edge, and a closed entry under a resting pointer
// opens.
class OutlineDragger final : public QObject
{
    Q_OBJECT

public:
    // How far the pointer must move, along either axis, for a drag to begin, in twips.
    static constexpr double threshold = 100;
    // How long the pointer must rest on a closed entry to open it, in milliseconds.
    static constexpr int openDelay = 700;

    explicit OutlineDragger(frmDocument &form);
    ~OutlineDragger() override;

    bool active() const { return m_active; }

    // Ends a drag without a drop; its button does nothing more when it is let go of.
    void cancel();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void mouseDown(const QMouseEvent &event);
    void mouseMove(const QMouseEvent &event);
    bool mouseUp(const QMouseEvent &event);
    void begin(const QMouseEvent &event);
    void dragOver(const Entry *hovered);
    void drop(Entry *target);
    void dropOn(Entry &target);
    void dropOnItself();
    void showIcon(bool allowed);
    void scrollNearEdge();
    void openUnderPointer();
    void endWithoutEntry();
    void stop();
    void end();

    frmDocument &m_form;
    bool m_active = false;
    // The button of a drag that was ended while it was down.
    Qt::MouseButton m_swallowed = Qt::NoButton;
    // Where the button went down, in the viewport's pixels.
    QPointF m_pressedAt;
    QPointF m_pointer;
    const Entry *m_hovered = nullptr;
    bool m_iconShown = false;
    bool m_iconAllowed = false;
    bool m_iconCopy = false;
    QBasicTimer m_scrollTimer;
    QBasicTimer m_openTimer;
};
