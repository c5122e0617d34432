// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/BoundedHtml.h"
#include "model/HtmlTokens.h"
#include "model/Limits.h"
#include "rtf/Limits.h"

#include <QSet>
#include <QTest>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

#include <random>

using namespace Qt::StringLiterals;

class tst_BoundedHtml : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void anOrdinaryPageStaysWhatItIs();
    void tablesNestNoDeeperThanTheBound();
    void elementsNestNoDeeperThanTheBound();
    void whatIsNestedTooDeepKeepsItsWordsApart();
    void elementsThatAreNeverClosedNestNoDeeperEither();
    void paragraphsThatAreNeverClosedStandBesideEachOther();
    void aLongListGoesOnInAnother();
    void elementsAndCellsAreCounted();
    void theEmptyPlacesOfATableAreCounted_data();
    void theEmptyPlacesOfATableAreCounted();
    void aTableHasNoColumnInWhichNoCellBegins_data();
    void aTableHasNoColumnInWhichNoCellBegins();
    void spansOverColumnsThatAreNoneTakeNoPlaces();
    void numbersBeyondAllMeasureAreCutDown();
    void nothingFloats();
    void noMoreFontFamiliesAreNamedThanTheBound_data();
    void noMoreFontFamiliesAreNamedThanTheBound();
    void stylesBesideAFamilyBeyondTheBoundStay();
    void looksThatDifferInOneThingAreBounded_data();
    void looksThatDifferInOneThingAreBounded();
    void namesStayForStyleSheets();
    void aStyleSheetOfTooManyRulesIsLeftOut();
    void aPictureThatIsElsewhereLeavesItsWords();
    void aPictureInTheTextIsHeld();
    void picturesBeyondTheBoundsLeaveTheirWords();
    void scriptsAreNoWords();
    void theMarksOfWhatWasCopiedStay();
    void whatIsNoTagIsText();
    void plainWords_data();
    void plainWords();
    void theCostIsTheLength();
    void damagedPagesGiveWhatThereIs();
};

namespace
{

int deepestTableIn(const QTextFrame *frame, int depth = 0)
{
    int deepest = depth;
    for (const QTextFrame *child : frame->childFrames())
        deepest = std::max(deepest, deepestTableIn(child, depth + (qobject_cast<const QTextTable *>(child) ? 1 : 0)));
    return deepest;
}

QString nested(const QString &opening, const QString &closing, qsizetype times)
{
    return opening.repeated(times) + u"deep"_s + closing.repeated(times);
}

// How many elements stand within each other at most, when every tag counts.
int deepestElementIn(const QString &html)
{
    int depth = 0;
    int deepest = 0;
    HtmlTokens tokens(html);
    for (HtmlToken token = tokens.next(); token.kind != HtmlToken::Kind::End; token = tokens.next()) {
        const bool nests = htmlElement(token.name) != HtmlElement::LineBreak && token.name != "style"_L1;
        if (token.kind == HtmlToken::Kind::StartTag && nests)
            deepest = std::max(deepest, ++depth);
        else if (token.kind == HtmlToken::Kind::EndTag)
            --depth;
    }
    return depth == 0 ? deepest : -1;
}

} // namespace

void tst_BoundedHtml::anOrdinaryPageStaysWhatItIs()
{
    const QString page =
        u"<html><head><style>p { color: #112233 }</style></head><body><h1>A head</h1>"
        "<p style=\"margin-left:20px\">Some <b>bold</b> &amp; <a href=\"http://a.b/c?d=1234567\">linked</a>"
        " words.<br>Next line</p><ul><li>one</li><li>two</li></ul><table border=\"1\"><tr><td>a</td>"
        "<td colspan=\"2\">b</td></tr><tr><td>c</td><td>d</td><td>e</td></tr></table></body></html>"_s;
    QCOMPARE(boundedHtml(page).html, page);
}

void tst_BoundedHtml::tablesNestNoDeeperThanTheBound()
{
    for (const int depth : {rtf::deepestTable, rtf::deepestTable + 1, 300}) {
        const BoundedHtml bounded = boundedHtml(nested(u"<table><tr><td>x"_s, u"</td></tr></table>"_s, depth));
        QTextDocument document;
        document.setHtml(bounded.html);
        QCOMPARE(deepestTableIn(document.rootFrame()), rtf::deepestTable);
        // All words are there.
        const QString text = document.toPlainText();
        QVERIFY(text.contains(u"deep"_s));
        QVERIFY(text.count(u'x') >= std::min(depth, int(limits::deepestElement) / 3));
    }
}

void tst_BoundedHtml::elementsNestNoDeeperThanTheBound()
{
    const auto depth = int(limits::deepestElement);
    for (const int times : {depth - 1, depth, depth + 1, 20'000}) {
        const QString html = boundedHtml(nested(u"<span>"_s, u"</span>"_s, times)).html;
        QCOMPARE(deepestElementIn(html), std::min(times, depth));
        QVERIFY(html.contains(u"deep"_s));
    }
}

void tst_BoundedHtml::whatIsNestedTooDeepKeepsItsWordsApart()
{
    const QString html =
        boundedHtml(nested(u"<div>a"_s, u"z</div>"_s, qsizetype(limits::deepestElement) + 2) + u"behind"_s).html;
    QTextDocument document;
    document.setHtml(html);
    const QStringList lines = document.toPlainText().split(u'\n');
    QCOMPARE(lines.count(u"a"_s), qsizetype(limits::deepestElement) + 1);
    QCOMPARE(lines.last(), u"behind"_s);

    document.setHtml(boundedHtml(nested(u"<table><tr><td>"_s, u"</td></tr><tr><td>next</td><td>one</td></tr></table>"_s,
                                        rtf::deepestTable + 1))
                         .html);
    QVERIFY(document.toPlainText().contains(u"next one"_s));
    QVERIFY(!document.toPlainText().contains(u"deepnext"_s));
}

void tst_BoundedHtml::elementsThatAreNeverClosedNestNoDeeperEither()
{
    for (const QString &tag : {u"<div>"_s, u"<span>"_s, u"<ul><li>"_s, u"<table><tr><td>"_s, u"<blockquote>"_s}) {
        const int depth = deepestElementIn(boundedHtml(tag.repeated(10'000) + u"deep"_s).html);
        QVERIFY2(depth > 0 && depth <= int(limits::deepestElement), qPrintable(tag));
    }
}

void tst_BoundedHtml::paragraphsThatAreNeverClosedStandBesideEachOther()
{
    QCOMPARE(boundedHtml(u"<p>a<p>b<h1>c<div>d<p>e</div>f").html, u"<p>a</p><p>b</p><h1>c</h1><div>d<p>e</p></div>f"_s);
    QCOMPARE(boundedHtml(u"<ul><li>a<li>b<ul><li>c</ul><li>d</ul>").html,
             u"<ul><li>a</li><li>b<ul><li>c</li></ul></li><li>d</li></ul>"_s);
    QCOMPARE(boundedHtml(u"<table><tr><td>a<td>b<tr><td>c</table>d").html,
             u"<table><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>d"_s);
}

void tst_BoundedHtml::aLongListGoesOnInAnother()
{
    const auto listsOf = [](int items) {
        return boundedHtml(QString(u"<ol class=\"x\">"_s + u"<li>a</li>"_s.repeated(items) + u"</ol>"_s))
            .html.count(u"<ol class=\"x\">"_s);
    };
    QCOMPARE(listsOf(limits::longestHtmlList), 1);
    QCOMPARE(listsOf(limits::longestHtmlList + 1), 2);
    QCOMPARE(listsOf(5 * limits::longestHtmlList), 5);
    // The looks of each item at all before it.
    constexpr int items = 60'000;
    const QStringList lists =
        boundedHtml(QString(u"<ul>"_s + u"<li>a</li>"_s.repeated(items) + u"</ul>"_s)).html.split(u"<ul>"_s);
    qint64 looks = 0;
    for (const QString &list : lists)
        looks += list.count(u"<li>"_s) * list.count(u"<li>"_s) / 2;
    QVERIFY(looks <= limits::mostHtmlListLooks + qint64(limits::longestHtmlList) * limits::longestHtmlList +
                         qint64(items) * limits::longestLateHtmlList / 2);
}

void tst_BoundedHtml::elementsAndCellsAreCounted()
{
    QVERIFY(!boundedHtml(u"<br>"_s.repeated(limits::mostElements)).isTooMuch);
    QVERIFY(boundedHtml(u"<br>"_s.repeated(limits::mostElements + 1)).isTooMuch);
    const auto table = [](qsizetype cells) { return QString(u"<table>"_s + u"<tr><td>x"_s.repeated(cells)); };
    QVERIFY(!boundedHtml(table(limits::mostCells)).isTooMuch);
    QVERIFY(boundedHtml(table(limits::mostCells + 1)).isTooMuch);
}

void tst_BoundedHtml::theEmptyPlacesOfATableAreCounted_data()
{
    QTest::addColumn<QString>("within");
    QTest::addColumn<QString>("beyond");
    const auto row = [](int cells) { return QString(u"<tr>"_s + u"<td>x"_s.repeated(cells)); };
    constexpr int side = 100;
    constexpr int other = limits::mostCells / side;
    QTest::newRow("one wide row over many short ones")
        << u"<table>"_s + row(side) + row(1).repeated(other - 1) << u"<table>"_s + row(side) + row(1).repeated(other);
    QTest::newRow("many short rows over a wide one")
        << u"<table>"_s + row(1).repeated(other - 1) + row(side) << u"<table>"_s + row(1).repeated(other) + row(side);
    const auto over = [&row](int rows) {
        return QString(u"<table>"_s + row(200) + u"<tr><td colspan=200>x"_s.repeated(rows));
    };
    QTest::newRow("cells over many columns") << over(99) << over(100);
    const auto pushed = [&row](int rows) {
        return QString(u"<table><tr>"_s + u"<td rowspan=255>x"_s.repeated(50) + row(50).repeated(rows));
    };
    QTest::newRow("cells beside those of the rows above") << pushed(199) << pushed(200);
    const QString table = u"<table>"_s + row(side) + row(1).repeated(side - 1) + u"</table>"_s;
    QTest::newRow("several tables") << table.repeated(2) << table.repeated(2) + u"<table><tr><td>x"_s;
    // A cell counts twice for each table around its own.
    const auto inner = [&row](int rows, int around) {
        return QString(u"<table><tr><td>"_s.repeated(around) + u"<table>"_s + row(side).repeated(rows) +
                       u"</table>"_s.repeated(around + 1));
    };
    QTest::newRow("tables within tables") << inner(other / 2 - 1, 1) << inner(other / 2, 1);
    QTest::newRow("tables four tables deep") << inner(other / 16, 4) << inner(other / 16 + 1, 4);
}

void tst_BoundedHtml::theEmptyPlacesOfATableAreCounted()
{
    QFETCH(const QString, within);
    QFETCH(const QString, beyond);
    QVERIFY(!boundedHtml(within).isTooMuch);
    QVERIFY(boundedHtml(beyond).isTooMuch);
}

void tst_BoundedHtml::aTableHasNoColumnInWhichNoCellBegins_data()
{
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QString>("bounded");
    const auto row = [](const QString &cells) { return QString(u"<tr>"_s + cells + u"</tr>"_s); };
    const auto cell = [](int columns) {
        return QString(columns > 1 ? u"<td colspan=\"%1\">x</td>"_s.arg(columns) : u"<td>x</td>"_s);
    };
    const auto one = u"<td colspan=\"1\">x</td>"_s;
    QTest::newRow("a cell alone") << row(cell(180'302)) << row(one);
    QTest::newRow("a head over the columns")
        << row(cell(3)) + row(cell(1).repeated(3)) << row(cell(3)) + row(cell(1).repeated(3));
    QTest::newRow("a head wider than the columns")
        << row(cell(10)) + row(cell(1).repeated(3)) << row(cell(3)) + row(cell(1).repeated(3));
    QTest::newRow("cells beside each other") << row(cell(100).repeated(2)) << row(one.repeated(2));
    QTest::newRow("rows of other columns")
        << row(cell(20) + cell(10)) + row(cell(10) + cell(20)) << row(cell(2) + one) + row(one + cell(2));
    const QString tall = u"<td colspan=\"%1\" rowspan=\"2\">x</td>"_s;
    QTest::newRow("beside a cell of the row above")
        << row(tall.arg(10) + cell(10)) + row(cell(5) + cell(5)) << row(tall.arg(1) + cell(2)) + row(one + one);
    QTest::newRow("a table in a cell") << row(u"<td colspan=\"9\"><table><tr>%1</tr></table></td>"_s.arg(cell(7)) +
                                              cell(8))
                                       << row(u"<td colspan=\"1\"><table><tr>%1</tr></table></td>"_s.arg(one) + one);
}

void tst_BoundedHtml::aTableHasNoColumnInWhichNoCellBegins()
{
    QFETCH(const QString, rows);
    QFETCH(const QString, bounded);
    const auto table = [](const QString &content) { return QString(u"<table>"_s + content + u"</table>"_s); };
    QCOMPARE(boundedHtml(table(rows)).html, table(bounded));
}

void tst_BoundedHtml::spansOverColumnsThatAreNoneTakeNoPlaces()
{
    QCOMPARE(boundedHtml(u"<table><tr><td><table><tr><td colspan=180302>x").cells, 1 + 2);
    QCOMPARE(boundedHtml(QString(u"<table><tr><td><table><tr><td colspan=180302>x"_s + u"<tr>"_s.repeated(30))).cells,
             1 + 2 * 31);
    QTextDocument document;
    document.setHtml(boundedHtml(u"<table><tr><td colspan=200>x<td colspan=200>y").html);
    const auto *table = qobject_cast<QTextTable *>(document.rootFrame()->childFrames().value(0));
    QVERIFY(table);
    QCOMPARE(table->columns(), 2);
}

void tst_BoundedHtml::numbersBeyondAllMeasureAreCutDown()
{
    QCOMPARE(boundedHtml(u"<table cellspacing=100000000 border=9999><tr><td rowspan=1000000>x").html,
             u"<table cellspacing=\"9999\" border=\"9999\"><tr><td rowspan=\"255\">x</td></tr></table>"_s);
    QCOMPARE(boundedHtml(u"<p style='color:#123456;margin:12345px 1.333333px'>x").html,
             u"<p style=\"color:#123456;margin:9999px 1.333333px\">x</p>"_s);
    QVERIFY(boundedHtml(u"<style>p { padding: 100000px }</style>").html.contains(u"padding: 9999px"_s));
}

void tst_BoundedHtml::nothingFloats()
{
    const QString table = u"<table><tr><td>x</td></tr></table>"_s;
    for (const QString &page : {QString(u"<table style='color:red; FLOAT : left'><tr><td>x</td></tr></table>"_s),
                                QString(u"<style>table{float:right}</style>"_s + table),
                                QString(u"<style>p{} TABLE { float\n:left }</style>"_s + table)}) {
        QTextDocument document;
        document.setHtml(boundedHtml(page).html);
        const QList<QTextFrame *> frames = document.rootFrame()->childFrames();
        QCOMPARE(frames.size(), 1);
        QCOMPARE(frames.first()->frameFormat().position(), QTextFrameFormat::InFlow);
    }
    const QString word = u"<p class=\"float\">What can float: a boat</p>"_s;
    QCOMPARE(boundedHtml(word).html, word);
}

void tst_BoundedHtml::noMoreFontFamiliesAreNamedThanTheBound_data()
{
    QTest::addColumn<QString>("piece");
    QTest::newRow("styles") << u"<span style=\"color:red;font-family:F%1\">w</span> "_s;
    QTest::newRow("styles with quotes") << u"<span style='font-family : \"F%1\", serif'>w</span> "_s;
    QTest::newRow("quotes by name") << u"<span style=\"font-family:&quot;F%1&quot;\">w</span> "_s;
    QTest::newRow("colons by number") << u"<span style=\"FONT-family&#58;F%1\">w</span> "_s;
    QTest::newRow("behind comments") << u"<span style=\"/*;*/font-family/*:x*/:F%1\">w</span> "_s;
    QTest::newRow("fonts") << u"<span style=\"font: bold 12px F%1\">w</span> "_s;
    QTest::newRow("faces") << u"<font face=\"F%1\">w</font> "_s;
    QTest::newRow("style sheets") << u"<style>#a%1 { color: red; font-family: F%1 }</style><b id=a%1>w</b> "_s;
}

void tst_BoundedHtml::noMoreFontFamiliesAreNamedThanTheBound()
{
    QFETCH(const QString, piece);
    constexpr int most = int(limits::mostHtmlFamilies);
    const auto familiesOf = [&](int pieces) {
        QString page;
        for (int i = 0; i < pieces; ++i)
            page += QString(piece).replace(u"%1"_s, QString::number(i));
        QTextDocument document;
        document.setHtml(boundedHtml(page).html);
        QSet<QStringList> families;
        for (const QTextFormat &format : document.allFormats())
            families.insert(format.toCharFormat().fontFamilies().toStringList());
        families.remove({});
        families.remove({document.defaultFont().family()});
        return std::pair(families.size(), document.toPlainText().count(u'w'));
    };
    QCOMPARE(familiesOf(most), std::pair(qsizetype(most), qsizetype(most)));
    QCOMPARE(familiesOf(most + 100), std::pair(qsizetype(most), qsizetype(most) + 100));
}

void tst_BoundedHtml::stylesBesideAFamilyBeyondTheBoundStay()
{
    QString page;
    for (int i = 0; i < limits::mostHtmlFamilies; ++i)
        page += u"<font face=\"F%1\">w</font>"_s.arg(i);
    const auto behind = [&page](const QString &html) { return boundedHtml(page + html).html.sliced(page.size()); };
    QCOMPARE(behind(u"<b style=\"color:red;font-family:'A',B;font-size:9px\">x</b>"_s),
             u"<b style=\"color:red;;font-size:9px\">x</b>"_s);
    QCOMPARE(behind(u"<b style=\"font-family:&quot;A&quot;; background:&quot;&lt;&amp;\">x</b>"_s),
             u"<b style=\"; background:&quot;&lt;&amp;\">x</b>"_s);
    QCOMPARE(behind(u"<font color=\"red\" face=\"A\">x</font>"_s), u"<font color=\"red\">x</font>"_s);
    // Those that are known already do too.
    const QString known = u"<b style=\"font-family: F7 ;color:red\">x</b><font face=\"F8\">x</font>"_s;
    QCOMPARE(behind(known), known);
}

void tst_BoundedHtml::looksThatDifferInOneThingAreBounded_data()
{
    QTest::addColumn<QString>("piece");
    QTest::addColumn<int>("stay");
    constexpr int most = int(limits::mostHtmlLooks);
    QTest::newRow("names") << u"<a name=\"n%1\">w</a> "_s << 0;
    QTest::newRow("names of links") << u"<a href=\"x\" name=\"n%1\">w</a> "_s << 0;
    QTest::newRow("identities") << u"<p id=\"n%1\">w</p>"_s << 0;
    QTest::newRow("identities in a style sheet") << u"<style>#n%1 { color: red }</style><b id=n%1>w</b> "_s << most;
    const QString gradient =
        u"<span style=\"background:%2lineargradient(x1:0,x2:1,stop:0 #10%1,stop:1 red)\">w</span> "_s;
    QTest::newRow("gradients") << QString(gradient).replace(u"%2"_s, u"q"_s) << most;
    QTest::newRow("gradients with a letter by number") << QString(gradient).replace(u"%2"_s, u"&#113;"_s) << most;
    QTest::newRow("widths of columns") << u"<table><tr><td width=%1>w</td></tr></table>"_s << most;
    QTest::newRow("widths of several columns")
        << u"<table><tr><td width=5>a</td><td width=%1>w</td></tr></table>"_s << most;
}

void tst_BoundedHtml::looksThatDifferInOneThingAreBounded()
{
    QFETCH(const QString, piece);
    QFETCH(const int, stay);
    constexpr int pieces = int(limits::mostHtmlLooks) + 100;
    QString page;
    for (int i = 0; i < pieces; ++i)
        page += QString(piece).replace(u"%1"_s, QString::number(1000 + i));
    // The bound for how much a style sheet may have to say is another one.
    const QString html = boundedHtml(page).html;
    QTextDocument document;
    document.setHtml(html);
    QSet<QString> looks;
    for (const QTextFormat &format : document.allFormats()) {
        QString look = format.property(QTextFormat::AnchorName).toStringList().join(u' ');
        if (const QBrush fill = format.background(); fill.gradient())
            look += fill.gradient()->stops().first().second.name();
        if (format.isTableFormat() && !format.toTableFormat().columnWidthConstraints().isEmpty())
            look += QString::number(format.toTableFormat().columnWidthConstraints().last().rawValue());
        looks.insert(look);
    }
    looks.remove({});
    looks.remove(u"0"_s);
    QCOMPARE(looks.size(), stay);
    QCOMPARE(document.toPlainText().count(u'w'), pieces);
}

void tst_BoundedHtml::namesStayForStyleSheets()
{
    const QString page = u"<style>#a, p#b-c{color:red}</style><p id=\"a\">x</p><p id=\"b-c\">y</p>"_s;
    QCOMPARE(boundedHtml(page).html, page);
    QCOMPARE(boundedHtml(u"<style>p{color:#a}</style><p id=b>x</p>").html, u"<style>p{color:#a}</style><p>x</p>"_s);
}

void tst_BoundedHtml::aStyleSheetOfTooManyRulesIsLeftOut()
{
    const auto page = [](int rules, int elements) {
        return boundedHtml(QString(u"<style>"_s + u"p { color: red } "_s.repeated(rules) + u"</style>"_s +
                                   u"<p>x</p>"_s.repeated(elements)))
            .html;
    };
    QVERIFY(page(100, 1000).contains(u"color"_s));
    const QString without = page(2000, 2000);
    QVERIFY(!without.contains(u"color"_s));
    QCOMPARE(without.count(u"<p>x</p>"_s), 2000);
}

void tst_BoundedHtml::aPictureThatIsElsewhereLeavesItsWords()
{
    const BoundedHtml bounded =
        boundedHtml(u"a <img src=\"http://x.y/z.png\" alt=\"The &amp; logo\"> b <img src='/etc/z'> c");
    QCOMPARE(bounded.html, u"a The &amp; logo b  c"_s);
    QVERIFY(bounded.pictures.empty());
}

void tst_BoundedHtml::aPictureInTheTextIsHeld()
{
    const BoundedHtml bounded =
        boundedHtml(u"a<img width=\"20\" alt=\"b\" src=\"data:image/png;base64,aGVsbG8=\" onload=\"x\">");
    QCOMPARE(bounded.html, u"a<img src=\"quillery:pasted/0\" width=\"20\">"_s);
    QCOMPARE(bounded.pictures, std::vector<QByteArray>{"hello"});
}

void tst_BoundedHtml::picturesBeyondTheBoundsLeaveTheirWords()
{
    const QString one = u"<img alt=\"w\" src=\"data:image/png;base64,aGVsbG8=\">"_s;
    const BoundedHtml many = boundedHtml(one.repeated(qsizetype(limits::mostPastedPictures) + 1));
    QCOMPARE(many.pictures.size(), limits::mostPastedPictures);
    QVERIFY(many.html.endsWith(u'w'));
    const auto ofBytes = [](qint64 bytes) {
        return boundedHtml(QString(u"<img alt=\"w\" src=\"data:image/png;base64,"_s +
                                   QString::fromLatin1(QByteArray(bytes, 'x').toBase64()) + u"\">"_s));
    };
    QCOMPARE(ofBytes(limits::largestPicture).pictures.size(), std::size_t(1));
    QCOMPARE(ofBytes(limits::largestPicture + 1).html, u"w"_s);
}

void tst_BoundedHtml::scriptsAreNoWords()
{
    QCOMPARE(boundedHtml(u"a<script>if (a < b) document.write('</p>')</script>b<title>t</title><link rel=x>").html,
             u"ab"_s);
}

void tst_BoundedHtml::theMarksOfWhatWasCopiedStay()
{
    const QString page = u"<p>a<!--StartFragment-->b<!--EndFragment-->c</p>"_s;
    QCOMPARE(boundedHtml(page).html, page);
    QCOMPARE(boundedHtml(u"a<!-- <p> -->b<!DOCTYPE x>c").html, u"abc"_s);
}

void tst_BoundedHtml::whatIsNoTagIsText()
{
    QCOMPARE(boundedHtml(u"1 < 2 <3 and </ x").html, u"1 &lt; 2 &lt;3 and &lt;/ x"_s);
}

void tst_BoundedHtml::plainWords_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("text");
    QTest::newRow("paragraphs") << u"<p>one <b>two</b></p>\n\n<p>three</p>"_s << u"one two\nthree"_s;
    QTest::newRow("characters") << u"a &amp; b &lt;c&gt; &#252; &#x20AC; &eacute; & d &unknown; e"_s
                                << u"a & b <c> \u00fc \u20ac \u00e9 & d &unknown; e"_s;
    QTest::newRow("a table") << u"<table><tr><td>a<td>b<tr><td>c<td>d</table>"_s << u"a\tb\nc\td"_s;
    QTest::newRow("breaks") << u"a<br>b<br><br>c"_s << u"a\nb\n\nc"_s;
    QTest::newRow("no script") << u"a<script>b</script>c"_s << u"ac"_s;
}

void tst_BoundedHtml::plainWords()
{
    QFETCH(const QString, html);
    QTEST(plainTextOfHtml(html), "text");
}

// Twice the length must not give more than some twice the result, and each of these would take hours by squares.
void tst_BoundedHtml::theCostIsTheLength()
{
    for (const QString &piece : {u"<"_s, u"<!--"_s, u"<a "_s, u"<a b='"_s, u"</div>"_s, u"<style>"_s, u"&amp"_s,
                                 u"<div"_s, u"<p>"_s, u"<table>"_s, u"<td>"_s, u"a<b>"_s, u"<li>"_s, u"<!x"_s}) {
        const QString page = piece.repeated(500'000 / piece.size());
        const BoundedHtml bounded = boundedHtml(page);
        QVERIFY(bounded.html.size() <= 10 * page.size());
        QVERIFY(plainTextOfHtml(page).size() <= page.size());
    }
}

void tst_BoundedHtml::damagedPagesGiveWhatThereIs()
{
    const QStringList pieces = {u"<table>"_s, u"<tr>"_s,  u"<td>"_s,  u"</td>"_s,     u"</table>"_s,
                                u"<p>"_s,     u"</p>"_s,  u"<div>"_s, u"</div>"_s,    u"<ul>"_s,
                                u"<li>"_s,    u"</ul>"_s, u"<b>"_s,   u"</b>"_s,      u"<img src=x alt=y>"_s,
                                u"<br>"_s,    u"<!--"_s,  u"-->"_s,   u"<style>"_s,   u"</style>"_s,
                                u"<"_s,       u"&lt;"_s,  u"word "_s, u"<a href='"_s, u"'>"_s};
    std::mt19937 random(5);
    for (int round = 0; round < 500; ++round) {
        QString page;
        for (int i = 0; i < 60; ++i)
            page += pieces[random() % pieces.size()];
        const QString html = boundedHtml(page).html;
        QVERIFY2(deepestElementIn(html) >= 0, qPrintable(page));
        // What was bounded once is within the bounds.
        QCOMPARE(boundedHtml(html).html, html);
    }
}

QTEST_MAIN(tst_BoundedHtml)
#include "tst_BoundedHtml.moc"
