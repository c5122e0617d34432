// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/FileStamp.h"
#include "vault/Database.h"
#include "vault/KeptOutline.h"
#include "vault/OutlineComparison.h"
#include "vault/VersionBlocks.h"

#include <QDateTime>
#include <QHash>

#include <optional>
#include <vector>

// Why a version was kept. What comes first says more of it.
enum class VersionOrigin {
    // The document was saved as that.
    Saved,
    // Its file held that before a save replaced it: no save of this program had made it.
    Found,
    // It was recovered after a crash, and had not been saved by then.
    Recovered
};

// What is told of a version without reading it whole.
struct VersionInfo {
    qint64 number = 0;
    // Of the save, or since when it was so; of what was recovered, when it was last changed. No version is older than
    // the one before it, whatever the clock said.
    QDateTime time;
    VersionOrigin origin = VersionOrigin::Saved;
    int entries = 0;
    qint64 words = 0;
    // It was read again from the disk and was what had been saved.
    bool isVerified = false;
    // Against the version before it; all were added in the first one.
    DifferenceCounts changes;
};

// The save that made a version, or whatever else did.
struct VersionSave {
    QDateTime time;
    // Full path of the file, and the digest of what it holds; empty when it does not hold the version.
    QString file;
    QByteArray fileDigest;
    VersionOrigin origin = VersionOrigin::Saved;
    // Of the file that the save made.
    std::optional<FileIdentity> identity = {};
};

// What another file has of the file that was saved last.
enum class FileLikeness {
    None,
    Content,
    // And the time at which it was written, as a copy has it that is made to move a file to another disk.
    ContentAndTime,
    // It is that file.
    Same
};

// The versions of one document in its database. A version costs what changed: texts are stored once for all versions,
// by their digest, and so are the blocks that the structure is cut into. Every failure is a RunTimeError, as Database
// has it; a version that cannot be read whole is error 321.
class VersionStore
{
public:
    VersionStore(const QString &path, Database::Opening opening);

    // Adds a version, all or nothing, and returns its number. What is in every respect what the last one is, is that
    // one again; but what was recovered is one version, and saved as it is another.
    qint64 keep(const KeptOutline &outline, const VersionSave &save);
    // Reads a version again and marks it when it is that.
    bool verify(qint64 version, const KeptOutline &outline);

    // From the oldest to the newest.
    std::vector<VersionInfo> list();
    KeptOutline read(qint64 version);

    // Lets go of versions by their age, and of the oldest ones while the database is larger than that. True when any
    // went.
    bool thin(const QDateTime &now, qint64 mostBytes);

    // Bytes that the database takes, without what is free in it.
    qint64 size();

    // Where the document's file was when it was saved last, and whether any version of it was a file of that digest.
    QString file();
    bool hasFileOf(const QByteArray &digest);
    // A file's likeness to the newest version that was a file.
    FileLikeness likenessOf(const QByteArray &digest, const std::optional<FileIdentity> &identity);

    // From now on it is the database of another name of the file.
    void setFile(const QString &file);
    // Makes the same database in a new file, and puts it on disk.
    void copyTo(const QString &path);

    static QByteArray digestOf(const QByteArray &bytes);
    static const DatabaseSchema &schema();

private:
    struct KnownText {
        qint64 number = 0;
        qint64 words = 0;
    };

    struct Stored {
        QByteArray head;
        QByteArray blocks;
    };

    std::vector<NumberedEntry> storeTexts(const KeptOutline &outline, qint64 &words);
    std::vector<qint64> storeBlocks(const std::vector<NumberedEntry> &entries);
    Stored storedOf(qint64 version);
    std::vector<NumberedEntry> structureOf(qint64 version, const Stored &stored);
    std::vector<ComparedEntry> comparedOf(qint64 version);
    void setChanges(qint64 version, const DifferenceCounts &changes);
    void remove(const std::vector<qint64> &versions);
    void removeUnused();
    qint64 lastVersion();
    QDateTime timeAfter(qint64 version, const QDateTime &time);

    Database m_database;
};
