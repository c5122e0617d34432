// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

// How much of anything a document may hold and show, so that no file and no clipboard takes the machine. What lies
// beyond is kept as it is and shown in part; nothing is thrown away. What a rich text may hold is in rtf/Limits.h.
namespace limits
{

// Characters of one paragraph that the text pane lays out. It takes a second; the text engine itself counts the bytes
// of a paragraph's glyphs in an int and goes down with the program at some 150 million characters.
constexpr qsizetype longestParagraph = 1'000'000;

// Paragraphs that the text pane lays out. Beyond, its layout takes time that grows faster than the text.
constexpr qsizetype mostParagraphs = 100'000;

// Characters of one text that the text pane lays out.
constexpr qsizetype longestText = 20'000'000;

} // namespace limits
