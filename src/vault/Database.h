// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <map>
#include <vector>

// The tables of a kind of database. Each element brings a database from one version to the next; a new database gets
// all of them. What was published is never changed, only added to.
struct DatabaseSchema {
    // Tells one kind from another.
    qint32 applicationId = 0;
    std::vector<QStringList> upgrades;

    int version() const { return static_cast<int>(upgrades.size()); }
};

// A SQLite database of the vault, used by the thread that opened it and by no other program. Every failure is a
// RunTimeError: 61 no room, 70 no permission, 75 the file cannot be used, 321 it is damaged or was made by a later
// version.
//
// Changes go to a write-ahead log and are on disk when commit() returns (synchronous=FULL): after a power cut the
// database is as it was at a commit. The log costs one flush a commit, where a rollback journal takes three and two
// changes of the folder; being locked exclusively, it needs no memory shared with others, which network folders lack.
class Database
{
public:
    enum class Opening {
        // A new file that only the user may read; error 75 when there is one.
        Create,
        Existing
    };

    Database(const QString &path, const DatabaseSchema &schema, Opening opening);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    // Runs a statement with values in the place of its question marks.
    void run(const QString &statement, const QVariantList &values = {});
    // The same, and calls `each` with every row. It answers whether to go on.
    void select(const QString &statement, const QVariantList &values,
                const std::function<bool(const QSqlQuery &)> &each);
    // The first value of the first row; invalid without one.
    QVariant value(const QString &statement, const QVariantList &values = {});

    // The key that the last inserted row was given.
    qint64 lastKey() const { return m_lastKey; }

    // Several statements that are done all or not at all. Without commit() they are taken back.
    class Transaction
    {
    public:
        explicit Transaction(Database &database);
        ~Transaction();
        Transaction(const Transaction &) = delete;
        Transaction &operator=(const Transaction &) = delete;

        void commit();

    private:
        Database &m_database;
        bool m_open = true;
    };

    const QString &path() const { return m_path; }

    // The files that a database consists of beside its own, the same way named.
    static QStringList filesOf(const QString &path);

private:
    void configure();
    void upgrade(const DatabaseSchema &schema, Opening opening);
    void close();
    QSqlQuery &execute(const QString &statement, const QVariantList &values);
    [[noreturn]] void fail(const QSqlError &error) const;

    QString m_path;
    QString m_connection;
    // Statements are prepared once.
    std::map<QString, QSqlQuery> m_prepared;
    qint64 m_lastKey = 0;
};
