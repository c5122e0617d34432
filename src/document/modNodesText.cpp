// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Moving texts between the entries and the text pane.

#include "document/modNodes.h"

#include "document/Document.h"
#include "document/Globals.h"
#include "document/LeftOutText.h"
#include "document/Ports.h"
#include "document/TextCheck.h"
#include "document/TextPane.h"
#include "model/ShownLabel.h"
#include "model/ShownText.h"
#include "model/StoredText.h"

#include "util/Procedure.h"

using namespace Qt::StringLiterals;

namespace
{

// Keeps the pane from drawing, and its change from being stored back, while it is filled.
class TextLoadingScope
{
public:
    explicit TextLoadingScope(TextPane &pane)
        : m_pane(pane)
        , m_wasVisible(pane.PaneVisible())
    {
        bTextLoading = true;
        if (m_wasVisible)
            m_pane.setPaneVisible(false);
    }

    ~TextLoadingScope()
    {
        if (m_wasVisible)
            m_pane.setPaneVisible(true);
        bTextLoading = false;
    }

    TextLoadingScope(const TextLoadingScope &) = delete;
    TextLoadingScope &operator=(const TextLoadingScope &) = delete;

private:
    TextPane &m_pane;
    bool m_wasVisible;
};

// A text that is not shown whole stands in a locked pane, and the user is told why.
void tellOfWithheldText(Document &document, const Entry *entry, TextState state)
{
    document.setTextWithheld(state != TextState::Whole);
    document.updateTextLock();
    if (state != TextState::Beginning)
        document.dismiss(NoticeKind::LongText);
    else
        document.tell({NoticeKind::LongText,
                       u"The text of \"%1\" is too long to be shown whole. What is seen is its beginning, which can be "
                       "read but not changed; the whole text is kept."_s.arg(briefLabel(entry->label()))});
    if (state == TextState::Damaged && !document.hasNotice(NoticeKind::DamagedText))
        tellOfDamagedTexts(document, {entry->label()}, 1);
}

} // namespace

namespace modNodes
{

void NodeTextGet(Document &document, Entry *entry)
{
    procedure("modNodes NodeTextGet", [&] {
        // The pane's content is still the source of a text that was changed and not read since.
        document.tree.resolvePendingText();
        const Inflated shown = entry ? shownText(document.tree.storedText(entry), document.txtRTF.Font()) : Inflated();
        {
            const TextLoadingScope loading(document.txtRTF);
            document.txtRTF.setTextRTF(shown.text);
        }
        document.outline->tree.setShownEntry(entry);
        document.textEntry.emplace(&document.tree, entry);
        tellOfWithheldText(document, entry, shown.state);
        tellOfLeftOutParts(document, entry, shown.text);
    });
}

void NodeTextPut(Document &document, Entry *entry)
{
    procedure("modNodes NodeTextPut", [&] {
        if (bTextLoading)
            return;
        // A pane that could not be filled anew still holds another entry's text, which can only become that one's.
        if (entry && document.textEntry)
            entry = document.textEntry->entry();
        // Its text is not in the pane, and must not give way to what is.
        if (document.bTextWithheld())
            return;
        document.outline->tree.setShownEntry(entry);
        if (!entry)
            return;
        // Made when somebody reads it: compressing a long text at every key would make typing slow.
        document.outline->tree.setPendingText(
            entry, [&pane = document.txtRTF] { return NodeTextCompressIfRequired(pane.TextRTF()); });
    });
}

void NodeTextDiscard(Document &document)
{
    procedure("modNodes NodeTextDiscard", [&] {
        Entry *entry = document.textEntry ? document.textEntry->entry() : nullptr;
        if (!entry || !document.bTextWithheld())
            return;
        const History::Step step(document.history, stepName("clearing of the text of"_L1, *entry));
        document.history.setStoredText(entry, QByteArray());
        NodeTextGet(document, entry);
        document.checkTexts();
        ports().commands->MenuEnableDynamic();
    });
}

void NodeTextGetSelected()
{
    procedure("modNodes NodeTextGetSelected", [] {
        if (Document *document = DocumentActive())
            NodeTextGet(*document, document->tree.selected());
    });
}

void NodeTextPutSelected()
{
    procedure("modNodes NodeTextPutSelected", [] {
        if (Document *document = DocumentActive())
            NodeTextPut(*document, document->tree.selected());
    });
}

} // namespace modNodes
