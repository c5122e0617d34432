// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/AltCharacter.h"

#include <QKeyEvent>

bool isAltCharacter(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier);
    return modifiers == Qt::AltModifier && !event.text().isEmpty() && event.text()[0].isPrint();
}
