// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/ToolbarTable.h"

#include <QCoreApplication>
#include <QToolButton>

// What the tests of the toolbar ask of the bar that is shown.

// The button of a key, in a window or in the bar alone.
inline QToolButton *buttonOf(const QWidget &window, std::string_view key)
{
    const QString name = QStringLiteral("tb") + toText(toolbarTable[toolbarRow(key)].icon);
    return window.findChild<QToolButton *>(name);
}

// The bar lays itself out when the event loop runs next.
inline void layOut()
{
    QCoreApplication::processEvents();
}

// The keys of the buttons that are shown, in the order of the table.
inline QStringList shownIn(const QWidget &window)
{
    layOut();
    QStringList keys;
    for (const ToolbarRow &row : toolbarTable) {
        if (buttonOf(window, row.key)->isVisible())
            keys.append(toText(row.key));
    }
    return keys;
}
