// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/SafeFile.h"
#include "document/TemporaryName.h"
#include "document/UnfinishedSaves.h"
#include "document/modDoc.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"
#include "support/Obstacles.h"
#include "util/ByteSink.h"

#include <QDateTime>
#include <QTest>

#include <sys/wait.h>

using namespace Qt::StringLiterals;

// What is done with the temporary files of saves that were cut short.
class tst_UnfinishedSaves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void whatIsNotWholeGoesSilently();
    void whatIsOlderThanItsFileGoesSilently();
    void whatIsTheSameAsItsFileGoesSilently();
    void whatIsBeingWrittenStays();
    void anotherDocumentsContentWaitsForThatDocument();
    void filesOfOtherNamesAreLeftAlone();

    void wholeContentIsOffered_data();
    void wholeContentIsOffered();
    void contentOfAFileThatNeverWasIsOffered();
    void twoOfAFileThatNeverWasAreEachAskedAboutOnce_data();
    void twoOfAFileThatNeverWasAreEachAskedAboutOnce();
    void aNameThatIsTakenGetsANumber();
    void contentIsOfferedThroughALink();
    void aFileDamagedInPlaceIsOfferedOldAndNew_data();
    void aFileDamagedInPlaceIsOfferedOldAndNew();
    void whatWasWrittenInPlaceToItsEndIsNotOffered();

private:
    enum Stage { Writing, Written };

    QString path(const QString &name) const { return (*m_folder)(name); }

    // A save of that file ends here, as in a crash.
    void crash(const QString &name, const QByteArray &content, Stage stage = Written) const;
    // Makes a file look older or newer.
    void setAge(const QString &name, int seconds) const;

    std::unique_ptr<FakePorts> m_fake;
    std::unique_ptr<ErrorRecorder> m_errors;
    std::unique_ptr<TestFolder> m_folder;
};

namespace
{

// The bytes of a file of one entry.
QByteArray outline(const QString &label)
{
    return nativeBytes({label});
}

} // namespace

void tst_UnfinishedSaves::init()
{
    m_fake = std::make_unique<FakePorts>();
    m_errors = std::make_unique<ErrorRecorder>();
    m_folder = std::make_unique<TestFolder>();
    m_folder->write(u"notes.qly"_s, outline(u"old"_s));
    setAge(u"notes.qly"_s, 60);
}

void tst_UnfinishedSaves::cleanup()
{
    const QStringList errors = m_errors->summary();
    const bool allAsked = m_fake->dialogs.answers.empty();
    m_errors.reset();
    m_fake.reset();
    m_folder.reset();
    QVERIFY(allAsked);
    QCOMPARE(errors, QStringList());
}

void tst_UnfinishedSaves::crash(const QString &name, const QByteArray &content, Stage stage) const
{
    const pid_t child = fork();
    if (child == 0) {
        auto *file = new SafeFile(path(name));
        file->write(content);
        if (stage == Written) {
            file->flushToDisk();
            file->keepOldFile();
        }
        _exit(0);
    }
    QVERIFY(child > 0 && waitpid(child, nullptr, 0) == child);
}

void tst_UnfinishedSaves::setAge(const QString &name, int seconds) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds), QFileDevice::FileModificationTime));
}

void tst_UnfinishedSaves::whatIsNotWholeGoesSilently()
{
    crash(u"notes.qly"_s, QByteArray(3 << 20, 'n'), Writing);
    QCOMPARE(m_folder->names().size(), 2);
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QCOMPARE(m_folder->names(), QStringList(u"notes.qly"_s));
    QCOMPARE(m_folder->read(u"notes.qly"_s), outline(u"old"_s));
}

void tst_UnfinishedSaves::whatIsOlderThanItsFileGoesSilently()
{
    crash(u"notes.qly"_s, outline(u"unfinished"_s));
    setAge(u"notes.qly"_s, -60);
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QVERIFY(m_folder->names().filter(u".quillery-whole"_s).isEmpty());
    QCOMPARE(m_folder->read(u"notes.qly"_s), outline(u"old"_s));
}

void tst_UnfinishedSaves::whatIsTheSameAsItsFileGoesSilently()
{
    crash(u"notes.qly"_s, outline(u"old"_s));
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QVERIFY(m_folder->names().filter(u".quillery-whole"_s).isEmpty());
}

void tst_UnfinishedSaves::whatIsBeingWrittenStays()
{
    SafeFile file(path(u"notes.qly"_s));
    file.write(outline(u"new"_s));
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    file.flushToDisk();
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    file.keepOldFile();
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    file.replace();
    file.moveOldFileTo(path(u"notes.bak"_s));
    QCOMPARE(m_folder->read(u"notes.qly"_s), outline(u"new"_s));
    QCOMPARE(m_folder->read(u"notes.bak"_s), outline(u"old"_s));
}

void tst_UnfinishedSaves::anotherDocumentsContentWaitsForThatDocument()
{
    m_folder->write(u"other.qly"_s, outline(u"other"_s));
    crash(u"notes.qly"_s, outline(u"unfinished"_s));
    QVERIFY(modDoc::DocLoad(path(u"other.qly"_s)));
    QVERIFY(m_fake->dialogs.questions.isEmpty());
    QCOMPARE(m_folder->names().filter(u".quillery-whole"_s).size(), 1);
}

void tst_UnfinishedSaves::filesOfOtherNamesAreLeftAlone()
{
    const QStringList names = {u".quillery-notes"_s, u".quillery-part-XXXXXX"_s, u".quillery-part-abc"_s};
    for (const QString &name : names)
        m_folder->write(name, "somebody's");
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QCOMPARE(m_folder->names(), names + QStringList(u"notes.qly"_s));
}

void tst_UnfinishedSaves::wholeContentIsOffered_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::newRow("yes: it becomes a file and a document") << Answer::Yes;
    QTest::newRow("no: it goes") << Answer::No;
    QTest::newRow("cancel: it is offered again") << Answer::Cancel;
}

void tst_UnfinishedSaves::wholeContentIsOffered()
{
    QFETCH(const Answer, answer);
    crash(u"notes.qly"_s, outline(u"unfinished"_s));
    m_fake->dialogs.answers = {answer};
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
    QVERIFY(m_fake->dialogs.questions[0].contains(path(u"notes.qly"_s)));
    QCOMPARE(m_folder->read(u"notes.qly"_s), outline(u"old"_s));
    const QString sNamed = u"notes (unfinished save).qly"_s;
    QCOMPARE(QFile::exists(path(sNamed)), answer == Answer::Yes);
    QCOMPARE(m_folder->names().filter(u".quillery-whole"_s).size(), answer == Answer::Cancel ? 1 : 0);
    if (answer == Answer::Yes) {
        QCOMPARE(m_folder->read(sNamed), outline(u"unfinished"_s));
        QCOMPARE(m_fake->windows.open.size(), size_t(2));
        QCOMPARE(m_fake->windows.active->document.m_sFile, path(sNamed));
        QCOMPARE(m_fake->windows.active->document.tree.root()->label(), u"unfinished"_s);
    }
    m_fake->dialogs.questions.clear();
    if (answer == Answer::Cancel)
        m_fake->dialogs.answers = {Answer::No};
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QCOMPARE(m_fake->dialogs.questions.size(), answer == Answer::Cancel ? 1 : 0);
}

void tst_UnfinishedSaves::contentOfAFileThatNeverWasIsOffered()
{
    crash(u"new.qly"_s, outline(u"never saved before"_s));
    m_fake->dialogs.answers = {Answer::Yes};
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QCOMPARE(m_folder->read(u"new.qly"_s), outline(u"never saved before"_s));
    QCOMPARE(m_fake->windows.active->document.m_sFile, path(u"new.qly"_s));
}

void tst_UnfinishedSaves::twoOfAFileThatNeverWasAreEachAskedAboutOnce_data()
{
    QTest::addColumn<Answer>("first");
    QTest::addColumn<Answer>("second");
    QTest::newRow("both are kept") << Answer::Yes << Answer::Yes;
    QTest::newRow("the first is kept") << Answer::Yes << Answer::No;
    QTest::newRow("the second is kept") << Answer::No << Answer::Yes;
    QTest::newRow("the second is kept, the first waits") << Answer::Cancel << Answer::Yes;
    QTest::newRow("both wait") << Answer::Cancel << Answer::Cancel;
}

void tst_UnfinishedSaves::twoOfAFileThatNeverWasAreEachAskedAboutOnce()
{
    QFETCH(const Answer, first);
    QFETCH(const Answer, second);
    crash(u"new.qly"_s, outline(u"earlier"_s));
    setAge(m_folder->names().filter(u".quillery-whole"_s)[0], 30);
    crash(u"new.qly"_s, outline(u"later"_s));
    m_fake->dialogs.answers = {first, second};
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QCOMPARE(m_fake->dialogs.questions.size(), 2);
    const int kept = (first == Answer::Yes ? 1 : 0) + (second == Answer::Yes ? 1 : 0);
    const int waiting = (first == Answer::Cancel ? 1 : 0) + (second == Answer::Cancel ? 1 : 0);
    QCOMPARE(m_fake->windows.open.size(), size_t(1 + kept));
    QCOMPARE(m_folder->names().filter(u".quillery-whole"_s).size(), waiting);
    // The file's own name is for the last that is decided about.
    const bool laterIsLast = second == Answer::Yes && first != Answer::Cancel;
    QCOMPARE(m_folder->read(u"new.qly"_s), laterIsLast ? outline(u"later"_s) : QByteArray());
    const QByteArray beside = m_folder->read(u"new (unfinished save).qly"_s);
    QCOMPARE(beside, first == Answer::Yes        ? outline(u"earlier"_s)
                     : kept == 1 && !laterIsLast ? outline(u"later"_s)
                                                 : QByteArray());
}

void tst_UnfinishedSaves::aNameThatIsTakenGetsANumber()
{
    crash(u"notes.qly"_s, outline(u"unfinished"_s));
    m_folder->write(u"notes (unfinished save).qly"_s, outline(u"an earlier one"_s));
    m_fake->dialogs.answers = {Answer::Yes};
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QCOMPARE(m_folder->read(u"notes (unfinished save).qly"_s), outline(u"an earlier one"_s));
    QCOMPARE(m_folder->read(u"notes (unfinished save 2).qly"_s), outline(u"unfinished"_s));
}

void tst_UnfinishedSaves::contentIsOfferedThroughALink()
{
    QVERIFY(QFile::link(path(u"notes.qly"_s), path(u"link.qly"_s)));
    crash(u"link.qly"_s, outline(u"unfinished"_s));
    m_fake->dialogs.answers = {Answer::Yes};
    QVERIFY(modDoc::DocLoad(path(u"link.qly"_s)));
    QCOMPARE(m_folder->read(u"notes (unfinished save).qly"_s), outline(u"unfinished"_s));
    QVERIFY(QFileInfo(path(u"link.qly"_s)).isSymLink());
}

void tst_UnfinishedSaves::aFileDamagedInPlaceIsOfferedOldAndNew_data()
{
    QTest::addColumn<bool>("beside");
    QTest::newRow("beside it") << true;
    QTest::newRow("in the folder of those that take no new file") << false;
}

void tst_UnfinishedSaves::aFileDamagedInPlaceIsOfferedOldAndNew()
{
    QFETCH(const bool, beside);
    const TestFolder state;
    qputenv("XDG_STATE_HOME", QFile::encodeName(state.path()));
    const QString side = beside ? m_folder->path() : sideFolder(m_folder->path());
    QVERIFY(QDir().mkpath(side));
    m_folder->write(u"notes.qly"_s, outline(u"neither"_s));
    for (const auto &[stage, content] :
         {std::pair(TemporaryName::Before, outline(u"old"_s)), {TemporaryName::Over, outline(u"new"_s)}}) {
        QFile file(side + u'/' + QFile::decodeName(TemporaryName{stage, "abcdef", "notes.qly"}.text()));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    setAge(u"notes.qly"_s, -60);
    m_fake->dialogs.answers = {Answer::Yes, Answer::Yes};
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QVERIFY(m_fake->dialogs.questions.size() == 2);
    QVERIFY(m_fake->dialogs.questions[0].contains(path(u"notes.qly"_s)));
    QVERIFY(m_fake->dialogs.questions[0].contains(u"damaged"_s));
    QVERIFY(!m_fake->dialogs.questions[1].contains(u"damaged"_s));
    const TestFolder &named = beside ? *m_folder : state;
    const QString where = beside ? QString() : u"Quillery/"_s;
    QCOMPARE(named.read(where + u"notes (before the save).qly"_s), outline(u"old"_s));
    QCOMPARE(named.read(where + u"notes (unfinished save).qly"_s), outline(u"new"_s));
    QCOMPARE(m_fake->windows.open.size(), size_t(3));
    // Asked once.
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    QCOMPARE(m_fake->dialogs.questions.size(), 2);
    QVERIFY(beside || !QFileInfo::exists(side));
}

void tst_UnfinishedSaves::whatWasWrittenInPlaceToItsEndIsNotOffered()
{
    for (const QByteArray &held : {outline(u"old"_s), outline(u"new"_s)}) {
        m_folder->write(u"notes.qly"_s, held);
        m_folder->write(QFile::decodeName(TemporaryName{TemporaryName::Before, "abcdef", "notes.qly"}.text()),
                        outline(u"old"_s));
        m_folder->write(QFile::decodeName(TemporaryName{TemporaryName::Over, "abcdef", "notes.qly"}.text()),
                        outline(u"new"_s));
        if (held == outline(u"old"_s))
            m_fake->dialogs.answers = {Answer::No}; // the new content, which has not reached the file
        QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
        QCOMPARE(m_folder->names(), QStringList(u"notes.qly"_s));
        QCOMPARE(m_folder->read(u"notes.qly"_s), held);
    }
}

QTEST_GUILESS_MAIN(tst_UnfinishedSaves)
#include "tst_UnfinishedSaves.moc"
