// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/History.h"
#include "model/Outline.h"
#include "support/OutlineState.h"
#include "support/OutlineText.h"
#include "support/RefusedMemory.h"

#include <QTest>

#include <functional>
#include <new>

using namespace Qt::StringLiterals;

// What is done to a document when there is no memory for a part of it: each single request for memory fails once, and
// the document must be as it was before.

namespace
{

using FaultyAct = std::function<void(Outline &, History &)>;

// Where what was typed is worked on, so that a text goes with its own steps.
class OneText : public LiveTextPort
{
public:
    struct Text : LiveText {
        int done = 0;

        qsizetype weight() const override { return 1; }
    };

    void undoText(EntryId) override { --text->done; }

    void redoText(EntryId) override { ++text->done; }

    void forgetUndone(EntryId) noexcept override {}

    std::shared_ptr<LiveText> takeOut(EntryId) override { return std::exchange(text, nullptr); }

    void putBack(EntryId, std::shared_ptr<LiveText> back) override { text = std::static_pointer_cast<Text>(back); }

    void endMerging() noexcept override {}

    std::shared_ptr<Text> text = std::make_shared<Text>();
};

} // namespace

Q_DECLARE_METATYPE(FaultyAct)

class tst_HistoryFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFailureLeavesTheOutlineAsItWas_data();
    void aFailureLeavesTheOutlineAsItWas();
};

void tst_HistoryFaults::aFailureLeavesTheOutlineAsItWas_data()
{
    QTest::addColumn<FaultyAct>("act");
    const auto row = [](const char *name, FaultyAct act) { QTest::newRow(name) << act; };
    const auto at = [](const Outline &outline, const char *label) {
        return entryLabelled(outline.tree, QString::fromLatin1(label));
    };
    row("an insertion", [](Outline &o, History &h) { h.insert(Relationship::tvwChild, o.tree.root()); });
    row("a copy",
        [at](Outline &o, History &h) { h.insertCopy(o.tree, at(o, "A"), Relationship::tvwChild, at(o, "C")); });
    row("a removal", [at](Outline &o, History &h) { h.remove(at(o, "A")); });
    row("a removal of many", [at](Outline &o, History &h) { h.removeAll({at(o, "A"), at(o, "C")}); });
    row("a move", [at](Outline &o, History &h) { h.move(at(o, "A"), Relationship::tvwChild, at(o, "C")); });
    // Told to views, a new order asks Qt for memory where it cannot say no.
    row("a sorting", [](Outline &o, History &h) {
        const HistoryBulk bulk(h);
        h.setSorted(o.tree.root(), true);
    });
    row("an expansion", [](Outline &o, History &h) { h.setExpandedAll(o.tree.root(), true); });
    row("labels, tags and texts", [at](Outline &o, History &h) {
        const History::Step step(h, u"much"_s);
        h.setLabel(at(o, "A1"), u"Z"_s);
        h.setTagged(at(o, "A2"), true);
        h.setStoredText(at(o, "C"), "text");
        h.setFonts(o.textFont, o.textFont);
        h.setForeignRecords(at(o, "A2"), {{1, "{\\other x}"}});
        h.setFileForeignRecords({{0, "{\\other x}"}}, "{\\end y}");
        h.select(at(o, "B"));
    });
    row("a step of several", [at](Outline &o, History &h) {
        const History::Step step(h, u"several"_s);
        const HistoryBulk bulk(h);
        Entry *added = h.insert(Relationship::tvwNext, at(o, "B"));
        h.setExpanded(at(o, "A"), false);
        h.setLabel(added, u"New"_s);
        h.move(at(o, "A2"), Relationship::tvwChild, added);
        h.remove(at(o, "A"));
        h.setSorted(o.tree.root(), true);
        h.select(added);
    });
    row("undoing", [](Outline &, History &h) { h.undo(); });
    row("undoing and redoing", [](Outline &, History &h) {
        h.goTo(0);
        h.goTo(2);
    });
}

void tst_HistoryFaults::aFailureLeavesTheOutlineAsItWas()
{
    QFETCH(const FaultyAct, act);
    for (long request = 0;; ++request) {
        OneText texts;
        Outline outline;
        plantOutline(outline.tree, {u"Root +"_s, u" C +"_s, u"  A *"_s, u"   A1"_s, u"   A2"_s, u" B <"_s});
        outline.textFont.setName(u"Font"_s);
        History history(outline);
        history.setLiveTexts(&texts);
        history.setTagged(entryLabelled(outline.tree, u"B"_s), true);
        {
            const History::Step step(history, u"last"_s);
            history.move(entryLabelled(outline.tree, u"A"_s), Relationship::tvwNext,
                         entryLabelled(outline.tree, u"B"_s));
            history.setStoredText(entryLabelled(outline.tree, u"A1"_s), "text");
        }
        texts.text = std::make_shared<OneText::Text>();
        const QStringList before = stateOf(outline);
        const int stepsBefore = history.stepCount();
        const bool changedBefore = history.isChanged();

        memoryWasRefused = false;
        bool failed = false;
        requestsUntilRefusal = request;
        try {
            act(outline, history);
        } catch (const std::bad_alloc &) {
            failed = true;
        }
        requestsUntilRefusal = -1;

        QCOMPARE(outline.tree.brokenInvariant(), QString());
        QVERIFY(!history.isStepOpen());
        if (!memoryWasRefused) {
            QVERIFY2(request > 0, "nothing was refused");
            break;
        }
        QVERIFY(request < 10'000);
        // Sorting does without what it asks for.
        if (!failed)
            continue;
        const bool wanders = history.position() != 2;
        if (!wanders) {
            QCOMPARE(stateOf(outline), before);
            QCOMPARE(history.stepCount(), stepsBefore);
            QCOMPARE(history.isChanged(), changedBefore);
        }
        // And everything can still be undone and redone.
        QVERIFY(history.goTo(0));
        QVERIFY(history.goTo(2));
        QCOMPARE(stateOf(outline), before);
    }
}

QTEST_GUILESS_MAIN(tst_HistoryFaults)
#include "tst_HistoryFaults.moc"
