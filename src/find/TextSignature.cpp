// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/TextSignature.h"

#include "find/Folding.h"

#include <QString>

#include <algorithm>
#include <array>

namespace
{

constexpr int trigram = 3;
constexpr quint32 allNumbers = 0x10000;
constexpr quint32 bitsOfByte = 8;
constexpr quint32 bitsOfWord = 64;

// The upper half of a product mixes all of its factors' bits (multiplicative hashing; Knuth, volume 3, 6.4).
quint16 numberOf(const char16_t *units)
{
    constexpr quint64 factor = 0x9E3779B97F4A7C15U;
    const quint64 value = quint64(units[0]) | quint64(units[1]) << 16 | quint64(units[2]) << 32;
    return static_cast<quint16>((value * factor) >> 48);
}

// Calls `take` with the number of each trigram of a folded text; none reaches over a gap.
template <typename Take>
void eachTrigram(const QString &text, Take take)
{
    const auto *units = reinterpret_cast<const char16_t *>(text.utf16());
    qsizetype run = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        run = units[i] == 0 ? 0 : run + 1;
        if (run >= trigram)
            take(numberOf(units + i - (trigram - 1)));
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
    thread_local std::array<quint64, allNumbers / bitsOfWord> seen = {};
    thread_local std::vector<quint16> numbers;
    numbers.clear();
    const QString characters = folded(text);
    numbers.reserve(std::size_t(std::min<qsizetype>(characters.size(), allNumbers)));
    eachTrigram(characters, [](quint16 number) {
        quint64 &word = seen[number / bitsOfWord];
        const quint64 bit = quint64(1) << number % bitsOfWord;
        if ((word & bit) == 0)
            numbers.push_back(number);
        word |= bit;
    });
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
