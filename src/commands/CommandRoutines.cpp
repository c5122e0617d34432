// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandRoutines.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/TextPane.h"
#include "text/modFont.h"
#include "util/Procedure.h"

#include <algorithm>

namespace
{

void stepTextSize(qint16 direction)
{
    if (const Document *document = DocumentActive(); document && document->view()->txtRTF.SelLength() > 0)
        modFont::ChangeSelectedFontSize(direction);
}

} // namespace

namespace modOutline
{

void OutlineFont()
{
    procedure("modOutline OutlineFont", [] {
        if (Document *document = DocumentActive()) {
            const HourglassPointer hourglass;
            document->history.touch();
            OutlinePane &pane = document->view()->trvOutline;
            const QFont shown = pane.Font();
            clsFont font = document->m_fntOutlineFont;
            if (!modFont::ChangeTreeviewFont(font))
                return;
            try {
                const History::Step step(document->history, QStringLiteral("change of the outline's font"));
                document->history.setFonts(font, document->m_fntTextFont);
            } catch (...) {
                pane.setFont(shown);
                throw;
            }
        }
    });
}

} // namespace modOutline

namespace textSize
{

void makeSmaller()
{
    stepTextSize(-1);
}

void makeLarger()
{
    stepTextSize(1);
}

} // namespace textSize

namespace documentWindows
{

void activateNext()
{
    const std::vector<Document *> documents = ports().windows->documents();
    auto next = std::ranges::find(documents, DocumentActive());
    if (next != documents.end() && documents.size() > 1)
        (++next == documents.end() ? documents.front() : *next)->view()->window.activate();
}

} // namespace documentWindows
