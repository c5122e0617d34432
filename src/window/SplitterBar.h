// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

// The strip between the two panes that the user grabs (imgSplitter). It only tells what the mouse does; positions are
// the pointer's in its parent's pixels, less the place at which the strip was grabbed.
class SplitterBar final : public QWidget
{
    Q_OBJECT

public:
    explicit SplitterBar(QWidget *parent);

Q_SIGNALS:
    void grabbed();
    void dragged(int left);
    void released();
    void doubleClicked();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    int m_grabOffset = 0;
};

// The bar shown where the split would go while it is being moved (picSplitter).
class GhostBar final : public QWidget
{
    Q_OBJECT

public:
    explicit GhostBar(QWidget *parent);

Q_SIGNALS:
    // An arrow key: -1 to the left, 1 to the right.
    void stepped(int direction);
    void accepted();
    void cancelled();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
