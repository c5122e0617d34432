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
#include <optional>

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

// What a database may be to a file that has none under its own name.
struct Kin {
    QString path;
    FileLikeness likeness = FileLikeness::None;
    // Of the file of its name.
    bool isThere = false;
};

// One that cannot be read is of no other file.
Kin kinOf(const QString &path, const QByteArray &digest, const std::optional<FileIdentity> &identity)
{
    try {
        VersionStore store(path, Database::Opening::Existing);
        const FileLikeness likeness = store.likenessOf(digest, identity);
        return {path, likeness, likeness != FileLikeness::None && QFileInfo::exists(store.file())};
    } catch (const RunTimeError &) {
        return {};
    }
}

// The database of the file that was moved or renamed; none where it is rather the copy of one that is there.
std::optional<Kin> ancestor(const QString &folder, const QByteArray &digest,
                            const std::optional<FileIdentity> &identity)
{
    Kin nearest;
    bool isCopied = false;
    for (const QString &name : QDir(folder).entryList({u'*' + versionsSuffix}, QDir::Files, QDir::Time)) {
        const Kin kin = kinOf(folder + u'/' + name, digest, identity);
        if (kin.isThere)
            isCopied = true;
        else if (kin.likeness > nearest.likeness)
            nearest = kin;
    }
    const FileLikeness least = isCopied ? FileLikeness::ContentAndTime : FileLikeness::Content;
    return nearest.likeness >= least ? std::optional(nearest) : std::nullopt;
}

// Gives a file a database like another's, which stays.
void adopt(const QString &from, const QString &own, const QString &file)
{
    const QString made = own + u".made"_s;
    for (const QString &left : Database::filesOf(made))
        QFile::remove(left);
    try {
        VersionStore(from, Database::Opening::Existing).copyTo(made);
        VersionStore(made, Database::Opening::Existing).setFile(file);
        renameDatabase(made, own);
    } catch (...) {
        for (const QString &left : Database::filesOf(made))
            QFile::remove(left);
        throw;
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
    if (QDir(folder).entryList({u'*' + versionsSuffix}, QDir::Files).isEmpty())
        return QString();
    const QByteArray digest = digestOfFile();
    const std::optional<Kin> found = digest.isEmpty() ? std::nullopt : ancestor(folder, digest, identityOf(file));
    if (!found)
        return QString();
    if (found->likeness == FileLikeness::Same) {
        renameDatabase(found->path, own);
        VersionStore(own, Database::Opening::Existing).setFile(RealPathName(file));
    } else {
        adopt(found->path, own, RealPathName(file));
    }
    return own;
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
