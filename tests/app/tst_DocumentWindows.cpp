// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DocumentFrame.h"
#include "app/MainFixture.h"
#include "document/modDoc.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"
#include "window/NoticeBar.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

// The windows of several documents in the main window.
class tst_DocumentWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void theMenuCascadesTheWindows();
    void theMenuTilesTheWindowsOneAboveTheOther();
    void theMenuTilesTheWindowsSideBySide();
    void theMenuArrangesTheIconsOfMinimisedWindows();
    void aMaximisedDocumentsCaptionJoinsTheMainTitle();
    void aDocumentThatIsThereAtTheStartJoinsItsCaptionToo();
    void aNewDocumentBesideAMaximisedOneIsMaximisedToo();
    void aMinimisedDocumentTakesNoKeys_data();
    void aMinimisedDocumentTakesNoKeys();
    void aPaneKeepsTheFocusWhenAMaximisedDocumentCloses_data();
    void aPaneKeepsTheFocusWhenAMaximisedDocumentCloses();
    void aPaneKeepsTheFocusWhenWindowsAreTiled();
    void aDocumentOpensWithItsSelectedEntryInSight_data();
    void aDocumentOpensWithItsSelectedEntryInSight();
    void movingAWindowByKeyboardKeepsItsKeys();
    void theCloseButtonAsksAboutChanges();
    void ctrlF6GoesToTheNextDocument();
    void ctrlTabInsertsATabAndStays();
    void ctrlTabDoesNothingInTheOutline();
    void aFailedSaveStandsInItsWindowUntilItIsMended();
    void aFileThatIsCutShortSaysSoInItsWindow();

private:
    void openDocuments(int count);
    void addPanes();
    void goToPane(bool text);
    void expectPane(bool text) const;
    void letTheTimerTick();

    QList<DocumentFrame *> frames() const { return m_main->main.findChildren<DocumentFrame *>(); }

    QMdiArea &area() const { return *m_main->main.findChild<QMdiArea *>(); }

    void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers) const
    {
        QTest::keyClick(m_main->main.windowHandle(), key, modifiers);
    }

    std::unique_ptr<MainFixture> m_main;
};

void tst_DocumentWindows::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.resize(900, 700);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

void tst_DocumentWindows::openDocuments(int count)
{
    for (qsizetype number = frames().size() + 1; number <= count; ++number)
        modDoc::DocLoad(m_main->app.makeFile(u"%1.txt"_s.arg(number), "text"));
    QCOMPARE(frames().size(), count);
}

void tst_DocumentWindows::theMenuCascadesTheWindows()
{
    openDocuments(3);
    m_main->choose("mnuWindowCascade");
    const QList<DocumentFrame *> windows = frames();
    for (qsizetype i = 1; i < windows.size(); ++i) {
        QVERIFY(windows[i]->x() > windows[i - 1]->x());
        QVERIFY(windows[i]->y() > windows[i - 1]->y());
    }
}

void tst_DocumentWindows::theMenuTilesTheWindowsOneAboveTheOther()
{
    openDocuments(3);
    m_main->choose("mnuWindowTileHorizontal");
    const QList<DocumentFrame *> windows = frames();
    for (const DocumentFrame *window : windows) {
        QCOMPARE(window->width(), area().viewport()->width());
        for (const DocumentFrame *other : windows)
            QVERIFY(window == other || !window->geometry().intersects(other->geometry()));
    }
}

void tst_DocumentWindows::theMenuTilesTheWindowsSideBySide()
{
    openDocuments(2);
    m_main->choose("mnuWindowTileVertical");
    const QList<DocumentFrame *> windows = frames();
    QCOMPARE(windows[0]->height(), area().viewport()->height());
    QCOMPARE(windows[1]->height(), area().viewport()->height());
    QVERIFY(!windows[0]->geometry().intersects(windows[1]->geometry()));
}

void tst_DocumentWindows::theMenuArrangesTheIconsOfMinimisedWindows()
{
    openDocuments(2);
    for (DocumentFrame *window : frames()) {
        window->showMinimized();
        window->move(333, 111);
    }
    m_main->choose("mnuWindowArrangeIcons");
    const QList<DocumentFrame *> windows = frames();
    for (const DocumentFrame *window : windows)
        QCOMPARE(window->geometry().bottom() + 1, area().viewport()->height());
    QVERIFY(!windows[0]->geometry().intersects(windows[1]->geometry()));
}

void tst_DocumentWindows::aMaximisedDocumentsCaptionJoinsTheMainTitle()
{
    openDocuments(1);
    QCOMPARE(m_main->main.windowTitle(), u"Quillery"_s);
    frames()[0]->showMaximized();
    const QString file = m_main->main.windows().activeDocument()->m_sFile;
    QCOMPARE(m_main->main.windowTitle(), u"Quillery - [%1]"_s.arg(file));
    frames()[0]->showNormal();
    QCOMPARE(m_main->main.windowTitle(), u"Quillery"_s);
}

// As a user starts the program: documents are opened maximised before the main window shows.
void tst_DocumentWindows::aDocumentThatIsThereAtTheStartJoinsItsCaptionToo()
{
    m_main.reset();
    m_main = std::make_unique<MainFixture>();
    m_main->main.setMaximised(false, true);
    m_main->choose("mnuFileNew");
    m_main->main.show();
    QVERIFY(frames()[0]->isMaximized());
    QCOMPARE(m_main->main.windowTitle(), u"Quillery - [%1]"_s.arg(frames()[0]->windowTitle()));
    QVERIFY(m_main->main.menuBar()->cornerWidget());
}

void tst_DocumentWindows::aNewDocumentBesideAMaximisedOneIsMaximisedToo()
{
    openDocuments(1);
    frames()[0]->showMaximized();
    m_main->choose("mnuFileNew");
    QVERIFY(frames()[1]->isMaximized());
    QVERIFY2(m_main->main.windowTitle().startsWith(u"Quillery - [Document "_s), qPrintable(m_main->main.windowTitle()));
}

void tst_DocumentWindows::addPanes()
{
    QTest::addColumn<bool>("text");
    QTest::newRow("outline") << false;
    QTest::newRow("text") << true;
}

void tst_DocumentWindows::goToPane(bool text)
{
    m_main->choose(text ? "mnuViewGoToText" : "mnuViewGoToOutline");
}

// The pane has the focus, and the commands know it.
void tst_DocumentWindows::expectPane(bool text) const
{
    const Document &document = *m_main->main.windows().activeDocument();
    const auto &form = static_cast<frmDocument &>(document.view()->window);
    const QWidget *pane = text ? static_cast<QWidget *>(form.textBox) : form.treeView;
    QCOMPARE(QApplication::focusWidget(), pane);
    QCOMPARE(document.view()->m_bTextHasFocus(), text);
    QCOMPARE(document.view()->m_bOutlineHasFocus(), !text);
    QCOMPARE(m_main->enabled("mnuEditSelectAll"), text);
}

void tst_DocumentWindows::letTheTimerTick()
{
    auto *timer = m_main->main.findChild<QTimer *>(u"Timer1"_s);
    QSignalSpy ticks(timer, &QTimer::timeout);
    timer->setInterval(0);
    QTRY_VERIFY(ticks.size() > 1);
    timer->setInterval(250);
}

void tst_DocumentWindows::aMinimisedDocumentTakesNoKeys_data()
{
    addPanes();
}

void tst_DocumentWindows::aMinimisedDocumentTakesNoKeys()
{
    QFETCH(const bool, text);
    openDocuments(1);
    Document *document = m_main->main.windows().activeDocument();
    goToPane(text);
    frames()[0]->showMinimized();
    letTheTimerTick();
    for (const Qt::Key key : {Qt::Key_X, Qt::Key_Delete, Qt::Key_F2})
        pressKey(key, Qt::NoModifier);
    pressKey(Qt::Key_B, Qt::AltModifier);
    QCOMPARE(document->tree.entryCount(), 1);
    QCOMPARE(document->view()->txtRTF.Text(), u"text\r\n"_s);
    frames()[0]->showNormal();
    expectPane(text);
}

void tst_DocumentWindows::aPaneKeepsTheFocusWhenAMaximisedDocumentCloses_data()
{
    addPanes();
}

void tst_DocumentWindows::aPaneKeepsTheFocusWhenAMaximisedDocumentCloses()
{
    QFETCH(const bool, text);
    openDocuments(1);
    frames()[0]->showMaximized();
    goToPane(text);
    Document *first = m_main->main.windows().activeDocument();
    openDocuments(2);
    goToPane(!text);
    m_main->choose("mnuFileClose");
    QTRY_COMPARE(frames().size(), 1);
    QCOMPARE(m_main->main.windows().activeDocument(), first);
    expectPane(text);
}

void tst_DocumentWindows::aPaneKeepsTheFocusWhenWindowsAreTiled()
{
    openDocuments(1);
    frames()[0]->showMaximized();
    openDocuments(2);
    goToPane(false);
    m_main->choose("mnuWindowTileHorizontal");
    expectPane(false);
    pressKey(Qt::Key_F6, Qt::ControlModifier);
    expectPane(false);
}

void tst_DocumentWindows::aDocumentOpensWithItsSelectedEntryInSight_data()
{
    QTest::addColumn<bool>("beforeTheMainWindow");
    QTest::newRow("at the start") << true;
    QTest::newRow("later") << false;
}

void tst_DocumentWindows::aDocumentOpensWithItsSelectedEntryInSight()
{
    QFETCH(const bool, beforeTheMainWindow);
    modDoc::DocNew();
    Document &made = *DocumentActive();
    rawOutline(made).tree.insert(Relationship::tvwChild, nullptr);
    for (int number = 0; number < 60; ++number)
        rawOutline(made).tree.select(rawOutline(made).tree.insert(Relationship::tvwChild, made.tree.root()));
    rawOutline(made).tree.setExpanded(made.tree.root(), true);
    const QString file = m_main->app.folder.filePath(u"long.qly"_s);
    QVERIFY(modDoc::DocSave(file) == SaveOutcome::Saved);
    made.history.markSaved();
    QVERIFY(made.view()->window.close());
    if (beforeTheMainWindow)
        m_main->main.hide();
    m_main->main.resize(433, 433);
    modDoc::DocLoad(file);
    m_main->main.show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_main->main));
    const Document &document = *m_main->main.windows().activeDocument();
    const TreeView &view = *static_cast<frmDocument &>(document.view()->window).treeView;
    const QRect row = view.visualRect(view.currentIndex());
    QCOMPARE(document.tree.selected(), document.tree.root()->child(59));
    QVERIFY(row.top() >= 0);
    QVERIFY(row.bottom() < view.viewport()->height());
}

void tst_DocumentWindows::movingAWindowByKeyboardKeepsItsKeys()
{
    openDocuments(1);
    DocumentFrame *frame = frames()[0];
    for (QAction *action : frame->systemMenu()->actions()) {
        if (action->text().remove(u'&') == "Move"_L1)
            action->trigger();
    }
    QCOMPARE(QWidget::mouseGrabber(), frame);
    letTheTimerTick();
    QCOMPARE(QApplication::focusWidget(), frame);
    pressKey(Qt::Key_Return, Qt::NoModifier);
    QVERIFY(!QWidget::mouseGrabber());
    letTheTimerTick();
    expectPane(false);
}

void tst_DocumentWindows::theCloseButtonAsksAboutChanges()
{
    openDocuments(1);
    m_main->main.windows().activeDocument()->history.touch();
    m_main->app.core.dialogs.answers = {Answer::Cancel, Answer::No};
    QVERIFY(!frames()[0]->close());
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
    QVERIFY(frames()[0]->close());
    QVERIFY(m_main->main.windows().documents().empty());
    QCOMPARE(m_main->app.core.dialogs.questions.size(), 2);
}

void tst_DocumentWindows::ctrlF6GoesToTheNextDocument()
{
    openDocuments(3);
    const std::vector<Document *> documents = m_main->main.windows().documents();
    documents[1]->view()->window.activate();
    for (const std::size_t next : {2U, 0U, 1U}) {
        pressKey(Qt::Key_F6, Qt::ControlModifier);
        QCOMPARE(m_main->main.windows().activeDocument(), documents[next]);
    }
}

void tst_DocumentWindows::ctrlTabInsertsATabAndStays()
{
    openDocuments(2);
    Document *document = m_main->main.windows().activeDocument();
    m_main->choose("mnuViewGoToText");
    document->view()->txtRTF.setSelStart(2);
    pressKey(Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(m_main->main.windows().activeDocument(), document);
    QCOMPARE(document->view()->txtRTF.Text(), u"te\txt\r\n"_s);
}

void tst_DocumentWindows::ctrlTabDoesNothingInTheOutline()
{
    openDocuments(2);
    Document *document = m_main->main.windows().activeDocument();
    m_main->choose("mnuViewGoToOutline");
    pressKey(Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(m_main->main.windows().activeDocument(), document);
    QCOMPARE(document->view()->txtRTF.Text(), u"text\r\n"_s);
    QVERIFY(document->view()->m_bOutlineHasFocus());
}

void tst_DocumentWindows::aFailedSaveStandsInItsWindowUntilItIsMended()
{
    const TestFolder folder;
    folder.write(u"a.txt"_s, "text");
    QVERIFY(modDoc::DocLoad(folder(u"a.txt"_s)));
    goToPane(true);
    QTest::keyClicks(QApplication::focusWidget(), u"more "_s);
    QVERIFY(QFile::rename(folder.path(), folder.path() + u".away"_s));
    const NoticeBar &bar = *frames().first()->form()->noticeBar;
    m_main->choose("mnuFileSave");
    QVERIFY(bar.isVisible());
    goToPane(false);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QVERIFY(bar.isVisible());
    QVERIFY(bar.findChild<NoticeRow *>()->accessibleName().startsWith(
        u"The file %1 could not be saved"_s.arg(folder(u"a.txt"_s))));
    QVERIFY(QFile::rename(folder.path() + u".away"_s, folder.path()));
    QTest::mouseClick(bar.findChild<QPushButton *>(u"cmdTryAgain"_s), Qt::LeftButton);
    QVERIFY(!bar.isVisible());
    QVERIFY(folder.read(u"a.txt"_s).contains("more text"));
    expectPane(false);
    letTheTimerTick();
    expectPane(false);
}

void tst_DocumentWindows::aFileThatIsCutShortSaysSoInItsWindow()
{
    const QByteArray outline = "{\\qlf_formatversion 1}\r\n{\\qlf_nodekey 0}\r\n{\\qlf_nodelabel Root}\r\n{\\qlf_nodet";
    QVERIFY(!modDoc::DocLoad(m_main->app.makeFile(u"cut.qly"_s, outline)));
    const NoticeBar &bar = *frames().first()->form()->noticeBar;
    QVERIFY(bar.isVisible());
    QVERIFY(bar.findChild<NoticeRow *>()->accessibleName().contains(u"cut.qly could not be read whole: "_s));
    pressKey(Qt::Key_Down, Qt::NoModifier);
    QVERIFY(bar.isVisible());
}

QTEST_MAIN(tst_DocumentWindows)
#include "tst_DocumentWindows.moc"
