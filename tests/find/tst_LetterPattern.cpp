// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/Folding.h"
#include "find/LetterPattern.h"
#include "find/RandomText.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool isWordCharacter(const QString &name, int at)
{
    return at >= 0 && at < name.size() && (name[at].isLetterOrNumber() || name[at].isSurrogate());
}

// What a placement of letters is worth, read from it as it is said.
int worthOf(const QString &name, const std::vector<int> &placement)
{
    const auto holds = [&](int at) { return std::ranges::count(placement, at) > 0; };
    int worth = 0;
    for (std::size_t i = 0; i < placement.size(); ++i) {
        const int at = placement[i];
        if (isWordCharacter(name, at) && !isWordCharacter(name, at - 1))
            worth += LetterPattern::wordBeginning + (at == 0 ? LetterPattern::nameBeginning : 0);
        if (i > 0 && placement[i - 1] == at - 1)
            worth += LetterPattern::behindTheLast;
    }
    for (int begin = 0; begin < name.size(); ++begin) {
        if (!isWordCharacter(name, begin) || isWordCharacter(name, begin - 1))
            continue;
        bool whole = true;
        for (int at = begin; isWordCharacter(name, at); ++at)
            whole = whole && holds(at);
        worth += whole ? LetterPattern::wholeWord : 0;
    }
    return worth;
}

// Tries every placement.
void tryAll(const QString &letters, const QString &name, std::vector<int> &placement, int &best)
{
    if (std::ssize(placement) == letters.size()) {
        best = std::max(best, worthOf(name, placement));
        return;
    }
    for (int at = placement.empty() ? 0 : placement.back() + 1; at < name.size(); ++at) {
        if (name[at] != letters[std::ssize(placement)])
            continue;
        placement.push_back(at);
        tryAll(letters, name, placement, best);
        placement.pop_back();
    }
}

std::optional<int> slowRank(const QString &letters, const QString &name)
{
    if (letters.isEmpty())
        return 0;
    int best = -1;
    std::vector<int> placement;
    tryAll(letters, name, placement, best);
    if (best < 0)
        return std::nullopt;
    return LetterPattern::unit * best - int(std::min<qsizetype>(name.size(), LetterPattern::longestCounted));
}

std::optional<int> rank(const QString &typed, const QString &name)
{
    return LetterPattern(typed).rank(folded(name));
}

} // namespace

class tst_LetterPattern : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lettersStandInTheirOrder();
    void whatIsMeantComesFirst_data();
    void whatIsMeantComesFirst();
    void caseAccentsAndBlanksDoNotCount();
    void everyRankIsThatOfTheBestPlacement();
    void whatLacksABitLacksALetter();
    void ofALongNameTheBeginningIsLookedAt();
    void foldedCharactersKnowWhereTheyComeFrom();
};

void tst_LetterPattern::lettersStandInTheirOrder()
{
    QVERIFY(rank(u"bgt"_s, u"Budget"_s));
    QVERIFY(!rank(u"tgb"_s, u"Budget"_s));
    QVERIFY(!rank(u"budgets"_s, u"Budget"_s));
    QVERIFY(!rank(u"bb"_s, u"Budget"_s));
    QVERIFY(!rank(u"b"_s, QString()));
    QCOMPARE(rank(QString(), u"Budget"_s), std::optional(0));
}

void tst_LetterPattern::whatIsMeantComesFirst_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::newRow("the beginning of a word") << u"plan"_s << u"Our plan"_s << u"Airplane"_s;
    QTest::newRow("the beginnings of words") << u"np"_s << u"New plan"_s << u"Snap"_s;
    QTest::newRow("letters that stand together") << u"bud"_s << u"Budget"_s << u"Big undone dishes"_s;
    QTest::newRow("a whole word") << u"plan"_s << u"Plan of the house"_s << u"Planes overhead"_s;
    QTest::newRow("the shorter name") << u"plan"_s << u"Plan"_s << u"Plan of the house"_s;
    QTest::newRow("the beginning of the name") << u"plan"_s << u"Plans A"_s << u"A plans"_s;
}

void tst_LetterPattern::whatIsMeantComesFirst()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, first);
    QFETCH(const QString, second);
    QVERIFY(rank(typed, second));
    QVERIFY(rank(typed, first) > rank(typed, second));
}

void tst_LetterPattern::caseAccentsAndBlanksDoNotCount()
{
    QCOMPARE(rank(u"RESUME"_s, u"R\u00e9sum\u00e9"_s), rank(u"r\u00e9sum\u00e9"_s, u"resume"_s));
    QCOMPARE(LetterPattern(u" b u\td "_s).letters(), u"bud"_s);
    QVERIFY(LetterPattern(u" \u0301 "_s).isEmpty());
}

void tst_LetterPattern::everyRankIsThatOfTheBestPlacement()
{
    RandomText random(7);
    static const QString characters[] = {u"a"_s, u"b"_s, u"a"_s, u"B"_s, u" "_s, u"-"_s, u"\u00e1"_s, u"/"_s};
    for (int round = 0; round < 20000; ++round) {
        QString name;
        for (int i = random.below(11); i > 0; --i)
            name += round % 10 == 0 ? random.text(1) : characters[random.below(int(std::size(characters)))];
        QString typed;
        for (int i = random.below(5); i > 0; --i)
            typed += characters[random.below(int(std::size(characters)))];
        const QString looked = folded(name);
        const LetterPattern pattern(typed);
        QCOMPARE(pattern.rank(looked), slowRank(pattern.letters(), looked));
        const std::vector<int> places = pattern.places(looked);
        if (pattern.isEmpty() || !pattern.rank(looked)) {
            QVERIFY(places.empty());
            continue;
        }
        QCOMPARE(std::ssize(places), pattern.letters().size());
        QVERIFY(std::ranges::is_sorted(places));
        for (std::size_t i = 0; i < places.size(); ++i)
            QCOMPARE(looked[places[i]], pattern.letters()[qsizetype(i)]);
        const int length = int(std::min<qsizetype>(looked.size(), LetterPattern::longestCounted));
        QCOMPARE(LetterPattern::unit * worthOf(looked, places) - length, *pattern.rank(looked));
    }
}

void tst_LetterPattern::whatLacksABitLacksALetter()
{
    RandomText random(11);
    for (int round = 0; round < 5000; ++round) {
        const QString name = folded(random.text(12));
        const LetterPattern pattern(random.text(3));
        if ((pattern.bits() & ~LetterPattern::bitsOf(name)) != 0)
            QVERIFY(!pattern.rank(name));
    }
}

void tst_LetterPattern::ofALongNameTheBeginningIsLookedAt()
{
    const QString filling(LetterPattern::longestLooked - 1, u'x');
    QVERIFY(rank(u"y"_s, filling + u'y'));
    QVERIFY(!rank(u"y"_s, filling + u"xy"_s));
    QVERIFY(LetterPattern(u"y"_s).places(filling + u"xy"_s).empty());
}

void tst_LetterPattern::foldedCharactersKnowWhereTheyComeFrom()
{
    // The ligature is two letters, the accent none.
    QCOMPARE(originsOfFolded(u"e\u0301\ufb01\U0001f600x"_s), (std::vector{0, 2, 3, 3, 5}));
    RandomText random(13);
    for (int round = 0; round < 2000; ++round) {
        const QString text = random.text(10);
        const std::vector<int> origins = originsOfFolded(text);
        QCOMPARE(std::ssize(origins), folded(text).size());
        QVERIFY(std::ranges::is_sorted(origins));
    }
}

QTEST_APPLESS_MAIN(tst_LetterPattern)
#include "tst_LetterPattern.moc"
