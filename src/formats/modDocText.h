// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "formats/Format.h"

#include <QByteArray>
#include <QString>

// Plain text: an outline is written as headings and texts, and any text is read as one entry.
namespace modDocText
{

// The outline in the plain-text layout: for each entry in outline order its path, a blank and its label on one line,
// its text without trailing line ends, and an empty line. Lines end with CR LF. Empty for an empty outline.
QString plainTextLayout(const Outline &outline);

// An outline of one entry, labelled "Text", with a text.
std::unique_ptr<Outline> outlineOf(const QString &text);

void DocSaveVersion(const Outline &outline, ByteSink &sink);
// The same, but throws what goes wrong.
void write(const Outline &outline, ByteSink &sink);

// Reads a text file's bytes: Unicode with a byte order mark, else UTF-8 or Windows-1252 as AnsiCodec tells them apart.
ReadOutline DocLoadVersion(const QByteArray &buffer);
ReadOutline read(const QByteArray &buffer);

} // namespace modDocText
