// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The instructions of fields: a name, arguments in or without quotes, switches after a backslash.
namespace rtf
{

// The address of a HYPERLINK instruction, a place in it after "#"; empty for every other instruction.
QString hyperlinkTarget(const QString &instruction);

// The HYPERLINK instruction for an address.
QString hyperlinkInstruction(const QString &target);

// The character that a SYMBOL instruction shows; 0 for every other instruction.
char16_t fieldSymbol(const QString &instruction);

} // namespace rtf
