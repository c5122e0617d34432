// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace modString
{

// Whether a file (no folder) of that name exists.
bool FileExists(const QString &sFile);

// Whether every character is an ASCII letter or digit; true for an empty text.
bool StringAlphanumeric(QStringView sText);

// Whether every character is an ASCII capital; true for an empty text.
bool StringUpperCaseAlpha(QStringView sText);

// The extension of a path's last component: what follows its last full stop, in lower case, without the stop.
QString StringExtension(const QString &sFile);

// The path without its extension and the stop before it.
QString StringWithoutExtension(const QString &sFile);

} // namespace modString
