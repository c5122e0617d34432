// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/ScreenPointer.h"

#include <QCursor>
#include <QGuiApplication>

ScreenPointer::~ScreenPointer()
{
    setHourglass(false);
}

void ScreenPointer::setHourglass(bool hourglass)
{
    if (hourglass == m_hourglass)
        return;
    m_hourglass = hourglass;
    if (hourglass)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}
