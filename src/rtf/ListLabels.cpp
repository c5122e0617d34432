// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/ListLabels.h"

#include "rtf/Tables.h"

#include <QLatin1StringView>

namespace rtf
{

namespace
{

constexpr int ordinal = 5;
constexpr int twoDigits = 22;

QString romanNumber(int number)
{
    struct Sign {
        int value;
        QLatin1StringView letters;
    };

    constexpr Sign signs[] = {
        {1000, QLatin1StringView("M")}, {900, QLatin1StringView("CM")}, {500, QLatin1StringView("D")},
        {400, QLatin1StringView("CD")}, {100, QLatin1StringView("C")},  {90, QLatin1StringView("XC")},
        {50, QLatin1StringView("L")},   {40, QLatin1StringView("XL")},  {10, QLatin1StringView("X")},
        {9, QLatin1StringView("IX")},   {5, QLatin1StringView("V")},    {4, QLatin1StringView("IV")},
        {1, QLatin1StringView("I")},
    };
    QString text;
    for (const Sign &sign : signs) {
        for (; number >= sign.value; number -= sign.value) {
            text += sign.letters;
        }
    }
    return text;
}

// A to Z, AA to AZ, BA and so on, as the text pane shows them.
QString letterNumber(int number)
{
    QString text;
    for (; number > 0; number = (number - 1) / 26) {
        text.prepend(QChar(static_cast<char16_t>('A' + (number - 1) % 26)));
    }
    return text;
}

QString ordinalNumber(int number)
{
    const bool isTeen = number % 100 >= 11 && number % 100 <= 13;
    const char *ending = isTeen             ? "th"
                         : number % 10 == 1 ? "st"
                         : number % 10 == 2 ? "nd"
                         : number % 10 == 3 ? "rd"
                                            : "th";
    return QString::number(number) + QLatin1StringView(ending);
}

} // namespace

QString countedNumber(const CountedLevel &level)
{
    constexpr int largestRoman = 4999;
    const int number = level.number;
    const bool isRoman = number > 0 && number <= largestRoman;
    switch (level.kind) {
    case int(NumberKind::UpperRoman):
        return isRoman ? romanNumber(number) : QString::number(number);
    case int(NumberKind::LowerRoman):
        return isRoman ? romanNumber(number).toLower() : QString::number(number);
    case int(NumberKind::UpperLetter):
        return number > 0 ? letterNumber(number) : QString::number(number);
    case int(NumberKind::LowerLetter):
        return number > 0 ? letterNumber(number).toLower() : QString::number(number);
    case ordinal:
        return number > 0 ? ordinalNumber(number) : QString::number(number);
    case twoDigits:
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    default:
        return QString::number(number);
    }
}

QString countedLabel(const QString &label, const std::array<CountedLevel, mostListLevels> &levels)
{
    QString text;
    for (const QChar c : label) {
        if (c.unicode() < mostListLevels) {
            text += countedNumber(levels[c.unicode()]);
        } else {
            text += c;
        }
    }
    return text;
}

} // namespace rtf
