// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "commands/ToolbarTable.h"
#include "support/NativeBytes.h"
#include "support/OutlineState.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"

#include "document/modDoc.h"
#include "outline/EntryDrag.h"
#include "outline/modOutline.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <QAccessible>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

// Several selected entries in the whole program, by mouse and keys.
class tst_SeveralInMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void mouseAndKeysSelectSeveral_data();
    void mouseAndKeysSelectSeveral();
    void whatAClosedBranchHidesIsNotSelected();
    void aCommandActsOnAllThatAreSelected_data();
    void aCommandActsOnAllThatAreSelected();
    void aCommandThatNotAllCanTakeIsDisabled_data();
    void aCommandThatNotAllCanTakeIsDisabled();
    void aReadOnlyDocumentOffersWhatItOffersForOne();
    void everythingElseReturnsToTheCurrentOne_data();
    void everythingElseReturnsToTheCurrentOne();
    void aLabelThatIsBeingTypedIsKeptByACommandOnSeveral();
    void theQuestionAndTheStatusBarSayHowMany();
    void aDragTakesAllThatAreSelected_data();
    void aDragTakesAllThatAreSelected();
    void aPressWithAModifierDragsItsEntryAlone_data();
    void aPressWithAModifierDragsItsEntryAlone();
    void theRightButtonsMenuIsForAllOfThem();
    void severalGoToAnotherDocument();
    void theCurrentOneAmongSeveralIsToldApart();
    void assistiveTechnologySeesSeveral();

private:
    Document &plant(const QStringList &outline);

    TreeView &view() const { return *dynamic_cast<frmDocument &>(DocumentActive()->view()->window).treeView; }

    QPoint middleOf(const QString &label) const;
    void click(const QString &label, Qt::KeyboardModifiers modifiers = {});
    void play(const QString &gestures);
    void drag(const QString &from, const QString &to, Qt::KeyboardModifiers modifiers = {},
              Qt::MouseButton button = Qt::LeftButton);
    QToolButton &button(std::string_view key) const;
    QString statusText() const;

    std::unique_ptr<MainFixture> m_main;
};

namespace severalInMain
{

// As dumpOutline(), with "<" for each selected entry, and "^" for the current one where several are.
QStringList dump()
{
    const EntryTree &tree = DocumentActive()->tree;
    QStringList lines;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root())) {
        QString marks;
        marks += QLatin1String(entry->expanded() ? "+" : "");
        marks += QLatin1String(entry->tagged() ? "*" : "");
        marks += QLatin1String(tree.isSelected(entry) ? "<" : "");
        marks += QLatin1String(tree.areSeveralSelected() && entry == tree.selected() ? "^" : "");
        lines.append(QString(entry->level() - 1, u' ') + entry->label() + (marks.isEmpty() ? QString() : u' ' + marks));
    }
    return lines;
}

QStringList lines(const char *text)
{
    return QString::fromLatin1(text).split(u'|');
}

QStringList gardenLines()
{
    return lines("Root +| a +|  a1|  a2|  a3| b| c +|  c1| d| e");
}

} // namespace severalInMain

using severalInMain::dump;
using severalInMain::gardenLines;
using severalInMain::lines;

void tst_SeveralInMain::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

void tst_SeveralInMain::cleanup()
{
    ResetDraggingFlags();
    modOutline::copiedEntry().clear();
    m_main.reset();
}

Document &tst_SeveralInMain::plant(const QStringList &outline)
{
    modDoc::DocNew();
    Document &document = *DocumentActive();
    plantOutline(rawOutline(document).tree, outline);
    Entry *selected = document.tree.selected();
    modNodes::NodeSelect(document, selected ? selected : document.tree.root());
    document.history.startAnew();
    document.history.markSaved();
    view().setFocus();
    return document;
}

QPoint tst_SeveralInMain::middleOf(const QString &label) const
{
    const EntryTree &tree = DocumentActive()->tree;
    const QRect row = view().visualRect(tree.indexOf(entryLabelled(tree, label)));
    return {row.left() + 30, row.center().y()};
}

void tst_SeveralInMain::click(const QString &label, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(view().viewport(), Qt::LeftButton, modifiers, middleOf(label));
}

// "b" clicks on an entry, "^b" with Ctrl, "~b" with Shift, "^~b" with both; what is in brackets is a key.
void tst_SeveralInMain::play(const QString &gestures)
{
    for (QString each : gestures.split(u' ')) {
        Qt::KeyboardModifiers modifiers;
        const bool isKey = each.startsWith(u'[');
        if (isKey)
            each = each.mid(1, each.size() - 2);
        for (; each.startsWith(u'^') || each.startsWith(u'~'); each.remove(0, 1))
            modifiers |= each.startsWith(u'^') ? Qt::ControlModifier : Qt::ShiftModifier;
        if (isKey)
            QTest::keyClick(&view(), Qt::Key(QKeySequence(each)[0].key()), modifiers);
        else
            click(each, modifiers);
    }
}

void tst_SeveralInMain::drag(const QString &from, const QString &to, Qt::KeyboardModifiers modifiers,
                             Qt::MouseButton button)
{
    QWidget *viewport = view().viewport();
    const QPoint place = middleOf(to);
    const QPoint target = from == to ? place + QPoint(12, 0) : place;
    QTest::mousePress(viewport, button, modifiers, middleOf(from));
    QMouseEvent move(QEvent::MouseMove, target, viewport->mapToGlobal(target), Qt::NoButton, button, modifiers);
    QCoreApplication::sendEvent(viewport, &move);
    QTest::mouseRelease(viewport, button, modifiers, target);
}

QToolButton &tst_SeveralInMain::button(std::string_view key) const
{
    const QString name = u"tb"_s + QLatin1StringView(toolbarTable[toolbarRow(key)].icon);
    return *m_main->main.findChild<QToolButton *>(name);
}

QString tst_SeveralInMain::statusText() const
{
    m_main->refresh();
    return m_main->main.findChild<QLabel *>(u"sbStatusBarText"_s)->text();
}

void tst_SeveralInMain::mouseAndKeysSelectSeveral_data()
{
    QTest::addColumn<QString>("gestures");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("current");
    QTest::newRow("a click selects one") << u"b"_s << u"b"_s << u"b"_s;
    QTest::newRow("Ctrl adds") << u"b ^d"_s << u"b d"_s << u"d"_s;
    QTest::newRow("Ctrl adds in any order") << u"d ^b ^a2"_s << u"a2 b d"_s << u"a2"_s;
    QTest::newRow("Ctrl takes away") << u"b ^d ^e ^d"_s << u"b e"_s << u"d"_s;
    QTest::newRow("one is left by itself") << u"b ^d ^d"_s << u"b"_s << u"b"_s;
    QTest::newRow("the last one stays") << u"b ^b"_s << u"b"_s << u"b"_s;
    QTest::newRow("Shift selects a range") << u"a2 ~c"_s << u"a2 a3 b c"_s << u"c"_s;
    QTest::newRow("Shift selects a range upwards") << u"c ~a2"_s << u"a2 a3 b c"_s << u"a2"_s;
    QTest::newRow("a range begins where the last one did") << u"b ~d ~a3"_s << u"a3 b"_s << u"a3"_s;
    QTest::newRow("a range begins where Ctrl was") << u"a ^c ~e"_s << u"c c1 d e"_s << u"e"_s;
    QTest::newRow("Ctrl and Shift add a range") << u"a1 ^c ^~e"_s << u"a1 c c1 d e"_s << u"e"_s;
    QTest::newRow("a click returns to one") << u"b ~d c"_s << u"c"_s << u"c"_s;
    QTest::newRow("a click elsewhere returns to one") << u"b ~d a"_s << u"a"_s << u"a"_s;
    QTest::newRow("Shift and arrows") << u"b [~Down] [~Down]"_s << u"b c c1"_s << u"c1"_s;
    QTest::newRow("Shift and arrows back") << u"b [~Down] [~Down] [~Up]"_s << u"b c"_s << u"c"_s;
    QTest::newRow("Shift and arrows over the beginning") << u"b [~Down] [~Up] [~Up]"_s << u"a3 b"_s << u"a3"_s;
    QTest::newRow("Shift and End") << u"c1 [~End]"_s << u"c1 d e"_s << u"e"_s;
    QTest::newRow("Shift and Home") << u"a1 [~Home]"_s << u"Root a a1"_s << u"Root"_s;
    QTest::newRow("an arrow returns to one") << u"b ~d [Down]"_s << u"e"_s << u"e"_s;
    QTest::newRow("an arrow that leads nowhere returns to one") << u"d ~e [Down]"_s << u"e"_s << u"e"_s;
    QTest::newRow("Esc returns to one") << u"b ~d [Esc]"_s << u"d"_s << u"d"_s;
    QTest::newRow("Ctrl and arrows with one are arrows") << u"b [^Down]"_s << u"c"_s << u"c"_s;
    QTest::newRow("Ctrl and arrows pass over") << u"b ~c [^Down] [^Down]"_s << u"b c"_s << u"d"_s;
    QTest::newRow("Ctrl and Space add") << u"b ~c [^Down] [^Down] [^Space]"_s << u"b c d"_s << u"d"_s;
    QTest::newRow("Ctrl and Space take away") << u"b ~d [^Up] [^Up] [^Space]"_s << u"b c1 d"_s << u"c"_s;
    QTest::newRow("Ctrl and A select the siblings") << u"c [^A]"_s << u"a b c d e"_s << u"c"_s;
    QTest::newRow("Ctrl and A below") << u"a3 [^A]"_s << u"a1 a2 a3"_s << u"a3"_s;
    QTest::newRow("Ctrl and A on the root") << u"Root [^A]"_s << u"Root"_s << u"Root"_s;
    QTest::newRow("a letter returns to one") << u"b ~d [R]"_s << u"Root"_s << u"Root"_s;
    QTest::newRow("an arrow to the side returns to one") << u"b ~c [Right]"_s << u"c1"_s << u"c1"_s;
}

void tst_SeveralInMain::mouseAndKeysSelectSeveral()
{
    QFETCH(const QString, gestures);
    QFETCH(const QString, selected);
    QFETCH(const QString, current);
    Document &document = plant(gardenLines());
    play(gestures);
    QStringList labels;
    for (const Entry *entry : document.tree.selectedEntries())
        labels.append(entry->label());
    QCOMPARE(labels.join(u' '), selected);
    QCOMPARE(document.tree.selected()->label(), current);
    QCOMPARE(document.texts.entryAsShown(), document.tree.selected());
    // The rows show it.
    QStringList rows;
    for (const QModelIndex &index : view().selectionModel()->selectedIndexes())
        rows.append(index.data().toString());
    rows.sort();
    QStringList sorted = labels;
    sorted.sort();
    QCOMPARE(rows, sorted);
    QCOMPARE(view().currentIndex(), document.tree.indexOf(document.tree.selected()));
    if (labels.size() > 1)
        QCOMPARE(statusText(), u"%1 entries selected"_s.arg(labels.size()));
    else
        QCOMPARE(statusText(), current);
    QCOMPARE(document.tree.brokenInvariant(), QString());
}

// By its sign.
void tst_SeveralInMain::whatAClosedBranchHidesIsNotSelected()
{
    Document &document = plant(gardenLines());
    play(u"b ~d [^Up] [^Up]"_s);
    QCOMPARE(document.tree.selectedCount(), 4);
    const QRect row = view().visualRect(document.tree.indexOf(entryLabelled(document.tree, u"c"_s)));
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {},
                      QPoint(row.left() - view().indentation() / 2, row.center().y()));
    QCOMPARE(dump(), lines("Root +| a +|  a1|  a2|  a3| b <| c <^|  c1| d <| e"));
    QCOMPARE(view().selectionModel()->selectedIndexes().size(), 3);
}

void tst_SeveralInMain::aCommandActsOnAllThatAreSelected_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("gestures");
    QTest::addColumn<QStringList>("outcome");
    const auto row = [](const char *name, const char *item, const char *key, const char *gestures,
                        const char *outcome) {
        QTest::newRow(name) << QByteArray(item) << QByteArray(key) << QString::fromLatin1(gestures) << lines(outcome);
    };
    row("delete one", "mnuOutlineDelete", "Delete Entry", "b", "Root +| a +<|  a1|  a2|  a3| c +|  c1| d| e");
    row("delete two neighbours", "mnuOutlineDelete", "Delete Entry", "b ^c", "Root +| a +<|  a1|  a2|  a3| d| e");
    row("delete with gaps", "mnuOutlineDelete", "Delete Entry", "a ^c ^e", "Root +| b| d <");
    row("delete all children", "mnuOutlineDelete", "Delete Entry", "a1 [^A]", "Root +| a <| b| c +|  c1| d| e");
    row("delete nested ones", "mnuOutlineDelete", "Delete Entry", "a ~a2 ^d", "Root +| b| c +<|  c1| e");
    row("delete at different depths", "mnuOutlineDelete", "Delete Entry", "e ^a2 ^c1",
        "Root +| a +|  a1|  a3| b| c <| d");
    row("delete beside the current one", "mnuOutlineDelete", "Delete Entry", "b ~c [^Down] [^Down]",
        "Root +| a +|  a1|  a2|  a3| d <| e");
    row("tag two neighbours", "mnuOutlineTaggedEntry", "Tag Entry", "b ~c",
        "Root +| a +|  a1|  a2|  a3| b *<| c +*<^|  c1| d| e");
    row("tag nested ones", "mnuOutlineTaggedEntry", "Tag Entry", "c ~c1",
        "Root +| a +|  a1|  a2|  a3| b| c +*<|  c1 *<^| d| e");
    row("indent two neighbours", "mnuOutlineIndent", "Indent Entry", "b ~c",
        "Root +| a +|  a1|  a2|  a3|  b <|  c +<^|   c1| d| e");
    row("indent with gaps", "mnuOutlineIndent", "Indent Entry", "b ^d",
        "Root +| a +|  a1|  a2|  a3|  b <| c +|  c1|  d <^| e");
    row("indent at different depths", "mnuOutlineIndent", "Indent Entry", "a2 ^d",
        "Root +| a +|  a1 +|   a2 <|  a3| b| c +|  c1|  d <^| e");
    row("indent nested ones", "mnuOutlineIndent", "Indent Entry", "c ~d",
        "Root +| a +|  a1|  a2|  a3| b +|  c +<|   c1 <|  d <^| e");
    row("unindent two neighbours", "mnuOutlineUnindent", "Unindent Entry", "a1 ~a2",
        "Root +| a +|  a3| a1 <| a2 <^| b| c +|  c1| d| e");
    row("unindent with gaps", "mnuOutlineUnindent", "Unindent Entry", "a1 ^a3 ^c1",
        "Root +| a +|  a2| a1 <| a3 <| b| c +| c1 <^| d| e");
    row("move two neighbours up", "mnuOutlineMoveUp", "Move Entry Up", "b ~c",
        "Root +| b <| c +<^|  c1| a +|  a1|  a2|  a3| d| e");
    row("move up with gaps", "mnuOutlineMoveUp", "Move Entry Up", "b ^d",
        "Root +| b <| a +|  a1|  a2|  a3| d <^| c +|  c1| e");
    row("move up into the branch above", "mnuOutlineMoveUp", "Move Entry Up", "c1 ^d",
        "Root +| a +|  a1|  a2|  a3| b +|  c1 <| d <^| c +| e");
    row("move two neighbours down", "mnuOutlineMoveDown", "Move Entry Down", "a2 ~a1",
        "Root +| a +|  a3|  a1 <^|  a2 <| b| c +|  c1| d| e");
    row("move down with gaps", "mnuOutlineMoveDown", "Move Entry Down", "a1 ^b",
        "Root +| a +|  a2|  a1 <|  a3| c +|  c1| b <^| d| e");
    row("move down into the branch below", "mnuOutlineMoveDown", "Move Entry Down", "a2 ~a3",
        "Root +| a +|  a1| b +|  a2 <|  a3 <^| c +|  c1| d| e");
    row("move first", "mnuOutlineMoveFirst", "Move Entry First", "b ^d ^a3",
        "Root +| b <| d <| a +|  a3 <^|  a1|  a2| c +|  c1| e");
    row("move last", "mnuOutlineMoveLast", "Move Entry Last", "a ^c",
        "Root +| b| d| e| a +<|  a1|  a2|  a3| c +<^|  c1");
    row("join neighbours", "mnuToolsJoin", "", "b ~d", "Root +| a +|  a1|  a2|  a3| b +<|  c1| e");
}

void tst_SeveralInMain::aCommandActsOnAllThatAreSelected()
{
    QFETCH(const QByteArray, item);
    QFETCH(const QByteArray, key);
    QFETCH(const QString, gestures);
    QFETCH(const QStringList, outcome);
    for (const bool byButton : {false, true}) {
        // Not all have one.
        if (byButton && key.isEmpty())
            continue;
        Document &document = plant(gardenLines());
        play(gestures);
        // A click on another entry counts as a change.
        document.giveUpChanges();
        const QStringList planted = dump();
        const QByteArray before = nativeBytes(document.outline());
        m_main->app.core.dialogs.answers = {Answer::Yes};
        m_main->refresh();
        if (byButton)
            button(key.toStdString()).click();
        else
            m_main->choose(item.constData());
        m_main->app.core.dialogs.answers.clear();
        QCOMPARE(dump(), outcome);
        QCOMPARE(document.history.stepCount(), 1);
        QCOMPARE(document.texts.entryAsShown(), document.tree.selected());
        const QByteArray after = nativeBytes(document.outline());
        m_main->choose("mnuToolsUndo");
        QCOMPARE(dump(), planted);
        QCOMPARE(nativeBytes(document.outline()), before);
        QVERIFY(!document.m_bDataChanged());
        m_main->choose("mnuToolsRedo");
        QCOMPARE(dump(), outcome);
        QCOMPARE(nativeBytes(document.outline()), after);
        QCOMPARE(document.tree.brokenInvariant(), QString());
    }
}

void tst_SeveralInMain::aCommandThatNotAllCanTakeIsDisabled_data()
{
    QTest::addColumn<QString>("gestures");
    QTest::addColumn<QString>("disabled");
    // Delete, tag, Indent, Unindent, Up, Down, First, Last, Join.
    QTest::newRow("the root among them") << u"Root ~a"_s << u"D T I U ^ v F L J"_s;
    QTest::newRow("the first child of the root") << u"a ~b"_s << u"I U ^ F"_s;
    QTest::newRow("one of them is first") << u"a1 ^a3"_s << u"I ^ F L J"_s;
    QTest::newRow("the last of all") << u"d ~e"_s << u"U v L"_s;
    QTest::newRow("an only child") << u"c1 ^d"_s << u"I U F L J"_s;
    QTest::newRow("everything is possible but unindenting") << u"b ^d"_s << u"U J"_s;
}

void tst_SeveralInMain::aCommandThatNotAllCanTakeIsDisabled()
{
    QFETCH(const QString, gestures);
    QFETCH(const QString, disabled);
    plant(gardenLines());
    play(gestures);
    constexpr std::pair<const char *, const char *> items[] = {
        {"D", "mnuOutlineDelete"},    {"T", "mnuOutlineTaggedEntry"}, {"I", "mnuOutlineIndent"},
        {"U", "mnuOutlineUnindent"},  {"^", "mnuOutlineMoveUp"},      {"v", "mnuOutlineMoveDown"},
        {"F", "mnuOutlineMoveFirst"}, {"L", "mnuOutlineMoveLast"},    {"J", "mnuToolsJoin"},
    };
    QStringList found;
    for (const auto &[letter, item] : items) {
        if (!m_main->enabled(item))
            found.append(QString::fromLatin1(letter));
    }
    QCOMPARE(found.join(u' '), disabled);
}

void tst_SeveralInMain::aReadOnlyDocumentOffersWhatItOffersForOne()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"fixed.qly"_s);
    Document &document = plant(gardenLines());
    QCOMPARE(modDoc::DocSave(file), SaveOutcome::Saved);
    document.m_sFile = file;
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    document.lookAtFileAgain();
    play(u"b ^d"_s);
    QCOMPARE(document.tree.selectedCount(), 2);
    for (const char *item : {"mnuOutlineDelete", "mnuOutlineIndent", "mnuOutlineMoveUp", "mnuOutlineMoveLast"})
        QVERIFY2(!m_main->enabled(item), item);
    for (const char *item : {"mnuOutlineCopy", "mnuOutlineTaggedEntry"})
        QVERIFY2(m_main->enabled(item), item);
    drag(u"b"_s, u"e"_s);
    QCOMPARE(document.tree.root()->child(1)->label(), u"b"_s);
    QVERIFY(!document.history.canUndo());
}

void tst_SeveralInMain::everythingElseReturnsToTheCurrentOne_data()
{
    QTest::addColumn<QByteArray>("item");
    for (const char *item :
         {"mnuOutlineExpand", "mnuOutlineCollapse", "mnuOutlineInsertAbove", "mnuOutlineInsertBelow",
          "mnuOutlineInsertChild", "mnuOutlineRename", "mnuOutlineSortAll", "typing", "mnuToolsUndo"})
        QTest::newRow(item) << QByteArray(item);
}

void tst_SeveralInMain::everythingElseReturnsToTheCurrentOne()
{
    QFETCH(const QByteArray, item);
    const bool opens = item == "mnuOutlineExpand";
    Document &document = plant({u"Root +"_s, u" c"_s, opens ? u" b"_s : u" b +"_s, u"  d"_s, u" a"_s});
    document.history.setLabel(entryLabelled(document.tree, u"a"_s), u"aa"_s);
    play(u"c ~b"_s);
    QCOMPARE(document.tree.selectedCount(), 2);
    if (item == "typing") {
        frmDocument &form = dynamic_cast<frmDocument &>(document.view()->window);
        form.textBox->setFocus();
        QTest::keyClicks(form.textBox, u"x"_s);
    } else {
        m_main->choose(item.constData());
        if (item == "mnuOutlineRename")
            QTest::keyClicks(view().findChild<QLineEdit *>(), u"y"_s);
        document.view()->trvOutline.EndLabelEdit();
    }
    QCOMPARE(document.tree.selectedCount(), 1);
    QVERIFY(document.tree.isSelected(document.tree.selected()));
    QCOMPARE(view().selectionModel()->selectedIndexes(), {view().currentIndex()});
}

void tst_SeveralInMain::aLabelThatIsBeingTypedIsKeptByACommandOnSeveral()
{
    Document &document = plant(gardenLines());
    play(u"b ~c"_s);
    m_main->choose("mnuOutlineRename");
    auto *editor = view().findChild<QLineEdit *>();
    QVERIFY(editor);
    QTest::keyClicks(editor, u"new"_s);
    m_main->choose("mnuOutlineMoveDown");
    // The label is a change of its own, which leaves the entry that it names.
    QVERIFY(entryLabelled(document.tree, u"new"_s));
    QCOMPARE(document.tree.selectedCount(), 1);
}

void tst_SeveralInMain::theQuestionAndTheStatusBarSayHowMany()
{
    Document &document = plant(gardenLines());
    play(u"a ^c ^e"_s);
    FakeDialogs &dialogs = m_main->app.core.dialogs;
    dialogs.answers = {Answer::No};
    m_main->choose("mnuOutlineDelete");
    QCOMPARE(dialogs.questions.last(),
             u"Do you really want to delete the 3 selected entries, including any children?"_s);
    QCOMPARE(document.tree.selectedCount(), 3);
    dialogs.answers = {Answer::Yes};
    m_main->choose("mnuOutlineDelete");
    QCOMPARE(document.history.undoName(), u"deletion of 3 entries"_s);
    QCOMPARE(statusText(), u"Deletion of 3 entries (7 with their branches) – Ctrl+Z takes it back"_s);
    m_main->choose("mnuToolsUndo");
    QCOMPARE(document.tree.selectedCount(), 3);
    play(u"b ^d"_s);
    m_main->choose("mnuOutlineMoveUp");
    QCOMPARE(statusText(), u"Move of 2 entries – Ctrl+Z takes it back"_s);
    m_main->choose("mnuOutlineTaggedEntry");
    QCOMPARE(statusText(), u"Tagging of 2 entries – Ctrl+Z takes it back"_s);
    QCOMPARE(m_main->action(u"mnuOutlineTaggedEntry"_s)->text(), u"Unta&g entry    Alt+T"_s);
    m_main->choose("mnuOutlineTaggedEntry");
    QCOMPARE(document.history.undoName(), u"untagging of 2 entries"_s);
    // Where some are, all are.
    click(u"b"_s);
    m_main->choose("mnuOutlineTaggedEntry");
    play(u"^d"_s);
    m_main->choose("mnuOutlineTaggedEntry");
    QCOMPARE(document.tree.taggedCount(), 2);
}

void tst_SeveralInMain::aDragTakesAllThatAreSelected_data()
{
    QTest::addColumn<QString>("gestures");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("copies");
    QTest::addColumn<QStringList>("outcome");
    const auto row = [](const char *name, const char *gestures, const char *from, const char *to, bool copies,
                        const char *outcome) {
        QTest::newRow(name) << QString::fromLatin1(gestures) << QString::fromLatin1(from) << QString::fromLatin1(to)
                            << copies << lines(outcome);
    };
    row("two neighbours", "b ~c", "b", "e", false, "Root +| a +|  a1|  a2|  a3| d| e| b <^| c +<|  c1");
    row("with gaps, upwards", "e ^c", "e", "a2", false, "Root +| a +|  a1|  a2|  c +<|   c1|  e <^|  a3| b| d");
    row("at different depths", "a1 ^c1 ^d", "c1", "b", false, "Root +| a +|  a2|  a3| b| a1 <| c1 <^| d <| c +| e");
    row("nested ones", "a ~a2", "a1", "e", false, "Root +| b| c +|  c1| d| e| a +<|  a1 <^|  a2 <|  a3");
    row("to the root", "c1 ^d", "d", "Root", false, "Root +| c1 <| d <^| a +|  a1|  a2|  a3| b| c +| e");
    row("the root's first child with others", "a ^d", "d", "Root", false,
        "Root +| b| c +|  c1| e| a +<|  a1|  a2|  a3| d <^");
    row("to the one before them", "b ~c", "c", "a", false, "Root +| b <| c +<^|  c1| a +|  a1|  a2|  a3| d| e");
    row("onto another of them", "b ~d", "b", "d", false, "Root +| a +|  a1|  a2|  a3| b <^| c +<|  c1 <| d <| e");
    row("into one of them", "b ^c", "b", "c1", false, "Root +| a +|  a1|  a2|  a3| b <^| c +<|  c1| d| e");
    row("one that is not selected goes alone", "b ~c", "e", "b", false,
        "Root +| a +|  a1|  a2|  a3| b| e <| c +|  c1| d");
    row("copies", "b ^d", "b", "e", true, "Root +| a +|  a1|  a2|  a3| b| c +|  c1| d| e| b <| d <^");
    row("onto itself", "c ~d", "d", "d", false, "Root +| a +|  a1|  a2|  a3| b +|  c +<|   c1 <|  d <^| e");
}

void tst_SeveralInMain::aDragTakesAllThatAreSelected()
{
    QFETCH(const QString, gestures);
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    QFETCH(const bool, copies);
    QFETCH(const QStringList, outcome);
    Document &document = plant(gardenLines());
    play(gestures);
    const QStringList planted = contentOf(document.outline());
    drag(from, to, copies ? Qt::ControlModifier : Qt::NoModifier);
    QCOMPARE(dump(), outcome);
    if (!document.history.canUndo())
        return;
    QCOMPARE(document.history.stepCount(), 1);
    const QByteArray after = nativeBytes(document.outline());
    m_main->choose("mnuToolsUndo");
    QCOMPARE(contentOf(document.outline()), planted);
    m_main->choose("mnuToolsRedo");
    QCOMPARE(dump(), outcome);
    QCOMPARE(nativeBytes(document.outline()), after);
}

void tst_SeveralInMain::aPressWithAModifierDragsItsEntryAlone_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("Ctrl") << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("Shift") << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void tst_SeveralInMain::aPressWithAModifierDragsItsEntryAlone()
{
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    plant(gardenLines());
    click(u"b"_s);
    drag(u"d"_s, u"e"_s, modifiers);
    if (modifiers == Qt::ControlModifier)
        QCOMPARE(dump(), lines("Root +| a +|  a1|  a2|  a3| b| c +|  c1| d| e| d <"));
    else
        QCOMPARE(dump(), lines("Root +| a +|  a1|  a2|  a3| b| c +|  c1| e| d <"));
}

void tst_SeveralInMain::theRightButtonsMenuIsForAllOfThem()
{
    Document &document = plant(gardenLines());
    play(u"b ^d"_s);
    QTimer::singleShot(0, this, [] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        menu->setActiveAction(menu->findChild<QAction *>(u"mnuOutlineTaggedEntry"_s));
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QTest::mouseClick(view().viewport(), Qt::RightButton, {}, middleOf(u"b"_s));
    QTRY_COMPARE(document.tree.taggedCount(), 2);
    QCOMPARE(document.tree.selectedCount(), 2);
    QCOMPARE(document.tree.selected()->label(), u"b"_s);
    // That of another entry is its own.
    QTimer::singleShot(0, this, [] {
        QVERIFY(QApplication::activePopupWidget());
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    });
    QTest::mouseClick(view().viewport(), Qt::RightButton, {}, middleOf(u"e"_s));
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QCOMPARE(document.tree.selectedCount(), 1);
    QCOMPARE(document.tree.selected()->label(), u"e"_s);
}

void tst_SeveralInMain::severalGoToAnotherDocument()
{
    Document &source = plant(gardenLines());
    play(u"b ^c ^e"_s);
    source.history.setTagged(entryLabelled(source.tree, u"b"_s), true);
    play(u"b ^c ^e"_s);
    QTest::keyClick(&view(), Qt::Key_C, Qt::AltModifier);
    const QByteArray before = nativeBytes(source.outline());
    Document &target = plant({u"There +"_s, u" x <"_s, u" y"_s});
    QTest::keyClick(&view(), Qt::Key_P, Qt::AltModifier);
    const QStringList pasted = {u"There +"_s, u" x"_s, u" b <"_s, u" c +<"_s, u"  c1"_s, u" e <^"_s, u" y"_s};
    QCOMPARE(dump(), pasted);
    QCOMPARE(target.history.undoName(), u"pasting of 3 entries"_s);
    QCOMPARE(nativeBytes(source.outline()), before);
    m_main->choose("mnuToolsUndo");
    QCOMPARE(dump(), QStringList({u"There +"_s, u" x <"_s, u" y"_s}));
    m_main->choose("mnuOutlinePasteAndDelete");
    QCOMPARE(dump(), pasted);
    QVERIFY(!m_main->enabled("mnuOutlinePaste"));
    QStringList left;
    for (const Entry *entry = source.tree.root(); entry; entry = nextInOutline(entry, source.tree.root()))
        left.append(entry->label());
    QCOMPARE(left.join(u' '), u"Root a a1 a2 a3 d"_s);
    QCOMPARE(source.history.undoName(), u"deletion of 3 entries"_s);
    QCOMPARE(source.tree.selected()->label(), u"d"_s);
}

void tst_SeveralInMain::theCurrentOneAmongSeveralIsToldApart()
{
    Document &document = plant(gardenLines());
    play(u"b ^d"_s);
    const auto colourOf = [&](const char *label) {
        const QRect row = view().visualRect(document.tree.indexOf(entryLabelled(document.tree, QLatin1String(label))));
        const QImage shot = view().viewport()->grab().toImage();
        return shot.pixelColor(row.right() - 5, row.center().y());
    };
    const QColor current = colourOf("d");
    const QColor selected = colourOf("b");
    const QColor neither = colourOf("c");
    QVERIFY(current != selected);
    QVERIFY(selected != neither);
    click(u"b"_s);
    QCOMPARE(colourOf("b"), current);
    QCOMPARE(colourOf("d"), neither);
}

void tst_SeveralInMain::assistiveTechnologySeesSeveral()
{
    plant(gardenLines());
    play(u"b ^d"_s);
    QAccessibleInterface *outline = QAccessible::queryAccessibleInterface(&view());
    QVERIFY(outline);
    QCOMPARE(outline->text(QAccessible::Description), u"2 entries selected"_s);
    QCOMPARE(outline->tableInterface()->selectedRowCount(), 2);
    QStringList states;
    QAccessibleTableInterface *table = outline->tableInterface();
    for (int row = 0; row < table->rowCount(); ++row) {
        QAccessibleInterface *cell = table->cellAt(row, 0);
        if (cell->state().selected || cell->state().focused)
            states.append(cell->text(QAccessible::Name) + (cell->state().selected ? u" selected"_s : QString()) +
                          (cell->state().focused ? u" current"_s : QString()));
    }
    QCOMPARE(states, QStringList({u"b selected"_s, u"d selected current"_s}));
    QTest::keyClick(&view(), Qt::Key_Escape);
    QCOMPARE(outline->text(QAccessible::Description), QString());
    QCOMPARE(outline->tableInterface()->selectedRowCount(), 1);
}

QTEST_MAIN(tst_SeveralInMain)
#include "tst_SeveralInMain.moc"
