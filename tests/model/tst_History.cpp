// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/History.h"
#include "model/Outline.h"
#include "support/ErrorRecorder.h"
#include "support/OutlineState.h"
#include "support/OutlineText.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

// An outline with its history, which an item-model tester watches.
struct Fixture {
    Fixture()
        : tester(&outline.tree, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        plantOutline(outline.tree, {u"Root +"_s, u" A +"_s, u"  A1 *"_s, u"  A2"_s, u"   A21"_s, u" C"_s, u" B <"_s});
        outline.tree.setStoredText(entry(u"A1"_s), "first");
        outline.outlineFont.setName(u"Outline"_s);
        outline.textFont.setName(u"Text"_s);
    }

    Entry *entry(const QString &label) const { return entryLabelled(outline.tree, label); }

    QStringList state() const { return stateOf(outline); }

    Outline outline;
    QAbstractItemModelTester tester;
    History history{outline};
};

// Live texts that only count their steps.
class CountedTexts : public LiveTextPort
{
public:
    struct Counted : LiveText {
        int done = 0;
        int undone = 0;

        qsizetype weight() const override { return 1000; }
    };

    void undoText(EntryId entry) override
    {
        Counted &text = *texts.at(entry);
        if (refuses || text.done == 0)
            throw RunTimeError(ErrorNumber::InvalidCall);
        --text.done;
        ++text.undone;
    }

    void redoText(EntryId entry) override
    {
        Counted &text = *texts.at(entry);
        if (refuses || text.undone == 0)
            throw RunTimeError(ErrorNumber::InvalidCall);
        ++text.done;
        --text.undone;
    }

    void forgetUndone(EntryId entry) noexcept override
    {
        if (texts.contains(entry))
            texts.at(entry)->undone = 0;
    }

    std::shared_ptr<LiveText> takeOut(EntryId entry) override
    {
        const auto found = texts.extract(entry);
        return found ? found.mapped() : nullptr;
    }

    void putBack(EntryId entry, std::shared_ptr<LiveText> text) override
    {
        texts[entry] = std::static_pointer_cast<Counted>(text);
    }

    void endMerging() noexcept override { ++mergingEnded; }

    void type(History &history, EntryId entry)
    {
        if (!texts[entry])
            texts[entry] = std::make_shared<Counted>();
        ++texts[entry]->done;
        texts[entry]->undone = 0;
        history.appendTextStep(entry);
    }

    std::map<EntryId, std::shared_ptr<Counted>> texts;
    int mergingEnded = 0;
    bool refuses = false;
};

using Act = std::function<void(Fixture &)>;

} // namespace

Q_DECLARE_METATYPE(Act)

class tst_History : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyChangeIsUndoneAndRedone_data();
    void everyChangeIsUndoneAndRedone();
    void whatMakesNoDifferenceIsNoStep_data();
    void whatMakesNoDifferenceIsNoStep();
    void whatIsRefusedChangesNothing_data();
    void whatIsRefusedChangesNothing();

    void aStepHoldsAllThatIsDoneInIt();
    void aStepInsideAnotherJoinsIt();
    void aStepKnowsWhereItActed();
    void stepsHaveNamesAndTimes();
    void theSelectionComesBackWithItsStep();
    void aNewChangeDropsWhatCouldBeRedone();
    void goToUndoesAndRedoesUpToAPosition();

    void anExpansionStaysWhenTheStepBeforeItIsUndone();
    void anExpansionBeforeTheFirstStepIsUndoneBehindIt();
    void whatAStepItselfOpensAndClosesIsUndoneWithIt();
    void whatIsBroughtBackIsOpenAsItWas();
    void anExpansionKeepsWhatCanBeRedone();
    void anExpansionAskedForWhileUndoingIsRecorded();

    void aFailedStepIsTakenBack();
    void aFailedStepInsideAnotherIsTakenBackAlone();
    void whatWasKeptSurvivesAFailure();
    void aFailedStepLeavesWhatCanBeRedone();

    void changedMeansAnotherPositionThanTheSavedOne();
    void aTouchedOutlineIsChangedUntilAStepLeadsToTheSavedOne();
    void aDroppedSavedPositionIsNeverReached();
    void anExpansionBehindASaveStaysAChange();
    void whatCountedAsChangedBySelectionDoesAgain();

    void theOldestStepsGoWhereTheyWeighTooMuch();
    void theLastStepStaysWhateverItWeighs();
    void deletingEverythingCostsNoMemory();

    void labelsTypedIntoAViewAreSteps();
    void announcementsTellWhatChanges();
    void manyChangesAreUndoneInOneReset();
    void nothingIsChangedWhileSomethingIsUndone();

    void typingIsUndoneByItsText();
    void aReplacedTextTakesItsLiveTextAlong();
    void aTextStepThatFailsLeavesTheStepDone();
    void anotherStepEndsTheMergingOfTyping();
    void aLiveTextThatIsLetGoLeavesItsRunsAsTexts();
    void aLiveTextIsLetGoWhileSomeOfItIsUndone();
    void theSavedPositionEndsARunOfATextThatIsLetGo();
};

void tst_History::everyChangeIsUndoneAndRedone_data()
{
    QTest::addColumn<Act>("act");
    const auto row = [](const char *name, Act act) { QTest::newRow(name) << act; };
    row("an insertion", [](Fixture &f) { f.history.insert(Relationship::tvwPrevious, f.entry(u"C"_s)); });
    row("a copy", [](Fixture &f) {
        f.history.insertCopy(f.outline.tree, f.entry(u"A"_s), Relationship::tvwChild, f.entry(u"A"_s));
    });
    row("a removal", [](Fixture &f) { f.history.remove(f.entry(u"A"_s)); });
    row("a removal of the selection", [](Fixture &f) { f.history.remove(f.entry(u"B"_s)); });
    row("a removal of the root", [](Fixture &f) { f.history.remove(f.outline.tree.root()); });
    row("a removal of many", [](Fixture &f) { f.history.removeAll({f.entry(u"B"_s), f.entry(u"A2"_s)}); });
    row("a removal of all", [](Fixture &f) {
        f.history.removeAll({f.entry(u"B"_s), f.entry(u"C"_s), f.entry(u"A"_s)});
    });
    row("a move", [](Fixture &f) { f.history.move(f.entry(u"A2"_s), Relationship::tvwPrevious, f.entry(u"B"_s)); });
    row("a move among siblings",
        [](Fixture &f) { f.history.move(f.entry(u"A"_s), Relationship::tvwLast, f.entry(u"B"_s)); });
    row("a move in place",
        [](Fixture &f) { f.history.move(f.entry(u"A1"_s), Relationship::tvwFirst, f.entry(u"A2"_s)); });
    row("a renewal", [](Fixture &f) { f.history.renewInsertion(f.entry(u"A"_s)); });
    row("a label", [](Fixture &f) { f.history.setLabel(f.entry(u"A"_s), u"Z"_s); });
    row("a tag", [](Fixture &f) { f.history.setTagged(f.entry(u"A"_s), true); });
    row("a tag taken off", [](Fixture &f) { f.history.setTagged(f.entry(u"A1"_s), false); });
    row("a sorting", [](Fixture &f) { f.history.setSorted(f.outline.tree.root(), true); });
    row("a text", [](Fixture &f) { f.history.setStoredText(f.entry(u"A1"_s), "second"); });
    row("fonts", [](Fixture &f) {
        clsFont font;
        font.setName(u"Another"_s);
        f.history.setFonts(font, f.outline.textFont);
    });
    row("what a file says of an entry", [](Fixture &f) {
        f.history.setForeignRecords(f.entry(u"A"_s), {{1, "{\\other x}"}});
    });
    row("what a file says of itself", [](Fixture &f) {
        f.history.setFileForeignRecords({{0, "{\\other x}"}}, "{\\end y}");
    });
}

void tst_History::everyChangeIsUndoneAndRedone()
{
    QFETCH(const Act, act);
    Fixture f;
    const QStringList before = f.state();
    act(f);
    const QStringList after = f.state();
    QVERIFY(before != after);
    QCOMPARE(f.history.stepCount(), 1);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(f.history.undo());
        QCOMPARE(f.state(), before);
        QCOMPARE(f.outline.tree.brokenInvariant(), QString());
        QVERIFY(!f.history.undo());
        QVERIFY(f.history.redo());
        QCOMPARE(f.state(), after);
        QCOMPARE(f.outline.tree.brokenInvariant(), QString());
        QVERIFY(!f.history.redo());
    }
}

void tst_History::whatMakesNoDifferenceIsNoStep_data()
{
    QTest::addColumn<Act>("act");
    const auto row = [](const char *name, Act act) { QTest::newRow(name) << act; };
    row("the same label", [](Fixture &f) { f.history.setLabel(f.entry(u"A"_s), u"A"_s); });
    row("the same tag", [](Fixture &f) { f.history.setTagged(f.entry(u"A1"_s), true); });
    row("the same text", [](Fixture &f) { f.history.setStoredText(f.entry(u"A1"_s), "first"); });
    row("the same fonts", [](Fixture &f) { f.history.setFonts(f.outline.outlineFont, f.outline.textFont); });
    row("the same of what a file says", [](Fixture &f) {
        f.history.setForeignRecords(f.entry(u"A"_s), {});
        f.history.setFileForeignRecords({}, {});
    });
    row("the removal of nothing", [](Fixture &f) { f.history.removeAll({}); });
    row("an order that stands", [](Fixture &f) {
        const History::Step step(f.history, u"sorting"_s);
        f.history.setSorted(f.entry(u"A"_s), true);
        f.history.setSorted(f.entry(u"A"_s), false);
    });
    row("a step in which nothing happens", [](Fixture &f) { const History::Step step(f.history, u"nothing"_s); });
    row("an expansion", [](Fixture &f) { f.history.setExpanded(f.entry(u"A2"_s), true); });
    row("a step that only expands", [](Fixture &f) {
        const History::Step step(f.history, u"expansion"_s);
        f.history.setExpandedAll(f.outline.tree.root(), true);
    });
}

void tst_History::whatMakesNoDifferenceIsNoStep()
{
    QFETCH(const Act, act);
    Fixture f;
    f.history.setLabel(f.entry(u"A"_s), u"changed"_s);
    f.history.undo();
    act(f);
    QCOMPARE(f.history.stepCount(), 1);
    QCOMPARE(f.history.position(), 0);
    QVERIFY(f.history.canRedo());
    QVERIFY(!f.history.isChanged());
    QVERIFY(!f.history.isStepOpen());
}

void tst_History::whatIsRefusedChangesNothing_data()
{
    QTest::addColumn<Act>("act");
    const auto row = [](const char *name, Act act) { QTest::newRow(name) << act; };
    row("a second root", [](Fixture &f) { f.history.insert(Relationship::tvwFirst, nullptr); });
    row("a sibling of the root", [](Fixture &f) { f.history.insert(Relationship::tvwNext, f.outline.tree.root()); });
    row("a move into itself",
        [](Fixture &f) { f.history.move(f.entry(u"A"_s), Relationship::tvwChild, f.entry(u"A21"_s)); });
    row("an entry that is gone", [](Fixture &f) { f.history.apply(change::Label{EntryId::None, u"none"_s}); });
    row("a text step without texts", [](Fixture &f) {
        f.history.apply(change::TextStep{f.entry(u"A"_s)->id(), true});
    });
}

void tst_History::whatIsRefusedChangesNothing()
{
    QFETCH(const Act, act);
    Fixture f;
    f.history.setLabel(f.entry(u"B"_s), u"B2"_s);
    f.history.undo();
    const QStringList before = f.state();
    QVERIFY_THROWS_EXCEPTION(RunTimeError, act(f));
    QCOMPARE(f.state(), before);
    QCOMPARE(f.history.stepCount(), 1);
    QVERIFY(f.history.canRedo());
    QVERIFY(!f.history.isStepOpen());
}

void tst_History::aStepHoldsAllThatIsDoneInIt()
{
    Fixture f;
    const QStringList before = f.state();
    {
        const History::Step step(f.history, u"much"_s);
        Entry *added = f.history.insert(Relationship::tvwChild, f.entry(u"A2"_s));
        f.history.setLabel(added, u"New"_s);
        f.history.setExpanded(f.entry(u"A2"_s), true);
        f.history.move(f.entry(u"A2"_s), Relationship::tvwChild, f.entry(u"B"_s));
        f.history.setStoredText(added, "text");
        f.history.remove(f.entry(u"A"_s));
        f.history.select(added);
        QVERIFY(f.history.isStepOpen());
        QVERIFY(!f.history.undo());
    }
    const QStringList after = f.state();
    QCOMPARE(f.history.stepCount(), 1);
    f.history.undo();
    QCOMPARE(f.state(), before);
    f.history.redo();
    QCOMPARE(f.state(), after);
    QCOMPARE(f.outline.tree.selected()->label(), u"New"_s);
}

void tst_History::aStepInsideAnotherJoinsIt()
{
    Fixture f;
    {
        History::Step step(f.history, u"outer"_s);
        f.history.setTagged(f.entry(u"A"_s), true);
        {
            History::Step inner(f.history, u"inner"_s);
            inner.setName(u"inner still"_s);
            f.history.setTagged(f.entry(u"B"_s), true);
        }
        QCOMPARE(f.history.stepCount(), 0);
        step.setName(u"outer indeed"_s);
    }
    QCOMPARE(f.history.stepCount(), 1);
    QCOMPARE(f.history.undoName(), u"outer indeed"_s);
    f.history.undo();
    QCOMPARE(f.outline.tree.taggedCount(), 1);
}

void tst_History::aStepKnowsWhereItActed()
{
    Fixture f;
    const EntryId a = f.entry(u"A"_s)->id();
    {
        const History::Step step(f.history, u"step"_s);
        f.history.setExpanded(f.entry(u"A2"_s), true);
        f.history.setLabel(f.entry(u"A"_s), u"Z"_s);
        f.history.setLabel(f.entry(u"B"_s), u"Y"_s);
    }
    QCOMPARE(f.history.steps().front().entry, a);
}

void tst_History::stepsHaveNamesAndTimes()
{
    Fixture f;
    const QDateTime time(QDate(2026, 5, 4), QTime(3, 2));
    f.history.setLabel(f.entry(u"A"_s), u"Budget"_s);
    f.history.setClock([time] { return time; });
    f.history.remove(f.entry(u"Budget"_s));
    QCOMPARE(f.history.undoName(), u"deletion of \"Budget\""_s);
    QCOMPARE(f.history.redoName(), QString());
    f.history.undo();
    QCOMPARE(f.history.undoName(), u"renaming of \"A\""_s);
    QCOMPARE(f.history.redoName(), u"deletion of \"Budget\""_s);
    QVERIFY(!f.history.steps()[0].time.isValid());
    QCOMPARE(f.history.steps()[1].time, time);
}

void tst_History::theSelectionComesBackWithItsStep()
{
    Fixture f;
    f.history.select(f.entry(u"A21"_s));
    {
        const History::Step step(f.history, u"step"_s);
        f.history.remove(f.entry(u"A2"_s));
        f.history.select(f.entry(u"A1"_s));
    }
    f.history.select(f.entry(u"C"_s));
    f.history.undo();
    QCOMPARE(f.outline.tree.selected(), f.entry(u"A21"_s));
    f.history.select(nullptr);
    f.history.redo();
    QCOMPARE(f.outline.tree.selected(), f.entry(u"A1"_s));
}

void tst_History::aNewChangeDropsWhatCouldBeRedone()
{
    Fixture f;
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.setTagged(f.entry(u"B"_s), true);
    f.history.undo();
    f.history.undo();
    const qsizetype weight = f.history.weight();
    f.history.setTagged(f.entry(u"C"_s), true);
    QVERIFY(!f.history.canRedo());
    QCOMPARE(f.history.stepCount(), 1);
    QVERIFY(f.history.weight() < weight);
    f.history.undo();
    QCOMPARE(f.outline.tree.taggedCount(), 1);
}

void tst_History::goToUndoesAndRedoesUpToAPosition()
{
    Fixture f;
    std::vector<QStringList> states = {f.state()};
    for (int i = 1; i <= 5; ++i) {
        f.history.setLabel(f.entry(u"B"_s), u"B"_s);
        f.history.setStoredText(f.entry(u"B"_s), QByteArray::number(i));
        states.push_back(f.state());
    }
    for (const int position : {0, 5, 2, 2, 4, 1}) {
        QVERIFY(f.history.goTo(position));
        QCOMPARE(f.state(), states[static_cast<size_t>(position)]);
    }
    QVERIFY(!f.history.goTo(6));
    QVERIFY(!f.history.goTo(-1));
    QCOMPARE(f.history.position(), 1);
}

void tst_History::anExpansionStaysWhenTheStepBeforeItIsUndone()
{
    Fixture f;
    const QStringList before = f.state();
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.setTagged(f.entry(u"B"_s), true);
    f.history.setExpanded(f.entry(u"A"_s), false);
    QCOMPARE(f.history.stepCount(), 2);
    QCOMPARE(f.history.undoName(), u"tagging of \"B\""_s);
    f.history.undo();
    QVERIFY(!f.entry(u"A"_s)->expanded());
    f.history.undo();
    QVERIFY(!f.entry(u"A"_s)->tagged() && !f.entry(u"A"_s)->expanded());
    f.history.redo();
    QVERIFY(f.entry(u"A"_s)->tagged() && !f.entry(u"A"_s)->expanded());
    // Only with no step left it is taken back, and all is as it was.
    f.history.undo();
    QCOMPARE(f.history.position(), 0);
    QCOMPARE(f.history.undoName(), u"opening and closing of branches"_s);
    QVERIFY(f.history.undo());
    QCOMPARE(f.state(), before);
    QVERIFY(!f.history.canUndo() && !f.history.undo());
    f.history.goTo(2);
    QVERIFY(f.entry(u"B"_s)->tagged() && f.entry(u"A"_s)->expanded());
    // Going to the beginning is all of it.
    f.history.setExpanded(f.entry(u"A"_s), false);
    QVERIFY(f.history.goTo(0));
    QCOMPARE(f.state(), before);
}

void tst_History::anExpansionBeforeTheFirstStepIsUndoneBehindIt()
{
    Fixture f;
    f.history.markSaved();
    const QStringList before = f.state();
    f.history.setExpanded(f.entry(u"A"_s), false);
    // There is no step yet.
    QVERIFY(!f.history.canUndo());
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.undo();
    QVERIFY(!f.entry(u"A"_s)->expanded());
    f.history.setExpanded(f.entry(u"A2"_s), true);
    f.history.undo();
    QCOMPARE(f.state(), before);
    QVERIFY(!f.history.isChanged());
    f.history.redo();
    QVERIFY(f.entry(u"A"_s)->tagged());
}

void tst_History::whatAStepItselfOpensAndClosesIsUndoneWithIt()
{
    Fixture f;
    const QStringList before = f.state();
    {
        const History::Step step(f.history, u"both"_s);
        f.history.setTagged(f.entry(u"A"_s), true);
        f.history.setExpanded(f.entry(u"A"_s), false);
    }
    f.history.undo();
    QCOMPARE(f.state(), before);
    QVERIFY(!f.history.canUndo());
    f.history.redo();
    QVERIFY(!f.entry(u"A"_s)->expanded());
    // Whatever became of it since.
    f.history.setExpanded(f.entry(u"A"_s), true);
    f.history.undo();
    QCOMPARE(f.state(), before);
    QVERIFY(!f.history.canUndo());
}

void tst_History::whatIsBroughtBackIsOpenAsItWas()
{
    Fixture f;
    const QStringList before = f.state();
    f.history.setExpanded(f.entry(u"A2"_s), true);
    f.history.remove(f.entry(u"A"_s));
    f.history.undo();
    QVERIFY(f.entry(u"A"_s)->expanded() && f.entry(u"A2"_s)->expanded());
    f.history.undo();
    QCOMPARE(f.state(), before);
    // And what goes takes with it what was opened in it.
    f.history.insertCopy(f.outline.tree, f.entry(u"A"_s), Relationship::tvwNext, f.entry(u"B"_s));
    f.history.setExpandedAll(f.outline.tree.root(), true);
    f.history.setExpandedAll(f.outline.tree.root(), false);
    f.history.goTo(0);
    QCOMPARE(f.state(), before);
}

void tst_History::anExpansionKeepsWhatCanBeRedone()
{
    Fixture f;
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.setTagged(f.entry(u"B"_s), true);
    f.history.undo();
    f.history.setExpanded(f.entry(u"A"_s), false);
    QVERIFY(f.history.redo());
    QVERIFY(f.entry(u"B"_s)->tagged());
    QVERIFY(!f.entry(u"A"_s)->expanded());
}

void tst_History::anExpansionAskedForWhileUndoingIsRecorded()
{
    Fixture f;
    f.history.setExpanded(f.entry(u"A"_s), false);
    f.history.markSaved();
    f.history.setLabel(f.entry(u"B"_s), u"Y"_s);
    f.history.select(f.entry(u"A1"_s));
    f.history.setLabel(f.entry(u"C"_s), u"Z"_s);
    f.history.select(f.entry(u"C"_s));
    // Whoever shows the selection opens the way to it.
    QObject::connect(&f.outline.tree, &EntryTree::selectedChanged, &f.outline.tree, [&f](Entry *entry) {
        if (entry && entry->parent())
            f.history.expandAncestors(entry);
    });
    f.history.undo();
    QVERIFY(f.entry(u"A"_s)->expanded());
    f.history.undo();
    QVERIFY(f.entry(u"A"_s)->expanded());
    QVERIFY(f.history.undo());
    QVERIFY(!f.entry(u"A"_s)->expanded());
    QVERIFY(!f.history.canUndo());
}

void tst_History::aFailedStepIsTakenBack()
{
    Fixture f;
    const QStringList before = f.state();
    QSignalSpy rolledBack(&f.history, &History::rolledBack);
    try {
        const History::Step step(f.history, u"failing"_s);
        f.history.remove(f.entry(u"A"_s));
        f.history.setExpanded(f.outline.tree.root(), false);
        f.history.select(f.entry(u"C"_s));
        f.history.insert(Relationship::tvwNext, f.outline.tree.root());
    } catch (const RunTimeError &) {
        QCOMPARE(f.state(), before);
    }
    QCOMPARE(rolledBack.count(), 1);
    QCOMPARE(f.state(), before);
    QCOMPARE(f.history.stepCount(), 0);
    QVERIFY(!f.history.isStepOpen());
    QVERIFY(!f.history.isChanged());
}

void tst_History::aFailedStepInsideAnotherIsTakenBackAlone()
{
    Fixture f;
    const QStringList before = f.state();
    {
        const History::Step outer(f.history, u"outer"_s);
        f.history.setTagged(f.entry(u"A"_s), true);
        try {
            const History::Step inner(f.history, u"inner"_s);
            f.history.setTagged(f.entry(u"B"_s), true);
            throw std::bad_alloc();
        } catch (const std::bad_alloc &) {
        }
        QVERIFY(!f.entry(u"B"_s)->tagged());
        f.history.setTagged(f.entry(u"C"_s), true);
    }
    QCOMPARE(f.outline.tree.taggedCount(), 3);
    f.history.undo();
    QCOMPARE(f.state(), before);
}

void tst_History::whatWasKeptSurvivesAFailure()
{
    Fixture f;
    const QStringList before = f.state();
    try {
        History::Step step(f.history, u"kept in part"_s);
        f.history.setTagged(f.entry(u"A"_s), true);
        step.keep();
        f.history.setTagged(f.entry(u"B"_s), true);
        throw std::bad_alloc();
    } catch (const std::bad_alloc &) {
    }
    QVERIFY(f.entry(u"A"_s)->tagged() && !f.entry(u"B"_s)->tagged());
    QCOMPARE(f.history.stepCount(), 1);
    f.history.undo();
    QCOMPARE(f.state(), before);
}

void tst_History::aFailedStepLeavesWhatCanBeRedone()
{
    Fixture f;
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.undo();
    f.history.setExpanded(f.entry(u"A"_s), false);
    const QStringList before = f.state();
    try {
        const History::Step step(f.history, u"failing"_s);
        f.history.setTagged(f.entry(u"B"_s), true);
        throw std::bad_alloc();
    } catch (const std::bad_alloc &) {
    }
    QCOMPARE(f.state(), before);
    QVERIFY(f.history.redo());
    QVERIFY(f.entry(u"A"_s)->tagged());
    f.history.goTo(0);
    QVERIFY(f.entry(u"A"_s)->expanded());
}

void tst_History::changedMeansAnotherPositionThanTheSavedOne()
{
    Fixture f;
    QSignalSpy moved(&f.history, &History::positionChanged);
    QVERIFY(!f.history.isChanged());
    f.history.setTagged(f.entry(u"A"_s), true);
    QVERIFY(f.history.isChanged());
    f.history.markSaved();
    QVERIFY(!f.history.isChanged());
    QCOMPARE(moved.count(), 2);
    f.history.undo();
    QVERIFY(f.history.isChanged());
    f.history.redo();
    QVERIFY(!f.history.isChanged());
    f.history.forgetSaved();
    QVERIFY(f.history.isChanged());
}

void tst_History::aTouchedOutlineIsChangedUntilAStepLeadsToTheSavedOne()
{
    Fixture f;
    f.history.touch();
    QVERIFY(f.history.isChanged());
    f.history.markSaved();
    QVERIFY(!f.history.isChanged());
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.touch();
    f.history.undo();
    QVERIFY(!f.history.isChanged());
    f.history.touch();
    f.history.redo();
    QVERIFY(f.history.isChanged());
    f.history.undo();
    QVERIFY(!f.history.isChanged());
}

void tst_History::aDroppedSavedPositionIsNeverReached()
{
    Fixture f;
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.markSaved();
    f.history.undo();
    f.history.setTagged(f.entry(u"B"_s), true);
    QVERIFY(f.history.isChanged());
    f.history.undo();
    QVERIFY(f.history.isChanged());
}

void tst_History::anExpansionBehindASaveStaysAChange()
{
    Fixture f;
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.markSaved();
    f.history.setExpanded(f.entry(u"A"_s), false);
    f.history.touch();
    f.history.setTagged(f.entry(u"B"_s), true);
    f.history.undo();
    QVERIFY(!f.entry(u"A"_s)->expanded());
    QVERIFY(f.history.isChanged());
    // As it is where it was done behind another step.
    Fixture h;
    h.history.setTagged(h.entry(u"B"_s), true);
    h.history.setExpanded(h.entry(u"A"_s), false);
    h.history.undo();
    QVERIFY(h.history.isChanged());
    h.history.undo();
    QVERIFY(h.entry(u"A"_s)->expanded());
    QVERIFY(!h.history.isChanged());
    // What was opened before the first save is what undoing everything leads back to.
    Fixture g;
    g.history.setExpanded(g.entry(u"A"_s), false);
    g.history.markSaved();
    g.history.setTagged(g.entry(u"A"_s), true);
    g.history.undo();
    QVERIFY(!g.entry(u"A"_s)->expanded());
    QVERIFY(!g.history.isChanged() && !g.history.canUndo());
}

void tst_History::whatCountedAsChangedBySelectionDoesAgain()
{
    Fixture f;
    f.history.select(f.entry(u"A"_s));
    f.history.markSaved();
    f.history.select(f.entry(u"B"_s));
    f.history.touch();
    f.history.setTagged(f.entry(u"B"_s), true);
    f.history.undo();
    QVERIFY(f.history.isChanged());
    // Back at what was selected then, it is what was saved.
    f.history.markSaved();
    f.history.setTagged(f.entry(u"B"_s), true);
    f.history.select(f.entry(u"A"_s));
    f.history.touch();
    f.history.undo();
    QVERIFY(!f.history.isChanged());
    // What was selected without being a change is none behind a step either.
    f.history.select(f.entry(u"C"_s));
    QVERIFY(!f.history.isChanged());
    f.history.setTagged(f.entry(u"C"_s), true);
    f.history.undo();
    QVERIFY(!f.history.isChanged());
}

void tst_History::theOldestStepsGoWhereTheyWeighTooMuch()
{
    Fixture f;
    f.history.setMaximumWeight(100'000);
    QSignalSpy steps(&f.history, &History::stepsChanged);
    for (int i = 0; i < 20; ++i) {
        f.history.setStoredText(f.entry(u"A1"_s), QByteArray(15'000, static_cast<char>('a' + i)));
        QVERIFY(f.history.weight() <= 100'000);
    }
    QCOMPARE(f.history.stepCount(), 6);
    QCOMPARE(f.history.position(), 6);
    QCOMPARE(steps.count(), 20);
    QVERIFY(f.history.goTo(0));
    QCOMPARE(f.outline.tree.storedText(f.entry(u"A1"_s)).at(0), 'n');
    QVERIFY(f.history.isChanged());
    f.history.goTo(6);
    f.history.setMaximumWeight(40'000);
    QCOMPARE(f.history.stepCount(), 2);
    QCOMPARE(f.history.position(), 2);
}

void tst_History::theLastStepStaysWhateverItWeighs()
{
    Fixture f;
    f.history.setMaximumWeight(1000);
    f.history.setStoredText(f.entry(u"A1"_s), QByteArray(5000, 'x'));
    f.history.setStoredText(f.entry(u"A1"_s), "y");
    QCOMPARE(f.history.stepCount(), 1);
    f.history.undo();
    QCOMPARE(f.outline.tree.storedText(f.entry(u"A1"_s)).size(), 5000);
    QVERIFY(f.history.redo());
}

void tst_History::deletingEverythingCostsNoMemory()
{
    Fixture f;
    f.outline.tree.setStoredText(f.entry(u"A1"_s), QByteArray(1'000'000, 'x'));
    const char *bytes = f.outline.tree.storedText(f.entry(u"A1"_s)).constData();
    f.history.remove(f.outline.tree.root());
    QVERIFY(f.history.weight() > 1'000'000);
    f.history.undo();
    QCOMPARE(static_cast<const void *>(f.outline.tree.storedText(f.entry(u"A1"_s)).constData()),
             static_cast<const void *>(bytes));
    QVERIFY(f.history.weight() < 10'000);
}

void tst_History::labelsTypedIntoAViewAreSteps()
{
    Fixture f;
    QVERIFY(f.outline.tree.setData(f.outline.tree.indexOf(f.entry(u"C"_s)), u"Typed"_s));
    QCOMPARE(f.history.undoName(), u"renaming of \"C\""_s);
    f.history.undo();
    QVERIFY(f.entry(u"C"_s));
}

void tst_History::announcementsTellWhatChanges()
{
    Fixture f;
    QStringList heard;
    QObject::connect(&f.history, &History::aboutToChange, &f.history, [&](ChangeKind kind) {
        heard.append(u"about %1 (%2 tagged)"_s.arg(int(kind)).arg(f.outline.tree.taggedCount()));
    });
    QObject::connect(&f.history, &History::changed, &f.history,
                     [&](ChangeKind kind, const std::vector<EntryId> &entries) {
                         heard.append(u"%1 of %2 (%3 tagged)"_s.arg(int(kind))
                                          .arg(f.outline.tree.entry(entries.at(0))->label())
                                          .arg(f.outline.tree.taggedCount()));
                     });
    f.history.setTagged(f.entry(u"A"_s), true);
    f.history.undo();
    const QString tag = QString::number(int(ChangeKind::Tag));
    QCOMPARE(heard, QStringList({u"about %1 (1 tagged)"_s.arg(tag), u"%1 of A (2 tagged)"_s.arg(tag),
                                 u"about %1 (2 tagged)"_s.arg(tag), u"%1 of A (1 tagged)"_s.arg(tag)}));
}

void tst_History::manyChangesAreUndoneInOneReset()
{
    Fixture f;
    {
        const History::Step step(f.history, u"many"_s);
        for (int i = 0; i < 200; ++i)
            f.history.setLabel(f.history.insert(Relationship::tvwChild, f.outline.tree.root()), QString::number(i));
    }
    QSignalSpy reset(&f.outline.tree, &QAbstractItemModel::modelReset);
    QSignalSpy removed(&f.outline.tree, &QAbstractItemModel::rowsRemoved);
    f.history.undo();
    QCOMPARE(reset.count(), 1);
    QCOMPARE(removed.count(), 0);
    QCOMPARE(f.outline.tree.entryCount(), 7);
}

void tst_History::nothingIsChangedWhileSomethingIsUndone()
{
    Fixture f;
    f.history.setTagged(f.entry(u"A"_s), true);
    const QStringList after = f.state();
    const auto connection = QObject::connect(&f.history, &History::changed, &f.history,
                                             [&f] { f.history.setTagged(f.entry(u"B"_s), true); });
    QVERIFY_THROWS_EXCEPTION(RunTimeError, f.history.undo());
    QCOMPARE(f.state(), after);
    QVERIFY(QObject::disconnect(connection));
    QVERIFY(f.history.undo());
}

void tst_History::typingIsUndoneByItsText()
{
    Fixture f;
    CountedTexts texts;
    f.history.setLiveTexts(&texts);
    const EntryId a1 = f.entry(u"A1"_s)->id();
    f.history.select(f.entry(u"A1"_s));
    texts.type(f.history, a1);
    texts.type(f.history, a1);
    QCOMPARE(f.history.undoName(), u"typing in \"A1\""_s);
    f.history.select(f.entry(u"B"_s));
    f.history.undo();
    QCOMPARE(texts.texts[a1]->done, 1);
    QCOMPARE(f.outline.tree.selected(), f.entry(u"A1"_s));
    QVERIFY(f.history.redo());
    f.history.goTo(0);
    QCOMPARE(texts.texts[a1]->undone, 2);
    f.history.setTagged(f.entry(u"B"_s), true);
    QCOMPARE(texts.texts[a1]->undone, 0);
}

void tst_History::aReplacedTextTakesItsLiveTextAlong()
{
    Fixture f;
    CountedTexts texts;
    f.history.setLiveTexts(&texts);
    const EntryId a1 = f.entry(u"A1"_s)->id();
    texts.type(f.history, a1);
    const auto first = texts.texts[a1];
    f.history.setStoredText(f.entry(u"A1"_s), "replaced");
    QVERIFY(!texts.texts.contains(a1));
    QVERIFY(f.history.weight() > 1000);
    texts.type(f.history, a1);
    const auto second = texts.texts[a1];
    f.history.goTo(1);
    QCOMPARE(texts.texts[a1], first);
    f.history.goTo(0);
    QCOMPARE(first->undone, 1);
    f.history.goTo(3);
    QCOMPARE(texts.texts[a1], second);
    QCOMPARE(second->done, 1);
    // What makes no difference leaves it where it is.
    f.history.setStoredText(f.entry(u"A1"_s), "replaced");
    QCOMPARE(texts.texts[a1], second);
}

void tst_History::aTextStepThatFailsLeavesTheStepDone()
{
    Fixture f;
    CountedTexts texts;
    f.history.setLiveTexts(&texts);
    {
        const History::Step step(f.history, u"both"_s);
        texts.type(f.history, f.entry(u"A1"_s)->id());
        f.history.setTagged(f.entry(u"B"_s), true);
    }
    const QStringList after = f.state();
    texts.refuses = true;
    QVERIFY_THROWS_EXCEPTION(RunTimeError, f.history.undo());
    QCOMPARE(f.state(), after);
    QCOMPARE(f.history.position(), 1);
    texts.refuses = false;
    QVERIFY(f.history.undo());
}

void tst_History::anotherStepEndsTheMergingOfTyping()
{
    Fixture f;
    CountedTexts texts;
    f.history.setLiveTexts(&texts);
    texts.type(f.history, f.entry(u"A1"_s)->id());
    f.history.setExpanded(f.entry(u"A"_s), false);
    QCOMPARE(texts.mergingEnded, 0);
    f.history.setTagged(f.entry(u"B"_s), true);
    QCOMPARE(texts.mergingEnded, 1);
    f.history.markSaved();
    QCOMPARE(texts.mergingEnded, 2);
}

void tst_History::aLiveTextThatIsLetGoLeavesItsRunsAsTexts()
{
    Fixture f;
    CountedTexts texts;
    f.history.setLiveTexts(&texts);
    const EntryId a1 = f.entry(u"A1"_s)->id();
    const auto type = [&](int times) {
        for (int i = 0; i < times; ++i)
            texts.type(f.history, a1);
    };
    const QStringList start = f.state();
    type(3);
    f.history.setExpanded(f.entry(u"A"_s), false);
    type(2);
    f.history.setTagged(f.entry(u"B"_s), true);
    {
        const History::Step step(f.history, u"both"_s);
        f.history.setTagged(f.entry(u"C"_s), true);
        type(2);
    }
    QCOMPARE(f.history.stepCount(), 7);
    // Seven steps back the text was the first.
    f.outline.tree.setStoredText(f.entry(u"A1"_s), "after 7");
    const QStringList end = f.state();
    f.history.foldTextSteps(a1, [](int back) { return back == 7 ? "first" : "after " + QByteArray::number(7 - back); });
    texts.texts.clear();
    QCOMPARE(f.history.stepCount(), 3);
    QCOMPARE(f.history.position(), 3);
    QCOMPARE(f.state(), end);
    f.history.undo();
    QCOMPARE(f.outline.tree.storedText(f.entry(u"A1"_s)), QByteArray("after 5"));
    f.history.undo();
    QVERIFY(f.history.goTo(0));
    QCOMPARE(f.state(), start);
    QVERIFY(f.history.goTo(3));
    f.history.setExpanded(f.entry(u"A"_s), false);
    QCOMPARE(f.state(), end);
}

void tst_History::aLiveTextIsLetGoWhileSomeOfItIsUndone()
{
    Fixture f;
    CountedTexts texts;
    f.history.setLiveTexts(&texts);
    const EntryId a1 = f.entry(u"A1"_s)->id();
    f.history.setStoredText(f.entry(u"A1"_s), "replaced");
    for (int i = 0; i < 5; ++i)
        texts.type(f.history, a1);
    f.history.undo();
    f.history.undo();
    f.outline.tree.setStoredText(f.entry(u"A1"_s), "now");
    f.history.foldTextSteps(a1, [](int back) {
        return back == 3 ? "replaced" : back == -2 ? "typed" : "wrong " + QByteArray::number(back);
    });
    texts.texts.clear();
    QCOMPARE(f.history.stepCount(), 3);
    QCOMPARE(f.history.position(), 2);
    const auto text = [&f] { return f.outline.tree.storedText(f.entry(u"A1"_s)); };
    f.history.redo();
    QCOMPARE(text(), QByteArray("typed"));
    f.history.undo();
    QCOMPARE(text(), QByteArray("now"));
    f.history.undo();
    QCOMPARE(text(), QByteArray("replaced"));
    f.history.undo();
    QCOMPARE(text(), QByteArray("first"));
}

void tst_History::theSavedPositionEndsARunOfATextThatIsLetGo()
{
    Fixture f;
    CountedTexts texts;
    f.history.setLiveTexts(&texts);
    const EntryId a1 = f.entry(u"A1"_s)->id();
    texts.type(f.history, a1);
    texts.type(f.history, a1);
    f.history.markSaved();
    texts.type(f.history, a1);
    texts.type(f.history, a1);
    f.history.foldTextSteps(a1, [](int back) { return QByteArray::number(back); });
    texts.texts.clear();
    QCOMPARE(f.history.stepCount(), 2);
    QVERIFY(f.history.isChanged());
    f.history.undo();
    QVERIFY(!f.history.isChanged());
    QCOMPARE(f.outline.tree.storedText(f.entry(u"A1"_s)), QByteArray("2"));
    f.history.undo();
    QVERIFY(f.history.isChanged());
}

QTEST_GUILESS_MAIN(tst_History)
#include "tst_History.moc"
