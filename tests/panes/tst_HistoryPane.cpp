// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "document/DocumentView.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "search/modSearch.h"
#include "support/NativeBytes.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

// Undo, redo and the pane of steps in the running main window, with real keys and clicks.
class tst_HistoryPane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void theMenuStandsBetweenViewAndWindow();
    void theItemsNameTheSteps();
    void withNothingDoneNothingIsUndone();
    void aReadOnlyDocumentOffersNone();
    void keysUndoAndRedoFromEitherPane();
    void undoSaysWhatItDid();
    void whatReachesFarSaysSo();
    void clearingATextSaysHowMuchItWas();
    void whatWasSaidOfAStepEndsWithTheNext();
    void theItemsNameWhatIsDoneByMouseToo();
    void whatIsOpenStaysOpenWhenALetterIsUndone();
    void undoneAllTheFileHoldsWhatItHeld();
    void whatWasChangedByASelectionAloneIsChangedAgain();
    void undoGoesAcrossEntries();
    void whatWasDraggedGoesBack();
    void replacingInAllLabelsIsOneStep();
    void eachDocumentHasItsOwnSteps();
    void aKeyInALabelBeingTypedIsTheLabels();
    void theMenuKeepsALabelBeingTypedAndTakesItBack();
    void theItemsSayWhatTheyDoWithALabelOpen();
    void aLabelBeingTypedIsUndoneInADocumentWithoutSteps();
    void undoneToWhatWasSavedNothingIsAskedAtTheEnd();
    void thePaneListsTheStepsAndGreysThoseUndone();
    void aClickGoesToAStep();
    void aClickThatEndsALabelGoesToTheRowThatWasPressed();
    void aClickOnWhatALabelTakesAwayGoesNowhere();
    void rowsThatStayAreTheSameRows();
    void rowsOfForgottenStepsGo();
    void whatWasSavedIsMarked();
    void closingThePaneGivesTheKeyboardBackToThePaneThatHadIt();
    void thePaneIsUsedByKeysAlone();
    void thePaneFollowsTheActiveDocument();
    void assistiveTechnologyHearsWhereTheDocumentIs();

private:
    frmDocument &form() const { return dynamic_cast<frmDocument &>(DocumentActive()->view()->window); }

    // A document with an outline: a root and the entries A, B and C below it, of which B is selected.
    Document &plant(const QStringList &lines = {u"Root +"_s, u" A"_s, u" B <"_s, u" C"_s}) const;

    QListView &list() const { return *m_main->main.findChild<QListView *>(u"lstHistory"_s); }

    QStringList rows() const;
    QString status() const;
    // Opens the label of the selected entry, and types into it.
    void typeALabel(const QString &text) const;

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(m_main->main.windowHandle(), key, modifiers);
    }

    QString outline() const { return dumpOutline(DocumentActive()->tree).join(u'|'); }

    std::unique_ptr<MainFixture> m_main;
};

void tst_HistoryPane::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.resize(1200, 700);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    m_main->app.core.dialogs.answers.assign(20, Answer::Yes);
}

Document &tst_HistoryPane::plant(const QStringList &lines) const
{
    modDoc::DocNew();
    Document &document = *DocumentActive();
    plantOutline(rawOutline(document).tree, lines);
    modNodes::NodeSelectFull(document, document.tree.selected());
    document.giveUpChanges();
    form().treeView->setFocus();
    return document;
}

QStringList tst_HistoryPane::rows() const
{
    QStringList found;
    for (int row = 0; row < list().model()->rowCount(); ++row)
        found.append(list().model()->index(row, 0).data(Qt::ToolTipRole).toString());
    return found;
}

QString tst_HistoryPane::status() const
{
    const auto *text = m_main->main.findChild<QLabel *>(u"sbStatusBarText"_s);
    return text ? text->text() : QString();
}

void tst_HistoryPane::typeALabel(const QString &text) const
{
    form().treeView->setFocus();
    press(Qt::Key_F2);
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    QTest::keyClicks(QApplication::focusWidget(), text);
}

void tst_HistoryPane::theMenuStandsBetweenViewAndWindow()
{
    QStringList captions;
    for (const QAction *each : m_main->main.menuBar()->actions())
        captions.append(each->text());
    QCOMPARE(captions.join(u' '), u"&File &Outline &Edit &Search &View Too&ls &Window &Help"_s);
}

void tst_HistoryPane::theItemsNameTheSteps()
{
    plant();
    press(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(m_main->action(u"mnuToolsUndo"_s)->text(), u"&Undo move of \"B\""_s);
    QCOMPARE(m_main->action(u"mnuToolsRedo"_s)->text(), u"&Redo"_s);
    m_main->choose("mnuToolsUndo");
    QCOMPARE(m_main->action(u"mnuToolsRedo"_s)->text(), u"&Redo move of \"B\""_s);
    press(Qt::Key_T, Qt::AltModifier);
    QCOMPARE(m_main->action(u"mnuToolsUndo"_s)->text(), u"&Undo tagging of \"B\""_s);
    press(Qt::Key_T, Qt::AltModifier);
    QCOMPARE(m_main->action(u"mnuToolsUndo"_s)->text(), u"&Undo untagging of \"B\""_s);
    QCOMPARE(m_main->action(u"mnuToolsUndo"_s)->shortcuts(), QList<QKeySequence>({QKeySequence(u"Ctrl+Z"_s)}));
    QCOMPARE(m_main->action(u"mnuToolsRedo"_s)->shortcuts(),
             QList<QKeySequence>({QKeySequence(u"Ctrl+Shift+Z"_s), QKeySequence(u"Ctrl+Y"_s)}));
}

void tst_HistoryPane::withNothingDoneNothingIsUndone()
{
    QVERIFY(!m_main->enabled("mnuToolsUndo") && !m_main->enabled("mnuToolsRedo"));
    QVERIFY(m_main->enabled("mnuToolsHistory"));
    press(Qt::Key_Z, Qt::ControlModifier);
    modDoc::DocLoad(m_main->app.makeFile(u"a.txt"_s, "words"));
    const QString before = outline();
    QVERIFY(!m_main->enabled("mnuToolsUndo") && !m_main->enabled("mnuToolsRedo"));
    press(Qt::Key_Z, Qt::ControlModifier);
    form().textBox->setFocus();
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline(), before);
    QCOMPARE(form().textBox->Text(), u"words\r\n"_s);
}

void tst_HistoryPane::aReadOnlyDocumentOffersNone()
{
    Document &document = plant();
    press(Qt::Key_Up, Qt::AltModifier);
    const QString file = m_main->app.makeFile(u"a.qly"_s, "text");
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    document.m_sFile = file;
    document.lookAtFileAgain();
    m_main->refresh();
    QVERIFY(!m_main->enabled("mnuToolsUndo"));
    const QString before = outline();
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline(), before);
}

void tst_HistoryPane::keysUndoAndRedoFromEitherPane()
{
    plant();
    for (QWidget *pane : {static_cast<QWidget *>(form().treeView), static_cast<QWidget *>(form().textBox)}) {
        pane->setFocus();
        press(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(outline(), u"Root +| B <| A| C"_s);
        press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(outline(), u"Root +| A| B <| C"_s);
        press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(outline(), u"Root +| B <| A| C"_s);
        press(Qt::Key_Z, Qt::ControlModifier);
        press(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(outline(), u"Root +| B <| A| C"_s);
        press(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(pane->hasFocus());
    }
}

void tst_HistoryPane::undoSaysWhatItDid()
{
    plant();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(status(), u"Undid move of \"B\""_s);
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(status(), u"Redid move of \"B\""_s);
    press(Qt::Key_Down);
    QCOMPARE(status(), u"A"_s);
}

void tst_HistoryPane::whatReachesFarSaysSo()
{
    Document &document = plant();
    modNodes::NodeInsert(document, Relationship::tvwChild, document.tree.root()->child(1));
    modNodes::NodeInsert(document, Relationship::tvwChild, document.tree.root()->child(1));
    press(Qt::Key_Delete, Qt::AltModifier);
    QCOMPARE(status(), u"Deletion of \"B\" (3 entries) – Ctrl+Z takes it back"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(document.tree.entryCount(), 6);
    // A single entry is seen to go.
    modNodes::NodeSelectFull(document, document.tree.root()->child(0));
    press(Qt::Key_Delete, Qt::AltModifier);
    QVERIFY2(!status().contains(u"Ctrl+Z"_s), qPrintable(status()));
    press(Qt::Key_Up, Qt::AltModifier);
    rawOutline(document).tree.setLabel(document.tree.root()->child(0), u"Z"_s);
    m_main->choose("mnuOutlineSortAll");
    QCOMPARE(status(), u"Sorting below \"Root\" – Ctrl+Z takes it back"_s);
}

void tst_HistoryPane::clearingATextSaysHowMuchItWas()
{
    const Document &document = plant();
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, QString(1234, u'x'));
    m_main->choose("mnuEditClearEntryText");
    QCOMPARE(status(), u"Clearing of the text of \"B\" (%L1 characters) – Ctrl+Z takes it back"_s.arg(1234));
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(form().textBox->Text().size(), 1234);
    QCOMPARE(status(), u"Undid clearing of the text of \"B\""_s);
    m_main->choose("mnuEditSelectAll");
    QTest::keyClicks(form().textBox, u"x"_s);
    m_main->choose("mnuEditClearEntryText");
    QCOMPARE(status(), u"Clearing of the text of \"B\" (one character) – Ctrl+Z takes it back"_s);
    // What was empty is no step, and nothing is said of it.
    const int steps = document.history.stepCount();
    m_main->choose("mnuEditClearEntryText");
    QCOMPARE(document.history.stepCount(), steps);
}

// What Ctrl+Z takes back is another step by then.
void tst_HistoryPane::whatWasSaidOfAStepEndsWithTheNext()
{
    const Document &document = plant();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(status(), u"Undid move of \"B\""_s);
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"x"_s);
    m_main->refresh();
    QCOMPARE(status(), document.tree.selected()->label());
}

void tst_HistoryPane::theItemsNameWhatIsDoneByMouseToo()
{
    plant();
    press(Qt::Key_F2);
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    QTest::keyClicks(QApplication::focusWidget(), u"typed"_s);
    press(Qt::Key_Return);
    QTRY_VERIFY(m_main->action(u"mnuToolsUndo"_s)->isEnabled());
    QVERIFY(m_main->action(u"mnuToolsUndo"_s)->text().startsWith(u"&Undo "_s));
}

void tst_HistoryPane::whatIsOpenStaysOpenWhenALetterIsUndone()
{
    Document &document = plant({u"Root +"_s, u" A"_s, u"  A1"_s, u" B <"_s});
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"x"_s);
    form().treeView->expand(document.tree.indexOf(document.tree.root()->child(0)));
    QCOMPARE(outline(), u"Root +| A +|  A1| B <"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(form().textBox->Text(), QString());
    QCOMPARE(outline(), u"Root +| A +|  A1| B <"_s);
    QVERIFY(document.m_bDataChanged());
    // The last that there is to be undone.
    QCOMPARE(m_main->action(u"mnuToolsUndo"_s)->text(), u"&Undo opening and closing of branches"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline(), u"Root +| A|  A1| B <"_s);
    QCOMPARE(status(), u"Undid opening and closing of branches"_s);
    QVERIFY(!m_main->enabled("mnuToolsUndo"));
    QVERIFY(!document.m_bDataChanged());
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(form().textBox->Text(), u"x"_s);
}

void tst_HistoryPane::undoneAllTheFileHoldsWhatItHeld()
{
    Document &document = plant({u"Root +"_s, u" A"_s, u"  A1"_s, u" B +<"_s, u"  B1"_s});
    const QByteArray start = nativeBytes(document.outline());
    TreeView &view = *form().treeView;
    view.expand(document.tree.indexOf(document.tree.root()->child(0)));
    press(Qt::Key_Up, Qt::AltModifier);
    view.collapse(document.tree.indexOf(document.tree.selected()));
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"x"_s);
    view.collapse(document.tree.indexOf(document.tree.root()));
    while (m_main->enabled("mnuToolsUndo"))
        press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(nativeBytes(document.outline()), start);
    QVERIFY(!document.m_bDataChanged());
    // As it does when the first row of all steps is gone to.
    press(Qt::Key_Y, Qt::ControlModifier);
    view.expand(document.tree.indexOf(document.tree.root()->child(1)));
    m_main->choose("mnuToolsHistory");
    QTRY_COMPARE(rows().size(), 3);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualRect(list().model()->index(0, 0)).center());
    QCOMPARE(nativeBytes(document.outline()), start);
}

void tst_HistoryPane::whatWasChangedByASelectionAloneIsChangedAgain()
{
    const Document &document = plant();
    const TreeView &view = *form().treeView;
    const auto click = [&](int child) {
        const QModelIndex index = document.tree.indexOf(document.tree.root()->child(child));
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
    };
    QVERIFY(!document.m_bDataChanged());
    click(0);
    QVERIFY(document.m_bDataChanged());
    press(Qt::Key_T, Qt::AltModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(document.m_bDataChanged());
    // What was done where the saved entry is selected leads back to what was saved.
    click(1);
    press(Qt::Key_T, Qt::AltModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!document.m_bDataChanged());
}

void tst_HistoryPane::undoGoesAcrossEntries()
{
    Document &document = plant();
    press(Qt::Key_T, Qt::AltModifier);
    press(Qt::Key_Delete, Qt::AltModifier);
    press(Qt::Key_I, Qt::AltModifier);
    press(Qt::Key_Escape);
    QVERIFY(document.m_bDataChanged());
    modNodes::NodeSelectFull(document, document.tree.root());
    for (int times = 0; times < 10; ++times)
        press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline(), u"Root +| A| B <| C"_s);
    for (int times = 0; times < 10; ++times)
        press(Qt::Key_Y, Qt::ControlModifier);
    QVERIFY(!outline().contains(u"B"_s));
    QVERIFY(outline().contains(u"New Entry"_s));
}

void tst_HistoryPane::whatWasDraggedGoesBack()
{
    plant();
    TreeView &view = *form().treeView;
    const Entry *root = DocumentActive()->tree.root();
    const auto middleOf = [&view](const Entry *entry) {
        return view.visualRect(DocumentActive()->tree.indexOf(entry)).center();
    };
    const QPoint from = middleOf(root->child(1));
    const QPoint to = middleOf(root->child(2));
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
    for (int step = 1; step <= 4; ++step) {
        const QPoint place = from + (to - from) * step / 4;
        QMouseEvent move(QEvent::MouseMove, place, view.viewport()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                         {});
        QCoreApplication::sendEvent(view.viewport(), &move);
    }
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, to);
    const QString dragged = outline();
    QVERIFY2(dragged != u"Root +| A| B <| C"_s, qPrintable(dragged));
    QTRY_VERIFY(m_main->enabled("mnuToolsUndo"));
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline(), u"Root +| A| B <| C"_s);
    QCOMPARE(status(), u"Undid move of \"B\""_s);
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(outline(), dragged);
}

void tst_HistoryPane::replacingInAllLabelsIsOneStep()
{
    plant();
    g_sSearchFind = u"o"_s;
    g_sSearchReplace = u"0"_s;
    g_sSearchScope = u"2"_s;
    modSearch::SearchReplaceAll();
    QVERIFY(outline().startsWith(u"R00t"_s));
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline(), u"Root +| A| B <| C"_s);
    QVERIFY(!m_main->enabled("mnuToolsUndo"));
}

void tst_HistoryPane::eachDocumentHasItsOwnSteps()
{
    Document &first = plant();
    press(Qt::Key_Up, Qt::AltModifier);
    plant();
    QVERIFY(!m_main->enabled("mnuToolsUndo"));
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(dumpOutline(first.tree).join(u'|'), u"Root +| B <| A| C"_s);
    press(Qt::Key_F6, Qt::ControlModifier);
    QCOMPARE(DocumentActive(), &first);
    QVERIFY(m_main->enabled("mnuToolsUndo"));
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline(), u"Root +| A| B <| C"_s);
}

void tst_HistoryPane::aKeyInALabelBeingTypedIsTheLabels()
{
    plant();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_F2);
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QTest::keyClicks(editor, u"typed"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(editor->text() != u"typed"_s);
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget(), editor);
    press(Qt::Key_Escape);
    QCOMPARE(outline(), u"Root +| B <| A| C"_s);
}

void tst_HistoryPane::theMenuKeepsALabelBeingTypedAndTakesItBack()
{
    plant();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_F2);
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    QTest::keyClicks(QApplication::focusWidget(), u"typed"_s);
    m_main->choose("mnuToolsUndo");
    QCOMPARE(outline(), u"Root +| B <| A| C"_s);
    m_main->choose("mnuToolsRedo");
    QCOMPARE(outline(), u"Root +| typed <| A| C"_s);
}

void tst_HistoryPane::theItemsSayWhatTheyDoWithALabelOpen()
{
    plant();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_T, Qt::AltModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    const auto undo = [this] { return m_main->action(u"mnuToolsUndo"_s)->text(); };
    typeALabel(u"typed"_s);
    QCOMPARE(undo(), u"&Undo renaming of \"B\""_s);
    QVERIFY(!m_main->enabled("mnuToolsRedo"));
    // What is as it was is no renaming.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), u"B"_s);
    QCOMPARE(undo(), u"&Undo move of \"B\""_s);
    QVERIFY(m_main->enabled("mnuToolsRedo"));
    QTest::keyClicks(QApplication::focusWidget(), u"1"_s);
    QCOMPARE(undo(), u"&Undo renaming of \"B\""_s);
    press(Qt::Key_Escape);
    QTRY_COMPARE(undo(), u"&Undo move of \"B\""_s);
    typeALabel(u"typed"_s);
    m_main->choose("mnuToolsUndo");
    QCOMPARE(outline(), u"Root +| B <| A| C"_s);
    QCOMPARE(status(), u"Undid renaming of \"B\""_s);
    QCOMPARE(undo(), u"&Undo move of \"B\""_s);
}

void tst_HistoryPane::aLabelBeingTypedIsUndoneInADocumentWithoutSteps()
{
    const Document &document = plant();
    QVERIFY(!m_main->enabled("mnuToolsUndo"));
    typeALabel(u"typed"_s);
    QVERIFY(m_main->enabled("mnuToolsUndo"));
    m_main->choose("mnuToolsUndo");
    QCOMPARE(outline(), u"Root +| A| B <| C"_s);
    QCOMPARE(document.history.redoName(), u"renaming of \"B\""_s);
}

void tst_HistoryPane::undoneToWhatWasSavedNothingIsAskedAtTheEnd()
{
    Document &document = plant();
    QCOMPARE(modDoc::DocSave(m_main->app.folder.filePath(u"a.qly"_s)), SaveOutcome::Saved);
    press(Qt::Key_Up, Qt::AltModifier);
    QVERIFY(document.m_bDataChanged());
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!document.m_bDataChanged());
    m_main->choose("mnuFileClose");
    QVERIFY(m_main->main.windows().documents().empty());
    QCOMPARE(m_main->app.core.dialogs.questions, QStringList());
}

void tst_HistoryPane::thePaneListsTheStepsAndGreysThoseUndone()
{
    plant();
    m_main->choose("mnuToolsHistory");
    QTRY_VERIFY(list().hasFocus());
    QCOMPARE(rows(), QStringList());
    form().treeView->setFocus();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 3);
    QCOMPARE(rows().at(0), u"Before all of this"_s);
    QCOMPARE(rows().at(1), u"Move of \"B\""_s);
    QCOMPARE(list().currentIndex().row(), 2);
    QVERIFY(list().currentIndex().data().toString().endsWith(rows().at(2)));
    // With the time before it.
    QVERIFY(list().currentIndex().data().toString().size() > rows().at(2).size());
    press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(list().currentIndex().row(), 1);
    QCOMPARE(rows().size(), 3);
    const auto isGrey = [this](int row) {
        const QImage image = list().viewport()->grab(list().visualRect(list().model()->index(row, 0))).toImage();
        const QColor text = list().palette().color(QPalette::Active, QPalette::Text);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == text)
                    return false;
            }
        }
        return true;
    };
    QVERIFY(isGrey(2));
    QVERIFY(!isGrey(0));
}

void tst_HistoryPane::aClickGoesToAStep()
{
    plant();
    m_main->choose("mnuToolsHistory");
    form().treeView->setFocus();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_End, Qt::AltModifier);
    press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 4);
    const auto click = [this](int row) {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                          list().visualRect(list().model()->index(row, 0)).center());
    };
    click(1);
    QCOMPARE(outline(), u"Root +| B <| A| C"_s);
    QCOMPARE(status(), u"Undid 2 steps"_s);
    QTRY_COMPARE(list().currentIndex().row(), 1);
    click(3);
    QCOMPARE(outline(), u"Root +| A| C| B *<"_s);
    QCOMPARE(status(), u"Redid 2 steps"_s);
    click(0);
    QCOMPARE(outline(), u"Root +| A| B <| C"_s);
}

// The label that is open is taken over by the press, which makes a step of it while the mouse is still down.
void tst_HistoryPane::aClickThatEndsALabelGoesToTheRowThatWasPressed()
{
    const Document &document = plant();
    m_main->choose("mnuToolsHistory");
    form().treeView->setFocus();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_End, Qt::AltModifier);
    press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 4);
    typeALabel(u"typed"_s);
    const QPoint place = list().visualRect(list().model()->index(1, 0)).center();
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, place);
    QTRY_COMPARE(rows().size(), 5);
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(document.history.position(), 1);
    QCOMPARE(outline(), u"Root +| B <| A| C"_s);
    QTRY_COMPARE(list().currentIndex().row(), 1);
    QCOMPARE(document.history.stepCount(), 4);
    // So does one that is too quick for anything to happen meanwhile.
    typeALabel(u"again"_s);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualRect(list().model()->index(0, 0)).center());
    QCOMPARE(outline(), u"Root +| A| B <| C"_s);
    QCOMPARE(document.history.redoName(), u"move of \"B\""_s);
}

void tst_HistoryPane::aClickOnWhatALabelTakesAwayGoesNowhere()
{
    const Document &document = plant();
    m_main->choose("mnuToolsHistory");
    form().treeView->setFocus();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_End, Qt::AltModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(rows().size(), 3);
    typeALabel(u"typed"_s);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualRect(list().model()->index(2, 0)).center());
    QCOMPARE(outline(), u"Root +| typed <| A| C"_s);
    QCOMPARE(document.history.position(), 2);
    QTRY_COMPARE(list().currentIndex().row(), 2);
}

void tst_HistoryPane::rowsThatStayAreTheSameRows()
{
    plant();
    m_main->choose("mnuToolsHistory");
    form().treeView->setFocus();
    QAbstractItemModel &model = *list().model();
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 3);
    const QPersistentModelIndex move = model.index(1, 0);
    const QPersistentModelIndex tag = model.index(2, 0);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_End, Qt::AltModifier);
    QTRY_VERIFY(!tag.isValid());
    QCOMPARE(rows().size(), 3);
    QCOMPARE(move.row(), 1);
    QCOMPARE(resets.count(), 0);
    // Nothing is left of the list with the last step.
    DocumentActive()->history.startAnew();
    QTRY_COMPARE(rows().size(), 0);
    press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 2);
    QCOMPARE(resets.count(), 0);
}

void tst_HistoryPane::rowsOfForgottenStepsGo()
{
    Document &document = plant();
    m_main->choose("mnuToolsHistory");
    form().treeView->setFocus();
    QAbstractItemModel &model = *list().model();
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (int times = 0; times < 4; ++times)
        press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 5);
    const QPersistentModelIndex last = model.index(4, 0);
    // The oldest go at one end while new ones come at the other.
    document.history.setMaximumWeight(document.history.weight());
    press(Qt::Key_End, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), document.history.stepCount() + 1);
    QVERIFY(rows().size() <= 5);
    QCOMPARE(last.row(), rows().size() - 2);
    QCOMPARE(rows().last(), u"Move of \"B\""_s);
}

void tst_HistoryPane::whatWasSavedIsMarked()
{
    plant();
    m_main->choose("mnuToolsHistory");
    form().treeView->setFocus();
    press(Qt::Key_Up, Qt::AltModifier);
    m_main->app.core.dialogs.saveNames = {m_main->app.folder.filePath(u"a.qly"_s)};
    m_main->choose("mnuFileSave");
    QVERIFY(!DocumentActive()->m_bDataChanged());
    press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 3);
    const auto heard = [this](int row) {
        return list().model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    };
    QCOMPARE(heard(1), u"Move of \"B\", done, saved"_s);
    QCOMPARE(heard(2), u"Tagging of \"B\", the document is here"_s);
    // At the right end of its row, where no other row has anything.
    const auto inkAtTheRight = [this](int row) {
        QRect right = list().visualRect(list().model()->index(row, 0));
        right.setLeft(right.right() - list().fontMetrics().horizontalAdvance(u"Saved"_s));
        const QImage image = list().viewport()->grab(right).toImage();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) != image.pixelColor(0, 0))
                    return true;
            }
        }
        return false;
    };
    list().setCurrentIndex({});
    QVERIFY(inkAtTheRight(1));
    QVERIFY(!inkAtTheRight(0) && !inkAtTheRight(2));
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(heard(1), u"Move of \"B\", undone, saved"_s);
    press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 2);
    QVERIFY(!heard(0).contains(u"saved"_s) && !heard(1).contains(u"saved"_s));
}

void tst_HistoryPane::closingThePaneGivesTheKeyboardBackToThePaneThatHadIt()
{
    plant();
    m_main->choose("mnuToolsHistory");
    form().textBox->setFocus();
    press(Qt::Key_Up, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 2);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualRect(list().model()->index(0, 0)).center());
    QVERIFY(list().hasFocus());
    auto *dock = m_main->main.findChild<QDockWidget *>(u"dock_mnuToolsHistory"_s);
    auto *close = dock->findChild<QAbstractButton *>(u"qt_dockwidget_closebutton"_s);
    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(dock->isHidden());
    QCOMPARE(QApplication::focusWidget(), form().textBox);
}

void tst_HistoryPane::thePaneIsUsedByKeysAlone()
{
    plant();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_T, Qt::AltModifier);
    m_main->choose("mnuToolsHistory");
    QTRY_VERIFY(list().hasFocus());
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    QCOMPARE(outline(), u"Root +| B *<| A| C"_s);
    press(Qt::Key_Return);
    QCOMPARE(outline(), u"Root +| A| B <| C"_s);
    QVERIFY(list().hasFocus());
    // The keys of undo and redo work here too.
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(outline(), u"Root +| B <| A| C"_s);
    press(Qt::Key_Escape);
    QVERIFY(form().treeView->hasFocus());
    press(Qt::Key_F6);
    QVERIFY(list().hasFocus());
    press(Qt::Key_F6);
    QVERIFY(form().treeView->hasFocus());
    press(Qt::Key_Tab);
    press(Qt::Key_F6);
    press(Qt::Key_Escape);
    QVERIFY(form().textBox->hasFocus());
}

void tst_HistoryPane::thePaneFollowsTheActiveDocument()
{
    plant();
    m_main->choose("mnuToolsHistory");
    form().treeView->setFocus();
    press(Qt::Key_Up, Qt::AltModifier);
    QTRY_COMPARE(rows().size(), 2);
    plant();
    QTRY_COMPARE(rows().size(), 0);
    press(Qt::Key_F6, Qt::ControlModifier);
    QTRY_COMPARE(rows().size(), 2);
    DocumentActive()->giveUpChanges();
    m_main->choose("mnuFileClose");
    QTRY_COMPARE(rows().size(), 0);
    DocumentActive()->giveUpChanges();
    m_main->choose("mnuFileClose");
    QVERIFY(m_main->main.windows().documents().empty());
    QCOMPARE(rows().size(), 0);
}

void tst_HistoryPane::assistiveTechnologyHearsWhereTheDocumentIs()
{
    plant();
    m_main->choose("mnuToolsHistory");
    QCOMPARE(list().accessibleName(), u"Steps of the document"_s);
    form().treeView->setFocus();
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_T, Qt::AltModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(list().currentIndex().row(), 1);
    const auto heard = [this](int row) {
        return list().model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    };
    QVERIFY(heard(0).endsWith(u", done, saved"_s));
    QCOMPARE(heard(1), u"Move of \"B\", the document is here"_s);
    QVERIFY(heard(2).endsWith(u", undone"_s));
}

QTEST_MAIN(tst_HistoryPane)
#include "tst_HistoryPane.moc"
