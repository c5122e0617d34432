// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modDoc.h"
#include "document/modNodes.h"
#include "model/StoredText.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"

#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class tst_modNodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void insertingIntoAnEmptyTreeMakesTheRoot();
    void insertingBesideTheRootMakesItsLastChild_data();
    void insertingBesideTheRootMakesItsLastChild();
    void insertingBesideAnotherEntry();
    void insertingIntoAFullTreeIsError6AndLeavesAUsableTree();
    void initialisingMakesReadyForTheUser();

    void theRootIsThatOfTheSelection();
    void goingDown_data();
    void goingDown();
    void goingDownWithoutASelectionDoesNothing();

    void selectingFullyShowsTheEntry();
    void selectingWhileBusyOnlyMarks();
    void selectingNothing();
    void theCurrentEntryEndsWithItsDocument();

    void tagging();
    void anyTaggedEntryOfTheActiveDocument();

    void duplicatingAsAChildOfItself();
    void duplicatesAreUntagged();
    void duplicatingKeepsTextAndExpansionAndSelectsTheCopy();
    void duplicatingBesideTheRootGoesBelowIt();
    void duplicatingWithoutARelative();
    void duplicatingNothing();

    void pastingPlaces_data();
    void pastingPlaces();
    void pastingIntoAnEmptyDocument();
    void pastingFromAnotherDocument();
    void movingByPastingRemovesTheSource();
    void movingAnEntryBelowItselfIsRefused();
    void pastingAnEntryThatIsGone();

    void deletingTheLastChildCollapsesTheParent();
    void deletingTheRoot();
    void deletingNothing();

    void expandingAndCollapsing();
    void expandingToALevel_data();
    void expandingToALevel();
    void sorting();
    void settingTheFontOfASubtree();
    void settingTheFontLeavesDamagedTexts();
    void aDamagedTextIsToldOfWhenItIsShown();
    void whatATextHasThatIsNotShownIsTold();
    void aReadOnlyTextLosesNothing();

    void nestedActionsHideThePanesOnce();
    void everyActionEndsThoughAnErrorHappens();
    void tooDeeplyNestedActionsAreAnOverflow();

    void aNewEntrysTextIsAnEmptyPane();
    void storingCompressesAndShowingInflates();
    void aStoredTextIsMadeFromThePaneWhenItIsRead();
    void fillingThePaneDoesNotStoreItBack();
    void aPaneThatCouldNotBeFilledAnewStoresIntoTheEntryThatItShows();
    void theTextOfARemovedEntryIsNobodysText();
    void theHiddenPaneStaysHidden();
    void textsOfTheSelectedEntry();
    void withoutAnActiveDocumentNothingHappens();

private:
    FakeDocument &plant(const QStringList &lines)
    {
        Document &document = m_fake->windows.createDocument();
        plantOutline(rawOutline(document).tree, lines);
        return m_fake->windows.fakeOf(document);
    }

    FakeDocument &plantStandard()
    {
        return plant({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B"_s, u"  B1"_s, u" C"_s});
    }

    std::unique_ptr<FakePorts> m_fake;
    std::unique_ptr<ErrorRecorder> m_errors;
};

void tst_modNodes::init()
{
    m_fake = std::make_unique<FakePorts>();
    m_errors = std::make_unique<ErrorRecorder>();
}

void tst_modNodes::cleanup()
{
    for (const auto &open : m_fake->windows.open)
        QCOMPARE(open->document.tree.brokenInvariant(), QString());
    QCOMPARE(iActionDepth, 0);
    m_errors.reset();
    m_fake.reset();
}

void tst_modNodes::insertingIntoAnEmptyTreeMakesTheRoot()
{
    Document &document = plant({}).document;
    Entry *root = modNodes::NodeInsert(document, Relationship::tvwNext, nullptr);
    QCOMPARE(document.tree.root(), root);
    QCOMPARE(document.tree.key(root), u"KEY0"_s);
    QVERIFY(!root->tagged());
    QVERIFY(!document.tree.selected());
    QCOMPARE(root->label(), QString());
    QCOMPARE(g_sProcedure, u"modNodes NodeInsert"_s);
}

void tst_modNodes::insertingBesideTheRootMakesItsLastChild_data()
{
    QTest::addColumn<Relationship>("relationship");
    QTest::addColumn<bool>("relativeIsRoot");

    QTest::newRow("next to the root") << Relationship::tvwNext << true;
    QTest::newRow("before the root") << Relationship::tvwPrevious << true;
    QTest::newRow("first beside the root") << Relationship::tvwFirst << true;
    QTest::newRow("last beside the root") << Relationship::tvwLast << true;
    QTest::newRow("child of the root") << Relationship::tvwChild << true;
    QTest::newRow("first, with no relative") << Relationship::tvwFirst << false;
    QTest::newRow("child of no relative") << Relationship::tvwChild << false;
}

void tst_modNodes::insertingBesideTheRootMakesItsLastChild()
{
    QFETCH(const Relationship, relationship);
    QFETCH(const bool, relativeIsRoot);
    Document &document = plantStandard().document;
    const Entry *entry = modNodes::NodeInsert(document, relationship, relativeIsRoot ? document.tree.root() : nullptr);
    QCOMPARE(document.tree.key(entry), u"KEY0.4"_s);
    QCOMPARE(m_errors->count(), 0);
}

void tst_modNodes::insertingBesideAnotherEntry()
{
    Document &document = plantStandard().document;
    EntryTree &tree = rawOutline(document).tree;
    const Entry *next = modNodes::NodeInsert(document, Relationship::tvwNext, entryLabelled(tree, u"A"_s));
    QCOMPARE(tree.key(next), u"KEY0.2"_s);
    const Entry *previous = modNodes::NodeInsert(document, Relationship::tvwPrevious, entryLabelled(tree, u"A"_s));
    QCOMPARE(tree.key(previous), u"KEY0.1"_s);
    const Entry *child = modNodes::NodeInsert(document, Relationship::tvwChild, entryLabelled(tree, u"A"_s));
    QCOMPARE(tree.key(child), u"KEY0.2.3"_s);
}

void tst_modNodes::insertingIntoAFullTreeIsError6AndLeavesAUsableTree()
{
    FakeDocument &fake = plant({u"Root"_s});
    Document &document = fake.document;
    while (document.tree.entryCount() < 32767)
        modNodes::NodeInsert(document, Relationship::tvwChild, nullptr);
    QCOMPARE(m_errors->count(), 0);
    QVERIFY(!document.hasNotice(NoticeKind::DocumentFull));
    QCOMPARE(fake.window.timesKeysHeld, 0);
    QVERIFY(!modNodes::NodeInsert(document, Relationship::tvwChild, nullptr));
    QVERIFY(document.hasNotice(NoticeKind::DocumentFull));
    QCOMPARE(fake.window.timesKeysHeld, 1);
    QVERIFY(!modNodes::NodeDuplicate(document, document.tree, document.tree.root()->child(0), document.tree.root(),
                                     Relationship::tvwChild));
    QCOMPARE(m_errors->summary(), QStringList({u"6 modNodes NodeInsert"_s, u"6 modNodes NodeDuplicate"_s}));
    QCOMPARE(fake.window.timesKeysHeld, 2);
    modNodes::NodeDelete(document, document.tree.root()->child(5));
    QVERIFY(!document.hasNotice(NoticeKind::DocumentFull));
    QVERIFY(modNodes::NodeInsert(document, Relationship::tvwChild, nullptr));
    QCOMPARE(m_errors->count(), 2);
    QCOMPARE(fake.window.timesKeysHeld, 2);
    // Undoing makes room, too.
    QVERIFY(!modNodes::NodeInsert(document, Relationship::tvwChild, nullptr));
    QVERIFY(document.hasNotice(NoticeKind::DocumentFull));
    QVERIFY(document.history.undo());
    QVERIFY(!document.hasNotice(NoticeKind::DocumentFull));
}

void tst_modNodes::initialisingMakesReadyForTheUser()
{
    FakeDocument &fake = plantStandard();
    rawOutline(fake.document).textFont.setName(u"Courier 10 Pitch"_s);
    rawOutline(fake.document).textFont.setSize(12 * clsFont::point);
    Entry *entry = modNodes::NodeInsert(fake.document, Relationship::tvwChild, nullptr);
    modNodes::NodeInitialise(fake.document, entry);
    QCOMPARE(entry->label(), u"New Entry"_s);
    QCOMPARE(fake.document.tree.selected(), entry);
    QVERIFY(fake.outline.editingLabel);
    QCOMPARE(fake.text.font.family(), u"Courier 10 Pitch"_s);
    QCOMPARE(fake.text.font.pointSize(), 12);
    modNodes::NodeInitialise(fake.document, nullptr);
    QCOMPARE(m_errors->count(), 0);
}

void tst_modNodes::theRootIsThatOfTheSelection()
{
    Document &document = plantStandard().document;
    QVERIFY(!modNodes::NodeGetRoot(document));
    rawOutline(document).tree.select(entryLabelled(document.tree, u"B1"_s));
    QCOMPARE(modNodes::NodeGetRoot(document), document.tree.root());
}

void tst_modNodes::goingDown_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");

    QTest::newRow("to the next sibling") << u"A1"_s << u"A2"_s;
    QTest::newRow("to the next sibling, past the children") << u"A"_s << u"B"_s;
    QTest::newRow("from a last sibling to the ancestor's next") << u"A2"_s << u"B"_s;
    QTest::newRow("from the last of all, a leaf: stays") << u"C"_s << u"C"_s;
    QTest::newRow("from the root to its first child") << u"Root"_s << u"A"_s;
}

void tst_modNodes::goingDown()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    Document &document = plantStandard().document;
    rawOutline(document).tree.select(entryLabelled(document.tree, from));
    modNodes::NodeGoDown(document);
    QCOMPARE(document.tree.selected()->label(), to);
}

void tst_modNodes::goingDownWithoutASelectionDoesNothing()
{
    Document &document = plantStandard().document;
    modNodes::NodeGoDown(document);
    QVERIFY(!document.tree.selected());
    // The last sibling of all with a child of its own goes to that.
    Document &other = plant({u"Root"_s, u" A"_s, u" B <"_s, u"  B1"_s}).document;
    modNodes::NodeGoDown(other);
    QCOMPARE(other.tree.selected()->label(), u"B1"_s);
}

void tst_modNodes::selectingFullyShowsTheEntry()
{
    FakeDocument &fake = plantStandard();
    Entry *a1 = entryLabelled(fake.document.tree, u"A1"_s);
    rawOutline(fake.document).tree.setStoredText(a1, NodeTextCompressIfRequired("{\\rtf1 of A1}"));
    modNodes::NodeSelectFull(fake.document, a1);
    QCOMPARE(fake.document.tree.selected(), a1);
    QCOMPARE(modNodes::nodCurrent().entry(), a1);
    QCOMPARE(fake.outline.scrolledTo, a1);
    QCOMPARE(fake.text.Text(), u"of A1"_s);
    QCOMPARE(fake.outline.timesDropHighlightCleared, 1);
    QCOMPARE(m_fake->statusText(), u"A1"_s);
}

void tst_modNodes::selectingWhileBusyOnlyMarks()
{
    FakeDocument &fake = plantStandard();
    modNodes::NodeSelectFull(fake.document, entryLabelled(fake.document.tree, u"A"_s));
    const int filled = fake.text.timesTextShown;
    const BusyScope busy;
    modNodes::NodeSelect(fake.document, entryLabelled(fake.document.tree, u"B"_s));
    QCOMPARE(fake.document.tree.selected()->label(), u"B"_s);
    QCOMPARE(fake.text.timesTextShown, filled);
    QCOMPARE(modNodes::nodCurrent().entry()->label(), u"A"_s);
}

void tst_modNodes::selectingNothing()
{
    FakeDocument &fake = plantStandard();
    rawOutline(fake.document).tree.select(fake.document.tree.root());
    modNodes::NodeSelect(fake.document, nullptr);
    modNodes::NodeSelectFull(fake.document, nullptr);
    QCOMPARE(fake.document.tree.selected(), fake.document.tree.root());
    QCOMPARE(m_errors->count(), 0);
}

void tst_modNodes::theCurrentEntryEndsWithItsDocument()
{
    Document &document = plantStandard().document;
    modNodes::NodeSelectFull(document, document.tree.root());
    QCOMPARE(modNodes::nodCurrent().tree(), &document.tree);
    document.view()->window.close();
    QVERIFY(!modNodes::nodCurrent().entry());
}

void tst_modNodes::tagging()
{
    Document &document = plantStandard().document;
    Entry *a = entryLabelled(document.tree, u"A"_s);
    QVERIFY(!modNodes::NodeTagged(a));
    modNodes::NodeTagOn(document, a);
    modNodes::NodeTagOn(document, a);
    QVERIFY(modNodes::NodeTagged(a));
    QCOMPARE(document.tree.taggedCount(), 1);
    modNodes::NodeTagToggle(document, a);
    QVERIFY(!modNodes::NodeTagged(a));
    modNodes::NodeTagToggle(document, a);
    QVERIFY(modNodes::NodeTagged(a));
    modNodes::NodeTagOff(document, a);
    modNodes::NodeTagOff(document, a);
    QCOMPARE(document.tree.taggedCount(), 0);
}

void tst_modNodes::anyTaggedEntryOfTheActiveDocument()
{
    QVERIFY(!modNodes::NodesTaggedExist());
    Document &first = plantStandard().document;
    QVERIFY(!modNodes::NodesTaggedExist());
    modNodes::NodeTagOn(first, entryLabelled(first.tree, u"B1"_s));
    QVERIFY(modNodes::NodesTaggedExist());
    plantStandard();
    QVERIFY2(!modNodes::NodesTaggedExist(), "the tag is another document's");
    first.view()->window.activate();
    modNodes::NodeDelete(first, entryLabelled(first.tree, u"B"_s));
    QVERIFY(!modNodes::NodesTaggedExist());
}

void tst_modNodes::duplicatingAsAChildOfItself()
{
    Document &document = plantStandard().document;
    Entry *a = entryLabelled(document.tree, u"A"_s);
    modNodes::NodeDuplicate(document, document.tree, a, a, Relationship::tvwChild);
    QCOMPARE(dumpOutline(document.tree), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u"  A +<"_s,
                                                      u"   A1"_s, u"   A2"_s, u" B"_s, u"  B1"_s, u" C"_s}));
}

void tst_modNodes::duplicatesAreUntagged()
{
    Document &document = plant({u"Root +"_s, u" A *"_s, u"  A1 *"_s}).document;
    Entry *a = entryLabelled(document.tree, u"A"_s);
    modNodes::NodeDuplicate(document, document.tree, a, a, Relationship::tvwNext);
    rawOutline(document).tree.select(document.tree.root());
    EntryRef source(&document.tree, a);
    modNodes::NodePaste(document, source, false);
    QCOMPARE(document.tree.taggedCount(), 2);
    QCOMPARE(dumpOutline(document.tree),
             QStringList({u"Root +"_s, u" A *"_s, u"  A1 *"_s, u" A"_s, u"  A1"_s, u" A <"_s, u"  A1"_s}));
}

void tst_modNodes::duplicatingKeepsTextAndExpansionAndSelectsTheCopy()
{
    FakeDocument &fake = plantStandard();
    EntryTree &tree = rawOutline(fake.document).tree;
    tree.setStoredText(entryLabelled(tree, u"A"_s), "{\\rtf1 of A}");
    tree.setStoredText(entryLabelled(tree, u"A2"_s), "{\\rtf1 of A2}");
    Entry *copy = modNodes::NodeDuplicate(fake.document, fake.document.tree, entryLabelled(tree, u"A"_s),
                                          entryLabelled(tree, u"C"_s), Relationship::tvwPrevious);
    QCOMPARE(tree.key(copy), u"KEY0.3"_s);
    QVERIFY(copy->expanded());
    QCOMPARE(tree.storedText(copy->child(1)), QByteArray("{\\rtf1 of A2}"));
    QCOMPARE(tree.selected(), copy);
    QCOMPARE(fake.text.Text(), u"of A"_s);
    QCOMPARE(modNodes::nodCurrent().entry(), copy);
}

void tst_modNodes::duplicatingBesideTheRootGoesBelowIt()
{
    Document &document = plant({u"Root"_s, u" A"_s}).document;
    modNodes::NodeDuplicate(document, document.tree, document.tree.root(), document.tree.root(), Relationship::tvwNext);
    QCOMPARE(dumpOutline(document.tree), QStringList({u"Root +"_s, u" A"_s, u" Root <"_s, u"  A"_s}));
}

void tst_modNodes::duplicatingWithoutARelative()
{
    Document &source = plantStandard().document;
    Document &target = plant({}).document;
    Entry *b = entryLabelled(source.tree, u"B"_s);
    QVERIFY(!modNodes::NodeDuplicate(target, source.tree, b, nullptr, Relationship::tvwNext));
    QVERIFY(!target.tree.root());
    QVERIFY(modNodes::NodeDuplicate(target, source.tree, b, nullptr, Relationship::tvwFirst));
    QCOMPARE(dumpOutline(target.tree), QStringList({u"B <"_s, u" B1"_s}));
    QCOMPARE(m_errors->count(), 0);
}

void tst_modNodes::duplicatingNothing()
{
    Document &document = plantStandard().document;
    QVERIFY(!modNodes::NodeDuplicate(document, document.tree, nullptr, document.tree.root(), Relationship::tvwChild));
    QCOMPARE(document.tree.entryCount(), 7);
}

void tst_modNodes::pastingPlaces_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("after");

    QTest::newRow("with the root selected: before its first child")
        << QStringList{u"Root +<"_s, u" A"_s, u" B"_s} << u"B"_s
        << QStringList{u"Root +"_s, u" B <"_s, u" A"_s, u" B"_s};
    QTest::newRow("with a leaf selected: right after it")
        << QStringList{u"Root +"_s, u" A +"_s, u"  A1 <"_s, u"  A2"_s, u" B"_s} << u"B"_s
        << QStringList{u"Root +"_s, u" A +"_s, u"  A1"_s, u"  B <"_s, u"  A2"_s, u" B"_s};
    QTest::newRow("with a parent selected: after it, not below")
        << QStringList{u"Root +"_s, u" A <"_s, u"  A1"_s, u" B"_s} << u"B"_s
        << QStringList{u"Root +"_s, u" A"_s, u"  A1"_s, u" B <"_s, u" B"_s};
    QTest::newRow("with the root selected and the source its first child: last below the root")
        << QStringList{u"Root +<"_s, u" A"_s, u" B"_s} << u"A"_s
        << QStringList{u"Root +"_s, u" A"_s, u" B"_s, u" A <"_s};
    QTest::newRow("with a lone root selected: its child")
        << QStringList{u"Root +<"_s} << u"Root"_s << QStringList{u"Root +"_s, u" Root +<"_s};
    QTest::newRow("with nothing selected: last below the root")
        << QStringList{u"Root +"_s, u" A"_s, u" B"_s} << u"A"_s
        << QStringList{u"Root +"_s, u" A"_s, u" B"_s, u" A <"_s};
    QTest::newRow("with the source itself selected: right after it")
        << QStringList{u"Root +"_s, u" A <"_s, u"  A1"_s, u" B"_s} << u"A"_s
        << QStringList{u"Root +"_s, u" A"_s, u"  A1"_s, u" A <"_s, u"  A1"_s, u" B"_s};
}

void tst_modNodes::pastingPlaces()
{
    QFETCH(const QStringList, before);
    QFETCH(const QString, source);
    QFETCH(const QStringList, after);
    Document &document = plant(before).document;
    Entry *entry = entryLabelled(document.tree, source);
    EntryRef reference(&document.tree, entry);
    modNodes::NodePaste(document, reference, false);
    QCOMPARE(dumpOutline(document.tree), after);
    QCOMPARE(reference.entry(), entry);
    QCOMPARE(m_errors->count(), 0);
}

void tst_modNodes::pastingIntoAnEmptyDocument()
{
    Document &source = plantStandard().document;
    Document &target = plant({}).document;
    EntryRef reference(&source.tree, entryLabelled(source.tree, u"B"_s));
    modNodes::NodePaste(target, reference, false);
    QCOMPARE(dumpOutline(target.tree), QStringList({u"B <"_s, u" B1"_s}));
}

void tst_modNodes::pastingFromAnotherDocument()
{
    Document &source = plantStandard().document;
    Document &target = plant({u"Other"_s, u" X <"_s}).document;
    EntryRef reference(&source.tree, entryLabelled(source.tree, u"B"_s));
    modNodes::NodePaste(target, reference, true);
    QCOMPARE(dumpOutline(target.tree), QStringList({u"Other +"_s, u" X"_s, u" B <"_s, u"  B1"_s}));
    QCOMPARE(source.tree.entryCount(), 5);
    QVERIFY(!reference.entry());
}

void tst_modNodes::movingByPastingRemovesTheSource()
{
    Document &document = plantStandard().document;
    rawOutline(document).tree.select(entryLabelled(document.tree, u"A1"_s));
    EntryRef reference(&document.tree, entryLabelled(document.tree, u"B"_s));
    modNodes::NodePaste(document, reference, true);
    QCOMPARE(dumpOutline(document.tree),
             QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  B <"_s, u"   B1"_s, u"  A2"_s, u" C"_s}));
    QVERIFY(!reference.entry());
}

void tst_modNodes::movingAnEntryBelowItselfIsRefused()
{
    Document &document = plantStandard().document;
    const QStringList before = dumpOutline(document.tree);
    EntryRef reference(&document.tree, entryLabelled(document.tree, u"A"_s));
    rawOutline(document).tree.select(entryLabelled(document.tree, u"A2"_s));
    modNodes::NodePaste(document, reference, true);
    rawOutline(document).tree.select(document.tree.root());
    reference.set(&document.tree, document.tree.root());
    modNodes::NodePaste(document, reference, true);
    rawOutline(document).tree.select(nullptr);
    QCOMPARE(dumpOutline(document.tree), before);
    QVERIFY(reference.entry());
}

void tst_modNodes::pastingAnEntryThatIsGone()
{
    Document &document = plantStandard().document;
    rawOutline(document).tree.select(document.tree.root());
    EntryRef reference(&document.tree, entryLabelled(document.tree, u"B1"_s));
    modNodes::NodeDelete(document, entryLabelled(document.tree, u"B"_s));
    modNodes::NodePaste(document, reference, false);
    QCOMPARE(document.tree.entryCount(), 5);
    QCOMPARE(m_errors->count(), 0);
}

void tst_modNodes::deletingTheLastChildCollapsesTheParent()
{
    Document &document = plantStandard().document;
    const Entry *a = entryLabelled(document.tree, u"A"_s);
    modNodes::NodeDelete(document, entryLabelled(document.tree, u"A1"_s));
    QVERIFY(a->expanded());
    modNodes::NodeDelete(document, entryLabelled(document.tree, u"A2"_s));
    QVERIFY(!a->expanded());
    QVERIFY(document.tree.root()->expanded());
}

void tst_modNodes::deletingTheRoot()
{
    Document &document = plantStandard().document;
    modNodes::NodeSelectFull(document, entryLabelled(document.tree, u"B1"_s));
    modNodes::NodeDelete(document, document.tree.root());
    QVERIFY(!document.tree.root());
    QVERIFY(!document.tree.selected());
    QVERIFY(!modNodes::nodCurrent().entry());
    QVERIFY(modNodes::NodeInsert(document, Relationship::tvwNext, nullptr)->isRoot());
}

void tst_modNodes::deletingNothing()
{
    FakeDocument &fake = plantStandard();
    modNodes::NodeDelete(fake.document, nullptr);
    QCOMPARE(fake.document.tree.entryCount(), 7);
    QCOMPARE(fake.outline.timesHidden, 0);
}

void tst_modNodes::expandingAndCollapsing()
{
    Document &document = plantStandard().document;
    modNodes::NodeExpandAll(document, document.tree.root());
    QVERIFY(entryLabelled(document.tree, u"B1"_s)->visible());
    QVERIFY(entryLabelled(document.tree, u"B1"_s)->expanded());
    modNodes::NodeCollapseAll(document, entryLabelled(document.tree, u"A"_s));
    QVERIFY(!entryLabelled(document.tree, u"A1"_s)->visible());
    QVERIFY(document.tree.root()->expanded());
}

void tst_modNodes::expandingToALevel_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("level 1 collapses the root")
        << 1 << QStringList{u"Root"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B"_s, u"  B1"_s, u" C"_s};
    QTest::newRow("level 2 expands the root and collapses its children")
        << 2 << QStringList{u"Root +"_s, u" A"_s, u"  A1"_s, u"  A2"_s, u" B"_s, u"  B1"_s, u" C"_s};
    QTest::newRow("level 3 expands the children too")
        << 3 << QStringList{u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u" C"_s};
}

void tst_modNodes::expandingToALevel()
{
    QFETCH(const int, level);
    QFETCH(const QStringList, after);
    Document &document = plantStandard().document;
    modNodes::NodeExpandToLevel(document, document.tree.root(), level);
    QCOMPARE(dumpOutline(document.tree), after);
}

void tst_modNodes::sorting()
{
    Document &document = plant({u"Root"_s, u" c"_s, u"  z"_s, u"  Y"_s, u" B"_s, u" a"_s}).document;
    modNodes::NodeSortAll(document, document.tree.root(), true);
    QCOMPARE(dumpOutline(document.tree), QStringList({u"Root"_s, u" a"_s, u" B"_s, u" c"_s, u"  Y"_s, u"  z"_s}));
    for (const Entry *entry = document.tree.root(); entry; entry = nextInOutline(entry, document.tree.root()))
        QVERIFY(entry->sorted());
    modNodes::NodeSortAll(document, document.tree.root(), false);
    QVERIFY(!entryLabelled(document.tree, u"c"_s)->sorted());
    QCOMPARE(document.tree.root()->child(2)->label(), u"c"_s);
}

void tst_modNodes::settingTheFontOfASubtree()
{
    FakeDocument &fake = plantStandard();
    EntryTree &tree = rawOutline(fake.document).tree;
    for (const QString &label : {u"A"_s, u"A1"_s, u"A2"_s, u"B"_s})
        tree.setStoredText(entryLabelled(tree, label), "{\\rtf1 of " + label.toLatin1() + '}');
    clsFont font;
    font.setName(u"Courier 10 Pitch"_s);
    font.setBold(true);
    modNodes::NodeSetFontAll(fake.document, entryLabelled(tree, u"A"_s), font);
    QCOMPARE(fake.text.font.family(), u"Courier 10 Pitch"_s);
    QVERIFY(fake.text.visible);
    for (const QString &label : {u"A"_s, u"A1"_s, u"A2"_s}) {
        const QByteArray text = NodeTextDecompressIfRequired(tree.storedText(entryLabelled(tree, label)));
        QVERIFY(text.contains("Courier 10 Pitch") && text.contains("\\b of " + label.toLatin1()));
    }
    QCOMPARE(tree.storedText(entryLabelled(tree, u"B"_s)), QByteArray("{\\rtf1 of B}"));
}

void tst_modNodes::settingTheFontLeavesDamagedTexts()
{
    FakeDocument &fake = plantStandard();
    EntryTree &tree = rawOutline(fake.document).tree;
    Entry *damaged = entryLabelled(tree, u"A"_s);
    tree.setStoredText(damaged, "12,abc");
    modNodes::NodeSetFontAll(fake.document, tree.root(), clsFont());
    QCOMPARE(tree.storedText(damaged), QByteArray("12,abc"));
}

void tst_modNodes::aDamagedTextIsToldOfWhenItIsShown()
{
    FakeDocument &fake = plantStandard();
    const ErrorRecorder errors;
    EntryTree &tree = rawOutline(fake.document).tree;
    Entry *damaged = entryLabelled(tree, u"A"_s);
    tree.setStoredText(damaged, "12,abc");
    modNodes::NodeSelectFull(fake.document, entryLabelled(tree, u"B"_s));
    QVERIFY(fake.document.notices().empty());
    modNodes::NodeSelectFull(fake.document, damaged);
    QVERIFY(fake.document.hasNotice(NoticeKind::DamagedText));
    QVERIFY(fake.document.notices()[0].text.contains(u"\"A\""_s));
    modNodes::NodeSelectFull(fake.document, entryLabelled(tree, u"B"_s));
    QVERIFY2(fake.document.hasNotice(NoticeKind::DamagedText), "it stands until it is read");
    QCOMPARE(tree.storedText(damaged), QByteArray("12,abc"));
    QCOMPARE(errors.count(), 0);
}

void tst_modNodes::whatATextHasThatIsNotShownIsTold()
{
    FakeDocument &fake = plantStandard();
    EntryTree &tree = rawOutline(fake.document).tree;
    const QByteArray text = "{\\rtf1 a{\\footnote b}{\\*\\annotation c}{\\xe d}}";
    Entry *entry = entryLabelled(tree, u"A"_s);
    Entry *other = entryLabelled(tree, u"B"_s);
    tree.setStoredText(entry, NodeTextCompressIfRequired(text));
    tree.setStoredText(other, NodeTextCompressIfRequired("{\\rtf1 a\\par b}"));
    modNodes::NodeSelectFull(fake.document, entry);
    QCOMPARE(fake.document.notices().size(), size_t(1));
    QCOMPARE(fake.document.notices()[0].kind, NoticeKind::LeftOutParts);
    QCOMPARE(
        fake.document.notices()[0].text,
        u"The text of \"A\" comes from another program and has footnotes, comments and marks for an index that are "
        "not shown here. They are kept until the text is changed for the first time, and then they are gone."_s);
    QVERIFY(!fake.text.locked);
    // It is told no longer once it is changed.
    QTextCursor(&fake.document.texts.shown()->document()).insertText(u"x"_s);
    QVERIFY(fake.document.notices().empty());
    tree.setStoredText(entry, NodeTextCompressIfRequired(text));
    modNodes::NodeSelectFull(fake.document, other);
    QVERIFY(fake.document.notices().empty());
    // Words that are no control words tell nothing.
    tree.setStoredText(entry, NodeTextCompressIfRequired("\\footnote a"));
    modNodes::NodeSelectFull(fake.document, entry);
    QVERIFY(fake.document.notices().empty());
    modNodes::NodeTextGet(fake.document, nullptr);
    QVERIFY(fake.document.notices().empty());
}

void tst_modNodes::aReadOnlyTextLosesNothing()
{
    FakeDocument &fake = plantStandard();
    EntryTree &tree = rawOutline(fake.document).tree;
    Entry *entry = entryLabelled(tree, u"A"_s);
    tree.setStoredText(entry, "{\\rtf1 a{\\footnote b}}");
    fake.document.m_fileAccess = FileAccess::ReadOnly;
    modNodes::NodeSelectFull(fake.document, entry);
    QVERIFY(fake.document.notices().empty());
    const QTemporaryDir folder;
    QCOMPARE(modDoc::DocSave(folder.filePath(u"a.qly"_s)), SaveOutcome::Saved);
    QVERIFY2(fake.document.hasNotice(NoticeKind::LeftOutParts), "it can be changed now");
}

void tst_modNodes::nestedActionsHideThePanesOnce()
{
    FakeDocument &fake = plantStandard();
    modNodes::NodeActionStart();
    QVERIFY(!fake.outline.visible && !fake.text.visible);
    modNodes::NodeActionStart();
    modNodes::NodeDelete(fake.document, entryLabelled(fake.document.tree, u"C"_s));
    modNodes::NodeActionEnd();
    QVERIFY(!fake.outline.visible && !fake.text.visible);
    QCOMPARE(fake.window.timesSplitFitted, 0);
    modNodes::NodeActionEnd();
    QVERIFY(fake.outline.visible && fake.text.visible);
    QCOMPARE(fake.outline.timesHidden, 1);
    QCOMPARE(fake.window.timesSplitFitted, 1);
}

void tst_modNodes::everyActionEndsThoughAnErrorHappens()
{
    FakeDocument &fake = plantStandard();
    FakeDocument &other = plant({u"Other"_s});
    while (other.document.tree.entryCount() < EntryTree::maximumCount)
        rawOutline(other.document).tree.insert(Relationship::tvwChild, other.document.tree.root());
    rawOutline(other.document).tree.select(other.document.tree.root());
    EntryRef source(&fake.document.tree, fake.document.tree.root());
    modNodes::NodePaste(other.document, source, true);
    QCOMPARE(m_errors->summary(), QStringList(u"6 modNodes NodePaste"_s));
    QCOMPARE(iActionDepth, 0);
    QVERIFY(other.outline.visible && other.text.visible);
    QVERIFY2(source.entry() && fake.document.tree.root(), "what was not copied must not be removed");
}

void tst_modNodes::tooDeeplyNestedActionsAreAnOverflow()
{
    plantStandard();
    iActionDepth = std::numeric_limits<qint16>::max();
    modNodes::NodeActionStart();
    QCOMPARE(m_errors->summary(), QStringList(u"6 modNodes NodeActionStart"_s));
    QCOMPARE(iActionDepth, std::numeric_limits<qint16>::max());
    iActionDepth = 0;
}

void tst_modNodes::aNewEntrysTextIsAnEmptyPane()
{
    FakeDocument &fake = plantStandard();
    fake.text.type(u"before"_s);
    modNodes::NodeTextGet(fake.document, fake.document.tree.root());
    QCOMPARE(fake.text.Text(), QString());
    fake.text.type(u"before"_s);
    modNodes::NodeTextGet(fake.document, nullptr);
    QCOMPARE(fake.text.Text(), QString());
}

void tst_modNodes::storingCompressesAndShowingInflates()
{
    FakeDocument &fake = plantStandard();
    Entry *root = fake.document.tree.root();
    const QString text = u"x "_s.repeated(50'000);
    fake.text.type(text);
    modNodes::NodeTextPut(fake.document, root);
    QVERIFY(compressedPart(fake.document.tree.storedText(root)).length > 100000);
    QVERIFY(fake.document.tree.storedText(root).size() < 1000);
    fake.text.type({});
    modNodes::NodeTextGet(fake.document, root);
    QCOMPARE(fake.text.Text(), text);
    modNodes::NodeTextPut(fake.document, nullptr);
    QCOMPARE(m_errors->count(), 0);
}

void tst_modNodes::aStoredTextIsMadeFromThePaneWhenItIsRead()
{
    FakeDocument &fake = plantStandard();
    EntryTree &tree = rawOutline(fake.document).tree;
    Entry *a = entryLabelled(tree, u"A"_s);
    Entry *b = entryLabelled(tree, u"B"_s);
    tree.setStoredText(b, "{\\rtf1 of B}");
    for (const QString &typed : {u"t"_s, u"ty"_s, u"typed"_s}) {
        fake.text.type(typed);
        modNodes::NodeTextPut(fake.document, a);
    }
    // Showing another text takes the pane away from under the pending one.
    modNodes::NodeTextGet(fake.document, b);
    QCOMPARE(fake.text.Text(), u"of B"_s);
    QCOMPARE(plainTextOf(tree, a), u"typed"_s);
    modNodes::NodeTextGet(fake.document, a);
    QCOMPARE(fake.text.Text(), u"typed"_s);
}

void tst_modNodes::fillingThePaneDoesNotStoreItBack()
{
    FakeDocument &fake = plantStandard();
    Entry *a = entryLabelled(fake.document.tree, u"A"_s);
    Entry *b = entryLabelled(fake.document.tree, u"B"_s);
    rawOutline(fake.document).tree.setStoredText(a, "{\\rtf1 of A}");
    rawOutline(fake.document).tree.setStoredText(b, "{\\rtf1 of B}");
    rawOutline(fake.document).tree.select(b);
    // The selection is still the old entry when the new one's text arrives.
    fake.text.onTextShown = [] { modNodes::NodeTextPutSelected(); };
    modNodes::NodeTextGet(fake.document, a);
    QCOMPARE(fake.document.tree.storedText(b), QByteArray("{\\rtf1 of B}"));
}

void tst_modNodes::aPaneThatCouldNotBeFilledAnewStoresIntoTheEntryThatItShows()
{
    FakeDocument &fake = plantStandard();
    EntryTree &tree = rawOutline(fake.document).tree;
    Entry *a = entryLabelled(tree, u"A"_s);
    Entry *b = entryLabelled(tree, u"B"_s);
    tree.setStoredText(b, "{\\rtf1 of B}");
    modNodes::NodeSelectFull(fake.document, a);
    fake.text.type(u"typed"_s);
    // The text of B is too much for the memory that is left, once.
    tree.setPendingText(b, [first = true]() mutable -> QByteArray {
        if (std::exchange(first, false))
            throw std::bad_alloc();
        return "{\\rtf1 of B}";
    });
    modNodes::NodeSelectFull(fake.document, b);
    QCOMPARE(m_errors->summary(), QStringList(u"7 modNodes NodeTextGet"_s));
    QCOMPARE(tree.selected(), b);
    // What is typed on is typed into the text that still stands there.
    fake.text.type(u"typed on"_s);
    modNodes::NodeTextPutSelected();
    QCOMPARE(tree.storedText(b), QByteArray("{\\rtf1 of B}"));
    QCOMPARE(plainTextOf(tree, a), u"typed on"_s);
    modNodes::NodeSelectFull(fake.document, b);
    QCOMPARE(fake.text.Text(), u"of B"_s);
}

void tst_modNodes::theTextOfARemovedEntryIsNobodysText()
{
    FakeDocument &fake = plantStandard();
    EntryTree &tree = rawOutline(fake.document).tree;
    Entry *b = entryLabelled(tree, u"B"_s);
    tree.setStoredText(b, "{\\rtf1 of B}");
    modNodes::NodeSelectFull(fake.document, entryLabelled(tree, u"A"_s));
    tree.remove(entryLabelled(tree, u"A"_s));
    tree.select(b);
    fake.text.type(u"of A"_s);
    modNodes::NodeTextPutSelected();
    QCOMPARE(tree.storedText(b), QByteArray("{\\rtf1 of B}"));
}

void tst_modNodes::theHiddenPaneStaysHidden()
{
    FakeDocument &fake = plantStandard();
    bool visibleWhileFilled = true;
    fake.text.onTextShown = [&] { visibleWhileFilled = fake.text.visible; };
    modNodes::NodeTextGet(fake.document, fake.document.tree.root());
    QVERIFY(!visibleWhileFilled);
    QVERIFY(fake.text.visible);
    fake.text.visible = false;
    modNodes::NodeTextGet(fake.document, fake.document.tree.root());
    QVERIFY(!fake.text.visible);
}

void tst_modNodes::textsOfTheSelectedEntry()
{
    FakeDocument &fake = plantStandard();
    Entry *c = entryLabelled(fake.document.tree, u"C"_s);
    rawOutline(fake.document).tree.select(c);
    fake.text.type(u"of C"_s);
    modNodes::NodeTextPutSelected();
    QCOMPARE(plainTextOf(fake.document.tree, c), u"of C"_s);
    fake.text.type({});
    modNodes::NodeTextGetSelected();
    QCOMPARE(fake.text.Text(), u"of C"_s);
}

void tst_modNodes::withoutAnActiveDocumentNothingHappens()
{
    modNodes::NodeTextGetSelected();
    modNodes::NodeTextPutSelected();
    QCOMPARE(m_errors->count(), 0);
}

QTEST_MAIN(tst_modNodes)
#include "tst_modNodes.moc"
