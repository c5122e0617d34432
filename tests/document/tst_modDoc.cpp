// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modDoc.h"
#include "document/modNodes.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"

#include <QTest>

using namespace Qt::StringLiterals;

// The life of documents: how they are made, loaded and saved.
class tst_modDoc : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void untitledCaptionsCountTheOpenWindows();
    void aNewDocument();
    void aNewDocumentsLabelEditingFollowsTheOption();

    void readOnlyIsAskedOfTheFile();
    void readOnlyForAnotherUser();

    void loadingAFileThatDoesNotExistOpensNothing_data();
    void loadingAFileThatDoesNotExistOpensNothing();
    void theFormatOfAFile_data();
    void theFormatOfAFile();
    void aLoadedDocument();
    void aWindowOpensOnceTheFileIsRead();
    void theFlagsOfALoadedDocument();
    void theSelectionOfALoadedDocument_data();
    void theSelectionOfALoadedDocument();
    void aReadOnlyDocument_data();
    void aReadOnlyDocument();
    void aRemarkIsALineInTheLogAndTheLoadCountsAsWhole();
    void whatWouldBeSavedOtherwiseIsRemarkedOn_data();
    void whatWouldBeSavedOtherwiseIsRemarkedOn();
    void aFailedLoadKeepsWhatWasReadWithoutTheFilesName_data();
    void aFailedLoadKeepsWhatWasReadWithoutTheFilesName();
    void aFailedLoadOfAReadOnlyFileLeavesAnUnlockedWindow();
    void whatWasReadIsADocumentLikeAnyOtherOnceSaved();
    void aFileThatMayNotBeRead();

    void savingWithoutADocument();
    void savingWritesTheFormatOfTheExtension_data();
    void savingWritesTheFormatOfTheExtension();
    void aSavedDocument();
    void theBackupHoldsTheOldContent();
    void noBackup_data();
    void noBackup();
    void theBackupLiesBesideALinksTarget();
    void aFolderThatTakesNoNewFileIsAskedAboutOnceASave();
    void aFileWithTwoNamesKeepsBothAndItsBackup();
    void oneEntryAsTextIsNotAskedAbout();
    void severalEntriesAsTextAreAskedAbout();
    void aRefusedTextWarningChangesNothing_data();
    void aRefusedTextWarningChangesNothing();
    void aBackupThatCannotBeMadeIsTold();
    void aFailedSaveChangesNothing_data();
    void aFailedSaveChangesNothing();
    void whatCouldNotBeSavedIsNotSaidToBeHereAloneWhenItIsUndone();
    void aDamagedFileIsToldOfUntilItIsWrittenItself();
    void aFailedSaveUnderAnotherNameKeepsTheOldOne();
    void aFullDiskAtAnyByteLosesNothing();

    void whatFailsBesideALoadOrASaveIsReportedByItself();

    void defaultVersions_data();
    void defaultVersions();

private:
    Document &active() { return m_fake->windows.active->document; }

    // An active document with a root and one entry more for each number.
    Document &plant(int entries)
    {
        Document &document = m_fake->windows.createDocument();
        plantOutline(rawOutline(document).tree, {u"Root"_s});
        for (int i = 1; i < entries; ++i)
            rawOutline(document).tree.insert(Relationship::tvwChild, document.tree.root());
        return document;
    }

    void expectIdle()
    {
        QVERIFY(!bBusy);
        QVERIFY(!m_fake->pointer.hourglass);
        QCOMPARE(iActionDepth, 0);
        if (m_fake->windows.active) {
            QVERIFY(m_fake->windows.active->outline.visible);
            QVERIFY(m_fake->windows.active->text.visible);
        }
    }

    std::unique_ptr<FakePorts> m_fake;
    std::unique_ptr<ErrorRecorder> m_errors;
    std::unique_ptr<TestFolder> m_folder;
};

namespace
{

// What a document of one entry is as plain text.
const QByteArray asText = "0 Root\r\n\r\n";

// Longer than what is saved over it.
const QByteArray longContent(5000, 'x');

// The bytes of a native file of one entry, and some that belong to nothing.
QByteArray damagedFile()
{
    return nativeBytes({u"Root"_s}).replace("{\\qlf_outlinefontname", "x{\\qlf_outlinefontname");
}

} // namespace

void tst_modDoc::init()
{
    m_fake = std::make_unique<FakePorts>();
    m_errors = std::make_unique<ErrorRecorder>();
    m_folder = std::make_unique<TestFolder>();
}

void tst_modDoc::cleanup()
{
    expectIdle();
    m_errors.reset();
    m_fake.reset();
    m_folder.reset();
}

void tst_modDoc::untitledCaptionsCountTheOpenWindows()
{
    modDoc::DocNew();
    FakeDocument *first = m_fake->windows.active;
    QCOMPARE(first->window.text, u"Document 1"_s);
    modDoc::DocNew();
    QCOMPARE(m_fake->windows.active->window.text, u"Document 2"_s);
    first->window.close();
    modDoc::DocNew();
    QCOMPARE(m_fake->windows.active->window.text, u"Document 2"_s);
    m_folder->write(u"a.qly"_s, nativeBytes({u"Root"_s}));
    modDoc::DocLoad((*m_folder)(u"a.qly"_s));
    modDoc::DocNew();
    QCOMPARE(m_fake->windows.active->window.text, u"Document 4"_s);
}

void tst_modDoc::aNewDocument()
{
    g_fntDefaultOutlineFont.setName(u"Serif"_s);
    g_fntDefaultOutlineFont.setSize(9 * clsFont::point);
    g_fntDefaultTextFont.setName(u"Courier 10 Pitch"_s);
    g_fntDefaultTextFont.setBold(true);
    sayOfActive(u"before"_s);
    modDoc::DocNew();
    const FakeDocument &fake = *m_fake->windows.active;
    QVERIFY(!fake.document.tree.root());
    QVERIFY(fake.document.m_sFile.isEmpty());
    QVERIFY(fake.document.m_bDataChanged());
    QVERIFY(!fake.document.bReadOnly());
    QCOMPARE(fake.document.m_iFileFormatVersion, 1);
    QVERIFY(fake.document.m_fntOutlineFont == g_fntDefaultOutlineFont);
    QVERIFY(fake.document.m_fntTextFont == g_fntDefaultTextFont);
    QCOMPARE(fake.outline.font.family(), u"Serif"_s);
    QCOMPARE(fake.outline.font.pointSize(), 9);
    QCOMPARE(fake.text.font.family(), u"Courier 10 Pitch"_s);
    QVERIFY(fake.text.font.bold());
    QCOMPARE(m_fake->statusText(), QString());
    QVERIFY(fake.outline.timesHidden > 0);
}

void tst_modDoc::aNewDocumentsLabelEditingFollowsTheOption()
{
    for (const bool automatic : {true, false}) {
        g_options.AutoLabelEdit = automatic;
        modDoc::DocNew();
        QCOMPARE(m_fake->windows.active->outline.labelEdit,
                 automatic ? LabelEditMode::tvwAutomatic : LabelEditMode::tvwManual);
    }
}

void tst_modDoc::readOnlyIsAskedOfTheFile()
{
    Document &document = plant(1);
    QVERIFY(!document.bReadOnly());
    document.m_sFile = u"   "_s;
    QVERIFY(!document.bReadOnly());
    document.m_sFile = (*m_folder)(u"a.qly"_s);
    QVERIFY2(!document.bReadOnly(), "a file that does not exist");
    m_folder->write(u"a.qly"_s, "x", 0444);
    QVERIFY(document.bReadOnly());
    m_folder->setMode(u"a.qly"_s, 0644);
    QVERIFY(!document.bReadOnly());
}

void tst_modDoc::readOnlyForAnotherUser()
{
    if (geteuid() != 0)
        QSKIP("Only the superuser can make another user's file");
    Document &document = plant(1);
    m_folder->write(u"a.qly"_s, "x", 0644);
    document.m_sFile = (*m_folder)(u"a.qly"_s);
    const OrdinaryUser user;
    QVERIFY(document.bReadOnly());
}

void tst_modDoc::loadingAFileThatDoesNotExistOpensNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no such file") << u"gone.qly"_s;
    QTest::newRow("no name") << QString();
    QTest::newRow("a folder") << u"."_s;
}

void tst_modDoc::loadingAFileThatDoesNotExistOpensNothing()
{
    QFETCH(const QString, name);
    modDoc::DocLoad(name.isEmpty() ? name : (*m_folder)(name));
    QVERIFY(m_fake->windows.open.empty());
    QVERIFY(m_fake->statusText().endsWith(u"could not be found"_s));
    QCOMPARE(m_fake->dialogs.warnings, QStringList());
    QVERIFY(m_fake->recentFiles.updates.empty());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modDoc::theFormatOfAFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("version");

    const QByteArray native = nativeBytes({u"Root"_s});
    const auto stating = [&native](const QByteArray &version) {
        return QByteArray(native).replace("{\\qlf_formatversion 1}\r\n", version);
    };
    QTest::newRow("qly without a version") << u"a.qly"_s << stating("") << 1;
    QTest::newRow("qly in capitals") << u"a.QLY"_s << stating("") << 1;
    QTest::newRow("qly of version 1") << u"a.qly"_s << native << 1;
    QTest::newRow("qly of version -1 is text") << u"a.qly"_s << stating("{\\qlf_formatversion -1}\r\n") << -1;
    QTest::newRow("qly of no numeric version") << u"a.qly"_s << stating("{\\qlf_formatversion one}\r\n") << 1;
    QTest::newRow("qly of an empty version") << u"a.qly"_s << stating("{\\qlf_formatversion }\r\n") << 1;
    QTest::newRow("txt without a version") << u"notes.txt"_s << stating("") << -1;
    QTest::newRow("txt of version 1 is native") << u"notes.txt"_s << native << 1;
    QTest::newRow("no extension") << u"notes"_s << QByteArray("text") << -1;
    QTest::newRow("a version far into the file") << u"notes.txt"_s << QByteArray(5000, ' ') + native << 1;
}

void tst_modDoc::theFormatOfAFile()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    QFETCH(const int, version);
    m_folder->write(name, content);
    QVERIFY(modDoc::DocLoad((*m_folder)(name)));
    QCOMPARE(active().m_iFileFormatVersion, version);
    QCOMPARE(dumpOutline(active().tree), QStringList(version == 1 ? u"Root <"_s : u"Text <"_s));
}

void tst_modDoc::aLoadedDocument()
{
    m_folder->write(u"a.qly"_s, nativeBytes({u"Root"_s, u" A"_s, u"  A1"_s, u" B"_s}));
    const QString sFile = (*m_folder)(u"a.qly"_s);
    sayOfActive(u"before"_s);
    QVERIFY(modDoc::DocLoad(sFile));
    const FakeDocument &fake = *m_fake->windows.active;
    QCOMPARE(fake.document.m_sFile, sFile);
    QCOMPARE(fake.window.text, sFile);
    QVERIFY(!fake.document.m_bDataChanged());
    QVERIFY(!fake.text.locked);
    QCOMPARE(fake.window.timesSplitFitted, 1);
    QCOMPARE(m_fake->recentFiles.updates.size(), size_t(1));
    QCOMPARE(m_fake->recentFiles.updates[0].file, sFile);
    QVERIFY(!m_fake->recentFiles.updates[0].remove);
    QCOMPARE(m_fake->pointer.timesHourglass, 1);
    QCOMPARE(m_errors->count(), 0);
}

void tst_modDoc::aWindowOpensOnceTheFileIsRead()
{
    m_folder->write(u"a.qly"_s, nativeBytes({u"Root +"_s, u" A <"_s}));
    QStringList shown;
    bool busy = false;
    sayOfActive(u"before"_s);
    m_fake->windows.onCreate = [&] {
        shown = dumpOutline(active().tree);
        busy = bBusy && m_fake->pointer.hourglass && m_fake->windows.said.isEmpty();
    };
    QVERIFY(modDoc::DocLoad((*m_folder)(u"a.qly"_s)));
    QCOMPARE(shown, QStringList({u"Root +"_s, u" A <"_s}));
    QVERIFY(busy);
}

void tst_modDoc::theFlagsOfALoadedDocument()
{
    const QStringList lines = {u"Root +*<"_s, u" A +"_s, u"  A1 *"_s, u"   A11"_s, u" B"_s, u"  B1"_s};
    m_folder->write(u"a.qly"_s, nativeBytes(lines));
    modDoc::DocLoad((*m_folder)(u"a.qly"_s));
    QCOMPARE(dumpOutline(active().tree), lines);
    QCOMPARE(active().tree.taggedCount(), 2);
}

void tst_modDoc::theSelectionOfALoadedDocument_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QString>("selected");
    QTest::newRow("a key") << QByteArray("{\\qlf_selecteditemkey KEY0.1.1}\r\n") << u"A1"_s;
    QTest::newRow("the root's key") << QByteArray("{\\qlf_selecteditemkey KEY0}\r\n") << u"Root"_s;
    QTest::newRow("none: the first entry") << QByteArray() << u"Root"_s;
}

void tst_modDoc::theSelectionOfALoadedDocument()
{
    QFETCH(const QByteArray, record);
    QFETCH(const QString, selected);
    QByteArray content = nativeBytes({u"Root"_s, u" A"_s, u"  A1"_s, u" B"_s});
    content.replace("{\\qlf_selecteditemkey KEY0}\r\n", record);
    content.replace("{\\qlf_nodetext }", "{\\qlf_nodetext {\\rtf1 shown}}");
    m_folder->write(u"a.qly"_s, content);
    QVERIFY(modDoc::DocLoad((*m_folder)(u"a.qly"_s)));
    const FakeDocument &fake = *m_fake->windows.active;
    QCOMPARE(fake.document.tree.selected()->label(), selected);
    QCOMPARE(modNodes::nodCurrent().entry(), fake.document.tree.selected());
    QCOMPARE(fake.text.Text(), u"shown"_s);
    QVERIFY2(fake.document.tree.selected()->visible(), "the selected entry must have a row");
}

void tst_modDoc::aReadOnlyDocument_data()
{
    QTest::addColumn<bool>("automatic");
    QTest::newRow("with manual label editing") << false;
    // The option is applied behind the read-only step, by design.
    QTest::newRow("with automatic label editing") << true;
}

void tst_modDoc::aReadOnlyDocument()
{
    QFETCH(const bool, automatic);
    g_options.AutoLabelEdit = automatic;
    m_folder->write(u"a.qly"_s, nativeBytes({u"Root"_s}), 0444);
    const QString sFile = (*m_folder)(u"a.qly"_s);
    QVERIFY(modDoc::DocLoad(sFile));
    const FakeDocument &fake = *m_fake->windows.active;
    QVERIFY(fake.document.bReadOnly());
    QCOMPARE(fake.window.text, sFile + u" (read-only)"_s);
    QVERIFY(fake.text.locked);
    const LabelEditMode last = automatic ? LabelEditMode::tvwAutomatic : LabelEditMode::tvwManual;
    QCOMPARE(fake.outline.labelEditHistory, std::vector<LabelEditMode>({LabelEditMode::tvwManual, last}));
    QCOMPARE(fake.document.m_sFile, sFile);
}

void tst_modDoc::aRemarkIsALineInTheLogAndTheLoadCountsAsWhole()
{
    const QByteArray content = nativeBytes({u"Root"_s});
    m_folder->write(u"a.qly"_s, content + "{\\qlf_other x}\r\n");
    QVERIFY(modDoc::DocLoad((*m_folder)(u"a.qly"_s)));
    QCOMPARE(m_errors->summary(), QStringList());
    QCOMPARE(m_errors->remarks(),
             QStringList((*m_folder)(u"a.qly"_s) + u": an unknown record (at byte %1)"_s.arg(content.size())));
    QVERIFY(active().notices().empty());
    QCOMPARE(active().m_sFile, (*m_folder)(u"a.qly"_s));
    QCOMPARE(m_fake->recentFiles.updates.size(), size_t(1));
}

void tst_modDoc::whatWouldBeSavedOtherwiseIsRemarkedOn_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("remarked");
    const QByteArray native = nativeBytes({u"Root +"_s, u" A"_s});
    QTest::newRow("the same") << u"a.qly"_s << native << false;
    QTest::newRow("a digit more") << u"a.qly"_s << QByteArray(native).replace("size 8.25}", "size 8.250}") << true;
    QTest::newRow("a digit less") << u"a.qly"_s << QByteArray(native).replace("size 8.25}", "size .25}") << true;
    QTest::newRow("another way to say no")
        << u"a.qly"_s << QByteArray(native).replace("bold False}", "bold 0}") << true;
    QTest::newRow("text is never the same") << u"a.txt"_s << QByteArray("one") << false;
    QTest::newRow("text in a native file's clothes")
        << u"a.qly"_s << QByteArray("{\\qlf_formatversion -1}\r\n") << true;
}

void tst_modDoc::whatWouldBeSavedOtherwiseIsRemarkedOn()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    QFETCH(const bool, remarked);
    m_folder->write(name, content);
    QVERIFY(modDoc::DocLoad((*m_folder)(name)));
    QCOMPARE(m_errors->summary(), QStringList());
    QCOMPARE(m_errors->remarks().size(), remarked ? 1 : 0);
    QCOMPARE(active().m_sFile, (*m_folder)(name));
}

void tst_modDoc::aFailedLoadKeepsWhatWasReadWithoutTheFilesName_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("report");
    QTest::addColumn<bool>("kept");
    const QByteArray native = nativeBytes({u"Root +<"_s, u" A +*"_s, u"  A1"_s});
    const auto changed = [&native](const QByteArray &before, const QByteArray &after) {
        return QByteArray(native).replace(before, after);
    };
    QTest::newRow("a font without its size")
        << changed("{\\qlf_textfontsize 10}\r\n", "") << u"13 modDoc DocLoad"_s << true;
    QTest::newRow("an entry's place is no number") << native + "{\\qlf_nodekey 0.x}\r\n"
                                                   << u"13 modDoc DocLoad"_s << true;
    QTest::newRow("bytes that belong to nothing")
        << changed("{\\qlf_outlinefontname", "x{\\qlf_outlinefontname") << u"321 modDoc DocLoad"_s << true;
    QTest::newRow("the selected entry does not exist")
        << changed("KEY0}", "KEY0.9}") << u"35601 modDoc DocLoad"_s << true;
    QTest::newRow("the version is no 16-bit number")
        << changed("version 1}", "version 40000}") << u"6 modDoc DocLoad"_s << false;
}

void tst_modDoc::aFailedLoadKeepsWhatWasReadWithoutTheFilesName()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, report);
    QFETCH(const bool, kept);
    m_folder->write(u"a.qly"_s, content);
    const QString sFile = (*m_folder)(u"a.qly"_s);
    QVERIFY(!modDoc::DocLoad(sFile));
    QCOMPARE(m_errors->summary(), QStringList(report));
    const FakeDocument &fake = *m_fake->windows.active;
    QVERIFY(fake.document.m_sFile.isEmpty());
    QCOMPARE(fake.document.m_iFileFormatVersion, 1);
    QCOMPARE(fake.window.text, u"Document 1"_s);
    QVERIFY(m_fake->statusText().contains(sFile));
    QCOMPARE(fake.document.noted(), m_fake->statusText());
    QCOMPARE(fake.document.notices().size(), size_t(1));
    QCOMPARE(fake.document.notices()[0].kind, NoticeKind::NotReadWhole);
    QVERIFY(fake.document.notices()[0].text.startsWith(fake.document.noted()));
    QCOMPARE(fake.document.notices()[0].text.contains(u"bytes between two records"_s), report.startsWith(u"321"_s));
    QCOMPARE(fake.document.notices()[0].text.contains(u"\"textfontsize\" of its header is missing"_s),
             !content.contains("textfontsize"));
    QVERIFY(m_fake->recentFiles.updates.empty());
    QCOMPARE(fake.text.locked, !fake.document.tree.root());
    QCOMPARE(dumpOutline(fake.document.tree),
             kept ? QStringList({u"Root +<"_s, u" A +*"_s, u"  A1"_s}) : QStringList());
    QCOMPARE(m_folder->read(u"a.qly"_s), content);
}

void tst_modDoc::aFailedLoadOfAReadOnlyFileLeavesAnUnlockedWindow()
{
    m_folder->write(u"a.qly"_s, damagedFile(), 0444);
    QVERIFY(!modDoc::DocLoad((*m_folder)(u"a.qly"_s)));
    QVERIFY(!m_fake->windows.active->text.locked);
    QCOMPARE(m_fake->windows.active->window.text, u"Document 1"_s);
}

void tst_modDoc::whatWasReadIsADocumentLikeAnyOtherOnceSaved()
{
    m_folder->write(u"a.qly"_s, damagedFile());
    QVERIFY(!modDoc::DocLoad((*m_folder)(u"a.qly"_s)));
    QVERIFY(active().hasNotice(NoticeKind::NotReadWhole));
    m_folder->setMode(QString(), 0555);
    {
        const OrdinaryUser user;
        QCOMPARE(modDoc::DocSave((*m_folder)(u"b.qly"_s)), SaveOutcome::Failed);
    }
    QVERIFY(active().hasNotice(NoticeKind::NotReadWhole));
    m_folder->setMode(QString(), 0777);
    QCOMPARE(modDoc::DocSave((*m_folder)(u"b.qly"_s)), SaveOutcome::Saved);
    QVERIFY2(active().notices().empty(), "it has a file's name now");
    QCOMPARE(m_folder->read(u"a.qly"_s), damagedFile());
}

void tst_modDoc::aFileThatMayNotBeRead()
{
    m_folder->write(u"a.qly"_s, "x", 0);
    bool loaded = true;
    {
        const OrdinaryUser user;
        loaded = modDoc::DocLoad((*m_folder)(u"a.qly"_s));
    }
    QVERIFY(!loaded);
    QCOMPARE(m_errors->summary(), QStringList(u"70 modDoc DocLoad"_s));
    QVERIFY(active().m_sFile.isEmpty());
    QVERIFY(!active().tree.root());
}

void tst_modDoc::savingWithoutADocument()
{
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.qly"_s)), SaveOutcome::Failed);
    QCOMPARE(m_folder->names(), QStringList());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modDoc::savingWritesTheFormatOfTheExtension_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("native");
    QTest::newRow("qly") << u"a.qly"_s << true;
    QTest::newRow("QLY") << u"a.QLY"_s << true;
    QTest::newRow("txt") << u"a.txt"_s << false;
    QTest::newRow("none") << u"a"_s << false;
    QTest::newRow("another") << u"a.doc"_s << false;
}

void tst_modDoc::savingWritesTheFormatOfTheExtension()
{
    QFETCH(const QString, name);
    QFETCH(const bool, native);
    const Document &document = plant(1);
    QCOMPARE(modDoc::DocSave((*m_folder)(name)), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(name), native ? nativeBytes(document.outline()) : asText);
    QCOMPARE(document.m_iFileFormatVersion, native ? 1 : -1);
}

void tst_modDoc::aSavedDocument()
{
    Document &document = plant(3);
    document.note(u"The file could not be saved"_s);
    document.tell({NoticeKind::NotSaved, document.noted()});
    const QString sFile = (*m_folder)(u"a.qly"_s);
    bool busy = false;
    rawOutline(document).tree.setPendingText(document.tree.root(), [&]() -> QByteArray {
        busy = bBusy && m_fake->pointer.hourglass;
        return "typed";
    });
    QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
    QVERIFY(busy);
    QCOMPARE(document.m_sFile, sFile);
    QCOMPARE(document.view()->window.caption(), sFile);
    const QString sTime = QLocale::system().toString(QTime(15, 6, 7), QLocale::ShortFormat);
    const int entries = document.tree.entryCount();
    QCOMPARE(m_fake->statusText(), entries == 1 ? u"Saved at %1, 1 entry"_s.arg(sTime)
                                                : u"Saved at %1, %2 entries"_s.arg(sTime).arg(entries));
    // Until another entry is selected, and when the window is looked at again.
    QCOMPARE(document.noted(), m_fake->statusText());
    QVERIFY(document.notices().empty());
    QCOMPARE(m_fake->recentFiles.updates.size(), size_t(1));
    QCOMPARE(m_fake->recentFiles.updates[0].file, sFile);
    QCOMPARE(m_folder->names(), QStringList(u"a.qly"_s));
    QCOMPARE(m_errors->count(), 0);
}

void tst_modDoc::theBackupHoldsTheOldContent()
{
    Document &document = plant(1);
    const QString sFile = (*m_folder)(u"a.qly"_s);
    m_folder->write(u"a.qly"_s, "first");
    QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"a.bak"_s), QByteArray("first"));
    const QByteArray second = m_folder->read(u"a.qly"_s);
    rawOutline(document).tree.setLabel(document.tree.root(), u"Third"_s);
    QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"a.bak"_s), second);
    QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(document.outline()));
    QCOMPARE(m_folder->names(), QStringList({u"a.bak"_s, u"a.qly"_s}));
}

void tst_modDoc::noBackup_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("the option is off") << 0 << u"a.qly"_s << QStringList{u"a.qly"_s};
    QTest::newRow("there is no old file") << 1 << u"a.qly"_s << QStringList{u"a.qly"_s};
    QTest::newRow("the backup is read-only") << 2 << u"a.qly"_s << QStringList{u"a.bak"_s, u"a.qly"_s};
    QTest::newRow("the file itself is named as backups are") << 3 << u"a.bak"_s << QStringList{u"a.bak"_s};
}

void tst_modDoc::noBackup()
{
    QFETCH(const int, kind);
    QFETCH(const QString, name);
    QFETCH(const QStringList, names);
    const Document &document = plant(1);
    g_options.Backup = kind != 0;
    if (kind != 1)
        m_folder->write(name, "old");
    if (kind == 2)
        m_folder->write(u"a.bak"_s, "protected", 0444);
    QCOMPARE(modDoc::DocSave((*m_folder)(name)), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(name), name.endsWith(u".qly"_s) ? nativeBytes(document.outline()) : asText);
    QCOMPARE(m_folder->names(), names);
    if (kind == 2)
        QCOMPARE(m_folder->read(u"a.bak"_s), QByteArray("protected"));
    QCOMPARE(m_errors->count(), 0);
}

void tst_modDoc::theBackupLiesBesideALinksTarget()
{
    const Document &document = plant(1);
    QVERIFY(QDir(m_folder->path()).mkdir(u"deep"_s));
    m_folder->write(u"deep/real.qly"_s, "old");
    QVERIFY(QFile::link((*m_folder)(u"deep/real.qly"_s), (*m_folder)(u"link.qly"_s)));
    QCOMPARE(modDoc::DocSave((*m_folder)(u"link.qly"_s)), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"deep/real.qly"_s), nativeBytes(document.outline()));
    QCOMPARE(m_folder->read(u"deep/real.bak"_s), QByteArray("old"));
    QVERIFY(QFileInfo((*m_folder)(u"link.qly"_s)).isSymLink());
    QCOMPARE(active().m_sFile, (*m_folder)(u"link.qly"_s));
}

void tst_modDoc::aFolderThatTakesNoNewFileIsAskedAboutOnceASave()
{
    const TestFolder state;
    qputenv("XDG_STATE_HOME", QFile::encodeName(state.path()));
    Document &document = plant(1);
    m_folder->write(u"a.qly"_s, longContent);
    const QString sFile = (*m_folder)(u"a.qly"_s);
    m_folder->setMode(QString(), 0555);
    {
        const OrdinaryUser user;
        m_fake->dialogs.answers = {Answer::Yes, Answer::Yes};
        QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
        QCOMPARE(m_fake->dialogs.questions.size(), 1);
        QVERIFY(m_fake->dialogs.questions[0].contains(sFile));
        QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(document.outline()));
        // No backup can lie beside the file.
        QVERIFY(document.hasNotice(NoticeKind::NoBackup));
        QVERIFY(!document.hasNotice(NoticeKind::NotSaved));
        QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
        QCOMPARE(m_fake->dialogs.questions.size(), 2);
    }
    // A save that failed makes no backup, and needs none.
    QVERIFY(document.hasNotice(NoticeKind::NoBackup));
    {
        const FullDisk disk(3);
        QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Failed);
    }
    QVERIFY(document.hasNotice(NoticeKind::NotSaved));
    QVERIFY(!document.hasNotice(NoticeKind::NoBackup));
    QCOMPARE(m_folder->names(), QStringList(u"a.qly"_s));
    QVERIFY(QDir(state(u"Quillery/saving"_s)).isEmpty());
}

void tst_modDoc::aFileWithTwoNamesKeepsBothAndItsBackup()
{
    const Document &document = plant(1);
    m_folder->write(u"a.qly"_s, longContent, 0640);
    QCOMPARE(link(qPrintable((*m_folder)(u"a.qly"_s)), qPrintable((*m_folder)(u"twin.qly"_s))), 0);
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.qly"_s)), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(document.outline()));
    QCOMPARE(m_folder->read(u"twin.qly"_s), nativeBytes(document.outline()));
    QCOMPARE(m_folder->read(u"a.bak"_s), longContent);
    QCOMPARE(m_folder->mode(u"a.bak"_s), mode_t(0640));
    QCOMPARE(m_folder->names(), QStringList({u"a.bak"_s, u"a.qly"_s, u"twin.qly"_s}));
    QVERIFY(m_fake->dialogs.questions.isEmpty());
}

void tst_modDoc::oneEntryAsTextIsNotAskedAbout()
{
    plant(1);
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.txt"_s)), SaveOutcome::Saved);
    QCOMPARE(m_fake->dialogs.questions, QStringList());
    QCOMPARE(m_folder->read(u"a.txt"_s), asText);
}

void tst_modDoc::severalEntriesAsTextAreAskedAbout()
{
    plant(2);
    m_fake->dialogs.answers = {Answer::Yes};
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.txt"_s)), SaveOutcome::Saved);
    QCOMPARE(m_fake->dialogs.questions,
             QStringList(u"Warning - you are saving this document in text format.  Although the text itself will be "
                         "retained, any rich text formatting and organisation into entries will be lost if the file is "
                         "reloaded.  Normally you should save the file as text only if you wish to load it into "
                         "another application that does not recognise the native formatting.  Do you want to "
                         "continue?"_s));
    QCOMPARE(m_folder->read(u"a.txt"_s), asText + "0.1 \r\n\r\n");
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.qly"_s)), SaveOutcome::Saved);
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
}

void tst_modDoc::aRefusedTextWarningChangesNothing_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("existed");
    QTest::newRow("No, over an old file") << Answer::No << true;
    QTest::newRow("Cancel, over an old file") << Answer::Cancel << true;
    QTest::newRow("No, for a new file") << Answer::No << false;
}

void tst_modDoc::aRefusedTextWarningChangesNothing()
{
    QFETCH(const Answer, answer);
    QFETCH(const bool, existed);
    Document &document = plant(2);
    document.m_sFile = (*m_folder)(u"a.qly"_s);
    if (existed) {
        m_folder->write(u"a.txt"_s, "old");
        m_folder->write(u"a.bak"_s, "older");
    }
    m_fake->dialogs.answers = {answer};
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.txt"_s)), SaveOutcome::Refused);
    QCOMPARE(m_folder->names(), existed ? QStringList({u"a.bak"_s, u"a.txt"_s}) : QStringList());
    if (existed) {
        QCOMPARE(m_folder->read(u"a.txt"_s), QByteArray("old"));
        QCOMPARE(m_folder->read(u"a.bak"_s), QByteArray("older"));
    }
    QCOMPARE(document.m_sFile, (*m_folder)(u"a.qly"_s));
    QCOMPARE(document.m_iFileFormatVersion, 1);
    QVERIFY(m_fake->recentFiles.updates.empty());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modDoc::aBackupThatCannotBeMadeIsTold()
{
    Document &document = plant(1);
    m_folder->write(u"a.qly"_s, "old");
    QVERIFY(QDir(m_folder->path()).mkdir(u"a.bak"_s));
    const QString sFile = (*m_folder)(u"a.qly"_s);
    QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(document.outline()));
    QCOMPARE(m_errors->summary(), QStringList(u"75 modDoc DocSave"_s));
    QVERIFY(document.hasNotice(NoticeKind::NoBackup));
    // The next backup that can be made takes the notice back.
    QVERIFY(QDir(m_folder->path()).rmdir(u"a.bak"_s));
    QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"a.bak"_s), nativeBytes(document.outline()));
    QVERIFY(!document.hasNotice(NoticeKind::NoBackup));
}

void tst_modDoc::aFailedSaveChangesNothing_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("report");
    QTest::newRow("the folder may not be written") << 0 << u"70 modDoc DocSave"_s;
    QTest::newRow("the disk is full") << 1 << u"61 modDoc DocSave"_s;
    QTest::newRow("the writer raises an error") << 2 << u"5 modDoc DocSave"_s;
    QTest::newRow("the memory is full") << 3 << u"7 modDoc DocSave"_s;
    QTest::newRow("the file became read-only") << 4 << u"70 modDoc DocSave"_s;
}

void tst_modDoc::aFailedSaveChangesNothing()
{
    QFETCH(const int, kind);
    QFETCH(const QString, report);
    m_folder->write(u"a.qly"_s, "old", kind == 4 ? 0444 : 0666);
    m_folder->write(u"a.bak"_s, "older");
    const QString sFile = (*m_folder)(u"a.qly"_s);
    Document &document = plant(2);
    document.m_sFile = sFile;
    document.view()->window.setCaption(sFile);
    document.history.markSaved();
    // Made while the file is being written.
    rawOutline(document).tree.setPendingText(document.tree.root()->child(0), [kind]() -> QByteArray {
        if (kind == 2)
            throw RunTimeError(ErrorNumber::InvalidCall);
        if (kind == 3)
            throw std::bad_alloc();
        return "typed";
    });
    SaveOutcome outcome = SaveOutcome::Saved;
    if (kind == 0) {
        m_folder->setMode(QString(), 0555);
        const OrdinaryUser user;
        m_fake->dialogs.answers = {Answer::No};
        outcome = modDoc::DocSave(sFile);
    } else if (kind == 1) {
        const FullDisk disk(3);
        outcome = modDoc::DocSave(sFile);
    } else {
        outcome = modDoc::DocSave(sFile);
    }
    QCOMPARE(outcome, SaveOutcome::Failed);
    QCOMPARE(m_errors->summary(), QStringList(report));
    QCOMPARE(m_folder->read(u"a.qly"_s), QByteArray("old"));
    QCOMPARE(m_folder->read(u"a.bak"_s), QByteArray("older"));
    QCOMPARE(m_folder->names(), QStringList({u"a.bak"_s, u"a.qly"_s}));
    QCOMPARE(document.m_sFile, sFile);
    QVERIFY2(document.m_bDataChanged(), "what is not saved still counts as changed");
    QVERIFY(m_fake->statusText().contains(sFile));
    QCOMPARE(document.noted(), m_fake->statusText());
    QVERIFY(document.hasNotice(NoticeKind::NotSaved));
    QVERIFY(document.notices()[0].text.startsWith(document.noted()));
    QVERIFY(m_fake->recentFiles.updates.empty());
}

void tst_modDoc::whatCouldNotBeSavedIsNotSaidToBeHereAloneWhenItIsUndone()
{
    Document &document = plant(1);
    const QString sFile = (*m_folder)(u"a.qly"_s);
    QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
    document.history.markSaved();
    document.history.setLabel(document.tree.root(), u"changed"_s);
    {
        const FullDisk disk(3);
        QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Failed);
    }
    QVERIFY(document.hasNotice(NoticeKind::NotSaved));
    QVERIFY(document.history.undo());
    QVERIFY(!document.hasUnsavedChanges());
    QVERIFY(document.notices().empty());
}

void tst_modDoc::aDamagedFileIsToldOfUntilItIsWrittenItself()
{
    Document &document = plant(1);
    const QString sFile = (*m_folder)(u"a.qly"_s);
    QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
    document.tell({NoticeKind::FileDamaged, u"What it held before is elsewhere."_s, sFile});
    QCOMPARE(modDoc::DocSave((*m_folder)(u"b.qly"_s)), SaveOutcome::Saved);
    QVERIFY(document.hasNotice(NoticeKind::FileDamaged));
    QCOMPARE(modDoc::DocSave(sFile), SaveOutcome::Saved);
    QVERIFY(document.notices().empty());
}

void tst_modDoc::aFailedSaveUnderAnotherNameKeepsTheOldOne()
{
    Document &document = plant(1);
    document.m_sFile = (*m_folder)(u"a.qly"_s);
    document.view()->window.setCaption(document.m_sFile);
    QCOMPARE(modDoc::DocSave((*m_folder)(u"gone/b.txt"_s)), SaveOutcome::Failed);
    QCOMPARE(m_errors->summary(), QStringList(u"76 modDoc DocSave"_s));
    QCOMPARE(document.m_sFile, (*m_folder)(u"a.qly"_s));
    QCOMPARE(document.view()->window.caption(), (*m_folder)(u"a.qly"_s));
    QCOMPARE(document.m_iFileFormatVersion, 1);
}

void tst_modDoc::aFullDiskAtAnyByteLosesNothing()
{
    m_folder->write(u"a.qly"_s, "old");
    m_folder->write(u"a.bak"_s, "older");
    const Document &document = plant(1);
    const QByteArray content = nativeBytes(document.outline());
    for (qsizetype room = 0; room < content.size(); room += 7) {
        SaveOutcome outcome = SaveOutcome::Saved;
        {
            const FullDisk disk(static_cast<rlim_t>(room));
            outcome = modDoc::DocSave((*m_folder)(u"a.qly"_s));
        }
        QCOMPARE(outcome, SaveOutcome::Failed);
        QCOMPARE(m_folder->read(u"a.qly"_s), QByteArray("old"));
        QCOMPARE(m_folder->read(u"a.bak"_s), QByteArray("older"));
        QCOMPARE(m_folder->names().size(), 2);
    }
    QVERIFY(document.m_bDataChanged());
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.qly"_s)), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"a.qly"_s), content);
    QCOMPARE(m_folder->read(u"a.bak"_s), QByteArray("old"));
}

// What a pane or a message box sets off is not part of the loading or saving that goes on.
void tst_modDoc::whatFailsBesideALoadOrASaveIsReportedByItself()
{
    const auto slot = [] { procedure("a slot", [] { throw RunTimeError(ErrorNumber::ObjectNotSet); }); };
    m_folder->write(u"a.qly"_s, nativeBytes({u"Root"_s, u" A"_s}));
    m_fake->windows.onCreate = [&] { m_fake->windows.active->text.onTextShown = slot; };
    QVERIFY(modDoc::DocLoad((*m_folder)(u"a.qly"_s)));
    QVERIFY(m_errors->count() > 0);
    for (const QString &line : m_errors->summary())
        QCOMPARE(line, u"91 a slot"_s);
    QCOMPARE(active().m_sFile, (*m_folder)(u"a.qly"_s));
    m_errors->clear();
    m_fake->dialogs.onAsk = slot;
    m_fake->dialogs.answers = {Answer::Yes};
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.txt"_s)), SaveOutcome::Saved);
    QCOMPARE(m_errors->summary(), QStringList(u"91 a slot"_s));
}

void tst_modDoc::defaultVersions_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<qint16>("version");
    QTest::newRow("qly") << u"/a/b.qly"_s << Document::nativeFormat;
    QTest::newRow("in any case") << u"/a/b.QlY"_s << Document::nativeFormat;
    QTest::newRow("txt") << u"/a/b.txt"_s << Document::plainTextFormat;
    QTest::newRow("none") << u"/a/b"_s << Document::plainTextFormat;
    QTest::newRow("only as the name") << u"/a/qly"_s << Document::plainTextFormat;
    QTest::newRow("of the folder") << u"/a.qly/b"_s << Document::plainTextFormat;
    QTest::newRow("not the last") << u"/a/b.qly.bak"_s << Document::plainTextFormat;
    QTest::newRow("empty") << QString() << Document::plainTextFormat;
}

void tst_modDoc::defaultVersions()
{
    QFETCH(const QString, file);
    QFETCH(const qint16, version);
    QCOMPARE(modDoc::DocDefaultVersionFromExt(file), version);
}

QTEST_MAIN(tst_modDoc)
#include "tst_modDoc.moc"
