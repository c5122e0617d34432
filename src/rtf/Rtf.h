// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

class QTextCursor;
class QTextDocument;

// Rich Text Format 1.9.1 to and from text documents. Reading never fails: what cannot be understood is left out,
// damaged input gives what could be read of it, and nothing that a text names (a file, an address) is ever opened.
namespace rtf
{

// Whether the bytes begin with the opening of an RTF document, blanks and line ends before it allowed.
bool isRtf(QByteArrayView bytes);

// Replaces the whole content. The document has an empty undo history afterwards; its undo switch stays as it was. Every
// run gets an explicit family and size. The empty paragraph that a final \par would open is not made.
void read(QByteArrayView rtf, QTextDocument &document);

// Replaces the cursor's selection by the RTF's content, as one step of undo, and leaves the cursor behind it. A single
// paragraph keeps the paragraph format of its new surroundings.
void insert(QByteArrayView rtf, QTextCursor &cursor);

// Puts the RTF's content where the cursor stands, which is in an empty paragraph; that becomes the content's first one.
// Every paragraph and run looks as read() would have it, but default tab stops stay the document's own.
void append(QByteArrayView rtf, QTextCursor &cursor);

// The document as RTF: pure ASCII, the same bytes for the same content. What names no font has the default font.
QByteArray write(const QTextDocument &document);

// The selected part as RTF; empty when nothing is selected. Selected cells are a table of their own.
QByteArray write(const QTextCursor &selection);

// The text that plainText() gives for the document that read() would build, without building it.
QString toPlainText(QByteArrayView rtf);

// The same of findableText().
QString toFindableText(QByteArrayView rtf);

// The same, and how many cells all tables of that document have; what a cell spans counts too. A cell counts twice for
// each table around its own: that much longer it takes to be laid out.
struct PlainContent {
    QString text;
    qsizetype cells = 0;
};

PlainContent plainContent(QByteArrayView rtf);

} // namespace rtf
