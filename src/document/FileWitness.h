// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

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
};
