// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/FindHit.h"
#include "find/FindQuery.h"
#include "model/EntryText.h"

#include <functional>
#include <utility>
#include <vector>

class Document;
class Entry;

// What takes the place of matches. That of words is put in as it is. In that of a regular expression, \1 or $1 stands
// for what the first group took (two digits where there are so many groups, ${1} where a digit follows), \0 or $0 for
// the whole match, \t for a tab, and \\ or \$ for the character itself.
class Replacement
{
public:
    Replacement(const QString &text, const FindQuery &query);

    // Why it cannot be put in, in words for the user; empty where all is well.
    const QString &error() const { return m_error; }

    // What takes a match's place. The groups are the match's own.
    QString of(const QStringList &groups) const;

private:
    // A text, or a group where there is a number.
    struct Part {
        QString text;
        int group = -1;
    };

    void read(QStringView text, int groupCount);
    void append(QStringView text);

    std::vector<Part> m_parts;
    QString m_error;
};

// Replaces hits of a run. What was changed since the hits were told is looked at again: a hit that does not stand where
// it stood, in the same line, is left alone and counted.
class FindReplace
{
public:
    FindReplace(FindQuery query, const QString &replacement);

    const FindQuery &query() const { return m_query; }

    const QString &error() const { return m_replacement.error(); }

    // What will stand in the place of a hit. A very long group of a regular expression is cut.
    QString after(const FindHit &hit) const { return m_replacement.of(hit.groups); }

    // The hits to be replaced in one entry: those that are listed, in any order; or as a whole all `count` of them,
    // those beyond the list included. Of an entry that has another sum by now, the listed ones.
    struct Choice {
        EntryId entry = EntryId::None;
        std::vector<FindHit> hits;
        bool isWhole = false;
        int count = 0;
        quint64 sum = 0;
    };

    static Choice wholeOf(const EntryHits &hits);

    struct Result {
        int replaced = 0;
        // In so many entries.
        int entries = 0;
        // Hits that are not there any more as they were.
        int changed = 0;
        // Hits in texts that cannot be shown whole, and so not be changed.
        int withheld = 0;
        // Hits in labels or texts that would grow beyond what they may hold.
        int tooLong = 0;
        // All of them, because the document is there for reading alone.
        int readOnly = 0;
        // Those behind are left as they are.
        bool isCancelled = false;

        int leftAlone() const { return changed + withheld + tooLong + readOnly; }
    };

    // Asked before each entry with how many hits are done with, of how many. False cancels: what is replaced by then
    // stays.
    using Progress = std::function<bool(int done, int all)>;

    // One step of the document's history, named by what was done. Each new text looks like the beginning of what it
    // replaces. Throws where the history does, and then nothing was replaced.
    Result apply(Document &document, const std::vector<Choice> &choices, const Progress &goOn = {}) const;

private:
    std::vector<TextReplacement> replacementsOf(const std::vector<FindMatch> &matches) const;
    using Labels = std::vector<std::pair<EntryId, QString>>;
    void replaceIn(Document &document, Entry *entry, const Choice &choice, Result &result, Labels &labels) const;

    const FindQuery m_query;
    const Replacement m_replacement;
};
