// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/TextSignature.h"

#include "find/Folding.h"

#include <QString>

#include <algorithm>
#include <array>
#include <span>

namespace
{

constexpr int trigram = 3;
constexpr quint32 allNumbers = 0x10000;
constexpr quint32 bitsOfByte = 8;
constexpr quint32 bitsOfWord = 64;

// The upper half of a product mixes all of its factors' bits (multiplicative hashing; Knuth, volume 3, 6.4). The first
// unit is the lowest.
quint16 numberOf(quint64 units)
{
    constexpr quint64 factor = 0x9E3779B97F4A7C15U;
    return static_cast<quint16>((units * factor) >> 48);
}

// Calls `take` with the number of each trigram of a folded text; none reaches over a gap.
template <typename Take>
void eachTrigram(const QString &text, Take take)
{
    constexpr int unitBits = 16;
    qsizetype run = 0;
    quint64 units = 0;
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        run = unit == 0 ? 0 : run + 1;
        units = units >> unitBits | quint64(unit) << (trigram - 1) * unitBits;
        if (run >= trigram)
            take(numberOf(units));
    }
}

// Of so many bits, the one that stands for a number.
quint32 bitOf(quint16 number, quint32 bits)
{
    return static_cast<quint32>((quint64(number) * bits) / allNumbers);
}

} // namespace

SoughtTrigrams::SoughtTrigrams(QStringView expression)
{
    eachTrigram(folded(expression), [this](quint16 number) { m_numbers.push_back(number); });
    std::ranges::sort(m_numbers);
    m_numbers.erase(std::unique(m_numbers.begin(), m_numbers.end()), m_numbers.end());
}

TextSignature::TextSignature(QStringView text)
{
    // A bit for each number, small enough for a core's nearest cache.
    thread_local std::array<quint64, allNumbers / bitsOfWord> seenHere = {};
    thread_local std::vector<quint16> room;
    const QString characters = folded(text);
    room.resize(std::max(room.size(), std::size_t(characters.size())));
    quint64 *const seen = seenHere.data();
    quint16 *last = room.data();
    // Most are there already; which, nobody can foresee, so each is put down and only new ones are kept.
    eachTrigram(characters, [seen, &last](quint16 number) {
        quint64 &word = seen[number / bitsOfWord];
        const quint64 bit = quint64(1) << number % bitsOfWord;
        *last = number;
        last += (word & bit) == 0 ? 1 : 0;
        word |= bit;
    });
    const std::span<const quint16> numbers(room.data(), last);
    for (const quint16 number : numbers)
        seen[number / bitsOfWord] = 0;
    if (numbers.empty())
        return;
    // With two bits for each, of all others four in ten are taken for one of them, and of words of six letters two in a
    // hundred.
    constexpr quint32 bitsOfEach = 2;
    const quint32 wanted = static_cast<quint32>(numbers.size()) * bitsOfEach;
    const quint32 bytes = std::min((wanted + bitsOfByte - 1) / bitsOfByte, allNumbers / bitsOfByte);
    m_bits = QByteArray(bytes, '\0');
    char *bits = m_bits.data();
    for (const quint16 number : numbers) {
        const quint32 bit = bitOf(number, bytes * bitsOfByte);
        bits[bit / bitsOfByte] = static_cast<char>(bits[bit / bitsOfByte] | 1 << bit % bitsOfByte);
    }
}

bool TextSignature::mayHold(const SoughtTrigrams &sought) const
{
    const auto bits = static_cast<quint32>(m_bits.size()) * bitsOfByte;
    return std::ranges::all_of(sought.m_numbers, [&](quint16 number) {
        const quint32 bit = bits > 0 ? bitOf(number, bits) : 0;
        return bits > 0 && (m_bits[bit / bitsOfByte] >> bit % bitsOfByte & 1) != 0;
    });
}
