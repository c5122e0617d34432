// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/UnfinishedSaves.h"

#include "document/SafeFile.h"
#include "document/TemporaryName.h"

#include "util/RunTimeError.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

// The old content has its temporary name for the blink of an eye, and no lock: one that is given it now is in use.
constexpr qint64 oldContentLifetime = 60;

bool isSameContent(const QString &one, const QString &other)
{
    try {
        return QFileInfo(one).size() == QFileInfo(other).size() && readWholeFile(one) == readWholeFile(other);
    } catch (const RunTimeError &) {
        return false;
    }
}

// Whether the whole content of an unfinished save is of no use any more.
bool isOutdated(const QString &path, const QString &target)
{
    const QFileInfo file(target);
    return file.exists() && (file.lastModified() > QFileInfo(path).lastModified() || isSameContent(path, target));
}

// Looks at one temporary file while holding its lock; its use, or nothing.
void examine(const QString &path, const TemporaryName &name, const QString &target, const QString &sFile,
             std::vector<UnfinishedSave> &found)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return;
    const auto closed = qScopeGuard([descriptor] { close(descriptor); });
    struct stat status = {};
    // Whoever writes a temporary file keeps it locked to the end.
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || flock(descriptor, LOCK_EX | LOCK_NB) != 0)
        return;
    const qint64 age = QDateTime::currentSecsSinceEpoch() - status.st_ctim.tv_sec;
    const bool useless = name.stage == TemporaryName::Part ||
                         (name.stage == TemporaryName::Old && age > oldContentLifetime) ||
                         (name.stage == TemporaryName::Whole && isOutdated(path, target));
    if (useless)
        unlink(QFile::encodeName(path).constData());
    else if (name.stage == TemporaryName::Whole && (target == sFile || !QFileInfo::exists(target)))
        found.push_back({path, target});
}

} // namespace

// The oldest comes first, so that the latest gets the name of a file that is not there.
std::vector<UnfinishedSave> unfinishedSaves(const QString &sFile)
{
    const QString sTarget = followLinks(sFile);
    const QString folder = QFileInfo(sTarget).absolutePath();
    const QByteArray carried = TemporaryName::carried(QFile::encodeName(QFileInfo(sTarget).fileName()));
    std::vector<UnfinishedSave> found;
    const QStringList names = QDir(folder).entryList({u".quillery-*"_s}, QDir::Files | QDir::Hidden | QDir::System,
                                                     QDir::Time | QDir::Reversed);
    for (const QString &entry : names) {
        const std::optional<TemporaryName> name = TemporaryName::parse(QFile::encodeName(entry));
        if (!name)
            continue;
        const QString target = name->file == carried ? sTarget : folder + u'/' + QFile::decodeName(name->file);
        examine(folder + u'/' + entry, *name, target, sTarget, found);
    }
    return found;
}

QString nameUnfinishedSave(const UnfinishedSave &save, const std::vector<UnfinishedSave> &all)
{
    // Beside a file of that name what is older would look outdated, though nobody has decided about it.
    const bool isContested = std::ranges::any_of(
        all, [&save](const UnfinishedSave &other) { return other.path != save.path && other.target == save.target; });
    const QFileInfo target(save.target);
    // A name that had to be cut off lost its extension, which says what the file is.
    const QString suffix = target.suffix().isEmpty() ? u"qly"_s : target.suffix();
    const QString stem = target.absolutePath() + u'/' + target.completeBaseName();
    QString name = isContested || QFileInfo::exists(save.target) ? QString() : stem + u'.' + suffix;
    for (int number = 1; name.isEmpty() || QFileInfo::exists(name); ++number) {
        const QString which = number == 1 ? QString() : u" %1"_s.arg(number);
        name = u"%1 (unfinished save%2).%3"_s.arg(stem, which, suffix);
    }
    const QByteArray path = QFile::encodeName(name);
    // Never in place of a file: where there are no links, the name that was free a moment ago has to do.
    if (link(QFile::encodeName(save.path).constData(), path.constData()) == 0)
        unlink(QFile::encodeName(save.path).constData());
    else if (errno == EEXIST || std::rename(QFile::encodeName(save.path).constData(), path.constData()) != 0)
        throw fileError(errno, name);
    return name;
}
