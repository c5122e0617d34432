// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PagedText.h"
#include "support/RawOutline.h"

#include "pages/PrintFixture.h"

#include <QPainter>
#include <QPdfWriter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int dotsPerInch = 600;
// Not in whole pixels, like that of A4 paper.
const QSizeF pageSize(6 * dotsPerInch + 0.3, 3 * dotsPerInch + 0.797);

} // namespace

// A text on pages, made of pieces.
class tst_PagedText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void init() { m_fixture = std::make_unique<PrintFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void anEmptyTextIsOneEmptyPage();
    void piecesBreakWhereTheWholeDoes_data();
    void piecesBreakWhereTheWholeDoes();
    void aLongTextBreaksWhereTheWholeDoes();
    void whatIsTooTallIsLaidOutInPieces();
    void aTableThatIsTooTallIsAnError();
    void anyPageCanBeDrawnAgain();
    void aPageOfNothingIsNone();
    void onlyAFewPiecesAreKept();
    void aDamagedTextIsReportedOnce();

private:
    std::unique_ptr<PagedText> textOf(const PrintExtent &extent, qsizetype characters, qsizetype lines = INT_MAX)
    {
        return std::make_unique<PagedText>(PrintComposition(extent, QFont(u"DejaVu Sans"_s)), *m_device, pageSize,
                                           PieceLength{characters, lines});
    }

    PrintExtent plantRandom(quint32 seed);
    static QImage picture(PagedText &text, int page);

    QTemporaryDir m_folder;
    std::unique_ptr<QPdfWriter> m_device;
    std::unique_ptr<PrintFixture> m_fixture;
};

namespace
{

// First characters of the pages, got by formatting one after the other.
QList<int> startsOf(PagedText &text)
{
    QList<int> starts;
    int first = 0;
    do {
        starts << first;
        first = text.format(nullptr, {}, first);
    } while (!text.isWhole() || first < text.length());
    return starts;
}

} // namespace

void tst_PagedText::initTestCase()
{
    m_device = std::make_unique<QPdfWriter>(m_folder.filePath(u"metrics.pdf"_s));
    m_device->setResolution(dotsPerInch);
}

// Entries with texts of all lengths and line heights, some with lists and tables, at all levels.
PrintExtent tst_PagedText::plantRandom(quint32 seed)
{
    QRandomGenerator random(seed);
    const QList<QByteArray> looks{"",
                                  "\\sa300 ",
                                  "\\sb300 ",
                                  "\\sl360\\slmult1 ",
                                  "\\sl-500\\slmult0 ",
                                  "\\fs40 ",
                                  "\\li600 ",
                                  "\\sl200\\slmult1\\sa200 "};
    QStringList outline{u"Root"_s};
    for (int i = 0; i < 120; ++i)
        outline << QString(1 + i % 6, u' ') + u"entry%1"_s.arg(i);
    Document &document = m_fixture->plant(outline);
    for (int i = 0; i < 120; ++i) {
        QByteArray rtf("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 ");
        const int paragraphs = int(random.bounded(6));
        for (int p = 0; p < paragraphs; ++p) {
            rtf += "\\pard" + looks[random.bounded(looks.size())];
            const int words = int(random.bounded(60));
            for (int w = 0; w < words; ++w)
                rtf += "word" + QByteArray::number(random.bounded(1000)) + " ";
            rtf += random.bounded(8) == 0 ? "\\par\\trowd\\cellx3000\\cellx6000\\intbl x\\cell y\\cell\\row\\pard "
                                          : "\\par ";
        }
        m_fixture->setText(document, u"entry%1"_s.arg(i), paragraphs == 0 ? QByteArray() : rtf + "}");
    }
    return m_fixture->extent(document, u"Root"_s, true);
}

QImage tst_PagedText::picture(PagedText &text, int page)
{
    QImage image(600, 300, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(600 / pageSize.width(), 300 / pageSize.height());
    text.draw(painter, {}, page);
    return image;
}

void tst_PagedText::anEmptyTextIsOneEmptyPage()
{
    Document &document = m_fixture->plant({u"Root"_s});
    rawOutline(document).tree.setLabel(document.tree.root(), QString());
    rawOutline(document).tree.setStoredText(document.tree.root(), QByteArray());
    const auto text = textOf({&document, document.tree.root(), true}, 100);
    QCOMPARE(text->format(nullptr, {}, 0), 0);
    QVERIFY(text->isWhole());
    QCOMPARE(text->pageCount(), 1);
    QVERIFY(!text->layOutMore());
}

void tst_PagedText::piecesBreakWhereTheWholeDoes_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 6; ++seed)
        QTest::addRow("text %u", seed) << seed;
}

void tst_PagedText::piecesBreakWhereTheWholeDoes()
{
    QFETCH(const quint32, seed);
    const PrintExtent extent = plantRandom(seed);
    const auto whole = textOf(extent, INT_MAX);
    const QList<int> expected = startsOf(*whole);
    QVERIFY(expected.size() > 20);
    QCOMPARE(whole->pageCount(), expected.size());
    for (const qsizetype pieceLength : {1, 300, 2000}) {
        const auto pieces = textOf(extent, pieceLength);
        QCOMPARE(startsOf(*pieces), expected);
        QCOMPARE(pieces->length(), whole->length());
        QCOMPARE(pieces->pageCount(), whole->pageCount());
        for (int page = 0; page < whole->pageCount(); page += 5)
            QVERIFY2(picture(*pieces, page) == picture(*whole, page), qPrintable(QString::number(page)));
    }
    for (const qsizetype lines : {1, 4}) {
        const auto pieces = textOf(extent, 2000, lines);
        QCOMPARE(startsOf(*pieces), expected);
        QCOMPARE(pieces->length(), whole->length());
    }
}

void tst_PagedText::aLongTextBreaksWhereTheWholeDoes()
{
    // A text of its own with all that depends on what stands above: numbers, distances, tables and breaks.
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s, u" B"_s});
    QByteArray rtf("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 ");
    for (int i = 0; i < 60; ++i) {
        const QByteArray number = QByteArray::number(i);
        rtf += "\\pard\\sb200\\sa300 over " + number + "\\par\\pard ";
        rtf += "{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}one\\par two " + QByteArray("words ").repeated(i) +
               "\\par three\\par\\pard ";
        if (i % 7 == 0)
            rtf += "\\trowd\\cellx3000\\cellx6000\\intbl x\\cell y\\cell\\row\\pard ";
        if (i % 13 == 0)
            rtf += "\\pagebb new\\par\\pard\\keepn kept\\par\\pard ";
    }
    m_fixture->setText(document, u"A"_s, rtf + "}");
    const PrintExtent extent = m_fixture->extent(document, u"Root"_s, true);
    const auto whole = textOf(extent, INT_MAX);
    const QList<int> expected = startsOf(*whole);
    QVERIFY(expected.size() > 10);
    for (const qsizetype lines : {1, 10, 100}) {
        const auto pieces = textOf(extent, INT_MAX, lines);
        QCOMPARE(startsOf(*pieces), expected);
        QCOMPARE(pieces->length(), whole->length());
        for (int page = 0; page < whole->pageCount(); page += 3)
            QVERIFY2(picture(*pieces, page) == picture(*whole, page), qPrintable(QString::number(page)));
    }
}

namespace
{

// So fine that the layout reaches over some 40,000 lines only.
constexpr int finest = 4800;
constexpr int tooManyLines = 48000;

} // namespace

void tst_PagedText::whatIsTooTallIsLaidOutInPieces()
{
    Document &document = m_fixture->plant({u"Root"_s});
    m_fixture->setText(document, u"Root"_s, "{\\rtf1 " + QByteArray("x\\par ").repeated(tooManyLines) + "y}");
    QPdfWriter device(m_folder.filePath(u"fine.pdf"_s));
    device.setResolution(finest);
    const QSizeF page(6 * finest, 9 * finest);
    PagedText text(PrintComposition({&document, document.tree.root(), true}, QFont(u"DejaVu Sans"_s)), device, page);
    const QList<int> starts = startsOf(text);
    QVERIFY(starts.size() > tooManyLines / 100);
    QCOMPARE(text.pageCount(), starts.size());
    // Every page between the first and the last has as many lines.
    for (qsizetype i = 3; i < starts.size(); ++i)
        QCOMPARE(starts[i] - starts[i - 1], starts[2] - starts[1]);
    QVERIFY(text.length() - starts.last() <= starts[2] - starts[1]);
}

void tst_PagedText::aTableThatIsTooTallIsAnError()
{
    Document &document = m_fixture->plant({u"Root"_s});
    m_fixture->setText(document, u"Root"_s,
                       "{\\rtf1\\trowd\\cellx3000\\intbl " + QByteArray("x\\par ").repeated(tooManyLines) +
                           "\\cell\\row\\pard}");
    QPdfWriter device(m_folder.filePath(u"fine.pdf"_s));
    device.setResolution(finest);
    PagedText text(PrintComposition({&document, document.tree.root(), true}, QFont()), device,
                   QSizeF(6 * finest, 9 * finest));
    QCOMPARE(errorNumberOf([&] { startsOf(text); }), 6);
}

void tst_PagedText::anyPageCanBeDrawnAgain()
{
    const PrintExtent extent = plantRandom(99);
    const auto text = textOf(extent, 500);
    while (text->layOutMore()) {
    }
    QList<QImage> before;
    for (int page = 0; page < text->pageCount(); ++page)
        before << picture(*text, page);
    for (int page = text->pageCount() - 1; page >= 0; --page)
        QVERIFY(picture(*text, page) == before[page]);
}

void tst_PagedText::aPageOfNothingIsNone()
{
    Document &document = m_fixture->plant({u"Root"_s});
    // Lines until the page is full, and then an empty paragraph.
    QByteArray lines;
    int count = 0;
    do {
        lines += "x\\par ";
        m_fixture->setText(document, u"Root"_s, "{\\rtf1 " + lines + "x}");
        ++count;
    } while (startsOf(*textOf({&document, document.tree.root(), true}, 100)).size() == 1);
    QVERIFY(count > 3);
    m_fixture->setText(document, u"Root"_s, "{\\rtf1 " + lines + "\\par }");
    const auto text = textOf({&document, document.tree.root(), true}, 100);
    QCOMPARE(startsOf(*text).size(), 1);
    QCOMPARE(text->pageCount(), 1);
}

void tst_PagedText::onlyAFewPiecesAreKept()
{
    const auto text = textOf(plantRandom(7), 300);
    startsOf(*text);
    QVERIFY2(text->piecesKept() <= 3, qPrintable(QString::number(text->piecesKept())));
}

void tst_PagedText::aDamagedTextIsReportedOnce()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s, u" B"_s, u" C"_s, u" D"_s, u" E"_s});
    rawOutline(document).tree.setStoredText(entryLabelled(document.tree, u"A"_s), "30,no such stream");
    const auto text = textOf(m_fixture->extent(document, u"Root"_s, true), 1);
    startsOf(*text);
    const int reported = m_fixture->errors.count();
    QVERIFY(reported > 0);
    picture(*text, 0);
    QCOMPARE(m_fixture->errors.count(), reported);
}

QTEST_MAIN(tst_PagedText)
#include "tst_PagedText.moc"
