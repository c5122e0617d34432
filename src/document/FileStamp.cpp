// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/FileStamp.h"

#include "document/SafeFile.h"
#include "util/FullPath.h"
#include "util/RunTimeError.h"

#include <QCryptographicHash>
#include <QFile>

#include <cerrno>
#include <ctime>
#include <sys/stat.h>
#include <system_error>

namespace
{

constexpr qint64 nanosecond = 1;
constexpr qint64 millisecond = 1'000'000 * nanosecond;
constexpr qint64 wholeSecond = 1000 * millisecond;

qint64 nanoseconds(const timespec &time)
{
    return time.tv_sec * wholeSecond + time.tv_nsec;
}

QByteArray digestOf(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Blake2b_256);
}

FileIdentity identityFrom(const struct stat &status)
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return {status.st_dev,   status.st_ino, status.st_size, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim),
            nanoseconds(now)};
}

} // namespace

ContentDigest::ContentDigest(const QByteArray &content)
{
    constexpr qsizetype longContent = 256 * 1024;
    try {
        if (content.size() >= longContent) {
            m_value = std::async(std::launch::async, digestOf, content).share();
            return;
        }
    } catch (const std::system_error &) {
        // There is no thread to be had.
        m_value = {};
    }
    std::promise<QByteArray> made;
    made.set_value(digestOf(content));
    m_value = made.get_future().share();
}

ContentDigest ContentDigest::known(const QByteArray &value)
{
    std::promise<QByteArray> made;
    made.set_value(value);
    ContentDigest digest;
    digest.m_value = made.get_future().share();
    return digest;
}

bool FileIdentity::operator==(const FileIdentity &other) const
{
    return device == other.device && inode == other.inode && size == other.size && modified == other.modified &&
           statusChanged == other.statusChanged;
}

bool FileIdentity::isFresh() const
{
    // The system's clock goes on in ticks of some milliseconds, and some file systems count in seconds or pairs of
    // them.
    const qint64 exactness = modified % wholeSecond == 0 ? 2 * wholeSecond : 20 * millisecond;
    return seen - modified < exactness;
}

std::optional<FileIdentity> identityOf(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return identityFrom(status);
}

std::optional<FileIdentity> identityOf(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        return std::nullopt;
    return identityFrom(status);
}

bool isSameFile(const QString &one, const QString &other)
{
    if (one.isEmpty() || other.isEmpty())
        return false;
    if (RealPathName(one) == RealPathName(other))
        return true;
    const std::optional<FileIdentity> first = identityOf(one);
    const std::optional<FileIdentity> second = first ? identityOf(other) : std::nullopt;
    return first && second && first->device == second->device && first->inode == second->inode;
}

bool FileStamp::hasContentOf(const FileStamp &other) const
{
    if (identity && other.identity && identity->size != other.identity->size)
        return false;
    const QByteArray own = digest.value();
    return !own.isEmpty() && own == other.digest.value();
}

FileLook lookAtFile(const QString &path, const FileStamp &before)
{
    FileLook look;
    look.now.identity = identityOf(path);
    if (!look.now.identity) {
        look.fate = errno == ENOENT || errno == ENOTDIR ? FileFate::Gone : FileFate::Same;
        look.now = before;
        return look;
    }
    if (before.identity && *before.identity == *look.now.identity && !before.identity->isFresh()) {
        look.now.digest = before.digest;
        return look;
    }
    try {
        look.now.digest = ContentDigest(readWholeFile(path));
    } catch (const RunTimeError &) {
        look.fate = FileFate::Changed;
        return look;
    }
    look.fate = look.now.hasContentOf(before) ? FileFate::Same : FileFate::Changed;
    return look;
}
