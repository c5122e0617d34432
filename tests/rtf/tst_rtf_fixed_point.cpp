// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/RtfSupport.h"

// Texts do not change by being stored: what the writer makes of a document, the reader reads as the same document.
class TestRtfFixedPoint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readWriteReadWrite_data();
    void readWriteReadWrite();
};

void TestRtfFixedPoint::readWriteReadWrite_data()
{
    QTest::addColumn<QByteArray>("rtf");
    const auto row = [](const char *name, const QByteArray &body) {
        QTest::newRow(name)
            << "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}{\\f2 Courier New;}}"
               "{\\colortbl;\\red255\\green0\\blue0;\\red0\\green128\\blue255;}" +
                   body + "}";
    };
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no fonts") << QByteArray("{\\rtf1 Hello}");
    row("empty", "");
    row("one empty paragraph", "\\f2\\fs40\\par");
    row("empty paragraphs", "\\f2\\fs40\\par\\b\\par\\par\\par");
    row("plain", "Hello, world\\par Second");
    row("character flags",
        "\\b bold\\b0  \\i italic\\i0  \\strike struck\\strike0  \\striked1 twice\\striked0  \\caps caps\\caps0  "
        "\\scaps small\\scaps0  \\v hidden\\v0  \\outl\\shad\\embo\\impr effects");
    row("underlines",
        "\\ul a\\ulw b\\uldb c\\uld d\\uldash e\\uldashd f\\uldashdd g\\ulth h\\ulthd i\\ulthdash j\\ulthdashd k"
        "\\ulthdashdd l\\ulldash m\\ulthldash n\\ulwave o\\ulhwave p\\ululdbwave q\\ulnone r");
    row("colours", "\\cf1 red\\cf2 blue\\cf0 none\\cb1 back\\cb0\\highlight2 marked\\highlight0\\chcbpat1 "
                   "pattern\\chcbpat0\\ul\\ulc1 line");
    row("sizes and fonts", "\\fs20 ten\\fs21 ten and a half\\f2 courier\\fs3276 huge\\fs2 tiny");
    row("positions",
        "a\\super b\\nosupersub c\\sub d\\nosupersub\\up6 e\\up0\\dn4 f\\dn0\\expndtw20 g\\expndtw0\\charscalex150 h");
    row("languages", "\\lang1033 English \\lang1036 fran\\'e7ais");
    row("alignment", "left\\par\\qc centre\\par\\qr right\\par\\qj justified\\par\\pard left again");
    row("right to left", "\\rtlpar\\qr one\\par\\ql two\\par\\qc three");
    row("indents", "\\li720\\ri360\\fi-200 text\\par\\pard\\li-100\\fi50 text\\par\\pard\\sb120\\sa60 text");
    row("line spacing",
        "\\sl360\\slmult1 a\\par\\sl-200\\slmult0 b\\par\\sl300\\slmult0 c\\par\\sl240\\slmult1 d\\par\\sl0 e");
    row("tab stops", "\\tx720\\tqr\\tldot\\tx1440\\tqc\\tx2000\\tqdec\\tx3000\\li360 a\\tab b\\par");
    row("paragraph flags", "\\keep\\keepn\\pagebb\\outlinelevel2\\cbpat1 text\\par");
    row("paragraph borders", "\\brdrt\\brdrs\\brdrw20\\brdrcf1\\brdrb\\brdrdb text\\par");
    row("breaks", "one\\line two\\tab three\\page four\\sect five");
    row("characters", "\\~\\-\\_\\'e4\\'80\\u8364?\\u26085?\\u-10179?\\u-8704?\\bullet\\emdash\\lquote\\{\\}\\\\");
    row("symbol font", "\\f1 abc \\'b7\\f0  abc");
    row("old bullets",
        "{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent360{\\pntxtb\\'B7}}\\fi-360\\li720 one\\par"
        "{\\pntext\\f1\\'B7\\tab}two\\par\\pard three\\par");
    QByteArray many;
    for (int i = 0; i < 1200; ++i)
        many += i % 3 == 0 ? "\\ilvl1 deeper\\par\\ilvl0 " : "bullet\\par ";
    QTest::newRow("many bullets") << "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}}{\\*\\listtable{\\list"
                                     "{\\listlevel\\levelnfc23{\\leveltext\\'01\\'b7;}{\\levelnumbers;}\\f1}"
                                     "{\\listlevel\\levelnfc23{\\leveltext\\'01\\'b7;}{\\levelnumbers;}\\f1}"
                                     "\\listid7}}{\\*\\listoverridetable{\\listoverride\\listid7"
                                     "\\listoverridecount0\\ls4}}\\f0\\fs20\\ls4\\ilvl0 " +
                                         many + "}";
    row("many old bullets", "{\\*\\pn\\pnlvlblt\\pnf1\\pnindent360{\\pntxtb\\'B7}}\\fi-360\\li720 " +
                                QByteArray("one\\par ").repeated(1200));
    row("old numbers", "{\\*\\pn\\pnlvlbody\\pndec\\pnstart3{\\pntxtb (}{\\pntxta )}}\\fi-360\\li720 one\\par "
                       "two\\par\\pard between\\par"
                       "{\\*\\pn\\pnlvlbody\\pnucrm{\\pntxta .}}\\li720 other\\par");
    row("hyperlink", "see {\\field{\\*\\fldinst{HYPERLINK \"http://example.org/a b\"}}{\\fldrslt\\ul\\cf2 there}} now");
    row("hyperlink with a place",
        "{\\field{\\*\\fldinst{HYPERLINK \"x\" \\\\l \"y\" \\\\o \"tip\"}}{\\fldrslt there}}");
    row("other field", "page {\\field{\\*\\fldinst PAGE \\\\* MERGEFORMAT}{\\fldrslt 3}}");
    row("table", "before\\par\\trowd\\trgaph100\\trleft-50\\cellx1000\\cellx3000\\intbl a\\cell b\\par "
                 "c\\cell\\row\\cellx1000\\cellx3000 d\\cell e\\cell\\row"
                 "\\pard after");
    row("table first", "\\trowd\\cellx1000\\cellx3000\\intbl a\\cell b\\cell\\row");
    row("table with joined cells",
        "x\\par\\trowd\\clvmgf\\cellx1000\\cellx2000\\cellx3000\\intbl a\\cell b\\cell c\\cell\\row"
        "\\trowd\\clvmrg\\cellx1000\\clmgf\\cellx2000\\clmrg\\cellx3000\\cell d\\cell\\cell\\row\\pard y");
    row("table with looks", "x\\par\\trowd\\trqc\\trhdr\\clvertalc\\clbrdrt\\brdrs\\brdrw10\\brdrcf1\\clcbpat2\\cellx10"
                            "00\\clbrdrb\\brdrdb\\cellx2000"
                            "\\intbl a\\cell\\b\\cell\\row\\pard y");
    row("table in a table", "x\\par\\trowd\\cellx4000\\intbl outer\\par\\itap2 inner\\nestcell "
                            "two\\nestcell{\\*\\nesttableprops\\trowd\\cellx1000\\cellx2000\\nestrow}"
                            "\\itap1\\cell\\row\\pard y");
    row("table as wide as its content",
        "x\\par\\trowd\\trautofit1\\clftsWidth1\\cellx1000\\clftsWidth1\\cellx2000\\cellx2500"
        "\\intbl some words\\cell b\\cell c\\cell\\row\\trowd\\trautofit1\\clftsWidth1"
        "\\cellx2000\\cellx2500 d\\cell e\\cell\\row\\pard y");
    row("table in parts of the page", "x\\par\\trowd\\trftsWidth2\\trwWidth4000\\clftsWidth2\\clwWidth1234\\cellx1000"
                                      "\\clftsWidth2\\clwWidth3766\\cellx2000\\intbl a\\cell b\\cell\\row\\pard y");
    row("rule", "above\\par\\brdrb\\brdrdot\\brdrw30\\brdrcf1\\par\\pard below\\par");
    row("uneven rows",
        "x\\par\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row\\trowd\\cellx700\\cellx1500\\cellx2200\\intbl "
        "a\\cell b\\cell c\\cell\\row\\pard y");
    row("picture", "x{\\pict\\pngblip\\picw1\\pich1\\picwgoal300\\pichgoal150 "
                   "89504e470d0a1a0a0000000d49484452000000010000000108060000001f15c4890000000d49444154789c6360606060000"
                   "000050001a5f645400000000049454e44ae426082}y");
    row("metafile", "x{\\pict\\wmetafile8\\picw2540\\pich1270\\picscalex50 0102030405}y");
    QTest::newRow("styles") << QByteArray(
        "{\\rtf1{\\fonttbl{\\f0 Arial;}}{\\stylesheet{\\s0 Normal;}{\\s1\\b\\qc Heading;}{\\s2\\sbasedon1\\i Sub;}}"
        "\\s1 one\\par\\pard\\plain\\s2 two\\par\\pard\\plain three\\par}");
    QTest::newRow("lists") << QByteArray(
        "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f3\\fcharset2 "
        "Symbol;}}{\\*\\listtable{\\list{\\listlevel\\levelnfc0\\levelstartat1{\\leveltext\\'02\\'00.;}"
        "{\\levelnumbers\\'01;}\\fi-360\\li720}{\\listlevel\\levelnfc23{\\leveltext\\'01\\u-3913 "
        "?;}{\\levelnumbers;}\\f3\\fi-360\\li1440}\\listid7}}"
        "{\\*\\listoverridetable{\\listoverride\\listid7\\listoverridecount0\\ls4}}"
        "\\ls4 one\\par\\ilvl1 sub\\par sub\\par\\ilvl0 two\\par\\ilvl1 again\\par\\pard text\\par\\ls4\\ilvl0 "
        "three\\par}");
}

void TestRtfFixedPoint::readWriteReadWrite()
{
    QFETCH(const QByteArray, rtf);
    const auto first = rtftest::documentOf(rtf);
    const QByteArray firstBytes = rtf::write(*first);
    const auto second = rtftest::documentOf(firstBytes);
    QCOMPARE(rtftest::difference(*second, *first), QString());
    QCOMPARE(rtf::write(*second), firstBytes);
    QCOMPARE(rtf::toPlainText(rtf), rtf::plainText(*first));
    QCOMPARE(rtf::toPlainText(firstBytes), rtf::plainText(*first));
    QVERIFY(std::all_of(firstBytes.cbegin(), firstBytes.cend(),
                        [](char c) { return c == '\n' || (c >= 0x20 && c < 0x7F); }));
}

QTEST_MAIN(TestRtfFixedPoint)
#include "tst_rtf_fixed_point.moc"
