// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/Folding.h"
#include "find/RandomText.h"
#include "find/TextSignature.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_TextSignature : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatStandsInTheTextIsNeverRuledOut();
    void whatTheTextHoldsInAnyCaseIsNeverRuledOut();
    void mostOfWhatDoesNotStandThereIsRuledOut();
    void anEmptyTextRulesOutWords();
    void shortExpressionsRuleNothingOut_data();
    void shortExpressionsRuleNothingOut();
    void aLongTextTakesNoMoreThanABitForEachNumber();

private:
    static bool mayHold(const QString &text, const QString &expression)
    {
        return TextSignature(text).mayHold(SoughtTrigrams(expression));
    }
};

// Parts that begin and end anywhere, between the halves of a pair too.
void tst_TextSignature::whatStandsInTheTextIsNeverRuledOut()
{
    RandomText random(3);
    for (int i = 0; i < 20000; ++i) {
        const QString text = random.text(30);
        const int start = random.below(int(text.size()) + 1);
        const QString part = text.mid(start, random.below(12));
        QVERIFY2(mayHold(text, part), qPrintable(QString::number(i)));
        QVERIFY2(mayHold(text, random.anotherForm(part)) || !folded(text).contains(folded(random.anotherForm(part))),
                 qPrintable(QString::number(i)));
    }
}

// As Qt finds it.
void tst_TextSignature::whatTheTextHoldsInAnyCaseIsNeverRuledOut()
{
    RandomText random(4);
    int found = 0;
    for (int i = 0; i < 50000; ++i) {
        const QString text = random.text(30);
        const QString expression = random.anotherForm(text.mid(random.below(int(text.size()) + 1), random.below(8)));
        if (expression.isEmpty() || !text.contains(expression, Qt::CaseInsensitive))
            continue;
        ++found;
        QVERIFY2(mayHold(text, expression), qPrintable(QString::number(i)));
    }
    QVERIFY(found > 1000);
}

void tst_TextSignature::mostOfWhatDoesNotStandThereIsRuledOut()
{
    std::mt19937 random(5);
    const auto word = [&] {
        QString made;
        for (int i = 0; i < 6; ++i)
            made += QChar(u'a' + char16_t(random() % 26));
        return made;
    };
    QString text;
    while (text.size() < 2000)
        text += word() + u' ';
    const TextSignature signature(text);
    int passed = 0;
    for (int i = 0; i < 1000; ++i)
        passed += signature.mayHold(SoughtTrigrams(word())) ? 1 : 0;
    QVERIFY2(passed < 60, qPrintable(QString::number(passed)));
    QVERIFY(signature.weight() <= text.size() / 4);
}

void tst_TextSignature::anEmptyTextRulesOutWords()
{
    QVERIFY(!mayHold(QString(), u"word"_s));
    QVERIFY(!mayHold(u"ab cd"_s, u"abc"_s));
    QVERIFY(mayHold(QString(), u"ab"_s));
}

void tst_TextSignature::shortExpressionsRuleNothingOut_data()
{
    QTest::addColumn<QString>("expression");
    QTest::newRow("none") << QString();
    QTest::newRow("two letters") << u"ab"_s;
    QTest::newRow("short words") << u"a bc d"_s;
    QTest::newRow("marks") << u"\u0301\u0302\u0303"_s;
    QTest::newRow("line breaks") << u"\r\n\r\n"_s;
}

void tst_TextSignature::shortExpressionsRuleNothingOut()
{
    QFETCH(const QString, expression);
    QVERIFY(SoughtTrigrams(expression).isEmpty());
    QVERIFY(mayHold(u"something else"_s, expression));
}

void tst_TextSignature::aLongTextTakesNoMoreThanABitForEachNumber()
{
    QString text;
    for (unsigned i = 0; i < 300000; ++i)
        text += QChar(char16_t(0x4E00 + i * 7919 % 20000));
    const TextSignature signature(text);
    QVERIFY(signature.weight() <= 8192);
    QVERIFY(signature.mayHold(SoughtTrigrams(text.mid(1000, 20))));
}

QTEST_GUILESS_MAIN(tst_TextSignature)
#include "tst_TextSignature.moc"
