// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QSizeF>

class QTextBlock;

// Changes the paragraphs from one to another, both of one text, so that nothing of them lies beyond a page of that
// size, in pixels of 96 to the inch: tables that are too wide become narrower, indents leave a line that can be read,
// and pictures that are too large become smaller.
void fitToPage(const QTextBlock &first, const QTextBlock &last, const QSizeF &page);
