// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/EntryLook.h"

#include "document/Document.h"
#include "model/StoredText.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"

#include <algorithm>
#include <bit>

namespace
{

// Of a line that is longer, so much is shown, beginning so far before the match.
constexpr qsizetype longestLine = 240;
constexpr qsizetype shownBefore = 80;
// Of a group of a regular expression, what a list shows of a replacement made of it.
constexpr qsizetype longestGroup = 1000;

bool endsShownLine(QChar c)
{
    return c == u'\r' || c == u'\n';
}

// No place within a surrogate pair, or before a mark.
qsizetype wholeCharacter(QStringView line, qsizetype at)
{
    while (at > 0 && at < line.size() && (line[at].isLowSurrogate() || line[at].isMark()))
        --at;
    return at;
}

void addHits(EntryHits &hits, int most, QStringView text, bool isLabel, const std::vector<FindMatch> &matches)
{
    HitMaker lines(text, isLabel);
    for (const FindMatch &match : matches) {
        if (hits.hits.size() >= std::size_t(most))
            break;
        hits.hits.push_back(lines.hit(match));
    }
    hits.count += static_cast<int>(matches.size());
}

quint64 mixed(quint64 sum, quint64 value)
{
    constexpr quint64 factor = 0x9E3779B97F4A7C15U;
    return std::rotl((sum ^ value) * factor, 29);
}

} // namespace

std::optional<QString> findableText(const QByteArray &storedText)
{
    const std::optional<QByteArray> text = soundText(storedText);
    if (!text)
        return std::nullopt;
    if (rtf::isRtf(*text))
        return rtf::toFindableText(*text);
    // As a text document takes them.
    QString characters;
    const QString read = AnsiCodec::toText(*text);
    characters.reserve(read.size());
    for (qsizetype i = 0; i < read.size(); ++i) {
        const char16_t unit = read[i].unicode();
        if (unit == u'\r' && i + 1 < read.size() && read[i + 1] == u'\n')
            ++i;
        if (unit == u'\r' || unit == u'\n' || unit == QChar::ParagraphSeparator || unit == 0xFDD0 || unit == 0xFDD1)
            characters += u"\r\n";
        else
            characters += unit == QChar::LineSeparator ? QChar(u'\n') : QChar(unit);
    }
    return characters;
}

SearchedEntry searchedEntry(const Document &document, const Entry &entry, const FindQuery &query, quint64 possible)
{
    SearchedEntry searched;
    searched.entry = entry.id();
    searched.possible = query.options().texts ? possible : 0;
    if (searched.possible == 0)
        return searched;
    const EntryTree &tree = document.tree;
    const std::shared_ptr<EntryDocument> live = tree.isPending(&entry) ? document.texts.find(entry) : nullptr;
    if (live)
        searched.liveText = rtf::findableText(live->document());
    else
        searched.storedText = tree.isPending(&entry) ? tree.storedText(&entry) : EntryTree::textLastStored(&entry);
    return searched;
}

EntryMatches matchesIn(const SearchedEntry &searched, const FindQuery &query, const std::atomic_bool *isEnded)
{
    EntryMatches matches;
    if (query.isEmpty())
        return matches;
    FindQuery::Found inLabel;
    if (query.options().labels)
        inLabel = query.lookIn(searched.label, ~quint64(0), isEnded);
    FindQuery::Found inText;
    const bool mayBeWhole = (inLabel.words | searched.possible) == query.allWords();
    if (searched.possible != 0 && mayBeWhole) {
        matches.text = searched.liveText ? searched.liveText : findableText(searched.storedText);
        matches.isUnreadable = !matches.text;
        if (matches.text)
            inText = query.lookIn(*matches.text, searched.possible, isEnded);
    }
    matches.isGivenUp = inLabel.isGivenUp || inText.isGivenUp;
    if ((inLabel.words | inText.words) != query.allWords())
        return matches;
    matches.inLabel = std::move(inLabel.matches);
    matches.inText = std::move(inText.matches);
    matches.sum = mixed(qHash(searched.label), matches.inText.empty() ? 0 : qHash(*matches.text));
    return matches;
}

EntryHits hitsIn(const SearchedEntry &searched, const FindQuery &query, const std::atomic_bool *isEnded)
{
    const EntryMatches matches = matchesIn(searched, query, isEnded);
    EntryHits hits;
    hits.entry = searched.entry;
    hits.isGivenUp = matches.isGivenUp;
    hits.isUnreadable = matches.isUnreadable;
    hits.sum = matches.sum;
    addHits(hits, searched.most, searched.label, true, matches.inLabel);
    if (matches.text)
        addHits(hits, searched.most, *matches.text, false, matches.inText);
    return hits;
}

HitMaker::HitMaker(QStringView text, bool isLabel)
    : m_text(text)
    , m_isLabel(isLabel)
{
}

FindHit HitMaker::hit(const FindMatch &match)
{
    if (m_isLabel)
        m_end = m_text.size();
    else
        goTo(match.start);
    const QStringView line = m_text.sliced(m_begin, m_end - m_begin);
    const qsizetype inLine = match.start - m_begin;
    qsizetype from = 0;
    qsizetype to = line.size();
    if (line.size() > longestLine) {
        from = wholeCharacter(line, std::clamp(inLine - shownBefore, qsizetype(0), line.size() - longestLine));
        to = wholeCharacter(line, std::min(from + longestLine, line.size()));
    }
    if (m_shownAt != m_begin + from || m_shown.size() != to - from) {
        m_shown = line.sliced(from, to - from).toString();
        m_shownAt = m_begin + from;
    }
    FindHit hit;
    hit.inLabel = m_isLabel;
    hit.line = m_shown;
    hit.isCutBefore = from > 0;
    hit.isCutBehind = to < line.size();
    hit.start = static_cast<int>(inLine - from);
    hit.length = static_cast<int>(std::min(match.length, to - inLine));
    hit.offset = static_cast<int>(match.start);
    hit.matched = static_cast<int>(match.length);
    hit.position = static_cast<int>(match.start - m_breaks);
    for (const QString &group : match.groups)
        hit.groups.append(group.left(longestGroup));
    return hit;
}

// To the line of a place. A paragraph break is CR LF here and one position of a text document.
void HitMaker::goTo(qsizetype place)
{
    while (place >= m_end) {
        if (m_end >= 0) {
            const bool isTwo = m_text[m_end] == u'\r' && m_end + 1 < m_text.size() && m_text[m_end + 1] == u'\n';
            m_breaks += isTwo ? 1 : 0;
            m_begin = m_end + (isTwo ? 2 : 1);
        }
        m_end = std::find_if(m_text.begin() + m_begin, m_text.end(), endsShownLine) - m_text.begin();
    }
}
