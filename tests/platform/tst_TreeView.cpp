// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/TreeView.h"

#include "model/History.h"
#include "model/Limits.h"
#include "model/Outline.h"
#include "model/ShownLabel.h"
#include "platform/OutlineWidth.h"
#include "support/FakePorts.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// An outline from indented lines: two blanks a level, "+" before the label of an open entry.
void build(EntryTree &tree, const char *outline)
{
    std::vector<Entry *> path;
    for (const QString &line : QString::fromUtf8(outline).split(u'\n')) {
        qsizetype indent = 0;
        while (line[indent] == u' ')
            ++indent;
        const bool open = line[indent] == u'+';
        path.resize(static_cast<size_t>(indent / 2));
        Entry *entry = tree.insert(Relationship::tvwChild, path.empty() ? nullptr : path.back());
        tree.setLabel(entry, line.sliced(indent + (open ? 1 : 0)));
        tree.setExpanded(entry, open);
        path.push_back(entry);
    }
}

// Whether an image is part of another one: every pixel that it covers wholly.
bool contains(const QImage &whole, const QImage &part)
{
    const auto isAt = [&whole, &part](int left, int top) {
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x) {
                const QColor pixel = part.pixelColor(x, y);
                if (pixel.alpha() == 255 && whole.pixelColor(left + x, top + y) != pixel)
                    return false;
            }
        }
        return true;
    };
    for (int top = 0; top + part.height() <= whole.height(); ++top) {
        for (int left = 0; left + part.width() <= whole.width(); ++left) {
            if (isAt(left, top))
                return true;
        }
    }
    return false;
}

constexpr auto garden = "+Garden\n  +Trees\n    Oak\n    +Fruit\n      Apple\n      Pear\n  Tools\n    Spade\n  Soil";

} // namespace

class tst_TreeView : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        makeOutline();
        m_window = std::make_unique<QWidget>();
        m_window->resize(400, 300);
        m_view = new TreeView(m_window.get());
        m_view->resize(250, 300);
        m_other = new QLineEdit(m_window.get());
        m_other->move(260, 0);
        QWidget::setTabOrder(m_view, m_other);
        m_view->setHistory(m_history.get());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void cleanup()
    {
        m_window.reset();
        m_history.reset();
        m_outline.reset();
    }

    void hasTheNamesByWhichItIsFound();
    void showsOpenBranchesAsTheTreeSays();
    void followsExpansionByProgram();
    void followsABulkChange();
    void showsAnEntryOpenedBeforeItHadChildren();
    void keepsClosedWhatTheTreeHasClosedWhenEntriesCome();
    void showsBranchesThatAMoveFillsOrEmpties();
    void clickOnTheBranchExpandsTheEntry();
    void arrowKeysExpandAndCollapse();
    void asteriskOpensTheWholeBranch();
    void aLeafIsNotExpandedByTheUser();
    void selectionByProgramIsShownAndSilent();
    void selectingWithinAClosedBranchDoesNotOpenIt();
    void arrowKeysSelect();
    void aClickSelects();
    void aClickOnTheSelectedRowIsAClickAgain();
    void controlClickDoesNotDeselect();
    void aRowSelectedWithoutBecomingCurrentIsSelected();
    void aRightClickSelectsToo();
    void aClickBelowTheRowsChangesNothing();
    void draggingDoesNotMoveTheSelection();
    void focusAloneSelectsNothing();
    void removingTheSelectedEntrySelectsNothing();
    void removalAndInsertionRaiseNoClick();
    void sortingKeepsTheSelection();
    void startLabelEditEditsTheSelectedEntry();
    void everyCharacterPastedIntoALabelIsInSight();
    void escapeKeepsTheOldLabel();
    void anEmptyLabelIsAccepted();
    void aPastedLineBreakBecomesABlank();
    void endLabelEditKeepsWhatWasTyped();
    void whatIsBeingComposedBelongsToTheLabel_data();
    void whatIsBeingComposedBelongsToTheLabel();
    void whatIsComposedAndGivenUpIsNoPartOfTheLabel();
    void aRowIsPaintedWholeWhicheverWayOneReads_data();
    void aRowIsPaintedWholeWhicheverWayOneReads();
    void aSmallerPaneKeepsTheSelectedRowInSight();
    void aSmallerPaneThatShowsOtherRowsStaysThere();
    void tabInTheEditorCommitsAndLeavesThePane();
    void leavingTheEditorCommits();
    void aHiddenPaneEditsOnceItIsShown();
    void manualLabelEditIgnoresClicksAndF2();
    void automaticLabelEditOpensOnASecondClick();
    void aSecondClickBesideTheLabelDoesNotEdit();
    void aVeryLongLabelIsNotCut();
    void labelsAreEditedUpToABound();
    void aLabelOfMegabytesIsNoWiderThanItsBeginning();
    void noMoreIsPastedIntoALabelThanItHasRoomFor();
    void tabLeavesThePane();
    void aHiddenPaneKeepsFocusAndScrollsWhenShown();
    void scrollToShowsTheRow();
    void theSelectedRowIsKnownWhereItShows();
    void aDeepEntryIsScrolledToSideways();
    void aClickKeepsTheSidewaysPosition();
    void theFontIsThatOfTheRows();
    void hitTestFindsTheEntryOfARow();
    void filesDroppedAreLeftToTheWindow();
    void imagesFollowTagAndSelection();
    void longLabelsCanBeScrolledTo();
    void aVeryDeepOutlineIsShownClosedAtItsEnd();
    void anotherTreeReplacesTheFirst();
    void theTreeMayGoFirst();
    void randomChangesKeepViewAndTreeAlike();

private:
    Entry *entry(const QString &label) const
    {
        for (Entry *each = m_tree->root(); each; each = nextInOutline(each, m_tree->root())) {
            if (each->label() == label)
                return each;
        }
        return nullptr;
    }

    QModelIndex indexOf(const QString &label) const { return m_tree->indexOf(entry(label)); }

    // The labels of the rows on display, from the top.
    QStringList rows() const
    {
        QStringList labels;
        for (QModelIndex index = m_tree->index(0, 0); index.isValid(); index = m_view->indexBelow(index))
            labels.append(index.data().toString());
        return labels;
    }

    QPoint labelPoint(const QString &label) const
    {
        const QRect rect = m_view->visualRect(indexOf(label));
        return {rect.left() + 24, rect.center().y()};
    }

    QPoint branchPoint(const QString &label) const
    {
        const QRect rect = m_view->visualRect(indexOf(label));
        return {rect.left() - m_view->indentation() / 2, rect.center().y()};
    }

    void click(const QPoint &point, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::mouseClick(m_view->viewport(), button, modifiers, point);
    }

    void makeOutline()
    {
        m_outline = std::make_unique<Outline>();
        m_history = std::make_unique<History>(*m_outline);
        m_tree = &m_outline->tree;
    }

    void press(Qt::Key key) const { QTest::keyClick(m_view, key); }

    QLineEdit *editor() const { return m_view->findChild<QLineEdit *>(u"labelEditor"_s); }

    // Whether the view shows what the tree says.
    QString difference() const
    {
        for (Entry *each = m_tree->root(); each; each = nextInOutline(each, m_tree->root())) {
            const bool open = each->expanded() && each->childCount() > 0;
            if (m_view->isExpanded(m_tree->indexOf(each)) != open)
                return u"the expansion of "_s + m_tree->key(each);
        }
        if (m_view->currentIndex() != m_tree->indexOf(m_tree->selected()))
            return u"the current row"_s;
        const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
        if (selected.size() != (m_tree->selected() ? 1 : 0) || selected.value(0) != m_view->currentIndex())
            return u"the selected row"_s;
        return QString();
    }

    std::unique_ptr<Outline> m_outline;
    std::unique_ptr<History> m_history;
    EntryTree *m_tree = nullptr;
    std::unique_ptr<QWidget> m_window;
    TreeView *m_view = nullptr;
    QLineEdit *m_other = nullptr;
};

void tst_TreeView::hasTheNamesByWhichItIsFound()
{
    QCOMPARE(m_view->objectName(), u"trvOutline"_s);
    QCOMPARE(m_view->accessibleName(), u"Outline"_s);
    QVERIFY(m_view->isHeaderHidden());
}

void tst_TreeView::showsOpenBranchesAsTheTreeSays()
{
    build(*m_tree, garden);
    QCOMPARE(rows(), QStringList({u"Garden"_s, u"Trees"_s, u"Oak"_s, u"Fruit"_s, u"Apple"_s, u"Pear"_s, u"Tools"_s,
                                  u"Soil"_s}));
    QCOMPARE(difference(), QString());
    TreeView late;
    late.setHistory(m_history.get());
    QVERIFY(late.isExpanded(indexOf(u"Fruit"_s)));
    QVERIFY(!late.isExpanded(indexOf(u"Tools"_s)));
}

void tst_TreeView::followsExpansionByProgram()
{
    build(*m_tree, garden);
    QSignalSpy expanded(m_view, &TreeView::entryExpanded);
    QSignalSpy collapsed(m_view, &TreeView::entryCollapsed);
    m_tree->setExpanded(entry(u"Tools"_s), true);
    QCOMPARE(expanded.size(), 1);
    QCOMPARE(expanded[0][0].value<Entry *>(), entry(u"Tools"_s));
    m_tree->setExpanded(entry(u"Garden"_s), false);
    QCOMPARE(collapsed.size(), 1);
    QCOMPARE(rows(), QStringList({u"Garden"_s}));
    m_tree->setExpandedAll(m_tree->root(), true);
    QCOMPARE(rows().size(), m_tree->entryCount());
    m_tree->expandToLevel(m_tree->root(), 2);
    QCOMPARE(rows(), QStringList({u"Garden"_s, u"Trees"_s, u"Tools"_s, u"Soil"_s}));
    m_tree->expandAncestors(entry(u"Pear"_s));
    QVERIFY(rows().contains(u"Pear"_s));
    QCOMPARE(difference(), QString());
}

void tst_TreeView::followsABulkChange()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    m_tree->beginBulkChange();
    m_tree->remove(entry(u"Trees"_s));
    m_tree->setExpanded(entry(u"Tools"_s), true);
    Entry *saw = m_tree->insert(Relationship::tvwChild, entry(u"Tools"_s));
    m_tree->setLabel(saw, u"Saw"_s);
    m_tree->select(saw);
    m_view->ScrollTo(saw);
    m_tree->endBulkChange();
    QCOMPARE(rows(), QStringList({u"Garden"_s, u"Tools"_s, u"Spade"_s, u"Saw"_s, u"Soil"_s}));
    QCOMPARE(difference(), QString());
}

void tst_TreeView::showsAnEntryOpenedBeforeItHadChildren()
{
    build(*m_tree, "+Garden");
    Entry *child = m_tree->insert(Relationship::tvwChild, m_tree->root());
    m_tree->setLabel(child, u"Trees"_s);
    QCOMPARE(rows(), QStringList({u"Garden"_s, u"Trees"_s}));
}

void tst_TreeView::keepsClosedWhatTheTreeHasClosedWhenEntriesCome()
{
    build(*m_tree, garden);
    m_tree->insert(Relationship::tvwChild, entry(u"Tools"_s));
    QVERIFY(!rows().contains(u"Spade"_s));
    m_tree->insertCopy(*m_tree, entry(u"Trees"_s), Relationship::tvwChild, m_tree->root());
    QCOMPARE(difference(), QString());
    QCOMPARE(rows().count(u"Pear"_s), 2);
}

void tst_TreeView::showsBranchesThatAMoveFillsOrEmpties()
{
    Entry *root = m_tree->insert(Relationship::tvwChild, nullptr);
    Entry *from = m_tree->insert(Relationship::tvwChild, root);
    Entry *to = m_tree->insert(Relationship::tvwChild, root);
    Entry *moving = m_tree->insert(Relationship::tvwChild, from);
    for (Entry *entry : {root, from, to})
        m_tree->setExpanded(entry, true);
    m_tree->move(moving, Relationship::tvwChild, to);
    QVERIFY(m_view->isExpanded(m_tree->indexOf(to)));
    QVERIFY(!m_view->isExpanded(m_tree->indexOf(from)));
    QCOMPARE(difference(), QString());
}

void tst_TreeView::clickOnTheBranchExpandsTheEntry()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Soil"_s));
    QSignalSpy expanded(m_view, &TreeView::entryExpanded);
    QSignalSpy collapsed(m_view, &TreeView::entryCollapsed);
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    click(branchPoint(u"Tools"_s));
    QVERIFY(entry(u"Tools"_s)->expanded());
    QCOMPARE(expanded.size(), 1);
    click(branchPoint(u"Tools"_s));
    QVERIFY(!entry(u"Tools"_s)->expanded());
    QCOMPARE(collapsed.size(), 1);
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(difference(), QString());
}

void tst_TreeView::arrowKeysExpandAndCollapse()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Tools"_s));
    m_view->setFocus();
    press(Qt::Key_Right);
    QVERIFY(entry(u"Tools"_s)->expanded());
    press(Qt::Key_Left);
    QVERIFY(!entry(u"Tools"_s)->expanded());
    press(Qt::Key_Left);
    QCOMPARE(m_tree->selected(), m_tree->root());
    QCOMPARE(difference(), QString());
}

void tst_TreeView::asteriskOpensTheWholeBranch()
{
    build(*m_tree, "+Garden\n  Trees\n    Fruit\n      Apple\n  Tools\n    Spade");
    m_tree->select(entry(u"Trees"_s));
    m_view->setFocus();
    QSignalSpy expanded(m_view, &TreeView::entryExpanded);
    press(Qt::Key_Asterisk);
    QVERIFY(rows().contains(u"Apple"_s));
    QVERIFY(!rows().contains(u"Spade"_s));
    QCOMPARE(expanded.size(), 1);
}

void tst_TreeView::aLeafIsNotExpandedByTheUser()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Soil"_s));
    m_view->setFocus();
    QSignalSpy expanded(m_view, &TreeView::entryExpanded);
    press(Qt::Key_Right);
    press(Qt::Key_Plus);
    QVERIFY(!entry(u"Soil"_s)->expanded());
    QCOMPARE(expanded.size(), 0);
}

void tst_TreeView::selectionByProgramIsShownAndSilent()
{
    build(*m_tree, garden);
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    m_tree->select(entry(u"Pear"_s));
    QCOMPARE(m_view->currentIndex(), indexOf(u"Pear"_s));
    QCOMPARE(difference(), QString());
    m_tree->select(nullptr);
    QVERIFY(!m_view->currentIndex().isValid());
    QCOMPARE(difference(), QString());
    QCOMPARE(clicked.size(), 0);
}

void tst_TreeView::selectingWithinAClosedBranchDoesNotOpenIt()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Spade"_s));
    m_view->ScrollTo(entry(u"Spade"_s));
    QVERIFY(!entry(u"Tools"_s)->expanded());
    QCOMPARE(difference(), QString());
}

void tst_TreeView::arrowKeysSelect()
{
    build(*m_tree, garden);
    m_tree->select(m_tree->root());
    m_view->setFocus();
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    press(Qt::Key_Down);
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked[0][0].value<Entry *>(), entry(u"Trees"_s));
    QCOMPARE(m_tree->selected(), entry(u"Trees"_s));
    press(Qt::Key_End);
    QCOMPARE(m_tree->selected(), entry(u"Soil"_s));
    press(Qt::Key_Up);
    QCOMPARE(m_tree->selected(), entry(u"Tools"_s));
    press(Qt::Key_Home);
    QCOMPARE(m_tree->selected(), m_tree->root());
    QCOMPARE(clicked.size(), 4);
    QCOMPARE(difference(), QString());
}

void tst_TreeView::aClickSelects()
{
    build(*m_tree, garden);
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    click(labelPoint(u"Tools"_s));
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked[0][0].value<Entry *>(), entry(u"Tools"_s));
    QCOMPARE(m_tree->selected(), entry(u"Tools"_s));
    QCOMPARE(difference(), QString());
}

void tst_TreeView::aClickOnTheSelectedRowIsAClickAgain()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Tools"_s));
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    click(labelPoint(u"Tools"_s));
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(m_tree->selected(), entry(u"Tools"_s));
}

void tst_TreeView::controlClickDoesNotDeselect()
{
    build(*m_tree, garden);
    click(labelPoint(u"Tools"_s));
    click(labelPoint(u"Tools"_s), Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(m_tree->selected(), entry(u"Tools"_s));
    QCOMPARE(difference(), QString());
    QTest::keyClick(m_view, Qt::Key_Space, Qt::ControlModifier);
    QCOMPARE(difference(), QString());
    QTest::keyClick(m_view, Qt::Key_Up, Qt::ControlModifier);
    QCOMPARE(difference(), QString());
}

// What assistive technology does.
void tst_TreeView::aRowSelectedWithoutBecomingCurrentIsSelected()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    m_view->clearSelection();
    m_view->selectionModel()->select(m_tree->indexOf(entry(u"Tools"_s)),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTRY_COMPARE(m_tree->selected(), entry(u"Tools"_s));
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(difference(), QString());
    m_view->clearSelection();
    QTRY_COMPARE(difference(), QString());
    QCOMPARE(m_tree->selected(), entry(u"Tools"_s));
    QCOMPARE(clicked.size(), 1);
}

void tst_TreeView::aRightClickSelectsToo()
{
    build(*m_tree, garden);
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    click(labelPoint(u"Oak"_s), Qt::RightButton);
    QCOMPARE(m_tree->selected(), entry(u"Oak"_s));
    QCOMPARE(clicked.size(), 1);
}

void tst_TreeView::aClickBelowTheRowsChangesNothing()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    click({50, m_view->viewport()->height() - 3});
    QCOMPARE(m_tree->selected(), entry(u"Oak"_s));
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(difference(), QString());
}

void tst_TreeView::draggingDoesNotMoveTheSelection()
{
    build(*m_tree, garden);
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, labelPoint(u"Oak"_s));
    QMouseEvent move(QEvent::MouseMove, labelPoint(u"Tools"_s), m_view->viewport()->mapToGlobal(labelPoint(u"Tools"_s)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &move);
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, labelPoint(u"Tools"_s));
    QCOMPARE(m_tree->selected(), entry(u"Oak"_s));
    QCOMPARE(difference(), QString());
}

void tst_TreeView::focusAloneSelectsNothing()
{
    build(*m_tree, garden);
    m_other->setFocus();
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    QSignalSpy focused(m_view, &TreeView::gotFocus);
    m_view->setFocus();
    QCOMPARE(focused.size(), 1);
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(m_tree->selected(), nullptr);
    QCOMPARE(difference(), QString());
    click(labelPoint(u"Garden"_s));
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(m_tree->selected(), m_tree->root());
}

void tst_TreeView::removingTheSelectedEntrySelectsNothing()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Apple"_s));
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    m_tree->remove(entry(u"Trees"_s));
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(m_tree->selected(), nullptr);
    QCOMPARE(difference(), QString());
    m_tree->clear();
    QCOMPARE(rows(), QStringList());
}

void tst_TreeView::removalAndInsertionRaiseNoClick()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Soil"_s));
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    m_tree->remove(entry(u"Tools"_s));
    m_tree->insert(Relationship::tvwFirst, entry(u"Soil"_s));
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(m_tree->selected(), entry(u"Soil"_s));
    QCOMPARE(difference(), QString());
}

void tst_TreeView::sortingKeepsTheSelection()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Trees"_s));
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    m_tree->setSorted(m_tree->root(), true);
    QCOMPARE(rows().mid(0, 4), QStringList({u"Garden"_s, u"Soil"_s, u"Tools"_s, u"Trees"_s}));
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(difference(), QString());
}

void tst_TreeView::startLabelEditEditsTheSelectedEntry()
{
    build(*m_tree, garden);
    m_view->StartLabelEdit();
    QVERIFY(!editor());
    m_tree->select(entry(u"Oak"_s));
    QSignalSpy edited(m_tree, &EntryTree::labelChanged);
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    m_view->StartLabelEdit();
    QVERIFY(editor());
    QVERIFY(editor()->hasFocus());
    QCOMPARE(editor()->selectedText(), u"Oak"_s);
    QTest::keyClicks(editor(), u"Ash tree"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(edited.size(), 1);
    QCOMPARE(edited[0][0].value<Entry *>(), m_tree->selected());
    QCOMPARE(m_tree->selected()->label(), u"Ash tree"_s);
    QTRY_VERIFY(!editor());
    QVERIFY(m_view->hasFocus());
    QCOMPARE(clicked.size(), 0);
}

void tst_TreeView::everyCharacterPastedIntoALabelIsInSight()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    QString pasted = u"Ash"_s;
    for (const int unit : {0x00, 0x01, 0x1C, 0x1F, 0xD800, 0xFFFC, 0xFFFE})
        pasted += QChar(unit);
    auto *data = new QMimeData;
    data->setText(pasted + u"tree"_s);
    QApplication::clipboard()->setMimeData(data);
    m_view->StartLabelEdit();
    editor()->paste();
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(m_tree->selected()->label(), u"Ash\u2400\u2401\u241C\u241F\uFFFD\uFFFD\uFFFDtree"_s);
}

void tst_TreeView::escapeKeepsTheOldLabel()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    QSignalSpy edited(m_tree, &EntryTree::labelChanged);
    m_view->StartLabelEdit();
    QTest::keyClicks(editor(), u"Ash"_s);
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    QVERIFY(entry(u"Oak"_s));
    QCOMPARE(edited.size(), 0);
}

void tst_TreeView::anEmptyLabelIsAccepted()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    m_view->StartLabelEdit();
    QTest::keyClick(editor(), Qt::Key_Backspace);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(m_tree->selected()->label(), QString());
}

void tst_TreeView::aPastedLineBreakBecomesABlank()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    QApplication::clipboard()->setText(u"one\r\ntwo\nthree"_s + QChar(0x2028) + u"four"_s);
    m_view->StartLabelEdit();
    editor()->paste();
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(m_tree->selected()->label(), u"one two three four"_s);
}

void tst_TreeView::endLabelEditKeepsWhatWasTyped()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    QSignalSpy edited(m_tree, &EntryTree::labelChanged);
    m_view->EndLabelEdit();
    QCOMPARE(edited.size(), 0);
    m_view->StartLabelEdit();
    QTest::keyClicks(editor(), u"Ash"_s);
    m_view->EndLabelEdit();
    QCOMPARE(m_tree->selected()->label(), u"Ash"_s);
    QCOMPARE(edited.size(), 1);
    QTRY_VERIFY(!editor());
    QCOMPARE(edited.size(), 1);
}

void tst_TreeView::whatIsBeingComposedBelongsToTheLabel_data()
{
    QTest::addColumn<bool>("byFocus");
    QTest::newRow("a command ends the editing") << false;
    QTest::newRow("a click elsewhere ends it") << true;
}

void tst_TreeView::whatIsBeingComposedBelongsToTheLabel()
{
    QFETCH(const bool, byFocus);
    build(*m_tree, garden);
    m_tree->select(m_tree->root());
    m_view->setFocus();
    m_view->StartLabelEdit();
    auto *editor = m_view->findChild<QLineEdit *>();
    QTest::keyClicks(editor, u"Gar"_s);
    QInputMethodEvent composing(u"den"_s, {});
    QCoreApplication::sendEvent(editor, &composing);
    if (byFocus)
        QTest::mouseClick(m_other, Qt::LeftButton);
    else
        m_view->EndLabelEdit();
    m_other->setFocus();
    QCOMPARE(m_tree->root()->label(), u"Garden"_s);
}

void tst_TreeView::whatIsComposedAndGivenUpIsNoPartOfTheLabel()
{
    build(*m_tree, garden);
    m_tree->select(m_tree->root());
    m_view->setFocus();
    m_view->StartLabelEdit();
    auto *editor = m_view->findChild<QLineEdit *>();
    QTest::keyClicks(editor, u"Gar"_s);
    QInputMethodEvent composing(u"den"_s, {});
    QCoreApplication::sendEvent(editor, &composing);
    QInputMethodEvent givenUp;
    QCoreApplication::sendEvent(editor, &givenUp);
    m_view->EndLabelEdit();
    QCOMPARE(m_tree->root()->label(), u"Gar"_s);
}

void tst_TreeView::aRowIsPaintedWholeWhicheverWayOneReads_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("from left to right") << Qt::LeftToRight;
    QTest::newRow("from right to left") << Qt::RightToLeft;
}

void tst_TreeView::aRowIsPaintedWholeWhicheverWayOneReads()
{
    QFETCH(const Qt::LayoutDirection, direction);
    build(*m_tree, garden);
    m_view->setLayoutDirection(direction);
    m_tree->select(m_tree->root());
    m_view->setFocus();
    const auto onScreen = [this] {
        QTest::qWait(50);
        const QPoint place = m_view->viewport()->mapTo(m_window.get(), QPoint());
        const QSize size = m_view->viewport()->size();
        return m_window->screen()->grabWindow(m_window->winId(), place.x(), place.y(), size.width(), size.height());
    };
    const QImage before = onScreen().toImage();
    QTest::keyClick(m_view, Qt::Key_Down);
    const QImage moved = onScreen().toImage();
    QVERIFY(moved != before);
    m_view->viewport()->update();
    QCOMPARE(moved, onScreen().toImage());
}

void tst_TreeView::aSmallerPaneKeepsTheSelectedRowInSight()
{
    build(*m_tree, garden);
    Entry *last = m_tree->root()->child(2);
    m_tree->select(last);
    m_view->resize(250, 60);
    const QRect row = m_view->visualRect(m_tree->indexOf(last));
    QVERIFY(m_view->viewport()->rect().contains(row.center()));
    QVERIFY(row.bottom() < m_view->viewport()->height());
}

void tst_TreeView::aSmallerPaneThatShowsOtherRowsStaysThere()
{
    build(*m_tree, garden);
    m_view->resize(250, 100);
    m_tree->select(m_tree->root()->child(2));
    m_view->verticalScrollBar()->setValue(0);
    m_view->resize(250, 60);
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
}

void tst_TreeView::tabInTheEditorCommitsAndLeavesThePane()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    m_view->StartLabelEdit();
    QTest::keyClicks(editor(), u"Ash"_s);
    QTest::keyClick(editor(), Qt::Key_Tab);
    QTRY_VERIFY(!editor());
    QCOMPARE(m_tree->selected()->label(), u"Ash"_s);
    QVERIFY(m_other->hasFocus());
}

void tst_TreeView::leavingTheEditorCommits()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    m_view->StartLabelEdit();
    QTest::keyClicks(editor(), u"Ash"_s);
    click(labelPoint(u"Tools"_s));
    QVERIFY(entry(u"Ash"_s));
    QCOMPARE(m_tree->selected(), entry(u"Tools"_s));
}

void tst_TreeView::aHiddenPaneEditsOnceItIsShown()
{
    build(*m_tree, garden);
    m_view->setPaneVisible(false);
    m_tree->select(entry(u"Oak"_s));
    m_view->StartLabelEdit();
    QVERIFY(!editor());
    m_view->setPaneVisible(true);
    QVERIFY(editor());
    QVERIFY(editor()->hasFocus());
    m_view->EndLabelEdit();
}

void tst_TreeView::manualLabelEditIgnoresClicksAndF2()
{
    build(*m_tree, garden);
    m_view->setLabelEdit(LabelEditMode::tvwManual);
    QCOMPARE(m_view->LabelEdit(), LabelEditMode::tvwManual);
    click(labelPoint(u"Oak"_s));
    QTest::qWait(QApplication::doubleClickInterval() + 1);
    click(labelPoint(u"Oak"_s));
    press(Qt::Key_F2);
    QTest::qWait(QApplication::doubleClickInterval() * 2);
    QVERIFY(!editor());
}

void tst_TreeView::automaticLabelEditOpensOnASecondClick()
{
    build(*m_tree, garden);
    m_view->setLabelEdit(LabelEditMode::tvwAutomatic);
    QCOMPARE(m_view->LabelEdit(), LabelEditMode::tvwAutomatic);
    m_view->setFocus();
    click(labelPoint(u"Oak"_s));
    QTest::qWait(QApplication::doubleClickInterval() + 1);
    QVERIFY(!editor());
    click(labelPoint(u"Oak"_s));
    QTRY_VERIFY(editor());
    QCOMPARE(editor()->text(), u"Oak"_s);
}

void tst_TreeView::aSecondClickBesideTheLabelDoesNotEdit()
{
    build(*m_tree, garden);
    m_view->setLabelEdit(LabelEditMode::tvwAutomatic);
    m_view->setFocus();
    m_tree->select(entry(u"Oak"_s));
    click({m_view->viewport()->width() - 4, labelPoint(u"Oak"_s).y()});
    QTest::qWait(QApplication::doubleClickInterval() * 2);
    QVERIFY(!editor());
}

void tst_TreeView::noMoreIsPastedIntoALabelThanItHasRoomFor()
{
    FakePorts fakes;
    m_view->setDialogs(&fakes.dialogs);
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    for (const qsizetype length :
         {qsizetype(limits::longestLabel), qsizetype(limits::longestLabel) + 1, qsizetype(20'000'000)}) {
        QGuiApplication::clipboard()->setText(QString(length, u'x'));
        m_view->StartLabelEdit();
        QVERIFY(editor());
        editor()->selectAll();
        QTest::keyClick(editor(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(editor()->text().size(), limits::longestLabel);
        QTest::keyClick(editor(), Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(fakes.dialogs.informations.size(), length > limits::longestLabel ? 1 : 0);
        fakes.dialogs.informations.clear();
    }
}

void tst_TreeView::aVeryLongLabelIsNotCut()
{
    build(*m_tree, garden);
    const QString label(70'000, u'x');
    m_tree->setLabel(m_tree->root(), label);
    m_tree->select(m_tree->root());
    m_view->StartLabelEdit();
    m_view->EndLabelEdit();
    QCOMPARE(m_tree->root()->label(), label);
}

void tst_TreeView::labelsAreEditedUpToABound()
{
    FakePorts fakes;
    m_view->setDialogs(&fakes.dialogs);
    build(*m_tree, garden);
    m_tree->select(m_tree->root());
    const QString longest(limits::longestEditedLabel, u'x');
    m_tree->setLabel(m_tree->root(), longest);
    m_view->StartLabelEdit();
    QVERIFY(editor());
    QCOMPARE(editor()->text(), longest);
    m_view->EndLabelEdit();
    QCOMPARE(m_tree->root()->label(), longest);
    QTRY_VERIFY(!editor());
    QCOMPARE(fakes.dialogs.informations, QStringList());

    m_tree->setLabel(m_tree->root(), longest + u'x');
    m_view->StartLabelEdit();
    QVERIFY(!editor());
    QCoreApplication::processEvents();
    QCOMPARE(fakes.dialogs.informations.size(), 1);
    QVERIFY(fakes.dialogs.informations[0].contains(u"It is kept whole"_s));
    m_view->EndLabelEdit();
    QCOMPARE(m_tree->root()->label(), longest + u'x');
}

void tst_TreeView::aLabelOfMegabytesIsNoWiderThanItsBeginning()
{
    build(*m_tree, garden);
    const QString label(5'000'000, u'x');
    m_tree->setLabel(m_tree->root(), shownLabel(label));
    OutlineWidth width(*m_view, *m_tree);
    const int shown = width.widestRow();
    m_tree->setLabel(m_tree->root(), label);
    QCOMPARE(width.widestRow(), shown);
    QCOMPARE(m_view->sizeHintForIndex(m_tree->indexOf(m_tree->root())).width(), shown - m_view->indentation());
    QAccessibleInterface *row = QAccessible::queryAccessibleInterface(m_view)->child(1);
    QCOMPARE(row->text(QAccessible::Name), shownLabel(label));
    QCOMPARE(m_tree->root()->label(), label);
}

void tst_TreeView::tabLeavesThePane()
{
    build(*m_tree, garden);
    m_tree->select(entry(u"Oak"_s));
    m_view->setFocus();
    press(Qt::Key_Tab);
    QVERIFY(m_other->hasFocus());
    QCOMPARE(m_tree->selected(), entry(u"Oak"_s));
}

void tst_TreeView::aHiddenPaneKeepsFocusAndScrollsWhenShown()
{
    build(*m_tree, garden);
    for (int i = 0; i < 100; ++i)
        m_tree->insert(Relationship::tvwChild, m_tree->root());
    m_view->setFocus();
    QVERIFY(m_view->PaneVisible());
    m_view->setPaneVisible(false);
    QVERIFY(!m_view->PaneVisible());
    m_view->ScrollTo(m_tree->root()->child(101));
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
    m_view->setPaneVisible(true);
    QVERIFY(m_view->verticalScrollBar()->value() > 0);
    QVERIFY(m_view->hasFocus());
}

void tst_TreeView::theSelectedRowIsKnownWhereItShows()
{
    Entry *root = m_tree->insert(Relationship::tvwFirst, nullptr);
    for (int i = 0; i < 100; ++i)
        m_tree->insert(Relationship::tvwChild, root);
    m_tree->setExpanded(root, true);
    QVERIFY(m_view->SelectedRow().isNull());
    m_tree->select(root->child(1));
    const QRect row = m_view->SelectedRow();
    QVERIFY(!row.isEmpty());
    QCOMPARE(m_view->HitTest(m_view->viewport()->mapFromGlobal(row.center())), root->child(1));
    QVERIFY(QRect(m_view->mapToGlobal(QPoint()), m_view->size()).contains(row));
    m_view->ScrollTo(root->child(99));
    QVERIFY(m_view->SelectedRow().isNull());
    m_view->ScrollTo(root->child(0));
    m_tree->setExpanded(root, false);
    QVERIFY(m_view->SelectedRow().isNull());
    m_tree->select(root);
    QVERIFY(!m_view->SelectedRow().isNull());
    m_view->hide();
    QVERIFY(m_view->SelectedRow().isNull());
}

void tst_TreeView::scrollToShowsTheRow()
{
    build(*m_tree, garden);
    for (int i = 0; i < 100; ++i)
        m_tree->insert(Relationship::tvwChild, m_tree->root());
    const Entry *last = m_tree->root()->child(102);
    QVERIFY(!m_view->viewport()->rect().intersects(m_view->visualRect(m_tree->indexOf(last))));
    m_view->ScrollTo(last);
    QVERIFY(m_view->viewport()->rect().intersects(m_view->visualRect(m_tree->indexOf(last))));
    m_view->ScrollTo(nullptr);
}

void tst_TreeView::aDeepEntryIsScrolledToSideways()
{
    Entry *deep = nullptr;
    for (int level = 0; level < 60; ++level) {
        deep = m_tree->insert(Relationship::tvwChild, deep);
        m_tree->setLabel(deep, u"Level %1"_s.arg(level));
        m_tree->setExpanded(deep, true);
    }
    const auto shows = [this](const Entry *entry) {
        const QRect row = m_view->visualRect(m_tree->indexOf(entry));
        const int width = m_view->sizeHintForIndex(m_tree->indexOf(entry)).width();
        return row.left() >= 0 && row.left() + width <= m_view->viewport()->width();
    };
    m_view->ScrollTo(deep);
    QVERIFY(shows(deep));
    m_tree->select(deep);
    press(Qt::Key_Up);
    QVERIFY(shows(deep->parent()));
    m_view->ScrollTo(m_tree->root());
    QVERIFY(shows(m_tree->root()));
    QCOMPARE(m_view->horizontalScrollBar()->value(), 0);
    // While the pane is hidden too.
    m_view->setPaneVisible(false);
    m_view->ScrollTo(deep);
    m_view->setPaneVisible(true);
    QVERIFY(shows(deep));
}

void tst_TreeView::aClickKeepsTheSidewaysPosition()
{
    build(*m_tree, garden);
    m_tree->setLabel(entry(u"Oak"_s), QString(300, u'x'));
    QCoreApplication::processEvents();
    QScrollBar *bar = m_view->horizontalScrollBar();
    QVERIFY(bar->maximum() > 100);
    bar->setValue(10);
    click(labelPoint(u"Tools"_s));
    QCOMPARE(m_tree->selected(), entry(u"Tools"_s));
    QCOMPARE(bar->value(), 10);
    // Nor does a label that the pane is too narrow for move it.
    click(labelPoint(QString(300, u'x')));
    QCOMPARE(m_tree->selected()->label(), QString(300, u'x'));
    QCOMPARE(bar->value(), 10);
}

void tst_TreeView::theFontIsThatOfTheRows()
{
    build(*m_tree, garden);
    const int before = m_view->visualRect(indexOf(u"Oak"_s)).height();
    QFont font = m_view->Font();
    font.setPointSize(40);
    m_view->setFont(font);
    QCOMPARE(m_view->Font().pointSize(), 40);
    QVERIFY(m_view->visualRect(indexOf(u"Oak"_s)).height() > before);
}

void tst_TreeView::hitTestFindsTheEntryOfARow()
{
    build(*m_tree, garden);
    QCOMPARE(m_view->HitTest(labelPoint(u"Oak"_s)), entry(u"Oak"_s));
    QCOMPARE(m_view->HitTest({5, 290}), nullptr);
    m_view->setHistory(nullptr);
    QCOMPARE(m_view->HitTest({5, 5}), nullptr);
}

void tst_TreeView::filesDroppedAreLeftToTheWindow()
{
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(u"/a.qly"_s)});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &enter);
    QVERIFY(!m_view->acceptDrops() && !m_view->viewport()->acceptDrops());
}

void tst_TreeView::imagesFollowTagAndSelection()
{
    build(*m_tree, garden);
    const auto picture = [this] {
        return m_view->grab(m_view->visualRect(indexOf(u"Oak"_s)).adjusted(0, 0, 0, -1)).toImage();
    };
    const QImage plain = picture();
    m_tree->setTagged(entry(u"Oak"_s), true);
    const QImage tagged = picture();
    QVERIFY(plain != tagged);
    m_tree->setTagged(entry(u"Oak"_s), false);
    QCOMPARE(picture(), plain);
    const auto shows = [this](const char *name) {
        const QString file = u":/quillery/icons/%1.svg"_s.arg(QLatin1StringView(name));
        return contains(m_view->grab(m_view->visualRect(indexOf(u"Oak"_s))).toImage(),
                        QIcon(file).pixmap(16, 16).toImage());
    };
    QVERIFY(shows("Folder") && !shows("FolderSelected"));
    m_tree->select(entry(u"Oak"_s));
    QVERIFY(shows("FolderSelected") && !shows("Folder"));
    m_tree->setTagged(entry(u"Oak"_s), true);
    QVERIFY(shows("FolderTaggedSelected"));
    m_tree->select(m_tree->root());
    QVERIFY(shows("FolderTagged"));
}

void tst_TreeView::longLabelsCanBeScrolledTo()
{
    build(*m_tree, garden);
    QCOMPARE(m_view->horizontalScrollBar()->maximum(), 0);
    m_tree->setLabel(entry(u"Oak"_s), QString(200, u'W'));
    QTRY_VERIFY(m_view->horizontalScrollBar()->maximum() > 0);
    m_tree->setExpanded(m_tree->root(), false);
    QTRY_COMPARE(m_view->horizontalScrollBar()->maximum(), 0);
    m_tree->setExpanded(m_tree->root(), true);
    QTRY_VERIFY(m_view->horizontalScrollBar()->maximum() > 0);
}

void tst_TreeView::aVeryDeepOutlineIsShownClosedAtItsEnd()
{
    m_tree->beginBulkChange();
    Entry *bottom = nullptr;
    for (int level = 1; level <= EntryTree::maximumCount; ++level) {
        bottom = m_tree->insert(Relationship::tvwChild, bottom);
        m_tree->setExpanded(bottom, true);
    }
    m_tree->select(bottom);
    m_tree->endBulkChange();
    m_view->ScrollTo(bottom);
    m_window->repaint();
    Entry *deepest = m_tree->root();
    while (deepest->level() < TreeView::deepestOpenLevel)
        deepest = deepest->firstChild();
    QVERIFY(m_view->isExpanded(m_tree->indexOf(deepest)));
    QVERIFY(!m_view->isExpanded(m_tree->indexOf(deepest->firstChild())));
    QVERIFY(deepest->firstChild()->expanded());
    // The user cannot open what lies beyond either.
    m_view->expand(m_tree->indexOf(deepest->firstChild()));
    QVERIFY(!m_view->isExpanded(m_tree->indexOf(deepest->firstChild())));
    m_tree->setExpandedAll(m_tree->root(), false);
    QCOMPARE(m_view->indexBelow(m_tree->index(0, 0)), QModelIndex());
    m_tree->setExpandedAll(m_tree->root(), true);
    QVERIFY(m_view->isExpanded(m_tree->indexOf(deepest)));
}

void tst_TreeView::anotherTreeReplacesTheFirst()
{
    build(*m_tree, garden);
    Outline outline;
    History history(outline);
    EntryTree &other = outline.tree;
    build(other, "+A\n  B");
    other.select(other.root()->firstChild());
    QSignalSpy expanded(m_view, &TreeView::entryExpanded);
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    m_view->setHistory(&history);
    QCOMPARE(m_view->entryTree(), &other);
    QCOMPARE(m_view->currentIndex(), other.indexOf(other.root()->firstChild()));
    QVERIFY(m_view->isExpanded(other.indexOf(other.root())));
    m_tree->setExpanded(entry(u"Tools"_s), true);
    m_tree->select(m_tree->root());
    QCOMPARE(expanded.size(), 0);
    QCOMPARE(clicked.size(), 0);
    m_view->setHistory(m_history.get());
    QCOMPARE(difference(), QString());
}

void tst_TreeView::theTreeMayGoFirst()
{
    build(*m_tree, garden);
    m_tree->select(m_tree->root());
    m_history.reset();
    m_outline.reset();
    m_window->repaint();
    m_view->setFocus();
    press(Qt::Key_Down);
    m_view->StartLabelEdit();
    m_view->ScrollTo(nullptr);
    QCOMPARE(m_view->entryTree(), nullptr);
    makeOutline();
}

void tst_TreeView::randomChangesKeepViewAndTreeAlike()
{
    const QAbstractItemModelTester tester(m_tree, QAbstractItemModelTester::FailureReportingMode::QtTest);
    build(*m_tree, garden);
    quint32 state = 4711;
    const auto random = [&state](int below) {
        state = state * 1664525u + 1013904223u;
        return static_cast<int>((state >> 8) % static_cast<quint32>(below));
    };
    QSignalSpy clicked(m_view, &TreeView::nodeClicked);
    for (int step = 0; step < 600; ++step) {
        Entry *any = m_tree->collection().at(1 + random(m_tree->entryCount()));
        switch (random(9)) {
        case 0:
        case 1:
            m_tree->insert(Relationship::tvwChild, any);
            break;
        case 2:
            if (any != m_tree->root())
                m_tree->insertCopy(*m_tree, any, Relationship::tvwNext, any);
            break;
        case 3:
            if (any != m_tree->root())
                m_tree->remove(any);
            break;
        case 4:
        case 5:
            m_tree->setExpanded(any, random(4) > 0);
            break;
        case 6:
            m_tree->select(random(5) == 0 ? nullptr : any);
            break;
        case 7:
            m_tree->setLabel(any, QString::number(random(100)));
            m_tree->setSorted(any, true);
            break;
        default:
            m_tree->setExpandedAll(any, random(2) == 0);
            break;
        }
        QCOMPARE(difference(), QString());
        if (m_tree->entryCount() > 400)
            m_tree->remove(m_tree->root()->firstChild());
    }
    QCOMPARE(clicked.size(), 0);
    m_window->repaint();
}

QTEST_MAIN(tst_TreeView)
#include "tst_TreeView.moc"
