// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QStringView>

namespace rtf
{

// Looks through RTF for an expression at little more than the cost of reading its bytes. For searching many texts of
// which few hold it.
class TextScan
{
public:
    explicit TextScan(QStringView expression);

    // False only when the expression occurs nowhere in toPlainText(), in whichever case; seldom true then.
    bool mayBeIn(QByteArrayView rtf) const;

private:
    // The longest part of the expression that is ASCII, in small letters.
    QByteArray m_needle;
    bool m_hasBlank = false;
};

} // namespace rtf
