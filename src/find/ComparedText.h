// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>
#include <vector>

struct Comparison {
    bool matchCase = false;
    bool accents = false;
};

// A text as it is compared when something is looked for in it: canonically decomposed (Unicode Standard Annex 15), in
// simple case folding where case does not count, without marks that are accents where those do not, always without
// characters that are not seen, and with any blank as a space. What marks mean other letters by (vowel signs, voicing)
// counts always. It knows where in the text each of its units comes from.
//
// What is part of one such text is, folded, part of the other one folded (see Folding.h).
class ComparedText
{
public:
    ComparedText(QStringView text, Comparison comparison);

    const QString &units() const { return m_units; }

    struct Place {
        qsizetype start;
        qsizetype length;
    };

    // The stretch of the text that stands for these units; nothing when they begin or end within a character. The text
    // must be the one that this was made of.
    std::optional<Place> placeOf(qsizetype start, qsizetype length, QStringView text) const;

private:
    qsizetype origin(qsizetype unit) const;
    qsizetype takeAscii(QStringView text);
    void append(QStringView text, qsizetype from, qsizetype to);

    const Comparison m_comparison;
    QString m_units;
    // Where the character begins that each unit is of, unless each stands where it stood.
    std::vector<int> m_origins;
    bool m_isMapped = false;
    qsizetype m_size;
};
