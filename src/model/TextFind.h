// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class TextSelection;

// How a text is searched; the values can be joined.
struct TextFind {
    enum Option { WholeWord = 2, MatchCase = 4, NoHighlight = 8 };
};

// The offset of the first match at or behind `start` that ends by `end` (-1: the end of the text), or -1. The options
// are those of TextFind::Option; a word is a run of letters and digits of any script.
int findText(const QString &text, const QString &expression, int start, int end, int options);

// The same in the text of a selection, which moves to the match unless TextFind::NoHighlight is among the options.
int findIn(TextSelection &text, const QString &expression, int start, int end, int options);
