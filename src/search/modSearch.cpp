// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "search/modSearch.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/StepProcedure.h"
#include "document/TextDeed.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "find/TextIndex.h"
#include "model/SealedDocument.h"
#include "model/ShownText.h"
#include "model/StoredText.h"
#include "model/TextFind.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"
#include "rtf/TextScan.h"
#include "search/SearchSteps.h"
#include "util/Procedure.h"
#include "util/modString.h"

using namespace Qt::StringLiterals;

namespace
{

// Holds the search mode while it lives.
class SearchModeScope
{
public:
    explicit SearchModeScope(qint16 mode) { g_iSearchMode = mode; }

    ~SearchModeScope() { g_iSearchMode = 0; }

    SearchModeScope(const SearchModeScope &) = delete;
    SearchModeScope &operator=(const SearchModeScope &) = delete;
};

// What a dialog left selected when it closed. The addresses are only compared.
struct LeftMatch {
    const Entry *entry = nullptr;
    int start = 0;
    int length = 0;

    bool operator==(const LeftMatch &) const = default;
};

LeftMatch s_leftMatch;

LeftMatch selectionIn(const Document &document)
{
    return {document.tree.selected(), document.view()->txtRTF.SelStart(), document.view()->txtRTF.SelLength()};
}

void openDialog(const char *name, qint16 mode)
{
    procedure(name, [mode] {
        if (const Document *document = DocumentActive(); document && document->view()->txtRTF.SelLength() > 0)
            g_sSearchFind = document->view()->txtRTF.SelText();
        {
            const SearchModeScope scope(mode);
            searchPorts().showDialog();
        }
        if (const Document *document = DocumentActive())
            s_leftMatch = selectionIn(*document);
    });
}

// The result is whether a match stands at or behind the place where the search began, not whether one was selected.
bool searchBackwards(TextSelection &text)
{
    int next = -1;
    int previous = -1;
    modSearch::SearchTextBackwards(findOptions(), text.SelStart(), next, previous);
    if (previous < 0) {
        if (text.SelLength() > 0)
            text.setSelStart(0);
        modSearch::SearchTextBackwards(findOptions(), static_cast<int>(text.Text().size()), next, previous);
    }
    if (previous >= 0) {
        text.setSelStart(previous);
        text.setSelLength(static_cast<int>(g_sSearchFind.size()));
    }
    return next >= 0;
}

// Where the first match stands in the text of an entry that the pane does not show; -1 for none. Backwards there never
// is one: the search begins at the text's start.
int firstMatch(const Document &document, const TextSieve &sieve, const Entry *entry)
{
    if (g_bSearchBackwards)
        return -1;
    if (const std::shared_ptr<EntryDocument> text = document.texts.find(*entry))
        return findText(rtf::findableText(text->document()), g_sSearchFind, 0, -1, findOptions());
    const QFont base = document.view()->txtRTF.Font();
    const QByteArray stored = document.tree.storedText(entry);
    if (!sieve.mayHoldMatch(*entry, stored) || !mayHoldMatch(NodeTextDecompressIfRequired(stored)))
        return -1;
    SealedDocument text;
    text.setUndoRedoEnabled(false);
    text.setDefaultFont(base);
    readShownText(stored, text);
    return findText(rtf::findableText(text), g_sSearchFind, 0, -1, findOptions());
}

} // namespace

void tellCompleted()
{
    ports().dialogs->informPlainly(u"Search completed"_s);
}

bool performSearch()
{
    const HourglassPointer hourglass;
    switch (searchScope()) {
    case SearchScope::CurrentText:
        return modSearch::SearchText();
    case SearchScope::AllTexts:
        return modSearch::SearchAllTexts();
    case SearchScope::AllNames:
        return modSearch::SearchLabels();
    case SearchScope::None:
        break;
    }
    return false;
}

int findOptions()
{
    return (g_bSearchMatchCase ? TextFind::MatchCase : 0) | (g_bSearchWholeWord ? TextFind::WholeWord : 0) |
           (g_bSearchBackwards ? TextFind::NoHighlight : 0);
}

QString replacementOf(const QString &match)
{
    QString replacement = g_sSearchReplace;
    const bool isOneWord = !replacement.isEmpty() && !replacement.contains(u' ');
    if (isOneWord && !g_bSearchMatchCase && modString::StringUpperCaseAlpha(match.left(1)))
        replacement[0] = replacement[0].toUpper();
    return replacement;
}

TextSieve::TextSieve(const Document &document)
    : m_index(TextIndex::of(document))
    , m_sought(g_sSearchFind)
{
}

bool TextSieve::mayHoldMatch(const Entry &entry, const QByteArray &storedText) const
{
    return !m_index || m_index->mayHold(entry, storedText, m_sought);
}

bool mayHoldMatch(const QByteArray &text)
{
    // What is no rich text takes the long way.
    if (!rtf::isRtf(text))
        return true;
    return rtf::TextScan(g_sSearchFind).mayBeIn(text) &&
           findText(rtf::toPlainText(text), g_sSearchFind, 0, -1, findOptions()) >= 0;
}

void showSelectedText(Document &document)
{
    if (document.texts.entryAsShown() != document.tree.selected())
        modNodes::NodeTextGetSelected();
    document.view()->txtRTF.setSelStart(0);
}

void dropLeftMatch(const Document &document)
{
    TextPane &pane = document.view()->txtRTF;
    const bool isLeft = pane.SelLength() > 0 && selectionIn(document) == s_leftMatch;
    if (isLeft && pane.SelText().compare(g_sSearchFind, labelComparison()) != 0)
        pane.setSelStart(0);
}

SearchScope searchScope()
{
    for (const SearchScope scope : {SearchScope::CurrentText, SearchScope::AllTexts, SearchScope::AllNames}) {
        if (g_sSearchScope == QString::number(static_cast<int>(scope)))
            return scope;
    }
    return SearchScope::None;
}

SearchPorts &searchPorts()
{
    static SearchPorts registered;
    return registered;
}

namespace modSearch
{

void SearchFind()
{
    openDialog("modSearch SearchFind", 1);
}

void SearchReplace()
{
    openDialog("modSearch SearchReplace", 2);
}

void SearchRepeat()
{
    procedure("modSearch SearchRepeat", [] {
        const SearchModeScope scope(1);
        SearchPerform();
    });
}

bool SearchPerform()
{
    return stepProcedure(DocumentActive(), "modSearch SearchPerform", [] {
        const bool found = performSearch();
        if (!found && DocumentActive())
            tellCompleted();
        return found;
    });
}

void SearchPerformReplace()
{
    stepProcedure(DocumentActive(), "modSearch SearchPerformReplace", [] {
        switch (searchScope()) {
        case SearchScope::CurrentText:
        case SearchScope::AllTexts:
            SearchReplaceText();
            break;
        case SearchScope::AllNames:
            SearchReplaceLabel();
            break;
        case SearchScope::None:
            break;
        }
    });
}

bool replacementHoldsExpression()
{
    return g_sSearchReplace.contains(g_sSearchFind, g_bSearchMatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

bool SearchText()
{
    return stepProcedure(DocumentActive(), "modSearch SearchText", [] {
        const Document *document = DocumentActive();
        if (!document)
            return false;
        TextPane &pane = document->view()->txtRTF;
        if (g_bSearchBackwards)
            return searchBackwards(pane);
        int offset = findIn(pane, g_sSearchFind, pane.SelStart() + pane.SelLength(), -1, findOptions());
        if (offset < 0 && pane.SelLength() > 0) {
            pane.setSelStart(0);
            offset = findIn(pane, g_sSearchFind, 0, -1, findOptions());
        }
        return offset >= 0;
    });
}

void SearchTextBackwards(int options, int limit, int &next, int &previous)
{
    stepProcedure(DocumentActive(), "modSearch SearchTextBackwards", [&] {
        next = previous = -1;
        const Document *document = DocumentActive();
        if (!document)
            return;
        do {
            previous = next;
            next = findIn(document->view()->txtRTF, g_sSearchFind, next + 1, -1, options);
        } while (next >= 0 && next < limit);
    });
}

bool SearchAllText()
{
    return stepProcedure(DocumentActive(), "modSearch SearchAllText", [] {
        const Document *document = DocumentActive();
        if (!document)
            return false;
        TextPane &pane = document->view()->txtRTF;
        if (g_bSearchBackwards)
            return searchBackwards(pane);
        // The caret alone does not count: a text without a selection is searched from its beginning.
        const int start = pane.SelLength() > 0 ? pane.SelStart() + pane.SelLength() : 0;
        return findIn(pane, g_sSearchFind, start, -1, findOptions()) >= 0;
    });
}

bool SearchAllTexts()
{
    return stepProcedure(DocumentActive(), "modSearch SearchAllTexts", [] {
        Document *document = DocumentActive();
        if (!document)
            return false;
        const EntryCollection &entries = document->tree.collection();
        const Entry *selected = document->tree.selected();
        const int first = selected ? entries.indexOf(selected) : 1;
        const int count = document->tree.entryCount();
        if (count > 0 && SearchAllText()) {
            SearchNodeSelect(entries.at(first));
            return true;
        }
        const TextSieve sieve(*document);
        // The others are looked at as they are stored, from the next one round to the one before.
        for (int i = 1; i < count; ++i) {
            Entry *entry = entries.at((first - 1 + i) % count + 1);
            const int match = firstMatch(*document, sieve, entry);
            if (match < 0)
                continue;
            document->texts.open(*entry, document->view()->txtRTF.Font());
            modNodes::NodeTextGet(*document, entry);
            SearchNodeSelect(entry);
            document->view()->txtRTF.setSelStart(match);
            document->view()->txtRTF.setSelLength(static_cast<int>(g_sSearchFind.size()));
            return true;
        }
        showSelectedText(*document);
        return false;
    });
}

void SearchReplaceText()
{
    stepProcedure(DocumentActive(), "modSearch SearchReplaceText", [] {
        Document *document = DocumentActive();
        if (!document || document->bTextWithheld() || document->view()->txtRTF.SelLength() <= 0)
            return;
        TextPane &pane = document->view()->txtRTF;
        // A match that reaches over the border of a cell selects more than is looked for.
        if (pane.SelHoldsCells())
            return;
        const int start = pane.SelStart();
        const QString replacement = replacementOf(pane.SelText());
        const TextDeed deed(pane, "replacement in the text of"_L1);
        pane.setSelText(replacement);
        pane.setSelStart(start);
        pane.setSelLength(static_cast<int>(replacement.size()));
    });
}

void SearchNodeSelect(Entry *entry)
{
    stepProcedure(DocumentActive(), "modSearch SearchNodeSelect", [&] {
        Document *document = DocumentActive();
        if (document && entry) {
            if (document->tree.selected() != entry) {
                modNodes::nodCurrent().set(&document->tree, entry);
                document->history.select(entry);
            }
            document->history.expandAncestors(entry);
            document->view()->trvOutline.ScrollTo(entry);
            document->unsay();
        }
    });
}

} // namespace modSearch
