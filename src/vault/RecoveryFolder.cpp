// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/RecoveryFolder.h"

#include "util/RunTimeError.h"
#include "util/StateFolder.h"
#include "vault/Database.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSysInfo>
#include <QUuid>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

const QString databaseExtension = u".recovery"_s;
const QString lockExtension = u".lock"_s;

QString lockPath(const QString &databasePath)
{
    return databasePath.chopped(databaseExtension.size()) + lockExtension;
}

// When a process that runs started, in the system's ticks; empty when there is none or the system does not tell.
QByteArray startOf(qint64 process)
{
    QFile stat(u"/proc/%1/stat"_s.arg(process));
    if (!stat.open(QIODevice::ReadOnly))
        return QByteArray();
    // The name, in brackets, may hold anything.
    const QByteArray line = stat.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    // One that has ended stays in the list until its parent asks for it, which some never do.
    const QByteArray &state = fields.front();
    constexpr qsizetype startTime = 19;
    return state == "Z" || state == "X" ? QByteArray() : fields.value(startTime);
}

// Computers may share a home folder, and numbers of processes mean something on one alone.
QByteArray holderText(qint64 process)
{
    return QSysInfo::machineUniqueId() + ' ' + QSysInfo::bootUniqueId() + ' ' + QByteArray::number(process) + ' ' +
           startOf(process) + '\n';
}

// A line for who holds it and, once there is something, one for the mark.
QByteArrayList linesOf(int descriptor)
{
    constexpr qsizetype most = 64 * 1024;
    QByteArray text(most, '\0');
    const ssize_t size = pread(descriptor, text.data(), static_cast<size_t>(text.size()), 0);
    text.truncate(std::max<ssize_t>(size, 0));
    return text.split('\n');
}

QByteArray textOf(const RecoveryMark &mark)
{
    if (mark.base.isEmpty())
        return QByteArray();
    return QByteArrayList{mark.base, QByteArray::number(mark.records), mark.isChanged ? "1" : "0",
                          mark.caption.toUtf8().toPercentEncoding(), mark.file.toUtf8().toPercentEncoding()}
               .join(' ') +
           '\n';
}

RecoveryMark markOf(const QByteArray &line)
{
    const QByteArrayList fields = line.split(' ');
    constexpr qsizetype count = 5;
    if (fields.size() != count)
        return {};
    return {fields[0], fields[1].toLongLong(), fields[2] == "1",
            QString::fromUtf8(QByteArray::fromPercentEncoding(fields[3])),
            QString::fromUtf8(QByteArray::fromPercentEncoding(fields[4]))};
}

// False with errno set.
bool replaceText(int descriptor, const QByteArray &text)
{
    return pwrite(descriptor, text.constData(), static_cast<size_t>(text.size()), 0) == text.size() &&
           ftruncate(descriptor, text.size()) == 0;
}

// Whether the process that a lock names still runs, should the lock itself not say so.
bool holderRuns(const QByteArray &holder)
{
    const QByteArray text = holder + '\n';
    const qint64 process = text.split(' ').value(2).toLongLong();
    return process > 0 && process != getpid() && !startOf(process).isEmpty() && text == holderText(process);
}

bool isAtPath(int descriptor, const QByteArray &path)
{
    struct stat held = {};
    struct stat there = {};
    return fstat(descriptor, &held) == 0 && stat(path.constData(), &there) == 0 && held.st_ino == there.st_ino &&
           held.st_dev == there.st_dev;
}

} // namespace

std::unique_ptr<RecoveryLock> RecoveryLock::take(const QString &databasePath)
{
    const QByteArray path = QFile::encodeName(lockPath(databasePath));
    while (true) {
        const int descriptor = open(path.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (descriptor < 0)
            throw fileError(errno, lockPath(databasePath));
        auto closed = qScopeGuard([descriptor] { close(descriptor); });
        if (flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
            return nullptr;
        // Whoever had it may have removed it meanwhile, and then the lock is of a file that is no more.
        if (!isAtPath(descriptor, path))
            continue;
        const QByteArrayList lines = linesOf(descriptor);
        if (holderRuns(lines.value(0)))
            return nullptr;
        const RecoveryMark mark = markOf(lines.value(1));
        if (!replaceText(descriptor, holderText(getpid()) + textOf(mark)))
            throw fileError(errno, lockPath(databasePath));
        closed.dismiss();
        return std::unique_ptr<RecoveryLock>(new RecoveryLock(databasePath, descriptor, mark));
    }
}

RecoveryLock::RecoveryLock(QString databasePath, int descriptor, RecoveryMark mark)
    : m_databasePath(std::move(databasePath))
    , m_mark(std::move(mark))
    , m_descriptor(descriptor)
{
}

RecoveryLock::~RecoveryLock()
{
    // The name would keep others out who cannot see that it is not locked.
    if (m_descriptor >= 0) {
        const QByteArray mark = textOf(m_mark);
        [[maybe_unused]] const bool done = replaceText(m_descriptor, mark.isEmpty() ? mark : '\n' + mark);
        close(m_descriptor);
    }
}

// Where it cannot be set, nothing is missed but the mark.
void RecoveryLock::setMark(const RecoveryMark &mark)
{
    m_mark = mark;
    replaceText(m_descriptor, holderText(getpid()) + textOf(mark));
}

bool RecoveryLock::removeDatabase()
{
    bool isGone = true;
    QStringList files = Database::filesOf(m_databasePath);
    files.append(lockPath(m_databasePath));
    for (const QString &file : std::as_const(files)) {
        if (unlink(QFile::encodeName(file).constData()) != 0 && errno != ENOENT)
            isGone = false;
    }
    return isGone;
}

QString recoveryFolder()
{
    return stateFolder() + u"/recovery"_s;
}

QString newRecoveryPath(const QString &folder)
{
    return folder + u'/' + QUuid::createUuid().toString(QUuid::WithoutBraces) + databaseExtension;
}

QStringList recoveryPaths(const QString &folder)
{
    const QDir dir(folder);
    for (const QString &lock : dir.entryList({u'*' + lockExtension}, QDir::Files | QDir::Hidden)) {
        const QString path = dir.filePath(lock.chopped(lockExtension.size()) + databaseExtension);
        if (QFileInfo::exists(path))
            continue;
        // One that makes its database right now holds the lock.
        try {
            if (const auto taken = RecoveryLock::take(path); taken && !QFileInfo::exists(path))
                taken->removeDatabase();
        } catch (const RunTimeError &) {
            continue;
        }
    }
    QStringList paths;
    for (const QString &name : dir.entryList({u'*' + databaseExtension}, QDir::Files, QDir::Time | QDir::Reversed))
        paths.append(dir.filePath(name));
    return paths;
}
