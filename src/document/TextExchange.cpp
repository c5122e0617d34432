// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/TextExchange.h"

#include "document/Document.h"
#include "document/Globals.h"
#include "document/Ports.h"
#include "document/SafeFile.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "formats/modDocText.h"

#include "util/Procedure.h"
#include "util/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace
{

// Reads an outline, and only then opens a document for it.
template <typename Read>
Document *openRead(Read &&read)
{
    const HourglassPointer hourglass;
    std::unique_ptr<Outline> outline;
    {
        const BusyScope busy;
        outline = read();
    }
    Document &document = modDoc::newDocument(std::move(outline));
    modNodes::NodeSelect(document, document.tree.root());
    document.autoFitSplit();
    return &document;
}

std::unique_ptr<Outline> readText(const QString &sFile)
{
    ReadOutline result = modDocText::read(readWholeFile(sFile));
    if (result.failure)
        std::rethrow_exception(result.failure);
    return std::move(result.outline);
}

void exportText(const Document &document, const QString &sFile)
{
    if (!document.tree.root())
        throw RunTimeError(ErrorNumber::InvalidCall);
    SafeFile file(sFile);
    modDocText::write(document.outline(), file);
    file.flushToDisk();
    file.replace();
}

} // namespace

namespace modDocText
{

Document *DocImport(const QString &sFile)
{
    return procedure("modDocText DocImport", [&] { return openRead([&] { return readText(sFile); }); });
}

void DocExport(const QString &sFile)
{
    procedure("modDocText DocExport", [&] {
        Document *document = DocumentActive();
        if (!document)
            return;
        const HourglassPointer hourglass;
        try {
            exportText(*document, sFile);
        } catch (...) {
            document->say(u"The file %1 could not be saved"_s.arg(sFile));
            throw;
        }
    });
}

} // namespace modDocText

namespace modDocClipboard
{

Document *DocImport()
{
    return procedure("modDocClipboard DocImport",
                     [] { return openRead([] { return modDocText::outlineOf(ports().clipboard->text()); }); });
}

void DocExport()
{
    procedure("modDocClipboard DocExport", [] {
        const Document *document = DocumentActive();
        if (!document)
            return;
        const HourglassPointer hourglass;
        ports().clipboard->setText(modDocText::plainTextLayout(document->outline()));
    });
}

} // namespace modDocClipboard
