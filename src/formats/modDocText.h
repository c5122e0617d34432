// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

class ByteSink;
class Document;

// Plain-text exchange: an outline is written as headings and texts, and any text is read as one entry.
namespace modDocText
{

// The document in the plain-text layout: for each entry in outline order its path, a blank and its label on one line,
// its text without trailing line ends, and an empty line. Lines end with CR LF. Empty for an empty outline.
QString plainTextLayout(const Document &document);

// Makes the root of an empty outline, labelled "Text", of a text.
void makeTextEntry(Document &document, const QString &text);

void DocSaveVersion(const Document &document, ByteSink &sink);
// Reads a text file's bytes: Unicode with a byte order mark, else UTF-8 or Windows-1252 as AnsiCodec tells them apart.
void DocLoadVersion(Document &document, const QByteArray &buffer);
// The two again, but they throw what goes wrong.
void write(const Document &document, ByteSink &sink);
void read(Document &document, const QByteArray &buffer);

// Reads a text file into the active document, which must be empty.
void DocImport(const QString &sFile);
// Writes the active document as plain text to a file, replacing it safely.
void DocExport(const QString &sFile);

} // namespace modDocText
