// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class Document;

// Plain text in and out of documents: by files, and by the clipboard.

namespace modDocText
{

// Opens a new document with a text file's text as its one entry. Null when it could not be read: then none is opened.
Document *DocImport(const QString &sFile);
// Writes the active document as plain text to a file, replacing it safely.
void DocExport(const QString &sFile);

} // namespace modDocText

namespace modDocClipboard
{

// The same with the clipboard's text.
Document *DocImport();
// Puts the active document's plain-text layout on the clipboard.
void DocExport();

} // namespace modDocClipboard
