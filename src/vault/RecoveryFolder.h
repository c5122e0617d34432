// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

// What a recovery database held when it was written last. The system does not hurry to put it on disk, so it may be
// behind the database, but never ahead of it: where it seems to be, the database has lost something.
struct RecoveryMark {
    // Tells one base of a journal from the next; empty before the first.
    QByteArray base;
    qint64 records = 0;
    bool isChanged = false;
    // What the document was called, and its file.
    QString caption;
    QString file;
};

// Says that a recovery database is in use: a file beside it, locked for as long as this lives, which the system lets go
// of when the program ends, however it ends. It holds the process number and its time of start, for file systems whose
// locks lock nothing, and a mark of what the database holds. Whoever holds it may read, write and remove the database.
class RecoveryLock
{
public:
    // Null when a running program has it. Throws a file error when the lock cannot be made at all.
    static std::unique_ptr<RecoveryLock> take(const QString &databasePath);
    ~RecoveryLock();
    RecoveryLock(const RecoveryLock &) = delete;
    RecoveryLock &operator=(const RecoveryLock &) = delete;

    const QString &databasePath() const { return m_databasePath; }

    // As it was found, or was set since. It stays when the lock is let go of.
    const RecoveryMark &mark() const { return m_mark; }

    void setMark(const RecoveryMark &mark);

    // Removes the database, which must be closed, and the lock with it.
    bool removeDatabase();

private:
    RecoveryLock(QString databasePath, int descriptor, RecoveryMark mark);

    QString m_databasePath;
    RecoveryMark m_mark;
    int m_descriptor;
};

// $XDG_STATE_HOME/Quillery/recovery
QString recoveryFolder();

// A name that no other program has; the file does not exist yet.
QString newRecoveryPath(const QString &folder);

// Every recovery database of a folder, the oldest first. Locks that belong to none, and to nobody, are removed.
QStringList recoveryPaths(const QString &folder);
