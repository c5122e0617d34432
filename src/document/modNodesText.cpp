// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Moving texts between the entries and the text pane.

#include "document/modNodes.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/Globals.h"
#include "document/LeftOutText.h"
#include "document/Ports.h"
#include "document/StepProcedure.h"
#include "document/TextCheck.h"
#include "document/TextPane.h"
#include "model/ShownLabel.h"
#include "model/ShownText.h"
#include "model/StoredText.h"

#include "util/Procedure.h"

using namespace Qt::StringLiterals;

namespace
{

// A text that is not shown whole stands in a locked pane, and the user is told why.
void tellOfWithheldText(Document &document, const Entry *entry, TextState state)
{
    document.updateTextLock();
    if (state != TextState::Beginning)
        document.dismiss(NoticeKind::LongText);
    else
        document.tell(
            {NoticeKind::LongText,
             u"The text of \"%1\" is too long or too elaborately formatted to be shown whole. What is seen is the "
             "beginning of its words, which can be read but not changed; the whole text is kept."_s.arg(
                 briefLabel(entry->label()))});
    if (state == TextState::Damaged && !document.hasNotice(NoticeKind::DamagedText))
        tellOfDamagedTexts(document, {entry->label()}, 1);
}

} // namespace

namespace modNodes
{

void NodeTextGet(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeTextGet", [&] {
        DocumentView *view = document.view();
        if (!view)
            return;
        TextPane &pane = view->txtRTF;
        std::shared_ptr<EntryDocument> text =
            entry ? document.texts.open(*entry, pane.Font()) : std::make_shared<EntryDocument>(Inflated(), pane.Font());
        document.texts.setShown(text);
        {
            const HiddenText hidden(pane);
            pane.showText(text);
        }
        tellOfWithheldText(document, entry, text->state());
        tellOfLeftOutParts(document);
    });
}

void NodeTextPut(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeTextPut", [&] {
        if (!document.view())
            return;
        // A pane that could not be filled anew still holds another entry's text, which can only become that one's.
        if (const auto &text = document.view()->txtRTF.shown(); text == document.texts.shown())
            document.texts.store();
        else if (entry && text)
            document.history.setStoredText(entry, text->toStored());
    });
}

void NodeTextDiscard(Document &document)
{
    stepProcedure(&document, "modNodes NodeTextDiscard", [&] {
        Entry *entry = document.texts.shownEntry();
        if (!entry || !document.bTextWithheld())
            return;
        const History::Step step(document.history, stepName("clearing of the text of"_L1, *entry));
        document.history.setStoredText(entry, QByteArray());
        NodeTextGet(document, entry);
        document.checkTexts();
    });
}

void NodeTextGetSelected()
{
    stepProcedure(DocumentActive(), "modNodes NodeTextGetSelected", [] {
        if (Document *document = DocumentActive())
            NodeTextGet(*document, document->tree.selected());
    });
}

void NodeTextPutSelected()
{
    stepProcedure(DocumentActive(), "modNodes NodeTextPutSelected", [] {
        if (Document *document = DocumentActive())
            NodeTextPut(*document, document->tree.selected());
    });
}

} // namespace modNodes
