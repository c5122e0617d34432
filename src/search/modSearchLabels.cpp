// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Searching and replacing in the labels of the outline.

#include "search/modSearch.h"

#include "model/Document.h"
#include "model/Ports.h"
#include "model/TextPane.h"
#include "model/modNodes.h"
#include "search/SearchSteps.h"
#include "util/Procedure.h"
#include "util/modString.h"

#include <algorithm>

namespace
{

// Whether the match at a place is a word of its own. The label's last character is never looked at as the one behind.
bool isWholeWord(const QString &label, qsizetype place)
{
    const qsizetype end = place + g_sSearchFind.size();
    const bool wordBefore = place > 0 && modString::StringAlphanumeric(QStringView(label).sliced(place - 1, 1));
    const bool wordBehind = end + 1 < label.size() && modString::StringAlphanumeric(QStringView(label).sliced(end, 1));
    return !wordBefore && !wordBehind;
}

} // namespace

Qt::CaseSensitivity labelComparison()
{
    return g_bSearchMatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

void replaceInLabel(Document &document, Entry *entry)
{
    // A replacement may make another match with what stands beside it; one that does so without end makes labels grow.
    constexpr qsizetype mostGrowth = 1 << 14;
    QString label = entry->label();
    const qsizetype longest = label.size() * (1 + g_sSearchReplace.size()) + mostGrowth;
    // What stands before a replacement held no match, and can be part of a new one only with its end.
    qsizetype from = 0;
    while (label.size() < longest) {
        const qsizetype place = label.indexOf(g_sSearchFind, from, labelComparison());
        if (place < 0 || (g_bSearchWholeWord && !isWholeWord(label, place)))
            break;
        label.replace(place, g_sSearchFind.size(), g_sSearchReplace);
        from = std::max<qsizetype>(0, place - g_sSearchFind.size() + 1);
    }
    if (label == entry->label())
        return;
    document.tree.setLabel(entry, label);
    document.m_bDataChanged = true;
}

namespace modSearch
{

bool SearchLabel(const QString &label, Qt::CaseSensitivity compare)
{
    return procedure("modSearch SearchLabel", [&] {
        const qsizetype place = g_sSearchFind.isEmpty() ? -1 : label.indexOf(g_sSearchFind, 0, compare);
        return place >= 0 && (!g_bSearchWholeWord || isWholeWord(label, place));
    });
}

bool SearchLabels()
{
    return procedure("modSearch SearchLabels", [] {
        Document *document = DocumentActive();
        if (!document)
            return false;
        Entry *start = document->tree.selected();
        modNodes::NodeGoDown(*document);
        const EntryCollection &entries = document->tree.collection();
        const Entry *selected = document->tree.selected();
        const int first = selected ? entries.indexOf(selected) : 1;
        const int count = document->tree.entryCount();
        Entry *found = nullptr;
        const auto search = [&](int from, int to) {
            for (int i = from; i <= to && !found; ++i) {
                if (Entry *entry = entries.at(i); entry && SearchLabel(entry->label(), labelComparison()))
                    found = entry;
            }
        };
        search(first, count);
        if (!found && first >= 2)
            search(1, first - 1);
        modNodes::NodeSelect(*document, found ? found : start);
        // As where the search went to another entry, whose text is shown from its beginning.
        if (found || start)
            document->txtRTF.setSelStart(0);
        return found != nullptr;
    });
}

void SearchReplaceLabel()
{
    procedure("modSearch SearchReplaceLabel", [] {
        Document *document = DocumentActive();
        Entry *entry = document ? document->tree.selected() : nullptr;
        // Each pass begins at the first character again: what is put in must not be found.
        if (!entry || g_sSearchFind.isEmpty() || replacementHoldsExpression())
            return;
        replaceInLabel(*document, entry);
    });
}

} // namespace modSearch
