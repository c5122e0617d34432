// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/VersionStore.h"

#include "document/FileCalls.h"
#include "util/RunTimeError.h"
#include "vault/PackedBytes.h"
#include "vault/PrivateFiles.h"
#include "vault/TextWords.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{

[[noreturn]] void failReading(const QString &path, const QString &what)
{
    throw RunTimeError(ErrorNumber::InvalidFileFormat, u"%1: %2"_s.arg(path, what));
}

std::vector<ComparedEntry> comparedByNumber(const std::vector<NumberedEntry> &entries)
{
    std::vector<ComparedEntry> compared;
    compared.reserve(entries.size());
    for (const NumberedEntry &each : entries)
        compared.push_back({each.entry.level, each.entry.label, QByteArray::number(each.text), each.entry.tagged});
    return compared;
}

} // namespace

const DatabaseSchema &VersionStore::schema()
{
    static const DatabaseSchema schema{
        0x51'56'65'72,
        {{u"CREATE TABLE document (id INTEGER PRIMARY KEY CHECK (id = 1), file TEXT NOT NULL)"_s,
          u"CREATE TABLE version (id INTEGER PRIMARY KEY, time INTEGER NOT NULL, entries INTEGER NOT NULL, words "
          u"INTEGER "
          "NOT NULL, verified INTEGER NOT NULL DEFAULT 0, added INTEGER NOT NULL DEFAULT 0, removed INTEGER NOT NULL "
          "DEFAULT 0, changed INTEGER NOT NULL DEFAULT 0, digest BLOB NOT NULL, head BLOB NOT NULL, blocks BLOB NOT "
          "NULL)"_s,
          // Files that were the same bytes are of the version that was saved last.
          u"CREATE TABLE file (digest BLOB PRIMARY KEY, version INTEGER NOT NULL REFERENCES version ON DELETE CASCADE) "
          "WITHOUT ROWID"_s,
          u"CREATE INDEX file_version ON file (version)"_s,
          u"CREATE TABLE block (id INTEGER PRIMARY KEY, digest BLOB NOT NULL, data BLOB NOT NULL)"_s,
          u"CREATE TABLE text (id INTEGER PRIMARY KEY, digest BLOB NOT NULL, words INTEGER NOT NULL, data BLOB NOT "
          "NULL)"_s,
          // What is known is looked up without reading the texts themselves.
          u"CREATE UNIQUE INDEX block_digest ON block (digest)"_s,
          u"CREATE UNIQUE INDEX text_digest ON text (digest, words)"_s},
         {u"ALTER TABLE version ADD COLUMN origin INTEGER NOT NULL DEFAULT 0"_s},
         {u"ALTER TABLE document ADD COLUMN inode INTEGER"_s, u"ALTER TABLE document ADD COLUMN modified INTEGER"_s}}};
    return schema;
}

VersionStore::VersionStore(const QString &path, Database::Opening opening)
    : m_database(path, schema(), opening)
{
}

QByteArray VersionStore::digestOf(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

std::vector<NumberedEntry> VersionStore::storeTexts(const KeptOutline &outline, qint64 &words)
{
    QHash<QByteArray, KnownText> known;
    m_database.select(u"SELECT digest, id, words FROM text"_s, {}, [&known](const QSqlQuery &row) {
        known.insert(row.value(0).toByteArray(), {row.value(1).toLongLong(), row.value(2).toLongLong()});
        return true;
    });
    std::vector<NumberedEntry> entries;
    entries.reserve(outline.entries.size());
    for (const EntryRecord &entry : outline.entries) {
        words += wordCount(entry.label);
        entries.push_back({entry, 0});
        entries.back().entry.storedText.clear();
        if (entry.storedText.isEmpty())
            continue;
        const QByteArray digest = digestOf(entry.storedText);
        auto text = known.constFind(digest);
        if (text == known.constEnd()) {
            const qint64 textWords = wordsOfText(entry.storedText);
            m_database.run(u"INSERT INTO text (digest, words, data) VALUES (?, ?, ?)"_s,
                           {digest, textWords, entry.storedText});
            text = known.insert(digest, {m_database.lastKey(), textWords});
        }
        entries.back().text = text->number;
        words += text->words;
    }
    return entries;
}

std::vector<qint64> VersionStore::storeBlocks(const std::vector<NumberedEntry> &entries)
{
    QHash<QByteArray, qint64> known;
    m_database.select(u"SELECT digest, id FROM block"_s, {}, [&known](const QSqlQuery &row) {
        known.insert(row.value(0).toByteArray(), row.value(1).toLongLong());
        return true;
    });
    std::vector<qint64> numbers;
    for (const QByteArray &block : blocksOf(entries)) {
        const QByteArray digest = digestOf(block);
        auto stored = known.constFind(digest);
        if (stored == known.constEnd()) {
            m_database.run(u"INSERT INTO block (digest, data) VALUES (?, ?)"_s, {digest, deflated(block)});
            stored = known.insert(digest, m_database.lastKey());
        }
        numbers.push_back(*stored);
    }
    return numbers;
}

qint64 VersionStore::lastVersion()
{
    return m_database.value(u"SELECT max(id) FROM version"_s).toLongLong();
}

qint64 VersionStore::keep(const KeptOutline &outline, const VersionSave &save)
{
    Database::Transaction transaction(m_database);
    qint64 words = 0;
    const std::vector<NumberedEntry> entries = storeTexts(outline, words);
    const QByteArray head = headOf(outline);
    const QByteArray blocks = packedNumbers(storeBlocks(entries));
    const QByteArray digest = digestOf(head + blocks);
    const qint64 last = lastVersion();
    constexpr auto recovered = static_cast<int>(VersionOrigin::Recovered);
    qint64 version = m_database
                         .value(u"SELECT id FROM version WHERE id = ? AND digest = ? AND (origin <> ? OR origin = ?)"_s,
                                {last, digest, recovered, static_cast<int>(save.origin)})
                         .toLongLong();
    if (version == 0) {
        m_database.run(
            u"INSERT INTO version (time, entries, words, digest, head, blocks, origin) VALUES (?, ?, ?, ?, ?, ?, ?)"_s,
            {timeAfter(last, save.time).toMSecsSinceEpoch(), qint64(entries.size()), words, digest, head, blocks,
             static_cast<int>(save.origin)});
        version = m_database.lastKey();
        const std::vector<ComparedEntry> before = last > 0 ? comparedOf(last) : std::vector<ComparedEntry>();
        setChanges(version, countsOf(compareOutlines(before, comparedByNumber(entries)).differences));
    } else {
        m_database.run(u"UPDATE version SET origin = min(origin, ?) WHERE id = ?"_s,
                       {static_cast<int>(save.origin), version});
    }
    if (!save.fileDigest.isEmpty())
        m_database.run(u"REPLACE INTO file (digest, version) VALUES (?, ?)"_s, {save.fileDigest, version});
    setFile(save.file);
    if (save.identity)
        m_database.run(u"UPDATE document SET inode = ?, modified = ?"_s,
                       {static_cast<qint64>(save.identity->inode), save.identity->modified});
    transaction.commit();
    return version;
}

// A clock that was set back makes no version old before its time.
QDateTime VersionStore::timeAfter(qint64 version, const QDateTime &time)
{
    const QVariant last = m_database.value(u"SELECT time FROM version WHERE id = ?"_s, {version});
    return last.isValid() ? std::max(time, QDateTime::fromMSecsSinceEpoch(last.toLongLong())) : time;
}

void VersionStore::setChanges(qint64 version, const DifferenceCounts &changes)
{
    m_database.run(u"UPDATE version SET added = ?, removed = ?, changed = ? WHERE id = ?"_s,
                   {changes.added, changes.removed, changes.changed, version});
}

bool VersionStore::verify(qint64 version, const KeptOutline &outline)
{
    const bool isSame = read(version) == outline;
    m_database.run(u"UPDATE version SET verified = ? WHERE id = ?"_s, {isSame ? 1 : 0, version});
    return isSame;
}

std::vector<VersionInfo> VersionStore::list()
{
    std::vector<VersionInfo> versions;
    m_database.select(
        u"SELECT id, time, entries, words, verified, added, removed, changed, origin FROM version ORDER BY id"_s, {},
        [&versions](const QSqlQuery &row) {
            int column = 0;
            VersionInfo info;
            info.number = row.value(column++).toLongLong();
            info.time = QDateTime::fromMSecsSinceEpoch(row.value(column++).toLongLong());
            info.entries = row.value(column++).toInt();
            info.words = row.value(column++).toLongLong();
            info.isVerified = row.value(column++).toBool();
            info.changes.added = row.value(column++).toInt();
            info.changes.removed = row.value(column++).toInt();
            info.changes.changed = row.value(column++).toInt();
            info.origin = static_cast<VersionOrigin>(row.value(column++).toInt());
            versions.push_back(info);
            return true;
        });
    return versions;
}

VersionStore::Stored VersionStore::storedOf(qint64 version)
{
    Stored stored;
    bool isThere = false;
    bool isWhole = false;
    m_database.select(u"SELECT digest, head, blocks FROM version WHERE id = ?"_s, {version}, [&](const QSqlQuery &row) {
        stored = {row.value(1).toByteArray(), row.value(2).toByteArray()};
        isThere = true;
        isWhole = digestOf(stored.head + stored.blocks) == row.value(0).toByteArray();
        return false;
    });
    if (!isThere)
        failReading(m_database.path(), u"there is no version %1"_s.arg(version));
    if (!isWhole)
        failReading(m_database.path(), u"the version %1 is damaged"_s.arg(version));
    return stored;
}

std::vector<NumberedEntry> VersionStore::structureOf(qint64 version, const Stored &stored)
{
    std::vector<NumberedEntry> entries;
    for (const qint64 number : unpackedNumbers(stored.blocks)) {
        bool isWhole = false;
        m_database.select(u"SELECT digest, data FROM block WHERE id = ?"_s, {number}, [&](const QSqlQuery &row) {
            const QByteArray block = inflatedBytes(row.value(1).toByteArray());
            isWhole = digestOf(block) == row.value(0).toByteArray();
            if (isWhole)
                appendBlock(entries, block);
            return false;
        });
        if (!isWhole)
            failReading(m_database.path(), u"a part of the version %1 is damaged"_s.arg(version));
    }
    return entries;
}

std::vector<ComparedEntry> VersionStore::comparedOf(qint64 version)
{
    return comparedByNumber(structureOf(version, storedOf(version)));
}

KeptOutline VersionStore::read(qint64 version)
{
    const Stored stored = storedOf(version);
    std::vector<NumberedEntry> structure = structureOf(version, stored);
    KeptOutline outline;
    readHead(outline, stored.head);
    // A text that many entries have is read once.
    QHash<qint64, QByteArray> texts;
    outline.entries.reserve(structure.size());
    for (NumberedEntry &each : structure) {
        if (each.text != 0) {
            auto text = texts.constFind(each.text);
            if (text == texts.constEnd()) {
                m_database.select(u"SELECT digest, data FROM text WHERE id = ?"_s, {each.text},
                                  [&](const QSqlQuery &row) {
                                      const QByteArray data = row.value(1).toByteArray();
                                      if (digestOf(data) == row.value(0).toByteArray())
                                          text = texts.insert(each.text, data);
                                      return false;
                                  });
            }
            if (text == texts.constEnd())
                failReading(m_database.path(), u"a text of the version %1 is damaged"_s.arg(version));
            each.entry.storedText = *text;
        }
        outline.entries.push_back(std::move(each.entry));
    }
    return outline;
}

QString VersionStore::file()
{
    return m_database.value(u"SELECT file FROM document"_s).toString();
}

void VersionStore::setFile(const QString &file)
{
    m_database.run(
        u"INSERT INTO document (id, file) VALUES (1, ?) ON CONFLICT (id) DO UPDATE SET file = excluded.file"_s, {file});
}

FileLikeness VersionStore::likenessOf(const QByteArray &digest, const std::optional<FileIdentity> &identity)
{
    const bool hasContent =
        m_database
            .value(u"SELECT 1 FROM file WHERE digest = ? AND version = (SELECT max(version) FROM file)"_s, {digest})
            .isValid();
    if (!hasContent)
        return FileLikeness::None;
    FileLikeness likeness = FileLikeness::Content;
    m_database.select(u"SELECT inode, modified FROM document"_s, {}, [&](const QSqlQuery &row) {
        // A database of an earlier program has neither.
        if (!identity || row.isNull(0) || row.value(1).toLongLong() != identity->modified)
            return false;
        const bool isSame = static_cast<quint64>(row.value(0).toLongLong()) == identity->inode;
        likeness = isSame ? FileLikeness::Same : FileLikeness::ContentAndTime;
        return false;
    });
    return likeness;
}

void VersionStore::copyTo(const QString &path)
{
    makePrivateFile(path);
    m_database.run(u"VACUUM INTO ?"_s, {path});
    QFile copy(path);
    if (!copy.open(QIODevice::ReadWrite) || !flushFile(copy.handle()))
        throw fileError(errno, path);
}

bool VersionStore::hasFileOf(const QByteArray &digest)
{
    return m_database.value(u"SELECT 1 FROM file WHERE digest = ?"_s, {digest}).isValid();
}
