// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocClipboard.h"

#include "formats/ImportScope.h"
#include "formats/modDocText.h"

#include "document/Document.h"
#include "document/Ports.h"

#include "util/Procedure.h"

namespace modDocClipboard
{

void DocExport()
{
    procedure("modDocClipboard DocExport", [] {
        const Document *document = DocumentActive();
        if (!document)
            return;
        const HourglassPointer hourglass;
        ports().clipboard->setText(modDocText::plainTextLayout(*document));
    });
}

void DocImport()
{
    procedure("modDocClipboard DocImport", [] {
        Document *document = DocumentActive();
        if (!document)
            return;
        const ImportScope import(*document);
        modDocText::makeTextEntry(*document, ports().clipboard->text());
    });
}

} // namespace modDocClipboard
