// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QTextCursor;
class QTextDocument;

// A text document as plain characters, the way the text pane counts them: a paragraph break is CR LF, the beginning of
// a table cell too; a soft line break is LF; a picture is one blank; every other character is itself.
namespace rtf
{

QString plainText(const QTextDocument &document);

// The same for whoever looks for something in it: a picture is U+FFFC, for it is none of the blanks that are looked
// for.
QString findableText(const QTextDocument &document);

// The selected part; empty when nothing is selected. Of selected cells, each row is a line and a tab stands between two
// cells.
QString plainText(const QTextCursor &selection);

// The place in plainText() of a position of the document, which counts a break as one. Both are clamped to the text.
int textOffset(const QTextDocument &document, int position);

// The position of the document at a place in plainText(). Between the CR and the LF of a break: the position before it.
int documentPosition(const QTextDocument &document, int offset);

} // namespace rtf
