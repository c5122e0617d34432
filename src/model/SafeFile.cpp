// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/SafeFile.h"

#include "util/RunTimeError.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

// A renamed file is safe from a power cut only when its folder's entry is on disk too.
void flushFolder(const QString &folder)
{
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

} // namespace

QString followLinks(const QString &path)
{
    constexpr int maximumLinks = 40; // as many as the system itself follows
    QString target = path;
    for (int i = 0; i < maximumLinks; ++i) {
        const QFileInfo info(target);
        if (!info.isSymLink())
            return target;
        target = info.symLinkTarget();
    }
    throw fileError(ELOOP, path);
}

SafeFile::SafeFile(const QString &path)
    : m_target(followLinks(path))
    , m_folder(QFileInfo(m_target).absolutePath())
{
    const QFileInfo info(m_target);
    m_targetExists = info.exists();
    if (m_targetExists && info.isDir())
        throw fileError(EISDIR, m_target);
    if (m_targetExists && (!info.isWritable() || !info.permission(QFileDevice::WriteOwner)))
        throw fileError(EACCES, m_target);
    m_temporary = QFile::encodeName(m_folder + u"/.quillery-XXXXXX"_s);
    m_descriptor = mkostemp(m_temporary.data(), O_CLOEXEC);
    if (m_descriptor < 0) {
        m_temporary.clear();
        if (!QFileInfo(m_folder).isDir())
            throw RunTimeError(ErrorNumber::PathNotFound,
                               u"%1: %2"_s.arg(errorDescription(ErrorNumber::PathNotFound), m_folder));
        throw fileError(errno, m_target);
    }
    try {
        adoptPermissions();
    } catch (...) {
        close(m_descriptor);
        unlink(m_temporary.constData());
        throw;
    }
}

SafeFile::~SafeFile()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
    if (!m_temporary.isEmpty())
        unlink(m_temporary.constData());
}

void SafeFile::adoptPermissions()
{
    struct stat old = {};
    const bool known = m_targetExists && stat(QFile::encodeName(m_target).constData(), &old) == 0;
    // Only the superuser may give a file away; for anybody else the new file simply is the writer's own.
    if (known && fchown(m_descriptor, old.st_uid, old.st_gid) != 0 && fchown(m_descriptor, uid_t(-1), old.st_gid) != 0)
        old.st_mode &= static_cast<mode_t>(~(S_ISUID | S_ISGID));
    if (fchmod(m_descriptor, known ? old.st_mode & 07777 : newFileMode()) != 0)
        fail(m_target);
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
    const char *at = m_buffer.constData();
    qsizetype left = m_buffer.size();
    while (left > 0) {
        const ssize_t written = ::write(m_descriptor, at, static_cast<size_t>(left));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail(m_target);
        at += written;
        left -= written;
    }
    m_buffer.resize(0);
}

void SafeFile::flushToDisk()
{
    writeBuffer();
    if (fsync(m_descriptor) != 0)
        fail(m_target);
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    // A network file system may report a failed write only now.
    if (close(descriptor) != 0)
        fail(m_target);
}

void SafeFile::moveOldFileTo(const QString &path)
{
    if (!m_targetExists)
        return;
    if (std::rename(QFile::encodeName(m_target).constData(), QFile::encodeName(path).constData()) != 0)
        fail(path);
    m_movedTo = path;
}

void SafeFile::replace()
{
    const QByteArray target = QFile::encodeName(m_target);
    if (std::rename(m_temporary.constData(), target.constData()) != 0) {
        const int error = errno;
        if (!m_movedTo.isEmpty())
            std::rename(QFile::encodeName(m_movedTo).constData(), target.constData());
        throw fileError(error, m_target);
    }
    m_temporary.clear();
    flushFolder(m_folder);
}

void SafeFile::fail(const QString &path)
{
    throw fileError(errno, path);
}
