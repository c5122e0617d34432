// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RawOutline.h"
#include "window/WindowFixture.h"

#include "document/UndoRedo.h"
#include "search/modSearch.h"
#include "support/OutlineText.h"
#include "text/modEdit.h"

#include <QClipboard>
#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;

// What the steps of a text are called, what they select again, and what is none.
class tst_TextSteps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void keysNameWhatTheyDo();
    void whatIsDroppedIsNamed();
    void aReplacementIsNamed();
    void typingMergesWithNothingThatHasAName();
    void aNameEndsWithItsCommand();
    void aFormatThatIsUndoneSelectsWhatItFormatted();
    void whatIsUndoneAfterMoreWorkSelectsItsOwn();
    void cellsThatAreUndoneAreSelectedAgain();
    void whatReplacedASelectionIsUndoneToIt();
    void typingPutsTheCaretWhereItWas();
    void whatShowsNoDifferenceIsNoStep_data();
    void whatShowsNoDifferenceIsNoStep();
    void aDifferenceInAPartIsAStep();
    void stepsOfSeveralKindsThatBecomeOneAreNamedByNoneOfThem();

private:
    Document &document() const { return *m_fixture->activeDocument(); }

    RichTextBox &box() const { return *m_fixture->form().textBox; }

    QString name() const { return document().history.undoName(); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(&box(), key, modifiers);
    }

    void select(int start, int length) const
    {
        box().setSelStart(start);
        box().setSelLength(length);
    }

    QString selected() const { return u"%1+%2"_s.arg(box().SelStart()).arg(box().SelLength()); }

    std::unique_ptr<WindowFixture> m_fixture;
};

void tst_TextSteps::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    Document &made = m_fixture->createDocument();
    plantOutline(rawOutline(made).tree, {u"Root +"_s, u" First"_s});
    Entry *first = entryLabelled(made.tree, u"First"_s);
    rawOutline(made).tree.setStoredText(first, "{\\rtf1 a cat sat on the mat\\par and a dog\\par}");
    made.m_fileAccess = FileAccess::Writable;
    modNodes::NodeSelectFull(made, first);
    box().setFocus();
    QGuiApplication::clipboard()->setText(u"pasted"_s);
}

void tst_TextSteps::cleanup()
{
    m_fixture.reset();
}

void tst_TextSteps::keysNameWhatTheyDo()
{
    select(2, 3);
    press(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(name(), u"cutting from \"First\""_s);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(name(), u"pasting in \"First\""_s);
    press(Qt::Key_Insert, Qt::ShiftModifier);
    QCOMPARE(name(), u"pasting in \"First\""_s);
    QCOMPARE(document().history.stepCount(), 3);
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Backspace}) {
        select(2, 3);
        press(key);
        QCOMPARE(name(), u"deletion in \"First\""_s);
    }
    press(Qt::Key_Backspace);
    QCOMPARE(name(), u"typing in \"First\""_s);
    select(0, 2);
    QTest::keyClicks(&box(), u"x"_s);
    QCOMPARE(name(), u"typing in \"First\""_s);
    QCOMPARE(document().history.stepCount(), 7);
}

void tst_TextSteps::whatIsDroppedIsNamed()
{
    QMimeData dragged;
    dragged.setText(u"dropped"_s);
    const QPoint place = box().cursorRect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(box().viewport(), &enter);
    QDropEvent drop(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(box().viewport(), &drop);
    QVERIFY(box().Text().startsWith(u"dropped"_s));
    QCOMPARE(name(), u"dropping in \"First\""_s);
}

void tst_TextSteps::aReplacementIsNamed()
{
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = u"0"_s;
    g_bSearchMatchCase = g_bSearchWholeWord = g_bSearchBackwards = false;
    QVERIFY(modSearch::SearchPerform());
    modSearch::SearchPerformReplace();
    QVERIFY(box().Text().startsWith(u"a dog"_s));
    QCOMPARE(name(), u"replacement in the text of \"First\""_s);
    g_sSearchFind.clear();
    g_sSearchReplace.clear();
}

void tst_TextSteps::typingMergesWithNothingThatHasAName()
{
    QTest::keyClicks(&box(), u"ab"_s);
    modEdit::EditInsertTab();
    QTest::keyClicks(&box(), u"cd"_s);
    modEdit::EditInsertTab();
    modEdit::EditInsertTab();
    QTest::keyClicks(&box(), u"ef"_s);
    QStringList names;
    for (const History::StepInfo &step : document().history.steps())
        names.append(step.name.section(u' ', 0, 0));
    QCOMPARE(names.join(u' '), u"typing insertion typing insertion insertion typing"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(box().Text().startsWith(u"ab\tcd\ta cat"_s));
}

void tst_TextSteps::aNameEndsWithItsCommand()
{
    // Nothing is selected: what is typed next is bold.
    modEdit::EditFormatBold();
    QVERIFY(!document().history.canUndo());
    QTest::keyClicks(&box(), u"ab"_s);
    QCOMPARE(name(), u"typing in \"First\""_s);
    QCOMPARE(document().history.stepCount(), 1);
}

void tst_TextSteps::aFormatThatIsUndoneSelectsWhatItFormatted()
{
    select(2, 3);
    modEdit::EditFormatBold();
    QCOMPARE(name(), u"bold in \"First\""_s);
    for (int round = 0; round < 2; ++round) {
        select(20, 0);
        press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(selected(), u"2+3"_s);
        QCOMPARE(box().SelBold(), false);
        select(20, 0);
        press(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(selected(), u"2+3"_s);
        QCOMPARE(box().SelBold(), true);
    }
}

void tst_TextSteps::whatIsUndoneAfterMoreWorkSelectsItsOwn()
{
    select(2, 3);
    modEdit::EditFormatBold();
    select(6, 3);
    modEdit::EditFormatItalic();
    press(Qt::Key_Z, Qt::ControlModifier);
    // Another step is there now instead.
    select(0, 5);
    modEdit::EditFormatUnderline();
    select(10, 2);
    QTest::keyClicks(&box(), u"xy"_s);
    select(0, 1);
    modEdit::EditCaseUpper();
    for (const auto &expected : {u"0+1"_s, u"10+2"_s, u"0+5"_s, u"2+3"_s}) {
        press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(selected(), expected);
    }
    QVERIFY(!document().history.canUndo());
}

void tst_TextSteps::cellsThatAreUndoneAreSelectedAgain()
{
    box().setSelRTF("{\\rtf1\\trowd\\cellx1000\\cellx2000 a\\cell b\\cell\\row\\pard behind\\par}");
    QTextCursor cells(box().document());
    cells.setPosition(1);
    cells.setPosition(3, QTextCursor::KeepAnchor);
    box().setCaret(cells);
    QVERIFY(box().SelHoldsCells());
    modEdit::EditFormatBold();
    QCOMPARE(box().SelBold(), true);
    select(8, 0);
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(box().SelHoldsCells());
    QCOMPARE(box().SelBold(), false);
}

void tst_TextSteps::whatReplacedASelectionIsUndoneToIt()
{
    select(2, 3);
    QTest::keyClicks(&box(), u"horse"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(selected(), u"2+3"_s);
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(selected(), u"7+0"_s);
    select(2, 5);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(selected(), u"8+0"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(selected(), u"2+5"_s);
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(selected(), u"8+0"_s);
}

void tst_TextSteps::typingPutsTheCaretWhereItWas()
{
    select(5, 0);
    QTest::keyClicks(&box(), u"fish"_s);
    select(0, 0);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(selected(), u"5+0"_s);
    select(0, 0);
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(selected(), u"9+0"_s);
}

void tst_TextSteps::whatShowsNoDifferenceIsNoStep_data()
{
    QTest::addColumn<std::function<void(tst_TextSteps &)>>("deed");
    using Deed = std::function<void(tst_TextSteps &)>;
    QTest::newRow("left again") << Deed([](tst_TextSteps &) { modEdit::EditFormatLeft(); });
    QTest::newRow("no indent less") << Deed([](tst_TextSteps &) { modEdit::EditFormatUnindent(); });
    QTest::newRow("the font that it has") << Deed([](tst_TextSteps &test) {
        FontAttributes font;
        font.name = *test.box().SelFontName();
        font.size = *test.box().SelFontSize();
        font.bold = font.italic = font.underline = font.strikeThrough = false;
        test.m_fixture->fakes.dialogs.fonts = {font, font};
        modEdit::EditCurrentFont();
        test.select(3, 0);
        modEdit::EditCurrentFont();
    });
    QTest::newRow("small letters") << Deed([](tst_TextSteps &) { modEdit::EditCaseLower(); });
    QTest::newRow("nothing deleted") << Deed([](tst_TextSteps &test) {
        test.select(3, 0);
        modEdit::EditDelete();
    });
    QTest::newRow("nothing left to clear") << Deed([](tst_TextSteps &test) {
        Document &document = test.document();
        modNodes::NodeSelectFull(document, document.tree.root());
        test.m_fixture->fakes.dialogs.answers = {Answer::Yes};
        modEdit::EditClearEntryText();
    });
}

void tst_TextSteps::whatShowsNoDifferenceIsNoStep()
{
    QFETCH(const std::function<void(tst_TextSteps &)>, deed);
    QTest::keyClicks(&box(), u"a"_s);
    document().history.setLabel(document().tree.root(), u"Other"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    select(2, 3);
    deed(*this);
    QCOMPARE(document().history.stepCount(), 2);
    QCOMPARE(document().history.position(), 0);
    QVERIFY(redoStep(document()));
    QVERIFY(box().Text().startsWith(u"aa cat"_s));
}

void tst_TextSteps::aDifferenceInAPartIsAStep()
{
    select(0, 0);
    modEdit::EditFormatRight();
    // The first paragraph and the second.
    select(0, static_cast<int>(box().Text().size()));
    modEdit::EditFormatRight();
    QCOMPARE(document().history.stepCount(), 2);
    select(2, 3);
    modEdit::EditFormatBold();
    select(0, 10);
    // What is mixed goes off.
    modEdit::EditFormatBold();
    QCOMPARE(document().history.stepCount(), 4);
    QCOMPARE(box().SelBold(), false);
}

// A text that is let go keeps what it was before and behind all that was done to it.
void tst_TextSteps::stepsOfSeveralKindsThatBecomeOneAreNamedByNoneOfThem()
{
    document().texts.setMaximumWeight(0);
    modEdit::EditInsertTab();
    modEdit::EditInsertTab();
    modNodes::NodeSelectFull(document(), document().tree.root());
    QCOMPARE(document().history.stepCount(), 1);
    QCOMPARE(name(), u"insertion of a tab in \"First\""_s);
    modNodes::NodeSelectFull(document(), entryLabelled(document().tree, u"First"_s));
    modEdit::EditInsertTab();
    QTest::keyClicks(&box(), u"a"_s);
    modNodes::NodeSelectFull(document(), document().tree.root());
    QCOMPARE(document().history.stepCount(), 2);
    QCOMPARE(name(), u"change of text of \"First\""_s);
}

QTEST_MAIN(tst_TextSteps)
#include "tst_TextSteps.moc"
