// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/NameRanking.h"
#include "model/EntryId.h"

#include <unordered_map>
#include <vector>

class EntryTree;

// The labels of an outline's entries as they are looked for, in outline order.
class EntryNames
{
public:
    // Takes the entries as they are now. What is known of labels that are still the same is not found out again.
    void take(const EntryTree &tree);

    const NameList &names() const { return m_names; }

    EntryId entryAt(int place) const { return m_entries[static_cast<std::size_t>(place)]; }

    // How many labels the last call folded.
    int foldedLately() const { return m_folded; }

private:
    NameList m_names;
    std::vector<EntryId> m_entries;
    int m_folded = 0;
};
