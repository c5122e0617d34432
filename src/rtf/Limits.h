// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <cstddef>

// How much of anything a text may have, so that no text costs more than a small multiple of its bytes. What lies beyond
// is passed over or takes the nearest value; the words themselves are always kept.
namespace rtf
{

// Word processors allow pages of 22 inches; what lies beyond is no length. Twips.
constexpr int longestLength = 31680;

// Groups nested deeper than this keep their text, but share the formatting of the group at this depth.
constexpr std::size_t deepestGroup = 2000;

// A table inside more tables than this becomes part of the one at this depth. To lay out what stands in a table takes
// twice as long with each table around it.
constexpr int deepestTable = 5;

// Cells of one row; the text of further ones joins the last.
constexpr std::size_t mostCells = 255;

// Tab stops of one paragraph; further ones are passed over.
constexpr int mostTabs = 64;

// Fonts that a text may define, the default one included; a font beyond them is the default one.
constexpr std::size_t mostFonts = 32000;

// Font families that a text shows; those further on are shown in the document's own. Each takes a millisecond.
constexpr qsizetype mostFamilies = 500;

constexpr qint32 mostColors = 32767;
constexpr std::size_t mostListLevels = 9;

// Paragraphs of a list before another one goes on in its place: each paragraph that joins a list makes the document
// look at all of that list. The numbers shown begin anew there, those written do not.
constexpr int longestBulletList = 500;
constexpr int longestNumberList = 4000;

// Such looks at paragraphs, of all numbers of a text: three lists of the greatest length. Those that follow are no
// longer than lists of bullets.
constexpr qint64 mostListLooks = 24'000'000;

// Formats of one kind that a text has before those that follow are told apart for the document (SpreadProperty).
constexpr std::size_t mostUnspreadFormats = 64;

// RTF counts the units of a list label in one byte.
constexpr qsizetype longestListLabel = 255;

// Units of a field's instruction.
constexpr qsizetype longestFieldInstruction = 32768;

// Fields inside fields, and units of all instructions around one; a field beyond them stands for itself alone.
constexpr int deepestField = 8;
constexpr qsizetype longestOuterFields = 4096;

// Units of the instructions of all fields at one place that show nothing.
constexpr qsizetype longestUnshownFields = 65536;

// Brackets inside brackets of an equation; what is deeper is text without a form.
constexpr int deepestEquation = 16;

// Control words of one style, and styles that one is based on in turn.
constexpr std::size_t mostStyleWords = 256;
constexpr std::size_t longestStyleChain = 16;

// A picture of more pixels than this is kept but not shown.
constexpr qint64 mostPicturePixels = 25'000'000;

// Nor is one that would bring all pictures of a text beyond this: small files can unpack to a great many pixels.
constexpr qint64 mostTextPixels = 100'000'000;

} // namespace rtf
