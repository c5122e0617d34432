// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Limits.h"

#include <QStringView>

#include <vector>

// What a line feed that follows no carriage return is: in plain text the end of a paragraph, in the text pane's own
// plain form (see rtf/PlainText.h) a line break within one.
enum class LineFeed { EndsParagraph, WithinParagraph };

// How many of a text's characters, from its beginning, the text pane may lay out: all of them unless a bound of
// model/Limits.h is passed. Never ends between the two halves of a character or of a CR LF.
qsizetype mayBeLaidOut(QStringView text, LineFeed lineFeed, qsizetype longestWord = limits::longestWord);

// A part of a paragraph between two places where a line may end.
struct UnbrokenStretch {
    qsizetype from;
    qsizetype to;
};

// Those of more characters than that, as the text engine finds them.
std::vector<UnbrokenStretch> unbrokenStretches(QStringView paragraph, qsizetype longerThan);
