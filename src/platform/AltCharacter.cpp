// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/AltCharacter.h"

#include <QKeyEvent>

bool isAltCharacter(const QKeyEvent &event)
{
    constexpr Qt::KeyboardModifiers modifiers =
        Qt::AltModifier | Qt::ControlModifier | Qt::MetaModifier | Qt::GroupSwitchModifier;
    return (event.modifiers() & modifiers) == Qt::AltModifier && !event.text().isEmpty() && event.text()[0].isPrint();
}
