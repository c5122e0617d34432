// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/LeftOut.h"
#include "rtf/RtfSupport.h"

#include <QDirIterator>

using rtf::LeftOut;
using rtf::LeftOutKinds;

// What a text has that is not read is told, and nothing else is.
class TestRtfLeftOut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNotReadIsTold_data();
    void whatIsNotReadIsTold();
    void aTextThatIsWrittenHereHasNothing();
    void damagedTextsAreLookedThrough();
};

void TestRtfLeftOut::whatIsNotReadIsTold_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("kinds");
    const auto row = [](const char *name, const QByteArray &body, LeftOutKinds kinds) {
        QTest::newRow(name) << body << int(kinds);
    };
    row("nothing", "a {\\b b}\\par", {});
    row("a footnote", "a{\\super\\chftn}{\\footnote\\pard\\plain{\\super\\chftn} below}b", LeftOut::Footnotes);
    row("a footnote by \\u", "a{\\footnote\\pard\\u8364?}", LeftOut::Footnotes);
    row("a footnote in bytes", "a{\\footnote\\'e4}", LeftOut::Footnotes);
    row("a footnote without text", "a{\\footnote\\pard\\plain{\\super\\chftn} }b", {});
    row("a footnote in a cell", "\\trowd\\cellx900\\intbl a{\\footnote b}\\cell\\row", LeftOut::Footnotes);
    row("a header", "{\\headerl\\pard\\qc top\\par}a", LeftOut::Headers);
    row("a footer that counts pages", "{\\footer\\pard\\qc\\chpgn\\par}a", LeftOut::Headers);
    row("empty headers", "{\\header\\pard\\plain\\par}{\\footerf \\par}a", {});
    row("a header with a bookmark alone", "{\\header\\pard{\\*\\bkmkstart top}{\\*\\bkmkend top}\\par}a", {});
    row("the height of a header", "\\headery720\\footery720 a", {});
    row("a comment", "a{\\*\\atnid X}{\\*\\atnauthor Y}\\chatn{\\*\\annotation{\\*\\atnref 1}\\pard why?}b",
        LeftOut::Comments);
    row("a bookmark", "{\\*\\bkmkstart here}a{\\*\\bkmkend here}", LeftOut::Bookmarks);
    row("a word processor's bookmark", "{\\*\\bkmkstart _GoBack}a{\\*\\bkmkend _GoBack}", {});
    row("a mark of an index", "a{\\xe{\\v a}}", LeftOut::Marks);
    row("a mark of the contents", "a{\\tc{\\v a}}", LeftOut::Marks);
    row("a formula", "a{\\mmath{\\*\\moMath{\\mr x}}}b", LeftOut::Formulas);
    row("settings of formulas", "{\\*\\mmathPr\\mmathFont0}a", {});
    row("an embedded object", "{\\object\\objemb{\\*\\objclass X}{\\*\\objdata 0105}{\\result shown}}",
        LeftOut::Objects);
    row("several", "{\\header top}a{\\footnote below}b{\\*\\annotation why?}",
        LeftOut::Headers | LeftOut::Footnotes | LeftOut::Comments);
    row("text behind", "a{\\footnote\\pard}b c", {});
    row("a word in the text", "a\\\\footnote b \\\\header c", {});
    row("behind the end", "a}{\\footnote b", {});
}

void TestRtfLeftOut::whatIsNotReadIsTold()
{
    QFETCH(const QByteArray, body);
    QFETCH(const int, kinds);
    const QByteArray rtf = "{\\rtf1\\ansi " + body + '}';
    QCOMPARE(int(rtf::leftOut(rtf)), kinds);
    // It is told because it goes.
    QCOMPARE(int(rtf::leftOut(rtf::write(*rtftest::documentOf(rtf)))), 0);
}

void TestRtfLeftOut::aTextThatIsWrittenHereHasNothing()
{
    QDirIterator samples(QStringLiteral(QUILLERY_TEST_DATA "/rtf"), {QStringLiteral("*.rtf")}, QDir::Files);
    int told = 0;
    while (samples.hasNext()) {
        QFile file(samples.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray rtf = file.readAll();
        told += rtf::leftOut(rtf) ? 1 : 0;
        const QByteArray written = rtf::write(*rtftest::documentOf(rtf));
        QVERIFY2(!rtf::leftOut(written), qPrintable(file.fileName()));
    }
    QVERIFY(told > 0);
}

void TestRtfLeftOut::damagedTextsAreLookedThrough()
{
    const QByteArray whole = "{\\rtf1{\\footnote a}{\\*\\bkmkstart b}{\\xe c}\\bin3 }}}d}";
    for (qsizetype length = 0; length <= whole.size(); ++length) {
        (void)rtf::leftOut(whole.left(length));
        (void)rtf::leftOut(whole.sliced(length));
    }
    QVERIFY(!rtf::leftOut("\\footnote a"));
    QVERIFY(!rtf::leftOut("{\\footnote a}"));
    QVERIFY(rtf::leftOut("{\\rtf1{\\footnote a").testFlag(LeftOut::Footnotes));
}

QTEST_MAIN(TestRtfLeftOut)
#include "tst_rtf_left_out.moc"
