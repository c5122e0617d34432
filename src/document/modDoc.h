// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Outline.h"

#include <QString>

#include <memory>

class Document;

// How a save ended. One that failed, or was refused at the warning of the text format, or declined because the file is
// another's work, has changed nothing on disk.
enum class SaveOutcome { Failed, Saved, Refused, Declined };

// The life of documents: creating, loading and saving them.
namespace modDoc
{

// Opens a document window with its untitled caption, for what was read or for an outline without entries.
Document *DocInit(std::unique_ptr<Outline> outline = nullptr);

// A new, empty document with the default fonts. Its outline has no entry yet.
void DocNew();
// The same, for an outline that comes from elsewhere; throws instead of reporting.
Document &newDocument(std::unique_ptr<Outline> outline = nullptr);

// Opens a file in a new document window. False when it could not be read whole: the window then keeps what was read,
// without a file name, and the failure is in the session log. A file that does not exist opens nothing.
bool DocLoad(const QString &sFile);

// The same, but of a file that is open already, by whatever name, the window is shown instead.
bool showOrLoad(const QString &sFile);

// The document that a file is open in, by whatever name; one may be left out. Null when there is none.
Document *documentOfFile(const QString &sFile, const Document *leftOut = nullptr);

// Opens a file as a document that has none: it is looked at, and what the user makes of it is saved elsewhere. So it
// may be written in whatever the file allows, and is no recent file.
bool DocLoadUnnamed(const QString &sFile, const QString &sCaption);

// Opens an outline as a document that is there to be read: it has no file, and nothing of it can be changed until it is
// saved as one. Null after a reported failure.
Document *openForReading(std::unique_ptr<Outline> outline, const QString &sCaption);

// Writes the active document to a file; the extension decides the format.
SaveOutcome DocSave(const QString &sFile);

// The same for any document; throws what keeps it from being saved, instead of reporting it.
SaveOutcome save(Document &document, const QString &sFile);

// A document of a file's, which no window shows. Throws what keeps the file from being read whole.
std::unique_ptr<Document> openUnshown(const QString &sFile);

// The native format for the extension "qly" in any case, plain text for any other.
qint16 DocDefaultVersionFromExt(const QString &sFile);

} // namespace modDoc
