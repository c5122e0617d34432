// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/AnsiCodec.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

class tst_AnsiCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyByteAloneHasItsCharacter();
    void everyByteAloneComesBack();
    void allBytesInOneTextComeBack();
    void encoding_data();
    void encoding();
    void decoding_data();
    void decoding();
    void everyCharacterOfThePlaneComesBack();
    void randomTextsComeBack();
    void randomAnsiTextsAreOneByteACharacterUnlessTheyReadAsUtf8();
};

// The code page's table written out here a second time, so that a slip in the codec's own shows. The five bytes that it
// leaves undefined stand for the control of that number.
static char16_t expectedCharacter(int byte)
{
    static const std::array<char16_t, 32> upper = {
        u'\u20AC', u'\u0081', u'\u201A', u'\u0192', u'\u201E', u'\u2026', u'\u2020', u'\u2021',
        u'\u02C6', u'\u2030', u'\u0160', u'\u2039', u'\u0152', u'\u008D', u'\u017D', u'\u008F',
        u'\u0090', u'\u2018', u'\u2019', u'\u201C', u'\u201D', u'\u2022', u'\u2013', u'\u2014',
        u'\u02DC', u'\u2122', u'\u0161', u'\u203A', u'\u0153', u'\u009D', u'\u017E', u'\u0178'};
    return byte >= 0x80 && byte < 0xA0 ? upper[static_cast<size_t>(byte - 0x80)] : static_cast<char16_t>(byte);
}

void tst_AnsiCodec::everyByteAloneHasItsCharacter()
{
    for (int byte = 0; byte < 256; ++byte) {
        const QByteArray bytes(1, static_cast<char>(byte));
        QCOMPARE(AnsiCodec::toText(bytes), QString(QChar(expectedCharacter(byte))));
    }
}

void tst_AnsiCodec::everyByteAloneComesBack()
{
    for (int byte = 0; byte < 256; ++byte) {
        const QByteArray bytes(1, static_cast<char>(byte));
        QCOMPARE(AnsiCodec::fromText(AnsiCodec::toText(bytes)), bytes);
    }
}

void tst_AnsiCodec::allBytesInOneTextComeBack()
{
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    const QString text = AnsiCodec::toText(bytes);
    QCOMPARE(text.size(), 256);
    QCOMPARE(AnsiCodec::fromText(text), bytes);
}

void tst_AnsiCodec::encoding_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty") << u""_s << QByteArray();
    QTest::newRow("ASCII is itself") << u"Notes {1}\\ ~"_s << QByteArray("Notes {1}\\ ~");
    QTest::newRow("NUL and line ends are itself")
        << QString::fromLatin1("a\0b\r\n\t", 6) << QByteArray::fromRawData("a\0b\r\n\t", 6);
    QTest::newRow("accented letters are one byte each") << u"\u00E9t\u00E9"_s << QByteArray("\xE9t\xE9");
    QTest::newRow("Euro sign and quotes") << u"\u20AC \u201Cq\u201D"_s << QByteArray("\x80 \x93q\x94");
    QTest::newRow("a Greek letter makes it UTF-8") << u"\u03B1\u00E9"_s << QByteArray("\xCE\xB1\xC3\xA9");
    QTest::newRow("a character outside the first plane") << u"\U0001F600"_s << QByteArray("\xF0\x9F\x98\x80");
    QTest::newRow("code page bytes that would read as UTF-8") << u"\u00C3\u00A9"_s << QByteArray("\xC3\x83\xC2\xA9");
    QTest::newRow("a byte order mark stays a character") << u"\uFEFFa"_s
                                                         << QByteArray("\xEF\xBB\xBF"
                                                                       "a");
}

void tst_AnsiCodec::encoding()
{
    QFETCH(const QString, text);
    QFETCH(const QByteArray, bytes);
    QCOMPARE(AnsiCodec::fromText(text), bytes);
    QCOMPARE(AnsiCodec::toText(bytes), text);
}

void tst_AnsiCodec::decoding_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("valid UTF-8 with a multi-byte sequence") << QByteArray("caf\xC3\xA9") << u"caf\u00E9"_s;
    QTest::newRow("one stray byte makes all of it code page") << QByteArray("\xC3\xA9\xE9") << u"\u00C3\u00A9\u00E9"_s;
    QTest::newRow("a sequence cut off at the end") << QByteArray("a\xC3") << u"a\u00C3"_s;
    QTest::newRow("a continuation byte alone") << QByteArray("\xA9") << u"\u00A9"_s;
    QTest::newRow("an overlong slash is no UTF-8") << QByteArray("\xC0\xAF") << u"\u00C0\u00AF"_s;
    QTest::newRow("a surrogate written as UTF-8 is none") << QByteArray("\xED\xA0\x80") << u"\u00ED\u00A0\u20AC"_s;
    QTest::newRow("beyond the last code point") << QByteArray("\xF4\x90\x80\x80") << u"\u00F4\u0090\u20AC\u20AC"_s;
}

void tst_AnsiCodec::decoding()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    QCOMPARE(AnsiCodec::toText(bytes), text);
}

void tst_AnsiCodec::everyCharacterOfThePlaneComesBack()
{
    for (int code = 0; code < 0x10000; ++code) {
        const QString text = QString(QChar(static_cast<char16_t>(code)));
        if (text[0].isSurrogate())
            continue;
        if (AnsiCodec::toText(AnsiCodec::fromText(text)) != text)
            QFAIL(qPrintable(u"U+%1 is changed"_s.arg(code, 4, 16)));
    }
}

// A random text of characters that make trouble: ASCII, the code page's upper half, and what lies beyond it.
static QString randomText(QRandomGenerator &random, int kinds)
{
    QString text;
    const int length = random.bounded(40);
    for (int i = 0; i < length; ++i) {
        switch (random.bounded(kinds)) {
        case 0:
            text += QChar(static_cast<char16_t>(random.bounded(0x80)));
            break;
        case 1:
            text += QChar(expectedCharacter(0x80 + random.bounded(0x80)));
            break;
        case 2:
            text += QChar(static_cast<char16_t>(0x370 + random.bounded(0x400)));
            break;
        default:
            text += QChar::fromUcs4(0x10000 + static_cast<char32_t>(random.bounded(0x100000)));
            break;
        }
    }
    return text;
}

void tst_AnsiCodec::randomTextsComeBack()
{
    QRandomGenerator random(20260101);
    for (int i = 0; i < 20000; ++i) {
        const QString text = randomText(random, 4);
        if (AnsiCodec::toText(AnsiCodec::fromText(text)) != text)
            QFAIL(qPrintable(u"Text %1 is changed: %2"_s.arg(i).arg(text)));
    }
}

void tst_AnsiCodec::randomAnsiTextsAreOneByteACharacterUnlessTheyReadAsUtf8()
{
    QRandomGenerator random(7);
    int asUtf8 = 0;
    for (int i = 0; i < 20000; ++i) {
        const QString text = randomText(random, 2);
        const QByteArray bytes = AnsiCodec::fromText(text);
        QCOMPARE(AnsiCodec::toText(bytes), text);
        if (bytes.size() == text.size())
            continue;
        QCOMPARE(bytes, text.toUtf8());
        ++asUtf8;
    }
    QVERIFY2(asUtf8 > 0 && asUtf8 < 2000, qPrintable(QString::number(asUtf8)));
}

QTEST_APPLESS_MAIN(tst_AnsiCodec)
#include "tst_AnsiCodec.moc"
