// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryTree.h"
#include "model/ForeignRecords.h"
#include "model/LiveTextPort.h"
#include "model/clsFont.h"

#include <variant>

struct Outline;

// Whatever can happen to an outline, as values. None holds a pointer into the outline, so each stays good while others
// are done and undone. Carrying one out turns it into its own inverse.
namespace change
{

// Subtrees to be put in, each where it says; several must have been taken out together.
struct Insert {
    std::vector<TakenSubtree> subtrees;
};

// Entries to be removed with what is below them; none lies inside another.
struct Remove {
    std::vector<EntryId> entries;
};

// An entry's new place, the row counted without it, and its place in the order of insertion (the end when empty).
struct Move {
    EntryId entry;
    EntryId parent;
    int row;
    std::vector<qint64> insertion;
};

struct Label {
    EntryId entry;
    QString label;
};

struct Tag {
    EntryId entry;
    bool tagged;
};

struct Expand {
    Expansion expansion;
    // One entry, of which is told as what a user does to it; never when it is undone or redone.
    bool single = false;
};

struct Sorted {
    EntryId entry;
    bool sorted;
};

// The children's rows in their new order.
struct Reorder {
    EntryId parent;
    std::vector<int> order;
};

// A subtree's place in the order of insertion: the end when empty.
struct Renew {
    EntryId entry;
    std::vector<qint64> insertion;
};

// An entry's text, and the text that is worked on that belongs to it, if any.
struct StoredText {
    EntryId entry;
    QByteArray text;
    std::shared_ptr<LiveText> live;
};

struct Fonts {
    clsFont outlineFont;
    clsFont textFont;
};

// One step of an entry's live text, which is to be undone or redone.
struct TextStep {
    EntryId entry;
    bool redo;
};

// What a file says of an entry that this program does not know.
struct Foreign {
    EntryId entry;
    ForeignRecordList records;
};

// The same of the file itself: in its header, and behind the last entry.
struct FileForeign {
    ForeignRecordList header;
    QByteArray trailer;
};

} // namespace change

using Change = std::variant<change::Insert, change::Remove, change::Move, change::Label, change::Tag, change::Expand,
                            change::Sorted, change::Reorder, change::Renew, change::StoredText, change::Fonts,
                            change::TextStep, change::Foreign, change::FileForeign>;

// What kind of change is announced.
enum class ChangeKind { Structure, Label, Tag, Expansion, Sorted, Order, Text, Fonts, Foreign };

ChangeKind kindOf(const Change &change);
// The entry that a change is about; none for what is the whole outline's. Of several, the first.
EntryId entryOf(const Change &change);
// All of them; empty for what is the whole outline's.
std::vector<EntryId> entriesOf(const Change &change);
// The memory that a change holds, in bytes, about.
qsizetype weightOf(const Change &change);

// Carries a change out and turns it into its inverse. False when it makes no difference. When it throws, outline and
// change are as they were. Live texts are needed only by changes of texts that have one.
bool carryOut(Change &change, Outline &outline, LiveTextPort *liveTexts);
