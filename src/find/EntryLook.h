// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/FindHit.h"
#include "find/FindQuery.h"

#include <QByteArray>
#include <QString>

#include <optional>

class Document;
class Entry;

// An entry as values, for workers. Of the text, what is stored; or, where what was typed is not stored yet, the
// characters themselves.
struct SearchedEntry {
    EntryId entry = EntryId::None;
    // Somebody else's, who must keep it.
    QStringView label;
    QByteArray storedText;
    std::optional<QString> liveText;
    // Which words may be in the text.
    quint64 possible = 0;
    // How many hits are wanted.
    int most = 0;
};

// The entry as it is now, but for its label, with nothing made that is not made yet. Of its text nothing where none of
// the words is said to be possible there.
SearchedEntry searchedEntry(const Document &document, const Entry &entry, const FindQuery &query, quint64 possible);

// The characters of a stored text as the text pane counts and finds them; nothing when it cannot be inflated whole.
std::optional<QString> findableText(const QByteArray &storedText);

// Where an entry holds what is looked for; no matches when not all words are in its label and text together.
struct EntryMatches {
    std::vector<FindMatch> inLabel;
    std::vector<FindMatch> inText;
    // The text, where it was looked at.
    std::optional<QString> text;
    bool isGivenUp = false;
    bool isUnreadable = false;
    // Of label and text; 0 without a match.
    quint64 sum = 0;
};

// Gives up, with any answer, where it is told that nobody waits any more.
EntryMatches matchesIn(const SearchedEntry &searched, const FindQuery &query,
                       const std::atomic_bool *isEnded = nullptr);

// The same as hits.
EntryHits hitsIn(const SearchedEntry &searched, const FindQuery &query, const std::atomic_bool *isEnded = nullptr);

// Makes hits of a text's matches, which are asked for in order.
class HitMaker
{
public:
    HitMaker(QStringView text, bool isLabel);

    FindHit hit(const FindMatch &match);

private:
    void goTo(qsizetype place);

    const QStringView m_text;
    const bool m_isLabel;
    qsizetype m_begin = 0;
    qsizetype m_end = -1;
    qsizetype m_breaks = 0;
    // Hits side by side share the line that they show.
    QString m_shown;
    qsizetype m_shownAt = -1;
};
