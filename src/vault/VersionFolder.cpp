// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/VersionFolder.h"

#include "document/FileStamp.h"
#include "document/SafeFile.h"
#include "util/FullPath.h"
#include "util/RunTimeError.h"
#include "vault/VersionStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto versionsSuffix = ".db"_L1;

void renameDatabase(const QString &from, const QString &to)
{
    const QStringList sources = Database::filesOf(from);
    const QStringList targets = Database::filesOf(to);
    // What belongs to a database goes first: without it the database would be an older one.
    for (qsizetype place = sources.size(); place-- > 0;) {
        if (std::rename(QFile::encodeName(sources[place]).constData(), QFile::encodeName(targets[place]).constData()) !=
                0 &&
            (place == 0 || errno != ENOENT))
            throw fileError(errno, sources[place]);
    }
}

// Whether a database is of a file with that digest which is gone; one that cannot be read is not.
bool wasVersionsOf(const QString &path, const QByteArray &digest)
{
    try {
        VersionStore store(path, Database::Opening::Existing);
        return store.hasFileOf(digest) && !QFileInfo::exists(store.file());
    } catch (const RunTimeError &) {
        return false;
    }
}

} // namespace

QString versionsFolder()
{
    // A relative value of the variable counts as none (XDG base directories).
    const QString base = qEnvironmentVariable("XDG_DATA_HOME");
    return (QDir::isAbsolutePath(base) ? base : QDir::homePath() + u"/.local/share"_s) + u"/Quillery/versions"_s;
}

QString versionsPathOf(const QString &folder, const QString &file)
{
    constexpr qsizetype nameBytes = 16;
    const QByteArray digest = VersionStore::digestOf(QFile::encodeName(RealPathName(file)));
    return folder + u'/' + QString::fromLatin1(digest.first(nameBytes).toHex()) + versionsSuffix;
}

QByteArray fileDigestOf(const QString &file)
{
    try {
        return ContentDigest(readWholeFile(file)).value();
    } catch (const RunTimeError &) {
        return {};
    }
}

QString findVersions(const QString &folder, const QString &file, const std::function<QByteArray()> &digestOfFile)
{
    const QString own = versionsPathOf(folder, file);
    if (QFileInfo::exists(own))
        return own;
    const QStringList others = QDir(folder).entryList({u'*' + versionsSuffix}, QDir::Files, QDir::Time);
    if (others.isEmpty())
        return QString();
    const QByteArray digest = digestOfFile();
    if (digest.isEmpty())
        return QString();
    for (const QString &other : others) {
        const QString path = folder + u'/' + other;
        if (!wasVersionsOf(path, digest))
            continue;
        renameDatabase(path, own);
        VersionStore(own, Database::Opening::Existing).setFile(RealPathName(file));
        return own;
    }
    return QString();
}

bool isOfLaterProgram(const QString &path, const DatabaseSchema &schema)
{
    // Where the file format has the version that its user gave it.
    constexpr qint64 place = 60;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.read(16).startsWith("SQLite format 3") || !file.seek(place))
        return false;
    const QByteArray bytes = file.read(sizeof(qint32));
    return bytes.size() == qsizetype(sizeof(qint32)) && qFromBigEndian<qint32>(bytes.constData()) > schema.version();
}

QString setAside(const QString &path)
{
    for (int number = 1;; ++number) {
        const QString aside = u"%1.damaged%2"_s.arg(path).arg(number);
        if (QFileInfo::exists(aside))
            continue;
        renameDatabase(path, aside);
        return aside;
    }
}
