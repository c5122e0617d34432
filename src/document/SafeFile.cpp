// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/SafeFile.h"

#include "document/FileCalls.h"
#include "document/TemporaryName.h"

#include "util/RunTimeError.h"
#include "util/StateFolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype bufferSize = 1 << 20;

mode_t newFileMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

QByteArray temporaryPath(const QString &folder, const TemporaryName &name)
{
    return QFile::encodeName(folder) + '/' + name.text();
}

// The same temporary file at another stage of the saving.
QByteArray atStage(const QByteArray &path, TemporaryName::Stage stage)
{
    const qsizetype nameStart = path.lastIndexOf('/') + 1;
    TemporaryName name = TemporaryName::parse(path.sliced(nameStart)).value_or(TemporaryName());
    name.stage = stage;
    return path.first(nameStart) + name.text();
}

// Whether what was looked at exists. Not to be allowed to look is no answer.
bool isThere(int result, const QString &path)
{
    if (result != 0 && errno != ENOENT && errno != ENOTDIR)
        throw fileError(errno, path);
    return result == 0;
}

bool isReadOnly(const QByteArray &name, const struct stat &status)
{
    if (!(status.st_mode & S_IWUSR))
        return true;
    // Any other failure says nothing of it; whoever writes then meets it.
    return access(name.constData(), W_OK) != 0 && (errno == EACCES || errno == EROFS || errno == EPERM);
}

// Whether a folder takes no new file, whatever can be done with those that it has.
bool refusesNewFiles(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == ENOSPC || error == EDQUOT;
}

// A file with its old content is as old as that. That it is not, harms nobody.
void setModified(int descriptor, const timespec &time)
{
    const timespec times[] = {{0, UTIME_OMIT}, time};
    futimens(descriptor, times);
}

// Whether nobody took a new file for a leftover before it was locked.
bool isStillThere(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) != 0 || status.st_nlink > 0;
}

} // namespace

// The folder's name is too long to be a name within another.
QString sideFolder(const QString &folder)
{
    const QByteArray digest = QCryptographicHash::hash(QFile::encodeName(folder), QCryptographicHash::Sha256);
    return stateFolder() + u"/saving/"_s + QString::fromLatin1(digest.first(16).toHex());
}

QString followLinks(const QString &path)
{
    constexpr int maximumLinks = 40; // as many as the system itself follows
    QString target = path;
    for (int i = 0; i < maximumLinks; ++i) {
        struct stat status = {};
        const bool exists = isThere(lstat(QFile::encodeName(target).constData(), &status), path);
        if (!exists || !S_ISLNK(status.st_mode))
            return target;
        const QString next = QFileInfo(target).symLinkTarget();
        if (next.isEmpty())
            throw fileError(EIO, path);
        target = next;
    }
    throw fileError(ELOOP, path);
}

bool isReadOnlyFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    return stat(name.constData(), &status) == 0 && isReadOnly(name, status);
}

QByteArray readWholeFile(const QString &path)
{
    QFile file(path);
    errno = 0;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw fileError(errno ? errno : EACCES, path);
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError || content.size() < file.size())
        throw fileError(errno ? errno : EIO, path);
    return content;
}

SafeFile::SafeFile(const QString &path, const std::function<bool()> &mayWriteInPlace)
    : m_target(followLinks(path))
    , m_folder(QFileInfo(m_target).absolutePath())
{
    const QByteArray name = QFile::encodeName(m_target);
    struct stat status = {};
    m_targetExists = isThere(stat(name.constData(), &status), m_target);
    if (m_targetExists && S_ISDIR(status.st_mode))
        throw fileError(EISDIR, m_target);
    // What is written to a pipe or a device is not to end up in a file that has taken its place.
    if (m_targetExists && !S_ISREG(status.st_mode))
        throw fileError(EINVAL, m_target);
    if (m_targetExists && isReadOnly(name, status))
        throw fileError(EACCES, m_target);
    m_inPlace = m_targetExists && status.st_nlink > 1;
    create(mayWriteInPlace);
    try {
        adoptPermissions();
    } catch (...) {
        removeTemporaries();
        throw;
    }
}

void SafeFile::create(const std::function<bool()> &mayWriteInPlace)
{
    int error = createIn(m_folder);
    if (error && m_targetExists && refusesNewFiles(error) && mayWriteInPlace && mayWriteInPlace()) {
        const QString side = sideFolder(m_folder);
        // Whose content it is says who may look at it.
        if (QDir().mkpath(side) &&
            QFile::setPermissions(side, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
            m_folder = side;
            m_inPlace = true;
            error = createIn(m_folder);
        }
    }
    if (!error)
        return;
    if (!QFileInfo(m_folder).isDir())
        throw RunTimeError(ErrorNumber::PathNotFound,
                           QStringLiteral("%1: %2").arg(errorDescription(ErrorNumber::PathNotFound), m_folder));
    throw fileError(error, m_target);
}

// Creates the temporary file; the system's error, or 0.
int SafeFile::createIn(const QString &folder)
{
    const QByteArray fileName = QFile::encodeName(QFileInfo(m_target).fileName());
    const TemporaryName name{TemporaryName::Part, "XXXXXX", fileName};
    const int suffixSize = static_cast<int>(TemporaryName::carried(fileName).size()) + 1;
    while (true) {
        m_temporary = temporaryPath(folder, name);
        m_descriptor = mkostemps(m_temporary.data(), suffixSize, O_CLOEXEC);
        if (m_descriptor < 0)
            return errno;
        // Where a file system has no locks, nobody takes the file for a leftover either.
        if (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0 ? errno != EWOULDBLOCK : isStillThere(m_descriptor))
            return 0;
        unlink(m_temporary.constData());
        close(m_descriptor);
    }
}

SafeFile::~SafeFile()
{
    removeTemporaries();
}

void SafeFile::removeTemporaries()
{
    // The old content first: without the new one beside it, it would be taken for the only whole one.
    for (const QByteArray &name : {m_kept, m_temporary}) {
        if (!name.isEmpty())
            unlink(name.constData());
    }
    for (const int descriptor : {m_keptDescriptor, m_descriptor}) {
        if (descriptor >= 0)
            close(descriptor);
    }
    if (m_folder != QFileInfo(m_target).absolutePath())
        rmdir(QFile::encodeName(m_folder).constData());
}

void SafeFile::adoptPermissions()
{
    struct stat old = {};
    const int source = m_targetExists ? open(QFile::encodeName(m_target).constData(), O_RDONLY | O_CLOEXEC) : -1;
    const bool known = m_targetExists && (source >= 0 ? fstat(source, &old) == 0
                                                      : stat(QFile::encodeName(m_target).constData(), &old) == 0);
    // Only the superuser may give a file away; for anybody else the new file simply is the writer's own.
    if (known && fchown(m_descriptor, old.st_uid, old.st_gid) != 0 && fchown(m_descriptor, uid_t(-1), old.st_gid) != 0)
        old.st_mode &= static_cast<mode_t>(~(S_ISUID | S_ISGID));
    const int changed = fchmod(m_descriptor, known ? old.st_mode & 07777 : newFileMode());
    const int error = errno;
    if (source >= 0) {
        adoptAttributes(source);
        close(source);
    }
    errno = error;
    if (changed != 0)
        fail(m_target);
}

// The access list is one of them. What cannot be kept is left: the document's words count for more.
void SafeFile::adoptAttributes(int source) const
{
    QByteArray names(64 * 1024, Qt::Uninitialized);
    const ssize_t size = flistxattr(source, names.data(), static_cast<size_t>(names.size()));
    for (const QByteArray &name : names.first(qMax<ssize_t>(size, 0)).split('\0')) {
        QByteArray value(64 * 1024, Qt::Uninitialized);
        const ssize_t valueSize =
            name.isEmpty() ? -1 : fgetxattr(source, name.constData(), value.data(), static_cast<size_t>(value.size()));
        if (valueSize >= 0)
            fsetxattr(m_descriptor, name.constData(), value.constData(), static_cast<size_t>(valueSize), 0);
    }
}

QString SafeFile::temporaryName() const
{
    return QFile::decodeName(m_temporary);
}

void SafeFile::write(QByteArrayView bytes)
{
    if (m_buffered + bytes.size() > bufferSize)
        writeBuffer();
    if (bytes.size() > bufferSize) {
        writeOut(bytes);
        return;
    }
    m_buffer.resize(bufferSize);
    // A document comes in some hundred thousand pieces.
    if (!bytes.isEmpty())
        std::memcpy(m_buffer.data() + m_buffered, bytes.data(), static_cast<size_t>(bytes.size()));
    m_buffered += bytes.size();
}

void SafeFile::writeBuffer()
{
    if (const qsizetype buffered = std::exchange(m_buffered, 0))
        writeOut(QByteArrayView(m_buffer).first(buffered));
}

void SafeFile::writeOut(QByteArrayView bytes)
{
    if (!writeAll(m_descriptor, bytes))
        fail(m_target);
    m_checkSum = checkSumOf(bytes, m_checkSum);
    m_written += bytes.size();
}

void SafeFile::flushToDisk(const Check &check)
{
    writeBuffer();
    if (!flushFile(m_descriptor))
        fail(m_target);
    // Who opened the file by its name and wrote to it knows better what it is to hold.
    if (m_written > 0)
        checkWritten(check);
    const QByteArray whole = atStage(m_temporary, TemporaryName::Whole);
    if (std::rename(m_temporary.constData(), whole.constData()) != 0)
        fail(m_target);
    m_temporary = whole;
}

void SafeFile::keepOldFile()
{
    if (!m_targetExists)
        return;
    const QByteArray target = QFile::encodeName(m_target);
    const QByteArray kept = atStage(m_temporary, TemporaryName::Old);
    // A second name costs nothing. Not every file system gives one, and not to everybody, and it would go along with
    // what is written in place.
    if (m_inPlace || link(target.constData(), kept.constData()) != 0)
        copyOldFileTo(kept);
    m_kept = kept;
}

void SafeFile::copyOldFileTo(const QByteArray &copy)
{
    const int from = open(QFile::encodeName(m_target).constData(), O_RDONLY | O_CLOEXEC);
    if (from < 0)
        throw fileError(errno, m_target);
    struct stat old = {};
    int error = fstat(from, &old) == 0 ? 0 : errno;
    const int to = error ? -1 : open(copy.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (to < 0 || !copyAll(from, to) || fchmod(to, old.st_mode & 0777) != 0 || !flushFile(to))
        error = errno;
    // A backup is as old as its content.
    const timespec times[] = {old.st_atim, old.st_mtim};
    if (to >= 0 && !error && futimens(to, times) != 0)
        errno = 0;
    close(from);
    if (error) {
        if (to >= 0) {
            unlink(copy.constData());
            close(to);
        }
        throw fileError(error, m_target);
    }
    // Like the temporary file: in use as long as it is open.
    flock(to, LOCK_EX | LOCK_NB);
    m_keptDescriptor = to;
}

void SafeFile::replace()
{
    if (m_inPlace)
        return overwrite();
    if (std::rename(m_temporary.constData(), QFile::encodeName(m_target).constData()) != 0)
        fail(m_target);
    m_temporary.clear();
    flushFolder(m_folder);
    m_placed = identityOf(m_descriptor);
}

// Everything that is needed to end up with the one content or the other is on disk, and its names tell of it, before
// the first byte of the file changes.
void SafeFile::overwrite()
{
    if (m_kept.isEmpty())
        keepOldFile();
    for (const auto &[name, stage] :
         {std::pair(&m_kept, TemporaryName::Before), std::pair(&m_temporary, TemporaryName::Over)}) {
        const QByteArray next = atStage(*name, stage);
        if (std::rename(name->constData(), next.constData()) != 0)
            fail(m_target);
        *name = next;
    }
    flushFolder(m_folder);
    const int target = open(QFile::encodeName(m_target).constData(), O_RDWR | O_CLOEXEC);
    if (target < 0)
        fail(m_target);
    const auto closed = qScopeGuard([target] { close(target); });
    struct stat content = {};
    struct stat old = {};
    if (fstat(m_descriptor, &content) != 0 || fstat(target, &old) != 0)
        fail(m_target);
    if (!reserveRoom(target, content.st_size)) {
        const int error = errno;
        // What room there was is given back.
        if (ftruncate(target, old.st_size) == 0)
            setModified(target, old.st_mtim);
        throw fileError(error, m_target);
    }
    try {
        if (!overwriteContent(m_descriptor, target))
            fail(m_target);
        if (m_written > 0 && !holdsWritten(target))
            failDifferent();
        m_placed = identityOf(target);
    } catch (const RunTimeError &error) {
        putBack(target, error);
        setModified(target, old.st_mtim);
        throw;
    }
}

// Gives the file its old content again after an error. What cannot be put back stays where it is kept.
void SafeFile::putBack(int target, const RunTimeError &cause)
{
    if (overwriteContent(m_keptDescriptor, target))
        return;
    m_stranded = std::exchange(m_kept, QByteArray());
    m_temporary.clear();
    throw RunTimeError(cause.number(),
                       QStringLiteral("%1; what it held before is in %2").arg(cause.description(), strandedCopy()));
}

QString SafeFile::strandedCopy() const
{
    return QFile::decodeName(m_stranded);
}

void SafeFile::moveOldFileTo(const QString &path)
{
    if (m_kept.isEmpty())
        return;
    if (std::rename(m_kept.constData(), QFile::encodeName(path).constData()) != 0)
        fail(path);
    // Two names of one file stay both when one is to replace the other.
    unlink(m_kept.constData());
    m_kept.clear();
    flushFolder(m_folder);
}

void SafeFile::fail(const QString &path)
{
    throw fileError(errno, path);
}
