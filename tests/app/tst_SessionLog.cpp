// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/SessionLog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <unistd.h>

using namespace Qt::StringLiterals;

class tst_SessionLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsAreAppendedOldestFirstAndEndWithALineEnd();
    void aLogOf8190CharactersPlusARecordOf30DropsWholeOldestLines();
    void aRecordLongerThanTheLogWithoutALineEndKeepsItsLast8192Characters();
    void bounded_data();
    void bounded();
    void charactersAreCountedNotBytes();
    void aCutNeverLeavesHalfACharacter();
    void aHugeForeignLogIsCutToItsEnd();
    void aLogOfArbitraryBytesIsTolerated();
    void aFolderInTheLogsPlaceIsGivenUpSilently();
    void theStateFolderTakesTheLogWhenTheProgramsCannot();
    void whereNothingCanBeWrittenTheLogIsGivenUp();
    void theStateFolderFollowsTheEnvironment_data();
    void theStateFolderFollowsTheEnvironment();
    void replacingTheLogLeavesNoOtherFile();
    void anInstalledProgramKeepsItsLogOutOfItsFolder();
    void aPipeInTheLogsPlaceDoesNotHoldUpTheStart();

private:
    static QByteArray contents(const QString &folder);
    static void setContents(const QString &folder, const QByteArray &bytes);
};

QByteArray tst_SessionLog::contents(const QString &folder)
{
    QFile file(folder + u"/Quillery.log"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_SessionLog::setContents(const QString &folder, const QByteArray &bytes)
{
    QFile file(folder + u"/Quillery.log"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void tst_SessionLog::recordsAreAppendedOldestFirstAndEndWithALineEnd()
{
    QTemporaryDir folder;
    const SessionLog log({folder.path()});
    QVERIFY(log.append(u"first"_s));
    QVERIFY(log.append(u"Error 5 - words\r\nsource modMain Main"_s));
    QVERIFY(log.append(u"third"_s));
    QCOMPARE(contents(folder.path()), "first\r\nError 5 - words\r\nsource modMain Main\r\nthird\r\n");
}

void tst_SessionLog::aLogOf8190CharactersPlusARecordOf30DropsWholeOldestLines()
{
    QTemporaryDir folder;
    // 91 lines of 90 characters with their line ends are 8190; 30 more must push out exactly the first.
    QByteArray old;
    for (int line = 0; line < 91; ++line)
        old += QByteArray::number(line).rightJustified(88, '-') + "\r\n";
    QCOMPARE(old.size(), 8190);
    setContents(folder.path(), old);
    const SessionLog log({folder.path()});
    QVERIFY(log.append(QString(30, u'x')));
    QCOMPARE(contents(folder.path()), old.mid(90) + QByteArray(30, 'x') + "\r\n");
    QVERIFY(contents(folder.path()).size() <= SessionLog::maximumLength + 2);
}

void tst_SessionLog::aRecordLongerThanTheLogWithoutALineEndKeepsItsLast8192Characters()
{
    QTemporaryDir folder;
    const SessionLog log({folder.path()});
    QVERIFY(log.append(QString(2000, u'a') + QString(8000, u'b')));
    QCOMPARE(contents(folder.path()), QByteArray(192, 'a') + QByteArray(8000, 'b') + "\r\n");
}

void tst_SessionLog::bounded_data()
{
    QTest::addColumn<QString>("whole");
    QTest::addColumn<QString>("kept");
    const QString full(8192, u'f');
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("exactly the bound") << full << full;
    QTest::newRow("one too many in one line") << u'e' + full << full;
    QTest::newRow("a first line that must go") << u"e\r\n"_s + full << full;
    QTest::newRow("empty lines go one by one") << u"\r\n\r\n"_s + full << full;
    QTest::newRow("a last line too long by itself") << u"e\r\ng"_s + full << full;
    QTest::newRow("too long, then a line end") << u'e' + full + u"\r\n"_s << QString();
    QTest::newRow("a bare line feed ends no line") << u"e\n"_s + full.mid(1) << u'\n' + full.mid(1);
    QTest::newRow("no more goes than must")
        << u"e\r\n"_s + full.mid(4) + u"\r\nx"_s << (u"e\r\n"_s + full.mid(4) + u"\r\nx"_s).mid(3);
}

void tst_SessionLog::bounded()
{
    QFETCH(QString, whole);
    QFETCH(QString, kept);
    QCOMPARE(SessionLog::bounded(whole), kept);
}

void tst_SessionLog::charactersAreCountedNotBytes()
{
    QTemporaryDir folder;
    const SessionLog log({folder.path()});
    QVERIFY(log.append(QString(8192, u'ж')));
    QCOMPARE(contents(folder.path()), QString(8192, u'ж').toUtf8() + "\r\n");
    // The old line is read back whole and counts 8192, not 16384.
    QVERIFY(log.append(QString()));
    QCOMPARE(contents(folder.path()), "\r\n");
}

void tst_SessionLog::aCutNeverLeavesHalfACharacter()
{
    const QString pair = u"😀"_s;
    QCOMPARE(SessionLog::bounded(pair + QString(8191, u'x')), QString(8191, u'x'));
}

void tst_SessionLog::aHugeForeignLogIsCutToItsEnd()
{
    QTemporaryDir folder;
    setContents(folder.path(), QByteArray(3'000'000, 'z') + "\r\nlast line\r\n");
    const SessionLog log({folder.path()});
    QVERIFY(log.append(u"new"_s));
    QCOMPARE(contents(folder.path()), "last line\r\nnew\r\n");
}

void tst_SessionLog::aLogOfArbitraryBytesIsTolerated()
{
    QTemporaryDir folder;
    QByteArray bytes;
    for (int value = 0; value < 20000; ++value)
        bytes += static_cast<char>(value * 7919 >> 3);
    setContents(folder.path(), bytes);
    const SessionLog log({folder.path()});
    QVERIFY(log.append(u"new"_s));
    const QString text = QString::fromUtf8(contents(folder.path()));
    QVERIFY(text.endsWith(u"new\r\n"_s));
    QVERIFY(text.size() <= SessionLog::maximumLength + 2);
}

void tst_SessionLog::aFolderInTheLogsPlaceIsGivenUpSilently()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"Quillery.log"_s));
    QVERIFY(!SessionLog({folder.path()}).append(u"record"_s));
}

void tst_SessionLog::theStateFolderTakesTheLogWhenTheProgramsCannot()
{
    QTemporaryDir folder;
    const QString programs = folder.filePath(u"program"_s);
    const QString state = folder.filePath(u"state/Quillery"_s);
    // A file in the folder's place refuses the log whoever runs the test, the superuser included.
    QFile inTheWay(programs);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    const SessionLog log({programs, state});
    QVERIFY(log.append(u"record"_s));
    QCOMPARE(contents(state), "record\r\n");

    if (geteuid() == 0)
        QSKIP("The superuser may write everywhere.");
    const QString readOnly = folder.filePath(u"readonly"_s);
    QVERIFY(QDir().mkdir(readOnly));
    QVERIFY(QFile::setPermissions(readOnly, QFile::ReadOwner | QFile::ExeOwner));
    QVERIFY(SessionLog({readOnly, state}).append(u"second"_s));
    QCOMPARE(contents(state), "record\r\nsecond\r\n");
}

void tst_SessionLog::whereNothingCanBeWrittenTheLogIsGivenUp()
{
    QVERIFY(!SessionLog({u"/dev/null/program"_s, u"/dev/null/state"_s}).append(u"record"_s));
}

void tst_SessionLog::theStateFolderFollowsTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("expected");
    const QString byDefault = QDir::homePath() + u"/.local/state/Quillery"_s;
    QTest::newRow("set") << QByteArray("/var/state") << u"/var/state/Quillery"_s;
    QTest::newRow("empty") << QByteArray("") << byDefault;
    QTest::newRow("relative counts as none") << QByteArray("state") << byDefault;
}

void tst_SessionLog::theStateFolderFollowsTheEnvironment()
{
    QFETCH(QByteArray, variable);
    QFETCH(QString, expected);
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", variable);
    const QStringList folders = SessionLog::folders(u"/opt/quillery/bin"_s);
    qputenv("XDG_STATE_HOME", before);
    QCOMPARE(folders, QStringList({u"/opt/quillery/bin"_s, expected}));
}

void tst_SessionLog::anInstalledProgramKeepsItsLogOutOfItsFolder()
{
    const QTemporaryDir prefix;
    QVERIFY(QDir(prefix.path()).mkpath(u"bin"_s));
    const QString programs = prefix.filePath(u"bin"_s);
    QCOMPARE(SessionLog::folders(programs).first(), programs);
    QVERIFY(QDir(prefix.path()).mkpath(u"share/quillery"_s));
    const QStringList folders = SessionLog::folders(programs);
    QCOMPARE(folders.size(), 1);
    QVERIFY(folders.first().endsWith(u"/Quillery"_s));
    // One that runs from the folder it was built in has its manual beside it.
    setContents(programs, QByteArray());
    QVERIFY(QFile::copy(programs + u"/Quillery.log"_s, programs + u"/Help.qly"_s));
    QCOMPARE(SessionLog::folders(programs).first(), programs);
}

void tst_SessionLog::aPipeInTheLogsPlaceDoesNotHoldUpTheStart()
{
    const QTemporaryDir folder;
    QCOMPARE(mkfifo(qPrintable(folder.filePath(u"Quillery.log"_s)), 0600), 0);
    const SessionLog log({folder.path()});
    log.append(u"a record"_s);
}

void tst_SessionLog::replacingTheLogLeavesNoOtherFile()
{
    QTemporaryDir folder;
    const SessionLog log({folder.path()});
    QVERIFY(log.append(u"one"_s));
    QVERIFY(log.append(u"two"_s));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(u"Quillery.log"_s));
}

QTEST_GUILESS_MAIN(tst_SessionLog)
#include "tst_SessionLog.moc"
