// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/FileWatch.h"

#include "document/SafeFile.h"
#include "util/RunTimeError.h"

#include <QFileInfo>

namespace
{

// In milliseconds. Programs write in several pieces, and some remove the old file before the new one is there.
constexpr int restTime = 200;
constexpr int longestStir = 2000;

// The file and its folder, and where it is a link what that leads to. A folder tells of files that come.
QStringList pathsOf(const QString &sFile)
{
    QStringList paths;
    QStringList files{sFile};
    try {
        files.append(followLinks(sFile));
    } catch (const RunTimeError &) {
        // A link that leads nowhere can still be replaced.
        files.append(sFile);
    }
    files.removeDuplicates();
    for (const QString &each : std::as_const(files)) {
        for (const QString &path : {each, QFileInfo(each).absolutePath()}) {
            if (QFileInfo::exists(path) && !paths.contains(path))
                paths.append(path);
        }
    }
    return paths;
}

} // namespace

FileWatch::FileWatch(QObject *parent)
    : QObject(parent)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(restTime);
    connect(&m_rest, &QTimer::timeout, this, &FileWatch::settle);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::noteStir);
    // Of another file in the folder, most of the time.
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::look);
}

void FileWatch::setFile(const QString &sFile)
{
    m_rest.stop();
    m_sFile = sFile;
    m_identity = sFile.isEmpty() ? std::nullopt : identityOf(sFile);
    arm();
}

void FileWatch::look()
{
    if (!m_sFile.isEmpty() && identityOf(m_sFile) != m_identity)
        noteStir();
}

void FileWatch::noteStir()
{
    if (!m_rest.isActive())
        m_stirring.start();
    if (m_stirring.elapsed() < longestStir)
        m_rest.start();
}

void FileWatch::settle()
{
    m_identity = identityOf(m_sFile);
    arm();
    Q_EMIT stirred();
}

// Anew each time: a watch stays with the file that it was set on, which may have another name by now.
void FileWatch::arm()
{
    const QStringList before = m_watcher.files() + m_watcher.directories();
    if (!before.isEmpty())
        m_watcher.removePaths(before);
    if (m_sFile.isEmpty())
        return;
    if (const QStringList paths = pathsOf(m_sFile); !paths.isEmpty())
        m_watcher.addPaths(paths);
    // It may have changed before the watch was set.
    look();
}
