// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/StoredText.h"
#include "model/modCompress.h"
#include "support/ErrorRecorder.h"

#include <QRandomGenerator>
#include <QTest>

#include <zlib.h>

using namespace Qt::StringLiterals;

class tst_StoredText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyTextStaysEmpty();
    void reading_data();
    void reading();
    void aTextOf100000CharactersComesBack();
    void theStoredFormIsLengthCommaAndAZlibStream();
    void everyByteValueComesBack();
    void randomTextsComeBack();
    void aLengthThatTheBytesCannotReachIsNotAllocated();
    void aLengthOfTwoGigabytesReadsTheTextAllTheSame();
    void aLengthBeyond32BitsShowsTheStoredForm_data();
    void aLengthBeyond32BitsShowsTheStoredForm();
    void aCommaBeyond32767IsReportedAndShowsTheStoredForm();
    void aCommaAt32767IsStillOne();
    void aBraceFirstNeedsNoComma();
    void damageShowsTheCompressedBytesSilently_data();
    void damageShowsTheCompressedBytesSilently();
    void whatReadsAsCompressed_data();
    void whatReadsAsCompressed();
    void resultCodesAreThoseOfZlib();
};

static QByteArray compressed(const QByteArray &text)
{
    uLongf size = compressBound(static_cast<uLong>(text.size()));
    QByteArray bytes(static_cast<qsizetype>(size), '\0');
    compress(reinterpret_cast<Bytef *>(bytes.data()), &size, reinterpret_cast<const Bytef *>(text.constData()),
             static_cast<uLong>(text.size()));
    bytes.truncate(static_cast<qsizetype>(size));
    return bytes;
}

void tst_StoredText::anEmptyTextStaysEmpty()
{
    const ErrorRecorder errors;
    QCOMPARE(NodeTextDecompressIfRequired(QByteArray()), QByteArray());
    QCOMPARE(NodeTextDecompressIfRequired(NodeTextCompressIfRequired(QByteArray())), QByteArray());
    QCOMPARE(errors.count(), 0);
}

void tst_StoredText::reading_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("digits, a comma and no zlib stream") << QByteArray("12,abc") << QByteArray("abc");
    QTest::newRow("RTF with commas") << QByteArray("{\\rtf1 12,abc,d}") << QByteArray("{\\rtf1 12,abc,d}");
    QTest::newRow("plain text without a comma") << QByteArray("12 abc") << QByteArray("12 abc");
    QTest::newRow("plain text with a comma") << QByteArray("First, second") << QByteArray("First, second");
    QTest::newRow("a comma first") << QByteArray(",abc") << QByteArray(",abc");
    QTest::newRow("a length of zero") << QByteArray("0,abc") << QByteArray("0,abc");
    QTest::newRow("a negative length") << QByteArray("-3,abc") << QByteArray("-3,abc");
    QTest::newRow("a number and more before the comma") << QByteArray("12 pieces, abc") << QByteArray(" abc");
    QTest::newRow("nothing behind the comma") << QByteArray("12,") << QByteArray();
    QTest::newRow("compressed") << QByteArray("5,") + compressed("a,b,c") << QByteArray("a,b,c");
    QTest::newRow("blanks around the length") << QByteArray(" 5 ,") + compressed("a,b,c") << QByteArray("a,b,c");
    QTest::newRow("a length with a fraction") << QByteArray("5.2,") + compressed("a,b,c") << QByteArray("a,b,c");
    QTest::newRow("a length that is too long") << QByteArray("500,") + compressed("a,b,c") << QByteArray("a,b,c");
}

void tst_StoredText::reading()
{
    QFETCH(const QByteArray, stored);
    QFETCH(const QByteArray, text);
    const ErrorRecorder errors;
    QCOMPARE(NodeTextDecompressIfRequired(stored), text);
    QCOMPARE(errors.count(), 0);
}

void tst_StoredText::aTextOf100000CharactersComesBack()
{
    QByteArray text = "{\\rtf1 ";
    QRandomGenerator random(5);
    while (text.size() < 99999)
        text += static_cast<char>('a' + random.bounded(26));
    text += '}';
    const QByteArray stored = NodeTextCompressIfRequired(text);
    QVERIFY(stored.startsWith("100000,"));
    QVERIFY(stored.size() < text.size());
    QCOMPARE(NodeTextDecompressIfRequired(stored), text);
}

void tst_StoredText::theStoredFormIsLengthCommaAndAZlibStream()
{
    const QByteArray text = "{\\rtf1 a text}";
    QCOMPARE(NodeTextCompressIfRequired(text), QByteArray("14,") + compressed(text));
}

void tst_StoredText::everyByteValueComesBack()
{
    QByteArray text;
    for (int byte = 0; byte < 256; ++byte)
        text += static_cast<char>(byte);
    QCOMPARE(NodeTextDecompressIfRequired(NodeTextCompressIfRequired(text)), text);
}

void tst_StoredText::randomTextsComeBack()
{
    QRandomGenerator random(11);
    for (int i = 0; i < 2000; ++i) {
        QByteArray text(static_cast<qsizetype>(random.bounded(300)), '\0');
        // From texts of one value, which compress well, to noise, which grows.
        const int values = 1 + random.bounded(256);
        for (char &byte : text)
            byte = static_cast<char>(random.bounded(values));
        const QByteArray stored = NodeTextCompressIfRequired(text);
        QVERIFY(stored.isEmpty() || stored.startsWith(QByteArray::number(text.size()) + ','));
        QCOMPARE(NodeTextDecompressIfRequired(stored), text);
    }
}

void tst_StoredText::aLengthThatTheBytesCannotReachIsNotAllocated()
{
    QByteArray text;
    QCOMPARE(modCompress::DecompressString(compressed("short"), 2147483647, text), Z_OK);
    QCOMPARE(text, QByteArray("short"));
    QVERIFY2(text.capacity() < 100000, "room was made for the stated length");

    // The most that deflate expands: a text of one value comes near it and must still be read.
    const QByteArray even(10000000, 'a');
    QCOMPARE(modCompress::DecompressString(compressed(even), 10000000, text), Z_OK);
    QCOMPARE(text, even);
}

void tst_StoredText::aLengthOfTwoGigabytesReadsTheTextAllTheSame()
{
    QCOMPARE(NodeTextDecompressIfRequired("2147483647," + compressed("{\\rtf1 x}")), QByteArray("{\\rtf1 x}"));
    QCOMPARE(NodeTextDecompressIfRequired("2147483647,noise"), QByteArray("noise"));
}

void tst_StoredText::aLengthBeyond32BitsShowsTheStoredForm_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("reports");
    QTest::newRow("one beyond") << QByteArray("2147483648,abc") << 1;
    QTest::newRow("an exponent") << QByteArray("1e99,abc") << 1;
    // What no number holds at all counts as none, so this is no stored form and nothing to report.
    QTest::newRow("beyond all numbers") << QByteArray("1e999,abc") << 0;
    QTest::newRow("many digits") << QByteArray(400, '9') + ",abc" << 0;
}

void tst_StoredText::aLengthBeyond32BitsShowsTheStoredForm()
{
    QFETCH(const QByteArray, stored);
    QFETCH(const int, reports);
    const ErrorRecorder errors;
    QCOMPARE(NodeTextDecompressIfRequired(stored), stored);
    QCOMPARE(errors.summary(), QStringList(reports, u"6 modNodes NodeTextDecompressIfRequired"_s));
}

void tst_StoredText::aCommaBeyond32767IsReportedAndShowsTheStoredForm()
{
    const QByteArray stored = QByteArray(32767, 'a') + ",b";
    const ErrorRecorder errors;
    QCOMPARE(NodeTextDecompressIfRequired(stored), stored);
    QCOMPARE(errors.summary(), QStringList(u"6 modNodes NodeTextDecompressIfRequired"_s));
    // A text without any comma is not concerned.
    QCOMPARE(NodeTextDecompressIfRequired(QByteArray(100000, 'a')), QByteArray(100000, 'a'));
    QCOMPARE(errors.count(), 1);
}

void tst_StoredText::aCommaAt32767IsStillOne()
{
    const ErrorRecorder errors;
    QCOMPARE(NodeTextDecompressIfRequired(QByteArray(32765, '0') + "3," + compressed("abc")), QByteArray("abc"));
    QCOMPARE(errors.count(), 0);
}

void tst_StoredText::aBraceFirstNeedsNoComma()
{
    const ErrorRecorder errors;
    const QByteArray rtf = "{\\rtf1 " + QByteArray(40000, 'x') + ",y}";
    QCOMPARE(NodeTextDecompressIfRequired(rtf), rtf);
    QCOMPARE(errors.count(), 0);
}

void tst_StoredText::damageShowsTheCompressedBytesSilently_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("length");
    const QByteArray text = "{\\rtf1 some text, long enough to be cut}";
    const QByteArray stream = compressed(text);

    QTest::newRow("cut off") << stream.chopped(5) << int(text.size());
    QTest::newRow("without its checksum") << stream.chopped(4) << int(text.size());
    QTest::newRow("a byte changed") << QByteArray(stream).replace(8, 1, "\xFF") << int(text.size());
    QTest::newRow("another header") << QByteArray(stream).replace(0, 1, "z") << int(text.size());
    QTest::newRow("a length that is too short") << stream << int(text.size() - 1);
}

void tst_StoredText::damageShowsTheCompressedBytesSilently()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, length);
    const ErrorRecorder errors;
    QCOMPARE(NodeTextDecompressIfRequired(QByteArray::number(length) + ',' + bytes), bytes);
    QCOMPARE(errors.count(), 0);
}

void tst_StoredText::whatReadsAsCompressed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("reads");

    QTest::newRow("a number and a comma") << QByteArray("3, 2, 1") << true;
    QTest::newRow("a number, words and a comma") << QByteArray("3 men, a boat") << true;
    QTest::newRow("words") << QByteArray("First, second") << false;
    QTest::newRow("RTF") << QByteArray("{\\rtf1 3, 2}") << false;
    QTest::newRow("zero") << QByteArray("0, 1") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("a number beyond 32 bits") << QByteArray("9999999999, 1") << false;
}

void tst_StoredText::whatReadsAsCompressed()
{
    QFETCH(const QByteArray, text);
    QFETCH(const bool, reads);
    const ErrorRecorder errors;
    QCOMPARE(readsAsCompressed(text), reads);
    QCOMPARE(errors.count(), 0);
}

void tst_StoredText::resultCodesAreThoseOfZlib()
{
    QByteArray result = "before";
    QCOMPARE(modCompress::DecompressString("abc", 12, result), Z_DATA_ERROR);
    QCOMPARE(result, QByteArray("before"));
    QCOMPARE(modCompress::DecompressString(compressed("abcdef"), 3, result), Z_BUF_ERROR);
    QCOMPARE(result, QByteArray("abc"));
    QCOMPARE(modCompress::CompressString("abc", result), Z_OK);
    QCOMPARE(result, compressed("abc"));
}

QTEST_APPLESS_MAIN(tst_StoredText)
#include "tst_StoredText.moc"
