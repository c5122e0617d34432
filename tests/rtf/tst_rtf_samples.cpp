// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/RtfSupport.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

// Texts that other programs wrote: their plain text is what a word processor makes of them, and they come back the
// same. The folder of the repository is always read; QUILLERY_RTF_SAMPLES may name another one.
class TestRtfSamples : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void plainText_data() { addSamples(); }

    void plainText();

    void fixedPoint_data() { addSamples(); }

    void fixedPoint();

private:
    static void addSamples();
    static QString comparable(QString text);
};

namespace
{

struct Exception {
    const char *name;
    const char *reason;
};

// Where our reading differs from the other word processor's on purpose.
constexpr Exception exceptions[] = {
    {"other-damaged-03", "it makes a paragraph of an empty table of contents before a page break"},
    {"other-footnote-01", "it puts the marks of footnotes into the text"},
    {"other-image-02", "a picture counts as one blank"},
    {"other-image-03", "it makes a paragraph of an empty table of contents before a page break"},
    {"other-image-05", "it makes a paragraph of a page break between two groups"},
    {"other-image-06", "a picture counts as one blank"},
    {"other-image-08", "a picture counts as one blank"},
    {"other-plain-04", "it leaves out the second of two text boxes"},
    {"other-plain-06", "its labels of a list, which are no text"},
    {"other-table-03", "it leaves out the contents of a form field"},
    {"other-table-04", "it leaves out equations"},
    {"other-unicode-01", "it shows letters for the Symbol font, and both forms of a text that is given twice"},
    {"riched-image-01", "a picture counts as one blank"},
    {"word-list-01", "its labels of a list, which are no text"},
    {"word-list-03", "it gives a cell that is joined to the one above a paragraph of its own"},
    {"word-list-04", "a picture counts as one blank"},
    {"word-plain-02", "it leaves out paragraphs at fixed places of the page"},
    {"writer-footnote-01", "it puts the marks of footnotes into the text"},
    {"writer-footnote-02", "it puts the marks of footnotes into the text"},
};

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void TestRtfSamples::addSamples()
{
    QTest::addColumn<QString>("path");
    QStringList folders{QStringLiteral(QUILLERY_TEST_DATA "/rtf")};
    if (qEnvironmentVariableIsSet("QUILLERY_RTF_SAMPLES")) {
        folders << qEnvironmentVariable("QUILLERY_RTF_SAMPLES");
    }
    for (const QString &folder : folders) {
        const QStringList names = QDir(folder).entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name);
        QVERIFY(!names.isEmpty());
        for (const QString &name : names) {
            QTest::newRow(qPrintable(folder.section(QLatin1Char('/'), -1) + QLatin1Char('/') + name))
                << folder + QLatin1Char('/') + name;
        }
    }
}

// The other program writes list labels into the lines, thin spaces between blanks that follow each other, and ordinary
// characters for those of no or fixed width.
QString TestRtfSamples::comparable(QString text)
{
    static const QRegularExpression label(QStringLiteral("^    (\u2022|[0-9a-zA-Z.]{1,6}[.)])( |$)"));
    text.remove(QLatin1Char('\r'))
        .remove(QChar(QChar::ByteOrderMark))
        .remove(QChar(0x200B))
        .remove(QChar(QChar::SoftHyphen));
    text.replace(QStringLiteral("\u2006 "), QStringLiteral(" "));
    text.replace(QChar(0x2011), QLatin1Char('-')).replace(QChar(QChar::Nbsp), QLatin1Char(' '));
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines) {
        line.remove(label);
        while (!line.isEmpty() && line.back().isSpace()) {
            line.chop(1);
        }
    }
    return lines.join(QLatin1Char('\n')).trimmed();
}

void TestRtfSamples::plainText()
{
    QFETCH(const QString, path);
    const QString text = rtf::toPlainText(contentsOf(path));
    const QString expected = QString::fromUtf8(contentsOf(path.chopped(3) + QStringLiteral("txt")));
    const QString name = QFileInfo(path).baseName();
    const auto *exception = std::find_if(std::begin(exceptions), std::end(exceptions),
                                         [&](const Exception &e) { return name == QLatin1StringView(e.name); });
    if (exception != std::end(exceptions)) {
        QVERIFY2(comparable(text) != comparable(expected), "is no exception any more");
        return;
    }
    const QStringList lines = comparable(text).split(QLatin1Char('\n'));
    const QStringList expectedLines = comparable(expected).split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < std::min(lines.size(), expectedLines.size()); ++i) {
        QCOMPARE(lines[i], expectedLines[i]);
    }
    QCOMPARE(lines.size(), expectedLines.size());
}

void TestRtfSamples::fixedPoint()
{
    QFETCH(const QString, path);
    const QByteArray rtf = contentsOf(path);
    const auto first = rtftest::documentOf(rtf);
    const QByteArray bytes = rtf::write(*first);
    const auto second = rtftest::documentOf(bytes);
    QCOMPARE(rtf::write(*second), bytes);
    QCOMPARE(rtftest::difference(*second, *first), QString());
    QCOMPARE(rtf::toPlainText(rtf), rtf::plainText(*first));
    QCOMPARE(rtf::toPlainText(bytes), rtf::plainText(*first));
}

QTEST_MAIN(TestRtfSamples)
#include "tst_rtf_samples.moc"
