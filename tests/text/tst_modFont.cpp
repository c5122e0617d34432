// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modNodes.h"
#include "model/StoredText.h"
#include "platform/RichTextBox.h"
#include "rtf/Rtf.h"
#include "support/ErrorRecorder.h"
#include "support/FakeDocument.h"
#include "support/FakePorts.h"
#include "support/RawOutline.h"
#include "text/modEdit.h"
#include "text/modFont.h"

#include <QDirIterator>
#include <QFile>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>

#include <memory>
#include <random>

using namespace Qt::StringLiterals;

// A document with a real text pane.
struct OpenDocument {
    OpenDocument()
    {
        QObject::connect(&document.texts, &LiveTexts::changed, &box, [this] { ++timesChanged; });
    }

    Entry *add(Entry *parent, const QByteArray &body)
    {
        Entry *entry = rawOutline(document).tree.insert(Relationship::tvwChild, parent);
        rawOutline(document).tree.setStoredText(
            entry, NodeTextCompressIfRequired("{\\rtf1\\ansi{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 " + body + "}"));
        return entry;
    }

    QByteArray textOf(const Entry *entry) const
    {
        return NodeTextDecompressIfRequired(document.tree.storedText(entry));
    }

    RichTextBox box;
    FakeOutlinePane outline;
    FakeDocumentWindow window;
    Document document;
    DocumentView view{document, outline, box, window};
    int timesChanged = 0;
};

class OpenDocuments final : public DocumentWindows
{
public:
    Document &createDocument(std::unique_ptr<Outline>) override { qFatal("no document is made here"); }

    Document *activeDocument() const override { return active; }

    std::vector<Document *> documents() const override { return open; }

    void closeMainWindow() override {}

    void say(const QString &) override {}

    std::vector<Document *> open;
    Document *active = nullptr;
};

namespace
{

clsFont serif16()
{
    clsFont font;
    font.setName(u"DejaVu Serif"_s);
    font.setSize(16 * clsFont::point);
    font.setItalic(true);
    font.setUnderline(true);
    return font;
}

// A picture of one pixel that is shown 20 pixels wide and high.
const QByteArray picture("{\\*\\shppict{\\pict\\pngblip\\picwgoal300\\pichgoal300 "
                         "89504e470d0a1a0a0000000d49484452000000010000000108060000001f15c4890000000d4944415478"
                         "9c6360606060000000050001a5f645400000000049454e44ae426082}}");

FontAttributes everything()
{
    return {u"DejaVu Serif"_s, 16, true, true, false, true, QColor(Qt::red)};
}

} // namespace

class tst_modFont : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theDialogChangesADescription();
    void whatADescriptionLeavesOpenStaysOpen();
    void cancelledDialogsChangeNothing();
    void theOutlineTakesItsFont();
    void theDialogShowsOnlyWhatTheSelectionShares();
    void allIsWrittenToTheSelectionInOneStep();
    void whatWasNotChosenStaysAsItWas();
    void withoutASelectionTheWholeTextTakesTheFont_data();
    void withoutASelectionTheWholeTextTakesTheFont();
    void otherEntriesBeginAsTheyDid();
    void anEmptyTextBeginsWithTheFontChosen();
    void whatTheDialogDoesNotOfferStays();
    void theDialogShowsTheFontAtTheCaret();
    void theFontOfTheWholeTextCanBeUndone();
    void sizesAreSteppedByAPoint_data();
    void sizesAreSteppedByAPoint();
    void theSizeInsideAWordIsStepped();
    void severalSizesStay();
    void steppingASizeIsOneStepToUndo();
    void theDocumentFontGoesIntoEveryText();
    void theDocumentFontLeavesTheRest();
    void coloursLinksAndPicturesStayUnderTheDocumentFont_data();
    void coloursLinksAndPicturesStayUnderTheDocumentFont();
    void theDocumentFontIsWhatThePaneWouldMakeOfIt();
    void theDocumentFontCanBeUndoneInTheShownText();
    void theDocumentFontKeepsTheUndoHistory_data();
    void theDocumentFontKeepsTheUndoHistory();
    void emptyTextsTakeTheDocumentFont();
    void theDocumentFontOfAllDocuments();
    void whatWasJustTypedGetsTheDocumentFont();
    void withoutADocumentNothingHappens();

private:
    void select(int start, int length)
    {
        m_first->box.setSelStart(start);
        m_first->box.setSelLength(length);
    }

    FakeDialogs &dialogs() { return m_fake->dialogs; }

    std::unique_ptr<FakePorts> m_fake;
    std::unique_ptr<OpenDocument> m_first;
    std::unique_ptr<OpenDocument> m_second;
    std::unique_ptr<OpenDocuments> m_windows;
};

void tst_modFont::init()
{
    m_fake = std::make_unique<FakePorts>();
    m_windows = std::make_unique<OpenDocuments>();
    ports().windows = m_windows.get();
    m_first = std::make_unique<OpenDocument>();
    m_second = std::make_unique<OpenDocument>();
    m_windows->open = {&m_first->document, &m_second->document};
    m_windows->active = &m_first->document;
    for (OpenDocument *each : {m_first.get(), m_second.get()})
        each->window.onActivate = [this, each] { m_windows->active = &each->document; };
}

void tst_modFont::cleanup()
{
    m_first.reset();
    m_second.reset();
    m_windows.reset();
    m_fake.reset();
}

void tst_modFont::theDialogChangesADescription()
{
    clsFont font = serif16();
    dialogs().fonts = {FontAttributes{u"Arial"_s, 10.5, true, false, true, true, {}}};
    QVERIFY(modFont::ChangeFontDetails(font));
    QCOMPARE(dialogs().fontRequests.size(), std::size_t(1));
    const FontDialogRequest &asked = dialogs().fontRequests.front();
    QVERIFY(!asked.effects);
    QVERIFY((asked.initial == FontAttributes{u"DejaVu Serif"_s, 16, false, true, true, false, {}}));
    QCOMPARE(font.Name(), u"Arial"_s);
    QCOMPARE(font.Size(), 105000);
    QVERIFY(font.Bold() && !font.Italic() && font.Underline() && font.StrikeThrough());
}

void tst_modFont::whatADescriptionLeavesOpenStaysOpen()
{
    clsFont font;
    dialogs().fonts = {FontAttributes{{}, {}, true, false, false, false, {}}};
    QVERIFY(modFont::ChangeFontDetails(font));
    QVERIFY(!dialogs().fontRequests.front().initial.name);
    QVERIFY(!dialogs().fontRequests.front().initial.size);
    QVERIFY(font.Name().isEmpty() && font.Size() == 0 && font.Bold());
}

void tst_modFont::cancelledDialogsChangeNothing()
{
    const ErrorRecorder errors;
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, "one two");
    modNodes::NodeSelectFull(f.document, root);
    const QByteArray before = f.document.tree.storedText(root);
    clsFont font = serif16();
    const QFont shown = f.box.Font();
    dialogs().fonts = {std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt};
    QVERIFY(!modFont::ChangeFontDetails(font));
    QVERIFY(!modFont::ChangeTreeviewFont(font));
    QVERIFY(font == serif16());
    modEdit::EditCurrentFont();
    select(0, 3);
    modEdit::EditCurrentFont();
    modEdit::EditDocumentFont();
    QVERIFY(dialogs().fonts.empty());
    QCOMPARE(f.document.tree.storedText(root), before);
    QCOMPARE(f.box.Font(), shown);
    QVERIFY(!f.document.m_bDataChanged());
    QVERIFY(f.document.m_fntTextFont == clsFont());
    QVERIFY(f.box.PaneVisible());
    QVERIFY(!m_fake->pointer.hourglass);
    QVERIFY(errors.count() == 0);
}

void tst_modFont::theOutlineTakesItsFont()
{
    clsFont font;
    dialogs().fonts = {FontAttributes{u"DejaVu Serif"_s, 18, false, true, false, false, {}}};
    QVERIFY(modFont::ChangeTreeviewFont(font));
    QCOMPARE(m_first->outline.font.family(), u"DejaVu Serif"_s);
    QCOMPARE(m_first->outline.font.pointSizeF(), 18.0);
    QVERIFY(m_first->outline.font.italic());
    QVERIFY(m_second->outline.font != m_first->outline.font);
}

void tst_modFont::theDialogShowsOnlyWhatTheSelectionShares()
{
    m_first->box.setTextRTF("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}{\\f1 DejaVu Serif;}}{\\colortbl;\\red255;}"
                            "\\f0\\fs20\\i\\ul\\cf1 one \\f1\\fs30\\i0\\b two}");
    select(0, 7);
    dialogs().fonts = {std::nullopt};
    modEdit::EditCurrentFont();
    const FontDialogRequest &asked = dialogs().fontRequests.front();
    QVERIFY(asked.effects);
    QVERIFY((asked.initial == FontAttributes{{}, {}, {}, {}, true, false, QColor(Qt::red)}));
}

void tst_modFont::allIsWrittenToTheSelectionInOneStep()
{
    OpenDocument &f = *m_first;
    f.box.setTextRTF("{\\rtf1\\fs20 one \\fs30 two three}");
    const QByteArray before = f.box.TextRTF();
    select(0, 7);
    const QSignalSpy changes(&f.box, &QTextEdit::textChanged);
    dialogs().fonts = {everything()};
    modEdit::EditCurrentFont();
    QCOMPARE(changes.count(), 1);
    QCOMPARE(f.box.SelText(), u"one two"_s);
    QCOMPARE(f.box.SelFontName(), std::optional(u"DejaVu Serif"_s));
    QCOMPARE(f.box.SelFontSize(), std::optional(16.0));
    QCOMPARE(f.box.SelBold(), std::optional(true));
    QCOMPARE(f.box.SelItalic(), std::optional(true));
    QCOMPARE(f.box.SelUnderline(), std::optional(false));
    QCOMPARE(f.box.SelStrikeThru(), std::optional(true));
    QCOMPARE(f.box.SelColor(), std::optional(QColor(Qt::red)));
    select(8, 5);
    QCOMPARE(f.box.SelFontSize(), std::optional(15.0));
    f.box.undo();
    QCOMPARE(f.box.TextRTF(), before);
    QVERIFY(!f.box.document()->isUndoAvailable());
    QCOMPARE(f.box.SelStart(), 7);
    f.box.redo();
    QCOMPARE(f.box.SelStart(), 7);
}

void tst_modFont::whatWasNotChosenStaysAsItWas()
{
    OpenDocument &f = *m_first;
    f.box.setTextRTF("{\\rtf1\\fs20 one \\b two}");
    select(0, 7);
    FontAttributes chosen;
    chosen.size = 12;
    dialogs().fonts = {chosen};
    QVERIFY(modFont::ChangeRTFSelFont(f.box));
    QCOMPARE(f.box.SelFontSize(), std::optional(12.0));
    QCOMPARE(f.box.SelBold(), std::nullopt);
}

void tst_modFont::withoutASelectionTheWholeTextTakesTheFont_data()
{
    QTest::addColumn<bool>("isTyped");
    QTest::newRow("just typed") << true;
    QTest::newRow("shown again") << false;
}

void tst_modFont::withoutASelectionTheWholeTextTakesTheFont()
{
    QFETCH(const bool, isTyped);
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, isTyped ? "" : "one {\\fs40\\b two}\\par three");
    modNodes::NodeSelectFull(f.document, root);
    if (isTyped) {
        QTest::keyClicks(&f.box, u"one two"_s);
        QTest::keyClick(&f.box, Qt::Key_Return);
        QTest::keyClicks(&f.box, u"three"_s);
    }
    const QString text = f.box.Text();
    select(static_cast<int>(text.size()), 0);
    const QByteArray before = f.box.TextRTF();
    const QFont base = f.box.Font();
    f.timesChanged = 0;
    dialogs().fonts = {FontAttributes{u"DejaVu Serif"_s, 16, false, true, false, false, {}}};
    modEdit::EditCurrentFont();
    QVERIFY(!dialogs().fontRequests.front().effects);
    QVERIFY(f.document.m_bDataChanged());
    QTest::keyClicks(&f.box, u"x"_s);
    select(0, static_cast<int>(text.size()) + 1);
    QCOMPARE(f.box.SelText(), text + u'x');
    QCOMPARE(f.box.SelFontName(), std::optional(u"DejaVu Serif"_s));
    QCOMPARE(f.box.SelFontSize(), std::optional(16.0));
    QCOMPARE(f.box.SelBold(), std::optional(false));
    QCOMPARE(f.box.SelItalic(), std::optional(true));
    QCOMPARE(f.box.Font(), base);
    f.box.undo();
    f.box.undo();
    QCOMPARE(f.box.TextRTF(), before);
}

void tst_modFont::otherEntriesBeginAsTheyDid()
{
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, "one");
    Entry *other = rawOutline(f.document).tree.insert(Relationship::tvwChild, root);
    modNodes::NodeSelectFull(f.document, root);
    select(3, 0);
    dialogs().fonts = {FontAttributes{u"DejaVu Serif"_s, 30, true, false, false, false, {}}};
    modEdit::EditCurrentFont();
    const double base = f.box.Font().pointSizeF();
    modNodes::NodeSelectFull(f.document, other);
    QTest::keyClicks(&f.box, u"typed"_s);
    select(0, 5);
    QCOMPARE(f.box.SelFontSize(), std::optional(base));
    QCOMPARE(f.box.SelBold(), std::optional(false));
    QVERIFY(base != 30);
}

void tst_modFont::anEmptyTextBeginsWithTheFontChosen()
{
    OpenDocument &f = *m_first;
    Entry *root = rawOutline(f.document).tree.insert(Relationship::tvwFirst, nullptr);
    modNodes::NodeSelectFull(f.document, root);
    dialogs().fonts = {FontAttributes{u"DejaVu Serif"_s, 30, true, false, false, false, {}}};
    modEdit::EditCurrentFont();
    modNodes::NodeTextGet(f.document, root);
    QTest::keyClicks(&f.box, u"typed"_s);
    select(0, 5);
    QCOMPARE(f.box.SelFontSize(), std::optional(30.0));
    QCOMPARE(f.box.SelFontName(), std::optional(u"DejaVu Serif"_s));
}

void tst_modFont::whatTheDialogDoesNotOfferStays()
{
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, "one {\\ul two} {\\strike three}");
    modNodes::NodeSelectFull(f.document, root);
    select(5, 0);
    // As the dialog answers them when it does not offer them.
    dialogs().fonts = {FontAttributes{u"DejaVu Serif"_s, 16, false, false, true, false, {}}};
    modEdit::EditCurrentFont();
    select(0, 3);
    QCOMPARE(f.box.SelUnderline(), std::optional(false));
    select(4, 3);
    QCOMPARE(f.box.SelUnderline(), std::optional(true));
    select(8, 5);
    QCOMPARE(f.box.SelStrikeThru(), std::optional(true));
}

void tst_modFont::theDialogShowsTheFontAtTheCaret()
{
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, "one {\\fs40\\b two}");
    modNodes::NodeSelectFull(f.document, root);
    select(6, 0);
    dialogs().fonts = {std::nullopt};
    modEdit::EditCurrentFont();
    const FontAttributes &initial = dialogs().fontRequests.front().initial;
    QCOMPARE(initial.name, std::optional(u"DejaVu Sans"_s));
    QCOMPARE(initial.size, std::optional(20.0));
    QCOMPARE(initial.bold, std::optional(true));
    QCOMPARE(initial.colour, std::nullopt);
}

void tst_modFont::theFontOfTheWholeTextCanBeUndone()
{
    OpenDocument &f = *m_first;
    Entry *root = rawOutline(f.document).tree.insert(Relationship::tvwFirst, nullptr);
    rawOutline(f.document).tree.setStoredText(root, "no font");
    modNodes::NodeSelectFull(f.document, root);
    select(7, 0);
    QTest::keyClicks(&f.box, u"s"_s);
    const QByteArray textBefore = f.textOf(root);
    dialogs().fonts = {FontAttributes{u"DejaVu Serif"_s, 16, true, false, false, false, {}},
                       FontAttributes{u"DejaVu Serif"_s, 20, false, false, false, false, {}}};
    modEdit::EditCurrentFont();
    const QByteArray textBetween = f.textOf(root);
    QVERIFY(textBetween != textBefore);
    modEdit::EditCurrentFont();
    const QByteArray textAfter = f.textOf(root);
    f.box.undo();
    QCOMPARE(f.textOf(root), textBetween);
    f.box.undo();
    QCOMPARE(f.textOf(root), textBefore);
    f.box.redo();
    f.box.redo();
    QCOMPARE(f.textOf(root), textAfter);
}

void tst_modFont::sizesAreSteppedByAPoint_data()
{
    QTest::addColumn<double>("size");
    QTest::addColumn<int>("direction");
    QTest::addColumn<double>("expected");
    QTest::newRow("larger") << 10.0 << 1 << 11.0;
    QTest::newRow("smaller") << 10.0 << -1 << 9.0;
    QTest::newRow("no direction is smaller") << 10.0 << 0 << 9.0;
    QTest::newRow("half a point") << 10.5 << 1 << 11.5;
    QTest::newRow("the smallest") << 1.0 << -1 << 1.0;
    QTest::newRow("to the smallest") << 1.5 << -1 << 1.0;
    QTest::newRow("the largest") << 1638.0 << 1 << 1638.0;
}

void tst_modFont::sizesAreSteppedByAPoint()
{
    QFETCH(const double, size);
    QFETCH(const int, direction);
    QFETCH(const double, expected);
    m_first->box.setTextRTF("{\\rtf1 one two}");
    select(0, 7);
    m_first->box.setSelFontSize(size);
    modFont::ChangeSelectedFontSize(static_cast<qint16>(direction));
    QCOMPARE(m_first->box.SelFontSize(), std::optional(expected));
}

void tst_modFont::theSizeInsideAWordIsStepped()
{
    m_first->box.setTextRTF("{\\rtf1\\fs20 word}");
    select(2, 0);
    modFont::ChangeSelectedFontSize(1);
    modFont::ChangeSelectedFontSize(1);
    QCOMPARE(m_first->box.SelFontSize(), std::optional(12.0));
    QTest::keyClicks(&m_first->box, u"x"_s);
    select(2, 1);
    QCOMPARE(m_first->box.SelFontSize(), std::optional(12.0));
    select(3, 1);
    QCOMPARE(m_first->box.SelFontSize(), std::optional(10.0));
}

void tst_modFont::severalSizesStay()
{
    m_first->box.setTextRTF("{\\rtf1\\fs20 one \\fs30 two}");
    const QByteArray before = m_first->box.TextRTF();
    select(0, 7);
    modFont::ChangeSelectedFontSize(1);
    QCOMPARE(m_first->box.TextRTF(), before);
}

void tst_modFont::steppingASizeIsOneStepToUndo()
{
    m_first->box.setTextRTF("{\\rtf1\\fs20 one}");
    const QByteArray before = m_first->box.TextRTF();
    select(0, 3);
    modFont::ChangeSelectedFontSize(1);
    QVERIFY(m_first->box.TextRTF() != before);
    m_first->box.undo();
    QCOMPARE(m_first->box.TextRTF(), before);
}

void tst_modFont::theDocumentFontGoesIntoEveryText()
{
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, "one \\b bold\\b0");
    Entry *child = f.add(root, "two");
    Entry *grandchild = f.add(child, "three");
    modNodes::NodeSelectFull(f.document, child);
    select(1, 2);
    rawOutline(f.document).textFont.setName(u"Arial"_s);
    dialogs().fonts = {FontAttributes{u"DejaVu Serif"_s, 16, false, true, true, false, {}}};
    modEdit::EditDocumentFont();
    QCOMPARE(dialogs().fontRequests.front().initial.name, std::optional(u"Arial"_s));
    QVERIFY(f.document.m_fntTextFont == serif16());
    QCOMPARE(f.box.Font().family(), u"DejaVu Serif"_s);
    QVERIFY(f.document.m_bDataChanged());
    // The selected entry is shown, with the same part of its text selected.
    QCOMPARE(f.document.tree.selected(), child);
    QCOMPARE(f.box.SelText(), u"wo"_s);
    QVERIFY(f.box.PaneVisible());
    QVERIFY(m_fake->pointer.timesHourglass > 0 && !m_fake->pointer.hourglass);
    for (Entry *entry : {root, child, grandchild}) {
        modNodes::NodeSelectFull(f.document, entry);
        modEdit::EditSelectAll();
        QCOMPARE(f.box.SelFontName(), std::optional(u"DejaVu Serif"_s));
        QCOMPARE(f.box.SelFontSize(), std::optional(16.0));
        QCOMPARE(f.box.SelBold(), std::optional(false));
        QCOMPARE(f.box.SelItalic(), std::optional(true));
        QCOMPARE(f.box.SelUnderline(), std::optional(true));
    }
}

void tst_modFont::theDocumentFontLeavesTheRest()
{
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, "plain {\\field{\\*\\fldinst{HYPERLINK \"http://example.org/\"}}{\\fldrslt link}} " +
                                     picture + "\\par\\qc {\\super up}\\par\\pard\\li300 {\\v hidden}");
    modNodes::NodeSelectFull(f.document, root);
    g_fntPendingTextFont = clsFont();
    modFont::ChangeDocumentTextFontDetails(false);
    // Nothing but four styles that were off before: the text is what it was.
    OpenDocument other;
    Entry *same = other.add(nullptr, {});
    rawOutline(other.document).tree.setStoredText(same, f.document.tree.storedText(root));
    modNodes::NodeSelectFull(other.document, same);
    const QByteArray text = f.textOf(root);
    for (const char *kept : {"http://example.org/", "89504e47", "\\qc", "\\super", "\\li300", "\\v"})
        QVERIFY2(text.contains(kept), kept);
    QCOMPARE(other.box.TextRTF(), text);
}

void tst_modFont::coloursLinksAndPicturesStayUnderTheDocumentFont_data()
{
    QTest::addColumn<bool>("isShown");
    QTest::newRow("in the shown text") << true;
    QTest::newRow("in another") << false;
}

void tst_modFont::coloursLinksAndPicturesStayUnderTheDocumentFont()
{
    QFETCH(const bool, isShown);
    OpenDocument &f = *m_first;
    Entry *root = rawOutline(f.document).tree.insert(Relationship::tvwFirst, nullptr);
    rawOutline(f.document)
        .tree.setStoredText(root, QByteArray("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}{\\colortbl;\\red255;\\blue200;}"
                                             "\\f0\\fs20 a\\cf1\\b red\\cf0\\b0{\\highlight2 b}"
                                             "{\\field{\\*\\fldinst{HYPERLINK \"http://example.org/\"}}"
                                             "{\\fldrslt\\cf2\\ul link}}") +
                                      picture + "{\\super up}\\par\\qc c}");
    Entry *child = f.add(root, "child");
    modNodes::NodeSelectFull(f.document, isShown ? root : child);
    g_fntPendingTextFont = serif16();
    modFont::ChangeDocumentTextFontDetails(false);

    QTextDocument text;
    rtf::read(f.textOf(root), text);
    QCOMPARE(text.toPlainText(), u"aredblink\uFFFCup\nc"_s);
    const auto formatAt = [&text](int position) {
        QTextCursor cursor(&text);
        cursor.setPosition(position + 1);
        return cursor.charFormat();
    };
    for (int i = 0; i < 14; ++i) {
        const QTextCharFormat format = formatAt(i);
        if (i == 12)
            continue; // the end of the paragraph
        QCOMPARE(format.fontFamilies().toStringList(), QStringList{u"DejaVu Serif"_s});
        QCOMPARE(format.fontPointSize(), 16.0);
        QVERIFY(format.fontWeight() <= QFont::Normal);
        QVERIFY(format.fontItalic() && format.fontUnderline());
        const QColor colour = i >= 1 && i < 4 ? QColor(255, 0, 0) : i >= 5 && i < 9 ? QColor(0, 0, 200) : QColor();
        QCOMPARE(format.foreground().style() == Qt::NoBrush ? QColor() : format.foreground().color(), colour);
        QCOMPARE(format.background().style() != Qt::NoBrush, i == 4);
        QCOMPARE(format.anchorHref(), i >= 5 && i < 9 ? u"http://example.org/"_s : QString());
        QCOMPARE(format.isImageFormat(), i == 9);
        QCOMPARE(format.verticalAlignment() == QTextCharFormat::AlignSuperScript, i == 10 || i == 11);
    }
    QCOMPARE(formatAt(9).toImageFormat().width(), 20.0);
    QCOMPARE(formatAt(9).toImageFormat().height(), 20.0);
    QCOMPARE(text.lastBlock().blockFormat().alignment(), Qt::AlignHCenter);
}

// All sample texts and some that are no rich text, with random fonts, beside what the pane makes of them one by one.
void tst_modFont::theDocumentFontIsWhatThePaneWouldMakeOfIt()
{
    // Some samples have letters that no font here has, which is said of each font.
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const auto again = qScopeGuard([before] { qInstallMessageHandler(before); });
    std::vector<QByteArray> texts = {"plain characters\r\nin two lines", "{\\rtf1 }"};
    QDirIterator samples(QStringLiteral(QUILLERY_TEST_DATA "/rtf"), {u"*.rtf"_s}, QDir::Files);
    while (samples.hasNext()) {
        QFile file(samples.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        texts.push_back(file.readAll());
    }
    QVERIFY(texts.size() > 10);
    OpenDocument &f = *m_first;
    std::vector<Entry *> entries;
    for (const QByteArray &text : texts) {
        entries.push_back(rawOutline(f.document).tree.insert(Relationship::tvwChild, f.document.tree.root()));
        rawOutline(f.document).tree.setStoredText(entries.back(), NodeTextCompressIfRequired(text));
    }
    std::mt19937 random(7);
    const auto oneIn = [&random](unsigned n) { return random() % n == 0; };
    RichTextBox pane;
    for (int round = 0; round < 6; ++round) {
        clsFont font;
        if (!oneIn(3))
            font.setName(oneIn(2) ? u"DejaVu Serif"_s : u"No Such Font"_s);
        if (!oneIn(3))
            font.setSize(static_cast<qint64>(random() % 400) * clsFont::point / 10);
        font.setBold(oneIn(2));
        font.setItalic(oneIn(2));
        font.setUnderline(oneIn(2));
        font.setStrikeThrough(oneIn(2));
        std::vector<QByteArray> old;
        for (Entry *entry : entries)
            old.push_back(f.textOf(entry));
        modNodes::NodeSetFontAll(f.document, f.document.tree.root(), font);
        QFont base = pane.Font();
        font.SetFont(base);
        pane.setFont(base);
        QCOMPARE(f.box.Font(), base);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            pane.setTextRTF(old[i]);
            font.SetRTFSelFont(pane);
            // The pane leaves the look of an empty first paragraph.
            if (pane.document()->begin().length() > 1)
                QCOMPARE(f.textOf(entries[i]), pane.TextRTF());
        }
    }
}

void tst_modFont::theDocumentFontCanBeUndoneInTheShownText()
{
    OpenDocument &f = *m_first;
    Entry *root = rawOutline(f.document).tree.insert(Relationship::tvwFirst, nullptr);
    rawOutline(f.document).tree.setStoredText(root, "no font");
    Entry *child = f.add(root, "two {\\b bold}");
    for (Entry *entry : {root, child}) {
        modNodes::NodeSelectFull(f.document, entry);
        select(3, 0);
        QTest::keyClicks(&f.box, u"x"_s);
        const QByteArray before = f.textOf(entry);
        const QFont fontBefore = f.box.Font();
        select(1, 2);
        g_fntPendingTextFont = serif16();
        g_fntPendingTextFont.setBold(entry == root);
        modFont::ChangeDocumentTextFontDetails(false);
        QCOMPARE(f.box.SelStart(), 1);
        QCOMPARE(f.box.SelLength(), 2);
        const QByteArray after = f.textOf(entry);
        QVERIFY(after != before);
        QCOMPARE(f.box.TextRTF(), after);
        f.box.undo();
        QCOMPARE(f.textOf(entry), before);
        QCOMPARE(f.box.Font(), fontBefore);
        f.box.redo();
        QCOMPARE(f.textOf(entry), after);
        QCOMPARE(f.box.Font().bold(), entry == root);
        f.box.undo();
        f.box.undo();
        QVERIFY(!f.box.Text().contains(u'x'));
        QVERIFY(!f.box.document()->isUndoAvailable());
    }
}

void tst_modFont::theDocumentFontKeepsTheUndoHistory_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("plain characters") << QByteArray("plain characters\r\nin two lines");
    QDirIterator samples(QStringLiteral(QUILLERY_TEST_DATA "/rtf"), {u"*.rtf"_s}, QDir::Files);
    while (samples.hasNext()) {
        QFile file(samples.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTest::newRow(qPrintable(QFileInfo(file.fileName()).completeBaseName())) << file.readAll();
    }
}

// What the pane shows then is what is stored, which is what a text that is not shown would have become.
void tst_modFont::theDocumentFontKeepsTheUndoHistory()
{
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const auto again = qScopeGuard([before] { qInstallMessageHandler(before); });
    QFETCH(const QByteArray, text);
    OpenDocument &f = *m_first;
    Entry *root = rawOutline(f.document).tree.insert(Relationship::tvwFirst, nullptr);
    Entry *child = rawOutline(f.document).tree.insert(Relationship::tvwChild, root);
    rawOutline(f.document).tree.setStoredText(root, NodeTextCompressIfRequired(text));
    modNodes::NodeSelectFull(f.document, root);
    f.box.moveCursor(QTextCursor::End);
    f.box.setSelText(u"new"_s);
    rawOutline(f.document).tree.setStoredText(child, f.document.tree.storedText(root));
    g_fntPendingTextFont = serif16();
    modFont::ChangeDocumentTextFontDetails(false);
    QCOMPARE(f.textOf(root), f.textOf(child));
    QCOMPARE(f.box.TextRTF(), f.textOf(root));
    QVERIFY(f.box.document()->isUndoAvailable());
    f.box.shown()->undo();
    f.box.shown()->undo();
    QVERIFY(!f.box.document()->isUndoAvailable());
}

void tst_modFont::emptyTextsTakeTheDocumentFont()
{
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, "\\fs40 ");
    Entry *child = rawOutline(f.document).tree.insert(Relationship::tvwChild, root);
    modNodes::NodeSelectFull(f.document, root);
    g_fntPendingTextFont = serif16();
    modFont::ChangeDocumentTextFontDetails(false);
    for (Entry *entry : {root, child}) {
        modNodes::NodeSelectFull(f.document, entry);
        QTest::keyClicks(&f.box, u"new"_s);
        modEdit::EditSelectAll();
        QCOMPARE(f.box.SelFontSize(), std::optional(16.0));
        QCOMPARE(f.box.SelItalic(), std::optional(true));
        QCOMPARE(f.box.SelFontName(), std::optional(u"DejaVu Serif"_s));
    }
}

void tst_modFont::theDocumentFontOfAllDocuments()
{
    Entry *first = m_first->add(nullptr, "first");
    Entry *second = m_second->add(nullptr, "second");
    modNodes::NodeSelectFull(m_first->document, first);
    modNodes::NodeSelectFull(m_second->document, second);
    const QByteArray before = m_second->document.tree.storedText(second);
    g_fntPendingTextFont = serif16();
    modFont::ChangeDocumentTextFontDetails(false);
    QCOMPARE(m_second->document.tree.storedText(second), before);
    QVERIFY(!m_second->document.m_bDataChanged());
    QCOMPARE(m_second->window.timesActivated, 0);
    modFont::ChangeDocumentTextFontDetails(true);
    QVERIFY(m_second->document.tree.storedText(second) != before);
    QVERIFY(m_second->document.m_fntTextFont == serif16());
    QCOMPARE(m_second->box.Text(), u"second"_s);
    QCOMPARE(m_windows->active, &m_first->document);
}

void tst_modFont::whatWasJustTypedGetsTheDocumentFont()
{
    OpenDocument &f = *m_first;
    Entry *root = f.add(nullptr, "one");
    modNodes::NodeSelectFull(f.document, root);
    select(3, 0);
    f.box.setSelText(u" two"_s);
    g_fntPendingTextFont = serif16();
    modFont::ChangeDocumentTextFontDetails(false);
    QCOMPARE(f.box.Text(), u"one two"_s);
    modNodes::NodeTextGet(f.document, root);
    QCOMPARE(f.box.Text(), u"one two"_s);
}

void tst_modFont::withoutADocumentNothingHappens()
{
    m_windows->active = nullptr;
    modEdit::EditCurrentFont();
    modEdit::EditDocumentFont();
    modFont::ChangeDocumentTextFontDetails(true);
    modFont::ChangeSelectedFontSize(1);
    QVERIFY(dialogs().fontRequests.empty());
}

QTEST_MAIN(tst_modFont)
#include "tst_modFont.moc"
