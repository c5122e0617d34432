// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/SafeFile.h"
#include "document/TemporaryName.h"
#include "support/ErrorRecorder.h"
#include "support/Obstacles.h"

#include <QTest>

#include <sys/xattr.h>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(SafeFile::Check)

namespace
{

constexpr qint32 diskFull = 61;
constexpr qint32 permissionDenied = 70;
constexpr qint32 pathFileAccess = 75;
constexpr qint32 pathNotFound = 76;
constexpr qint32 invalidFileFormat = 321;

void save(const QString &path, const QByteArray &content)
{
    SafeFile file(path);
    file.write(content);
    file.flushToDisk();
    file.replace();
}

} // namespace

class tst_SafeFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFileIsWritten();
    void aNewFileGetsTheUsersMode();
    void anExistingFileIsReplacedAndKeepsItsMode_data();
    void anExistingFileIsReplacedAndKeepsItsMode();
    void longContentInPiecesOfAnySize_data();
    void longContentInPiecesOfAnySize();
    void namesOfEveryKind_data();
    void namesOfEveryKind();

    void untilItIsReplacedTheOldFileStands();
    void piecesOfAnySizeStayInTheirOrder();
    void anAbandonedFileLeavesNothingBehind();
    void whatTheDiskHoldsIsJudgedBeforeTheOldFileGoes();

    void aByteThatTheDiskHoldsOtherwiseIsFound_data();
    void aByteThatTheDiskHoldsOtherwiseIsFound();
    void aLinkIsFollowed_data();
    void aLinkIsFollowed();
    void aLinkToNothingMakesItsTarget();
    void aCircleOfLinksIsAnError();

    void aFolderInTheFilesPlace();
    void aFolderThatIsMissing_data();
    void aFolderThatIsMissing();
    void aFolderThatMayNotBeWritten();
    void aFileThatMayNotBeWritten();
    void anotherUsersFileInAWritableFolder();
    void aFullDiskAtEveryByte();
    void aFullDiskInTheMidstOfALongFile();

    void theOldContentIsKeptUnderAnotherName();
    void anOlderBackupGoesOnlyWithTheFile();
    void withoutAnOldFileNothingIsKept();
    void aBackupThatIsTheFileItselfUnderAnotherName();
    void aReplacementThatFailsLeavesFileAndBackup();
    void aBackupThatCannotBeNamedLeavesTheNewFile();
    void aPipeInTheFilesPlace();
    void extendedAttributesAreKept();
    void aTemporaryFilesNameTellsWhatItIs();
};

void tst_SafeFile::aNewFileIsWritten()
{
    const TestFolder folder;
    save(folder(u"notes.qly"_s), "content");
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("content"));
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
    save(folder(u"empty.qly"_s), QByteArray());
    QCOMPARE(folder.read(u"empty.qly"_s), QByteArray(""));
}

void tst_SafeFile::aNewFileGetsTheUsersMode()
{
    const TestFolder folder;
    const mode_t before = umask(027);
    save(folder(u"notes.qly"_s), "content");
    QCOMPARE(umask(before), mode_t(027));
    QCOMPARE(folder.mode(u"notes.qly"_s), mode_t(0640));
}

void tst_SafeFile::anExistingFileIsReplacedAndKeepsItsMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("the usual") << 0644;
    QTest::newRow("private") << 0600;
    QTest::newRow("writable by all") << 0666;
    QTest::newRow("the group's") << 0660;
    QTest::newRow("executable") << 0755;
}

void tst_SafeFile::anExistingFileIsReplacedAndKeepsItsMode()
{
    QFETCH(const int, mode);
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old and longer", static_cast<mode_t>(mode));
    const mode_t before = umask(077);
    save(folder(u"notes.qly"_s), "new");
    umask(before);
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("new"));
    QCOMPARE(static_cast<int>(folder.mode(u"notes.qly"_s)), mode);
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
}

void tst_SafeFile::longContentInPiecesOfAnySize_data()
{
    QTest::addColumn<int>("piece");
    QTest::newRow("small pieces") << 777;
    QTest::newRow("pieces of the buffer's size") << (1 << 20);
    QTest::newRow("pieces larger than the buffer") << 1500001;
    QTest::newRow("one piece") << 4000000;
}

void tst_SafeFile::longContentInPiecesOfAnySize()
{
    QFETCH(const int, piece);
    QByteArray content(4000000, '\0');
    for (qsizetype i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * 7 + i / 251);
    const TestFolder folder;
    {
        SafeFile file(folder(u"notes.qly"_s));
        for (qsizetype at = 0; at < content.size(); at += piece) {
            file.write(QByteArrayView(content).sliced(at, qMin<qsizetype>(piece, content.size() - at)));
            file.write(QByteArrayView());
        }
        file.flushToDisk();
        file.replace();
    }
    QVERIFY(folder.read(u"notes.qly"_s) == content);
}

void tst_SafeFile::namesOfEveryKind_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << u"two words.qly"_s;
    QTest::newRow("beyond ASCII") << u"caf\u00E9 \u03B1 \U0001F600.qly"_s;
    QTest::newRow("as long as a name may be") << QString(251, u'n') + u".qly"_s;
    QTest::newRow("without an extension") << u"notes"_s;
    QTest::newRow("hidden") << u".notes"_s;
    QTest::newRow("a percent sign and a number") << u"%1 %2.qly"_s;
}

void tst_SafeFile::namesOfEveryKind()
{
    QFETCH(const QString, name);
    const TestFolder folder;
    save(folder(name), "first");
    save(folder(name), "second");
    QCOMPARE(folder.read(name), QByteArray("second"));
    QCOMPARE(folder.names(), QStringList(name));
}

void tst_SafeFile::untilItIsReplacedTheOldFileStands()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    SafeFile file(folder(u"notes.qly"_s));
    file.write(QByteArray(3 << 20, 'x'));
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    file.flushToDisk();
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    QCOMPARE(folder.names().size(), 2);
    file.replace();
    QCOMPARE(folder.read(u"notes.qly"_s).size(), 3 << 20);
    QCOMPARE(folder.names().size(), 1);
}

void tst_SafeFile::piecesOfAnySizeStayInTheirOrder()
{
    const TestFolder folder;
    QByteArray written;
    SafeFile file(folder(u"notes.qly"_s));
    constexpr int megabyte = 1 << 20;
    char letter = 'a';
    for (const int size : {0, 3 * megabyte, 5, megabyte, 1, 0, megabyte - 1, 1, megabyte + 1, 700'000, 700'000, 3}) {
        const QByteArray piece(size, letter++);
        file.write(piece);
        written += piece;
    }
    QByteArray found;
    file.flushToDisk([&found](const QByteArray &content) { found = content; });
    QVERIFY(found == written);
    file.replace();
    QVERIFY(folder.read(u"notes.qly"_s) == written);
}

void tst_SafeFile::anAbandonedFileLeavesNothingBehind()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    {
        SafeFile file(folder(u"notes.qly"_s));
        file.write("new");
    }
    {
        SafeFile file(folder(u"other.qly"_s));
        file.write("new");
        file.flushToDisk();
    }
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
}

void tst_SafeFile::whatTheDiskHoldsIsJudgedBeforeTheOldFileGoes()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    const QByteArray content(3000000, 'n');
    QByteArray judged;
    {
        SafeFile file(folder(u"notes.qly"_s));
        file.write(content);
        const auto refuse = [&judged](const QByteArray &found) {
            judged = found;
            throw RunTimeError(ErrorNumber::InvalidFileFormat);
        };
        QCOMPARE(errorNumberOf([&] { file.flushToDisk(refuse); }), invalidFileFormat);
    }
    QVERIFY(judged == content);
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
}

void tst_SafeFile::aByteThatTheDiskHoldsOtherwiseIsFound_data()
{
    QTest::addColumn<SafeFile::Check>("check");
    QTest::newRow("by its check sum alone") << SafeFile::Check();
    QTest::newRow("though it is judged well") << SafeFile::Check([](const QByteArray &) {});
    QTest::newRow("whatever else it is judged to be")
        << SafeFile::Check([](const QByteArray &) { throw RunTimeError(ErrorNumber::InvalidCall); });
}

void tst_SafeFile::aByteThatTheDiskHoldsOtherwiseIsFound()
{
    QFETCH(const SafeFile::Check, check);
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    {
        SafeFile file(folder(u"notes.qly"_s));
        file.write(QByteArray(3000000, 'n'));
        QFile disk(file.temporaryName());
        QVERIFY(disk.open(QIODevice::ReadWrite));
        QVERIFY(disk.seek(1234567));
        QCOMPARE(disk.write("m"), 1);
        disk.close();
        QCOMPARE(errorNumberOf([&] { file.flushToDisk(check); }), invalidFileFormat);
    }
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
}

void tst_SafeFile::aLinkIsFollowed_data()
{
    QTest::addColumn<QString>("to");
    QTest::newRow("a relative link") << u"deep/notes.qly"_s;
    QTest::newRow("an absolute link") << u"/deep/notes.qly"_s;
    QTest::newRow("a link to a link") << u"second"_s;
    QTest::newRow("a link through its own folder's parent") << u"deep/../deep/notes.qly"_s;
}

void tst_SafeFile::aLinkIsFollowed()
{
    QFETCH(const QString, to);
    const TestFolder folder;
    QVERIFY(QDir(folder.path()).mkdir(u"deep"_s));
    folder.write(u"deep/notes.qly"_s, "old", 0640);
    const auto link = [&](const QString &name, const QString &target) {
        return symlink(QFile::encodeName(target).constData(), QFile::encodeName(folder(name)).constData()) == 0;
    };
    QVERIFY(link(u"second"_s, u"deep/notes.qly"_s));
    QVERIFY(link(u"link"_s, to.startsWith(u'/') ? folder.path() + to : to));
    {
        SafeFile file(folder(u"link"_s));
        QCOMPARE(QFileInfo(file.target()).canonicalFilePath(),
                 QFileInfo(folder(u"deep/notes.qly"_s)).canonicalFilePath());
    }
    save(folder(u"link"_s), "new");
    QCOMPARE(folder.read(u"deep/notes.qly"_s), QByteArray("new"));
    QCOMPARE(folder.mode(u"deep/notes.qly"_s), mode_t(0640));
    QVERIFY(QFileInfo(folder(u"link"_s)).isSymLink());
    QCOMPARE(folder.names(), QStringList({u"deep"_s, u"link"_s, u"second"_s}));
}

void tst_SafeFile::aLinkToNothingMakesItsTarget()
{
    const TestFolder folder;
    QVERIFY(QFile::link(folder(u"later.qly"_s), folder(u"link"_s)));
    save(folder(u"link"_s), "new");
    QCOMPARE(folder.read(u"later.qly"_s), QByteArray("new"));
    QVERIFY(QFileInfo(folder(u"link"_s)).isSymLink());
}

void tst_SafeFile::aCircleOfLinksIsAnError()
{
    const TestFolder folder;
    QVERIFY(QFile::link(folder(u"b"_s), folder(u"a"_s)));
    QVERIFY(QFile::link(folder(u"a"_s), folder(u"b"_s)));
    QCOMPARE(errorNumberOf([&] { save(folder(u"a"_s), "new"); }), pathFileAccess);
    QCOMPARE(folder.names(), QStringList({u"a"_s, u"b"_s}));
}

void tst_SafeFile::aFolderInTheFilesPlace()
{
    const TestFolder folder;
    QVERIFY(QDir(folder.path()).mkdir(u"notes.qly"_s));
    QCOMPARE(errorNumberOf([&] { save(folder(u"notes.qly"_s), "new"); }), pathFileAccess);
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
}

void tst_SafeFile::aFolderThatIsMissing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no such folder") << u"gone/notes.qly"_s;
    QTest::newRow("a file in its place") << u"file/notes.qly"_s;
}

void tst_SafeFile::aFolderThatIsMissing()
{
    QFETCH(const QString, name);
    const TestFolder folder;
    folder.write(u"file"_s, "content");
    QCOMPARE(errorNumberOf([&] { save(folder(name), "new"); }), pathNotFound);
    QCOMPARE(folder.names(), QStringList(u"file"_s));
    QCOMPARE(folder.read(u"file"_s), QByteArray("content"));
}

void tst_SafeFile::aFolderThatMayNotBeWritten()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    folder.setMode(QString(), 0555);
    {
        const OrdinaryUser user;
        QCOMPARE(errorNumberOf([&] { save(folder(u"notes.qly"_s), "new"); }), permissionDenied);
        QCOMPARE(errorNumberOf([&] { save(folder(u"other.qly"_s), "new"); }), permissionDenied);
    }
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
}

void tst_SafeFile::aFileThatMayNotBeWritten()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old", 0444);
    QCOMPARE(errorNumberOf([&] { save(folder(u"notes.qly"_s), "new"); }), permissionDenied);
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
}

void tst_SafeFile::anotherUsersFileInAWritableFolder()
{
    if (geteuid() != 0)
        QSKIP("Only the superuser can make another user's file");
    const TestFolder folder;
    folder.write(u"theirs.qly"_s, "old", 0644);
    folder.write(u"shared.qly"_s, "old", 0666);
    {
        const OrdinaryUser user;
        QCOMPARE(errorNumberOf([&] { save(folder(u"theirs.qly"_s), "new"); }), permissionDenied);
        save(folder(u"shared.qly"_s), "new");
    }
    QCOMPARE(folder.read(u"theirs.qly"_s), QByteArray("old"));
    QCOMPARE(folder.read(u"shared.qly"_s), QByteArray("new"));
    QCOMPARE(folder.mode(u"shared.qly"_s), mode_t(0666));
}

void tst_SafeFile::aFullDiskAtEveryByte()
{
    const TestFolder folder;
    const QByteArray content = "the new content of the file";
    folder.write(u"notes.qly"_s, "old", 0640);
    for (qsizetype room = 0; room < content.size(); ++room) {
        qint32 error = 0;
        {
            const FullDisk disk(static_cast<rlim_t>(room));
            error = errorNumberOf([&] { save(folder(u"notes.qly"_s), content); });
        }
        QCOMPARE(error, diskFull);
        QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
        QCOMPARE(folder.mode(u"notes.qly"_s), mode_t(0640));
        QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
    }
    {
        const FullDisk disk(static_cast<rlim_t>(content.size()));
        save(folder(u"notes.qly"_s), content);
    }
    QCOMPARE(folder.read(u"notes.qly"_s), content);
}

void tst_SafeFile::aFullDiskInTheMidstOfALongFile()
{
    const TestFolder folder;
    const QByteArray content(3 << 20, 'x');
    qint32 error = 0;
    {
        const FullDisk disk(1500000);
        error = errorNumberOf([&] { save(folder(u"notes.qly"_s), content); });
    }
    QCOMPARE(error, diskFull);
    QCOMPARE(folder.names(), QStringList());
}

void tst_SafeFile::theOldContentIsKeptUnderAnotherName()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old", 0640);
    {
        SafeFile file(folder(u"notes.qly"_s));
        file.write("new");
        file.flushToDisk();
        file.keepOldFile();
        QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
        file.replace();
        QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("new"));
        file.moveOldFileTo(folder(u"notes.bak"_s));
    }
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("new"));
    QCOMPARE(folder.read(u"notes.bak"_s), QByteArray("old"));
    QCOMPARE(folder.mode(u"notes.qly"_s), mode_t(0640));
    QCOMPARE(folder.mode(u"notes.bak"_s), mode_t(0640));
    QCOMPARE(folder.names(), QStringList({u"notes.bak"_s, u"notes.qly"_s}));
}

void tst_SafeFile::anOlderBackupGoesOnlyWithTheFile()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    folder.write(u"notes.bak"_s, "older");
    {
        SafeFile file(folder(u"notes.qly"_s));
        file.write("new");
        file.flushToDisk();
        file.keepOldFile();
        // Abandoned here.
    }
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    QCOMPARE(folder.read(u"notes.bak"_s), QByteArray("older"));
    QCOMPARE(folder.names(), QStringList({u"notes.bak"_s, u"notes.qly"_s}));
}

void tst_SafeFile::withoutAnOldFileNothingIsKept()
{
    const TestFolder folder;
    folder.write(u"notes.bak"_s, "older");
    SafeFile file(folder(u"notes.qly"_s));
    file.flushToDisk();
    file.keepOldFile();
    file.replace();
    file.moveOldFileTo(folder(u"notes.bak"_s));
    QCOMPARE(folder.read(u"notes.bak"_s), QByteArray("older"));
}

void tst_SafeFile::aBackupThatIsTheFileItselfUnderAnotherName()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    QCOMPARE(link(qPrintable(folder(u"notes.qly"_s)), qPrintable(folder(u"notes.bak"_s))), 0);
    {
        SafeFile file(folder(u"notes.qly"_s));
        file.write("new");
        file.flushToDisk();
        file.keepOldFile();
        file.replace();
        file.moveOldFileTo(folder(u"notes.bak"_s));
    }
    QCOMPARE(folder.read(u"notes.bak"_s), QByteArray("old"));
    QCOMPARE(folder.names(), QStringList({u"notes.bak"_s, u"notes.qly"_s}));
}

void tst_SafeFile::aReplacementThatFailsLeavesFileAndBackup()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    folder.write(u"notes.bak"_s, "older");
    {
        SafeFile file(folder(u"notes.qly"_s));
        file.write("new");
        file.flushToDisk();
        file.keepOldFile();
        // Somebody else tidies the folder up.
        QVERIFY(QFile::remove(file.temporaryName()));
        QVERIFY(errorNumberOf([&] { file.replace(); }) != 0);
    }
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("old"));
    QCOMPARE(folder.read(u"notes.bak"_s), QByteArray("older"));
    QCOMPARE(folder.names(), QStringList({u"notes.bak"_s, u"notes.qly"_s}));
}

void tst_SafeFile::aBackupThatCannotBeNamedLeavesTheNewFile()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    QVERIFY(QDir(folder.path()).mkdir(u"notes.bak"_s));
    {
        SafeFile file(folder(u"notes.qly"_s));
        file.write("new");
        file.flushToDisk();
        file.keepOldFile();
        file.replace();
        QCOMPARE(errorNumberOf([&] { file.moveOldFileTo(folder(u"notes.bak"_s)); }), pathFileAccess);
    }
    QCOMPARE(folder.read(u"notes.qly"_s), QByteArray("new"));
    QCOMPARE(folder.names(), QStringList({u"notes.bak"_s, u"notes.qly"_s}));
}

void tst_SafeFile::aPipeInTheFilesPlace()
{
    const TestFolder folder;
    QCOMPARE(mkfifo(qPrintable(folder(u"notes.qly"_s)), 0666), 0);
    QCOMPARE(errorNumberOf([&] { save(folder(u"notes.qly"_s), "new"); }), pathFileAccess);
    QCOMPARE(folder.names(), QStringList(u"notes.qly"_s));
}

void tst_SafeFile::extendedAttributesAreKept()
{
    const TestFolder folder;
    folder.write(u"notes.qly"_s, "old");
    if (setxattr(qPrintable(folder(u"notes.qly"_s)), "user.origin", "here", 4, 0) != 0)
        QSKIP("This file system has no extended attributes");
    save(folder(u"notes.qly"_s), "new");
    char value[10] = {};
    QCOMPARE(getxattr(qPrintable(folder(u"notes.qly"_s)), "user.origin", value, sizeof value), ssize_t(4));
    QCOMPARE(QByteArray(value), QByteArray("here"));
}

void tst_SafeFile::aTemporaryFilesNameTellsWhatItIs()
{
    const TestFolder folder;
    SafeFile file(folder(u"n\u00F6tes.qly"_s));
    const auto stage = [&] {
        return TemporaryName::parse(QFile::encodeName(QFileInfo(file.temporaryName()).fileName()));
    };
    QVERIFY(stage() && stage()->stage == TemporaryName::Part);
    QCOMPARE(QFile::decodeName(stage()->file), u"n\u00F6tes.qly"_s);
    file.flushToDisk();
    QVERIFY(stage() && stage()->stage == TemporaryName::Whole);
    QCOMPARE(QFile::decodeName(stage()->file), u"n\u00F6tes.qly"_s);
    QVERIFY(!TemporaryName::parse(".quillery-aB3dEf"));
    QVERIFY(!TemporaryName::parse("notes.qly"));
    // A long name is cut between two characters.
    const QByteArray longName = QString(99, u'n').toUtf8() + u"\u00F6.qly"_s.toUtf8();
    QCOMPARE(TemporaryName::carried(longName), QByteArray(99, 'n'));
}

QTEST_GUILESS_MAIN(tst_SafeFile)
#include "tst_SafeFile.moc"
