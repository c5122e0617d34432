// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/ComparedText.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace
{

constexpr char16_t asciiEnd = 0x80;

bool isUnseen(char32_t c)
{
    constexpr char32_t graphemeJoiner = 0x34F;
    const bool isVariationSelector = (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0xE0100 && c <= 0xE01EF);
    return c == graphemeJoiner || isVariationSelector || QChar::category(c) == QChar::Other_Format;
}

bool isMark(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
        return true;
    default:
        return false;
    }
}

// Of those with a place above or below a letter and of the points of Hebrew, Arabic and Syriac. The iota below Greek
// vowels is a letter in case folding.
bool isAccent(char32_t c)
{
    constexpr char32_t iotaBelow = 0x345;
    if (!isMark(c) || c == iotaBelow)
        return false;
    const int place = QChar::combiningClass(c);
    return QChar::category(c) == QChar::Mark_Enclosing || place >= 200 || (place >= 10 && place <= 36);
}

// The vowels and finals of Hangul syllables that are written in parts.
bool isJamoBehind(char32_t c)
{
    return (c >= 0x1160 && c <= 0x11FF) || (c >= 0xD7B0 && c <= 0xD7FB);
}

bool isBlank(char32_t c)
{
    return c == '\t' || QChar::category(c) == QChar::Separator_Space;
}

// Whether a character belongs to the one before it.
bool continues(char32_t c)
{
    return c >= asciiEnd && (isMark(c) || isUnseen(c) || isJamoBehind(c));
}

char32_t characterAt(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    if (c.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(c, text[at + 1]);
    return c.unicode();
}

qsizetype lengthOf(char32_t c)
{
    return QChar::requiresSurrogates(c) ? 2 : 1;
}

// Whether a character is one unit that is not taken apart.
bool isWhole(char32_t c)
{
    const bool isSyllable = c >= 0xAC00 && c <= 0xD7A3;
    return !QChar::requiresSurrogates(c) && !isSyllable && QChar::decompositionTag(c) != QChar::Canonical;
}

} // namespace

ComparedText::ComparedText(QStringView text, Comparison comparison)
    : m_comparison(comparison)
    , m_size(text.size())
{
    m_units.resize(text.size());
    const qsizetype ascii = takeAscii(text);
    m_units.truncate(ascii);
    for (qsizetype at = ascii; at < text.size();) {
        const qsizetype begin = at;
        at += lengthOf(characterAt(text, at));
        while (at < text.size() && continues(characterAt(text, at)))
            at += lengthOf(characterAt(text, at));
        append(text, begin, at);
    }
}

// What most texts are made of, at little more than the cost of copying it: up to the last character before another one,
// which may have marks.
qsizetype ComparedText::takeAscii(QStringView text)
{
    const char16_t capitals = m_comparison.matchCase ? 0 : 'Z' - 'A' + 1;
    const auto *from = text.utf16();
    auto *to = reinterpret_cast<char16_t *>(m_units.data());
    qsizetype size = 0;
    for (char16_t all = 0; size < text.size(); ++size) {
        const char16_t unit = from[size];
        all = static_cast<char16_t>(all | unit);
        if (all >= asciiEnd)
            return std::max<qsizetype>(size - 1, 0);
        const bool isCapital = static_cast<char16_t>(unit - 'A') < capitals;
        to[size] = unit == '\t' ? u' ' : static_cast<char16_t>(unit | (isCapital ? 0x20 : 0));
    }
    return size;
}

// One character with all that belongs to it.
void ComparedText::append(QStringView text, qsizetype from, qsizetype to)
{
    const qsizetype begin = m_units.size();
    const auto appendPart = [this](char32_t c) {
        if (isUnseen(c) || (!m_comparison.accents && isAccent(c)))
            return;
        const char32_t compared = m_comparison.matchCase ? c : QChar::toCaseFolded(c);
        if (isBlank(compared))
            m_units += u' ';
        else if (QChar::requiresSurrogates(compared))
            m_units.append(QChar(QChar::highSurrogate(compared))).append(QChar(QChar::lowSurrogate(compared)));
        else
            m_units += QChar(static_cast<char16_t>(compared));
    };
    if (const char32_t only = characterAt(text, from); lengthOf(only) == to - from && isWhole(only)) {
        appendPart(only);
    } else {
        const QString parts = text.sliced(from, to - from).toString().normalized(QString::NormalizationForm_D);
        for (qsizetype at = 0; at < parts.size();) {
            const char32_t part = characterAt(parts, at);
            appendPart(part);
            at += lengthOf(part);
        }
    }
    const qsizetype made = m_units.size() - begin;
    if (!m_isMapped && made == 1 && to - from == 1)
        return;
    if (!std::exchange(m_isMapped, true)) {
        m_origins.resize(static_cast<std::size_t>(begin));
        std::iota(m_origins.begin(), m_origins.end(), 0);
    }
    m_origins.insert(m_origins.end(), static_cast<std::size_t>(made), static_cast<int>(from));
}

qsizetype ComparedText::origin(qsizetype unit) const
{
    if (unit == m_units.size())
        return m_size;
    return !m_isMapped ? unit : m_origins[static_cast<std::size_t>(unit)];
}

std::optional<ComparedText::Place> ComparedText::placeOf(qsizetype start, qsizetype length, QStringView text) const
{
    const qsizetype begin = origin(start);
    qsizetype end = origin(start + length);
    const bool beginsWithin = start > 0 && origin(start - 1) == begin;
    if (beginsWithin || origin(start + length - 1) == end)
        return std::nullopt;
    // What is not seen behind the last character is not marked.
    const qsizetype last = origin(start + length - 1);
    while (end - last > 1 && QChar::category(text[end - 1].unicode()) == QChar::Other_Format)
        --end;
    return Place{begin, end - begin};
}
