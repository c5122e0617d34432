// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"

#include <QMetaType>
#include <QString>
#include <QStringList>

#include <vector>

// A match as a list shows it.
struct FindHit {
    bool inLabel = false;
    // The line of the text, or the label, in which it stands; of a long one what stands around the match.
    QString line;
    bool isCutBefore = false;
    bool isCutBehind = false;
    // The match in that line, in units. A very long match is cut, too.
    int start = 0;
    int length = 0;
    // The same in the whole label; or in the text as the text pane counts it (SelStart, SelLength).
    int offset = 0;
    int matched = 0;
    // The match's beginning in the QTextDocument that shows the text, in which it is as long as `matched`.
    int position = 0;
    // What each group of a regular expression took, the whole match first; empty otherwise.
    QStringList groups;

    bool operator==(const FindHit &) const = default;
};

// What was found in one entry, the label's hits first.
struct EntryHits {
    EntryId entry = EntryId::None;
    // The first of them, as many as were asked for.
    std::vector<FindHit> hits;
    // All of them.
    int count = 0;
    // A regular expression was too much work for a line: there may be more.
    bool isGivenUp = false;
    // The text cannot be inflated, or only its beginning: nothing was looked for in it.
    bool isUnreadable = false;
    // Of the label and the text that were looked at: another one tells that they were changed.
    quint64 sum = 0;

    bool operator==(const EntryHits &) const = default;
};

Q_DECLARE_METATYPE(EntryHits)
