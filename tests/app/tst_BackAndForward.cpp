// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/PlaceKeeper.h"
#include "document/modDoc.h"
#include "document/modFile.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "search/modSearch.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

// Back and forward in the real main window, by keys and by the mouse's buttons. Time does not pass by itself: a test
// says when a place has been shown for a while.
class tst_BackAndForward : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void aClickIsAPlaceAtOnce();
    void walkingByKeysMakesOnePlace();
    void theMouseButtonsGoBackAndForthAndSelectNothing();
    void aButtonPressedTwiceGoesTwoPlaces();
    void theButtonsDoNothingWhileAnotherIsHeld();
    void theMenuShowsWhetherThereIsAPlace();
    void goingLeadsToOtherDocuments();
    void aClosedDocumentIsPassedOver();
    void aDeletedEntryIsPassedOverUntilItIsBack();
    void itWorksInTheTextAndStaysThere();
    void theCaretIsWhereItWas();
    void anOpenLabelIsEnded();
    void goingChangesNoDocument();
    void aReadOnlyDocumentIsGoneBackIn();
    void aSearchAndTheListOfStepsLeadToPlaces();
    void whatACommandLeavesSelectedHasToRest();
    void aMinimisedDocumentIsShownAgain();
    void aPlaceInsideAClosedBranchIsShown();

private:
    Document &open(const QStringList &outline, const QString &walkTo);

    void openOther() { open({u"Other"_s, u" X"_s, u" Y"_s}, u"X"_s); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    void click(const QString &label) const;
    void clickButton(Qt::MouseButton button, QWidget *on = nullptr) const;

    void back() const { press(Qt::Key_Left, Qt::ControlModifier | Qt::AltModifier); }

    void forward() const { press(Qt::Key_Right, Qt::ControlModifier | Qt::AltModifier); }

    void rest() const { m_main->main.places().settle(); }

    static QString here()
    {
        const Entry *selected = DocumentActive() ? DocumentActive()->tree.selected() : nullptr;
        return selected ? selected->label() : QString();
    }

    frmDocument &form() const { return static_cast<frmDocument &>(DocumentActive()->view()->window); }

    std::unique_ptr<MainFixture> m_main;
};

void tst_BackAndForward::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.resize(1000, 800);
    m_main->main.places().setRest(-1);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    open({u"Root"_s, u" A"_s, u" B"_s, u" C"_s, u"  C1"_s, u" D"_s}, u"B"_s);
    QCOMPARE(here(), u"B"_s);
    rest();
}

// Opens a file with an outline, all of it expanded, as a user does, and walks to an entry.
Document &tst_BackAndForward::open(const QStringList &outline, const QString &walkTo)
{
    static int number = 0;
    const QString file = m_main->app.makeFile(u"opened%1.qly"_s.arg(++number), nativeBytes(outline));
    m_main->app.core.dialogs.openNames = {file};
    m_main->choose("mnuFileOpen");
    Document &document = *DocumentActive();
    document.history.setExpandedAll(document.tree.root(), true);
    document.history.markSaved();
    press(Qt::Key_Home);
    while (here() != walkTo && document.tree.selected()->next() != document.tree.root())
        press(Qt::Key_Down);
    return document;
}

void tst_BackAndForward::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    m_main->refresh();
    QTest::keyClick(m_main->main.windowHandle(), key, modifiers);
}

void tst_BackAndForward::click(const QString &label) const
{
    const TreeView &outline = *form().treeView;
    const QRect row = outline.visualRect(DocumentActive()->tree.indexOf(entryLabelled(DocumentActive()->tree, label)));
    QVERIFY2(row.isValid(), qPrintable(label));
    QTest::mouseClick(outline.viewport(), Qt::LeftButton, {}, row.center());
}

void tst_BackAndForward::clickButton(Qt::MouseButton button, QWidget *on) const
{
    QTest::mouseClick(on ? on : form().treeView->viewport(), button, {}, QPoint(20, 40));
}

void tst_BackAndForward::aClickIsAPlaceAtOnce()
{
    click(u"D"_s);
    click(u"A"_s);
    back();
    QCOMPARE(here(), u"D"_s);
    back();
    QCOMPARE(here(), u"B"_s);
    back();
    QCOMPARE(here(), u"B"_s);
    forward();
    forward();
    QCOMPARE(here(), u"A"_s);
    forward();
    QCOMPARE(here(), u"A"_s);
}

void tst_BackAndForward::walkingByKeysMakesOnePlace()
{
    press(Qt::Key_Home);
    for (int i = 0; i < 5; ++i)
        press(Qt::Key_Down);
    QCOMPARE(here(), u"D"_s);
    rest();
    back();
    QCOMPARE(here(), u"B"_s);
    forward();
    QCOMPARE(here(), u"D"_s);
    // What one walks away from before it has rested is still where one comes back to.
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    QCOMPARE(here(), u"C"_s);
    back();
    QCOMPARE(here(), u"D"_s);
    forward();
    QCOMPARE(here(), u"C"_s);
}

void tst_BackAndForward::theMouseButtonsGoBackAndForthAndSelectNothing()
{
    click(u"D"_s);
    click(u"A"_s);
    clickButton(Qt::BackButton);
    QCOMPARE(here(), u"D"_s);
    clickButton(Qt::BackButton, form().textBox->viewport());
    QCOMPARE(here(), u"B"_s);
    clickButton(Qt::ForwardButton, m_main->main.menuBar());
    QCOMPARE(here(), u"D"_s);
    clickButton(Qt::ForwardButton);
    QCOMPARE(here(), u"A"_s);
    clickButton(Qt::ForwardButton);
    QCOMPARE(here(), u"A"_s);
}

void tst_BackAndForward::aButtonPressedTwiceGoesTwoPlaces()
{
    click(u"D"_s);
    click(u"A"_s);
    clickButton(Qt::BackButton);
    QTest::mouseDClick(form().treeView->viewport(), Qt::BackButton, {}, QPoint(20, 40));
    QCOMPARE(here(), u"B"_s);
    QVERIFY(!QApplication::focusWidget() || !qobject_cast<QLineEdit *>(QApplication::focusWidget()));
}

void tst_BackAndForward::theButtonsDoNothingWhileAnotherIsHeld()
{
    click(u"D"_s);
    QWidget *pane = form().textBox->viewport();
    QTest::mousePress(pane, Qt::LeftButton, {}, QPoint(20, 20));
    clickButton(Qt::BackButton, pane);
    QCOMPARE(here(), u"D"_s);
    QTest::mouseRelease(pane, Qt::LeftButton, {}, QPoint(20, 20));
    clickButton(Qt::BackButton, pane);
    QCOMPARE(here(), u"B"_s);
}

void tst_BackAndForward::theMenuShowsWhetherThereIsAPlace()
{
    QVERIFY(!m_main->enabled("mnuToolsBack") && !m_main->enabled("mnuToolsForward"));
    click(u"D"_s);
    QVERIFY(m_main->enabled("mnuToolsBack") && !m_main->enabled("mnuToolsForward"));
    m_main->choose("mnuToolsBack");
    QCOMPARE(here(), u"B"_s);
    QVERIFY(!m_main->enabled("mnuToolsBack") && m_main->enabled("mnuToolsForward"));
    m_main->choose("mnuToolsForward");
    QCOMPARE(here(), u"D"_s);
    QCOMPARE(m_main->action(u"mnuToolsBack"_s)->shortcut(), QKeySequence(u"Ctrl+Alt+Left"_s));
}

void tst_BackAndForward::goingLeadsToOtherDocuments()
{
    Document *first = DocumentActive();
    click(u"D"_s);
    openOther();
    Document *second = DocumentActive();
    click(u"Y"_s);
    back();
    QCOMPARE(DocumentActive(), first);
    QCOMPARE(here(), u"D"_s);
    // The keyboard went along.
    press(Qt::Key_Up);
    QCOMPARE(here(), u"C1"_s);
    forward();
    QCOMPARE(DocumentActive(), second);
    QCOMPARE(here(), u"Y"_s);
    clickButton(Qt::BackButton);
    QCOMPARE(DocumentActive(), first);
}

void tst_BackAndForward::aClosedDocumentIsPassedOver()
{
    click(u"D"_s);
    openOther();
    click(u"Y"_s);
    m_main->app.core.dialogs.answers = {Answer::No};
    form().close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    click(u"A"_s);
    back();
    QCOMPARE(here(), u"D"_s);
    back();
    QCOMPARE(here(), u"B"_s);
    forward();
    forward();
    forward();
    QCOMPARE(here(), u"A"_s);
}

void tst_BackAndForward::aDeletedEntryIsPassedOverUntilItIsBack()
{
    click(u"C"_s);
    click(u"A"_s);
    History &history = DocumentActive()->history;
    history.remove(entryLabelled(DocumentActive()->tree, u"C"_s));
    back();
    QCOMPARE(here(), u"B"_s);
    forward();
    QCOMPARE(here(), u"A"_s);
    history.undo();
    back();
    QCOMPARE(here(), u"C"_s);
}

void tst_BackAndForward::itWorksInTheTextAndStaysThere()
{
    click(u"D"_s);
    press(Qt::Key_Tab);
    QVERIFY(form().textBox->hasFocus());
    back();
    QCOMPARE(here(), u"B"_s);
    QVERIFY(form().textBox->hasFocus());
    QVERIFY(DocumentActive()->view()->m_bTextHasFocus());
    forward();
    QCOMPARE(here(), u"D"_s);
    QVERIFY(form().textBox->Text().isEmpty());
}

void tst_BackAndForward::theCaretIsWhereItWas()
{
    press(Qt::Key_Tab);
    QTest::keyClicks(form().textBox, u"some words"_s);
    form().textBox->setSelStart(4);
    click(u"D"_s);
    back();
    QCOMPARE(here(), u"B"_s);
    QCOMPARE(form().textBox->SelStart(), 4);
}

void tst_BackAndForward::anOpenLabelIsEnded()
{
    click(u"D"_s);
    press(Qt::Key_F2);
    auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(editor);
    QTest::keyClicks(editor, u"Renamed"_s);
    back();
    QCOMPARE(here(), u"B"_s);
    QVERIFY(entryLabelled(DocumentActive()->tree, u"Renamed"_s));
    press(Qt::Key_F2);
    editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(editor);
    QTest::keyClicks(editor, u"Too"_s);
    clickButton(Qt::ForwardButton, editor);
    QCOMPARE(here(), u"Renamed"_s);
    QVERIFY(entryLabelled(DocumentActive()->tree, u"Too"_s));
}

void tst_BackAndForward::goingChangesNoDocument()
{
    Document &document = *DocumentActive();
    click(u"D"_s);
    document.history.markSaved();
    const int steps = document.history.stepCount();
    back();
    forward();
    clickButton(Qt::BackButton);
    QCOMPARE(here(), u"B"_s);
    QVERIFY(!document.m_bDataChanged());
    QCOMPARE(document.history.stepCount(), steps);
}

void tst_BackAndForward::aReadOnlyDocumentIsGoneBackIn()
{
    const QString file = m_main->app.makeFile(u"read.qly"_s, nativeBytes({u"Help"_s, u" X"_s, u" Y"_s}));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    m_main->app.core.dialogs.openNames = {file};
    m_main->choose("mnuFileOpen");
    Document &document = *DocumentActive();
    QVERIFY(document.bReadOnly());
    document.history.setExpandedAll(document.tree.root(), true);
    click(u"X"_s);
    click(u"Y"_s);
    back();
    QCOMPARE(here(), u"X"_s);
    back();
    QCOMPARE(here(), u"B"_s);
    clickButton(Qt::ForwardButton);
    QCOMPARE(here(), u"X"_s);
    QCOMPARE(DocumentActive(), &document);
    QCOMPARE(document.history.stepCount(), 0);
}

void tst_BackAndForward::aSearchAndTheListOfStepsLeadToPlaces()
{
    Document &document = *DocumentActive();
    document.history.setLabel(entryLabelled(document.tree, u"A"_s), u"Renamed"_s);
    document.history.setStoredText(entryLabelled(document.tree, u"D"_s), "{\\rtf1 a needle\\par}");
    g_sSearchFind = u"needle"_s;
    g_sSearchScope = u"1"_s;
    g_bSearchMatchCase = g_bSearchWholeWord = g_bSearchBackwards = false;
    m_main->choose("mnuSearchRepeat");
    QCOMPARE(here(), u"D"_s);
    click(u"C1"_s);
    back();
    QCOMPARE(here(), u"D"_s);
    // From the list of steps.
    document.history.select(entryLabelled(document.tree, u"Renamed"_s));
    document.history.setLabel(entryLabelled(document.tree, u"Renamed"_s), u"Again"_s);
    click(u"C"_s);
    bool isRun = false;
    for (QAction *action : m_main->main.findChildren<QAction *>()) {
        if (action->objectName() == u"mnuToolsHistory"_s) {
            action->trigger();
            isRun = true;
        }
    }
    QVERIFY(isRun);
    auto *list = m_main->main.findChild<QListView *>(u"lstHistory"_s);
    QVERIFY(list);
    QTRY_COMPARE(list->model()->rowCount(), document.history.stepCount() + 1);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualRect(list->model()->index(document.history.position() - 1, 0)).center());
    QCOMPARE(here(), u"Renamed"_s);
    click(u"D"_s);
    back();
    QCOMPARE(here(), u"Renamed"_s);
}

void tst_BackAndForward::whatACommandLeavesSelectedHasToRest()
{
    click(u"C1"_s);
    m_main->app.core.dialogs.answers = {Answer::Yes};
    m_main->choose("mnuOutlineDelete");
    QCOMPARE(here(), u"C"_s);
    click(u"A"_s);
    back();
    QCOMPARE(here(), u"B"_s);
}

void tst_BackAndForward::aMinimisedDocumentIsShownAgain()
{
    click(u"D"_s);
    frmDocument &first = form();
    first.parentWidget()->showMinimized();
    openOther();
    rest();
    back();
    QCOMPARE(here(), u"D"_s);
    QVERIFY(!first.parentWidget()->isMinimized());
}

void tst_BackAndForward::aPlaceInsideAClosedBranchIsShown()
{
    click(u"C1"_s);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    QVERIFY(!entryLabelled(DocumentActive()->tree, u"C"_s)->expanded());
    click(u"A"_s);
    back();
    QCOMPARE(here(), u"C1"_s);
    QVERIFY(DocumentActive()->tree.selected()->visible());
}

QTEST_MAIN(tst_BackAndForward)
#include "tst_BackAndForward.moc"
