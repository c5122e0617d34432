// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>

#include <vector>

// Colours in which a text is shown so that it can be read, and which are never stored. Text of no colour of its own on
// a background of its own (of characters, paragraphs, cells or tables) is black or white, whichever stands out, where
// the desktop's text colour does not; a link that can hardly be told from its background has the desktop's colour of
// links. From the first to the last paragraph, both included; what has no background stands on the palette's base
// colour.
QList<QAbstractTextDocumentLayout::Selection> readableText(const QTextBlock &first, const QTextBlock &last,
                                                           const QPalette &palette);

// The bullet or number of a paragraph of a list, and the colour in which it stands out.
struct ReadableSign {
    QTextBlock paragraph;
    QColor colour;
};

// The signs that would not stand out of the background of their cell or table in the desktop's text colour. Text's own
// colour is a number's too, but never a bullet's.
std::vector<ReadableSign> readableSigns(const QTextBlock &first, const QTextBlock &last, const QPalette &palette);
