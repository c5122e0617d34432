// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/SessionLog.h"

#include "util/ProgramFiles.h"
#include "util/StateFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace
{

constexpr QLatin1StringView lineEnd("\r\n");

// A log of the program's own is far smaller. Of anything longer only the end can matter: this many bytes hold more
// characters than the log keeps, whatever they are.
constexpr qint64 bytesReadAtMost = 64 * 1024;

QString readEnd(const QString &path)
{
    // Only a regular file: opening a pipe would wait for its writer.
    if (!QFileInfo(path).isFile())
        return QString();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    if (file.size() > bytesReadAtMost)
        file.seek(file.size() - bytesReadAtMost);
    return QString::fromUtf8(file.read(bytesReadAtMost));
}

bool replaceFile(const QString &path, const QString &contents)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = contents.toUtf8();
    return file.write(bytes) == bytes.size() && file.commit();
}

} // namespace

SessionLog::SessionLog(const QStringList &folders)
    : m_folders(folders)
{
}

bool SessionLog::append(const QString &record) const
{
    for (const QString &folder : m_folders) {
        if (!QDir().mkpath(folder))
            continue;
        const QString path = folder + u"/Quillery.log"_s;
        if (replaceFile(path, bounded(readEnd(path) + record) + lineEnd))
            return true;
    }
    return false;
}

QStringList SessionLog::folders(const QString &programFolder)
{
    // An installed program has its data elsewhere, and its folder is for programs.
    const QDir folder(programFolder);
    const bool installed = !folder.exists(u"Help.qly"_s) && QFileInfo::exists(sharedFolder(programFolder));
    return installed ? QStringList(stateFolder()) : QStringList{programFolder, stateFolder()};
}

QString SessionLog::bounded(const QString &contents)
{
    qsizetype start = 0;
    while (contents.size() - start > maximumLength) {
        const qsizetype end = contents.indexOf(lineEnd, start);
        if (end < 0) {
            start = contents.size() - maximumLength;
            // Half a character is no text.
            if (contents.at(start).isLowSurrogate())
                ++start;
            break;
        }
        start = end + lineEnd.size();
    }
    return contents.mid(start);
}
