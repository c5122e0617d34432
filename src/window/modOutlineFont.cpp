// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/modOutlineFont.h"

#include "document/Document.h"
#include "document/Ports.h"
#include "text/modFont.h"
#include "util/Procedure.h"

namespace modOutline
{

void OutlineFont()
{
    procedure("modOutline OutlineFont", [] {
        if (Document *document = DocumentActive()) {
            const HourglassPointer hourglass;
            document->m_bDataChanged = true;
            modFont::ChangeTreeviewFont(document->m_fntOutlineFont);
        }
    });
}

} // namespace modOutline
