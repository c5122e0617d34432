// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/RecoveryDatabase.h"

#include "model/StoredText.h"
#include "util/RunTimeError.h"

#include <QTimeZone>
#include <QUuid>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// SQLite notices damage to its own pages' structure, and none within a value.
quint32 sumOf(QByteArrayView bytes)
{
    return checkSum(bytes);
}

quint32 sumOf(const LogRecord &record, const QByteArray &bytes)
{
    const QByteArray head = QByteArray::number(record.number) + ' ' + QByteArray::number(int(record.kind)) + ' ' +
                            QByteArray::number(record.target);
    return checkSum(bytes, checkSum(head));
}

bool carriesStep(LogRecord::Kind kind)
{
    return kind == LogRecord::Kind::Step || kind == LogRecord::Kind::Expansion;
}

QString damagedLabel()
{
    return u"(this entry could not be read)"_s;
}

} // namespace

const DatabaseSchema &RecoveryDatabase::schema()
{
    static const DatabaseSchema recovery{
        0x51'6c'52'65,
        {{u"CREATE TABLE facts (key TEXT PRIMARY KEY, value) WITHOUT ROWID"_s,
          u"CREATE TABLE base (place INTEGER PRIMARY KEY, record BLOB, sum INTEGER)"_s,
          u"CREATE TABLE log (number INTEGER PRIMARY KEY, kind INTEGER, "
          "target INTEGER, record BLOB, sum INTEGER)"_s},
         // Texts that those of records are made up of.
         {u"CREATE TABLE texts (number INTEGER PRIMARY KEY, text BLOB, sum INTEGER)"_s}}};
    return recovery;
}

RecoveryDatabase::RecoveryDatabase(const QString &path, Database::Opening opening)
    : m_database(path, schema(), opening)
{
}

void RecoveryDatabase::setValue(const QString &key, const QVariant &value)
{
    m_database.run(u"INSERT OR REPLACE INTO facts (key, value) VALUES (?, ?)"_s, {key, value});
}

QVariant RecoveryDatabase::valueOf(const QString &key)
{
    return m_database.value(u"SELECT value FROM facts WHERE key = ?"_s, {key});
}

void RecoveryDatabase::write(const RecoveryBatch &batch)
{
    Database::Transaction transaction(m_database);
    if (batch.base) {
        const auto &[facts, snapshot] = *batch.base;
        for (const QString &statement :
             {u"DELETE FROM facts"_s, u"DELETE FROM base"_s, u"DELETE FROM log"_s, u"DELETE FROM texts"_s})
            m_database.run(statement);
        setValue(u"base"_s, QUuid::createUuid().toByteArray(QUuid::Id128));
        setValue(u"file"_s, facts.file);
        setValue(u"origin"_s, facts.origin);
        setValue(u"caption"_s, facts.caption);
        setValue(u"formatVersion"_s, int(facts.formatVersion));
        setValue(u"isFromOutline"_s, int(facts.isFromOutline));
        setValue(u"isSaved"_s, int(facts.isSaved));
        setValue(u"baseFont"_s, facts.baseFont);
        setValue(u"fileSize"_s, facts.fileSize);
        setValue(u"fileTime"_s, facts.fileTime);
        setValue(u"fileDigest"_s, facts.digestBeingMade.value());
        setValue(u"entries"_s, static_cast<qint64>(snapshot.entries.size()));
        const QByteArray head = headToBytes(snapshot);
        setValue(u"head"_s, head);
        setValue(u"headSum"_s, sumOf(head));
        qint64 place = 0;
        for (const EntryRecord &entry : snapshot.entries) {
            const QByteArray bytes = toBytes(entry);
            m_database.run(u"INSERT INTO base (place, record, sum) VALUES (?, ?, ?)"_s, {++place, bytes, sumOf(bytes)});
        }
    }
    for (const KeptText &text : batch.texts)
        m_database.run(u"INSERT INTO texts (number, text, sum) VALUES (?, ?, ?)"_s,
                       {text.number, text.storedText, sumOf(text.storedText)});
    for (const LogRecord &record : batch.records) {
        const QByteArray bytes = carriesStep(record.kind) ? toBytes(record.step) : QByteArray();
        m_database.run(u"INSERT OR REPLACE INTO log (number, kind, target, record, sum) VALUES (?, ?, ?, ?, ?)"_s,
                       {record.number, int(record.kind), record.target, bytes, sumOf(record, bytes)});
    }
    setValue(u"isChanged"_s, int(batch.state.isChanged));
    setValue(u"selected"_s, static_cast<qint64>(batch.state.selected));
    setValue(u"time"_s, batch.state.time.toMSecsSinceEpoch());
    setValue(u"steps"_s, batch.state.steps);
    setValue(u"lastRecord"_s, batch.state.lastRecord);
    transaction.commit();
}

bool RecoveryDatabase::isEmpty()
{
    return m_database.value(u"SELECT count(*) FROM facts"_s).toInt() == 0;
}

QByteArray RecoveryDatabase::baseId()
{
    return valueOf(u"base"_s).toByteArray();
}

DocumentFacts RecoveryDatabase::facts()
{
    return {valueOf(u"file"_s).toString(),         valueOf(u"origin"_s).toString(),
            valueOf(u"caption"_s).toString(),      static_cast<qint16>(valueOf(u"formatVersion"_s).toInt()),
            valueOf(u"isFromOutline"_s).toBool(),  valueOf(u"isSaved"_s).toBool(),
            valueOf(u"baseFont"_s).toString(),     valueOf(u"fileSize"_s).toLongLong(),
            valueOf(u"fileTime"_s).toLongLong(),   {},
            valueOf(u"fileDigest"_s).toByteArray()};
}

DocumentState RecoveryDatabase::state()
{
    return {valueOf(u"isChanged"_s).toBool(), EntryId(valueOf(u"selected"_s).toLongLong()),
            QDateTime::fromMSecsSinceEpoch(valueOf(u"time"_s).toLongLong()), valueOf(u"steps"_s).toInt(),
            valueOf(u"lastRecord"_s).toLongLong()};
}

RecoveryDatabase::ReadBase RecoveryDatabase::base()
{
    ReadBase read;
    if (const QByteArray head = valueOf(u"head"_s).toByteArray(); sumOf(head) == valueOf(u"headSum"_s).toUInt())
        read.snapshot = headOfBytes(head);
    const auto count = static_cast<size_t>(valueOf(u"entries"_s).toLongLong());
    EntryRecords &entries = read.snapshot.entries;
    try {
        m_database.select(u"SELECT record, sum FROM base ORDER BY place"_s, {}, [&](const QSqlQuery &row) {
            const QByteArray bytes = row.value(0).toByteArray();
            if (sumOf(bytes) == row.value(1).toUInt()) {
                entries.push_back(recordOfBytes(bytes));
            } else {
                // Where it stood is not known; beside the one before it is the best that can be said.
                EntryRecord lost;
                lost.level = entries.empty() ? 0 : std::max(1, entries.back().level);
                lost.label = damagedLabel();
                entries.push_back(lost);
                ++read.damagedEntries;
            }
            // What stood below a lost entry stays below what stands there now.
            EntryRecord &last = entries.back();
            const int deepest = entries.size() == 1 ? 0 : entries[entries.size() - 2].level + 1;
            last.level = entries.size() == 1 ? 0 : std::clamp(last.level, 1, deepest);
            return true;
        });
    } catch (const RunTimeError &) {
        if (entries.empty())
            throw;
    }
    if (entries.size() < count)
        read.damagedEntries += static_cast<int>(count - entries.size());
    return read;
}

// The text that another one is made up of.
QByteArray RecoveryDatabase::textToMakeOf(const logged::TextPieces &pieces)
{
    const std::pair wanted{pieces.entry, pieces.other};
    if (m_known == wanted)
        return m_knownText;
    QByteArray storedText;
    if (pieces.other == 0) {
        if (!m_baseTexts) {
            m_baseTexts.emplace();
            for (const EntryRecord &entry : base().snapshot.entries)
                m_baseTexts->emplace(entry.id, entry.storedText);
        }
        storedText = (*m_baseTexts)[pieces.entry];
    } else {
        m_database.select(u"SELECT text, sum FROM texts WHERE number = ?"_s, {pieces.other}, [&](const QSqlQuery &row) {
            if (const QByteArray text = row.value(0).toByteArray(); sumOf(text) == row.value(1).toUInt())
                storedText = text;
            return false;
        });
    }
    const std::optional<QByteArray> text = soundText(storedText);
    if (!text)
        throw RunTimeError(ErrorNumber::InvalidFileFormat);
    m_known = wanted;
    return m_knownText = *text;
}

void RecoveryDatabase::makeTextsWhole(LoggedStep &step)
{
    for (LoggedChange &change : step.changes) {
        const auto *pieces = std::get_if<logged::TextPieces>(&change);
        if (!pieces)
            continue;
        const std::optional<QByteArray> text = pieces->text.of(textToMakeOf(*pieces));
        if (!text || checkSum(*text) != pieces->sum)
            throw RunTimeError(ErrorNumber::InvalidFileFormat);
        change = logged::Text{pieces->entry, compressedText(*text), logged::Text::State::Stored, {}};
    }
}

std::vector<LogRecord> RecoveryDatabase::records()
{
    std::vector<LogRecord> records;
    try {
        m_database.select(u"SELECT number, kind, target, record, sum FROM log ORDER BY number"_s, {},
                          [&](const QSqlQuery &row) {
                              LogRecord record;
                              record.number = row.value(0).toLongLong();
                              record.kind = static_cast<LogRecord::Kind>(row.value(1).toInt());
                              record.target = row.value(2).toLongLong();
                              const QByteArray bytes = row.value(3).toByteArray();
                              const bool isNext = record.number == static_cast<qint64>(records.size()) + 1;
                              if (!isNext || sumOf(record, bytes) != row.value(4).toUInt())
                                  return false;
                              if (carriesStep(record.kind)) {
                                  record.step = stepOfBytes(bytes);
                                  makeTextsWhole(record.step);
                              }
                              records.push_back(std::move(record));
                              return true;
                          });
    } catch (const RunTimeError &) {
        // What was read up to the damage is whole.
        return records;
    }
    return records;
}
