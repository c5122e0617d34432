// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/Folding.h"
#include "find/RandomText.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_Folding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void caseAndAccentsDoNotCount_data();
    void caseAndAccentsDoNotCount();
    void differentLettersStayDifferent_data();
    void differentLettersStayDifferent();
    void blanksAndControlsAreGaps_data();
    void blanksAndControlsAreGaps();
    void whatIsNotSeenIsLeftOut();
    void charactersThatCompareAlikeFoldAlike();
    void aTextFoldsAsItsCharactersDo();
    void bothNormalFormsFoldAlike();
};

void tst_Folding::caseAndAccentsDoNotCount_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::newRow("case") << u"Quillery"_s << u"qUILLERY"_s;
    QTest::newRow("accents") << u"r\u00e9sum\u00e9"_s << u"resume"_s;
    QTest::newRow("accents set apart") << u"re\u0301sume\u0301"_s << u"r\u00e9sum\u00e9"_s;
    QTest::newRow("several accents") << u"\u1ec7"_s << u"E"_s;
    QTest::newRow("Greek, the sigma at the end too") << u"\u1f49\u03b4\u03c5\u03c3\u03c3\u03b5\u03cd\u03c2"_s
                                                     << u"\u03bf\u03b4\u03c5\u03c3\u03c3\u03b5\u03c5\u03c3"_s;
    QTest::newRow("Cyrillic") << u"\u0419\u0451"_s << u"\u0438\u0435"_s;
    QTest::newRow("Hebrew points") << u"\u05e9\u05b8\u05c1"_s << u"\u05e9"_s;
    QTest::newRow("Korean set apart") << u"\uac01"_s << u"\u1100\u1161\u11a8"_s;
    QTest::newRow("beyond the basic plane") << u"\U00010400"_s << u"\U00010428"_s;
    QTest::newRow("long s and kelvin sign") << u"\u017f\u212a"_s << u"SK"_s;
}

void tst_Folding::caseAndAccentsDoNotCount()
{
    QFETCH(const QString, one);
    QFETCH(const QString, other);
    QCOMPARE(folded(one), folded(other));
    QVERIFY(!folded(one).isEmpty());
}

void tst_Folding::differentLettersStayDifferent_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::newRow("letters") << u"cat"_s << u"cot"_s;
    QTest::newRow("Korean") << u"\uac00"_s << u"\uac01"_s;
    QTest::newRow("hyphens") << u"-"_s << u"\u2011"_s;
    QTest::newRow("emoji") << u"\U0001f600"_s << u"\U0001f601"_s;
}

void tst_Folding::differentLettersStayDifferent()
{
    QFETCH(const QString, one);
    QFETCH(const QString, other);
    QVERIFY(folded(one) != folded(other));
}

void tst_Folding::blanksAndControlsAreGaps_data()
{
    QTest::addColumn<QChar>("gap");
    for (const char16_t unit :
         {u' ', u'\t', u'\r', u'\n', u'\0', u'\u00a0', u'\u2003', u'\u2028', u'\u2029', u'\ufffc'})
        QTest::addRow("%04x", unit) << QChar(unit);
    QTest::newRow("half a pair") << QChar(0xD83D);
}

void tst_Folding::blanksAndControlsAreGaps()
{
    QFETCH(const QChar, gap);
    QCOMPARE(folded(u"a"_s + gap + u'b'), u"a"_s + QChar() + u'b');
}

void tst_Folding::whatIsNotSeenIsLeftOut()
{
    QCOMPARE(folded(u"hy\u00adphen\u200b"_s), u"hyphen"_s);
    QCOMPARE(folded(u"\u0301\u0302"_s), QString());
}

// Of all characters, beside those that Qt takes for the same where case does not count.
void tst_Folding::charactersThatCompareAlikeFoldAlike()
{
    for (char32_t c = 0; c <= QChar::LastValidCodePoint; ++c) {
        if (QChar::isSurrogate(c))
            continue;
        const QString one = QString::fromUcs4(&c, 1);
        const char32_t other = QChar::toCaseFolded(c);
        if (c != other && folded(one) != folded(QString::fromUcs4(&other, 1)))
            QFAIL(qPrintable(QString::number(c, 16)));
    }
}

void tst_Folding::aTextFoldsAsItsCharactersDo()
{
    RandomText random(1);
    for (int i = 0; i < 5000; ++i) {
        const QString text = random.text(12);
        QString expected;
        for (qsizetype at = 0; at < text.size(); ++at) {
            const bool isPair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
            expected += folded(QStringView(text).sliced(at, isPair ? 2 : 1));
            at += isPair ? 1 : 0;
        }
        QCOMPARE(folded(text), expected);
    }
}

void tst_Folding::bothNormalFormsFoldAlike()
{
    RandomText random(2);
    for (int i = 0; i < 5000; ++i) {
        const QString text = random.text(12);
        // Halves of pairs that stand side by side by chance are none of the two's business.
        const QString whole = QString::fromUtf8(text.toUtf8());
        const QString expected = folded(whole.normalized(QString::NormalizationForm_D));
        QCOMPARE(folded(whole.normalized(QString::NormalizationForm_C)), expected);
        QCOMPARE(folded(whole), expected);
    }
}

QTEST_GUILESS_MAIN(tst_Folding)
#include "tst_Folding.moc"
