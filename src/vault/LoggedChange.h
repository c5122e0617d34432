// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Change.h"
#include "model/EntryRecord.h"
#include "vault/LiveStretch.h"
#include "vault/PiecedText.h"

#include <QDateTime>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

struct Outline;

// What was done to an outline, as values that another thread can write down and that can be done again. Entries go by
// the ids that they had when it was done.
namespace logged
{

struct Insert {
    struct Top {
        EntryId parent = EntryId::None;
        int row = 0;
        EntryRecords entries;
    };

    std::vector<Top> tops;
};

// How who writes it down comes by a text that he follows.
struct TextPath {
    // Where he begins: a stored text and its base font. Without it he goes on from where the path before led.
    struct Start {
        QByteArray storedText;
        BaseFont baseFont;
    };

    std::optional<Start> start;
    std::vector<LiveStretch> stretches;
};

struct Text {
    EntryId entry = EntryId::None;
    QByteArray text;

    enum class State {
        Stored,
        // Not known before the step is over: a live text goes on.
        ToBeMade,
        // To be compressed before it is what is stored.
        Uncompressed,
        // Where the path leads, and to be compressed then.
        Followed
    };

    State state = State::Stored;
    std::shared_ptr<const TextPath> path = {};
};

// A text as it differs from another one of the entry that is kept already, uncompressed.
struct TextPieces {
    EntryId entry = EntryId::None;
    // Which one: a kept text's number, or 0 for what the base has.
    qint64 other = 0;
    PiecedText text;
    // A check sum of the whole.
    quint32 sum = 0;
};

} // namespace logged

// The place of each is its number on disk.
using LoggedChange = std::variant<logged::Insert, change::Remove, change::Move, change::Label, change::Tag,
                                  change::Expand, change::Sorted, change::Reorder, change::Renew, logged::Text,
                                  change::Fonts, change::Foreign, change::FileForeign, logged::TextPieces>;

struct LoggedStep {
    QString name;
    QDateTime time;
    EntryId selectedBefore = EntryId::None;
    std::vector<LoggedChange> changes;
};

// An outline as values.
struct Snapshot {
    EntryRecords entries;
    clsFont outlineFont;
    clsFont textFont;
    ForeignRecordList foreignHeader;
    QByteArray foreignTrailer;
};

// What a change did that was just carried out, seen from the one that takes it back.
LoggedChange loggedChange(const Change &inverse, const Outline &outline);

// The outline with the texts as they were stored last.
Snapshot snapshotOf(const Outline &outline);

// The bytes that are kept, and back; error 321 for bytes that are none. Texts are compressed, which costs time.
QByteArray toBytes(const LoggedStep &step);
LoggedStep stepOfBytes(const QByteArray &bytes);
QByteArray toBytes(const EntryRecord &record);
EntryRecord recordOfBytes(const QByteArray &bytes);
// Of all but the entries.
QByteArray headToBytes(const Snapshot &snapshot);
Snapshot headOfBytes(const QByteArray &bytes);

// Of bytes that are kept.
quint32 checkSum(QByteArrayView bytes, quint32 start = 0);

// The memory that a step holds beside what the outline holds too, in bytes, about.
qsizetype weightOf(const LoggedStep &step);
