// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QStringView>

#include <vector>

// What of an expression is looked for in signatures: its trigrams (runs of three characters) as they are folded, each
// by its number.
class SoughtTrigrams
{
public:
    explicit SoughtTrigrams(QStringView expression);

    // An expression shorter than three characters rules nothing out.
    bool isEmpty() const { return m_numbers.empty(); }

private:
    friend class TextSignature;
    std::vector<quint16> m_numbers;
};

// The trigrams of a text in a few bits each (a Bloom filter with one hash function; B. Bloom, 1970): tells of most
// texts that an expression does not stand in them.
class TextSignature
{
public:
    // That of an empty text.
    TextSignature() = default;
    explicit TextSignature(QStringView text);

    // False only when the expression stands nowhere in the text, in whichever case and accents.
    bool mayHold(const SoughtTrigrams &sought) const;

    // The memory that it takes, in bytes.
    qsizetype weight() const { return m_bits.size(); }

private:
    QByteArray m_bits;
};
