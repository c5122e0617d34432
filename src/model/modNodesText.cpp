// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Moving texts between the entries and the text pane.

#include "model/modNodes.h"

#include "model/Document.h"
#include "model/Globals.h"
#include "model/Ports.h"
#include "model/StoredText.h"
#include "model/TextPane.h"

#include "util/Procedure.h"
#include "util/RunTimeError.h"

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

constexpr auto textGetName = "modNodes NodeTextGet";

// An entry's text; the damaged bytes of one that cannot be inflated, which leaves a record and a notice but asks
// nothing.
QByteArray textOf(Document &document, const Entry *entry)
{
    const EntryTree &tree = document.tree;
    const QByteArray storedText = tree.storedText(entry);
    const QByteArray text = NodeTextDecompressIfRequired(storedText);
    if (isUninflated(text, storedText)) {
        reportError(textGetName, RunTimeError(ErrorNumber::InvalidFileFormat,
                                              u"%1: the text of the entry %2 is damaged"_s.arg(
                                                  errorDescription(ErrorNumber::InvalidFileFormat), tree.key(entry))));
        document.tell(
            {NoticeKind::DamagedText, u"The text of the entry \"%1\" is damaged and cannot be shown. What stands "
                                      "in its place is kept as it is until you change it."_s.arg(entry->label())});
    }
    return text;
}

} // namespace

namespace modNodes
{

void NodeTextGet(Document &document, Entry *entry)
{
    procedure(textGetName, [&] {
        // The pane's content is still the source of a text that was changed and not read since.
        document.tree.resolvePendingText();
        const QByteArray text = entry ? textOf(document, entry) : QByteArray();
        const TextLoadingScope loading(document.txtRTF);
        document.txtRTF.setTextRTF(text);
        // What is typed where no entry takes it would be lost.
        document.txtRTF.setLocked(!entry || document.m_fileAccess == FileAccess::ReadOnly);
        document.tree.setShownEntry(entry);
        document.textEntry.emplace(&document.tree, entry);
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
        document.tree.setShownEntry(entry);
        if (!entry)
            return;
        // Made when somebody reads it: compressing a long text at every key would make typing slow.
        document.tree.setPendingText(entry,
                                     [&pane = document.txtRTF] { return NodeTextCompressIfRequired(pane.TextRTF()); });
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
