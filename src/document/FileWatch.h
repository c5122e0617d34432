// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/FileStamp.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

// Tells when something has happened to a file: when it was written, replaced, removed, or is there again. Where the
// system does not tell by itself, as of a file on another machine, whoever has a moment asks it to look.
class FileWatch final : public QObject
{
    Q_OBJECT

public:
    explicit FileWatch(QObject *parent = nullptr);

    // From now on this file is watched, as it is now; none for an empty path.
    void setFile(const QString &sFile);

    // Tells as well when the file is another than it was when this was last known.
    void look();

Q_SIGNALS:
    // Once what happens to the file has come to rest, or goes on for long. Much of it is of no matter.
    void stirred();

private:
    void noteStir();
    void settle();
    void arm();

    QString m_sFile;
    // As it was last told of; nothing when it was not there.
    std::optional<FileIdentity> m_identity;
    QFileSystemWatcher m_watcher;
    QTimer m_rest;
    // Since the first stir that was not told of.
    QElapsedTimer m_stirring;
};
