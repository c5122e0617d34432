// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>
#include <vector>

// Letters that are looked for in a name: all of them, in their order, with whatever between them. Names come folded
// (see Folding.h); of a long one the beginning counts.
class LetterPattern
{
public:
    // So much of a name is looked at, in UTF-16 units.
    static constexpr qsizetype longestLooked = 400;

    // What a placement of the letters is worth.
    static constexpr int wordBeginning = 8;
    static constexpr int nameBeginning = 3;
    static constexpr int behindTheLast = 9;
    // For a run of letters that are a word from its beginning to its end.
    static constexpr int wholeWord = 4;
    // The length of a name counts for so much less than these.
    static constexpr int unit = 8;
    static constexpr int longestCounted = 120;

    LetterPattern() = default;
    // Letters as they are typed; blanks among them mean nothing.
    explicit LetterPattern(QStringView typed);

    bool isEmpty() const { return m_letters.isEmpty(); }

    const QString &letters() const { return m_letters; }

    // Whether every name that has these letters has the other's too.
    bool narrows(const LetterPattern &other) const { return m_letters.startsWith(other.m_letters); }

    // A bit for each of the characters, several of which share one. A name without a bit of the pattern's has not all
    // of its letters.
    static quint64 bitsOf(QStringView folded);

    quint64 bits() const { return m_bits; }

    // How well the letters stand in a name, by the best of the ways in which they do; none when they do not. No letters
    // stand everywhere, and nowhere better.
    std::optional<int> rank(QStringView folded) const;

    // Where the letters stand in one of these best ways, as offsets in the folded name; empty when they do not.
    std::vector<int> places(QStringView folded) const;

private:
    QString m_letters;
    quint64 m_bits = 0;
};
