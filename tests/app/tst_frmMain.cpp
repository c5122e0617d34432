// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/frmAbout.h"
#include "commands/CommandTable.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QDropEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QUrl>

using namespace Qt::StringLiterals;

class tst_frmMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init() { m_main = std::make_unique<MainFixture>(); }

    void cleanup() { m_main.reset(); }

    void withNoDocumentOnlyWhatNeedsNoneCanBeChosen();
    void withADocumentItsCommandsCanBeChosen();
    void aReadOnlyDocumentOffersNothingThatWrites();
    void theRootOffersNoMove();
    void itemsWithoutAnActionAreGrey();
    void theFontItemsAskForAFont();
    void fileNewOpensADocumentWithOneEntryBeingNamed();
    void aNewDocumentIsTheActiveOneEvenBeforeTheMainWindowShows();
    void documentsAreListedInTheOrderOfTheirOpening();
    void aClosedDocumentIsNoLongerListedAndAnotherOneIsActive();
    void pastingEndsWithTheDocumentOfTheCopiedEntry();
    void everyRefreshOfTheCommandsTellsTheWholeState_data();
    void everyRefreshOfTheCommandsTellsTheWholeState();
    void aFileThatTurnsReadOnlyIsSeenWhenTheKeyboardComesAndNotAtEachStep();
    void closingTheLastDocumentGreysItsCommands();
    void closingWithNoDocumentOpenAsksNothing();
    void refusingToExitLeavesEverythingAsItIs_data();
    void refusingToExitLeavesEverythingAsItIs();
    void exitStoresTheOpenDocumentsAndClosesThem();
    void aCancelInAnyDocumentsQuestionKeepsEveryWindowOpen();
    void documentsGivenUpAtExitAreNotAskedAboutTwice();
    void aFailedSaveAtExitKeepsTheProgramRunning();
    void fileExitClosesTheMainWindow();
    void threeDroppedFilesAreOpenedInTheirOrder();
    void aDroppedTextIsTakenAsAFileName();
    void aDroppedFileThatIsOpenComesToTheFront();
    void aSaveSaysWhenAndHowMuch();
    void droppingOffersACopy();
    void recentFilesReopenFromTheMenu();
    void saveAllSavesEachDocumentToItsOwnFile();
    void theStatusBarShowsTheSelectedEntry();
    void aLabelOfManyLinesStaysOneLineOfPlainText();
    void viewOptionsFlipTheirOptionsAndMarks_data();
    void viewOptionsFlipTheirOptionsAndMarks();
    void viewStatusBarShowsAndHidesIt();
    void theStatusBarStartsAsTheSettingSays();
    void theMainWindowTakesItsStoredPlace();
    void aPlaceOffEveryScreenIsBroughtBack();
    void theMainWindowIsCalledByTheProgramsName();
    void lostFocusReturnsToTheDocument();
    void theFramesOfDocumentsKeepNoKeys();
    void helpAboutShowsTheBox();
    void theTaggedEntryItemFollowsTheEntry();

private:
    QString makeFile(const QString &name) const { return m_main->app.makeFile(name, "label"); }

    Document &newDocument() const
    {
        m_main->choose("mnuFileNew");
        return *DocumentActive();
    }

    // As the desktop does: the data comes in over the window before it is dropped.
    void drop(const QMimeData &data) const
    {
        constexpr auto offered = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(QPoint(5, 5), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_main->main, &enter);
        QDropEvent event(QPointF(5, 5), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_main->main, &event);
    }

    QLabel *statusText() const
    {
        m_main->refresh();
        return m_main->main.findChild<QLabel *>(u"sbStatusBarText"_s);
    }

    std::deque<Answer> &answers() const { return m_main->app.core.dialogs.answers; }

    QStringList &questions() const { return m_main->app.core.dialogs.questions; }

    std::unique_ptr<MainFixture> m_main;
};

void tst_frmMain::withNoDocumentOnlyWhatNeedsNoneCanBeChosen()
{
    m_main->start();
    QVERIFY(m_main->main.windows().documents().empty());
    for (const char *item : {"mnuFileNew", "mnuFileOpen", "mnuFileExit", "mnuView", "mnuWindow", "mnuHelp",
                             "mnuViewStatusBar", "mnuWindowCascade", "mnuHelpAbout", "mnuFileImportText"})
        QVERIFY2(m_main->enabled(item), item);
    for (const char *item : {"mnuoutline", "mnuEdit", "mnuFileSave", "mnuFileSaveAs", "mnuFileSaveAll", "mnuFileClose",
                             "mnuFileExport", "mnuFileExportText", "mnuOutlineRename", "mnuOutlineInsertBelow"})
        QVERIFY2(!m_main->enabled(item), item);
    QVERIFY(!m_main->action(u"mnuoutline"_s)->isEnabled());
}

void tst_frmMain::withADocumentItsCommandsCanBeChosen()
{
    m_main->start();
    newDocument();
    for (const char *item : {"mnuFileSave", "mnuFileSaveAs", "mnuFileSaveAll", "mnuFileClose", "mnuFileExportText",
                             "mnuoutline", "mnuOutlineRename", "mnuOutlineInsertBelow", "mnuOutlineInsertChild"})
        QVERIFY2(m_main->enabled(item), item);
}

void tst_frmMain::aReadOnlyDocumentOffersNothingThatWrites()
{
    m_main->start();
    const QString file = makeFile(u"help.txt"_s);
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    modDoc::DocLoad(file);
    for (const char *item : {"mnuFileSave", "mnuFileSaveAll", "mnuEdit", "mnuOutlineInsertBelow", "mnuOutlineSortAll",
                             "mnuOutlineRename", "mnuSearchReplace"})
        QVERIFY2(!m_main->enabled(item), item);
    QVERIFY(m_main->enabled("mnuFileSaveAs"));
    QVERIFY(m_main->enabled("mnuOutlineCopy"));
    QVERIFY(m_main->enabled("mnuFileClose"));
}

void tst_frmMain::theRootOffersNoMove()
{
    m_main->start();
    Document &document = newDocument();
    Entry *root = document.tree.root();
    modNodes::NodeInsert(document, Relationship::tvwChild, root);
    modNodes::NodeSelectFull(document, root);
    for (const char *item : {"mnuOutlineInsertAbove", "mnuOutlineTaggedEntry", "mnuOutlineMove", "mnuOutlineMoveUp",
                             "mnuOutlineMoveDown", "mnuOutlineIndent", "mnuOutlineUnindent"})
        QVERIFY2(!m_main->enabled(item), item);
    QVERIFY(m_main->enabled("mnuOutlineInsertBelow"));
    QVERIFY(m_main->enabled("mnuOutlineInsertChild"));
}

void tst_frmMain::itemsWithoutAnActionAreGrey()
{
    m_main->start();
    newDocument();
    m_main->refresh();
    for (const char *item : {"mnuViewMDITaskbar", "mnuWindowNewWindow"}) {
        QVERIFY2(!m_main->enabled(item), item);
        QVERIFY(m_main->action(QString::fromLatin1(item))->isVisible());
    }
}

void tst_frmMain::theFontItemsAskForAFont()
{
    m_main->start();
    Document &document = newDocument();
    FakeDialogs &dialogs = m_main->app.core.dialogs;
    dialogs.fonts = {std::nullopt, std::nullopt, std::nullopt};
    m_main->choose("mnuOutlineFont");
    document.view()->textGotFocus();
    m_main->refresh();
    m_main->choose("mnuEditCurrentFont");
    m_main->choose("mnuEditDocumentFont");
    QCOMPARE(dialogs.fontRequests.size(), std::size_t(3));
}

void tst_frmMain::fileNewOpensADocumentWithOneEntryBeingNamed()
{
    m_main->start();
    const Document &document = newDocument();
    QCOMPARE(document.tree.entryCount(), 1);
    QCOMPARE(document.tree.root()->label(), u"New Entry"_s);
    QCOMPARE(document.view()->window.caption(), u"Document 1"_s);
}

void tst_frmMain::aNewDocumentIsTheActiveOneEvenBeforeTheMainWindowShows()
{
    const QStringList files{makeFile(u"a.txt"_s), makeFile(u"b.txt"_s)};
    appPorts().commandLine = files.join(u' ');
    m_main->main.MDIForm_Load();
    QVERIFY(!m_main->main.isVisible());
    QCOMPARE(DocumentActive()->m_sFile, files.last());
    QVERIFY(m_main->enabled("mnuFileSave"));
    m_main->main.show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_main->main));
    QCOMPARE(DocumentActive()->m_sFile, files.last());
    // What the window shows is what commands work on.
    QCOMPARE(m_main->main.findChild<QMdiArea *>()->currentSubWindow()->windowTitle(), files.last());
}

void tst_frmMain::documentsAreListedInTheOrderOfTheirOpening()
{
    m_main->start();
    Document &first = newDocument();
    Document &second = newDocument();
    Document &third = newDocument();
    first.view()->window.activate();
    QCOMPARE(DocumentActive(), &first);
    QVERIFY(m_main->main.windows().documents() == (std::vector{&first, &second, &third}));
}

void tst_frmMain::aClosedDocumentIsNoLongerListedAndAnotherOneIsActive()
{
    m_main->start();
    Document &first = newDocument();
    Document &second = newDocument();
    second.history.markSaved();
    m_main->choose("mnuFileClose");
    QVERIFY(m_main->main.windows().documents() == std::vector{&first});
    QCOMPARE(DocumentActive(), &first);
    QCOMPARE(iDocumentCount, qint16(1));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(DocumentActive(), &first);
}

void tst_frmMain::pastingEndsWithTheDocumentOfTheCopiedEntry()
{
    m_main->start();
    newDocument();
    Document &source = newDocument();
    m_main->choose("mnuOutlineCopy");
    QVERIFY(m_main->enabled("mnuOutlinePaste"));
    source.history.markSaved();
    m_main->choose("mnuFileClose");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!m_main->enabled("mnuOutlinePaste"));
}

void tst_frmMain::everyRefreshOfTheCommandsTellsTheWholeState_data()
{
    QTest::addColumn<QString>("situation");
    for (const char *situation : {"no document", "outline", "text", "read-only", "nothing selected"})
        QTest::newRow(situation) << QString::fromLatin1(situation);
}

void tst_frmMain::everyRefreshOfTheCommandsTellsTheWholeState()
{
    QFETCH(const QString, situation);
    m_main->start();
    if (situation == u"read-only"_s) {
        const QString file = m_main->app.makeFile(u"locked.txt"_s, "text");
        QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner));
        modDoc::DocLoad(file);
    } else if (situation != u"no document"_s) {
        newDocument();
    }
    if (situation == u"text"_s)
        m_main->choose("mnuViewGoToText");
    if (situation == u"nothing selected"_s)
        rawOutline(*DocumentActive()).tree.select(nullptr);
    const auto state = [this] {
        QStringList found;
        for (const CommandRow &row : commandTable) {
            if (m_main->enabled(std::string(row.name).c_str()))
                found.append(QString::fromLatin1(row.name.data(), static_cast<qsizetype>(row.name.size())));
        }
        for (const QToolButton *button : m_main->main.findChildren<QToolButton *>()) {
            if (!button->isHidden())
                found.append(button->text());
        }
        return found;
    };
    m_main->main.surface().MenuEnableDynamic();
    const QStringList whole = state();
    m_main->main.surface().MenuEnable(iDocumentCount);
    QCOMPARE(state(), whole);
}

void tst_frmMain::aFileThatTurnsReadOnlyIsSeenWhenTheKeyboardComesAndNotAtEachStep()
{
    m_main->start();
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    Document &document = newDocument();
    modNodes::NodeInsert(document, Relationship::tvwChild, document.tree.root());
    document.m_sFile = m_main->app.folder.filePath(u"saved.qly"_s);
    m_main->choose("mnuFileSave");
    QVERIFY(QFile::setPermissions(document.m_sFile, QFileDevice::ReadOwner));
    modNodes::NodeSelectFull(document, document.tree.root()->child(0));
    modNodes::NodeSelectFull(document, document.tree.root());
    QVERIFY(m_main->enabled("mnuOutlineRename"));
    QVERIFY(document.bReadOnly());
    m_main->choose("mnuViewGoToText");
    QVERIFY(!m_main->enabled("mnuOutlineRename"));
    QVERIFY(QFile::setPermissions(document.m_sFile, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
    m_main->choose("mnuViewGoToOutline");
    QVERIFY(m_main->enabled("mnuOutlineRename"));
}

void tst_frmMain::closingTheLastDocumentGreysItsCommands()
{
    m_main->start();
    newDocument().history.markSaved();
    QVERIFY(!statusText()->text().isEmpty());
    m_main->choose("mnuFileClose");
    QCOMPARE(DocumentActive(), nullptr);
    QCOMPARE(statusText()->text(), QString());
    QCOMPARE(iDocumentCount, qint16(0));
    for (const char *item : {"mnuoutline", "mnuEdit", "mnuFileSave", "mnuFileSaveAll", "mnuFileClose"})
        QVERIFY2(!m_main->enabled(item), item);
}

void tst_frmMain::closingWithNoDocumentOpenAsksNothing()
{
    m_main->start();
    QVERIFY(m_main->main.close());
    QCOMPARE(questions(), QStringList());
    QCOMPARE(m_main->app.logLines().size(), 2);
    QVERIFY(m_main->app.logLines().last().startsWith(u"Session ended at "_s));
}

void tst_frmMain::refusingToExitLeavesEverythingAsItIs_data()
{
    QTest::addColumn<int>("answer");
    QTest::newRow("No") << static_cast<int>(Answer::No);
    QTest::newRow("Cancel") << static_cast<int>(Answer::Cancel);
}

void tst_frmMain::refusingToExitLeavesEverythingAsItIs()
{
    QFETCH(int, answer);
    m_main->start();
    newDocument();
    answers() = {static_cast<Answer>(answer)};
    QVERIFY(!m_main->main.close());
    QCOMPARE(questions(), QStringList(u"Do you really want to exit the application?"_s));
    QVERIFY(m_main->main.isVisible());
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
    QVERIFY(m_main->app.settings.values.empty());
    QCOMPARE(m_main->app.logLines().size(), 1);
}

void tst_frmMain::exitStoresTheOpenDocumentsAndClosesThem()
{
    const QStringList files{makeFile(u"a.txt"_s), makeFile(u"b.txt"_s)};
    appPorts().commandLine = files.join(u' ');
    m_main->start();
    answers() = {Answer::Yes};
    QVERIFY(m_main->main.close());
    QCOMPARE(questions().size(), 1);
    QVERIFY(m_main->main.windows().documents().empty());
    QCOMPARE(iDocumentCount, qint16(0));
    const auto stored = m_main->app.settings.section(u"Workspace"_s);
    QVERIFY(stored == (SettingsStore::Section{{u"1"_s, files.at(0)}, {u"2"_s, files.at(1)}}));
    QVERIFY(m_main->app.logLines().last().startsWith(u"Session ended at "_s));
}

void tst_frmMain::aCancelInAnyDocumentsQuestionKeepsEveryWindowOpen()
{
    m_main->start();
    Document &first = newDocument();
    Document &second = newDocument();
    answers() = {Answer::Yes, Answer::No, Answer::Cancel};
    QVERIFY(!m_main->main.close());
    QCOMPARE(questions().size(), 3);
    QVERIFY(m_main->main.windows().documents() == (std::vector{&first, &second}));
    QVERIFY(first.m_bDataChanged() && second.m_bDataChanged());
    QCOMPARE(iDocumentCount, qint16(2));
    QVERIFY(m_main->app.settings.values.empty());
    QCOMPARE(m_main->app.logLines().size(), 1);
}

void tst_frmMain::documentsGivenUpAtExitAreNotAskedAboutTwice()
{
    m_main->start();
    newDocument();
    newDocument();
    answers() = {Answer::Yes, Answer::No, Answer::No};
    QVERIFY(m_main->main.close());
    QCOMPARE(questions().size(), 3);
    const auto stored = m_main->app.settings.section(u"Workspace"_s);
    QVERIFY(stored == (SettingsStore::Section{{u"1"_s, QString()}, {u"2"_s, QString()}}));
}

void tst_frmMain::aFailedSaveAtExitKeepsTheProgramRunning()
{
    m_main->start();
    const Document &document = newDocument();
    answers() = {Answer::Yes, Answer::Yes};
    m_main->app.core.dialogs.saveNames = {u"/dev/null/nowhere/a.qly"_s};
    QVERIFY(!m_main->main.close());
    QVERIFY(document.m_bDataChanged());
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
    QVERIFY(m_main->app.settings.values.empty());
    // The failure is on record and the user can see it.
    QVERIFY(m_main->app.logLines().value(1).startsWith(u"Error "_s));
    QVERIFY(statusText()->text().contains(u"could not be saved"_s));
}

void tst_frmMain::fileExitClosesTheMainWindow()
{
    m_main->start();
    m_main->choose("mnuFileExit");
    QVERIFY(!m_main->main.isVisible());
    QVERIFY(m_main->app.logLines().last().startsWith(u"Session ended at "_s));
}

void tst_frmMain::threeDroppedFilesAreOpenedInTheirOrder()
{
    m_main->start();
    const QStringList files{makeFile(u"c.txt"_s), makeFile(u"a.txt"_s), makeFile(u"b.txt"_s)};
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &file : files)
        urls.append(QUrl::fromLocalFile(file));
    data.setUrls(urls);
    drop(data);
    QStringList open;
    for (const Document *document : m_main->main.windows().documents())
        open.append(document->m_sFile);
    QCOMPARE(open, files);
}

void tst_frmMain::aDroppedTextIsTakenAsAFileName()
{
    m_main->start();
    QMimeData data;
    data.setText(makeFile(u"two words.txt"_s));
    drop(data);
    QVERIFY(DocumentActive());
    QCOMPARE(DocumentActive()->m_sFile, data.text());
    QMimeData missing;
    missing.setText(m_main->app.folder.filePath(u"missing.txt"_s));
    drop(missing);
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
}

void tst_frmMain::aDroppedFileThatIsOpenComesToTheFront()
{
    m_main->start();
    QMimeData first;
    first.setText(makeFile(u"a.txt"_s));
    drop(first);
    Document *document = DocumentActive();
    QMimeData second;
    second.setText(makeFile(u"b.txt"_s));
    drop(second);
    QVERIFY(DocumentActive() != document);
    static_cast<frmDocument &>(document->view()->window).parentWidget()->showMinimized();
    // By another name too.
    QMimeData again;
    again.setText(m_main->app.folder.filePath(u"link.txt"_s));
    QVERIFY(QFile::link(first.text(), again.text()));
    drop(again);
    QCOMPARE(m_main->main.windows().documents().size(), 2U);
    QCOMPARE(DocumentActive(), document);
    QVERIFY(!static_cast<frmDocument &>(document->view()->window).parentWidget()->isMinimized());
}

void tst_frmMain::aSaveSaysWhenAndHowMuch()
{
    m_main->start();
    newDocument();
    m_main->app.core.dialogs.saveNames = {m_main->app.folder.filePath(u"a.qly"_s)};
    m_main->choose("mnuFileSave");
    const QString sTime = QLocale::system().toString(m_main->app.clock.moment.time(), QLocale::ShortFormat);
    QCOMPARE(statusText()->text(), u"Saved at %1, 1 entry"_s.arg(sTime));
    m_main->choose("mnuOutlineInsertChild");
    QVERIFY(!statusText()->text().contains(u"Saved"_s));
    m_main->choose("mnuFileSave");
    QCOMPARE(statusText()->text(), u"Saved at %1, 2 entries"_s.arg(sTime));
}

void tst_frmMain::droppingOffersACopy()
{
    m_main->start();
    QMimeData data;
    data.setText(u"anything"_s);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.setDropAction(Qt::MoveAction);
    enter.ignore();
    QCoreApplication::sendEvent(&m_main->main, &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(enter.dropAction(), Qt::CopyAction);
}

void tst_frmMain::recentFilesReopenFromTheMenu()
{
    m_main->start();
    const QString file = makeFile(u"a & b.txt"_s);
    modDoc::DocLoad(file);
    m_main->choose("mnuFileClose");
    QAction *item = m_main->action(u"mnuFileMRU1"_s);
    QVERIFY(item && item->isVisible());
    QVERIFY(m_main->action(u"mnuFileBarMRU"_s)->isVisible());
    item->trigger();
    QCOMPARE(DocumentActive()->m_sFile, file);
}

void tst_frmMain::saveAllSavesEachDocumentToItsOwnFile()
{
    // The main window is not even shown: what a command works on must not depend on the desktop's focus.
    const QStringList files{makeFile(u"a.txt"_s), makeFile(u"b.txt"_s), makeFile(u"c.txt"_s)};
    appPorts().commandLine = files.join(u' ');
    m_main->main.MDIForm_Load();
    for (Document *document : m_main->main.windows().documents()) {
        const QByteArray text = QFileInfo(document->m_sFile).baseName().toLatin1();
        rawOutline(*document).tree.setStoredText(document->tree.root(), text);
        document->history.touch();
    }
    m_main->choose("mnuFileSaveAll");
    for (const QString &path : files) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY2(file.readAll().contains(QFileInfo(path).baseName().toLatin1()), qPrintable(path));
    }
}

void tst_frmMain::theStatusBarShowsTheSelectedEntry()
{
    m_main->start();
    Document &document = newDocument();
    rawOutline(document).tree.setLabel(document.tree.root(), u"Ideas"_s);
    modNodes::NodeSelectFull(document, document.tree.root());
    QCOMPARE(statusText()->text(), u"Ideas"_s);
    m_main->main.surface().UpdateStatusBar(nullptr);
    QCOMPARE(statusText()->text(), u"Ideas"_s);
    m_main->main.surface().UpdateStatusBarText(QString());
    QCOMPARE(statusText()->text(), QString());
}

void tst_frmMain::aLabelOfManyLinesStaysOneLineOfPlainText()
{
    m_main->start();
    const int width = m_main->main.width();
    m_main->main.surface().UpdateStatusBarText(u"<b>one</b>\ntwo\t"_s + QString(100'000, u'x'));
    QVERIFY(statusText()->text().startsWith(u"<b>one</b> two x"_s));
    QCOMPARE(statusText()->textFormat(), Qt::PlainText);
    QVERIFY(statusText()->text().size() <= 500);
    QCoreApplication::processEvents();
    QCOMPARE(m_main->main.width(), width);
}

void tst_frmMain::viewOptionsFlipTheirOptionsAndMarks_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<int>("option");
    int option = 0;
    for (const char *item : {"mnuViewOptionsBackupOnSave", "mnuViewOptionsAutoFitSplit",
                             "mnuViewOptionsStartWithNewDoc", "mnuViewOptionsStartWithPrevDocs"})
        QTest::newRow(item) << QByteArray(item) << option++;
}

void tst_frmMain::viewOptionsFlipTheirOptionsAndMarks()
{
    QFETCH(QByteArray, item);
    QFETCH(int, option);
    constexpr bool Options::*members[] = {&Options::Backup, &Options::AutoSplit, &Options::StartWithNewDocument,
                                          &Options::StartWithLatestDocuments};
    bool Options::*member = members[option];
    m_main->start();
    const bool before = g_options.*member;
    const QAction *action = m_main->action(QString::fromLatin1(item));
    QCOMPARE(action->isChecked(), before);
    m_main->choose(item.constData());
    QCOMPARE(g_options.*member, !before);
    QCOMPARE(action->isChecked(), !before);
    m_main->choose(item.constData());
    QCOMPARE(g_options.*member, before);
    QCOMPARE(action->isChecked(), before);
    // The change reaches the store when the settings are saved.
    QVERIFY(m_main->app.settings.values.empty());
}

void tst_frmMain::viewStatusBarShowsAndHidesIt()
{
    m_main->start();
    QVERIFY(m_main->main.statusBar()->isVisible());
    m_main->choose("mnuViewStatusBar");
    QVERIFY(!m_main->main.statusBar()->isVisible());
    QVERIFY(!m_main->action(u"mnuViewStatusBar"_s)->isChecked());
    m_main->choose("mnuViewStatusBar");
    QVERIFY(m_main->main.statusBar()->isVisible());
}

void tst_frmMain::theStatusBarStartsAsTheSettingSays()
{
    m_main->app.settings.values[{u"Settings"_s, u"ViewStatusbar"_s}] = u"False"_s;
    m_main->start();
    QVERIFY(!m_main->main.statusBar()->isVisible());
    QVERIFY(!m_main->action(u"mnuViewStatusBar"_s)->isChecked());
}

void tst_frmMain::theMainWindowTakesItsStoredPlace()
{
    const int dots = m_main->main.logicalDpiX();
    const auto put = [&](const QString &key, int pixels) {
        m_main->app.settings.values[{u"Settings"_s, key}] = QString::number(pixels * 1440 / dots);
    };
    put(u"MainLeft"_s, 60);
    put(u"MainTop"_s, 40);
    put(u"MainWidth"_s, 600);
    put(u"MainHeight"_s, 450);
    m_main->start();
    QCOMPARE(m_main->main.pos(), QPoint(60, 40));
    QCOMPARE(m_main->main.size(), QSize(600, 450));
    QVERIFY(m_main->main.close());
    QCOMPARE(m_main->app.settings.value(u"Settings"_s, u"MainWidth"_s), QString::number(600 * 1440 / dots));
    QCOMPARE(m_main->app.settings.value(u"Settings"_s, u"MainTop"_s), QString::number(40 * 1440 / dots));
}

void tst_frmMain::aPlaceOffEveryScreenIsBroughtBack()
{
    m_main->app.settings.values[{u"Settings"_s, u"MainLeft"_s}] = u"-900000"_s;
    m_main->app.settings.values[{u"Settings"_s, u"MainTop"_s}] = u"900000"_s;
    m_main->start();
    const QRect placed(m_main->main.pos(), m_main->main.size());
    QVERIFY(m_main->main.screen()->availableGeometry().contains(placed));
}

void tst_frmMain::theMainWindowIsCalledByTheProgramsName()
{
    m_main->start();
    QCOMPARE(m_main->main.windowTitle(), u"Quillery"_s);
    newDocument();
    QCOMPARE(m_main->main.windowTitle(), u"Quillery"_s);
}

void tst_frmMain::lostFocusReturnsToTheDocument()
{
    m_main->start();
    newDocument();
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    DocumentActive()->view()->trvOutline.EndLabelEdit();
    m_main->choose("mnuViewGoToText");
    const QWidget *text = QApplication::focusWidget();
    QVERIFY(text);
    m_main->main.setFocus();
    QCOMPARE(QApplication::focusWidget(), &m_main->main);
    QTRY_COMPARE(QApplication::focusWidget(), text);
}

void tst_frmMain::theFramesOfDocumentsKeepNoKeys()
{
    m_main->start();
    newDocument();
    const QMdiSubWindow *frame = m_main->main.findChild<QMdiArea *>()->currentSubWindow();
    QVERIFY(frame->systemMenu());
    for (const QAction *action : frame->systemMenu()->actions())
        QVERIFY(action->shortcuts().isEmpty());
}

void tst_frmMain::helpAboutShowsTheBox()
{
    m_main->start();
    QString shown;
    QTimer::singleShot(0, &m_main->main, [&shown] {
        if (QWidget *box = QApplication::activeModalWidget()) {
            shown = box->objectName();
            box->close();
        }
    });
    m_main->choose("mnuHelpAbout");
    QCOMPARE(shown, u"frmAbout"_s);
}

void tst_frmMain::theTaggedEntryItemFollowsTheEntry()
{
    m_main->start();
    Document &document = newDocument();
    Entry *child = modNodes::NodeInsert(document, Relationship::tvwChild, document.tree.root());
    modNodes::NodeTagOn(document, child);
    modNodes::NodeSelectFull(document, child);
    QCOMPARE(m_main->action(u"mnuOutlineTaggedEntry"_s)->text(), u"Unta&g entry    Alt+T"_s);
    modNodes::NodeSelectFull(document, document.tree.root());
    QCOMPARE(m_main->action(u"mnuOutlineTaggedEntry"_s)->text(), u"Ta&g entry      Alt+T"_s);
}

QTEST_MAIN(tst_frmMain)
#include "tst_frmMain.moc"
