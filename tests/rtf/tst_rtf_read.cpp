// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/RtfSupport.h"

#include <QImage>
#include <QtEndian>

using rtftest::blockOf;
using rtftest::documentOf;
using rtftest::formatAt;

// What the reader makes of RTF, seen in the document.
class TestRtfRead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLongListOfBulletsIsSeveralAndOneOfNumbersIsNot();
    void recognisesRtf();
    void characters_data();
    void characters();
    void characterFormats();
    void paragraphFormats();
    void edgesOfCellsThatNearlyMeetAreOne_data();
    void edgesOfCellsThatNearlyMeetAreOne();
    void aNestedRowWithoutDefinitionIsLikeTheOneBefore();
    void aLockedFieldIsTextAndALockedLinkALink();
    void readingLeavesNoUndo();
    void insertReplacesTheSelection();
    void theFirstParagraphInsertedTakesItsFormatWhereItMay_data();
    void theFirstParagraphInsertedTakesItsFormatWhereItMay();
    void deeperNumbersBeginAnewBelowEachHigherOne();
    void bitmapsOfEveryDepthAreShown_data();
    void bitmapsOfEveryDepthAreShown();
    void appendKeepsTheLookOfEveryParagraph_data();
    void appendKeepsTheLookOfEveryParagraph();
};

void TestRtfRead::recognisesRtf()
{
    QVERIFY(rtf::isRtf("{\\rtf1 x}"));
    QVERIFY(rtf::isRtf(" \r\n{\\rtf"));
    QVERIFY(!rtf::isRtf("{\\rt"));
    QVERIFY(!rtf::isRtf("x{\\rtf1}"));
    QVERIFY(!rtf::isRtf(""));
}

void TestRtfRead::characters_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &rtf, const QString &text) {
        QTest::newRow(name) << "{\\rtf1" + rtf + "}" << text;
    };
    row("escapes", "\\ansi a\\{b\\}c\\\\", QStringLiteral("a{b}c\\"));
    row("Windows-1252", "\\ansi\\ansicpg1252 \\'80\\'e4", QStringLiteral("\u20ac\u00e4"));
    row("document code page", "\\ansi\\ansicpg1251 \\'cf\\'f0", QStringLiteral("\u041f\u0440"));
    row("font code page", "\\ansi{\\fonttbl{\\f0\\fcharset204 A;}{\\f1\\fcharset161 B;}}\\f0\\'cf\\f1\\'c1",
        QStringLiteral("\u041f\u0391"));
    row("double bytes", "\\ansi{\\fonttbl{\\f0\\fcharset128 A;}}\\f0\\'93\\'fa\\'96\\'7b",
        QStringLiteral("\u65e5\u672c"));
    row("double byte with a plain second byte", "\\ansi{\\fonttbl{\\f0\\fcharset128 A;}}\\f0\\'83A\\'83\\'42",
        QStringLiteral("\u30a2\u30a3"));
    row("Unicode with a fallback", "\\uc1\\u8364?x\\u-10179?\\u-8704?", QStringLiteral("\u20acx\U0001F600"));
    row("Unicode with a longer fallback", "\\uc2\\u8364EUx{\\uc0\\u8364 y}\\u8364 E\\'55z",
        QStringLiteral("\u20acx\u20acy\u20acz"));
    row("named characters", "\\lquote\\rquote\\ldblquote\\rdblquote\\bullet\\endash\\emdash\\~\\_",
        QStringLiteral("\u2018\u2019\u201c\u201d\u2022\u2013\u2014\u00a0\u2011"));
    row("breaks", "a\\par b\\line c\\tab d\\\ne", QStringLiteral("a\r\nb\nc\td\r\ne"));
    row("the last paragraph end makes none", "a\\par b\\par", QStringLiteral("a\r\nb"));
    row("line ends are no text", "a\r\nb", QStringLiteral("ab"));
    row("control characters",
        QByteArray("a\0b\x01"
                   "c\x1c"
                   "d\x1e"
                   "e\x7f",
                   10),
        QStringLiteral("a\u2400b\u2401c\u241cd\u241ee\u007f"));
    row("control characters escaped", "a\\'00b\\'01c\\u28?d\\u-3?", QStringLiteral("a\u2400b\u2401c\u241cd\ufffd"));
    row("breaks that are characters", "a\vb\fc\\'0bd\\'0ce\\'0df\\'0ag\\'0d\\'0ah\\u13?\\u10?i",
        QStringLiteral("a\nb\nc\nd\ne\nf\ng\nh\ni"));
    row("breaks that are not one", "a\\'0dx\\'0a\\'0d\\~\\'0ab", QStringLiteral("a\nx\n\n\u00a0\nb"));
    row("half a character before plain text", "\\uc0\\u-10179 abc\\u-8704 d", QStringLiteral("\ufffdabc\ufffdd"));
    row("half a character before an escape", "\\uc0\\u-10179\\'61", QStringLiteral("\ufffda"));
    row("a fallback ends with its group", "{\\uc3\\u8364 x}yz{\\u8364}abc", QStringLiteral("\u20acyz\u20acabc"));
    row("a fallback does not go into a group", "\\uc2\\u8364 {x}yz", QStringLiteral("\u20acxyz"));
    row("unknown destinations", "a{\\*\\unheard of {this}}b{\\info{\\title T}}c", QStringLiteral("abc"));
    row("headers and footnotes", "{\\header H}a{\\footnote F}b", QStringLiteral("ab"));
    row("Symbol font", "{\\fonttbl{\\f0 A;}{\\f1\\fcharset2 Symbol;}}\\f1 abc\\f0 abc",
        QStringLiteral("\u03b1\u03b2\u03c7abc"));
}

void TestRtfRead::characters()
{
    QFETCH(const QByteArray, rtf);
    QFETCH(const QString, text);
    QCOMPARE(rtf::toPlainText(rtf), text);
    QCOMPARE(rtf::plainText(*documentOf(rtf)), text);
}

void TestRtfRead::characterFormats()
{
    const auto document =
        documentOf("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f5 Courier New;}}{\\colortbl;\\red1\\green2\\blue3;}"
                   "\\f0\\fs21 one{\\b\\i two}\\ul three\\ulnone\\strike four\\strike0\\f5\\cf1 five\\cf0 six}");
    const QTextCharFormat one = formatAt(*document, QStringLiteral("one"));
    QCOMPARE(one.fontFamilies().toStringList(), QStringList{QStringLiteral("Arial")});
    QCOMPARE(one.fontPointSize(), 10.5);
    QVERIFY(one.fontWeight() == QFont::Normal && !one.fontItalic() && !one.fontStrikeOut() && !one.fontUnderline());
    QVERIFY(!one.hasProperty(QTextFormat::ForegroundBrush));
    const QTextCharFormat two = formatAt(*document, QStringLiteral("two"));
    QVERIFY(two.fontWeight() == QFont::Bold && two.fontItalic());
    QVERIFY(formatAt(*document, QStringLiteral("three")).fontUnderline());
    QVERIFY(formatAt(*document, QStringLiteral("four")).fontStrikeOut());
    const QTextCharFormat five = formatAt(*document, QStringLiteral("five"));
    QCOMPARE(five.foreground().color(), QColor(1, 2, 3));
    QCOMPARE(five.fontFamilies().toStringList(), QStringList{QStringLiteral("Courier New")});
    QVERIFY(!formatAt(*document, QStringLiteral("six")).hasProperty(QTextFormat::ForegroundBrush));
}

void TestRtfRead::paragraphFormats()
{
    const auto document = documentOf("{\\rtf1 \\qc\\li720\\ri150\\fi300 one\\par\\pard "
                                     "two\\par{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}\\fi-360\\li720 three\\par}");
    const QTextBlockFormat one = blockOf(*document, QStringLiteral("one")).blockFormat();
    QCOMPARE(one.alignment(), Qt::AlignHCenter);
    QCOMPARE(one.leftMargin(), 48.0);
    QCOMPARE(one.rightMargin(), 10.0);
    QCOMPARE(one.textIndent(), 20.0);
    const QTextBlockFormat two = blockOf(*document, QStringLiteral("two")).blockFormat();
    QCOMPARE(two.alignment(), Qt::AlignLeft);
    QCOMPARE(two.leftMargin(), 0.0);
    const QTextBlock three = blockOf(*document, QStringLiteral("three"));
    QVERIFY(three.textList() != nullptr);
    QCOMPARE(three.textList()->format().style(), QTextListFormat::ListDisc);
    QCOMPARE(three.blockFormat().leftMargin(), 48.0);
}

void TestRtfRead::edgesOfCellsThatNearlyMeetAreOne_data()
{
    QTest::addColumn<int>("edge");
    QTest::addColumn<int>("columns");
    QTest::newRow("as far apart as rows of one table are") << 1040 << 2;
    QTest::newRow("on the other side") << 960 << 2;
    QTest::newRow("a little further") << 1041 << 3;
    QTest::newRow("a little further on the other side") << 959 << 3;
}

void TestRtfRead::edgesOfCellsThatNearlyMeetAreOne()
{
    QFETCH(const int, edge);
    const QByteArray rtf = "{\\rtf1\\trowd\\cellx1000\\cellx3000\\intbl a\\cell b\\cell\\row\\trowd\\cellx" +
                           QByteArray::number(edge) + "\\cellx3000 c\\cell d\\cell\\row}";
    const auto document = rtftest::documentOf(rtf);
    const auto *table = qobject_cast<QTextTable *>(document->rootFrame()->childFrames().value(0));
    QVERIFY(table);
    QTEST(table->columns(), "columns");
}

// As word processors write the rows whose cells hold tables themselves.
void TestRtfRead::aNestedRowWithoutDefinitionIsLikeTheOneBefore()
{
    const auto document = rtftest::documentOf(
        "{\\rtf1\\trowd\\cellx6000\\intbl\\itap2 a\\nestcell b\\nestcell{\\*\\nesttableprops\\trowd\\cellx2000"
        "\\cellx4000\\nestrow}\\itap2 c\\nestcell\\itap3 deep\\nestcell{\\*\\nesttableprops\\trowd\\cellx1000"
        "\\nestrow}\\itap2 d\\nestcell{\\*\\nesttableprops\\nestrow}\\itap1\\cell\\row\\pard x}");
    const auto *inner =
        qobject_cast<QTextTable *>(document->rootFrame()->childFrames().value(0)->childFrames().value(0));
    QVERIFY(inner);
    QCOMPARE(inner->rows(), 2);
    QCOMPARE(inner->columns(), 2);
}

void TestRtfRead::aLockedFieldIsTextAndALockedLinkALink()
{
    const auto document = rtftest::documentOf("{\\rtf1 {\\field\\fldlock{\\*\\fldinst DATE}{\\fldrslt today}} and "
                                              "{\\field\\fldlock{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt there}}}");
    QCOMPARE(rtf::plainText(*document), QStringLiteral("today and there"));
    const QByteArray written = rtf::write(*document);
    QVERIFY2(!written.contains("DATE") && written.contains("HYPERLINK"), written);
}

void TestRtfRead::readingLeavesNoUndo()
{
    QTextDocument document(QStringLiteral("old"));
    rtf::read("{\\rtf1 new}", document);
    QCOMPARE(document.toPlainText(), QStringLiteral("new"));
    QVERIFY(document.isUndoRedoEnabled());
    QVERIFY(!document.isUndoAvailable());
    QVERIFY(!document.isModified());
}

void TestRtfRead::insertReplacesTheSelection()
{
    QTextDocument document(QStringLiteral("one two three"));
    QTextCursor cursor = document.find(QStringLiteral("two"));
    rtf::insert("{\\rtf1 a\\b b\\par}", cursor);
    QCOMPARE(document.toPlainText(), QStringLiteral("one ab three"));
    QCOMPARE(cursor.position(), 6);
    document.undo();
    QCOMPARE(document.toPlainText(), QStringLiteral("one two three"));
    cursor.setPosition(3);
    rtf::insert("{\\rtf1\\qc X\\par Y\\par}", cursor);
    QCOMPARE(document.toPlainText(), QStringLiteral("oneX\nY two three"));
}

void TestRtfRead::appendKeepsTheLookOfEveryParagraph_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::newRow("one paragraph") << QByteArray("{\\rtf1\\qc\\li300 {\\b x}\\i y}");
    QTest::newRow("two paragraphs") << QByteArray("{\\rtf1\\qr\\sb200 x\\par\\pard y}");
    QTest::newRow("a list") << QByteArray("{\\rtf1{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}x\\par y\\par z}");
    QTest::newRow("a table") << QByteArray("{\\rtf1\\trowd\\cellx2000\\cellx4000\\intbl x\\cell y\\cell\\row\\pard}");
    QTest::newRow("nothing") << QByteArray("{\\rtf1\\qc }");
}

void TestRtfRead::appendKeepsTheLookOfEveryParagraph()
{
    QFETCH(const QByteArray, rtf);
    const auto alone = documentOf(rtf);
    QTextDocument document;
    document.setDefaultTextOption(alone->defaultTextOption());
    QTextCursor start(&document);
    rtf::append(rtf, start);
    QCOMPARE(rtf::write(document), rtf::write(*alone));
    // Behind other text, and twice: lists do not grow together.
    for (int time = 0; time < 2; ++time) {
        QTextCursor cursor(&document);
        cursor.movePosition(QTextCursor::End);
        cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
        const int begin = cursor.position();
        rtf::append(rtf, cursor);
        QTextCursor added(&document);
        added.setPosition(begin);
        added.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        QTextCursor whole(alone.get());
        whole.select(QTextCursor::Document);
        QCOMPARE(rtf::write(added), rtf::write(whole));
        QCOMPARE(rtf::plainText(added), rtf::plainText(whole));
    }
}

void TestRtfRead::aLongListOfBulletsIsSeveralAndOneOfNumbersIsNot()
{
    const auto lists = [](const QByteArray &kind) {
        const auto document =
            rtftest::documentOf("{\\rtf1{\\*\\pn" + kind + "}" + QByteArray("one\\par ").repeated(1200) + "}");
        QList<int> counts;
        const QTextList *last = nullptr;
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
            if (block.textList() && block.textList() != last)
                counts.append(block.textList()->count());
            last = block.textList();
        }
        // Written as one list all the same.
        return std::pair(counts, rtf::write(*document).count("{\\listoverride\\"));
    };
    QCOMPARE(lists("\\pnlvlblt{\\pntxtb\\'B7}"), std::pair(QList<int>({500, 500, 200}), qsizetype(1)));
    QCOMPARE(lists("\\pnlvlbody\\pndec{\\pntxta .}"), std::pair(QList<int>({1200}), qsizetype(1)));
}

void TestRtfRead::theFirstParagraphInsertedTakesItsFormatWhereItMay_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("alignments"); // of the paragraphs afterwards
    QTest::addColumn<QString>("result");
    const QByteArray one("{\\rtf1\\qc X}");
    const QByteArray two("{\\rtf1\\qc X\\par\\qr Y}");
    const QByteArray row("{\\rtf1\\trowd\\cellx2000\\intbl X\\cell\\row\\pard\\qr Y}");
    QTest::newRow("one into nothing") << QString() << 0 << one << "c"
                                      << "X";
    QTest::newRow("two into nothing") << QString() << 0 << two << "cr"
                                      << "X\nY";
    QTest::newRow("one at the beginning") << "old" << 0 << one << "l"
                                          << "Xold";
    QTest::newRow("two at the beginning") << "old" << 0 << two << "cr"
                                          << "X\nYold";
    QTest::newRow("one inside") << "old" << 1 << one << "l"
                                << "oXld";
    QTest::newRow("two inside") << "old" << 1 << two << "lr"
                                << "oX\nYld";
    QTest::newRow("two at the end") << "old" << 3 << two << "lr"
                                    << "oldX\nY";
    QTest::newRow("two into an empty paragraph") << "a\n\nb" << 2 << two << "lcrl"
                                                 << "a\nX\nY\nb";
    QTest::newRow("two at the beginning of the second") << "a\nold" << 2 << two << "lcr"
                                                        << "a\nX\nYold";
}

void TestRtfRead::theFirstParagraphInsertedTakesItsFormatWhereItMay()
{
    QFETCH(const QString, text);
    QFETCH(const int, position);
    QFETCH(const QByteArray, rtf);
    QFETCH(const QString, alignments);
    QFETCH(const QString, result);
    QTextDocument document(text);
    QTextCursor cursor(&document);
    cursor.setPosition(position);
    rtf::insert(rtf, cursor);
    QCOMPARE(document.toPlainText(), result);
    QString found;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const Qt::Alignment alignment = block.blockFormat().alignment();
        found += QLatin1Char(alignment & Qt::AlignHCenter ? 'c' : alignment & Qt::AlignRight ? 'r' : 'l');
    }
    QCOMPARE(found, alignments);
    document.undo();
    QCOMPARE(document.toPlainText(), text);
}

void TestRtfRead::deeperNumbersBeginAnewBelowEachHigherOne()
{
    const auto document = documentOf("{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}{"
                                     "\\listlevel\\levelnfc0{\\leveltext"
                                     "\\'02\\'01.;}}{\\listlevel\\levelnfc0{\\leveltext\\'02\\'02.;}}\\listid1}}{\\*"
                                     "\\listoverridetable{\\listoverride"
                                     "\\listid1\\ls1}}\\ls1 one\\par\\ilvl1 a\\par b\\par\\ilvl2 x\\par\\ilvl1 "
                                     "c\\par\\ilvl2 y\\par\\ilvl0 two\\par\\ilvl1 d"
                                     "\\par\\ilvl0 three\\par\\ilvl2 z}");
    QString numbers;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        QVERIFY(block.textList() != nullptr);
        numbers += block.text() + QString::number(block.textList()->itemNumber(block) + 1) + QLatin1Char(' ');
    }
    QCOMPARE(numbers, QStringLiteral("one1 a1 b2 x1 c3 y1 two2 d1 three3 z1 "));
}

void TestRtfRead::bitmapsOfEveryDepthAreShown_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<quint32>("compression");
    QTest::addColumn<quint32>("used");
    QTest::addColumn<QByteArray>("between"); // palette or masks
    QTest::addColumn<QByteArray>("pixel");
    const QByteArray masks = QByteArray::fromHex("0000ff0000ff0000ff000000");
    const QByteArray shortMasks = QByteArray::fromHex("00f80000e00700001f000000");
    const QByteArray palette = QByteArray::fromHex("00000000"
                                                   "0201ff00");
    QTest::newRow("24 bits") << 24 << 0u << 0u << QByteArray() << QByteArray::fromHex("0201ff00");
    QTest::newRow("32 bits") << 32 << 0u << 0u << QByteArray() << QByteArray::fromHex("0201ff00");
    QTest::newRow("32 bits with masks") << 32 << 3u << 0u << masks << QByteArray::fromHex("0201ff00");
    QTest::newRow("16 bits with masks") << 16 << 3u << 0u << shortMasks << QByteArray::fromHex("00f80000");
    QTest::newRow("8 bits with two colours") << 8 << 0u << 2u << palette << QByteArray::fromHex("01000000");
    QTest::newRow("8 bits with all colours")
        << 8 << 0u << 0u << palette + QByteArray(4 * 254, '\0') << QByteArray::fromHex("01000000");
    QTest::newRow("1 bit") << 1 << 0u << 0u << palette << QByteArray::fromHex("80000000");
}

void TestRtfRead::bitmapsOfEveryDepthAreShown()
{
    QFETCH(const int, bits);
    QFETCH(const quint32, compression);
    QFETCH(const quint32, used);
    QFETCH(const QByteArray, between);
    QFETCH(const QByteArray, pixel);
    QByteArray dib;
    for (const quint32 number : {40u, 1u, 8u, 1u | quint32(bits) << 16, compression, 32u, 0u, 0u, used, 0u}) {
        for (const int shift : {0, 8, 16, 24}) {
            dib += static_cast<char>(number >> shift);
        }
    }
    const QByteArray pixels = QByteArray(7 * 4, '\0') + pixel; // the last row is the topmost
    dib += between + pixels;
    const auto document = documentOf("{\\rtf1{\\pict\\dibitmap0 " + dib.toHex() + "}}");
    const QUrl name(document->begin().begin().fragment().charFormat().toImageFormat().name());
    const QByteArray file = document->resource(QTextDocument::ImageResource, name).toByteArray();
    // A reader that goes where the file says finds the pixels there, and not the masks.
    constexpr qsizetype placeOfPixels = 10;
    QCOMPARE(file.sliced(qFromLittleEndian<quint32>(file.constData() + placeOfPixels)), pixels);
    const QImage image = QImage::fromData(file);
    QCOMPARE(image.size(), QSize(1, 8));
    const QColor color = image.pixelColor(0, 0);
    QVERIFY2(color.red() > 240 && color.green() < 10 && color.blue() < 10, qPrintable(color.name()));
}

QTEST_MAIN(TestRtfRead)
#include "tst_rtf_read.moc"
