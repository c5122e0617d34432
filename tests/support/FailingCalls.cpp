// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The program's own definitions of these functions come before the C library's.
#undef _FORTIFY_SOURCE

#include "support/FailingCalls.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{

enum class Mode { Off, List, Fail, FailOn, Die, SpoilWrite, SpoilRead };

Mode s_mode = Mode::Off;
int s_place = 0;
int s_error = 0;
int s_count = 0;
bool s_interfered = false;
bool s_isMainCounted = true;
std::vector<std::string> s_calls;

// Whether the call about to be made is to fail. Sets errno then.
bool interferes(const char *name)
{
    if (!s_isMainCounted && gettid() == getpid())
        return false;
    switch (s_mode) {
    case Mode::Off:
    case Mode::SpoilWrite:
    case Mode::SpoilRead:
        return false;
    case Mode::List:
        s_calls.emplace_back(name);
        return false;
    case Mode::Fail:
        if (s_count++ != s_place)
            return false;
        s_interfered = true;
        errno = s_error;
        return true;
    case Mode::FailOn:
        if (s_count++ < s_place)
            return false;
        errno = s_error;
        return true;
    case Mode::Die:
        if (s_count++ == s_place)
            raise(SIGKILL);
        return false;
    }
    return false;
}

// Whether what is about to be moved is to be spoiled.
bool spoils(Mode mode)
{
    if (s_mode != mode || s_count++ != s_place)
        return false;
    s_interfered = true;
    return true;
}

void begin(Mode mode, int place)
{
    s_place = place;
    s_count = 0;
    s_interfered = false;
    s_mode = mode;
}

template <typename Function>
Function *original(Function *, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

struct Errors {
    const char *call;
    std::vector<int> errors;
};

} // namespace

namespace FailingCalls
{

void startListing()
{
    s_calls.clear();
    s_mode = Mode::List;
}

std::vector<std::string> stopListing()
{
    s_mode = Mode::Off;
    return std::move(s_calls);
}

void failAt(int place, int systemError)
{
    s_error = systemError;
    begin(Mode::Fail, place);
}

void failFrom(int place, int systemError)
{
    failAt(place, systemError);
    s_mode = Mode::FailOn;
}

void countMainThread(bool counts)
{
    s_isMainCounted = counts;
}

void dieAt(int place)
{
    begin(Mode::Die, place);
}

void spoilWrite(int place)
{
    begin(Mode::SpoilWrite, place);
}

void spoilRead(int place)
{
    begin(Mode::SpoilRead, place);
}

bool stop()
{
    s_mode = Mode::Off;
    return s_interfered;
}

std::span<const int> errorsOf(const std::string &call)
{
    static const std::array<Errors, 23> table = {{
        {"open", {EACCES, EMFILE, ENFILE, ENOSPC, EDQUOT, EROFS, EIO, ENOMEM}},
        {"mkostemps", {EACCES, EMFILE, ENFILE, ENOSPC, EDQUOT, EROFS, EIO, ENAMETOOLONG}},
        {"write", {ENOSPC, EDQUOT, EFBIG, EIO, ENOMEM}},
        {"read", {EIO, ENOMEM}},
        {"fsync", {EIO, ENOSPC, EDQUOT, EROFS}},
        {"close", {EIO, ENOSPC, EDQUOT}},
        {"dup", {EMFILE}},
        {"rename", {EACCES, EIO, ENOSPC, EDQUOT, EROFS, EXDEV, EBUSY, ENOENT, EPERM}},
        {"link", {EACCES, EIO, ENOSPC, EDQUOT, EROFS, EXDEV, EPERM, EMLINK, ENOTSUP, EEXIST}},
        {"unlink", {EACCES, EIO, EROFS, EBUSY}},
        {"fchmod", {EIO, EPERM, EROFS}},
        {"fchown", {EIO, EPERM, EROFS}},
        {"flock", {ENOLCK, EWOULDBLOCK, EINTR, ENOTSUP}},
        {"futimens", {EPERM, EROFS}},
        {"stat", {EACCES, EIO, ELOOP, ENOMEM}},
        {"fstat", {EIO, ENOMEM}},
        {"access", {EACCES, EIO, EROFS}},
        {"flistxattr", {ENOTSUP, EIO}},
        {"fallocate", {ENOSPC, EDQUOT, EFBIG, EIO, EOPNOTSUPP, EINTR}},
        {"ftruncate", {EIO, EROFS}},
        {"mkdir", {EACCES, ENOSPC, EROFS}},
        {"rmdir", {EACCES, EBUSY}},
        {"fsetxattr", {ENOTSUP, ENOSPC, EPERM}},
    }};
    const auto found = std::ranges::find(table, call, [](const Errors &row) { return std::string(row.call); });
    return found == table.end() ? std::span<const int>() : std::span<const int>(found->errors);
}

} // namespace FailingCalls

// Of several spellings of one call the C library's headers know one by another's name; each is caught.
// NOLINTBEGIN
extern "C" {
#pragma GCC visibility push(default)

static int openLikeSystem(const char *symbol, const char *path, int flags, mode_t mode)
{
    if (interferes("open"))
        return -1;
    using Open = int(const char *, int, ...);
    static Open *const real = original<Open>(nullptr, symbol);
    return real(path, flags, mode);
}

int open(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? static_cast<mode_t>(va_arg(list, int)) : 0;
    va_end(list);
    return openLikeSystem("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? static_cast<mode_t>(va_arg(list, int)) : 0;
    va_end(list);
    return openLikeSystem("open64", path, flags, mode);
}

int mkostemp(char *name, int flags)
{
    static auto *const real = original(&mkostemp, "mkostemp");
    return interferes("mkostemps") ? -1 : real(name, flags);
}

int mkostemps(char *name, int suffix, int flags)
{
    static auto *const real = original(&mkostemps, "mkostemps");
    return interferes("mkostemps") ? -1 : real(name, suffix, flags);
}

ssize_t write(int descriptor, const void *bytes, size_t count)
{
    static auto *const real = original(&write, "write");
    if (count > 0 && spoils(Mode::SpoilWrite)) {
        QByteArray wrong(static_cast<const char *>(bytes), static_cast<qsizetype>(count));
        wrong[wrong.size() / 2] = static_cast<char>(wrong[wrong.size() / 2] ^ 4);
        return real(descriptor, wrong.constData(), count);
    }
    return interferes("write") ? -1 : real(descriptor, bytes, count);
}

ssize_t read(int descriptor, void *bytes, size_t count)
{
    static auto *const real = original(&read, "read");
    const ssize_t got = interferes("read") ? -1 : real(descriptor, bytes, count);
    if (got > 0 && spoils(Mode::SpoilRead))
        static_cast<char *>(bytes)[got / 2] ^= 4;
    return got;
}

// What databases are read and written with.
#ifdef QUILLERY_DATABASE_CALLS
ssize_t pwrite64(int descriptor, const void *bytes, size_t count, off64_t offset)
{
    static auto *const real = original(&pwrite64, "pwrite64");
    return interferes("write") ? -1 : real(descriptor, bytes, count, offset);
}

ssize_t pread64(int descriptor, void *bytes, size_t count, off64_t offset)
{
    static auto *const real = original(&pread64, "pread64");
    return interferes("read") ? -1 : real(descriptor, bytes, count, offset);
}

int fdatasync(int descriptor)
{
    static auto *const real = original(&fdatasync, "fdatasync");
    return interferes("fsync") ? -1 : real(descriptor);
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    static auto *const real = original(&ftruncate64, "ftruncate64");
    return interferes("ftruncate") ? -1 : real(descriptor, size);
}
#endif

int fsync(int descriptor)
{
    static auto *const real = original(&fsync, "fsync");
    return interferes("fsync") ? -1 : real(descriptor);
}

int close(int descriptor)
{
    static auto *const real = original(&close, "close");
    if (!interferes("close"))
        return real(descriptor);
    // A descriptor is closed even when that is when the failed writing shows.
    const int error = errno;
    real(descriptor);
    errno = error;
    return -1;
}

int dup(int descriptor) noexcept
{
    static auto *const real = original<int(int)>(nullptr, "dup");
    return interferes("dup") ? -1 : real(descriptor);
}

int rename(const char *from, const char *to) noexcept
{
    static auto *const real = original<int(const char *, const char *)>(nullptr, "rename");
    return interferes("rename") ? -1 : real(from, to);
}

int link(const char *from, const char *to) noexcept
{
    static auto *const real = original<int(const char *, const char *)>(nullptr, "link");
    return interferes("link") ? -1 : real(from, to);
}

int unlink(const char *path) noexcept
{
    static auto *const real = original<int(const char *)>(nullptr, "unlink");
    return interferes("unlink") ? -1 : real(path);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    static auto *const real = original<int(int, mode_t)>(nullptr, "fchmod");
    return interferes("fchmod") ? -1 : real(descriptor, mode);
}

int fchown(int descriptor, uid_t user, gid_t group) noexcept
{
    static auto *const real = original<int(int, uid_t, gid_t)>(nullptr, "fchown");
    return interferes("fchown") ? -1 : real(descriptor, user, group);
}

int flock(int descriptor, int operation) noexcept
{
    static auto *const real = original<int(int, int)>(nullptr, "flock");
    return interferes("flock") ? -1 : real(descriptor, operation);
}

int futimens(int descriptor, const struct timespec times[2]) noexcept
{
    static auto *const real = original<int(int, const struct timespec *)>(nullptr, "futimens");
    return interferes("futimens") ? -1 : real(descriptor, times);
}

int stat(const char *path, struct stat *result) noexcept
{
    static auto *const real = original<int(const char *, struct stat *)>(nullptr, "stat");
    return interferes("stat") ? -1 : real(path, result);
}

int lstat(const char *path, struct stat *result) noexcept
{
    static auto *const real = original<int(const char *, struct stat *)>(nullptr, "lstat");
    return interferes("stat") ? -1 : real(path, result);
}

int fstat(int descriptor, struct stat *result) noexcept
{
    static auto *const real = original<int(int, struct stat *)>(nullptr, "fstat");
    return interferes("fstat") ? -1 : real(descriptor, result);
}

int fallocate(int descriptor, int mode, off_t from, off_t size)
{
    static auto *const real = original(&fallocate, "fallocate");
    return interferes("fallocate") ? -1 : real(descriptor, mode, from, size);
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static auto *const real = original<int(int, off_t)>(nullptr, "ftruncate");
    return interferes("ftruncate") ? -1 : real(descriptor, size);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    static auto *const real = original<int(const char *, mode_t)>(nullptr, "mkdir");
    return interferes("mkdir") ? -1 : real(path, mode);
}

int rmdir(const char *path) noexcept
{
    static auto *const real = original<int(const char *)>(nullptr, "rmdir");
    return interferes("rmdir") ? -1 : real(path);
}

int access(const char *path, int mode) noexcept
{
    static auto *const real = original<int(const char *, int)>(nullptr, "access");
    return interferes("access") ? -1 : real(path, mode);
}

int statx(int folder, const char *path, int flags, unsigned mask, struct statx *result) noexcept
{
    static auto *const real = original<int(int, const char *, int, unsigned, struct statx *)>(nullptr, "statx");
    return interferes("stat") ? -1 : real(folder, path, flags, mask, result);
}

ssize_t flistxattr(int descriptor, char *list, size_t size) noexcept
{
    static auto *const real = original<ssize_t(int, char *, size_t)>(nullptr, "flistxattr");
    return interferes("flistxattr") ? -1 : real(descriptor, list, size);
}

int fsetxattr(int descriptor, const char *name, const void *value, size_t size, int flags) noexcept
{
    static auto *const real = original<int(int, const char *, const void *, size_t, int)>(nullptr, "fsetxattr");
    return interferes("fsetxattr") ? -1 : real(descriptor, name, value, size, flags);
}

#pragma GCC visibility pop
} // extern "C"
// NOLINTEND
