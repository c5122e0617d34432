// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/AppFixture.h"
#include "util/FullPath.h"
#include "util/RunTimeError.h"

#include <QLocale>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_modMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anArgumentWithABlankIsAFileWhenItNamesOne();
    void init();

    void cleanup() { m_app.reset(); }

    void withNothingToOpenTheProgramStartsWithoutADocument();
    void bothStartOptionsOpenTheOldDocumentsAndANewOne();
    void aMissingFileOnTheCommandLineIsSkippedAndNothingElseOpened();
    void twoBlanksBetweenNamesAreNoName();
    void aFileNamedTwiceIsOpenedOnce();
    void quotesMeanNothingOnTheCommandLine();
    void namesAreTakenFromTheCurrentFolder();
    void aCommandLineThatNamesNoFileCountsAsNone();
    void aFailedFileEndsTheOpeningOfFurtherOnes();
    void aDeletedFileOfTheLastRunIsSkippedAndForgottenAtExit();
    void aDamagedDocumentOfTheLastRunHidesNoOther();
    void moreThanNineDocumentsComeBackInTheirOrder();
    void anUntitledDocumentIsStoredAsAnEmptyValue();
    void theSessionIsLoggedFromStartToEnd();
    void finaliseStoresSettingsRecentFilesAndDocuments();
    void anErrorIsRecordedWithItsSourceAndRoutine();
    void theBaseOfObjectErrorsIsRecordedAsZero();
    void anErrorAboveTheBaseIsRecordedAsItStands();
    void anErrorGivesThePointerBack();
    void anErrorReportWithoutALogIsGivenUp();

private:
    void putWorkspace(const QStringList &files);
    QStringList workspace() const;

    std::unique_ptr<AppFixture> m_app;
};

void tst_modMain::init()
{
    m_app = std::make_unique<AppFixture>();
    modMain::InitialiseGlobals();
}

void tst_modMain::putWorkspace(const QStringList &files)
{
    for (qsizetype i = 0; i < files.size(); ++i)
        m_app->settings.values[{u"Workspace"_s, QString::number(i + 1)}] = files.at(i);
}

QStringList tst_modMain::workspace() const
{
    QStringList stored;
    for (const auto &[key, file] : m_app->settings.section(u"Workspace"_s))
        stored.append(key + u'=' + file);
    return stored;
}

void tst_modMain::withNothingToOpenTheProgramStartsWithoutADocument()
{
    modMain::LoadInitialFiles();
    QVERIFY(m_app->core.windows.open.empty());
    QCOMPARE(m_app->logLines(), QStringList());
}

void tst_modMain::bothStartOptionsOpenTheOldDocumentsAndANewOne()
{
    const QStringList old{m_app->makeFile(u"a.qly"_s), m_app->makeFile(u"b.qly"_s)};
    putWorkspace(old);
    g_options.StartWithNewDocument = true;
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), old + QStringList(QString()));
}

void tst_modMain::aMissingFileOnTheCommandLineIsSkippedAndNothingElseOpened()
{
    const QString there = m_app->makeFile(u"there.qly"_s);
    putWorkspace({m_app->makeFile(u"old.qly"_s)});
    g_options.StartWithNewDocument = true;
    appPorts().commandLine = m_app->folder.filePath(u"missing.qly"_s) + u' ' + there;
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), QStringList(there));
}

void tst_modMain::twoBlanksBetweenNamesAreNoName()
{
    const QString a = m_app->makeFile(u"a.qly"_s);
    const QString b = m_app->makeFile(u"b.qly"_s);
    QCOMPARE(modMain::GetCommandLineFiles(u"  "_s + a + u"  "_s + b + u' '), QStringList({a, b}));
    appPorts().commandLine = a + u"  "_s + b;
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), QStringList({a, b}));
}

void tst_modMain::aFileNamedTwiceIsOpenedOnce()
{
    const QString a = m_app->makeFile(u"a.qly"_s);
    const QString b = m_app->makeFile(u"b.qly"_s);
    const QString alias = m_app->folder.filePath(u"link.qly"_s);
    QVERIFY(QFile::link(a, alias));
    appPorts().commandLine = a + u' ' + b + u' ' + alias;
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), QStringList({a, b}));
    QCOMPARE(DocumentActive()->m_sFile, a);
}

void tst_modMain::quotesMeanNothingOnTheCommandLine()
{
    const QString withBlank = m_app->makeFile(u"my notes.qly"_s);
    const QString plain = m_app->makeFile(u"notes.qly\""_s);
    const QStringList files = modMain::GetCommandLineFiles(u'"' + withBlank + u"\" "_s + plain);
    QCOMPARE(files, QStringList(plain));
}

void tst_modMain::namesAreTakenFromTheCurrentFolder()
{
    m_app->makeFile(u"ж.qly"_s);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_app->folder.path()));
    const QStringList files = modMain::GetCommandLineFiles(u"./ж.qly . missing"_s);
    const QString expected = FullPathName(u"ж.qly"_s);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(QDir::isAbsolutePath(expected));
    QCOMPARE(files, QStringList(expected));
}

void tst_modMain::aCommandLineThatNamesNoFileCountsAsNone()
{
    QCOMPARE(modMain::GetCommandLineFiles(QString()), QStringList(QString()));
    const QStringList old{m_app->makeFile(u"old.qly"_s)};
    putWorkspace(old);
    appPorts().commandLine = m_app->folder.filePath(u"missing.qly"_s) + u' ' + m_app->folder.path();
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), old);
}

void tst_modMain::aFailedFileEndsTheOpeningOfFurtherOnes()
{
    const QString bad = m_app->makeFile(u"bad.qly"_s, "bad");
    const QString good = m_app->makeFile(u"good.qly"_s);
    putWorkspace({m_app->makeFile(u"old.qly"_s)});
    g_options.StartWithNewDocument = true;
    appPorts().commandLine = good + u' ' + bad + u' ' + good;
    modMain::LoadInitialFiles();
    // The failed window stays, without its file's name.
    QCOMPARE(m_app->openFiles(), QStringList({good, QString()}));
    QCOMPARE(m_app->logLines().size(), 2);
    QVERIFY(m_app->logLines().first().startsWith(u"Error 13 - "_s));
}

void tst_modMain::aDeletedFileOfTheLastRunIsSkippedAndForgottenAtExit()
{
    const QString a = m_app->makeFile(u"a.qly"_s);
    const QString b = m_app->makeFile(u"b.qly"_s);
    putWorkspace({a, m_app->folder.filePath(u"gone.qly"_s), b});
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), QStringList({a, b}));
    QVERIFY(m_app->core.dialogs.warnings.isEmpty());
    QCOMPARE(m_app->logLines(), QStringList());
    modMain::SaveWorkingFiles();
    QCOMPARE(workspace(), QStringList({u"1="_s + a, u"2="_s + b}));
}

void tst_modMain::aDamagedDocumentOfTheLastRunHidesNoOther()
{
    const QString bad = m_app->makeFile(u"bad.qly"_s, "bad");
    const QString good = m_app->makeFile(u"good.qly"_s);
    putWorkspace({bad, good});
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), QStringList({QString(), good}));
}

void tst_modMain::moreThanNineDocumentsComeBackInTheirOrder()
{
    QStringList files;
    for (int number = 1; number <= 12; ++number)
        files.append(m_app->makeFile(u"%1.qly"_s.arg(number)));
    putWorkspace(files);
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), files);
}

void tst_modMain::anUntitledDocumentIsStoredAsAnEmptyValue()
{
    m_app->core.windows.createDocument();
    m_app->core.windows.createDocument().m_sFile = u"/docs/a.qly"_s;
    modMain::SaveWorkingFiles();
    QCOMPARE(workspace(), QStringList({u"1="_s, u"2=/docs/a.qly"_s}));
    m_app->core.windows.open.clear();
    m_app->core.windows.active = nullptr;
    modMain::LoadWorkingFiles();
    QVERIFY(m_app->core.windows.open.empty());
}

void tst_modMain::theSessionIsLoggedFromStartToEnd()
{
    modMain::Initialise();
    m_app->clock.moment = m_app->clock.moment.addSecs(3600);
    modMain::Finalise();
    const auto moment = [](const QTime &time) {
        const QLocale locale = QLocale::system();
        return locale.toString(QDate(2026, 3, 4), QLocale::ShortFormat) + u' ' +
               locale.toString(time, QLocale::ShortFormat);
    };
    QCOMPARE(m_app->logLines(), QStringList({u"Session started at "_s + moment(QTime(15, 6, 7)),
                                             u"Session ended at "_s + moment(QTime(16, 6, 7))}));
}

void tst_modMain::finaliseStoresSettingsRecentFilesAndDocuments()
{
    const QString file = m_app->makeFile(u"a.qly"_s);
    appPorts().commandLine = file;
    modMain::Initialise();
    modMain::Finalise();
    QStringList sections;
    for (const QString &written : std::as_const(m_app->settings.written)) {
        const QString section = written.section(u'/', 0, 0);
        if (sections.isEmpty() || sections.last() != section)
            sections.append(section);
    }
    QCOMPARE(sections, QStringList({u"OutlineFont"_s, u"Settings"_s, u"MRU"_s, u"Workspace"_s}));
    QCOMPARE(m_app->settings.value(u"MRU"_s, u"1"_s), file);
    QCOMPARE(workspace(), QStringList(u"1="_s + file));
}

void tst_modMain::anErrorIsRecordedWithItsSourceAndRoutine()
{
    procedure("modDoc DocSave", [] { throw RunTimeError(ErrorNumber::DiskFull, u"Disk full: /x"_s, u"Files"_s); });
    QCOMPARE(m_app->logLines(), QStringList({u"Error 61 - Disk full: /x"_s, u"Files modDoc DocSave"_s}));
}

void tst_modMain::theBaseOfObjectErrorsIsRecordedAsZero()
{
    g_sProcedure = u"modNodes NodeInsert"_s;
    modMain::ReportError({-2147221504, u"words"_s, u"TreeView"_s});
    QCOMPARE(m_app->logLines(),
             QStringList({u"Error returned by VB object 0 - words"_s, u"TreeView modNodes NodeInsert"_s}));
}

void tst_modMain::anErrorAboveTheBaseIsRecordedAsItStands()
{
    modMain::ReportError({-2147221503, u"words"_s, u"TreeView"_s});
    QCOMPARE(m_app->logLines().value(0), u"Error -2147221503 - words"_s);
}

void tst_modMain::anErrorGivesThePointerBack()
{
    ports().pointer->setHourglass(true);
    procedure("modDoc DocLoad", [] { throw RunTimeError(ErrorNumber::Overflow); });
    QVERIFY(!m_app->core.pointer.hourglass);
}

void tst_modMain::anErrorReportWithoutALogIsGivenUp()
{
    const SessionLog nowhere({u"/dev/null/log"_s});
    appPorts().log = &nowhere;
    ports().pointer->setHourglass(true);
    procedure("modDoc DocLoad", [] { throw RunTimeError(ErrorNumber::Overflow); });
    QVERIFY(!m_app->core.pointer.hourglass);
    appPorts().log = nullptr;
    modMain::WriteLog(u"before there is a log"_s);
}

void tst_modMain::anArgumentWithABlankIsAFileWhenItNamesOne()
{
    const QString whole = m_app->makeFile(u"my notes.txt"_s);
    const QString first = m_app->makeFile(u"a.txt"_s);
    const QString second = m_app->makeFile(u"b.txt"_s);
    QCOMPARE(modMain::GetArgumentFiles({whole, first + u"  "_s + second, QString()}),
             QStringList({whole, first, second, QString()}));
    appPorts().arguments = {whole};
    appPorts().commandLine = whole;
    modMain::LoadInitialFiles();
    QCOMPARE(m_app->openFiles(), QStringList(whole));
}

QTEST_GUILESS_MAIN(tst_modMain)
#include "tst_modMain.moc"
