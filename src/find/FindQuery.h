// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <vector>

struct FindOptions {
    // Where is looked.
    bool labels = true;
    bool texts = true;
    bool matchCase = false;
    // Neither a letter nor a digit stands beside a match.
    bool wholeWord = false;
    bool regularExpression = false;
    // Whether accents count; where they do not, "resume" finds "résumé" and the other way round. To regular expressions
    // they always count.
    bool accents = false;
    bool taggedOnly = false;
    // Only in this entry and those below it; None for everywhere.
    EntryId branch = EntryId::None;

    bool operator==(const FindOptions &) const = default;
};

// A stretch of a text, in its own units.
struct FindMatch {
    qsizetype start = 0;
    qsizetype length = 0;
    // What each group of a regular expression took, the whole match first; empty otherwise.
    QStringList groups;

    bool operator==(const FindMatch &) const = default;
};

// What is looked for: a value, which any thread may read.
//
// Words stand apart by blanks; all of them must be in an entry, be it in its label or in its text, and every occurrence
// of each is a match. What stands in quotation marks (") is one word, blanks included, each of which stands for any one
// blank; the last may be left out. Of matches that overlap, the first counts, and of those that begin together the
// longest. Characters that are not seen (soft hyphens, joiners) count nowhere. A match is made of whole characters,
// with all their marks: "a" is not in "ä" where accents count.
//
// A regular expression is one of QRegularExpression's, with Unicode's properties, and is looked for in each line of a
// text alone: in each paragraph, and on either side of a line break in one. ^ and $ are a line's beginning and end, and
// no match reaches over it. A match of nothing is none. What takes too long in a line is given up there, and in all
// others once it took too long in 200 of them.
class FindQuery
{
public:
    // Words beyond are an error.
    static constexpr int mostWords = 64;

    // Looks for nothing.
    FindQuery();
    FindQuery(const QString &text, const FindOptions &options);

    const QString &text() const;
    const FindOptions &options() const;

    // Whether there is nothing that could be found: no words, an expression with an error, neither labels nor texts.
    bool isEmpty() const;

    // Why nothing can be looked for, in words for the user, with the place in the expression where it is known; empty
    // where all is well.
    const QString &error() const;

    // How many groups the regular expression has; 0 without one.
    int groupCount() const;

    // How many words there are; a regular expression is one.
    int wordCount() const;
    // What stands, in whichever case and accents, in every text that holds a word: the word itself, or what can be told
    // of a regular expression.
    QStringList certainPartsOf(int word) const;

    // What was found in a text.
    struct Found {
        // In order and apart.
        std::vector<FindMatch> matches;
        // A bit for each word that is in the text.
        quint64 words = 0;
        // A regular expression was too much work for a line, in which it may have more matches.
        bool isGivenUp = false;
    };

    // Of the words of which a bit is set. Gives up where it is told that nobody waits any more.
    Found lookIn(QStringView text, quint64 words = ~quint64(0), const std::atomic_bool *isEnded = nullptr) const;

    // Where any of the words stand, in the text's own units.
    std::vector<FindMatch> matchesIn(QStringView text) const { return lookIn(text).matches; }

    // False only when no word stands in any of several texts, which are given with a line break between two.
    bool mayStandIn(QStringView texts) const;

    // The bits of all words.
    quint64 allWords() const;

private:
    struct Parts;
    void readWords(Parts &parts) const;
    void readExpression(Parts &parts) const;
    Found findExpression(QStringView text, const std::atomic_bool *isEnded) const;

    std::shared_ptr<const Parts> m_parts;
};
