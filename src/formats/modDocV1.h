// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "formats/Format.h"

#include <QByteArray>

// The native outline format, version 1: tag records, one a line, of 8-bit text; the entries in pre-order, each with its
// path, label, flags and stored text.
namespace modDocV1
{

// Writes the whole outline; nothing when it is empty.
void DocSaveVersion(const Outline &outline, ByteSink &sink);
// The same, but throws what goes wrong.
void write(const Outline &outline, ByteSink &sink);
// Writes the records of an entry and its subtree. The path is the entry's.
void DocSaveNodeAll(const Outline &outline, const Entry *top, const QByteArray &path, ByteSink &sink);
// Writes one record: opener, tag name, a blank, the value, a brace and CR LF.
void DocSaveNodeTag(ByteSink &sink, QByteArrayView tagName, QByteArrayView value);

// Reads the fonts and the entries. What breaks it off: 13 when a font record is missing or no such value, 35601 when an
// entry's place or the selected entry does not exist, 6 when there are too many entries.
ReadOutline DocLoadVersion(const QByteArray &buffer);
ReadOutline read(const QByteArray &buffer);
// The same; the texts are parts of the buffer, which has to stay as long as the outline.
ReadOutline readInPlace(const QByteArray &buffer);

// The number that a file says is its format version.
std::optional<qint16> statedVersion(const QByteArray &buffer);

} // namespace modDocV1
