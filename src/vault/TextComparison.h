// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>

#include <vector>

// Some characters of a text, from the first word of them to the last.
struct TextStretch {
    qsizetype start = 0;
    qsizetype length = 0;

    bool operator==(const TextStretch &) const = default;
};

// The words of one text that another does not have at that place, as stretches, and how many words they are.
struct UnmatchedWords {
    std::vector<TextStretch> stretches;
    int words = 0;
};

struct TextComparison {
    UnmatchedWords before;
    UnmatchedWords after;
};

// Compares two texts word by word; blanks count for nothing, the ends of paragraphs and signs for a word each, but are
// not counted as words. The time it takes grows with the texts, not with their product.
TextComparison compareTexts(QStringView before, QStringView after);
