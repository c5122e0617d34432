// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/modOutline.h"

#include "model/Document.h"
#include "model/OutlinePane.h"
#include "model/Ports.h"

#include "util/Procedure.h"

namespace modOutline
{

void OutlineRename()
{
    procedure("modOutline OutlineRename", [] {
        Document *document = DocumentActive();
        if (!document)
            return;
        const HourglassPointer hourglass;
        document->m_bDataChanged = true;
        if (document->tree.selected())
            document->trvOutline.StartLabelEdit();
    });
}

} // namespace modOutline
