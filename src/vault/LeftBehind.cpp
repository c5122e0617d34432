// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/LeftBehind.h"

#include "document/Document.h"
#include "document/SafeFile.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "vault/Replay.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

std::unique_ptr<LeftBehind> lookAt(const QString &path)
{
    std::unique_ptr<RecoveryLock> lock = RecoveryLock::take(path);
    if (!lock)
        return nullptr;
    // Whoever had it may have removed it just now.
    if (!QFileInfo::exists(path)) {
        lock->removeDatabase();
        return nullptr;
    }
    std::unique_ptr<RecoveryDatabase> database;
    QString damage;
    try {
        database = std::make_unique<RecoveryDatabase>(path, Database::Opening::Existing);
        // One that was cut short while it was made holds nothing yet.
        if (const bool isMarked = !lock->mark().base.isEmpty(); database->isEmpty() && isMarked) {
            database.reset();
            throw RunTimeError(ErrorNumber::InvalidFileFormat,
                               u"%1: nothing is left of what it held when it was written last"_s.arg(path));
        } else if (database->isEmpty()) {
            remark(u"%1 held nothing whole"_s.arg(path));
            database.reset();
            lock->removeDatabase();
            return nullptr;
        }
    } catch (const RunTimeError &error) {
        damage = error.description();
        remark(damage);
    }
    auto left = std::make_unique<LeftBehind>(std::move(lock), std::move(database), damage);
    if (left->damage().isEmpty() && !left->state().isChanged && left->recordsCutOff() == 0) {
        left->discard();
        return nullptr;
    }
    return left;
}

} // namespace

std::vector<std::unique_ptr<LeftBehind>> LeftBehind::find(const QString &folder)
{
    std::vector<std::unique_ptr<LeftBehind>> found;
    for (const QString &path : recoveryPaths(folder)) {
        procedure("LeftBehind find", [&] {
            if (std::unique_ptr<LeftBehind> left = lookAt(path))
                found.push_back(std::move(left));
        });
    }
    return found;
}

LeftBehind::LeftBehind(std::unique_ptr<RecoveryLock> lock, std::unique_ptr<RecoveryDatabase> database, QString damage)
    : m_lock(std::move(lock))
    , m_database(std::move(database))
    , m_damage(std::move(damage))
{
    if (m_database) {
        try {
            m_facts = m_database->facts();
            m_state = m_database->state();
        } catch (const RunTimeError &error) {
            m_damage = error.description();
            remark(m_damage);
        }
    }
    compareWithMark();
}

// A log that was cut is sound as far as it goes, and SQLite misses nothing.
void LeftBehind::compareWithMark()
{
    const RecoveryMark &mark = m_lock->mark();
    if (!m_damage.isEmpty()) {
        m_facts.file = mark.file;
        m_facts.caption = mark.caption;
    } else if (!mark.base.isEmpty() && m_database->baseId() == mark.base) {
        m_recordsCutOff = std::max<qint64>(0, mark.records - m_state.lastRecord);
        // What had been undone was done again.
        m_state.isChanged = m_state.isChanged || mark.isChanged;
    }
}

QString LeftBehind::name() const
{
    if (const QString &file = fileBehind(); !file.isEmpty())
        return QFileInfo(file).fileName();
    return m_facts.caption.isEmpty() ? QFileInfo(m_lock->databasePath()).fileName() : m_facts.caption;
}

LeftBehind::FileNow LeftBehind::fileNow() const
{
    if (m_facts.file.isEmpty())
        return FileNow::None;
    const std::optional<FileIdentity> now = identityOf(m_facts.file);
    if (!now)
        return FileNow::Gone;
    if (now->size == m_facts.fileSize && now->modified == m_facts.fileTime)
        return FileNow::AsItWas;
    // Touched or copied back it is still the same.
    try {
        const bool hasSize = m_facts.fileSize < 0 || now->size == m_facts.fileSize;
        const bool mayBeSame = hasSize && !m_facts.fileDigest.isEmpty();
        if (mayBeSame && ContentDigest(readWholeFile(m_facts.file)).value() == m_facts.fileDigest)
            return FileNow::AsItWas;
    } catch (const RunTimeError &) {
        return FileNow::Changed;
    }
    return FileNow::Changed;
}

LeftBehind::Content LeftBehind::read()
{
    if (!m_database)
        throw RunTimeError(ErrorNumber::InvalidFileFormat, m_damage);
    RecoveryDatabase::ReadBase base = m_database->base();
    Content content;
    content.outline = outlineOf(base.snapshot);
    content.snapshot = std::move(base.snapshot);
    content.damagedEntries = base.damagedEntries;
    content.records = m_database->records();
    const qint64 known = m_state.lastRecord + m_recordsCutOff;
    content.lostRecords = std::max<qint64>(0, known - static_cast<qint64>(content.records.size()));
    return content;
}

qint64 LeftBehind::replay(Document &document, const Content &content, const DocumentState &state)
{
    Replay replay(document.history, content.snapshot);
    qint64 left = static_cast<qint64>(content.records.size());
    for (const LogRecord &record : content.records) {
        if (!replay.play(record))
            break;
        --left;
    }
    if (Entry *selected = replay.entry(state.selected))
        document.history.select(selected);
    return left;
}

void LeftBehind::discard()
{
    m_database.reset();
    if (m_lock)
        m_lock->removeDatabase();
    m_lock.reset();
}
