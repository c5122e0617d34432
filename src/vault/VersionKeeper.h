// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/FileStamp.h"
#include "document/FileWitness.h"
#include "vault/VersionStore.h"

#include <QFile>
#include <QObject>
#include <QThread>

#include <functional>
#include <map>
#include <memory>
#include <optional>

// Keeps a version of each document that is saved, and gives versions back. The work is done one after the other by a
// thread of its own, which gets values and answers to the window's thread. A save never waits for it and never fails
// for it: where a version cannot be kept, the document tells so.
class VersionKeeper final : public QObject, public FileWitness
{
    Q_OBJECT

public:
    static constexpr qint64 mostBytes = qint64(1) << 30;

    // The folder need not exist.
    explicit VersionKeeper(QString folder);
    // What was asked for is done before it goes, but nobody is answered.
    ~VersionKeeper() override;

    // Bytes that the versions of one document may take.
    void setMostBytes(qint64 bytes) { m_mostBytes = bytes; }

    // Without it saves make no versions; those that are there can be looked at.
    void setKeeping(bool keeping) { m_keeping = keeping; }

    void fileRead(const Document &document) override;
    void fileWritten(Document &document) override;
    // What the file holds becomes a version of it with the next one, unless it is one already; at once where it is to
    // be written over.
    void aboutToReplace(const Document &document, bool inPlace) override;
    // As a version, where the file can be read as a document and there was no trouble keeping the last one.
    bool willKeep(const Document &document) override;
    // What was recovered becomes a version, too: of its file, or else of the one that the document is first saved as.
    void recovered(const Document &document, const QString &file, const QDateTime &since) override;

    // The versions of a file, from the oldest to the newest; or why they cannot be read.
    struct Listed {
        std::vector<VersionInfo> versions;
        QString failure;
    };

    // Answers are given in the window's thread, if the asker is still there.
    void list(const QString &file, QObject *asker, std::function<void(const Listed &)> answer);

    struct Read {
        KeptOutline outline;
        QString failure;
    };

    void read(const QString &file, qint64 version, QObject *asker, std::function<void(const Read &)> answer);

    // Whether nothing is left to be done.
    bool isIdle() const { return m_jobs == 0; }

private:
    // What is to be told of a version that was to be kept, and what is to be in the log.
    struct Outcome {
        QString notice;
        QString logged;
    };

    struct Recovered {
        KeptOutline outline;
        QDateTime time;
    };

    // What a file held before it was replaced. It is read in the end only, and only where it is not known.
    struct Found {
        std::shared_ptr<QFile> content;
        ContentDigest known;
    };

    static Outcome keep(const QString &folder, const KeptOutline &outline, VersionSave save, qint64 room);
    static Outcome keepFound(const QString &folder, const VersionSave &save, const Found &found, qint64 room);
    void enqueueKeeping(const KeptOutline &outline, const VersionSave &save, const ContentDigest &digest = {},
                        const std::optional<Found> &found = {});
    void forgetWithItsEnd(const Document &document);
    void answer(const QString &file, const Outcome &outcome);
    // Runs the work in the thread and what it returns behind it in this one.
    void enqueue(std::function<std::function<void()>()> work);

    const QString m_folder;
    qint64 m_mostBytes = mostBytes;
    bool m_keeping = true;
    int m_jobs = 0;
    QThread m_thread;
    std::unique_ptr<QObject> m_worker;
    // Of documents without a file.
    std::map<const Document *, Recovered> m_recovered;
    // Of documents that are being saved.
    std::map<const Document *, Found> m_found;
};
