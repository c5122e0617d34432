// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/RichTextBox.h"

#include "model/TextFind.h"
#include "rtf/Rtf.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextList>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto poem = "{\\rtf1\\ansi Roses are {\\b red},\\par Violets are {\\i blue}\\line and so on.\\par End}";
const QString poemText = u"Roses are red,\r\nViolets are blue\nand so on.\r\nEnd"_s;

} // namespace

// A window that takes whatever is dropped on it.
class DropTarget : public QWidget
{
public:
    int entered = 0;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override
    {
        ++entered;
        event->acceptProposedAction();
    }
};

class tst_RichTextBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_window = std::make_unique<DropTarget>();
        m_window->setAcceptDrops(true);
        m_window->resize(500, 300);
        m_box = new RichTextBox(m_window.get());
        m_box->resize(400, 300);
        m_other = new QLineEdit(m_window.get());
        m_other->move(410, 0);
        QWidget::setTabOrder(m_box, m_other);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_box->setFocus();
        QTRY_VERIFY(m_box->hasFocus());
    }

    void cleanup() { m_window.reset(); }

    void hasTheNamesByWhichItIsFound();
    void rtfIsShownAndComesBack();
    void bytesThatAreNoRtfAreShownAsText();
    void anEmptyTextEmptiesThePane();
    void typingAtTheStartTakesTheNewTextsLook();
    void assigningIsNoChangeAndNoUndoStep();
    void typingIsAChange();
    void theSelectedTextIsThatPartOfTheText();
    void offsetsBeyondTheTextAreItsEnd();
    void selTextReplacesTheSelection();
    void selTextKeepsLineBreaksApart();
    void selTextLooksLikeWhatItReplaces();
    void selRtfReplacesTheSelection();
    void characterFormats_data();
    void characterFormats();
    void underliningAnewIsPlain();
    void aFormatAtTheCaretIsThatOfTheNextLetter();
    void aFormatSetInsideAWordIsRead();
    void fontNameAndSize();
    void sizesInPixelsAndStepsGiveWay();
    void colours();
    void bullets();
    void bulletsOnALongText();
    void indents();
    void aBulletDoesNotMoveTheIndent();
    void alignments();
    void aParagraphTouchedOnlyAtItsBeginningIsLeftAlone();
    void theBaseFontIsThatOfPlainText();
    void aLockedTextIsReadAndCopied();
    void aLockedTextShowsItsCaret();
    void aLockedTextCanBeChangedByProgram();
    void findFindsFromAnOffset();
    void findHonoursCaseAndWords();
    void findSelectsUnlessAskedNotTo();
    void copyOffersThreeKinds();
    void pastePrefersRichText();
    void pasteTakesHtmlBeforeText();
    void pastedTextBecomesParagraphs();
    void everyPastedCharacterIsKeptOrInSight();
    void wordsBesideAPicturesCharacterAreKept_data();
    void wordsBesideAPicturesCharacterAreKept();
    void whatAPageShowsIsShownAgain();
    void cutAndUndo();
    void pastingIsOneStepOfUndo();
    void nothingPastedReadsAFile();
    void filesDroppedAreLeftToTheWindow();
    void textCanBeDropped();
    void tabLeavesThePane();
    void controlTabTypesNothing();
    void altLettersTypeNothing();
    void lineEditingKeysOfOtherProgramsDoNothing();
    void redoHasItsKey();
    void theWheelDoesNotZoom();
    void selectionMovedFollowsTheCaret();
    void aParagraphWithEmojiKeepsItsGlyphsWhileItIsTypedInto();
    void aHiddenPaneKeepsTheFocus();
    void coloursFollowThePalette();
    void largeTexts();

private:
    void select(int start, int length) const
    {
        m_box->setSelStart(start);
        m_box->setSelLength(length);
    }

    void selectText(const QString &text) const
    {
        const qsizetype at = m_box->Text().indexOf(text);
        QVERIFY(at >= 0);
        select(static_cast<int>(at), static_cast<int>(text.size()));
    }

    void type(const QString &text) const { QTest::keyClicks(m_box, text); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(m_box, key, modifiers);
    }

    void paste(QMimeData *data) const
    {
        QApplication::clipboard()->setMimeData(data);
        press(Qt::Key_V, Qt::ControlModifier);
    }

    std::unique_ptr<DropTarget> m_window;
    RichTextBox *m_box = nullptr;
    QLineEdit *m_other = nullptr;
};

void tst_RichTextBox::hasTheNamesByWhichItIsFound()
{
    QCOMPARE(m_box->objectName(), u"txtRTF"_s);
    QCOMPARE(m_box->accessibleName(), u"Entry text"_s);
}

void tst_RichTextBox::rtfIsShownAndComesBack()
{
    m_box->setTextRTF(poem);
    QCOMPARE(m_box->Text(), poemText);
    const QByteArray written = m_box->TextRTF();
    QVERIFY(rtf::isRtf(written));
    m_box->setTextRTF(written);
    QCOMPARE(m_box->Text(), poemText);
    QCOMPARE(m_box->TextRTF(), written);
    selectText(u"red"_s);
    QCOMPARE(m_box->SelBold(), std::optional(true));
}

void tst_RichTextBox::bytesThatAreNoRtfAreShownAsText()
{
    m_box->setTextRTF("caf\xe9\r\nsecond\nthird");
    QCOMPARE(m_box->Text(), u"café\r\nsecond\r\nthird"_s);
    m_box->setTextRTF("\xd0\x96");
    QCOMPARE(m_box->Text(), u"Ж"_s);
}

void tst_RichTextBox::anEmptyTextEmptiesThePane()
{
    m_box->setTextRTF(poem);
    m_box->setTextRTF(QByteArray());
    QCOMPARE(m_box->Text(), QString());
    QCOMPARE(m_box->SelLength(), 0);
    QVERIFY(rtf::isRtf(m_box->TextRTF()));
    m_box->setTextRTF(m_box->TextRTF());
    QCOMPARE(m_box->Text(), QString());
}

void tst_RichTextBox::typingAtTheStartTakesTheNewTextsLook()
{
    m_box->setTextRTF("{\\rtf1 {\\b\\i\\fs60 Loud}}");
    QCOMPARE(m_box->SelBold(), std::optional(true));
    m_box->setTextRTF("{\\rtf1 \\fs24 quiet}");
    QCOMPARE(m_box->SelBold(), std::optional(false));
    QCOMPARE(m_box->SelFontSize(), std::optional(12.0));
    QTest::keyClicks(m_box, u"so "_s);
    m_box->setSelStart(0);
    m_box->setSelLength(8);
    QCOMPARE(m_box->SelText(), u"so quiet"_s);
    QCOMPARE(m_box->SelBold(), std::optional(false));
    QCOMPARE(m_box->SelItalic(), std::optional(false));
    QCOMPARE(m_box->SelFontSize(), std::optional(12.0));
}

void tst_RichTextBox::assigningIsNoChangeAndNoUndoStep()
{
    m_box->setTextRTF(poem);
    const QSignalSpy changed(m_box, &QTextEdit::textChanged);
    m_box->setFont(QFont(u"DejaVu Sans"_s, 20));
    QCOMPARE(changed.size(), 0);
    QVERIFY(!m_box->document()->isUndoAvailable());
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_box->Text(), poemText);
    type(u"x"_s);
    QVERIFY(m_box->document()->isUndoAvailable());
    m_box->setTextRTF("{\\rtf1 other}");
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_box->Text(), u"other"_s);
}

void tst_RichTextBox::typingIsAChange()
{
    m_box->setTextRTF(poem);
    QSignalSpy changed(m_box, &QTextEdit::textChanged);
    type(u"ab"_s);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(m_box->Text(), u"ab"_s + poemText);
    press(Qt::Key_Return);
    QCOMPARE(m_box->Text(), u"ab\r\n"_s + poemText);
    press(Qt::Key_Backspace);
    press(Qt::Key_Delete);
    QCOMPARE(changed.size(), 5);
    press(Qt::Key_Right);
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(changed.size(), 5);
}

void tst_RichTextBox::theSelectedTextIsThatPartOfTheText()
{
    m_box->setTextRTF(poem);
    const QString text = m_box->Text();
    for (int start = 0; start <= text.size(); ++start) {
        for (int length = 0; start + length <= text.size(); ++length) {
            select(start, length);
            QCOMPARE(text.mid(m_box->SelStart(), m_box->SelLength()), m_box->SelText());
            // Between the two characters of a break there is no place for the caret.
            const auto withinBreak = [&text](int at) { return at > 0 && text[at - 1] == u'\r'; };
            if (!withinBreak(start) && (start + length == text.size() || !withinBreak(start + length))) {
                QCOMPARE(m_box->SelStart(), start);
                QCOMPARE(m_box->SelLength(), length);
            }
        }
    }
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_box->SelText(), text);
    // A selection made backwards counts from its beginning as well.
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_box->SelText(), u"End"_s);
    QCOMPARE(m_box->SelStart(), static_cast<int>(text.size()) - 3);
}

void tst_RichTextBox::offsetsBeyondTheTextAreItsEnd()
{
    m_box->setTextRTF(poem);
    const int size = static_cast<int>(poemText.size());
    select(1'000'000, 5);
    QCOMPARE(m_box->SelStart(), size);
    QCOMPARE(m_box->SelLength(), 0);
    select(size - 3, std::numeric_limits<int>::max());
    QCOMPARE(m_box->SelText(), u"End"_s);
    select(-5, -7);
    QCOMPARE(m_box->SelStart(), 0);
    QCOMPARE(m_box->SelLength(), 0);
    select(2, 3);
    m_box->setSelStart(4);
    QCOMPARE(m_box->SelLength(), 0);
}

void tst_RichTextBox::selTextReplacesTheSelection()
{
    m_box->setTextRTF(poem);
    QSignalSpy changed(m_box, &QTextEdit::textChanged);
    selectText(u"Roses"_s);
    m_box->setSelText(u"Tulips"_s);
    QVERIFY(m_box->Text().startsWith(u"Tulips are"_s));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_box->SelStart(), 6);
    QCOMPARE(m_box->SelLength(), 0);
    m_box->setSelText(u"\t"_s);
    QVERIFY(m_box->Text().startsWith(u"Tulips\t are"_s));
    select(0, 8);
    m_box->setSelText(QString());
    QVERIFY(m_box->Text().startsWith(u"are"_s));
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_box->Text(), poemText);
}

void tst_RichTextBox::selTextKeepsLineBreaksApart()
{
    m_box->setTextRTF(poem);
    select(0, static_cast<int>(poemText.size()));
    m_box->setSelText(m_box->SelText().toUpper());
    QCOMPARE(m_box->Text(), poemText.toUpper());
    QCOMPARE(m_box->document()->blockCount(), 3);
    m_box->setSelText(u"\r!\r"_s);
    QCOMPARE(m_box->document()->blockCount(), 5);
}

void tst_RichTextBox::selTextLooksLikeWhatItReplaces()
{
    m_box->setTextRTF(poem);
    selectText(u"red"_s);
    m_box->setSelText(u"crimson"_s);
    selectText(u"crimson"_s);
    QCOMPARE(m_box->SelBold(), std::optional(true));
    m_box->setSelBold(false);
    select(0, 3);
    m_box->setSelItalic(true);
    select(0, 7);
    m_box->setSelText(u"new"_s);
    select(0, 3);
    QCOMPARE(m_box->SelItalic(), std::optional(true));
    // What replaces a picture is text all the same.
    select(0, 0);
    m_box->textCursor().insertImage(QImage(4, 4, QImage::Format_RGB32));
    select(0, 1);
    m_box->setSelText(u"x"_s);
    QVERIFY(m_box->Text().startsWith(u"xnew"_s));
    select(0, 1);
    QVERIFY(!m_box->textCursor().charFormat().isImageFormat());
}

void tst_RichTextBox::selRtfReplacesTheSelection()
{
    m_box->setTextRTF(poem);
    selectText(u"red"_s);
    const QByteArray red = m_box->SelRTF();
    QVERIFY(rtf::isRtf(red));
    selectText(u"End"_s);
    m_box->setSelRTF(red);
    QVERIFY(m_box->Text().endsWith(u"\r\nred"_s));
    QCOMPARE(m_box->SelLength(), 0);
    QCOMPARE(m_box->SelStart(), static_cast<int>(m_box->Text().size()));
    select(static_cast<int>(m_box->Text().size()) - 3, 3);
    QCOMPARE(m_box->SelBold(), std::optional(true));
    m_box->setSelRTF("no rtf");
    QVERIFY(m_box->Text().endsWith(u"\r\nno rtf"_s));
    select(3, 0);
    QCOMPARE(m_box->SelRTF(), QByteArray());
}

void tst_RichTextBox::characterFormats_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("bold") << 0;
    QTest::newRow("italic") << 1;
    QTest::newRow("underline") << 2;
    QTest::newRow("strike-through") << 3;
}

void tst_RichTextBox::characterFormats()
{
    QFETCH(int, format);
    using Get = std::optional<bool> (TextSelection::*)() const;
    using Set = void (TextSelection::*)(bool);
    constexpr Get gets[] = {&TextSelection::SelBold, &TextSelection::SelItalic, &TextSelection::SelUnderline,
                            &TextSelection::SelStrikeThru};
    constexpr Set sets[] = {&TextSelection::setSelBold, &TextSelection::setSelItalic, &TextSelection::setSelUnderline,
                            &TextSelection::setSelStrikeThru};
    const Get get = gets[format];
    const Set set = sets[format];
    TextSelection &selection = *m_box;
    m_box->setTextRTF("{\\rtf1 one two\\par three}");
    QSignalSpy changed(m_box, &QTextEdit::textChanged);
    select(0, 12);
    QCOMPARE((selection.*get)(), std::optional(false));
    select(4, 3);
    (selection.*set)(true);
    QCOMPARE(changed.size(), 1);
    QCOMPARE((selection.*get)(), std::optional(true));
    select(0, 12);
    QCOMPARE((selection.*get)(), std::nullopt);
    for (int i = 0; i < 4; ++i) {
        select(i, 0);
        QCOMPARE((selection.*get)(), std::optional(false));
    }
    m_box->setTextRTF(m_box->TextRTF());
    select(4, 3);
    QCOMPARE((selection.*get)(), std::optional(true));
    select(0, static_cast<int>(m_box->Text().size()));
    (selection.*set)(true);
    QCOMPARE((selection.*get)(), std::optional(true));
    (selection.*set)(false);
    QCOMPARE((selection.*get)(), std::optional(false));
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE((selection.*get)(), std::optional(true));
    // The base font's own style counts where the text says nothing.
    QFont font = m_box->Font();
    font.setBold(true);
    font.setItalic(true);
    font.setUnderline(true);
    font.setStrikeOut(true);
    m_box->setFont(font);
    m_box->setTextRTF("plain");
    select(0, 5);
    QCOMPARE((selection.*get)(), std::optional(true));
    (selection.*set)(false);
    QCOMPARE((selection.*get)(), std::optional(false));
}

void tst_RichTextBox::underliningAnewIsPlain()
{
    m_box->setTextRTF("{\\rtf1 {\\uldb double}}");
    select(0, 6);
    QVERIFY(m_box->TextRTF().contains("\\uldb"));
    m_box->setSelUnderline(false);
    m_box->setSelUnderline(true);
    QVERIFY(!m_box->TextRTF().contains("\\uldb"));
    QVERIFY(m_box->TextRTF().contains("\\ul"));
}

void tst_RichTextBox::aFormatAtTheCaretIsThatOfTheNextLetter()
{
    QSignalSpy changed(m_box, &QTextEdit::textChanged);
    QSignalSpy moved(m_box, &RichTextBox::selectionMoved);
    m_box->setSelBold(true);
    m_box->setSelFontSize(20);
    QCOMPARE(changed.size(), 0);
    QVERIFY(moved.size() > 0);
    QCOMPARE(m_box->SelBold(), std::optional(true));
    QCOMPARE(m_box->SelFontSize(), std::optional(20.0));
    type(u"ab"_s);
    select(0, 2);
    QCOMPARE(m_box->SelBold(), std::optional(true));
    QCOMPARE(m_box->SelFontSize(), std::optional(20.0));
}

void tst_RichTextBox::aFormatSetInsideAWordIsRead()
{
    m_box->setTextRTF("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 one word}");
    select(6, 0);
    for (const bool on : {true, false}) {
        m_box->setSelBold(on);
        m_box->setSelItalic(on);
        m_box->setSelUnderline(on);
        m_box->setSelStrikeThru(on);
        QCOMPARE(m_box->SelBold(), std::optional(on));
        QCOMPARE(m_box->SelItalic(), std::optional(on));
        QCOMPARE(m_box->SelUnderline(), std::optional(on));
        QCOMPARE(m_box->SelStrikeThru(), std::optional(on));
    }
    m_box->setSelFontName(u"DejaVu Serif"_s);
    m_box->setSelFontSize(14);
    m_box->setSelColor(QColor(200, 10, 20));
    QCOMPARE(m_box->SelFontName(), std::optional(u"DejaVu Serif"_s));
    QCOMPARE(m_box->SelFontSize(), std::optional(14.0));
    QCOMPARE(m_box->SelColor(), std::optional(QColor(200, 10, 20)));
    // It is gone with the caret's next step.
    press(Qt::Key_Left);
    QCOMPARE(m_box->SelFontSize(), std::optional(10.0));
    QCOMPARE(m_box->SelColor(), std::optional(QColor()));
}

void tst_RichTextBox::fontNameAndSize()
{
    m_box->setFont(QFont(u"DejaVu Serif"_s, 11));
    m_box->setTextRTF("one two three");
    select(0, 13);
    QCOMPARE(m_box->SelFontName(), std::optional(u"DejaVu Serif"_s));
    QCOMPARE(m_box->SelFontSize(), std::optional(11.0));
    select(4, 3);
    m_box->setSelFontName(u"Courier, \"New\""_s);
    m_box->setSelFontSize(12.5);
    QCOMPARE(m_box->SelFontName(), std::optional(u"Courier, \"New\""_s));
    QCOMPARE(m_box->SelFontSize(), std::optional(12.5));
    select(0, 13);
    QCOMPARE(m_box->SelFontName(), std::nullopt);
    QCOMPARE(m_box->SelFontSize(), std::nullopt);
    // Sizes are kept in half points.
    m_box->setSelFontSize(10.3);
    QCOMPARE(m_box->SelFontSize(), std::optional(10.5));
    m_box->setSelFontSize(0);
    QCOMPARE(m_box->SelFontSize(), std::optional(1.0));
    m_box->setSelFontSize(1e9);
    QCOMPARE(m_box->SelFontSize(), std::optional(1638.0));
    m_box->setSelFontSize(14);
    m_box->setSelFontName(u"Arial"_s);
    m_box->setTextRTF(m_box->TextRTF());
    select(0, 13);
    QCOMPARE(m_box->SelFontName(), std::optional(u"Arial"_s));
    QCOMPARE(m_box->SelFontSize(), std::optional(14.0));
}

void tst_RichTextBox::sizesInPixelsAndStepsGiveWay()
{
    m_box->setFont(QFont(u"DejaVu Sans"_s, 10));
    auto *data = new QMimeData;
    data->setHtml(u"<span style='font-size:16px'>pixels</span> <big>big</big>"_s);
    paste(data);
    selectText(u"pixels"_s);
    QCOMPARE(m_box->SelFontSize(), std::optional(12.0));
    selectText(u"big"_s);
    QCOMPARE(m_box->SelFontSize(), std::optional(12.0));
    press(Qt::Key_A, Qt::ControlModifier);
    m_box->setSelFontSize(9);
    QCOMPARE(m_box->SelFontSize(), std::optional(9.0));
    m_box->setTextRTF(m_box->TextRTF());
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_box->SelFontSize(), std::optional(9.0));
}

void tst_RichTextBox::colours()
{
    m_box->setTextRTF("one two");
    select(0, 7);
    QCOMPARE(m_box->SelColor(), std::optional(QColor()));
    select(0, 3);
    m_box->setSelColor(QColor(200, 10, 20));
    QCOMPARE(m_box->SelColor(), std::optional(QColor(200, 10, 20)));
    select(0, 7);
    QCOMPARE(m_box->SelColor(), std::nullopt);
    m_box->setTextRTF(m_box->TextRTF());
    select(0, 3);
    QCOMPARE(m_box->SelColor(), std::optional(QColor(200, 10, 20)));
    select(1, 5);
    m_box->setSelColor(QColor());
    QCOMPARE(m_box->SelColor(), std::optional(QColor()));
    select(0, 1);
    QCOMPARE(m_box->SelColor(), std::optional(QColor(200, 10, 20)));
}

void tst_RichTextBox::bullets()
{
    m_box->setTextRTF("one\ntwo\nthree\nfour");
    select(0, 4);
    QCOMPARE(m_box->SelBullet(), std::optional(false));
    select(5, 8);
    QSignalSpy changed(m_box, &QTextEdit::textChanged);
    m_box->setSelBullet(true);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_box->SelBullet(), std::optional(true));
    QCOMPARE(m_box->Text(), u"one\r\ntwo\r\nthree\r\nfour"_s);
    select(0, 8);
    QCOMPARE(m_box->SelBullet(), std::nullopt);
    m_box->setTextRTF(m_box->TextRTF());
    QCOMPARE(m_box->Text(), u"one\r\ntwo\r\nthree\r\nfour"_s);
    select(5, 8);
    QCOMPARE(m_box->SelBullet(), std::optional(true));
    select(0, static_cast<int>(m_box->Text().size()));
    m_box->setSelBullet(false);
    QCOMPARE(m_box->SelBullet(), std::optional(false));
    QCOMPARE(m_box->SelIndent(), std::optional(0));
    press(Qt::Key_Z, Qt::ControlModifier);
    select(5, 8);
    QCOMPARE(m_box->SelBullet(), std::optional(true));
    m_box->setTextRTF("{\\rtf1 plain}");
    auto *data = new QMimeData;
    data->setHtml(u"<ol><li>one</li><li>two</li></ol>"_s);
    paste(data);
    selectText(u"two"_s);
    QVERIFY(m_box->textCursor().currentList());
    QCOMPARE(m_box->SelBullet(), std::optional(false));
    m_box->setSelBullet(true);
    QCOMPARE(m_box->SelBullet(), std::optional(true));
}

void tst_RichTextBox::bulletsOnALongText()
{
    m_box->setTextRTF("{\\rtf1 " + QByteArray("A paragraph of a long text.\\par ").repeated(10'000) + "}");
    const QByteArray before = m_box->TextRTF();
    select(0, static_cast<int>(m_box->Text().size()));
    QElapsedTimer timer;
    timer.start();
    m_box->setSelBullet(true);
    QCOMPARE(m_box->SelBullet(), std::optional(true));
    const QByteArray after = m_box->TextRTF();
    m_box->undo();
    QCOMPARE(m_box->TextRTF(), before);
    m_box->redo();
    QCOMPARE(m_box->TextRTF(), after);
    m_box->setTextRTF(after);
    QCOMPARE(m_box->TextRTF(), after);
    select(0, static_cast<int>(m_box->Text().size()));
    QCOMPARE(m_box->SelBullet(), std::optional(true));
    // Some 0.5 seconds. In one list it would take 15.
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

void tst_RichTextBox::indents()
{
    m_box->setTextRTF("one\ntwo\nthree");
    select(0, 3);
    QCOMPARE(m_box->SelIndent(), std::optional(0));
    m_box->setSelIndent(300);
    QCOMPARE(m_box->SelIndent(), std::optional(300));
    select(0, 8);
    QCOMPARE(m_box->SelIndent(), std::nullopt);
    m_box->setTextRTF(m_box->TextRTF());
    select(0, 0);
    QCOMPARE(m_box->SelIndent(), std::optional(300));
    select(0, static_cast<int>(m_box->Text().size()));
    m_box->setSelIndent(-20);
    QCOMPARE(m_box->SelIndent(), std::optional(0));
    for (const int twips : {1, 7, 100, 200, 1439, 10'000}) {
        m_box->setSelIndent(twips);
        QCOMPARE(m_box->SelIndent(), std::optional(twips));
    }
    m_box->setTextRTF("{\\rtf1\\pard\\li720 text}");
    QCOMPARE(m_box->SelIndent(), std::optional(720));
}

void tst_RichTextBox::aBulletDoesNotMoveTheIndent()
{
    m_box->setTextRTF("{\\rtf1\\pard\\li300 text}");
    m_box->setSelBullet(true);
    QCOMPARE(m_box->SelIndent(), std::optional(300));
    m_box->setSelIndent(600);
    QCOMPARE(m_box->SelIndent(), std::optional(600));
    QCOMPARE(m_box->SelBullet(), std::optional(true));
    m_box->setTextRTF(m_box->TextRTF());
    QCOMPARE(m_box->SelIndent(), std::optional(600));
    QCOMPARE(m_box->SelBullet(), std::optional(true));
    m_box->setSelIndent(0);
    // The bullet itself stays within the pane.
    QVERIFY(m_box->textCursor().blockFormat().leftMargin() >= 16);
    m_box->setSelBullet(false);
    QCOMPARE(m_box->textCursor().blockFormat().leftMargin(), 0.0);
}

void tst_RichTextBox::alignments()
{
    m_box->setTextRTF("one\ntwo\nthree");
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Left));
    for (const TextPane::Alignment alignment : {TextPane::Right, TextPane::Centre}) {
        select(5, 0);
        m_box->setSelAlignment(alignment);
        QCOMPARE(m_box->SelAlignment(), std::optional(alignment));
        select(0, 10);
        QCOMPARE(m_box->SelAlignment(), std::nullopt);
        m_box->setTextRTF(m_box->TextRTF());
        select(5, 0);
        QCOMPARE(m_box->SelAlignment(), std::optional(alignment));
    }
    select(0, static_cast<int>(m_box->Text().size()));
    m_box->setSelAlignment(TextPane::Left);
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Left));
    m_box->setTextRTF("{\\rtf1\\pard\\qj text}");
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Left));
    // Sides are those of the page, also where the text runs from the right.
    for (const TextPane::Alignment alignment : {TextPane::Right, TextPane::Left, TextPane::Centre}) {
        m_box->setTextRTF("{\\rtf1\\pard\\rtlpar\\ql text}");
        m_box->setSelAlignment(alignment);
        m_box->setTextRTF(m_box->TextRTF());
        QCOMPARE(m_box->SelAlignment(), std::optional(alignment));
    }
}

void tst_RichTextBox::aParagraphTouchedOnlyAtItsBeginningIsLeftAlone()
{
    m_box->setTextRTF("one\ntwo");
    select(0, 5);
    m_box->setSelAlignment(TextPane::Right);
    m_box->setSelIndent(300);
    m_box->setSelBullet(true);
    select(5, 0);
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Left));
    QCOMPARE(m_box->SelIndent(), std::optional(0));
    QCOMPARE(m_box->SelBullet(), std::optional(false));
    select(0, 5);
    QCOMPARE(m_box->SelBullet(), std::optional(true));
}

void tst_RichTextBox::theBaseFontIsThatOfPlainText()
{
    QFont font(u"DejaVu Sans"_s, 23);
    m_box->setFont(font);
    QCOMPARE(m_box->Font(), font);
    m_box->setTextRTF("plain");
    QCOMPARE(m_box->document()->defaultFont().pointSize(), 23);
    m_box->setTextRTF(m_box->TextRTF());
    m_box->setFont(QFont(u"DejaVu Sans"_s, 9));
    select(0, 5);
    QCOMPARE(m_box->SelFontSize(), std::optional(23.0));
    // Rich text that names no font has that family, and the standard size of rich text.
    m_box->setFont(QFont(u"DejaVu Serif"_s, 9));
    m_box->setTextRTF("{\\rtf1 rich}");
    select(0, 4);
    QCOMPARE(m_box->SelFontName(), std::optional(u"DejaVu Serif"_s));
    QFont applicationFont = QApplication::font();
    applicationFont.setPointSize(17);
    applicationFont.setItalic(true);
    m_window->setFont(applicationFont);
    QCOMPARE(m_box->document()->defaultFont().pointSize(), 9);
    QVERIFY(!m_box->document()->defaultFont().italic());
    QCOMPARE(m_box->Font().pointSize(), 9);
}

void tst_RichTextBox::aLockedTextIsReadAndCopied()
{
    m_box->setTextRTF(poem);
    QVERIFY(!m_box->Locked());
    m_box->setLocked(true);
    QVERIFY(m_box->Locked());
    QSignalSpy changed(m_box, &QTextEdit::textChanged);
    type(u"x"_s);
    press(Qt::Key_Delete);
    press(Qt::Key_Backspace);
    press(Qt::Key_Return);
    press(Qt::Key_Y, Qt::ControlModifier);
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(m_box->SelText(), u"Ro"_s);
    press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"Ro"_s);
    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_V, Qt::ControlModifier);
    QTest::mouseDClick(m_box->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(12, 12));
    QCOMPARE(m_box->SelText(), u"Roses"_s);
    QCOMPARE(m_box->Text(), poemText);
    QCOMPARE(changed.size(), 0);
    m_box->setLocked(false);
    type(u"x"_s);
    QCOMPARE(changed.size(), 1);
}

void tst_RichTextBox::aLockedTextShowsItsCaret()
{
    m_box->setLocked(true);
    const QImage withCaret = m_box->viewport()->grab().toImage();
    m_other->setFocus();
    QVERIFY(m_box->viewport()->grab().toImage() != withCaret);
    m_box->setFocus();
    QCOMPARE(m_box->viewport()->grab().toImage(), withCaret);
}

void tst_RichTextBox::aLockedTextCanBeChangedByProgram()
{
    m_box->setLocked(true);
    m_box->setTextRTF(poem);
    select(0, 5);
    m_box->setSelText(u"Tulips"_s);
    select(0, 6);
    m_box->setSelBold(true);
    QCOMPARE(m_box->SelBold(), std::optional(true));
    QVERIFY(m_box->Locked());
}

void tst_RichTextBox::findFindsFromAnOffset()
{
    m_box->setTextRTF(poem);
    QCOMPARE(findIn(*m_box, u"are"_s, 0, -1, 0), 6);
    QCOMPARE(findIn(*m_box, u"are"_s, 6, -1, 0), 6);
    QCOMPARE(findIn(*m_box, u"are"_s, 7, -1, 0), static_cast<int>(poemText.indexOf(u"are"_s, 7)));
    QCOMPARE(findIn(*m_box, u"are"_s, 0, 9, 0), 6);
    QCOMPARE(findIn(*m_box, u"are"_s, 0, 8, 0), -1);
    QCOMPARE(findIn(*m_box, u"are"_s, -3, 100'000, 0), 6);
    QCOMPARE(findIn(*m_box, u"are"_s, 100'000, -1, 0), -1);
    QCOMPARE(findIn(*m_box, u"tulip"_s, 0, -1, 0), -1);
    QCOMPARE(findIn(*m_box, QString(), 0, -1, 0), -1);
    QCOMPARE(findIn(*m_box, u"End"_s, 0, -1, 0), static_cast<int>(poemText.size()) - 3);
    QCOMPARE(findIn(*m_box, u",\r\nV"_s, 0, -1, 0), static_cast<int>(poemText.indexOf(u',')));
    // What is found is what is there now.
    select(0, 5);
    m_box->setSelText(u"Violets"_s);
    QCOMPARE(findIn(*m_box, u"Violets"_s, 0, -1, 0), 0);
}

void tst_RichTextBox::findHonoursCaseAndWords()
{
    m_box->setTextRTF(QString(u"cats Cat cat2 über cat_x Über𐐀 a𐐀 𐐀z"_s).toUtf8());
    const QString text = m_box->Text();
    const auto find = [this](const QString &what, int options) { return findIn(*m_box, what, 0, -1, options); };
    QCOMPARE(find(u"cat"_s, 0), 0);
    QCOMPARE(find(u"CAT"_s, TextFind::MatchCase), -1);
    QCOMPARE(find(u"Cat"_s, TextFind::MatchCase), 5);
    QCOMPARE(find(u"cat"_s, TextFind::WholeWord), 5);
    QCOMPARE(find(u"cat"_s, TextFind::WholeWord | TextFind::MatchCase), static_cast<int>(text.indexOf(u"cat_"_s)));
    QCOMPARE(find(u"ÜBER"_s, TextFind::WholeWord), static_cast<int>(text.indexOf(u"über"_s)));
    // A letter beyond the first plane is one, too.
    QCOMPARE(find(u"Über"_s, TextFind::WholeWord | TextFind::MatchCase), -1);
    QCOMPARE(find(u"a"_s, TextFind::WholeWord), -1);
    QCOMPARE(find(u"z"_s, TextFind::WholeWord), -1);
    QCOMPARE(find(u"ats"_s, TextFind::WholeWord), -1);
}

void tst_RichTextBox::findSelectsUnlessAskedNotTo()
{
    m_box->setTextRTF(poem);
    QSignalSpy changed(m_box, &QTextEdit::textChanged);
    QCOMPARE(findIn(*m_box, u"blue"_s, 0, -1, TextFind::NoHighlight), static_cast<int>(poemText.indexOf(u"blue"_s)));
    QCOMPARE(m_box->SelLength(), 0);
    findIn(*m_box, u"BLUE\nand"_s, 0, -1, 0);
    QCOMPARE(m_box->SelText(), u"blue\nand"_s);
    findIn(*m_box, u"nowhere"_s, 0, -1, 0);
    QCOMPARE(m_box->SelText(), u"blue\nand"_s);
    QCOMPARE(changed.size(), 0);
}

void tst_RichTextBox::copyOffersThreeKinds()
{
    m_box->setTextRTF(poem);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    const QMimeData *data = QApplication::clipboard()->mimeData();
    QVERIFY(rtf::isRtf(data->data(u"text/rtf"_s)));
    QVERIFY(data->html().contains(u"Roses"_s));
    QCOMPARE(data->text(), QString(poemText).replace(u"\r\n"_s, u"\n"_s));
}

void tst_RichTextBox::pastePrefersRichText()
{
    for (const QString &type : {u"text/rtf"_s, u"application/rtf"_s, u"text/richtext"_s}) {
        m_box->setTextRTF(QByteArray());
        auto *data = new QMimeData;
        data->setText(u"plain"_s);
        data->setHtml(u"<b>html</b>"_s);
        data->setData(type, "{\\rtf1 a {\\b rich} text}");
        paste(data);
        QCOMPARE(m_box->Text(), u"a rich text"_s);
        selectText(u"rich"_s);
        QCOMPARE(m_box->SelBold(), std::optional(true));
    }
    // Another format of that name is passed over.
    m_box->setTextRTF(QByteArray());
    auto *data = new QMimeData;
    data->setText(u"plain"_s);
    data->setData(u"text/richtext"_s, "<bold>enriched</bold>");
    paste(data);
    QCOMPARE(m_box->Text(), u"plain"_s);
}

void tst_RichTextBox::pasteTakesHtmlBeforeText()
{
    auto *data = new QMimeData;
    data->setText(u"plain"_s);
    data->setHtml(u"<html><body><!--StartFragment--><p>some <b>html</b></p><!--EndFragment--></body></html>"_s);
    paste(data);
    QCOMPARE(m_box->Text().trimmed(), u"some html"_s);
    selectText(u"html"_s);
    QCOMPARE(m_box->SelBold(), std::optional(true));
}

void tst_RichTextBox::pastedTextBecomesParagraphs()
{
    auto *data = new QMimeData;
    data->setText(u"one\ntwo\r\nthree"_s);
    paste(data);
    QCOMPARE(m_box->Text(), u"one\r\ntwo\r\nthree"_s);
    QCOMPARE(m_box->document()->blockCount(), 3);
}

// Each line is named, so that the first one that differs tells its character.
void tst_RichTextBox::everyPastedCharacterIsKeptOrInSight()
{
    QString pasted;
    QString expected;
    for (uint unit = 0; unit <= 0xFFFF; ++unit) {
        const QString name = QString::number(unit, 16);
        pasted += name + QChar(unit) + u".\n"_s;
        const bool isLineBreak = unit == '\v' || unit == QChar::LineSeparator;
        const bool isParagraphBreak = unit == '\n' || unit == '\r' || unit == '\f' || unit == QChar::ParagraphSeparator;
        const bool isNoCharacter = QChar::isSurrogate(unit) || unit == 0xFDD0 || unit == 0xFDD1 || unit >= 0xFFFE;
        const bool isControl = unit < 0x20 && unit != '\t';
        expected += name +
                    (isLineBreak                                                  ? u"\n"_s
                     : isParagraphBreak                                           ? u"\r\n"_s
                     : isControl                                                  ? QString(QChar(0x2400 + unit))
                     : isNoCharacter || unit == QChar::ObjectReplacementCharacter ? u"\uFFFD"_s
                                                                                  : QString(QChar(unit))) +
                    u".\r\n"_s;
    }
    auto *data = new QMimeData;
    data->setText(pasted);
    QApplication::clipboard()->setMimeData(data);
    m_box->setTextRTF({});
    m_box->paste();
    const QStringList lines = expected.split(u"\r\n"_s);
    const auto compare = [&lines](const QString &text) {
        const QStringList found = text.split(u"\r\n"_s);
        for (qsizetype i = 0; i < lines.size(); ++i)
            QCOMPARE(found.value(i), lines[i]);
        QCOMPARE(found.size(), lines.size());
    };
    compare(m_box->Text());
    m_box->setTextRTF(QByteArray(m_box->TextRTF()));
    compare(m_box->Text());
}

void tst_RichTextBox::wordsBesideAPicturesCharacterAreKept_data()
{
    QTest::addColumn<QString>("type");
    QTest::newRow("text") << u"text/plain"_s;
    QTest::newRow("HTML") << u"text/html"_s;
    QTest::newRow("composed") << QString();
}

void tst_RichTextBox::wordsBesideAPicturesCharacterAreKept()
{
    QFETCH(const QString, type);
    const QString words = u"the picture \uFFFC shows my house"_s;
    m_box->setTextRTF({});
    if (type.isEmpty()) {
        QInputMethodEvent composed;
        composed.setCommitString(words);
        QApplication::sendEvent(m_box, &composed);
    } else {
        auto *data = new QMimeData;
        data->setData(type, words.toUtf8());
        QApplication::clipboard()->setMimeData(data);
        m_box->paste();
    }
    m_box->setTextRTF(QByteArray(m_box->TextRTF()));
    QCOMPARE(m_box->Text(), u"the picture \uFFFD shows my house"_s);
}

void tst_RichTextBox::whatAPageShowsIsShownAgain()
{
    auto *data = new QMimeData;
    data->setHtml(u"<p>above</p><hr><table><tr><td>a</td><td>b</td></tr></table><p>below</p>"_s);
    QApplication::clipboard()->setMimeData(data);
    m_box->setTextRTF({});
    m_box->paste();
    const auto rules = [this] {
        int count = 0;
        for (QTextBlock block = m_box->document()->begin(); block.isValid(); block = block.next())
            count += block.blockFormat().hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth);
        return count;
    };
    const auto tableWidth = [this] {
        const QTextFrame::iterator end = m_box->document()->rootFrame()->end();
        for (QTextFrame::iterator it = m_box->document()->rootFrame()->begin(); it != end; ++it) {
            if (QTextFrame *frame = it.currentFrame())
                return m_box->document()->documentLayout()->frameBoundingRect(frame).width();
        }
        return 0.0;
    };
    QCOMPARE(rules(), 1);
    const qreal width = tableWidth();
    QVERIFY(width > 0 && width < 100);
    const QString text = m_box->Text();
    m_box->setTextRTF(QByteArray(m_box->TextRTF()));
    QCOMPARE(m_box->Text(), text);
    QCOMPARE(rules(), 1);
    QVERIFY2(qAbs(tableWidth() - width) < 25, qPrintable(QString::number(tableWidth())));
}

void tst_RichTextBox::cutAndUndo()
{
    m_box->setTextRTF(poem);
    const QByteArray before = m_box->TextRTF();
    selectText(u"red"_s);
    press(Qt::Key_X, Qt::ControlModifier);
    QVERIFY(!m_box->Text().contains(u"red"_s));
    QVERIFY(QApplication::clipboard()->mimeData()->hasFormat(u"text/rtf"_s));
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_box->TextRTF(), before);
    selectText(u"red"_s);
    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_box->TextRTF(), before);
}

void tst_RichTextBox::pastingIsOneStepOfUndo()
{
    m_box->setTextRTF(poem);
    select(3, 5);
    auto *rich = new QMimeData;
    rich->setData(u"text/rtf"_s, "{\\rtf1 one {\\b two}\\par three}");
    paste(rich);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_box->Text(), poemText);
    select(3, 5);
    auto *html = new QMimeData;
    html->setHtml(u"<p>one <b>two</b><img src='a.png'>x</p><p>three</p>"_s);
    paste(html);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_box->Text(), poemText);
}

void tst_RichTextBox::nothingPastedReadsAFile()
{
    const QTemporaryDir folder;
    const QString picture = folder.filePath(u"secret.png"_s);
    QImage image(37, 41, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(picture));
    const QString style = folder.filePath(u"style.css"_s);
    QFile file(style);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("p { color: #ff0000; font-weight: bold }");
    file.close();
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path()));
    auto *data = new QMimeData;
    data->setHtml(u"<html><head><link rel='stylesheet' href='%2'><style>@import url(%2); @import 'style.css';</style>"
                  "</head><body background='%1'><p>a<img src='%1'>b<img src='file://%1'>c<img src='secret.png'>d</p>"
                  "<table background='file://%1'><tr><td background='%1'>e</td></tr></table></body></html>"_s.arg(
                      picture, style));
    paste(data);
    const QString text = m_box->Text();
    const QImage shown = m_box->grab().toImage();
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(text.contains(u"abcd"_s));
    int red = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            red += shown.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
    }
    QCOMPARE(red, 0);
    selectText(u"abcd"_s);
    QCOMPARE(m_box->SelBold(), std::optional(false));
    for (const QString &name : {picture, u"file://"_s + picture, u"https://example.org/a.png"_s, u":/quillery"_s}) {
        QVERIFY(m_box->loadResource(QTextDocument::ImageResource, QUrl(name)).isNull());
        QVERIFY(m_box->document()->resource(QTextDocument::ImageResource, QUrl(name)).isNull());
    }
}

void tst_RichTextBox::filesDroppedAreLeftToTheWindow()
{
    m_box->setTextRTF(poem);
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(u"/a.qly"_s)});
    files.setText(u"/a.qly"_s);
    QDragEnterEvent enter({20, 20}, Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_box->viewport(), &enter);
    QCOMPARE(m_window->entered, 1);
    QDropEvent drop({20, 20}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_box->viewport(), &drop);
    QVERIFY(!drop.isAccepted());
    QCOMPARE(m_box->Text(), poemText);
}

void tst_RichTextBox::textCanBeDropped()
{
    QMimeData text;
    text.setText(u"dropped"_s);
    text.setData(u"text/rtf"_s, "{\\rtf1 {\\b rich}}");
    QDragEnterEvent enter({20, 20}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_box->viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(m_window->entered, 0);
    QDragMoveEvent move({20, 20}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_box->viewport(), &move);
    QVERIFY(move.isAccepted());
    QDropEvent drop({20, 20}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_box->viewport(), &drop);
    QCOMPARE(m_box->Text(), u"rich"_s);
}

void tst_RichTextBox::tabLeavesThePane()
{
    press(Qt::Key_Tab);
    QVERIFY(m_other->hasFocus());
    QCOMPARE(m_box->Text(), QString());
}

void tst_RichTextBox::controlTabTypesNothing()
{
    press(Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(m_box->Text(), QString());
}

void tst_RichTextBox::altLettersTypeNothing()
{
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Q, Qt::AltModifier, u"q"_s);
    QApplication::sendEvent(m_box, &key);
    QVERIFY(!key.isAccepted());
    QCOMPARE(m_box->Text(), QString());
}

void tst_RichTextBox::lineEditingKeysOfOtherProgramsDoNothing()
{
    m_box->setTextRTF(poem);
    for (const Qt::Key key : {Qt::Key_D, Qt::Key_E, Qt::Key_K, Qt::Key_U}) {
        press(key, Qt::ControlModifier);
        QCOMPARE(m_box->SelStart(), 0);
        QKeyEvent override(QEvent::ShortcutOverride, key, Qt::ControlModifier);
        override.ignore();
        QApplication::sendEvent(m_box, &override);
        QVERIFY(!override.isAccepted());
    }
    QCOMPARE(m_box->Text(), poemText);
}

void tst_RichTextBox::redoHasItsKey()
{
    type(u"a"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_box->Text(), QString());
    QKeyEvent override(QEvent::ShortcutOverride, Qt::Key_Y, Qt::ControlModifier);
    override.ignore();
    QApplication::sendEvent(m_box, &override);
    QVERIFY(override.isAccepted());
    press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(m_box->Text(), u"a"_s);
}

void tst_RichTextBox::theWheelDoesNotZoom()
{
    m_box->setTextRTF(QByteArray(5000, '\n'));
    m_box->setLocked(true);
    const QFont before = m_box->font();
    const auto roll = [this](Qt::KeyboardModifiers modifiers) {
        QWheelEvent wheel({20, 20}, m_box->mapToGlobal(QPointF(20, 20)), {}, {0, -120}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_box->viewport(), &wheel);
    };
    roll(Qt::ControlModifier);
    QCOMPARE(m_box->font(), before);
    QCOMPARE(m_box->document()->defaultFont(), m_box->Font());
    QCOMPARE(m_box->verticalScrollBar()->value(), 0);
    roll(Qt::NoModifier);
    QVERIFY(m_box->verticalScrollBar()->value() > 0);
}

void tst_RichTextBox::selectionMovedFollowsTheCaret()
{
    QSignalSpy moved(m_box, &RichTextBox::selectionMoved);
    m_box->setTextRTF(poem);
    QCOMPARE(moved.size(), 1);
    press(Qt::Key_Right);
    QCOMPARE(moved.size(), 2);
    press(Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(moved.size(), 3);
    // A change of format under an unmoved selection tells, too.
    selectText(u"red"_s);
    moved.clear();
    m_box->setSelItalic(true);
    QCOMPARE(moved.size(), 1);
    m_box->setSelAlignment(TextPane::Centre);
    QCOMPARE(moved.size(), 2);
}

void tst_RichTextBox::aParagraphWithEmojiKeepsItsGlyphsWhileItIsTypedInto()
{
    const auto kept = [this] {
        QList<bool> paragraphs;
        for (QTextBlock block = m_box->document()->begin(); block.isValid(); block = block.next())
            paragraphs.append(block.layout()->cacheEnabled());
        return paragraphs;
    };
    const QByteArray emoji("\\u-10178?\\u-8704?");
    m_box->setTextRTF("{\\rtf1 words\\par a" + emoji + "b\\par c" + emoji + "}");
    QCOMPARE(kept(), QList<bool>({false, false, false}));
    press(Qt::Key_Down);
    QCOMPARE(kept(), QList<bool>({false, true, false}));
    type(u"x"_s);
    QCOMPARE(kept(), QList<bool>({false, true, false}));
    press(Qt::Key_Return);
    QCOMPARE(kept(), QList<bool>({false, false, true, false}));
    press(Qt::Key_Down);
    QCOMPARE(kept(), QList<bool>({false, false, false, true}));
    press(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(kept(), QList<bool>({false, false, false, false}));
    QTextCursor(m_box->document()).insertText(u"\U0001F469"_s);
    QCOMPARE(kept(), QList<bool>({true, false, false, false}));
    // A text that is shown instead.
    const QTextDocument *before = m_box->document();
    m_box->setTextRTF("{\\rtf1 words}");
    QVERIFY(m_box->document() != before);
    QCOMPARE(kept(), QList<bool>({false}));
}

void tst_RichTextBox::aHiddenPaneKeepsTheFocus()
{
    QVERIFY(m_box->PaneVisible());
    m_box->setPaneVisible(false);
    QVERIFY(!m_box->PaneVisible());
    QVERIFY(m_box->hasFocus());
    m_box->setTextRTF(poem);
    m_box->setPaneVisible(true);
    QVERIFY(m_box->hasFocus());
    QSignalSpy focused(m_box, &RichTextBox::gotFocus);
    m_other->setFocus();
    m_box->setFocus();
    QCOMPARE(focused.size(), 1);
}

void tst_RichTextBox::coloursFollowThePalette()
{
    QPalette dark = m_box->palette();
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    dark.setColor(QPalette::Text, QColor(0, 250, 0));
    m_window->setPalette(dark);
    m_box->setTextRTF("{\\rtf1\\fs96 MMMM}");
    const QImage shown = m_box->viewport()->grab().toImage();
    QCOMPARE(shown.pixelColor(shown.width() - 5, shown.height() - 5), QColor(20, 20, 20));
    bool green = false;
    for (int x = 0; x < shown.width() && !green; ++x) {
        for (int y = 0; y < 80 && !green; ++y)
            green = shown.pixelColor(x, y) == QColor(0, 250, 0);
    }
    QVERIFY(green);
}

void tst_RichTextBox::largeTexts()
{
    QByteArray rtf = "{\\rtf1";
    for (int paragraph = 0; paragraph < 10'000; ++paragraph)
        rtf +=
            "Paragraph " + QByteArray::number(paragraph) + " with {\\b some} text that {\\i is} not too short.\\par ";
    rtf += "}";
    m_box->setTextRTF(rtf);
    const QString text = m_box->Text();
    QVERIFY(text.size() > 400'000);
    const int at = static_cast<int>(text.indexOf(u"9000"_s));
    QCOMPARE(findIn(*m_box, u"9000"_s, 0, -1, 0), at);
    QCOMPARE(m_box->SelStart(), at);
    QCOMPARE(m_box->SelText(), u"9000"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_box->SelBold(), std::nullopt);
    m_box->setSelBold(true);
    QCOMPARE(m_box->SelBold(), std::optional(true));
}

QTEST_MAIN(tst_RichTextBox)
#include "tst_RichTextBox.moc"
