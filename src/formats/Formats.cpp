// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/Formats.h"

#include "formats/modDocClipboard.h"
#include "formats/modDocText.h"
#include "formats/modDocV1.h"

void Formats::readNative(Document &document, const QByteArray &buffer, LoadResult &result)
{
    modDocV1::read(document, buffer, result);
}

void Formats::readPlainText(Document &document, const QByteArray &buffer)
{
    modDocText::read(document, buffer);
}

void Formats::writeNative(const Document &document, ByteSink &sink)
{
    modDocV1::write(document, sink);
}

void Formats::writePlainText(const Document &document, ByteSink &sink)
{
    modDocText::write(document, sink);
}

void Formats::importText(const QString &sFile)
{
    modDocText::DocImport(sFile);
}

void Formats::importClipboard()
{
    modDocClipboard::DocImport();
}

void Formats::exportText(const QString &sFile)
{
    modDocText::DocExport(sFile);
}

void Formats::exportClipboard()
{
    modDocClipboard::DocExport();
}
