// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Change.h"

#include <vector>

class Document;
class History;
struct Outline;

// Changes a branch of a document's outline, or all of it, into a branch of another outline. Entries of one label below
// entries that correspond to each other correspond too, and stay what they are for whoever knows them; the others go
// and come. It belongs into a step of the history.
class Adoption
{
public:
    // The two tops correspond to each other.
    Adoption(Document &document, Entry *own, const Outline &theirs, const Entry *theirTop);

    void run();

    // The entry that stands where one of theirs does, once all of the outline was changed; null for none.
    Entry *counterpart(const Entry *entry) const;

private:
    struct Pair {
        Entry *own;
        const Entry *theirs;
        // By the rows of their children; null for what is not here.
        std::vector<Entry *> children;
    };

    void matchChildren(size_t at);
    void adopt(Entry &own, const Entry &theirs);
    void reorder(const Pair &pair);
    void addMissing(const Pair &pair, change::Insert &insert) const;
    void tagInserted(const Pair &pair);

    const Outline &m_outline;
    History &m_history;
    const Outline &m_theirs;
    std::vector<Pair> m_pairs;
    std::vector<Entry *> m_surplus;
};

// A copy never is tagged: tags the entries of a branch as those of the one that it is a copy of are.
void tagAsCopied(History &history, Entry *copy, const Entry *source);
