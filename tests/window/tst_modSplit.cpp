// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RawOutline.h"
#include "window/WindowFixture.h"

#include "support/OutlineText.h"

#include "document/modDoc.h"
#include "outline/modOutline.h"
#include "window/SplitterBar.h"
#include "window/modSplit.h"
#include "window/modView.h"

#include "platform/OutlineWidth.h"

#include <QLineEdit>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_modSplit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aNewWindowGivesTheOutlineOneThird();
    void positionZeroIsTheMinimumPaneWidth();
    void theTextPaneKeepsItsMinimumWidth();
    void aNarrowWindowLetsTheUpperBoundWin();
    void draggingTheBarMovesTheSplit();
    void theGhostBarFollowsThePointerWithinTheBounds();
    void anotherButtonDoesNotGrabTheBar();
    void aDoubleClickOnTheBarFitsTheSplit();
    void escapeCancelsAMoveByKeyboard();
    void arrowKeysStepAndAnyOtherKeyAccepts();
    void theKeyThatEndsAMoveDoesWhatItAlwaysDoes();
    void losingTheFocusAcceptsAMove();
    void theGhostBarGoesWithTheSplit();
    void theGhostBarIsAsHighAsTheWindow();
    void resizingKeepsTheOutlinesWidth();
    void aWiderWindowKeepsTheSplitThatWasSet();
    void fittingShowsTheWidestLabelWhole_data();
    void fittingShowsTheWidestLabelWhole();
    void fittingALongListGivesTheNarrowestWidth_data();
    void fittingALongListGivesTheNarrowestWidth();
    void fittingCountsWholePixels();
    void fittingShortLabelsGivesTheMinimum();
    void aHiddenLabelDoesNotCount();
    void aMoveFitsTheSplit();
    void maximiseLeftThenEqualise();
    void theOptionDecidesWhetherSelectingFits();

private:
    frmDocument &form() { return m_fixture->form(); }

    void makeWidth(float twips);
    bool scrollsSideways(float twips);

    std::unique_ptr<WindowFixture> m_fixture;
};

void tst_modSplit::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    QVERIFY(QTest::qWaitForWindowActive(&m_fixture->main));
    modDoc::DocNew();
}

void tst_modSplit::cleanup()
{
    m_fixture.reset();
}

// Gives the document window a width, its frame included, in twips.
void tst_modSplit::makeWidth(float twips)
{
    const int frame = form().toPixels(form().Width() - form().toTwips(form().width()));
    QWidget *subWindow = form().parentWidget();
    const int decoration = subWindow->width() - form().width();
    subWindow->resize(form().toPixels(twips) - frame + decoration, 400);
    QTRY_VERIFY(qAbs(form().Width() - twips) < form().toTwips(1));
}

void tst_modSplit::aNewWindowGivesTheOutlineOneThird()
{
    const float both = form().Width() - modSplit::rightHandAllowance;
    QVERIFY(qAbs(form().m_fTreeWidth - both / 3) < form().toTwips(2));
}

void tst_modSplit::positionZeroIsTheMinimumPaneWidth()
{
    modSplit::SplitSizeControls(form(), 0);
    QCOMPARE(form().m_fTreeWidth, 1500.F);
    QCOMPARE(form().treeView->width(), form().toPixels(1500));
    QCOMPARE(form().textBox->x(), form().toPixels(1540));
}

void tst_modSplit::theTextPaneKeepsItsMinimumWidth()
{
    makeWidth(10000);
    modSplit::SplitSizeControls(form(), 9000);
    QCOMPARE(form().m_fTreeWidth, form().Width() - 1500);
    QVERIFY(qAbs(form().m_fTreeWidth - 8500) < form().toTwips(1));
    // The pane ends where the window does.
    QVERIFY(qAbs(form().textBox->geometry().right() + 1 - form().width()) <= 1);
}

void tst_modSplit::aNarrowWindowLetsTheUpperBoundWin()
{
    makeWidth(2500);
    float position = 1500;
    modSplit::SplitCheckPosition(form(), position);
    QVERIFY(qAbs(position - 1000) < form().toTwips(1));
}

void tst_modSplit::draggingTheBarMovesTheSplit()
{
    makeWidth(10000);
    modSplit::SplitSizeControls(form(), 3000);
    SplitterBar *bar = form().imgSplitter;
    const QPoint grip(1, 50);
    QTest::mousePress(bar, Qt::LeftButton, {}, grip);
    QVERIFY(form().m_bMovingSplit);
    QVERIFY(form().picSplitter->isVisible());
    QTest::mouseMove(bar, grip + QPoint(100, 0));
    QCOMPARE(form().treeView->width(), form().toPixels(3000));
    QCOMPARE(form().picSplitter->x(), form().toPixels(3000) + 100);
    QTest::mouseRelease(bar, Qt::LeftButton, {}, grip + QPoint(100, 0));
    QVERIFY(!form().m_bMovingSplit);
    QVERIFY(!form().picSplitter->isVisible());
    QCOMPARE(form().treeView->width(), form().toPixels(3000) + 100);
}

void tst_modSplit::theGhostBarFollowsThePointerWithinTheBounds()
{
    makeWidth(10000);
    modSplit::SplitSizeControls(form(), 3000);
    SplitterBar *bar = form().imgSplitter;
    const QPoint grip(1, 50);
    QTest::mousePress(bar, Qt::LeftButton, {}, grip);
    const int grabbed = form().picSplitter->x();
    for (const int way : {1, 40, 90, -30, -60, 0}) {
        QTest::mouseMove(bar, grip + QPoint(way, 7));
        QCOMPARE(form().picSplitter->x(), grabbed + way);
        QCOMPARE(form().treeView->width(), form().toPixels(3000));
    }
    QTest::mouseMove(bar, grip + QPoint(-5000, 0));
    QCOMPARE(form().picSplitter->x(), form().toPixels(1500));
    QTest::mouseMove(bar, grip + QPoint(5000, 0));
    QCOMPARE(form().picSplitter->x(), form().toPixels(8500));
    QTest::mouseMove(bar, grip);
    QTest::mouseRelease(bar, Qt::LeftButton, {}, grip);
    QCOMPARE(form().m_fTreeWidth, 3000.F);
}

void tst_modSplit::anotherButtonDoesNotGrabTheBar()
{
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        QTest::mousePress(form().imgSplitter, button, {}, QPoint(1, 50));
        QVERIFY(!form().m_bMovingSplit);
        QTest::mouseRelease(form().imgSplitter, button, {}, QPoint(1, 50));
    }
}

void tst_modSplit::aDoubleClickOnTheBarFitsTheSplit()
{
    makeWidth(10000);
    modView::ViewFitSplit();
    const float fitted = form().m_fTreeWidth;
    modSplit::SplitSizeControls(form(), 6000);
    QCOMPARE(form().m_fTreeWidth, 6000.F);
    const QPoint grip(1, 50);
    QTest::mouseClick(form().imgSplitter, Qt::LeftButton, {}, grip);
    QTest::mouseDClick(form().imgSplitter, Qt::LeftButton, {}, grip);
    QCOMPARE(form().m_fTreeWidth, fitted);
    QVERIFY(!form().m_bMovingSplit);
    QVERIFY(!form().picSplitter->isVisible());
}

void tst_modSplit::escapeCancelsAMoveByKeyboard()
{
    makeWidth(10000);
    modSplit::SplitSizeControls(form(), 3000);
    form().textBox->setFocus();
    const QRect before = form().treeView->geometry();
    modSplit::SplitMoveStart(form());
    QTest::keyClick(form().picSplitter, Qt::Key_Right);
    QTest::keyClick(form().picSplitter, Qt::Key_Escape);
    QVERIFY(!form().m_bMovingSplit);
    QCOMPARE(form().m_fTreeWidth, 3000.F);
    QCOMPARE(form().treeView->geometry(), before);
    QVERIFY(form().textBox->hasFocus());
}

void tst_modSplit::arrowKeysStepAndAnyOtherKeyAccepts()
{
    makeWidth(10000);
    modSplit::SplitSizeControls(form(), 3000);
    modSplit::SplitMoveStart(form());
    QTest::keyClick(form().picSplitter, Qt::Key_Right);
    QTest::keyClick(form().picSplitter, Qt::Key_Right);
    QTest::keyClick(form().picSplitter, Qt::Key_Left);
    QCOMPARE(form().m_fTreeWidth, 3000.F);
    QTest::keyClick(form().picSplitter, Qt::Key_Return);
    QCOMPARE(form().m_fTreeWidth, 3100.F);
    QVERIFY(!form().m_bMovingSplit);
}

void tst_modSplit::theKeyThatEndsAMoveDoesWhatItAlwaysDoes()
{
    makeWidth(10000);
    plantOutline(rawOutline(form().document()).tree, {u"Root <"_s});
    modSplit::SplitSizeControls(form(), 3000);
    modView::ViewMoveSplit();
    QTest::keyClick(form().picSplitter, Qt::Key_Right);
    QTest::keyClick(form().picSplitter, Qt::Key_F2);
    QVERIFY(!form().m_bMovingSplit);
    QCOMPARE(form().m_fTreeWidth, 3100.F);
    auto *editor = form().treeView->findChild<QLineEdit *>();
    QVERIFY(editor && editor->isVisible());
}

void tst_modSplit::aWiderWindowKeepsTheSplitThatWasSet()
{
    makeWidth(8000);
    modView::ViewMaximiseLeft();
    const float width = form().m_fTreeWidth;
    makeWidth(10000);
    QCOMPARE(form().m_fTreeWidth, width);
}

void tst_modSplit::losingTheFocusAcceptsAMove()
{
    makeWidth(10000);
    modSplit::SplitSizeControls(form(), 3000);
    modSplit::SplitMoveStart(form());
    modSplit::SplitMove(form(), 4000);
    form().treeView->setFocus();
    QCOMPARE(form().m_fTreeWidth, 4000.F);
    QVERIFY(!form().picSplitter->isVisible());
}

void tst_modSplit::theGhostBarGoesWithTheSplit()
{
    makeWidth(10000);
    modView::ViewMoveSplit();
    modView::ViewMaximiseLeft();
    QCOMPARE(form().picSplitter->x(), form().treeView->width());
    QTest::keyClick(form().picSplitter, Qt::Key_Return);
    QCOMPARE(form().m_fTreeWidth, 8500.F);
}

void tst_modSplit::theGhostBarIsAsHighAsTheWindow()
{
    makeWidth(10000);
    modView::ViewMoveSplit();
    const int less = form().imgSplitter->height() - form().picSplitter->height();
    const int before = form().height();
    form().parentWidget()->resize(form().parentWidget()->width(), form().parentWidget()->height() + 100);
    QTRY_COMPARE(form().height(), before + 100);
    QCOMPARE(form().picSplitter->height(), form().imgSplitter->height() - less);
}

void tst_modSplit::resizingKeepsTheOutlinesWidth()
{
    makeWidth(10000);
    modSplit::SplitSizeControls(form(), 3000);
    makeWidth(8000);
    QCOMPARE(form().m_fTreeWidth, 3000.F);
    makeWidth(4000);
    QVERIFY(form().m_fTreeWidth < 3000);
    makeWidth(9000);
    QCOMPARE(form().m_fTreeWidth, 3000.F);
    QVERIFY(qAbs(form().textBox->geometry().right() + 1 - form().width()) <= 1);
}

void tst_modSplit::fittingShowsTheWidestLabelWhole_data()
{
    QTest::addColumn<QString>("label");
    QTest::newRow("Latin") << u"An entry whose label is a good deal wider than the others"_s;
    QTest::newRow("capitals") << u"WWWWWWWWWWWWWWWWWWWWWWWW"_s;
    QTest::newRow("Chinese")
        << u"\u8fd9\u662f\u4e00\u4e2a\u6bd4\u8f83\u957f\u7684\u6761\u76ee\u6807\u9898\u6587\u5b57"_s;
    QTest::newRow("Arabic")
        << u"\u0647\u0630\u0627 \u0639\u0646\u0648\u0627\u0646 \u0637\u0648\u064a\u0644 \u0644\u0644\u062a\u062c\u0631\u0628\u0629"_s;
}

void tst_modSplit::fittingShowsTheWidestLabelWhole()
{
    QFETCH(QString, label);
    makeWidth(14000);
    plantOutline(rawOutline(form().document()).tree, {u"Root +"_s, u" Short"_s, u" B +"_s, u"  "_s + label, u" C"_s});
    modSplit::SplitSizeControls(form(), 0);
    modView::ViewFitSplit();
    QApplication::processEvents();
    QVERIFY(!form().treeView->horizontalScrollBar()->isVisible());
    const int width = form().treeView->width();
    QCOMPARE(qRound(form().m_fTreeWidth - 1500) % 100, 0);
    // A hundred twips less would not do.
    form().treeView->resize(width - form().toPixels(100) - 1, form().treeView->height());
    QApplication::processEvents();
    QVERIFY(form().treeView->horizontalScrollBar()->isVisible());
}

// Whether the outline has a horizontal scroll bar when it is so wide.
bool tst_modSplit::scrollsSideways(float twips)
{
    modSplit::SplitSizeControls(form(), twips);
    // Rows out of sight count only where they come into view.
    form().treeView->resizeColumnToContents(0);
    QApplication::processEvents();
    return form().outlineWidth->widestRow() > form().treeView->viewport()->width() ||
           form().treeView->horizontalScrollBar()->isVisible();
}

void tst_modSplit::fittingALongListGivesTheNarrowestWidth_data()
{
    QTest::addColumn<QString>("alphabet");
    QTest::newRow("Latin") << u"abcdefghijklmnopqrstuvwxyz    AVTWYo.,0123456789"_s;
    QTest::newRow("accents") << u"abcdefgh\u00e4\u00f6\u00fc\u00df\u00e9 \u0159\u0161"_s;
    QTest::newRow("Greek") << u"\u03b1\u03b2\u03b3\u03b4\u03b5\u0391\u0394 \u2013"_s;
    QTest::newRow("digits") << u"0123456789"_s;
    QTest::newRow("Chinese") << u"\u8fd9\u662f\u4e00\u4e2a\u6bd4\u8f83"_s;
    QTest::newRow("Arabic") << u"\u0647\u0630\u0627 \u0639\u0646\u0648\u0627"_s;
}

void tst_modSplit::fittingALongListGivesTheNarrowestWidth()
{
    QFETCH(QString, alphabet);
    m_fixture->main.resize(2600, 700);
    makeWidth(36000);
    QStringList lines = {u"Root +"_s};
    QRandomGenerator chance(7);
    for (int i = 0; i < 100; ++i) {
        QString label = u" x"_s;
        for (int length = chance.bounded(103, 108); length > 0; --length)
            label += alphabet.at(chance.bounded(int(alphabet.size())));
        lines += label + u'x';
    }
    plantOutline(rawOutline(form().document()).tree, lines);
    int widest = 0;
    const EntryTree &tree = form().document().tree;
    for (int i = 0; i < tree.root()->childCount(); ++i) {
        const QModelIndex row = tree.indexOf(tree.root()->child(i));
        const int width = form().treeView->sizeHintForIndex(row).width();
        widest = std::max(widest, 2 * form().treeView->indentation() + width);
    }
    modView::ViewFitSplit();
    QCOMPARE(form().outlineWidth->widestRow(), widest);
    const float fitted = form().m_fTreeWidth;
    QVERIFY(!scrollsSideways(fitted));
    QVERIFY(scrollsSideways(fitted - 100));
}

void tst_modSplit::fittingCountsWholePixels()
{
    makeWidth(14000);
    plantOutline(rawOutline(form().document()).tree, {u"Root"_s});
    for (int length = 20; length < 60; ++length) {
        rawOutline(form().document()).tree.setLabel(form().document().tree.root(), QString(length, u'n'));
        modView::ViewFitSplit();
        const float fitted = form().m_fTreeWidth;
        QVERIFY(!scrollsSideways(fitted));
        QVERIFY2(scrollsSideways(fitted - 100), qPrintable(QString::number(length)));
    }
}

void tst_modSplit::fittingShortLabelsGivesTheMinimum()
{
    makeWidth(10000);
    plantOutline(rawOutline(form().document()).tree, {u"R +"_s, u" A"_s});
    modSplit::SplitSizeControls(form(), 4000);
    modView::ViewFitSplit();
    QCOMPARE(form().m_fTreeWidth, 1500.F);
    QVERIFY(form().treeView->hasFocus());
}

void tst_modSplit::aHiddenLabelDoesNotCount()
{
    makeWidth(10000);
    plantOutline(rawOutline(form().document()).tree,
                 {u"R +"_s, u" A"_s, u"  A label that is wide but hidden in a closed branch"_s});
    modView::ViewFitSplit();
    QCOMPARE(form().m_fTreeWidth, 1500.F);
    rawOutline(form().document()).tree.setExpanded(form().document().tree.root()->child(0), true);
    QVERIFY(form().m_fTreeWidth > 3000);
}

void tst_modSplit::aMoveFitsTheSplit()
{
    makeWidth(10000);
    EntryTree &tree = rawOutline(form().document()).tree;
    plantOutline(tree, {u"R +"_s, u" A +"_s, u"  A1"_s, u" A label that is wider than the outline was"_s});
    modNodes::NodeSelect(form().document(), tree.root()->child(1));
    modView::ViewFitSplit();
    const float narrow = form().m_fTreeWidth;
    modOutline::OutlineIndent();
    QVERIFY(form().m_fTreeWidth > narrow);
    modOutline::OutlineUnindent();
    QCOMPARE(form().m_fTreeWidth, narrow);
}

void tst_modSplit::maximiseLeftThenEqualise()
{
    makeWidth(10000);
    modView::ViewMaximiseLeft();
    QCOMPARE(form().m_fTreeWidth, form().Width() - modSplit::minimumPaneWidth);
    modView::ViewEqualiseLeftAndRight();
    QVERIFY(qAbs(form().treeView->width() - form().textBox->width()) <= 1);
    modView::ViewMaximiseRight();
    QCOMPARE(form().m_fTreeWidth, modSplit::minimumPaneWidth);
}

void tst_modSplit::theOptionDecidesWhetherSelectingFits()
{
    makeWidth(10000);
    Document &document = form().document();
    plantOutline(rawOutline(document).tree, {u"R +"_s, u" A"_s});
    g_options.AutoSplit = false;
    modSplit::SplitSizeControls(form(), 4000);
    modView::ViewAutoFitSplit(form());
    QCOMPARE(form().m_fTreeWidth, 4000.F);
    modView::ViewOptionsAutoFitSplit();
    QVERIFY(g_options.AutoSplit);
    QCOMPARE(form().m_fTreeWidth, 1500.F);
}

QTEST_MAIN(tst_modSplit)
#include "tst_modSplit.moc"
