// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/PrivateFiles.h"

#include "util/RunTimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

void makePrivateFolder(const QString &path)
{
    // Only the last one is the vault's own; those above it may be shared by other programs.
    const QString above = QFileInfo(path).absolutePath();
    if (above != path && !QFileInfo(above).isDir())
        makePrivateFolder(above);
    const QByteArray name = QFile::encodeName(path);
    if (mkdir(name.constData(), S_IRWXU) != 0 && errno != EEXIST)
        throw fileError(errno, path);
    struct stat status = {};
    if (stat(name.constData(), &status) != 0)
        throw fileError(errno, path);
    if (!S_ISDIR(status.st_mode))
        throw fileError(ENOTDIR, path);
}

void makePrivateFile(const QString &path)
{
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        throw fileError(errno, path);
    // A umask may have taken away more than there was to take, and then nobody could open it again.
    const bool done = fchmod(descriptor, S_IRUSR | S_IWUSR) == 0;
    const int error = errno;
    close(descriptor);
    if (!done)
        throw fileError(error, path);
}
