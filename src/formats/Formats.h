// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

// The formats that the document lifecycle reads and writes.
class Formats final : public DocumentFormats
{
public:
    void readNative(Document &document, const QByteArray &buffer, LoadResult &result) override;
    void readPlainText(Document &document, const QByteArray &buffer) override;
    void writeNative(const Document &document, ByteSink &sink) override;
    void writePlainText(const Document &document, ByteSink &sink) override;
    void importText(const QString &sFile) override;
    void importClipboard() override;
    void exportText(const QString &sFile) override;
    void exportClipboard() override;
};
