// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/TextSignature.h"

#include <QByteArray>
#include <QString>

class Document;
class Entry;
class TextIndex;

// What finding and replacing in texts have in common.

// TextFind::Option bits for what is searched.
int findOptions();

// What takes the place of a match: with a capital for a capital where that is wanted.
QString replacementOf(const QString &match);

Qt::CaseSensitivity labelComparison();

// Replaces in an entry's label, from its first match on, up to one that is no whole word where that is wanted. What is
// put in must not hold what is searched for.
void replaceInLabel(Document &document, Entry *entry);

// What is searched for, as it is looked for in a document's texts before they are inflated. To be asked of texts as
// they are stored now.
class TextSieve
{
public:
    explicit TextSieve(const Document &document);

    // False only when no match stands in the entry's text; what is not known yet may hold one.
    bool mayHoldMatch(const Entry &entry, const QByteArray &storedText) const;

private:
    const TextIndex *m_index;
    const SoughtTrigrams m_sought;
};

// Whether a match may stand in an entry's text; seldom true where none does. Looked at as it is stored, because showing
// a text costs many times as much.
bool mayHoldMatch(const QByteArray &text);

// Goes to the text's beginning where the selection is what an earlier dialog found and left, and not what is searched
// for now: replacing all begins with what the user has selected, whatever it is, but not with that.
void dropLeftMatch(const Document &document);

// Finds the next match of the chosen scope, and says nothing when there is none.
bool performSearch();

// Tells the user that there is nothing more to be found.
void tellCompleted();

// Shows the selected entry's text anew with the caret at its start, or goes there in the one that is shown if it is the
// same: that one can still be undone.
void showSelectedText(Document &document);
