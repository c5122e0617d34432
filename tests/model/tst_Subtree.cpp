// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryTree.h"
#include "support/ErrorRecorder.h"
#include "support/OutlineText.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <set>

using namespace Qt::StringLiterals;

namespace
{

QStringList standardOutline()
{
    return {u"Root +"_s, u" A +"_s, u"  A1 *"_s, u"  A2 +"_s, u"   A21 *"_s, u" B"_s, u"  B1"_s, u" C"_s};
}

QStringList inserted(const EntryTree &tree)
{
    QStringList labels;
    for (int index = 1; index <= tree.collection().count(); ++index)
        labels.append(tree.collection().at(index)->label());
    return labels;
}

// A chain of that many entries, the first of which is the root.
void plantChain(EntryTree &tree, int depth)
{
    Entry *entry = nullptr;
    for (int level = 0; level < depth; ++level)
        entry = tree.insert(Relationship::tvwChild, entry);
}

} // namespace

class tst_Subtree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noTwoEntriesHaveOneId();
    void anIdLeadsToItsEntryWhileThatIsInTheTree();
    void idsAreFoundAmongManyThatCameAndWent();
    void aReferenceFollowsAnEntryOutAndBack();

    void whatIsTakenComesBackAsItWas_data();
    void whatIsTakenComesBackAsItWas();
    void manyTakenAtOnceComeBackAsTheyWere();
    void theRootComesBackAsItWas();
    void takingAndPuttingBackAreAnnounced();
    void aTextThatIsStillToBeMadeGoesAlong();
    void aFullTreeRefusesASubtreeAndKeepsNothingOfIt();
    void aSubtreeKnowsHowMuchItHolds();
    void deepSubtreesGoAndComeBack();
    void manyGoAndComeBackInLinearTime();

    void aMoveIsTakenBackWithItsPlaceInTheOrderOfInsertion();
};

void tst_Subtree::noTwoEntriesHaveOneId()
{
    EntryTree tree;
    EntryTree other;
    plantOutline(tree, standardOutline());
    other.insertCopy(tree, tree.root(), Relationship::tvwChild, nullptr);
    std::set<EntryId> ids;
    for (EntryTree *each : {&tree, &other}) {
        for (const Entry *entry = each->root(); entry; entry = nextInOutline(entry, each->root())) {
            QVERIFY(entry->id() != EntryId::None);
            ids.insert(entry->id());
        }
    }
    QCOMPARE(ids.size(), size_t(16));
}

void tst_Subtree::anIdLeadsToItsEntryWhileThatIsInTheTree()
{
    EntryTree tree;
    QVERIFY(!tree.entry(EntryId(1)));
    plantOutline(tree, standardOutline());
    Entry *b1 = entryLabelled(tree, u"B1"_s);
    const EntryId id = b1->id();
    QCOMPARE(tree.entry(id), b1);
    QVERIFY(!tree.entry(EntryId::None));
    Subtree taken = tree.take(entryLabelled(tree, u"B"_s));
    QVERIFY(!tree.entry(id));
    tree.put(taken, {tree.root(), 0});
    QCOMPARE(tree.entry(id), b1);
    tree.remove(b1);
    QVERIFY(!tree.entry(id));
}

void tst_Subtree::idsAreFoundAmongManyThatCameAndWent()
{
    QRandomGenerator random(7);
    EntryTree tree;
    tree.insert(Relationship::tvwFirst, nullptr);
    std::vector<EntryId> here;
    std::set<EntryId> gone;
    for (int i = 0; i < 20'000; ++i) {
        if (here.empty() || random.bounded(100) < 55) {
            here.push_back(tree.insert(Relationship::tvwChild, tree.root())->id());
        } else {
            // Near the end, so that closing the gap stays cheap.
            const size_t back = std::min<size_t>(here.size(), 1 + size_t(random.bounded(40)));
            const auto which = here.end() - static_cast<std::ptrdiff_t>(back);
            tree.remove(tree.entry(*which));
            gone.insert(*which);
            here.erase(which);
        }
    }
    for (const EntryId id : here)
        QVERIFY(tree.entry(id) && tree.entry(id)->id() == id);
    for (const EntryId id : gone)
        QVERIFY(!tree.entry(id));
    QCOMPARE(tree.brokenInvariant(), QString());
}

void tst_Subtree::aReferenceFollowsAnEntryOutAndBack()
{
    EntryTree tree;
    plantOutline(tree, standardOutline());
    Entry *a1 = entryLabelled(tree, u"A1"_s);
    const EntryRef reference(&tree, a1);
    Subtree taken = tree.take(entryLabelled(tree, u"A"_s));
    QVERIFY(!reference.entry() && !reference.tree());
    tree.put(taken, {tree.root(), 0});
    QCOMPARE(reference.entry(), a1);
    QCOMPARE(reference.tree(), &tree);
}

void tst_Subtree::whatIsTakenComesBackAsItWas_data()
{
    QTest::addColumn<QString>("label");
    for (const char *label : {"A", "A1", "A2", "A21", "B", "B1", "C"})
        QTest::newRow(label) << QString::fromLatin1(label);
}

void tst_Subtree::whatIsTakenComesBackAsItWas()
{
    QFETCH(const QString, label);
    EntryTree tree;
    const QAbstractItemModelTester tester(&tree, QAbstractItemModelTester::FailureReportingMode::Fatal);
    plantOutline(tree, standardOutline());
    // Neither in outline order nor without gaps.
    tree.renewInsertion(entryLabelled(tree, u"A2"_s));
    tree.remove(tree.insert(Relationship::tvwChild, tree.root()));
    const QStringList outline = dumpOutline(tree);
    const QStringList order = inserted(tree);
    Entry *entry = entryLabelled(tree, label);
    const EntryTree::Place place{entry->parent(), entry->row()};
    const int tagged = tree.taggedCount();

    Subtree taken = tree.take(entry);
    QVERIFY(taken);
    QCOMPARE(taken.top(), entry);
    QCOMPARE(tree.entryCount() + taken.count(), 8);
    QCOMPARE(tree.brokenInvariant(), QString());
    // What is numbered and inserted in between must not matter.
    QCOMPARE(inserted(tree).size(), tree.entryCount());
    tree.remove(tree.insert(Relationship::tvwChild, tree.root()));

    QCOMPARE(tree.put(taken, place), entry);
    QVERIFY(!taken);
    QCOMPARE(tree.brokenInvariant(), QString());
    QCOMPARE(dumpOutline(tree), outline);
    QCOMPARE(inserted(tree), order);
    QCOMPARE(tree.taggedCount(), tagged);
    const Entry *newest = tree.insert(Relationship::tvwChild, tree.root());
    QCOMPARE(tree.collection().at(9), newest);
}

void tst_Subtree::manyTakenAtOnceComeBackAsTheyWere()
{
    for (int chosen = 0; chosen < 1 << 5; ++chosen) {
        EntryTree tree;
        const QAbstractItemModelTester tester(&tree, QAbstractItemModelTester::FailureReportingMode::Fatal);
        plantOutline(tree, standardOutline());
        tree.renewInsertion(entryLabelled(tree, u"B"_s));
        const QStringList outline = dumpOutline(tree);
        const QStringList order = inserted(tree);
        std::vector<Entry *> tops;
        const char *labels[] = {"C", "A1", "B1", "A21", "A2"};
        for (int i = 0; i < 5; ++i) {
            if (chosen & (1 << i) && !(i == 3 && chosen & (1 << 4)))
                tops.push_back(entryLabelled(tree, QString::fromLatin1(labels[i])));
        }
        std::vector<TakenSubtree> taken = tree.takeAll(tops);
        QCOMPARE(taken.size(), tops.size());
        QCOMPARE(tree.brokenInvariant(), QString());
        tree.putAll(taken);
        QCOMPARE(tree.brokenInvariant(), QString());
        QCOMPARE(dumpOutline(tree), outline);
        QCOMPARE(inserted(tree), order);
    }
}

void tst_Subtree::theRootComesBackAsItWas()
{
    EntryTree tree;
    plantOutline(tree, standardOutline());
    const QStringList outline = dumpOutline(tree);
    Subtree taken = tree.take(tree.root());
    QVERIFY(!tree.root());
    tree.put(taken, {nullptr, 0});
    QCOMPARE(dumpOutline(tree), outline);
    std::vector<TakenSubtree> all = tree.takeAll({tree.root()});
    QVERIFY(!tree.root());
    QCOMPARE(tree.entryCount(), 0);
    tree.putAll(all);
    QCOMPARE(dumpOutline(tree), outline);
    QCOMPARE(tree.brokenInvariant(), QString());
}

void tst_Subtree::takingAndPuttingBackAreAnnounced()
{
    EntryTree tree;
    plantOutline(tree, standardOutline());
    tree.select(entryLabelled(tree, u"A21"_s));
    QSignalSpy removed(&tree, &QAbstractItemModel::rowsRemoved);
    QSignalSpy back(&tree, &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(&tree, &QAbstractItemModel::modelReset);
    QSignalSpy expansion(&tree, &EntryTree::expansionReset);
    Subtree taken = tree.take(entryLabelled(tree, u"A"_s));
    QVERIFY(!tree.selected());
    tree.put(taken, {tree.root(), 0});
    QCOMPARE(removed.count(), 1);
    QCOMPARE(back.count(), 1);
    QCOMPARE(expansion.count(), 1);
    std::vector<TakenSubtree> many = tree.takeAll({entryLabelled(tree, u"A"_s), entryLabelled(tree, u"C"_s)});
    QCOMPARE(reset.count(), 1);
    tree.putAll(many);
    QCOMPARE(reset.count(), 2);
}

void tst_Subtree::aTextThatIsStillToBeMadeGoesAlong()
{
    EntryTree tree;
    plantOutline(tree, standardOutline());
    Entry *a1 = entryLabelled(tree, u"A1"_s);
    tree.setPendingText(a1, [] { return QByteArray("typed"); });
    Subtree taken = tree.take(entryLabelled(tree, u"A"_s));
    QVERIFY(!tree.isPending(a1));
    tree.put(taken, {tree.root(), 0});
    QCOMPARE(tree.storedText(a1), QByteArray("typed"));

    tree.setPendingText(a1, []() -> QByteArray { throw std::bad_alloc(); });
    const QStringList outline = dumpOutline(tree);
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, tree.take(entryLabelled(tree, u"A"_s)));
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, tree.takeAll({entryLabelled(tree, u"A"_s)}));
    QCOMPARE(dumpOutline(tree), outline);
    tree.remove(a1);
}

void tst_Subtree::aFullTreeRefusesASubtreeAndKeepsNothingOfIt()
{
    EntryTree tree;
    plantOutline(tree, standardOutline());
    Subtree taken = tree.take(entryLabelled(tree, u"A"_s));
    while (tree.entryCount() < EntryTree::maximumCount - 3)
        tree.insert(Relationship::tvwChild, tree.root());
    QVERIFY_THROWS_EXCEPTION(RunTimeError, tree.put(taken, {tree.root(), 0}));
    QCOMPARE(taken.count(), 4);
    tree.remove(tree.root()->lastSibling()->child(tree.root()->childCount() - 1));
    tree.put(taken, {tree.root(), 0});
    QCOMPARE(tree.entryCount(), EntryTree::maximumCount);
    QCOMPARE(tree.brokenInvariant(), QString());
}

void tst_Subtree::aSubtreeKnowsHowMuchItHolds()
{
    EntryTree tree;
    plantOutline(tree, standardOutline());
    tree.setStoredText(entryLabelled(tree, u"A21"_s), QByteArray(100'000, 'x'));
    const Subtree copy = tree.copyOf(entryLabelled(tree, u"A"_s));
    const Subtree taken = tree.take(entryLabelled(tree, u"A"_s));
    for (const Subtree *each : {&copy, &taken}) {
        QVERIFY(each->weight() > 100'000);
        QVERIFY(each->weight() < 102'000);
        QCOMPARE(each->count(), 4);
    }
}

void tst_Subtree::deepSubtreesGoAndComeBack()
{
    EntryTree tree;
    plantChain(tree, 20'000);
    Entry *second = tree.root()->firstChild();
    Subtree taken = tree.take(second);
    QCOMPARE(tree.entryCount(), 1);
    QCOMPARE(taken.count(), 19'999);
    tree.put(taken, {tree.root(), 0});
    std::vector<TakenSubtree> all = tree.takeAll({second});
    tree.putAll(all);
    QCOMPARE(tree.brokenInvariant(), QString());
    // And is let go of without a call for each level.
    const Subtree last = tree.take(tree.root());
    QCOMPARE(last.count(), 20'000);
}

void tst_Subtree::manyGoAndComeBackInLinearTime()
{
    EntryTree tree;
    tree.insert(Relationship::tvwFirst, nullptr);
    std::vector<Entry *> odd;
    for (int i = 0; i < 32'000; ++i) {
        Entry *entry = tree.insert(Relationship::tvwChild, tree.root());
        if (i % 2 == 1)
            odd.push_back(entry);
    }
    std::ranges::reverse(odd);
    const std::vector<qint64> before = tree.insertionPlaces(tree.root());
    std::vector<TakenSubtree> taken = tree.takeAll(odd);
    QCOMPARE(tree.entryCount(), 16'001);
    tree.putAll(taken);
    QCOMPARE(tree.insertionPlaces(tree.root()), before);
    QCOMPARE(tree.brokenInvariant(), QString());
}

void tst_Subtree::aMoveIsTakenBackWithItsPlaceInTheOrderOfInsertion()
{
    EntryTree tree;
    const QAbstractItemModelTester tester(&tree, QAbstractItemModelTester::FailureReportingMode::Fatal);
    plantOutline(tree, standardOutline());
    const QStringList outline = dumpOutline(tree);
    const QStringList order = inserted(tree);
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root())) {
        Entry *moving = entryLabelled(tree, u"A2"_s);
        const EntryTree::Place from{moving->parent(), moving->row()};
        const std::vector<qint64> places = tree.insertionPlaces(moving);
        try {
            tree.move(moving, Relationship::tvwChild, tree.entry(entry->id()));
        } catch (const RunTimeError &) {
            continue;
        }
        QCOMPARE(inserted(tree).mid(6), QStringList({u"A2"_s, u"A21"_s}));
        tree.moveTo(moving, from, places);
        QCOMPARE(dumpOutline(tree), outline);
        QCOMPARE(inserted(tree), order);
        QCOMPARE(tree.brokenInvariant(), QString());
    }
}

QTEST_GUILESS_MAIN(tst_Subtree)
#include "tst_Subtree.moc"
