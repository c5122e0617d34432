// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/History.h"

#include <QString>

#include <optional>
#include <vector>

class Document;

// What the commands that act on several selected entries have in common.

// What menus and toolbar know of several selected entries: what holds for each of them.
struct SeveralSelected {
    // 0 while one is selected.
    int count = 0;
    bool withRoot = false;
    bool tagged = false;
    bool indentable = false;
    bool unindentable = false;
    bool movableUp = false;
    bool movableDown = false;
    bool movableFirst = false;
    bool movableLast = false;
    bool joinable = false;

    explicit operator bool() const { return count > 0; }

    bool operator==(const SeveralSelected &) const = default;
};

// Whether there are several branches, each the next sibling of the one before.
bool areNeighbours(const std::vector<Entry *> &branches);

SeveralSelected severalSelected(const Document &document);

// The usual name of a step that acts on entries.
QString stepName(QLatin1StringView what, const std::vector<Entry *> &entries);

// Makes several entries of a document the selected ones, opens what hides them, and shows the current one's text.
void selectEntries(Document &document, Entry *current, const std::vector<Entry *> &entries);

// Leaves only the current one of several selected: for what acts on that alone.
void selectCurrentAlone(Document &document);

// Puts copies of branches, which may be another document's, to a place one behind the other. Where the document has no
// room for all of them it gets none.
std::vector<Entry *> insertCopies(Document &document, const EntryTree &tree, const std::vector<Entry *> &branches,
                                  Relationship relationship, Entry *relative);

// The entry to be selected when branches are deleted: the current one if it stays, and otherwise the previous sibling
// of its branch, the next one or the parent, whatever of these stays first.
Entry *survivorOf(const std::vector<Entry *> &branches, Entry *current);

// While it lives, what is done to that many entries is announced as one reset where that is quicker.
class QuietChange
{
public:
    QuietChange(Document &document, size_t count);

private:
    std::optional<HistoryBulk> m_bulk;
};
