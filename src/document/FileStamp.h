// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <future>
#include <optional>

// A digest of some bytes. A long one is made on a thread of its own; only who asks for it waits.
class ContentDigest
{
public:
    // Of nothing known, which is like no other.
    ContentDigest() = default;
    explicit ContentDigest(const QByteArray &content);
    // One that was made before, and written down.
    static ContentDigest known(const QByteArray &value);

    QByteArray value() const { return m_value.valid() ? m_value.get() : QByteArray(); }

private:
    std::shared_future<QByteArray> m_value;
};

// Which file stands under a name, and since when, as far as that can be seen without reading it. Times are in
// nanoseconds since 1970.
struct FileIdentity {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0;
    qint64 statusChanged = 0;
    // When it was looked at, which is not compared.
    qint64 seen = 0;

    bool operator==(const FileIdentity &other) const;
    // Whether it may have been written since, without a trace: its time was as old as a file's time is exact.
    bool isFresh() const;
};

// Of the file that a path leads to, or that is open; nothing when there is none or it may not be looked at. The error
// number of the system tells which.
std::optional<FileIdentity> identityOf(const QString &path);
std::optional<FileIdentity> identityOf(int descriptor);

// Whether two names lead to one file, also where both are names of it on the disk. Of a file that is not there its
// folder and its name count.
bool isSameFile(const QString &one, const QString &other);

// What a file was when it was read or written.
struct FileStamp {
    std::optional<FileIdentity> identity;
    ContentDigest digest;

    // Whether the content is the same for certain.
    bool hasContentOf(const FileStamp &other) const;
};

enum class FileFate { Same, Changed, Gone };

// What has become of a file since it had a stamp.
struct FileLook {
    FileFate fate = FileFate::Same;
    // What stands there; the digest is unknown where it cannot be read.
    FileStamp now;
};

// Reads the file only where its size and times leave any doubt. One that cannot be looked at counts as the same:
// whoever opens it will meet what is wrong.
FileLook lookAtFile(const QString &path, const FileStamp &before);
