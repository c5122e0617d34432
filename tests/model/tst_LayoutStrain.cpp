// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/LayoutStrain.h"
#include "model/Limits.h"
#include "rtf/Rtf.h"

#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

using namespace Qt::StringLiterals;

// How much of what the text engine is slow with a text may have.
class tst_LayoutStrain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatPeopleWriteIsBearable_data();
    void whatPeopleWriteIsBearable();
    void whatTheTextEngineIsSlowWithIsNot_data();
    void whatTheTextEngineIsSlowWithIsNot();
    void whatIsTooTallIsNot_data();
    void whatIsTooTallIsNot();
    void manyTablesThatFloatAreNot();
    void theBaseFontCounts();
    void strainsAddUp();

private:
    static LayoutStrain strainOf(const QByteArray &rtf)
    {
        QTextDocument document;
        rtf::read("{\\rtf1 " + rtf + "}", document);
        return layoutStrain(document);
    }

    static LayoutStrain strainOf(const QString &text)
    {
        QTextDocument document;
        document.setPlainText(text);
        return layoutStrain(document);
    }
};

void tst_LayoutStrain::whatPeopleWriteIsBearable_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a long paragraph") << u"some words "_s.repeated(90'000);
    QTest::newRow("many lines") << u"a line of words\n"_s.repeated(90'000);
    QTest::newRow("words of two scripts") << u"word \u05d0\u05d1\u05d2 "_s.repeated(90'000);
    QTest::newRow("ideographs") << u"\u6f22\u5b57"_s.repeated(400'000);
    QTest::newRow("letters with their marks") << u"\u05d0\u05b8\u05bc\u0591 a\u0323\u0301 "_s.repeated(90'000);
    QTest::newRow("some emoji") << u"well \U0001F469\u200d\U0001F467 said\n"_s.repeated(5000);
    QTest::newRow("a paragraph of emoji") << u"\U0001F469 \U0001F467 "_s.repeated(500);
    QTest::newRow("tabulators") << u"a\tb\tc\n"_s.repeated(90'000);
    QTest::newRow("a long address") << QString(5000, u'x');
}

void tst_LayoutStrain::whatPeopleWriteIsBearable()
{
    QFETCH(const QString, text);
    const LayoutStrain strain = strainOf(text);
    QVERIFY(strain.isBearable());
    QVERIFY(strain.effort < limits::mostEffort / 2);
}

void tst_LayoutStrain::whatTheTextEngineIsSlowWithIsNot_data()
{
    QTest::addColumn<QByteArray>("piece");
    QTest::addColumn<int>("within");
    QTest::addColumn<int>("beyond");
    const auto numbered = [](const QByteArray &before, const QByteArray &behind) {
        QByteArray pieces;
        for (int i = 2; i < 4000; ++i)
            pieces += before + QByteArray::number(i) + behind;
        return pieces;
    };
    QTest::newRow("one font") << QByteArray("{\\b x} ") << 50'000 << 0;
    QTest::newRow("fonts") << numbered("{\\fs", " x} ") << 0 << 1;
    QTest::newRow("distances of letters") << numbered("{\\expndtw", " x} ") << 0 << 1;
    QTest::newRow("runs in words") << QByteArray("{\\b x}y ") << 50'000 << 0;
    QTest::newRow("runs in one word") << QByteArray("{\\b x}y") << 2000 << 60'000;
    QTest::newRow("scripts in one word") << QByteArray("a\\u1488?") << 2000 << 60'000;
    QTest::newRow("long words") << QByteArray(20'000, 'x') + ' ' << 10 << 60;
    QByteArray row("\\trowd");
    for (int cell = 1; cell <= 50; ++cell)
        row += "\\cellx" + QByteArray::number(cell * 600);
    QTest::newRow("words in cells") << row + QByteArray("some words\\cell ").repeated(50) + "\\row " << 300 << 0;
    QTest::newRow("long words in cells") << row + (QByteArray(2000, 'x') + "\\cell ").repeated(50) + "\\row " << 2 << 9;
    QTest::newRow("marks in one place") << QByteArray("\\u769?") << 1000 << 40'000;
    QTest::newRow("emoji") << QByteArray("\\u-10179?\\u-8704?\\par ") << 10'000 << 40'000;
    QTest::newRow("emoji in one paragraph") << QByteArray("\\u-10179?\\u-8704? ") << 2000 << 4000;
    QTest::newRow("tabulators without stops") << QByteArray("\\tab ") << 50'000 << 0;
    QTest::newRow("tabulators over left stops") << QByteArray("\\tx900\\tab ") << 1000 << 20'000;
    QTest::newRow("tabulators over right stops") << QByteArray("\\tqr\\tx900\\tab ") << 1000 << 20'000;
    QTest::newRow("lines of tabulators over stops") << QByteArray("\\tx900 a\\tab b\\par ") << 20'000 << 0;
}

void tst_LayoutStrain::whatTheTextEngineIsSlowWithIsNot()
{
    QFETCH(const QByteArray, piece);
    QFETCH(const int, within);
    QFETCH(const int, beyond);
    QVERIFY(strainOf(piece.repeated(within)).isBearable());
    if (beyond > 0)
        QVERIFY(!strainOf(piece.repeated(beyond)).isBearable());
}

void tst_LayoutStrain::whatIsTooTallIsNot_data()
{
    QTest::addColumn<QByteArray>("piece");
    QTest::newRow("space before") << QByteArray("\\sb31680 x\\par ");
    QTest::newRow("space behind") << QByteArray("\\sa31680 x\\par ");
    QTest::newRow("lines far apart") << QByteArray("\\sl31680\\slmult0 x\\par ");
    QTest::newRow("huge letters") << QByteArray("\\fs3276 x\\par ");
    QTest::newRow("no room for the lines") << QByteArray("\\li15000 ") + QByteArray("word ").repeated(100) + "\\par ";
    QTest::newRow("no room in a cell") << "\\trowd\\cellx300 " + QByteArray("w ").repeated(500) + "\\cell\\row ";
}

void tst_LayoutStrain::whatIsTooTallIsNot()
{
    QFETCH(const QByteArray, piece);
    QVERIFY(strainOf(piece.repeated(100)).isBearable());
    QVERIFY(!strainOf(piece.repeated(5000)).isBearable());
}

void tst_LayoutStrain::manyTablesThatFloatAreNot()
{
    const auto strainOfTables = [](int tables, QTextFrameFormat::Position position) {
        QTextDocument document;
        QTextCursor cursor(&document);
        QTextTableFormat format;
        format.setPosition(position);
        for (int i = 0; i < tables; ++i) {
            cursor.insertTable(1, 1, format);
            cursor.movePosition(QTextCursor::End);
        }
        return layoutStrain(document);
    };
    QVERIFY(strainOfTables(2000, QTextFrameFormat::InFlow).isBearable());
    QVERIFY(strainOfTables(1000, QTextFrameFormat::FloatLeft).isBearable());
    QVERIFY(!strainOfTables(2000, QTextFrameFormat::FloatRight).isBearable());
}

void tst_LayoutStrain::theBaseFontCounts()
{
    QTextDocument document;
    QFont font;
    font.setPointSize(10);
    document.setDefaultFont(font);
    document.setPlainText(u"x\n"_s.repeated(50'000));
    QVERIFY(layoutStrain(document).isBearable());
    font.setPointSize(200);
    document.setDefaultFont(font);
    QVERIFY(!layoutStrain(document).isBearable());
}

void tst_LayoutStrain::strainsAddUp()
{
    LayoutStrain strain{limits::tallestText / 2, limits::mostEffort / 2};
    strain += strain;
    QVERIFY(strain.isBearable());
    strain += {1, 0};
    QVERIFY(!strain.isBearable());
    QVERIFY(strain.isBearable(limits::shownStrain));
    QVERIFY(!LayoutStrain({0, limits::mostEffort + 1}).isBearable());
    // Two paragraphs may become one.
    LayoutStrain emoji = strainOf(u"\U0001F469 "_s.repeated(2000));
    QVERIFY(emoji.isBearable());
    emoji += emoji;
    QVERIFY(!emoji.isBearable());
}

QTEST_MAIN(tst_LayoutStrain)
#include "tst_LayoutStrain.moc"
