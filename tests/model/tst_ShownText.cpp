// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/Limits.h"
#include "model/ShownText.h"
#include "support/ErrorRecorder.h"

#include <QTest>

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
    void aCharacterIsNotHalved();
    void inflatingEndsAtTheBound_data();
    void inflatingEndsAtTheBound();
};

void tst_ShownText::textsAtTheBoundAndBeyondIt_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("whole");
    const QByteArray longest = QByteArray("x ").repeated(limits::longestParagraph / 2);
    const QByteArray longestWord(limits::longestWord, 'x');
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
    QTest::newRow("the most nested cells") << nested(limits::mostShownCells - 1) << true;
    QTest::newRow("more nested cells") << nested(limits::mostShownCells) << false;
    QTest::newRow("much that is not text") << "{\\rtf1{\\*\\unknown " + QByteArray(3'000'000, 'x') + "}one}" << true;
}

void tst_ShownText::textsAtTheBoundAndBeyondIt()
{
    QFETCH(const QByteArray, text);
    QFETCH(const bool, whole);
    for (const QByteArray &stored : {text, NodeTextCompressIfRequired(text)}) {
        const Inflated shown = shownText(stored);
        QCOMPARE(shown.state, whole ? TextState::Whole : TextState::Beginning);
        if (whole)
            QVERIFY(shown.text == text);
        else
            QVERIFY(shown.text.size() >= limits::shownBeginning && shown.text.size() <= 2 * limits::shownBeginning);
    }
}

void tst_ShownText::damagedBytesAreBoundedToo()
{
    const Inflated shown = shownText("12," + QByteArray(2 * limits::longestParagraph, '\0'));
    QCOMPARE(shown.state, TextState::Damaged);
    QCOMPARE(shown.text, QByteArray(limits::shownBeginning, '\0'));
}

void tst_ShownText::aCharacterIsNotHalved()
{
    const QString text = u"x"_s + u"\U0001F600"_s.repeated(limits::longestParagraph);
    const Inflated shown = shownText(text.toUtf8());
    QCOMPARE(shown.state, TextState::Beginning);
    QCOMPARE(shown.text, text.left(limits::shownBeginning - 1).toUtf8());
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
    QCOMPARE(shownText(stored).text.size(), limits::shownBeginning);
}

QTEST_APPLESS_MAIN(tst_ShownText)
#include "tst_ShownText.moc"
