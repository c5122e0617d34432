// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RawOutline.h"
#include "window/WindowFixture.h"

#include "support/OutlineText.h"

#include "commands/CommandKeys.h"
#include "document/TextExchange.h"
#include "document/modDoc.h"
#include "document/modFile.h"
#include "model/StoredText.h"
#include "outline/modOutline.h"
#include "rtf/Rtf.h"
#include "search/modSearch.h"

#include <QApplication>
#include <QLineEdit>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_frmDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aNewWindowIsCountedAndAnnounced();
    void typingIsStoredWhenAnotherEntryIsClicked();
    void typingMarksTheDocumentChanged();
    void selectingWithTheArrowKeysShowsTheEntrysText();
    void anEntryThatMovesKeepsCaretAndUndo_data();
    void anEntryThatMovesKeepsCaretAndUndo();
    void aTextChangedBehindThePaneIsShownAnew();
    void aTextShownByASearchGivesWayToTheSelectedEntrys();
    void whatIsTypedWithNothingSelectedIsTheTextOfTheEntryThatIsShown();
    void whatIsTypedWhileASearchOrASaveGoesOnIsStored();
    void anEntryShownAgainHasItsCaretAndWhatCanBeUndone();
    void showingAnotherTextChangesNothing();
    void focusFlagsFollowThePanes();
    void tabMovesBetweenThePanes();
    void f2EditsTheLabelInPlace();
    void anAltKeyEndsTheLabelEditAndRuns();
    void anAltKeyWithoutACommandTypesNothingIntoALabel();
    void whatAltGrMakesIsTypedIntoALabel();
    void aLabelThatIsReplacedIsShownEverywhere_data();
    void aLabelThatIsReplacedIsShownEverywhere();
    void aKeyActsOnlyWhileItsMenuItemIsEnabled();
    void everyOutlineKeyWorksFromBothPanes_data();
    void everyOutlineKeyWorksFromBothPanes();
    void copyingAndExpandingByKeyWorkFromBothPanes();
    void f2InTheTextEditsTheLabel();
    void aKeyOfAnotherScriptCountsByItsPlace_data();
    void aKeyOfAnotherScriptCountsByItsPlace();
    void keysStepTheSizeOfTheSelectedText_data();
    void keysStepTheSizeOfTheSelectedText();
    void ctrlF6GoesRoundTheWindowsInOrder();
    void aReadOnlyDocumentRefusesTyping();
    void collapsingTheBranchOfTheSelectionSelectsItsHead();
    void collapsingTheRootSetsLevelOne();
    void collapsingAnotherEntrySetsLevelZero_data();
    void collapsingAnotherEntrySetsLevelZero();
    void eventsAreSilentWhileBusy();
    void closingAnUnchangedDocumentAsksNothing();
    void closingAChangedReadOnlyDocumentAsksNothing();
    void aFileThatTurnsReadOnlyTakesNothingAway_data();
    void aFileThatTurnsReadOnlyTakesNothingAway();
    void aReadOnlyDocumentSavedElsewhereCanBeEdited();
    void withoutAnEntryTheTextPaneTakesNoWords();
    void aDocumentWithoutEntriesReplacesNoFile();
    void aRefusedSaveIsAskedAboutOnClosing();
    void cancelKeepsTheWindowAndTheCount();
    void noClosesWithoutSaving();
    void yesSavesAndCloses();
    void yesWithACancelledSaveDialogKeepsTheWindow();
    void yesWithAFailedSaveKeepsTheWindowAndAsksAgain();
    void aFailedLoadKeepsItsNoticeUntilTheSelectionMoves();
    void aWindowWithoutEntriesShowsNoLabelOfAnother();

private:
    Document &openThreeEntries();
    QLineEdit *labelEditor();

    frmDocument &form() { return m_fixture->form(); }

    Document &document() { return form().document(); }

    QString textOf(const Entry *entry);
    void clickOn(const Entry *entry);

    std::unique_ptr<WindowFixture> m_fixture;
};

void tst_frmDocument::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    QVERIFY(QTest::qWaitForWindowActive(&m_fixture->main));
}

void tst_frmDocument::cleanup()
{
    m_fixture.reset();
}

Document &tst_frmDocument::openThreeEntries()
{
    modDoc::DocNew();
    Document &opened = *DocumentActive();
    Entry *root = modNodes::NodeInsert(opened, Relationship::tvwFirst, nullptr);
    rawOutline(opened).tree.setLabel(root, u"Root"_s);
    for (const QString &label : {u"First"_s, u"Second"_s}) {
        Entry *child = modNodes::NodeInsert(opened, Relationship::tvwChild, root);
        rawOutline(opened).tree.setLabel(child, label);
        rawOutline(opened).tree.setStoredText(child, "Text of " + label.toLatin1());
    }
    rawOutline(opened).tree.setExpanded(root, true);
    modNodes::NodeSelect(opened, root);
    opened.history.markSaved();
    return opened;
}

QString tst_frmDocument::textOf(const Entry *entry)
{
    const QByteArray text = NodeTextDecompressIfRequired(document().tree.storedText(entry));
    return rtf::isRtf(text) ? rtf::toPlainText(text) : QString::fromLatin1(text);
}

void tst_frmDocument::clickOn(const Entry *entry)
{
    const QRect row = form().treeView->visualRect(document().tree.indexOf(entry));
    QTest::mouseClick(form().treeView->viewport(), Qt::LeftButton, {}, row.center());
}

void tst_frmDocument::aNewWindowIsCountedAndAnnounced()
{
    openThreeEntries();
    QCOMPARE(iDocumentCount, qint16(1));
    QCOMPARE(form().caption(), u"Document 1"_s);
}

void tst_frmDocument::typingIsStoredWhenAnotherEntryIsClicked()
{
    Document &opened = openThreeEntries();
    Entry *first = opened.tree.root()->child(0);
    clickOn(first);
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of First"_s);
    form().textBox->setFocus();
    QTest::keyClick(form().textBox, Qt::Key_End);
    QTest::keyClicks(form().textBox, u" grows"_s);
    clickOn(opened.tree.root()->child(1));
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of Second"_s);
    QCOMPARE(textOf(first), u"Text of First grows"_s);
    clickOn(first);
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of First grows"_s);
}

void tst_frmDocument::typingMarksTheDocumentChanged()
{
    Document &opened = openThreeEntries();
    QVERIFY(!opened.m_bDataChanged());
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"x"_s);
    QVERIFY(opened.m_bDataChanged());
    QCOMPARE(textOf(opened.tree.root()), u"x"_s);
}

void tst_frmDocument::selectingWithTheArrowKeysShowsTheEntrysText()
{
    Document &opened = openThreeEntries();
    form().treeView->setFocus();
    QTest::keyClick(form().treeView, Qt::Key_Down);
    QCOMPARE(opened.tree.selected(), opened.tree.root()->child(0));
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of First"_s);
    QTest::keyClick(form().treeView, Qt::Key_Down);
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of Second"_s);
    QCOMPARE(m_fixture->fakes.statusText(), u"Second"_s);
}

void tst_frmDocument::anEntryThatMovesKeepsCaretAndUndo_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("down") << int(Qt::Key_Down);
    QTest::newRow("last") << int(Qt::Key_End);
    QTest::newRow("a click on its row") << 0;
}

void tst_frmDocument::anEntryThatMovesKeepsCaretAndUndo()
{
    QFETCH(const int, key);
    Document &opened = openThreeEntries();
    Entry *first = opened.tree.root()->child(0);
    clickOn(first);
    RichTextBox &box = *form().textBox;
    box.setFocus();
    opened.view()->txtRTF.setSelStart(4);
    QTest::keyClicks(&box, u"ual"_s);
    const QString typed = u"Textual of First"_s;
    // As a save does.
    opened.tree.resolvePendingText();
    if (key != 0)
        QTest::keyClick(&box, Qt::Key(key), Qt::AltModifier);
    else
        clickOn(first);
    QCOMPARE(first->row(), key != 0 ? 1 : 0);
    QCOMPARE(opened.view()->txtRTF.Text(), typed);
    QCOMPARE(opened.view()->txtRTF.SelStart(), 7);
    box.undo();
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of First"_s);
    QCOMPARE(textOf(first), u"Text of First"_s);
    clickOn(opened.tree.root()->child(1 - first->row()));
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of Second"_s);
    clickOn(first);
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of First"_s);
}

void tst_frmDocument::aTextChangedBehindThePaneIsShownAnew()
{
    Document &opened = openThreeEntries();
    Entry *first = opened.tree.root()->child(0);
    clickOn(first);
    QTest::keyClicks(form().textBox, u"lost "_s);
    rawOutline(opened).tree.setStoredText(first, "replaced");
    clickOn(first);
    QCOMPARE(opened.view()->txtRTF.Text(), u"replaced"_s);
}

void tst_frmDocument::aTextShownByASearchGivesWayToTheSelectedEntrys()
{
    Document &opened = openThreeEntries();
    Entry *first = opened.tree.root()->child(0);
    clickOn(first);
    modNodes::NodeTextGet(opened, opened.tree.root()->child(1));
    clickOn(first);
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of First"_s);
}

void tst_frmDocument::whatIsTypedWhileASearchOrASaveGoesOnIsStored()
{
    Document &opened = openThreeEntries();
    Entry *first = opened.tree.root()->child(0);
    clickOn(first);
    opened.history.markSaved();
    g_iSearchMode = 1;
    QTest::keyClicks(form().textBox, u"The "_s);
    g_iSearchMode = 0;
    QCOMPARE(textOf(first), u"The Text of First"_s);
    QVERIFY(opened.m_bDataChanged());
    {
        const BusyScope busy;
        QTest::keyClicks(form().textBox, u"very "_s);
    }
    QCOMPARE(textOf(first), u"The very Text of First"_s);
}

void tst_frmDocument::anEntryShownAgainHasItsCaretAndWhatCanBeUndone()
{
    Document &opened = openThreeEntries();
    Entry *first = opened.tree.root()->child(0);
    Entry *second = opened.tree.root()->child(1);
    RichTextBox &box = *form().textBox;
    clickOn(first);
    QTest::keyClicks(&box, u"My "_s);
    clickOn(second);
    QTest::keyClicks(&box, u"Your "_s);
    clickOn(first);
    QCOMPARE(opened.view()->txtRTF.Text(), u"My Text of First"_s);
    QCOMPARE(opened.view()->txtRTF.SelStart(), 3);
    // In the order in which it was done, wherever the caret stands.
    QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(textOf(second), u"Text of Second"_s);
    QCOMPARE(opened.tree.selected(), second);
    QCOMPARE(opened.view()->txtRTF.Text(), u"Text of Second"_s);
    QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(textOf(first), u"Text of First"_s);
    QCOMPARE(opened.tree.selected(), first);
    QTest::keyClick(&box, Qt::Key_Y, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(textOf(first), u"My Text of First"_s);
    QCOMPARE(textOf(second), u"Your Text of Second"_s);
    QCOMPARE(opened.tree.selected(), second);
    QCOMPARE(opened.view()->txtRTF.SelStart(), 5);
}

void tst_frmDocument::showingAnotherTextChangesNothing()
{
    Document &opened = openThreeEntries();
    const QSignalSpy changes(&opened.texts, &LiveTexts::changed);
    opened.history.markSaved();
    for (int row : {0, 1, 0})
        modNodes::NodeSelectFull(opened, opened.tree.root()->child(row));
    QCOMPARE(changes.count(), 0);
    QVERIFY(!opened.m_bDataChanged());
    QVERIFY(!opened.tree.isPending(opened.tree.root()->child(0)));
}

void tst_frmDocument::whatIsTypedWithNothingSelectedIsTheTextOfTheEntryThatIsShown()
{
    Document &opened = openThreeEntries();
    Entry *first = opened.tree.root()->child(0);
    clickOn(first);
    rawOutline(opened).tree.select(nullptr);
    QTest::keyClicks(form().textBox, u"The "_s);
    modNodes::NodeSelect(opened, first);
    QCOMPARE(opened.view()->txtRTF.Text(), u"The Text of First"_s);
    QCOMPARE(textOf(first), u"The Text of First"_s);
}

void tst_frmDocument::focusFlagsFollowThePanes()
{
    Document &opened = openThreeEntries();
    form().treeView->setFocus();
    QVERIFY(opened.view()->m_bOutlineHasFocus());
    QVERIFY(!opened.view()->m_bTextHasFocus());
    const QSignalSpy announced(opened.view(), &DocumentView::focusChanged);
    form().textBox->setFocus();
    QVERIFY(!opened.view()->m_bOutlineHasFocus());
    QVERIFY(opened.view()->m_bTextHasFocus());
    QCOMPARE(announced.count(), 1);
}

void tst_frmDocument::tabMovesBetweenThePanes()
{
    openThreeEntries();
    form().treeView->setFocus();
    QTest::keyClick(form().treeView, Qt::Key_Tab);
    QVERIFY(form().textBox->hasFocus());
    QTest::keyClick(form().textBox, Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(form().treeView->hasFocus());
}

void tst_frmDocument::f2EditsTheLabelInPlace()
{
    Document &opened = openThreeEntries();
    form().treeView->setFocus();
    QTest::keyClick(form().treeView, Qt::Key_F2);
    auto *editor = form().treeView->findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, u"Renamed"_s);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(opened.tree.root()->label(), u"Renamed"_s);
    QVERIFY(opened.m_bDataChanged());
    QCOMPARE(m_fixture->fakes.statusText(), u"Renamed"_s);
}

// The open one; an editor that has ended goes away when the event loop runs.
QLineEdit *tst_frmDocument::labelEditor()
{
    return qobject_cast<QLineEdit *>(QApplication::focusWidget());
}

void tst_frmDocument::anAltKeyEndsTheLabelEditAndRuns()
{
    Document &opened = openThreeEntries();
    clickOn(opened.tree.root()->child(0));
    form().treeView->setFocus();
    QTest::keyClick(form().treeView, Qt::Key_B, Qt::AltModifier);
    for (const QString &label : {u"one"_s, u"two"_s}) {
        QVERIFY(labelEditor());
        QTest::keyClicks(labelEditor(), label);
        QTest::keyClick(labelEditor(), Qt::Key_B, Qt::AltModifier);
    }
    QCOMPARE(dumpOutline(opened.tree),
             QStringList({u"Root +"_s, u" First"_s, u" one"_s, u" two"_s, u" New Entry <"_s, u" Second"_s}));
}

void tst_frmDocument::anAltKeyWithoutACommandTypesNothingIntoALabel()
{
    openThreeEntries();
    QTest::keyClick(form().treeView, Qt::Key_F2);
    QLineEdit *editor = labelEditor();
    QVERIFY(editor);
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(Qt::AltModifier), Qt::AltModifier | Qt::ShiftModifier})
        QTest::keyClick(editor, Qt::Key_Z, modifiers);
    QCOMPARE(editor->text(), u"Root"_s);
    QCOMPARE(labelEditor(), editor);
}

void tst_frmDocument::whatAltGrMakesIsTypedIntoALabel()
{
    openThreeEntries();
    QTest::keyClick(form().treeView, Qt::Key_F2);
    QVERIFY(labelEditor());
    QTest::sendKeyEvent(QTest::Click, labelEditor(), Qt::Key_At, u"@"_s, Qt::ControlModifier | Qt::AltModifier);
    QTest::sendKeyEvent(QTest::Click, labelEditor(), Qt::Key_E, u"\u20ac"_s, Qt::GroupSwitchModifier);
    QCOMPARE(labelEditor()->text(), u"@\u20ac"_s);
}

void tst_frmDocument::aLabelThatIsReplacedIsShownEverywhere_data()
{
    QTest::addColumn<bool>("replacesAll");
    QTest::newRow("one label") << false;
    QTest::newRow("all labels") << true;
}

void tst_frmDocument::aLabelThatIsReplacedIsShownEverywhere()
{
    QFETCH(const bool, replacesAll);
    Document &opened = openThreeEntries();
    modNodes::NodeSelect(opened, opened.tree.root()->child(0));
    const float width = form().m_fTreeWidth;
    const auto again = qScopeGuard([] { g_sSearchFind = g_sSearchReplace = g_sSearchScope = QString(); });
    g_sSearchFind = u"First"_s;
    g_sSearchReplace = QString(60, u'm');
    g_sSearchScope = u"2"_s;
    if (replacesAll)
        modSearch::SearchReplaceAll();
    else
        modSearch::SearchPerformReplace();
    QCOMPARE(opened.tree.selected()->label(), g_sSearchReplace);
    QCOMPARE(m_fixture->fakes.statusText(), g_sSearchReplace);
    QVERIFY(form().m_fTreeWidth > width);
}

void tst_frmDocument::aKeyActsOnlyWhileItsMenuItemIsEnabled()
{
    Document &opened = openThreeEntries();
    clickOn(opened.tree.root()->child(1));
    for (const char *command : {"mnuOutlineMoveUp", "keyOutlineMoveFirst", "mnuOutlineRename"})
        m_fixture->dispatcher.bind(command, nullptr);
    for (QWidget *pane : {static_cast<QWidget *>(form().treeView), static_cast<QWidget *>(form().textBox)}) {
        pane->setFocus();
        QTest::keyClick(pane, Qt::Key_Home, Qt::AltModifier);
        QTest::keyClick(pane, Qt::Key_Up, Qt::AltModifier);
        QTest::keyClick(pane, Qt::Key_F2);
    }
    QVERIFY(!form().treeView->findChild<QLineEdit *>());
    QCOMPARE(opened.tree.root()->child(1)->label(), u"Second"_s);
    QCOMPARE(opened.tree.selected()->label(), u"Second"_s);
    m_fixture->dispatcher.bind("mnuOutlineMoveUp", [](int) { modOutline::OutlineMoveUp(); });
    QTest::keyClick(form().textBox, Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(opened.tree.root()->child(0)->label(), u"Second"_s);
}

void tst_frmDocument::everyOutlineKeyWorksFromBothPanes_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QStringList>("outline");
    const auto row = [](const char *name, Qt::Key key, int modifiers, const QStringList &outline) {
        QTest::newRow(name) << int(key) << modifiers << outline;
    };
    row("Alt+A", Qt::Key_A, Qt::AltModifier, {u"Root +"_s, u" A"_s, u" New Entry <"_s, u" B +"_s, u"  B1"_s, u" C"_s});
    row("Alt+B", Qt::Key_B, Qt::AltModifier, {u"Root +"_s, u" A"_s, u" B +"_s, u"  B1"_s, u" New Entry <"_s, u" C"_s});
    row("Alt+I", Qt::Key_I, Qt::AltModifier, {u"Root +"_s, u" A"_s, u" B +"_s, u"  B1"_s, u"  New Entry <"_s, u" C"_s});
    row("Alt+T", Qt::Key_T, Qt::AltModifier, {u"Root +"_s, u" A"_s, u" B +*<"_s, u"  B1"_s, u" C"_s});
    row("Alt+Right", Qt::Key_Right, Qt::AltModifier, {u"Root +"_s, u" A +"_s, u"  B +<"_s, u"   B1"_s, u" C"_s});
    row("Alt+Left", Qt::Key_Left, Qt::AltModifier, {u"Root +"_s, u" A"_s, u" B +<"_s, u"  B1"_s, u" C"_s});
    row("Alt+Up", Qt::Key_Up, Qt::AltModifier, {u"Root +"_s, u" B +<"_s, u"  B1"_s, u" A"_s, u" C"_s});
    row("Alt+Down", Qt::Key_Down, Qt::AltModifier, {u"Root +"_s, u" A"_s, u" C"_s, u" B +<"_s, u"  B1"_s});
    row("Alt+Home", Qt::Key_Home, Qt::AltModifier, {u"Root +"_s, u" B +<"_s, u"  B1"_s, u" A"_s, u" C"_s});
    row("Alt+End", Qt::Key_End, Qt::AltModifier, {u"Root +"_s, u" A"_s, u" C"_s, u" B +<"_s, u"  B1"_s});
    row("Alt+Delete", Qt::Key_Delete, Qt::AltModifier, {u"Root +"_s, u" A <"_s, u" C"_s});
    row("numeric keypad minus", Qt::Key_Minus, Qt::KeypadModifier,
        {u"Root +"_s, u" A"_s, u" B <"_s, u"  B1"_s, u" C"_s});
    row("an unused Alt+letter", Qt::Key_Z, Qt::AltModifier, {u"Root +"_s, u" A"_s, u" B +<"_s, u"  B1"_s, u" C"_s});
}

void tst_frmDocument::everyOutlineKeyWorksFromBothPanes()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QStringList, outline);
    for (const bool fromText : {false, true}) {
        modDoc::DocNew();
        plantOutline(rawOutline(document()).tree, {u"Root +"_s, u" A"_s, u" B +"_s, u"  B1"_s, u" C"_s});
        modNodes::NodeSelect(document(), entryLabelled(document().tree, u"B"_s));
        m_fixture->fakes.dialogs.answers = {Answer::Yes};
        QWidget *pane = fromText ? static_cast<QWidget *>(form().textBox) : form().treeView;
        pane->setFocus();
        QTest::keyClick(pane, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(dumpOutline(document().tree), outline);
        QCOMPARE(document().view()->txtRTF.Text(), QString());
    }
}

void tst_frmDocument::copyingAndExpandingByKeyWorkFromBothPanes()
{
    for (const bool fromText : {false, true}) {
        modDoc::DocNew();
        plantOutline(rawOutline(document()).tree, {u"Root +"_s, u" A"_s, u" B +"_s, u"  B1"_s});
        modNodes::NodeSelect(document(), entryLabelled(document().tree, u"B"_s));
        QWidget *pane = fromText ? static_cast<QWidget *>(form().textBox) : form().treeView;
        pane->setFocus();
        QTest::keyClick(pane, Qt::Key_Minus, Qt::KeypadModifier);
        QTest::keyClick(pane, Qt::Key_C, Qt::AltModifier);
        QTest::keyClick(pane, Qt::Key_Plus, Qt::KeypadModifier);
        modNodes::NodeSelect(document(), entryLabelled(document().tree, u"A"_s));
        QTest::keyClick(pane, Qt::Key_P, Qt::AltModifier);
        QCOMPARE(dumpOutline(document().tree),
                 (QStringList{u"Root +"_s, u" A"_s, u" B +<"_s, u"  B1"_s, u" B +"_s, u"  B1"_s}));
        QCOMPARE(document().view()->txtRTF.Text(), QString());
    }
}

void tst_frmDocument::f2InTheTextEditsTheLabel()
{
    openThreeEntries();
    form().textBox->setFocus();
    QTest::keyClick(form().textBox, Qt::Key_F2);
    auto *editor = form().treeView->findChild<QLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), u"Root"_s);
    QVERIFY(editor->hasFocus());
}

void tst_frmDocument::aKeyOfAnotherScriptCountsByItsPlace_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("meant");
    const int alt = Qt::AltModifier;
    const int ctrlShift = Qt::ControlModifier | Qt::ShiftModifier;
    const auto row = [](const char *name, int key, quint32 scanCode, int modifiers, int meant) {
        QTest::newRow(name) << key << scanCode << modifiers << meant;
    };
    row("Russian, on B", 0x418, 56, alt, Qt::Key_B);
    row("Russian, on T", 0x415, 28, alt, Qt::Key_T);
    row("Greek, on A", 0x391, 38, alt, Qt::Key_A);
    row("Hebrew, on C", 0x5d1, 54, alt, Qt::Key_C);
    row("Arabic, on I", 0x647, 31, alt, Qt::Key_I);
    row("Russian, on P", 0x417, 33, alt, Qt::Key_P);
    row("Russian, on an unused key", 0x419, 24, alt, 0);
    row("German, Shift and the comma", Qt::Key_Semicolon, 59, ctrlShift, Qt::Key_Comma);
    row("German, Shift and the full stop", Qt::Key_Colon, 60, ctrlShift, Qt::Key_Period);
    // A layout that has the letter elsewhere means what stands on its keys.
    row("Dvorak, on B", Qt::Key_X, 56, alt, 0);
    row("Dvorak, on the comma", Qt::Key_W, 59, ctrlShift, 0);
    row("French, on the comma", Qt::Key_Period, 59, ctrlShift, Qt::Key_Period);
}

void tst_frmDocument::aKeyOfAnotherScriptCountsByItsPlace()
{
    QFETCH(const int, key);
    QFETCH(const quint32, scanCode);
    QFETCH(const int, modifiers);
    QFETCH(const int, meant);
    const QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers), scanCode, 0, 0, QString(QChar(key)));
    const KeyBinding *binding = bindingOf(event);
    QCOMPARE(binding ? binding->key : 0, meant);
}

void tst_frmDocument::keysStepTheSizeOfTheSelectedText_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<double>("size");
    QTest::newRow(">") << int(Qt::Key_Greater) << 11.0;
    QTest::newRow("what > stands on") << int(Qt::Key_Period) << 11.0;
    QTest::newRow("<") << int(Qt::Key_Less) << 9.0;
    QTest::newRow("what < stands on") << int(Qt::Key_Comma) << 9.0;
}

void tst_frmDocument::keysStepTheSizeOfTheSelectedText()
{
    QFETCH(const int, key);
    QFETCH(const double, size);
    Document &opened = openThreeEntries();
    RichTextBox &box = *form().textBox;
    Entry *first = opened.tree.root()->child(0);
    rawOutline(opened).tree.setStoredText(first, "{\\rtf1\\fs20 some text}");
    modNodes::NodeSelectFull(opened, first);
    box.setFocus();
    const auto press = [&] { QTest::keyClick(&box, Qt::Key(key), Qt::ControlModifier | Qt::ShiftModifier); };
    // A caret has no size to step.
    const std::optional<double> atCaret = box.SelFontSize();
    press();
    QCOMPARE(box.SelFontSize(), atCaret);
    box.selectAll();
    opened.history.markSaved();
    press();
    QCOMPARE(box.SelFontSize(), std::optional(size));
    QCOMPARE(box.SelText(), u"some text"_s);
    QVERIFY(opened.m_bDataChanged());
}

void tst_frmDocument::ctrlF6GoesRoundTheWindowsInOrder()
{
    std::vector<Document *> opened;
    for (int i = 0; i < 3; ++i)
        opened.push_back(&openThreeEntries());
    for (size_t i = 0; i < 4; ++i) {
        QTest::keyClick(form().treeView, Qt::Key_F6, Qt::ControlModifier);
        QCOMPARE(DocumentActive(), opened[i % 3]);
    }
}

void tst_frmDocument::aReadOnlyDocumentRefusesTyping()
{
    const QString file = m_fixture->folder.filePath(u"fixed.qly"_s);
    openThreeEntries();
    QCOMPARE(modDoc::DocSave(file), SaveOutcome::Saved);
    QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::ReadUser));
    QVERIFY(modDoc::DocLoad(file));
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"x"_s);
    QCOMPARE(document().view()->txtRTF.Text(), QString());
}

void tst_frmDocument::collapsingTheBranchOfTheSelectionSelectsItsHead()
{
    Document &opened = openThreeEntries();
    clickOn(opened.tree.root()->child(1));
    form().treeView->setFocus();
    rawOutline(opened).tree.setExpanded(opened.tree.root(), false);
    QCOMPARE(opened.tree.selected(), opened.tree.root());
    QVERIFY(opened.m_bDataChanged());
}

void tst_frmDocument::collapsingTheRootSetsLevelOne()
{
    Document &opened = openThreeEntries();
    opened.setExpansionLevel(3);
    form().treeView->setFocus();
    QTest::keyClick(form().treeView, Qt::Key_Left);
    QVERIFY(!opened.tree.root()->expanded());
    QCOMPARE(opened.m_iExpansionLevel(), qint16(1));
    QTest::keyClick(form().treeView, Qt::Key_Right);
    QVERIFY(opened.tree.root()->expanded());
    QCOMPARE(opened.m_iExpansionLevel(), qint16(0));
}

void tst_frmDocument::collapsingAnotherEntrySetsLevelZero_data()
{
    QTest::addColumn<bool>("byMouse");
    QTest::newRow("by key") << false;
    QTest::newRow("by mouse") << true;
}

void tst_frmDocument::collapsingAnotherEntrySetsLevelZero()
{
    QFETCH(const bool, byMouse);
    modDoc::DocNew();
    plantOutline(rawOutline(document()).tree, {u"Root +"_s, u" A +"_s, u"  A1"_s});
    const Entry *entry = entryLabelled(document().tree, u"A"_s);
    modNodes::NodeSelect(document(), document().tree.root()->child(0));
    document().setExpansionLevel(3);
    TreeView &view = *form().treeView;
    view.setFocus();
    if (byMouse) {
        const QRect row = view.visualRect(document().tree.indexOf(entry));
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, row.center() - QPoint(row.width() / 2 + 8, 0));
    } else {
        QTest::keyClick(&view, Qt::Key_Left);
    }
    QVERIFY(!entry->expanded());
    QCOMPARE(document().m_iExpansionLevel(), qint16(0));
}

void tst_frmDocument::eventsAreSilentWhileBusy()
{
    Document &opened = openThreeEntries();
    const BusyScope busy;
    clickOn(opened.tree.root()->child(1));
    rawOutline(opened).tree.setExpanded(opened.tree.root(), false);
    QVERIFY(!opened.m_bDataChanged());
    QCOMPARE(opened.view()->txtRTF.Text(), QString());
}

void tst_frmDocument::closingAnUnchangedDocumentAsksNothing()
{
    openThreeEntries();
    QVERIFY(document().view()->window.close());
    QCOMPARE(iDocumentCount, qint16(0));
    QVERIFY(m_fixture->fakes.dialogs.questions.isEmpty());
}

void tst_frmDocument::closingAChangedReadOnlyDocumentAsksNothing()
{
    const QString file = m_fixture->folder.filePath(u"fixed.qly"_s);
    openThreeEntries();
    QCOMPARE(modDoc::DocSave(file), SaveOutcome::Saved);
    QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::ReadUser));
    QVERIFY(modDoc::DocLoad(file));
    document().history.touch();
    QVERIFY(document().view()->window.close());
    QVERIFY(m_fixture->fakes.dialogs.questions.isEmpty());
}

// Opened or saved while it could be written, then protected by somebody else or by a disk with errors.
void tst_frmDocument::aFileThatTurnsReadOnlyTakesNothingAway_data()
{
    QTest::addColumn<bool>("loaded");
    QTest::newRow("opened") << true;
    QTest::newRow("saved") << false;
}

void tst_frmDocument::aFileThatTurnsReadOnlyTakesNothingAway()
{
    QFETCH(const bool, loaded);
    const QString file = m_fixture->folder.filePath(u"fixed.qly"_s);
    const QString other = m_fixture->folder.filePath(u"other.qly"_s);
    openThreeEntries();
    QCOMPARE(modDoc::DocSave(file), SaveOutcome::Saved);
    if (loaded) {
        QVERIFY(document().view()->window.close());
        QVERIFY(modDoc::DocLoad(file));
    }
    QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::ReadUser));
    clickOn(document().tree.root()->child(0));
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"kept "_s);
    m_fixture->fakes.dialogs.answers = {Answer::Cancel};
    QVERIFY2(!document().view()->window.close(), "closing asks");
    // Yes leads to another name, because the old one cannot be written.
    m_fixture->fakes.dialogs.answers = {Answer::Yes};
    m_fixture->fakes.dialogs.saveNames = {std::nullopt};
    QVERIFY2(!document().view()->window.close(), "without a name the window stays");
    QVERIFY(document().hasNotice(NoticeKind::NotSaved));
    QVERIFY(document().m_bDataChanged());
    m_fixture->fakes.dialogs.answers = {Answer::Yes};
    m_fixture->fakes.dialogs.saveNames = {other};
    QVERIFY(document().view()->window.close());
    QVERIFY(modDoc::DocLoad(other));
    QVERIFY(textOf(document().tree.root()->child(0)).startsWith(u"kept Text of"_s));
}

void tst_frmDocument::aReadOnlyDocumentSavedElsewhereCanBeEdited()
{
    const QString file = m_fixture->folder.filePath(u"fixed.qly"_s);
    openThreeEntries();
    QCOMPARE(modDoc::DocSave(file), SaveOutcome::Saved);
    QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::ReadUser));
    QVERIFY(document().view()->window.close());
    QVERIFY(modDoc::DocLoad(file));
    QCOMPARE(modDoc::DocSave(m_fixture->folder.filePath(u"copy.qly"_s)), SaveOutcome::Saved);
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"x"_s);
    QCOMPARE(document().view()->txtRTF.Text(), u"x"_s);
}

void tst_frmDocument::withoutAnEntryTheTextPaneTakesNoWords()
{
    Document &opened = openThreeEntries();
    modNodes::NodeDelete(opened, opened.tree.root());
    modNodes::showNothing(opened);
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"lost"_s);
    QCOMPARE(opened.view()->txtRTF.Text(), QString());
    modNodes::NodeSelect(opened, modNodes::NodeInsert(opened, Relationship::tvwFirst, nullptr));
    QTest::keyClicks(form().textBox, u"kept"_s);
    QCOMPARE(textOf(opened.tree.root()), u"kept"_s);
}

void tst_frmDocument::aDocumentWithoutEntriesReplacesNoFile()
{
    const QString file = m_fixture->folder.filePath(u"kept.qly"_s);
    Document &opened = openThreeEntries();
    QCOMPARE(modDoc::DocSave(file), SaveOutcome::Saved);
    const qint64 size = QFileInfo(file).size();
    modNodes::NodeDelete(opened, opened.tree.root());
    modNodes::showNothing(opened);
    opened.history.touch();
    modFile::FileSaveAll();
    QVERIFY(opened.hasNotice(NoticeKind::NotSaved));
    m_fixture->fakes.dialogs.answers = {Answer::Yes};
    QVERIFY(!opened.view()->window.close());
    modDocText::DocExport(file);
    QCOMPARE(QFileInfo(file).size(), size);
    QVERIFY(!QFile::exists(m_fixture->folder.filePath(u"kept.bak"_s)));
    m_fixture->fakes.dialogs.answers = {Answer::No};
    QVERIFY(opened.view()->window.close());
}

// A text warning answered No: the words are still nowhere but here.
void tst_frmDocument::aRefusedSaveIsAskedAboutOnClosing()
{
    openThreeEntries();
    document().m_sFile = m_fixture->folder.filePath(u"notes.txt"_s);
    document().history.touch();
    m_fixture->fakes.dialogs.answers = {Answer::No, Answer::Cancel};
    QVERIFY(!modFile::FileSave());
    QVERIFY(!document().view()->window.close());
    QCOMPARE(m_fixture->fakes.dialogs.questions.size(), 2);
    m_fixture->fakes.dialogs.answers = {Answer::Yes, Answer::Yes};
    QVERIFY(document().view()->window.close());
}

void tst_frmDocument::cancelKeepsTheWindowAndTheCount()
{
    openThreeEntries();
    document().history.touch();
    m_fixture->fakes.dialogs.answers = {Answer::Cancel};
    QVERIFY(!document().view()->window.close());
    QCOMPARE(iDocumentCount, qint16(1));
    QCOMPARE(m_fixture->documents().size(), size_t(1));
    QVERIFY(document().m_bDataChanged());
    QCOMPARE(m_fixture->fakes.dialogs.questions, QStringList{u"Do you want to save the file ?"_s});
}

void tst_frmDocument::noClosesWithoutSaving()
{
    const QString file = m_fixture->folder.filePath(u"kept.qly"_s);
    openThreeEntries();
    document().m_sFile = file;
    document().history.touch();
    m_fixture->fakes.dialogs.answers = {Answer::No};
    QVERIFY(document().view()->window.close());
    QVERIFY(!QFile::exists(file));
    QCOMPARE(iDocumentCount, qint16(0));
    QCOMPARE(m_fixture->fakes.dialogs.questions, QStringList{u"Do you want to save the file "_s + file + u"?"_s});
}

void tst_frmDocument::yesSavesAndCloses()
{
    const QString file = m_fixture->folder.filePath(u"kept.qly"_s);
    openThreeEntries();
    document().history.touch();
    m_fixture->fakes.dialogs.answers = {Answer::Yes};
    m_fixture->fakes.dialogs.saveNames = {file};
    QVERIFY(document().view()->window.close());
    QVERIFY(QFile::exists(file));
    QCOMPARE(iDocumentCount, qint16(0));
}

void tst_frmDocument::yesWithACancelledSaveDialogKeepsTheWindow()
{
    openThreeEntries();
    document().history.touch();
    m_fixture->fakes.dialogs.answers = {Answer::Yes};
    m_fixture->fakes.dialogs.saveNames = {std::nullopt};
    QVERIFY(!document().view()->window.close());
    QVERIFY(document().m_bDataChanged());
    QCOMPARE(iDocumentCount, qint16(1));
}

void tst_frmDocument::yesWithAFailedSaveKeepsTheWindowAndAsksAgain()
{
    openThreeEntries();
    const QString file = m_fixture->folder.filePath(u"no such folder/kept.qly"_s);
    document().m_sFile = file;
    document().history.touch();
    m_fixture->fakes.dialogs.answers = {Answer::Yes, Answer::No};
    QVERIFY(!document().view()->window.close());
    QCOMPARE(m_fixture->fakes.statusText(), u"The file %1 could not be saved"_s.arg(file));
    QVERIFY(document().view()->window.close());
    QCOMPARE(m_fixture->fakes.dialogs.questions.size(), 2);
}

void tst_frmDocument::aFailedLoadKeepsItsNoticeUntilTheSelectionMoves()
{
    const QString file = m_fixture->folder.filePath(u"cut.qly"_s);
    openThreeEntries();
    QCOMPARE(modDoc::DocSave(file), SaveOutcome::Saved);
    QFile cut(file);
    QVERIFY(cut.open(QIODevice::ReadWrite));
    QVERIFY(cut.resize(cut.size() - 1));
    cut.close();
    QVERIFY(!modDoc::DocLoad(file));
    const QString notice = u"The file %1 could not be read whole"_s.arg(file);
    QCOMPARE(m_fixture->fakes.statusText(), notice);
    QVERIFY(document().m_sFile.isEmpty());
    QCOMPARE(document().tree.entryCount(), 3);
    form().Form_Activate();
    QCOMPARE(m_fixture->fakes.statusText(), notice);
    form().treeView->setFocus();
    QTest::keyClick(form().treeView, Qt::Key_Down);
    QCOMPARE(m_fixture->fakes.statusText(), u"First"_s);
}

void tst_frmDocument::aWindowWithoutEntriesShowsNoLabelOfAnother()
{
    Document &emptied = openThreeEntries();
    Document &other = openThreeEntries();
    rawOutline(other).tree.setLabel(other.tree.root(), u"Other"_s);
    modNodes::NodeDelete(emptied, emptied.tree.root());
    modNodes::showNothing(emptied);
    emptied.view()->window.activate();
    QCOMPARE(m_fixture->fakes.statusText(), QString());
    QCOMPARE(emptied.view()->txtRTF.Text(), QString());
    other.view()->window.activate();
    QCOMPARE(m_fixture->fakes.statusText(), u"Other"_s);
}

QTEST_MAIN(tst_frmDocument)
#include "tst_frmDocument.moc"
