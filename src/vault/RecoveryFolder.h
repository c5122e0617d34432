// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <memory>

// Says that a recovery database is in use: a file beside it, locked for as long as this lives, which the system lets go
// of when the program ends, however it ends. It holds the process number and its time of start, for file systems whose
// locks lock nothing. Whoever holds it may read, write and remove the database.
class RecoveryLock
{
public:
    // Null when a running program has it. Throws a file error when the lock cannot be made at all.
    static std::unique_ptr<RecoveryLock> take(const QString &databasePath);
    ~RecoveryLock();
    RecoveryLock(const RecoveryLock &) = delete;
    RecoveryLock &operator=(const RecoveryLock &) = delete;

    const QString &databasePath() const { return m_databasePath; }

    // Removes the database, which must be closed, and the lock with it.
    void removeDatabase();

private:
    RecoveryLock(QString databasePath, int descriptor);

    QString m_databasePath;
    int m_descriptor;
};

// $XDG_STATE_HOME/Quillery/recovery
QString recoveryFolder();

// A name that no other program has; the file does not exist yet.
QString newRecoveryPath(const QString &folder);

// Every recovery database of a folder, the oldest first. Locks that belong to none, and to nobody, are removed.
QStringList recoveryPaths(const QString &folder);
