// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/DesktopClipboard.h"
#include "platform/RichTextBox.h"

#include "model/Limits.h"
#include "model/ShownText.h"
#include "rtf/Limits.h"
#include "support/FakePorts.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextTable>

#include <algorithm>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(std::function<void(RichTextBox &)>)

// What comes into the text pane from the clipboard and by drops: pictures, and more than a pane can lay out.
class tst_Pasting : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_fake = std::make_unique<FakePorts>();
        m_box = std::make_unique<RichTextBox>();
        m_box->setDialogs(&m_fake->dialogs);
        m_box->resize(600, 400);
        m_box->show();
        QVERIFY(QTest::qWaitForWindowActive(m_box.get()));
        m_box->setFocus();
    }

    void cleanup()
    {
        m_box.reset();
        m_fake.reset();
    }

    void tablesWithinTablesDoNotFreezeThePane();
    void aPageOfTooManyCellsComesAsWordsAfterAQuestion();
    void richTextOfTooManyCellsComesAsWordsAfterAQuestion();
    void nestedCellsOfRichTextCount();
    void cellsThatArePastedIntoTablesCountMore();
    void theCellsThatAreThereCount_data();
    void theCellsThatAreThereCount();
    void whatIsTooTallToBeLaidOutComesAsWordsAfterAQuestion_data();
    void whatIsTooTallToBeLaidOutComesAsWordsAfterAQuestion();
    void fontFamiliesBeyondThoseShownAreTheDefaultOne_data();
    void fontFamiliesBeyondThoseShownAreTheDefaultOne();
    void whatTheTextEngineIsSlowWithComesAsWordsAfterAQuestion_data();
    void whatTheTextEngineIsSlowWithComesAsWordsAfterAQuestion();
    void theStrainThatIsThereCounts();
    void plainTextIsHeldToTheBoundsOfItsSurroundings();
    void aNoToTheQuestionPastesNothing();
    void aDropOfTooManyCellsComesAsWordsAndSaysSo();
    void textBeyondTheBoundsIsRefusedAndStaysOnTheClipboard_data();
    void textBeyondTheBoundsIsRefusedAndStaysOnTheClipboard();
    void textWithinTheBoundsIsPasted();
    void aLongTextIsPastedIntoAListItem();
    void theTextThatIsThereCounts();
    void aLongTextIsLaidOutForTheWidthThatItsScrollBarLeaves_data();
    void aLongTextIsLaidOutForTheWidthThatItsScrollBarLeaves();
    void whatAPastedTextHasThatIsNotShownIsSaid();
    void aPictureIsPastedAndKept_data();
    void aPictureIsPastedAndKept();
    void aPictureIsShownNoWiderThanThePane();
    void aPictureCanBeDropped();
    void wordsAreTakenBeforeTheirPicture();
    void aPictureCopiedFromAPageIsThePicture();
    void aPictureOfAPageThatHoldsItIsKept();
    void aPictureThatIsElsewhereLeavesItsWords();
    void aCopiedPageHoldsItsPictures_data();
    void aCopiedPageHoldsItsPictures();
    void picturesThatNoPageShowsLeaveTheirPlace();
    void copiedPicturesUpToTheLimit();
    void damagedAndHugePicturesAreRefusedWithANotice();
    void aLockedTextTakesNoPicture();
    void aPastedPictureIsOneStepToUndo();

private:
    static QByteArray fileOf(const QSize &size, const char *format)
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(10, 200, 30));
        QByteArray file;
        QBuffer buffer(&file);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, format);
        return file;
    }

    static QMimeData *pageData(const QString &html, const QString &text = {})
    {
        auto *data = new QMimeData;
        data->setHtml(html);
        if (!text.isEmpty())
            data->setText(text);
        return data;
    }

    static QMimeData *pictureData(const QByteArray &file)
    {
        auto *data = new QMimeData;
        data->setData(u"image/png"_s, file);
        return data;
    }

    void paste(QMimeData *data)
    {
        QApplication::clipboard()->setMimeData(data);
        QTest::keyClick(m_box.get(), Qt::Key_V, Qt::ControlModifier);
    }

    void drop(const QMimeData &data)
    {
        QDragEnterEvent enter({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_box->viewport(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_box->viewport(), &event);
    }

    QTextImageFormat firstPicture() const
    {
        for (QTextBlock block = m_box->document()->begin(); block.isValid(); block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                if (it.fragment().charFormat().isImageFormat())
                    return it.fragment().charFormat().toImageFormat();
            }
        }
        return {};
    }

    static QString tableOf(qsizetype cells)
    {
        return u"<table>"_s + u"<tr><td>x</td></tr>"_s.repeated(cells) + u"</table>"_s;
    }

    std::unique_ptr<FakePorts> m_fake;
    std::unique_ptr<RichTextBox> m_box;
};

void tst_Pasting::tablesWithinTablesDoNotFreezeThePane()
{
    constexpr int depth = 60;
    paste(pageData(u"<table><tr><td>a"_s.repeated(depth) + u"</td></tr></table>"_s.repeated(depth)));
    QCOMPARE(m_box->Text().count(u'a'), depth);
    int deepest = 0;
    for (QTextBlock block = m_box->document()->begin(); block.isValid(); block = block.next()) {
        int tables = 0;
        for (const QTextFrame *frame = QTextCursor(block).currentFrame(); frame; frame = frame->parentFrame())
            tables += qobject_cast<const QTextTable *>(frame) ? 1 : 0;
        deepest = std::max(deepest, tables);
    }
    QCOMPARE(deepest, rtf::deepestTable);
}

void tst_Pasting::aPageOfTooManyCellsComesAsWordsAfterAQuestion()
{
    m_fake->dialogs.answers = {Answer::Yes, Answer::Yes};
    paste(pageData(tableOf(limits::mostCells + 1), u"the words\nalone"_s));
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
    QCOMPARE(m_box->Text(), u"the words\r\nalone"_s);
    // The page's own words, when nothing else is there.
    m_box->clearText();
    paste(pageData(u"<p>One</p>"_s + tableOf(limits::mostCells + 1)));
    QVERIFY(m_box->Text().startsWith(u"One\r\nx\r\nx\r\n"_s));
    QCOMPARE(m_box->Text().count(u'x'), limits::mostCells + 1);
}

void tst_Pasting::richTextOfTooManyCellsComesAsWordsAfterAQuestion()
{
    const auto rtfOf = [](qsizetype cells) {
        return QByteArray("{\\rtf1" + QByteArray("\\trowd\\cellx1000\\intbl{\\b x}\\cell\\row ").repeated(cells) + "}");
    };
    m_fake->dialogs.answers = {Answer::Yes};
    QVERIFY(m_box->pasteRTF(rtfOf(limits::mostCells + 1)));
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
    QCOMPARE(m_box->Text().count(u'x'), limits::mostCells + 1);
    QCOMPARE(m_box->document()->rootFrame()->childFrames().size(), 0);
}

void tst_Pasting::nestedCellsOfRichTextCount()
{
    const auto rtfOf = [](qsizetype cells) {
        return QByteArray(
            "{\\rtf1 " +
            QByteArray("\\itap2 x\\nestcell{\\*\\nesttableprops\\trowd\\cellx900\\nestrow}\n").repeated(cells - 1) +
            "\\itap1 \\cell\\trowd\\cellx1800\\row}");
    };
    // Twice, because of the table around theirs.
    QVERIFY(m_box->pasteRTF(rtfOf(limits::mostCells / 2)));
    QCOMPARE(m_fake->dialogs.questions.size(), 0);
    QCOMPARE(m_box->document()->rootFrame()->childFrames().size(), 1);
    m_box->clearText();
    m_fake->dialogs.answers = {Answer::Yes};
    QVERIFY(m_box->pasteRTF(rtfOf(limits::mostCells / 2 + 1)));
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
    QCOMPARE(m_box->document()->rootFrame()->childFrames().size(), 0);
    QCOMPARE(m_box->Text().count(u'x'), limits::mostCells / 2);
}

void tst_Pasting::cellsThatArePastedIntoTablesCountMore()
{
    const auto pasteCells = [&](qsizetype cells) {
        return m_box->pasteRTF("{\\rtf1" + QByteArray("\\trowd\\cellx1000 x\\cell\\row ").repeated(cells) + "}");
    };
    QVERIFY(pasteCells(1));
    m_box->setSelStart(2); // behind the empty paragraph that stands before the table
    QVERIFY(m_box->textCursor().currentTable());
    m_fake->dialogs.answers = {Answer::No};
    QVERIFY(!pasteCells(limits::mostCells / 2));
    QVERIFY(pasteCells(limits::mostCells / 2 - 1));
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
}

void tst_Pasting::theCellsThatAreThereCount_data()
{
    QTest::addColumn<bool>("isPage");
    QTest::newRow("a page") << true;
    QTest::newRow("rich text") << false;
}

void tst_Pasting::theCellsThatAreThereCount()
{
    QFETCH(const bool, isPage);
    const auto pasteCells = [&](qsizetype cells) {
        if (isPage)
            paste(pageData(tableOf(cells)));
        else
            m_box->pasteRTF("{\\rtf1" + QByteArray("\\trowd\\cellx1000 x\\cell\\row ").repeated(cells) + "}");
    };
    pasteCells(limits::mostCells - 10);
    m_box->setSelStart(static_cast<int>(m_box->Text().size()));
    pasteCells(10);
    QCOMPARE(m_fake->dialogs.questions.size(), 0);
    QCOMPARE(m_box->document()->rootFrame()->childFrames().size(), 2);
    m_fake->dialogs.answers = {Answer::No};
    pasteCells(1);
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
    // What is read again is shown whole.
    QCOMPARE(shownText(m_box->TextRTF(), m_box->Font()).state, TextState::Whole);
    // What is replaced counts no more.
    QTest::keyClick(m_box.get(), Qt::Key_A, Qt::ControlModifier);
    pasteCells(limits::mostCells);
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
    QCOMPARE(m_box->document()->rootFrame()->childFrames().size(), 1);
}

void tst_Pasting::whatIsTooTallToBeLaidOutComesAsWordsAfterAQuestion_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QByteArray>("rtf");
    QTest::newRow("margins") << u"<p style='margin-top:9999px'>x</p>"_s.repeated(1000) << QByteArray();
    QTest::newRow("lines far apart") << u"<p style='line-height:9999%'>x</p>"_s.repeated(10'000) << QByteArray();
    QTest::newRow("huge letters") << u"<span style='font-size:9999px'>x</span> "_s.repeated(1000) << QByteArray();
    QTest::newRow("spacing of rich text")
        << QString() << QByteArray("{\\rtf1\\sb31680 " + QByteArray("x\\par ").repeated(5000) + '}');
    QTest::newRow("huge letters of rich text")
        << QString() << QByteArray("{\\rtf1\\fs3276 " + QByteArray("x\\par ").repeated(5000) + '}');
}

void tst_Pasting::whatIsTooTallToBeLaidOutComesAsWordsAfterAQuestion()
{
    QFETCH(const QString, html);
    QFETCH(const QByteArray, rtf);
    m_fake->dialogs.answers = {Answer::No};
    if (rtf.isEmpty())
        paste(pageData(html));
    else
        QVERIFY(!m_box->pasteRTF(rtf));
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
    QVERIFY(m_box->Text().isEmpty());
}

void tst_Pasting::fontFamiliesBeyondThoseShownAreTheDefaultOne_data()
{
    QTest::addColumn<bool>("isPage");
    QTest::newRow("a page") << true;
    QTest::newRow("rich text") << false;
}

void tst_Pasting::fontFamiliesBeyondThoseShownAreTheDefaultOne()
{
    QFETCH(const bool, isPage);
    const auto pasteFamilies = [&](int from, int to) {
        QString html;
        QByteArray fonts;
        QByteArray words;
        for (int i = from; i < to; ++i) {
            html += u"<span style=\"font-family:F%1\">w</span> "_s.arg(i);
            const QByteArray number = QByteArray::number(i);
            fonts += "{\\f" + number + " F" + number + ";}";
            words += "\\f" + number + " w ";
        }
        if (isPage)
            paste(pageData(html));
        else
            m_box->pasteRTF("{\\rtf1{\\fonttbl" + fonts + "}" + words + "}");
    };
    const auto families = [&] {
        QSet<QStringList> found;
        for (auto it = m_box->document()->begin().begin(); !it.atEnd(); ++it)
            found.insert(it.fragment().charFormat().fontFamilies().toStringList());
        found.remove({});
        found.remove({m_box->document()->defaultFont().family()});
        return found;
    };
    const int most = static_cast<int>(rtf::mostFamilies);
    pasteFamilies(1, most - 100);
    QVERIFY(families().contains({u"F%1"_s.arg(most - 101)}));
    pasteFamilies(most, 3 * most);
    QCOMPARE(m_fake->dialogs.questions, QStringList());
    QCOMPARE(m_box->Text().count(u'w'), 3 * most - 101);
    QVERIFY(families().size() <= most);
    QVERIFY(families().contains({u"F1"_s}));
    QVERIFY(families().contains({u"F%1"_s.arg(most + 10)}));
}

void tst_Pasting::whatTheTextEngineIsSlowWithComesAsWordsAfterAQuestion_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QByteArray>("rtf");

    QTest::newRow("runs in words") << QString(u"<b>x</b>y"_s.repeated(9000) + u' ').repeated(4)
                                   << QByteArray(QByteArray("{\\b x}y").repeated(9000) + " ").repeated(4);
    QByteArray row("\\trowd");
    for (int cell = 1; cell <= 200; ++cell)
        row += "\\cellx" + QByteArray::number(cell * 1000);
    QTest::newRow("long words in cells") << u"<table><tr>"_s +
                                                QString(u"<td>"_s + QString(4000, u'x') + u"</td>"_s).repeated(200) +
                                                u"</table>"_s
                                         << row + (QByteArray(4000, 'x') + "\\cell ").repeated(200) + "\\row ";
    QTest::newRow("tabulators over stops") << QString() << "\\tx900 " + QByteArray("\\tab").repeated(18'000);
    QString sizes;
    QByteArray rtfSizes;
    for (int i = 1; i <= 9000; ++i) {
        sizes += u"<span style=\"font-family:F%1;font-size:%2pt\">x</span> "_s.arg(i % 100).arg(4 + i / 100);
        rtfSizes += "{\\expndtw" + QByteArray::number(i) + " x} ";
    }
    QTest::newRow("fonts") << sizes << rtfSizes;
}

void tst_Pasting::whatTheTextEngineIsSlowWithComesAsWordsAfterAQuestion()
{
    QFETCH(const QString, html);
    QFETCH(const QByteArray, rtf);
    for (const bool isPage : {true, false}) {
        if (isPage && html.isEmpty())
            continue;
        m_box->clearText();
        m_fake->dialogs.answers = {Answer::Yes};
        m_fake->dialogs.questions.clear();
        if (isPage)
            paste(pageData(html));
        else
            QVERIFY(m_box->pasteRTF("{\\rtf1 " + rtf + '}'));
        QCOMPARE(m_fake->dialogs.questions.size(), 1);
        // All the words, in one look.
        QVERIFY(m_box->Text().size() >= 9000);
        QVERIFY(m_box->document()->allFormats().size() < 20);
    }
}

void tst_Pasting::theStrainThatIsThereCounts()
{
    const QByteArray half = "{\\rtf1\\sb20000 " + QByteArray("x\\par ").repeated(1500) + "\\pard end}";
    QVERIFY(m_box->pasteRTF(half));
    QCOMPARE(m_fake->dialogs.questions.size(), 0);
    m_fake->dialogs.answers = {Answer::No};
    QVERIFY(!m_box->pasteRTF(half));
    QCOMPARE(m_fake->dialogs.questions.size(), 1);
    // What is read again is shown whole.
    QCOMPARE(shownText(m_box->TextRTF(), m_box->Font()).state, TextState::Whole);
    // But not what is replaced.
    m_box->selectAll();
    QVERIFY(m_box->pasteRTF(half));
}

void tst_Pasting::plainTextIsHeldToTheBoundsOfItsSurroundings()
{
    const QString lines = u"x\r"_s.repeated(10'000);
    m_box->setTextRTF("{\\rtf1\\fs3276 a}");
    m_box->selectAll();
    QVERIFY(!m_box->pasteText(lines));
    QCOMPARE(m_fake->dialogs.informations.size(), 1);
    QCOMPARE(m_box->Text(), u"a"_s);
    m_box->setTextRTF("{\\rtf1\\fs20 a}");
    m_box->selectAll();
    QVERIFY(m_box->pasteText(lines));
    QVERIFY(!m_box->pasteText(u"\U0001F600 "_s.repeated(50'000)));
    QCOMPARE(m_fake->dialogs.informations.size(), 2);
}

void tst_Pasting::aNoToTheQuestionPastesNothing()
{
    m_box->setTextRTF("{\\rtf1 here}");
    m_box->selectAll();
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        m_fake->dialogs.answers = {answer};
        paste(pageData(tableOf(limits::mostCells + 1)));
        QCOMPARE(m_box->Text(), u"here"_s);
        QVERIFY(!m_box->document()->isUndoAvailable());
    }
    QCOMPARE(m_fake->dialogs.questions.size(), 2);
}

void tst_Pasting::aDropOfTooManyCellsComesAsWordsAndSaysSo()
{
    const std::unique_ptr<QMimeData> data(pageData(tableOf(limits::mostCells + 1), u"words"_s));
    drop(*data);
    QCOMPARE(m_box->Text(), u"words"_s);
    QCOMPARE(m_fake->dialogs.questions, QStringList());
    // The other program waits for the end of the drop.
    QCOMPARE(m_fake->dialogs.informations, QStringList());
    QTRY_COMPARE(m_fake->dialogs.informations.size(), 1);
}

void tst_Pasting::textBeyondTheBoundsIsRefusedAndStaysOnTheClipboard_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("lines") << u"a\n"_s.repeated(limits::mostParagraphs + 1);
    QTest::newRow("a line") << QString(u"ab "_s.repeated(limits::longestParagraph / 3 + 1));
    QTest::newRow("a word") << QString(limits::longestWord + 1, u'w');
    QTest::newRow("characters") << QString(QString(999, u' ') + u'\n').repeated(limits::longestText / 1000 + 1);
}

void tst_Pasting::textBeyondTheBoundsIsRefusedAndStaysOnTheClipboard()
{
    QFETCH(const QString, text);
    m_box->setTextRTF("{\\rtf1 here}");
    m_box->selectAll();
    auto *plain = new QMimeData;
    plain->setText(text);
    paste(plain);
    QCOMPARE(m_fake->dialogs.informations.size(), 1);
    paste(pageData(u"<p>"_s + QString(text).replace(u'\n', u"<br>"_s), text));
    QVERIFY(m_fake->dialogs.informations.size() + m_fake->dialogs.questions.size() > 1);
    QVERIFY(!m_box->pasteRTF("{\\rtf1 " + text.toLatin1().replace('\n', "\\par ") + "}"));
    QCOMPARE(m_box->Text(), u"here"_s);
    QVERIFY(!m_box->document()->isUndoAvailable());
    QCOMPARE(QApplication::clipboard()->text(), text);
}

void tst_Pasting::textWithinTheBoundsIsPasted()
{
    QVERIFY(m_box->pasteText(u"a\r\n"_s.repeated(1000)));
    QVERIFY(m_box->pasteText(QString(2000, u'w')));
    QCOMPARE(m_fake->dialogs.informations, QStringList());
    QCOMPARE(m_box->document()->blockCount(), 1001);
}

void tst_Pasting::aLongTextIsPastedIntoAListItem()
{
    m_box->setText(u"item"_s);
    QTextCursor(m_box->document()).createList(QTextListFormat::ListDisc);
    m_box->moveCursor(QTextCursor::End);
    const QString words = u" word"_s.repeated(limits::harmlessText);
    QVERIFY(m_box->pasteText(words));
    QCOMPARE(m_box->Text(), u"item"_s + words);
    QVERIFY(m_box->document()->firstBlock().textList());
}

void tst_Pasting::theTextThatIsThereCounts()
{
    constexpr qsizetype half = limits::mostParagraphs / 2 + 1;
    QVERIFY(m_box->pasteText(u"\r\n"_s.repeated(half)));
    QVERIFY(!m_box->pasteText(u"\r\n"_s.repeated(half)));
    QCOMPARE(m_fake->dialogs.informations.size(), 1);
    // But not what is replaced.
    m_box->selectAll();
    QVERIFY(m_box->pasteText(u"\r\n"_s.repeated(half)));
    QCOMPARE(m_box->document()->blockCount(), half + 1);
}

// Each change of the width lays out what is there anew.
class WidthWatch : public QObject
{
public:
    explicit WidthWatch(const RichTextBox &box)
        : m_box(box)
    {
        box.viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Resize)
            longest = std::max(longest, m_box.document()->characterCount());
        return false;
    }

    int longest = 0;

private:
    const RichTextBox &m_box;
};

void tst_Pasting::aLongTextIsLaidOutForTheWidthThatItsScrollBarLeaves_data()
{
    QTest::addColumn<std::function<void(RichTextBox &)>>("fill");
    const auto pastes = [this](QMimeData *(*make)()) { return [this, make](RichTextBox &) { paste(make()); }; };
    using Fill = std::function<void(RichTextBox &)>;
    QTest::newRow("a table of a page") << Fill(pastes([] { return pageData(tableOf(1000)); }));
    QTest::newRow("rich text") << Fill(
        [](RichTextBox &box) { box.pasteRTF("{\\rtf1 " + QByteArray("line\\par ").repeated(1000) + "}"); });
    QTest::newRow("one paragraph") << Fill([](RichTextBox &box) { box.pasteText(u"word "_s.repeated(5000)); });
    QTest::newRow("lines") << Fill([](RichTextBox &box) { box.pasteText(u"line\r\n"_s.repeated(1000)); });
    QTest::newRow("another entry's text") << Fill([](RichTextBox &box) {
        box.setTextRTF("{\\rtf1 " + QByteArray("{\\trowd\\cellx2000 line\\cell\\row}").repeated(1000) + "}");
    });
}

void tst_Pasting::aLongTextIsLaidOutForTheWidthThatItsScrollBarLeaves()
{
    QFETCH(const std::function<void(RichTextBox &)>, fill);
    const WidthWatch watch(*m_box);
    const int wide = m_box->viewport()->width();
    fill(*m_box);
    QVERIFY(m_box->document()->characterCount() > 1900);
    QVERIFY(m_box->viewport()->width() < wide);
    QVERIFY2(watch.longest < 10, qPrintable(QString::number(watch.longest)));
    // And goes again with the text.
    QCOMPARE(m_box->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    m_box->setTextRTF("{\\rtf1 short}");
    QTRY_COMPARE(m_box->viewport()->width(), wide);
}

void tst_Pasting::whatAPastedTextHasThatIsNotShownIsSaid()
{
    QSignalSpy leftOut(m_box.get(), &RichTextBox::partsLeftOut);
    auto *data = new QMimeData;
    data->setData(u"text/rtf"_s, "{\\rtf1 a{\\footnote b}{\\header c}}");
    paste(data);
    QCOMPARE(m_box->Text(), u"a"_s);
    QCOMPARE(leftOut.takeFirst().at(0), u"footnotes and headers or footers"_s);
    data = new QMimeData;
    data->setData(u"text/rtf"_s, "{\\rtf1 a}");
    paste(data);
    QCOMPARE(leftOut.count(), 0);
}

void tst_Pasting::aPictureIsPastedAndKept_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QByteArray>("word");
    QTest::newRow("png") << u"image/png"_s << QByteArray("PNG") << QByteArray("\\pngblip");
    QTest::newRow("jpeg") << u"image/jpeg"_s << QByteArray("JPEG") << QByteArray("\\jpegblip");
    QTest::newRow("any other") << QString() << QByteArray() << QByteArray("\\pngblip");
}

void tst_Pasting::aPictureIsPastedAndKept()
{
    QFETCH(const QString, type);
    QFETCH(const QByteArray, format);
    QFETCH(const QByteArray, word);
    const QByteArray file = format.isEmpty() ? QByteArray() : fileOf({40, 20}, format.constData());
    auto *data = new QMimeData;
    if (file.isEmpty()) {
        QImage image(40, 20, QImage::Format_RGB32);
        image.fill(Qt::blue);
        data->setImageData(image);
    } else {
        data->setData(type, file);
    }
    paste(data);
    const QTextImageFormat shown = firstPicture();
    QCOMPARE(shown.width(), 40.0);
    QCOMPARE(shown.height(), 20.0);
    const QByteArray stored = m_box->TextRTF();
    QVERIFY(stored.contains(word));
    if (!file.isEmpty())
        QVERIFY(stored.toLower().contains(file.toHex().left(100)));
    m_box->setTextRTF(stored);
    QCOMPARE(m_box->TextRTF(), stored);
    QCOMPARE(m_fake->dialogs.informations, QStringList());
}

void tst_Pasting::aPictureIsShownNoWiderThanThePane()
{
    paste(pictureData(fileOf({2000, 1000}, "PNG")));
    const QTextImageFormat shown = firstPicture();
    QVERIFY(shown.width() <= m_box->viewport()->width());
    QVERIFY(shown.width() > 400);
    QVERIFY(std::abs(shown.width() - 2 * shown.height()) < 2);
}

void tst_Pasting::aPictureCanBeDropped()
{
    const std::unique_ptr<QMimeData> data(pictureData(fileOf({40, 20}, "PNG")));
    drop(*data);
    QCOMPARE(firstPicture().width(), 40.0);
}

void tst_Pasting::wordsAreTakenBeforeTheirPicture()
{
    QMimeData *data = pictureData(fileOf({40, 20}, "PNG"));
    data->setHtml(u"<table><tr><td>cells</td></tr></table>"_s);
    paste(data);
    QVERIFY(m_box->Text().contains(u"cells"_s));
    QVERIFY(firstPicture().name().isEmpty());
}

void tst_Pasting::aPictureCopiedFromAPageIsThePicture()
{
    QMimeData *data = pictureData(fileOf({40, 20}, "PNG"));
    data->setHtml(u"<meta http-equiv=\"content-type\" content=\"text/html\"><img src=\"https://example.org/a.png\" "
                  "alt=\"Logo\">"_s);
    paste(data);
    QCOMPARE(firstPicture().width(), 40.0);
    QCOMPARE(m_box->Text(), u" "_s);
}

void tst_Pasting::aPictureOfAPageThatHoldsItIsKept()
{
    const QString source = QString::fromLatin1(fileOf({40, 20}, "PNG").toBase64());
    paste(pageData(u"<p>a<img src=\"data:image/png;base64,%1\" width=\"80\" height=\"40\">b</p>"_s.arg(source)));
    QCOMPARE(m_box->Text(), u"a b"_s);
    QCOMPARE(firstPicture().width(), 80.0);
    QVERIFY(m_box->TextRTF().contains("\\pngblip"));
    m_box->undo();
    QCOMPARE(m_box->Text(), QString());
}

void tst_Pasting::aPictureThatIsElsewhereLeavesItsWords()
{
    paste(pageData(u"<p>a <img src=\"https://example.org/a.png\" alt=\"Our logo\"> b</p>"_s));
    QCOMPARE(m_box->Text(), u"a Our logo b"_s);
}

void tst_Pasting::aCopiedPageHoldsItsPictures_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("comesAsItIs");
    QTest::newRow("PNG") << fileOf({40, 20}, "PNG") << true;
    QTest::newRow("JPEG") << fileOf({40, 20}, "JPG") << true;
    QTest::newRow("BMP") << fileOf({40, 20}, "BMP") << false;
}

void tst_Pasting::aCopiedPageHoldsItsPictures()
{
    QFETCH(const QByteArray, file);
    QFETCH(const bool, comesAsItIs);
    m_box->setTextRTF("{\\rtf1 before}");
    m_box->moveCursor(QTextCursor::End);
    paste(pictureData(file));
    QTest::keyClicks(m_box.get(), u"src=\"quillery:picture/0\" after"_s);
    QTest::keyClick(m_box.get(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_box.get(), Qt::Key_C, Qt::ControlModifier);
    const QString html = QApplication::clipboard()->mimeData()->html();
    const QRegularExpressionMatch found =
        QRegularExpression(u"<img src=\"data:image/(\\w+);base64,([^\"]*)\" width=\"40\" height=\"20\""_s).match(html);
    QVERIFY2(found.hasMatch(), qPrintable(html));
    const QByteArray held = QByteArray::fromBase64(found.captured(2).toLatin1());
    QCOMPARE(held == file, comesAsItIs && m_box->TextRTF().contains("blip"));
    const QImage image = QImage::fromData(held, found.captured(1).toLatin1().constData());
    QCOMPARE(image.size(), QSize(40, 20));
    QVERIFY(html.contains(u"before"_s));
    QVERIFY(html.contains(u"src=&quot;quillery:picture/0&quot; after"_s));
    // And another text takes it from there.
    auto *page = pageData(html);
    m_box->setTextRTF({});
    paste(page);
    QCOMPARE(firstPicture().width(), 40.0);
}

void tst_Pasting::picturesThatNoPageShowsLeaveTheirPlace()
{
    m_box->setTextRTF("{\\rtf1 a{\\pict\\wmetafile8\\picwgoal600\\pichgoal300 0102}b}");
    m_box->selectAll();
    m_box->copy();
    const QString html = QApplication::clipboard()->mimeData()->html();
    QVERIFY(html.contains(u"<img alt=\"\" width=\"40\" height=\"20\""_s));
    QVERIFY(!html.contains(u"quillery:"_s));
}

void tst_Pasting::copiedPicturesUpToTheLimit()
{
    const auto copied = [&](qsizetype padding) {
        m_box->setTextRTF({});
        for (const QSize size : {QSize(40, 20), QSize(41, 20), QSize(41, 20)})
            paste(pictureData(fileOf(size, "PNG") + QByteArray(padding, ' ')));
        m_box->selectAll();
        m_box->copy();
        return QApplication::clipboard()->mimeData()->html().count(u"data:image/png"_s);
    };
    // As text, three bytes take four.
    QCOMPARE(copied(limits::mostCopiedPictures / 4 - 1000), 3);
    QCOMPARE(copied(limits::mostCopiedPictures / 4 + 1000), 2);
    QCOMPARE(copied(limits::mostCopiedPictures), 0);
}

void tst_Pasting::damagedAndHugePicturesAreRefusedWithANotice()
{
    m_box->setTextRTF("{\\rtf1 here}");
    m_box->selectAll();
    paste(pictureData("no picture at all"));
    QCOMPARE(m_fake->dialogs.informations.size(), 1);
    // A few hundred bytes that would take gigabytes.
    QByteArray huge = fileOf({40, 20}, "PNG");
    huge.replace(16, 8, QByteArray::fromHex("0000ea600000ea60"));
    paste(pictureData(huge));
    QCOMPARE(m_fake->dialogs.informations.size(), 2);
    paste(pictureData(fileOf({40, 20}, "PNG") + QByteArray(limits::largestPicture, 'x')));
    QCOMPARE(m_fake->dialogs.informations.size(), 3);
    QCOMPARE(m_box->Text(), u"here"_s);
    QVERIFY(!m_box->document()->isUndoAvailable());
    // In a page they are left out, and the words stay.
    const QString source = QString::fromLatin1(huge.toBase64());
    paste(pageData(u"<p>a<img src=\"data:image/png;base64,%1\">b</p>"_s.arg(source)));
    QCOMPARE(m_box->Text(), u"ab"_s);
}

void tst_Pasting::aLockedTextTakesNoPicture()
{
    m_box->setLocked(true);
    paste(pictureData(fileOf({40, 20}, "PNG")));
    QCOMPARE(m_box->Text(), QString());
}

void tst_Pasting::aPastedPictureIsOneStepToUndo()
{
    m_box->setTextRTF("{\\rtf1 here}");
    m_box->selectAll();
    paste(pictureData(fileOf({40, 20}, "PNG")));
    QCOMPARE(m_box->Text(), u" "_s);
    m_box->undo();
    QCOMPARE(m_box->Text(), u"here"_s);
}

QTEST_MAIN(tst_Pasting)
#include "tst_Pasting.moc"
