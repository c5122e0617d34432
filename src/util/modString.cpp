// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/modString.h"

#include <QFileInfo>

#include <algorithm>

namespace
{

// Where the extension's full stop stands, or -1: the last stop behind the last folder separator. A stop that begins a
// name marks a hidden file, not an extension.
qsizetype extensionStop(const QString &sFile)
{
    const qsizetype nameStart = sFile.lastIndexOf(u'/') + 1;
    const qsizetype stop = sFile.lastIndexOf(u'.');
    return stop > nameStart ? stop : -1;
}

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isAsciiUpper(QChar c)
{
    return c >= u'A' && c <= u'Z';
}

bool isAsciiLower(QChar c)
{
    return c >= u'a' && c <= u'z';
}

} // namespace

bool modString::FileExists(const QString &sFile)
{
    return !sFile.isEmpty() && QFileInfo(sFile).isFile();
}

bool modString::StringAlphanumeric(QStringView sText)
{
    return std::all_of(sText.begin(), sText.end(),
                       [](QChar c) { return isAsciiDigit(c) || isAsciiUpper(c) || isAsciiLower(c); });
}

bool modString::StringUpperCaseAlpha(QStringView sText)
{
    return std::all_of(sText.begin(), sText.end(), isAsciiUpper);
}

QString modString::StringExtension(const QString &sFile)
{
    const qsizetype stop = extensionStop(sFile);
    return stop < 0 ? QString() : sFile.mid(stop + 1).toLower();
}

QString modString::StringWithoutExtension(const QString &sFile)
{
    const qsizetype stop = extensionStop(sFile);
    return stop < 0 ? sFile : sFile.left(stop);
}
