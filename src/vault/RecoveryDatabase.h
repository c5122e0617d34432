// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/FileStamp.h"
#include "vault/Database.h"
#include "vault/LoggedChange.h"

#include <map>
#include <memory>
#include <optional>
#include <utility>

// What a document was when its journal began, beside what its outline held.
struct DocumentFacts {
    // Full path; empty for a document that was never saved.
    QString file;
    // The file of which it was recovered once without getting its name.
    QString origin;
    QString caption;
    qint16 formatVersion = 1;
    bool isFromOutline = false;
    // Nothing was to be saved then.
    bool isSaved = false;
    // The base font of the texts, as QFont::toString() has it.
    QString baseFont;
    // Of the file, when it was read or written last; -1 where there was none. The time is in nanoseconds since 1970.
    qint64 fileSize = -1;
    qint64 fileTime = -1;
    // Written down when it is known, and read back as it is.
    ContentDigest digestBeingMade = {};
    QByteArray fileDigest = {};
};

// What it is after the last record.
struct DocumentState {
    // Something would be lost without the journal.
    bool isChanged = false;
    EntryId selected = EntryId::None;
    // When it was changed last.
    QDateTime time;
    // Steps that were done and not undone.
    int steps = 0;
    qint64 lastRecord = 0;
};

// One thing that was done.
struct LogRecord {
    enum class Kind {
        Step,
        // Opened and closed entries, which is part of the last step.
        Expansion,
        // Of the step of a record, which is the next to be undone or redone.
        Undo,
        Redo
    };

    qint64 number = 0;
    Kind kind = Kind::Step;
    qint64 target = 0;
    LoggedStep step = {};
};

// The base that records lead on from.
struct RecoveryBase {
    DocumentFacts facts;
    Snapshot snapshot;
};

// A text as it is stored, of which later ones are made up.
struct KeptText {
    qint64 number = 0;
    QByteArray storedText;
};

// What is to be written down at once: a base, which everything before gives way to, kept texts and records. A record of
// a number that is there already takes its place.
struct RecoveryBatch {
    std::shared_ptr<const RecoveryBase> base;
    std::vector<KeptText> texts;
    std::vector<LogRecord> records;
    DocumentState state;
};

// One document's recovery database.
class RecoveryDatabase
{
public:
    RecoveryDatabase(const QString &path, Database::Opening opening);

    // All or nothing.
    void write(const RecoveryBatch &batch);

    // Whether no base was ever written.
    bool isEmpty();
    // Tells the base from any other; empty in a database of an earlier program.
    QByteArray baseId();
    DocumentFacts facts();
    DocumentState state();

    // As far as it is whole; an entry that cannot be read is replaced by one that says so.
    struct ReadBase {
        Snapshot snapshot;
        int damagedEntries = 0;
    };

    ReadBase base();
    // The records in their order, up to the first that is damaged or missing, or whose texts are made up of one that
    // is. All texts are whole.
    std::vector<LogRecord> records();

    // For tests.
    Database &database() { return m_database; }

    static const DatabaseSchema &schema();

private:
    void setValue(const QString &key, const QVariant &value);
    QVariant valueOf(const QString &key);
    QByteArray textToMakeOf(const logged::TextPieces &pieces);
    void makeTextsWhole(LoggedStep &step);

    Database m_database;
    // The text that was made use of last, inflated.
    std::pair<EntryId, qint64> m_known = {EntryId::None, -1};
    QByteArray m_knownText;
    // The base's texts.
    std::optional<std::map<EntryId, QByteArray>> m_baseTexts;
};
