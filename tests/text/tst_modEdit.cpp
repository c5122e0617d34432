// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Rtf.h"
#include "text/PaneFixture.h"
#include "text/modEdit.h"

#include <QClipboard>
#include <QImage>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>

#include <memory>
#include <random>

using namespace Qt::StringLiterals;

// The Edit menu's commands on a real text pane in a document that is active.
class tst_modEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_pane = std::make_unique<PaneFixture>();
        m_fake = &m_pane->fake;
        m_box = &m_pane->box;
    }

    void cleanup() { m_pane.reset(); }

    void aPartlyBoldSelectionIsClearedFirst();
    void everyFormatToggles_data();
    void everyFormatToggles();

    void formatsToggleInsideAWord_data() { characterFormats(); }

    void formatsToggleInsideAWord();
    void unindentStopsAtNothing();
    void unindentOfMixedIndentsSetsThemToNothing();
    void indentLeavesMixedIndentsAlone();
    void indentGoesByAStep();
    void alignment();
    void copyAndPasteKeepFormatting();
    void cutAndPasteLoseIt();
    void cutGivesOtherProgramsTheirLineBreaks();
    void pasteSpecialLosesItAlways();
    void pasteTakesAPictureWhereThereIsNoText();
    void pasteOfNothingDoesNothing();
    void copyPutsRichTextThereAlone();
    void theCaseGoesRound();
    void theCaseGoesRoundOverAFinalSigma();
    void properNames_data();
    void properNames();
    void aPictureBeginsAName();
    void changesOfCaseKeepTheLook();
    void changesOfCaseOnLettersThatGrow();
    void clearingIsDoneAfterYesAlone();
    void clearingTakesTheFormattingToo();
    void deleteAndSelectAll();
    void nothingIsDeletedWithoutASelection();
    void insertions();
    void everyCommandIsOneStepToUndo_data();
    void everyCommandIsOneStepToUndo();
    void changesOfCaseOnRandomTexts();

    void everyCommandShowsTheHourglass_data() { everyCommand(); }

    void everyCommandShowsTheHourglass();

    void theHourglassStaysUntilTheOutermostIsDone();

    void withoutADocumentNothingHappens_data() { everyCommand(); }

    void withoutADocumentNothingHappens();

private:
    static void everyCommand();
    static void characterFormats();

    void show(const QByteArray &body) { m_box->setTextRTF("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}" + body + "}"); }

    void select(int start, int length)
    {
        m_box->setSelStart(start);
        m_box->setSelLength(length);
    }

    void selectAll() { select(0, static_cast<int>(m_box->Text().size())); }

    std::unique_ptr<PaneFixture> m_pane;
    // Its own.
    FakePorts *m_fake = nullptr;
    RichTextBox *m_box = nullptr;
};

using Command = void (*)();
Q_DECLARE_METATYPE(Command)

namespace
{

struct NamedCommand {
    const char *name;
    Command command;
};

constexpr NamedCommand commands[] = {
    {"cut", modEdit::EditCut},
    {"copy", modEdit::EditCopy},
    {"paste", modEdit::EditPaste},
    {"paste special", modEdit::EditPasteSpecial},
    {"delete", modEdit::EditDelete},
    {"select all", modEdit::EditSelectAll},
    {"clear", modEdit::EditClearEntryText},
    {"tab", modEdit::EditInsertTab},
    {"long date", modEdit::EditInsertLongDate},
    {"short date", modEdit::EditInsertShortDate},
    {"time", modEdit::EditInsertTime},
    {"lower", modEdit::EditCaseLower},
    {"upper", modEdit::EditCaseUpper},
    {"proper", modEdit::EditCaseProper},
    {"toggle case", modEdit::EditCaseToggle},
    {"bold", modEdit::EditFormatBold},
    {"italic", modEdit::EditFormatItalic},
    {"underline", modEdit::EditFormatUnderline},
    {"strike through", modEdit::EditFormatStrikeThrough},
    {"bullet", modEdit::EditFormatBullet},
    {"indent", modEdit::EditFormatIndent},
    {"unindent", modEdit::EditFormatUnindent},
    {"left", modEdit::EditFormatLeft},
    {"centre", modEdit::EditFormatCentre},
    {"right", modEdit::EditFormatRight},
};

} // namespace

void tst_modEdit::everyCommand()
{
    QTest::addColumn<Command>("command");
    for (const NamedCommand &row : commands)
        QTest::newRow(row.name) << row.command;
}

void tst_modEdit::aPartlyBoldSelectionIsClearedFirst()
{
    show("a{\\b b}c");
    selectAll();
    modEdit::EditFormatBold();
    QCOMPARE(m_box->SelBold(), std::optional(false));
    modEdit::EditFormatBold();
    QCOMPARE(m_box->SelBold(), std::optional(true));
}

void tst_modEdit::characterFormats()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QByteArray>("word");
    QTest::newRow("bold") << Command(modEdit::EditFormatBold) << QByteArray("\\b");
    QTest::newRow("italic") << Command(modEdit::EditFormatItalic) << QByteArray("\\i");
    QTest::newRow("underline") << Command(modEdit::EditFormatUnderline) << QByteArray("\\ul");
    QTest::newRow("strike through") << Command(modEdit::EditFormatStrikeThrough) << QByteArray("\\strike");
}

void tst_modEdit::everyFormatToggles_data()
{
    characterFormats();
    QTest::newRow("bullet") << Command(modEdit::EditFormatBullet) << QByteArray("\\pntxtb");
}

void tst_modEdit::everyFormatToggles()
{
    QFETCH(const Command, command);
    QFETCH(const QByteArray, word);
    const auto bodyHasWord = [&] {
        const QByteArray rtf = m_box->TextRTF();
        return rtf.contains(word) || (word == "\\pntxtb" && rtf.contains("\\ls1"));
    };
    show("some text");
    selectAll();
    QVERIFY(!bodyHasWord());
    command();
    QVERIFY(bodyHasWord());
    command();
    QVERIFY(!bodyHasWord());
}

void tst_modEdit::formatsToggleInsideAWord()
{
    QFETCH(const Command, command);
    QFETCH(QByteArray, word);
    // Others begin with the same letters.
    word += ' ';
    show("word");
    select(2, 0);
    const QByteArray before = m_box->TextRTF();
    command();
    QTest::keyClicks(m_box, u"x"_s);
    QVERIFY(m_box->TextRTF().contains(word));
    m_box->undo();
    select(2, 0);
    command();
    command();
    QTest::keyClicks(m_box, u"x"_s);
    QVERIFY(!m_box->TextRTF().contains(word));
    QCOMPARE(m_box->TextRTF(), QByteArray(before).replace("word", "woxrd"));
}

void tst_modEdit::unindentStopsAtNothing()
{
    show("\\li200 text");
    selectAll();
    modEdit::EditFormatUnindent();
    QCOMPARE(m_box->SelIndent(), std::optional(0));
}

void tst_modEdit::unindentOfMixedIndentsSetsThemToNothing()
{
    show("\\li600 one\\par\\li900 two");
    selectAll();
    QCOMPARE(m_box->SelIndent(), std::nullopt);
    modEdit::EditFormatUnindent();
    QCOMPARE(m_box->SelIndent(), std::optional(0));
}

void tst_modEdit::indentLeavesMixedIndentsAlone()
{
    show("\\li600 one\\par\\li900 two");
    const QByteArray before = m_box->TextRTF();
    selectAll();
    modEdit::EditFormatIndent();
    QCOMPARE(m_box->TextRTF(), before);
}

void tst_modEdit::indentGoesByAStep()
{
    show("\\li600 one\\par\\li600 two");
    selectAll();
    modEdit::EditFormatIndent();
    QCOMPARE(m_box->SelIndent(), std::optional(900));
    modEdit::EditFormatUnindent();
    modEdit::EditFormatUnindent();
    QCOMPARE(m_box->SelIndent(), std::optional(300));
}

void tst_modEdit::alignment()
{
    show("one\\par two");
    selectAll();
    modEdit::EditFormatCentre();
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Centre));
    modEdit::EditFormatRight();
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Right));
    modEdit::EditFormatLeft();
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Left));
}

void tst_modEdit::copyAndPasteKeepFormatting()
{
    show("a{\\b bold}c");
    select(1, 4);
    modEdit::EditCopy();
    select(6, 0);
    modEdit::EditPaste();
    QCOMPARE(m_box->Text(), u"aboldcbold"_s);
    select(6, 4);
    QCOMPARE(m_box->SelBold(), std::optional(true));
}

void tst_modEdit::cutAndPasteLoseIt()
{
    show("a{\\b bold}c");
    select(1, 4);
    modEdit::EditCut();
    QCOMPARE(m_box->Text(), u"ac"_s);
    select(2, 0);
    modEdit::EditPaste();
    QCOMPARE(m_box->Text(), u"acbold"_s);
    select(2, 4);
    QCOMPARE(m_box->SelBold(), std::optional(false));
}

void tst_modEdit::cutGivesOtherProgramsTheirLineBreaks()
{
    show("one\\par two\\line three");
    selectAll();
    modEdit::EditCut();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"one\ntwo\nthree"_s);
    QCOMPARE(m_pane->clipboard.text(), u"one\r\ntwo\r\nthree"_s);
}

void tst_modEdit::pasteSpecialLosesItAlways()
{
    show("a{\\b bold}c");
    select(1, 4);
    modEdit::EditCopy();
    select(6, 0);
    modEdit::EditPasteSpecial();
    QCOMPARE(m_box->Text(), u"aboldcbold"_s);
    select(6, 4);
    QCOMPARE(m_box->SelBold(), std::optional(false));

    m_pane->clipboard.setText(u"one\r\ntwo"_s);
    selectAll();
    modEdit::EditPasteSpecial();
    QCOMPARE(m_box->Text(), u"one\r\ntwo"_s);
}

void tst_modEdit::pasteTakesAPictureWhereThereIsNoText()
{
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QGuiApplication::clipboard()->setImage(image);
    modEdit::EditPaste();
    QCOMPARE(m_box->Text(), u" "_s);
    QVERIFY(m_box->TextRTF().contains("\\pngblip"));
    auto *both = new QMimeData;
    both->setImageData(image);
    both->setText(u"words"_s);
    QGuiApplication::clipboard()->setMimeData(both);
    modEdit::EditPaste();
    QCOMPARE(m_box->Text(), u" words"_s);
}

void tst_modEdit::pasteOfNothingDoesNothing()
{
    m_pane->clipboard.clear();
    show("text");
    selectAll();
    modEdit::EditPaste();
    modEdit::EditPasteSpecial();
    QCOMPARE(m_box->Text(), u"text"_s);
}

void tst_modEdit::copyPutsRichTextThereAlone()
{
    show("{\\b bold}");
    selectAll();
    modEdit::EditCopy();
    const QMimeData *held = QGuiApplication::clipboard()->mimeData();
    QVERIFY(held->hasFormat(u"text/rtf"_s));
    QVERIFY(!held->hasText());
    select(0, 0);
    modEdit::EditCopy();
    QVERIFY(m_pane->clipboard.richText().isEmpty() && m_pane->clipboard.text().isEmpty());
}

void tst_modEdit::theCaseGoesRound()
{
    show("x ABC y");
    select(2, 3);
    for (const QString &next : {u"abc"_s, u"Abc"_s, u"ABC"_s, u"abc"_s}) {
        modEdit::EditCaseToggle();
        QCOMPARE(m_box->SelText(), next);
        QCOMPARE(m_box->SelStart(), 2);
        QCOMPARE(m_box->Text(), u"x %1 y"_s.arg(next));
    }
    // Text without letters counts as small.
    show("12 34");
    selectAll();
    modEdit::EditCaseToggle();
    QCOMPARE(m_box->SelText(), u"12 34"_s);
    // Mixed text goes to capitals.
    show("aBc");
    selectAll();
    modEdit::EditCaseToggle();
    QCOMPARE(m_box->SelText(), u"ABC"_s);
}

// The small sigma of a word's end has the capital of the other one, and does not come back from it.
void tst_modEdit::theCaseGoesRoundOverAFinalSigma()
{
    show("x  y");
    select(2, 0);
    m_box->setSelText(u"\u03C3\u03BF\u03C6\u03CC\u03C2"_s);
    select(2, 5);
    const QString capitals = u"\u03A3\u039F\u03A6\u038C\u03A3"_s;
    for (const QString &next : {u"\u03A3\u03BF\u03C6\u03CC\u03C2"_s, capitals, u"\u03C3\u03BF\u03C6\u03CC\u03C3"_s,
                                u"\u03A3\u03BF\u03C6\u03CC\u03C3"_s, capitals}) {
        modEdit::EditCaseToggle();
        QCOMPARE(m_box->SelText(), next);
        QCOMPARE(m_box->SelStart(), 2);
    }
}

void tst_modEdit::properNames_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("proper");
    const auto row = [](const char *name, const char *rtf, const QString &proper) {
        QTest::newRow(name) << QByteArray(rtf) << proper;
    };
    row("a letter behind a digit", "the 4th of july", u"The 4Th Of July"_s);
    row("an apostrophe and a hyphen begin no word", "o'neil-smith", u"O'neil-smith"_s);
    row("capitals become small", "ALL CAPITALS", u"All Capitals"_s);
    row("a paragraph begins a word", "one\\par two", u"One\r\nTwo"_s);
    row("a line begins a word", "one\\line two", u"One\nTwo"_s);
    row("a tab begins none", "one\\tab two", u"One\ttwo"_s);
    row("a change of look begins none", "wo{\\b rd}", u"Word"_s);
    row("a word behind a blank of another look", "a{\\b  b}", u"A B"_s);
    row("letters beyond ASCII", "\\u228?rger \\u233?t\\u233?", u"Ärger Été"_s);
    row("letters beyond the basic plane", "\\uc0\\u-10239\\u-9176  x", u"\U00010400 X"_s);
}

void tst_modEdit::properNames()
{
    QFETCH(const QByteArray, rtf);
    QFETCH(const QString, proper);
    show(rtf);
    selectAll();
    modEdit::EditCaseProper();
    QCOMPARE(m_box->Text(), proper);
}

void tst_modEdit::aPictureBeginsAName()
{
    show("onetwo");
    select(3, 0);
    m_box->textCursor().insertImage(QImage(4, 4, QImage::Format_RGB32));
    selectAll();
    QCOMPARE(m_box->SelText(), u"one two"_s);
    modEdit::EditCaseProper();
    QCOMPARE(m_box->Text(), u"One Two"_s);
    QVERIFY(m_box->document()->characterAt(3) == QChar::ObjectReplacementCharacter);
}

void tst_modEdit::changesOfCaseKeepTheLook()
{
    show("one {\\b two} {\\i three}\\par{\\ul four}");
    selectAll();
    modEdit::EditCaseUpper();
    QCOMPARE(m_box->Text(), u"ONE TWO THREE\r\nFOUR"_s);
    select(4, 3);
    QCOMPARE(m_box->SelBold(), std::optional(true));
    select(8, 5);
    QCOMPARE(m_box->SelItalic(), std::optional(true));
    QCOMPARE(m_box->SelBold(), std::optional(false));
    select(15, 4);
    QCOMPARE(m_box->SelUnderline(), std::optional(true));
}

void tst_modEdit::changesOfCaseOnLettersThatGrow()
{
    show("x \\u223? y"); // sharp s
    select(2, 1);
    modEdit::EditCaseUpper();
    QCOMPARE(m_box->Text(), u"x SS y"_s);
    QCOMPARE(m_box->SelStart(), 4);

    show("x stra\\u223?e y");
    select(2, 6);
    modEdit::EditCaseToggle();
    modEdit::EditCaseToggle();
    QCOMPARE(m_box->SelText(), u"STRASSE"_s);
    QCOMPARE(m_box->SelStart(), 2);

    show("\\u304?stanbul"); // I with a dot
    selectAll();
    modEdit::EditCaseLower();
    QCOMPARE(m_box->Text(), u"\u0130stanbul"_s.toLower());
}

void tst_modEdit::clearingIsDoneAfterYesAlone()
{
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        show("text");
        m_fake->dialogs.answers.push_back(answer);
        modEdit::EditClearEntryText();
        QCOMPARE(m_box->Text(), u"text"_s);
    }
    m_fake->dialogs.answers.push_back(Answer::Yes);
    const QSignalSpy changed(m_box, &QTextEdit::textChanged);
    modEdit::EditClearEntryText();
    QCOMPARE(m_box->Text(), QString());
    QVERIFY(!changed.isEmpty());
    QCOMPARE(m_fake->dialogs.plainQuestions.last(),
             u"Are you sure that you want to delete all the text for this entry?"_s);
}

void tst_modEdit::clearingTakesTheFormattingToo()
{
    show("\\qc\\li700{\\*\\pn\\pnlvlblt{\\pntxtb x}}{\\b text}\\par more");
    m_fake->dialogs.answers.push_back(Answer::Yes);
    modEdit::EditClearEntryText();
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Left));
    QCOMPARE(m_box->SelIndent(), std::optional(0));
    QCOMPARE(m_box->SelBold(), std::optional(false));
    QCOMPARE(m_box->SelBullet(), std::optional(false));
    m_box->undo();
    QCOMPARE(m_box->Text(), u"text\r\nmore"_s);
}

void tst_modEdit::deleteAndSelectAll()
{
    show("one\\par two");
    modEdit::EditSelectAll();
    QCOMPARE(m_box->SelText(), u"one\r\ntwo"_s);
    select(1, 4);
    modEdit::EditDelete();
    QCOMPARE(m_box->Text(), u"otwo"_s);
}

void tst_modEdit::nothingIsDeletedWithoutASelection()
{
    show("text");
    select(2, 0);
    const QSignalSpy changed(m_box, &QTextEdit::textChanged);
    m_pane->clipboard.setText(u"held"_s);
    modEdit::EditDelete();
    QCOMPARE(m_pane->clipboard.text(), u"held"_s);
    modEdit::EditCut();
    QVERIFY(m_pane->clipboard.text().isEmpty());
    QCOMPARE(changed.size(), 0);
    QVERIFY(!m_box->document()->isUndoAvailable());
}

void tst_modEdit::insertions()
{
    show("ab");
    select(1, 0);
    modEdit::EditInsertTab();
    QCOMPARE(m_box->Text(), u"a\tb"_s);
    m_fake->clock.moment = QDateTime(QDate(2026, 12, 31), QTime(7, 5, 59));
    selectAll();
    modEdit::EditInsertTime();
    QCOMPARE(m_box->Text(), u"07:05"_s);
    selectAll();
    modEdit::EditInsertLongDate();
    QCOMPARE(m_box->Text(), QLocale::system().toString(QDate(2026, 12, 31), QLocale::LongFormat));
    selectAll();
    modEdit::EditInsertShortDate();
    QCOMPARE(m_box->Text(), QLocale::system().toString(QDate(2026, 12, 31), QLocale::ShortFormat));
    QCOMPARE(m_box->SelStart(), int(m_box->Text().size()));
}

void tst_modEdit::everyCommandIsOneStepToUndo_data()
{
    everyCommand();
}

void tst_modEdit::everyCommandIsOneStepToUndo()
{
    QFETCH(const Command, command);
    show("First {\\b line} of \\u223?\\par\\li600 second\\line{\\i line}\\par\\li600 third");
    m_pane->clipboard.setRichText("{\\rtf1 pasted\\par{\\b twice}}");
    m_fake->dialogs.answers.push_back(Answer::Yes);
    const QByteArray before = m_box->TextRTF();
    selectAll();
    command();
    // What changes nothing to be seen may be a step or none.
    if (m_box->TextRTF() != before || m_box->document()->isUndoAvailable())
        m_box->shown()->undo();
    QCOMPARE(m_box->TextRTF(), before);
    QVERIFY(!m_box->document()->isUndoAvailable());
}

// The text comes out as if it had no looks at all.
void tst_modEdit::changesOfCaseOnRandomTexts()
{
    std::mt19937 random(20260304);
    const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
    const QByteArray parts[] = {"aB",         " ",        "\\par ", "7",       "x\\line y",
                                "{\\b Bold}", "{\\i iT}", "-",      "\\u223?", "\\tab q"};
    for (int round = 0; round < 300; ++round) {
        QByteArray rtf;
        for (int i = below(12); i >= 0; --i)
            rtf += parts[below(int(std::size(parts)))];
        show(rtf);
        const QString text = m_box->Text();
        const int start = below(int(text.size()) + 1);
        select(start, below(int(text.size()) - start + 1));
        const QString selected = m_box->SelText();
        const int begin = m_box->SelStart();
        const bool isUpper = below(2) == 0;
        (isUpper ? modEdit::EditCaseUpper : modEdit::EditCaseLower)();
        const QString changed = isUpper ? selected.toUpper() : selected.toLower();
        QCOMPARE(m_box->Text(), QString(text).replace(begin, selected.size(), changed));
    }
}

void tst_modEdit::everyCommandShowsTheHourglass()
{
    QFETCH(const Command, command);
    show("text");
    selectAll();
    m_fake->dialogs.answers = {Answer::Yes};
    command();
    m_fake->dialogs.answers.clear();
    QCOMPARE(m_fake->pointer.timesHourglass, 1);
    QVERIFY(!m_fake->pointer.hourglass);
}

void tst_modEdit::theHourglassStaysUntilTheOutermostIsDone()
{
    {
        const HourglassPointer outer;
        modEdit::EditSelectAll();
        QVERIFY(m_fake->pointer.hourglass);
    }
    QVERIFY(!m_fake->pointer.hourglass);
}

void tst_modEdit::withoutADocumentNothingHappens()
{
    QFETCH(const Command, command);
    show("text");
    const QByteArray before = m_box->TextRTF();
    m_pane->active = nullptr;
    m_pane->clipboard.setText(u"held"_s);
    command();
    QCOMPARE(m_box->TextRTF(), before);
    QCOMPARE(m_pane->clipboard.text(), u"held"_s);
    QVERIFY(m_fake->dialogs.plainQuestions.isEmpty());
}

QTEST_MAIN(tst_modEdit)
#include "tst_modEdit.moc"
