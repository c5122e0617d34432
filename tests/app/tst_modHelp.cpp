// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/frmDebug.h"
#include "app/modHelp.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "search/modSearch.h"
#include "util/RunTimeError.h"
#include "window/SplitterBar.h"
#include "window/frmDocument.h"
#include "window/modSplit.h"

#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class tst_modHelp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void withoutAHelpFileContentsSaysSoAndNothingElse();
    void withoutAHelpFileSearchSaysTheSame();
    void withAHelpFileTheViewerShowsTheTopic();
    void aFailingViewerIsReportedInItsOwnWords();
    void theStartOfTheProgramChoosesTheHelpOutline();
    void contentsOpensTheHelpOutline();
    void contentsBringsTheOpenHelpToTheFront();
    void theHelpOutlineIsReadOnly();
    void searchOpensTheHelpAndThenTheDialog();
    void aMissingHelpOutlineIsNamedInTheStatusBar();
    void aMissingHelpOutlineIsNotSoughtInAnotherDocument();
    void theHelpIsFoundWhateverItsNameIsCalledBy();
    void anotherDocumentOfTheHelpsNameIsNotTakenForIt();
    void contentsRestoresTheMinimisedHelp();
    void f1OpensTheHelp();
    void helpDuringAMoveOfTheSplitAcceptsItAndTakesTheKeyboard_data();
    void helpDuringAMoveOfTheSplitAcceptsItAndTakesTheKeyboard();
    void theDiagnosticWindowShowsTheActiveDocument();
    void theDiagnosticWindowIsEmptyWithoutADocument();
    void theDiagnosticWindowOpensByItsKey();

private:
    void makeHelp();
    QStringList openFiles() const;

    std::unique_ptr<MainFixture> m_main;
    QString m_help;
    SearchPorts m_searchPorts;
};

void tst_modHelp::init()
{
    m_searchPorts = searchPorts();
    m_main = std::make_unique<MainFixture>();
    m_help = QDir(QCoreApplication::applicationDirPath()).filePath(u"Help.qly"_s);
    m_main->start();
    makeHelp();
}

void tst_modHelp::cleanup()
{
    m_main.reset();
    searchPorts() = m_searchPorts;
    modHelp::g_bHelpIsOutline = true;
    QFile::remove(m_help);
}

void tst_modHelp::makeHelp()
{
    // A run that was stopped may have left its own.
    QFile::remove(m_help);
    modDoc::DocNew();
    Document *document = DocumentActive();
    modNodes::NodeInsert(*document, Relationship::tvwChild, nullptr);
    QVERIFY(modDoc::DocSave(m_help) == SaveOutcome::Saved);
    document->history.markSaved();
    QVERIFY(document->view()->window.close());
    QVERIFY(QFile::setPermissions(m_help, QFileDevice::ReadOwner));
}

QStringList tst_modHelp::openFiles() const
{
    QStringList files;
    for (const Document *document : m_main->main.windows().documents())
        files.append(document->m_sFile);
    return files;
}

void tst_modHelp::withoutAHelpFileContentsSaysSoAndNothingElse()
{
    modHelp::g_bHelpIsOutline = false;
    appPorts().helpFile.clear();
    bool shown = false;
    appPorts().showHelpFile = [&shown](const QString &, HelpTopic) { shown = true; };
    modHelp::HelpContents();
    QCOMPARE(m_main->app.core.dialogs.informations,
             QStringList(u"Unable to display Help Contents. There is no Help associated with this project."_s));
    QVERIFY(!shown);
    QVERIFY(openFiles().isEmpty());
}

void tst_modHelp::withoutAHelpFileSearchSaysTheSame()
{
    modHelp::g_bHelpIsOutline = false;
    appPorts().helpFile.clear();
    modHelp::HelpSearch();
    QCOMPARE(m_main->app.core.dialogs.informations,
             QStringList(u"Unable to display Help Contents. There is no Help associated with this project."_s));
}

void tst_modHelp::withAHelpFileTheViewerShowsTheTopic()
{
    modHelp::g_bHelpIsOutline = false;
    appPorts().helpFile = u"/program/quillery.hlp"_s;
    QStringList files;
    std::vector<HelpTopic> topics;
    appPorts().showHelpFile = [&](const QString &sFile, HelpTopic topic) {
        files.append(sFile);
        topics.push_back(topic);
    };
    modHelp::HelpContents();
    modHelp::HelpSearch();
    QCOMPARE(files, QStringList(2, u"/program/quillery.hlp"_s));
    QVERIFY((topics == std::vector{HelpTopic::Contents, HelpTopic::Search}));
    QVERIFY(m_main->app.core.dialogs.informations.isEmpty());
}

void tst_modHelp::aFailingViewerIsReportedInItsOwnWords()
{
    modHelp::g_bHelpIsOutline = false;
    appPorts().helpFile = u"/program/quillery.hlp"_s;
    appPorts().showHelpFile = [](const QString &, HelpTopic) {
        throw RunTimeError(ErrorNumber::FileNotFound, u"No viewer"_s);
    };
    modHelp::HelpContents();
    QCOMPARE(m_main->app.core.dialogs.notices, QStringList(u"No viewer"_s));
}

void tst_modHelp::theStartOfTheProgramChoosesTheHelpOutline()
{
    modHelp::g_bHelpIsOutline = false;
    modMain::InitialiseGlobals();
    QVERIFY(modHelp::g_bHelpIsOutline);
    QVERIFY2(appPorts().helpFile.endsWith(u"/tst_modHelp.hlp"_s), qPrintable(appPorts().helpFile));
}

void tst_modHelp::contentsOpensTheHelpOutline()
{
    m_main->choose("mnuHelpContents");
    QCOMPARE(openFiles(), QStringList(m_help));
}

void tst_modHelp::contentsBringsTheOpenHelpToTheFront()
{
    m_main->choose("mnuHelpContents");
    m_main->choose("mnuFileNew");
    QCOMPARE(m_main->main.windows().activeDocument()->m_sFile, QString());
    m_main->choose("mnuHelpContents");
    QCOMPARE(m_main->main.windows().activeDocument()->m_sFile, m_help);
    QCOMPARE(openFiles(), (QStringList{m_help, QString()}));
}

void tst_modHelp::theHelpOutlineIsReadOnly()
{
    modHelp::HelpContents();
    QVERIFY(m_main->main.windows().activeDocument()->bReadOnly());
    QVERIFY(m_main->main.windows().activeDocument()->view()->txtRTF.Locked());
    QVERIFY(!m_main->enabled("mnuFileSave"));
    QVERIFY(!m_main->enabled("mnuOutlineInsertAbove"));
}

void tst_modHelp::searchOpensTheHelpAndThenTheDialog()
{
    QString searched;
    searchPorts().showDialog = [&] { searched = m_main->main.windows().activeDocument()->m_sFile; };
    m_main->choose("mnuHelpSearch");
    QCOMPARE(searched, m_help);
}

void tst_modHelp::aMissingHelpOutlineIsNamedInTheStatusBar()
{
    QVERIFY(QFile::remove(m_help));
    modHelp::HelpContents();
    QVERIFY(openFiles().isEmpty());
    QVERIFY(m_main->app.core.dialogs.informations.isEmpty());
    m_main->refresh();
    const auto labels = m_main->main.findChildren<QLabel *>();
    QVERIFY(std::any_of(labels.begin(), labels.end(), [this](const QLabel *label) {
        return label->text() == u"The file %1 could not be found"_s.arg(m_help);
    }));
}

void tst_modHelp::aMissingHelpOutlineIsNotSoughtInAnotherDocument()
{
    QVERIFY(QFile::remove(m_help));
    m_main->choose("mnuFileNew");
    bool searched = false;
    searchPorts().showDialog = [&searched] { searched = true; };
    m_main->choose("mnuHelpSearch");
    QVERIFY(!searched);
}

void tst_modHelp::theHelpIsFoundWhateverItsNameIsCalledBy()
{
    const QTemporaryDir folder;
    const QString link = folder.filePath(u"manual.qly"_s);
    QVERIFY(QFile::link(m_help, link));
    QVERIFY(modDoc::DocLoad(link));
    m_main->choose("mnuFileNew");
    modHelp::HelpContents();
    QCOMPARE(openFiles().size(), 2);
    QCOMPARE(m_main->main.windows().activeDocument()->m_sFile, link);
    bool asked = false;
    searchPorts().showDialog = [&asked] { asked = true; };
    modHelp::HelpSearch();
    QVERIFY(asked);
}

void tst_modHelp::anotherDocumentOfTheHelpsNameIsNotTakenForIt()
{
    const QTemporaryDir folder;
    const QString own = folder.filePath(u"Help.qly"_s);
    QVERIFY(QFile::copy(m_help, own));
    QVERIFY(modDoc::DocLoad(own));
    modHelp::HelpContents();
    QCOMPARE(openFiles(), QStringList({own, m_help}));
    QCOMPARE(m_main->main.windows().activeDocument()->m_sFile, m_help);
}

void tst_modHelp::contentsRestoresTheMinimisedHelp()
{
    m_main->choose("mnuHelpContents");
    auto *area = m_main->main.findChild<QMdiArea *>();
    QMdiSubWindow *help = area->activeSubWindow();
    help->showMinimized();
    m_main->choose("mnuFileNew");
    m_main->choose("mnuHelpContents");
    QCOMPARE(area->activeSubWindow(), help);
    QVERIFY(!help->isMinimized());
}

void tst_modHelp::f1OpensTheHelp()
{
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    m_main->choose("mnuFileNew");
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Escape);
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_F1);
    QCOMPARE(m_main->main.windows().activeDocument()->m_sFile, m_help);
}

void tst_modHelp::helpDuringAMoveOfTheSplitAcceptsItAndTakesTheKeyboard_data()
{
    QTest::addColumn<bool>("helpIsOpen");
    QTest::addColumn<bool>("byKey");
    QTest::newRow("by its key, not open yet") << false << true;
    QTest::newRow("by its key, open behind") << true << true;
    QTest::newRow("by the menu, not open yet") << false << false;
    QTest::newRow("by the menu, open behind") << true << false;
}

void tst_modHelp::helpDuringAMoveOfTheSplitAcceptsItAndTakesTheKeyboard()
{
    QFETCH(const bool, helpIsOpen);
    QFETCH(const bool, byKey);
    m_main->main.resize(1000, 800);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    if (helpIsOpen)
        modHelp::HelpContents();
    modDoc::DocNew();
    frmDocument &moved = static_cast<frmDocument &>(DocumentActive()->view()->window);
    const float before = moved.m_fTreeWidth;
    m_main->choose("mnuViewMoveSplit");
    QTest::keyClick(moved.picSplitter, Qt::Key_Right);
    if (byKey)
        QTest::keyClick(m_main->main.windowHandle(), Qt::Key_F1);
    else
        m_main->choose("mnuHelpContents");
    QTRY_COMPARE(openFiles().size(), 2);
    QVERIFY(!moved.m_bMovingSplit);
    QVERIFY(!moved.picSplitter->isVisible());
    QCOMPARE(moved.m_fTreeWidth, before + modSplit::keyboardStep);
    Document *active = m_main->main.windows().activeDocument();
    QCOMPARE(active->m_sFile, m_help);
    const frmDocument &help = static_cast<frmDocument &>(active->view()->window);
    QVERIFY(help.parentWidget() == m_main->main.findChild<QMdiArea *>()->activeSubWindow());
    QVERIFY(help.treeView->hasFocus() || help.textBox->hasFocus());
    QVERIFY(active->view()->m_bOutlineHasFocus() != active->view()->m_bTextHasFocus());
}

void tst_modHelp::theDiagnosticWindowShowsTheActiveDocument()
{
    m_main->choose("mnuFileNew");
    Document &document = *m_main->main.windows().activeDocument();
    document.view()->txtRTF.setFont(QFont(u"DejaVu Sans"_s, 11));
    document.view()->txtRTF.setTextRTF("{\\rtf1{\\fonttbl{\\f0 DejaVu Serif;}}\\f0\\fs28 Words}");
    const frmDebug window;
    const QString shown = window.findChild<QPlainTextEdit *>(u"txtDetails"_s)->toPlainText();
    const QString rtf = QString::fromLatin1(document.view()->txtRTF.TextRTF()).replace(u"\r\n"_s, u"\n"_s);
    QVERIFY(rtf.contains(u"Words"_s));
    QCOMPARE(shown, rtf + u"\nFont name DejaVu Sans\nFont size 11\nSelected font name DejaVu Serif\n"
                          "Selected font size 14\nIndex 1\nKey KEY0"_s);
}

void tst_modHelp::theDiagnosticWindowIsEmptyWithoutADocument()
{
    frmDebug window;
    QCOMPARE(window.findChild<QPlainTextEdit *>(u"txtDetails"_s)->toPlainText(), QString());
    window.show();
    QTest::mouseClick(window.findChild<QPushButton *>(u"cmdInput"_s), Qt::LeftButton);
    QVERIFY(!window.isVisible());
}

void tst_modHelp::theDiagnosticWindowOpensByItsKey()
{
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    bool shown = false;
    QTimer waiting;
    connect(&waiting, &QTimer::timeout, this, [&] {
        if (auto *window = qobject_cast<frmDebug *>(QApplication::activeModalWidget())) {
            shown = window->isVisible();
            QTest::keyClick(window, Qt::Key_Escape);
        }
    });
    waiting.start(1);
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_F12, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(shown);
}

QTEST_MAIN(tst_modHelp)
#include "tst_modHelp.moc"
