// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/FileWatch.h"
#include "document/OutsideChange.h"
#include "document/UndoRedo.h"
#include "document/modFile.h"
#include "document/modNodes.h"
#include "support/FormatsFixture.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

// What others do to the file of an open document: it is noticed, never overwritten unasked, and can be taken over.
class tst_OutsideChange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theContentTellsWhetherAFileHasChanged_data();
    void theContentTellsWhetherAFileHasChanged();
    void twoNamesOfOneFileAreTheSameFile();

    void anOrdinarySaveAsksNothing_data();
    void anOrdinarySaveAsksNothing();
    void aSaveOverAnothersWorkAsksFirst_data();
    void aSaveOverAnothersWorkAsksFirst();
    void whatChangesWhileTheQuestionStandsIsAskedAboutToo();
    void aSaveUnderAnotherNameAsksNothing();
    void aFileOpenTwiceIsNotSavedOverUnasked();

    void aChangeIsToldOnceAndTakenBackWithIt();
    void whatIsKeptIsSavedWithoutAnotherQuestion();
    void aFileThatIsGoneIsToldAndWrittenAgain();
    void aFileThatComesBackIsNoChange();
    void theLastCopyIsUnsavedHoweverMuchIsUndone();
    void aFileThatMayBeWrittenAgainIsNotSaidToBeLocked();

    void theirsIsOneStep();
    void entriesThatCorrespondStayWhatTheyAre();
    void theirsIsNotTakenOverChangesOfOnesOwn();
    void whatCannotBeReadWholeIsNotTaken_data();
    void whatCannotBeReadWholeIsNotTaken();
    void theirsOfAPlainTextIsTaken();
    void anyOutlineBecomesAnyOther();
    void theirsIsOpenedBesideWithoutItsName();

    void whateverHappensToAFileIsTold_data();
    void whateverHappensToAFileIsTold();
    void otherFilesOfTheFolderAreOfNoMatter();
    void aWatchFollowsTheFileFromOneToTheNext();

private:
    QString path(const QString &name) const { return (*m_folder)(name); }

    Document &active() const { return m_fixture->active()->document; }

    FakeDialogs &dialogs() const { return m_fixture->fake.dialogs; }

    Document &open(const QStringList &lines)
    {
        m_folder->write(u"a.qly"_s, nativeBytes(lines));
        modDoc::DocLoad(path(u"a.qly"_s));
        return active();
    }

    // As another program does.
    void change(const QStringList &lines) { m_folder->write(u"a.qly"_s, nativeBytes(lines)); }

    std::unique_ptr<FormatsFixture> m_fixture;
    std::unique_ptr<TestFolder> m_folder;
};

namespace
{

const QStringList ours = {u"Root <"_s, u" First"_s, u"  Below"_s, u" Second"_s};
const QStringList theirs = {u"Root <"_s, u" Second"_s, u" First"_s, u"  Below *"_s, u"  New"_s};

// Writes into a file as it is, so that it stays the same one.
void overwrite(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QCOMPARE(file.write(content), content.size());
    file.resize(content.size());
}

// Everything of an outline that its file holds.
QByteArray contentOf(const Document &document)
{
    return FormatsFixture::savedNative(document);
}

} // namespace

void tst_OutsideChange::init()
{
    m_fixture = std::make_unique<FormatsFixture>();
    m_folder = std::make_unique<TestFolder>();
}

void tst_OutsideChange::cleanup()
{
    QVERIFY(dialogs().answers.empty() && dialogs().saveNames.empty());
    m_fixture.reset();
    m_folder.reset();
}

void tst_OutsideChange::theContentTellsWhetherAFileHasChanged_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<FileFate>("fate");
    QTest::newRow("nothing") << u"nothing"_s << FileFate::Same;
    QTest::newRow("touched") << u"touch"_s << FileFate::Same;
    QTest::newRow("replaced by the same") << u"same"_s << FileFate::Same;
    QTest::newRow("written at once, as long as before") << u"alike"_s << FileFate::Changed;
    QTest::newRow("longer") << u"longer"_s << FileFate::Changed;
    QTest::newRow("replaced") << u"replace"_s << FileFate::Changed;
    QTest::newRow("not to be read") << u"unreadable"_s << FileFate::Changed;
    QTest::newRow("removed") << u"remove"_s << FileFate::Gone;
    QTest::newRow("its folder moved away") << u"folder"_s << FileFate::Gone;
}

void tst_OutsideChange::theContentTellsWhetherAFileHasChanged()
{
    QFETCH(const QString, what);
    QFETCH(const FileFate, fate);
    QDir(m_folder->path()).mkdir(u"sub"_s);
    m_folder->setMode(u"sub"_s, 0777);
    const QString name = u"sub/a.txt"_s;
    const QByteArray content = "what the file holds";
    m_folder->write(name, content);
    const FileStamp stamp{identityOf(path(name)), ContentDigest(content)};
    std::optional<OrdinaryUser> user;
    if (what == u"touch"_s) {
        const timespec times[] = {{1, 0}, {1, 0}};
        QCOMPARE(utimensat(AT_FDCWD, qPrintable(path(name)), times, 0), 0);
    } else if (what == u"same"_s) {
        m_folder->write(u"sub/b.txt"_s, content);
        QCOMPARE(std::rename(qPrintable(path(u"sub/b.txt"_s)), qPrintable(path(name))), 0);
    } else if (what == u"alike"_s) {
        overwrite(path(name), "What the file holds");
    } else if (what == u"longer"_s) {
        overwrite(path(name), content + '.');
    } else if (what == u"replace"_s) {
        m_folder->write(name, "something else");
    } else if (what == u"unreadable"_s) {
        m_folder->setMode(name, 0);
        user.emplace();
    } else if (what == u"remove"_s) {
        QVERIFY(QFile::remove(path(name)));
    } else if (what == u"folder"_s) {
        QVERIFY(QDir(m_folder->path()).rename(u"sub"_s, u"other"_s));
    }
    QCOMPARE(lookAtFile(path(name), stamp).fate, fate);
}

void tst_OutsideChange::twoNamesOfOneFileAreTheSameFile()
{
    m_folder->write(u"a.qly"_s, "a");
    m_folder->write(u"b.qly"_s, "a");
    QVERIFY(QFile::link(path(u"a.qly"_s), path(u"soft.qly"_s)));
    QCOMPARE(link(qPrintable(path(u"a.qly"_s)), qPrintable(path(u"hard.qly"_s))), 0);
    QVERIFY(isSameFile(path(u"a.qly"_s), path(u"soft.qly"_s)));
    QVERIFY(isSameFile(path(u"a.qly"_s), path(u"hard.qly"_s)));
    QVERIFY(isSameFile(path(u"new.qly"_s), path(u"./new.qly"_s)));
    QVERIFY(!isSameFile(path(u"a.qly"_s), path(u"b.qly"_s)));
    QVERIFY(!isSameFile(path(u"a.qly"_s), path(u"new.qly"_s)));
    QVERIFY(!isSameFile(QString(), QString()));
}

void tst_OutsideChange::anOrdinarySaveAsksNothing_data()
{
    QTest::addColumn<QString>("what");
    for (const QString &what : {u"nothing"_s, u"touch"_s, u"protect"_s, u"same"_s, u"remove"_s})
        QTest::newRow(qPrintable(what)) << what;
}

// A question that no answer was set for fails the test.
void tst_OutsideChange::anOrdinarySaveAsksNothing()
{
    QFETCH(const QString, what);
    Document &document = open(ours);
    for (int round = 0; round < 3; ++round) {
        document.history.setLabel(document.tree.root(), u"Round %1"_s.arg(round));
        if (what == u"touch"_s)
            QVERIFY(utimensat(AT_FDCWD, qPrintable(path(u"a.qly"_s)), nullptr, 0) == 0);
        else if (what == u"protect"_s)
            m_folder->setMode(u"a.qly"_s, 0600);
        else if (what == u"same"_s)
            m_folder->write(u"a.qly"_s, m_folder->read(u"a.qly"_s));
        else if (what == u"remove"_s)
            QVERIFY(QFile::remove(path(u"a.qly"_s)));
        QVERIFY(modFile::FileSave());
        QCOMPARE(m_folder->read(u"a.qly"_s), contentOf(document));
    }
    QVERIFY(dialogs().questions.isEmpty());
}

void tst_OutsideChange::aSaveOverAnothersWorkAsksFirst_data()
{
    QTest::addColumn<bool>("savedBefore");
    QTest::addColumn<Answer>("answer");
    QTest::newRow("read, no") << false << Answer::No;
    QTest::newRow("read, cancelled") << false << Answer::Cancel;
    QTest::newRow("read, yes") << false << Answer::Yes;
    QTest::newRow("saved, no") << true << Answer::No;
    QTest::newRow("saved, yes") << true << Answer::Yes;
}

void tst_OutsideChange::aSaveOverAnothersWorkAsksFirst()
{
    QFETCH(const bool, savedBefore);
    QFETCH(const Answer, answer);
    Document &document = open(ours);
    if (savedBefore)
        QVERIFY(modFile::FileSave());
    document.history.setLabel(document.tree.root(), u"Mine"_s);
    const QByteArray backup = m_folder->read(u"a.bak"_s);
    change(theirs);
    const QByteArray changed = m_folder->read(u"a.qly"_s);
    dialogs().answers = {answer};
    QCOMPARE(modFile::FileSave(), answer == Answer::Yes);
    QCOMPARE(dialogs().questions,
             QStringList(u"The file %1 has changed on the disk since this window read or saved it, and what was "
                         "changed there would be lost. Do you want to save over it?"_s.arg(path(u"a.qly"_s))));
    QVERIFY(!document.hasNotice(NoticeKind::NotSaved));
    QCOMPARE(m_fixture->errors.count(), 0);
    if (answer == Answer::Yes) {
        QCOMPARE(m_folder->read(u"a.qly"_s), contentOf(document));
        QCOMPARE(m_folder->read(u"a.bak"_s), changed);
        QVERIFY(!document.hasUnsavedChanges());
        // From now on it is the document's own again.
        QVERIFY(modFile::FileSave());
        return;
    }
    QCOMPARE(m_folder->read(u"a.qly"_s), changed);
    QCOMPARE(m_folder->read(u"a.bak"_s), backup);
    QVERIFY(document.hasUnsavedChanges());
    QCOMPARE(document.m_sFile, path(u"a.qly"_s));
    QVERIFY(std::ranges::none_of(m_folder->names(), [](const QString &name) { return name.startsWith(u".quill"_s); }));
}

void tst_OutsideChange::whatChangesWhileTheQuestionStandsIsAskedAboutToo()
{
    Document &document = open(ours);
    change(theirs);
    const QByteArray latest = nativeBytes({u"Once more"_s});
    dialogs().onAsk = [&] { m_folder->write(u"a.qly"_s, latest); };
    dialogs().answers = {Answer::Yes, Answer::No};
    QVERIFY(!modFile::FileSave());
    QCOMPARE(dialogs().questions.size(), 2);
    QCOMPARE(m_folder->read(u"a.qly"_s), latest);
    QCOMPARE(document.m_sFile, path(u"a.qly"_s));
    QCOMPARE(m_folder->names(), QStringList(u"a.qly"_s));
}

void tst_OutsideChange::aSaveUnderAnotherNameAsksNothing()
{
    Document &document = open(ours);
    change(theirs);
    const QByteArray changed = m_folder->read(u"a.qly"_s);
    dialogs().saveNames = {path(u"b.qly"_s)};
    QVERIFY(modFile::FileSaveAs());
    QCOMPARE(document.m_sFile, path(u"b.qly"_s));
    QCOMPARE(m_folder->read(u"a.qly"_s), changed);
    // The document's own name is its own under the dialog too.
    m_folder->write(u"b.qly"_s, changed);
    dialogs().saveNames = {path(u"b.qly"_s)};
    dialogs().answers = {Answer::No};
    QVERIFY(!modFile::FileSaveAs());
    QCOMPARE(m_folder->read(u"b.qly"_s), changed);
}

void tst_OutsideChange::aFileOpenTwiceIsNotSavedOverUnasked()
{
    Document &first = open(ours);
    modDoc::DocLoad(path(u"a.qly"_s));
    Document &second = active();
    QVERIFY(&first != &second);
    second.history.setLabel(second.tree.root(), u"Second"_s);
    QVERIFY(modFile::FileSave());
    m_fixture->fake.windows.fakeOf(first).window.activate();
    lookForOutsideChange(first);
    QVERIFY(first.hasNotice(NoticeKind::FileChanged));
    dialogs().answers = {Answer::No};
    QVERIFY(!modFile::FileSave());
    QCOMPARE(m_folder->read(u"a.qly"_s), contentOf(second));
}

void tst_OutsideChange::aChangeIsToldOnceAndTakenBackWithIt()
{
    Document &document = open(ours);
    const QByteArray before = m_folder->read(u"a.qly"_s);
    lookForOutsideChange(document);
    QVERIFY(document.notices().empty());
    change(theirs);
    lookForOutsideChange(document);
    QVERIFY(document.hasNotice(NoticeKind::FileChanged));
    QVERIFY(document.notices().front().text.contains(path(u"a.qly"_s)));
    QVERIFY(!document.hasUnsavedChanges());
    m_folder->write(u"a.qly"_s, before);
    lookForOutsideChange(document);
    QVERIFY(document.notices().empty());
    QVERIFY(modFile::FileSave());
}

void tst_OutsideChange::whatIsKeptIsSavedWithoutAnotherQuestion()
{
    Document &document = open(ours);
    change(theirs);
    lookForOutsideChange(document);
    QVERIFY(!document.hasUnsavedChanges());
    keepMine(document);
    QVERIFY(document.hasUnsavedChanges());
    QVERIFY(document.notices().empty());
    lookForOutsideChange(document);
    QVERIFY(document.notices().empty());
    QVERIFY(modFile::FileSave());
    QCOMPARE(m_folder->read(u"a.qly"_s), contentOf(document));
    // What comes after that was not decided.
    change(theirs);
    lookForOutsideChange(document);
    keepMine(document);
    change({u"Other"_s});
    lookForOutsideChange(document);
    QVERIFY(document.hasNotice(NoticeKind::FileChanged));
    dialogs().answers = {Answer::No};
    QVERIFY(!modFile::FileSave());
}

void tst_OutsideChange::aFileThatIsGoneIsToldAndWrittenAgain()
{
    Document &document = open(ours);
    QVERIFY(QFile::remove(path(u"a.qly"_s)));
    lookForOutsideChange(document);
    QVERIFY(document.hasNotice(NoticeKind::FileGone));
    QVERIFY(document.hasUnsavedChanges());
    // Told once.
    document.dismiss(NoticeKind::FileGone);
    lookForOutsideChange(document);
    QVERIFY(document.notices().empty());
    QVERIFY(modFile::FileSave());
    QCOMPARE(m_folder->read(u"a.qly"_s), contentOf(document));
    QVERIFY(!document.hasUnsavedChanges());
    QVERIFY(QFile::remove(path(u"a.qly"_s)));
    lookForOutsideChange(document);
    QVERIFY(document.hasNotice(NoticeKind::FileGone));
    QVERIFY(modFile::FileSave());
    QVERIFY(document.notices().empty());
}

void tst_OutsideChange::aFileThatComesBackIsNoChange()
{
    Document &document = open(ours);
    const QByteArray before = m_folder->read(u"a.qly"_s);
    QVERIFY(QFile::remove(path(u"a.qly"_s)));
    lookForOutsideChange(document);
    m_folder->write(u"a.qly"_s, before);
    lookForOutsideChange(document);
    QVERIFY(document.notices().empty());
    QVERIFY(!document.hasUnsavedChanges());
    QVERIFY(QFile::remove(path(u"a.qly"_s)));
    lookForOutsideChange(document);
    document.history.setLabel(document.tree.root(), u"Mine"_s);
    change(theirs);
    lookForOutsideChange(document);
    QVERIFY(!document.hasNotice(NoticeKind::FileGone));
    QVERIFY(document.hasNotice(NoticeKind::FileChanged));
    QVERIFY(document.hasUnsavedChanges());
}

void tst_OutsideChange::theLastCopyIsUnsavedHoweverMuchIsUndone()
{
    Document &document = open(ours);
    const QByteArray before = m_folder->read(u"a.qly"_s);
    document.history.setLabel(document.tree.root(), u"Mine"_s);
    QVERIFY(QFile::remove(path(u"a.qly"_s)));
    lookForOutsideChange(document);
    QVERIFY(undoStep(document));
    QVERIFY(document.hasUnsavedChanges());
    QVERIFY(document.hasNotice(NoticeKind::FileGone));
    // It is no longer that when the file is there again.
    const QSignalSpy told(&document.history, &History::positionChanged);
    m_folder->write(u"a.qly"_s, before);
    lookForOutsideChange(document);
    QVERIFY(!document.hasUnsavedChanges());
    QVERIFY(!told.isEmpty());
    QVERIFY(document.notices().empty());
}

void tst_OutsideChange::aFileThatMayBeWrittenAgainIsNotSaidToBeLocked()
{
    Document &document = open(ours);
    document.history.setLabel(document.tree.root(), u"Mine"_s);
    m_folder->setMode(u"a.qly"_s, 0444);
    dialogs().saveNames = {std::nullopt};
    {
        const OrdinaryUser user;
        QVERIFY(!modFile::FileSave());
    }
    QVERIFY(document.hasNotice(NoticeKind::NotSaved));
    m_folder->setMode(u"a.qly"_s, 0644);
    lookForOutsideChange(document);
    QVERIFY(document.notices().empty());
}

void tst_OutsideChange::theirsIsOneStep()
{
    Document &document = open(ours);
    const QByteArray before = contentOf(document);
    Outline changed;
    plantOutline(changed.tree, theirs);
    changed.outlineFont.setName(u"Courier"_s);
    changed.outlineFont.setSize(120000);
    changed.textFont.setName(u"Times"_s);
    changed.tree.setStoredText(changed.tree.itemByKey(u"KEY0.2"_s), "their text");
    changed.foreignTrailer = "{\\qlf_other x}\r\n";
    changed.foreignHeader = {{2, "{\\qlf_head y}\r\n"}};
    changed.tree.setForeignRecords(changed.tree.root(), {{1, "{\\qlf_root z}\r\n"}});
    changed.tree.setForeignRecords(changed.tree.itemByKey(u"KEY0.1"_s), {{1, "{\\qlf_entry z}\r\n"}});
    m_folder->write(u"a.qly"_s, nativeBytes(changed));
    lookForOutsideChange(document);
    QVERIFY(takeTheirs(document));
    QCOMPARE(contentOf(document), nativeBytes(changed));
    QVERIFY(!document.hasUnsavedChanges());
    QVERIFY(document.notices().empty());
    QCOMPARE(document.history.stepCount(), 1);
    QCOMPARE(document.history.undoName(), u"reading of the changed file"_s);
    QCOMPARE(m_fixture->active()->outline.font.family(), u"Courier"_s);
    QCOMPARE(m_fixture->fake.statusText(), u"The file %1 was read again"_s.arg(path(u"a.qly"_s)));
    QVERIFY(modFile::FileSave());
    QVERIFY(undoStep(document));
    QVERIFY(document.hasUnsavedChanges());
    QCOMPARE(contentOf(document), before);
    QVERIFY(redoStep(document));
    QVERIFY(!document.hasUnsavedChanges());
    QVERIFY(document.tree.brokenInvariant().isEmpty());
}

void tst_OutsideChange::entriesThatCorrespondStayWhatTheyAre()
{
    Document &document = open(ours);
    const EntryTree &tree = document.tree;
    const EntryId first = tree.itemByKey(u"KEY0.1"_s)->id();
    const EntryId second = tree.itemByKey(u"KEY0.2"_s)->id();
    modNodes::NodeSelectFull(document, tree.itemByKey(u"KEY0.1.1"_s));
    document.history.markSaved();
    change(theirs);
    QVERIFY(takeTheirs(document));
    QCOMPARE(tree.itemByKey(u"KEY0.2"_s)->id(), first);
    QCOMPARE(tree.itemByKey(u"KEY0.1"_s)->id(), second);
    QCOMPARE(tree.key(tree.selected()), u"KEY0.2.1"_s);
    QVERIFY(tree.selected()->tagged());
    // One that is not there any more hands the selection over to theirs.
    change({u"Root"_s, u" Alone <"_s});
    QVERIFY(takeTheirs(document));
    QCOMPARE(tree.selected()->label(), u"Alone"_s);
    QCOMPARE(document.texts.shownEntry(), tree.selected());
}

void tst_OutsideChange::theirsIsNotTakenOverChangesOfOnesOwn()
{
    Document &document = open(ours);
    document.history.setLabel(document.tree.root(), u"Mine"_s);
    change(theirs);
    lookForOutsideChange(document);
    QVERIFY(!takeTheirs(document));
    QCOMPARE(document.tree.root()->label(), u"Mine"_s);
    QVERIFY(document.hasNotice(NoticeKind::FileChanged));
}

void tst_OutsideChange::whatCannotBeReadWholeIsNotTaken_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("cut off") << nativeBytes(theirs).chopped(20);
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("of a later version") << QByteArray("{\\qlf_formatversion 2}\r\n");
}

void tst_OutsideChange::whatCannotBeReadWholeIsNotTaken()
{
    QFETCH(const QByteArray, bytes);
    Document &document = open(ours);
    const QByteArray before = contentOf(document);
    m_folder->write(u"a.qly"_s, bytes);
    lookForOutsideChange(document);
    QVERIFY(!takeTheirs(document));
    QCOMPARE(contentOf(document), before);
    QCOMPARE(document.history.stepCount(), 0);
    QVERIFY(document.notices().front().text.contains(u"cannot be read whole"_s));
    QCOMPARE(m_fixture->errors.count(), 1);
    dialogs().answers = {Answer::No};
    QVERIFY(!modFile::FileSave());
}

void tst_OutsideChange::theirsOfAPlainTextIsTaken()
{
    m_folder->write(u"a.txt"_s, "before");
    modDoc::DocLoad(path(u"a.txt"_s));
    Document &document = active();
    m_folder->write(u"a.txt"_s, "after");
    lookForOutsideChange(document);
    QVERIFY(takeTheirs(document));
    QCOMPARE(m_fixture->active()->text.Text(), u"after\r\n"_s);
    QVERIFY(undoStep(document));
    QCOMPARE(m_fixture->active()->text.Text(), u"before\r\n"_s);
}

// Any two outlines, many of whose labels are alike.
void tst_OutsideChange::anyOutlineBecomesAnyOther()
{
    QRandomGenerator random(20261122);
    const auto plant = [&random](Outline &outline) {
        std::vector<Entry *> all = {outline.tree.insert(Relationship::tvwFirst, nullptr)};
        const int count = random.bounded(1, 60);
        while (static_cast<int>(all.size()) < count)
            all.push_back(outline.tree.insert(Relationship::tvwChild, all[random.bounded(quint64(all.size()))]));
        for (Entry *entry : all) {
            outline.tree.setLabel(entry, QString(QChar(u'a' + random.bounded(5))));
            outline.tree.setTagged(entry, random.bounded(4) == 0);
            outline.tree.setStoredText(entry, QByteArray::number(random.bounded(3)));
        }
        outline.tree.select(all[random.bounded(quint64(all.size()))]);
    };
    for (int round = 0; round < 300; ++round) {
        Outline one;
        Outline other;
        plant(one);
        plant(other);
        m_folder->write(u"a.qly"_s, nativeBytes(one));
        modDoc::DocLoad(path(u"a.qly"_s));
        Document &document = active();
        const QStringList before = dumpOutline(document.tree);
        const QByteArray beforeBytes = contentOf(document);
        m_folder->write(u"a.qly"_s, nativeBytes(other));
        QVERIFY(takeTheirs(document));
        QCOMPARE(document.tree.brokenInvariant(), QString());
        QCOMPARE(document.tree.entryCount(), other.tree.entryCount());
        const Format &format = formatOfVersion(formatVersion::native);
        QCOMPARE(format.difference(other, document.outline()), QString());
        QVERIFY(document.tree.selected());
        QVERIFY(!document.hasUnsavedChanges());
        QVERIFY(undoStep(document) || document.history.stepCount() == 0);
        QCOMPARE(document.tree.brokenInvariant(), QString());
        QCOMPARE(format.difference(one, document.outline()), QString());
        QVERIFY(redoStep(document) || document.history.stepCount() == 0);
        QCOMPARE(format.difference(other, document.outline()), QString());
        m_fixture->closeAll();
    }
}

void tst_OutsideChange::theirsIsOpenedBesideWithoutItsName()
{
    Document &document = open(ours);
    change(theirs);
    const QByteArray changed = m_folder->read(u"a.qly"_s);
    lookForOutsideChange(document);
    openTheirsBeside(document);
    QVERIFY(&active() != &document);
    QCOMPARE(contentOf(active()), changed);
    QVERIFY(active().m_sFile.isEmpty());
    QCOMPARE(active().view()->window.caption(), path(u"a.qly"_s) + u" (on the disk)"_s);
    QVERIFY(document.hasNotice(NoticeKind::FileChanged));
    dialogs().saveNames = {path(u"b.qly"_s)};
    QVERIFY(modFile::FileSave());
    QCOMPARE(m_folder->read(u"b.qly"_s), changed);
}

void tst_OutsideChange::whateverHappensToAFileIsTold_data()
{
    QTest::addColumn<QString>("what");
    for (const QString &what : {u"write"_s, u"replace"_s, u"remove"_s, u"remove and write"_s, u"come"_s,
                                u"write through a link"_s, u"replace behind a link"_s, u"another link"_s})
        QTest::newRow(qPrintable(what)) << what;
}

void tst_OutsideChange::whateverHappensToAFileIsTold()
{
    QFETCH(const QString, what);
    const bool isLink = what.contains(u"link"_s);
    QDir(m_folder->path()).mkdir(u"far"_s);
    m_folder->setMode(u"far"_s, 0777);
    const QString real = isLink ? u"far/a.txt"_s : u"a.txt"_s;
    if (what != u"come"_s)
        m_folder->write(real, "before");
    if (isLink)
        QVERIFY(QFile::link(path(real), path(u"a.txt"_s)));
    FileWatch watch;
    QSignalSpy stirred(&watch, &FileWatch::stirred);
    watch.setFile(path(u"a.txt"_s));
    for (int round = 0; round < 2; ++round) {
        stirred.clear();
        const QByteArray content = "after " + QByteArray::number(round);
        if (what.startsWith(u"write"_s)) {
            overwrite(path(real), content);
        } else if (what.startsWith(u"replace"_s) || what == u"come"_s) {
            m_folder->write(u"new.txt"_s, content);
            QCOMPARE(std::rename(qPrintable(path(u"new.txt"_s)), qPrintable(path(real))), 0);
        } else if (what == u"remove"_s) {
            if (round == 1)
                m_folder->write(real, content);
            else
                QVERIFY(QFile::remove(path(real)));
        } else if (what == u"remove and write"_s) {
            QVERIFY(QFile::remove(path(real)));
            m_folder->write(real, content);
        } else {
            m_folder->write(u"far/b%1.txt"_s.arg(round), content);
            QVERIFY(QFile::remove(path(u"a.txt"_s)));
            QVERIFY(QFile::link(path(u"far/b%1.txt"_s.arg(round)), path(u"a.txt"_s)));
        }
        QVERIFY(stirred.wait());
    }
}

void tst_OutsideChange::otherFilesOfTheFolderAreOfNoMatter()
{
    m_folder->write(u"a.txt"_s, "before");
    FileWatch watch;
    QSignalSpy stirred(&watch, &FileWatch::stirred);
    watch.setFile(path(u"a.txt"_s));
    // Something that is told of shows that what came before was not.
    m_folder->write(u"b.txt"_s, "b");
    QVERIFY(QFile::remove(path(u"b.txt"_s)));
    FileWatch other;
    QSignalSpy otherStirred(&other, &FileWatch::stirred);
    other.setFile(path(u"b.txt"_s));
    m_folder->write(u"b.txt"_s, "b");
    QVERIFY(otherStirred.wait());
    QVERIFY(stirred.isEmpty());
}

void tst_OutsideChange::aWatchFollowsTheFileFromOneToTheNext()
{
    m_folder->write(u"a.txt"_s, "a");
    m_folder->write(u"b.txt"_s, "b");
    FileWatch watch;
    QSignalSpy stirred(&watch, &FileWatch::stirred);
    watch.setFile(path(u"a.txt"_s));
    watch.setFile(path(u"b.txt"_s));
    overwrite(path(u"a.txt"_s), "other");
    overwrite(path(u"b.txt"_s), "other");
    QVERIFY(stirred.wait());
    QCOMPARE(stirred.size(), 1);
    watch.setFile(QString());
    overwrite(path(u"b.txt"_s), "once more");
    watch.look();
    QVERIFY(stirred.size() == 1);
}

QTEST_MAIN(tst_OutsideChange)
#include "tst_OutsideChange.moc"
