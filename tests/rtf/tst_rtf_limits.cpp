// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Limits.h"
#include "rtf/Properties.h"
#include "rtf/RoundTrip.h"
#include "rtf/RtfSupport.h"

#include <QFile>
#include <QImage>
#include <QSet>

namespace
{

// A picture of that size, of which there is no more than the header: it tells the size, and nothing is decoded to find
// out. The last number makes pictures differ.
QByteArray hollowPicture(quint32 width, quint32 height, quint32 mark = 0)
{
    QByteArray dib;
    for (const quint32 number : {40u, width, height, 0x00010001u, 0u, 0u, mark, 0u, 0u, 0u}) {
        for (const int shift : {0, 8, 16, 24}) {
            dib += static_cast<char>(number >> shift);
        }
    }
    return "{\\pict\\dibitmap0 " + dib.toHex() + "}";
}

int shownPictures(const QByteArray &body)
{
    const auto document = rtftest::documentOf("{\\rtf1 " + body + "}");
    int count = 0;
    for (QTextBlock::iterator it = document->begin().begin(); !it.atEnd(); ++it) {
        const QUrl name(it.fragment().charFormat().toImageFormat().name());
        const QVariant shown = document->resource(QTextDocument::ImageResource, name);
        count += shown.typeId() == QMetaType::QByteArray ? 1 : 0;
    }
    return count;
}

} // namespace

// Input made to hurt: every bound of the reader, just inside and just outside, and cuts at every place.
class TestRtfLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void groupsDeeperThanTheStackKeepTheirText();
    void unbalancedGroups();
    void tablesDeeperThanTheLimit();
    void rowsOfManyCells();
    void rowsThatDoNotFitTogether();
    void manyTabs();
    void hugeNumbers();
    void picturesOfManyPixelsAreKept();
    void cutAnywhere();

    void samplesCutAnywhere_data() { rtftest::sampleRows(); }

    void samplesCutAnywhere();
    void manyFonts();
    void familiesBeyondThoseShownAreTheDefaultOne();
    void cellsWithinTablesCountMore();
    void manyColours();
    void longListLabels();
    void manyListLevels();
    void longFieldInstructions();
    void longStyleChains();
    void stylesOfManyWords();
    void picturesUpToTheLimitAreShown();
    void manyPicturesShareALimit();
    void binaryRunsBeyondTheEnd();
    void everyOverrideFindsItsListAmongMany();
    void oldListsAreToldApartAmongMany();
    void longListsOfNumbersGoOnInAnother_data();
    void theCostOfNumbersIsTheirLength();
    void longListsOfNumbersGoOnInAnother();
    void manyFormatsAreToldApart();
    void aLookHasOneFormatHoweverManyThereAre();
};

void TestRtfLimits::groupsDeeperThanTheStackKeepTheirText()
{
    for (const int depth : {int(rtf::deepestGroup) - 1, int(rtf::deepestGroup), int(rtf::deepestGroup) + 1, 100000}) {
        const QByteArray rtf =
            "{\\rtf1 a" + QByteArray("{\\b ").repeated(depth) + "b" + QByteArray("}").repeated(depth) + "c}";
        QCOMPARE(rtf::toPlainText(rtf), QStringLiteral("abc"));
        const auto document = rtftest::documentOf(rtf);
        QCOMPARE(rtf::plainText(*document), QStringLiteral("abc"));
        QCOMPARE(rtftest::formatAt(*document, QStringLiteral("c")).fontWeight(), int(QFont::Normal));
    }
}

void TestRtfLimits::unbalancedGroups()
{
    QCOMPARE(rtf::toPlainText("{\\rtf1 a{{{{b"), QStringLiteral("ab"));
    QCOMPARE(rtf::toPlainText("{\\rtf1 a}}}}b"), QStringLiteral("a"));
    QCOMPARE(rtf::toPlainText(QByteArray("{").repeated(200000)), QString());
    QCOMPARE(rtf::toPlainText(QByteArray("}").repeated(200000)), QString());
}

void TestRtfLimits::tablesDeeperThanTheLimit()
{
    for (const int depth : {rtf::deepestTable, rtf::deepestTable + 1, 100000}) {
        const QByteArray number = QByteArray::number(depth);
        const QByteArray rtf = "{\\rtf1 x\\par\\intbl\\itap" + number +
                               " deep\\nestcell{\\*\\nesttableprops\\trowd\\cellx900\\nestrow}\\pard y}";
        const auto document = rtftest::documentOf(rtf);
        int levels = 0;
        for (QTextFrame *frame = document->frameAt(rtftest::blockOf(*document, QStringLiteral("deep")).position());
             frame->parentFrame() != nullptr; frame = frame->parentFrame()) {
            ++levels;
        }
        QCOMPARE(levels, rtf::deepestTable);
        QCOMPARE(rtf::toPlainText(rtf), rtf::plainText(*document));
    }
}

void TestRtfLimits::rowsOfManyCells()
{
    for (const int count : {int(rtf::mostCells) - 1, int(rtf::mostCells), int(rtf::mostCells) + 1, 3000}) {
        QByteArray rtf("{\\rtf1\\trowd");
        for (int i = 1; i <= count; ++i) {
            rtf += "\\cellx" + QByteArray::number(i * 100);
        }
        rtf += "\\intbl " + QByteArray("z\\cell ").repeated(count) + "\\row\\pard after}";
        const auto document = rtftest::documentOf(rtf);
        QTextCursor cursor(document->begin().next());
        QVERIFY(cursor.currentTable() != nullptr);
        QCOMPARE(cursor.currentTable()->columns(), std::min(count, int(rtf::mostCells)));
        QCOMPARE(document->toPlainText().count(QLatin1Char('z')), count);
        QCOMPARE(rtf::toPlainText(rtf), rtf::plainText(*document));
    }
}

// Each row has an edge that no other has: as one grid this would be a million places for some thousand cells.
void TestRtfLimits::rowsThatDoNotFitTogether()
{
    QByteArray rtf("{\\rtf1 x\\par");
    for (int i = 0; i < 1000; ++i) {
        rtf += "\\trowd\\cellx" + QByteArray::number(1000 + (i * 7919) % 30000) +
               "\\cellx31680\\intbl a\\cell b\\cell\\row";
    }
    const auto document = rtftest::documentOf(rtf + "\\pard y}");
    QCOMPARE(document->toPlainText().count(QLatin1Char('b')), 1000);
    QVERIFY2(document->blockCount() < 4000, qPrintable(QString::number(document->blockCount())));
    QCOMPARE(rtf::toPlainText(rtf + "\\pard y}"), rtf::plainText(*document));
}

void TestRtfLimits::manyTabs()
{
    for (const int count : {rtf::mostTabs - 1, rtf::mostTabs, rtf::mostTabs + 1, 100000}) {
        QByteArray rtf("{\\rtf1");
        for (int i = 1; i <= count; ++i) {
            rtf += "\\tx" + QByteArray::number(i % 30000);
        }
        const auto document = rtftest::documentOf(rtf + " x}");
        QCOMPARE(document->begin().blockFormat().tabPositions().size(), std::min(count, rtf::mostTabs));
    }
}

void TestRtfLimits::hugeNumbers()
{
    const QByteArray rtf(
        "{\\rtf1\\deff2000000000\\ansicpg2000000000{\\fonttbl{\\f2000000000\\fcharset99999 A;}{\\f-7\\cpg99999 B;}}"
        "{\\colortbl\\red-5\\green999\\blue99999999999;}\\f2000000000\\fs2000000000\\cf2000000000\\li2000000000\\fi-"
        "2000000000"
        "\\sl2000000000\\up2000000000\\expndtw2000000000\\charscalex2000000000\\lang2000000000\\uc2000000000\\s20000000"
        "00\\ls2000000000"
        "\\ilvl2000000000\\itap0\\tx2000000000\\outlinelevel2000000000\\u2000000000 \\u-2000000000 x}");
    const auto document = rtftest::documentOf(rtf);
    QCOMPARE(rtf::toPlainText(rtf), rtf::plainText(*document));
    QCOMPARE(document->begin().blockFormat().leftMargin(), 31680 / 15.0);
    const QByteArray written = rtf::write(*document);
    QCOMPARE(rtf::write(*rtftest::documentOf(written)), written);
}

void TestRtfLimits::picturesOfManyPixelsAreKept()
{
    // A PNG header that promises 60,000 by 60,000 pixels.
    const QByteArray png =
        QByteArray::fromHex("89504e470d0a1a0a0000000d494844520000ea600000ea600806000000") + QByteArray(40, '\x11');
    const QByteArray rtf = "{\\rtf1 {\\pict\\pngblip\\picwgoal300\\pichgoal300 " + png.toHex() + "}}";
    const auto document = rtftest::documentOf(rtf);
    const QTextImageFormat format = document->begin().begin().fragment().charFormat().toImageFormat();
    QCOMPARE(format.width(), 20.0);
    const QVariant shown = document->resource(QTextDocument::ImageResource, QUrl(format.name()));
    QCOMPARE(shown.typeId(), int(QMetaType::QImage));
    QVERIFY(rtf::write(*document).replace("\n", "").contains(png.toHex()));
}

void TestRtfLimits::cutAnywhere()
{
    const QByteArray whole(
        "{\\rtf1\\ansi{\\fonttbl{\\f0 "
        "Arial;}}{\\colortbl;\\red1\\green2\\blue3;}{\\*\\listtable{\\list{\\listlevel{\\leveltext\\'01\\u8226 "
        "?;}}\\listid1}}"
        "{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}\\ls1 one\\par\\pard{\\field{\\*\\fldinst HYPERLINK "
        "\"x\"}{\\fldrslt there}}"
        "\\par\\trowd\\cellx100\\cellx900\\intbl a\\cell b\\cell\\row\\pard{\\pict\\pngblip 8950}\\u26085?\\'e4}");
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        const QByteArray rtf = whole.first(size);
        const auto document = rtftest::documentOf(rtf);
        QCOMPARE(rtf::toPlainText(rtf), rtf::plainText(*document));
        const QByteArray written = rtf::write(*document);
        QCOMPARE(rtf::write(*rtftest::documentOf(written)), written);
    }
}

// The samples of other programs, cut at many places: every byte of the short ones.
void TestRtfLimits::samplesCutAnywhere()
{
    QFETCH(const QByteArray, whole);
    // Reading costs what stands before the cut: as many cuts as keep the sum of all readings bounded.
    constexpr qsizetype mostRead = 3'000'000;
    const qsizetype cuts = std::clamp<qsizetype>(2 * mostRead / (whole.size() + 1), 8, whole.size() + 1);
    for (qsizetype cut = 0; cut < cuts; ++cut) {
        const QByteArray rtf = whole.first(whole.size() * cut / cuts);
        QCOMPARE(rtf::toPlainText(rtf), rtf::plainText(*rtftest::documentOf(rtf)));
    }
}

void TestRtfLimits::manyFonts()
{
    // The default font is one of those counted.
    const int last = int(rtf::mostFonts) - 1;
    QByteArray rtf("{\\rtf1\\deff1{\\fonttbl");
    for (int i = 1; i <= last + 1; ++i) {
        rtf += "{\\f" + QByteArray::number(i) + " F" + QByteArray::number(i) + ";}";
    }
    const auto document =
        rtftest::documentOf(rtf + "}\\f" + QByteArray::number(last) + " x\\f" + QByteArray::number(last + 1) + " y}");
    const auto family = [&document](QChar text) {
        return rtftest::formatAt(*document, text).fontFamilies().toStringList().value(0);
    };
    QCOMPARE(family(QLatin1Char('x')), QStringLiteral("F%1").arg(last));
    QCOMPARE(family(QLatin1Char('y')), QStringLiteral("F1"));
}

void TestRtfLimits::familiesBeyondThoseShownAreTheDefaultOne()
{
    const auto documentOf = [](int families) {
        QByteArray fonts;
        QByteArray words;
        for (int i = 1; i <= families; ++i) {
            const QByteArray number = QByteArray::number(i);
            fonts += "{\\f" + number + " F" + number + ";}";
            words += "\\f" + number + " w" + number + "\\par ";
        }
        return rtftest::documentOf("{\\rtf1{\\fonttbl" + fonts + "}" + words + "\\f1 again}");
    };
    const auto familyOf = [](const QTextDocument &document, const QString &word) {
        return rtftest::formatAt(document, word).fontFamilies().toStringList().value(0);
    };
    // The first one is the default one as well.
    const int most = int(rtf::mostFamilies);
    const auto within = documentOf(most);
    QCOMPARE(familyOf(*within, QStringLiteral("w%1").arg(most)), QStringLiteral("F%1").arg(most));
    const auto beyond = documentOf(most + 100);
    QCOMPARE(rtf::plainText(*beyond).count(QLatin1Char('w')), most + 100);
    QCOMPARE(familyOf(*beyond, QStringLiteral("w%1").arg(most - 1)), QStringLiteral("F%1").arg(most - 1));
    QCOMPARE(familyOf(*beyond, QStringLiteral("again")), QStringLiteral("F1"));
    QSet<QStringList> families;
    for (QTextBlock block = beyond->begin(); block.isValid(); block = block.next()) {
        families.insert(block.charFormat().fontFamilies().toStringList());
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            families.insert(it.fragment().charFormat().fontFamilies().toStringList());
        }
    }
    families.remove({beyond->defaultFont().family()});
    QVERIFY(families.size() <= most);
}

void TestRtfLimits::cellsWithinTablesCountMore()
{
    for (const int depth : {1, 2, 3, rtf::deepestTable}) {
        QByteArray rtf = "{\\rtf1 ";
        if (depth > 1) {
            rtf += "\\itap" + QByteArray::number(depth) +
                   " a\\nestcell b\\nestcell{\\*\\nesttableprops\\trowd\\cellx900\\cellx1800\\nestrow}";
        }
        for (int outer = depth - 1; outer > 1; --outer) {
            rtf += "\\itap" + QByteArray::number(outer) + " c\\nestcell{\\*\\nesttableprops\\trowd\\cellx900\\nestrow}";
        }
        rtf += "\\pard\\intbl\\itap1 d\\cell\\trowd\\cellx900\\row}";
        // 1 + 2 + 4 and so on, and the innermost row has two.
        const qsizetype innermost = qsizetype(1) << (depth - 1);
        const qsizetype cells = 2 * innermost - 1 + (depth > 1 ? innermost : 0);
        QCOMPARE(rtf::plainContent(rtf).cells, cells);
    }
}

void TestRtfLimits::manyColours()
{
    const QByteArray table = "{\\colortbl" + QByteArray(";\\red1").repeated(rtf::mostColors + 1) + ";}";
    const auto hasColour = [&table](int number) {
        const auto document = rtftest::documentOf("{\\rtf1" + table + "\\cf" + QByteArray::number(number) + " x}");
        return rtftest::formatAt(*document, QStringLiteral("x")).foreground().color() == QColor(1, 0, 0);
    };
    QVERIFY(hasColour(rtf::mostColors));
    QVERIFY(hasColour(rtf::mostColors + 1));
    QVERIFY(hasColour(2'000'000'000));
}

void TestRtfLimits::longListLabels()
{
    for (const qsizetype length : {rtf::longestListLabel - 1, rtf::longestListLabel, rtf::longestListLabel + 1}) {
        const QByteArray rtf = "{\\rtf1{\\*\\pn\\pnlvlblt{\\pntxtb " + QByteArray(length, 'x') + "}}a}";
        const auto document = rtftest::documentOf(rtf);
        const QTextList *list = document->begin().textList();
        QVERIFY(list != nullptr);
        QCOMPARE(list->format().stringProperty(rtf::ListLabelProperty).size(), std::min(length, rtf::longestListLabel));
    }
}

void TestRtfLimits::manyListLevels()
{
    for (const std::size_t count : {rtf::mostListLevels - 1, rtf::mostListLevels, rtf::mostListLevels + 1}) {
        const QByteArray last = QByteArray::number(int(count) - 1);
        const auto document = rtftest::documentOf(
            "{\\rtf1{\\*\\listtable{\\list" +
            QByteArray("{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}").repeated(qsizetype(count)) +
            "\\listid5}}{\\*\\listoverridetable{\\listoverride\\listid5\\ls1}}\\ls1\\ilvl" + last + " x}");
        const QTextList *list = document->begin().textList();
        QVERIFY(list != nullptr);
        QCOMPARE(list->format().intProperty(rtf::ListLevelProperty), int(std::min(count, rtf::mostListLevels)) - 1);
    }
}

void TestRtfLimits::longFieldInstructions()
{
    for (const qsizetype length : {rtf::longestFieldInstruction - 1, rtf::longestFieldInstruction,
                                   rtf::longestFieldInstruction + 1, 10 * rtf::longestFieldInstruction}) {
        const QByteArray rtf = "{\\rtf1{\\field{\\*\\fldinst " + QByteArray(length, 'x') + "}{\\fldrslt there}}}";
        const QTextCharFormat format = rtftest::formatAt(*rtftest::documentOf(rtf), QStringLiteral("there"));
        QCOMPARE(format.stringProperty(rtf::FieldProperty).size(), std::min(length, rtf::longestFieldInstruction));
    }
}

void TestRtfLimits::longStyleChains()
{
    const auto isBold = [](std::size_t length) {
        QByteArray rtf("{\\rtf1{\\stylesheet{\\s1\\b S;}");
        for (std::size_t i = 2; i <= length; ++i) {
            const int number = int(i);
            rtf += "{\\s" + QByteArray::number(number) + "\\sbasedon" + QByteArray::number(number - 1) + " S;}";
        }
        const auto document = rtftest::documentOf(rtf + "}\\s" + QByteArray::number(int(length)) + " x}");
        return rtftest::formatAt(*document, QStringLiteral("x")).fontWeight() == QFont::Bold;
    };
    QVERIFY(isBold(rtf::longestStyleChain));
    QVERIFY(!isBold(rtf::longestStyleChain + 1));
    // A style that is based on itself ends as well.
    QCOMPARE(rtf::toPlainText("{\\rtf1{\\stylesheet{\\s1\\sbasedon2 A;}{\\s2\\sbasedon1 B;}}\\s1 x}"),
             QStringLiteral("x"));
}

void TestRtfLimits::stylesOfManyWords()
{
    const auto isBold = [](std::size_t words) {
        const QByteArray rtf =
            "{\\rtf1{\\stylesheet{\\s1" + QByteArray("\\i").repeated(qsizetype(words) - 1) + "\\b S;}}\\s1 x}";
        return rtftest::formatAt(*rtftest::documentOf(rtf), QStringLiteral("x")).fontWeight() == QFont::Bold;
    };
    QVERIFY(isBold(rtf::mostStyleWords));
    QVERIFY(!isBold(rtf::mostStyleWords + 1));
}

void TestRtfLimits::picturesUpToTheLimitAreShown()
{
    static_assert(rtf::mostPicturePixels == 5000LL * 5000);
    QCOMPARE(shownPictures(hollowPicture(5000, 4999)), 1);
    QCOMPARE(shownPictures(hollowPicture(5000, 5000)), 1);
    QCOMPARE(shownPictures(hollowPicture(5000, 5001)), 0);
}

void TestRtfLimits::manyPicturesShareALimit()
{
    static_assert(rtf::mostTextPixels == 4 * rtf::mostPicturePixels);
    QByteArray body;
    for (quint32 i = 0; i < 6; ++i) {
        body += hollowPicture(5000, 5000, i);
    }
    QCOMPARE(shownPictures(body), 4);
}

void TestRtfLimits::binaryRunsBeyondTheEnd()
{
    QCOMPARE(rtf::toPlainText("{\\rtf1 a\\bin2000000000 bcd"), QStringLiteral("a"));
    const auto document = rtftest::documentOf("{\\rtf1 a{\\pict\\wmetafile8\\bin2000000000 \x01\x02");
    QVERIFY(rtf::write(*document).contains("0102"));
}

// Looking each of them up in turn would take many minutes here.
void TestRtfLimits::everyOverrideFindsItsListAmongMany()
{
    constexpr int count = 10'000;
    QByteArray rtf("{\\rtf1{\\*\\listtable");
    for (int i = 1; i <= count; ++i) {
        rtf += "{\\list\\listid" + QByteArray::number(i);
        rtf += i == 1 || i == count
                   ? "{\\listlevel\\levelnfc0{\\leveltext\\'01\\'00;}\\li" + QByteArray::number(i % 9000) + "}"
                   : QByteArray();
        rtf += '}';
    }
    rtf += "}{\\*\\listoverridetable";
    for (int i = 1; i <= count; ++i) {
        rtf += "{\\listoverride\\listid" + QByteArray::number(count + 1 - i) + "\\ls" + QByteArray::number(i) + '}';
    }
    rtf += "}\\ls1 last\\par\\ls" + QByteArray::number(count) + " first}";
    const auto document = rtftest::documentOf(rtf);
    QCOMPARE(rtftest::blockOf(*document, QStringLiteral("last")).blockFormat().leftMargin(), count % 9000 / 15.0);
    QCOMPARE(rtftest::blockOf(*document, QStringLiteral("first")).blockFormat().leftMargin(), 1 / 15.0);
}

void TestRtfLimits::oldListsAreToldApartAmongMany()
{
    constexpr int count = 10'000;
    QByteArray rtf("{\\rtf1 ");
    for (int i = 0; i < count; ++i) {
        rtf += "{\\pn\\pndec\\pnstart" + QByteArray::number(i % 30000) + "\\pnindent" +
               QByteArray::number(i / 30000 + 1) + '}';
    }
    const auto document =
        rtftest::documentOf(rtf + "x\\par{\\pn\\pndec\\pnstart7\\pnindent1}y\\par{\\pn\\pndec\\pnstart7\\pnindent1}z}");
    const QTextList *list = rtftest::blockOf(*document, QStringLiteral("y")).textList();
    QVERIFY(list != nullptr);
    QCOMPARE(list->format().intProperty(rtf::ListStartProperty), 7);
    QCOMPARE(list->count(), 2);
}

void TestRtfLimits::longListsOfNumbersGoOnInAnother_data()
{
    QTest::addColumn<int>("paragraphs");
    QTest::addColumn<QList<int>>("counts");
    QTest::newRow("just below") << rtf::longestNumberList - 1 << QList<int>{rtf::longestNumberList - 1};
    QTest::newRow("at the limit") << rtf::longestNumberList << QList<int>{rtf::longestNumberList};
    QTest::newRow("just above") << rtf::longestNumberList + 1 << QList<int>{rtf::longestNumberList, 1};
    QTest::newRow("far above") << 3 * rtf::longestNumberList + 5
                               << QList<int>{rtf::longestNumberList, rtf::longestNumberList, rtf::longestNumberList, 5};
}

void TestRtfLimits::longListsOfNumbersGoOnInAnother()
{
    QFETCH(const int, paragraphs);
    QFETCH(const QList<int>, counts);
    const QByteArray rtf =
        "{\\rtf1{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}" + QByteArray("one\\par ").repeated(paragraphs) + "}";
    const auto document = rtftest::documentOf(rtf);
    QList<int> found;
    const QTextList *last = nullptr;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        if (block.textList() != last) {
            last = block.textList();
            found.append(last->count());
        }
    }
    QCOMPARE(found, counts);
    // Its numbers go on where other programs read them.
    const QByteArray written = rtf::write(*document);
    QCOMPARE(written.count("{\\listoverride\\"), 1);
    QCOMPARE(rtf::write(*rtftest::documentOf(written)), written);
}

// A paragraph that joins a list makes the document look at all of the list.
void TestRtfLimits::theCostOfNumbersIsTheirLength()
{
    constexpr int paragraphs = 60'000;
    const QByteArray rtf =
        "{\\rtf1{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}" + QByteArray("one\\par ").repeated(paragraphs) + "}";
    const auto document = rtftest::documentOf(rtf);
    qint64 looks = 0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        looks += block.textList()->itemNumber(block) == 0
                     ? qint64(block.textList()->count()) * block.textList()->count() / 2
                     : 0;
    }
    QVERIFY(looks <= rtf::mostListLooks + qint64(rtf::longestNumberList) * rtf::longestNumberList / 2 +
                         qint64(paragraphs) * rtf::longestBulletList / 2);
    // They are still one list where other programs read them, and for ourselves.
    const QByteArray written = rtf::write(*document);
    QCOMPARE(written.count("{\\listoverride\\"), 1);
    QVERIFY(rtf::write(*rtftest::documentOf(written)) == written);
}

// What a document does not sort its formats by has a property beside it that it does.
void TestRtfLimits::manyFormatsAreToldApart()
{
    const auto count = int(rtf::mostUnspreadFormats);
    QByteArray rtf("{\\rtf1{\\fonttbl");
    for (int i = 0; i < 3 * count; ++i) {
        rtf += "{\\f" + QByteArray::number(i) + " F" + QByteArray::number(i) + ";}";
    }
    rtf += "}";
    for (int i = 0; i < 3 * count; ++i) {
        const QByteArray number = QByteArray::number(i);
        rtf += "\\pard\\f" + number + "\\tx" + QByteArray::number(100 + 40 * i) + " x\\par\\trowd\\cellx" +
               QByteArray::number(1000 + 50 * i) + "\\intbl y\\cell\\row";
    }
    const auto document = rtftest::documentOf(rtf + "}");
    QSet<int> families;
    QSet<int> tabs;
    QSet<int> widths;
    int blocks = 0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        if (block.text() == QLatin1Char('x')) {
            ++blocks;
            families << block.begin().fragment().charFormat().intProperty(rtf::SpreadProperty);
            tabs << block.blockFormat().intProperty(rtf::SpreadProperty);
        } else if (const QTextTable *table = QTextCursor(block).currentTable()) {
            widths << table->format().intProperty(rtf::SpreadProperty);
        }
    }
    QCOMPARE(blocks, 3 * count);
    // The first ones share the value of those that have none; the rest hardly ever share one.
    for (const auto &values : {families, tabs, widths}) {
        QVERIFY2(values.contains(0) && values.size() > 2 * count - 10, qPrintable(QString::number(values.size())));
    }
    QCOMPARE(rtftest::roundTripFault(rtf + "}"), QString());
}

// A run does not fall apart because a format like its own was made earlier.
void TestRtfLimits::aLookHasOneFormatHoweverManyThereAre()
{
    QByteArray rtf("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Arial;}}{\\colortbl\\red0\\green0\\blue0;\\red1;}\\f0 a\\par");
    for (int size = 2; size < 2 + 2 * int(rtf::mostUnspreadFormats); ++size) {
        rtf += "\\fs" + QByteArray::number(size) + " x";
    }
    const auto document = rtftest::documentOf(rtf + "\\par\\fs24 left\\f1 middle\\cf0 right}");
    const QTextBlock block = rtftest::blockOf(*document, QStringLiteral("middle"));
    QCOMPARE(block.begin().fragment().text(), QStringLiteral("leftmiddleright"));
}

QTEST_MAIN(TestRtfLimits)
#include "tst_rtf_limits.moc"
