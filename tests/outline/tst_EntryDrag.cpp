// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/OutlineFixture.h"

#include "outline/EntryDrag.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_EntryDrag : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void cleanup() { ResetDraggingFlags(); }

    void placements_data();
    void placements();
    void iconAllows_data();
    void iconAllows();
    void aPlainDropPrefersTheNextPlace();
    void dropMovesOrCopies_data();
    void dropMovesOrCopies();
    void resetEmptiesTheState();
};

static const QStringList sample = {u"Root +"_s, u" A +"_s, u"  A1 +"_s, u"   A11"_s, u" B"_s, u" C"_s};

void tst_EntryDrag::placements_data()
{
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("allowed");
    QTest::newRow("a distant sibling") << u"A"_s << u"C"_s << u"previous next child"_s;
    QTest::newRow("the following sibling") << u"A"_s << u"B"_s << u"next child"_s;
    QTest::newRow("the preceding sibling") << u"B"_s << u"A"_s << u"previous child"_s;
    QTest::newRow("the root") << u"B"_s << u"Root"_s << u"child"_s;
    QTest::newRow("the parent of a first child") << u"A1"_s << u"A"_s << QString();
    QTest::newRow("the root, for its first child") << u"A"_s << u"Root"_s << u"child"_s;
    QTest::newRow("an entry, for the root") << u"Root"_s << u"B"_s << QString();
    QTest::newRow("an own descendant") << u"A"_s << u"A11"_s << QString();
}

void tst_EntryDrag::placements()
{
    QFETCH(QString, dragged);
    QFETCH(QString, target);
    QFETCH(QString, allowed);
    OutlineFixture fixture(sample);
    const DropPlacements found = dropPlacements(*fixture.entry(dragged), *fixture.entry(target));
    QStringList words;
    if (found.previous)
        words.append(u"previous"_s);
    if (found.next)
        words.append(u"next"_s);
    if (found.child)
        words.append(u"child"_s);
    QCOMPARE(words.join(u' '), allowed);
}

void tst_EntryDrag::iconAllows_data()
{
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("indent");
    QTest::addColumn<bool>("allowed");
    QTest::newRow("another entry") << u"A"_s << u"C"_s << false << true;
    QTest::newRow("an own descendant") << u"A"_s << u"A11"_s << false << false;
    QTest::newRow("indent behind a sibling") << u"B"_s << u"B"_s << true << true;
    QTest::newRow("indent of a first child") << u"A"_s << u"A"_s << true << false;
    QTest::newRow("unindent") << u"A1"_s << u"A1"_s << false << true;
    QTest::newRow("unindent of a child of the root") << u"A"_s << u"A"_s << false << false;
    QTest::newRow("unindent of the root") << u"Root"_s << u"Root"_s << false << false;
}

void tst_EntryDrag::iconAllows()
{
    QFETCH(QString, dragged);
    QFETCH(QString, target);
    QFETCH(bool, indent);
    QFETCH(bool, allowed);
    OutlineFixture fixture(sample);
    QCOMPARE(dropAllowed(*fixture.entry(dragged), *fixture.entry(target), indent), allowed);
}

void tst_EntryDrag::aPlainDropPrefersTheNextPlace()
{
    QCOMPARE(plainRelationship({true, true, true}), Relationship::tvwNext);
    QCOMPARE(plainRelationship({true, false, true}), Relationship::tvwPrevious);
    QCOMPARE(plainRelationship({false, false, true}), Relationship::tvwChild);
}

void tst_EntryDrag::dropMovesOrCopies_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("relationship");
    QTest::addColumn<bool>("copy");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("move behind") << u"C"_s << int(Relationship::tvwNext) << false
                                 << QStringList({u"Root +"_s, u" B"_s, u" C"_s, u" A +*<"_s, u"  A1"_s});
    QTest::newRow("move before") << u"C"_s << int(Relationship::tvwPrevious) << false
                                 << QStringList({u"Root +"_s, u" B"_s, u" A +*<"_s, u"  A1"_s, u" C"_s});
    QTest::newRow("move into") << u"C"_s << int(Relationship::tvwChild) << false
                               << QStringList({u"Root +"_s, u" B"_s, u" C +"_s, u"  A +*<"_s, u"   A1"_s});
    QTest::newRow("the root's first child goes to its end")
        << u"Root"_s << int(Relationship::tvwChild) << false
        << QStringList({u"Root +"_s, u" B"_s, u" C"_s, u" A +*<"_s, u"  A1"_s});
    QTest::newRow("copy behind, untagged")
        << u"C"_s << int(Relationship::tvwNext) << true
        << QStringList({u"Root +"_s, u" A +*"_s, u"  A1"_s, u" B"_s, u" C"_s, u" A +<"_s, u"  A1"_s});
    QTest::newRow("a copy of the root's first child goes to its end")
        << u"Root"_s << int(Relationship::tvwChild) << true
        << QStringList({u"Root +"_s, u" A +*"_s, u"  A1"_s, u" B"_s, u" C"_s, u" A +<"_s, u"  A1"_s});
}

void tst_EntryDrag::dropMovesOrCopies()
{
    QFETCH(QString, target);
    QFETCH(int, relationship);
    QFETCH(bool, copy);
    QFETCH(QStringList, expected);
    OutlineFixture fixture({u"Root +"_s, u" A +*"_s, u"  A1"_s, u" B"_s, u" C"_s});
    DragState &state = dragState();
    state.entry.set(&fixture.document().tree, fixture.entry(u"A"_s));
    state.relationship = Relationship(relationship);
    state.copy = copy;
    dropEntry(fixture.document(), *fixture.entry(target));
    QCOMPARE(fixture.dump(), expected);
    QVERIFY(fixture.document().m_bDataChanged());
    QCOMPARE(fixture.document().tree.brokenInvariant(), QString());
}

void tst_EntryDrag::resetEmptiesTheState()
{
    OutlineFixture fixture(sample);
    DragState &state = dragState();
    state.entry.set(&fixture.document().tree, fixture.entry(u"A"_s));
    state.dragging = state.copy = state.indent = true;
    state.button = DragButton::Right;
    ResetDraggingFlags();
    QVERIFY(!state.entry.entry() && !state.dragging && !state.copy && !state.indent);
    QCOMPARE(state.button, DragButton::None);
}

QTEST_GUILESS_MAIN(tst_EntryDrag)
#include "tst_EntryDrag.moc"
