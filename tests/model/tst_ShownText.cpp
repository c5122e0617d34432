// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryText.h"
#include "model/Limits.h"
#include "model/ShownText.h"
#include "rtf/Rtf.h"
#include "support/ErrorRecorder.h"

#include <QTest>
#include <QTextDocument>

#include <zlib.h>

using namespace Qt::StringLiterals;

// What the text pane gets of a stored text.
class tst_ShownText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAtTheBoundAndBeyondIt_data();
    void textsAtTheBoundAndBeyondIt();
    void damagedBytesAreBoundedToo();
    void whatIsTooMuchForTheTextEngineIsShownAsWords_data();
    void whatIsTooMuchForTheTextEngineIsShownAsWords();
    void whatIsReadIsWhatIsShown_data();
    void whatIsReadIsWhatIsShown();
    void aBeginningIsNoMoreThanCanBeLaidOut();
    void aCharacterIsNotHalved();
    void inflatingEndsAtTheBound_data();
    void inflatingEndsAtTheBound();
};

void tst_ShownText::textsAtTheBoundAndBeyondIt_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("whole");
    const QByteArray longest = QByteArray("x ").repeated(limits::longestParagraph / 2);
    const QByteArray longestWord(limits::longestShownWord, 'x');
    QTest::newRow("the longest line") << longest << true;
    QTest::newRow("a longer line") << longest + 'x' << false;
    QTest::newRow("the longest word") << longestWord << true;
    QTest::newRow("a longer word") << longestWord + 'x' << false;
    QTest::newRow("the longest word as rich text") << "{\\rtf1 " + longestWord + '}' << true;
    QTest::newRow("a longer word as rich text") << "{\\rtf1 " + longestWord + "x}" << false;
    QTest::newRow("a line beyond all texts") << QByteArray(limits::longestText + 1, 'x') << false;
    QTest::newRow("the most lines") << QByteArray("a\r\n").repeated(limits::mostParagraphs) << true;
    QTest::newRow("a line more") << QByteArray("a\n").repeated(limits::mostParagraphs + 1) << false;
    QTest::newRow("the longest line as rich text") << "{\\rtf1 " + longest + '}' << true;
    QTest::newRow("a longer line as rich text") << "{\\rtf1 " + longest + "x}" << false;
    QTest::newRow("line breaks within a paragraph")
        << "{\\rtf1 " + QByteArray("x\\line ").repeated(limits::longestParagraph / 2) + "xx}" << false;
    QTest::newRow("the most paragraphs") << "{\\rtf1 " + QByteArray("\\par").repeated(limits::mostParagraphs) + '}'
                                         << true;
    QTest::newRow("two paragraphs more") << "{\\rtf1 " + QByteArray("\\par").repeated(limits::mostParagraphs + 2) + '}'
                                         << false;
    const auto table = [](qsizetype rows) {
        return "{\\rtf1 " + QByteArray("\\trowd\\cellx900\\cellx1800 some\\cell more\\cell\\row\n").repeated(rows) +
               "}";
    };
    QTest::newRow("the most cells") << table(limits::mostShownCells / 2) << true;
    QTest::newRow("more cells") << table(limits::mostShownCells / 2 + 1) << false;
    const auto nested = [](qsizetype cells) {
        return "{\\rtf1 " +
               QByteArray("\\itap2 some\\nestcell{\\*\\nesttableprops\\trowd\\cellx900\\nestrow}\n").repeated(cells) +
               "\\itap1 \\cell\\trowd\\cellx1800\\row}";
    };
    QTest::newRow("the most nested cells") << nested((limits::mostShownCells - 1) / 2) << true;
    QTest::newRow("more nested cells") << nested(limits::mostShownCells / 2) << false;
    QTest::newRow("much that is not text") << "{\\rtf1{\\*\\unknown " + QByteArray(3'000'000, 'x') + "}one}" << true;
}

void tst_ShownText::textsAtTheBoundAndBeyondIt()
{
    QFETCH(const QByteArray, text);
    QFETCH(const bool, whole);
    for (const QByteArray &stored : {text, NodeTextCompressIfRequired(text)}) {
        const Inflated shown = shownText(stored, QFont());
        QCOMPARE(shown.state, whole ? TextState::Whole : TextState::Beginning);
        if (whole)
            QVERIFY(shown.text == text);
        else
            QVERIFY(shown.text.size() >= limits::longestShownWord && shown.text.size() <= 2 * limits::shownBeginning);
    }
}

void tst_ShownText::whatIsTooMuchForTheTextEngineIsShownAsWords_data()
{
    QTest::addColumn<QByteArray>("opening");
    QTest::addColumn<QByteArray>("paragraph");
    QTest::newRow("space before paragraphs") << QByteArray("\\sb31680 ") << QByteArray("x\\par ");
    QTest::newRow("huge letters") << QByteArray("\\fs3276 ") << QByteArray("x\\par ");
    QTest::newRow("lines far apart") << QByteArray("\\sl31680\\slmult0 ") << QByteArray("x\\par ");
    QTest::newRow("tabulator stops") << QByteArray("\\tx900\\tx1800 ") << QByteArray("\\tab");
    QTest::newRow("runs in one word") << QByteArray() << QByteArray("x{\\b y}");
}

void tst_ShownText::whatIsTooMuchForTheTextEngineIsShownAsWords()
{
    QFETCH(const QByteArray, opening);
    QFETCH(const QByteArray, paragraph);
    const auto text = [&](qsizetype times) { return "{\\rtf1 " + opening + paragraph.repeated(times) + "end}"; };
    QCOMPARE(shownText(text(500), QFont()).state, TextState::Whole);
    const Inflated shown = shownText(text(18'000), QFont());
    QCOMPARE(shown.state, TextState::Beginning);
    QVERIFY(!shown.text.startsWith("{\\rtf"));
    QCOMPARE(shown.text, rtf::toPlainText(text(18'000)).toLatin1());
}

void tst_ShownText::whatIsReadIsWhatIsShown_data()
{
    QTest::addColumn<QByteArray>("stored");
    const QByteArray bold = "{\\rtf1 one\\b  two\\par three}";
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a line") << QByteArray("one line");
    QTest::newRow("rich text") << bold;
    QTest::newRow("much rich text") << "{\\rtf1 " + QByteArray("one\\b  two\\b0\\par ").repeated(1000) + "}";
    QTest::newRow("a line too long") << QByteArray("x ").repeated(limits::longestParagraph);
    QTest::newRow("formatting too much") << "{\\rtf1\\sb31680 " + QByteArray("x\\par ").repeated(18'000) + "end}";
    QTest::newRow("emoji too many") << u"\U0001F600 "_s.repeated(100'000).toUtf8();
    QTest::newRow("damaged") << QByteArray("12,not deflated");
}

void tst_ShownText::whatIsReadIsWhatIsShown()
{
    QFETCH(const QByteArray, stored);
    for (const QByteArray &text : {stored, NodeTextCompressIfRequired(stored)}) {
        QTextDocument read;
        read.setUndoRedoEnabled(false);
        const Inflated answered = readShownText(text, read);
        const Inflated shown = shownText(text, QFont());
        QCOMPARE(answered.state, shown.state);
        QCOMPARE(answered.text, shown.text);
        QTextDocument expected;
        expected.setUndoRedoEnabled(false);
        readEntryText(shown.text, expected);
        QCOMPARE(read.toHtml(), expected.toHtml());
    }
}

void tst_ShownText::aBeginningIsNoMoreThanCanBeLaidOut()
{
    // Plain characters that are too much by themselves.
    const QString text = u"\U0001F600 "_s.repeated(100'000);
    const Inflated shown = shownText(text.toUtf8(), QFont());
    QCOMPARE(shown.state, TextState::Beginning);
    QCOMPARE(shownText(shown.text, QFont()).state, TextState::Whole);
    QVERIFY(text.startsWith(QString::fromUtf8(shown.text)) && shown.text.size() > 10'000);
    // Lines that only their font makes too tall.
    const QByteArray lines = QByteArray("x\n").repeated(limits::mostParagraphs - 1);
    QFont font;
    font.setPointSize(10);
    QCOMPARE(shownText(lines, font).state, TextState::Whole);
    font.setPointSize(200);
    QCOMPARE(shownText(lines, font).state, TextState::Beginning);
}

void tst_ShownText::damagedBytesAreBoundedToo()
{
    const Inflated shown = shownText("12," + QByteArray(2 * limits::longestParagraph, '\0'), QFont());
    QCOMPARE(shown.state, TextState::Damaged);
    QCOMPARE(shown.text, QByteArray(limits::longestShownWord, '\0'));
}

void tst_ShownText::aCharacterIsNotHalved()
{
    const QString text = u"x"_s + u"\U0001F600"_s.repeated(limits::longestParagraph);
    const Inflated shown = shownText(text.toUtf8(), QFont());
    QCOMPARE(shown.state, TextState::Beginning);
    const QString beginning = QString::fromUtf8(shown.text);
    QVERIFY(beginning.size() % 2 == 1 && beginning.size() > 1000);
    QCOMPARE(beginning, text.left(beginning.size()));
}

void tst_ShownText::inflatingEndsAtTheBound_data()
{
    QTest::addColumn<qint64>("length");
    QTest::addColumn<TextState>("state");
    QTest::newRow("the longest") << qint64(limits::longestInflated) << TextState::Whole;
    QTest::newRow("one byte more") << qint64(limits::longestInflated) + 1 << TextState::Beginning;
}

void tst_ShownText::inflatingEndsAtTheBound()
{
    QFETCH(const qint64, length);
    QFETCH(const TextState, state);
    z_stream stream = {};
    QCOMPARE(deflateInit(&stream, 1), Z_OK);
    const QByteArray blanks(1 << 20, ' ');
    QByteArray stored = QByteArray::number(length) + ',';
    QByteArray output(1 << 20, Qt::Uninitialized);
    for (qint64 done = 0; done < length;) {
        const qint64 size = std::min<qint64>(blanks.size(), length - done);
        done += size;
        stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(blanks.constData()));
        stream.avail_in = static_cast<uInt>(size);
        stream.next_out = reinterpret_cast<Bytef *>(output.data());
        stream.avail_out = static_cast<uInt>(output.size());
        deflate(&stream, done < length ? Z_NO_FLUSH : Z_FINISH);
        stored.append(output.constData(), output.size() - static_cast<qsizetype>(stream.avail_out));
    }
    deflateEnd(&stream);
    const Inflated text = inflated(stored);
    QCOMPARE(text.state, state);
    QCOMPARE(text.text.size(), limits::longestInflated);
    QCOMPARE(shownText(stored, QFont()).text.size(), limits::shownBeginning);
}

QTEST_MAIN(tst_ShownText)
#include "tst_ShownText.moc"
