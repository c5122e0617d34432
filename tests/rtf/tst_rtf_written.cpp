// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/ListLabels.h"
#include "rtf/RtfSupport.h"

#include <QAbstractTextDocumentLayout>
#include <QTextCursor>
#include <QTextTable>

// What the written bytes must say beside what a document needs to come back: other readers lean on it.
class TestRtfWritten : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRowOfANestedTableSaysWhereItIs();
    void numbersAreCountedAsTheirKindSays_data();
    void numbersAreCountedAsTheirKindSays();
    void labelsStandInTheTextToo_data();
    void labelsStandInTheTextToo();
    void labelsOfTheDocumentsOwnListsStandInTheText();
    void labelsLookLikeTheTextBehindThem();
    void aListSaysAllItsIndents();
    void superscriptEndsWithItsParagraph_data();
    void superscriptEndsWithItsParagraph();
    void addressesOfLinksComeBack_data();
    void addressesOfLinksComeBack();
    void tablesComeBackAsWideAsTheyWere_data();
    void tablesComeBackAsWideAsTheyWere();
    void aRuleComesBack_data();
    void aRuleComesBack();
    void theRoomBetweenCellsComesBack_data();
    void theRoomBetweenCellsComesBack();
    void onlyAnEmptyParagraphIsARule();

private:
    // The labels that a reader shows which knows no lists, each with its text.
    static QStringList labelsIn(const QByteArray &rtf)
    {
        QStringList labels;
        for (qsizetype at = rtf.indexOf("{\\listtext"); at >= 0; at = rtf.indexOf("{\\listtext", at + 1)) {
            const QByteArray group = rtf.mid(at + 1, rtf.indexOf('}', at) - at - 1);
            labels << rtf::toPlainText("{\\rtf1\\plain" + group.sliced(group.indexOf("text") + 4) + "|}");
        }
        return labels;
    }
};

void TestRtfWritten::numbersAreCountedAsTheirKindSays_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("shown");
    const auto row = [](int kind, int number, const char *shown) {
        QTest::addRow("%d %d", kind, number) << kind << number << QString::fromLatin1(shown);
    };
    row(0, 12, "12");
    row(0, -3, "-3");
    row(1, 1994, "MCMXCIV");
    row(1, 4999, "MMMMCMXCIX");
    row(1, 5000, "5000");
    row(2, 4, "iv");
    row(2, 0, "0");
    row(3, 1, "A");
    row(3, 26, "Z");
    row(3, 27, "AA");
    row(4, 52, "az");
    row(4, 703, "aaa");
    row(4, -1, "-1");
    row(5, 1, "1st");
    row(5, 22, "22nd");
    row(5, 13, "13th");
    row(5, 113, "113th");
    row(5, 33, "33rd");
    row(22, 7, "07");
    row(22, 17, "17");
    row(57, 17, "17");
}

void TestRtfWritten::numbersAreCountedAsTheirKindSays()
{
    QFETCH(const int, kind);
    QFETCH(const int, number);
    QTEST(rtf::countedNumber({kind, number}), "shown");
}

void TestRtfWritten::labelsStandInTheTextToo_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("labels");
    QTest::newRow("numbers go on behind text between them")
        << QByteArray("\\ls4 a\\par b\\par\\pard text\\par\\ls4 c\\par") << QStringLiteral("3.) 4.) 5.)");
    QTest::newRow("deeper numbers begin anew and name those above")
        << QByteArray("\\ls4 a\\par\\ilvl1 b\\par c\\par\\ilvl0 d\\par\\ilvl1 e\\par")
        << QStringLiteral("3.) 3.a 3.b 4.) 4.a");
    QTest::newRow("bullets") << QByteArray("\\ls5 a\\par b\\par") << QStringLiteral("\u2022 \u2022");
    QTest::newRow("an empty paragraph counts")
        << QByteArray("\\ls4 a\\par\\par c\\par") << QStringLiteral("3.) 4.) 5.)");
}

void TestRtfWritten::labelsStandInTheTextToo()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, labels);
    const auto document = rtftest::documentOf(
        "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f3\\fcharset2 Symbol;}}{\\*\\listtable"
        "{\\list{\\listlevel\\levelnfc0\\levelstartat3{\\leveltext\\'03\\'00.);}{\\levelnumbers\\'01;}}"
        "{\\listlevel\\levelnfc4\\levelstartat1{\\leveltext\\'03\\'00.\\'01;}{\\levelnumbers\\'01\\'03;}}\\listid7}"
        "{\\list{\\listlevel\\levelnfc23{\\leveltext\\'01\\'b7;}{\\levelnumbers;}\\f3}\\listid8}}"
        "{\\*\\listoverridetable{\\listoverride\\listid7\\listoverridecount0\\ls4}"
        "{\\listoverride\\listid8\\listoverridecount0\\ls5}}\\f0 " +
        body + "}");
    const QByteArray written = rtf::write(*document);
    QStringList expected;
    for (const QString &label : labels.split(QLatin1Char(' '))) {
        expected << label + QStringLiteral("\t|");
    }
    QCOMPARE(labelsIn(written), expected);
    // They are no text of their own to those who know lists.
    QCOMPARE(rtf::toPlainText(written), rtf::plainText(*document));
    QCOMPARE(rtf::write(*rtftest::documentOf(written)), written);
}

void TestRtfWritten::labelsOfTheDocumentsOwnListsStandInTheText()
{
    QTextDocument document(QStringLiteral("a\nb\nc\nd\ne"));
    QTextCursor cursor(&document);
    cursor.createList(QTextListFormat::ListUpperRoman);
    QTextList *list = cursor.currentList();
    for (int i = 1; i < 4; ++i) {
        list->add(document.findBlockByNumber(i));
    }
    QCOMPARE(labelsIn(rtf::write(document)), QStringList({QStringLiteral("I.\t|"), QStringLiteral("II.\t|"),
                                                          QStringLiteral("III.\t|"), QStringLiteral("IV.\t|")}));
    // A part of it is counted from its own beginning, as it is where it is pasted. Half a paragraph has no label.
    cursor.setPosition(2);
    cursor.setPosition(6, QTextCursor::KeepAnchor);
    QCOMPARE(labelsIn(rtf::write(cursor)), QStringList({QStringLiteral("I.\t|"), QStringLiteral("II.\t|")}));
    QTextDocument word(QStringLiteral("word"));
    QTextCursor half(&word);
    half.createList(QTextListFormat::ListDisc);
    half.setPosition(2);
    half.setPosition(4, QTextCursor::KeepAnchor);
    QCOMPARE(labelsIn(rtf::write(half)), QStringList());
}

void TestRtfWritten::labelsLookLikeTheTextBehindThem()
{
    const auto document = rtftest::documentOf("{\\rtf1{\\fonttbl{\\f0 Arial;}}{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}"
                                              "\\f0\\fs20 one\\par\\b two\\par}");
    QCOMPARE(labelsIn(rtf::write(*document)).size(), 2);
    QVERIFY2(rtf::write(*document).contains("\\b{\\listtext 2.\\tab}two"), rtf::write(*document));
}

// Word processors refuse a text whose nested row begins with bare text.
void TestRtfWritten::everyRowOfANestedTableSaysWhereItIs()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextTable *outer = cursor.insertTable(2, 1);
    QTextTable *inner = outer->cellAt(0, 0).lastCursorPosition().insertTable(3, 2);
    QTextTable *innermost = inner->cellAt(1, 0).lastCursorPosition().insertTable(2, 1);
    for (int row = 0; row < 3; ++row) {
        inner->cellAt(row, 1).firstCursorPosition().insertText(QStringLiteral("inner %1").arg(row));
    }
    for (int row = 0; row < 2; ++row) {
        innermost->cellAt(row, 0).firstCursorPosition().insertText(QStringLiteral("deep %1").arg(row));
    }
    const QByteArray written = rtf::write(document);
    // A row ends where its definition does; the next one opens with its depth.
    QList<QByteArray> rows;
    qsizetype begin = 0;
    for (qsizetype end = written.indexOf("\\nestrow}"); end >= 0; end = written.indexOf("\\nestrow}", begin)) {
        rows << written.sliced(begin, end - begin);
        begin = end + 9;
    }
    QCOMPARE(rows.size(), 5);
    const QByteArray middle("\n\\pard\\intbl\\itap2");
    const QByteArray deep("\n\\pard\\intbl\\itap3");
    QVERIFY2(rows[0].contains("\\pard\\intbl\\itap2"), rows[0]);
    QVERIFY2(rows[1].startsWith(middle) && rows[1].contains("\\pard\\intbl\\itap3"), rows[1]);
    QVERIFY2(rows[2].startsWith(deep), rows[2]);
    QVERIFY2(rows[3].startsWith(middle), rows[3]);
    QVERIFY2(rows[4].startsWith(middle), rows[4]);
    const auto read = rtftest::documentOf(written);
    QCOMPARE(rtf::write(*read), written);
}

// Of a paragraph in a list that leaves one out, some word processors forget the others too.
void TestRtfWritten::aListSaysAllItsIndents()
{
    QTextDocument document(QStringLiteral("item\ntext"));
    QTextCursor(&document).createList(QTextListFormat::ListDisc);
    const QByteArray written = rtf::write(document);
    const QByteArray item = written.left(written.indexOf("item"));
    for (const char *indent : {"\\li", "\\ri", "\\fi"}) {
        QVERIFY2(item.sliced(item.lastIndexOf("\\pard")).contains(indent), written);
    }
    QVERIFY(!written.mid(written.indexOf("item")).contains("\\ri"));
}

void TestRtfWritten::superscriptEndsWithItsParagraph_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("paragraphs") << QByteArray("\\super one\\par two\\par");
    QTest::newRow("an empty one") << QByteArray("\\super one\\par\\par two\\nosupersub three\\par");
    QTest::newRow("cells") << QByteArray(
        "\\trowd\\cellx1000\\cellx2000\\intbl\\super one\\cell\\cell\\row\\pard two\\par");
    QTest::newRow("links") << QByteArray(
        "\\super one{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt two\\nosupersub  "
        "three}}four\\par{\\field{\\*\\fldinst HYPERLINK \"y\"}{\\fldrslt five\\par six}}\\par");
    QTest::newRow("items") << QByteArray("{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}\\super one\\par two\\par");
}

// Some word processors lose superscript that does not.
void TestRtfWritten::superscriptEndsWithItsParagraph()
{
    QFETCH(const QByteArray, body);
    const auto document = rtftest::documentOf("{\\rtf1{\\fonttbl{\\f0 Arial;}}\\f0\\fs24 " + body + "}");
    const QByteArray written = rtf::write(*document);
    // As in the groups that are open.
    QList<bool> isOn{false};
    const QByteArray words = QByteArray(written).replace("{\\super\\par}", "").replace("{\\super\\cell}", "");
    for (qsizetype at = 0; at < words.size(); ++at) {
        const QByteArrayView rest = QByteArrayView(words).sliced(at);
        const bool isEnd = rest.startsWith("\\par\n") || rest.startsWith("\\cell") || rest.startsWith("\\field");
        QVERIFY2(!isOn.last() || !isEnd, written);
        if (rest.front() == '{') {
            isOn << isOn.last();
        } else if (rest.front() == '}') {
            isOn.removeLast();
        } else if (rest.startsWith("\\super") || rest.startsWith("\\nosupersub")) {
            isOn.last() = rest.startsWith("\\super");
        }
    }
    const auto read = rtftest::documentOf(written);
    QCOMPARE(rtftest::difference(*read, *document), QString());
    QCOMPARE(rtf::write(*read), written);
}

void TestRtfWritten::addressesOfLinksComeBack_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address :
         {"http://example.org/?a=\"b c\"", "\"", "\"\"", "say \\\"hello\\\"", "C:\\letters\\new\\",
          "\\\\server\\share\\a b", "a#b", "{brace}", "a\\", "http://example.org/\xe4"}) {
        QTest::newRow(address) << QString::fromLatin1(address);
    }
}

void TestRtfWritten::addressesOfLinksComeBack()
{
    QFETCH(const QString, address);
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextCharFormat link;
    link.setAnchor(true);
    link.setAnchorHref(address);
    cursor.insertText(QStringLiteral("see "), QTextCharFormat());
    cursor.insertText(QStringLiteral("there"), link);
    cursor.insertText(QStringLiteral(" now"), QTextCharFormat());
    const auto read = rtftest::documentOf(rtf::write(document));
    QCOMPARE(rtf::plainText(*read), QStringLiteral("see there now"));
    QCOMPARE(rtftest::formatAt(*read, QStringLiteral("there")).anchorHref(), address);
    QVERIFY(!rtftest::formatAt(*read, QStringLiteral("now")).isAnchor());
}

void TestRtfWritten::tablesComeBackAsWideAsTheyWere_data()
{
    QTest::addColumn<QByteArray>("html");
    const QByteArray cells = "<tr><td>a</td><td>some words</td></tr><tr><td>b</td><td>c</td></tr></table>";
    QTest::newRow("as wide as its content") << "<table>" + cells;
    QTest::newRow("in the middle") << "<table align=center>" + cells;
    QTest::newRow("half the page") << "<table width=50%>" + cells;
    QTest::newRow("a number of pixels") << "<table width=300>" + cells;
    QTest::newRow("the whole page") << "<table width=100%>" + cells;
    QTest::newRow("columns in parts of it")
        << QByteArray("<table width=80%><tr><td width=25%>a</td><td width=75%>b</td></tr></table>");
    QTest::newRow("one fixed column") << QByteArray(
        "<table><tr><td width=120>a</td><td>b</td></tr><tr><td colspan=2>wide</td></tr></table>");
    QTest::newRow("more than fits") << "<table><tr><td>" + QByteArray("word ").repeated(300) +
                                           "</td><td>b</td></tr></table>";
    QTest::newRow("nested") << QByteArray(
        "<table><tr><td>a<table><tr><td>inner</td></tr></table></td><td>b</td></tr></table>");
}

void TestRtfWritten::tablesComeBackAsWideAsTheyWere()
{
    QFETCH(const QByteArray, html);
    const auto widthIn = [](QTextDocument &document) {
        document.setTextWidth(600);
        const QList<QTextFrame *> tables = document.rootFrame()->childFrames();
        return document.documentLayout()->frameBoundingRect(tables.value(0)).width();
    };
    QTextDocument document;
    document.setHtml(QString::fromLatin1("<p>before</p>" + html + "<p>after</p>"));
    const QByteArray written = rtf::write(document);
    const auto read = rtftest::documentOf(written);
    // The rims of the cells may be drawn a little differently.
    QVERIFY2(qAbs(widthIn(*read) - widthIn(document)) < 25,
             qPrintable(QStringLiteral("%1 for %2").arg(widthIn(*read)).arg(widthIn(document))));
    QCOMPARE(rtf::write(*read), written);
}

void TestRtfWritten::aRuleComesBack_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QTextLength>("width");
    QTest::newRow("a rule") << QStringLiteral("<hr>") << QTextLength(QTextLength::PercentageLength, 100);
    QTest::newRow("half a line") << QStringLiteral("<hr width=\"50%\">")
                                 << QTextLength(QTextLength::PercentageLength, 50);
    QTest::newRow("pixels") << QStringLiteral("<hr width=\"200\">") << QTextLength(QTextLength::FixedLength, 200);
    QTest::newRow("wider than anything") << QStringLiteral("<hr width=\"9999\">")
                                         << QTextLength(QTextLength::FixedLength, rtf::longestLength / 15);
}

void TestRtfWritten::aRuleComesBack()
{
    QFETCH(const QString, rule);
    QFETCH(const QTextLength, width);
    QTextDocument document;
    document.setHtml(QStringLiteral("<p>above</p>%1<p>below</p>").arg(rule));
    const auto isRule = [](const QTextBlock &block) {
        return block.blockFormat().hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth);
    };
    QVERIFY(isRule(document.findBlockByNumber(1)));
    const auto read = rtftest::documentOf(rtf::write(document));
    QCOMPARE(rtf::plainText(*read), rtf::plainText(document));
    QVERIFY(!isRule(read->findBlockByNumber(0)));
    QVERIFY(isRule(read->findBlockByNumber(1)));
    QCOMPARE(read->findBlockByNumber(1).blockFormat().lengthProperty(QTextFormat::BlockTrailingHorizontalRulerWidth),
             width);
    QVERIFY(!isRule(read->findBlockByNumber(2)));
    QCOMPARE(rtf::write(*read), rtf::write(document));
}

void TestRtfWritten::theRoomBetweenCellsComesBack_data()
{
    QTest::addColumn<QByteArray>("words");
    QTest::addColumn<double>("pixels");
    QTest::newRow("none") << QByteArray() << 0.0;
    QTest::newRow("of all sides")
        << QByteArray("\\trspdl30\\trspdfl3\\trspdt30\\trspdft3\\trspdb30\\trspdfb3\\trspdr30\\trspdfr3") << 4.0;
    QTest::newRow("beside each other") << QByteArray("\\trspdl45\\trspdr15\\trspdt90") << 4.0;
    QTest::newRow("above each other alone") << QByteArray("\\trspdt15\\trspdb15") << 2.0;
    QTest::newRow("without a unit") << QByteArray("\\trspdl30\\trspdfl0\\trspdr30\\trspdfr0") << 0.0;
    QTest::newRow("beyond all measure") << QByteArray("\\trspdl99999\\trspdr99999") << rtf::longestLength / 15.0;
}

void TestRtfWritten::theRoomBetweenCellsComesBack()
{
    QFETCH(const QByteArray, words);
    QFETCH(const double, pixels);
    const QByteArray rtf =
        "{\\rtf1\\trowd\\trgaph60" + words + "\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row\\pard}";
    const auto spacingIn = [](const QTextDocument &document) {
        const auto *table = qobject_cast<QTextTable *>(document.rootFrame()->childFrames().value(0));
        return table && !table->format().borderCollapse() ? table->format().cellSpacing() : 0;
    };
    const auto document = rtftest::documentOf(rtf);
    QCOMPARE(spacingIn(*document), pixels);
    const QByteArray written = rtf::write(*document);
    QCOMPARE(written.contains("\\trspd"), pixels > 0);
    const auto read = rtftest::documentOf(written);
    QCOMPARE(spacingIn(*read), pixels);
    QCOMPARE(rtf::write(*read), written);
}

// The text of other paragraphs would be lost where they are handed on as HTML.
void TestRtfWritten::onlyAnEmptyParagraphIsARule()
{
    const auto document = rtftest::documentOf("{\\rtf1\\brdrb\\brdrs\\brdrw15 words\\par\\pard"
                                              "\\brdrt\\brdrs\\brdrw15\\brdrb\\brdrs\\brdrw15\\par\\pard x\\par}");
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        QVERIFY(!block.blockFormat().hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth));
    }
}

QTEST_MAIN(TestRtfWritten)
#include "tst_rtf_written.moc"
