// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/UnfinishedSaves.h"

#include "document/SafeFile.h"
#include "document/TemporaryName.h"

#include "util/RunTimeError.h"
#include "util/StateFolder.h"

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

// Whether what a file held before it was written over is of no use: it holds that again, or all of the new content.
bool isOldContentOutdated(const QString &path, TemporaryName name, const QString &target)
{
    name.stage = TemporaryName::Over;
    const QString newContent = QFileInfo(path).absolutePath() + u'/' + QFile::decodeName(name.text());
    return isSameContent(path, target) || isSameContent(newContent, target);
}

bool isUseless(const QString &path, const TemporaryName &name, const QString &target, qint64 age)
{
    switch (name.stage) {
    case TemporaryName::Part:
        return true;
    case TemporaryName::Whole:
        return isOutdated(path, target);
    case TemporaryName::Old:
        return age > oldContentLifetime;
    case TemporaryName::Over:
        // A file that is written in place is younger from the first byte on.
        return isSameContent(path, target);
    case TemporaryName::Before:
        return isOldContentOutdated(path, name, target);
    }
    return false;
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
    if (isUseless(path, name, target, age))
        unlink(QFile::encodeName(path).constData());
    else if (name.stage != TemporaryName::Old && (target == sFile || !QFileInfo::exists(target)))
        found.push_back({path, target, name.stage == TemporaryName::Before});
}

void examineFolder(const QString &where, const QString &sTarget, std::vector<UnfinishedSave> &found)
{
    const QString folder = QFileInfo(sTarget).absolutePath();
    const QByteArray carried = TemporaryName::carried(QFile::encodeName(QFileInfo(sTarget).fileName()));
    QStringList names = QDir(where).entryList({u".quillery-*"_s}, QDir::Files | QDir::Hidden | QDir::System,
                                              QDir::Time | QDir::Reversed);
    // Old content is judged by the new one, so before that may be removed.
    const QString before = u".quillery-before-"_s;
    std::stable_partition(names.begin(), names.end(),
                          [&before](const QString &name) { return name.startsWith(before); });
    for (const QString &entry : std::as_const(names)) {
        const std::optional<TemporaryName> name = TemporaryName::parse(QFile::encodeName(entry));
        if (!name)
            continue;
        const QString target = name->file == carried ? sTarget : folder + u'/' + QFile::decodeName(name->file);
        examine(where + u'/' + entry, *name, target, sTarget, found);
    }
}

} // namespace

// The oldest comes first, so that the latest gets the name of a file that is not there.
std::vector<UnfinishedSave> unfinishedSaves(const QString &sFile)
{
    const QString sTarget = followLinks(sFile);
    const QString folder = QFileInfo(sTarget).absolutePath();
    std::vector<UnfinishedSave> found;
    examineFolder(folder, sTarget, found);
    examineFolder(sideFolder(folder), sTarget, found);
    // Left only when nothing is in it.
    QDir().rmdir(sideFolder(folder));
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
    // What lies elsewhere does so because the target's folder takes no new file.
    const bool isBeside = QFileInfo(save.path).absolutePath() == target.absolutePath();
    const QString stem = (isBeside ? target.absolutePath() : stateFolder()) + u'/' + target.completeBaseName();
    const bool isTargetsName = isBeside && !save.isOldContent && !isContested && !QFileInfo::exists(save.target);
    const QString what = save.isOldContent ? u"before the save"_s : u"unfinished save"_s;
    QString name = isTargetsName ? stem + u'.' + suffix : QString();
    for (int number = 1; name.isEmpty() || QFileInfo::exists(name); ++number) {
        const QString which = number == 1 ? QString() : u" %1"_s.arg(number);
        name = u"%1 (%2%3).%4"_s.arg(stem, what, which, suffix);
    }
    const QByteArray path = QFile::encodeName(name);
    // Never in place of a file: where there are no links, the name that was free a moment ago has to do.
    if (link(QFile::encodeName(save.path).constData(), path.constData()) == 0)
        unlink(QFile::encodeName(save.path).constData());
    else if (errno == EEXIST || std::rename(QFile::encodeName(save.path).constData(), path.constData()) != 0)
        throw fileError(errno, name);
    return name;
}
