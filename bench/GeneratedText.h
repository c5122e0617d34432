// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/StoredText.h"

#include <QByteArray>

#include <iterator>
#include <random>

// Words of a language that nobody speaks, the frequent ones short.
inline QByteArray generatedWord(std::minstd_rand &random)
{
    static const char *const syllables[] = {"ta", "re", "ni", "so", "mel", "dor", "an", "qui", "vo", "tre", "lin", "e"};
    constexpr unsigned long vocabulary = 3000;
    const auto place = random() % vocabulary * (random() % vocabulary) / vocabulary;
    QByteArray made;
    for (auto rest = place + 1; rest > 0; rest /= std::size(syllables))
        made += syllables[rest % std::size(syllables)];
    return made;
}

// Some 2,000 characters of rich text as they are stored, in which every word "match" is counted.
inline QByteArray generatedText(int number, int matches)
{
    std::minstd_rand random(static_cast<unsigned>(number) + 1);
    QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 Entry " + QByteArray::number(number));
    for (int i = 0; i < matches; ++i)
        rtf += " match";
    while (rtf.size() < 2000) {
        const auto kind = random() % 60;
        rtf += kind == 0 ? "\\par\n" : kind == 1 ? " {\\b " + generatedWord(random) + '}' : ' ' + generatedWord(random);
    }
    return NodeTextCompressIfRequired(rtf + "}");
}
