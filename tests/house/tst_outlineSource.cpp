// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "EntryText.h"
#include "OutlineSource.h"

#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

using namespace Qt::StringLiterals;

namespace
{

// The runs of a paragraph as "text<attributes>", the attributes in a fixed order.
QString describe(const SourceParagraph &paragraph)
{
    QStringList runs;
    for (const SourceRun &run : paragraph.runs) {
        QString attributes;
        if (run.format.fontWeight() == QFont::Bold)
            attributes += u'b';
        if (run.format.fontItalic())
            attributes += u'i';
        if (run.format.fontUnderline())
            attributes += u'u';
        if (run.format.fontStrikeOut())
            attributes += u's';
        if (run.format.hasProperty(QTextFormat::FontPointSize))
            attributes += QString::number(run.format.fontPointSize());
        if (run.format.hasProperty(QTextFormat::ForegroundBrush))
            attributes += run.format.foreground().color().name();
        if (run.format.hasProperty(QTextFormat::FontFamilies))
            attributes += run.format.fontFamilies().toStringList().join(u',');
        runs += attributes.isEmpty() ? run.text : u"%1<%2>"_s.arg(run.text, attributes);
    }
    return runs.join(u"|"_s);
}

OutlineSource entryWithText(const QString &text)
{
    return parseOutlineSource(u"%style key font Mono; size 9\n# Root\n"_s + text);
}

} // namespace

class tst_outlineSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headingsAndSettings();
    void inlineMarks_data();
    void inlineMarks();
    void paragraphs();
    void tabStopsHoldUntilTheNextHeading();
    void mistakes_data();
    void mistakes();
    void documentOfAnEntry();
};

void tst_outlineSource::headingsAndSettings()
{
    const OutlineSource source = parseOutlineSource(uR"(
; a note
%outline-font DejaVu Sans, 10.5
%text-font Liberation Serif, 12
%open-levels 3

# Root
## C# and other [labels] [tagged]
### Deep
## Ελληνικά
)");
    QCOMPARE(source.outlineFont.Name(), u"DejaVu Sans"_s);
    QCOMPARE(source.outlineFont.Size(), qint64(105000));
    QCOMPARE(source.textFont.Name(), u"Liberation Serif"_s);
    QCOMPARE(source.textFont.Size(), 12 * clsFont::point);
    QCOMPARE(source.openLevels, 3);

    QStringList outline;
    for (const SourceEntry &entry : source.entries)
        outline += u"%1 %2%3"_s.arg(entry.level).arg(entry.label, entry.tagged ? u" (tagged)"_s : QString());
    QCOMPARE(outline, QStringList({u"1 Root"_s, u"2 C# and other [labels] (tagged)"_s, u"3 Deep"_s, u"2 Ελληνικά"_s}));
}

void tst_outlineSource::inlineMarks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("runs");
    QTest::newRow("plain") << u"just words"_s << u"just words"_s;
    QTest::newRow("the four marks") << u"*b*/i/_u_~s~"_s << u"b<b>|i<i>|u<u>|s<s>"_s;
    QTest::newRow("marks within marks") << u"*a /b/ c*"_s << u"a <b>|b<bi>| c<b>"_s;
    QTest::newRow("attributes") << u"{size 14; colour C00000; font Sans; bold|x}"_s << u"x<b14#c00000Sans>"_s;
    QTest::newRow("a style") << u"press {key|Alt+A}."_s << u"press |Alt+A<9Mono>|."_s;
    QTest::newRow("a span within a span") << u"{size 14|a{key|b}c}"_s << u"a<14>|b<9Mono>|c<14>"_s;
    QTest::newRow("escapes") << uR"(\*\/\_\~\{\}\\)"_s << uR"(*/_~{}\)"_s;
    QTest::newRow("a brace that closes nothing") << u"a } b"_s << u"a } b"_s;
    QTest::newRow("tab and line break") << uR"(a\tb\nc)"_s << u"a\tb\u2028c"_s;
    QTest::newRow("lines are joined") << u"one\ntwo"_s << u"one two"_s;
    QTest::newRow("a mark across lines") << u"*one\ntwo*"_s << u"one two<b>"_s;
}

void tst_outlineSource::inlineMarks()
{
    QFETCH(QString, text);
    QFETCH(QString, runs);
    const OutlineSource source = entryWithText(text);
    QCOMPARE(source.entries.front().paragraphs.size(), std::size_t(1));
    QCOMPARE(describe(source.entries.front().paragraphs.front()), runs);
}

void tst_outlineSource::paragraphs()
{
    const OutlineSource source = entryWithText(uR"(
ended by\
a backslash

- bullet
goes on
-- deeper
> one step
>> two steps
[centre] middle
[right] end

)"_s);
    QStringList seen;
    for (const SourceParagraph &paragraph : source.entries.front().paragraphs) {
        const bool left = paragraph.alignment == Qt::AlignLeft;
        seen += u"%1%2%3:%4"_s.arg(paragraph.bullet ? u"*"_s : QString())
                    .arg(paragraph.indent)
                    .arg(left                                      ? QString()
                         : paragraph.alignment == Qt::AlignHCenter ? u"c"_s
                                                                   : u"r"_s,
                         describe(paragraph));
    }
    QCOMPARE(seen, QStringList({u"0:ended by"_s, u"0:a backslash"_s, u"0:"_s, u"*0:bullet goes on"_s, u"*1:deeper"_s,
                                u"1:one step"_s, u"2:two steps"_s, u"0c:middle"_s, u"0r:end"_s}));
}

void tst_outlineSource::tabStopsHoldUntilTheNextHeading()
{
    const OutlineSource source = entryWithText(u"[tabs 300 3000]\none\\\ntwo\n## Child\nthree"_s);
    const std::vector<SourceParagraph> &root = source.entries.front().paragraphs;
    QCOMPARE(root.size(), std::size_t(2));
    QCOMPARE(root.at(1).tabs, std::vector<int>({300, 3000}));
    QVERIFY(source.entries.back().paragraphs.front().tabs.empty());
}

void tst_outlineSource::mistakes_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("message");
    QTest::newRow("nothing") << QString() << u"line 1: no heading, so no entry"_s;
    QTest::newRow("text first") << u"words\n# Root"_s << u"line 1: text before the first heading"_s;
    QTest::newRow("two roots") << u"# A\n# B"_s << u"line 2: an outline has one root"_s;
    QTest::newRow("deep root") << u"## A"_s << u"line 1: the first heading is the root's and has one number sign"_s;
    QTest::newRow("a level left out") << u"# A\n### B"_s
                                      << u"line 2: a heading is at most one level below the one before it"_s;
    QTest::newRow("open mark") << u"# A\n\nan *open mark"_s << u"line 3: a mark is not closed: *"_s;
    QTest::newRow("crossed marks") << u"# A\n*a /b* c/"_s << u"line 2: a mark is not closed: /"_s;
    QTest::newRow("unknown attribute") << u"# A\n{sise 3|x}"_s << u"line 2: unknown attribute sise 3"_s;
    QTest::newRow("unknown setting") << u"%colour red\n# A"_s << u"line 1: unknown setting colour"_s;
    QTest::newRow("font without a size") << u"%text-font Sans\n# A"_s
                                         << u"line 1: a font is a name, a comma and a size in points"_s;
    QTest::newRow("bullet without a blank")
        << u"# A\n-x"_s << u"line 2: a blank follows the mark that begins a paragraph"_s;
    QTest::newRow("a brace without a bar") << u"# A\n{x}"_s << u"line 2: a brace opens attributes, a bar and text"_s;
    QTest::newRow("a tab stop of no width") << u"# A\n[tabs 0]\nx"_s << u"line 2: a tab stop is a number of twips"_s;
}

void tst_outlineSource::mistakes()
{
    QFETCH(QString, source);
    QFETCH(QString, message);
    QString what;
    try {
        parseOutlineSource(source);
    } catch (const SourceError &error) {
        what = QString::fromUtf8(error.what());
    }
    QCOMPARE(what, message);
}

void tst_outlineSource::documentOfAnEntry()
{
    const OutlineSource source = entryWithText(u"[centre] a *b*\n- one\n- two\n-- deep\n- three\n> in\n"_s);
    clsFont font;
    font.setName(u"Base"_s);
    font.setSize(12 * clsFont::point);
    QTextDocument document;
    buildEntryText(source.entries.front(), font, document);

    QCOMPARE(document.toPlainText(), u"a b\none\ntwo\ndeep\nthree\nin"_s);
    const QTextBlock first = document.firstBlock();
    QCOMPARE(first.blockFormat().alignment(), Qt::AlignHCenter);
    const QTextCharFormat bold = (++first.begin()).fragment().charFormat();
    QCOMPARE(bold.fontWeight(), int(QFont::Bold));
    QCOMPARE(bold.fontFamilies().toStringList(), QStringList(u"Base"_s));
    QCOMPARE(bold.fontPointSize(), 12.0);

    const QTextList *outer = document.findBlockByNumber(1).textList();
    const QTextList *inner = document.findBlockByNumber(3).textList();
    QVERIFY(outer && inner);
    QCOMPARE(outer->count(), 2);
    QCOMPARE(outer->format().indent(), 1);
    QCOMPARE(inner->format().indent(), 2);
    QCOMPARE(document.findBlockByNumber(5).blockFormat().leftMargin(), 20.0);
}

QTEST_MAIN(tst_outlineSource)
#include "tst_outlineSource.moc"
