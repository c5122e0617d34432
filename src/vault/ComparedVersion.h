// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Outline.h"
#include "vault/OutlineComparison.h"

#include <memory>
#include <unordered_map>
#include <vector>

class Document;

// A version of a document beside what the document is now, and the ways to bring something of it back, each of which is
// one step of the document's history and shows what it brought. The comparison is of the moment at which it was made:
// once the document has changed, a new one is to be made.
class ComparedVersion
{
public:
    ComparedVersion(Document &document, const KeptOutline &version);

    // From the version to now.
    const std::vector<EntryDifference> &differences() const { return m_comparison.differences; }

    // Whether nothing at all is different, the fonts and what the file says beside the entries included. What is open
    // and what is selected counts for nothing.
    bool isSame() const { return m_isSame; }

    // The entry of a difference in the version, and in the document; null where it is not.
    const Entry *then(const EntryDifference &difference) const;
    Entry *now(const EntryDifference &difference) const;

    QByteArray textThen(const EntryDifference &difference) const;
    QByteArray textNow(const EntryDifference &difference) const;

    // Makes the document what the version is, its fonts included.
    void bringBackAll(const QString &when);

    // The branch can be brought back when the version has it. An entry that is gone comes back where it was, and one
    // that is still there gets what was below it, with its place.
    bool canBringBackBranch(const EntryDifference &difference) const { return !difference.isAdded(); }

    void bringBackBranch(const EntryDifference &difference);

    bool canBringBackText(const EntryDifference &difference) const { return difference.hasOtherText; }

    void bringBackText(const EntryDifference &difference);

private:
    EntryTree::Place placeOf(const Entry *entry) const;
    Entry *counterpart(const Entry *entry) const;

    Document &m_document;
    const std::unique_ptr<Outline> m_outline;
    OutlineComparison m_comparison;
    bool m_isSame = false;
    // In outline order.
    std::vector<const Entry *> m_then;
    std::vector<Entry *> m_now;
    // The entries of the document by those of the version.
    std::unordered_map<const Entry *, Entry *> m_counterparts;
};
