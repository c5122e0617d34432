// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/Database.h"

#include "util/RunTimeError.h"
#include "vault/PrivateFiles.h"

#include <QFile>
#include <QSqlError>

using namespace Qt::StringLiterals;

namespace
{

// What SQLite calls its failures; the upper bits of a number say more than is needed here.
enum SqliteCode {
    Perm = 3,
    Busy = 5,
    Locked = 6,
    NoMem = 7,
    ReadOnly = 8,
    Corrupt = 11,
    Full = 13,
    Auth = 23,
    NotADb = 26
};

constexpr int codeBits = 0xff;

ErrorNumber errorNumberOf(const QSqlError &error)
{
    switch (error.nativeErrorCode().toInt() & codeBits) {
    case Perm:
    case Busy:
    case Locked:
    case ReadOnly:
    case Auth:
        return ErrorNumber::PermissionDenied;
    case NoMem:
        return ErrorNumber::OutOfMemory;
    case Corrupt:
    case NotADb:
        return ErrorNumber::InvalidFileFormat;
    case Full:
        return ErrorNumber::DiskFull;
    default:
        return ErrorNumber::PathFileAccess;
    }
}

} // namespace

Database::Database(const QString &path, const DatabaseSchema &schema, Opening opening)
    : m_path(path)
    , m_connection(u"vault %1"_s.arg(reinterpret_cast<quintptr>(this), 0, 16))
{
    // SQLite gives its other files the permissions of this one.
    if (opening == Opening::Create)
        makePrivateFile(path);
    else if (!QFile::exists(path))
        throw RunTimeError(ErrorNumber::FileNotFound,
                           u"%1: %2"_s.arg(errorDescription(ErrorNumber::FileNotFound), path));
    try {
        if (!QSqlDatabase::isDriverAvailable(u"QSQLITE"_s))
            throw RunTimeError(ErrorNumber::PathFileAccess, u"%1: Qt's SQLite driver is not installed"_s.arg(path));
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
        database.setDatabaseName(path);
        database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=0"_s);
        if (!database.open())
            fail(database.lastError());
        configure();
        upgrade(schema, opening);
    } catch (...) {
        close();
        throw;
    }
}

Database::~Database()
{
    close();
}

void Database::close()
{
    m_prepared.clear();
    if (QSqlDatabase::contains(m_connection)) {
        QSqlDatabase::database(m_connection, false).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
}

void Database::configure()
{
    // Before the first access, so that the log never needs shared memory.
    run(u"PRAGMA locking_mode = EXCLUSIVE"_s);
    run(u"PRAGMA journal_mode = WAL"_s);
    run(u"PRAGMA synchronous = FULL"_s);
    run(u"PRAGMA foreign_keys = ON"_s);
    // What is deleted are words that nobody is to find again.
    run(u"PRAGMA secure_delete = FAST"_s);
}

void Database::upgrade(const DatabaseSchema &schema, Opening opening)
{
    // One that was cut short while it was made has nothing in it yet, and no kind.
    const int kind = value(u"PRAGMA application_id"_s).toInt();
    const bool isUnmade = kind == 0 && value(u"SELECT count(*) FROM sqlite_master"_s).toInt() == 0;
    if (opening == Opening::Existing && !isUnmade && kind != schema.applicationId)
        throw RunTimeError(ErrorNumber::InvalidFileFormat, u"%1: it is no database of this kind"_s.arg(m_path));
    const int version = value(u"PRAGMA user_version"_s).toInt();
    if (version > schema.version())
        throw RunTimeError(ErrorNumber::InvalidFileFormat,
                           u"%1: it has the version %2, which this program does not know"_s.arg(m_path).arg(version));
    if (version == schema.version())
        return;
    Transaction transaction(*this);
    for (int next = version; next < schema.version(); ++next) {
        for (const QString &statement : schema.upgrades[static_cast<size_t>(next)])
            run(statement);
    }
    run(u"PRAGMA application_id = %1"_s.arg(schema.applicationId));
    run(u"PRAGMA user_version = %1"_s.arg(schema.version()));
    transaction.commit();
}

void Database::fail(const QSqlError &error) const
{
    const ErrorNumber number = errorNumberOf(error);
    throw RunTimeError(number, u"%1: %2 (%3)"_s.arg(errorDescription(number), m_path, error.text()), u"SQLite"_s);
}

QSqlQuery &Database::execute(const QString &statement, const QVariantList &values)
{
    auto prepared = m_prepared.find(statement);
    if (prepared == m_prepared.end()) {
        QSqlQuery query(QSqlDatabase::database(m_connection, false));
        query.setForwardOnly(true);
        if (!query.prepare(statement))
            fail(query.lastError());
        prepared = m_prepared.emplace(statement, std::move(query)).first;
    }
    QSqlQuery &query = prepared->second;
    for (qsizetype place = 0; place < values.size(); ++place)
        query.bindValue(static_cast<int>(place), values[place]);
    if (!query.exec()) {
        const QSqlError error = query.lastError();
        m_prepared.erase(prepared);
        fail(error);
    }
    return query;
}

void Database::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery &query = execute(statement, values);
    const QVariant key = query.lastInsertId();
    if (key.isValid())
        m_lastKey = key.toLongLong();
    // A statement that stands at a row would keep others from being committed.
    query.finish();
}

void Database::select(const QString &statement, const QVariantList &values,
                      const std::function<bool(const QSqlQuery &)> &each)
{
    QSqlQuery &query = execute(statement, values);
    while (query.next()) {
        if (!each(query)) {
            query.finish();
            return;
        }
    }
    // The rows may end because the next one cannot be read.
    const QSqlError error = query.lastError();
    query.finish();
    if (error.isValid())
        fail(error);
}

QVariant Database::value(const QString &statement, const QVariantList &values)
{
    QVariant first;
    select(statement, values, [&first](const QSqlQuery &row) {
        first = row.value(0);
        return false;
    });
    return first;
}

QStringList Database::filesOf(const QString &path)
{
    return {path, path + u"-wal"_s, path + u"-shm"_s, path + u"-journal"_s};
}

Database::Transaction::Transaction(Database &database)
    : m_database(database)
{
    m_database.run(u"BEGIN IMMEDIATE"_s);
}

Database::Transaction::~Transaction()
{
    if (!m_open)
        return;
    try {
        m_database.run(u"ROLLBACK"_s);
    } catch (const RunTimeError &) {
        // SQLite has taken it back by itself, as it does when the disk is full.
        return;
    }
}

void Database::Transaction::commit()
{
    m_database.run(u"COMMIT"_s);
    m_open = false;
}
