// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RawOutline.h"
#include "vault/RecoveryFixture.h"

#include "model/EntryText.h"
#include "util/RunTimeError.h"

#include <QRandomGenerator>
#include <QTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class tst_Journal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void nothingIsKeptOfADocumentThatIsNotChanged();
    void aChangeIsThereAtTheNextLook();
    void typedTextIsThereWithinTwoSeconds();
    void typingIsTakenDownOnceASecondAndNotAtEachKey();
    void aStretchOfTypingTakesOneRecord();
    void ofALongTextWhatWasChangedIsTakenDown();
    void aTextOfAnotherProgramsIsKeptOnceAsThisOneWritesIt();
    void whatIsChangedHereAndThereIsKeptAnewWhenItIsMuch();
    void longTextsAreTypedIntoByTurns();
    void aTextThatWasLostIsTakenDownAnew();
    void aDatabaseOfBeforeLongTextsWereFollowedIsRead();
    void aProgramOfBeforeThatLeavesTheDatabaseAlone();
    void aDocumentThatNeverHadAFileIsKept();
    void whatWasImportedIsKeptBeforeItIsChanged();
    void whatAFileHeldIsKeptWhenItIsNowhereElse();
    void aNewDocumentInWhichNothingWasDoneIsNot();
    void theStepsKeepTheirNamesAndTimes();
    void whatWasUndoneCanBeRedone();
    void goingBackBehindTheSaveIsTakenDown();
    void savingLeavesNothing();
    void theNextChangeAfterASaveBeginsAnew();
    void closingLeavesNothing();
    void theEndOfASessionLeavesWhatIsUnsaved();
    void undoneToWhatWasSavedNothingIsOffered();
    void aLogThatOutgrowsTheDocumentIsBegunAnew();
    void aRunningProgramsDatabaseIsTakenByNobody();
    void aProgramThatHasEndedHoldsNothingThoughNobodyAskedForItsEnd();
    void twoStartsAtOnceDoNotOfferTheSame();
    void nobodyElseMayReadIt();
    void aFullDiskIsToldAndTriedAgain();
    void aFolderThatCannotBeMadeIsToldAndTriedAgain();
    void aDatabaseThatIsGoneIsBegunAnew();

private:
    // Lets time pass, and looks as often as the program does.
    void pass(qint64 milliseconds);
    // What a start would find if the program were killed now.
    std::vector<std::unique_ptr<LeftBehind>> leftNow();
    QStringList recoveredNow();
    void openDocument(const QString &file);
    Entry *addLong(const QByteArray &text);
    // Of the database that would be left now.
    qint64 numberNow(const QString &query);

    std::unique_ptr<QTemporaryDir> m_folder;
    qint64 m_time = 0;
    int m_crashes = 0;
    std::unique_ptr<Vault> m_vault;
    std::unique_ptr<Document> m_document;
    Entry *m_root = nullptr;
};

void tst_Journal::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_time = 5'000'000;
    m_vault = std::make_unique<Vault>(
        Vault::Settings{m_folder->filePath(u"state/recovery"_s), [this] { return m_time; }, false});
    openDocument(u"/nowhere/notes.qly"_s);
}

void tst_Journal::cleanup()
{
    m_document.reset();
    m_vault.reset();
}

void tst_Journal::openDocument(const QString &file)
{
    auto outline = std::make_unique<Outline>();
    m_root = outline->tree.insert(Relationship::tvwFirst, nullptr);
    outline->tree.setLabel(m_root, u"root"_s);
    m_document = std::make_unique<Document>(std::move(outline));
    m_document->m_sFile = file;
    m_vault->attach(*m_document);
}

void tst_Journal::pass(qint64 milliseconds)
{
    for (; milliseconds > 0; milliseconds -= Journal::lookInterval) {
        m_time += std::min(milliseconds, Journal::lookInterval);
        m_vault->look();
        QVERIFY(m_vault->waitUntilWritten());
    }
}

std::vector<std::unique_ptr<LeftBehind>> tst_Journal::leftNow()
{
    const QString crashed = m_folder->filePath(u"crashed %1"_s.arg(++m_crashes));
    m_vault->waitUntilWritten();
    copyAsLeft(m_vault->folder(), crashed);
    return LeftBehind::find(crashed);
}

QStringList tst_Journal::recoveredNow()
{
    const auto left = leftNow();
    return left.size() == 1 ? documentState(*recoveredFrom(*left.front()).document) : QStringList();
}

void tst_Journal::nothingIsKeptOfADocumentThatIsNotChanged()
{
    m_document->history.setExpanded(m_root, true);
    pass(3000);
    QVERIFY(!QFileInfo::exists(m_vault->folder()));
}

void tst_Journal::aChangeIsThereAtTheNextLook()
{
    m_document->history.setLabel(m_root, u"renamed"_s);
    pass(Journal::lookInterval);
    QCOMPARE(recoveredNow(), documentState(*m_document));
}

void tst_Journal::typedTextIsThereWithinTwoSeconds()
{
    typeInto(*m_document, *m_root, u"words"_s);
    pass(500);
    typeInto(*m_document, *m_root, u" and more"_s);
    const QStringList expected = documentState(*m_document);
    pass(1500);
    QCOMPARE(recoveredNow(), expected);
}

void tst_Journal::typingIsTakenDownOnceASecondAndNotAtEachKey()
{
    int batches = 0;
    m_vault->writer().setObstacle([&batches] { ++batches; });
    for (int key = 0; key < 40; ++key) {
        typeInto(*m_document, *m_root, u"x"_s);
        pass(Journal::lookInterval);
    }
    // One of them is that of the document as it was.
    QVERIFY2(batches >= 7 && batches <= 11, qPrintable(QString::number(batches)));
}

void tst_Journal::aStretchOfTypingTakesOneRecord()
{
    for (int key = 0; key < 60; ++key) {
        typeInto(*m_document, *m_root, u"x"_s);
        pass(Journal::lookInterval);
    }
    pass(2000);
    const auto left = leftNow();
    QCOMPARE(left.size(), size_t(1));
    QCOMPARE(left.front()->read().records.size(), size_t(1));
    QCOMPARE(left.front()->state().steps, 1);
}

namespace
{

// As this program writes it.
QByteArray longText(int paragraphs)
{
    QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 ");
    for (int line = 0; line < paragraphs; ++line)
        rtf += "the quick brown fox no. " + QByteArray::number(line) + " {\\b jumps} over {\\i the lazy} dog\\par\n";
    return EntryText(rtf + "}", QFont()).toRtf();
}

// Where the middle of a text is, once it is shown.
QTextCursor middleOf(Document &document, const Entry &entry)
{
    const std::shared_ptr<EntryDocument> live = document.texts.open(entry, QFont());
    document.texts.setShown(live);
    live->document().documentLayout();
    QTextCursor cursor(&live->document());
    cursor.setPosition(live->document().characterCount() / 2);
    return cursor;
}

} // namespace

Entry *tst_Journal::addLong(const QByteArray &text)
{
    Entry *entry = m_document->history.insert(Relationship::tvwChild, m_root);
    m_document->history.setStoredText(entry, compressedText(text));
    m_document->history.markSaved();
    return entry;
}

qint64 tst_Journal::numberNow(const QString &query)
{
    const QString copy = m_folder->filePath(u"looked at %1"_s.arg(++m_crashes));
    copyAsLeft(m_vault->folder(), copy);
    RecoveryDatabase database(recoveryPaths(copy).value(0), Database::Opening::Existing);
    return database.database().value(query).toLongLong();
}

void tst_Journal::ofALongTextWhatWasChangedIsTakenDown()
{
    QTextCursor cursor = middleOf(*m_document, *addLong(longText(5000)));
    for (int key = 0; key < 60; ++key) {
        cursor.insertText(u"x"_s);
        pass(Journal::lookInterval);
    }
    pass(2000);
    QCOMPARE(recoveredNow(), documentState(*m_document));
    QCOMPARE(numberNow(u"SELECT count(*) FROM log"_s), 1);
    QVERIFY(numberNow(u"SELECT length(record) FROM log"_s) < 1000);
    QCOMPARE(numberNow(u"SELECT count(*) FROM texts"_s), 0);
}

void tst_Journal::aTextOfAnotherProgramsIsKeptOnceAsThisOneWritesIt()
{
    QByteArray text("{\\rtf1\\ansi{\\fonttbl{\\f7 Courier;}}\\f7 ");
    for (int line = 0; line < 300; ++line)
        text += "{\\f7\\b0 another way to say} it no. " + QByteArray::number(line) + "\\par ";
    QTextCursor cursor = middleOf(*m_document, *addLong(text + "}"));
    for (int key = 0; key < 60; ++key) {
        cursor.insertText(u"x"_s);
        pass(Journal::lookInterval);
    }
    pass(2000);
    QCOMPARE(recoveredNow(), documentState(*m_document));
    QVERIFY(numberNow(u"SELECT length(record) FROM log"_s) < 1000);
    QCOMPARE(numberNow(u"SELECT count(*) FROM texts"_s), 1);
}

void tst_Journal::whatIsChangedHereAndThereIsKeptAnewWhenItIsMuch()
{
    QTextCursor cursor = middleOf(*m_document, *addLong(longText(200)));
    for (int place = 0; place < 200; ++place) {
        cursor.setPosition((place * 997) % cursor.document()->characterCount());
        cursor.insertText(u"word %1 and more of it"_s.arg(place));
        pass(Journal::typingDelay + Journal::lookInterval);
        // Each stretch has a record of its own.
        if (place % 20 == 19)
            m_document->history.setLabel(m_root, QString::number(place));
    }
    pass(2000);
    QCOMPARE(recoveredNow(), documentState(*m_document));
    const qint64 texts = numberNow(u"SELECT count(*) FROM texts"_s);
    QVERIFY2(texts > 0 && texts < 10, qPrintable(QString::number(texts)));
}

void tst_Journal::longTextsAreTypedIntoByTurns()
{
    Entry *one = addLong(longText(100));
    Entry *other = addLong(longText(120));
    for (int turn = 0; turn < 6; ++turn) {
        QTextCursor cursor = middleOf(*m_document, turn % 2 ? *one : *other);
        cursor.insertText(u"turn %1"_s.arg(turn));
        if (turn == 3)
            m_document->history.undo();
        pass(turn % 3 == 0 ? 0 : 2000);
    }
    pass(2000);
    QCOMPARE(recoveredNow(), documentState(*m_document));
    QCOMPARE(numberNow(u"SELECT count(*) FROM texts"_s), 0);
}

void tst_Journal::aTextThatWasLostIsTakenDownAnew()
{
    QTextCursor cursor = middleOf(*m_document, *addLong(longText(100)));
    cursor.insertText(u"before"_s);
    pass(2000);
    Q_EMIT m_vault->writer().textLost(1);
    pass(Journal::lookInterval);
    QCOMPARE(recoveredNow(), documentState(*m_document));
    cursor.insertText(u"behind"_s);
    pass(2000);
    QCOMPARE(recoveredNow(), documentState(*m_document));
}

void tst_Journal::aDatabaseOfBeforeLongTextsWereFollowedIsRead()
{
    typeInto(*m_document, *m_root, u"words"_s);
    pass(2000);
    QCOMPARE(numberNow(u"SELECT count(*) FROM texts"_s), 0);
    const QString older = m_folder->filePath(u"older"_s);
    copyAsLeft(m_vault->folder(), older);
    {
        RecoveryDatabase database(recoveryPaths(older).value(0), Database::Opening::Existing);
        database.database().run(u"DROP TABLE texts"_s);
        database.database().run(u"PRAGMA user_version = 1"_s);
    }
    const auto left = LeftBehind::find(older);
    QCOMPARE(left.size(), size_t(1));
    QCOMPARE(documentState(*recoveredFrom(*left.front()).document), documentState(*m_document));
}

void tst_Journal::aProgramOfBeforeThatLeavesTheDatabaseAlone()
{
    typeInto(*m_document, *m_root, u"words"_s);
    pass(2000);
    const QString copy = m_folder->filePath(u"copy"_s);
    copyAsLeft(m_vault->folder(), copy);
    DatabaseSchema before = RecoveryDatabase::schema();
    before.upgrades.resize(1);
    const QString path = recoveryPaths(copy).value(0);
    QVERIFY_THROWS_EXCEPTION(RunTimeError, Database(path, before, Database::Opening::Existing));
}

void tst_Journal::aDocumentThatNeverHadAFileIsKept()
{
    openDocument(QString());
    m_document->setCaption(u"Document 3"_s);
    m_document->history.forgetSaved();
    m_document->history.startAnew();
    m_document->history.insert(Relationship::tvwChild, m_root);
    pass(250);
    const auto left = leftNow();
    QCOMPARE(left.size(), size_t(1));
    QCOMPARE(left.front()->name(), u"Document 3"_s);
    QCOMPARE(left.front()->fileNow(), LeftBehind::FileNow::None);
    QCOMPARE(documentState(*recoveredFrom(*left.front()).document), documentState(*m_document));
}

void tst_Journal::whatWasImportedIsKeptBeforeItIsChanged()
{
    openDocument(QString());
    rawOutline(*m_document).tree.insert(Relationship::tvwChild, m_root);
    m_document->history.forgetSaved();
    pass(500);
    QCOMPARE(recoveredNow(), documentState(*m_document));
}

// Its file was deleted, or was written by another program and is not wanted.
void tst_Journal::whatAFileHeldIsKeptWhenItIsNowhereElse()
{
    m_document->history.forgetSaved();
    pass(500);
    QCOMPARE(recoveredNow(), documentState(*m_document));
    m_document->history.markSaved();
    pass(500);
    QVERIFY(leftNow().empty());
    // What was done before and undone makes no difference.
    m_document->history.setLabel(m_root, u"changed"_s);
    QVERIFY(m_document->history.undo());
    pass(500);
    QVERIFY(leftNow().empty());
    m_document->history.forgetSaved();
    pass(500);
    QCOMPARE(recoveredNow(), documentState(*m_document));
}

void tst_Journal::aNewDocumentInWhichNothingWasDoneIsNot()
{
    openDocument(QString());
    m_document->history.forgetSaved();
    m_document->history.setLabel(m_root, u"New Entry"_s);
    m_document->history.startAnew();
    pass(500);
    QVERIFY(leftNow().empty());
}

void tst_Journal::theStepsKeepTheirNamesAndTimes()
{
    QDateTime now = QDateTime::fromSecsSinceEpoch(1'000'000);
    m_document->history.setClock([&now] { return now; });
    m_document->history.setLabel(m_root, u"first"_s);
    now = now.addSecs(60);
    {
        const History::Step step(m_document->history, u"two things"_s);
        m_document->history.setTagged(m_root, true);
        m_document->history.insert(Relationship::tvwChild, m_root);
    }
    pass(250);
    const auto left = leftNow();
    const RecoveredDocument recovered = recoveredFrom(*left.front());
    const auto found = recovered.document->history.steps();
    const auto expected = m_document->history.steps();
    QCOMPARE(found.size(), expected.size());
    for (size_t place = 0; place < found.size(); ++place) {
        QCOMPARE(found[place].name, expected[place].name);
        QCOMPARE(found[place].time, expected[place].time);
    }
    QVERIFY(recovered.document->history.isChanged());
    QVERIFY(recovered.document->history.goTo(0));
    QVERIFY(!recovered.document->history.isChanged());
}

void tst_Journal::whatWasUndoneCanBeRedone()
{
    m_document->history.setLabel(m_root, u"first"_s);
    typeInto(*m_document, *m_root, u"words"_s);
    pass(1250);
    const QStringList both = documentState(*m_document);
    QVERIFY(m_document->history.undo());
    pass(250);
    const auto left = leftNow();
    const RecoveredDocument recovered = recoveredFrom(*left.front());
    QCOMPARE(recovered.document->history.position(), 1);
    QCOMPARE(recovered.document->history.stepCount(), 2);
    QVERIFY(recovered.document->history.redo());
    QCOMPARE(documentState(*recovered.document), both);
}

void tst_Journal::goingBackBehindTheSaveIsTakenDown()
{
    m_document->history.setLabel(m_root, u"before"_s);
    m_document->history.markSaved();
    QVERIFY(m_document->history.undo());
    pass(250);
    QCOMPARE(recoveredNow(), documentState(*m_document));
    QVERIFY(m_document->history.redo());
    m_document->history.setTagged(m_root, true);
    pass(250);
    const auto left = leftNow();
    const RecoveredDocument recovered = recoveredFrom(*left.front());
    QCOMPARE(documentState(*recovered.document), documentState(*m_document));
    QCOMPARE(recovered.document->history.undoName(), u"tagging of \"before\""_s);
}

void tst_Journal::savingLeavesNothing()
{
    m_document->history.setLabel(m_root, u"renamed"_s);
    pass(250);
    QCOMPARE(leftNow().size(), size_t(1));
    m_document->history.markSaved();
    m_vault->waitUntilWritten();
    QVERIFY(QDir(m_vault->folder()).isEmpty());
}

void tst_Journal::theNextChangeAfterASaveBeginsAnew()
{
    m_document->history.setLabel(m_root, u"saved"_s);
    pass(250);
    m_document->history.markSaved();
    m_document->history.setLabel(m_root, u"unsaved"_s);
    pass(250);
    const auto left = leftNow();
    const RecoveredDocument recovered = recoveredFrom(*left.front());
    QCOMPARE(documentState(*recovered.document), documentState(*m_document));
    QCOMPARE(recovered.document->history.stepCount(), 1);
}

void tst_Journal::closingLeavesNothing()
{
    m_document->history.setLabel(m_root, u"given up"_s);
    pass(250);
    m_document.reset();
    m_vault->waitUntilWritten();
    QVERIFY(QDir(m_vault->folder()).isEmpty());
}

void tst_Journal::theEndOfASessionLeavesWhatIsUnsaved()
{
    typeInto(*m_document, *m_root, u"typed in the last second"_s);
    const QStringList expected = documentState(*m_document);
    m_vault->endSession();
    m_document.reset();
    m_vault.reset();
    const auto left = LeftBehind::find(m_folder->filePath(u"state/recovery"_s));
    QCOMPARE(left.size(), size_t(1));
    QCOMPARE(documentState(*recoveredFrom(*left.front()).document), expected);
}

void tst_Journal::undoneToWhatWasSavedNothingIsOffered()
{
    m_document->history.setLabel(m_root, u"renamed"_s);
    pass(250);
    QVERIFY(m_document->history.undo());
    pass(250);
    QVERIFY(leftNow().empty());
}

void tst_Journal::aLogThatOutgrowsTheDocumentIsBegunAnew()
{
    m_vault->journalOf(*m_document)->setRoomForLog(1 << 20);
    QByteArray text;
    QRandomGenerator random(1);
    for (int i = 0; i < 50000; ++i)
        text.append(static_cast<char>('!' + random.bounded(94)));
    for (int change = 0; change < 60; ++change) {
        m_document->history.setStoredText(m_root, text + QByteArray::number(change));
        pass(250);
    }
    const auto left = leftNow();
    const LeftBehind::Content content = left.front()->read();
    QVERIFY2(content.records.size() < 40, qPrintable(QString::number(content.records.size())));
    QCOMPARE(recoveredNow(), documentState(*m_document));
}

void tst_Journal::aRunningProgramsDatabaseIsTakenByNobody()
{
    m_document->history.setLabel(m_root, u"renamed"_s);
    pass(250);
    QVERIFY(LeftBehind::find(m_vault->folder()).empty());
    // From another process neither.
    const pid_t other = fork();
    if (other == 0)
        _exit(RecoveryLock::take(recoveryPaths(m_vault->folder()).front()) ? 1 : 0);
    int status = -1;
    QCOMPARE(waitpid(other, &status, 0), other);
    QCOMPARE(status, 0);
    QCOMPARE(recoveredNow(), documentState(*m_document));
}

void tst_Journal::aProgramThatHasEndedHoldsNothingThoughNobodyAskedForItsEnd()
{
    const QTemporaryDir folder;
    const QString path = newRecoveryPath(folder.path());
    const pid_t other = fork();
    if (other == 0) {
        const std::unique_ptr<RecoveryLock> lock = RecoveryLock::take(path);
        _exit(lock ? 0 : 1);
    }
    siginfo_t ended = {};
    QCOMPARE(waitid(P_PID, static_cast<id_t>(other), &ended, WEXITED | WNOWAIT), 0);
    QCOMPARE(ended.si_status, 0);
    const bool isTaken = RecoveryLock::take(path) != nullptr;
    waitpid(other, nullptr, 0);
    QVERIFY(isTaken);
}

void tst_Journal::twoStartsAtOnceDoNotOfferTheSame()
{
    m_document->history.setLabel(m_root, u"renamed"_s);
    m_vault->endSession();
    const QString folder = m_vault->folder();
    auto first = LeftBehind::find(folder);
    QCOMPARE(first.size(), size_t(1));
    QVERIFY(LeftBehind::find(folder).empty());
    first.clear();
    auto second = LeftBehind::find(folder);
    QCOMPARE(second.size(), size_t(1));
    second.front()->discard();
    QVERIFY(QDir(folder).isEmpty());
}

void tst_Journal::nobodyElseMayReadIt()
{
    const mode_t before = umask(0);
    m_document->history.setLabel(m_root, u"renamed"_s);
    pass(250);
    umask(before);
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(m_vault->folder()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0700U);
    const QDir dir(m_vault->folder());
    QVERIFY(dir.count() >= 5);
    for (const QString &name : dir.entryList(QDir::Files)) {
        QCOMPARE(stat(QFile::encodeName(dir.filePath(name)).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777U, 0600U);
    }
}

void tst_Journal::aFullDiskIsToldAndTriedAgain()
{
    m_document->history.setLabel(m_root, u"first"_s);
    pass(250);
    const QStringList before = documentState(*m_document);
    bool isFull = true;
    m_vault->writer().setObstacle([&isFull] {
        if (isFull)
            throw RunTimeError(ErrorNumber::DiskFull, errorDescription(ErrorNumber::DiskFull));
    });
    m_document->history.setLabel(m_root, u"second"_s);
    pass(500);
    QVERIFY(m_document->hasNotice(NoticeKind::NoRecovery));
    QVERIFY(m_document->notices().front().text.contains(u"no room left"_s));
    // What was there before stays there.
    QCOMPARE(recoveredNow(), before);
    isFull = false;
    m_document->history.setLabel(m_root, u"third"_s);
    pass(Journal::retryDelay + 500);
    QVERIFY(!m_document->hasNotice(NoticeKind::NoRecovery));
    QCOMPARE(recoveredNow(), documentState(*m_document));
    m_document->history.setLabel(m_root, u"fourth"_s);
    pass(250);
    QCOMPARE(recoveredNow(), documentState(*m_document));
}

void tst_Journal::aFolderThatCannotBeMadeIsToldAndTriedAgain()
{
    QFile inTheWay(m_folder->filePath(u"state"_s));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    m_document->history.setLabel(m_root, u"renamed"_s);
    pass(500);
    QVERIFY(m_document->hasNotice(NoticeKind::NoRecovery));
    inTheWay.remove();
    pass(Journal::retryDelay + 500);
    QVERIFY(!m_document->hasNotice(NoticeKind::NoRecovery));
    QCOMPARE(recoveredNow(), documentState(*m_document));
}

void tst_Journal::aDatabaseThatIsGoneIsBegunAnew()
{
    m_document->history.setLabel(m_root, u"first"_s);
    pass(250);
    QDir(m_vault->folder()).removeRecursively();
    m_document->history.setLabel(m_root, u"second"_s);
    pass(Journal::retryDelay + 500);
    QCOMPARE(recoveredNow(), documentState(*m_document));
    QVERIFY(!m_document->hasNotice(NoticeKind::NoRecovery));
}

QTEST_MAIN(tst_Journal)
#include "tst_Journal.moc"
