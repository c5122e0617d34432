// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/WindowFixture.h"

#include "support/ErrorRecorder.h"
#include "support/OutlineText.h"

#include "model/modDoc.h"
#include "outline/EntryDrag.h"
#include "window/OutlineDragger.h"

#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class tst_OutlineDragger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aClickWithoutAMoveSelectsAndStartsNoDrag();
    void theThresholdItselfStartsNoDrag();
    void aDropOnAnotherEntryLandsBehindIt();
    void aDropOnTheFollowingSiblingSwapsTheTwo();
    void aDropOnTheRootComesFirst();
    void aDropOnAnOwnDescendantDoesNothing();
    void withCtrlTheSourceStays();
    void aDropOnItselfToTheRightIndents();
    void aDropOnItselfToTheLeftUnindents();
    void escapeEndsTheDrag();
    void aDropBesideEveryEntryDoesNothing();
    void theRightButtonAsksAndOffersOnlyAllowedPlaces();
    void theRightButtonsCancelLeavesTheTree();
    void theRightButtonOnItselfAsksForIndentOrUnindent();
    void aRightClickShowsTheOutlineMenu();
    void theOutlineScrollsNearItsEdge();
    void aClosedEntryUnderARestingPointerOpens();
    void missingIconsAreReported();

private:
    void plant(const QStringList &outline);
    QPoint middleOf(const QString &label);
    void drag(const QString &from, const QPoint &to, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers modifiers = {});
    void choose(const QString &item, QStringList *enabled = nullptr, QString *byDefault = nullptr);

    QStringList dump() { return dumpOutline(DocumentActive()->tree); }

    QWidget *viewport() { return m_fixture->form().treeView->viewport(); }

    std::unique_ptr<WindowFixture> m_fixture;
    std::unique_ptr<ErrorRecorder> m_errors;
};

void tst_OutlineDragger::init()
{
    m_errors = std::make_unique<ErrorRecorder>();
    m_fixture = std::make_unique<WindowFixture>();
    QVERIFY(QTest::qWaitForWindowActive(&m_fixture->main));
    g_options.AutoSplit = false;
    plant({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s, u" C"_s});
}

void tst_OutlineDragger::cleanup()
{
    m_fixture.reset();
    m_errors.reset();
}

void tst_OutlineDragger::plant(const QStringList &outline)
{
    modDoc::DocNew();
    plantOutline(DocumentActive()->tree, outline);
    modNodes::NodeSelect(*DocumentActive(), DocumentActive()->tree.root());
}

QPoint tst_OutlineDragger::middleOf(const QString &label)
{
    const EntryTree &tree = DocumentActive()->tree;
    const QRect row = m_fixture->form().treeView->visualRect(tree.indexOf(entryLabelled(tree, label)));
    return {row.left() + 30, row.center().y()};
}

void tst_OutlineDragger::drag(const QString &from, const QPoint &to, Qt::MouseButton button,
                              Qt::KeyboardModifiers modifiers)
{
    const QPoint start = middleOf(from);
    QTest::mousePress(viewport(), button, {}, start);
    QMouseEvent move(QEvent::MouseMove, to, viewport()->mapToGlobal(to), Qt::NoButton, button, modifiers);
    QCoreApplication::sendEvent(viewport(), &move);
    QTest::mouseRelease(viewport(), button, modifiers, to);
}

// Answers the next pop-up menu, and tells what it offered.
void tst_OutlineDragger::choose(const QString &item, QStringList *enabled, QString *byDefault)
{
    QTimer::singleShot(0, this, [=] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QAction *chosen = nullptr;
        for (QAction *action : menu->actions()) {
            if (enabled && action->isEnabled() && !action->isSeparator())
                enabled->append(action->objectName());
            if (action->objectName() == item)
                chosen = action;
        }
        if (byDefault)
            *byDefault = menu->defaultAction()->objectName();
        QVERIFY(chosen);
        menu->setActiveAction(chosen);
        QTest::keyClick(menu, Qt::Key_Return);
    });
}

void tst_OutlineDragger::aClickWithoutAMoveSelectsAndStartsNoDrag()
{
    const QStringList before = dump();
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    QCOMPARE(DocumentActive()->tree.selected()->label(), u"B"_s);
    QVERIFY(!dragState().entry.entry());
    QCOMPARE(before.size(), dump().size());
}

void tst_OutlineDragger::theThresholdItselfStartsNoDrag()
{
    const int limit = m_fixture->form().toPixels(OutlineDragger::threshold);
    const QStringList before = {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B <"_s, u" C"_s};
    const QPoint start = middleOf(u"B"_s);
    // At 96 dots per inch the threshold lies between 6 and 7 pixels.
    drag(u"B"_s, start + QPoint(limit - 1, 0));
    QCOMPARE(dump(), before);
    drag(u"B"_s, start + QPoint(limit + 1, 0));
    QVERIFY(dump() != before);
}

void tst_OutlineDragger::aDropOnAnotherEntryLandsBehindIt()
{
    drag(u"A"_s, middleOf(u"C"_s));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" B"_s, u" C"_s, u" A +<"_s, u"  A1"_s}));
    QVERIFY(DocumentActive()->m_bDataChanged);
}

void tst_OutlineDragger::aDropOnTheFollowingSiblingSwapsTheTwo()
{
    drag(u"B"_s, middleOf(u"C"_s));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u" C"_s, u" B <"_s}));
}

void tst_OutlineDragger::aDropOnTheRootComesFirst()
{
    drag(u"C"_s, middleOf(u"Root"_s));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" C <"_s, u" A +"_s, u"  A1"_s, u" B"_s}));
}

void tst_OutlineDragger::aDropOnAnOwnDescendantDoesNothing()
{
    drag(u"A"_s, middleOf(u"A1"_s));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +<"_s, u"  A1"_s, u" B"_s, u" C"_s}));
}

void tst_OutlineDragger::withCtrlTheSourceStays()
{
    drag(u"B"_s, middleOf(u"C"_s), Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s, u" C"_s, u" B <"_s}));
}

void tst_OutlineDragger::aDropOnItselfToTheRightIndents()
{
    drag(u"B"_s, middleOf(u"B"_s) + QPoint(10, 0));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  B <"_s, u" C"_s}));
}

void tst_OutlineDragger::aDropOnItselfToTheLeftUnindents()
{
    drag(u"A1"_s, middleOf(u"A1"_s) - QPoint(10, 0));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u" A1 <"_s, u" B"_s, u" C"_s}));
}

void tst_OutlineDragger::escapeEndsTheDrag()
{
    const QPoint to = middleOf(u"C"_s);
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"A"_s));
    QMouseEvent move(QEvent::MouseMove, to, viewport()->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport(), &move);
    QVERIFY(dragState().dragging);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Escape);
    QVERIFY(!dragState().dragging);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, to);
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +<"_s, u"  A1"_s, u" B"_s, u" C"_s}));
}

void tst_OutlineDragger::aDropBesideEveryEntryDoesNothing()
{
    drag(u"A"_s, QPoint(20, viewport()->height() - 3));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +<"_s, u"  A1"_s, u" B"_s, u" C"_s}));
}

void tst_OutlineDragger::theRightButtonAsksAndOffersOnlyAllowedPlaces()
{
    QStringList offered;
    QString byDefault;
    choose(u"mnuConfirmCopyChild"_s, &offered, &byDefault);
    drag(u"B"_s, middleOf(u"C"_s), Qt::RightButton);
    QCOMPARE(offered, QStringList({u"mnuConfirmCopyNext"_s, u"mnuConfirmCopyChild"_s, u"mnuConfirmMoveNext"_s,
                                   u"mnuConfirmMoveChild"_s, u"mnuConfirmCancel"_s}));
    QCOMPARE(byDefault, u"mnuConfirmMoveNext"_s);
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s, u" C +"_s, u"  B <"_s}));
}

void tst_OutlineDragger::theRightButtonsCancelLeavesTheTree()
{
    choose(u"mnuConfirmCancel"_s);
    drag(u"B"_s, middleOf(u"C"_s), Qt::RightButton);
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B <"_s, u" C"_s}));
    QVERIFY(!dragState().entry.entry());
}

void tst_OutlineDragger::theRightButtonOnItselfAsksForIndentOrUnindent()
{
    choose(u"mnuConfirmIndentRight"_s);
    drag(u"B"_s, middleOf(u"B"_s) + QPoint(10, 0), Qt::RightButton);
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  B <"_s, u" C"_s}));
}

void tst_OutlineDragger::aRightClickShowsTheOutlineMenu()
{
    QTest::mouseClick(viewport(), Qt::RightButton, {}, middleOf(u"B"_s));
    QCOMPARE(m_fixture->fakes.commands.poppedUp, QStringList{u"mnuoutline"_s});
    QCOMPARE(DocumentActive()->tree.selected()->label(), u"B"_s);
}

void tst_OutlineDragger::theOutlineScrollsNearItsEdge()
{
    QStringList outline = {u"Root +"_s};
    for (int i = 0; i < 200; ++i)
        outline.append(u" Entry %1"_s.arg(i));
    plant(outline);
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"Entry 1"_s));
    const QPoint edge(20, viewport()->height() - 4);
    QMouseEvent move(QEvent::MouseMove, edge, viewport()->mapToGlobal(edge), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport(), &move);
    QTRY_VERIFY(m_fixture->form().treeView->verticalScrollBar()->value() > 3);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Escape);
}

void tst_OutlineDragger::aClosedEntryUnderARestingPointerOpens()
{
    plant({u"Root +"_s, u" A"_s, u"  A1"_s, u" B"_s});
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    const QPoint over = middleOf(u"A"_s);
    QMouseEvent move(QEvent::MouseMove, over, viewport()->mapToGlobal(over), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport(), &move);
    const EntryTree &tree = DocumentActive()->tree;
    QTRY_VERIFY(entryLabelled(tree, u"A"_s)->expanded());
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Escape);
}

void tst_OutlineDragger::missingIconsAreReported()
{
    m_errors->clear();
    drag(u"A"_s, middleOf(u"C"_s));
    QCOMPARE(m_errors->summary().value(0), u"53 modMain ChangeDragIcon"_s);
}

QTEST_MAIN(tst_OutlineDragger)
#include "tst_OutlineDragger.moc"
