// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/LiveTexts.h"
#include "model/History.h"
#include "model/Outline.h"

#include "support/OutlineText.h"

#include <QTest>
#include <QTextBlock>
#include <QTextCursor>

using namespace Qt::StringLiterals;

// What is typed into the texts of an outline, and what else is done to it, undone in the order in which it was done.
class tst_TextHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void textsAreUndoneInTheOrderInWhichTheyWereTypedInto();
    void typingIsMergedUntilSomethingElseIsDone_data();
    void typingIsMergedUntilSomethingElseIsDone();
    void whatIsUndoneToASavedTextIsNotChanged();
    void typingForgetsWhatCouldBeRedoneInAnotherText();
    void whatIsUndoneAltogetherIsStoredByteForByteAsItWas();
    void whatIsUndoneAltogetherIsNoTextWhereNoneWas();
    void theLookOfTheFirstParagraphIsUndoneAndRedone();
    void whatIsTypedBehindAnUndoneStepIsAStep_data();
    void whatIsTypedBehindAnUndoneStepIsAStep();
    void aStoredTextTakesTheLiveOneAlongAndBringsItBack();
    void anEntryThatWasRemovedComesBackWithWhatCanBeUndoneInIt();
    void aTextThatIsLetGoIsUndoneAllTheSame();
    void aTextThatIsLetGoTwiceIsUndoneAllTheSame();
    void aSavedPositionStaysWhenATextIsLetGo();
    void aTextThatIsLetGoIsRedoneAllTheSame();
    void randomStepsAreUndoneAndRedoneUnderABoundOfMemory();

private:
    Entry *entry(const QString &label) const { return entryLabelled(m_outline->tree, label); }

    QString textOf(const QString &label) const { return plainTextOf(m_outline->tree, entry(label)); }

    QStringList allTexts() const
    {
        QStringList all;
        for (const Entry *each = m_outline->tree.root(); each; each = nextInOutline(each, m_outline->tree.root()))
            all.append(each->label() + u": "_s + plainTextOf(m_outline->tree, each));
        return all;
    }

    QTextDocument &show(const QString &label)
    {
        m_texts->setShown(m_texts->open(*entry(label), QFont()));
        return m_texts->shown()->document();
    }

    // As keys do it, letter by letter.
    void type(const QString &label, const QString &typed)
    {
        QTextCursor caret(&show(label));
        caret.movePosition(QTextCursor::End);
        for (const QChar letter : typed)
            caret.insertText(letter);
    }

    void undoAll() const
    {
        while (m_history->canUndo())
            QVERIFY(m_history->undo());
    }

    void redoAll() const
    {
        while (m_history->canRedo())
            QVERIFY(m_history->redo());
    }

    std::unique_ptr<Outline> m_outline;
    std::unique_ptr<LiveTexts> m_texts;
    std::unique_ptr<History> m_history;
};

void tst_TextHistory::init()
{
    m_outline = std::make_unique<Outline>();
    plantOutline(m_outline->tree, {u"Root"_s, u" A"_s, u" B"_s});
    m_texts = std::make_unique<LiveTexts>(m_outline->tree);
    m_history = std::make_unique<History>(*m_outline);
    m_history->setLiveTexts(m_texts.get());
    connect(m_texts.get(), &LiveTexts::stepAdded, m_history.get(), &History::appendTextStep);
    m_texts->setFolder([this](EntryId id, const auto &textAt) {
        if (m_history->isStepOpen())
            return false;
        m_history->foldTextSteps(id, textAt);
        return true;
    });
}

void tst_TextHistory::cleanup()
{
    m_history.reset();
    m_texts.reset();
    m_outline.reset();
}

void tst_TextHistory::textsAreUndoneInTheOrderInWhichTheyWereTypedInto()
{
    QList<QStringList> states{allTexts()};
    for (const auto &[label, typed] : {std::pair(u"A"_s, u"one"_s), std::pair(u"B"_s, u"two"_s),
                                       std::pair(u"A"_s, u" three"_s), std::pair(u"B"_s, u" four"_s)}) {
        type(label, typed);
        states.append(allTexts());
    }
    QCOMPARE(m_history->stepCount(), 4);
    for (int round = 0; round < 2; ++round) {
        for (int at = 3; at >= 0; --at) {
            QVERIFY(m_history->undo());
            QCOMPARE(allTexts(), states[at]);
        }
        QVERIFY(!m_history->canUndo());
        for (int at = 1; at <= 4; ++at) {
            QVERIFY(m_history->redo());
            QCOMPARE(allTexts(), states[at]);
        }
    }
}

void tst_TextHistory::typingIsMergedUntilSomethingElseIsDone_data()
{
    QTest::addColumn<int>("what");
    QTest::addColumn<int>("steps");
    QTest::newRow("nothing") << 0 << 1;
    QTest::newRow("a save") << 1 << 2;
    QTest::newRow("another entry") << 2 << 2;
    QTest::newRow("another step") << 3 << 3;
}

void tst_TextHistory::typingIsMergedUntilSomethingElseIsDone()
{
    QFETCH(const int, what);
    QFETCH(const int, steps);
    type(u"A"_s, u"one"_s);
    if (what == 1)
        m_history->markSaved();
    else if (what == 2)
        show(u"B"_s);
    else if (what == 3)
        m_history->setLabel(entry(u"B"_s), u"Other"_s);
    type(u"A"_s, u"two"_s);
    QCOMPARE(m_history->stepCount(), steps);
    QVERIFY(m_history->undo());
    QCOMPARE(textOf(u"A"_s), what == 0 ? QString() : u"one"_s);
}

void tst_TextHistory::whatIsUndoneToASavedTextIsNotChanged()
{
    type(u"A"_s, u"one"_s);
    m_history->markSaved();
    type(u"A"_s, u"two"_s);
    QVERIFY(m_history->isChanged());
    QVERIFY(m_history->undo());
    QVERIFY(!m_history->isChanged());
    QVERIFY(m_history->undo());
    QVERIFY(m_history->isChanged());
}

void tst_TextHistory::typingForgetsWhatCouldBeRedoneInAnotherText()
{
    type(u"A"_s, u"one"_s);
    type(u"B"_s, u"two"_s);
    QVERIFY(m_history->undo());
    QVERIFY(m_texts->find(*entry(u"B"_s))->document().isRedoAvailable());
    type(u"A"_s, u"three"_s);
    QVERIFY(!m_history->canRedo());
    QVERIFY(!m_texts->find(*entry(u"B"_s))->document().isRedoAvailable());
}

void tst_TextHistory::whatIsUndoneAltogetherIsStoredByteForByteAsItWas()
{
    const QByteArray before = "{\\rtf1 written elsewhere}";
    m_outline->tree.setStoredText(entry(u"A"_s), before);
    type(u"A"_s, u" one"_s);
    QCOMPARE(textOf(u"A"_s), u"written elsewhere one"_s);
    undoAll();
    QCOMPARE(m_outline->tree.storedText(entry(u"A"_s)), before);
    redoAll();
    show(u"B"_s);
    m_texts->setMaximumWeight(0);
    undoAll();
    QCOMPARE(m_outline->tree.storedText(entry(u"A"_s)), before);
}

void tst_TextHistory::whatIsUndoneAltogetherIsNoTextWhereNoneWas()
{
    type(u"A"_s, u"typed"_s);
    QVERIFY(!m_outline->tree.storedText(entry(u"A"_s)).isEmpty());
    undoAll();
    QCOMPARE(m_outline->tree.storedText(entry(u"A"_s)), QByteArray());
}

// The text engine's own steps leave that as it is.
void tst_TextHistory::theLookOfTheFirstParagraphIsUndoneAndRedone()
{
    m_outline->tree.setStoredText(entry(u"A"_s), "{\\rtf1\\fs40\\par\\fs20 second}");
    QTextDocument &document = show(u"A"_s);
    QTextCharFormat large;
    large.setFontPointSize(30);
    const QTextCharFormat first = document.firstBlock().charFormat();
    // Alone, and within a step that does more.
    QTextCursor(document.firstBlock()).setBlockCharFormat(large);
    QCOMPARE(m_history->position(), 1);
    QTextCursor whole(&document);
    whole.beginEditBlock();
    whole.insertText(u"typed"_s);
    QTextCharFormat larger;
    larger.setFontPointSize(50);
    QTextCursor(document.firstBlock()).setBlockCharFormat(larger);
    whole.endEditBlock();
    QCOMPARE(m_history->position(), 2);
    for (int round = 0; round < 2; ++round) {
        QVERIFY(m_history->undo());
        QCOMPARE(document.firstBlock().charFormat(), large);
        QVERIFY(m_history->undo());
        QCOMPARE(document.firstBlock().charFormat(), first);
        QVERIFY(m_history->redo());
        QCOMPARE(document.firstBlock().charFormat(), large);
        QVERIFY(m_history->redo());
        QCOMPARE(document.firstBlock().charFormat(), larger);
        QVERIFY(!m_history->canRedo());
    }
}

// Merged with what was typed before, it would be no step, and what can be redone would go on from another text.
void tst_TextHistory::whatIsTypedBehindAnUndoneStepIsAStep_data()
{
    QTest::addColumn<bool>("ofText");
    QTest::newRow("of the text") << true;
    QTest::newRow("of the outline") << false;
}

void tst_TextHistory::whatIsTypedBehindAnUndoneStepIsAStep()
{
    QFETCH(const bool, ofText);
    type(u"A"_s, u"one"_s);
    if (ofText) {
        QTextCursor all(&show(u"A"_s));
        all.select(QTextCursor::Document);
        QTextCharFormat large;
        large.setFontPointSize(30);
        all.mergeCharFormat(large);
    } else {
        m_history->setLabel(entry(u"B"_s), u"Other"_s);
    }
    QVERIFY(m_history->undo());
    type(u"A"_s, u" two"_s);
    QCOMPARE(m_history->position(), 2);
    QVERIFY(!m_history->canRedo());
    QVERIFY(m_history->undo());
    QCOMPARE(textOf(u"A"_s), u"one"_s);
}

void tst_TextHistory::aStoredTextTakesTheLiveOneAlongAndBringsItBack()
{
    type(u"A"_s, u"one"_s);
    const auto live = m_texts->shown();
    m_history->setStoredText(entry(u"A"_s), "{\\rtf1 another}");
    QCOMPARE(show(u"A"_s).toPlainText(), u"another"_s);
    type(u"A"_s, u"!"_s);
    QCOMPARE(m_history->stepCount(), 3);
    QVERIFY(m_history->undo());
    QCOMPARE(textOf(u"A"_s), u"another"_s);
    QVERIFY(m_history->undo());
    QCOMPARE(textOf(u"A"_s), u"one"_s);
    QCOMPARE(m_texts->find(*entry(u"A"_s)), live);
    QVERIFY(m_history->undo());
    QCOMPARE(textOf(u"A"_s), QString());
    redoAll();
    QCOMPARE(textOf(u"A"_s), u"another!"_s);
}

void tst_TextHistory::anEntryThatWasRemovedComesBackWithWhatCanBeUndoneInIt()
{
    type(u"A"_s, u"one"_s);
    m_history->remove(entry(u"A"_s));
    QVERIFY(m_history->undo());
    QCOMPARE(textOf(u"A"_s), u"one"_s);
    QVERIFY(m_history->undo());
    QCOMPARE(textOf(u"A"_s), QString());
    redoAll();
    QVERIFY(!entry(u"A"_s));
    undoAll();
    QCOMPARE(textOf(u"A"_s), QString());
}

void tst_TextHistory::aTextThatIsLetGoIsUndoneAllTheSame()
{
    type(u"A"_s, u"one"_s);
    m_history->markSaved();
    type(u"A"_s, u" two"_s);
    {
        const History::Step step(*m_history, u"a step of several"_s);
        QTextCursor(&show(u"A"_s)).insertText(u"zero "_s);
        m_history->setLabel(entry(u"B"_s), u"Other"_s);
    }
    const QStringList last = allTexts();
    show(u"Other"_s);
    m_texts->setMaximumWeight(0);
    QVERIFY(!m_texts->find(*entry(u"A"_s)));
    QCOMPARE(allTexts(), last);
    undoAll();
    QCOMPARE(allTexts(), QStringList({u"Root: "_s, u"A: "_s, u"B: "_s}));
    redoAll();
    QCOMPARE(allTexts(), last);
}

void tst_TextHistory::aTextThatIsLetGoTwiceIsUndoneAllTheSame()
{
    m_texts->setMaximumWeight(0);
    type(u"A"_s, u"one"_s);
    type(u"B"_s, u"two"_s);
    type(u"A"_s, u" three"_s);
    type(u"B"_s, u" four"_s);
    show(u"Root"_s);
    QCOMPARE(m_texts->count(), 1);
    const QStringList last = allTexts();
    QCOMPARE(last.last(), u"B: two four"_s);
    undoAll();
    QCOMPARE(allTexts(), QStringList({u"Root: "_s, u"A: "_s, u"B: "_s}));
    redoAll();
    QCOMPARE(allTexts(), last);
}

void tst_TextHistory::aSavedPositionStaysWhenATextIsLetGo()
{
    type(u"A"_s, u"one"_s);
    m_history->markSaved();
    type(u"A"_s, u" two"_s);
    m_history->setMaximumWeight(History::maximumWeight);
    show(u"B"_s);
    m_texts->setMaximumWeight(0);
    QVERIFY(m_history->isChanged());
    QVERIFY(m_history->undo());
    QVERIFY(!m_history->isChanged());
    QCOMPARE(textOf(u"A"_s), u"one"_s);
}

void tst_TextHistory::aTextThatIsLetGoIsRedoneAllTheSame()
{
    type(u"A"_s, u"one"_s);
    QVERIFY(m_history->undo());
    show(u"B"_s);
    m_texts->setMaximumWeight(0);
    QVERIFY(!m_texts->find(*entry(u"A"_s)));
    QCOMPARE(textOf(u"A"_s), QString());
    redoAll();
    QCOMPARE(textOf(u"A"_s), u"one"_s);
}

void tst_TextHistory::randomStepsAreUndoneAndRedoneUnderABoundOfMemory()
{
    quint32 seed = 20261122;
    const auto below = [&seed](quint32 bound) {
        seed = seed * 1664525 + 1013904223;
        return (seed >> 8) % bound;
    };
    for (int round = 0; round < 40; ++round) {
        cleanup();
        init();
        m_texts->setMaximumWeight(qsizetype(below(4)) * 10000);
        const QStringList first = allTexts();
        for (int step = 0; step < 30; ++step) {
            const QString label = below(2) == 0 ? u"A"_s : u"B"_s;
            switch (below(5)) {
            case 0:
                m_history->setStoredText(entry(label), "{\\rtf1 text " + QByteArray::number(step) + '}');
                break;
            case 1:
                m_history->undo();
                break;
            case 2:
                m_history->redo();
                break;
            default:
                type(label, QString::number(step));
            }
        }
        const QStringList last = [&] {
            redoAll();
            return allTexts();
        }();
        undoAll();
        QCOMPARE(allTexts(), first);
        redoAll();
        QCOMPARE(allTexts(), last);
    }
}

QTEST_MAIN(tst_TextHistory)
#include "tst_TextHistory.moc"
