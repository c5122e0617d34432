// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "util/ByteSink.h"

#include <QByteArray>
#include <QString>

// Replaces a file's content without ever losing the old one: everything is written to a temporary file in the same
// folder and flushed to disk; only replace() puts it in the file's place, in one step. Without replace() the temporary
// file is removed and nothing has happened. A symbolic link is followed; an existing file keeps its permissions. All
// failures are RunTimeErrors with the classic file error numbers.
class SafeFile final : public ByteSink
{
public:
    // Creates the temporary file. Error 70 when the file exists and may not be written.
    explicit SafeFile(const QString &path);
    ~SafeFile() override;
    SafeFile(const SafeFile &) = delete;
    SafeFile &operator=(const SafeFile &) = delete;

    void write(QByteArrayView bytes) override;
    // Writes what is buffered and has the system put it on disk.
    void flushToDisk();
    // Renames the old file, if there is one, to a name in the same folder, replacing a file of that name.
    void moveOldFileTo(const QString &path);
    // Puts the new content in the file's place. Brings a moved old file back if that fails.
    void replace();

    // The file that is really replaced: the path with its links followed.
    const QString &target() const { return m_target; }

    // The file that is written to, for a writer that wants to open it itself; empty once it has replaced the old one.
    QString temporaryName() const;

private:
    void writeBuffer();
    void adoptPermissions();
    [[noreturn]] void fail(const QString &path);

    QString m_target;
    QString m_folder;
    QByteArray m_temporary;
    QString m_movedTo;
    QByteArray m_buffer;
    int m_descriptor = -1;
    bool m_targetExists = false;
};

// The file that a path leads to once its symbolic links are followed; the path itself when it names nothing yet.
QString followLinks(const QString &path);
