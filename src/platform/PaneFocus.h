// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

// Keeps the keyboard focus of a pane that a command hides for a moment: it does not wander to another widget, and comes
// back with the pane unless somebody else has asked for it meanwhile.
class PaneFocus
{
public:
    // Call before the pane is hidden, and after it is shown.
    void beforeHiding(QWidget &pane);
    void afterShowing(QWidget &pane);

private:
    bool m_hadFocus = false;
};
