// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryText.h"
#include "model/SealedDocument.h"
#include "pages/PageFormatter.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace
{

constexpr int dotsPerInch = 600;
const QSizeF pageSize(6 * dotsPerInch, 8 * dotsPerInch);

QByteArray paragraphs(int count, const QByteArray &words = "some words that fill the line of a page")
{
    QByteArray rtf("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs24 ");
    for (int i = 0; i < count; ++i) {
        rtf += "p" + QByteArray::number(i) + " " + words + "\\par\n";
    }
    return rtf + "}";
}

// A text on pages of its own, gone through from character to character.
class FormattedRtf : public PageFormatter
{
public:
    FormattedRtf(const QByteArray &rtf, const QFont &base, QPaintDevice &device, const QSizeF &size)
        : PageFormatter(read(rtf, base), device, size)
    {
    }

    // Draws the page that holds a character, if there is a painter. The answer is the first character of the next page;
    // length() behind the last.
    int format(QPainter *painter, const QPointF &corner, int first) const
    {
        int page = pageCount() - 1;
        while (page > 0 && firstCharacter(page) > first)
            --page;
        if (painter)
            drawSheet(*painter, corner, sheet(page));
        return page + 1 < pageCount() ? firstCharacter(page + 1) : length();
    }

private:
    static std::unique_ptr<QTextDocument> read(const QByteArray &rtf, const QFont &base)
    {
        auto document = std::make_unique<SealedDocument>();
        document->setUndoRedoEnabled(false);
        document->setDefaultFont(base);
        readEntryText(rtf, *document);
        return document;
    }
};

} // namespace

// Pages as a printer gets them, in PDF files read by another program.
class TestPageFormatter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aShortTextIsOnePage();
    void anEmptyTextIsOneEmptyPage();
    void eachPageGoesOnWhereTheLastOneEnded();
    void aTextThatEndsAtThePagesEndNeedsNoOtherPage();
    void everyLineStandsInTheFileOnce_data();
    void everyLineStandsInTheFileOnce();
    void textIsBlackOnWhite();
    void indentsAreAsWideOnPaper();
    void distancesAreAsTallOnPaper();
    void picturesLargerThanAPageAreMadeToFit();
    void nothingLiesBeyondThePage_data();
    void nothingLiesBeyondThePage();
    void whatFitsKeepsItsPlace();
    void whatStaysWithTheNextGoesToItsPage();
    void aRowOfHeadingsLeavesNoPageEmpty();
    void pagesMayHavePartsOfAPixel();
    void namesOfFilesAreNotFollowed();

private:
    // Prints the text and gives the words of each page.
    QList<QStringList> wordsOf(const QByteArray &rtf);

    QTemporaryDir m_folder;
    std::unique_ptr<QPdfWriter> m_device;
};

void TestPageFormatter::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_device = std::make_unique<QPdfWriter>(m_folder.filePath(QStringLiteral("metrics.pdf")));
    m_device->setResolution(dotsPerInch);
}

QList<QStringList> TestPageFormatter::wordsOf(const QByteArray &rtf)
{
    const QString name = m_folder.filePath(QStringLiteral("pages.pdf"));
    {
        QPdfWriter writer(name);
        writer.setResolution(dotsPerInch);
        const FormattedRtf pages(rtf, QFont(), writer, pageSize);
        QPainter painter(&writer);
        int first = 0;
        while ((first = pages.format(&painter, QPointF(0, 0), first)) < pages.length()) {
            writer.newPage();
        }
    }
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), name, QStringLiteral("-")});
    if (!reader.waitForFinished() || reader.exitCode() != 0) {
        qWarning("pdftotext is needed: %s", qPrintable(reader.errorString()));
        return {};
    }
    QList<QStringList> words;
    const QStringList pages = QString::fromUtf8(reader.readAllStandardOutput()).split(QLatin1Char('\f'));
    for (const QString &page : pages) {
        words << page.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    }
    words.removeLast(); // a form feed ends each page
    return words;
}

void TestPageFormatter::aShortTextIsOnePage()
{
    const FormattedRtf pages(paragraphs(3), QFont(), *m_device, pageSize);
    QCOMPARE(pages.pageCount(), 1);
    QCOMPARE(pages.format(nullptr, {}, 0), pages.length());
    QCOMPARE(wordsOf(paragraphs(3)).size(), 1);
}

void TestPageFormatter::anEmptyTextIsOneEmptyPage()
{
    const FormattedRtf pages({}, QFont(), *m_device, pageSize);
    QCOMPARE(pages.pageCount(), 1);
    QCOMPARE(pages.format(nullptr, {}, 0), 0);
}

void TestPageFormatter::eachPageGoesOnWhereTheLastOneEnded()
{
    const FormattedRtf pages(paragraphs(200), QFont(), *m_device, pageSize);
    QVERIFY(pages.pageCount() > 3);
    int first = 0;
    for (int page = 0; page < pages.pageCount(); ++page) {
        QCOMPARE(pages.firstCharacter(page), first);
        const int next = pages.format(nullptr, {}, first);
        QVERIFY(next > first);
        // Any character of a page means that page.
        QCOMPARE(pages.format(nullptr, {}, next - 1), next);
        first = next;
    }
    QCOMPARE(first, pages.length());
}

void TestPageFormatter::aTextThatEndsAtThePagesEndNeedsNoOtherPage()
{
    int perPage = 1;
    while (FormattedRtf(paragraphs(perPage + 1, "x"), QFont(), *m_device, pageSize).pageCount() == 1) {
        ++perPage;
    }
    QVERIFY(perPage > 5);
    QCOMPARE(wordsOf(paragraphs(perPage, "x")).size(), 1);
    QCOMPARE(wordsOf(paragraphs(2 * perPage, "x")).size(), 2);
    QCOMPARE(wordsOf(paragraphs(2 * perPage + 1, "x")).size(), 3);
}

void TestPageFormatter::everyLineStandsInTheFileOnce_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<int>("count");
    const auto numbered = [](int count) {
        QByteArray words;
        for (int i = 0; i < count; ++i) {
            words += "w" + QByteArray::number(i) + "w ";
        }
        return words;
    };
    QTest::newRow("short paragraphs") << paragraphs(1, numbered(10)) << 10;
    QTest::newRow("a paragraph over several pages") << paragraphs(1, numbered(3000)) << 3000;
    QTest::newRow("a list") << "{\\rtf1{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}" +
                                   numbered(2000).replace(" ", "\\par ") + "}"
                            << 2000;
    QByteArray table("{\\rtf1 ");
    for (int row = 0; row < 150; ++row) {
        table += "\\trowd\\cellx4000\\cellx8000\\intbl w" + QByteArray::number(2 * row) + "w\\line x\\cell w" +
                 QByteArray::number(2 * row + 1) + "w\\cell\\row\n";
    }
    QTest::newRow("a table") << table + "\\pard}" << 300;
    QTest::newRow("a cell over several pages")
        << "{\\rtf1\\trowd\\cellx3000\\cellx8000\\intbl side\\cell " + numbered(1500) + "\\cell\\row\\pard}" << 1500;
}

void TestPageFormatter::everyLineStandsInTheFileOnce()
{
    QFETCH(const QByteArray, rtf);
    QFETCH(const int, count);
    QList<int> found;
    const QList<QStringList> pages = wordsOf(rtf);
    QVERIFY(!pages.isEmpty());
    static const QRegularExpression numbered(QStringLiteral("^w(\\d+)w$"));
    for (const QStringList &page : pages) {
        for (const QString &word : page) {
            if (const auto match = numbered.match(word); match.hasMatch()) {
                found << match.captured(1).toInt();
            }
        }
    }
    QCOMPARE(found.size(), count);
    QVERIFY(std::is_sorted(found.cbegin(), found.cend()));
    QCOMPARE(found.value(0), 0);
    QCOMPARE(found.value(count - 1), count - 1);
}

void TestPageFormatter::textIsBlackOnWhite()
{
    QPalette dark;
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Base, Qt::black);
    QGuiApplication::setPalette(dark);
    QImage image(600, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        const FormattedRtf pages("{\\rtf1\\fs80 HHHH}", QFont(), image, image.size());
        QPainter painter(&image);
        pages.format(&painter, {}, 0);
    }
    QGuiApplication::setPalette(QPalette());
    bool hasBlack = false;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            hasBlack = hasBlack || image.pixel(x, y) == qRgb(0, 0, 0);
        }
    }
    QVERIFY(hasBlack);
}

void TestPageFormatter::indentsAreAsWideOnPaper()
{
    constexpr int dpi = 300;
    QImage image(3 * dpi, dpi, QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(dpi / 0.0254));
    image.setDotsPerMeterY(qRound(dpi / 0.0254));
    const auto leftEdge = [&image](const QByteArray &rtf) {
        image.fill(Qt::white);
        const FormattedRtf pages(rtf, QFont(), image, image.size());
        QPainter painter(&image);
        pages.format(&painter, {}, 0);
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (qGray(image.pixel(x, y)) < 100) {
                    return x;
                }
            }
        }
        return -1;
    };
    const int none = leftEdge("{\\rtf1\\fs40 H}");
    QVERIFY(none >= 0);
    // Within a point.
    const auto isInch = [](int distance) { return qAbs(distance - dpi) <= dpi / 72; };
    for (const QByteArray &indents :
         {QByteArray("\\li1440"), QByteArray("\\fi1440"), QByteArray("\\li720\\fi720"), QByteArray("\\tx1440\\tab"),
          QByteArray("\\trowd\\trleft0\\trgaph0\\cellx1440\\cellx2880\\intbl\\cell")}) {
        const int left = leftEdge("{\\rtf1\\fs40" + indents + " H}") - none;
        QVERIFY2(isInch(left), qPrintable(QString::fromLatin1(indents) + QStringLiteral(": %1").arg(left)));
    }
}

void TestPageFormatter::distancesAreAsTallOnPaper()
{
    constexpr int dpi = 300;
    QImage image(dpi, 3 * dpi, QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(dpi / 0.0254));
    image.setDotsPerMeterY(qRound(dpi / 0.0254));
    const auto lowest = [&image](const QByteArray &rtf) {
        image.fill(Qt::white);
        const FormattedRtf pages(rtf, QFont(), image, image.size());
        QPainter painter(&image);
        pages.format(&painter, {}, 0);
        for (int y = image.height() - 1; y >= 0; --y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qGray(image.pixel(x, y)) < 100) {
                    return y;
                }
            }
        }
        return -1;
    };
    const int none = lowest("{\\rtf1\\fs20 H\\par H}");
    for (const QByteArray &distance : {QByteArray("\\sb1440"), QByteArray("\\sb720\\sa1440")}) {
        const int down = lowest("{\\rtf1\\fs20" + distance + " H\\par\\sa0 H}") - none;
        QVERIFY2(qAbs(down - dpi) <= dpi / 72,
                 qPrintable(QString::fromLatin1(distance) + QStringLiteral(": %1").arg(down)));
    }
}

void TestPageFormatter::picturesLargerThanAPageAreMadeToFit()
{
    const FormattedRtf pages("{\\rtf1 a\\par{\\pict\\wmetafile8\\picwgoal30000\\pichgoal30000 0102}\\par b}", QFont(),
                             *m_device, pageSize);
    QVERIFY2(pages.pageCount() <= 3, qPrintable(QString::number(pages.pageCount())));
    int first = 0;
    int count = 0;
    while (first < pages.length()) {
        first = pages.format(nullptr, {}, first);
        ++count;
    }
    QCOMPARE(count, pages.pageCount());
}

namespace
{

// A page of four inches by three, at a hundred dots to the inch.
constexpr int coarse = 100;

QImage coarsePage(const QByteArray &rtf)
{
    QImage image(4 * coarse, 3 * coarse, QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(coarse / 0.0254));
    image.setDotsPerMeterY(qRound(coarse / 0.0254));
    image.fill(Qt::white);
    const FormattedRtf pages(rtf, QFont(QStringLiteral("DejaVu Sans")), image, image.size());
    QPainter painter(&image);
    pages.format(&painter, {}, 0);
    return image;
}

QRect placeOf(const QImage &image, QRgb colour)
{
    QRect place;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) == colour) {
                place |= QRect(x, y, 1, 1);
            }
        }
    }
    return place;
}

// A red square without a margin of its own, so many twips wide, which is cut off when it lies beyond the page.
QByteArray redSquare(int twips)
{
    QImage red(10, 10, QImage::Format_RGB32);
    red.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    red.save(&buffer, "png");
    const QByteArray size = QByteArray::number(twips);
    return "{\\pict\\pngblip\\picwgoal" + size + "\\pichgoal" + size + " " + png.toHex() + "}";
}

} // namespace

void TestPageFormatter::nothingLiesBeyondThePage_data()
{
    QTest::addColumn<QByteArray>("rtf");
    const QByteArray square = redSquare(300);
    QTest::newRow("the last column of a wide table")
        << "{\\rtf1\\trowd\\cellx6000\\cellx12000\\intbl x\\cell " + square + "\\cell\\row\\pard}";
    QTest::newRow("a table that begins far right")
        << "{\\rtf1\\trowd\\trleft9000\\cellx9400\\cellx12000\\intbl x\\cell " + square + "\\cell\\row\\pard}";
    QTest::newRow("a table that begins too far left")
        << "{\\rtf1\\trowd\\trleft-900\\cellx3000\\intbl " + square + "\\cell\\row\\pard}";
    QTest::newRow("a left indent") << "{\\rtf1\\li9000 " + square + "}";
    QTest::newRow("a left indent before the page") << "{\\rtf1\\li-2000 " + square + "}";
    QTest::newRow("a right indent") << "{\\rtf1\\ri9000 " + square + "}";
    QTest::newRow("both indents") << "{\\rtf1\\li3000\\ri3000 " + square + "}";
    QTest::newRow("a first line's indent") << "{\\rtf1\\fi9000 " + square + "}";
    QTest::newRow("a first line before the page") << "{\\rtf1\\fi-2000 " + square + "}";
    QTest::newRow("an indent in a cell") << "{\\rtf1\\trowd\\cellx2000\\cellx4000\\intbl x\\cell\\li9000 " + square +
                                                "\\cell\\row\\pard}";
}

void TestPageFormatter::nothingLiesBeyondThePage()
{
    QFETCH(const QByteArray, rtf);
    const QRect place = placeOf(coarsePage(rtf), qRgb(255, 0, 0));
    constexpr int side = 300 * coarse / 1440;
    QVERIFY2(qAbs(place.width() - side) <= 1 && qAbs(place.height() - side) <= 1,
             qPrintable(QStringLiteral("%1 x %2").arg(place.width()).arg(place.height())));
}

void TestPageFormatter::whatFitsKeepsItsPlace()
{
    // A picture as wide as the page, in a paragraph that is not: it stays a square.
    const QRect picture = placeOf(coarsePage("{\\rtf1\\li1440\\ri720 " + redSquare(4 * 1440) + "}"), qRgb(255, 0, 0));
    QVERIFY2(qAbs(picture.left() - coarse) <= 1, qPrintable(QString::number(picture.left())));
    QVERIFY2(picture.width() > 5 * coarse / 2 - 5 && picture.width() <= 5 * coarse / 2,
             qPrintable(QString::number(picture.width())));
    QVERIFY(qAbs(picture.width() - picture.height()) <= 1);
    // In a cell as well.
    const QRect cell = placeOf(
        coarsePage("{\\rtf1\\trowd\\cellx1440\\cellx2880\\intbl x\\cell " + redSquare(4 * 1440) + "\\cell\\row\\pard}"),
        qRgb(255, 0, 0));
    QVERIFY(cell.left() >= coarse && cell.right() <= 2 * coarse && cell.width() > coarse * 8 / 10);
    // What is no wider than the page is not touched.
    const QRect table = placeOf(
        coarsePage("{\\rtf1\\trowd\\cellx2880\\cellx5600\\intbl x\\cell " + redSquare(720) + "\\cell\\row\\pard}"),
        qRgb(255, 0, 0));
    QVERIFY(table.left() >= 2 * coarse && table.left() < 2 * coarse + 10);
    const QRect indent = placeOf(coarsePage("{\\rtf1\\li1440\\fi720 " + redSquare(720) + "}"), qRgb(255, 0, 0));
    QCOMPARE(indent.left(), 3 * coarse / 2);
}

void TestPageFormatter::whatStaysWithTheNextGoesToItsPage()
{
    const auto text = [](int before, const QByteArray &heading) {
        return "{\\rtf1 " + QByteArray("x\\par ").repeated(before) + "\\pard" + heading + " H\\par\\pard T\\par y}";
    };
    // As many lines as leave one more on the page.
    int before = 1;
    while (FormattedRtf("{\\rtf1 " + QByteArray("x\\par ").repeated(before + 1) + "y}", QFont(), *m_device, pageSize)
               .pageCount() == 1) {
        ++before;
    }
    const int headingStart = before * 3;
    const FormattedRtf loose(text(before, ""), QFont(), *m_device, pageSize);
    QCOMPARE(loose.firstCharacter(1), headingStart + 3);
    const FormattedRtf kept(text(before, "\\keepn"), QFont(), *m_device, pageSize);
    QCOMPARE(kept.pageCount(), 2);
    QCOMPARE(kept.firstCharacter(1), headingStart);
    // Two in a row go together.
    const FormattedRtf two(text(before - 1, "\\keepn G\\par"), QFont(), *m_device, pageSize);
    QCOMPARE(two.firstCharacter(1), headingStart - 3);
    // With room for the next paragraph it stays.
    const FormattedRtf room(text(before - 1, "\\keepn"), QFont(), *m_device, pageSize);
    QCOMPARE(room.firstCharacter(1), headingStart + 3);
}

void TestPageFormatter::aRowOfHeadingsLeavesNoPageEmpty()
{
    const QByteArray many = "{\\rtf1\\keepn " + QByteArray("H\\par ").repeated(500) + "}";
    const QByteArray loose = QByteArray(many).replace("\\keepn", "");
    QCOMPARE(FormattedRtf(many, QFont(), *m_device, pageSize).pageCount(),
             FormattedRtf(loose, QFont(), *m_device, pageSize).pageCount());
}

void TestPageFormatter::pagesMayHavePartsOfAPixel()
{
    // A picture as tall as the page and a line on each, many times: none of it is to be seen on the page before.
    QImage image(300, 300, QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(96 / 0.0254));
    image.setDotsPerMeterY(qRound(96 / 0.0254));
    QImage green(10, 10, QImage::Format_RGB32);
    green.fill(Qt::green);
    QByteArray png;
    QBuffer buffer(&png);
    green.save(&buffer, "png");
    const QByteArray picture = "{\\pict\\pngblip\\picwgoal3000\\pichgoal3000 " + png.toHex() + "}\\par ";
    const QByteArray heading = "{\\pard\\keepn H\\par}\\pard ";
    const FormattedRtf pages("{\\rtf1 " + QByteArray("x\\par\\par\\par\\par " + picture).repeated(30) + heading +
                                 picture + "}",
                             QFont(), image, QSizeF(299.8, 250.99));
    QVERIFY(pages.pageCount() > 30);
    for (int page = 0; page < pages.pageCount(); ++page) {
        image.fill(Qt::white);
        QPainter painter(&image);
        pages.drawSheet(painter, {}, pages.sheet(page));
        painter.end();
        int rows = 0;
        for (int y = 0; y < image.height(); ++y) {
            rows += image.pixel(100, y) == qRgb(0, 255, 0);
        }
        QVERIFY2(rows == 0 || rows == 200, qPrintable(QStringLiteral("%1 on page %2").arg(rows).arg(page)));
    }
}

void TestPageFormatter::namesOfFilesAreNotFollowed()
{
    const QString secret = m_folder.filePath(QStringLiteral("secret.png"));
    QImage picture(20, 20, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(secret));
    QImage image(300, 300, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        const FormattedRtf pages("{\\rtf1{\\field{\\*\\fldinst INCLUDEPICTURE \"" + secret.toUtf8() +
                                     "\"}{\\fldrslt x}}}",
                                 QFont(), image, image.size());
        QPainter painter(&image);
        pages.format(&painter, {}, 0);
    }
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            QVERIFY(image.pixel(x, y) != qRgb(255, 0, 0));
        }
    }
}

QTEST_MAIN(TestPageFormatter)
#include "tst_PageFormatter.moc"
