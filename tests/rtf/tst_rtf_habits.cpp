// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Properties.h"
#include "rtf/RoundTrip.h"
#include "rtf/RtfSupport.h"

#include <QTextTable>

using rtftest::blockOf;
using rtftest::documentOf;
using rtftest::formatAt;

// How programs write RTF, where the words alone could be taken in another way.
class TestRtfHabits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatAStyleInheritsIsOffBehindPlain();
    void textsMadeByHandLeanOnTheirStyles();
    void theStopsOfAParagraphReplaceThoseOfItsStyle();
    void aCharacterStyleHasWhatItIsBasedOn();
    void deletedTextStaysDeleted();
    void deletedTextThatIsNoLongerStruckOutIsText();
    void labelsAndStyleNamesAreInTheCodePageOfTheDocument_data();
    void labelsAndStyleNamesAreInTheCodePageOfTheDocument();
    void theListOfNumberZeroIsAListWhereItIsDefined();
    void theNewerOfTwoListsOfAParagraphCounts();
    void anOldListSaidInsideAGroupIsThatOfItsParagraph();
    void aPageBreakBehindARowIsOne();
    void aSectionBeginsAPage_data();
    void aSectionBeginsAPage();
    void blanksBehindTheLastCellAreNoCell();
    void picturesOfTheMacintoshCountInPoints();
    void automaticSpaceIsKept();
    void heightsOfRowsAreKept();
    void theRoomInsideCellsIsShownAndKept();

private:
    static QList<double> tabsOf(const QTextBlock &block)
    {
        QList<double> positions;
        for (const QTextOption::Tab &tab : block.blockFormat().tabPositions()) {
            positions << tab.position;
        }
        return positions;
    }
};

void TestRtfHabits::whatAStyleInheritsIsOffBehindPlain()
{
    const auto document =
        documentOf("{\\rtf1{\\fonttbl{\\f0 Times;}{\\f1 Calibri;}}{\\stylesheet{\\s1\\qc\\sb240\\f1\\fs28\\b A;}"
                   "{\\s6\\sbasedon1\\i B;}}\\pard\\plain \\s6 \\b\\f0 text\\par\\pard\\plain\\s1 other}");
    const QTextCharFormat format = formatAt(*document, QStringLiteral("text"));
    QCOMPARE(format.fontPointSize(), 12.0);
    QVERIFY(format.fontItalic());
    QCOMPARE(format.fontFamilies().toStringList(), QStringList(QStringLiteral("Times")));
    const QTextBlockFormat block = blockOf(*document, QStringLiteral("text")).blockFormat();
    QCOMPARE(block.topMargin(), 0.0);
    QCOMPARE(block.alignment(), Qt::AlignLeft);
    // What the style says itself holds.
    QCOMPARE(formatAt(*document, QStringLiteral("other")).fontPointSize(), 14.0);
    QCOMPARE(blockOf(*document, QStringLiteral("other")).blockFormat().alignment(), Qt::AlignHCenter);
}

void TestRtfHabits::textsMadeByHandLeanOnTheirStyles()
{
    const auto document =
        documentOf("{\\rtf1{\\stylesheet{\\s1\\qc\\b A;}{\\s2\\sbasedon1\\i B;}}\\s2 one\\par\\pard\\s2 two\\par"
                   "\\pard\\plain three\\par\\pard\\s2 four}");
    for (const QString &text : {QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("four")}) {
        QVERIFY(formatAt(*document, text).fontItalic());
        QCOMPARE(formatAt(*document, text).fontWeight(), int(QFont::Bold));
        QCOMPARE(blockOf(*document, text).blockFormat().alignment(), Qt::AlignHCenter);
    }
    QVERIFY(!formatAt(*document, QStringLiteral("three")).fontItalic());
}

void TestRtfHabits::theStopsOfAParagraphReplaceThoseOfItsStyle()
{
    const auto document =
        documentOf("{\\rtf1{\\stylesheet{\\s1\\tx300\\tx600 A;}{\\s2\\sbasedon1\\tx300\\tx900 B;}}"
                   "\\pard\\plain\\s1\\tx300\\tx1500 one\\par\\pard\\plain\\s1 two\\par\\pard\\s2 three\\par"
                   "\\pard\\tx150\\s1 four\\par\\pard\\tx150\\tx450 five}");
    QCOMPARE(tabsOf(blockOf(*document, QStringLiteral("one"))), QList<double>({20, 100}));
    QCOMPARE(tabsOf(blockOf(*document, QStringLiteral("two"))), QList<double>({20, 40}));
    QCOMPARE(tabsOf(blockOf(*document, QStringLiteral("three"))), QList<double>({20, 60}));
    QCOMPARE(tabsOf(blockOf(*document, QStringLiteral("four"))), QList<double>({20, 40}));
    QCOMPARE(tabsOf(blockOf(*document, QStringLiteral("five"))), QList<double>({10, 30}));
}

void TestRtfHabits::aCharacterStyleHasWhatItIsBasedOn()
{
    const auto document = documentOf("{\\rtf1{\\stylesheet{\\s7\\ul P;}{\\*\\cs7\\b A;}{\\*\\cs8\\sbasedon7\\i B;}}"
                                     "\\pard\\plain plain {\\cs8 based}{\\cs7 base}}");
    const QTextCharFormat based = formatAt(*document, QStringLiteral("based"));
    QVERIFY(based.fontItalic());
    QCOMPARE(based.fontWeight(), int(QFont::Bold));
    QVERIFY(!based.fontUnderline());
    const QTextCharFormat base = formatAt(*document, QStringLiteral("plain"));
    QVERIFY(!base.fontItalic() && base.fontWeight() == QFont::Normal);
}

void TestRtfHabits::deletedTextStaysDeleted()
{
    const QByteArray rtf(
        "{\\rtf1 kept {\\deleted gone }{\\strike\\deleted struck }{\\revised new }{\\striked1\\deleted twice}}");
    const auto document = documentOf(rtf);
    QVERIFY(formatAt(*document, QStringLiteral("gone")).fontStrikeOut());
    QVERIFY(!formatAt(*document, QStringLiteral("kept")).fontStrikeOut());
    QVERIFY(!formatAt(*document, QStringLiteral("new")).fontStrikeOut());
    const QByteArray written = rtf::write(*document);
    QVERIFY2(written.contains("\\deleted gone"), written.constData());
    QVERIFY2(!written.contains("\\strike\\deleted gone"), written.constData());
    QVERIFY(written.contains("\\revised new"));
    const auto again = documentOf(written);
    QVERIFY(rtf::write(*again).contains("\\strike"));
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
}

void TestRtfHabits::deletedTextThatIsNoLongerStruckOutIsText()
{
    const auto document = documentOf("{\\rtf1\\deleted gone}");
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    QTextCharFormat format;
    format.setFontStrikeOut(false);
    cursor.mergeCharFormat(format);
    QVERIFY(!rtf::write(*document).contains("\\deleted"));
}

void TestRtfHabits::labelsAndStyleNamesAreInTheCodePageOfTheDocument_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("Cyrillic") << QByteArray("\\ansi\\ansicpg1251{\\fonttbl{\\f0\\fcharset0 Arial;}}")
                              << QByteArray("\\'c0\\'e1\\'e7") << QStringLiteral("\u0410\u0431\u0437");
    QTest::newRow("Chinese") << QByteArray("\\ansi\\ansicpg950{\\fonttbl{\\f0\\fcharset0 Arial;}}")
                             << QByteArray("\\'abe\\'b8m\\'a1B") << QStringLiteral("\u524d\u7f6e\u3001");
    QTest::newRow("a document that names none")
        << QByteArray("\\ansi{\\fonttbl{\\f0\\fcharset204 Arial;}}") << QByteArray("\\'c0\\'e1\\'e7")
        << QStringLiteral("\u0410\u0431\u0437");
}

void TestRtfHabits::labelsAndStyleNamesAreInTheCodePageOfTheDocument()
{
    QFETCH(const QByteArray, head);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    const auto document = documentOf("{\\rtf1" + head + "{\\stylesheet{\\s1 " + bytes +
                                     ";}}{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'0" +
                                     QByteArray::number(text.size() + 1) + bytes +
                                     "\\'00;}}\\listid1}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}"
                                     "\\s1\\ls1 x}");
    const QTextBlock block = document->begin();
    QCOMPARE(block.blockFormat().stringProperty(rtf::StyleNameProperty), text);
    QVERIFY(block.textList() != nullptr);
    QCOMPARE(block.textList()->format().numberPrefix(), text);
}

void TestRtfHabits::theListOfNumberZeroIsAListWhereItIsDefined()
{
    const QByteArray list("{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}\\listid1}}"
                          "{\\*\\listoverridetable{\\listoverride\\listid1\\ls");
    const auto isList = [](const QByteArray &rtf) { return documentOf(rtf)->begin().textList() != nullptr; };
    QVERIFY(isList("{\\rtf1" + list + "0}}\\ls0 x}"));
    QVERIFY(!isList("{\\rtf1" + list + "0}}x}"));
    QVERIFY(!isList("{\\rtf1" + list + "0}}\\ls0\\pard x}"));
    QVERIFY(!isList("{\\rtf1" + list + "1}}\\ls0 x}"));
    QCOMPARE(rtftest::roundTripFault("{\\rtf1" + list + "0}}\\ls0 x}"), QString());
}

void TestRtfHabits::theNewerOfTwoListsOfAParagraphCounts()
{
    const QByteArray list("{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}\\listid1}}"
                          "{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}");
    const QByteArray old("{\\*\\pn\\pnlvlblt\\ilvl0\\ls1{\\pntxtb\\'b7}}");
    const auto both = documentOf("{\\rtf1" + list + "\\pard" + old + "\\ls1 x\\par\\pard" + old + "\\ls1 y}");
    QCOMPARE(both->begin().textList()->format().style(), QTextListFormat::ListDecimal);
    QCOMPARE(both->begin().next().textList(), both->begin().textList());
    // A list that nobody defines is none.
    QCOMPARE(documentOf("{\\rtf1" + list + "\\pard" + old + "\\ls2 x}")->begin().textList()->format().style(),
             QTextListFormat::ListDisc);
}

void TestRtfHabits::anOldListSaidInsideAGroupIsThatOfItsParagraph()
{
    const auto document = documentOf("{\\rtf1{{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}one}\\par "
                                     "{{\\pntext 2.\\tab}{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}two}\\par three\\par"
                                     "{\\*\\pn\\pnlvlbody\\pndec}\\pard four}");
    const QTextList *list = blockOf(*document, QStringLiteral("one")).textList();
    QVERIFY(list != nullptr);
    QCOMPARE(list->count(), 2);
    QVERIFY(blockOf(*document, QStringLiteral("three")).textList() == nullptr);
    QVERIFY(blockOf(*document, QStringLiteral("four")).textList() == nullptr);
}

void TestRtfHabits::aPageBreakBehindARowIsOne()
{
    const QByteArray rtf("{\\rtf1\\trowd\\cellx2000\\intbl a\\cell\\row\\page\\pard b\\par c}");
    const auto document = documentOf(rtf);
    QVERIFY(blockOf(*document, QStringLiteral("b")).blockFormat().pageBreakPolicy() &
            QTextFormat::PageBreak_AlwaysBefore);
    QVERIFY(!(blockOf(*document, QStringLiteral("c")).blockFormat().pageBreakPolicy() &
              QTextFormat::PageBreak_AlwaysBefore));
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
    // Inside a cell it is none.
    const auto inside = documentOf("{\\rtf1\\trowd\\cellx2000\\intbl a\\page b\\cell\\row\\pard c}");
    QCOMPARE(blockOf(*inside, QStringLiteral("a")).text(), QStringLiteral("ab"));
}

void TestRtfHabits::aSectionBeginsAPage_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("breaks");
    QTest::newRow("alone") << QByteArray("a\\par\\sect b") << true;
    QTest::newRow("with defaults") << QByteArray("\\sectd\\sbknone a\\sect\\sectd b") << true;
    QTest::newRow("one that goes on") << QByteArray("a\\sect\\sectd\\sbknone b") << false;
    QTest::newRow("as the one before") << QByteArray("\\sbknone a\\sect b") << false;
    QTest::newRow("a column") << QByteArray("a\\sect\\sectd\\sbkcol b") << false;
    QTest::newRow("an odd page") << QByteArray("\\sbknone a\\sect\\sbkodd b") << true;
    QTest::newRow("before any text") << QByteArray("\\sect b") << false;
}

void TestRtfHabits::aSectionBeginsAPage()
{
    QFETCH(const QByteArray, body);
    QFETCH(const bool, breaks);
    const QByteArray rtf = "{\\rtf1 " + body + "\\par c}";
    const auto document = documentOf(rtf);
    const auto isBreak = [&document](const QString &text) {
        return blockOf(*document, text).blockFormat().pageBreakPolicy().testFlag(QTextFormat::PageBreak_AlwaysBefore);
    };
    QCOMPARE(isBreak(QStringLiteral("b")), breaks);
    QVERIFY(!isBreak(QStringLiteral("c")));
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
}

void TestRtfHabits::blanksBehindTheLastCellAreNoCell()
{
    const auto columns = [](const QByteArray &end) {
        const auto document =
            documentOf("{\\rtf1\\trowd\\cellx1000\\cellx2000\\intbl A\\cell B\\cell" + end + "\\row\\pard x}");
        return QTextCursor(blockOf(*document, QStringLiteral("A"))).currentTable()->columns();
    };
    QCOMPARE(columns("  "), 2);
    QCOMPARE(columns("    "), 2);
    QCOMPARE(columns(" {\\b  }\\fs30 "), 2);
    QCOMPARE(columns(" {\\b  }C"), 3);
    QCOMPARE(columns(" C"), 3);
    QCOMPARE(columns("\\~"), 3);
    for (const QByteArray end : {"\\row", "{\\fs30}\\row", "\\b\\row", "\\b\\par\\row", "\\b x\\row", "\\b",
                                 "\\i\\sect", "{\\pict 01}\\row", "\\cell\\row"}) {
        QCOMPARE(rtftest::roundTripFault("{\\rtf1\\trowd\\cellx1000\\intbl A\\cell  " + end + "}"), QString());
    }
    QCOMPARE(rtf::toPlainText("{\\rtf1\\trowd\\cellx1000\\intbl A\\cell  \\row\\pard x}"),
             rtf::plainText(*documentOf("{\\rtf1\\trowd\\cellx1000\\intbl A\\cell\\row\\pard x}")));
}

void TestRtfHabits::picturesOfTheMacintoshCountInPoints()
{
    const auto width = [](const QByteArray &kind) {
        return documentOf("{\\rtf1{\\pict" + kind + "\\picw72\\pich36 0102}}")
            ->begin()
            .begin()
            .fragment()
            .charFormat()
            .toImageFormat()
            .width();
    };
    QCOMPARE(width("\\macpict"), 96.0);
    QCOMPARE(width("\\macpict\\picwgoal720"), 48.0);
    QCOMPARE(width("\\wbitmap0"), 72.0);
}

void TestRtfHabits::automaticSpaceIsKept()
{
    const QByteArray rtf("{\\rtf1\\sb100\\sbauto1\\sa100\\saauto1\\contextualspace a\\par\\pard\\sb100\\sbauto0 b}");
    const auto document = documentOf(rtf);
    QCOMPARE(blockOf(*document, QStringLiteral("a")).blockFormat().topMargin(), 280 / 15.0);
    QCOMPARE(blockOf(*document, QStringLiteral("b")).blockFormat().topMargin(), 100 / 15.0);
    const QByteArray written = rtf::write(*document);
    QVERIFY2(written.contains("\\sbauto1\\saauto1\\contextualspace"), written.constData());
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
}

void TestRtfHabits::theRoomInsideCellsIsShownAndKept()
{
    // The row's room holds for the sides of which a cell says nothing; what has no unit counts for nothing.
    const QByteArray rtf(
        "{\\rtf1 x\\par\\trowd\\trgaph30\\trpaddl150\\trpaddfl3\\trpaddt300\\trpaddft3\\trpaddb90\\trpaddfb0"
        "\\clpadt450\\clpadft3\\clpadl600\\clpadfl3\\clpadr75\\clpadfr3\\cellx3000\\clpadt450\\clpadft0\\cellx6000"
        "\\intbl a\\cell b\\cell\\row\\pard y}");
    const QByteArray written = rtf::write(*documentOf(rtf));
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
    for (const QByteArray &bytes : {rtf, written}) {
        const auto document = documentOf(bytes);
        const auto *table = qobject_cast<QTextTable *>(document->rootFrame()->childFrames().value(0));
        QVERIFY(table != nullptr);
        QCOMPARE(table->format().cellPadding(), 2.0);
        const QTextTableCellFormat first = table->cellAt(0, 0).format().toTableCellFormat();
        // Word processors take the words for a cell's left and top room for each other.
        QCOMPARE(first.leftPadding(), 30.0);
        QCOMPARE(first.topPadding(), 40.0);
        QCOMPARE(first.rightPadding(), 5.0);
        QVERIFY(!first.hasProperty(QTextFormat::TableCellBottomPadding));
        const QTextTableCellFormat second = table->cellAt(0, 1).format().toTableCellFormat();
        QCOMPARE(second.leftPadding(), 10.0);
        QCOMPARE(second.topPadding(), 20.0);
        QVERIFY(!second.hasProperty(QTextFormat::TableCellRightPadding));
    }
    QVERIFY2(written.contains("\\clpadfl3\\clpadl600\\clpadft3\\clpadt450\\clpadfr3\\clpadr75"), written.constData());
}

void TestRtfHabits::heightsOfRowsAreKept()
{
    const QByteArray rtf(
        "{\\rtf1 x\\par\\trowd\\trrh400\\trkeep\\clvmgf\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row"
        "\\trowd\\trrh-300\\clvmrg\\cellx1000\\cellx2000\\intbl\\cell c\\cell\\row"
        "\\trowd\\cellx1000\\cellx2000\\intbl d\\cell\\itap2 e\\nestcell{\\*\\nesttableprops\\trowd\\trrh200\\cellx500"
        "\\nestrow}\\itap1\\cell\\row\\pard y}");
    const QByteArray written = rtf::write(*documentOf(rtf));
    QVERIFY2(written.contains("\\trkeep\\trrh400"), written.constData());
    QCOMPARE(written.count("\\trrh-300"), 1);
    QCOMPARE(written.count("\\trrh200"), 1);
    QCOMPARE(written.count("\\trrh"), 3);
    QCOMPARE(written.count("\\trkeep"), 1);
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
}

QTEST_MAIN(TestRtfHabits)
#include "tst_rtf_habits.moc"
