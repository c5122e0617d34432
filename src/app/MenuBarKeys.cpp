// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MenuBarKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenuBar>

MenuBarKeys::MenuBarKeys(QMenuBar &bar)
    : QObject(&bar)
    , m_bar(bar)
{
    bar.installEventFilter(this);
}

bool MenuBarKeys::keepsKeyboardForNothing() const
{
    return m_bar.hasFocus() && !m_bar.activeAction();
}

// Before any key with Alt is matched with the menus' access keys, the bar lets the keyboard go, as with Esc.
bool MenuBarKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && m_bar.hasFocus()) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (key.modifiers().testFlag(Qt::AltModifier) && key.key() != Qt::Key_Alt) {
            QKeyEvent leave(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QCoreApplication::sendEvent(&m_bar, &leave);
        }
    }
    return QObject::eventFilter(watched, event);
}
