// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "OutlineFixture.h"
#include "document/UndoRedo.h"
#include "outline/SelectedEntries.h"
#include "outline/modOutline.h"
#include "support/ErrorRecorder.h"
#include "support/OutlineState.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

// What commands on several selected entries do beside moving them about.
class tst_SeveralEntries : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void cleanup() { modOutline::copiedEntry().clear(); }

    void copiesComeInTheOrderOfTheOutlineAndUntagged();
    void whatIsPastedIsAsItIsWhenItIsPasted();
    void whatIsLeftOfTheCopiedEntriesIsPasted();
    void movedByPastingTheyLeaveTheirPlaces();
    void nothingIsPastedBelowOneOfItself();
    void whereThereIsNoRoomForAllThereIsNoneForAny();
    void theyCountAsInsertedInTheirOrder_data();
    void theyCountAsInsertedInTheirOrder();
    void aStepThatFailsLeavesThemSelected();
    void entriesThatGoAreNotSelectedAnyMore();
    void closingABranchDeselectsWhatItHides();
    void aTextThatIsStoredLeavesTheCurrentOne();
    void anEmptiedParentIsClosed();
    void manyAreDoneInOneAnnouncement_data();
    void manyAreDoneInOneAnnouncement();

private:
    static void select(OutlineFixture &fixture, const QStringList &labels);
    static QString selected(OutlineFixture &fixture);
};

// The last one is the current one.
void tst_SeveralEntries::select(OutlineFixture &fixture, const QStringList &labels)
{
    std::vector<Entry *> entries;
    for (const QString &label : labels)
        entries.push_back(fixture.entry(label));
    selectEntries(fixture.document(), entries.back(), entries);
}

QString tst_SeveralEntries::selected(OutlineFixture &fixture)
{
    QStringList labels;
    for (const Entry *entry : fixture.document().tree.selectedEntries())
        labels.append(entry->label());
    return labels.join(u' ');
}

void tst_SeveralEntries::copiesComeInTheOrderOfTheOutlineAndUntagged()
{
    OutlineFixture fixture({u"Root +"_s, u" A +*"_s, u"  A1 *"_s, u" B"_s, u" C *"_s, u" D"_s});
    select(fixture, {u"C"_s, u"A1"_s, u"A"_s});
    modOutline::OutlineCopy();
    fixture.select(u"B"_s);
    modOutline::OutlinePaste();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A +*"_s, u"  A1 *"_s, u" B"_s, u" A +"_s, u"  A1"_s,
                                          u" C <"_s, u" C *"_s, u" D"_s}));
    QCOMPARE(fixture.document().history.undoName(), u"pasting of 2 entries"_s);
    QCOMPARE(selected(fixture), u"A C"_s);
    // Again, behind those.
    modOutline::OutlinePaste();
    QCOMPARE(fixture.document().tree.root()->childCount(), 8);
    QCOMPARE(fixture.document().tree.root()->child(5)->label(), u"C"_s);
    // On the root they come first, unless one of them does already.
    fixture.select(u"Root"_s);
    modOutline::OutlinePaste();
    QCOMPARE(fixture.document().tree.root()->child(8)->label(), u"A"_s);
    QCOMPARE(fixture.document().tree.root()->child(9)->label(), u"C"_s);
    modNodes::NodeSelect(fixture.document(), fixture.entry(u"B"_s));
    fixture.document().history.move(fixture.entry(u"B"_s), Relationship::tvwFirst, fixture.entry(u"A"_s));
    fixture.select(u"Root"_s);
    modOutline::OutlinePaste();
    QCOMPARE(fixture.document().tree.root()->child(0)->label(), u"A"_s);
    QCOMPARE(fixture.document().tree.root()->child(1)->label(), u"C"_s);
}

void tst_SeveralEntries::whatIsPastedIsAsItIsWhenItIsPasted()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B"_s, u" C +"_s, u"  D"_s});
    select(fixture, {u"A"_s, u"B"_s});
    modOutline::OutlineCopy();
    // One is now inside the other and comes along with it.
    fixture.document().history.move(fixture.entry(u"A"_s), Relationship::tvwChild, fixture.entry(u"B"_s));
    fixture.document().history.setLabel(fixture.entry(u"B"_s), u"renamed"_s);
    fixture.select(u"D"_s);
    modOutline::OutlinePaste();
    QCOMPARE(fixture.dump(),
             QStringList({u"Root +"_s, u" renamed"_s, u"  A"_s, u" C +"_s, u"  D"_s, u"  renamed <"_s, u"   A"_s}));
}

void tst_SeveralEntries::whatIsLeftOfTheCopiedEntriesIsPasted()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B"_s, u" C"_s, u" D"_s});
    select(fixture, {u"A"_s, u"B"_s, u"C"_s});
    modOutline::OutlineCopy();
    fixture.document().history.remove(fixture.entry(u"A"_s));
    QVERIFY(modOutline::areEntriesCopied());
    fixture.select(u"D"_s);
    modOutline::OutlinePaste();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" B"_s, u" C"_s, u" D"_s, u" B"_s, u" C <"_s}));
    undoStep(fixture.document());
    undoStep(fixture.document());
    // What came back is copied again.
    fixture.select(u"D"_s);
    modOutline::OutlinePaste();
    QCOMPARE(selected(fixture), u"A B C"_s);
}

void tst_SeveralEntries::movedByPastingTheyLeaveTheirPlaces()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B +*"_s, u"  B1 *"_s, u" C"_s, u" D"_s});
    const QStringList before = contentOf(fixture.document().outline());
    select(fixture, {u"A"_s, u"B"_s, u"C"_s});
    modOutline::OutlineCopy();
    modOutline::OutlinePasteAndDelete();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A"_s, u" B +"_s, u"  B1"_s, u" C <"_s, u" D"_s}));
    QVERIFY(!modOutline::areEntriesCopied());
    QCOMPARE(fixture.document().history.stepCount(), 1);
    undoStep(fixture.document());
    QCOMPARE(contentOf(fixture.document().outline()), before);
    QCOMPARE(selected(fixture), u"A B C"_s);
    redoStep(fixture.document());
    QCOMPARE(selected(fixture), u"A B C"_s);
}

void tst_SeveralEntries::nothingIsPastedBelowOneOfItself()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s});
    select(fixture, {u"A"_s, u"B"_s});
    modOutline::OutlineCopy();
    fixture.select(u"A1"_s);
    const QStringList before = fixture.dump();
    modOutline::OutlinePasteAndDelete();
    QCOMPARE(fixture.dump(), before);
    QVERIFY(modOutline::areEntriesCopied());
}

void tst_SeveralEntries::whereThereIsNoRoomForAllThereIsNoneForAny()
{
    ErrorRecorder errors;
    QStringList outline = {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s};
    while (outline.size() < EntryTree::maximumCount - 2)
        outline.append(u" x"_s);
    OutlineFixture fixture(outline);
    select(fixture, {u"A"_s, u"B"_s});
    modOutline::OutlineCopy();
    modOutline::OutlinePaste();
    QCOMPARE(fixture.document().tree.entryCount(), EntryTree::maximumCount - 2);
    QVERIFY(fixture.document().hasNotice(NoticeKind::DocumentFull));
    QCOMPARE(fixture.document().history.stepCount(), 0);
    QCOMPARE(selected(fixture), u"A B"_s);
    QCOMPARE(errors.count(), 1);
    errors.clear();
}

void tst_SeveralEntries::theyCountAsInsertedInTheirOrder_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("order");
    QTest::newRow("up") << QByteArray("up") << u"Root A D B C"_s;
    QTest::newRow("down") << QByteArray("down") << u"Root A D B C"_s;
    QTest::newRow("first") << QByteArray("first") << u"Root A D B C"_s;
    QTest::newRow("last") << QByteArray("last") << u"Root A D B C"_s;
    QTest::newRow("indent") << QByteArray("indent") << u"Root A D B C"_s;
}

// Tagged entries are pasted in that order.
void tst_SeveralEntries::theyCountAsInsertedInTheirOrder()
{
    QFETCH(const QByteArray, command);
    QFETCH(const QString, order);
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B"_s, u" C"_s, u" D"_s});
    const QStringList before = contentOf(fixture.document().outline());
    select(fixture, {u"C"_s, u"B"_s});
    const std::map<QByteArray, void (*)()> commands = {{"up", modOutline::OutlineMoveUp},
                                                       {"down", modOutline::OutlineMoveDown},
                                                       {"first", modOutline::OutlineMoveFirst},
                                                       {"last", modOutline::OutlineMoveLast},
                                                       {"indent", modOutline::OutlineIndent}};
    commands.at(command)();
    QCOMPARE(fixture.collection().join(u' '), order);
    undoStep(fixture.document());
    QCOMPARE(contentOf(fixture.document().outline()), before);
}

void tst_SeveralEntries::aStepThatFailsLeavesThemSelected()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B"_s, u" C"_s});
    select(fixture, {u"A"_s, u"C"_s});
    History &history = fixture.document().history;
    try {
        const History::Step step(history, u"failure"_s);
        history.remove(fixture.entry(u"A"_s));
        history.setLabel(fixture.entry(u"B"_s), u"other"_s);
        throw 1;
    } catch (int) {
    }
    QCOMPARE(fixture.document().tree.root()->childCount(), 3);
    QCOMPARE(selected(fixture), u"A C"_s);
    QCOMPARE(fixture.document().tree.selected(), fixture.entry(u"C"_s));
}

void tst_SeveralEntries::entriesThatGoAreNotSelectedAnyMore()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s, u" C"_s, u" D"_s});
    EntryTree &tree = rawOutline(fixture.document()).tree;
    select(fixture, {u"A1"_s, u"B"_s, u"C"_s, u"D"_s});
    tree.remove(fixture.entry(u"A"_s));
    QCOMPARE(selected(fixture), u"B C D"_s);
    tree.removeAll({fixture.entry(u"B"_s), fixture.entry(u"C"_s)});
    QCOMPARE(selected(fixture), u"D"_s);
    QVERIFY(!tree.areSeveralSelected());
    QCOMPARE(tree.brokenInvariant(), QString());
}

void tst_SeveralEntries::closingABranchDeselectsWhatItHides()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B"_s, u" C"_s});
    Document &document = fixture.document();
    select(fixture, {u"A1"_s, u"A2"_s, u"B"_s, u"C"_s});
    document.history.setExpanded(fixture.entry(u"A"_s), false);
    QCOMPARE(selected(fixture), u"B C"_s);
    select(fixture, {u"A1"_s, u"A2"_s, u"A"_s});
    document.history.expandToLevel(document.tree.root(), 2);
    QCOMPARE(selected(fixture), u"A"_s);
}

void tst_SeveralEntries::aTextThatIsStoredLeavesTheCurrentOne()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B"_s});
    select(fixture, {u"A"_s, u"B"_s});
    fixture.document().history.setStoredText(fixture.entry(u"B"_s), "{\\rtf1 x}");
    QCOMPARE(selected(fixture), u"B"_s);
    undoStep(fixture.document());
    QCOMPARE(selected(fixture), u"A B"_s);
}

void tst_SeveralEntries::anEmptiedParentIsClosed()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A2"_s, u" B +"_s, u"  B1"_s});
    select(fixture, {u"A1"_s, u"A2"_s, u"B1"_s});
    fixture.fakes.dialogs.answers = {Answer::Yes};
    modOutline::OutlineDelete();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A"_s, u" B <"_s}));
}

void tst_SeveralEntries::manyAreDoneInOneAnnouncement_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char *command : {"delete", "tag", "down", "last", "indent", "paste"})
        QTest::newRow(command) << QByteArray(command);
}

void tst_SeveralEntries::manyAreDoneInOneAnnouncement()
{
    QFETCH(const QByteArray, command);
    QStringList outline = {u"Root +"_s};
    for (int i = 0; i < 2000; ++i)
        outline.append(u" %1"_s.arg(i));
    OutlineFixture fixture(outline);
    Document &document = fixture.document();
    std::vector<Entry *> entries;
    for (int row = 1; row < 1999; row += 2)
        entries.push_back(document.tree.root()->child(row));
    selectEntries(document, entries.front(), entries);
    modOutline::OutlineCopy();
    fixture.fakes.dialogs.answers = {Answer::Yes};
    const QSignalSpy resets(&document.tree, &EntryTree::modelReset);
    const QSignalSpy moves(&document.tree, &EntryTree::rowsMoved);
    const QSignalSpy insertions(&document.tree, &EntryTree::rowsInserted);
    const QSignalSpy data(&document.tree, &EntryTree::dataChanged);
    const std::map<QByteArray, void (*)()> commands = {
        {"delete", modOutline::OutlineDelete}, {"tag", modOutline::OutlineTaggedEntry},
        {"down", modOutline::OutlineMoveDown}, {"last", modOutline::OutlineMoveLast},
        {"indent", modOutline::OutlineIndent}, {"paste", modOutline::OutlinePaste},
    };
    commands.at(command)();
    QCOMPARE(document.history.stepCount(), 1);
    QCOMPARE(resets.count(), 1);
    QCOMPARE(moves.count() + insertions.count() + data.count(), 0);
    undoStep(document);
    redoStep(document);
    QVERIFY(resets.count() <= 3);
    QCOMPARE(moves.count() + insertions.count() + data.count(), 0);
    QCOMPARE(document.tree.brokenInvariant(), QString());
}

QTEST_GUILESS_MAIN(tst_SeveralEntries)
#include "tst_SeveralEntries.moc"
