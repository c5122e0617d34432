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

// What a field without a result shows: the character of a SYMBOL instruction, the label of a button; else nothing.
QString fieldText(const QString &instruction);

} // namespace rtf
