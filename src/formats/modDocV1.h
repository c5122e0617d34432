// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

#include <QByteArray>

class ByteSink;
class Document;
class Entry;

// The native outline format, version 1: tag records, one a line, of 8-bit text; the entries in pre-order, each with its
// path, label, flags and stored text.
namespace modDocV1
{

// Writes the whole document; nothing when its outline is empty.
void DocSaveVersion(const Document &document, ByteSink &sink);
// The same, but throws what goes wrong.
void write(const Document &document, ByteSink &sink);
// Writes the records of an entry and its subtree. The path is the entry's.
void DocSaveNodeAll(const Document &document, const Entry *top, const QByteArray &path, ByteSink &sink);
// Writes one record: opener, tag name, a blank, the value, a brace and CR LF.
void DocSaveNodeTag(ByteSink &sink, QByteArrayView tagName, QByteArrayView value);

// Builds the document's fonts and entries from a file's bytes, which the result may say were damaged. Fails with 13
// when a font record is missing or no such value, 35601 when an entry's place does not exist, 6 when there are too many
// entries.
void DocLoadVersion(Document &document, const QByteArray &buffer, LoadResult &result);
// The same, but throws what goes wrong.
void read(Document &document, const QByteArray &buffer, LoadResult &result);

} // namespace modDocV1
