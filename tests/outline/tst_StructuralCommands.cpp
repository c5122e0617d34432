// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/OutlineFixture.h"
#include "support/RawOutline.h"

#include "outline/modOutline.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Command = void (*)();
Q_DECLARE_METATYPE(Command)

class tst_StructuralCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsChangeTheTree_data();
    void commandsChangeTheTree();
    void everyCommandMarksTheDocumentChangedEvenWhenItDoesNothing_data();
    void everyCommandMarksTheDocumentChangedEvenWhenItDoesNothing();
    void withNothingSelectedNothingMoves();
    void withoutADocumentNothingHappens();
    void anInsertedEntryIsSelectedWithItsLabelOpen_data();
    void anInsertedEntryIsSelectedWithItsLabelOpen();
    void anInsertIntoAnEmptyOutlineMakesTheRoot();
    void aMoveCarriesTextTagsAndExpansion();
    void aMovedEntryIsTheSameEntry();
    void moveDownPastAParentRenewsTheOrderOfInsertion();
    void theOutlineIsHiddenWhileEntriesMove();
};

static const QStringList sample = {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s,
                                   u"  B1"_s,   u"  B2"_s, u"  B3"_s, u" C"_s};

void tst_StructuralCommands::commandsChangeTheTree_data()
{
    using namespace modOutline;
    QTest::addColumn<Command>("command");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, Command command, const QString &selected, const QStringList &expected) {
        QTest::newRow(name) << command << selected << expected;
    };
    row("insert above", OutlineInsertAbove, u"B"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" New Entry <"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s,
         u" C"_s});
    row("insert below goes before the next sibling, not after the children", OutlineInsertBelow, u"A"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" New Entry <"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s,
         u" C"_s});
    row("insert below the root makes a last child", OutlineInsertBelow, u"Root"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C"_s,
         u" New Entry <"_s});
    row("insert child is the last child and shows", OutlineInsertChild, u"C"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C +"_s,
         u"  New Entry <"_s});
    row("indent takes the subtree along", OutlineIndent, u"B"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u"  B +<"_s, u"   B1"_s, u"   B2"_s, u"   B3"_s, u" C"_s});
    row("indent of a first child", OutlineIndent, u"A1"_s,
        {u"Root +"_s, u" A +"_s, u"  A1 <"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C"_s});
    row("unindent of a middle child leaves its later siblings", OutlineUnindent, u"B2"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B3"_s, u" B2 <"_s, u" C"_s});
    row("unindent of a child of the root", OutlineUnindent, u"B"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +<"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C"_s});
    row("unindent of the root", OutlineUnindent, u"Root"_s,
        {u"Root +<"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C"_s});
    row("move up among siblings", OutlineMoveUp, u"B"_s,
        {u"Root +"_s, u" B +<"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" C"_s});
    row("move up of a first child lands last in the previous sibling of its parent", OutlineMoveUp, u"B1"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u"  B1 <"_s, u" B +"_s, u"  B2"_s, u"  B3"_s, u" C"_s});
    row("move up of the root", OutlineMoveUp, u"Root"_s,
        {u"Root +<"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C"_s});
    row("move up of the first entry under the root", OutlineMoveUp, u"A"_s,
        {u"Root +"_s, u" A +<"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C"_s});
    row("move down among siblings", OutlineMoveDown, u"A"_s,
        {u"Root +"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" A +<"_s, u"  A1"_s, u"  A2"_s, u" C"_s});
    row("move down of a last child lands first in the next sibling of its parent", OutlineMoveDown, u"A2"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B +"_s, u"  A2 <"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C"_s});
    row("move down into a childless entry", OutlineMoveDown, u"B3"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u" C +"_s, u"  B3 <"_s});
    row("move down of the last child of the root", OutlineMoveDown, u"C"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3"_s, u" C <"_s});
    row("move first", OutlineMoveFirst, u"B3"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B3 <"_s, u"  B1"_s, u"  B2"_s, u" C"_s});
    row("move first of the first", OutlineMoveFirst, u"B1"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1 <"_s, u"  B2"_s, u"  B3"_s, u" C"_s});
    row("move last", OutlineMoveLast, u"B1"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B2"_s, u"  B3"_s, u"  B1 <"_s, u" C"_s});
    row("move last of the last", OutlineMoveLast, u"B3"_s,
        {u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u"  B3 <"_s, u" C"_s});
}

void tst_StructuralCommands::commandsChangeTheTree()
{
    QFETCH(Command, command);
    QFETCH(QString, selected);
    QFETCH(QStringList, expected);
    OutlineFixture fixture(sample);
    const QAbstractItemModelTester tester(&fixture.document().history.itemModel(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    fixture.select(selected);
    command();
    QCOMPARE(fixture.dump(), expected);
    QVERIFY(fixture.document().m_bDataChanged());
    QCOMPARE(fixture.document().tree.brokenInvariant(), QString());
}

void tst_StructuralCommands::everyCommandMarksTheDocumentChangedEvenWhenItDoesNothing_data()
{
    using namespace modOutline;
    QTest::addColumn<Command>("command");
    QTest::newRow("indent") << Command(OutlineIndent);
    QTest::newRow("unindent") << Command(OutlineUnindent);
    QTest::newRow("move up") << Command(OutlineMoveUp);
    QTest::newRow("move down") << Command(OutlineMoveDown);
    QTest::newRow("move first") << Command(OutlineMoveFirst);
    QTest::newRow("move last") << Command(OutlineMoveLast);
}

void tst_StructuralCommands::everyCommandMarksTheDocumentChangedEvenWhenItDoesNothing()
{
    QFETCH(Command, command);
    OutlineFixture fixture(sample);
    fixture.select(u"Root"_s);
    const QStringList before = fixture.dump();
    command();
    QCOMPARE(fixture.dump(), before);
    QVERIFY(fixture.document().m_bDataChanged());
    QVERIFY(!fixture.fakes.pointer.hourglass);
    QVERIFY(fixture.fakes.pointer.timesHourglass > 0);
}

void tst_StructuralCommands::withNothingSelectedNothingMoves()
{
    OutlineFixture fixture(sample);
    const QStringList before = fixture.dump();
    modOutline::OutlineMoveUp();
    modOutline::OutlineMoveDown();
    modOutline::OutlineIndent();
    QCOMPARE(fixture.dump(), before);
}

void tst_StructuralCommands::withoutADocumentNothingHappens()
{
    FakePorts fakes;
    modOutline::OutlineInsertBelow();
    modOutline::OutlineMoveDown();
    QCOMPARE(fakes.pointer.timesHourglass, 0);
}

void tst_StructuralCommands::anInsertedEntryIsSelectedWithItsLabelOpen_data()
{
    QTest::addColumn<Command>("command");
    QTest::newRow("above") << Command(modOutline::OutlineInsertAbove);
    QTest::newRow("below") << Command(modOutline::OutlineInsertBelow);
    QTest::newRow("child") << Command(modOutline::OutlineInsertChild);
}

void tst_StructuralCommands::anInsertedEntryIsSelectedWithItsLabelOpen()
{
    QFETCH(Command, command);
    OutlineFixture fixture(sample);
    fixture.select(u"B"_s);
    fixture.fake().text.type(u"what another entry's text was"_s);
    command();
    QCOMPARE(fixture.document().tree.selected()->label(), u"New Entry"_s);
    QVERIFY(fixture.fake().outline.editingLabel);
    QCOMPARE(fixture.fakes.statusText(), u"New Entry"_s);
    QCOMPARE(fixture.fake().text.Text(), QString());
    QVERIFY(fixture.document().m_bDataChanged());
}

void tst_StructuralCommands::anInsertIntoAnEmptyOutlineMakesTheRoot()
{
    OutlineFixture fixture({});
    modOutline::OutlineInsertBelow();
    QCOMPARE(fixture.dump(), QStringList{u"New Entry <"_s});
}

void tst_StructuralCommands::aMoveCarriesTextTagsAndExpansion()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B +*"_s, u"  B1 *"_s});
    rawOutline(fixture.document()).tree.setStoredText(fixture.entry(u"B1"_s), "text");
    fixture.select(u"B"_s);
    modOutline::OutlineIndent();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A +"_s, u"  B +*<"_s, u"   B1 *"_s}));
    QCOMPARE(fixture.document().tree.storedText(fixture.entry(u"B1"_s)), QByteArray("text"));
}

void tst_StructuralCommands::aMovedEntryIsTheSameEntry()
{
    OutlineFixture fixture(sample);
    fixture.select(u"B"_s);
    EntryRef copied(&fixture.document().tree, fixture.entry(u"B1"_s));
    modOutline::OutlineMoveUp();
    QCOMPARE(copied.entry(), fixture.entry(u"B1"_s));
}

void tst_StructuralCommands::moveDownPastAParentRenewsTheOrderOfInsertion()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B +"_s, u"  B1"_s, u"  B2"_s, u" C"_s});
    fixture.select(u"A1"_s);
    modOutline::OutlineMoveDown();
    QCOMPARE(fixture.collection(), QStringList({u"Root"_s, u"A"_s, u"B"_s, u"C"_s, u"A1"_s, u"B1"_s, u"B2"_s}));
}

void tst_StructuralCommands::theOutlineIsHiddenWhileEntriesMove()
{
    OutlineFixture fixture(sample);
    fixture.select(u"B"_s);
    const int hidden = fixture.fake().outline.timesHidden;
    modOutline::OutlineMoveUp();
    QCOMPARE(fixture.fake().outline.timesHidden, hidden + 1);
    QVERIFY(fixture.fake().outline.visible);
}

QTEST_GUILESS_MAIN(tst_StructuralCommands)
#include "tst_StructuralCommands.moc"
