// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

// The instructions of fields: a name, arguments in or without quotes, switches after a backslash.
namespace rtf
{

// The address of a HYPERLINK instruction, a place in it after "#"; empty for every other instruction.
QString hyperlinkTarget(const QString &instruction);

// The HYPERLINK instruction for an address.
QString hyperlinkInstruction(const QString &target);

// The address that a text inside these fields leads to: that of the innermost hyperlink.
QString fieldsTarget(const QStringList &fields);

// Cuts an instruction at blanks; quotes hold an argument together, and a backslash before a quote or a backslash inside
// them makes that character part of it.
QStringList splitInstruction(const QString &instruction);

} // namespace rtf
