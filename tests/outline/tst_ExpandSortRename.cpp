// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/OutlineFixture.h"
#include "support/RawOutline.h"

#include "outline/modOutline.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_ExpandSortRename : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void expandOpensOnlyTheSelectedEntry();
    void expandOfALeafOnlyMarksTheDocumentChanged();
    void collapseAllSelectsTheRootAndShowsItsText();
    void expandAllSetsLevelMinusOne();
    void expandToLevel_data();
    void expandToLevel();
    void expandToLevelBeyondTheDeepestEntry();
    void aSelectionThatALevelHidesFallsToTheHeadOfItsBranch();
    void sortCurrentSortsDirectChildrenOnce();
    void sortIsStableAndKeepsTextsTagsAndExpansion();
    void sortAllSortsEveryLevel();
    void renameOpensTheLabelEditor();
    void renameWithNothingSelectedOnlyMarksTheDocumentChanged();
};

void tst_ExpandSortRename::expandOpensOnlyTheSelectedEntry()
{
    OutlineFixture fixture({u"Root <"_s, u" A"_s, u"  A1"_s});
    modOutline::OutlineExpand();
    QCOMPARE(fixture.dump(), QStringList({u"Root +<"_s, u" A"_s, u"  A1"_s}));
    modOutline::OutlineCollapse();
    QCOMPARE(fixture.dump(), QStringList({u"Root <"_s, u" A"_s, u"  A1"_s}));
}

void tst_ExpandSortRename::expandOfALeafOnlyMarksTheDocumentChanged()
{
    OutlineFixture fixture({u"Root +"_s, u" A <"_s});
    modOutline::OutlineExpand();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A <"_s}));
    QVERIFY(fixture.document().m_bDataChanged());
}

void tst_ExpandSortRename::collapseAllSelectsTheRootAndShowsItsText()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1 <"_s});
    rawOutline(fixture.document()).tree.setStoredText(fixture.document().tree.root(), "text of the root");
    modOutline::OutlineCollapseAll();
    QCOMPARE(fixture.dump(), QStringList({u"Root <"_s, u" A"_s, u"  A1"_s}));
    QCOMPARE(fixture.fake().text.Text(), u"text of the root"_s);
    QCOMPARE(fixture.document().m_iExpansionLevel(), qint16(1));
}

void tst_ExpandSortRename::expandAllSetsLevelMinusOne()
{
    OutlineFixture fixture({u"Root <"_s, u" A"_s, u"  A1"_s});
    modOutline::OutlineExpandAll();
    QVERIFY(fixture.entry(u"A"_s)->expanded());
    QCOMPARE(fixture.document().m_iExpansionLevel(), qint16(-1));
}

void tst_ExpandSortRename::expandToLevel_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("level 1 closes the root") << 1 << QStringList({u"Root <"_s, u" A +"_s, u"  A1"_s, u"   A11"_s});
    QTest::newRow("level 2 closes its children") << 2 << QStringList({u"Root +<"_s, u" A"_s, u"  A1"_s, u"   A11"_s});
    QTest::newRow("level 7 opens all there is")
        << 7 << QStringList({u"Root +<"_s, u" A +"_s, u"  A1 +"_s, u"   A11"_s});
}

void tst_ExpandSortRename::expandToLevel()
{
    QFETCH(int, level);
    QFETCH(QStringList, expected);
    OutlineFixture fixture({u"Root +<"_s, u" A +"_s, u"  A1"_s, u"   A11"_s});
    modOutline::OutlineExpandToLevel(level);
    QCOMPARE(fixture.dump(), expected);
    QCOMPARE(fixture.document().m_iExpansionLevel(), qint16(level));
}

void tst_ExpandSortRename::expandToLevelBeyondTheDeepestEntry()
{
    OutlineFixture fixture({u"Root <"_s, u" A"_s, u" B"_s});
    modOutline::OutlineExpandToLevel(3);
    QCOMPARE(fixture.dump(), QStringList({u"Root +<"_s, u" A"_s, u" B"_s}));
    QCOMPARE(fixture.document().m_iExpansionLevel(), qint16(3));
}

void tst_ExpandSortRename::aSelectionThatALevelHidesFallsToTheHeadOfItsBranch()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1 +"_s, u"   A11 <"_s});
    rawOutline(fixture.document()).tree.setStoredText(fixture.entry(u"A"_s), "text of A");
    modOutline::OutlineExpandToLevel(2);
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A <"_s, u"  A1 +"_s, u"   A11"_s}));
    QCOMPARE(fixture.fake().text.Text(), u"text of A"_s);
    QCOMPARE(fixture.document().m_iExpansionLevel(), qint16(2));
}

void tst_ExpandSortRename::sortCurrentSortsDirectChildrenOnce()
{
    OutlineFixture fixture({u"Root +<"_s, u" b +"_s, u"  z"_s, u"  y"_s, u" A"_s, u" c"_s});
    modOutline::OutlineSortCurrent();
    const QStringList sorted = {u"Root +<"_s, u" A"_s, u" b +"_s, u"  z"_s, u"  y"_s, u" c"_s};
    QCOMPARE(fixture.dump(), sorted);
    QVERIFY(!fixture.document().tree.root()->sorted());
    Entry *added = modNodes::NodeInsert(fixture.document(), Relationship::tvwChild, nullptr);
    rawOutline(fixture.document()).tree.setLabel(added, u"aa"_s);
    QCOMPARE(fixture.dump(), sorted + QStringList{u" aa"_s});
}

void tst_ExpandSortRename::sortIsStableAndKeepsTextsTagsAndExpansion()
{
    OutlineFixture fixture({u"Root +<"_s, u" b"_s, u" a *"_s, u" b +"_s, u"  b1"_s});
    rawOutline(fixture.document()).tree.setStoredText(fixture.entry(u"b"_s), "first b");
    modOutline::OutlineSortCurrent();
    QCOMPARE(fixture.dump(), QStringList({u"Root +<"_s, u" a *"_s, u" b"_s, u" b +"_s, u"  b1"_s}));
    QCOMPARE(fixture.document().tree.storedText(fixture.document().tree.root()->child(1)), QByteArray("first b"));
}

void tst_ExpandSortRename::sortAllSortsEveryLevel()
{
    OutlineFixture fixture({u"Root +<"_s, u" b +"_s, u"  z"_s, u"  y"_s, u" A"_s});
    modOutline::OutlineSortAll();
    QCOMPARE(fixture.dump(), QStringList({u"Root +<"_s, u" A"_s, u" b +"_s, u"  y"_s, u"  z"_s}));
    QVERIFY(fixture.entry(u"b"_s)->sorted());
}

void tst_ExpandSortRename::renameOpensTheLabelEditor()
{
    OutlineFixture fixture({u"Root <"_s});
    modOutline::OutlineRename();
    QVERIFY(fixture.fake().outline.editingLabel);
    QVERIFY(fixture.document().m_bDataChanged());
}

void tst_ExpandSortRename::renameWithNothingSelectedOnlyMarksTheDocumentChanged()
{
    OutlineFixture fixture({u"Root"_s});
    modOutline::OutlineRename();
    QVERIFY(!fixture.fake().outline.editingLabel);
    QVERIFY(fixture.document().m_bDataChanged());
}

QTEST_GUILESS_MAIN(tst_ExpandSortRename)
#include "tst_ExpandSortRename.moc"
