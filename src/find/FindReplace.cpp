// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/FindReplace.h"

#include "document/Document.h"
#include "find/EntryLook.h"
#include "model/EntryText.h"
#include "model/SealedDocument.h"
#include "model/ShownText.h"
#include "model/TextBounds.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"
#include "rtf/VisibleText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// An entry's text as it can be worked on: the one that is worked on already, or one made of what is stored.
class OpenText
{
public:
    OpenText(Document &document, Entry *entry)
        : m_document(document)
        , m_entry(entry)
        , m_live(document.texts.find(*entry))
    {
        if (m_live) {
            m_state = m_live->state();
            return;
        }
        m_own.setUndoRedoEnabled(false);
        m_own.setDefaultFont(document.baseFont());
        m_state = readShownText(document.tree.storedText(entry), m_own).state;
    }

    bool isWhole() const { return m_state == TextState::Whole; }

    // Nothing when nobody can read it.
    std::optional<QString> text() const
    {
        return isWhole() ? rtf::findableText(shown()) : ::findableText(m_document.tree.storedText(m_entry));
    }

    void replace(const std::vector<TextReplacement> &replacements)
    {
        if (m_live) {
            replaceText(m_live->document(), replacements);
            return;
        }
        replaceText(m_own, replacements);
        m_document.history.setStoredText(m_entry, NodeTextCompressIfRequired(rtf::write(m_own)));
    }

private:
    const QTextDocument &shown() const
    {
        if (m_live)
            return m_live->document();
        return m_own;
    }

    Document &m_document;
    Entry *const m_entry;
    const std::shared_ptr<EntryDocument> m_live;
    SealedDocument m_own;
    TextState m_state = TextState::Whole;
};

// The matches that are chosen, and found as they were told.
std::vector<FindMatch> chosenOf(const FindReplace::Choice &choice, bool isAsTold, QStringView text, bool isLabel,
                                const std::vector<FindMatch> &matches)
{
    if (choice.isWhole && isAsTold)
        return matches;
    std::vector<const FindHit *> told;
    for (const FindHit &hit : choice.hits) {
        if (hit.inLabel == isLabel)
            told.push_back(&hit);
    }
    std::ranges::sort(told, {}, &FindHit::offset);
    std::vector<FindMatch> chosen;
    HitMaker maker(text, isLabel);
    auto next = told.begin();
    for (const FindMatch &match : matches) {
        next = std::ranges::lower_bound(next, told.end(), static_cast<int>(match.start), {}, &FindHit::offset);
        if (next == told.end())
            break;
        if ((*next)->offset == match.start && **next == maker.hit(match))
            chosen.push_back(match);
    }
    return chosen;
}

QString replaced(const QString &text, const std::vector<TextReplacement> &replacements)
{
    QString result;
    int at = 0;
    for (const TextReplacement &each : replacements) {
        result += QStringView(text).sliced(at, each.start - at);
        result += each.text;
        at = each.start + each.length;
    }
    result += QStringView(text).sliced(at);
    return result;
}

// The outline draws each new label on its own, which takes it longer the more rows it has.
void putDown(Document &document, const std::vector<std::pair<EntryId, QString>> &labels)
{
    constexpr std::size_t mostAnnounced = 100;
    std::optional<HistoryBulk> bulk;
    if (labels.size() > mostAnnounced)
        bulk.emplace(document.history);
    for (const auto &[entry, label] : labels)
        if (Entry *there = document.tree.entry(entry))
            document.history.setLabel(there, label);
}

int countOf(const FindReplace::Choice &choice)
{
    return choice.isWhole ? choice.count : static_cast<int>(choice.hits.size());
}

bool mayBeText(const QString &text)
{
    return mayBeLaidOut(text, LineFeed::WithinParagraph, limits::longestShownWord) == text.size();
}

} // namespace

FindReplace::FindReplace(FindQuery query, const QString &replacement)
    : m_query(std::move(query))
    , m_replacement(replacement, m_query)
{
}

FindReplace::Choice FindReplace::wholeOf(const EntryHits &hits)
{
    return {hits.entry, hits.hits, true, hits.count, hits.sum};
}

std::vector<TextReplacement> FindReplace::replacementsOf(const std::vector<FindMatch> &matches) const
{
    std::vector<TextReplacement> replacements;
    replacements.reserve(matches.size());
    for (const FindMatch &match : matches)
        replacements.push_back({static_cast<int>(match.start), static_cast<int>(match.length),
                                rtf::visibleText(m_replacement.of(match.groups))});
    return replacements;
}

void FindReplace::replaceIn(Document &document, Entry *entry, const Choice &choice, Result &result,
                            Labels &labels) const
{
    OpenText open(document, entry);
    SearchedEntry searched;
    const QString ownLabel = entry->label();
    searched.label = ownLabel;
    if (m_query.options().texts)
        searched.liveText = open.text();
    searched.possible = searched.liveText ? m_query.allWords() : 0;
    const EntryMatches found = matchesIn(searched, m_query);
    const bool isAsTold = found.sum == choice.sum;
    const std::vector<FindMatch> inLabel = chosenOf(choice, isAsTold, searched.label, true, found.inLabel);
    std::vector<FindMatch> inText;
    if (found.text)
        inText = chosenOf(choice, isAsTold, *found.text, false, found.inText);
    const auto labelCount = static_cast<int>(inLabel.size());
    const auto textCount = static_cast<int>(inText.size());
    result.changed += std::max(countOf(choice) - labelCount - textCount, 0);
    int done = 0;
    if (!inLabel.empty()) {
        const QString label = replaced(ownLabel, replacementsOf(inLabel));
        const bool isTooLong = label.size() > std::max<qsizetype>(limits::longestLabel, searched.label.size());
        (isTooLong ? result.tooLong : done) += labelCount;
        if (!isTooLong)
            labels.emplace_back(choice.entry, label);
    }
    if (!inText.empty()) {
        const std::vector<TextReplacement> replacements = replacementsOf(inText);
        if (!open.isWhole()) {
            result.withheld += textCount;
        } else if (!mayBeText(replaced(*found.text, replacements))) {
            result.tooLong += textCount;
        } else {
            open.replace(replacements);
            done += textCount;
        }
    }
    result.replaced += done;
    result.entries += done > 0 ? 1 : 0;
}

FindReplace::Result FindReplace::apply(Document &document, const std::vector<Choice> &choices,
                                       const Progress &goOn) const
{
    Result result;
    int all = 0;
    for (const Choice &choice : choices)
        all += countOf(choice);
    if (m_query.isEmpty() || !error().isEmpty())
        return result;
    if (document.m_fileAccess == FileAccess::ReadOnly) {
        result.readOnly = all;
        return result;
    }
    History::Step step(document.history, u"replacement"_s);
    Labels labels;
    EntryId only = EntryId::None;
    int seen = 0;
    for (const Choice &choice : choices) {
        if (goOn && !goOn(seen, all)) {
            result.isCancelled = true;
            break;
        }
        seen += countOf(choice);
        Entry *entry = document.tree.entry(choice.entry);
        const bool isMeant = entry && (!m_query.options().taggedOnly || entry->tagged());
        if (!isMeant) {
            result.changed += countOf(choice);
            continue;
        }
        const int before = result.entries;
        replaceIn(document, entry, choice, result, labels);
        if (result.entries > before)
            only = choice.entry;
    }
    putDown(document, labels);
    const Entry *entry = document.tree.entry(only);
    if (result.entries == 1 && entry)
        step.setName(stepName("replacement in"_L1, *entry));
    else if (result.entries > 1)
        step.setName(u"replacement in %1 entries"_s.arg(result.entries));
    return result;
}
