// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Searching and replacing in the labels of the outline.

#include "search/modSearch.h"

#include "document/Document.h"
#include "document/Ports.h"
#include "document/StepProcedure.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "search/SearchSteps.h"
#include "util/Procedure.h"
#include "util/modString.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Whether the match at a place is a word of its own, in a part of a label that has so many characters behind it. The
// label's last character is never looked at as the one behind a match.
bool isWholeWord(QStringView part, qsizetype place, qsizetype behindPart = 0)
{
    const qsizetype end = place + g_sSearchFind.size();
    const bool wordBefore = place > 0 && modString::StringAlphanumeric(part.sliced(place - 1, 1));
    const bool wordBehind = end + 1 < part.size() + behindPart && modString::StringAlphanumeric(part.sliced(end, 1));
    return !wordBefore && !wordBehind;
}

// A label on the way through its matches, each of which may be replaced. What stands before a replacement held no
// match, and can be part of a new one only with its end.
class LabelWay
{
public:
    explicit LabelWay(const QString &label)
        : m_label(label)
    {
    }

    qsizetype size() const { return m_done.size() + m_fresh.size() + m_label.size() - m_at; }

    QString text() const { return m_done + m_fresh + m_label.sliced(m_at); }

    // Whether the first match was replaced: there was one, and a word of its own where that is wanted.
    bool replaceNext()
    {
        const qsizetype length = g_sSearchFind.size();
        // Where the parts meet, with what a match there can reach, and one character on either side.
        const qsizetype before = std::min(length, m_done.size());
        const qsizetype behind = std::min(length + 1, m_label.size() - m_at);
        const QString seam = m_done.last(before) + m_fresh + m_label.sliced(m_at, behind);
        const qsizetype inSeam = seam.indexOf(g_sSearchFind, before == length ? 1 : 0, labelComparison());
        if (inSeam >= 0 && inSeam <= before + m_fresh.size())
            return isWanted(seam, inSeam, m_label.size() - m_at - behind) && (replaceInSeam(inSeam - before), true);
        const qsizetype place = m_label.indexOf(g_sSearchFind, m_at, labelComparison());
        if (place < 0 || !isWanted(m_label, place, 0))
            return false;
        m_done += m_fresh;
        m_done += QStringView(m_label).sliced(m_at, place - m_at);
        m_fresh = g_sSearchReplace;
        m_at = place + length;
        return true;
    }

private:
    static bool isWanted(QStringView part, qsizetype place, qsizetype behindPart)
    {
        return !g_bSearchWholeWord || isWholeWord(part, place, behindPart);
    }

    // A match that begins so far behind the end of what is done, or before it.
    void replaceInSeam(qsizetype place)
    {
        qsizetype length = g_sSearchFind.size();
        if (place < 0) {
            m_done.chop(-place);
            length += place;
        } else {
            m_done += QStringView(m_fresh).first(place);
            m_fresh.remove(0, place);
        }
        const qsizetype ofFresh = std::min(length, m_fresh.size());
        m_fresh.replace(0, ofFresh, g_sSearchReplace);
        m_at += length - ofFresh;
    }

    const QString m_label;
    // The text is what is done, what was put in last, and the label from here on.
    QString m_done;
    QString m_fresh;
    qsizetype m_at = 0;
};

} // namespace

Qt::CaseSensitivity labelComparison()
{
    return g_bSearchMatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

void replaceInLabel(Document &document, Entry *entry)
{
    // A replacement may make another match with what stands beside it; one that does so without end makes labels grow.
    constexpr qsizetype mostGrowth = 1 << 14;
    const qsizetype longest = entry->label().size() * (1 + g_sSearchReplace.size()) + mostGrowth;
    LabelWay way(entry->label());
    while (way.size() < longest && way.replaceNext())
        continue;
    const QString label = way.text();
    if (label == entry->label())
        return;
    const History::Step step(document.history, stepName("replacement in the label of"_L1, *entry));
    document.history.setLabel(entry, label);
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
    return stepProcedure(DocumentActive(), "modSearch SearchLabels", [] {
        Document *document = DocumentActive();
        if (!document)
            return false;
        Entry *start = document->tree.selected();
        const Entry *below = start ? modNodes::entryBelow(start) : nullptr;
        const EntryCollection &entries = document->tree.collection();
        const int first = start ? entries.indexOf(below ? below : start) : 1;
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
        // The selected entry's own text stays with its caret, and with what can be undone in it.
        if (found && found == start)
            SearchNodeSelect(found);
        else
            modNodes::NodeSelect(*document, found);
        return found != nullptr;
    });
}

void SearchReplaceLabel()
{
    stepProcedure(DocumentActive(), "modSearch SearchReplaceLabel", [] {
        Document *document = DocumentActive();
        Entry *entry = document ? document->tree.selected() : nullptr;
        // Each pass begins at the first character again: what is put in must not be found.
        if (!entry || g_sSearchFind.isEmpty() || replacementHoldsExpression())
            return;
        replaceInLabel(*document, entry);
    });
}

} // namespace modSearch
