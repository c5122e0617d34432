// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/SafeFile.h"
#include "document/TemporaryName.h"
#include "document/UnfinishedSaves.h"
#include "document/modDoc.h"
#include "support/ErrorRecorder.h"
#include "support/FailingCalls.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"
#include "util/ByteSink.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// Saving while every call of the file system fails in turn, and while the process is killed before each of them. What
// stands in the folder afterwards is always whole: the old document or the new one, and its backup. A file that is
// written in place can be neither after a kill, or when nothing works any more; then both lie beside it.
class tst_SaveTorture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void everyCallFails_data() { situations(); }

    void everyCallFails();

    void everyCallFailsFromOneOn_data() { situations(); }

    void everyCallFailsFromOneOn();

    void everyWriteAndReadThatGoesWrongIsNoticed_data();
    void everyWriteAndReadThatGoesWrongIsNoticed();

    void killedBeforeEveryCall_data() { situations(); }

    void killedBeforeEveryCall();
    void killedAtAnyMoment();

private:
    enum Backup { NoBackupWanted, NoOldBackup, OldBackup };

    enum Target { Existing, Link, Another, New, TwoNames, FullFolder };

    static void situations();
    void begin(int target, int backup);
    // What is wrong in the folder, in words; empty when nothing is.
    QString judge(int backup, bool saved, bool killed) const;
    QString judgeDamaged(bool killed) const;
    QString judgeLeftovers() const;

    SaveOutcome save()
    {
        m_fake->dialogs.answers.assign(3, Answer::Yes);
        return modDoc::DocSave((*m_folder)(m_name));
    }

    std::unique_ptr<FakePorts> m_fake;
    std::unique_ptr<ErrorRecorder> m_errors;
    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<TestFolder> m_state;
    // Holds as long as a save is to meet a folder that takes no new file.
    std::optional<OrdinaryUser> m_user;
    int m_target = Existing;
    QString m_name;
    // The file that the document is really kept in.
    QString m_real;
    bool m_existed = false;
    // What the backup held before; null when there was none.
    QByteArray m_oldBackup;
};

namespace
{

const QByteArray oldContent = "{\\qlf_formatversion 1}\r\nold";
const QByteArray olderContent = "{\\qlf_formatversion 1}\r\nolder";

// More than the buffer of a file that is written, so that writing takes several calls.
void plantNewContent(EntryTree &tree)
{
    plantOutline(tree, {u"Root"_s, u" A"_s, u" B"_s, u" C"_s});
    for (Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root()))
        tree.setStoredText(entry, QByteArray(300000, 'n'));
}

const QByteArray &newContent()
{
    static const QByteArray content = [] {
        Outline outline;
        plantNewContent(outline.tree);
        return nativeBytes(outline);
    }();
    return content;
}

} // namespace

void tst_SaveTorture::situations()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<int>("backup");
    QTest::newRow("no backup wanted") << int(Existing) << int(NoBackupWanted);
    QTest::newRow("the first backup") << int(Existing) << int(NoOldBackup);
    QTest::newRow("a backup over an older one") << int(Existing) << int(OldBackup);
    QTest::newRow("through a symbolic link") << int(Link) << int(OldBackup);
    QTest::newRow("over another file") << int(Another) << int(OldBackup);
    QTest::newRow("a new file") << int(New) << int(NoOldBackup);
    QTest::newRow("a file with two names") << int(TwoNames) << int(OldBackup);
    QTest::newRow("a file with two names, without a backup") << int(TwoNames) << int(NoBackupWanted);
    QTest::newRow("a folder that takes no new file") << int(FullFolder) << int(OldBackup);
    QTest::newRow("a folder that takes no new file, without a backup") << int(FullFolder) << int(NoBackupWanted);
}

// The short form runs in memory where it can: a disk takes its time to flush each of a thousand files.
void tst_SaveTorture::initTestCase()
{
    const QByteArray memory = "/dev/shm";
    if (!qEnvironmentVariableIsSet("QUILLERY_TORTURE_KILLS") && access(memory, W_OK) == 0)
        qputenv("TMPDIR", memory);
}

void tst_SaveTorture::init()
{
    m_fake = std::make_unique<FakePorts>();
    m_errors = std::make_unique<ErrorRecorder>();
    m_folder = std::make_unique<TestFolder>();
    m_state = std::make_unique<TestFolder>();
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_state->path()));
}

void tst_SaveTorture::cleanup()
{
    FailingCalls::stop();
    m_user.reset();
    m_errors.reset();
    m_fake.reset();
    m_folder.reset();
    m_state.reset();
}

// A changed document and its folder as they are before each save.
void tst_SaveTorture::begin(int target, int backup)
{
    m_fake->windows.open.clear();
    m_fake->windows.active = nullptr;
    m_errors->clear();
    m_user.reset();
    m_folder->setMode(QString(), 0777);
    QDir((*m_state)(u"Quillery"_s)).removeRecursively();
    m_target = target;
    for (const QString &name : m_folder->names())
        QFile::remove((*m_folder)(name));
    m_real = target == Link ? u"real.qly"_s : u"a.qly"_s;
    m_name = target == Link ? u"link.qly"_s : m_real;
    m_existed = target != New;
    if (m_existed)
        m_folder->write(m_real, oldContent);
    if (target == Link)
        QVERIFY(QFile::link((*m_folder)(m_real), (*m_folder)(m_name)));
    m_oldBackup = backup == OldBackup ? olderContent : QByteArray();
    if (backup == OldBackup)
        m_folder->write(m_real.chopped(4) + u".bak"_s, olderContent);
    g_options.Backup = backup != NoBackupWanted;
    Document &document = m_fake->windows.createDocument();
    plantNewContent(rawOutline(document).tree);
    document.m_sFile = target == Another ? (*m_folder)(u"own.qly"_s) : target == New ? QString() : (*m_folder)(m_name);
    document.history.touch();
    if (target == TwoNames)
        QCOMPARE(link(qPrintable((*m_folder)(m_real)), qPrintable((*m_folder)(u"twin.qly"_s))), 0);
    // It was read from there, so that its file is looked at before it is replaced. What was read as soon as it was
    // written is read again then, once; it was written so long ago that no more is read on a slow machine than on a
    // fast one.
    if (m_existed && target != Another) {
        QFile file((*m_folder)(m_real));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
        file.close();
        std::optional<FileIdentity> identity = identityOf(document.m_sFile);
        QVERIFY(identity);
        identity->seen = identity->modified;
        document.takeFile(FileStamp{identity, ContentDigest(oldContent)});
    }
    if (target == FullFolder) {
        m_folder->setMode(QString(), 0555);
        m_user.emplace();
    }
}

QString tst_SaveTorture::judge(int backup, bool saved, bool killed) const
{
    const QByteArray content = m_folder->read(m_real);
    const bool isOld = m_existed ? content == oldContent : content.isNull();
    if (m_target == TwoNames && m_folder->read(u"twin.qly"_s) != content)
        return u"the file has lost its other name"_s;
    // What could not be put back can be anything by then.
    const bool isTold = !killed && m_fake->windows.active->document.hasNotice(NoticeKind::FileDamaged);
    if (isTold || (content != newContent() && !isOld)) {
        const QString fault = content.isNull() ? u"the file is gone"_s : judgeDamaged(killed);
        if (!fault.isEmpty())
            return fault;
    }
    if (!killed && !isTold && saved != (content == newContent()))
        return u"the file is not what the save says"_s;
    const QString sBackup = m_real.chopped(4) + u".bak"_s;
    const QByteArray kept = m_folder->read(sBackup);
    const QByteArray before = m_oldBackup;
    if (kept != before && (backup == NoBackupWanted || !m_existed || kept != oldContent))
        return kept.isNull() ? u"the backup is gone"_s : u"the backup is damaged"_s;
    if (!saved && !killed && kept != before)
        return u"a save that failed changed the backup"_s;
    if (killed)
        return QString();
    if (m_existed && saved && backup != NoBackupWanted && kept == before) {
        const auto &notices = m_fake->windows.active->document.notices();
        if (std::ranges::none_of(notices, [](const auto &each) { return each.kind == NoticeKind::NoBackup; }))
            return u"nothing tells of the backup that was not made"_s;
    }
    return QString();
}

// A file that is neither the old one nor the new one.
QString tst_SaveTorture::judgeDamaged(bool killed) const
{
    if (m_target != TwoNames && m_target != FullFolder)
        return u"the file is damaged"_s;
    if (killed) {
        const std::vector<UnfinishedSave> unfinished = unfinishedSaves((*m_folder)(m_name));
        const auto old = std::ranges::count(unfinished, true, &UnfinishedSave::isOldContent);
        return old == 1 && unfinished.size() == 2 ? QString() : u"the old and the new content are not both offered"_s;
    }
    const auto &notices = m_fake->windows.active->document.notices();
    const auto told = std::ranges::find(notices, NoticeKind::FileDamaged, &DocumentNotice::kind);
    const QString copy = told == notices.end() ? QString() : told->text.section(u"file "_s, -1).chopped(1);
    if (copy.isEmpty() || readWholeFile(copy) != oldContent)
        return u"the damage is not told together with the name of a whole copy"_s;
    return QString();
}

void tst_SaveTorture::everyCallFails()
{
    QFETCH(const int, target);
    QFETCH(const int, backup);
    begin(target, backup);
    FailingCalls::startListing();
    QCOMPARE(save(), SaveOutcome::Saved);
    const std::vector<std::string> calls = FailingCalls::stopListing();
    QVERIFY(calls.size() > 10);
    QCOMPARE(judge(backup, true, false), QString());
    int failed = 0;
    for (int place = 0; place < static_cast<int>(calls.size()); ++place) {
        const std::string &call = calls[static_cast<size_t>(place)];
        QVERIFY2(!FailingCalls::errorsOf(call).empty(), call.c_str());
        for (const int error : FailingCalls::errorsOf(call)) {
            begin(target, backup);
            const QString sFileBefore = m_fake->windows.active->document.m_sFile;
            FailingCalls::failAt(place, error);
            const SaveOutcome outcome = save();
            FailingCalls::stop();
            const bool saved = outcome == SaveOutcome::Saved;
            const QString what = u"%1 (call %2) failing with %3: "_s.arg(QString::fromStdString(call))
                                     .arg(place)
                                     .arg(QString::fromLocal8Bit(strerror(error)));
            // A backup that may not be written is left alone without a word.
            const bool isProtected = call == "access" && (error == EACCES || error == EROFS);
            const QString fault = judge(isProtected && saved ? NoBackupWanted : backup, saved, false);
            QVERIFY2(fault.isEmpty(), qPrintable(what + fault));
            const Document &document = m_fake->windows.active->document;
            if (saved)
                continue;
            ++failed;
            QVERIFY2(!document.hasNotice(NoticeKind::FileDamaged), qPrintable(what + u"the file was not put back"_s));
            QVERIFY2(document.m_bDataChanged(), qPrintable(what + u"the document counts as unchanged"_s));
            QVERIFY2(document.m_sFile == sFileBefore, qPrintable(what + u"the document has another name"_s));
            QVERIFY2(!document.notices().empty() && document.notices().front().kind == NoticeKind::NotSaved,
                     qPrintable(what + u"nothing tells of the failure"_s));
            QVERIFY2(m_errors->count() == 1, qPrintable(what + u"the log does not tell of it once"_s));
            // Whatever stood in the way, the next save does it.
            QVERIFY2(save() == SaveOutcome::Saved, qPrintable(what + u"no save works any more"_s));
            QCOMPARE(m_folder->read(m_real), newContent());
            QVERIFY(!document.hasNotice(NoticeKind::NotSaved) && !document.hasNotice(NoticeKind::FileDamaged));
            QVERIFY(target == FullFolder || document.notices().empty());
        }
    }
    QVERIFY(failed > 10);
}

void tst_SaveTorture::everyCallFailsFromOneOn()
{
    QFETCH(const int, target);
    QFETCH(const int, backup);
    begin(target, backup);
    FailingCalls::startListing();
    QCOMPARE(save(), SaveOutcome::Saved);
    const auto calls = static_cast<int>(FailingCalls::stopListing().size());
    for (int place = 0; place < calls; ++place) {
        begin(target, backup);
        FailingCalls::failFrom(place, EIO);
        const bool saved = save() == SaveOutcome::Saved;
        FailingCalls::stop();
        const QString what = u"every call from %1 on failing: "_s.arg(place);
        const QString fault = judge(backup, saved, false);
        QVERIFY2(fault.isEmpty(), qPrintable(what + fault));
        const Document &document = m_fake->windows.active->document;
        QVERIFY2(saved != document.hasNotice(NoticeKind::NotSaved), qPrintable(what + u"the notice is wrong"_s));
        QVERIFY2(saved || !document.hasNotice(NoticeKind::NoBackup),
                 qPrintable(what + u"a save that failed says that the file was saved"_s));
    }
}

void tst_SaveTorture::everyWriteAndReadThatGoesWrongIsNoticed_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("call");
    for (const QString &call : {u"write"_s, u"read"_s}) {
        QTest::addRow("an existing file, %s", qPrintable(call)) << int(Existing) << call;
        QTest::addRow("a new file, %s", qPrintable(call)) << int(New) << call;
        QTest::addRow("a file with two names, %s", qPrintable(call)) << int(TwoNames) << call;
    }
}

// The disk says that all went well, and has one bit wrong.
void tst_SaveTorture::everyWriteAndReadThatGoesWrongIsNoticed()
{
    QFETCH(const int, target);
    QFETCH(const QString, call);
    begin(target, NoBackupWanted);
    FailingCalls::startListing();
    QCOMPARE(save(), SaveOutcome::Saved);
    const std::vector<std::string> calls = FailingCalls::stopListing();
    const auto count = static_cast<int>(std::ranges::count(calls, call.toStdString()));
    QVERIFY(count >= 2);
    int failed = 0;
    for (int place = 0; place < count; ++place) {
        begin(target, NoBackupWanted);
        if (call == u"write"_s)
            FailingCalls::spoilWrite(place);
        else
            FailingCalls::spoilRead(place);
        const bool saved = save() == SaveOutcome::Saved;
        const bool isSpoiled = FailingCalls::stop();
        const Document &document = m_fake->windows.active->document;
        const QString what = call + u" %1: "_s.arg(place);
        const QString fault = judge(NoBackupWanted, saved, false);
        QVERIFY2(fault.isEmpty(), qPrintable(what + fault));
        QVERIFY2(saved || document.m_bDataChanged(), qPrintable(what + u"the document counts as unchanged"_s));
        QVERIFY2(saved != document.hasNotice(NoticeKind::NotSaved), qPrintable(what + u"the notice is wrong"_s));
        QVERIFY2(m_errors->count() == (saved ? 0 : 1), qPrintable(what + u"the log does not tell of it once"_s));
        // What was read at the end of a file has no byte to be wrong, and what the file held before is not read again
        // unless it is needed.
        QVERIFY2(saved || isSpoiled, qPrintable(what + u"nothing was wrong"_s));
        failed += saved ? 0 : 1;
    }
    QVERIFY(failed >= 2);
}

void tst_SaveTorture::killedBeforeEveryCall()
{
    QFETCH(const int, target);
    QFETCH(const int, backup);
    begin(target, backup);
    FailingCalls::startListing();
    QCOMPARE(save(), SaveOutcome::Saved);
    const int calls = static_cast<int>(FailingCalls::stopListing().size());
    for (int place = 0; place < calls; ++place) {
        begin(target, backup);
        const pid_t child = fork();
        if (child == 0) {
            FailingCalls::dieAt(place);
            save();
            _exit(0);
        }
        int status = 0;
        QVERIFY(child > 0 && waitpid(child, &status, 0) == child);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        const QString fault = judge(backup, false, true);
        QVERIFY2(fault.isEmpty(), qPrintable(u"killed before call %1: "_s.arg(place) + fault));
        const QString left = judgeLeftovers();
        QVERIFY2(left.isEmpty(), qPrintable(u"killed before call %1: "_s.arg(place) + left));
    }
}

// What a killed save leaves is found by who comes next: whole new content is offered, anything less is gone.
QString tst_SaveTorture::judgeLeftovers() const
{
    const std::vector<UnfinishedSave> unfinished = unfinishedSaves((*m_folder)(m_name));
    qsizetype whole = 0;
    QStringList names = m_folder->names();
    const QString side = sideFolder(m_folder->path());
    names += QDir(side).entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : std::as_const(names)) {
        if (name.startsWith(u".quillery-part"_s))
            return u"an unfinished file stays"_s;
        const auto stage = TemporaryName::parse(QFile::encodeName(name));
        whole += stage && stage->stage != TemporaryName::Old ? 1 : 0;
    }
    if (whole != static_cast<qsizetype>(unfinished.size()))
        return u"whole content is not offered"_s;
    for (const UnfinishedSave &each : unfinished) {
        if (readWholeFile(each.path) != (each.isOldContent ? oldContent : newContent()) ||
            each.target != (*m_folder)(m_real))
            return u"what is offered is not what it should be"_s;
        if (m_folder->read(m_real) == newContent())
            return u"what was saved is offered again"_s;
    }
    return QString();
}

// Saves over and over while it is killed at any moment. The environment variable says how often; a handful otherwise.
void tst_SaveTorture::killedAtAnyMoment()
{
    const int kills = qEnvironmentVariableIntValue("QUILLERY_TORTURE_KILLS");
    QRandomGenerator random =
        kills > 0 ? QRandomGenerator(QRandomGenerator::global()->generate()) : QRandomGenerator(20261122);
    for (int kill = 0; kill < (kills > 0 ? kills : 20); ++kill) {
        const std::array targets = {Existing, TwoNames, FullFolder};
        begin(targets[static_cast<size_t>(kill / 2) % targets.size()], kill % 2 == 0 ? OldBackup : NoBackupWanted);
        int ready[2] = {};
        QCOMPARE(pipe(ready), 0);
        const pid_t child = fork();
        if (child == 0) {
            if (::write(ready[1], "x", 1) == 1)
                save();
            pause();
        }
        char started = 0;
        QVERIFY(child > 0 && ::read(ready[0], &started, 1) == 1);
        usleep(static_cast<useconds_t>(random.bounded(20000)));
        ::kill(child, SIGKILL);
        QCOMPARE(waitpid(child, nullptr, 0), child);
        ::close(ready[0]);
        ::close(ready[1]);
        const QString fault = judge(kill % 2 == 0 ? OldBackup : NoBackupWanted, false, true);
        QVERIFY2(fault.isEmpty(), qPrintable(u"kill %1: "_s.arg(kill) + fault));
        const QString left = judgeLeftovers();
        QVERIFY2(left.isEmpty(), qPrintable(u"kill %1: "_s.arg(kill) + left));
    }
}

QTEST_GUILESS_MAIN(tst_SaveTorture)
#include "tst_SaveTorture.moc"
