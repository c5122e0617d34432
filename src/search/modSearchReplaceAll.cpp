// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Replacing every match: the same as replacing and finding one after the other, at a cost that grows with their number.

#include "search/modSearch.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/Ports.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "model/EntryText.h"
#include "model/StoredText.h"
#include "model/TextFind.h"
#include "rtf/PlainText.h"
#include "search/PassedOver.h"
#include "search/SearchSteps.h"
#include "util/Procedure.h"

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace
{

// A replacement may make a new match with what stands beside it, and that again and again without end.
constexpr int mostWays = 1000;
constexpr qsizetype longestText = 1 << 26;

// One way through a text from a place to its end: every match is replaced, and the search goes on behind what replaced
// it.
class Way
{
public:
    explicit Way(const QString &text, int from = 0)
        : m_text(text)
        , m_at(from)
        , m_result(text.first(from))
    {
    }

    void replace(int start, int length)
    {
        const QString replacement = replacementOf(m_text.mid(start, length));
        m_replacements.push_back({start, length, replacement});
        m_result += QStringView(m_text).sliced(m_at, start - m_at);
        m_result += replacement;
        m_at = start + length;
    }

    void run()
    {
        for (int match = next(); match >= 0; match = next())
            replace(match, static_cast<int>(g_sSearchFind.size()));
        m_result += QStringView(m_text).sliced(m_at);
        m_at = static_cast<int>(m_text.size());
    }

    const std::vector<TextReplacement> &replacements() const { return m_replacements; }

    // The text as it is then.
    const QString &result() const { return m_result; }

private:
    int next() const
    {
        const int options = findOptions();
        if (m_replacements.empty() || !(options & TextFind::WholeWord))
            return findText(m_text, g_sSearchFind, m_at, -1, options);
        // Before a match that stands right here is what was put in, no longer what is gone.
        constexpr qsizetype oneCharacter = 2;
        const QString before = m_result.last(std::min(oneCharacter, m_result.size()));
        const QString place = before + m_text.mid(m_at, g_sSearchFind.size() + oneCharacter);
        const auto start = static_cast<int>(before.size());
        if (findText(place, g_sSearchFind, start, -1, options) == start)
            return m_at;
        return findText(m_text, g_sSearchFind, m_at + 1, -1, options);
    }

    const QString m_text;
    int m_at;
    QString m_result;
    std::vector<TextReplacement> m_replacements;
};

// Whether texts are only made of characters, which each count as one.
bool isPlain(const QString &text)
{
    constexpr char16_t breaks[] = {u'\r', u'\n', 0x2028, 0x2029, 0xFDD0, 0xFDD1, 0xFFFC};
    return std::none_of(text.cbegin(), text.cend(),
                        [&](QChar c) { return std::ranges::find(breaks, c.unicode()) != std::end(breaks); });
}

// What was replaced so far. The user may stop it, and then it stays so.
class Undertaking
{
public:
    Undertaking()
        : m_goOn(searchPorts().showProgress ? searchPorts().showProgress(u"Replacing - please wait..."_s)
                                            : SearchProgress())
    {
    }

    void add(qsizetype matches) { m_replaced += static_cast<int>(matches); }

    bool goesOn(int done, int all)
    {
        m_isCancelled = m_isCancelled || (m_goOn && !m_goOn(done, all));
        return !m_isCancelled;
    }

    bool isCancelled() const { return m_isCancelled; }

    int replaced() const { return m_replaced; }

private:
    const SearchProgress m_goOn;
    int m_replaced = 0;
    bool m_isCancelled = false;
};

bool holdsMatch(const QString &text)
{
    return findText(text, g_sSearchFind, 0, -1, findOptions()) >= 0;
}

// The way on from the pane's selection, which is replaced whatever it holds.
Way restOf(const TextPane &pane, int from, const QString &text)
{
    Way way(text, from);
    if (pane.SelLength() > 0)
        way.replace(pane.SelStart(), pane.SelLength());
    way.run();
    return way;
}

void replaceAllInPane(Document &document, PassedOver &passedOver)
{
    if (document.bTextWithheld()) {
        passedOver.add(*document.tree.selected());
        return;
    }
    TextPane &pane = document.view()->txtRTF;
    QString text = pane.FindableText();
    const Way rest = restOf(pane, pane.SelStart(), text);
    if (rest.replacements().empty())
        return;
    {
        const EditGroup oneStep(pane);
        pane.replaceText(rest.replacements());
        // What was selected may be of another kind than characters, such as a line break.
        text = pane.FindableText();
        // Only what is selected makes a search go on at the top, and then always.
        for (int ways = 0; ways < mostWays && text.size() < longestText; ++ways) {
            Way way(text);
            way.run();
            if (way.replacements().empty())
                break;
            pane.replaceText(way.replacements());
            text = way.result();
        }
    }
    pane.setSelStart(0);
}

// One way through the text of an entry that the pane does not show. Whether anything was replaced, and whether nothing
// is left.
struct StoredWay {
    qsizetype replaced = 0;
    bool isClean = true;
};

StoredWay stateAfter(const Way &way)
{
    if (way.replacements().empty())
        return {};
    return {static_cast<qsizetype>(way.replacements().size()),
            way.result().size() > longestText || !holdsMatch(way.result())};
}

StoredWay goThroughStored(Document &document, const TextSieve &sieve, Entry *entry, PassedOver &passedOver)
{
    if (const std::shared_ptr<EntryDocument> live = document.texts.find(*entry)) {
        if (live->state() != TextState::Whole) {
            passedOver.add(*entry);
            return {};
        }
        Way way(rtf::findableText(live->document()));
        way.run();
        if (!way.replacements().empty())
            replaceText(live->document(), way.replacements());
        return stateAfter(way);
    }
    const QByteArray storedText = document.tree.storedText(entry);
    if (!sieve.mayHoldMatch(*entry, storedText))
        return {};
    const Inflated stored = inflated(storedText);
    if (stored.state != TextState::Whole)
        passedOver.add(*entry);
    if (stored.state != TextState::Whole || !mayHoldMatch(stored.text))
        return {};
    EntryText changed(stored.text, document.baseFont());
    Way way(changed.findableText());
    way.run();
    if (!way.replacements().empty()) {
        changed.replace(way.replacements());
        document.history.setStoredText(entry, NodeTextCompressIfRequired(changed.toRtf()));
    }
    return stateAfter(way);
}

// Round all entries from the selected one on, until none but the one with the last match is left.
void replaceAllInTexts(Document &document, PassedOver &passedOver, Undertaking &undertaking)
{
    const HiddenText hidden(document.view()->txtRTF);
    History::Step step(document.history, u"replacement in texts"_s);
    std::unordered_set<int> replaced;
    const EntryCollection &entries = document.tree.collection();
    const int count = document.tree.entryCount();
    const int first = entries.indexOf(document.tree.selected());
    std::vector<bool> isClean(static_cast<std::size_t>(count) + 1);
    std::vector<int> ways(isClean.size());
    const auto at = [](int index) { return static_cast<std::size_t>(index); };

    TextPane &pane = document.view()->txtRTF;
    QString text = pane.FindableText();
    const Way rest = restOf(pane, pane.SelLength() > 0 ? pane.SelStart() : 0, text);
    if (!document.bTextWithheld() && !rest.replacements().empty()) {
        pane.replaceText(rest.replacements());
        text = pane.FindableText();
        replaced.insert(first);
        undertaking.add(static_cast<qsizetype>(rest.replacements().size()));
    }
    if (document.bTextWithheld())
        passedOver.add(*entries.at(first));
    isClean[at(first)] = document.bTextWithheld() || !holdsMatch(text);
    int last = first;
    const TextSieve sieve(document);
    for (int i = first % count + 1, others = 0, done = 1; others < count - 1; i = i % count + 1) {
        if (!undertaking.goesOn(std::min(done++, count), count))
            break;
        const StoredWay way =
            isClean[at(i)] ? StoredWay() : goThroughStored(document, sieve, entries.at(i), passedOver);
        isClean[at(i)] = way.isClean || ++ways[at(i)] == mostWays;
        others = way.replaced > 0 ? 0 : others + 1;
        undertaking.add(way.replaced);
        if (way.replaced > 0) {
            last = i;
            replaced.insert(i);
        }
    }
    if (!replaced.empty())
        step.setName(replaced.size() == 1 ? stepName("replacement in the text of"_L1, *entries.at(*replaced.begin()))
                                          : u"replacement in %1 texts"_s.arg(replaced.size()));
    if (last == first) {
        showSelectedText(document);
        return;
    }
    modSearch::SearchNodeSelect(entries.at(last));
    modNodes::NodeTextGetSelected();
}

// From label to label, each searched for from the one below the last; none but the last is ever selected.
void replaceAllInLabels(Document &document)
{
    const modNodes::ActionScope action;
    const EntryCollection &entries = document.tree.collection();
    std::set<int> matching;
    for (int i = 1; i <= document.tree.entryCount(); ++i) {
        if (modSearch::SearchLabel(entries.at(i)->label(), labelComparison()))
            matching.insert(i);
    }
    const History::Step step(document.history,
                             matching.size() == 1
                                 ? stepName("replacement in the label of"_L1, *entries.at(*matching.begin()))
                                 : u"replacement in %1 labels"_s.arg(matching.size()));
    Entry *const start = document.tree.selected();
    Entry *current = start;
    // The outline draws each new label on its own, which takes it longer the more rows it has.
    constexpr std::size_t mostAnnounced = 100;
    std::optional<HistoryBulk> bulk;
    if (matching.size() > mostAnnounced)
        bulk.emplace(document.history);
    for (;;) {
        replaceInLabel(document, current);
        const int index = entries.indexOf(current);
        matching.erase(index);
        const Entry *below = modNodes::entryBelow(current);
        auto next = matching.lower_bound(below ? entries.indexOf(below) : index);
        if (next == matching.end())
            next = matching.begin();
        if (next == matching.end())
            break;
        current = entries.at(*next);
    }
    bulk.reset();
    // The selected entry's text stays with its caret, and with what can be undone in it.
    if (current == start)
        modSearch::SearchNodeSelect(current);
    else
        modNodes::NodeSelect(document, current);
}

// Where a search stands: at an entry, and in its text.
struct Place {
    int entry;
    int offset;

    // NOLINTNEXTLINE(modernize-use-nullptr): it takes the 0 that the compiler compares with for a pointer.
    auto operator<=>(const Place &) const = default;
};

Place placeIn(const Document &document, int offset)
{
    const Entry *selected = document.tree.selected();
    return {selected ? document.tree.collection().indexOf(selected) : 0, offset};
}

int endOfSelection(const TextPane &pane)
{
    return pane.SelStart() + pane.SelLength();
}

// Whether the pane's selection is the match itself. The end of a cell is not to be had without the cells beside it,
// or the whole table, and one half of a line break not at all.
bool isMatchSelected(const TextPane &pane)
{
    return pane.SelLength() == g_sSearchFind.size() && !pane.SelHoldsCells();
}

// Goes by single steps where those are few, or texts have to be looked at anew after each. Matches that cannot be
// replaced are passed over.
void replaceAllByStep(Document &document, PassedOver &passedOver, Undertaking &undertaking)
{
    TextPane &pane = document.view()->txtRTF;
    const Entry *selected = document.tree.selected();
    const History::Step oneStep(document.history,
                                selected ? stepName("replacement from"_L1, *selected) : u"replacement"_s);
    const bool isText = searchScope() != SearchScope::AllNames;
    std::optional<Place> last;
    int ways = 0;
    bool hasReplaced = true;
    // The first step replaces whatever is selected.
    for (bool isMatch = true;;) {
        if (isMatch && isText && document.bTextWithheld() && document.tree.selected())
            passedOver.add(*document.tree.selected());
        undertaking.add(isMatch && isText && pane.SelLength() > 0 && !document.bTextWithheld() ? 1 : 0);
        if (isMatch)
            modSearch::SearchPerformReplace();
        hasReplaced |= isMatch;
        if (!undertaking.goesOn(undertaking.replaced(), 0))
            break;
        const Place behind = placeIn(document, isText ? endOfSelection(pane) : 0);
        if (!performSearch())
            break;
        const Place match = placeIn(document, isText ? endOfSelection(pane) : 0);
        isMatch = !isText || isMatchSelected(pane);
        const bool isRoundAgain = match <= behind && !(isText && g_bSearchBackwards);
        if (!isMatch && match == last)
            break;
        if (isRoundAgain) {
            if (!hasReplaced || ++ways == mostWays || pane.Text().size() > longestText)
                break;
            hasReplaced = false;
        }
        last = match;
    }
}

// What the status bar says when the user has stopped it.
void tellCancelled(Document &document, int replaced)
{
    const QString what = replaced == 0   ? u"Cancelled before anything was replaced"_s
                         : replaced == 1 ? u"Cancelled: 1 match was replaced"_s
                                         : u"Cancelled: %1 matches were replaced"_s.arg(replaced);
    document.sayOfStep(what);
}

} // namespace

namespace modSearch
{

void SearchReplaceAll()
{
    procedure("modSearch SearchReplaceAll", [] {
        Document *document = DocumentActive();
        if (!document || g_sSearchFind.isEmpty() || replacementHoldsExpression())
            return;
        dropLeftMatch(*document);
        PassedOver passedOver;
        const SearchScope scope = searchScope();
        const bool isText = scope == SearchScope::CurrentText || scope == SearchScope::AllTexts;
        // Selected cells stay as they are, and the search goes on behind them.
        const bool isFew = isText && (g_bSearchBackwards || g_sSearchReplace.isEmpty() || !isPlain(g_sSearchFind) ||
                                      !isPlain(g_sSearchReplace) || document->view()->txtRTF.SelHoldsCells());
        std::optional<Undertaking> undertaking(std::in_place);
        if (isFew || !document->tree.selected() || scope == SearchScope::None) {
            replaceAllByStep(*document, passedOver, *undertaking);
        } else {
            const HourglassPointer hourglass;
            if (scope == SearchScope::CurrentText)
                replaceAllInPane(*document, passedOver);
            else if (scope == SearchScope::AllTexts)
                replaceAllInTexts(*document, passedOver, *undertaking);
            else
                replaceAllInLabels(*document);
        }
        passedOver.tell(*document);
        const bool isCancelled = undertaking->isCancelled();
        const int replaced = undertaking->replaced();
        // Its window goes before another one comes.
        undertaking.reset();
        if (isCancelled)
            tellCancelled(*document, replaced);
        else
            tellCompleted();
    });
}

} // namespace modSearch
