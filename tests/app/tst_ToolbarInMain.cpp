// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/ToolbarRules.h"
#include "app/ToolbarSupport.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <QLineEdit>
#include <QTest>
#include <QToolBar>

using namespace Qt::StringLiterals;

// The toolbar in the running main window.
class tst_ToolbarInMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init() { m_main = std::make_unique<MainFixture>(); }

    void cleanup() { m_main.reset(); }

    void withNoDocumentOnlyNewAndOpenAreShown();
    void everyRowAgreesWithTheTable_data();
    void everyRowAgreesWithTheTable();
    void aButtonWorksOnTheDocument();
    void nothingDeletesTheRoot();
    void anExpansionButtonStaysPressedWhateverIsClicked();
    void expandingByHandReleasesTheExpansionButtons();
    void theFormatButtonsFollowTheTextsSelection();
    void aReadOnlyFileThatOpensShowsNoSaveButton();
    void theTagButtonFollowsTheEntry();
    void aClickEndsTheEditingOfALabel();
    void theToolbarTakesNoFocus();
    void viewToolbarShowsAndHidesIt();
    void theToolbarStartsAsTheSettingSays();

private:
    void startMain();

    frmDocument &form() const { return static_cast<frmDocument &>(DocumentActive()->view()->window); }

    // A document whose root has two children, the first of them with a child; the first child is selected.
    Document &makeDocument() const;

    std::unique_ptr<MainFixture> m_main;
};

void tst_ToolbarInMain::startMain()
{
    m_main->start();
    m_main->main.resize(1500, 600);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

Document &tst_ToolbarInMain::makeDocument() const
{
    Document &document = m_main->makeDocument();
    document.view()->trvOutline.setFocus();
    modNodes::NodeSelectFull(document, document.tree.root()->firstChild());
    layOut();
    return document;
}

void tst_ToolbarInMain::withNoDocumentOnlyNewAndOpenAreShown()
{
    startMain();
    QCOMPARE(shownIn(m_main->main), QStringList({u"New File"_s, u"Open File"_s}));
    makeDocument().history.markSaved();
    QVERIFY(shownIn(m_main->main).size() > 10);
    m_main->choose("mnuFileClose");
    QCOMPARE(shownIn(m_main->main), QStringList({u"New File"_s, u"Open File"_s}));
}

void tst_ToolbarInMain::everyRowAgreesWithTheTable_data()
{
    QTest::addColumn<QString>("selected");
    QTest::addColumn<bool>("inText");
    QTest::addColumn<bool>("readOnly");
    for (const QString &entry : {u"root"_s, u"first"_s, u"second"_s, u"grandchild"_s}) {
        for (const bool inText : {false, true}) {
            for (const bool readOnly : {false, true})
                QTest::addRow("%s%s%s", qPrintable(entry), inText ? ", text" : "", readOnly ? ", read-only" : "")
                    << entry << inText << readOnly;
        }
    }
}

void tst_ToolbarInMain::everyRowAgreesWithTheTable()
{
    QFETCH(QString, selected);
    QFETCH(bool, inText);
    QFETCH(bool, readOnly);
    startMain();
    Document &document = makeDocument();
    if (readOnly) {
        const QString file = m_main->app.makeFile(u"a.txt"_s, "text");
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
        document.m_sFile = file;
    }
    Entry *root = document.tree.root();
    Entry *entry = root;
    if (selected == u"first"_s)
        entry = root->child(0);
    else if (selected == u"second"_s)
        entry = root->child(0)->next();
    else if (selected == u"grandchild"_s)
        entry = root->child(0)->child(0);
    modNodes::NodeSelectFull(document, entry);
    m_main->choose(inText ? "mnuViewGoToText" : "mnuViewGoToOutline");
    m_main->refresh();

    const CommandState state = m_main->main.dispatcher().state();
    QCOMPARE(state.TextFocus, inText);
    QCOMPARE(state.Writable, !readOnly);
    QStringList expected;
    for (const ToolbarRow &row : toolbarTable) {
        if (row.shown(state))
            expected.append(toText(row.key));
    }
    QCOMPARE(shownIn(m_main->main), expected);
    QVERIFY(expected.contains(inText ? u"Go To Outline"_s : u"Go To Text"_s));
    QCOMPARE(expected.contains(u"Save File"_s), !readOnly);
}

void tst_ToolbarInMain::aButtonWorksOnTheDocument()
{
    startMain();
    Document &document = makeDocument();
    const int before = document.tree.entryCount();
    QTest::mouseClick(buttonOf(m_main->main, "New Entry Below"), Qt::LeftButton);
    QCOMPARE(document.tree.entryCount(), before + 1);
    DocumentActive()->view()->trvOutline.EndLabelEdit();
    layOut();
    QTest::mouseClick(buttonOf(m_main->main, "Go To Text"), Qt::LeftButton);
    QVERIFY(form().textBox->hasFocus());
    layOut();
    QTest::mouseClick(buttonOf(m_main->main, "Go To Outline"), Qt::LeftButton);
    QVERIFY(form().treeView->hasFocus());
}

void tst_ToolbarInMain::nothingDeletesTheRoot()
{
    startMain();
    const Document &document = makeDocument();
    const int before = document.tree.entryCount();
    QWindow *window = m_main->main.windowHandle();
    const auto *button = buttonOf(m_main->main, "Delete Entry");
    QVERIFY(button->isVisible());
    const QPoint place = button->mapTo(&m_main->main, button->rect().center());
    QTest::keyClick(window, Qt::Key_Home);
    QVERIFY(document.tree.selected()->isRoot());
    layOut();
    // Nobody is asked either.
    QTest::keyClick(window, Qt::Key_Delete, Qt::AltModifier);
    QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, place);
    QTest::keyClick(window, Qt::Key_Delete, Qt::AltModifier);
    form().textBox->setFocus();
    QTest::keyClick(window, Qt::Key_Delete, Qt::AltModifier);
    QCOMPARE(document.tree.entryCount(), before);
    QCOMPARE(m_main->app.core.dialogs.questions, QStringList());
    QVERIFY(!button->isVisible());
}

void tst_ToolbarInMain::anExpansionButtonStaysPressedWhateverIsClicked()
{
    startMain();
    const Document &document = makeDocument();
    QTest::mouseClick(buttonOf(m_main->main, "Expand to level 2"), Qt::LeftButton);
    QCOMPARE(document.m_iExpansionLevel(), qint16(2));
    QVERIFY(buttonOf(m_main->main, "Expand to level 2")->isChecked());
    // A second click would release it if the button had its way.
    QTest::mouseClick(buttonOf(m_main->main, "Expand to level 2"), Qt::LeftButton);
    QVERIFY(buttonOf(m_main->main, "Expand to level 2")->isChecked());
    QTest::mouseClick(buttonOf(m_main->main, "Expand all levels"), Qt::LeftButton);
    QVERIFY(buttonOf(m_main->main, "Expand all levels")->isChecked());
    QVERIFY(!buttonOf(m_main->main, "Expand to level 2")->isChecked());
}

void tst_ToolbarInMain::expandingByHandReleasesTheExpansionButtons()
{
    startMain();
    Document &document = makeDocument();
    QTest::mouseClick(buttonOf(m_main->main, "Expand all levels"), Qt::LeftButton);
    document.setExpansionLevel(0);
    m_main->refresh();
    for (const ToolbarRow &row : toolbarTable) {
        if (row.pressed)
            QVERIFY2(!buttonOf(m_main->main, row.key)->isChecked(), row.key.data());
    }
}

void tst_ToolbarInMain::theFormatButtonsFollowTheTextsSelection()
{
    startMain();
    makeDocument();
    const auto isPressed = [this](std::string_view key) {
        m_main->refresh();
        return buttonOf(m_main->main, key)->isChecked();
    };
    RichTextBox &text = *form().textBox;
    text.setSelText(u"plain bold"_s);
    text.setSelStart(6);
    text.setSelLength(4);
    text.setSelBold(true);
    text.setSelAlignment(TextPane::Centre);
    QVERIFY(isPressed("Bold Text"));
    QVERIFY(isPressed("Centre Align Text"));
    QVERIFY(!isPressed("Left Align Text"));
    // A mixed selection and a plain one show it released.
    text.setSelStart(2);
    text.setSelLength(8);
    QVERIFY(!isPressed("Bold Text"));
    text.setSelStart(7);
    QVERIFY(isPressed("Bold Text"));
    text.setSelStart(1);
    QVERIFY(!isPressed("Bold Text"));
}

void tst_ToolbarInMain::aReadOnlyFileThatOpensShowsNoSaveButton()
{
    startMain();
    const QString file = m_main->app.makeFile(u"a.txt"_s, "text");
    modDoc::DocLoad(file);
    QVERIFY(shownIn(m_main->main).contains(u"Save File"_s));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    m_main->choose("mnuFileClose");
    modDoc::DocLoad(file);
    QVERIFY(!shownIn(m_main->main).contains(u"Save File"_s));
    QVERIFY(shownIn(m_main->main).contains(u"Print File"_s));
}

void tst_ToolbarInMain::theTagButtonFollowsTheEntry()
{
    startMain();
    makeDocument();
    QToolButton *button = buttonOf(m_main->main, "Tag Entry");
    QCOMPARE(button->toolTip(), u"Tag entry"_s);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(button->toolTip(), u"Untag entry"_s);
    QCOMPARE(button->accessibleName(), u"Untag entry"_s);
    QCOMPARE(button->accessibleDescription(), u"Untag entry"_s);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(button->toolTip(), u"Tag entry"_s);
    QCOMPARE(button->accessibleName(), u"Tag Entry"_s);
}

void tst_ToolbarInMain::aClickEndsTheEditingOfALabel()
{
    startMain();
    Document &document = makeDocument();
    m_main->choose("mnuOutlineRename");
    QVERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    QTest::keyClicks(QApplication::focusWidget(), u"typed"_s);
    Entry *edited = document.tree.selected();
    QTest::mouseClick(buttonOf(m_main->main, "Move Entry Down"), Qt::LeftButton);
    QCOMPARE(edited->label(), u"typed"_s);
}

void tst_ToolbarInMain::theToolbarTakesNoFocus()
{
    startMain();
    makeDocument();
    for (const ToolbarRow &row : toolbarTable)
        QCOMPARE(buttonOf(m_main->main, row.key)->focusPolicy(), Qt::NoFocus);
    QVERIFY(form().treeView->hasFocus());
    QTest::mouseClick(buttonOf(m_main->main, "Expand to level 1"), Qt::LeftButton);
    QVERIFY(form().treeView->hasFocus());
}

void tst_ToolbarInMain::viewToolbarShowsAndHidesIt()
{
    startMain();
    const auto *bar = m_main->main.findChild<QToolBar *>(u"tbToolBar"_s);
    QVERIFY(bar && bar->isVisible());
    QVERIFY(m_main->action(u"mnuViewToolbar"_s)->isChecked());
    m_main->choose("mnuViewToolbar");
    QVERIFY(!bar->isVisible());
    QVERIFY(!g_options.ViewToolbar);
    QVERIFY(!m_main->action(u"mnuViewToolbar"_s)->isChecked());
    m_main->choose("mnuViewToolbar");
    QVERIFY(bar->isVisible());
    QVERIFY(m_main->action(u"mnuViewToolbar"_s)->isChecked());
}

void tst_ToolbarInMain::theToolbarStartsAsTheSettingSays()
{
    m_main->app.settings.values[{u"Settings"_s, u"ViewToolbar"_s}] = u"False"_s;
    m_main->start();
    QVERIFY(!m_main->main.findChild<QToolBar *>(u"tbToolBar"_s)->isVisible());
    QVERIFY(!m_main->action(u"mnuViewToolbar"_s)->isChecked());
}

QTEST_MAIN(tst_ToolbarInMain)
#include "tst_ToolbarInMain.moc"
