// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QMenuBar;

// Lets the menu bar give back the keyboard that it took. Qt's bar remembers who had the keyboard whenever a key opens a
// menu; while the bar itself still has it, after a menu was left with Esc, it would remember itself and never let go.
class MenuBarKeys final : public QObject
{
public:
    explicit MenuBarKeys(QMenuBar &bar);

    // Whether the bar has the keyboard although none of its menus is open or marked.
    bool keepsKeyboardForNothing() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QMenuBar &m_bar;
};
