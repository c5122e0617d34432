// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

// Finding single records of a native file.
namespace modDoc
{

// The value of the first record of that tag anywhere in a native file's bytes; empty when there is none.
QByteArray DocLoadTag(const QByteArray &buffer, const QByteArray &tagName);

// Whether a record of that tag stands exactly at a 1-based position; then the value up to the next brace and that
// brace's 1-based position.
bool DocLoadTagAtPosition(const QByteArray &buffer, const QByteArray &tagName, qsizetype position,
                          qsizetype &endPosition, QByteArray &value);

} // namespace modDoc
