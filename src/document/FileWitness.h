// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QString>

class Document;

// Who follows what becomes of the files of documents.
class FileWitness
{
public:
    virtual ~FileWitness() = default;
    // The document was read from its file and is open.
    virtual void fileRead(const Document &document) = 0;
    // Its file holds what the document is.
    virtual void fileWritten(Document &document) = 0;
    // Saving is about to put what the document is in the place of what its file holds now, if there is one, or to write
    // over that where it stands. It need not have been the document's before.
    virtual void aboutToReplace(const Document &document, bool inPlace) = 0;
    // Whether what the file holds now, should it be replaced, can be had back.
    virtual bool willKeep(const Document &document) = 0;
    // What was never saved was recovered, and had been so since. It belongs to a file, if it ever had one; the document
    // need not have that.
    virtual void recovered(const Document &document, const QString &file, const QDateTime &since) = 0;
};
