// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Rtf.h"
#include "rtf/TextScan.h"

#include <QDirIterator>
#include <QFile>
#include <QTest>

#include <random>

// The quick look through RTF: it must never miss what the text holds, and should not find what it does not.
class TestRtfTextScan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void found_data();
    void found();
    void notFound_data();
    void notFound();
    void noOtherLetterIsAsciiInAnotherCase();
    void nothingIsMissed_data();
    void nothingIsMissed();
};

namespace
{

void addRow(const char *name, const char *body, const QString &expression)
{
    QTest::newRow(name) << QByteArray(QByteArray("{\\rtf1\\ansi{\\fonttbl{\\f0 Hidden;}}") + body + '}') << expression;
}

void addColumns()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("expression");
}

} // namespace

void TestRtfTextScan::found_data()
{
    addColumns();
    addRow("plain", "some words here", QStringLiteral("words"));
    addRow("in another case", "some WORDS here", QStringLiteral("Words"));
    addRow("in two looks", "wo{\\b rd}s", QStringLiteral("words"));
    addRow("over a line of the file", "wo\r\nrds", QStringLiteral("words"));
    addRow("escaped", "w\\'6frds", QStringLiteral("words"));
    addRow("a Unicode escape of a letter", "w\\u111?rds", QStringLiteral("words"));
    addRow("a Kelvin sign", "o\\u8490?", QStringLiteral("ok"));
    addRow("around a bookmark", "wo{\\*\\bkmkstart name}rds", QStringLiteral("words"));
    addRow("around something unknown", "wo{\\*\\unheardof name}rds", QStringLiteral("words"));
    addRow("around an ignorable group in a group", "wo{\\*{\\unheardof name}}rds", QStringLiteral("words"));
    addRow("around a picture", "wo{\\pict\\pngblip 89}rds", QStringLiteral("rds"));
    addRow("a picture is a blank", "wo{\\pict\\wmetafile8 0102}rds", QStringLiteral("o r"));
    addRow("a link", "{\\field{\\*\\fldinst{HYPERLINK \"there\"}}{\\fldrslt wo}}rds", QStringLiteral("words"));
    addRow("a link in pieces", "w{\\field{\\*\\fldinst{HYPERLINK }{\\b \"a\"}}{\\fldrslt {o}}}rds",
           QStringLiteral("words"));
    addRow("a link that shows its address", "a{\\field{\\*\\fldinst{HYPERLINK \"words\"}}{\\fldrslt}}b",
           QStringLiteral("words"));
    addRow("a field of a symbol", "w{\\field{\\*\\fldinst SYMBOL 111}}rds", QStringLiteral("words"));
    addRow("words in a field that are none", "wo{\\field oops{\\fldrslt rds}}", QStringLiteral("words"));
    addRow("a shape", "wo{\\shp{\\*\\shpinst{\\shptxt rds}}}", QStringLiteral("rds"));
    addRow("beside what is not ASCII", "M\\'fcller & sons", QStringLiteral("\u00fcller"));
    addRow("nothing but what is not ASCII", "\\'fc", QStringLiteral("\u00fc"));
}

void TestRtfTextScan::found()
{
    QFETCH(const QByteArray, rtf);
    QFETCH(const QString, expression);
    QVERIFY(rtf::TextScan(expression).mayBeIn(rtf));
}

void TestRtfTextScan::notFound_data()
{
    addColumns();
    addRow("plain", "some words here", QStringLiteral("worlds"));
    addRow("the name of a font", "some words", QStringLiteral("hidden"));
    addRow("a control word", "some \\b words", QStringLiteral("rtf"));
    addRow("a link's target", "{\\field{\\*\\fldinst{HYPERLINK \"there\"}}{\\fldrslt word}}", QStringLiteral("there"));
    addRow("behind the end", "word}{other", QStringLiteral("other"));
    addRow("beside what is not ASCII", "Muller", QStringLiteral("\u00fcllerx"));
    addRow("a bullet's text", "{\\listtext\\'b7 item}word", QStringLiteral("item"));
}

void TestRtfTextScan::notFound()
{
    QFETCH(const QByteArray, rtf);
    QFETCH(const QString, expression);
    QVERIFY(!rtf::TextScan(expression).mayBeIn(rtf));
}

void TestRtfTextScan::noOtherLetterIsAsciiInAnotherCase()
{
    QList<int> found;
    for (int unit = 0x80; unit <= 0xFFFF; ++unit) {
        for (char32_t ascii = 0x20; ascii < 0x7F; ++ascii) {
            const QChar one(static_cast<char16_t>(unit));
            const QChar other(static_cast<char16_t>(ascii));
            if (one.toCaseFolded() == other.toCaseFolded())
                found.append(unit);
        }
    }
    // Each is found twice, as a small letter and as a capital.
    QCOMPARE(found, QList<int>({0x17F, 0x17F, 0x212A, 0x212A}));
}

void TestRtfTextScan::nothingIsMissed_data()
{
    QTest::addColumn<QString>("path");
    for (const char *folder :
         {QUILLERY_SOURCE_DIR "/fuzz/seeds/fuzz_rtf", QUILLERY_TEST_DATA "/rtf-findings", QUILLERY_TEST_DATA "/rtf"}) {
        QDirIterator files(QString::fromLatin1(folder), QDir::Files);
        while (files.hasNext()) {
            const QString path = files.next();
            if (!path.endsWith(QStringLiteral(".txt")) && !path.endsWith(QStringLiteral(".md")))
                QTest::newRow(qPrintable(files.fileName())) << path;
        }
    }
}

// Pieces of the text of files, whole and damaged at random.
void TestRtfTextScan::nothingIsMissed()
{
    QFETCH(const QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.read(20'000);
    std::mt19937 random(3);
    const auto below = [&random](qsizetype bound) { return bound > 0 ? qsizetype(random() % quint64(bound)) : 0; };
    static const char *const pieces[] = {"{",        "}",     "\\",     "\\*",        "{\\*\\x ", "\\b ",
                                         "\\u8364?", "a",     " ",      "\\fldrslt ", "{\\field", "\\row ",
                                         "{\\pict ", "\\'41", "\\uc0 ", "{\\fldinst "};
    for (int round = 0; round < 40; ++round) {
        QByteArray damaged = whole;
        for (int i = 0; i < round / 4; ++i)
            damaged.replace(below(damaged.size()), below(4), pieces[below(std::ssize(pieces))]);
        const QString text = rtf::toPlainText(damaged);
        for (int i = 0; i < 40; ++i) {
            const QString expression = text.mid(below(text.size()), 1 + below(12));
            if (!expression.isEmpty() && !rtf::TextScan(expression).mayBeIn(damaged))
                QFAIL(qPrintable(expression + QStringLiteral(" in ") + QString::fromLatin1(damaged)));
        }
    }
}

QTEST_MAIN(TestRtfTextScan)
#include "tst_rtf_text_scan.moc"
