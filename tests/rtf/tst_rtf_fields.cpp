// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FieldText.h"
#include "rtf/Limits.h"
#include "rtf/Properties.h"
#include "rtf/RoundTrip.h"
#include "rtf/RtfSupport.h"

#include <QTextBlock>

// Fields: what they show, and that storing a text leaves as many of them as it had.
class TestRtfFields : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFieldWithoutAResultShowsWhatItMeans_data();
    void aFieldWithoutAResultShowsWhatItMeans();
    void anAddressThatLooksLikeASwitchStaysOne_data();
    void anAddressThatLooksLikeASwitchStaysOne();
    void aSymbolHasTheFontAndSizeThatItsInstructionNames();
    void aFieldOfSeveralParagraphsIsWrittenAsOne_data();
    void aFieldOfSeveralParagraphsIsWrittenAsOne();
    void paragraphsOfAFieldKeepTheirOwnFormat();
    void twoFieldsOfOneInstructionStayTwo();
    void aChangedAddressReplacesTheFields();
    void aFieldThatShowsNothingStaysWhereItIs_data();
    void aFieldThatShowsNothingStaysWhereItIs();
    void aFieldThatShowsNothingIsWrittenOnceAfterChanges();
    void fieldsThatShowNothingUpToTheLimit();
    void fieldsInFieldsUpToTheLimit();
    void aLongInstructionIsNotRepeatedForEachFieldInIt();
    void equationsUpToTheLimit();

private:
    // "<a>" is a field that shows nothing, "[" and "]" enclose what another one shows, "|" is between paragraphs.
    static QString shownWithFields(const QTextDocument &document)
    {
        QString text;
        const auto addUnshown = [&text](const QString &instructions) {
            for (const QString &instruction : instructions.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
                text += QLatin1Char('<') + instruction.last(1) + QLatin1Char('>');
            }
        };
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            text += text.isEmpty() ? QString() : QStringLiteral("|");
            QString before;
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextCharFormat format = it.fragment().charFormat();
                const QString unshown = format.stringProperty(rtf::UnshownFieldsProperty);
                if (unshown != before) {
                    addUnshown(unshown);
                }
                before = unshown;
                const bool isField = format.hasProperty(rtf::FieldProperty);
                text += isField ? QLatin1Char('[') + it.fragment().text() + QLatin1Char(']') : it.fragment().text();
            }
            addUnshown(block.blockFormat().stringProperty(rtf::LastFieldsProperty));
        }
        return text.replace(QStringLiteral("]["), QString())
            .replace(QChar::ObjectReplacementCharacter, QLatin1Char('*'));
    }
};

void TestRtfFields::aFieldWithoutAResultShowsWhatItMeans_data()
{
    QTest::addColumn<QByteArray>("instruction");
    QTest::addColumn<QString>("shown");
    const auto row = [](const QByteArray &instruction, const QString &shown) {
        QTest::newRow(instruction.constData()) << instruction << shown;
    };
    row("SYMBOL 174 \\\\f \"Symbol\" \\\\s 12", QStringLiteral("\u2192"));
    row("SYMBOL 97 \\\\f Symbol", QStringLiteral("\u03b1"));
    row("SYMBOL 174 \\\\f \"Arial\"", QStringLiteral("\u00ae"));
    row("SYMBOL 150", QStringLiteral("\u2013"));
    row("SYMBOL 0x3B1 \\\\u", QStringLiteral("\u03b1"));
    row("SYMBOL 252 \\\\f Wingdings", QStringLiteral("\uf0fc"));
    row("SYMBOL 7", QString());
    row("EQ \\\\* jc2 \\\\* \"Font:MS Mincho\" \\\\* hps10 \\\\o\\\\ad(\\\\s\\\\up 9(\\u12362?\\u12395?),\\u39740?)",
        QStringLiteral("\u9b3c(\u304a\u306b)"));
    row("EQ e\\\\s\\\\up5({\\fs16 2}) = \\\\F(1,{\\i c})", QStringLiteral("e2 = 1/c"));
    row("EQ \\\\r(3,x+1) \\\\r(y)", QStringLiteral("3\u221a(x+1) \u221a(y)"));
    row("EQ \\\\b\\\\bc\\\\( (a, b\\\\,c) \\\\l(1;2;f(x))", QStringLiteral("(a, b,c) 1, 2, f(x)"));
    row("EQ \\\\i\\\\su(1,5,3)", QStringLiteral("\u22111 5 3"));
    row("EQ plain (a, b)", QStringLiteral("plain (a, b)"));
    row("GOTOBUTTON _Toc1 {\\field{\\*\\fldinst PAGEREF _Toc1}{\\fldrslt 12}}", QStringLiteral("12"));
    row("MACROBUTTON MTPlaceRef (0.1) \\\\* MERGEFORMAT", QStringLiteral("(0.1)"));
    row("FORMCHECKBOX {\\*\\formfield\\ffres25\\ffdefres0}", QStringLiteral("\u2610"));
    row("FORMCHECKBOX {\\*\\formfield\\ffres25\\ffdefres1}", QStringLiteral("\u2612"));
    row("FORMCHECKBOX {\\*\\formfield\\ffres1\\ffdefres0}", QStringLiteral("\u2612"));
    row("FORMDROPDOWN {\\*\\formfield\\fftype2\\ffres1{\\*\\ffname List}{\\*\\ffl one}{\\*\\ffl t\\'e4{\\b  wo}}}",
        QStringLiteral("t\u00e4 wo"));
    row("FORMDROPDOWN {\\*\\formfield\\ffres25\\ffdefres0{\\*\\ffl one}{\\*\\ffl two}}", QStringLiteral("one"));
    row("FORMTEXT {\\*\\formfield{\\*\\ffdeftext name}}", QStringLiteral("name"));
    row("FORMTEXT", QString(5, QChar(0x2002)));
    row("MERGEFIELD \"First name\" \\\\* MERGEFORMAT", QStringLiteral("\u00abFirst name\u00bb"));
    row("PAGE \\\\* MERGEFORMAT", QStringLiteral("\u00abPAGE\u00bb"));
    row("PAGEREF _Toc1 \\\\h", QStringLiteral("\u00abPAGEREF _Toc1\u00bb"));
    row("QUOTE \"so it is\"", QStringLiteral("so it is"));
    row("HYPERLINK \"http://example.org/\"", QStringLiteral("http://example.org/"));
    row("IF 1 = 2 \"yes\"", QString());
    row("XE word", QString());
}

void TestRtfFields::aFieldWithoutAResultShowsWhatItMeans()
{
    QFETCH(const QByteArray, instruction);
    QFETCH(const QString, shown);
    for (const QByteArray result : {"", "{\\fldrslt}", "{\\fldrslt{\\b\\f1\\fs24}}", "{\\fldrslt\\f1 {}}"}) {
        const QByteArray rtf =
            "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Wingdings;}}a{\\field{\\*\\fldinst{" + instruction +
            "}}" + result + "}b}";
        const QString text = QLatin1Char('a') + shown + QLatin1Char('b');
        QCOMPARE(rtf::toPlainText(rtf), text);
        QCOMPARE(rtftest::roundTripFault(rtf), QString());
        const auto document = rtftest::documentOf(rtf);
        QCOMPARE(rtf::plainText(*document), text);
        // It stays a field.
        const QByteArray written = rtf::write(*document);
        QCOMPARE(written.count("\\fldinst"), 1);
        const QByteArray name =
            instruction.first(instruction.indexOf(' ') < 0 ? instruction.size() : instruction.indexOf(' '));
        QVERIFY(written.contains("{\\*\\fldinst{" + name));
    }
}

void TestRtfFields::anAddressThatLooksLikeASwitchStaysOne_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address : {"\\l", "\\o", "\\t", "\\h", "a", "\\", "\"", "\\l x"}) {
        QTest::newRow(address) << QString::fromLatin1(address);
    }
}

void TestRtfFields::anAddressThatLooksLikeASwitchStaysOne()
{
    QFETCH(const QString, address);
    QTextDocument document;
    QTextCharFormat link;
    link.setAnchor(true);
    link.setAnchorHref(address);
    QTextCursor(&document).insertText(QStringLiteral("here"), link);
    const auto again = rtftest::documentOf(rtf::write(document));
    QCOMPARE(rtftest::formatAt(*again, QStringLiteral("here")).anchorHref(), address);
}

void TestRtfFields::aSymbolHasTheFontAndSizeThatItsInstructionNames()
{
    const auto document =
        rtftest::documentOf("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f3\\fcharset2 Wingdings;}}\\f0\\fs20 a"
                            "{\\field{\\*\\fldinst SYMBOL 252 \\\\f \"Wingdings\" \\\\s 14}{\\fldrslt}}b}");
    const QTextCharFormat symbol = rtftest::formatAt(*document, QString(QChar(0xF0FC)));
    QCOMPARE(symbol.fontFamilies().toStringList(), QStringList(QStringLiteral("Wingdings")));
    QCOMPARE(symbol.fontPointSize(), 14.0);
    QCOMPARE(rtftest::formatAt(*document, QStringLiteral("b")).fontPointSize(), 10.0);
}

void TestRtfFields::aFieldOfSeveralParagraphsIsWrittenAsOne_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("fields");
    const auto row = [](const char *name, const QByteArray &body, int fields) {
        QTest::newRow(name) << body << fields;
    };
    row("contents", "{\\field{\\*\\fldinst TOC \\\\o}{\\fldrslt A\\par B\\par C}}\\par after", 1);
    row("contents up to a paragraph's end", "{\\field{\\*\\fldinst TOC \\\\o}{\\fldrslt A\\par B\\par}}after", 1);
    row("contents between other text", "x {\\field{\\*\\fldinst TOC}{\\fldrslt A\\par B}} y\\par z", 1);
    row("an empty paragraph inside", "{\\field{\\*\\fldinst TOC}{\\fldrslt A\\par\\par B}}\\par z", 1);
    row("empty paragraphs around", "{\\field{\\*\\fldinst TOC}{\\fldrslt\\par A\\par\\par}}\\par z", 1);
    row("a picture first", "{\\field{\\*\\fldinst TOC}{\\fldrslt{\\pict\\wmetafile8 0102}\\par B}}\\par z", 1);
    row("links and pages inside",
        "{\\field{\\*\\fldinst TOC \\\\h}{\\fldrslt "
        "{\\field{\\*\\fldinst HYPERLINK \\\\l \"a\"}{\\fldrslt One\\tab {\\field{\\*\\fldinst PAGEREF a}{\\fldrslt "
        "1}}}}\\par "
        "{\\field{\\*\\fldinst HYPERLINK \\\\l \"b\"}{\\fldrslt Two\\tab {\\field{\\*\\fldinst PAGEREF b}{\\fldrslt "
        "2}}}}\\par "
        "}}after",
        5);
    row("different formats",
        "\\qc {\\field{\\*\\fldinst TOC}{\\fldrslt A\\par\\pard\\qr B\\par\\pard\\qj C}}d\\par\\pard e", 1);
    row("a list",
        "{\\field{\\*\\fldinst TOC}{\\fldrslt{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}A\\par B\\par\\pard C}}\\par d", 1);
    row("a style", "{\\field{\\*\\fldinst INCLUDETEXT \"x\"}{\\fldrslt{\\b A\\par}}}\\pard\\plain b\\par", 1);
    row("a field that stands alone in it",
        QByteArray("{\\field{\\*\\fldinst TOC}{\\fldrslt ").repeated(9) + "x" + QByteArray("}}").repeated(9) +
            "\\par y",
        1);
    row("text behind one in it",
        "{\\field{\\*\\fldinst TOC}{\\fldrslt A{\\field{\\*\\fldinst " + QByteArray(5000, 'q') +
            "}{\\fldrslt B{\\field{\\*\\fldinst PAGE}{\\fldrslt C}}}}\\par D\\par\\par E}}\\par",
        4);
    row("a hyperlink over two paragraphs", "{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt A\\par B}}c", 1);
    const QByteArray cells("\\trowd\\cellx900\\cellx1800\\pard\\intbl ");
    const QByteArray field("{\\field{\\*\\fldinst TOC}{\\fldrslt ");
    row("inside a cell", cells + "x " + field + "A\\par B\\par\\par C}} y\\cell D\\cell\\row\\pard z", 1);
    row("up to a cell's end", cells + field + "A\\par B\\par}}\\cell D\\cell\\row\\pard z", 1);
    row("a cell's whole text", cells + field + "A\\par B}}\\cell " + field + "C\\par D}}\\cell\\row\\pard z", 2);
    row("a last cell without an end", cells + "D\\cell " + field + "A\\par B\\par}}\\row\\pard z", 1);
    row("over two cells", cells + field + "A\\par B\\cell\\par D}}\\cell\\row\\pard z", 2);
    row("over a cell and what is behind the table",
        cells + field + "A\\par B\\cell D\\cell\\row\\pard\\par E\\par F}}\\pard\\par z", 3);
    row("a table in a cell",
        cells + field +
            "A\\par B\\par\\itap2 C\\par D\\nestcell{\\*\\nesttableprops\\trowd\\cellx400\\nestrow}"
            "\\pard\\intbl E\\par F}}\\cell G\\cell\\row\\pard z",
        3);
    // A text document's tables stand between paragraphs; a field cannot reach over them.
    row("a table inside",
        "{\\field{\\*\\fldinst TOC}{\\fldrslt A\\par\\trowd\\cellx900\\intbl B\\cell\\row\\pard\\par C}}d", 3);
}

void TestRtfFields::aFieldOfSeveralParagraphsIsWrittenAsOne()
{
    QFETCH(const QByteArray, body);
    QFETCH(const int, fields);
    const QByteArray rtf = "{\\rtf1{\\fonttbl{\\f0 Arial;}}" + body + "}";
    const QByteArray written = rtf::write(*rtftest::documentOf(rtf));
    QVERIFY2(written.count("\\fldinst") == fields, written.constData());
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
}

void TestRtfFields::paragraphsOfAFieldKeepTheirOwnFormat()
{
    const auto document = rtftest::documentOf(
        rtf::write(*rtftest::documentOf("{\\rtf1\\qc x {\\field{\\*\\fldinst TOC}{\\fldrslt A\\par\\pard\\qr "
                                        "B\\par\\pard\\qj C}} y\\par\\pard\\li300 z}")));
    // What is set inside a field ends with it, also for the paragraph that it ends in.
    const Qt::Alignment expected[] = {Qt::AlignHCenter, Qt::AlignRight, Qt::AlignHCenter, Qt::AlignLeft};
    QTextBlock block = document->begin();
    for (const Qt::Alignment alignment : expected) {
        QCOMPARE(block.blockFormat().alignment(), alignment);
        block = block.next();
    }
    QVERIFY(!block.isValid());
}

void TestRtfFields::twoFieldsOfOneInstructionStayTwo()
{
    const QByteArray field("{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt here}}\\par ");
    const QByteArray rtf = "{\\rtf1 " + field + field + "}";
    QCOMPARE(rtf::write(*rtftest::documentOf(rtf)).count("\\fldinst"), 2);
}

void TestRtfFields::aChangedAddressReplacesTheFields()
{
    const auto document = rtftest::documentOf("{\\rtf1{\\field{\\*\\fldinst TOC}{\\fldrslt{\\field{\\*\\fldinst "
                                              "HYPERLINK \"x\"}{\\fldrslt{\\field{\\*\\fldinst "
                                              "PAGEREF a}{\\fldrslt 1}}}}}}}");
    QTextCharFormat format = document->begin().begin().fragment().charFormat();
    QCOMPARE(format.anchorHref(), QStringLiteral("x"));
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    format.setAnchorHref(QStringLiteral("y"));
    cursor.setCharFormat(format);
    const QByteArray written = rtf::write(*document);
    QVERIFY(written.contains("HYPERLINK \"y\""));
    QVERIFY(!written.contains("\"x\""));
    QCOMPARE(written.count("\\fldinst"), 1);
}

void TestRtfFields::aFieldThatShowsNothingStaysWhereItIs_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const QByteArray &body, const QByteArray &expected) {
        QTest::newRow(name) << body << expected;
    };
    row("before a word", "one <a>two three", "one <a>two three");
    row("before a blank", "one<a> two", "one<a> two");
    row("inside a word", "on<a>e", "on<a>e");
    row("behind a word", "one<a>\\par two", "one<a>|two");
    row("the first", "<a>one\\par", "<a>one");
    row("the last of all", "one<a>", "one<a>");
    row("alone", "one\\par <a>\\par two", "one|<a>|two");
    row("nothing else", "<a>", "<a>");
    row("two together", "one <a><b>two", "one <a><b>two");
    row("two of one word", "<a>one<b>two", "<a>one<b>two");
    row("the same one again", "<a>one<a> <a>two", "<a>one <a>two");
    row("before a word of two formats", "<a>o{\\b n}e two", "<a>one two");
    row("before a hyperlink", "one <a>[two] three", "one <a>[two] three");
    row("inside a field", "one [two <a>three] four", "one [two ]<a>[three] four");
    row("at a field's end", "[one<a>] two", "[one]<a> two");
    row("at paragraphs' ends", "one<a>\\par two<b>\\par three", "one<a>|two<b>|three");
    row("before a picture", "<a>{\\pict\\wmetafile8 0102}{\\pict\\wmetafile8 0103}<b>{\\pict\\wmetafile8 0104}",
        "<a>**<b>*");
    row("in cells", "\\trowd\\cellx900\\cellx1800\\intbl <a>one\\cell two<b>\\cell\\row\\pard three",
        "<a>one|two<b>|three");
    row("blanks behind a cell", "\\trowd\\cellx900\\cellx1800\\intbl one\\cell  <a> two\\cell\\row\\pard three",
        "one| <a> two|three");
    row("superscript", "{\\super one <a>two}{\\super <b>\\par}", "one <a>two<b>");
    row("beyond the basic plane", "<a>\\u55357?\\u56832?b",
        "<a>\xf0\x9f\x98\x80"
        "b");
}

void TestRtfFields::aFieldThatShowsNothingStaysWhereItIs()
{
    QFETCH(QByteArray, body);
    QFETCH(const QByteArray, expected);
    for (const char name : {'a', 'b'}) {
        body.replace(QByteArray("<") + name + ">", QByteArray("{\\field{\\*\\fldinst{XE ") + name + "}}{\\fldrslt}}");
    }
    body.replace("[", "{\\field{\\*\\fldinst PAGE}{\\fldrslt ").replace("]", "}}");
    const QByteArray rtf = "{\\rtf1{\\fonttbl{\\f0 Arial;}}" + body + "}";
    QCOMPARE(rtftest::roundTripFault(rtf), QString());
    const QByteArray written = rtf::write(*rtftest::documentOf(rtf));
    const QString shown = shownWithFields(*rtftest::documentOf(written));
    QCOMPARE(shown, QString::fromUtf8(expected));
    QCOMPARE(written.count("{XE "), shown.count(QLatin1Char('<')));
}

void TestRtfFields::aFieldThatShowsNothingIsWrittenOnceAfterChanges()
{
    const auto document =
        rtftest::documentOf("{\\rtf1 one {\\field{\\*\\fldinst XE a}}two three{\\field{\\*\\fldinst XE b}}}");
    QTextCursor cursor = document->find(QStringLiteral("w"));
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.mergeCharFormat(bold);
    cursor.insertText(QStringLiteral("ww"));
    cursor.movePosition(QTextCursor::End);
    cursor.insertBlock();
    cursor.insertText(QStringLiteral("four"));
    const QByteArray written = rtf::write(*document);
    QCOMPARE(written.count("XE a"), 1);
    QCOMPARE(written.count("XE b"), 1);
    // What is copied from behind the field comes without it.
    cursor.setPosition(5);
    cursor.setPosition(8, QTextCursor::KeepAnchor);
    QCOMPARE(rtf::write(cursor).count("XE a"), 0);
    cursor.setPosition(4);
    cursor.setPosition(8, QTextCursor::KeepAnchor);
    QCOMPARE(rtf::write(cursor).count("XE a"), 1);
}

void TestRtfFields::fieldsThatShowNothingUpToTheLimit()
{
    const auto keptWith = [](qsizetype length) {
        const QByteArray rtf =
            "{\\rtf1 " + ("{\\field{\\*\\fldinst X" + QByteArray(length, 'q') + "}}").repeated(2) + "x}";
        return rtf::write(*rtftest::documentOf(rtf)).count("\\fldinst");
    };
    QCOMPARE(keptWith(rtf::longestUnshownFields / 2 - 3), 2);
    QCOMPARE(keptWith(rtf::longestUnshownFields / 2 - 1), 1);
}

void TestRtfFields::fieldsInFieldsUpToTheLimit()
{
    const auto depthOf = [](int fields) {
        QByteArray rtf("{\\rtf1 ");
        for (int i = 0; i < fields; ++i) {
            rtf += "{\\field{\\*\\fldinst F" + QByteArray::number(i) + "}{\\fldrslt ";
        }
        rtf += "x" + QByteArray("}}").repeated(fields) + "}";
        const QTextCharFormat format = rtftest::formatAt(*rtftest::documentOf(rtf), QStringLiteral("x"));
        const QString outer = format.stringProperty(rtf::OuterFieldsProperty);
        return format.stringProperty(rtf::FieldProperty) +
               QString::number(outer.isEmpty() ? 1 : 2 + outer.count(QLatin1Char('\n')));
    };
    QCOMPARE(depthOf(rtf::deepestField), QStringLiteral("F%1%2").arg(rtf::deepestField - 1).arg(rtf::deepestField));
    // One more stands for itself.
    QCOMPARE(depthOf(rtf::deepestField + 1), QStringLiteral("F%1%2").arg(rtf::deepestField).arg(1));
    QCOMPARE(rtf::toPlainText("{\\rtf1 " + QByteArray("{\\field{\\*\\fldinst F}{\\fldrslt x").repeated(900)),
             QString(900, QLatin1Char('x')));
}

void TestRtfFields::aLongInstructionIsNotRepeatedForEachFieldInIt()
{
    const auto writtenWith = [](qsizetype length) {
        QByteArray rtf = "{\\rtf1 {\\field{\\*\\fldinst " + QByteArray(length, 'q') + "}{\\fldrslt ";
        for (int i = 0; i < 100; ++i) {
            rtf += "{\\field{\\*\\fldinst F" + QByteArray::number(i) + "}{\\fldrslt x}}";
        }
        const auto document = rtftest::documentOf(rtf + "}}}");
        return document->begin().begin().fragment().charFormat().stringProperty(rtf::OuterFieldsProperty).size();
    };
    QCOMPARE(writtenWith(rtf::longestOuterFields - 1), rtf::longestOuterFields - 1);
    QCOMPARE(writtenWith(rtf::longestOuterFields), 0);
}

void TestRtfFields::equationsUpToTheLimit()
{
    const auto nested = [](int depth) {
        return rtf::equationText(QStringLiteral("\\f(1,").repeated(depth) + QLatin1Char('x') +
                                 QStringLiteral(")").repeated(depth));
    };
    QCOMPARE(nested(rtf::deepestEquation), QStringLiteral("1/").repeated(rtf::deepestEquation) + QLatin1Char('x'));
    QVERIFY(nested(rtf::deepestEquation + 1).contains(QLatin1Char('x')));
    QVERIFY(nested(5000).contains(QLatin1Char('x')));
    for (const char *broken :
         {"\\", "\\f", "\\f(", "\\f(a", "\\f(a,", "\\*", "\\* \"", "\\* \"a", "\\o\\", "\\b\\lc\\", ")", "\\f)"}) {
        rtf::equationText(QString::fromLatin1(broken));
    }
}

QTEST_MAIN(TestRtfFields)
#include "tst_rtf_fields.moc"
