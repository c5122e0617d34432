// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/OutlineComparison.h"

#include "vault/KeptOutline.h"

#include "util/RunTimeError.h"

#include <QRandomGenerator>
#include <QTest>

#include <set>

using namespace Qt::StringLiterals;

namespace
{

// A line an entry: two blanks a level, the label, "=" and the text, "*" in front of a tagged one's label.
std::vector<ComparedEntry> outlineOfLines(const QStringList &lines)
{
    std::vector<ComparedEntry> entries;
    for (const QString &line : lines) {
        ComparedEntry entry;
        const QString content = line.trimmed();
        entry.level = static_cast<int>(line.indexOf(content)) / 2;
        entry.tagged = content.startsWith(u'*');
        entry.label = content.section(u'=', 0, 0).mid(entry.tagged ? 1 : 0);
        entry.text = content.section(u'=', 1).toUtf8();
        entries.push_back(entry);
    }
    return entries;
}

// The differences in words, a line each.
QStringList differencesOf(const QStringList &before, const QStringList &after)
{
    const std::vector<ComparedEntry> from = outlineOfLines(before);
    const std::vector<ComparedEntry> to = outlineOfLines(after);
    QStringList lines;
    for (const EntryDifference &difference : compareOutlines(from, to).differences) {
        if (difference.isRemoved()) {
            lines.append(u"removed "_s + from[static_cast<size_t>(difference.before)].label);
            continue;
        }
        QString line = to[static_cast<size_t>(difference.after)].label;
        if (difference.isAdded())
            line.prepend(u"added "_s);
        if (difference.isRenamed)
            line += u" was "_s + from[static_cast<size_t>(difference.before)].label;
        line += difference.hasOtherText ? u" text"_s : QString();
        line += difference.hasOtherTag ? u" tag"_s : QString();
        line += difference.isMoved ? u" moved"_s : QString();
        lines.append(line);
    }
    return lines;
}

std::vector<ComparedEntry> randomOutline(QRandomGenerator &random, int count)
{
    std::vector<ComparedEntry> entries;
    int level = 0;
    for (int place = 0; place < count; ++place) {
        entries.push_back(
            {level, u"L%1"_s.arg(random.bounded(6)), QByteArray::number(random.bounded(4)), random.bounded(5) == 0});
        level = 1 + random.bounded(level + 1);
    }
    return entries;
}

} // namespace

class tst_OutlineComparison : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatTellsTwoOutlinesApart_data();
    void whatTellsTwoOutlinesApart();
    void everyEntryIsMatchedAtMostOnceOrToldOf();
    void anOutlineIsNoDifferentFromItself();
    void largeOutlinesAreComparedInProportion_data();
    void largeOutlinesAreComparedInProportion();
    void whatIsNoOutlineIsRefused();
};

void tst_OutlineComparison::whatTellsTwoOutlinesApart_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<QStringList>("differences");
    const QStringList plain = {u"root"_s, u"  a=1"_s, u"    b=2"_s, u"    c=3"_s, u"  d=4"_s};
    QTest::newRow("nothing") << plain << plain << QStringList();
    QTest::newRow("a text") << plain << QStringList{u"root"_s, u"  a=1"_s, u"    b=9"_s, u"    c=3"_s, u"  d=4"_s}
                            << QStringList{u"b text"_s};
    QTest::newRow("a label") << plain << QStringList{u"root"_s, u"  A=1"_s, u"    b=2"_s, u"    c=3"_s, u"  d=4"_s}
                             << QStringList{u"A was a"_s};
    QTest::newRow("the root's label and text")
        << plain << QStringList{u"Root=0"_s, u"  a=1"_s, u"    b=2"_s, u"    c=3"_s, u"  d=4"_s}
        << QStringList{u"Root was root text"_s};
    QTest::newRow("a tag") << plain << QStringList{u"root"_s, u"  a=1"_s, u"    *b=2"_s, u"    c=3"_s, u"  d=4"_s}
                           << QStringList{u"b tag"_s};
    QTest::newRow("an entry more") << plain << QStringList{u"root"_s,  u"  a=1"_s,   u"    b=2"_s,
                                                           u"    x"_s, u"    c=3"_s, u"  d=4"_s}
                                   << QStringList{u"added x"_s};
    QTest::newRow("a branch less") << plain << QStringList{u"root"_s, u"  d=4"_s}
                                   << QStringList{u"removed a"_s, u"removed b"_s, u"removed c"_s};
    QTest::newRow("another order") << plain
                                   << QStringList{u"root"_s, u"  d=4"_s, u"  a=1"_s, u"    b=2"_s, u"    c=3"_s}
                                   << QStringList{u"d moved"_s};
    QTest::newRow("a branch below another")
        << plain << QStringList{u"root"_s, u"  d=4"_s, u"    a=1"_s, u"      b=2"_s, u"      c=3"_s}
        << QStringList{u"a moved"_s};
    QTest::newRow("moved and given another text")
        << plain << QStringList{u"root"_s, u"  a=1"_s, u"    b=2"_s, u"  d=4"_s, u"    c=9"_s}
        << QStringList{u"c text moved"_s};
    QTest::newRow("children of one that was dissolved")
        << plain << QStringList{u"root"_s, u"  b=2"_s, u"  c=3"_s, u"  d=4"_s}
        << QStringList{u"removed a"_s, u"b moved"_s, u"c moved"_s};
    QTest::newRow("entries of one label are taken in their order")
        << QStringList{u"root"_s, u"  n=1"_s, u"  n=2"_s, u"  n=3"_s} << QStringList{u"root"_s, u"  n=1"_s, u"  n=3"_s}
        << QStringList{u"removed n"_s};
    QTest::newRow("from nothing") << QStringList() << QStringList{u"root"_s, u"  a"_s}
                                  << QStringList{u"added root"_s, u"added a"_s};
    QTest::newRow("to nothing") << QStringList{u"root"_s, u"  a"_s} << QStringList()
                                << QStringList{u"removed root"_s, u"removed a"_s};
}

void tst_OutlineComparison::whatTellsTwoOutlinesApart()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    QTEST(differencesOf(before, after), "differences");
}

void tst_OutlineComparison::everyEntryIsMatchedAtMostOnceOrToldOf()
{
    QRandomGenerator random(7);
    for (int round = 0; round < 300; ++round) {
        const std::vector<ComparedEntry> before = randomOutline(random, 1 + random.bounded(40));
        const std::vector<ComparedEntry> after = randomOutline(random, 1 + random.bounded(40));
        const OutlineComparison comparison = compareOutlines(before, after);
        QCOMPARE(comparison.afterOf.size(), before.size());
        QCOMPARE(comparison.beforeOf.size(), after.size());
        std::set<int> told;
        std::set<int> toldRemoved;
        for (const EntryDifference &difference : comparison.differences) {
            if (difference.isRemoved())
                QVERIFY(toldRemoved.insert(difference.before).second);
            else
                QVERIFY(told.insert(difference.after).second);
        }
        for (size_t place = 0; place < before.size(); ++place) {
            const int match = comparison.afterOf[place];
            QCOMPARE(toldRemoved.contains(static_cast<int>(place)), match < 0);
            if (match >= 0)
                QCOMPARE(comparison.beforeOf[static_cast<size_t>(match)], static_cast<int>(place));
        }
        for (size_t place = 0; place < after.size(); ++place) {
            const int match = comparison.beforeOf[place];
            if (match < 0) {
                QVERIFY(told.contains(static_cast<int>(place)));
                continue;
            }
            const ComparedEntry &old = before[static_cast<size_t>(match)];
            if (old.label != after[place].label || old.text != after[place].text || old.tagged != after[place].tagged)
                QVERIFY(told.contains(static_cast<int>(place)));
        }
        const DifferenceCounts counts = countsOf(comparison.differences);
        QCOMPARE(static_cast<int>(before.size()) - counts.removed + counts.added, static_cast<int>(after.size()));
    }
}

void tst_OutlineComparison::anOutlineIsNoDifferentFromItself()
{
    QRandomGenerator random(8);
    for (int round = 0; round < 100; ++round) {
        const std::vector<ComparedEntry> outline = randomOutline(random, 1 + random.bounded(60));
        QVERIFY(compareOutlines(outline, outline).differences.empty());
    }
}

void tst_OutlineComparison::largeOutlinesAreComparedInProportion_data()
{
    QTest::addColumn<bool>("chain");
    QTest::addColumn<bool>("alike");
    QTest::newRow("all below the root") << false << false;
    QTest::newRow("all below the root, all alike") << false << true;
    QTest::newRow("each below the one before") << true << false;
    QTest::newRow("each below the one before, all alike") << true << true;
}

// What takes a time that grows with the square would take minutes here.
void tst_OutlineComparison::largeOutlinesAreComparedInProportion()
{
    QFETCH(bool, chain);
    QFETCH(bool, alike);
    constexpr int count = 32767;
    std::vector<ComparedEntry> before;
    std::vector<ComparedEntry> after;
    for (int place = 0; place < count; ++place) {
        const int level = chain ? place : place > 0;
        before.push_back(
            {level, alike ? u"n"_s : QString::number(place), alike ? "t" : QByteArray::number(place), false});
        after.push_back({level, alike ? u"n"_s : QString::number(count - place),
                         alike ? "t" : QByteArray::number(place), place == 5});
    }
    const OutlineComparison comparison = compareOutlines(before, after);
    QVERIFY(!comparison.differences.empty());
}

void tst_OutlineComparison::whatIsNoOutlineIsRefused()
{
    const std::vector<ComparedEntry> whole = outlineOfLines({u"root"_s});
    for (const QStringList &lines :
         {QStringList{u"  a"_s}, QStringList{u"a"_s, u"b"_s}, QStringList{u"a"_s, u"    b"_s}})
        QVERIFY_THROWS_EXCEPTION(RunTimeError, compareOutlines(whole, outlineOfLines(lines)));
}

QTEST_APPLESS_MAIN(tst_OutlineComparison)
#include "tst_OutlineComparison.moc"
