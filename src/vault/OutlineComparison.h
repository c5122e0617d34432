// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

struct KeptOutline;

// What two outlines are compared by, an entry each in outline order.
struct ComparedEntry {
    // 0 for the root, and one more for each entry between.
    int level = 0;
    QString label;
    // The text, or whatever else is the same exactly where the texts are.
    QByteArray text;
    bool tagged = false;
};

std::vector<ComparedEntry> comparedEntries(const KeptOutline &outline);

// An entry that is not the same in both. Without a place before it was added, without one after it was removed.
struct EntryDifference {
    int before = -1;
    int after = -1;
    bool isRenamed = false;
    bool hasOtherText = false;
    bool hasOtherTag = false;
    // It has another parent, or other neighbours have overtaken it.
    bool isMoved = false;

    bool isAdded() const { return before < 0; }

    bool isRemoved() const { return after < 0; }

    bool operator==(const EntryDifference &) const = default;
};

struct OutlineComparison {
    // In outline order; what was removed stands where it would stand now.
    std::vector<EntryDifference> differences;
    // For each entry its place in the other outline, or -1.
    std::vector<int> afterOf;
    std::vector<int> beforeOf;
};

// The entries that are the same ones are found by what they have in common: their whole branch, or their label below
// the same parent, or a text that only they have. It takes time in proportion to the entries. Errors as parentsOf().
OutlineComparison compareOutlines(const std::vector<ComparedEntry> &before, const std::vector<ComparedEntry> &after);

// How many entries were added, removed, or are another in any way.
struct DifferenceCounts {
    int added = 0;
    int removed = 0;
    int changed = 0;

    bool operator==(const DifferenceCounts &) const = default;
};

DifferenceCounts countsOf(const std::vector<EntryDifference> &differences);
