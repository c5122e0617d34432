// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modFile.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"
#include "util/ByteSink.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_modFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void newGivesOneEntryInLabelEditing();
    void openAsksAndLoads();
    void openCancelled();
    void openDoesNotCheckWhatIsOpen();

    void aRecentFileIsLoaded();
    void aRecentFileThatIsOpenIsRefused();
    void aRecentFileThatIsOpenByAnotherNameIsRefused();
    void aRecentFileThatIsGoneIsToldAndRemoved();

    void saveWritesToTheDocumentsFile();
    void saveOnANewDocumentAsksForAName();
    void saveCancelledKeepsANewDocumentChanged();
    void saveRefusedMarksTheDocumentUnchanged();
    void saveThatFailsKeepsTheDocumentChanged();
    void aSaveThatFailsBeforeItBeginsKeepsTheDocumentChanged();
    void saveAsAsksForAName_data();
    void saveAsAsksForAName();
    void saveAsCancelled();
    void saveAsOverAnotherOpenDocumentIsRefused();
    void saveAllSkipsReadOnlyDocumentsAndAsksForNames();
    void saveAllGoesOnAfterACancelledDialog();
    void saveAllShowsTheFirstThatCouldNotBeSaved();

    void closeClosesTheActiveWindow();
    void closeThatIsRefused();
    void exitClosesTheMainWindow();

    void importTextMakesADocumentOfTheFile();
    void importTextCancelledOpensNothing();
    void anImportThatFailsLeavesNoWindow();
    void importClipboardMakesADocument();
    void exportTextAsksForAName();
    void exportTextCancelled();
    void exportTextOverAnOpenFileIsRefused();
    void exportClipboard();
    void printingAsksHowMuch_data();
    void printingAsksHowMuch();
    void printingCancelledPrintsNothing();
    void printSetUpNeedsNoDocument();
    void withoutADocumentNothingHappens();

private:
    FakeDocument &openDocument(const QString &sFile = QString())
    {
        Document &document = m_fake->windows.createDocument();
        plantOutline(rawOutline(document).tree, {u"Root"_s});
        document.m_sFile = sFile;
        document.history.touch();
        return m_fake->windows.fakeOf(document);
    }

    QString path(const QString &name) const { return (*m_folder)(name); }

    std::unique_ptr<FakePorts> m_fake;
    std::unique_ptr<ErrorRecorder> m_errors;
    std::unique_ptr<TestFolder> m_folder;
};

namespace
{

const QString qlyFilter = u"Quillery Files (*.qly)|*.qly"_s;
const QString txtFilter = u"Text Files (*.txt)|*.txt"_s;
const QString allFilter = u"All Files (*.*)|*.*"_s;

// What openDocument()'s document is as plain text.
const QByteArray asText = "0 Root\r\n\r\n";

QString joined(const std::vector<FileFilter> &filters)
{
    QStringList parts;
    for (const FileFilter &filter : filters)
        parts.append(filter.description + u'|' + filter.pattern);
    return parts.join(u'|');
}

} // namespace

void tst_modFile::init()
{
    m_fake = std::make_unique<FakePorts>();
    m_errors = std::make_unique<ErrorRecorder>();
    m_folder = std::make_unique<TestFolder>();
}

void tst_modFile::cleanup()
{
    QVERIFY(!bBusy);
    QVERIFY(m_fake->dialogs.answers.empty() && m_fake->dialogs.openNames.empty() && m_fake->dialogs.saveNames.empty());
    m_errors.reset();
    m_fake.reset();
    m_folder.reset();
}

void tst_modFile::newGivesOneEntryInLabelEditing()
{
    modFile::FileNew();
    const FakeDocument &fake = *m_fake->windows.active;
    QCOMPARE(dumpOutline(fake.document.tree), QStringList(u"New Entry <"_s));
    QVERIFY(fake.outline.editingLabel);
    QVERIFY(fake.document.m_bDataChanged());
    QVERIFY(fake.document.m_sFile.isEmpty());
    QCOMPARE(fake.window.text, u"Document 1"_s);
    modFile::FileNew();
    QCOMPARE(m_fake->windows.open.size(), size_t(2));
}

void tst_modFile::openAsksAndLoads()
{
    m_folder->write(u"a.qly"_s, nativeBytes({u"Loaded"_s}));
    sayOfActive(u"before"_s);
    m_fake->dialogs.openNames = {path(u"a.qly"_s)};
    modFile::FileOpen();
    QCOMPARE(m_fake->dialogs.openRequests.size(), size_t(1));
    const FileDialogRequest &request = m_fake->dialogs.openRequests[0];
    QCOMPARE(joined(request.filters), qlyFilter + u'|' + txtFilter + u'|' + allFilter);
    QCOMPARE(request.defaultExtension, u"qly"_s);
    QCOMPARE(request.initialName, QString());
    QCOMPARE(m_fake->windows.active->document.m_sFile, path(u"a.qly"_s));
    QVERIFY(m_fake->statusText() != u"before"_s);
}

void tst_modFile::openCancelled()
{
    m_fake->dialogs.openNames = {std::nullopt};
    modFile::FileOpen();
    QVERIFY(m_fake->windows.open.empty());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modFile::openDoesNotCheckWhatIsOpen()
{
    m_folder->write(u"a.qly"_s, nativeBytes({u"Loaded"_s}));
    m_fake->dialogs.openNames = {path(u"a.qly"_s), path(u"a.qly"_s)};
    modFile::FileOpen();
    modFile::FileOpen();
    QCOMPARE(m_fake->windows.open.size(), size_t(2));
    QCOMPARE(m_fake->dialogs.warnings, QStringList());
}

void tst_modFile::aRecentFileIsLoaded()
{
    m_folder->write(u"two words.qly"_s, nativeBytes({u"Loaded"_s}));
    const QString sFile = path(u"two words.qly"_s);
    m_fake->recentFiles.captions = {u"&1 /elsewhere/b.qly"_s, u"&2 "_s + sFile};
    modFile::FileMRU(2);
    QCOMPARE(m_fake->windows.active->document.m_sFile, sFile);
    QCOMPARE(m_fake->dialogs.warnings, QStringList());
    QVERIFY(!m_fake->recentFiles.updates.empty());
    for (const FakeRecentFiles::Update &update : m_fake->recentFiles.updates) {
        QCOMPARE(update.file, sFile);
        QVERIFY(!update.remove);
    }
}

void tst_modFile::aRecentFileThatIsOpenIsRefused()
{
    m_folder->write(u"a.qly"_s, "x");
    openDocument(path(u"a.qly"_s));
    openDocument();
    m_fake->recentFiles.captions = {u"&1 "_s + path(u"a.qly"_s)};
    modFile::FileMRU(1);
    QCOMPARE(m_fake->dialogs.warnings, QStringList(u"Warning - the file "_s + path(u"a.qly"_s) +
                                                   u" is already loaded, so cannot be loaded again"_s));
    QCOMPARE(m_fake->windows.open.size(), size_t(2));
    QVERIFY(m_fake->recentFiles.updates.empty());
}

void tst_modFile::aRecentFileThatIsOpenByAnotherNameIsRefused()
{
    m_folder->write(u"a.qly"_s, "x");
    QVERIFY(QFile::link(path(u"a.qly"_s), path(u"link.qly"_s)));
    QVERIFY(QFile::link(m_folder->path(), path(u"here"_s)));
    openDocument(path(u"a.qly"_s));
    m_fake->recentFiles.captions = {u"&1 "_s + path(u"link.qly"_s), u"&2 "_s + path(u"here/a.qly"_s)};
    modFile::FileMRU(1);
    modFile::FileMRU(2);
    QCOMPARE(m_fake->dialogs.warnings.size(), 2);
    QCOMPARE(m_fake->windows.open.size(), size_t(1));
}

void tst_modFile::aRecentFileThatIsGoneIsToldAndRemoved()
{
    m_fake->recentFiles.captions = {u"&1 "_s + path(u"gone.qly"_s)};
    modFile::FileMRU(1);
    QCOMPARE(m_fake->dialogs.warnings,
             QStringList(u"Warning - the file "_s + path(u"gone.qly"_s) + u" no longer exists, so cannot be loaded"_s));
    QVERIFY(m_fake->windows.open.empty());
    QCOMPARE(m_fake->recentFiles.updates.size(), size_t(1));
    QCOMPARE(m_fake->recentFiles.updates[0].file, path(u"gone.qly"_s));
    QVERIFY(m_fake->recentFiles.updates[0].remove);
}

void tst_modFile::saveWritesToTheDocumentsFile()
{
    const FakeDocument &fake = openDocument(path(u"a.qly"_s));
    QVERIFY(modFile::FileSave());
    QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(fake.document.outline()));
    QVERIFY(!fake.document.m_bDataChanged());
    QVERIFY(m_fake->dialogs.saveRequests.empty());
}

void tst_modFile::saveOnANewDocumentAsksForAName()
{
    const FakeDocument &fake = openDocument();
    m_fake->dialogs.saveNames = {path(u"new.qly"_s)};
    QVERIFY(modFile::FileSave());
    QCOMPARE(m_folder->read(u"new.qly"_s), nativeBytes(fake.document.outline()));
    QCOMPARE(fake.document.m_sFile, path(u"new.qly"_s));
    QVERIFY(!fake.document.m_bDataChanged());
    QCOMPARE(m_fake->dialogs.saveRequests[0].initialName, QString());
}

void tst_modFile::saveCancelledKeepsANewDocumentChanged()
{
    const FakeDocument &fake = openDocument();
    m_fake->dialogs.saveNames = {std::nullopt};
    QVERIFY(!modFile::FileSave());
    QVERIFY(fake.document.m_bDataChanged());
    QVERIFY(fake.document.m_sFile.isEmpty());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modFile::saveRefusedMarksTheDocumentUnchanged()
{
    FakeDocument &fake = openDocument(path(u"a.txt"_s));
    rawOutline(fake.document).tree.insert(Relationship::tvwChild, fake.document.tree.root());
    m_fake->dialogs.answers = {Answer::No};
    QVERIFY(!modFile::FileSave());
    QVERIFY2(!fake.document.m_bDataChanged(), "the flag is cleared before the question, by design");
    QVERIFY(m_folder->names().isEmpty());
}

void tst_modFile::saveThatFailsKeepsTheDocumentChanged()
{
    const FakeDocument &fake = openDocument(path(u"gone/a.qly"_s));
    QVERIFY(!modFile::FileSave());
    QVERIFY(fake.document.m_bDataChanged());
    QCOMPARE(m_errors->summary(), QStringList(u"76 modDoc DocSave"_s));
}

void tst_modFile::aSaveThatFailsBeforeItBeginsKeepsTheDocumentChanged()
{
    FakeDocument &fake = openDocument(path(u"a.txt"_s));
    // The text is looked at before the file is.
    rawOutline(fake.document).tree.setPendingText(fake.document.tree.root(), []() -> QByteArray {
        throw std::bad_alloc();
    });
    QVERIFY(!modFile::FileSave());
    QVERIFY(fake.document.m_bDataChanged());
    QVERIFY(fake.document.hasNotice(NoticeKind::NotSaved));
    QCOMPARE(m_errors->summary(), QStringList(u"7 modDoc DocSave"_s));
    QVERIFY(m_folder->names().isEmpty());
}

void tst_modFile::saveAsAsksForAName_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("initialName");
    QTest::newRow("a document with a file") << u"/a.d/notes.qly"_s << u"/a.d/notes"_s;
    QTest::newRow("a file without an extension") << u"/a.d/notes"_s << u"/a.d/notes"_s;
    QTest::newRow("a new document") << QString() << QString();
    QTest::newRow("a name with stops") << u"/a.d/v1.2.qly"_s << u"/a.d/v1.2"_s;
    QTest::newRow("a name that would be a text's without its extension")
        << u"/a.d/notes.txt.qly"_s << u"/a.d/notes.txt.qly"_s;
}

void tst_modFile::saveAsAsksForAName()
{
    QFETCH(const QString, file);
    QFETCH(const QString, initialName);
    const FakeDocument &fake = openDocument(file);
    m_fake->dialogs.saveNames = {path(u"b.txt"_s)};
    QVERIFY(modFile::FileSaveAs());
    const FileDialogRequest &request = m_fake->dialogs.saveRequests[0];
    QCOMPARE(joined(request.filters), qlyFilter + u'|' + txtFilter);
    QCOMPARE(request.defaultExtension, u"qly"_s);
    QCOMPARE(request.initialName, initialName);
    QCOMPARE(request.formatExtension, u"qly"_s);
    QCOMPARE(m_folder->read(u"b.txt"_s), asText);
    QCOMPARE(fake.document.m_sFile, path(u"b.txt"_s));
    QVERIFY(!fake.document.m_bDataChanged());
}

void tst_modFile::saveAsCancelled()
{
    const FakeDocument &fake = openDocument(path(u"a.qly"_s));
    m_fake->dialogs.saveNames = {std::nullopt};
    QVERIFY(!modFile::FileSaveAs());
    QVERIFY(fake.document.m_bDataChanged());
    QCOMPARE(fake.document.m_sFile, path(u"a.qly"_s));
    QVERIFY(m_folder->names().isEmpty());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modFile::saveAsOverAnotherOpenDocumentIsRefused()
{
    m_folder->write(u"b.qly"_s, "other");
    QVERIFY(QFile::link(path(u"b.qly"_s), path(u"link.qly"_s)));
    openDocument(path(u"b.qly"_s));
    const FakeDocument &fake = openDocument(path(u"a.qly"_s));
    QCOMPARE(link(qPrintable(path(u"b.qly"_s)), qPrintable(path(u"twin.qly"_s))), 0);
    m_fake->dialogs.saveNames = {path(u"b.qly"_s), path(u"link.qly"_s), path(u"twin.qly"_s)};
    QVERIFY(!modFile::FileSaveAs());
    QVERIFY(!modFile::FileSaveAs());
    QVERIFY(!modFile::FileSaveAs());
    QCOMPARE(m_fake->dialogs.warnings.size(), 3);
    QVERIFY(m_fake->dialogs.warnings[0].contains(path(u"b.qly"_s)));
    QCOMPARE(m_folder->read(u"b.qly"_s), QByteArray("other"));
    QCOMPARE(fake.document.m_sFile, path(u"a.qly"_s));
    QVERIFY(fake.document.m_bDataChanged());
    // Over its own file it may be.
    m_fake->dialogs.saveNames = {path(u"a.qly"_s)};
    QVERIFY(modFile::FileSaveAs());
}

void tst_modFile::saveAllSkipsReadOnlyDocumentsAndAsksForNames()
{
    m_folder->write(u"locked.qly"_s, "old", 0444);
    const FakeDocument &first = openDocument(path(u"a.qly"_s));
    const FakeDocument &locked = openDocument(path(u"locked.qly"_s));
    const FakeDocument &untitled = openDocument();
    m_fake->dialogs.saveNames = {path(u"named.qly"_s)};
    modFile::FileSaveAll();
    QCOMPARE(m_folder->names(), QStringList({u"a.qly"_s, u"locked.qly"_s, u"named.qly"_s}));
    QCOMPARE(m_folder->read(u"locked.qly"_s), QByteArray("old"));
    QCOMPARE(first.window.timesActivated, 1);
    QCOMPARE(locked.window.timesActivated, 0);
    QCOMPARE(untitled.window.timesActivated, 1);
    QVERIFY(!first.document.m_bDataChanged() && !untitled.document.m_bDataChanged() &&
            locked.document.m_bDataChanged());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modFile::saveAllGoesOnAfterACancelledDialog()
{
    openDocument();
    openDocument(path(u"b.qly"_s));
    m_fake->dialogs.saveNames = {std::nullopt};
    modFile::FileSaveAll();
    QCOMPARE(m_folder->names(), QStringList(u"b.qly"_s));
}

void tst_modFile::saveAllShowsTheFirstThatCouldNotBeSaved()
{
    const FakeDocument &cancelled = openDocument();
    const FakeDocument &lost = openDocument(path(u"gone/b.qly"_s));
    const FakeDocument &lostToo = openDocument(path(u"gone/c.qly"_s));
    const FakeDocument &saved = openDocument(path(u"d.qly"_s));
    m_fake->dialogs.saveNames = {std::nullopt};
    modFile::FileSaveAll();
    QCOMPARE(m_fake->windows.active, &lost);
    QVERIFY(!cancelled.document.hasNotice(NoticeKind::NotSaved));
    QVERIFY(lost.document.hasNotice(NoticeKind::NotSaved));
    QVERIFY(lostToo.document.hasNotice(NoticeKind::NotSaved));
    QVERIFY(!saved.document.hasNotice(NoticeKind::NotSaved));
    QVERIFY(!saved.document.m_bDataChanged() && lost.document.m_bDataChanged());
}

void tst_modFile::closeClosesTheActiveWindow()
{
    openDocument();
    openDocument(path(u"a.qly"_s));
    sayOfActive(u"before"_s);
    modFile::FileClose();
    QCOMPARE(m_fake->windows.open.size(), size_t(1));
    QVERIFY(m_fake->windows.active->document.m_sFile.isEmpty());
    QCOMPARE(m_fake->statusText(), QString());
}

void tst_modFile::closeThatIsRefused()
{
    openDocument();
    m_fake->windows.closable = false;
    modFile::FileClose();
    QCOMPARE(m_fake->windows.open.size(), size_t(1));
    QCOMPARE(m_errors->count(), 0);
}

void tst_modFile::exitClosesTheMainWindow()
{
    modFile::FileExit();
    QCOMPARE(m_fake->windows.timesMainWindowClosed, 1);
}

void tst_modFile::importTextMakesADocumentOfTheFile()
{
    m_folder->write(u"a.txt"_s, "one");
    m_fake->dialogs.openNames = {path(u"a.txt"_s)};
    modFile::FileImportText();
    QCOMPARE(joined(m_fake->dialogs.openRequests[0].filters), txtFilter);
    QCOMPARE(m_fake->windows.active->text.Text(), u"one\r\n"_s);
    QCOMPARE(m_fake->windows.open.size(), size_t(1));
    QVERIFY(m_fake->windows.active->document.m_sFile.isEmpty());
    QVERIFY(m_fake->windows.active->document.m_bDataChanged());
}

void tst_modFile::importTextCancelledOpensNothing()
{
    m_fake->dialogs.openNames = {std::nullopt};
    modFile::FileImportText();
    QVERIFY(m_fake->windows.open.empty());
}

void tst_modFile::anImportThatFailsLeavesNoWindow()
{
    openDocument(path(u"a.qly"_s));
    m_fake->windows.onCreate = [] { QFAIL("no window opens, not even for a moment"); };
    m_fake->dialogs.openNames = {path(u"gone.txt"_s)};
    modFile::FileImportText();
    QCOMPARE(m_fake->windows.open.size(), size_t(1));
    QCOMPARE(m_fake->windows.active->document.m_sFile, path(u"a.qly"_s));
    QCOMPARE(m_fake->dialogs.warnings,
             QStringList(u"Warning - the file "_s + path(u"gone.txt"_s) + u" could not be imported"_s));
    QCOMPARE(m_errors->summary(), QStringList(u"53 modDocText DocImport"_s));
}

void tst_modFile::importClipboardMakesADocument()
{
    m_fake->clipboard.held = u"one"_s;
    modFile::FileImportClipboard();
    QCOMPARE(m_fake->windows.open.size(), size_t(1));
    QCOMPARE(m_fake->windows.active->text.Text(), u"one\r\n"_s);
}

void tst_modFile::exportTextAsksForAName()
{
    openDocument(u"/a/notes.qly"_s);
    m_fake->dialogs.saveNames = {path(u"b.txt"_s)};
    modFile::FileExportText();
    const FileDialogRequest &request = m_fake->dialogs.saveRequests[0];
    QCOMPARE(joined(request.filters), txtFilter);
    QCOMPARE(request.initialName, u"/a/notes"_s);
    QCOMPARE(m_folder->read(u"b.txt"_s), asText);
    QCOMPARE(m_fake->windows.active->document.m_sFile, u"/a/notes.qly"_s);
}

void tst_modFile::exportTextOverAnOpenFileIsRefused()
{
    for (const QString &name : {u"a.qly"_s, u"b.txt"_s}) {
        m_folder->write(name, "x");
        openDocument(path(name));
    }
    QVERIFY(QFile::link(path(u"a.qly"_s), path(u"link.txt"_s)));
    // Neither its own file, nor another document's, nor one by another name.
    m_fake->dialogs.saveNames = {path(u"b.txt"_s), path(u"a.qly"_s), path(u"link.txt"_s)};
    for (int time = 0; time < 3; ++time)
        modFile::FileExportText();
    for (const QString &name : {u"a.qly"_s, u"b.txt"_s, u"link.txt"_s})
        QCOMPARE(m_folder->read(name), QByteArray("x"));
    QCOMPARE(m_fake->dialogs.warnings.size(), 3);
}

void tst_modFile::exportTextCancelled()
{
    openDocument();
    m_fake->dialogs.saveNames = {std::nullopt};
    modFile::FileExportText();
    QCOMPARE(m_folder->names(), QStringList());
}

void tst_modFile::exportClipboard()
{
    openDocument();
    modFile::FileExportClipboard();
    QCOMPARE(m_fake->clipboard.held, QString::fromLatin1(asText));
}

void tst_modFile::printingAsksHowMuch_data()
{
    QTest::addColumn<bool>("bCurrentEntry");
    QTest::addColumn<bool>("bYes");
    QTest::addColumn<QString>("top");
    QTest::newRow("document, yes: all of it") << false << true << u"Root"_s;
    QTest::newRow("document, no: the selected entry") << false << false << u"Second"_s;
    QTest::newRow("entry, yes: it and what is below") << true << true << u"Second"_s;
    QTest::newRow("entry, no: the entry") << true << false << u"Second"_s;
}

void tst_modFile::printingAsksHowMuch()
{
    QFETCH(const bool, bCurrentEntry);
    QFETCH(const bool, bYes);
    QFETCH(const QString, top);
    Document &document = m_fake->windows.createDocument();
    plantOutline(rawOutline(document).tree, {u"Root"_s, u" First"_s, u" Second <"_s, u"  Deep"_s});
    const Answer answer = bYes ? Answer::Yes : Answer::No;
    m_fake->dialogs.answers = {answer, answer};
    modFile::FilePrint(bCurrentEntry);
    modFile::FilePrintPreview(bCurrentEntry);
    QCOMPARE(m_fake->dialogs.plainQuestions, QStringList({u"Do you want to include any child entries?"_s,
                                                          u"Do you want to include all lower level entries?"_s}));
    QVERIFY(m_fake->dialogs.presets == std::vector(2, Answer::No));
    QCOMPARE(m_fake->printing.calls.size(), size_t(2));
    QCOMPARE(m_fake->printing.calls[0].name, u"print"_s);
    QCOMPARE(m_fake->printing.calls[1].name, u"preview"_s);
    for (const FakePrinting::Call &call : m_fake->printing.calls) {
        QCOMPARE(call.extent.document, &document);
        QCOMPARE(call.extent.top->label(), top);
        QCOMPARE(call.extent.bDescendants, bYes);
    }
}

void tst_modFile::printingCancelledPrintsNothing()
{
    Document &document = m_fake->windows.createDocument();
    plantOutline(rawOutline(document).tree, {u"Root <"_s});
    m_fake->dialogs.answers = {Answer::Cancel, Answer::Cancel};
    modFile::FilePrint(false);
    modFile::FilePrintPreview(true);
    QVERIFY(m_fake->printing.calls.empty());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modFile::printSetUpNeedsNoDocument()
{
    modFile::FilePrintSetup();
    QCOMPARE(m_fake->printing.calls.size(), size_t(1));
    QCOMPARE(m_fake->printing.calls[0].name, u"setUp"_s);
}

void tst_modFile::withoutADocumentNothingHappens()
{
    modFile::FilePrint(true);
    modFile::FilePrintPreview(false);
    QVERIFY(m_fake->printing.calls.empty());
    QVERIFY(m_fake->dialogs.plainQuestions.isEmpty());
    QVERIFY(!modFile::FileSave());
    QVERIFY(!modFile::FileSaveAs());
    modFile::FileSaveAll();
    modFile::FileClose();
    modFile::FileExportText();
    m_fake->clipboard.held = u"before"_s;
    modFile::FileExportClipboard();
    QVERIFY(m_fake->dialogs.saveRequests.empty());
    QCOMPARE(m_fake->clipboard.held, u"before"_s);
    QCOMPARE(m_errors->count(), 0);
}

QTEST_MAIN(tst_modFile)
#include "tst_modFile.moc"
