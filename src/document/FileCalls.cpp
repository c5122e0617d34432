// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/FileCalls.h"

#include <QByteArray>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr qsizetype copyBufferSize = 1 << 20;

}

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
    QByteArray buffer(copyBufferSize, Qt::Uninitialized);
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

bool readFromDisk(int descriptor, const std::function<void(QByteArrayView)> &take)
{
    // Only what is on disk already can be given up. That it is not, leaves what the system remembers.
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
    if (lseek(descriptor, 0, SEEK_SET) != 0)
        return false;
    QByteArray buffer(copyBufferSize, Qt::Uninitialized);
    while (true) {
        const ssize_t count = read(descriptor, buffer.data(), static_cast<size_t>(buffer.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0;
        take(QByteArrayView(buffer).first(count));
    }
}

bool flushFile(int descriptor)
{
    if (fsync(descriptor) != 0)
        return false;
    // A network file system may report a failed write only when a descriptor is closed; the first one stays open.
    const int twin = dup(descriptor);
    return twin >= 0 && close(twin) == 0;
}

void flushFolder(const QString &folder)
{
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

bool reserveRoom(int descriptor, qint64 size)
{
    while (size > 0 && fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, size) != 0) {
        if (errno == EINTR)
            continue;
        return errno == EOPNOTSUPP || errno == ENOSYS || errno == EINVAL;
    }
    return true;
}

bool overwriteContent(int from, int to)
{
    struct stat source = {};
    return fstat(from, &source) == 0 && lseek(from, 0, SEEK_SET) == 0 && lseek(to, 0, SEEK_SET) == 0 &&
           copyAll(from, to) && flushFile(to) && ftruncate(to, source.st_size) == 0 && flushFile(to);
}
