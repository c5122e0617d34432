// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryTree.h"
#include "support/ErrorRecorder.h"
#include "support/OutlineText.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <memory>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint32 invalidCall = 5;
constexpr qint32 overflow = 6;
constexpr qint32 elementNotFound = 35601;

// A tree that the item-model tester watches, with the outline that most tests begin with.
struct WatchedTree {
    explicit WatchedTree(const QStringList &lines = standardOutline())
        : tester(&tree, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        plantOutline(tree, lines);
    }

    static QStringList standardOutline()
    {
        return {u"Root +"_s, u" A +"_s, u"  A1 *"_s, u"  A2"_s, u" B"_s, u"  B1"_s, u" C <"_s};
    }

    Entry *operator[](const QString &label) const { return entryLabelled(tree, label); }

    EntryTree tree;
    QAbstractItemModelTester tester;
};

QStringList collectedLabels(const EntryTree &tree)
{
    QStringList labels;
    for (int index = 1; index <= tree.collection().count(); ++index)
        labels.append(tree.collection().at(index)->label());
    return labels;
}

} // namespace

class tst_EntryTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyTreeHasNothing();
    void theDumpShowsWhatWasPlanted();
    void insertionPlaces_data();
    void insertionPlaces();
    void aPlaceThatDoesNotExistIsRefused();
    void anInsertionIsAnnounced();
    void navigation();

    void aCopyTakesLabelsTextsAndExpansionButNoTags();
    void aCopyBelowItselfHoldsWhatWasThereBefore();
    void aCopyIntoAnotherTree();
    void aCopyOfAnExpandedEntryTellsThePane();

    void movingPlaces_data();
    void movingPlaces();
    void aMoveTakesEverythingAlong();
    void aMoveGoesToTheEndOfTheCollection();
    void impossibleMovesAreRefused_data();
    void impossibleMovesAreRefused();

    void removalTakesTheSubtree();
    void removalOfTheSelectionDropsIt_data();
    void removalOfTheSelectionDropsIt();
    void removalOfTheRootEmptiesTheTree();
    void removalOfManyIsOneReset();
    void removalOfManyLetsGoOfWhatGoes();
    void removalOfManyMayTakeTheRoot();
    void clearingIsOneReset();

    void keysFollowThePlaces();
    void everyKeyLeadsBackToItsEntry();
    void keysThatNameNothing_data();
    void keysThatNameNothing();

    void labelsTagsAndExpansionAreAnnouncedOnceEach();
    void expandAndCollapseAll();
    void expandAncestorsOpensTheWay();
    void expandToLevel_data();
    void expandToLevel();
    void images();

    void sorting_data();
    void sorting();
    void sortingKeepsIndexesWithTheirEntries();
    void sortingHasNoEffectOnLaterInsertions();
    void sortingFollowsTheLocale();
    void sortingWhatIsSortedIsNotAnnounced();

    void aPendingTextIsMadeWhenItIsRead();
    void aPendingTextGivesWayToAStoredOne();
    void aPendingTextIsMadeBeforeAnotherBecomesPending();
    void aPendingTextIsForgottenWithItsEntry();
    void aPendingTextIsPartOfACopy();
    void aPendingTextThatCouldNotBeMadeStaysPending();

    void theCollectionKeepsTheOrderOfInsertion();
    void indicesCloseUpAfterARemoval();
    void manyRemovalsLeaveNoGaps();

    void aReferenceEmptiesItself();
    void aReferenceOutlivesItsTree();
    void bulkChangesAreOneReset();
    void aDebugBuildGoesDownWhereATreeIsNotWhole();
    void itemModelEdges();

    void aFullTreeRefusesOneMore();
    void aCopyThatWouldNotFitChangesNothing();
    void aChainOf20000Levels();
    void aChainIsCopiedExpandedAndRemoved();
};

void tst_EntryTree::anEmptyTreeHasNothing()
{
    const WatchedTree empty{QStringList()};
    QVERIFY(!empty.tree.root());
    QVERIFY(!empty.tree.selected());
    QCOMPARE(empty.tree.entryCount(), 0);
    QCOMPARE(empty.tree.rowCount(), 0);
    QVERIFY(!empty.tree.hasChildren());
    QCOMPARE(empty.tree.brokenInvariant(), QString());
    QVERIFY(!empty.tree.collection().at(1));
}

void tst_EntryTree::theDumpShowsWhatWasPlanted()
{
    const WatchedTree watched;
    QCOMPARE(dumpOutline(watched.tree), WatchedTree::standardOutline());
    QCOMPARE(watched.tree.entryCount(), 7);
    QCOMPARE(watched.tree.taggedCount(), 1);
}

void tst_EntryTree::insertionPlaces_data()
{
    QTest::addColumn<Relationship>("relationship");
    QTest::addColumn<QString>("relative");
    QTest::addColumn<QStringList>("children");

    QTest::newRow("first among the siblings")
        << Relationship::tvwFirst << u"B"_s << QStringList{u"New"_s, u"A"_s, u"B"_s, u"C"_s};
    QTest::newRow("last among the siblings")
        << Relationship::tvwLast << u"A"_s << QStringList{u"A"_s, u"B"_s, u"C"_s, u"New"_s};
    QTest::newRow("next to the first") << Relationship::tvwNext << u"A"_s
                                       << QStringList{u"A"_s, u"New"_s, u"B"_s, u"C"_s};
    QTest::newRow("next to the last") << Relationship::tvwNext << u"C"_s
                                      << QStringList{u"A"_s, u"B"_s, u"C"_s, u"New"_s};
    QTest::newRow("before the first") << Relationship::tvwPrevious << u"A"_s
                                      << QStringList{u"New"_s, u"A"_s, u"B"_s, u"C"_s};
    QTest::newRow("before the last") << Relationship::tvwPrevious << u"C"_s
                                     << QStringList{u"A"_s, u"B"_s, u"New"_s, u"C"_s};
    QTest::newRow("child of the root") << Relationship::tvwChild << u"Root"_s
                                       << QStringList{u"A"_s, u"B"_s, u"C"_s, u"New"_s};
    QTest::newRow("child behind other children")
        << Relationship::tvwChild << u"A"_s << QStringList{u"A1"_s, u"A2"_s, u"New"_s};
    QTest::newRow("child of a leaf") << Relationship::tvwChild << u"C"_s << QStringList{u"New"_s};
}

void tst_EntryTree::insertionPlaces()
{
    QFETCH(const Relationship, relationship);
    QFETCH(const QString, relative);
    QFETCH(const QStringList, children);
    WatchedTree watched;
    Entry *entry = watched.tree.insert(relationship, watched[relative]);
    QVERIFY(entry);
    QCOMPARE(entry->label(), QString());
    QCOMPARE(watched.tree.storedText(entry), QByteArray());
    QVERIFY(!entry->tagged() && !entry->expanded() && !entry->sorted());
    watched.tree.setLabel(entry, u"New"_s);
    QStringList found;
    for (int row = 0; row < entry->parent()->childCount(); ++row)
        found.append(entry->parent()->child(row)->label());
    QCOMPARE(found, children);
    QCOMPARE(watched.tree.entryCount(), 8);
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::aPlaceThatDoesNotExistIsRefused()
{
    WatchedTree watched;
    for (const auto relationship :
         {Relationship::tvwFirst, Relationship::tvwLast, Relationship::tvwNext, Relationship::tvwPrevious}) {
        QCOMPARE(errorNumberOf([&] { watched.tree.insert(relationship, watched.tree.root()); }), invalidCall);
        QCOMPARE(errorNumberOf([&] {
                     watched.tree.insertCopy(watched.tree, watched[u"A"_s], relationship, watched.tree.root());
                 }),
                 invalidCall);
    }
    QCOMPARE(errorNumberOf([&] { watched.tree.insert(Relationship::tvwFirst, nullptr); }), invalidCall);
    QCOMPARE(dumpOutline(watched.tree), WatchedTree::standardOutline());
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::anInsertionIsAnnounced()
{
    WatchedTree watched;
    QSignalSpy inserted(&watched.tree, &QAbstractItemModel::rowsInserted);
    watched.tree.insert(Relationship::tvwNext, watched[u"A1"_s]);
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted[0][0].toModelIndex(), watched.tree.indexOf(watched[u"A"_s]));
    QCOMPARE(inserted[0][1].toInt(), 1);
    QCOMPARE(inserted[0][2].toInt(), 1);

    EntryTree other;
    QSignalSpy rooted(&other, &QAbstractItemModel::rowsInserted);
    other.insert(Relationship::tvwFirst, nullptr);
    QCOMPARE(rooted.count(), 1);
    QVERIFY(!rooted[0][0].toModelIndex().isValid());
}

void tst_EntryTree::navigation()
{
    const WatchedTree watched;
    const Entry *root = watched.tree.root();
    const Entry *a = watched[u"A"_s];
    const Entry *b = watched[u"B"_s];
    const Entry *b1 = watched[u"B1"_s];
    const Entry *c = watched[u"C"_s];
    QCOMPARE(root->firstChild(), a);
    QCOMPARE(a->next(), b);
    QCOMPARE(b->previous(), a);
    QVERIFY(!a->previous() && !c->next() && !root->next() && !root->previous() && !c->firstChild());
    QCOMPARE(b->firstSibling(), a);
    QCOMPARE(b->lastSibling(), c);
    QCOMPARE(root->firstSibling(), root);
    QCOMPARE(root->lastSibling(), root);
    QCOMPARE(b1->root(), root);
    QCOMPARE(root->level(), 1);
    QCOMPARE(b1->level(), 3);
    QVERIFY(root->isRoot() && !a->isRoot());
    QVERIFY(root->visible() && a->visible() && !b1->visible());
    QVERIFY(root->isAncestorOf(b1) && b->isAncestorOf(b1));
    QVERIFY(!a->isAncestorOf(b1) && !b->isAncestorOf(b) && !b->isAncestorOf(nullptr));
    QVERIFY(!root->child(-1) && !root->child(3));
}

void tst_EntryTree::aCopyTakesLabelsTextsAndExpansionButNoTags()
{
    WatchedTree watched;
    watched.tree.setStoredText(watched[u"A1"_s], "3,xyz");
    watched.tree.setTagged(watched[u"A"_s], true);
    const Entry *copy = watched.tree.insertCopy(watched.tree, watched[u"A"_s], Relationship::tvwChild, watched[u"C"_s]);
    QCOMPARE(dumpOutline(watched.tree), QStringList({u"Root +"_s, u" A +*"_s, u"  A1 *"_s, u"  A2"_s, u" B"_s,
                                                     u"  B1"_s, u" C <"_s, u"  A +"_s, u"   A1"_s, u"   A2"_s}));
    QCOMPARE(watched.tree.storedText(copy->firstChild()), QByteArray("3,xyz"));
    QCOMPARE(watched.tree.taggedCount(), 2);
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::aCopyBelowItselfHoldsWhatWasThereBefore()
{
    WatchedTree watched;
    watched.tree.insertCopy(watched.tree, watched[u"A"_s], Relationship::tvwChild, watched[u"A"_s]);
    watched.tree.insertCopy(watched.tree, watched[u"B"_s], Relationship::tvwPrevious, watched[u"B1"_s]);
    QCOMPARE(dumpOutline(watched.tree),
             QStringList({u"Root +"_s, u" A +"_s, u"  A1 *"_s, u"  A2"_s, u"  A +"_s, u"   A1"_s, u"   A2"_s, u" B"_s,
                          u"  B"_s, u"   B1"_s, u"  B1"_s, u" C <"_s}));
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::aCopyIntoAnotherTree()
{
    const WatchedTree source;
    WatchedTree target(QStringList{u"Other"_s});
    target.tree.insertCopy(source.tree, source.tree.root(), Relationship::tvwChild, target.tree.root());
    QCOMPARE(dumpOutline(target.tree), QStringList({u"Other"_s, u" Root +"_s, u"  A +"_s, u"   A1"_s, u"   A2"_s,
                                                    u"  B"_s, u"   B1"_s, u"  C"_s}));
    QCOMPARE(dumpOutline(source.tree), WatchedTree::standardOutline());

    WatchedTree empty{QStringList()};
    empty.tree.insertCopy(source.tree, source[u"B"_s], Relationship::tvwFirst, nullptr);
    QCOMPARE(dumpOutline(empty.tree), QStringList({u"B"_s, u" B1"_s}));
    QCOMPARE(empty.tree.brokenInvariant(), QString());
}

void tst_EntryTree::aCopyOfAnExpandedEntryTellsThePane()
{
    WatchedTree watched;
    QSignalSpy reset(&watched.tree, &EntryTree::expansionReset);
    watched.tree.insertCopy(watched.tree, watched[u"B"_s], Relationship::tvwNext, watched[u"C"_s]);
    QCOMPARE(reset.count(), 0);
    watched.tree.insertCopy(watched.tree, watched[u"A"_s], Relationship::tvwNext, watched[u"C"_s]);
    QCOMPARE(reset.count(), 1);
}

void tst_EntryTree::movingPlaces_data()
{
    QTest::addColumn<QString>("moved");
    QTest::addColumn<Relationship>("relationship");
    QTest::addColumn<QString>("relative");
    QTest::addColumn<QStringList>("outline");

    const auto standard = WatchedTree::standardOutline();
    QTest::newRow("up among its siblings")
        << u"C"_s << Relationship::tvwPrevious << u"A"_s
        << QStringList{u"Root +"_s, u" C <"_s, u" A +"_s, u"  A1 *"_s, u"  A2"_s, u" B"_s, u"  B1"_s};
    QTest::newRow("down among its siblings")
        << u"A"_s << Relationship::tvwNext << u"B"_s
        << QStringList{u"Root +"_s, u" B"_s, u"  B1"_s, u" A +"_s, u"  A1 *"_s, u"  A2"_s, u" C <"_s};
    QTest::newRow("to the end among its siblings")
        << u"A"_s << Relationship::tvwLast << u"B"_s
        << QStringList{u"Root +"_s, u" B"_s, u"  B1"_s, u" C <"_s, u" A +"_s, u"  A1 *"_s, u"  A2"_s};
    QTest::newRow("below a later sibling")
        << u"A"_s << Relationship::tvwChild << u"B"_s
        << QStringList{u"Root +"_s, u" B"_s, u"  B1"_s, u"  A +"_s, u"   A1 *"_s, u"   A2"_s, u" C <"_s};
    QTest::newRow("below an earlier sibling's child")
        << u"B"_s << Relationship::tvwChild << u"A1"_s
        << QStringList{u"Root +"_s, u" A +"_s, u"  A1 *"_s, u"   B"_s, u"    B1"_s, u"  A2"_s, u" C <"_s};
    QTest::newRow("out to its parent's level")
        << u"A1"_s << Relationship::tvwNext << u"A"_s
        << QStringList{u"Root +"_s, u" A +"_s, u"  A2"_s, u" A1 *"_s, u" B"_s, u"  B1"_s, u" C <"_s};
    QTest::newRow("behind itself: stays") << u"B"_s << Relationship::tvwNext << u"B"_s << standard;
    QTest::newRow("before itself: stays") << u"B"_s << Relationship::tvwPrevious << u"B"_s << standard;
    QTest::newRow("behind the one before: stays") << u"B"_s << Relationship::tvwNext << u"A"_s << standard;
    QTest::newRow("before the one behind: stays") << u"B"_s << Relationship::tvwPrevious << u"C"_s << standard;
    QTest::newRow("the last child to be its parent's child: stays")
        << u"C"_s << Relationship::tvwChild << u"Root"_s << standard;
}

void tst_EntryTree::movingPlaces()
{
    QFETCH(const QString, moved);
    QFETCH(const Relationship, relationship);
    QFETCH(const QString, relative);
    QFETCH(const QStringList, outline);
    WatchedTree watched;
    watched.tree.move(watched[moved], relationship, watched[relative]);
    QCOMPARE(dumpOutline(watched.tree), outline);
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::aMoveTakesEverythingAlong()
{
    WatchedTree watched;
    watched.tree.setStoredText(watched[u"A2"_s], "of A2");
    watched.tree.setPendingText(watched[u"A1"_s], [] { return QByteArray("of A1"); });
    watched.tree.select(watched[u"A1"_s]);
    const EntryRef reference(&watched.tree, watched[u"A1"_s]);
    const QPersistentModelIndex index = watched.tree.indexOf(watched[u"A1"_s]);
    const Entry *a1 = watched[u"A1"_s];
    QSignalSpy moved(&watched.tree, &QAbstractItemModel::rowsMoved);
    QSignalSpy selected(&watched.tree, &EntryTree::selectedChanged);
    watched.tree.move(watched[u"A"_s], Relationship::tvwChild, watched[u"B1"_s]);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(selected.count(), 0);
    QCOMPARE(watched[u"A1"_s], a1);
    QCOMPARE(reference.entry(), a1);
    QCOMPARE(watched.tree.entryAt(index), a1);
    QCOMPARE(watched.tree.selected(), a1);
    QCOMPARE(watched.tree.taggedCount(), 1);
    QCOMPARE(watched.tree.storedText(a1), QByteArray("of A1"));
    QCOMPARE(watched.tree.storedText(watched[u"A2"_s]), QByteArray("of A2"));
}

void tst_EntryTree::aMoveGoesToTheEndOfTheCollection()
{
    WatchedTree watched;
    watched.tree.move(watched[u"A"_s], Relationship::tvwNext, watched[u"C"_s]);
    const QStringList order{u"Root"_s, u"B"_s, u"B1"_s, u"C"_s, u"A"_s, u"A1"_s, u"A2"_s};
    QCOMPARE(collectedLabels(watched.tree), order);
    watched.tree.renewInsertion(watched[u"B"_s]);
    QCOMPARE(collectedLabels(watched.tree),
             QStringList({u"Root"_s, u"C"_s, u"A"_s, u"A1"_s, u"A2"_s, u"B"_s, u"B1"_s}));
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::impossibleMovesAreRefused_data()
{
    QTest::addColumn<QString>("moved");
    QTest::addColumn<Relationship>("relationship");
    QTest::addColumn<QString>("relative");

    QTest::newRow("below itself") << u"A"_s << Relationship::tvwChild << u"A"_s;
    QTest::newRow("below its child") << u"A"_s << Relationship::tvwChild << u"A1"_s;
    QTest::newRow("beside its child") << u"A"_s << Relationship::tvwNext << u"A1"_s;
    QTest::newRow("the root") << u"Root"_s << Relationship::tvwChild << u"C"_s;
    QTest::newRow("beside the root") << u"C"_s << Relationship::tvwNext << u"Root"_s;
}

void tst_EntryTree::impossibleMovesAreRefused()
{
    QFETCH(const QString, moved);
    QFETCH(const Relationship, relationship);
    QFETCH(const QString, relative);
    WatchedTree watched;
    QCOMPARE(errorNumberOf([&] { watched.tree.move(watched[moved], relationship, watched[relative]); }), invalidCall);
    QCOMPARE(dumpOutline(watched.tree), WatchedTree::standardOutline());
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::removalTakesTheSubtree()
{
    WatchedTree watched;
    QSignalSpy removed(&watched.tree, &QAbstractItemModel::rowsRemoved);
    watched.tree.remove(watched[u"A"_s]);
    QCOMPARE(dumpOutline(watched.tree), QStringList({u"Root +"_s, u" B"_s, u"  B1"_s, u" C <"_s}));
    QCOMPARE(watched.tree.entryCount(), 4);
    QCOMPARE(watched.tree.taggedCount(), 0);
    QCOMPARE(watched[u"C"_s]->row(), 1);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed[0][1].toInt(), 0);
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::removalOfTheSelectionDropsIt_data()
{
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("removed");
    QTest::addColumn<bool>("dropped");

    QTest::newRow("the selected entry itself") << u"A"_s << u"A"_s << true;
    QTest::newRow("an ancestor of it") << u"A2"_s << u"A"_s << true;
    QTest::newRow("a child of it") << u"A"_s << u"A1"_s << false;
    QTest::newRow("a sibling of it") << u"A"_s << u"B"_s << false;
}

void tst_EntryTree::removalOfTheSelectionDropsIt()
{
    QFETCH(const QString, selected);
    QFETCH(const QString, removed);
    QFETCH(const bool, dropped);
    WatchedTree watched;
    watched.tree.select(watched[selected]);
    QSignalSpy changed(&watched.tree, &EntryTree::selectedChanged);
    watched.tree.remove(watched[removed]);
    QCOMPARE(watched.tree.selected(), dropped ? nullptr : watched[selected]);
    QCOMPARE(changed.count(), dropped ? 1 : 0);
}

void tst_EntryTree::removalOfManyIsOneReset()
{
    WatchedTree watched;
    QSignalSpy reset(&watched.tree, &QAbstractItemModel::modelReset);
    QSignalSpy removed(&watched.tree, &QAbstractItemModel::rowsRemoved);
    watched.tree.removeAll({watched[u"C"_s], watched[u"A1"_s], watched[u"A2"_s], watched[u"B1"_s]});
    QCOMPARE(dumpOutline(watched.tree), QStringList({u"Root +"_s, u" A +"_s, u" B"_s}));
    QCOMPARE(watched.tree.brokenInvariant(), QString());
    QCOMPARE(reset.count(), 1);
    QCOMPARE(removed.count(), 0);
    watched.tree.removeAll({});
    QCOMPARE(watched.tree.entryCount(), 3);
}

void tst_EntryTree::removalOfManyLetsGoOfWhatGoes()
{
    WatchedTree watched;
    EntryTree &tree = watched.tree;
    tree.select(watched[u"A2"_s]);
    const EntryRef gone(&tree, watched[u"A1"_s]);
    const EntryRef kept(&tree, watched[u"B1"_s]);
    bool asked = false;
    tree.setPendingText(watched[u"A2"_s], [&asked] {
        asked = true;
        return QByteArray();
    });
    tree.removeAll({watched[u"A"_s], watched[u"C"_s]});
    QVERIFY(!tree.selected());
    QVERIFY(!gone.entry());
    QCOMPARE(kept.entry(), watched[u"B1"_s]);
    QCOMPARE(tree.taggedCount(), 0);
    tree.resolvePendingText();
    QVERIFY(!asked);
    QCOMPARE(dumpOutline(tree), QStringList({u"Root +"_s, u" B"_s, u"  B1"_s}));
}

void tst_EntryTree::removalOfManyMayTakeTheRoot()
{
    WatchedTree watched;
    watched.tree.removeAll({watched.tree.root()});
    QVERIFY(!watched.tree.root());
    QVERIFY(!watched.tree.selected());
    QCOMPARE(watched.tree.entryCount(), 0);
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::removalOfTheRootEmptiesTheTree()
{
    WatchedTree watched;
    watched.tree.remove(watched.tree.root());
    QVERIFY(!watched.tree.root());
    QVERIFY(!watched.tree.selected());
    QCOMPARE(watched.tree.entryCount(), 0);
    QCOMPARE(watched.tree.taggedCount(), 0);
    QCOMPARE(watched.tree.brokenInvariant(), QString());
    plantOutline(watched.tree, {u"Again"_s, u" Below"_s});
    QCOMPARE(dumpOutline(watched.tree), QStringList({u"Again"_s, u" Below"_s}));
}

void tst_EntryTree::clearingIsOneReset()
{
    WatchedTree watched;
    QSignalSpy reset(&watched.tree, &QAbstractItemModel::modelReset);
    QSignalSpy removed(&watched.tree, &QAbstractItemModel::rowsRemoved);
    watched.tree.clear();
    QVERIFY(!watched.tree.root());
    QCOMPARE(reset.count(), 1);
    QCOMPARE(removed.count(), 0);
    watched.tree.clear();
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::keysFollowThePlaces()
{
    WatchedTree watched;
    QCOMPARE(watched.tree.key(watched.tree.root()), u"KEY0"_s);
    QCOMPARE(watched.tree.key(watched[u"A2"_s]), u"KEY0.1.2"_s);
    QCOMPARE(watched.tree.key(watched[u"C"_s]), u"KEY0.3"_s);
    watched.tree.remove(watched[u"A1"_s]);
    QCOMPARE(watched.tree.key(watched[u"A2"_s]), u"KEY0.1.1"_s);
    watched.tree.insert(Relationship::tvwPrevious, watched[u"A"_s]);
    QCOMPARE(watched.tree.key(watched[u"A2"_s]), u"KEY0.2.1"_s);
    for (int i = 0; i < 9; ++i)
        watched.tree.insert(Relationship::tvwNext, watched[u"A"_s]);
    QCOMPARE(watched.tree.key(watched[u"C"_s]), u"KEY0.13"_s);
}

void tst_EntryTree::everyKeyLeadsBackToItsEntry()
{
    const WatchedTree watched;
    for (const Entry *entry = watched.tree.root(); entry; entry = nextInOutline(entry, watched.tree.root())) {
        QCOMPARE(watched.tree.itemByKey(watched.tree.key(entry)), entry);
        QCOMPARE(watched.tree.itemByPath(watched.tree.key(entry).mid(3).toLatin1()), entry);
    }
}

void tst_EntryTree::keysThatNameNothing_data()
{
    QTest::addColumn<QString>("key");
    for (const QString &key : {u""_s,
                               u"KEY"_s,
                               u"0"_s,
                               u"0.1"_s,
                               u"key0"_s,
                               u"KEY1"_s,
                               u"KEY00"_s,
                               u"KEY 0"_s,
                               u"KEY0 "_s,
                               u"KEY0."_s,
                               u"KEY0.0"_s,
                               u"KEY0.01"_s,
                               u"KEY0.4"_s,
                               u"KEY0..1"_s,
                               u"KEY.1"_s,
                               u"KEY0.-1"_s,
                               u"KEY0.+1"_s,
                               u"KEY0.1x"_s,
                               u"KEY0.1."_s,
                               u"KEY0.1.3"_s,
                               u"KEY0,1"_s,
                               u"KEY0.1.1.1"_s,
                               u"KEY0.99999"_s,
                               u"KEY0.4294967297"_s,
                               u"KEY0.99999999999999999999"_s,
                               u"KEYKEY0"_s,
                               u"KEY0.\u0661"_s})
        QTest::addRow("\"%s\"", key.toUtf8().constData()) << key;
}

void tst_EntryTree::keysThatNameNothing()
{
    QFETCH(const QString, key);
    const WatchedTree watched;
    QCOMPARE(errorNumberOf([&] { watched.tree.itemByKey(key); }), elementNotFound);
    const EntryTree empty;
    QCOMPARE(errorNumberOf([&] { empty.itemByKey(u"KEY0"_s); }), elementNotFound);
}

void tst_EntryTree::labelsTagsAndExpansionAreAnnouncedOnceEach()
{
    WatchedTree watched;
    QSignalSpy data(&watched.tree, &QAbstractItemModel::dataChanged);
    QSignalSpy label(&watched.tree, &EntryTree::labelChanged);
    QSignalSpy expanded(&watched.tree, &EntryTree::expandedChanged);
    QSignalSpy selected(&watched.tree, &EntryTree::selectedChanged);
    Entry *b = watched[u"B"_s];
    for (int time = 0; time < 2; ++time) {
        watched.tree.setLabel(b, u"Bee"_s);
        watched.tree.setTagged(b, true);
        watched.tree.setExpanded(b, true);
        watched.tree.select(b);
        QCOMPARE(data.count(), 2);
        QCOMPARE(label.count(), 1);
        QCOMPARE(expanded.count(), 1);
        QCOMPARE(selected.count(), 1);
    }
    QCOMPARE(data[0][0].toModelIndex(), watched.tree.indexOf(b));
    QVERIFY(data[0][2].value<QList<int>>().contains(Qt::DisplayRole));
    QVERIFY(data[1][2].value<QList<int>>().contains(EntryTree::ImageRole));
    QCOMPARE(watched.tree.taggedCount(), 2);
    watched.tree.setTagged(b, false);
    QCOMPARE(watched.tree.taggedCount(), 1);
}

void tst_EntryTree::expandAndCollapseAll()
{
    WatchedTree watched;
    QSignalSpy reset(&watched.tree, &EntryTree::expansionReset);
    watched.tree.setExpandedAll(watched[u"B"_s], true);
    QVERIFY(watched[u"B"_s]->expanded() && watched[u"B1"_s]->expanded() && !watched[u"C"_s]->expanded());
    watched.tree.setExpandedAll(watched.tree.root(), false);
    for (const Entry *entry = watched.tree.root(); entry; entry = nextInOutline(entry, watched.tree.root()))
        QVERIFY(!entry->expanded());
    QCOMPARE(reset.count(), 2);
}

void tst_EntryTree::expandAncestorsOpensTheWay()
{
    WatchedTree watched({u"Root"_s, u" A"_s, u"  A1"_s, u"   A11"_s, u" B"_s});
    watched.tree.expandAncestors(watched[u"A1"_s]);
    QCOMPARE(dumpOutline(watched.tree), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u"   A11"_s, u" B"_s}));
    QVERIFY(watched[u"A1"_s]->visible() && !watched[u"A11"_s]->visible());
}

void tst_EntryTree::expandToLevel_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("expanded");

    QTest::newRow("level 1 closes the root and leaves the rest") << u"Root"_s << 1 << QStringList{u"A1"_s, u"B"_s};
    QTest::newRow("level 2 opens the root and closes its children")
        << u"Root"_s << 2 << QStringList{u"Root"_s, u"A1"_s};
    QTest::newRow("level 3") << u"Root"_s << 3 << QStringList{u"Root"_s, u"A"_s, u"B"_s};
    QTest::newRow("beyond the deepest level") << u"Root"_s << 99 << QStringList{u"Root"_s, u"A"_s, u"A1"_s, u"B"_s};
    QTest::newRow("a subtree's levels count from the root") << u"A"_s << 3 << QStringList{u"Root"_s, u"A"_s, u"B"_s};
    QTest::newRow("a subtree closed at its own level") << u"A"_s << 2 << QStringList{u"Root"_s, u"A1"_s, u"B"_s};
    QTest::newRow("a leaf stays as it is") << u"B1"_s << 9 << QStringList{u"Root"_s, u"A1"_s, u"B"_s};
    QTest::newRow("level 0") << u"Root"_s << 0 << QStringList{u"A1"_s, u"B"_s};
}

void tst_EntryTree::expandToLevel()
{
    QFETCH(const QString, entry);
    QFETCH(const int, level);
    QFETCH(const QStringList, expanded);
    WatchedTree watched({u"Root +"_s, u" A"_s, u"  A1 +"_s, u"   A11"_s, u" B +"_s, u"  B1"_s});
    watched.tree.expandToLevel(watched[entry], level);
    QStringList found;
    for (const Entry *each = watched.tree.root(); each; each = nextInOutline(each, watched.tree.root())) {
        if (each->expanded())
            found.append(each->label());
    }
    QCOMPARE(found, expanded);
}

void tst_EntryTree::images()
{
    const WatchedTree watched;
    const QModelIndex plain = watched.tree.indexOf(watched[u"A2"_s]);
    const QModelIndex tagged = watched.tree.indexOf(watched[u"A1"_s]);
    QCOMPARE(plain.data(EntryTree::ImageRole).toString(), u"Folder"_s);
    QCOMPARE(plain.data(EntryTree::SelectedImageRole).toString(), u"FolderSelected"_s);
    QCOMPARE(tagged.data(EntryTree::ImageRole).toString(), u"FolderTagged"_s);
    QCOMPARE(tagged.data(EntryTree::SelectedImageRole).toString(), u"FolderTaggedSelected"_s);
    QCOMPARE(plain.data(Qt::AccessibleDescriptionRole).toString(), u"Level 3"_s);
    QCOMPARE(tagged.data(Qt::AccessibleDescriptionRole).toString(), u"Level 3, tagged"_s);
}

void tst_EntryTree::sorting_data()
{
    QTest::addColumn<QStringList>("labels");
    QTest::addColumn<QStringList>("sorted");

    QTest::newRow("out of order") << QStringList{u"c"_s, u"a"_s, u"b"_s} << QStringList{u"a"_s, u"b"_s, u"c"_s};
    QTest::newRow("letters of either case")
        << QStringList{u"b"_s, u"C"_s, u"A"_s} << QStringList{u"A"_s, u"b"_s, u"C"_s};
    QTest::newRow("equal but for their case stay in order")
        << QStringList{u"z"_s, u"note"_s, u"NOTE"_s, u"Note"_s, u"a"_s}
        << QStringList{u"a"_s, u"note"_s, u"NOTE"_s, u"Note"_s, u"z"_s};
    QTest::newRow("an empty label is first") << QStringList{u"a"_s, u""_s} << QStringList{u""_s, u"a"_s};
    QTest::newRow("one alone") << QStringList{u"a"_s} << QStringList{u"a"_s};
    QTest::newRow("none") << QStringList() << QStringList();
}

void tst_EntryTree::sorting()
{
    QFETCH(const QStringList, labels);
    QFETCH(const QStringList, sorted);
    WatchedTree watched(QStringList{u"Root"_s});
    for (const QString &label : labels)
        watched.tree.setLabel(watched.tree.insert(Relationship::tvwChild, watched.tree.root()), label);
    watched.tree.setSorted(watched.tree.root(), true);
    QVERIFY(watched.tree.root()->sorted());
    QStringList found;
    for (int row = 0; row < watched.tree.root()->childCount(); ++row)
        found.append(watched.tree.root()->child(row)->label());
    QCOMPARE(found, sorted);
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::sortingKeepsIndexesWithTheirEntries()
{
    WatchedTree watched({u"Root"_s, u" c"_s, u"  c1"_s, u" a"_s, u" b"_s});
    const QPersistentModelIndex c = watched.tree.indexOf(watched[u"c"_s]);
    const QPersistentModelIndex c1 = watched.tree.indexOf(watched[u"c1"_s]);
    const QPersistentModelIndex a = watched.tree.indexOf(watched[u"a"_s]);
    watched.tree.setSorted(watched.tree.root(), true);
    QCOMPARE(c.row(), 2);
    QCOMPARE(a.row(), 0);
    QCOMPARE(c.data().toString(), u"c"_s);
    QCOMPARE(c1.parent(), QModelIndex(c));
    // The order of insertion is another thing than the order of the outline.
    QCOMPARE(collectedLabels(watched.tree), QStringList({u"Root"_s, u"c"_s, u"c1"_s, u"a"_s, u"b"_s}));
}

void tst_EntryTree::sortingHasNoEffectOnLaterInsertions()
{
    WatchedTree watched({u"Root"_s, u" b"_s, u" a"_s});
    watched.tree.setSorted(watched.tree.root(), true);
    watched.tree.setLabel(watched.tree.insert(Relationship::tvwChild, watched.tree.root()), u"0"_s);
    watched.tree.setSorted(watched.tree.root(), false);
    QCOMPARE(dumpOutline(watched.tree), QStringList({u"Root"_s, u" a"_s, u" b"_s, u" 0"_s}));
    QVERIFY(!watched.tree.root()->sorted());
}

void tst_EntryTree::sortingFollowsTheLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    WatchedTree watched({u"Root"_s, u" Zebra"_s, u" \u00C4pfel"_s, u" Birne"_s, u" Anis"_s});
    watched.tree.setSorted(watched.tree.root(), true);
    QLocale::setDefault(before);
    QCOMPARE(dumpOutline(watched.tree),
             QStringList({u"Root"_s, u" Anis"_s, u" \u00C4pfel"_s, u" Birne"_s, u" Zebra"_s}));
}

void tst_EntryTree::sortingWhatIsSortedIsNotAnnounced()
{
    WatchedTree watched;
    QSignalSpy layout(&watched.tree, &QAbstractItemModel::layoutChanged);
    watched.tree.setSorted(watched.tree.root(), true);
    QCOMPARE(layout.count(), 0);
    watched.tree.setLabel(watched[u"A"_s], u"Z"_s);
    watched.tree.setSorted(watched.tree.root(), true);
    QCOMPARE(layout.count(), 1);
}

void tst_EntryTree::aPendingTextIsMadeWhenItIsRead()
{
    WatchedTree watched;
    int made = 0;
    watched.tree.setPendingText(watched[u"B"_s], [&made] {
        ++made;
        return QByteArray("text");
    });
    QCOMPARE(watched.tree.storedText(watched[u"A"_s]), QByteArray());
    QCOMPARE(made, 0);
    QCOMPARE(watched.tree.storedText(watched[u"B"_s]), QByteArray("text"));
    QCOMPARE(watched.tree.storedText(watched[u"B"_s]), QByteArray("text"));
    QCOMPARE(made, 1);
}

void tst_EntryTree::aPendingTextGivesWayToAStoredOne()
{
    WatchedTree watched;
    watched.tree.setPendingText(watched[u"B"_s], [] { return QByteArray("pending"); });
    watched.tree.setStoredText(watched[u"B"_s], "stored");
    QCOMPARE(watched.tree.storedText(watched[u"B"_s]), QByteArray("stored"));
    watched.tree.resolvePendingText();
    QCOMPARE(watched.tree.storedText(watched[u"B"_s]), QByteArray("stored"));
}

void tst_EntryTree::aPendingTextIsMadeBeforeAnotherBecomesPending()
{
    WatchedTree watched;
    QByteArray pane = "first";
    const auto source = [&pane] { return pane; };
    watched.tree.setPendingText(watched[u"A"_s], source);
    watched.tree.setPendingText(watched[u"B"_s], source);
    pane = "second";
    QCOMPARE(watched.tree.storedText(watched[u"A"_s]), QByteArray("first"));
    QCOMPARE(watched.tree.storedText(watched[u"B"_s]), QByteArray("second"));
}

void tst_EntryTree::aPendingTextIsForgottenWithItsEntry()
{
    WatchedTree watched;
    int made = 0;
    watched.tree.setPendingText(watched[u"A1"_s], [&made] {
        ++made;
        return QByteArray();
    });
    watched.tree.remove(watched[u"A"_s]);
    watched.tree.resolvePendingText();
    QCOMPARE(made, 0);
}

void tst_EntryTree::aPendingTextIsPartOfACopy()
{
    WatchedTree source;
    WatchedTree target(QStringList{u"Other"_s});
    source.tree.setPendingText(source[u"A1"_s], [] { return QByteArray("typed"); });
    const Entry *copy = target.tree.insertCopy(source.tree, source[u"A"_s], Relationship::tvwChild, target.tree.root());
    QCOMPARE(target.tree.storedText(copy->firstChild()), QByteArray("typed"));
}

void tst_EntryTree::aPendingTextThatCouldNotBeMadeStaysPending()
{
    WatchedTree watched;
    EntryTree &tree = watched.tree;
    tree.setStoredText(watched[u"B"_s], "old");
    int times = 0;
    tree.setPendingText(watched[u"B"_s], [&times]() -> QByteArray {
        if (times++ < 2)
            throw std::bad_alloc();
        return "new";
    });
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, tree.storedText(watched[u"B"_s]));
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, tree.resolvePendingText());
    QCOMPARE(tree.storedText(watched[u"B"_s]), QByteArray("new"));
    QCOMPARE(tree.storedText(watched[u"B"_s]), QByteArray("new"));
    QCOMPARE(times, 3);
}

void tst_EntryTree::theCollectionKeepsTheOrderOfInsertion()
{
    WatchedTree watched(QStringList{u"Root"_s});
    EntryTree &tree = watched.tree;
    tree.setLabel(tree.insert(Relationship::tvwChild, tree.root()), u"second"_s);
    tree.setLabel(tree.insert(Relationship::tvwPrevious, tree.root()->child(0)), u"third"_s);
    tree.setLabel(tree.insert(Relationship::tvwChild, tree.root()->child(1)), u"fourth"_s);
    tree.insertCopy(tree, tree.root()->child(1), Relationship::tvwFirst, tree.root()->child(0));
    QCOMPARE(collectedLabels(tree),
             QStringList({u"Root"_s, u"second"_s, u"third"_s, u"fourth"_s, u"second"_s, u"fourth"_s}));
    QCOMPARE(tree.collection().indexOf(tree.root()), 1);
    QCOMPARE(tree.collection().indexOf(tree.root()->child(0)), 5);
    QVERIFY(!tree.collection().at(0) && !tree.collection().at(7) && !tree.collection().at(-1));
}

void tst_EntryTree::indicesCloseUpAfterARemoval()
{
    WatchedTree watched;
    watched.tree.remove(watched[u"A"_s]);
    QCOMPARE(collectedLabels(watched.tree), QStringList({u"Root"_s, u"B"_s, u"B1"_s, u"C"_s}));
    QCOMPARE(watched.tree.collection().indexOf(watched[u"C"_s]), 4);
    watched.tree.setLabel(watched.tree.insert(Relationship::tvwPrevious, watched[u"B"_s]), u"New"_s);
    QCOMPARE(watched.tree.collection().indexOf(watched[u"New"_s]), 5);
}

void tst_EntryTree::manyRemovalsLeaveNoGaps()
{
    EntryTree tree;
    plantOutline(tree, {u"Root"_s, u" kept"_s});
    // More insertions and removals than a tree has room for at once.
    for (int i = 0; i < 2 * EntryTree::maximumCount; ++i)
        tree.remove(tree.insert(Relationship::tvwChild, tree.root()));
    QCOMPARE(tree.entryCount(), 2);
    QCOMPARE(collectedLabels(tree), QStringList({u"Root"_s, u"kept"_s}));
    QCOMPARE(tree.brokenInvariant(), QString());
}

void tst_EntryTree::aReferenceEmptiesItself()
{
    WatchedTree watched;
    EntryRef inside(&watched.tree, watched[u"A1"_s]);
    EntryRef also(&watched.tree, watched[u"A1"_s]);
    EntryRef outside(&watched.tree, watched[u"B"_s]);
    watched.tree.remove(watched[u"A2"_s]);
    QCOMPARE(inside.entry(), watched[u"A1"_s]);
    QCOMPARE(inside.tree(), &watched.tree);
    watched.tree.remove(watched[u"A"_s]);
    QVERIFY(!inside.entry() && !inside.tree() && !also.entry());
    QCOMPARE(outside.entry(), watched[u"B"_s]);

    outside.set(&watched.tree, watched[u"C"_s]);
    watched.tree.remove(watched[u"B"_s]);
    QCOMPARE(outside.entry(), watched[u"C"_s]);
    outside.set(&watched.tree, nullptr);
    QVERIFY(!outside.entry() && !outside.tree());
    {
        const EntryRef shortLived(&watched.tree, watched[u"C"_s]);
    }
    watched.tree.clear();
}

void tst_EntryTree::aReferenceOutlivesItsTree()
{
    EntryRef reference;
    {
        EntryTree tree;
        plantOutline(tree, {u"Root"_s});
        reference.set(&tree, tree.root());
    }
    QVERIFY(!reference.entry() && !reference.tree());
}

void tst_EntryTree::bulkChangesAreOneReset()
{
    WatchedTree watched;
    QSignalSpy about(&watched.tree, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy reset(&watched.tree, &QAbstractItemModel::modelReset);
    QSignalSpy inserted(&watched.tree, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&watched.tree, &QAbstractItemModel::rowsRemoved);
    QSignalSpy data(&watched.tree, &QAbstractItemModel::dataChanged);
    QSignalSpy layout(&watched.tree, &QAbstractItemModel::layoutChanged);
    QSignalSpy expanded(&watched.tree, &EntryTree::expandedChanged);
    watched.tree.beginBulkChange();
    watched.tree.beginBulkChange();
    watched.tree.setLabel(watched.tree.insert(Relationship::tvwPrevious, watched[u"A"_s]), u"Z"_s);
    watched.tree.remove(watched[u"B"_s]);
    watched.tree.setTagged(watched[u"C"_s], true);
    watched.tree.setExpanded(watched[u"C"_s], true);
    watched.tree.endBulkChange();
    QCOMPARE(reset.count(), 0);
    watched.tree.setSorted(watched.tree.root(), true);
    watched.tree.endBulkChange();
    QCOMPARE(about.count(), 1);
    QCOMPARE(reset.count(), 1);
    QCOMPARE(inserted.count() + removed.count() + data.count() + layout.count() + expanded.count(), 0);
    QCOMPARE(dumpOutline(watched.tree),
             QStringList({u"Root +"_s, u" A +"_s, u"  A1 *"_s, u"  A2"_s, u" C +*<"_s, u" Z"_s}));
    QCOMPARE(watched.tree.brokenInvariant(), QString());
}

void tst_EntryTree::aDebugBuildGoesDownWhereATreeIsNotWhole()
{
#ifdef QT_NO_DEBUG
    QSKIP("only a debug build looks");
#endif
    const pid_t child = fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        constexpr rlimit noCore = {};
        setrlimit(RLIMIT_CORE, &noCore);
        std::signal(SIGABRT, SIG_DFL);
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        EntryTree tree;
        tree.insert(Relationship::tvwFirst, nullptr);
        EntryTree other;
        tree.select(other.insert(Relationship::tvwFirst, nullptr));
        _exit(0);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
}

void tst_EntryTree::itemModelEdges()
{
    WatchedTree watched;
    EntryTree &tree = watched.tree;
    QCOMPARE(tree.rowCount(), 1);
    QCOMPARE(tree.columnCount(), 1);
    const QModelIndex root = tree.index(0, 0);
    QCOMPARE(tree.rowCount(root), 3);
    QVERIFY(!tree.index(1, 0).isValid() && !tree.index(-1, 0).isValid() && !tree.index(0, 1).isValid());
    QVERIFY(!tree.index(3, 0, root).isValid() && !tree.index(0, 1, root).isValid());
    QVERIFY(!tree.indexOf(nullptr).isValid());
    QVERIFY(!tree.entryAt(QModelIndex()));
    QVERIFY(!tree.data(QModelIndex()).isValid());
    QVERIFY(!tree.data(root, Qt::FontRole).isValid());
    QCOMPARE(tree.flags(QModelIndex()), Qt::NoItemFlags);
    QVERIFY(tree.flags(root) & Qt::ItemIsEditable);
    QVERIFY(tree.setData(root, u"New label"_s));
    QCOMPARE(tree.root()->label(), u"New label"_s);
    QVERIFY(!tree.setData(root, u"x"_s, Qt::ToolTipRole));
    QVERIFY(!tree.setData(QModelIndex(), u"x"_s));
}

void tst_EntryTree::aFullTreeRefusesOneMore()
{
    EntryTree tree;
    tree.insert(Relationship::tvwFirst, nullptr);
    while (tree.entryCount() < EntryTree::maximumCount)
        tree.insert(Relationship::tvwChild, tree.root());
    QCOMPARE(EntryTree::maximumCount, 32767);
    QCOMPARE(errorNumberOf([&] { tree.insert(Relationship::tvwChild, tree.root()); }), overflow);
    QCOMPARE(errorNumberOf([&] { tree.insert(Relationship::tvwNext, tree.root()->child(0)); }), overflow);
    QCOMPARE(tree.entryCount(), 32767);
    QCOMPARE(tree.collection().indexOf(tree.root()->child(32765)), 32767);
    QCOMPARE(tree.key(tree.root()->child(32765)), u"KEY0.32766"_s);
    QCOMPARE(tree.brokenInvariant(), QString());
    tree.remove(tree.root()->child(0));
    QVERIFY(tree.insert(Relationship::tvwChild, tree.root()));
    QCOMPARE(tree.brokenInvariant(), QString());
}

void tst_EntryTree::aCopyThatWouldNotFitChangesNothing()
{
    EntryTree tree;
    tree.insert(Relationship::tvwFirst, nullptr);
    Entry *branch = tree.insert(Relationship::tvwChild, tree.root());
    while (tree.entryCount() < EntryTree::maximumCount - 10)
        tree.insert(Relationship::tvwChild, branch->childCount() < 10 ? branch : tree.root());
    QSignalSpy inserted(&tree, &QAbstractItemModel::rowsInserted);
    QCOMPARE(errorNumberOf([&] { tree.insertCopy(tree, branch, Relationship::tvwChild, tree.root()); }), overflow);
    QCOMPARE(tree.entryCount(), EntryTree::maximumCount - 10);
    QCOMPARE(inserted.count(), 0);
    tree.remove(branch->firstChild());
    QVERIFY(tree.insertCopy(tree, branch, Relationship::tvwChild, tree.root()));
    QCOMPARE(tree.entryCount(), EntryTree::maximumCount - 1);
    QCOMPARE(tree.brokenInvariant(), QString());
}

static Entry *plantChain(EntryTree &tree, int levels)
{
    Entry *deepest = nullptr;
    for (int level = 0; level < levels; ++level)
        deepest = tree.insert(Relationship::tvwChild, deepest);
    return deepest;
}

void tst_EntryTree::aChainOf20000Levels()
{
    EntryTree tree;
    Entry *deepest = plantChain(tree, 20000);
    QCOMPARE(deepest->level(), 20000);
    QCOMPARE(deepest->root(), tree.root());
    const QString key = tree.key(deepest);
    QCOMPARE(key.size(), 4 + 2 * 19999);
    QCOMPARE(tree.itemByKey(key), deepest);
    QCOMPARE(errorNumberOf([&] { tree.itemByKey(key + u".1"_s); }), elementNotFound);
    QCOMPARE(tree.brokenInvariant(), QString());
}

void tst_EntryTree::aChainIsCopiedExpandedAndRemoved()
{
    EntryTree tree;
    Entry *deepest = plantChain(tree, 16000);
    tree.setExpandedAll(tree.root(), true);
    QVERIFY(deepest->visible());
    tree.expandToLevel(tree.root(), 10000);
    QVERIFY(!deepest->visible());
    tree.expandAncestors(deepest);
    QVERIFY(deepest->visible());
    EntryTree other;
    other.insertCopy(tree, tree.root(), Relationship::tvwFirst, nullptr);
    QCOMPARE(other.entryCount(), 16000);
    tree.insertCopy(tree, tree.root(), Relationship::tvwChild, deepest);
    QCOMPARE(tree.entryCount(), 32000);
    QCOMPARE(tree.brokenInvariant(), QString());
    tree.select(deepest->firstChild());
    tree.remove(tree.root()->child(0));
    QCOMPARE(tree.entryCount(), 1);
    QVERIFY(!tree.selected());
}

QTEST_GUILESS_MAIN(tst_EntryTree)
#include "tst_EntryTree.moc"
