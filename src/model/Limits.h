// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

// How much of anything a document may hold and show, so that no file and no clipboard takes the machine. What lies
// beyond is kept as it is and shown in part; nothing is thrown away. What a rich text may hold is in rtf/Limits.h.
namespace limits
{

// Bytes that a stored text is inflated to. A thousandth of that can be enough in a file.
constexpr qsizetype longestInflated = qsizetype(256) << 20;

// Bytes that are inflated in all to find a document's damaged texts.
constexpr qint64 mostChecked = qint64(4) << 30;

// Characters of a text's beginning that the text pane shows when it may not show it whole.
constexpr qsizetype shownBeginning = 100'000;

// Characters of one paragraph that the text pane lays out. It takes a second; the text engine itself counts the bytes
// of a paragraph's glyphs in an int and goes down with the program at some 150 million characters.
constexpr qsizetype longestParagraph = 1'000'000;

// Characters without a place to break the line that are pasted. Each line looks through the rest of them: half a
// million take minutes, and ten times a hundred thousand half a minute. Words that grow together may be longer when the
// text is shown again.
constexpr qsizetype longestWord = 20'000;
constexpr qsizetype longestShownWord = 40'000;

// Paragraphs that the text pane lays out. Beyond, its layout takes time that grows faster than the text.
constexpr qsizetype mostParagraphs = 100'000;

// Characters of one text that the text pane lays out.
constexpr qsizetype longestText = 20'000'000;

// Pixels beyond which a text is not laid out. The text engine takes a text without pages for one of a single page of
// some eight million pixels, and looks for ever for the place of what does not fit on it.
constexpr qreal tallestText = 4'000'000;

// Microseconds of what model/LayoutStrain.h foresees for a text that is pasted.
constexpr qreal mostEffort = 3'000'000;

// The same of a key that is typed into one of its paragraphs.
constexpr qreal mostKeyEffort = 300'000;

// A text that is read again may be foreseen for some more than when it was pasted.
constexpr qreal shownStrain = 1.25;

// Bytes of a text that cannot strain anybody.
constexpr qsizetype harmlessText = 1000;

// Characters that may be typed or pasted into a label.
constexpr int longestLabel = 32'767;

// Characters of a label that the outline and the status bar show. A row is laid out whole whatever of it is in sight,
// and every row's width is asked for.
constexpr qsizetype shownLabel = 1000;

// Characters of a label from a file that its editor takes. The editor lays out the whole of them at each key.
constexpr qsizetype longestEditedLabel = 100'000;

// Characters of a label that are printed.
constexpr qsizetype printedLabel = longestLabel;

// What is pasted with its formatting: HTML elements, and cells of tables. Beyond, laying it out takes many seconds.
constexpr qsizetype mostElements = 100'000;
constexpr qsizetype mostCells = 20'000;

// Cells of tables that the text pane lays out. Reading what was written may give some more than there were.
constexpr qsizetype mostShownCells = 30'000;

// Bytes of rich text that are pasted without a look at how much text is there already. No word of it is too long.
constexpr qsizetype mostUnlooked = longestWord;

// HTML elements within each other; those further in are taken for their words.
constexpr std::size_t deepestElement = 200;

// Items of one list of a web page. Each looks at all before it; once there were so many looks, lists are shorter.
constexpr int longestHtmlList = 1000;
constexpr qint64 mostHtmlListLooks = 6'000'000;
constexpr int longestLateHtmlList = 250;

// Font families that a web page may name. The looks of its elements are compared one by one with those that differ from
// them in the family alone: twenty thousand families take half a minute.
constexpr qsizetype mostHtmlFamilies = 500;

// Looks of a web page's elements that differ in nothing but a name, a gradient or the widths of a table's columns; each
// kind for itself. Twenty-five thousand names take more than a minute.
constexpr qsizetype mostHtmlLooks = 500;

// Bytes of a picture, or of all pictures that a web page brings along, and how many they may be.
constexpr qint64 largestPicture = 32'000'000;
constexpr std::size_t mostPastedPictures = 500;

// Bytes of all pictures that a copied text takes along as a web page.
constexpr qsizetype mostCopiedPictures = 8'000'000;

} // namespace limits
