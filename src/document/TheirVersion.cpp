// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Making a document what its file has become.

#include "document/OutsideChange.h"

#include "document/Adoption.h"
#include "document/Document.h"
#include "document/OpenedFile.h"
#include "document/Ports.h"
#include "document/modNodes.h"

#include "util/Procedure.h"

using namespace Qt::StringLiterals;

namespace
{

void adoptOutline(Document &document, OpenedFile &file)
{
    const Outline &theirs = *file.read.outline;
    const bool isNative = file.iVersion == Document::nativeFormat;
    Adoption adoption(document, document.tree.root(), theirs, theirs.tree.root());
    {
        const History::Step step(document.history, u"reading of the changed file"_s);
        const HistoryBulk bulk(document.history);
        adoption.run();
        if (isNative)
            document.history.setFonts(theirs.outlineFont, theirs.textFont);
        document.history.setFileForeignRecords(theirs.foreignHeader, theirs.foreignTrailer);
    }
    if (!document.tree.selected())
        document.history.select(adoption.counterpart(theirs.tree.selected()));
    if (isNative)
        document.setPaneFonts(document.m_fntOutlineFont, document.m_fntOutlineFont);
}

void takeTheirFile(Document &document)
{
    const HourglassPointer hourglass;
    OpenedFile file = readFile(document.m_sFile);
    if (file.read.failure) {
        try {
            std::rethrow_exception(file.read.failure);
        } catch (...) {
            document.tell({NoticeKind::FileChanged,
                           u"The file %1 has changed on the disk, and cannot be read whole: "
                           "%2. It is shown here as it was before."_s.arg(document.m_sFile, causeOfFailure(file))});
            throw;
        }
    }
    const modNodes::ActionScope action;
    adoptOutline(document, file);
    document.m_iFileFormatVersion = file.iVersion;
    document.m_bFromOutline = file.iVersion == Document::nativeFormat;
    document.setExpansionLevel(0);
    document.history.markSaved();
    document.m_bSaveRefused = false;
    document.takeFile(file.stamp);
    document.dismiss(NoticeKind::NotReadWhole);
    if (file.read.cutLabels > 0)
        tellOfCutLabels(document, file.read.cutLabels);
    if (document.m_bFromOutline)
        document.checkTexts();
    modNodes::NodeSelectFull(document, document.tree.selected());
    // Where an entry was opened to show it.
    document.history.markSaved();
    document.note(u"The file %1 was read again"_s.arg(document.m_sFile));
}

} // namespace

bool takeTheirs(Document &document)
{
    return procedure("OutsideChange takeTheirs", [&] {
        if (document.hasUnsavedChanges() || document.m_sFile.isEmpty())
            return false;
        takeTheirFile(document);
        return true;
    });
}
