// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintRTF.h"

#include "pages/PagedText.h"
#include "pages/Pdf.h"
#include "pages/PrintFixture.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"

#include <QBuffer>
#include <QDir>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr double pointsPerInch = 72;

// Lines that fill one page of the test's paper exactly, in the look that they have here.
constexpr int linesAPage = 40;

// So many lines of the same height, each a word of its own.
QByteArray lines(int count)
{
    QByteArray rtf("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20\\sl-324\\slmult0 ");
    for (int i = 0; i < count; ++i)
        rtf += "w" + QByteArray::number(i) + "w\\par\n";
    return rtf + "}";
}

} // namespace

// Printing to PDF files, which another program reads.
class tst_PrintRTF : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_fixture = std::make_unique<PrintFixture>();
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setOutputFormat(QPrinter::PdfFormat);
        m_printer->setResolution(600);
        m_printer->setPageSize(QPageSize(QPageSize::Letter));
        m_printer->setOutputFileName(name());
    }

    void cleanup()
    {
        QCOMPARE(m_fixture->errors.summary(), QStringList());
        m_fixture.reset();
    }

    void theDrawingRectangleCountsFromWhatCanBePrintedOn();
    void whatCannotBePrintedOnIsTheLeastMargin();
    void tinyPaperStillGetsText();
    void aShownLineIsTwoThirdsAtLeast();

    void everyPrinterCountsTheSameDots();
    void aShortTextIsOnePage();
    void aTextThatEndsAtThePagesEndNeedsNoOtherPage();
    void pagesBeginWhereTheLastOneEnded();
    void theMarginsAreAnInch_data();
    void theMarginsAreAnInch();
    void everyLineStandsInTheFileOnce();
    void textIsTextInEmbeddedFonts();
    void automaticColoursAreBlackAndOthersStay();
    void picturesArePrinted();
    void anEntryTheEntryWithItsChildrenAndTheWhole();

    void stoppedPrintingLeavesNothing();
    void stoppedPrintingLeavesTheOldFile();
    void thePrinterIsAskedOnceAPage();
    void theFileIsReplacedWhenItIsComplete();
    void withoutAFolderNothingIsPrinted();
    void aFailureIsReportedInItsName();
    void withoutAFileNothingIsPrinted();
    void aFullDiskIsAnError();

private:
    QString name() const { return m_folder->filePath(u"out.pdf"_s); }

    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden); }

    PrintExtent plant(const QByteArray &text)
    {
        Document &document = m_fixture->plant({u"Root"_s});
        m_fixture->setText(document, u"Root"_s, text);
        rawOutline(document).tree.setLabel(document.tree.root(), QString());
        return {&document, document.tree.root(), true};
    }

    // Prints and reads back.
    QList<pdf::Page> print(const PrintExtent &extent)
    {
        const PrintOutcome outcome = PrintRTF(PrintComposition(extent, QFont(u"DejaVu Sans"_s)), *m_printer,
                                              PrintMargins(), [] { return true; });
        return outcome == PrintOutcome::Printed ? pdf::pagesOf(name()) : QList<pdf::Page>();
    }

    // The number of the error that the printing ends with.
    qint32 failureOf(const PrintComposition &text)
    {
        m_fixture->errors.clear();
        PrintRTF(text, *m_printer, PrintMargins(), [] { return true; });
        const qint32 number = m_fixture->errors.count() == 0 ? 0 : m_fixture->errors.records().back().report.number;
        m_fixture->errors.clear();
        return number;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PrintFixture> m_fixture;
    std::unique_ptr<QPrinter> m_printer;
};

void tst_PrintRTF::theDrawingRectangleCountsFromWhatCanBePrintedOn()
{
    // A quarter of an inch on each side of US letter paper cannot be printed on.
    const PrinterPaper paper{12240, 15840, 360, 360};
    QCOMPARE(drawingRectangle(paper, PrintMargins()).left, 1080);
    QVERIFY(drawingRectangle(paper, PrintMargins()) == (PrintRectangle{1080, 1080, 10440, 14040}));
    QVERIFY(drawingRectangle({12240, 15840, 0, 0}, PrintMargins()) == (PrintRectangle{1440, 1440, 10800, 14400}));
    // Each side has its own.
    QVERIFY(drawingRectangle({12240, 15840, 100.4, 200.6}, {1000, 2000, 3000, 4000}) ==
            (PrintRectangle{900, 1799, 9140, 11639}));
}

void tst_PrintRTF::whatCannotBePrintedOnIsTheLeastMargin()
{
    // A quarter of an inch on each side, and wider margins that somebody set; in points.
    const QPageLayout even(QPageSize(QPageSize::Letter), QPageLayout::Portrait, QMarginsF(90, 90, 90, 90),
                           QPageLayout::Point, QMarginsF(18, 18, 18, 18));
    const PrinterPaper paper = paperOf(even, 600);
    QCOMPARE(paper.width, 12240);
    QCOMPARE(paper.height, 15840);
    QCOMPARE(paper.offsetX, 360);
    QCOMPARE(paper.offsetY, 360);
    QVERIFY(drawingRectangle(paper, PrintMargins()) == (PrintRectangle{1080, 1080, 10440, 14040}));
    // Each side its own, on paper that lies across.
    const QPageLayout uneven(QPageSize(QPageSize::Letter), QPageLayout::Landscape, QMarginsF(36, 9, 0, 54),
                             QPageLayout::Point, QMarginsF(36, 9, 0, 54));
    const PrinterPaper across = paperOf(uneven, 600);
    QCOMPARE(across.width, 15840);
    QCOMPARE(across.height, 12240);
    QCOMPARE(across.offsetX, 720);
    QCOMPARE(across.offsetY, 180);
    QVERIFY(drawingRectangle(across, PrintMargins()) == (PrintRectangle{720, 1260, 13680, 10620}));
    // A printer that prints to the paper's edges has the coordinates of the paper.
    QCOMPARE(paperOf(*m_printer).offsetX, 0);
}

void tst_PrintRTF::tinyPaperStillGetsText()
{
    const PrintRectangle place = drawingRectangle({2880, 1000, 0, 0}, PrintMargins());
    QVERIFY(place.right > place.left);
    QVERIFY(place.bottom > place.top);
}

void tst_PrintRTF::aShownLineIsTwoThirdsAtLeast()
{
    QCOMPARE(leastShownWidth(9360), 6240);
    QCOMPARE(leastShownWidth(9361), 6241);
    QCOMPARE(leastShownWidth(9362), 6241);
}

void tst_PrintRTF::everyPrinterCountsTheSameDots()
{
    // Twice as many would halve the length of a text that can be laid out.
    m_printer->setResolution(1200);
    QCOMPARE(print(plant(lines(linesAPage))).size(), 1);
    QCOMPARE(m_printer->resolution(), 600);
}

void tst_PrintRTF::aShortTextIsOnePage()
{
    Document &document = m_fixture->plant({u"Root"_s});
    const QList<pdf::Page> pages = print({&document, document.tree.root(), true});
    QCOMPARE(pages.size(), 1);
    QCOMPARE(pages.first().size, QSizeF(612, 792));
    QCOMPARE(pages.first().texts(), QStringList({u"Root"_s, u"text"_s, u"of"_s, u"Root"_s}));
}

void tst_PrintRTF::aTextThatEndsAtThePagesEndNeedsNoOtherPage()
{
    // Nine inches between the margins, in lines of 16.2 points.
    QCOMPARE(print(plant(lines(linesAPage))).size(), 1);
    const QList<pdf::Page> pages = print(plant(lines(linesAPage + 1)));
    QCOMPARE(pages.size(), 2);
    QCOMPARE(pages.last().texts(), QStringList(u"w40w"_s));
    QCOMPARE(print(plant(lines(3 * linesAPage))).size(), 3);
}

void tst_PrintRTF::pagesBeginWhereTheLastOneEnded()
{
    const PrintExtent extent = plant(lines(5 * linesAPage));
    const QList<pdf::Page> pages = print(extent);
    QCOMPARE(pages.size(), 5);
    PagedText text(PrintComposition(extent, QFont(u"DejaVu Sans"_s)), *m_printer,
                   devicePixels(*m_printer, drawingRectangle(paperOf(*m_printer), PrintMargins())).size());
    int first = 0;
    for (int page = 0; page < 5; ++page) {
        QCOMPARE(pages[page].words.first().text, u"w%1w"_s.arg(page * linesAPage));
        // "w0w" to "w9w" have 3 characters and 2 for the end of the paragraph, then they get longer.
        int expected = 0;
        for (int line = 0; line < page * linesAPage; ++line)
            expected += line < 10 ? 5 : line < 100 ? 6 : 7;
        QCOMPARE(first, expected);
        first = text.format(nullptr, {}, first);
        QCOMPARE(text.firstCharacter(page), expected);
    }
    QVERIFY(text.isWhole());
    QCOMPARE(first, text.length());
}

void tst_PrintRTF::theMarginsAreAnInch_data()
{
    QTest::addColumn<QPageSize::PageSizeId>("paper");
    QTest::addColumn<bool>("isLandscape");
    QTest::newRow("US letter") << QPageSize::Letter << false;
    QTest::newRow("A4") << QPageSize::A4 << false;
    QTest::newRow("A4 landscape") << QPageSize::A4 << true;
    QTest::newRow("A5") << QPageSize::A5 << false;
}

void tst_PrintRTF::theMarginsAreAnInch()
{
    QFETCH(const QPageSize::PageSizeId, paper);
    QFETCH(const bool, isLandscape);
    m_printer->setPageSize(QPageSize(paper));
    m_printer->setPageOrientation(isLandscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    QByteArray words;
    for (int i = 0; i < 4000; ++i)
        words += "word ";
    const QList<pdf::Page> pages = print(plant("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20\\qj " + words + "}"));
    QVERIFY(pages.size() > 2);
    const pdf::Page &page = pages[1];
    QCOMPARE(page.size.width() > page.size.height(), isLandscape);
    QRectF covered;
    for (const pdf::Word &word : page.words)
        covered |= word.place;
    // A word's place has the height of its font, which may reach a little beyond the line's own.
    constexpr double tolerance = 2;
    QVERIFY2(std::abs(covered.left() - pointsPerInch) < tolerance, qPrintable(QString::number(covered.left())));
    QVERIFY2(std::abs(page.size.width() - covered.right() - pointsPerInch) < tolerance,
             qPrintable(QString::number(covered.right())));
    QVERIFY2(std::abs(covered.top() - pointsPerInch) < tolerance, qPrintable(QString::number(covered.top())));
    // The last line may leave room for almost another one.
    const double below = page.size.height() - covered.bottom();
    QVERIFY2(below > pointsPerInch - tolerance && below < pointsPerInch + 14, qPrintable(QString::number(below)));
}

void tst_PrintRTF::everyLineStandsInTheFileOnce()
{
    QByteArray words;
    for (int i = 0; i < 3000; ++i)
        words += "w" + QByteArray::number(i) + "w ";
    QStringList found;
    for (const pdf::Page &page : print(plant("{\\rtf1 " + words + "}")))
        found << page.texts();
    QCOMPARE(found.size(), 3000);
    for (int i = 0; i < 3000; ++i)
        QCOMPARE(found[i], u"w%1w"_s.arg(i));
}

void tst_PrintRTF::textIsTextInEmbeddedFonts()
{
    const QList<pdf::Page> pages =
        print(plant("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}{\\f1 Liberation Serif;}}\\f0 Gr\\'fc\\'dfe, \\f1\\b "
                    "\\u1055?\\u1088?\\u1080?\\u1074?\\u1077?\\u1090?}"));
    QCOMPARE(pages.first().texts(), QStringList({u"Grüße,"_s, u"Привет"_s}));
    const QStringList fonts = QString::fromLatin1(pdf::run(u"pdffonts"_s, {name()})).split(u'\n').mid(2);
    QCOMPARE(fonts.filter(u"DejaVuSans"_s).size(), 1);
    QCOMPARE(fonts.filter(u"LiberationSerif-Bold"_s).size(), 1);
    for (const QString &font : fonts) {
        // Name, type, encoding, and whether it is embedded.
        if (!font.isEmpty())
            QVERIFY2(font.contains(QRegularExpression(u"Identity-H +yes "_s)), qPrintable(font));
    }
}

void tst_PrintRTF::automaticColoursAreBlackAndOthersStay()
{
    QPalette dark;
    dark.setColor(QPalette::Text, Qt::yellow);
    dark.setColor(QPalette::WindowText, Qt::yellow);
    dark.setColor(QPalette::Base, Qt::darkBlue);
    QGuiApplication::setPalette(dark);
    Document &document = m_fixture->plant({u"HHHH"_s});
    m_fixture->setText(document, u"HHHH"_s, "{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}\\fs60 HHHH\\par\\cf1 HHHH}");
    print({&document, document.tree.root(), true});
    QGuiApplication::setPalette(QPalette());
    const QImage page = pdf::picture(name(), 0);
    QVERIFY(!page.isNull());
    int black = 0;
    int red = 0;
    for (int x = 0; x < page.width(); ++x) {
        for (int y = 0; y < page.height(); ++y) {
            const QColor colour = page.pixelColor(x, y);
            black += colour == QColor(Qt::black);
            red += colour == QColor(Qt::red);
            QVERIFY(colour.blue() == colour.green());
        }
    }
    QVERIFY(black > 50);
    QVERIFY(red > 50);
    QCOMPARE(page.pixelColor(5, 5), QColor(Qt::white));
}

void tst_PrintRTF::picturesArePrinted()
{
    QImage green(10, 10, QImage::Format_RGB32);
    green.fill(Qt::green);
    QByteArray png;
    QBuffer buffer(&png);
    green.save(&buffer, "png");
    // Two inches by one, in the second line.
    print(plant("{\\rtf1\\fs20 x\\par{\\pict\\pngblip\\picwgoal2880\\pichgoal1440 " + png.toHex() + "}}"));
    const QImage page = pdf::picture(name(), 0);
    QRect covered;
    for (int x = 0; x < page.width(); ++x) {
        for (int y = 0; y < page.height(); ++y) {
            // Pictures may be stored with a little loss.
            const QColor colour = page.pixelColor(x, y);
            if (colour.green() > 200 && colour.red() < 100 && colour.blue() < 100)
                covered |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(std::abs(covered.width() - 2 * pointsPerInch) < 3);
    QVERIFY(std::abs(covered.height() - pointsPerInch) < 3);
    QVERIFY(std::abs(covered.left() - pointsPerInch) < 3);
}

void tst_PrintRTF::anEntryTheEntryWithItsChildrenAndTheWhole()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s, u"  B"_s, u" C"_s});
    const auto labels = [&](const QString &label, bool bDescendants) {
        QStringList words;
        for (const pdf::Page &page : print(m_fixture->extent(document, label, bDescendants)))
            words << page.texts();
        words.removeAll(u"text"_s);
        words.removeAll(u"of"_s);
        return words.join(u' ');
    };
    QCOMPARE(labels(u"A"_s, false), u"A A"_s);
    QCOMPARE(labels(u"A"_s, true), u"A A B B"_s);
    QCOMPARE(labels(u"Root"_s, true), u"Root Root A A B B C C"_s);
}

void tst_PrintRTF::stoppedPrintingLeavesNothing()
{
    const PrintComposition text(plant(lines(10 * linesAPage)), QFont());
    for (const int stopAfter : {1, 4, 10}) {
        int pages = 0;
        QVERIFY(PrintOutcome::Stopped ==
                PrintRTF(text, *m_printer, PrintMargins(), [&] { return ++pages < stopAfter; }));
        QCOMPARE(pages, stopAfter);
        QCOMPARE(files(), QStringList());
        QCOMPARE(m_printer->outputFileName(), name());
    }
    // The printer can be used again.
    QVERIFY(PrintOutcome::Printed == PrintRTF(text, *m_printer, PrintMargins(), [] { return true; }));
    QCOMPARE(pdf::pagesOf(name()).size(), 10);
}

void tst_PrintRTF::stoppedPrintingLeavesTheOldFile()
{
    print(plant(lines(1)));
    QFile old(name());
    QVERIFY(old.open(QIODevice::ReadOnly));
    const QByteArray before = old.readAll();
    int pages = 0;
    QVERIFY(PrintOutcome::Stopped == PrintRTF(PrintComposition(plant(lines(200)), QFont()), *m_printer, PrintMargins(),
                                              [&] { return ++pages < 3; }));
    QFile now(name());
    QVERIFY(now.open(QIODevice::ReadOnly));
    QVERIFY(now.readAll() == before);
    QCOMPARE(files(), QStringList(u"out.pdf"_s));
}

void tst_PrintRTF::thePrinterIsAskedOnceAPage()
{
    int asked = 0;
    const PrintComposition text(plant(lines(3 * linesAPage)), QFont());
    QVERIFY(PrintOutcome::Printed == PrintRTF(text, *m_printer, PrintMargins(), [&] {
                // What is not complete is not there.
                if (++asked < 3 && QFile::exists(name()))
                    QTest::qFail("too early", __FILE__, __LINE__);
                return true;
            }));
    QCOMPARE(asked, 3);
}

void tst_PrintRTF::theFileIsReplacedWhenItIsComplete()
{
    print(plant(lines(1)));
    QVERIFY(QFile::setPermissions(name(), QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(print(plant(lines(2 * linesAPage))).size(), 2);
    QCOMPARE(files(), QStringList(u"out.pdf"_s));
    QCOMPARE(QFile::permissions(name()) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}

void tst_PrintRTF::withoutAFolderNothingIsPrinted()
{
    m_printer->setOutputFileName(m_folder->filePath(u"none/out.pdf"_s));
    const PrintComposition text(plant(lines(1)), QFont());
    QCOMPARE(failureOf(text), 76);
    QCOMPARE(files(), QStringList());
}

void tst_PrintRTF::aFailureIsReportedInItsName()
{
    m_printer->setOutputFileName(m_folder->filePath(u"none/out.pdf"_s));
    const PrintComposition text(plant(lines(1)), QFont());
    QVERIFY(PrintOutcome::Failed == PrintRTF(text, *m_printer, PrintMargins(), [] { return true; }));
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"76 frmPreview PrintRTF"_s));
    m_fixture->errors.clear();
}

void tst_PrintRTF::withoutAFileNothingIsPrinted()
{
    m_printer->setOutputFileName(QString());
    m_printer->setOutputFormat(QPrinter::PdfFormat);
    const PrintComposition text(plant(lines(1)), QFont());
    QCOMPARE(failureOf(text), 5);
}

void tst_PrintRTF::aFullDiskIsAnError()
{
    print(plant(lines(20 * linesAPage)));
    const qint64 size = QFileInfo(name()).size();
    const PrintComposition text(plant(lines(20 * linesAPage)), QFont());
    for (const qint64 room : {qint64(0), qint64(100), size / 3, size * 9 / 10, size - 1}) {
        const FullDisk disk{rlim_t(room)};
        // The printer notices by itself, or the file is seen to be incomplete.
        const qint32 number = failureOf(text);
        QVERIFY2(number == 61 || number == 75, qPrintable(u"%1 at %2"_s.arg(number).arg(room)));
        QCOMPARE(files(), QStringList(u"out.pdf"_s));
        QCOMPARE(QFileInfo(name()).size(), size);
    }
}

QTEST_MAIN(tst_PrintRTF)
#include "tst_PrintRTF.moc"
