// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/WindowFixture.h"

#include "model/modDoc.h"
#include "window/SplitterBar.h"
#include "window/modSplit.h"

#include <QTest>

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
    void escapeCancelsAMoveByKeyboard();
    void arrowKeysStepAndAnyOtherKeyAccepts();
    void losingTheFocusAcceptsAMove();
    void resizingKeepsTheOutlinesWidth();

private:
    frmDocument &form() { return m_fixture->form(); }

    void makeWidth(float twips);

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

void tst_modSplit::resizingKeepsTheOutlinesWidth()
{
    makeWidth(10000);
    modSplit::SplitSizeControls(form(), 3000);
    makeWidth(8000);
    QCOMPARE(form().m_fTreeWidth, 3000.F);
    QVERIFY(qAbs(form().textBox->geometry().right() + 1 - form().width()) <= 1);
}

QTEST_MAIN(tst_modSplit)
#include "tst_modSplit.moc"
