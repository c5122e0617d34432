// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/Numbers.h"

#include "util/RunTimeError.h"

#include <QLocale>

#include <cmath>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

template <typename Integer>
Integer toInteger(double value)
{
    const double rounded = std::nearbyint(value);
    if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
        throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<Integer>(rounded);
}

std::optional<double> parseNumber(QStringView text)
{
    bool ok = false;
    const double value = QLocale::c().toDouble(text.trimmed().toString().replace(u',', u'.'), &ok);
    // "inf" and "nan" read as numbers to the library but are none here.
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

// Gathers the characters of a leading number, one state per position in "sign digits point digits exponent".
class LeadingNumberScanner
{
public:
    bool take(char character)
    {
        if (character >= '0' && character <= '9')
            return digit(character);
        if (character == '+' || character == '-')
            return sign(character);
        if (character == '.')
            return point();
        if (character == 'e' || character == 'E' || character == 'd' || character == 'D')
            return exponent();
        return false;
    }

    double value() const
    {
        QByteArray text = m_text;
        while (!text.isEmpty() && !std::isdigit(static_cast<uchar>(text.back())) && text.back() != '.')
            text.chop(1);
        return text.toDouble();
    }

private:
    bool digit(char character)
    {
        m_text += character;
        m_digits = true;
        return true;
    }

    bool sign(char character)
    {
        const bool allowed = m_text.isEmpty() || (m_exponent && m_text.endsWith('e'));
        if (allowed)
            m_text += character;
        return allowed;
    }

    bool point()
    {
        if (m_point || m_exponent)
            return false;
        m_point = true;
        m_text += '.';
        return true;
    }

    bool exponent()
    {
        if (!m_digits || m_exponent)
            return false;
        m_exponent = true;
        m_text += 'e';
        return true;
    }

    QByteArray m_text;
    bool m_digits = false;
    bool m_point = false;
    bool m_exponent = false;
};

constexpr qint64 fixedPointScale = 10000;

} // namespace

qint16 Numbers::toInt16(double value)
{
    return toInteger<qint16>(value);
}

qint32 Numbers::toInt32(double value)
{
    return toInteger<qint32>(value);
}

bool Numbers::isNumeric(QStringView text)
{
    return parseNumber(text).has_value();
}

double Numbers::toNumber(QStringView text)
{
    const std::optional<double> value = parseNumber(text);
    if (!value)
        throw RunTimeError(ErrorNumber::TypeMismatch, u"Type mismatch: \"%1\" is not a number"_s.arg(text.left(80)));
    return *value;
}

double Numbers::leadingNumber(QByteArrayView bytes)
{
    LeadingNumberScanner scanner;
    for (const char byte : bytes) {
        if (byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r')
            continue;
        if (!scanner.take(byte))
            break;
    }
    return scanner.value();
}

QString Numbers::fromBoolean(bool value)
{
    return value ? u"True"_s : u"False"_s;
}

bool Numbers::toBoolean(QStringView text)
{
    const QStringView word = text.trimmed();
    if (word.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (word.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    return toNumber(word) != 0;
}

QString Numbers::fromFixedPoint(qint64 tenThousandths)
{
    QString text = QString::number(tenThousandths / fixedPointScale);
    if (tenThousandths < 0 && tenThousandths > -fixedPointScale)
        text.prepend(u'-');
    qint64 fraction = std::abs(tenThousandths % fixedPointScale);
    if (fraction == 0)
        return text;
    QString decimals = QString::number(fraction).rightJustified(4, u'0');
    while (decimals.endsWith(u'0'))
        decimals.chop(1);
    return text + u'.' + decimals;
}

qint64 Numbers::toFixedPoint(QStringView text)
{
    const double scaled = std::nearbyint(toNumber(text) * fixedPointScale);
    // Beyond 2^53 a double no longer holds every ten-thousandth, and no size comes near it.
    if (std::abs(scaled) > 9007199254740992.0)
        throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<qint64>(scaled);
}
