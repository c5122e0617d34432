// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/FileStamp.h"
#include "util/ByteSink.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class RunTimeError;

// Replaces a file's content without ever losing the old one: everything is written to a temporary file in the same
// folder, flushed to disk and read again from there; only replace() puts it in the file's place, in one step, so that
// at every moment the old or the new content is there whole under the file's name. Without replace() the temporary file
// is removed and nothing has happened. A symbolic link is followed; an existing file keeps its permissions, its access
// list and its extended attributes as far as the system lets it. All failures are RunTimeErrors with the classic file
// error numbers.
//
// A file with several names, which replacing would part, and one whose folder takes no new file are written over in
// place. Then the new content and the old one both are on disk under temporary names before the file is touched, and
// stay there until it is whole again, with the one or the other.
class SafeFile final : public ByteSink
{
public:
    // Creates the temporary file. Error 70 when the file exists and may not be written, 75 when it is no regular file.
    // When the folder of a file that may be written takes no new one, that is an error too, unless the function allows
    // to write in place; the temporary files then lie in sideFolder().
    explicit SafeFile(const QString &path, const std::function<bool()> &mayWriteInPlace = {});
    ~SafeFile() override;
    SafeFile(const SafeFile &) = delete;
    SafeFile &operator=(const SafeFile &) = delete;

    void write(QByteArrayView bytes) override;
    // Judges what the disk holds; throws when it is not what it should be.
    using Check = std::function<void(const QByteArray &content)>;

    // Writes what is buffered, has the system put it on disk, reads it again from there, and gives the temporary file
    // the name of a whole one. Error 321 when the disk holds anything else than was written. For want of memory it
    // is checked for that alone.
    void flushToDisk(const Check &check = {});
    // Gives the old content, if there is any, a temporary name of its own, which it keeps when it is replaced.
    void keepOldFile();
    // Puts the new content in the file's place. When that fails, everything is as it was, or there is a strandedCopy().
    void replace();
    // Gives the old content that was kept this name in the same folder, in place of a file of that name. Without it the
    // old content goes with this object.
    void moveOldFileTo(const QString &path);

    // The file that is really replaced: the path with its links followed.
    const QString &target() const { return m_target; }

    // Whether the file itself is written over, and no other one takes its place.
    bool isInPlace() const { return m_inPlace; }

    // The file that is written to, for a writer that wants to open it itself; empty once it has replaced the old one.
    QString temporaryName() const;

    // What stands under the file's name once it was replaced; nothing where that cannot be told.
    const std::optional<FileIdentity> &placed() const { return m_placed; }

    // A file with the whole old content, when neither the new nor the old one could be written in place. Else empty.
    QString strandedCopy() const;

private:
    void create(const std::function<bool()> &mayWriteInPlace);
    int createIn(const QString &folder);
    void removeTemporaries();
    void overwrite();
    void putBack(int target, const RunTimeError &cause);
    void writeBuffer();
    void writeOut(QByteArrayView bytes);
    // Of bytes that follow those of a check sum.
    static quint32 checkSumOf(QByteArrayView bytes, quint32 before = 0);
    void checkWritten(const Check &check);
    bool holdsWritten(int descriptor) const;
    bool readWritten(QByteArray &content) const;
    [[noreturn]] void failDifferent() const;
    void adoptPermissions();
    void adoptAttributes(int source) const;
    void copyOldFileTo(const QByteArray &copy);
    [[noreturn]] void fail(const QString &path);

    QString m_target;
    // Where the temporary files lie.
    QString m_folder;
    QByteArray m_temporary;
    // The temporary name of the old content, while it has one.
    QByteArray m_kept;
    QByteArray m_buffer;
    qsizetype m_buffered = 0;
    QByteArray m_stranded;
    // What was written, by its size and its check sum.
    qint64 m_written = 0;
    quint32 m_checkSum = 0;
    // Open until the end: they hold the locks that tell others that the temporary files are in use.
    int m_descriptor = -1;
    int m_keptDescriptor = -1;
    std::optional<FileIdentity> m_placed;
    bool m_targetExists = false;
    bool m_inPlace = false;
};

// Where the temporary files of a folder lie that takes none.
QString sideFolder(const QString &folder);

// The file that a path leads to once its symbolic links are followed; the path itself when it names nothing yet.
QString followLinks(const QString &path);

// Whether a file exists and is read-only: marked so for its owner, which counts even for those whom the mark would not
// stop, or not to be written by the current user.
bool isReadOnlyFile(const QString &path);

// A file's whole content, or a file error.
QByteArray readWholeFile(const QString &path);
