// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/EntryNames.h"
#include "find/Folding.h"
#include "find/NameRanking.h"
#include "find/RandomText.h"
#include "model/EntryTree.h"

#include <QTest>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace
{

// Budgets and plans by year, and what has a stroke in its name.
NameList household()
{
    NameList names;
    names.add(u"Household"_s);          // 0
    names.add(u"Budget"_s, 0);          // 1
    names.add(u"2023"_s, 1);            // 2
    names.add(u"2024"_s, 1);            // 3
    names.add(u"Repairs"_s, 3);         // 4
    names.add(u"Plans"_s, 0);           // 5
    names.add(u"2024"_s, 5);            // 6
    names.add(u"TCP/IP"_s, 0);          // 7
    names.add(u"Commands"_s, 0, false); // 8
    return names;
}

QStringList found(const NameList &names, const QString &typed)
{
    NameRanking ranking(names);
    QStringList labels;
    for (const NameRanking::Found &each : ranking.find(NamePattern(typed))) {
        QString way;
        for (int at = each.place; at >= 0; at = names.at(at).above)
            way.prepend(way.isEmpty() ? names.at(at).name : names.at(at).name + u'/');
        labels.append(way);
    }
    return labels;
}

// The best rank of a name by trying for each part of the way every name above.
std::optional<int> slowRank(const NameList &names, const NamePattern &pattern, int place)
{
    const auto rankOf = [&](const LetterPattern &part, int at) { return part.rank(names.at(at).folded); };
    std::optional<int> best;
    const auto take = [&best](int rank) { best = best ? std::max(*best, rank) : rank; };
    if (pattern.way().empty())
        return rankOf(pattern.name(), place);
    if (const std::optional<int> rank = rankOf(pattern.whole(), place))
        take(*rank);
    const std::optional<int> own = rankOf(pattern.name(), place);
    if (!own)
        return best;
    // From the innermost part outwards.
    const std::function<void(std::size_t, int, int)> goUp = [&](std::size_t parts, int from, int sum) {
        if (parts == 0) {
            take(sum);
            return;
        }
        for (int at = names.at(from).above; at >= 0; at = names.at(at).above) {
            if (const std::optional<int> rank = rankOf(pattern.way()[parts - 1], at))
                goUp(parts - 1, at, sum + *rank);
        }
    };
    goUp(pattern.way().size(), place, *own);
    return best;
}

} // namespace

class tst_NameRanking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreFoundByTheirWay_data();
    void namesAreFoundByTheirWay();
    void whatIsNotSoughtOnlyNamesTheWay();
    void everyResultIsTheSlowOne();
    void typingOnLooksOnlyThroughWhatWasFound();
    void theBestAreKeptWhenThereAreManyMore();
    void lettersAreMarkedWhereTheyWereMeant();
    void labelsThatStayAreNotFoldedAgain();
};

void tst_NameRanking::namesAreFoundByTheirWay_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("a label") << u"repa"_s << QStringList{u"Household/Budget/2024/Repairs"_s};
    QTest::newRow("all of that label") << u"2024"_s
                                       << QStringList{u"Household/Budget/2024"_s, u"Household/Plans/2024"_s};
    QTest::newRow("below a label") << u"bud/2024"_s << QStringList{u"Household/Budget/2024"_s};
    QTest::newRow("with the other sign") << u"pl > 2024"_s << QStringList{u"Household/Plans/2024"_s};
    QTest::newRow("not directly below") << u"bud/rep"_s << QStringList{u"Household/Budget/2024/Repairs"_s};
    QTest::newRow("two above") << u"house/bud/23"_s << QStringList{u"Household/Budget/2023"_s};
    QTest::newRow("in another order") << u"bud/house/23"_s << QStringList();
    QTest::newRow("all that is below") << u"bud/"_s
                                       << QStringList{u"Household/Budget/2023"_s, u"Household/Budget/2024"_s,
                                                      u"Household/Budget/2024/Repairs"_s};
    QTest::newRow("a stroke of the label's own") << u"tcp/ip"_s << QStringList{u"Household/TCP/IP"_s};
    QTest::newRow("not the name itself") << u"repairs/"_s << QStringList();
}

void tst_NameRanking::namesAreFoundByTheirWay()
{
    QFETCH(const QString, typed);
    QFETCH(const QStringList, expected);
    QCOMPARE(found(household(), typed), expected);
}

void tst_NameRanking::whatIsNotSoughtOnlyNamesTheWay()
{
    NameList names = household();
    names.add(u"Undo"_s, 8);
    QCOMPARE(found(names, u"commands"_s), QStringList());
    QCOMPARE(found(names, u"comm/un"_s), QStringList{u"Household/Commands/Undo"_s});
}

void tst_NameRanking::everyResultIsTheSlowOne()
{
    std::mt19937 random(5);
    const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
    const auto text = [&](const char *characters, int most) {
        QString made;
        for (int i = below(most + 1); i > 0; --i)
            made += QLatin1Char(characters[below(int(qstrlen(characters)))]);
        return made;
    };
    for (int round = 0; round < 600; ++round) {
        NameList names;
        for (int place = 0; place < 25; ++place)
            names.add(text("abAB -/", 6), below(place + 1) - 1, below(5) > 0);
        NameRanking ranking(names);
        QString typed;
        // Typed letter by letter, with what was typed taken back at times.
        for (int step = 0; step < 8; ++step) {
            if (below(4) == 0)
                typed.chop(below(4));
            else
                typed += text("ab/> ", 2);
            const NamePattern pattern(typed);
            std::vector<NameRanking::Found> expected;
            for (int place = 0; place < names.count(); ++place) {
                const std::optional<int> rank = slowRank(names, pattern, place);
                if (rank && names.at(place).isSought)
                    expected.push_back({place, *rank});
            }
            std::ranges::stable_sort(expected, std::greater(), &NameRanking::Found::rank);
            QVERIFY2(ranking.find(pattern) == expected, qPrintable(typed));
            QCOMPARE(ranking.count(), int(expected.size()));
        }
    }
}

void tst_NameRanking::typingOnLooksOnlyThroughWhatWasFound()
{
    NameList names;
    for (int i = 0; i < 1000; ++i)
        names.add(i % 100 == 0 ? u"Budget %1"_s.arg(i) : u"Plan %1"_s.arg(i));
    NameRanking ranking(names);
    ranking.find(NamePattern(u"b"_s));
    QCOMPARE(ranking.lookedAt(), 1000);
    ranking.find(NamePattern(u"bu"_s));
    QCOMPARE(ranking.lookedAt(), 10);
    ranking.find(NamePattern(u"bud"_s));
    QCOMPARE(ranking.lookedAt(), 10);
    // A way is another question.
    ranking.find(NamePattern(u"bud/"_s));
    QCOMPARE(ranking.lookedAt(), 1000);
    ranking.find(NamePattern(u"bu"_s));
    QCOMPARE(ranking.lookedAt(), 1000);
}

void tst_NameRanking::theBestAreKeptWhenThereAreManyMore()
{
    NameList names;
    for (int i = 0; i < 1000; ++i)
        names.add(u"a plan of many"_s);
    names.add(u"Plan"_s);
    NameRanking ranking(names);
    const std::vector<NameRanking::Found> &best = ranking.find(NamePattern(u"plan"_s));
    QCOMPARE(int(best.size()), NameRanking::mostFound);
    QCOMPARE(best[0].place, 1000);
    QCOMPARE(best[1].place, 0);
    QCOMPARE(ranking.count(), 1001);
}

void tst_NameRanking::lettersAreMarkedWhereTheyWereMeant()
{
    QCOMPARE(NamePattern(u"bud/024"_s).places(folded(u"2024"_s)), (std::vector{1, 2, 3}));
    QCOMPARE(NamePattern(u"tcp/ip"_s).places(folded(u"TCP/IP"_s)), (std::vector{0, 1, 2, 3, 4, 5}));
    QCOMPARE(NamePattern(u"bud/"_s).places(folded(u"2024"_s)), std::vector<int>());
}

void tst_NameRanking::labelsThatStayAreNotFoldedAgain()
{
    EntryTree tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    tree.setLabel(root, u"Root"_s);
    for (int i = 0; i < 20; ++i)
        tree.setLabel(tree.insert(Relationship::tvwChild, root), u"Entry %1"_s.arg(i));
    EntryNames names;
    names.take(tree);
    QCOMPARE(names.foldedLately(), 21);
    names.take(tree);
    QCOMPARE(names.foldedLately(), 0);
    QCOMPARE(names.names().count(), 21);

    Entry *last = root->lastSibling()->child(19);
    tree.setLabel(last, u"Another"_s);
    tree.move(last, Relationship::tvwPrevious, root->child(0));
    tree.remove(root->child(5));
    Entry *deep = tree.insert(Relationship::tvwChild, root->child(3));
    tree.setLabel(deep, u"Deep"_s);
    names.take(tree);
    QCOMPARE(names.foldedLately(), 2);
    int place = 0;
    for (const Entry *entry = root; entry; entry = nextInOutline(entry, root), ++place) {
        QCOMPARE(names.entryAt(place), entry->id());
        const NameList::Name &name = names.names().at(place);
        QCOMPARE(name.name, entry->label());
        QCOMPARE(name.folded, folded(entry->label()));
        QCOMPARE(name.above < 0 ? EntryId::None : names.entryAt(name.above),
                 entry->parent() ? entry->parent()->id() : EntryId::None);
    }
    QCOMPARE(place, names.names().count());
}

QTEST_APPLESS_MAIN(tst_NameRanking)
#include "tst_NameRanking.moc"
