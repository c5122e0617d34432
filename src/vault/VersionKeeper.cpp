// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/VersionKeeper.h"

#include "document/Document.h"
#include "document/OpenedFile.h"
#include "document/Ports.h"
#include "util/FullPath.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "vault/PrivateFiles.h"
#include "vault/VersionFolder.h"

#include <QFileInfo>
#include <QLocale>
#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto keeperName = "VersionKeeper keep";

// Another program may just be at the same database; it takes no longer than keeping a version.
template <typename Work>
auto withPatience(Work &&work)
{
    constexpr int tries = 30;
    constexpr unsigned long pause = 100;
    for (int left = tries;; --left) {
        try {
            return work();
        } catch (const RunTimeError &error) {
            if (error.number() != ErrorNumber::PermissionDenied || left == 0)
                throw;
        }
        QThread::msleep(pause);
    }
}

// SQLite takes what a disk fails to read for damage, and nothing is to be set aside for that unless it stays so.
template <typename Work>
auto withSecondLook(Work &&work)
{
    try {
        return withPatience(work);
    } catch (const RunTimeError &error) {
        if (error.number() != ErrorNumber::InvalidFileFormat)
            throw;
    }
    return withPatience(work);
}

qint64 keepIn(const QString &path, const KeptOutline &outline, const VersionSave &save)
{
    const bool exists = QFileInfo::exists(path);
    VersionStore store(path, exists ? Database::Opening::Existing : Database::Opening::Create);
    return store.keep(outline, save);
}

QDateTime timeNow()
{
    return ports().clock->now();
}

// Of what the document's file is known to hold.
ContentDigest digestOf(const Document &document)
{
    return document.fileRecord.own ? document.fileRecord.own->digest : ContentDigest();
}

// What is said of a version that could not be kept. It is said later than the next save may be, so it has its time.
QString notKeptText(const VersionSave &save)
{
    const QString time = QLocale::system().toString(save.time.time(), QLocale::ShortFormat);
    switch (save.origin) {
    case VersionOrigin::Saved:
        break;
    case VersionOrigin::Found:
        return u"What the file %1 held before it was saved could not be kept as a version"_s.arg(save.file);
    case VersionOrigin::Recovered:
        return u"What was recovered of the file %1 could not be kept as a version of it"_s.arg(save.file);
    }
    return u"The file %1 was saved at %2, but no version of it could be kept"_s.arg(save.file, time);
}

// What of the current exception is for the log.
QString logLine()
{
    return currentError().description;
}

QString reasonOf(ErrorNumber number)
{
    return number == ErrorNumber::InvalidFileFormat ? u"the file of its versions is damaged"_s
                                                    : errorDescription(number);
}

} // namespace

VersionKeeper::VersionKeeper(QString folder)
    : m_folder(std::move(folder))
    , m_worker(std::make_unique<QObject>())
{
    m_worker->moveToThread(&m_thread);
    m_thread.setObjectName(u"versions"_s);
}

VersionKeeper::~VersionKeeper()
{
    if (!m_thread.isRunning())
        return;
    // Behind everything that was asked for.
    QMetaObject::invokeMethod(
        m_worker.get(), [this] { m_thread.quit(); }, Qt::QueuedConnection);
    m_thread.wait();
}

void VersionKeeper::enqueue(std::function<std::function<void()>()> work)
{
    if (!m_thread.isRunning())
        m_thread.start();
    ++m_jobs;
    QMetaObject::invokeMethod(
        m_worker.get(),
        [this, work = std::move(work)] {
            std::function<void()> behind = work();
            QMetaObject::invokeMethod(
                this,
                [this, behind = std::move(behind)] {
                    --m_jobs;
                    behind();
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void VersionKeeper::fileRead(const Document &document)
{
    if (!m_keeping || document.m_sFile.isEmpty())
        return;
    // While the file still is what it was when it was moved.
    enqueue([folder = m_folder, file = document.m_sFile, digest = digestOf(document)] {
        try {
            findVersions(folder, file, [&digest] { return digest.value(); });
        } catch (const RunTimeError &error) {
            return std::function<void()>([line = error.description()] { remark(line); });
        }
        return std::function<void()>([] {});
    });
}

void VersionKeeper::fileWritten(Document &document)
{
    if (!m_keeping)
        return;
    procedure(keeperName, [&] {
        if (const auto before = m_recovered.extract(&document))
            enqueueKeeping(before.mapped().outline,
                           {before.mapped().time, document.m_sFile, {}, VersionOrigin::Recovered});
        std::optional<Found> found;
        if (const auto held = m_found.extract(&document))
            found = held.mapped();
        VersionSave save{timeNow(), document.m_sFile, {}};
        if (document.fileRecord.own)
            save.identity = document.fileRecord.own->identity;
        enqueueKeeping(keptOutline(document.outline()), save, digestOf(document), found);
    });
}

void VersionKeeper::enqueueKeeping(const KeptOutline &outline, const VersionSave &save, const ContentDigest &digest,
                                   const std::optional<Found> &found)
{
    enqueue([this, outline, save, digest, found, folder = m_folder, most = m_mostBytes] {
        const Outcome before = found ? keepFound(folder, save, *found, most) : Outcome();
        VersionSave known = save;
        known.fileDigest = digest.value();
        Outcome outcome = keep(folder, outline, known, most);
        // What went wrong first is what the user is to know, but for a save that has no version.
        if (outcome.notice.isEmpty() && (!before.notice.isEmpty() || outcome.logged.isEmpty()))
            outcome = before;
        return [this, file = save.file, outcome] { answer(file, outcome); };
    });
}

void VersionKeeper::aboutToReplace(const Document &document, bool inPlace)
{
    if (!m_keeping)
        return;
    procedure(keeperName, [&] {
        m_found.erase(&document);
        // Open, it is to be read even when another file has its name.
        Found found{std::make_shared<QFile>(document.m_sFile), {}};
        if (!found.content->open(QIODevice::ReadOnly))
            return;
        const std::optional<FileStamp> &own = document.fileRecord.own;
        if (own && own->identity && !own->identity->isFresh() && own->identity == identityOf(found.content->handle()))
            found.known = own->digest;
        if (!inPlace) {
            m_found[&document] = found;
            forgetWithItsEnd(document);
            return;
        }
        const VersionSave save{timeNow(), document.m_sFile, {}};
        enqueue([this, save, found, folder = m_folder, most = m_mostBytes] {
            const Outcome outcome = keepFound(folder, save, found, most);
            return [this, file = save.file, outcome] { answer(file, outcome); };
        });
        QMetaObject::invokeMethod(
            m_worker.get(), [] {}, Qt::BlockingQueuedConnection);
    });
}

bool VersionKeeper::willKeep(const Document &document)
{
    if (!m_keeping || document.hasNotice(NoticeKind::NoVersion) || QFileInfo(document.m_sFile).size() > m_mostBytes)
        return false;
    return procedure(keeperName, [&] { return !readFile(document.m_sFile).read.failure; });
}

void VersionKeeper::recovered(const Document &document, const QString &file, const QDateTime &since)
{
    if (!m_keeping)
        return;
    procedure(keeperName, [&] {
        KeptOutline outline = keptOutline(document.outline());
        if (!file.isEmpty()) {
            enqueueKeeping(outline, {since, file, {}, VersionOrigin::Recovered});
            return;
        }
        m_recovered[&document] = {std::move(outline), since};
        forgetWithItsEnd(document);
    });
}

void VersionKeeper::forgetWithItsEnd(const Document &document)
{
    connect(&document, &QObject::destroyed, this, [this, gone = &document] {
        m_recovered.erase(gone);
        m_found.erase(gone);
    });
}

// Before a save that no version of this program made, the file may hold what nobody else has.
VersionKeeper::Outcome VersionKeeper::keepFound(const QString &folder, const VersionSave &save, const Found &found,
                                                qint64 room)
{
    const QString path = versionsPathOf(folder, save.file);
    const auto isVersion = [&path](const QByteArray &digest) {
        try {
            return !digest.isEmpty() && QFileInfo::exists(path) &&
                   withPatience([&] { return VersionStore(path, Database::Opening::Existing).hasFileOf(digest); });
        } catch (const RunTimeError &) {
            // Keeping a version meets it, too, and deals with it.
            return false;
        }
    };
    if (isVersion(found.known.value()) || found.content->size() > room)
        return {};
    const OpenedFile held = readContent(save.file, found.content->readAll());
    if (isVersion(held.stamp.digest.value()))
        return {};
    if (held.read.failure)
        return {QString(),
                u"%1: what it held before it was saved is no document, and no version of it was kept"_s.arg(save.file)};
    const QDateTime since = found.content->fileTime(QFileDevice::FileModificationTime);
    return keep(folder, keptOutline(*held.read.outline),
                {std::min(since, save.time), save.file, held.stamp.digest.value(), VersionOrigin::Found}, room);
}

VersionKeeper::Outcome VersionKeeper::keep(const QString &folder, const KeptOutline &outline, VersionSave save,
                                           qint64 room)
{
    Outcome outcome;
    try {
        makePrivateFolder(folder);
        const QString path = versionsPathOf(folder, save.file);
        save.file = RealPathName(save.file);
        qint64 version = 0;
        try {
            version = withSecondLook([&] { return keepIn(path, outline, save); });
        } catch (const RunTimeError &error) {
            if (error.number() != ErrorNumber::InvalidFileFormat || isOfLaterProgram(path, VersionStore::schema()))
                throw;
            const QString aside = setAside(path);
            outcome = {u"The earlier versions of %1 are damaged; what there is of them is in the file %2. From now on "
                       "versions are kept again."_s.arg(save.file, ShownPathName(aside)),
                       error.description()};
            version = keepIn(path, outline, save);
        }
        // Opened again, so that nothing comes from memory.
        withSecondLook([&] {
            VersionStore store(path, Database::Opening::Existing);
            if (!store.verify(version, outline))
                throw RunTimeError(ErrorNumber::InvalidFileFormat,
                                   u"%1: the version, read again, is not what was saved"_s.arg(path));
            store.thin(save.time, room);
        });
    } catch (const RunTimeError &error) {
        outcome = {u"%1 (%2)."_s.arg(notKeptText(save), reasonOf(error.number())), error.description()};
    } catch (...) {
        outcome = {notKeptText(save) + u'.', logLine()};
    }
    return outcome;
}

void VersionKeeper::answer(const QString &file, const Outcome &outcome)
{
    if (!outcome.logged.isEmpty())
        remark(outcome.logged);
    for (Document *document : ports().windows->documents()) {
        if (document->m_sFile != file)
            continue;
        if (outcome.notice.isEmpty())
            document->dismiss(NoticeKind::NoVersion);
        else
            document->tell({NoticeKind::NoVersion, outcome.notice});
    }
}

void VersionKeeper::list(const QString &file, QObject *asker, std::function<void(const Listed &)> answer)
{
    enqueue([folder = m_folder, file, asker = QPointer(asker), answer = std::move(answer)] {
        Listed listed;
        try {
            withPatience([&] {
                const QString path = findVersions(folder, file, [&file] { return fileDigestOf(file); });
                listed.versions = path.isEmpty() ? std::vector<VersionInfo>()
                                                 : VersionStore(path, Database::Opening::Existing).list();
            });
        } catch (const RunTimeError &error) {
            listed.failure = reasonOf(error.number());
        }
        return [asker, answer, listed] {
            if (asker)
                answer(listed);
        };
    });
}

void VersionKeeper::read(const QString &file, qint64 version, QObject *asker, std::function<void(const Read &)> answer)
{
    enqueue([folder = m_folder, file, version, asker = QPointer(asker), answer = std::move(answer)] {
        Read read;
        try {
            withPatience([&] {
                read.outline = VersionStore(versionsPathOf(folder, file), Database::Opening::Existing).read(version);
            });
        } catch (const RunTimeError &error) {
            read.failure = reasonOf(error.number());
        }
        return [asker, answer, read] {
            if (asker)
                answer(read);
        };
    });
}
