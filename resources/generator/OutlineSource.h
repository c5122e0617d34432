// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/clsFont.h"

#include <QString>
#include <QStringView>
#include <QTextCharFormat>

#include <stdexcept>
#include <vector>

// The readable source of an outline document, such as resources/sample.outline.
//
//   ; a note for whoever edits the source, anywhere on a line of its own
//   %outline-font DejaVu Sans, 10          the outline's and the texts' font: a name and a size in points
//   %text-font Liberation Serif, 11
//   %open-levels 2                         how many levels of the outline are shown
//   %style key font Liberation Mono; size 10
//
//   # Label of the root
//   Its text.
//   ## Label of a child of the root [tagged]
//
// A heading opens an entry at the depth of its number signs; " [tagged]" at its end tags the entry. The lines up to the
// next heading are the entry's text. Lines that follow each other are one paragraph; a blank line makes an empty one,
// as a writer would type it; a backslash at the end of a line ends the paragraph there. A paragraph may begin with
//
//   - text           a bullet (-- and so on, one step further in for every hyphen more)
//   > text           one step further in (>> two steps)
//   [centre] text    centred; [right] to the right
//
// and a line such as "[tabs 300 3000]" sets the tab stops, in twips, of the entry's paragraphs from there on.
//
// Within a paragraph there may be
//
//   *bold* /italic/ _underlined_ ~struck out~ {size 14; colour C00000; font DejaVu Sans|text} {key|text in a style}
//
// A backslash takes the next character as it stands, so that \* is a star; \t is a tab and \n a line break within the
// paragraph.
struct SourceRun {
    QString text;
    QTextCharFormat format;
};

struct SourceParagraph {
    std::vector<SourceRun> runs;
    Qt::Alignment alignment = Qt::AlignLeft;
    // Steps of indentation; for a bullet, beyond the first.
    int indent = 0;
    bool bullet = false;
    // In twips.
    std::vector<int> tabs;
};

struct SourceEntry {
    // 1 for the root.
    int level = 0;
    QString label;
    bool tagged = false;
    std::vector<SourceParagraph> paragraphs;
};

struct OutlineSource {
    clsFont outlineFont;
    clsFont textFont;
    int openLevels = 2;
    std::vector<SourceEntry> entries;
};

// A mistake in a source; what() begins with the number of the line.
class SourceError : public std::runtime_error
{
public:
    SourceError(int line, const QString &what);
};

OutlineSource parseOutlineSource(QStringView source);
