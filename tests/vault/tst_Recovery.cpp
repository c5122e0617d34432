// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/Recovery.h"

#include "document/OutsideChange.h"
#include "document/modDoc.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"
#include "vault/RecoveryFixture.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class tst_Recovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void itHasItsFilesNameAndItsStepsAndNothingIsWritten();
    void itIsKeptAgainBeforeWhatWasLeftGoes();
    void withoutRoomForItWhatWasLeftStays();
    void aFileThatWasOpenedAgainGivesWayToIt();
    void aFileThatChangedIsShownBesideIt();
    void aFileThatWasOnlyTouchedDidNotChange();
    void aFileThatIsGoneIsMadeAgainBySaving();
    void aFileThatComesBackIsNotSavedOverUnasked();
    void whatIsChangedInAnotherWindowStaysThere();
    void aNoticeOfWhatWasRecoveredGoesWithTheSave();
    void oneWithoutItsFilesNameKnowsItsFileAfterAnotherCrash();
    void itsTimeIsThatOfItsLastChangeHoweverOftenItIsRecovered();
    void oneThatNeverHadAFileHasNoneStill();
    void whatIsLookedAtIsLockedAndStays();
    void whatACutLogHasLostIsTold_data();
    void whatACutLogHasLostIsTold();
    void whatWasDoneAgainAndIsCutOffIsTold();
    void whatIsTornIsRecoveredAsFarAsItIsWhole_data();
    void whatIsTornIsRecoveredAsFarAsItIsWhole();

private:
    // Changes a document and ends as a kill does. What is left is found where it returns.
    QString crashAfterChanges(const QString &sFile, Locks locks = Locks::LeftOut);
    std::unique_ptr<LeftBehind> leftIn(const QString &folder);
    QByteArray content(const QString &path) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakePorts> m_ports;
    std::unique_ptr<Vault> m_vault;
    QString m_file;
    QStringList m_expected;
    int m_crashes = 0;
};

void tst_Recovery::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_ports = std::make_unique<FakePorts>();
    m_vault = std::make_unique<Vault>(Vault::Settings{m_folder->filePath(u"recovery"_s), {}, false});
    m_ports->windows.onCreate = [this] { m_vault->attach(m_ports->windows.open.back()->document); };
    m_file = m_folder->filePath(u"notes.qly"_s);
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(nativeBytes({u"Root"_s, u" Child"_s}));
}

void tst_Recovery::cleanup()
{
    m_ports->windows.open.clear();
    m_vault.reset();
    m_ports.reset();
}

QByteArray tst_Recovery::content(const QString &path) const
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString tst_Recovery::crashAfterChanges(const QString &sFile, Locks locks)
{
    if (sFile.isEmpty())
        modDoc::DocNew();
    else
        modDoc::DocLoad(sFile);
    Document &document = *ports().windows->activeDocument();
    if (!document.tree.root())
        document.history.insert(Relationship::tvwFirst, nullptr);
    for (int change = 1; change <= 20; ++change) {
        document.history.setLabel(document.tree.root(), u"label %1"_s.arg(change));
        typeInto(document, *document.tree.root(), u"word "_s);
        m_vault->flush();
    }
    const bool isWritten = m_vault->flush();
    m_expected = documentState(document);
    const QString crashed = m_folder->filePath(u"crashed %1"_s.arg(++m_crashes));
    copyAsLeft(m_vault->folder(), crashed, locks);
    document.giveUpChanges();
    document.view()->window.close();
    return isWritten ? crashed : QString();
}

std::unique_ptr<LeftBehind> tst_Recovery::leftIn(const QString &folder)
{
    auto found = LeftBehind::find(folder);
    return found.size() == 1 ? std::move(found.front()) : nullptr;
}

void tst_Recovery::itHasItsFilesNameAndItsStepsAndNothingIsWritten()
{
    const QByteArray before = content(m_file);
    const auto left = leftIn(crashAfterChanges(m_file));
    QVERIFY(left);
    QCOMPARE(left->name(), u"notes.qly"_s);
    Document *document = recoverDocument(*left, *m_vault);
    QVERIFY(document);
    QCOMPARE(document->m_sFile, m_file);
    QCOMPARE(document->caption(), m_file);
    QCOMPARE(documentState(*document), m_expected);
    QVERIFY(document->hasUnsavedChanges());
    QVERIFY(document->mayBeSaved());
    QVERIFY(document->notices().empty());
    QCOMPARE(document->history.stepCount(), 40);
    QCOMPARE(document->history.undoName(), u"typing in \"label 20\""_s);
    QCOMPARE(content(m_file), before);
    QVERIFY(document->history.goTo(0));
    QVERIFY(!document->hasUnsavedChanges());
    QCOMPARE(modDoc::save(*document, m_file), SaveOutcome::Saved);
    QVERIFY2(m_ports->dialogs.questions.isEmpty(), "the file is known to be the document's own");
}

void tst_Recovery::itIsKeptAgainBeforeWhatWasLeftGoes()
{
    const QString crashed = crashAfterChanges(m_file);
    const auto left = leftIn(crashed);
    QVERIFY(recoverDocument(*left, *m_vault));
    QVERIFY(QDir(crashed).isEmpty());
    const QString again = m_folder->filePath(u"crashed again"_s);
    copyAsLeft(m_vault->folder(), again);
    const auto second = leftIn(again);
    QVERIFY(second);
    const RecoveredDocument recovered = recoveredFrom(*second);
    QCOMPARE(documentState(*recovered.document), m_expected);
    QCOMPARE(recovered.document->history.stepCount(), 40);
}

void tst_Recovery::withoutRoomForItWhatWasLeftStays()
{
    const QString crashed = crashAfterChanges(m_file);
    m_vault->writer().setObstacle([] { throw RunTimeError(ErrorNumber::DiskFull); });
    {
        const auto left = leftIn(crashed);
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(m_folder->path()));
        const Document *document = recoverDocument(*left, *m_vault);
        qputenv("HOME", home);
        const DocumentNotice *notice = document ? document->notice(NoticeKind::NoRecovery) : nullptr;
        QVERIFY(notice);
        // In words of the user's.
        QVERIFY2(notice->text.contains(u": there is no room left for it in the folder ~/recovery. It is"_s),
                 qPrintable(notice->text));
    }
    QVERIFY(leftIn(crashed));
}

void tst_Recovery::aFileThatWasOpenedAgainGivesWayToIt()
{
    const auto left = leftIn(crashAfterChanges(m_file));
    modDoc::DocLoad(m_file);
    const Document *document = recoverDocument(*left, *m_vault);
    QCOMPARE(m_ports->windows.open.size(), size_t(1));
    QCOMPARE(ports().windows->documents().front(), document);
}

void tst_Recovery::aFileThatChangedIsShownBesideIt()
{
    const auto left = leftIn(crashAfterChanges(m_file));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(nativeBytes({u"Theirs"_s}));
    file.close();
    QCOMPARE(left->fileNow(), LeftBehind::FileNow::Changed);
    Document *document = recoverDocument(*left, *m_vault);
    QVERIFY(document);
    QCOMPARE(m_ports->windows.open.size(), size_t(2));
    QCOMPARE(ports().windows->documents().front()->tree.root()->label(), u"Theirs"_s);
    QVERIFY(document->m_sFile.isEmpty());
    QCOMPARE(document->caption(), u"notes.qly (recovered)"_s);
    QVERIFY(document->hasNotice(NoticeKind::Recovered));
    QCOMPARE(documentState(*document), m_expected);
}

void tst_Recovery::aFileThatWasOnlyTouchedDidNotChange()
{
    const auto left = leftIn(crashAfterChanges(m_file));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(100), QFileDevice::FileModificationTime));
    file.close();
    QCOMPARE(left->fileNow(), LeftBehind::FileNow::AsItWas);
}

void tst_Recovery::aFileThatIsGoneIsMadeAgainBySaving()
{
    const auto left = leftIn(crashAfterChanges(m_file));
    QFile::remove(m_file);
    QCOMPARE(left->fileNow(), LeftBehind::FileNow::Gone);
    Document *document = recoverDocument(*left, *m_vault);
    QCOMPARE(document->m_sFile, m_file);
    QVERIFY(document->hasNotice(NoticeKind::FileGone));
    QVERIFY(document->history.goTo(0));
    QVERIFY2(document->hasUnsavedChanges(), "no file has it");
    QCOMPARE(modDoc::save(*document, m_file), SaveOutcome::Saved);
    QVERIFY(document->notices().empty());
}

void tst_Recovery::aFileThatComesBackIsNotSavedOverUnasked()
{
    const auto left = leftIn(crashAfterChanges(m_file));
    const QByteArray held = content(m_file);
    QFile::remove(m_file);
    Document *document = recoverDocument(*left, *m_vault);
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(nativeBytes({u"Theirs"_s}));
    file.close();
    lookForOutsideChange(*document);
    QVERIFY(!document->hasNotice(NoticeKind::FileGone));
    QVERIFY(document->hasNotice(NoticeKind::FileChanged));
    m_ports->dialogs.answers = {Answer::No};
    QCOMPARE(modDoc::save(*document, m_file), SaveOutcome::Declined);
    QCOMPARE(m_ports->dialogs.questions.size(), 1);
    // As it was, it is nobody else's.
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(held);
    file.close();
    lookForOutsideChange(*document);
    QVERIFY(document->notices().empty());
    QCOMPARE(modDoc::save(*document, m_file), SaveOutcome::Saved);
}

void tst_Recovery::whatIsChangedInAnotherWindowStaysThere()
{
    const auto left = leftIn(crashAfterChanges(m_file));
    modDoc::DocLoad(m_file);
    Document &other = *ports().windows->activeDocument();
    other.history.setLabel(other.tree.root(), u"changed meanwhile"_s);
    const Document *document = recoverDocument(*left, *m_vault);
    QCOMPARE(m_ports->windows.open.size(), size_t(2));
    QVERIFY(document->m_sFile.isEmpty());
    QVERIFY(document->hasNotice(NoticeKind::Recovered));
    QCOMPARE(other.tree.root()->label(), u"changed meanwhile"_s);
}

void tst_Recovery::aNoticeOfWhatWasRecoveredGoesWithTheSave()
{
    const auto left = leftIn(crashAfterChanges(m_file));
    modDoc::DocLoad(m_file);
    Document &other = *ports().windows->activeDocument();
    other.history.setLabel(other.tree.root(), u"changed meanwhile"_s);
    Document *document = recoverDocument(*left, *m_vault);
    QVERIFY(document->hasNotice(NoticeKind::Recovered));
    QCOMPARE(modDoc::save(*document, m_folder->filePath(u"mine.qly"_s)), SaveOutcome::Saved);
    QVERIFY(document->notices().empty());
    QVERIFY(document->m_sRecoveredFrom.isEmpty());
}

void tst_Recovery::oneWithoutItsFilesNameKnowsItsFileAfterAnotherCrash()
{
    auto left = leftIn(crashAfterChanges(m_file));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(nativeBytes({u"Theirs"_s}));
    file.close();
    QVERIFY(recoverDocument(*left, *m_vault));
    for (const QString &crash : {u"again"_s, u"once more"_s}) {
        const QString crashed = m_folder->filePath(crash);
        copyAsLeft(m_vault->folder(), crashed);
        for (Document *open : ports().windows->documents()) {
            open->giveUpChanges();
            open->view()->window.close();
        }
        left = leftIn(crashed);
        QVERIFY(left);
        QCOMPARE(left->name(), u"notes.qly"_s);
        QCOMPARE(left->fileBehind(), m_file);
        const Document *document = recoverDocument(*left, *m_vault);
        QVERIFY(document);
        QVERIFY(document->m_sFile.isEmpty());
        QCOMPARE(document->caption(), u"notes.qly (recovered)"_s);
        QCOMPARE(documentState(*document), m_expected);
        QVERIFY(document->hasNotice(NoticeKind::Recovered));
        QVERIFY2(document->notices().front().text.contains(m_file), qPrintable(document->notices().front().text));
    }
}

void tst_Recovery::itsTimeIsThatOfItsLastChangeHoweverOftenItIsRecovered()
{
    const QDateTime changed = m_ports->clock.moment;
    QString crashed = crashAfterChanges(m_file);
    for (const QString &crash : {u"again"_s, u"once more"_s}) {
        m_ports->clock.moment = m_ports->clock.moment.addSecs(3600);
        const auto left = leftIn(crashed);
        QVERIFY(left);
        QCOMPARE(left->state().time, changed);
        Document *document = recoverDocument(*left, *m_vault);
        crashed = m_folder->filePath(crash);
        copyAsLeft(m_vault->folder(), crashed);
        document->giveUpChanges();
        document->view()->window.close();
    }
    // What is done then is later.
    const auto left = leftIn(crashed);
    Document *document = recoverDocument(*left, *m_vault);
    document->history.setLabel(document->tree.root(), u"later"_s);
    QVERIFY(m_vault->flush());
    copyAsLeft(m_vault->folder(), m_folder->filePath(u"last"_s));
    QCOMPARE(leftIn(m_folder->filePath(u"last"_s))->state().time, m_ports->clock.moment);
}

void tst_Recovery::oneThatNeverHadAFileHasNoneStill()
{
    const auto left = leftIn(crashAfterChanges(QString()));
    QVERIFY(left);
    const Document *document = recoverDocument(*left, *m_vault);
    QVERIFY(document->m_sFile.isEmpty());
    QVERIFY(document->hasUnsavedChanges());
    QCOMPARE(documentState(*document), m_expected);
    QVERIFY(document->notices().empty());
}

void tst_Recovery::whatIsLookedAtIsLockedAndStays()
{
    const QString crashed = crashAfterChanges(m_file);
    {
        const auto left = leftIn(crashed);
        Document *document = lookAtLeftBehind(*left);
        QVERIFY(document);
        QCOMPARE(documentState(*document), m_expected);
        QVERIFY(!document->hasUnsavedChanges());
        QVERIFY(m_ports->windows.fakeOf(*document).text.locked);
        QVERIFY(m_vault->flush());
        QVERIFY(QDir(m_vault->folder()).isEmpty());
    }
    QVERIFY(leftIn(crashed));
}

void tst_Recovery::whatACutLogHasLostIsTold_data()
{
    QTest::addColumn<int>("percent");
    QTest::newRow("all of it") << 0;
    QTest::newRow("most of it") << 40;
    QTest::newRow("some of it") << 90;
}

void tst_Recovery::whatACutLogHasLostIsTold()
{
    QFETCH(const int, percent);
    const QString crashed = crashAfterChanges(m_file, Locks::Copied);
    QFile log(crashed + u'/' + QDir(crashed).entryList({u"*-wal"_s}).value(0));
    QVERIFY(log.resize(log.size() * percent / 100));
    for (int look = 0; look < 2; ++look) {
        const auto left = leftIn(crashed);
        QVERIFY2(left, "what is known to be lost is not passed over");
        QCOMPARE(left->name(), u"notes.qly"_s);
        QCOMPARE(left->damage().isEmpty(), percent > 0);
    }
    const auto left = leftIn(crashed);
    if (percent == 0)
        return;
    const Document *document = recoverDocument(*left, *m_vault);
    QVERIFY(document);
    // Each record is a renaming or a stretch of typing.
    const int lost = 40 - document->history.stepCount();
    QVERIFY(lost > 1 && lost < 40);
    QCOMPARE(left->recordsCutOff(), lost);
    const DocumentNotice *notice = document->notice(NoticeKind::NotRecoveredWhole);
    QVERIFY(notice);
    QVERIFY2(notice->text.contains(u"the last %1 changes"_s.arg(lost)), qPrintable(notice->text));
    QVERIFY(QDir(crashed).isEmpty());
}

// Where the log ends now, there was nothing to be saved.
void tst_Recovery::whatWasDoneAgainAndIsCutOffIsTold()
{
    modDoc::DocLoad(m_file);
    Document &document = *ports().windows->activeDocument();
    document.history.setLabel(document.tree.root(), u"once"_s);
    QVERIFY(m_vault->flush());
    QVERIFY(document.history.undo());
    QVERIFY(m_vault->flush());
    QVERIFY(!document.hasUnsavedChanges());
    const QDir folder(m_vault->folder());
    const qint64 size = QFileInfo(folder.filePath(folder.entryList({u"*-wal"_s}).value(0))).size();
    document.history.setLabel(document.tree.root(), u"twice"_s);
    QVERIFY(m_vault->flush());
    const QString crashed = m_folder->filePath(u"crashed"_s);
    copyAsLeft(m_vault->folder(), crashed, Locks::Copied);
    QFile log(crashed + u'/' + QDir(crashed).entryList({u"*-wal"_s}).value(0));
    QVERIFY(log.resize(size));
    const auto left = leftIn(crashed);
    QVERIFY(left);
    QCOMPARE(left->recordsCutOff(), 1);
}

void tst_Recovery::whatIsTornIsRecoveredAsFarAsItIsWhole_data()
{
    QTest::addColumn<bool>("cut");
    QTest::addColumn<bool>("log");
    QTest::newRow("a byte of the write-ahead log") << false << true;
    QTest::newRow("the write-ahead log cut off") << true << true;
    QTest::newRow("a byte of the database") << false << false;
    QTest::newRow("the database cut off") << true << false;
}

// At bytes all over the file: the heads of its pages, the trees in them and the values.
void tst_Recovery::whatIsTornIsRecoveredAsFarAsItIsWhole()
{
    QFETCH(const bool, cut);
    QFETCH(const bool, log);
    const QString crashed = crashAfterChanges(m_file);
    if (!log) {
        // Closed in order, all is in the database itself.
        leftIn(crashed).reset();
    }
    const QDir dir(crashed);
    const QString name = dir.entryList({log ? u"*-wal"_s : u"*.recovery"_s}, QDir::Files).value(0);
    QVERIFY(!name.isEmpty());
    const QByteArray whole = content(dir.filePath(name));
    QVERIFY(whole.size() > 8192);
    int readable = 0;
    int tried = 0;
    const qsizetype stride = whole.size() / 150 | 1;
    for (qsizetype at = 0; at < whole.size(); at += stride) {
        const QString torn = m_folder->filePath(u"torn"_s);
        QDir(torn).removeRecursively();
        copyAsLeft(crashed, torn);
        QByteArray damaged = whole;
        if (cut)
            damaged.truncate(at);
        else
            damaged[at] = static_cast<char>(damaged[at] ^ 0x41);
        QFile file(torn + u'/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(damaged);
        file.close();
        ++tried;
        for (const auto &left : LeftBehind::find(torn)) {
            if (!left->damage().isEmpty())
                continue;
            try {
                const RecoveredDocument recovered = recoveredFrom(*left);
                QVERIFY(recovered.document->tree.brokenInvariant().isEmpty());
                ++readable;
                const auto played =
                    static_cast<int>(recovered.content.records.size()) - static_cast<int>(recovered.notPlayed);
                if (recovered.content.damagedEntries > 0)
                    continue;
                // Each record is a renaming or a stretch of typing, one after the other.
                const Entry *root = recovered.document->tree.root();
                QCOMPARE(root->label(), played == 0 ? u"Root"_s : u"label %1"_s.arg((played + 1) / 2));
                QVERIFY(played == 40 || recovered.content.lostRecords + recovered.notPlayed > 0 || log);
            } catch (const RunTimeError &) {
                continue;
            }
        }
    }
    // Without its end a database has lost the tree of its pages.
    QVERIFY2(readable > (cut && !log ? tried / 10 : tried / 3), qPrintable(u"%1 of %2"_s.arg(readable).arg(tried)));
}

QTEST_MAIN(tst_Recovery)
#include "tst_Recovery.moc"
