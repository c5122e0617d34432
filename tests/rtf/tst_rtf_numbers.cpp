// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/RoundTrip.h"
#include "rtf/RtfSupport.h"

#include <QRegularExpression>

// Numbers that nobody writes: each one of the samples' control words takes values at the ends of every range. The text
// is read, written and read again all the same.
class TestRtfNumbers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codePagesThatAreNone_data();
    void codePagesThatAreNone();

    void everyNumberOfTheSamples_data() { rtftest::sampleRows(); }

    void everyNumberOfTheSamples();
};

namespace
{

constexpr const char *oddNumbers[] = {"-1",    "0",          "1",           "255",         "32768",      "-32768",
                                      "65536", "2147483647", "-2147483647", "-2147483648", "99999999999"};

// The places of each control word's numbers in a text, by the word.
QMap<QString, QList<std::pair<qsizetype, qsizetype>>> numbersOf(const QByteArray &rtf)
{
    static const QRegularExpression numbered(QStringLiteral("\\\\([a-zA-Z]+)(-?[0-9]+)"));
    QMap<QString, QList<std::pair<qsizetype, qsizetype>>> places;
    for (auto it = numbered.globalMatch(QString::fromLatin1(rtf)); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        places[match.captured(1)].append({match.capturedStart(2), match.capturedLength(2)});
    }
    return places;
}

} // namespace

void TestRtfNumbers::codePagesThatAreNone_data()
{
    QTest::addColumn<QByteArray>("rtf");
    for (const QByteArray page : {"-1", "-2", "0", "1", "99999", "-2147483648"}) {
        QTest::newRow(("document " + page).constData()) << "{\\rtf1\\ansi\\ansicpg" + page + " caf\\'e9 abc\\par}";
        QTest::newRow(("font " + page).constData())
            << "{\\rtf1\\ansi{\\fonttbl{\\f0\\cpg" + page + " Arial;}}\\f0 caf\\'e9 abc\\par}";
    }
}

void TestRtfNumbers::codePagesThatAreNone()
{
    QFETCH(const QByteArray, rtf);
    QCOMPARE(rtf::toPlainText(rtf), QStringLiteral("caf\u00e9 abc"));
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
}

void TestRtfNumbers::everyNumberOfTheSamples()
{
    QFETCH(const QByteArray, whole);
    const auto numbers = numbersOf(whole);
    // Each word's first number and all of them at once, with as many values in turn as keep the sum of the readings
    // bounded.
    constexpr qsizetype mostRead = 600'000;
    const qsizetype mutants = std::max<qsizetype>(1, 2 * numbers.size() * qsizetype(std::size(oddNumbers)));
    const qsizetype step = mutants * whole.size() / mostRead + 1;
    qsizetype mutant = 0;
    for (auto word = numbers.cbegin(); word != numbers.cend(); ++word) {
        for (const qsizetype count : {qsizetype(1), word->size()}) {
            for (const char *number : oddNumbers) {
                if (++mutant % step != 0) {
                    continue;
                }
                QByteArray rtf = whole;
                for (qsizetype i = count; i-- > 0;) {
                    rtf.replace(word->at(i).first, word->at(i).second, number);
                }
                const QString fault = rtftest::roundTripFault(rtf);
                QVERIFY2(fault.isEmpty(), qPrintable(word.key() + QLatin1String(number) + QLatin1String(": ") + fault));
            }
        }
    }
}

QTEST_MAIN(TestRtfNumbers)
#include "tst_rtf_numbers.moc"
