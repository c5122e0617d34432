// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RawOutline.h"
#include "window/WindowFixture.h"

#include "support/ErrorRecorder.h"
#include "support/OutlineText.h"

#include "document/modDoc.h"
#include "outline/EntryDrag.h"
#include "window/OutlineDragger.h"

#include <QApplication>
#include <QLineEdit>
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

    void aPressOnABranchSignStartsNoDrag_data() { directions(); }

    void aPressOnABranchSignStartsNoDrag();

    void aRightPressOnABranchSignIsOneOnItsRow_data() { directions(); }

    void aRightPressOnABranchSignIsOneOnItsRow();
    void theThresholdItselfStartsNoDrag_data();
    void theThresholdItselfStartsNoDrag();
    void aDropOnAnotherEntryLandsBehindIt();
    void aDropOnTheFollowingSiblingSwapsTheTwo();
    void aDropOnTheRootComesFirst();
    void aDropOnAnOwnDescendantDoesNothing();
    void withCtrlTheSourceStays();
    void aDropOnItselfToTheRightIndents();
    void aDropOnItselfToTheLeftUnindents();
    void theDirectionIsThatFromThePress_data();
    void theDirectionIsThatFromThePress();
    void aDropOnItselfIsAboutTheDraggedEntry();
    void escapeEndsTheDrag();
    void afterEscapeTheReleaseDoesNothing_data();
    void afterEscapeTheReleaseDoesNothing();
    void duringADragKeysRunNoCommands();
    void aDragEndsWithItsEntry_data();
    void aDragEndsWithItsEntry();
    void aDropOnlyWorksOnTheActiveDocument();
    void aDropBesideEveryEntryDoesNothing();
    void aDropBeyondThePaneDoesNothing();
    void theIconSaysWhatADropDoes();
    void theRightButtonAsksAndOffersOnlyAllowedPlaces();
    void theRightButtonOffersWhatCtrlSays();
    void everyItemOfTheRightButtonsMenuDoesWhatItSays_data();
    void everyItemOfTheRightButtonsMenuDoesWhatItSays();
    void theRightButtonOnADescendantAsksNothing();
    void theRightButtonsCancelLeavesTheTree();
    void nothingOpensBehindTheRightButtonsMenu();
    void theRightButtonOnItselfAsksForIndentOrUnindent_data();
    void theRightButtonOnItselfAsksForIndentOrUnindent();
    void aRightClickShowsTheOutlineMenu();
    void aReadOnlyDocumentTakesNoDrag();
    void aReadOnlyDocumentTakesNoClickToRename();
    void aReadOnlyDocumentOpensAndClosesItsBranches();
    void theOutlineScrollsNearItsEdge();
    void aClosedEntryUnderARestingPointerOpens();
    void theDraggedEntryItselfStaysClosed();
    void dragsOnOneDocumentLeaveTheOthers();
    void missingIconsAreReported();
    void everyStateOfADragHasItsIcon();

private:
    void plant(const QStringList &outline);
    void plantLongOutline();
    QPoint dragToTheEdge();
    void makeReadOnly();
    static void directions();
    QPoint middleOf(const QString &label);
    QPoint signOf(const QString &label);
    void drag(const QString &from, const QPoint &to, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers modifiers = {});
    void moveTo(const QPointF &to, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {});
    void choose(const QString &item, QStringList *enabled = nullptr, QString *byDefault = nullptr, int delay = 0);

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
    plantOutline(rawOutline(*DocumentActive()).tree, outline);
    modNodes::NodeSelect(*DocumentActive(), DocumentActive()->tree.root());
}

QPoint tst_OutlineDragger::middleOf(const QString &label)
{
    const EntryTree &tree = DocumentActive()->tree;
    const QRect row = m_fixture->form().treeView->visualRect(tree.indexOf(entryLabelled(tree, label)));
    return {row.left() + 30, row.center().y()};
}

void tst_OutlineDragger::directions()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

// The sign that opens and closes the entry's branch, before the row's image.
QPoint tst_OutlineDragger::signOf(const QString &label)
{
    const TreeView &view = *m_fixture->form().treeView;
    const EntryTree &tree = DocumentActive()->tree;
    const QRect row = view.visualRect(tree.indexOf(entryLabelled(tree, label)));
    const int half = view.indentation() / 2;
    return {view.isRightToLeft() ? row.right() + half : row.left() - half, row.center().y()};
}

void tst_OutlineDragger::drag(const QString &from, const QPoint &to, Qt::MouseButton button,
                              Qt::KeyboardModifiers modifiers)
{
    QTest::mousePress(viewport(), button, {}, middleOf(from));
    moveTo(to, button, modifiers);
    QTest::mouseRelease(viewport(), button, modifiers, to);
}

void tst_OutlineDragger::moveTo(const QPointF &to, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    QMouseEvent move(QEvent::MouseMove, to, viewport()->mapToGlobal(to), Qt::NoButton, button, modifiers);
    QCoreApplication::sendEvent(viewport(), &move);
}

// Answers the next pop-up menu, and tells what it offered.
void tst_OutlineDragger::choose(const QString &item, QStringList *enabled, QString *byDefault, int delay)
{
    QTimer::singleShot(delay, this, [=] {
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
    const QStringList clicked = {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B <"_s, u" C"_s};
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    QCOMPARE(dump(), clicked);
    QCOMPARE(dragState().entry.entry(), DocumentActive()->tree.selected());
    QVERIFY(!dragState().dragging);
    QVERIFY(!viewport()->testAttribute(Qt::WA_SetCursor));
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    QCOMPARE(dump(), clicked);
    QVERIFY(!dragState().entry.entry());
    // The pointer that moves on drags nothing along.
    moveTo(middleOf(u"C"_s), Qt::NoButton);
    moveTo(middleOf(u"Root"_s), Qt::LeftButton);
    QVERIFY(!dragState().dragging);
    QVERIFY(!viewport()->testAttribute(Qt::WA_SetCursor));
    QCOMPARE(dump(), clicked);
}

void tst_OutlineDragger::aPressOnABranchSignStartsNoDrag()
{
    QFETCH(const Qt::LayoutDirection, direction);
    plant({u"Root +"_s, u" A"_s, u"  A1"_s, u" B"_s});
    m_fixture->form().treeView->setLayoutDirection(direction);
    modNodes::NodeSelect(*DocumentActive(), entryLabelled(DocumentActive()->tree, u"B"_s));
    const QPoint sign = signOf(u"A"_s);
    QTest::mousePress(viewport(), Qt::LeftButton, {}, sign);
    for (const QPoint &to : {sign + QPoint(10, 0), sign + QPoint(12, 0)}) {
        moveTo(to);
        QVERIFY(!dragState().dragging);
    }
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, sign + QPoint(12, 0));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B <"_s}));
}

void tst_OutlineDragger::aRightPressOnABranchSignIsOneOnItsRow()
{
    QFETCH(const Qt::LayoutDirection, direction);
    m_fixture->form().treeView->setLayoutDirection(direction);
    for (int i = 1; i <= 2; ++i) {
        QTest::mouseClick(viewport(), Qt::RightButton, {}, signOf(u"A"_s));
        QCOMPARE(m_fixture->poppedUp, QStringList(i, u"mnuoutline"_s));
        QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +<"_s, u"  A1"_s, u" B"_s, u" C"_s}));
    }
}

void tst_OutlineDragger::theThresholdItselfStartsNoDrag_data()
{
    QTest::addColumn<QPointF>("twips");
    QTest::addColumn<bool>("drags");
    QTest::newRow("100 to the right") << QPointF(100, 0) << false;
    QTest::newRow("101 to the right") << QPointF(101, 0) << true;
    QTest::newRow("100 to the left") << QPointF(-100, 0) << false;
    QTest::newRow("101 to the left") << QPointF(-101, 0) << true;
    QTest::newRow("100 down") << QPointF(0, 100) << false;
    QTest::newRow("101 down") << QPointF(0, 101) << true;
    QTest::newRow("100 up") << QPointF(0, -100) << false;
    QTest::newRow("101 up") << QPointF(0, -101) << true;
    QTest::newRow("100 along both axes") << QPointF(100, 100) << false;
}

void tst_OutlineDragger::theThresholdItselfStartsNoDrag()
{
    QFETCH(const QPointF, twips);
    QFETCH(const bool, drags);
    const QPointF start = middleOf(u"B"_s);
    const QPointF to = start + twips * m_fixture->form().logicalDpiX() / 1440;
    QTest::mousePress(viewport(), Qt::LeftButton, {}, start.toPoint());
    moveTo(to);
    QCOMPARE(viewport()->testAttribute(Qt::WA_SetCursor), drags);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, to.toPoint());
    QVERIFY(!viewport()->testAttribute(Qt::WA_SetCursor));
}

void tst_OutlineDragger::aDropOnAnotherEntryLandsBehindIt()
{
    drag(u"A"_s, middleOf(u"C"_s));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" B"_s, u" C"_s, u" A +<"_s, u"  A1"_s}));
    QVERIFY(DocumentActive()->m_bDataChanged());
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

void tst_OutlineDragger::theDirectionIsThatFromThePress_data()
{
    QTest::addColumn<QList<QPoint>>("way");
    QTest::addColumn<bool>("indents");
    const auto row = [](const char *name, const QList<QPoint> &way, bool indents) {
        QTest::newRow(name) << way << indents;
    };
    row("right, down and a hair back", {{20, 0}, {20, 8}, {19, 8}}, true);
    row("right and straight down", {{20, 0}, {20, 8}}, true);
    row("left, down and a hair back", {{-20, 0}, {-20, 8}, {-19, 8}}, false);
    row("down, then right", {{0, 8}, {20, 8}}, true);
    row("down, then left", {{0, 8}, {-20, 8}}, false);
    row("right, and farther back to the left", {{20, 0}, {-10, 0}}, false);
    row("left, and farther back to the right", {{-20, 0}, {10, 0}}, true);
    row("right, and back to a hair left of the press", {{20, 0}, {-1, 0}}, true);
    row("down and up again", {{0, 8}, {1, 0}}, false);
}

void tst_OutlineDragger::theDirectionIsThatFromThePress()
{
    QFETCH(const QList<QPoint>, way);
    QFETCH(const bool, indents);
    // An entry that can only be unindented, so that the icon tells the direction.
    plant({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s});
    const EntryTree &tree = DocumentActive()->tree;
    const QRect row = m_fixture->form().treeView->visualRect(tree.indexOf(entryLabelled(tree, u"A1"_s)));
    const QPoint start(row.left() + 30, row.top() + 1);
    QTest::mousePress(viewport(), Qt::LeftButton, {}, start);
    for (const QPoint &to : way)
        moveTo(start + to);
    QCOMPARE(dragState().indent, indents);
    QCOMPARE(viewport()->cursor().shape(), indents ? Qt::ForbiddenCursor : Qt::DragMoveCursor);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, start + way.last());
    QCOMPARE(dump(), indents ? QStringList({u"Root +"_s, u" A +"_s, u"  A1 <"_s, u" B"_s})
                             : QStringList({u"Root +"_s, u" A +"_s, u" A1 <"_s, u" B"_s}));
}

void tst_OutlineDragger::aDropOnItselfIsAboutTheDraggedEntry()
{
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    moveTo(middleOf(u"B"_s) + QPoint(10, 0));
    modNodes::NodeSelect(*DocumentActive(), entryLabelled(DocumentActive()->tree, u"C"_s));
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s) + QPoint(10, 0));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  B <"_s, u" C"_s}));
}

void tst_OutlineDragger::escapeEndsTheDrag()
{
    const QPoint to = middleOf(u"C"_s);
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"A"_s));
    moveTo(to);
    QVERIFY(dragState().dragging);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Escape);
    QVERIFY(!dragState().dragging);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, to);
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +<"_s, u"  A1"_s, u" B"_s, u" C"_s}));
}

void tst_OutlineDragger::afterEscapeTheReleaseDoesNothing_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("left") << Qt::LeftButton;
    QTest::newRow("right") << Qt::RightButton;
}

void tst_OutlineDragger::afterEscapeTheReleaseDoesNothing()
{
    QFETCH(const Qt::MouseButton, button);
    TreeView &view = *m_fixture->form().treeView;
    view.setLabelEdit(LabelEditMode::tvwAutomatic);
    modNodes::NodeSelect(*DocumentActive(), entryLabelled(DocumentActive()->tree, u"B"_s));
    view.setFocus();
    const QPoint place = middleOf(u"B"_s);
    QTest::mousePress(viewport(), button, {}, place);
    moveTo(place + QPoint(10, 0), button);
    QTest::keyClick(&view, Qt::Key_Escape);
    moveTo(place, button);
    QTest::mouseRelease(viewport(), button, {}, place);
    QCOMPARE(m_fixture->poppedUp, QStringList());
    QTest::qWait(QApplication::doubleClickInterval() + 100);
    QVERIFY(!view.findChild<QLineEdit *>());
    // Only that one release: the next click is a click again.
    QTest::mouseClick(viewport(), Qt::RightButton, {}, place);
    QCOMPARE(m_fixture->poppedUp, QStringList{u"mnuoutline"_s});
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, place);
    QTRY_VERIFY(view.findChild<QLineEdit *>());
}

void tst_OutlineDragger::duringADragKeysRunNoCommands()
{
    const QStringList before = {u"Root +"_s, u" A +<"_s, u"  A1"_s, u" B"_s, u" C"_s};
    m_fixture->fakes.dialogs.answers = {Answer::Yes};
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"A"_s));
    moveTo(middleOf(u"C"_s));
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Delete, Qt::AltModifier);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Down);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Menu);
    QCOMPARE(dump(), before);
    QVERIFY(dragState().dragging);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, middleOf(u"C"_s));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" B"_s, u" C"_s, u" A +<"_s, u"  A1"_s}));
    QCOMPARE(m_fixture->poppedUp, QStringList());
}

void tst_OutlineDragger::plantLongOutline()
{
    QStringList outline = {u"Root +"_s};
    for (int i = 0; i < 200; ++i)
        outline.append(u" Entry %1"_s.arg(i));
    plant(outline);
}

// Drags an entry of a long outline to the lower edge, and tells where that is.
QPoint tst_OutlineDragger::dragToTheEdge()
{
    plantLongOutline();
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"Entry 1"_s));
    const QPoint edge(20, viewport()->height() - 4);
    moveTo(edge);
    return edge;
}

void tst_OutlineDragger::aDragEndsWithItsEntry_data()
{
    QTest::addColumn<QString>("gone");
    QTest::newRow("the entry") << u"Entry 1"_s;
    QTest::newRow("the whole outline") << u"Root"_s;
}

void tst_OutlineDragger::aDragEndsWithItsEntry()
{
    QFETCH(const QString, gone);
    const QPoint edge = dragToTheEdge();
    EntryTree &tree = rawOutline(*DocumentActive()).tree;
    tree.remove(entryLabelled(tree, gone));
    // The outline scrolls near its edge as long as a drag goes on.
    QTRY_VERIFY(!viewport()->testAttribute(Qt::WA_SetCursor));
    QVERIFY(!dragState().dragging);
    moveTo(edge - QPoint(0, 50));
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, edge - QPoint(0, 50));
    QVERIFY(!dragState().dragging);
}

void tst_OutlineDragger::aDropOnlyWorksOnTheActiveDocument()
{
    frmDocument &first = m_fixture->form();
    plant({u"Other +"_s, u" X"_s, u" Y"_s});
    modNodes::NodeSelect(*DocumentActive(), entryLabelled(DocumentActive()->tree, u"Y"_s));
    first.activate();
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    moveTo(middleOf(u"B"_s) + QPoint(10, 0));
    const QPoint place = middleOf(u"B"_s) + QPoint(10, 0);
    m_fixture->documents().back()->view()->window.activate();
    QTest::mouseRelease(first.treeView->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(dump(), QStringList({u"Other +"_s, u" X"_s, u" Y <"_s}));
    QCOMPARE(dumpOutline(first.document().tree), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B <"_s, u" C"_s}));
}

void tst_OutlineDragger::aDropBesideEveryEntryDoesNothing()
{
    drag(u"A"_s, QPoint(20, viewport()->height() - 3));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +<"_s, u"  A1"_s, u" B"_s, u" C"_s}));
}

void tst_OutlineDragger::aDropBeyondThePaneDoesNothing()
{
    plantLongOutline();
    QScrollBar *bar = m_fixture->form().treeView->verticalScrollBar();
    bar->setValue(100);
    const QPoint middle = middleOf(u"Entry 110"_s);
    for (const QPoint &to : {QPoint(middle.x(), -30), QPoint(middle.x(), viewport()->height() + 30),
                             QPoint(viewport()->width() + 30, middle.y() + 40)}) {
        bar->setValue(100);
        drag(u"Entry 110"_s, to);
        QCOMPARE(dump().indexOf(u" Entry 110 <"_s), 111);
    }
}

void tst_OutlineDragger::theIconSaysWhatADropDoes()
{
    // Without the icons' files, shapes of the desktop's own stand in for them.
    const auto shape = [this] { return viewport()->cursor().shape(); };
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"A"_s));
    moveTo(middleOf(u"B"_s));
    QCOMPARE(shape(), Qt::DragMoveCursor);
    moveTo(middleOf(u"A1"_s));
    QCOMPARE(shape(), Qt::ForbiddenCursor);
    moveTo(middleOf(u"C"_s), Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(shape(), Qt::DragCopyCursor);
    moveTo(middleOf(u"C"_s));
    QCOMPARE(shape(), Qt::DragMoveCursor);
    // Back on itself: a first child has no previous sibling to be indented under.
    moveTo(middleOf(u"A"_s));
    moveTo(middleOf(u"A"_s) + QPoint(20, 0));
    QCOMPARE(shape(), Qt::ForbiddenCursor);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Escape);
    QCOMPARE(shape(), Qt::ArrowCursor);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, middleOf(u"A"_s));
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

void tst_OutlineDragger::theRightButtonOffersWhatCtrlSays()
{
    QString byDefault;
    choose(u"mnuConfirmCancel"_s, nullptr, &byDefault);
    drag(u"B"_s, middleOf(u"C"_s), Qt::RightButton, Qt::ControlModifier);
    QCOMPARE(byDefault, u"mnuConfirmCopyNext"_s);
    choose(u"mnuConfirmCancel"_s, nullptr, &byDefault);
    drag(u"B"_s, middleOf(u"A"_s), Qt::RightButton);
    QCOMPARE(byDefault, u"mnuConfirmMovePrevious"_s);
    choose(u"mnuConfirmCancel"_s, nullptr, &byDefault);
    drag(u"B"_s, middleOf(u"Root"_s), Qt::RightButton);
    QCOMPARE(byDefault, u"mnuConfirmMoveChild"_s);
}

void tst_OutlineDragger::everyItemOfTheRightButtonsMenuDoesWhatItSays_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const QString &item, const QStringList &expected) {
        QTest::newRow(qPrintable(item)) << item << expected;
    };
    row(u"mnuConfirmCopyPrevious"_s, {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s, u" A +<"_s, u"  A1"_s, u" C"_s});
    row(u"mnuConfirmCopyNext"_s, {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s, u" C"_s, u" A +<"_s, u"  A1"_s});
    row(u"mnuConfirmCopyChild"_s, {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s, u" C +"_s, u"  A +<"_s, u"   A1"_s});
    row(u"mnuConfirmMovePrevious"_s, {u"Root +"_s, u" B"_s, u" A +<"_s, u"  A1"_s, u" C"_s});
    row(u"mnuConfirmMoveNext"_s, {u"Root +"_s, u" B"_s, u" C"_s, u" A +<"_s, u"  A1"_s});
    row(u"mnuConfirmMoveChild"_s, {u"Root +"_s, u" B"_s, u" C +"_s, u"  A +<"_s, u"   A1"_s});
}

void tst_OutlineDragger::everyItemOfTheRightButtonsMenuDoesWhatItSays()
{
    QFETCH(const QString, item);
    QFETCH(const QStringList, expected);
    choose(item);
    drag(u"A"_s, middleOf(u"C"_s), Qt::RightButton);
    QCOMPARE(dump(), expected);
    QVERIFY(!dragState().entry.entry());
}

void tst_OutlineDragger::theRightButtonOnADescendantAsksNothing()
{
    drag(u"A"_s, middleOf(u"A1"_s), Qt::RightButton);
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +<"_s, u"  A1"_s, u" B"_s, u" C"_s}));
    QCOMPARE(m_fixture->poppedUp, QStringList());
}

void tst_OutlineDragger::theRightButtonsCancelLeavesTheTree()
{
    choose(u"mnuConfirmCancel"_s);
    drag(u"B"_s, middleOf(u"C"_s), Qt::RightButton);
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B <"_s, u" C"_s}));
    QVERIFY(!dragState().entry.entry());
}

void tst_OutlineDragger::nothingOpensBehindTheRightButtonsMenu()
{
    const QStringList outline = {u"Root +"_s, u" A"_s, u"  A1"_s, u" B <"_s};
    plant(outline);
    choose(u"mnuConfirmCancel"_s, nullptr, nullptr, OutlineDragger::openDelay + 100);
    drag(u"B"_s, middleOf(u"A"_s), Qt::RightButton);
    QCOMPARE(dump(), outline);
}

void tst_OutlineDragger::theRightButtonOnItselfAsksForIndentOrUnindent_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("indent") << u"mnuConfirmIndentRight"_s
                            << QStringList({u"Root +"_s, u" A +"_s, u"  A1 +"_s, u"   A2 <"_s, u" B"_s});
    QTest::newRow("unindent") << u"mnuConfirmIndentLeft"_s
                              << QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u" A2 <"_s, u" B"_s});
    QTest::newRow("cancel") << u"mnuConfirmIndentCancel"_s
                            << QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2 <"_s, u" B"_s});
}

// Wherever the pointer went, the menu decides.
void tst_OutlineDragger::theRightButtonOnItselfAsksForIndentOrUnindent()
{
    QFETCH(const QString, item);
    QFETCH(const QStringList, expected);
    plant({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B"_s});
    choose(item);
    drag(u"A2"_s, middleOf(u"A2"_s) + QPoint(10, 0), Qt::RightButton);
    QCOMPARE(dump(), expected);
}

void tst_OutlineDragger::aRightClickShowsTheOutlineMenu()
{
    QTest::mouseClick(viewport(), Qt::RightButton, {}, middleOf(u"B"_s));
    QCOMPARE(m_fixture->poppedUp, QStringList{u"mnuoutline"_s});
    QCOMPARE(DocumentActive()->tree.selected()->label(), u"B"_s);
}

void tst_OutlineDragger::makeReadOnly()
{
    QFile file(m_fixture->folder.filePath(u"fixed.qly"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.setPermissions(QFileDevice::ReadOwner));
    DocumentActive()->m_sFile = file.fileName();
    QVERIFY(DocumentActive()->bReadOnly());
}

void tst_OutlineDragger::aReadOnlyDocumentTakesNoDrag()
{
    makeReadOnly();
    const QStringList pressed = {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B <"_s, u" C"_s};
    drag(u"B"_s, middleOf(u"C"_s));
    QCOMPARE(dump(), pressed);
    drag(u"B"_s, middleOf(u"C"_s), Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(dump(), pressed);
    drag(u"B"_s, middleOf(u"B"_s) + QPoint(10, 0));
    QCOMPARE(dump(), pressed);
    // The right button shows the menu, in which all that changes the outline is disabled.
    drag(u"B"_s, middleOf(u"C"_s), Qt::RightButton);
    QCOMPARE(dump(), pressed);
    QCOMPARE(m_fixture->poppedUp, QStringList{u"mnuoutline"_s});
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, middleOf(u"C"_s));
    QCOMPARE(DocumentActive()->tree.selected()->label(), u"C"_s);
}

void tst_OutlineDragger::aReadOnlyDocumentTakesNoClickToRename()
{
    TreeView &view = *m_fixture->form().treeView;
    view.setLabelEdit(LabelEditMode::tvwAutomatic);
    modNodes::NodeSelect(*DocumentActive(), entryLabelled(DocumentActive()->tree, u"B"_s));
    view.setFocus();
    makeReadOnly();
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    QTest::qWait(QApplication::doubleClickInterval() + 100);
    QVERIFY(!view.findChild<QLineEdit *>());
    DocumentActive()->m_sFile.clear();
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    QTRY_VERIFY(view.findChild<QLineEdit *>());
}

void tst_OutlineDragger::aReadOnlyDocumentOpensAndClosesItsBranches()
{
    makeReadOnly();
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, signOf(u"A"_s));
    QVERIFY(!entryLabelled(DocumentActive()->tree, u"A"_s)->expanded());
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, signOf(u"A"_s));
    QVERIFY(entryLabelled(DocumentActive()->tree, u"A"_s)->expanded());
}

void tst_OutlineDragger::theOutlineScrollsNearItsEdge()
{
    dragToTheEdge();
    QTRY_VERIFY(m_fixture->form().treeView->verticalScrollBar()->value() > 3);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Escape);
}

void tst_OutlineDragger::aClosedEntryUnderARestingPointerOpens()
{
    plant({u"Root +"_s, u" A"_s, u"  A1"_s, u" B"_s});
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    const QPoint over = middleOf(u"A"_s);
    moveTo(over);
    const EntryTree &tree = DocumentActive()->tree;
    QTRY_VERIFY(entryLabelled(tree, u"A"_s)->expanded());
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Escape);
}

void tst_OutlineDragger::theDraggedEntryItselfStaysClosed()
{
    plant({u"Root +"_s, u" A"_s, u" B"_s, u"  B1"_s, u" C"_s, u"  C1"_s});
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
    moveTo(middleOf(u"B"_s) + QPoint(10, 0));
    QTest::qWait(OutlineDragger::openDelay + 100);
    QVERIFY(!entryLabelled(DocumentActive()->tree, u"B"_s)->expanded());
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s) + QPoint(10, 0));
    QCOMPARE(dump(), QStringList({u"Root +"_s, u" A +"_s, u"  B <"_s, u"   B1"_s, u" C"_s, u"  C1"_s}));
}

void tst_OutlineDragger::dragsOnOneDocumentLeaveTheOthers()
{
    const Document &first = *DocumentActive();
    const QStringList before = dumpOutline(first.tree);
    plant({u"Other +"_s, u" X"_s, u" Y"_s});
    drag(u"X"_s, middleOf(u"Y"_s));
    QCOMPARE(dump(), QStringList({u"Other +"_s, u" Y"_s, u" X <"_s}));
    QCOMPARE(dumpOutline(first.tree), before);
}

void tst_OutlineDragger::missingIconsAreReported()
{
    m_errors->clear();
    drag(u"A"_s, middleOf(u"C"_s));
    QCOMPARE(m_errors->summary().value(0), u"53 modMain ChangeDragIcon"_s);
}

// The reports of the icons that are missing beside this test name them.
void tst_OutlineDragger::everyStateOfADragHasItsIcon()
{
    const auto iconAfter = [this](const QString &label, Qt::KeyboardModifiers modifiers) {
        m_errors->clear();
        moveTo(middleOf(label), Qt::LeftButton, modifiers);
        return m_errors->count() == 1 ? m_errors->records()[0].report.description.section(u' ', -1) : QString();
    };
    QTest::mousePress(viewport(), Qt::LeftButton, {}, middleOf(u"A"_s));
    QCOMPARE(iconAfter(u"B"_s, {}), u"FolderDrag.ico"_s);
    QCOMPARE(iconAfter(u"C"_s, Qt::ControlModifier), u"FolderDragCopy.ico"_s);
    QCOMPARE(iconAfter(u"A1"_s, {}), u"NoDrop.ico"_s);
    QCOMPARE(iconAfter(u"B"_s, {}), u"FolderDrag.ico"_s);
    QTest::keyClick(m_fixture->form().treeView, Qt::Key_Escape);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, middleOf(u"B"_s));
}

QTEST_MAIN(tst_OutlineDragger)
#include "tst_OutlineDragger.moc"
