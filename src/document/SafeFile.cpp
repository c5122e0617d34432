// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/SafeFile.h"

#include "document/TemporaryName.h"

#include "util/RunTimeError.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{

constexpr qsizetype bufferSize = 1 << 20;

mode_t newFileMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// A renamed file is safe from a power cut only when its folder's entry is on disk too.
void flushFolder(const QString &folder)
{
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

// Writes all of it; false when that fails.
bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

bool copyAll(int from, int to)
{
    QByteArray buffer(bufferSize, Qt::Uninitialized);
    while (true) {
        const ssize_t count = read(from, buffer.data(), static_cast<size_t>(buffer.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0;
        if (!writeAll(to, QByteArrayView(buffer).first(count)))
            return false;
    }
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

// Whether nobody took a new file for a leftover before it was locked.
bool isStillThere(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) != 0 || status.st_nlink > 0;
}

} // namespace

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

SafeFile::SafeFile(const QString &path)
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
    create();
    try {
        adoptPermissions();
    } catch (...) {
        close(m_descriptor);
        unlink(m_temporary.constData());
        throw;
    }
}

void SafeFile::create()
{
    const QByteArray fileName = QFile::encodeName(QFileInfo(m_target).fileName());
    const TemporaryName name{TemporaryName::Part, "XXXXXX", fileName};
    const int suffixSize = static_cast<int>(TemporaryName::carried(fileName).size()) + 1;
    while (true) {
        m_temporary = temporaryPath(m_folder, name);
        m_descriptor = mkostemps(m_temporary.data(), suffixSize, O_CLOEXEC);
        if (m_descriptor < 0) {
            const int error = errno;
            if (!QFileInfo(m_folder).isDir())
                throw RunTimeError(ErrorNumber::PathNotFound,
                                   QStringLiteral("%1: %2").arg(errorDescription(ErrorNumber::PathNotFound), m_folder));
            throw fileError(error, m_target);
        }
        // Where a file system has no locks, nobody takes the file for a leftover either.
        if (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0 ? errno != EWOULDBLOCK : isStillThere(m_descriptor))
            return;
        unlink(m_temporary.constData());
        close(m_descriptor);
    }
}

SafeFile::~SafeFile()
{
    for (const QByteArray &name : {m_temporary, m_kept}) {
        if (!name.isEmpty())
            unlink(name.constData());
    }
    if (m_descriptor >= 0)
        close(m_descriptor);
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
    if (m_buffer.size() + bytes.size() > bufferSize)
        writeBuffer();
    m_buffer.append(bytes.data(), bytes.size());
    if (m_buffer.size() >= bufferSize)
        writeBuffer();
}

void SafeFile::writeBuffer()
{
    if (!writeAll(m_descriptor, m_buffer))
        fail(m_target);
    m_buffer.resize(0);
}

void SafeFile::flushToDisk()
{
    writeBuffer();
    if (fsync(m_descriptor) != 0)
        fail(m_target);
    // A network file system may report a failed write only when a descriptor is closed; the first one keeps the lock.
    const int twin = dup(m_descriptor);
    if (twin < 0 || close(twin) != 0)
        fail(m_target);
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
    // A second name costs nothing. Not every file system gives one, and not to everybody.
    if (link(target.constData(), kept.constData()) != 0)
        copyOldFileTo(kept);
    m_kept = kept;
}

void SafeFile::copyOldFileTo(const QByteArray &copy) const
{
    const int from = open(QFile::encodeName(m_target).constData(), O_RDONLY | O_CLOEXEC);
    if (from < 0)
        throw fileError(errno, m_target);
    struct stat old = {};
    int error = fstat(from, &old) == 0 ? 0 : errno;
    const int to = error ? -1 : open(copy.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (to < 0 || !copyAll(from, to) || fchmod(to, old.st_mode & 0777) != 0 || fsync(to) != 0)
        error = errno;
    // A backup is as old as its content.
    const timespec times[] = {old.st_atim, old.st_mtim};
    if (to >= 0 && !error && futimens(to, times) != 0)
        errno = 0;
    if (to >= 0 && close(to) != 0 && !error)
        error = errno;
    close(from);
    if (!error)
        return;
    if (to >= 0)
        unlink(copy.constData());
    throw fileError(error, m_target);
}

void SafeFile::replace()
{
    if (std::rename(m_temporary.constData(), QFile::encodeName(m_target).constData()) != 0)
        fail(m_target);
    m_temporary.clear();
    flushFolder(m_folder);
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
