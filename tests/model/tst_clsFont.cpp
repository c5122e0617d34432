// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/clsFont.h"
#include "support/FakeDocument.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class tst_clsFont : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewDescriptionIsNotSet();
    void copyingMakesThemEqualFieldByField_data();
    void copyingMakesThemEqualFieldByField();
    void aPlatformFontIsRead();
    void aPixelSizedFontHasNoSize();
    void aDescriptionIsWrittenIntoAPlatformFont();
    void withoutNameAndSizeOnlyTheStylesAreSet_data();
    void withoutNameAndSizeOnlyTheStylesAreSet();
    void aMonstrousSizeIsHeldWithinReason();
    void allOfAPanesTextGetsTheFontAndTheSelectionStays();
    void withoutNameAndSizeThePaneKeepsItsOwn();
};

static clsFont fullDescription()
{
    clsFont font;
    font.setName(u"Courier 10 Pitch"_s);
    font.setSize(82500);
    font.setBold(true);
    font.setItalic(true);
    font.setStrikeThrough(true);
    font.setUnderline(true);
    return font;
}

void tst_clsFont::aNewDescriptionIsNotSet()
{
    const clsFont font;
    QVERIFY(!font.Bold() && !font.Italic() && !font.StrikeThrough() && !font.Underline());
    QVERIFY(font.Name().isEmpty());
    QCOMPARE(font.Size(), 0);
}

void tst_clsFont::copyingMakesThemEqualFieldByField_data()
{
    QTest::addColumn<bool>("full");
    QTest::newRow("a full description") << true;
    QTest::newRow("an empty name over a set one") << false;
}

void tst_clsFont::copyingMakesThemEqualFieldByField()
{
    QFETCH(const bool, full);
    const clsFont source = full ? fullDescription() : clsFont();
    clsFont target = full ? clsFont() : fullDescription();
    source.CopyTo(target);
    QCOMPARE(target.Bold(), source.Bold());
    QCOMPARE(target.Italic(), source.Italic());
    QCOMPARE(target.Name(), source.Name());
    QCOMPARE(target.Size(), source.Size());
    QCOMPARE(target.StrikeThrough(), source.StrikeThrough());
    QCOMPARE(target.Underline(), source.Underline());
    QVERIFY(target == source);
}

void tst_clsFont::aPlatformFontIsRead()
{
    QFont platformFont(u"Serif"_s);
    platformFont.setPointSizeF(8.25);
    platformFont.setBold(true);
    platformFont.setStrikeOut(true);
    clsFont font;
    font.GetFont(platformFont);
    QCOMPARE(font.Name(), u"Serif"_s);
    QCOMPARE(font.Size(), 82500);
    QVERIFY(font.Bold() && font.StrikeThrough());
    QVERIFY(!font.Italic() && !font.Underline());
}

void tst_clsFont::aPixelSizedFontHasNoSize()
{
    QFont platformFont(u"Serif"_s);
    platformFont.setPixelSize(20);
    clsFont font = fullDescription();
    font.GetFont(platformFont);
    QCOMPARE(font.Size(), 0);
}

void tst_clsFont::aDescriptionIsWrittenIntoAPlatformFont()
{
    QFont platformFont(u"Serif"_s, 20);
    fullDescription().SetFont(platformFont);
    QCOMPARE(platformFont.family(), u"Courier 10 Pitch"_s);
    QCOMPARE(platformFont.pointSizeF(), 8.25);
    QVERIFY(platformFont.bold() && platformFont.italic() && platformFont.strikeOut() && platformFont.underline());
}

void tst_clsFont::withoutNameAndSizeOnlyTheStylesAreSet_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("size 0") << qint64(0);
    QTest::newRow("a negative size") << qint64(-100000);
}

void tst_clsFont::withoutNameAndSizeOnlyTheStylesAreSet()
{
    QFETCH(const qint64, size);
    clsFont font;
    font.setSize(size);
    font.setUnderline(true);
    QFont platformFont(u"Serif"_s, 20);
    platformFont.setBold(true);
    platformFont.setItalic(true);
    platformFont.setStrikeOut(true);
    font.SetFont(platformFont);
    QCOMPARE(platformFont.family(), u"Serif"_s);
    QCOMPARE(platformFont.pointSize(), 20);
    QVERIFY(!platformFont.bold() && !platformFont.italic() && !platformFont.strikeOut());
    QVERIFY(platformFont.underline());
}

void tst_clsFont::aMonstrousSizeIsHeldWithinReason()
{
    clsFont font;
    font.setSize(std::numeric_limits<qint64>::max());
    QFont platformFont;
    font.SetFont(platformFont);
    QCOMPARE(platformFont.pointSizeF(), 1638.0);
    FakeTextPane pane;
    font.SetRTFSelFont(pane);
    QCOMPARE(pane.SelFontSize(), 1638.0);
    QCOMPARE(font.Size(), std::numeric_limits<qint64>::max());
}

void tst_clsFont::allOfAPanesTextGetsTheFontAndTheSelectionStays()
{
    FakeTextPane pane;
    pane.setSelText(u"some text"_s);
    pane.setSelStart(3);
    pane.setSelLength(4);
    fullDescription().SetRTFSelFont(pane);
    QCOMPARE(pane.SelStart(), 3);
    QCOMPARE(pane.SelLength(), 4);
    pane.setSelStart(0);
    pane.setSelLength(9);
    QCOMPARE(pane.SelFontName(), u"Courier 10 Pitch"_s);
    // Texts have their sizes in half points.
    QCOMPARE(pane.SelFontSize(), 8.5);
    QVERIFY(*pane.SelBold() && *pane.SelItalic() && *pane.SelStrikeThru() && *pane.SelUnderline());
}

void tst_clsFont::withoutNameAndSizeThePaneKeepsItsOwn()
{
    FakeTextPane pane;
    pane.setSelFontName(u"Serif"_s);
    pane.setSelFontSize(20);
    pane.setSelBold(true);
    clsFont().SetRTFSelFont(pane);
    QCOMPARE(pane.SelFontName(), u"Serif"_s);
    QCOMPARE(pane.SelFontSize(), 20.0);
    QCOMPARE(pane.SelBold(), false);
}

QTEST_MAIN(tst_clsFont)
#include "tst_clsFont.moc"
