// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/VersionKeeper.h"

#include "document/modDoc.h"
#include "model/StoredText.h"
#include "support/FormatsFixture.h"
#include "vault/VersionFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

int permissionsOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 0777U) : -1;
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

timespec modifiedOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mtim : timespec();
}

// No file grows beyond so many bytes while it lives.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limited{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }

    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before = {};
    void (*m_handler)(int) = nullptr;
};

// Documents whose saves are followed by a keeper, all below one folder.
class Desk
{
public:
    Desk()
    {
        restart();
        setRemarkWriter([](const QString &line) { remarks().append(line); });
        remarks().clear();
    }

    ~Desk()
    {
        ports().files = portsOfNobody().files;
        setRemarkWriter(nullptr);
    }

    // As the program does when it is started again.
    void restart()
    {
        keeper.reset();
        keeper = std::make_unique<VersionKeeper>(versions());
        ports().files = keeper.get();
    }

    QString versions() const { return folder.filePath(u"data/versions"_s); }

    QString file(const QString &name) const { return folder.filePath(name); }

    // A document with that outline that was saved once.
    Document &plant(const QString &name, const QStringList &lines)
    {
        Document &document = program.plant(lines).document;
        save(document, file(name));
        return document;
    }

    void save(Document &document, const QString &path)
    {
        modDoc::save(document, path);
        settle();
    }

    // Saves it with another label.
    void change(Document &document, const QString &label)
    {
        document.history.setLabel(document.tree.root(), label);
        save(document, document.m_sFile);
    }

    Document &open(const QString &path)
    {
        modDoc::DocLoad(path);
        settle();
        return program.active()->document;
    }

    void settle() const { QTRY_VERIFY_WITH_TIMEOUT(keeper->isIdle(), 30000); }

    VersionKeeper::Listed list(const QString &path)
    {
        std::optional<VersionKeeper::Listed> answered;
        QObject asker;
        keeper->list(path, &asker, [&](const VersionKeeper::Listed &listed) { answered = listed; });
        settle();
        return answered.value_or(VersionKeeper::Listed{{}, u"no answer"_s});
    }

    KeptOutline read(const QString &path, qint64 version)
    {
        std::optional<VersionKeeper::Read> answered;
        QObject asker;
        keeper->read(path, version, &asker, [&](const VersionKeeper::Read &read) { answered = read; });
        settle();
        return answered ? answered->outline : KeptOutline();
    }

    static QStringList &remarks()
    {
        static QStringList lines;
        return lines;
    }

    static QString noticeOf(const Document &document)
    {
        for (const DocumentNotice &notice : document.notices()) {
            if (notice.kind == NoticeKind::NoVersion)
                return notice.text;
        }
        return QString();
    }

    QTemporaryDir folder;
    FormatsFixture program;
    std::unique_ptr<VersionKeeper> keeper;
};

} // namespace

class tst_VersionKeeper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySaveMakesAVersionThatIsReadAgain();
    void nobodyElseMayReadThem();
    void twoDocumentsHaveVersionsOfTheirOwn();
    void aMovedFileFindsItsVersions();
    void aCopyBeginsAnew();
    void aTemplateCopiedAnewLeavesAnEarlierCopyItsVersions();
    void aFileThatMayBeAnotherOneLeavesTheOldNameItsVersions();
    void aFileMovedToAnotherDiskBringsItsVersionsAlong();
    void aCopyOfAFileThatIsThereDoesNotTakeWhatIsGone();
    void theVersionsOfAnEarlierProgramAreFound();
    void whatIsTypedMeanwhileIsNotInTheVersion();
    void whatIsAskedForIsDoneBeforeTheProgramEnds();
    void aFolderThatCannotBeMadeIsToldOf();
    void aFullDiskIsToldOfAndMended();
    void aDamagedDatabaseIsSetAside();
    void aDatabaseOfALaterProgramIsLeftAlone();
    void nothingIsKeptWhereNothingIsToBe();
    void aDatabaseThatAnotherProgramIsAtIsWaitedFor();
    void whateverIsDamagedTheNextSaveIsKept_data();
    void whateverIsDamagedTheNextSaveIsKept();

    void whatAFileHeldBeforeItsFirstSaveIsAVersion();
    void whatAnotherProgramWroteIsAVersionBeforeItIsSavedOver();
    void whatWillNotBeKeptIsSaidToBeLost();
    void aPlainTextIsKeptBeforeItIsSavedOver();
    void whatIsNoDocumentIsNoVersion();
    void whatIsWrittenOverInPlaceIsAVersionBefore();
    void whatWasRecoveredIsAVersionOfItsFile();
    void whatWasRecoveredWithoutAFileIsAVersionOfItsFirstOne();
    void aClockThatWasSetBackMakesNoVersionOld();
};

void tst_VersionKeeper::everySaveMakesAVersionThatIsReadAgain()
{
    Desk desk;
    Document &document = desk.plant(u"plän.qly"_s, {u"root"_s, u" one"_s});
    const KeptOutline first = keptOutline(document.outline());
    document.history.setLabel(document.tree.root(), u"Root"_s);
    document.history.insert(Relationship::tvwChild, document.tree.root());
    desk.save(document, document.m_sFile);
    const VersionKeeper::Listed listed = desk.list(document.m_sFile);
    QCOMPARE(listed.failure, QString());
    QCOMPARE(listed.versions.size(), 2U);
    QVERIFY(listed.versions[0].isVerified && listed.versions[1].isVerified);
    QCOMPARE(listed.versions[1].changes, (DifferenceCounts{1, 0, 1}));
    QVERIFY(desk.read(document.m_sFile, listed.versions[0].number) == first);
    QVERIFY(desk.read(document.m_sFile, listed.versions[1].number) == keptOutline(document.outline()));
    QCOMPARE(Desk::noticeOf(document), QString());
    QCOMPARE(Desk::remarks(), QStringList());
}

void tst_VersionKeeper::nobodyElseMayReadThem()
{
    Desk desk;
    const Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    QCOMPARE(permissionsOf(desk.versions()), 0700);
    QCOMPARE(permissionsOf(versionsPathOf(desk.versions(), document.m_sFile)), 0600);
}

void tst_VersionKeeper::twoDocumentsHaveVersionsOfTheirOwn()
{
    Desk desk;
    Document &one = desk.plant(u"one.qly"_s, {u"one"_s});
    Document &other = desk.plant(u"other.qly"_s, {u"other"_s});
    one.history.setLabel(one.tree.root(), u"One"_s);
    modDoc::save(one, one.m_sFile);
    other.history.setLabel(other.tree.root(), u"Other"_s);
    modDoc::save(other, other.m_sFile);
    desk.settle();
    QCOMPARE(desk.list(one.m_sFile).versions.size(), 2U);
    const VersionKeeper::Listed listed = desk.list(other.m_sFile);
    QCOMPARE(listed.versions.size(), 2U);
    QCOMPARE(desk.read(other.m_sFile, listed.versions[1].number).entries[0].label, u"Other"_s);
    QCOMPARE(desk.list(desk.file(u"third.qly"_s)).versions.size(), 0U);
}

void tst_VersionKeeper::aMovedFileFindsItsVersions()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    document.history.setLabel(document.tree.root(), u"Root"_s);
    desk.save(document, document.m_sFile);
    desk.program.closeAll();
    const QString moved = desk.file(u"elsewhere/renamed.qly"_s);
    QVERIFY(QDir(desk.folder.path()).mkpath(u"elsewhere"_s));
    QVERIFY(QFile::rename(desk.file(u"plan.qly"_s), moved));
    desk.restart();
    QVERIFY(modDoc::DocLoad(moved));
    desk.settle();
    Document &opened = desk.program.active()->document;
    opened.history.setLabel(opened.tree.root(), u"ROOT"_s);
    desk.save(opened, moved);
    const VersionKeeper::Listed listed = desk.list(moved);
    QCOMPARE(listed.versions.size(), 3U);
    QCOMPARE(desk.read(moved, listed.versions[0].number).entries[0].label, u"root"_s);
    QCOMPARE(QDir(desk.versions()).entryList(QDir::Files).size(), 1);
}

void tst_VersionKeeper::aCopyBeginsAnew()
{
    Desk desk;
    const Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    const QString copy = desk.file(u"copy.qly"_s);
    QVERIFY(QFile::copy(document.m_sFile, copy));
    QVERIFY(modDoc::DocLoad(copy));
    QCOMPARE(desk.list(copy).versions.size(), 0U);
    QCOMPARE(desk.list(document.m_sFile).versions.size(), 1U);
}

void tst_VersionKeeper::aTemplateCopiedAnewLeavesAnEarlierCopyItsVersions()
{
    Desk desk;
    const QString sample = desk.file(u"template.qly"_s);
    const QString spring = desk.file(u"spring.qly"_s);
    const QString autumn = desk.file(u"autumn.qly"_s);
    write(sample, nativeBytes(QStringList{u"plan"_s}));
    QVERIFY(QFile::copy(sample, spring));
    desk.change(desk.open(spring), u"spring"_s);
    QCOMPARE(desk.list(spring).versions.size(), 2U);
    QVERIFY(QFile::remove(spring));
    QVERIFY(QFile::copy(sample, autumn));
    desk.open(autumn);
    QCOMPARE(desk.list(autumn).versions.size(), 0U);
    QCOMPARE(desk.list(spring).versions.size(), 2U);
}

// Copied twice from something that nobody saved here, it may be the file that is gone, or another copy.
void tst_VersionKeeper::aFileThatMayBeAnotherOneLeavesTheOldNameItsVersions()
{
    Desk desk;
    const QString sample = desk.file(u"template.qly"_s);
    const QStringList copies = {desk.file(u"one.qly"_s), desk.file(u"two.qly"_s), desk.file(u"three.qly"_s)};
    write(sample, nativeBytes(QStringList{u"plan"_s}));
    QVERIFY(QFile::copy(sample, copies[0]));
    desk.save(desk.open(copies[0]), copies[0]);
    desk.program.closeAll();
    QVERIFY(QFile::copy(copies[0], desk.file(u"kept"_s)));
    QVERIFY(QFile::remove(copies[0]));
    for (const QString &copy : copies.sliced(1)) {
        QVERIFY(QFile::copy(sample, copy));
        desk.open(copy);
        desk.program.closeAll();
        QVERIFY(QFile::remove(copy));
    }
    QVERIFY(QFile::copy(desk.file(u"kept"_s), copies[1]));
    desk.change(desk.open(copies[1]), u"another"_s);
    QCOMPARE(desk.list(copies[1]).versions.size(), 2U);
    QCOMPARE(permissionsOf(versionsPathOf(desk.versions(), copies[1])), 0600);
    // The old one returns.
    QVERIFY(QFile::copy(desk.file(u"kept"_s), copies[0]));
    desk.open(copies[0]);
    QCOMPARE(desk.list(copies[0]).versions.size(), 1U);
    QCOMPARE(desk.list(copies[2]).versions.size(), 1U);
    QCOMPARE(QDir(desk.versions()).entryList(QDir::Files).size(), 3);
}

void tst_VersionKeeper::aFileMovedToAnotherDiskBringsItsVersionsAlong()
{
    Desk desk;
    const QString before = desk.file(u"plan.qly"_s);
    const QString behind = desk.file(u"moved.qly"_s);
    const QString backup = desk.file(u"backup.qly"_s);
    Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    desk.change(document, u"Root"_s);
    desk.program.closeAll();
    // Somebody works on a copy of it, too, that is just the same.
    QVERIFY(QFile::copy(before, backup));
    desk.save(desk.open(backup), backup);
    desk.program.closeAll();
    // What moves a file across disks copies it with its times.
    const QDateTime time = QFileInfo(before).lastModified();
    QVERIFY(QFile::copy(before, behind));
    {
        const timespec times[] = {modifiedOf(before), modifiedOf(before)};
        QCOMPARE(utimensat(AT_FDCWD, qPrintable(behind), times, 0), 0);
    }
    QCOMPARE(QFileInfo(behind).lastModified(), time);
    QVERIFY(QFile::remove(before));
    desk.open(behind);
    QCOMPARE(desk.list(behind).versions.size(), 2U);
    // And back again, as from a disk that was only not there.
    desk.program.closeAll();
    QVERIFY(QFile::copy(behind, before));
    QCOMPARE(desk.list(before).versions.size(), 2U);
}

void tst_VersionKeeper::aCopyOfAFileThatIsThereDoesNotTakeWhatIsGone()
{
    Desk desk;
    const Document &sample = desk.plant(u"template.qly"_s, {u"plan"_s});
    const QString spring = desk.file(u"spring.qly"_s);
    const QString autumn = desk.file(u"autumn.qly"_s);
    QVERIFY(QFile::copy(sample.m_sFile, spring));
    Document &document = desk.open(spring);
    desk.change(document, u"spring"_s);
    desk.change(document, u"plan"_s);
    QVERIFY(QFile::remove(spring));
    QVERIFY(QFile::copy(sample.m_sFile, autumn));
    desk.open(autumn);
    QCOMPARE(desk.list(autumn).versions.size(), 0U);
    QCOMPARE(desk.list(spring).versions.size(), 3U);
}

// It wrote down nothing of a file but its name and what it held.
void tst_VersionKeeper::theVersionsOfAnEarlierProgramAreFound()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    desk.change(document, u"Root"_s);
    desk.program.closeAll();
    const QString path = versionsPathOf(desk.versions(), desk.file(u"plan.qly"_s));
    {
        Database database(path, VersionStore::schema(), Database::Opening::Existing);
        database.run(u"ALTER TABLE document DROP COLUMN inode"_s);
        database.run(u"ALTER TABLE document DROP COLUMN modified"_s);
        database.run(u"PRAGMA user_version = 2"_s);
    }
    const QString moved = desk.file(u"moved.qly"_s);
    QVERIFY(QFile::rename(desk.file(u"plan.qly"_s), moved));
    Document &opened = desk.open(moved);
    QCOMPARE(desk.list(moved).versions.size(), 2U);
    desk.change(opened, u"ROOT"_s);
    QCOMPARE(desk.list(moved).versions.size(), 3U);
    QCOMPARE(Desk::remarks(), QStringList());
}

void tst_VersionKeeper::whatIsTypedMeanwhileIsNotInTheVersion()
{
    Desk desk;
    Document &document = desk.program.plant({u"root"_s, u" one"_s}).document;
    modDoc::save(document, desk.file(u"plan.qly"_s));
    const KeptOutline saved = keptOutline(document.outline());
    document.history.setLabel(document.tree.root(), u"later"_s);
    document.history.remove(document.tree.root()->firstChild());
    desk.settle();
    const VersionKeeper::Listed listed = desk.list(document.m_sFile);
    QCOMPARE(listed.versions.size(), 1U);
    QVERIFY(desk.read(document.m_sFile, listed.versions[0].number) == saved);
}

void tst_VersionKeeper::whatIsAskedForIsDoneBeforeTheProgramEnds()
{
    Desk desk;
    Document &document = desk.program.plant({u"root"_s}).document;
    modDoc::save(document, desk.file(u"plan.qly"_s));
    desk.program.closeAll();
    desk.restart();
    QCOMPARE(desk.list(desk.file(u"plan.qly"_s)).versions.size(), 1U);
}

void tst_VersionKeeper::aFolderThatCannotBeMadeIsToldOf()
{
    Desk desk;
    QFile obstacle(desk.file(u"data"_s));
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    Document &document = desk.plant(u"plan.qly"_s, {u"root <"_s});
    QVERIFY(QFileInfo::exists(document.m_sFile));
    const QString time = QLocale::system().toString(desk.program.fake.clock.moment.time(), QLocale::ShortFormat);
    QVERIFY2(Desk::noticeOf(document).startsWith(
                 u"The file %1 was saved at %2, but no version"_s.arg(document.m_sFile, time)),
             qPrintable(Desk::noticeOf(document)));
    QCOMPARE(Desk::remarks().size(), 1);
    // What was not saved is not said to have been.
    ports().files->recovered(document, document.m_sFile, ports().clock->now());
    desk.settle();
    QVERIFY2(
        Desk::noticeOf(document).startsWith(u"What was recovered of the file %1 could not"_s.arg(document.m_sFile)),
        qPrintable(Desk::noticeOf(document)));
    // The next save that succeeds mends it.
    QVERIFY(obstacle.remove());
    desk.save(document, document.m_sFile);
    QCOMPARE(Desk::noticeOf(document), QString());
    QCOMPARE(desk.list(document.m_sFile).versions.size(), 1U);
}

void tst_VersionKeeper::aFullDiskIsToldOfAndMended()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root <"_s});
    document.history.setLabel(document.tree.root(), u"Root"_s);
    {
        // Room for the file, and not for a database's log.
        const FileSizeLimit limit(8000);
        desk.save(document, document.m_sFile);
    }
    QVERIFY2(Desk::noticeOf(document).contains(u"no version of it could be kept"_s),
             qPrintable(Desk::noticeOf(document)));
    QVERIFY(!document.hasNotice(NoticeKind::NotSaved));
    QCOMPARE(desk.list(document.m_sFile).versions.size(), 1U);
    desk.save(document, document.m_sFile);
    QCOMPARE(Desk::noticeOf(document), QString());
    QCOMPARE(desk.list(document.m_sFile).versions.size(), 2U);
}

void tst_VersionKeeper::aDamagedDatabaseIsSetAside()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    const QString path = versionsPathOf(desk.versions(), document.m_sFile);
    QFile database(path);
    QVERIFY(database.open(QIODevice::WriteOnly));
    database.write(QByteArray(10000, 'x'));
    database.close();
    QVERIFY(!desk.list(document.m_sFile).failure.isEmpty());
    document.history.setLabel(document.tree.root(), u"Root"_s);
    desk.save(document, document.m_sFile);
    QVERIFY2(Desk::noticeOf(document).contains(path + u".damaged1"_s), qPrintable(Desk::noticeOf(document)));
    QVERIFY(QFileInfo::exists(path + u".damaged1"_s));
    // With what the file held before, of which there is no other version now.
    QCOMPARE(desk.list(document.m_sFile).versions.size(), 2U);
    desk.save(document, document.m_sFile);
    QCOMPARE(Desk::noticeOf(document), QString());
}

void tst_VersionKeeper::aDatabaseOfALaterProgramIsLeftAlone()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    const QString path = versionsPathOf(desk.versions(), document.m_sFile);
    {
        DatabaseSchema later = VersionStore::schema();
        later.upgrades.push_back({u"CREATE TABLE more (id INTEGER)"_s});
        const Database database(path, later, Database::Opening::Existing);
    }
    document.history.setLabel(document.tree.root(), u"Root"_s);
    desk.save(document, document.m_sFile);
    QVERIFY(Desk::noticeOf(document).contains(u"no version of it could be kept"_s));
    QVERIFY(!QFileInfo::exists(path + u".damaged1"_s));
    QVERIFY(QFileInfo::exists(path));
}

void tst_VersionKeeper::nothingIsKeptWhereNothingIsToBe()
{
    Desk desk;
    desk.keeper->setKeeping(false);
    desk.plant(u"plan.qly"_s, {u"root"_s});
    QVERIFY(!QFileInfo::exists(desk.versions()));
}

void tst_VersionKeeper::aDatabaseThatAnotherProgramIsAtIsWaitedFor()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root <"_s});
    const QString path = versionsPathOf(desk.versions(), document.m_sFile);
    auto other = std::make_unique<VersionStore>(path, Database::Opening::Existing);
    document.history.setLabel(document.tree.root(), u"while it is used"_s);
    modDoc::save(document, document.m_sFile);
    QTest::qWait(300);
    QVERIFY(!desk.keeper->isIdle());
    other.reset();
    desk.settle();
    QCOMPARE(Desk::noticeOf(document), QString());
    QCOMPARE(desk.list(document.m_sFile).versions.size(), 2U);
    // Not for ever.
    other = std::make_unique<VersionStore>(path, Database::Opening::Existing);
    document.history.setLabel(document.tree.root(), u"in vain"_s);
    desk.save(document, document.m_sFile);
    QVERIFY2(Desk::noticeOf(document).contains(u"no version of it could be kept"_s),
             qPrintable(Desk::noticeOf(document)));
    other.reset();
    QVERIFY(!QFileInfo::exists(path + u".damaged1"_s));
    // The save that nobody kept is found in the file by the next one.
    document.history.setLabel(document.tree.root(), u"again"_s);
    desk.save(document, document.m_sFile);
    const VersionKeeper::Listed listed = desk.list(document.m_sFile);
    QCOMPARE(listed.versions.size(), 4U);
    QCOMPARE(desk.read(document.m_sFile, listed.versions[2].number).entries[0].label, u"in vain"_s);
    QCOMPARE(Desk::noticeOf(document), QString());
}

void tst_VersionKeeper::whateverIsDamagedTheNextSaveIsKept_data()
{
    QTest::addColumn<bool>("cut");
    QTest::newRow("bytes turned") << false;
    QTest::newRow("the end cut off") << true;
}

void tst_VersionKeeper::whateverIsDamagedTheNextSaveIsKept()
{
    QFETCH(const bool, cut);
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root <"_s, u" one"_s, u" two"_s});
    for (int save = 0; save < 3; ++save) {
        document.history.setLabel(document.tree.root(), u"save %1"_s.arg(save));
        desk.save(document, document.m_sFile);
    }
    const QString path = versionsPathOf(desk.versions(), document.m_sFile);
    QFile database(path);
    QVERIFY(database.open(QIODevice::ReadOnly));
    const QByteArray whole = database.readAll();
    database.close();
    constexpr int places = 24;
    for (int place = 0; place < places; ++place) {
        QByteArray damaged = whole;
        const qsizetype at = whole.size() * place / places + 13;
        if (cut)
            damaged.truncate(at);
        else
            damaged.replace(at, 40, QByteArray(40, '\xee'));
        for (const QString &name : QDir(desk.versions()).entryList(QDir::Files))
            QVERIFY(QFile::remove(desk.versions() + u'/' + name));
        QVERIFY(database.open(QIODevice::WriteOnly) && database.write(damaged) == damaged.size());
        database.close();
        // Looked at, it is what it can be, or said to be damaged.
        const VersionKeeper::Listed before = desk.list(document.m_sFile);
        QVERIFY(!before.failure.isEmpty() || before.versions.size() <= 4);
        for (const VersionInfo &version : before.versions)
            desk.read(document.m_sFile, version.number);
        document.history.setLabel(document.tree.root(), u"damaged at %1"_s.arg(at));
        desk.save(document, document.m_sFile);
        const bool isTold = !Desk::noticeOf(document).isEmpty();
        const bool isSetAside = QFileInfo::exists(path + u".damaged1"_s);
        const VersionKeeper::Listed after = desk.list(document.m_sFile);
        const QString what = u"at %1 of %2: %3"_s.arg(at).arg(whole.size()).arg(after.failure);
        QVERIFY2(isTold || (!isSetAside && after.failure.isEmpty()), qPrintable(what));
        if (after.failure.isEmpty()) {
            QVERIFY2(!after.versions.empty(), qPrintable(what));
            QCOMPARE(desk.read(document.m_sFile, after.versions.back().number).entries[0].label,
                     u"damaged at %1"_s.arg(at));
        } else {
            QVERIFY2(isTold, qPrintable(what));
        }
    }
}

namespace
{

QList<VersionOrigin> originsOf(const VersionKeeper::Listed &listed)
{
    QList<VersionOrigin> origins;
    for (const VersionInfo &version : listed.versions)
        origins.append(version.origin);
    return origins;
}

constexpr VersionOrigin saved = VersionOrigin::Saved;
constexpr VersionOrigin found = VersionOrigin::Found;
constexpr VersionOrigin recovered = VersionOrigin::Recovered;

} // namespace

void tst_VersionKeeper::whatAFileHeldBeforeItsFirstSaveIsAVersion()
{
    Desk desk;
    const QString path = desk.file(u"plan.qly"_s);
    write(path, nativeBytes(QStringList{u"root"_s, u" old"_s}));
    const QDateTime since(QDate(2026, 1, 2), QTime(3, 4, 5));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(since, QFileDevice::FileModificationTime));
    }
    QVERIFY(modDoc::DocLoad(path));
    Document &document = desk.program.active()->document;
    // Nothing is kept of a file that is only looked at.
    QCOMPARE(desk.list(path).versions.size(), 0U);
    for (const QString &label : {u"once"_s, u"twice"_s}) {
        document.history.setLabel(document.tree.root(), label);
        desk.save(document, path);
    }
    const VersionKeeper::Listed listed = desk.list(path);
    QCOMPARE(originsOf(listed), (QList{found, saved, saved}));
    QCOMPARE(listed.versions[0].time, since);
    QVERIFY(listed.versions[0].isVerified);
    QCOMPARE(listed.versions[1].changes, (DifferenceCounts{0, 0, 1}));
    const KeptOutline before = desk.read(path, listed.versions[0].number);
    QCOMPARE(before.entries.size(), 2U);
    QCOMPARE(before.entries[0].label, u"root"_s);
    QCOMPARE(before.entries[1].label, u"old"_s);
    QCOMPARE(Desk::noticeOf(document), QString());
    QCOMPARE(Desk::remarks(), QStringList());
}

void tst_VersionKeeper::whatAnotherProgramWroteIsAVersionBeforeItIsSavedOver()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"ours"_s});
    write(document.m_sFile, nativeBytes(QStringList{u"theirs"_s}));
    document.history.setLabel(document.tree.root(), u"ours again"_s);
    desk.program.fake.dialogs.answers = {Answer::Yes};
    desk.save(document, document.m_sFile);
    const QString question = desk.program.fake.dialogs.questions.value(0);
    QVERIFY2(question.contains(u"is kept as a version"_s), qPrintable(question));
    const VersionKeeper::Listed listed = desk.list(document.m_sFile);
    QCOMPARE(originsOf(listed), (QList{saved, found, saved}));
    QCOMPARE(desk.read(document.m_sFile, listed.versions[1].number).entries[0].label, u"theirs"_s);

    // So is what a document is saved over that never knew of it.
    Document &other = desk.program.plant({u"another"_s}).document;
    const QString path = desk.file(u"third.qly"_s);
    write(path, nativeBytes(QStringList{u"whoever's"_s}));
    desk.save(other, path);
    QCOMPARE(originsOf(desk.list(path)), (QList{found, saved}));
}

void tst_VersionKeeper::whatWillNotBeKeptIsSaidToBeLost()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"ours"_s});
    QStringList &questions = desk.program.fake.dialogs.questions;
    const auto ask = [&](const QByteArray &theirs) {
        write(document.m_sFile, theirs);
        questions.clear();
        desk.program.fake.dialogs.answers = {Answer::No};
        document.history.setLabel(document.tree.root(), document.tree.root()->label() + u'!');
        desk.save(document, document.m_sFile);
        return questions.value(0);
    };
    QVERIFY(ask(nativeBytes(QStringList{u"theirs"_s})).contains(u"is kept as a version"_s));
    QVERIFY(ask(QByteArray("\x89PNG\r\n\x1a\n\0\0\0\1", 12)).contains(u"would be lost"_s));
    desk.keeper->setMostBytes(10);
    QVERIFY(ask(nativeBytes(QStringList{u"theirs too"_s})).contains(u"would be lost"_s));
    desk.keeper->setMostBytes(VersionKeeper::mostBytes);
    document.tell({NoticeKind::NoVersion, u"The last one was not kept."_s});
    QVERIFY(ask(nativeBytes(QStringList{u"theirs again"_s})).contains(u"would be lost"_s));
    document.dismiss(NoticeKind::NoVersion);
    desk.keeper->setKeeping(false);
    QVERIFY(ask(nativeBytes(QStringList{u"theirs at last"_s})).contains(u"would be lost"_s));
}

void tst_VersionKeeper::aPlainTextIsKeptBeforeItIsSavedOver()
{
    Desk desk;
    const QString path = desk.file(u"notes.txt"_s);
    // One that reads as if it were compressed.
    write(path, "12,words of the text");
    QVERIFY(modDoc::DocLoad(path));
    Document &document = desk.program.active()->document;
    document.history.setStoredText(document.tree.root(), "other words");
    desk.program.fake.dialogs.answers.assign(3, Answer::Yes);
    desk.save(document, path);
    const VersionKeeper::Listed listed = desk.list(path);
    QCOMPARE(originsOf(listed), (QList{found, saved}));
    QCOMPARE(NodeTextDecompressIfRequired(desk.read(path, listed.versions[0].number).entries[0].storedText),
             "12,words of the text\r\n");
}

void tst_VersionKeeper::whatIsNoDocumentIsNoVersion()
{
    Desk desk;
    Document &document = desk.program.plant({u"root"_s}).document;
    const QString path = desk.file(u"picture.qly"_s);
    write(path, QByteArray("\x89PNG\r\n\x1a\n\0\0\0\1", 12));
    desk.save(document, path);
    QCOMPARE(originsOf(desk.list(path)), QList{saved});
    QCOMPARE(Desk::noticeOf(document), QString());
    QCOMPARE(Desk::remarks().size(), 1);
}

void tst_VersionKeeper::whatIsWrittenOverInPlaceIsAVersionBefore()
{
    Desk desk;
    const QString path = desk.file(u"plan.qly"_s);
    write(path, nativeBytes(QStringList{u"old"_s}));
    QVERIFY(modDoc::DocLoad(path));
    Document &document = desk.program.active()->document;
    // With two names it is written over.
    QCOMPARE(link(qPrintable(path), qPrintable(desk.file(u"twin.qly"_s))), 0);
    document.history.setLabel(document.tree.root(), u"new"_s);
    desk.save(document, path);
    QCOMPARE(originsOf(desk.list(path)), (QList{found, saved}));

    // It is there before the first byte is written.
    write(path, nativeBytes(QStringList{u"theirs"_s}));
    ports().files->aboutToReplace(document, true);
    QCOMPARE(QDir(desk.versions()).entryList(QDir::Files).size(), 1);
    VersionStore store(versionsPathOf(desk.versions(), path), Database::Opening::Existing);
    QCOMPARE(store.list().size(), 3U);
    QCOMPARE(store.read(store.list().back().number).entries[0].label, u"theirs"_s);
}

void tst_VersionKeeper::whatWasRecoveredIsAVersionOfItsFile()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    document.history.setLabel(document.tree.root(), u"recovered"_s);
    const QDateTime changed = desk.program.fake.clock.moment.addSecs(60);
    desk.program.fake.clock.moment = changed.addSecs(3600);
    ports().files->recovered(document, document.m_sFile, changed);
    desk.settle();
    QCOMPARE(originsOf(desk.list(document.m_sFile)), (QList{saved, recovered}));
    // Saved as it is, it is what was recovered still, and what was saved later.
    desk.save(document, document.m_sFile);
    for (int time = 0; time < 2; ++time) {
        const VersionKeeper::Listed listed = desk.list(document.m_sFile);
        QCOMPARE(originsOf(listed), (QList{saved, recovered, saved}));
        QCOMPARE(listed.versions[1].time, changed);
        QCOMPARE(listed.versions[2].time, changed.addSecs(3600));
        ports().files->recovered(document, document.m_sFile, changed);
        desk.settle();
    }
}

void tst_VersionKeeper::whatWasRecoveredWithoutAFileIsAVersionOfItsFirstOne()
{
    Desk desk;
    Document &document = desk.program.plant({u"recovered"_s}).document;
    ports().files->recovered(document, QString(), ports().clock->now());
    desk.settle();
    QVERIFY(!QFileInfo::exists(desk.versions()));
    document.history.setLabel(document.tree.root(), u"worked on"_s);
    desk.save(document, desk.file(u"named.qly"_s));
    const VersionKeeper::Listed listed = desk.list(document.m_sFile);
    QCOMPARE(originsOf(listed), (QList{recovered, saved}));
    QCOMPARE(desk.read(document.m_sFile, listed.versions[0].number).entries[0].label, u"recovered"_s);
    // Another document at the same place in memory is not taken for it.
    ports().files->recovered(desk.program.plant({u"closed unsaved"_s}).document, QString(), ports().clock->now());
    desk.program.closeAll();
    desk.plant(u"other.qly"_s, {u"other"_s});
    QCOMPARE(originsOf(desk.list(desk.file(u"other.qly"_s))), QList{saved});
}

// A year back, and then right again: the versions of the time between are not thinned as if they were a year old.
void tst_VersionKeeper::aClockThatWasSetBackMakesNoVersionOld()
{
    Desk desk;
    Document &document = desk.plant(u"plan.qly"_s, {u"root"_s});
    FakeClock &clock = desk.program.fake.clock;
    const QDateTime right = clock.moment;
    clock.moment = right.addYears(-1);
    for (int save = 0; save < 5; ++save) {
        clock.moment = clock.moment.addSecs(1);
        document.history.setLabel(document.tree.root(), u"save %1"_s.arg(save));
        desk.save(document, document.m_sFile);
    }
    clock.moment = right.addSecs(3600);
    document.history.setLabel(document.tree.root(), u"last"_s);
    desk.save(document, document.m_sFile);
    const VersionKeeper::Listed listed = desk.list(document.m_sFile);
    QCOMPARE(listed.versions.size(), 7U);
    QCOMPARE(listed.versions[3].time, right);
    QCOMPARE(listed.versions[6].time, clock.moment);
}

QTEST_MAIN(tst_VersionKeeper)
#include "tst_VersionKeeper.moc"
