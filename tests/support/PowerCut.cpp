// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The program's own definitions of these functions come before the C library's.
#undef _FORTIFY_SOURCE

#include "support/PowerCut.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSet>

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace
{

struct DiskChange {
    enum Kind { Write, Truncate, FlushFile, Name, FlushFolder, Mark };

    Kind kind = Mark;
    // Of the file; for a name that goes, -1.
    int file = -1;
    qint64 offset = 0;
    QByteArray bytes;
    // Names that change together, and the file that each leads to from now on (-1 for none).
    std::vector<std::pair<QByteArray, int>> names;
    QByteArray folder;
};

struct Recorder {
    std::recursive_mutex mutex;
    bool isOn = false;
    QByteArrayList folders;
    PowerCut::Disk before;
    std::vector<DiskChange> entries;
    std::map<QByteArray, int> names;
    // Of open files and of open folders.
    std::map<int, int> descriptors;
    std::map<int, QByteArray> openFolders;
    int lastFile = 0;
};

Recorder &recorder()
{
    static Recorder made;
    return made;
}

// The path without links and dots in its folder; null when it is of no matter.
std::optional<QByteArray> pathOf(const char *path)
{
    const QByteArray given(path);
    const qsizetype slash = given.lastIndexOf('/');
    char folder[PATH_MAX] = {};
    if (!realpath(slash < 0 ? "." : slash == 0 ? "/" : given.first(slash).constData(), folder))
        return std::nullopt;
    const QByteArray whole = QByteArray(folder) + '/' + given.sliced(slash + 1);
    for (const QByteArray &each : recorder().folders) {
        if (whole.startsWith(each + '/'))
            return whole;
    }
    return std::nullopt;
}

QByteArray folderOf(const QByteArray &path)
{
    return path.first(path.lastIndexOf('/'));
}

template <typename Note>
void note(Note &&take)
{
    Recorder &r = recorder();
    const std::lock_guard<std::recursive_mutex> guard(r.mutex);
    if (r.isOn)
        take(r);
}

void noteOpened(int descriptor, const char *path, int flags)
{
    if (descriptor < 0)
        return;
    note([&](Recorder &r) {
        r.descriptors.erase(descriptor);
        r.openFolders.erase(descriptor);
        struct stat status = {};
        if (fstat(descriptor, &status) != 0)
            return;
        char real[PATH_MAX] = {};
        if (!realpath(path, real))
            return;
        if (S_ISDIR(status.st_mode)) {
            r.openFolders[descriptor] = real;
            return;
        }
        const auto name = pathOf(real);
        if (!name || !S_ISREG(status.st_mode))
            return;
        const auto known = r.names.find(*name);
        if (known != r.names.end()) {
            r.descriptors[descriptor] = known->second;
            if (flags & O_TRUNC)
                r.entries.push_back({DiskChange::Truncate, known->second, 0, {}, {}, {}});
            return;
        }
        const int file = ++r.lastFile;
        r.names[*name] = file;
        r.descriptors[descriptor] = file;
        r.entries.push_back({DiskChange::Name, file, 0, {}, {{*name, file}}, folderOf(*name)});
    });
}

void noteWritten(int descriptor, const void *bytes, ssize_t count, qint64 offset)
{
    if (count <= 0)
        return;
    note([&](Recorder &r) {
        const auto file = r.descriptors.find(descriptor);
        if (file != r.descriptors.end())
            r.entries.push_back({DiskChange::Write,
                                 file->second,
                                 offset,
                                 QByteArray(static_cast<const char *>(bytes), static_cast<qsizetype>(count)),
                                 {},
                                 {}});
    });
}

void noteFlushed(int descriptor)
{
    note([&](Recorder &r) {
        if (const auto file = r.descriptors.find(descriptor); file != r.descriptors.end())
            r.entries.push_back({DiskChange::FlushFile, file->second, 0, {}, {}, {}});
        else if (const auto folder = r.openFolders.find(descriptor); folder != r.openFolders.end())
            r.entries.push_back({DiskChange::FlushFolder, -1, 0, {}, {}, folder->second});
    });
}

void noteNames(std::vector<std::pair<QByteArray, int>> names)
{
    Recorder &r = recorder();
    for (const auto &[name, file] : names) {
        if (file < 0)
            r.names.erase(name);
        else
            r.names[name] = file;
    }
    const QByteArray folder = folderOf(names.front().first);
    r.entries.push_back({DiskChange::Name, -1, 0, {}, std::move(names), folder});
}

void apply(const DiskChange &entry, PowerCut::Disk &disk, qsizetype ofBytes)
{
    QByteArray &content = disk.contents[entry.file];
    if (entry.kind == DiskChange::Truncate) {
        content.resize(entry.offset, '\0');
        return;
    }
    const qsizetype end = entry.offset + ofBytes;
    if (content.size() < end)
        content.append(end - content.size(), '\0');
    content.replace(entry.offset, ofBytes, entry.bytes.first(ofBytes));
}

// What of the entries before a moment is not certain to be on disk, and the disk without it.
struct Uncertain {
    PowerCut::Disk certain;
    std::vector<const DiskChange *> data;
    std::vector<const DiskChange *> names;
};

Uncertain uncertainAt(size_t change)
{
    const Recorder &r = recorder();
    Uncertain result{r.before, {}, {}};
    for (size_t index = 0; index < change; ++index) {
        const DiskChange &entry = r.entries[index];
        switch (entry.kind) {
        case DiskChange::Write:
        case DiskChange::Truncate:
            result.data.push_back(&entry);
            break;
        case DiskChange::FlushFile:
            std::erase_if(result.data, [&](const DiskChange *each) {
                if (each->file != entry.file)
                    return false;
                apply(*each, result.certain, each->bytes.size());
                return true;
            });
            break;
        case DiskChange::Name:
            result.names.push_back(&entry);
            break;
        case DiskChange::FlushFolder: {
            // Names keep their order: with the last one of this folder all before it are there.
            size_t certain = 0;
            for (size_t place = 0; place < result.names.size(); ++place) {
                if (result.names[place]->folder == entry.folder)
                    certain = place + 1;
            }
            for (size_t place = 0; place < certain; ++place) {
                for (const auto &[name, file] : result.names[place]->names) {
                    if (file < 0)
                        result.certain.names.erase(name);
                    else
                        result.certain.names[name] = file;
                }
            }
            result.names.erase(result.names.begin(), result.names.begin() + static_cast<std::ptrdiff_t>(certain));
            break;
        }
        case DiskChange::Mark:
            break;
        }
    }
    return result;
}

// Which of so many writes are there: each way is a list of shares, of which 1 is all of a write and 0 nothing.
std::vector<std::vector<double>> waysToLose(size_t writes, int samples)
{
    std::vector<std::vector<double>> ways;
    for (size_t kept = 0; kept <= writes; ++kept) {
        std::vector<double> way(writes, 0);
        std::fill_n(way.begin(), kept, 1);
        ways.push_back(way);
        if (kept < writes) {
            // The next one is torn; and it alone is missing, or there.
            way[kept] = 0.5;
            ways.push_back(way);
            std::vector<double> missing(writes, 1);
            missing[kept] = 0;
            ways.push_back(missing);
            std::vector<double> alone(writes, 0);
            alone[kept] = 1;
            ways.push_back(alone);
        }
    }
    static QRandomGenerator random(41);
    for (int sample = 0; writes > 2 && sample < samples; ++sample) {
        std::vector<double> way(writes);
        std::ranges::generate(way, [] { return random.bounded(3) / 2.0; });
        ways.push_back(way);
    }
    if (static_cast<int>(ways.size()) > 4 * samples) {
        std::shuffle(ways.begin() + 1, ways.end(), random);
        ways.resize(static_cast<size_t>(4 * samples));
    }
    return ways;
}

template <typename Function>
Function *originalOf(Function *, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

namespace PowerCut
{

void record(const QByteArrayList &folders)
{
    Recorder &r = recorder();
    const std::lock_guard<std::recursive_mutex> guard(r.mutex);
    r.folders.clear();
    for (const QByteArray &folder : folders)
        r.folders.append(QFile::encodeName(QDir(QFile::decodeName(folder)).canonicalPath()));
    r.before = {};
    r.entries.clear();
    r.names.clear();
    r.descriptors.clear();
    std::map<quint64, int> byInode;
    const std::function<void(const QByteArray &)> look = [&](const QByteArray &folder) {
        const QDir dir(QFile::decodeName(folder));
        for (const QFileInfo &info : dir.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
            const QByteArray path = QFile::encodeName(info.filePath());
            if (info.isDir() && !info.isSymLink()) {
                look(path);
                continue;
            }
            struct stat status = {};
            QFile file(info.filePath());
            if (info.isSymLink() || ::stat(path.constData(), &status) != 0 || !file.open(QIODevice::ReadOnly))
                continue;
            int &number = byInode[status.st_ino];
            number = number ? number : ++r.lastFile;
            r.before.names[path] = r.names[path] = number;
            r.before.contents[number] = file.readAll();
        }
    };
    for (const QByteArray &folder : std::as_const(r.folders))
        look(folder);
    r.isOn = true;
}

void mark()
{
    note([](Recorder &r) { r.entries.emplace_back(); });
}

void stop()
{
    Recorder &r = recorder();
    const std::lock_guard<std::recursive_mutex> guard(r.mutex);
    r.isOn = false;
}

size_t changeCount()
{
    return recorder().entries.size();
}

int marksBefore(size_t change)
{
    const auto &entries = recorder().entries;
    return static_cast<int>(std::count_if(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(change),
                                          [](const DiskChange &entry) { return entry.kind == DiskChange::Mark; }));
}

void everyDisk(size_t change, int samples, const std::function<void(const Disk &)> &each)
{
    const Uncertain uncertain = uncertainAt(change);
    QSet<QByteArray> seen;
    for (size_t names = 0; names <= uncertain.names.size(); ++names) {
        Disk named = uncertain.certain;
        for (size_t place = 0; place < names; ++place) {
            for (const auto &[name, file] : uncertain.names[place]->names) {
                if (file < 0)
                    named.names.erase(name);
                else
                    named.names[name] = file;
            }
        }
        for (const std::vector<double> &way : waysToLose(uncertain.data.size(), samples)) {
            Disk disk = named;
            for (size_t place = 0; place < way.size(); ++place) {
                const DiskChange &entry = *uncertain.data[place];
                const auto share = static_cast<qsizetype>(static_cast<double>(entry.bytes.size()) * way[place]);
                if (entry.kind == DiskChange::Truncate ? way[place] > 0 : share > 0)
                    apply(entry, disk, share);
            }
            QByteArray described;
            for (const auto &[name, file] : disk.names)
                described += name + '\0' + disk.contents[file] + '\0';
            if (seen.contains(described))
                continue;
            seen.insert(described);
            each(disk);
        }
    }
}

void restore(const Disk &disk)
{
    const std::function<void(const QByteArray &)> clear = [&](const QByteArray &folder) {
        const QDir dir(QFile::decodeName(folder));
        for (const QFileInfo &info : dir.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
            if (info.isDir() && !info.isSymLink())
                clear(QFile::encodeName(info.filePath()));
            else if (!info.isSymLink())
                QFile::remove(info.filePath());
        }
    };
    for (const QByteArray &folder : std::as_const(recorder().folders))
        clear(folder);
    std::map<int, QByteArray> written;
    for (const auto &[name, file] : disk.names) {
        if (const auto other = written.find(file); other != written.end()) {
            if (link(other->second.constData(), name.constData()) != 0)
                qFatal("A file cannot get its second name");
            continue;
        }
        written[file] = name;
        QDir().mkpath(QFile::decodeName(folderOf(name)));
        QFile target(QFile::decodeName(name));
        const auto content = disk.contents.find(file);
        if (!target.open(QIODevice::WriteOnly) ||
            (content != disk.contents.end() && target.write(content->second) != content->second.size()))
            qFatal("A file cannot be made as it was");
    }
}

} // namespace PowerCut

// NOLINTBEGIN
extern "C" {
#pragma GCC visibility push(default)

static int openAndNote(const char *symbol, const char *path, int flags, mode_t mode)
{
    using Open = int(const char *, int, ...);
    Open *const real = originalOf<Open>(nullptr, symbol);
    const int descriptor = real(path, flags, mode);
    noteOpened(descriptor, path, flags);
    return descriptor;
}

int open(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? static_cast<mode_t>(va_arg(list, int)) : 0;
    va_end(list);
    return openAndNote("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? static_cast<mode_t>(va_arg(list, int)) : 0;
    va_end(list);
    return openAndNote("open64", path, flags, mode);
}

int mkostemps(char *name, int suffix, int flags)
{
    static auto *const real = originalOf(&mkostemps, "mkostemps");
    const int descriptor = real(name, suffix, flags);
    noteOpened(descriptor, name, O_RDWR);
    return descriptor;
}

ssize_t write(int descriptor, const void *bytes, size_t count)
{
    static auto *const real = originalOf(&write, "write");
    const off_t offset = recorder().isOn ? lseek(descriptor, 0, SEEK_CUR) : 0;
    const ssize_t written = real(descriptor, bytes, count);
    noteWritten(descriptor, bytes, written, offset);
    return written;
}

ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset)
{
    static auto *const real = originalOf(&pwrite, "pwrite");
    const ssize_t written = real(descriptor, bytes, count, offset);
    noteWritten(descriptor, bytes, written, offset);
    return written;
}

ssize_t pwrite64(int descriptor, const void *bytes, size_t count, off64_t offset)
{
    static auto *const real = originalOf(&pwrite64, "pwrite64");
    const ssize_t written = real(descriptor, bytes, count, offset);
    noteWritten(descriptor, bytes, written, offset);
    return written;
}

int fsync(int descriptor)
{
    static auto *const real = originalOf(&fsync, "fsync");
    const int result = real(descriptor);
    noteFlushed(descriptor);
    return result;
}

int fdatasync(int descriptor)
{
    static auto *const real = originalOf(&fdatasync, "fdatasync");
    const int result = real(descriptor);
    noteFlushed(descriptor);
    return result;
}

static int truncateAndNote(const char *symbol, int descriptor, off_t size)
{
    const auto real = originalOf<int(int, off_t)>(nullptr, symbol);
    const int result = real(descriptor, size);
    if (result == 0)
        note([&](Recorder &r) {
            const auto file = r.descriptors.find(descriptor);
            if (file != r.descriptors.end())
                r.entries.push_back({DiskChange::Truncate, file->second, size, {}, {}, {}});
        });
    return result;
}

int ftruncate(int descriptor, off_t size) noexcept
{
    return truncateAndNote("ftruncate", descriptor, size);
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    return truncateAndNote("ftruncate64", descriptor, size);
}

int close(int descriptor)
{
    static auto *const real = originalOf(&close, "close");
    note([&](Recorder &r) {
        r.descriptors.erase(descriptor);
        r.openFolders.erase(descriptor);
    });
    return real(descriptor);
}

int rename(const char *from, const char *to) noexcept
{
    static auto *const real = originalOf<int(const char *, const char *)>(nullptr, "rename");
    const int result = real(from, to);
    if (result == 0)
        note([&](Recorder &r) {
            const auto source = pathOf(from);
            const auto target = pathOf(to);
            if (source && target && r.names.contains(*source)) {
                const int file = r.names[*source];
                const auto other = r.names.find(*target);
                // Two names of one file stay both.
                if (other == r.names.end() || other->second != file)
                    noteNames({{*source, -1}, {*target, file}});
            }
        });
    return result;
}

int link(const char *from, const char *to) noexcept
{
    static auto *const real = originalOf<int(const char *, const char *)>(nullptr, "link");
    const int result = real(from, to);
    if (result == 0)
        note([&](Recorder &r) {
            const auto source = pathOf(from);
            const auto target = pathOf(to);
            if (source && target && r.names.contains(*source))
                noteNames({{*target, r.names[*source]}});
        });
    return result;
}

int unlink(const char *path) noexcept
{
    static auto *const real = originalOf<int(const char *)>(nullptr, "unlink");
    const int result = real(path);
    if (result == 0)
        note([&](Recorder &r) {
            if (const auto name = pathOf(path); name && r.names.contains(*name))
                noteNames({{*name, -1}});
        });
    return result;
}

#pragma GCC visibility pop
} // extern "C"
// NOLINTEND
