// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/ErrorRecorder.h"
#include "util/Numbers.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 overflow = 6;
constexpr qint32 typeMismatch = 13;
} // namespace

class tst_Numbers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roundingHalvesToEven_data();
    void roundingHalvesToEven();
    void leavingTheRangeOverflows_data();
    void leavingTheRangeOverflows();
    void texts_data();
    void texts();
    void leadingNumbers_data();
    void leadingNumbers();
    void aLongRunOfDigitsIsReadToItsEnd();
    void booleans_data();
    void booleans();
    void booleansAreWrittenAsWords();
    void fixedPoint_data();
    void fixedPoint();
    void fixedPointIsRoundedToTenThousandths();
    void everySizeUpTo100PointsComesBack();
    void aFixedPointBeyondItsRangeOverflows();
};

void tst_Numbers::roundingHalvesToEven_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("rounded");

    QTest::newRow("a half below an even number") << 1.5 << 2;
    QTest::newRow("a half above an even number") << 2.5 << 2;
    QTest::newRow("a half above zero") << 0.5 << 0;
    QTest::newRow("a negative half") << -0.5 << 0;
    QTest::newRow("a negative half above an odd number") << -1.5 << -2;
    QTest::newRow("just above a half") << 2.5000001 << 3;
    QTest::newRow("the largest") << 32767.0 << 32767;
    QTest::newRow("just within the largest") << 32767.4 << 32767;
    QTest::newRow("the smallest") << -32768.0 << -32768;
    QTest::newRow("just within the smallest") << -32768.5 << -32768;
}

void tst_Numbers::roundingHalvesToEven()
{
    QFETCH(const double, value);
    QFETCH(const int, rounded);
    QCOMPARE(int(Numbers::toInt16(value)), rounded);
    QCOMPARE(Numbers::toInt32(value), rounded);
}

void tst_Numbers::leavingTheRangeOverflows_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("fitsInto32Bits");

    QTest::newRow("one above 16 bits") << 32768.0 << true;
    QTest::newRow("a half above 16 bits rounds up") << 32767.5 << true;
    QTest::newRow("one below 16 bits") << -32769.0 << true;
    QTest::newRow("the largest of 32 bits") << 2147483647.0 << true;
    QTest::newRow("one above 32 bits") << 2147483648.0 << false;
    QTest::newRow("one below 32 bits") << -2147483649.0 << false;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << false;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << false;
}

void tst_Numbers::leavingTheRangeOverflows()
{
    QFETCH(const double, value);
    QFETCH(const bool, fitsInto32Bits);
    QCOMPARE(errorNumberOf([&] { Numbers::toInt16(value); }), overflow);
    QCOMPARE(errorNumberOf([&] { Numbers::toInt32(value); }), fitsInto32Bits ? 0 : overflow);
}

void tst_Numbers::texts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("numeric");
    QTest::addColumn<double>("value");

    QTest::newRow("a digit") << u"1"_s << true << 1.0;
    QTest::newRow("blanks around it") << u"  8.25 "_s << true << 8.25;
    QTest::newRow("negative") << u"-2.5"_s << true << -2.5;
    QTest::newRow("an exponent") << u"1e3"_s << true << 1000.0;
    QTest::newRow("a comma as the decimal point") << u"8,25"_s << true << 8.25;
    QTest::newRow("leading zeros") << u"007"_s << true << 7.0;
    QTest::newRow("empty") << QString() << false << 0.0;
    QTest::newRow("blanks alone") << u"   "_s << false << 0.0;
    QTest::newRow("a word") << u"one"_s << false << 0.0;
    QTest::newRow("a number and a word") << u"1 point"_s << false << 0.0;
    QTest::newRow("two points") << u"1.2.3"_s << false << 0.0;
    QTest::newRow("infinity by name") << u"inf"_s << false << 0.0;
    QTest::newRow("not a number by name") << u"nan"_s << false << 0.0;
    QTest::newRow("beyond all range") << u"1e999"_s << false << 0.0;
}

void tst_Numbers::texts()
{
    QFETCH(const QString, text);
    QFETCH(const bool, numeric);
    QFETCH(const double, value);
    QCOMPARE(Numbers::isNumeric(text), numeric);
    if (numeric)
        QCOMPARE(Numbers::toNumber(text), value);
    else
        QCOMPARE(errorNumberOf([&] { Numbers::toNumber(text); }), typeMismatch);
}

void tst_Numbers::leadingNumbers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<double>("value");

    QTest::newRow("empty") << QByteArray() << 0.0;
    QTest::newRow("digits alone") << QByteArray("12") << 12.0;
    QTest::newRow("digits before a word") << QByteArray("12abc") << 12.0;
    QTest::newRow("a brace first") << QByteArray("{\\rtf1 12") << 0.0;
    QTest::newRow("a word first") << QByteArray("abc 12") << 0.0;
    QTest::newRow("blanks, tabs and line ends are passed over") << QByteArray(" 1\t2\r\n3") << 123.0;
    QTest::newRow("a fraction") << QByteArray("1.5x") << 1.5;
    QTest::newRow("a second point ends it") << QByteArray("1.2.3") << 1.2;
    QTest::newRow("negative") << QByteArray("-7,") << -7.0;
    QTest::newRow("a sign in the middle ends it") << QByteArray("5-3") << 5.0;
    QTest::newRow("a sign alone") << QByteArray("-") << 0.0;
    QTest::newRow("a point alone") << QByteArray(".") << 0.0;
    QTest::newRow("an exponent") << QByteArray("2e3") << 2000.0;
    QTest::newRow("an exponent written with d") << QByteArray("2D3x") << 2000.0;
    QTest::newRow("an exponent without digits") << QByteArray("2e") << 2.0;
    QTest::newRow("an exponent with only a sign") << QByteArray("2e+") << 2.0;
    QTest::newRow("an exponent before any digit") << QByteArray("e3") << 0.0;
    QTest::newRow("bytes beyond ASCII end it") << QByteArray("12\xE9") << 12.0;
    QTest::newRow("a NUL ends it") << QByteArray::fromRawData("1\0002", 3) << 1.0;
}

void tst_Numbers::leadingNumbers()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const double, value);
    QCOMPARE(Numbers::leadingNumber(bytes), value);
}

void tst_Numbers::aLongRunOfDigitsIsReadToItsEnd()
{
    QVERIFY(Numbers::leadingNumber(QByteArray(300, '9')) > 1e299);
    QVERIFY(Numbers::leadingNumber(QByteArray(32000, '0') + '1') == 1.0);
}

void tst_Numbers::booleans_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");

    QTest::newRow("True") << u"True"_s << 1;
    QTest::newRow("False") << u"False"_s << 0;
    QTest::newRow("in any case") << u"tRUE"_s << 1;
    QTest::newRow("blanks around it") << u" False "_s << 0;
    QTest::newRow("minus one") << u"-1"_s << 1;
    QTest::newRow("zero") << u"0"_s << 0;
    QTest::newRow("a fraction") << u"0.5"_s << 1;
    QTest::newRow("empty") << QString() << -1;
    QTest::newRow("another word") << u"Yes"_s << -1;
}

void tst_Numbers::booleans()
{
    QFETCH(const QString, text);
    QFETCH(const int, value);
    if (value < 0)
        QCOMPARE(errorNumberOf([&] { Numbers::toBoolean(text); }), typeMismatch);
    else
        QCOMPARE(Numbers::toBoolean(text), value == 1);
}

void tst_Numbers::booleansAreWrittenAsWords()
{
    QCOMPARE(Numbers::fromBoolean(true), u"True"_s);
    QCOMPARE(Numbers::fromBoolean(false), u"False"_s);
}

void tst_Numbers::fixedPoint_data()
{
    QTest::addColumn<qint64>("tenThousandths");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << qint64(0) << u"0"_s;
    QTest::newRow("a whole number") << qint64(100000) << u"10"_s;
    QTest::newRow("a fraction") << qint64(82500) << u"8.25"_s;
    QTest::newRow("the smallest fraction") << qint64(1) << u"0.0001"_s;
    QTest::newRow("negative") << qint64(-82500) << u"-8.25"_s;
    QTest::newRow("negative below one") << qint64(-5000) << u"-0.5"_s;
    QTest::newRow("a zero within the fraction") << qint64(10100) << u"1.01"_s;
}

void tst_Numbers::fixedPoint()
{
    QFETCH(const qint64, tenThousandths);
    QFETCH(const QString, text);
    QCOMPARE(Numbers::fromFixedPoint(tenThousandths), text);
    QCOMPARE(Numbers::toFixedPoint(text), tenThousandths);
}

void tst_Numbers::fixedPointIsRoundedToTenThousandths()
{
    QCOMPARE(Numbers::toFixedPoint(u"8.24999"), 82500);
    QCOMPARE(Numbers::toFixedPoint(u"8,25"), 82500);
    QCOMPARE(Numbers::toFixedPoint(u"0.00001"), 0);
    QCOMPARE(errorNumberOf([] { Numbers::toFixedPoint(u"large"); }), typeMismatch);
    QCOMPARE(errorNumberOf([] { Numbers::toFixedPoint(QStringView()); }), typeMismatch);
}

void tst_Numbers::everySizeUpTo100PointsComesBack()
{
    for (qint64 size = -20000; size <= 1000000; size += 7) {
        if (Numbers::toFixedPoint(Numbers::fromFixedPoint(size)) != size)
            QFAIL(qPrintable(u"%1 ten-thousandths are changed"_s.arg(size)));
    }
}

void tst_Numbers::aFixedPointBeyondItsRangeOverflows()
{
    QCOMPARE(errorNumberOf([] { Numbers::toFixedPoint(u"1e12"); }), overflow);
    QCOMPARE(errorNumberOf([] { Numbers::toFixedPoint(u"-1e300"); }), overflow);
    QCOMPARE(Numbers::toFixedPoint(u"900000000000"), qint64(9000000000000000));
}

QTEST_APPLESS_MAIN(tst_Numbers)
#include "tst_Numbers.moc"
