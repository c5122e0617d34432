// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"

#include <QStringList>

#include <set>

class Document;
class Entry;

// The entries whose texts a replacement has to leave as they are, because nobody can see them whole.
class PassedOver
{
public:
    void add(const Entry &entry);
    // Tells the user of them, or takes back what was told after an earlier replacement.
    void tell(Document &document) const;

private:
    std::set<EntryId> m_entries;
    // Those of the first few.
    QStringList m_labels;
};
