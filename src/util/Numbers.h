// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

// Checked numbers and the conversions between values and their stored texts. Failures are RunTimeErrors: 6 when a value
// leaves its type's range, 13 when a text is no such value.
namespace Numbers
{

// The nearest whole number, halves to even, checked against the 16-bit and 32-bit signed ranges.
qint16 toInt16(double value);
qint32 toInt32(double value);

// Whether a text, blanks around it aside, is a decimal number as a whole ("1", "-2.5", "1e3").
bool isNumeric(QStringView text);

// The number that a text is as a whole; error 13 otherwise. A comma counts as the decimal point.
double toNumber(QStringView text);

// The number at the beginning of the bytes, read up to the first byte that is no part of it; blanks are passed over,
// and bytes that begin with no number give 0.
double leadingNumber(QByteArrayView bytes);

// "True" or "False".
QString fromBoolean(bool value);

// The words True and False in any case, or a number (0 is False); error 13 for anything else.
bool toBoolean(QStringView text);

// A fixed-point value counted in ten-thousandths, as its shortest decimal text ("8.25", "10") and back.
QString fromFixedPoint(qint64 tenThousandths);
qint64 toFixedPoint(QStringView text);

} // namespace Numbers
