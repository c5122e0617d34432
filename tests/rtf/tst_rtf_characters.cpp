// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/RtfSupport.h"
#include "rtf/VisibleText.h"

#include <QTextCursor>

// Whatever character a text holds, it is there when the text was written and read again, or something stands in its
// place that a reader sees.
class TestRtfCharacters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCharacterIsKeptOrInSight_data();
    void everyCharacterIsKeptOrInSight();
    void aPictureCharacterWithoutAPictureKeepsItsText();
    void textInThePictureFormatIsWrittenBesideThePicture();
    void pairsAtTheEndOfAChunkAreWhole();
    void halvesOfCharactersAreReplaced();
    void aLabelOfPairsComesBack();

private:
    static bool isBreakInADocument(char16_t unit)
    {
        return unit == '\n' || unit == '\r' || unit == QChar::ParagraphSeparator || unit == 0xFDD0 || unit == 0xFDD1;
    }

    static QString characterOf(char32_t point)
    {
        return point <= 0xFFFF ? QString(QChar(static_cast<char16_t>(point))) : QString::fromUcs4(&point, 1);
    }

    // What is to be read where a character was written.
    static QString expectedOf(char32_t point)
    {
        if (point == '\v' || point == '\f') {
            return QString(QChar(QChar::LineSeparator));
        }
        if (point < 0x20 && point != '\t') {
            return QString(QChar(static_cast<char16_t>(0x2400 + point)));
        }
        if (QChar::isSurrogate(point) || point == 0xFFFC || point == 0xFFFE || point == 0xFFFF) {
            return QString(QChar(QChar::ReplacementCharacter));
        }
        return characterOf(point);
    }
};

void TestRtfCharacters::everyCharacterIsKeptOrInSight_data()
{
    QTest::addColumn<uint>("first");
    QTest::addColumn<uint>("last");
    QTest::addColumn<uint>("step");
    QTest::newRow("all of the basic plane") << 0u << 0xFFFFu << 1u;
    QTest::newRow("a sample of the others") << 0x10000u << 0x10FFFFu << 1021u;
    QTest::newRow("the end of the last") << 0x10FFF0u << 0x10FFFFu << 1u;
}

void TestRtfCharacters::everyCharacterIsKeptOrInSight()
{
    QFETCH(const uint, first);
    QFETCH(const uint, last);
    QFETCH(const uint, step);
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    QStringList expected;
    for (char32_t point = first; point <= last; point += step) {
        if (point <= 0xFFFF && isBreakInADocument(static_cast<char16_t>(point))) {
            continue;
        }
        const QString character = characterOf(point);
        if (!expected.isEmpty()) {
            cursor.insertBlock();
        }
        cursor.insertText(QLatin1Char('a') + character + QLatin1Char('b'));
        expected << QLatin1Char('a') + expectedOf(point) + QLatin1Char('b');
    }
    cursor.endEditBlock();
    QCOMPARE(document.blockCount(), int(expected.size()));

    const QByteArray written = rtf::write(document);
    const auto read = rtftest::documentOf(written);
    QCOMPARE(read->blockCount(), int(expected.size()));
    qsizetype i = 0;
    for (QTextBlock block = read->begin(); block.isValid(); block = block.next()) {
        QCOMPARE(block.text(), expected[i++]);
    }
    QCOMPARE(rtf::write(*read), written);
}

void TestRtfCharacters::aPictureCharacterWithoutAPictureKeepsItsText()
{
    QTextDocument document;
    QTextCursor(&document).insertText(QStringLiteral("the picture \uFFFC shows my house"));
    const auto read = rtftest::documentOf(rtf::write(document));
    QCOMPARE(rtf::plainText(*read), QStringLiteral("the picture \uFFFD shows my house"));
}

void TestRtfCharacters::textInThePictureFormatIsWrittenBesideThePicture()
{
    const auto document = rtftest::documentOf("{\\rtf1 x{\\pict\\wmetafile8\\picw2540\\pich1270 0102030405}y}");
    QTextCursor cursor(document.get());
    cursor.setPosition(1);
    cursor.setPosition(2, QTextCursor::KeepAnchor);
    const QTextCharFormat picture = cursor.charFormat();
    QVERIFY(picture.isImageFormat());
    cursor.setPosition(2);
    cursor.insertText(QStringLiteral("my words"));
    cursor.setPosition(2);
    cursor.setPosition(10, QTextCursor::KeepAnchor);
    cursor.setCharFormat(picture);
    const auto read = rtftest::documentOf(rtf::write(*document));
    QCOMPARE(read->begin().text(), QStringLiteral("x\uFFFCmy wordsy"));
}

void TestRtfCharacters::pairsAtTheEndOfAChunkAreWhole()
{
    // Pairs at every distance from the beginning, so that one of the texts has a pair wherever the writer pauses.
    for (const QString &lead : {QString(), QStringLiteral("x")}) {
        const QString text = lead + QStringLiteral("\U0001F600").repeated(5000);
        QTextDocument document(text);
        QCOMPARE(rtf::plainText(*rtftest::documentOf(rtf::write(document))), text);
    }
}

void TestRtfCharacters::halvesOfCharactersAreReplaced()
{
    const QChar high(QChar::highSurrogate(0x1F600));
    const QChar low(QChar::lowSurrogate(0x1F600));
    const QString replaced(QChar(QChar::ReplacementCharacter));
    QTextDocument document(QStringLiteral("a") + high + QStringLiteral("b") + low + QStringLiteral("c") + low + high);
    QCOMPARE(rtf::plainText(*rtftest::documentOf(rtf::write(document))),
             QLatin1Char('a') + replaced + QLatin1Char('b') + replaced + QLatin1Char('c') + replaced + replaced);
    QCOMPARE(rtf::visibleText(QString(high) + high + low + low), replaced + high + low + replaced);
}

void TestRtfCharacters::aLabelOfPairsComesBack()
{
    const QByteArray rtf =
        "{\\rtf1{\\fonttbl{\\f0 Arial;}}{\\*\\listtable{\\list{\\listlevel\\levelnfc23{\\leveltext\\'02\\u-10179"
        "?\\u-8704?;}{\\levelnumbers;}}\\listid7}}{\\*\\listoverridetable{\\listoverride\\listid7"
        "\\listoverridecount0\\ls4}}\\ls4 one\\par}";
    const auto first = rtftest::documentOf(rtf);
    const auto second = rtftest::documentOf(rtf::write(*first));
    QVERIFY(rtf::write(*first).contains("\\u-10179?\\u-8704?"));
    QCOMPARE(rtftest::difference(*second, *first), QString());
}

QTEST_MAIN(TestRtfCharacters)
#include "tst_rtf_characters.moc"
