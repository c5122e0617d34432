// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

class Document;

// How a save ended. One that failed, or was refused at a question, has changed nothing on disk.
enum class SaveOutcome { Failed, Saved, Refused };

// The life of documents: creating, loading and saving them.
namespace modDoc
{

// Creates a document window with its untitled caption.
Document *DocInit();

// A new, empty document with the default fonts. Its outline has no entry yet.
void DocNew();

// Opens a file in a new document window. False when it could not be read whole: the window then keeps what was read,
// without a file name, and the failure is in the session log. A file that does not exist opens nothing.
bool DocLoad(const QString &sFile);

// Opens a file as a document that has none: it is looked at, and what the user makes of it is saved elsewhere. So it
// may be written in whatever the file allows, and is no recent file.
bool DocLoadUnnamed(const QString &sFile, const QString &sCaption);

// Writes the active document to a file; the extension decides the format.
SaveOutcome DocSave(const QString &sFile);

// The native format for the extension "qly" in any case, plain text for any other.
qint16 DocDefaultVersionFromExt(const QString &sFile);

// The value of the first record of that tag anywhere in a native file's bytes; empty when there is none.
QByteArray DocLoadTag(const QByteArray &buffer, const QByteArray &tagName);

// Whether a record of that tag stands exactly at a 1-based position; then the value up to the next brace and that
// brace's 1-based position.
bool DocLoadTagAtPosition(const QByteArray &buffer, const QByteArray &tagName, qsizetype position,
                          qsizetype &endPosition, QByteArray &value);

// What every record begins with.
inline constexpr QByteArrayView recordOpener = "{\\qlf_";

} // namespace modDoc
