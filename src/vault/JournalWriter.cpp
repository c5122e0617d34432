// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/JournalWriter.h"

#include "util/FullPath.h"
#include "vault/PrivateFiles.h"

#include <QFileInfo>

#include <new>

using namespace Qt::StringLiterals;

JournalWriter::JournalWriter(QString folder)
    : m_folder(std::move(folder))
{
}

JournalWriter::~JournalWriter() = default;

QString JournalWriter::inWords(ErrorNumber number) const
{
    const QString folder = ShownPathName(m_folder);
    switch (number) {
    case ErrorNumber::DiskFull:
        return u"there is no room left for it in the folder %1"_s.arg(folder);
    case ErrorNumber::PermissionDenied:
    case ErrorNumber::PathFileAccess:
    case ErrorNumber::PathNotFound:
        return u"the folder %1 cannot be written"_s.arg(folder);
    case ErrorNumber::FileNotFound:
        return u"what was kept in the folder %1 was removed"_s.arg(folder);
    default:
        return errorDescription(number);
    }
}

JournalWriter::File JournalWriter::create()
{
    makePrivateFolder(m_folder);
    const QString path = newRecoveryPath(m_folder);
    File file;
    file.lock = RecoveryLock::take(path);
    if (!file.lock)
        throw RunTimeError(ErrorNumber::PermissionDenied, u"%1 is in use"_s.arg(path));
    try {
        file.database = std::make_unique<RecoveryDatabase>(path, Database::Opening::Create);
    } catch (...) {
        remove(std::move(file));
        throw;
    }
    return file;
}

void JournalWriter::remove(File file)
{
    file.database.reset();
    if (!file.lock)
        return;
    if (!file.lock->removeDatabase())
        m_stayed.push_back(std::move(file.lock));
}

// What a disk that takes nothing could not be rid of would be offered beside what is true.
void JournalWriter::removeWhatStayed()
{
    std::erase_if(m_stayed, [](const std::unique_ptr<RecoveryLock> &lock) { return lock->removeDatabase(); });
}

// A base takes the place of the one before in one step. Where that database takes nothing any more, a new one is made,
// and the old one goes only when the new one is whole.
void JournalWriter::begin(int journal, const RecoveryBatch &batch)
{
    const auto old = m_files.find(journal);
    if (old != m_files.end() && QFileInfo::exists(old->second.lock->databasePath())) {
        try {
            old->second.database->write(batch);
            return;
        } catch (const RunTimeError &error) {
            if (error.number() == ErrorNumber::DiskFull || error.number() == ErrorNumber::OutOfMemory)
                throw;
        }
    }
    File file = create();
    try {
        file.database->write(batch);
    } catch (...) {
        remove(std::move(file));
        throw;
    }
    std::swap(m_files[journal], file);
    remove(std::move(file));
}

// So that what a damaged database has lost can be told.
void JournalWriter::mark(const File &file, const RecoveryBatch &batch)
{
    RecoveryMark mark = file.lock->mark();
    if (batch.base) {
        const DocumentFacts &facts = batch.base->facts;
        mark.base = file.database->baseId();
        mark.caption = facts.caption;
        mark.file = facts.file.isEmpty() ? facts.origin : facts.file;
    }
    mark.records = batch.state.lastRecord;
    mark.isChanged = batch.state.isChanged;
    file.lock->setMark(mark);
}

void JournalWriter::write(int journal, const RecoveryBatch &given)
{
    QString why;
    QString said;
    try {
        if (m_obstacle)
            m_obstacle();
        const RecoveryBatch batch = m_texts[journal].prepared(given);
        const auto file = m_files.find(journal);
        if (batch.base) {
            begin(journal, batch);
        } else {
            if (file == m_files.end())
                return;
            // What is written to a file without a name is of use to nobody.
            if (!QFileInfo::exists(file->second.lock->databasePath()))
                throw RunTimeError(ErrorNumber::FileNotFound,
                                   u"%1 was removed"_s.arg(file->second.lock->databasePath()));
            file->second.database->write(batch);
        }
        removeWhatStayed();
        const File &taken = m_files.at(journal);
        mark(taken, batch);
        Database &database = taken.database->database();
        Q_EMIT written(journal, database.value(u"PRAGMA page_count"_s).toLongLong() *
                                    database.value(u"PRAGMA page_size"_s).toLongLong());
        return;
    } catch (const RunTimeError &error) {
        why = error.description();
        said = inWords(error.number());
    } catch (const std::bad_alloc &) {
        why = said = errorDescription(ErrorNumber::OutOfMemory);
    } catch (const TextKeeper::Lost &) {
        Q_EMIT textLost(journal);
        return;
    }
    Q_EMIT failed(journal, why, said);
}

void JournalWriter::discard(int journal)
{
    m_texts.erase(journal);
    const auto file = m_files.find(journal);
    if (file == m_files.end())
        return;
    File gone = std::move(file->second);
    m_files.erase(file);
    remove(std::move(gone));
}

void JournalWriter::leave(int journal)
{
    m_texts.erase(journal);
    m_files.erase(journal);
}
