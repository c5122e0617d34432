// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/FileNature.h"

#include <QFont>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_FileNature : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsPlainText_data();
    void whatIsPlainText();
    void compressedBytesAreNoText();
    void whatLooksPlain_data();
    void whatLooksPlain();
};

void tst_FileNature::whatIsPlainText_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("plain");
    QTest::newRow("nothing") << QByteArray() << true;
    QTest::newRow("ASCII") << QByteArray("one\r\ntwo\tthree\n") << true;
    QTest::newRow("a script") << QByteArray("#!/bin/sh\necho '{\\rtf'\n") << true;
    QTest::newRow("UTF-8") << u"Gr\u00FC\u00DFe, \u03B1 \U0001F600"_s.toUtf8() << true;
    QTest::newRow("UTF-8 with its mark") << "\xEF\xBB\xBF" + u"Gr\u00FC\u00DFe"_s.toUtf8() << true;
    QTest::newRow("Windows-1252") << QByteArray("Gr\xFC\xDF"
                                                "e \x93so\x94 \x80")
                                  << true;
    QTest::newRow("UTF-16") << QByteArray("\xFF\xFEG\0r\0", 6) << true;
    QTest::newRow("a terminal's colours, a form feed, an end mark") << QByteArray("\x1B[1mbold\x1B[0m\f\x1A") << true;

    QTest::newRow("a NUL") << QByteArray("one\0two", 7) << false;
    QTest::newRow("other control characters") << QByteArray("one\x01\x02") << false;
    QTest::newRow("the head of a picture") << QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16) << false;
    QTest::newRow("the head of a packed file") << QByteArray("PK\x03\x04\x14\0\0\0", 8) << false;
    QTest::newRow("UTF-8 with a mark and a broken character") << QByteArray("\xEF\xBB\xBF"
                                                                            "abc\xC3(")
                                                              << false;
    QTest::newRow("UTF-8 with one broken character") << u"\u00FC\u00DF\u00E4"_s.toUtf8() + "\xC3(" << false;
    QTest::newRow("UTF-16 with half a character") << QByteArray("\xFF\xFEG\0r", 5) << false;
    QTest::newRow("UTF-16 with a NUL") << QByteArray("\xFF\xFEG\0\0\0", 6) << false;
    QTest::newRow("bytes that no character set has") << QByteArray("a\x81\x8D z") << false;
    QTest::newRow("RTF") << QByteArray("{\\rtf1\\ansi Hello}") << false;
}

void tst_FileNature::whatIsPlainText()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, plain);
    QCOMPARE(whyNoPlainText(bytes).isEmpty(), plain);
}

void tst_FileNature::compressedBytesAreNoText()
{
    QRandomGenerator random(5);
    for (int size : {200, 1000, 5000}) {
        QByteArray bytes(size, '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random.bounded(256));
        QVERIFY(!whyNoPlainText(bytes).isEmpty());
    }
}

void tst_FileNature::whatLooksPlain_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("plain");
    const QByteArray head =
        "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1 Courier;}}{\\colortbl;\\red255\\green0\\blue0;}\\f0\\fs20 ";
    QTest::newRow("nothing") << QByteArray() << true;
    QTest::newRow("plain characters") << QByteArray("as they stand") << true;
    QTest::newRow("paragraphs of one look") << head + "one\\par two\\line three\\tab four\\par}" << true;
    QTest::newRow("bold") << head + "one {\\b two}}" << false;
    QTest::newRow("all of it bold") << head + "\\b one}" << false;
    QTest::newRow("italic") << head + "one {\\i two}}" << false;
    QTest::newRow("underlined") << head + "one {\\ul two}}" << false;
    QTest::newRow("struck out") << head + "one {\\strike two}}" << false;
    QTest::newRow("coloured") << head + "one {\\cf1 two}}" << false;
    QTest::newRow("raised") << head + "one {\\super two}}" << false;
    QTest::newRow("two fonts") << head + "one {\\f1 two}}" << false;
    QTest::newRow("two sizes") << head + "one {\\fs40 two}}" << false;
    QTest::newRow("all of it in another font") << head + "\\f1 one\\par two}" << false;
    QTest::newRow("all of it in another size") << head + "\\fs40 one\\par two}" << false;
    QTest::newRow("in a language") << head + "\\lang1031 eins}" << true;
    QTest::newRow("hidden") << head + "one {\\v two}}" << false;
    QTest::newRow("capitals") << head + "one {\\caps two}}" << false;
    QTest::newRow("small capitals") << head + "one {\\scaps two}}" << false;
    QTest::newRow("spaced out") << head + "one {\\expndtw40 two}}" << false;
    QTest::newRow("stretched") << head + "one {\\charscalex150 two}}" << false;
    QTest::newRow("outlined") << head + "one {\\outl two}}" << false;
    QTest::newRow("a field") << head + "{\\field{\\*\\fldinst PAGE}{\\fldrslt 2}}}" << false;
    QTest::newRow("space before") << head + "\\sb240 one\\par}" << false;
    QTest::newRow("space after") << head + "\\sa240 one\\par}" << false;
    QTest::newRow("line spacing") << head + "\\sl480\\slmult1 one\\par}" << false;
    QTest::newRow("tab stops") << head + "\\tx3000 one\\tab two\\par}" << false;
    QTest::newRow("a rule") << head + "one\\par\\pard\\brdrb\\brdrs\\brdrw15\\par\\pard two}" << false;
    QTest::newRow("a page break") << head + "one\\par\\pagebb two\\par}" << false;
    QTest::newRow("a heading") << head + "\\outlinelevel0 one\\par}" << false;
    QTest::newRow("shaded") << head + "\\cbpat1 one\\par}" << false;
    QTest::newRow("centred") << head + "\\qc one\\par}" << false;
    QTest::newRow("indented") << head + "\\li720 one\\par}" << false;
    QTest::newRow("a bullet") << head +
                                     "{\\pntext\\'B7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}\\fi-200\\li200 one\\par}"
                              << false;
    QTest::newRow("a table") << head + "\\trowd\\cellx1000\\cellx2000 a\\cell b\\cell\\row}" << false;
    QTest::newRow("a link") << head + "{\\field{\\*\\fldinst HYPERLINK \"http://a.example\"}{\\fldrslt two}}}" << false;
    QTest::newRow("a picture")
        << head + "{\\pict\\pngblip "
                  "89504e470d0a1a0a0000000d4948445200000001000000010802000000907753de0000000c4944415408d763f8cfc0000003"
                  "0101003e2e7d2b0000000049454e44ae426082}}"
        << false;
}

void tst_FileNature::whatLooksPlain()
{
    QFETCH(const QByteArray, text);
    QFETCH(const bool, plain);
    QFont font(u"Arial"_s, 10);
    QCOMPARE(looksPlain(text, font), plain);
    // What is bold throughout is so by the font where the document's is bold.
    font.setBold(true);
    const bool isBold = QByteArrayView(QTest::currentDataTag()) == "all of it bold";
    QCOMPARE(looksPlain(text, font), isBold || !text.startsWith("{\\rtf"));
}

QTEST_MAIN(tst_FileNature)
#include "tst_FileNature.moc"
