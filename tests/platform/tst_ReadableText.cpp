// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/ReadableText.h"
#include "platform/RichTextBox.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextTable>

#include <memory>

using namespace Qt::StringLiterals;

// Paragraphs of one line and equal height with a gap between them. It counts what it is asked.
class CountingLayout : public QAbstractTextDocumentLayout
{
public:
    using QAbstractTextDocumentLayout::QAbstractTextDocumentLayout;

    static constexpr int lineHeight = 20;

    void draw(QPainter *, const PaintContext &) override {}

    int hitTest(const QPointF &point, Qt::HitTestAccuracy) const override
    {
        ++lookUps;
        return document()->findBlockByNumber(static_cast<int>(point.y()) / lineHeight).position();
    }

    int pageCount() const override { return 1; }

    QSizeF documentSize() const override { return {300.0, 20.0 * document()->blockCount()}; }

    QRectF frameBoundingRect(QTextFrame *) const override { return {{}, documentSize()}; }

    QRectF blockBoundingRect(const QTextBlock &block) const override
    {
        ++places;
        return {0.0, double(lineHeight) * block.blockNumber() + 2, 300.0, lineHeight - 4.0};
    }

    void documentChanged(int, int, int) override
    {
        Q_EMIT documentSizeChanged(documentSize());
        Q_EMIT update();
    }

    mutable int lookUps = 0;
    mutable int places = 0;
};

// In which colours the text pane shows text that stands on a background, on light and on dark desktops.
class tst_ReadableText : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_box = std::make_unique<RichTextBox>();
        m_box->resize(600, 400);
        m_box->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_box.get()));
    }

    void cleanup() { m_box.reset(); }

    void textOnItsOwnBackgroundCanBeRead_data();
    void textOnItsOwnBackgroundCanBeRead();
    void signsOfListsOnTheirCellsBackgroundCanBeSeen_data();
    void signsOfListsOnTheirCellsBackgroundCanBeSeen();
    void signsOfOtherListsHaveTheDesktopsColour();
    void everyWordOfAParagraphCanBeRead();
    void whatIsBesideTheSelectionCanStillBeRead();
    void otherTextHasTheDesktopsColour();
    void textOfAColourOfItsOwnKeepsIt();
    void linksCanBeToldFromTheirBackground();
    void noColourIsStored();
    void whatComesIntoSightIsReadable();
    void cellsBesideEachOtherAreReadable();
    void theEndOfATallCellIsReadable();
    void typingSearchesOnlyTheTextInSight();
    void theSelectionIsStillSeen();
    void anotherDesktopAnotherColour();

private:
    static QPalette desktop(bool dark)
    {
        QPalette palette;
        palette.setColor(QPalette::Base, dark ? QColor(27, 30, 32) : QColor(Qt::white));
        palette.setColor(QPalette::Text, dark ? QColor(252, 252, 252) : QColor(35, 38, 41));
        palette.setColor(QPalette::Link, dark ? QColor(29, 153, 243) : QColor(41, 128, 185));
        palette.setColor(QPalette::Highlight, QColor(61, 174, 233));
        palette.setColor(QPalette::HighlightedText, QColor(252, 252, 252));
        return palette;
    }

    void pastePage(const QString &html)
    {
        m_box->setTextRTF({});
        auto *data = new QMimeData;
        data->setHtml(html);
        QApplication::clipboard()->setMimeData(data);
        m_box->paste();
    }

    // Where a word is drawn, without its edges.
    QRect placeOf(const QString &word) const
    {
        const QTextCursor found = m_box->document()->find(word);
        QTextCursor begin(found);
        begin.setPosition(found.selectionStart());
        QTextCursor end(found);
        end.setPosition(found.selectionEnd());
        return m_box->cursorRect(begin).united(m_box->cursorRect(end)).adjusted(4, 4, -4, -4);
    }

    // The greatest ratio of brightness between two points of a word's place, from 1 to 21.
    double contrastIn(const QRect &place)
    {
        const QImage shown = m_box->viewport()->grab().toImage().copy(place);
        double darkest = 1;
        double lightest = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                const QColor colour = shown.pixelColor(x, y);
                const double grey = qGray(colour.rgb()) / 255.0;
                darkest = std::min(darkest, grey * grey);
                lightest = std::max(lightest, grey * grey);
            }
        }
        return (lightest + 0.05) / (darkest + 0.05);
    }

    std::unique_ptr<RichTextBox> m_box;
};

void tst_ReadableText::textOnItsOwnBackgroundCanBeRead_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("html");
    const QByteArray colours =
        "{\\rtf1{\\colortbl;\\red255\\green255\\blue255;\\red255\\green255\\blue0;\\red0\\green0\\"
        "blue0;}";
    for (const bool dark : {false, true}) {
        const QString name = dark ? u"dark"_s : u"light"_s;
        const auto row = [&](const char *what, const QByteArray &rtf, const QString &html) {
            QTest::newRow(qPrintable(name + u", "_s + QLatin1StringView(what))) << dark << rtf << html;
        };
        for (const QString &colour : {u"#ffffff"_s, u"#ffff00"_s, u"#000000"_s, u"#000080"_s}) {
            row(qPrintable(u"paragraph "_s + colour), {}, u"<p style='background:%1'>WORDS</p>"_s.arg(colour));
            row(qPrintable(u"characters "_s + colour), {},
                u"<p>a <span style='background-color:%1'>WORDS</span> b</p>"_s.arg(colour));
            row(qPrintable(u"cell "_s + colour), {},
                u"<table><tr><td bgcolor='%1'>WORDS</td><td>b</td></tr></table>"_s.arg(colour));
            row(qPrintable(u"table "_s + colour), {},
                u"<table bgcolor='%1'><tr><td>WORDS</td><td>b</td></tr></table>"_s.arg(colour));
        }
        row("a highlight", colours + "a {\\highlight2 WORDS} b}", {});
        row("a dark highlight", colours + "a {\\highlight3 WORDS} b}", {});
        row("a shaded paragraph", colours + "\\cbpat1 WORDS\\par}", {});
        row("a shaded cell", colours + "\\trowd\\clcbpat3\\cellx3000\\intbl WORDS\\cell\\row}", {});
    }
}

void tst_ReadableText::textOnItsOwnBackgroundCanBeRead()
{
    QFETCH(const bool, dark);
    QFETCH(const QByteArray, rtf);
    QFETCH(const QString, html);
    m_box->setPalette(desktop(dark));
    if (rtf.isEmpty())
        pastePage(html);
    else
        m_box->setTextRTF(rtf);
    QVERIFY(contrastIn(placeOf(u"WORDS"_s)) > 4);
}

void tst_ReadableText::signsOfListsOnTheirCellsBackgroundCanBeSeen_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QString>("colour");
    QTest::addColumn<QString>("list");
    for (const bool dark : {false, true}) {
        for (const QString &colour : {u"#ffffff"_s, u"#000000"_s, u"#ffff00"_s}) {
            for (const QString &kind :
                 {u"ul type='disc'"_s, u"ul type='circle'"_s, u"ul type='square'"_s, u"ol"_s, u"ol type='A'"_s})
                QTest::addRow("%s %s on %s", dark ? "dark" : "light", qPrintable(kind), qPrintable(colour))
                    << dark << colour << kind;
        }
    }
}

void tst_ReadableText::signsOfListsOnTheirCellsBackgroundCanBeSeen()
{
    QFETCH(const bool, dark);
    QFETCH(const QString, colour);
    QFETCH(const QString, list);
    m_box->setPalette(desktop(dark));
    pastePage(u"<p>before</p><table bgcolor='%1'><tr><td><%2><li>WORDS</li><li><font color='#808080'>GREY "
              "words</font></li></%3></td><td>b</td></tr></table>"_s.arg(colour, list, list.first(2)));
    m_box->moveCursor(QTextCursor::End);
    const auto besides = [&](const QString &word) {
        const QRect place = placeOf(word);
        return QRect(place.left() - 24, place.top() - 4, 18, place.height() + 8);
    };
    QVERIFY(contrastIn(besides(u"WORDS"_s)) > 3);
    QVERIFY(contrastIn(besides(u"GREY"_s)) > 3);
    // And while they are selected, in sight again, and after the text has changed.
    m_box->selectAll();
    QVERIFY(contrastIn(besides(u"WORDS"_s)) > 1.8);
    m_box->moveCursor(QTextCursor::Start);
    QTest::keyClick(m_box.get(), Qt::Key_Return);
    QVERIFY(contrastIn(besides(u"WORDS"_s)) > 3);
}

void tst_ReadableText::signsOfOtherListsHaveTheDesktopsColour()
{
    for (const bool dark : {false, true}) {
        m_box->setPalette(desktop(dark));
        pastePage(u"<ul><li>WORDS</li></ul><p style='background:#fff'>white</p>"_s);
        QVERIFY(readableSigns(m_box->document()->begin(), m_box->document()->lastBlock(), m_box->palette()).empty());
        m_box->setPalette(desktop(!dark));
        const QRect place = placeOf(u"WORDS"_s);
        QVERIFY(contrastIn(QRect(place.left() - 24, place.top(), 18, place.height())) > 4);
    }
}

void tst_ReadableText::everyWordOfAParagraphCanBeRead()
{
    for (const bool dark : {false, true}) {
        m_box->setPalette(desktop(dark));
        pastePage(u"<p style='background:#fff'>ONE words <b>TWO</b> and THREE <a href='http://a.b'>FOUR</a> and FIVE "
                  "<span style='background:#ffff00'>SIX marked</span> <span style='background:#000000'>SEVEN "
                  "dark</span><span style='background:#ffff00'>EIGHT</span> <i>NINE</i><b>TEN</b></p>"_s);
        for (const QString &word : {u"ONE"_s, u"TWO"_s, u"THREE"_s, u"FOUR"_s, u"FIVE"_s, u"SIX"_s, u"SEVEN"_s,
                                    u"EIGHT"_s, u"NINE"_s, u"TEN"_s})
            QVERIFY2(contrastIn(placeOf(word)) > 3, qPrintable(word));
    }
}

void tst_ReadableText::whatIsBesideTheSelectionCanStillBeRead()
{
    m_box->setPalette(desktop(true));
    pastePage(u"<p style='background:#fff'>ONE words <b>TWO</b> and THREE more FOUR words <i>FIVE</i> and SIX</p>"_s);
    const QStringList words = {u"ONE"_s, u"TWO"_s, u"THREE"_s, u"FOUR"_s, u"FIVE"_s, u"SIX"_s};
    for (const QString &first : words) {
        for (const QString &last : words) {
            const int from = m_box->document()->find(first).selectionStart();
            const int to = m_box->document()->find(last).selectionEnd();
            QTextCursor cursor(m_box->document());
            cursor.setPosition(from);
            cursor.setPosition(std::max(from, to), QTextCursor::KeepAnchor);
            m_box->setTextCursor(cursor);
            for (const QString &word : words)
                QVERIFY2(contrastIn(placeOf(word)) > 1.8, qPrintable(word + u" beside "_s + cursor.selectedText()));
        }
    }
}

void tst_ReadableText::otherTextHasTheDesktopsColour()
{
    for (const bool dark : {false, true}) {
        m_box->setPalette(desktop(dark));
        pastePage(u"<p>WORDS <b>bold</b></p><table><tr><td>in a cell</td></tr></table>"_s);
        m_box->grab();
        QCOMPARE(m_box->extraSelections().size(), 0);
    }
}

void tst_ReadableText::textOfAColourOfItsOwnKeepsIt()
{
    m_box->setPalette(desktop(true));
    pastePage(u"<p style='background:#ffffff;color:#cc0000'>WORDS</p>"_s);
    m_box->grab();
    QCOMPARE(m_box->extraSelections().size(), 0);
}

void tst_ReadableText::linksCanBeToldFromTheirBackground()
{
    for (const bool dark : {false, true}) {
        m_box->setPalette(desktop(dark));
        for (const char *colour :
             {"\\red0\\green0\\blue128", "\\red255\\green255\\blue180", "\\red0\\green0\\blue238"}) {
            m_box->setTextRTF(QByteArray("{\\rtf1{\\colortbl;") + colour +
                              ";}{\\field{\\*\\fldinst{HYPERLINK \"http://a.b\"}}{\\fldrslt{\\ul\\cf1 WORDS}}}}");
            QVERIFY2(contrastIn(placeOf(u"WORDS"_s)) > 2, colour);
            QVERIFY(m_box->TextRTF().contains(colour));
        }
    }
}

void tst_ReadableText::noColourIsStored()
{
    m_box->setPalette(desktop(true));
    pastePage(u"<p style='background:#ffffff'>WORDS</p>"_s);
    QSignalSpy changes(m_box.get(), &QTextEdit::textChanged);
    m_box->grab();
    QVERIFY(!m_box->extraSelections().isEmpty());
    QCOMPARE(changes.count(), 0);
    const QByteArray rtf = m_box->TextRTF();
    QVERIFY(!rtf.contains("\\cf"));
    m_box->selectAll();
    QCOMPARE(m_box->SelColor(), std::optional(QColor()));
    m_box->copy();
    QVERIFY(!QApplication::clipboard()->mimeData()->data(u"text/rtf"_s).contains("\\cf"));
}

void tst_ReadableText::whatComesIntoSightIsReadable()
{
    m_box->setPalette(desktop(true));
    pastePage(u"<p>a</p>"_s.repeated(200) + u"<p style='background:#ffffff'>WORDS</p>"_s + u"<p>z</p>"_s.repeated(50));
    m_box->grab();
    m_box->verticalScrollBar()->setValue(0);
    m_box->grab();
    QCOMPARE(m_box->extraSelections().size(), 0);
    m_box->setTextCursor(m_box->document()->find(u"WORDS"_s));
    m_box->moveCursor(QTextCursor::StartOfBlock);
    m_box->ensureCursorVisible();
    QVERIFY(contrastIn(placeOf(u"WORDS"_s)) > 4);
    // And what becomes white while it is looked at.
    m_box->setTextRTF("{\\rtf1 WORDS}");
    m_box->grab();
    QTextBlockFormat white;
    white.setBackground(Qt::white);
    QTextCursor(m_box->document()).mergeBlockFormat(white);
    QVERIFY(contrastIn(placeOf(u"WORDS"_s)) > 4);
}

void tst_ReadableText::cellsBesideEachOtherAreReadable()
{
    m_box->setPalette(desktop(true));
    pastePage(u"<table><tr><td>"_s + u"<p>a</p>"_s.repeated(60) +
              u"</td><td bgcolor='#ffffff'>WORDS</td><td bgcolor='#ffffff'>"_s + u"<p>OTHER</p>"_s.repeated(60) +
              u"</td></tr></table>"_s);
    m_box->moveCursor(QTextCursor::Start);
    m_box->verticalScrollBar()->setValue(0);
    // The cells stand in the middle of their row's height.
    m_box->verticalScrollBar()->setValue(placeOf(u"WORDS"_s).top() - 100);
    QVERIFY(contrastIn(placeOf(u"WORDS"_s)) > 4);
}

void tst_ReadableText::theEndOfATallCellIsReadable()
{
    m_box->setPalette(desktop(true));
    pastePage(u"<p>a</p>"_s.repeated(50) + u"<table><tr><td bgcolor='#ffffff'>"_s + u"<p>other</p>"_s.repeated(60) +
              u"<p>WORDS</p></td><td valign='top'>short</td></tr></table>"_s + u"<p>z</p>"_s.repeated(150));
    m_box->moveCursor(QTextCursor::Start);
    m_box->verticalScrollBar()->setValue(0);
    m_box->grab();
    const int wanted = placeOf(u"WORDS"_s).top() - 10;
    // From above, from below, and in one leap.
    for (const int start : {0, m_box->verticalScrollBar()->maximum(), wanted}) {
        m_box->verticalScrollBar()->setValue(start);
        m_box->grab();
        for (int at = start; std::abs(at - wanted) > 200; at += at < wanted ? 200 : -200) {
            m_box->verticalScrollBar()->setValue(at);
            m_box->grab();
        }
        m_box->verticalScrollBar()->setValue(wanted);
        QVERIFY(contrastIn(placeOf(u"WORDS"_s)) > 4);
    }
}

// The layout's own look-up goes through the whole text when it is asked for a place between two paragraphs.
void tst_ReadableText::typingSearchesOnlyTheTextInSight()
{
    m_box->setPlainText(u"a line\n"_s.repeated(20'000));
    auto *layout = new CountingLayout(m_box->document());
    m_box->document()->setDocumentLayout(layout);
    for (const int scrolled : {0, 200'000}) {
        m_box->verticalScrollBar()->setValue(scrolled);
        m_box->setTextCursor(QTextCursor(m_box->document()->findBlockByNumber(scrolled / CountingLayout::lineHeight)));
        m_box->grab();
        layout->lookUps = 0;
        layout->places = 0;
        constexpr int keys = 10;
        for (int key = 0; key < keys; ++key) {
            QTest::keyClick(m_box.get(), key % 3 == 2 ? Qt::Key_Return : Qt::Key_A);
            m_box->grab();
        }
        QCOMPARE(layout->lookUps, 0);
        QCOMPARE_LE(layout->places, keys * 200);
    }
}

void tst_ReadableText::theSelectionIsStillSeen()
{
    m_box->setPalette(desktop(true));
    pastePage(u"<p style='background:#ffffff'>WORDS</p>"_s);
    m_box->setTextCursor(m_box->document()->find(u"WORDS"_s));
    const QImage shown = m_box->viewport()->grab().toImage().copy(placeOf(u"WORDS"_s));
    int highlighted = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            highlighted += shown.pixelColor(x, y) == desktop(true).color(QPalette::Highlight) ? 1 : 0;
    }
    QVERIFY(highlighted > shown.width() * shown.height() / 4);
}

void tst_ReadableText::anotherDesktopAnotherColour()
{
    m_box->setPalette(desktop(false));
    pastePage(u"<p style='background:#ffffff'>WORDS</p>"_s);
    m_box->grab();
    QCOMPARE(m_box->extraSelections().size(), 0);
    m_box->setPalette(desktop(true));
    QVERIFY(contrastIn(placeOf(u"WORDS"_s)) > 4);
    m_box->setPalette(desktop(false));
    QVERIFY(contrastIn(placeOf(u"WORDS"_s)) > 4);
    QCOMPARE(m_box->extraSelections().size(), 0);
}

QTEST_MAIN(tst_ReadableText)
#include "tst_ReadableText.moc"
