// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <vector>

// Text as it is compared when neither case nor accents count: each character decomposed (Unicode Standard Annex 15,
// canonical), in simple case folding and without marks and format characters. Blanks, controls and whatever else may be
// written in several ways (a lone half of a surrogate pair, too) are NUL. Folding a text is folding its characters one
// by one, so that what is part of a text is, folded, part of the folded text.
QString folded(QStringView text);

// Where in a text each character of the folded text comes from: the offset of the character's first unit.
std::vector<int> originsOfFolded(QStringView text);
