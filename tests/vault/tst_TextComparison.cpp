// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/TextComparison.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QStringList>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_TextComparison : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatTellsTwoTextsApart_data();
    void whatTellsTwoTextsApart();
    void whatIsNotMarkedIsTheSameInBoth();
    void longTextsAreComparedInProportion_data();
    void longTextsAreComparedInProportion();
};

namespace
{

// The text with what is unmatched in brackets.
QString marked(const QString &text, const UnmatchedWords &unmatched)
{
    QString shown = text;
    for (auto stretch = unmatched.stretches.rbegin(); stretch != unmatched.stretches.rend(); ++stretch) {
        shown.insert(stretch->start + stretch->length, u']');
        shown.insert(stretch->start, u'[');
    }
    return shown;
}

QString unmarkedWords(const QString &text, const UnmatchedWords &unmatched)
{
    QString rest = text;
    for (auto stretch = unmatched.stretches.rbegin(); stretch != unmatched.stretches.rend(); ++stretch)
        rest.replace(stretch->start, stretch->length, u' ');
    return rest.simplified();
}

} // namespace

void tst_TextComparison::whatTellsTwoTextsApart_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("gone");
    QTest::addColumn<int>("added");
    const auto row = [](const char *name, const QString &before, const QString &after, int gone, int added) {
        QTest::newRow(name) << before << after << gone << added;
    };
    row("the same", u"one two"_s, u"one two"_s, 0, 0);
    row("nothing", QString(), QString(), 0, 0);
    row("all new", QString(), u"[one two]"_s, 0, 2);
    row("all gone", u"[one, two]"_s, QString(), 2, 0);
    row("a word replaced", u"the [old] house"_s, u"the [new] house"_s, 1, 1);
    row("a word added", u"the house"_s, u"the [big] house"_s, 0, 1);
    row("words next to each other", u"the [old grey] house"_s, u"the house"_s, 2, 0);
    row("only blanks", u"the  house"_s, u"the\thouse "_s, 0, 0);
    row("a sign", u"the house"_s, u"the house[.]"_s, 0, 0);
    row("a paragraph divided", u"one two"_s, u"one[\n]two"_s, 0, 0);
    row("a part of a word", u"the [house]"_s, u"the [houses]"_s, 1, 1);
    row("another case", u"[The] house"_s, u"[the] house"_s, 1, 1);
    row("letters of every script", u"дом [стоит] 家"_s, u"дом [горит] 家"_s, 1, 1);
    row("a letter and its accent", u"na[i\u0308ve]"_s.replace(u"na["_s, u"[na"_s), u"[naive]"_s, 1, 1);
    row("characters of two units", u"a [\U0001F600] b"_s, u"a [\U0001F601] b"_s, 1, 1);
    row("two places", u"[a] b c [d]"_s, u"b c [e]"_s, 2, 1);
}

void tst_TextComparison::whatTellsTwoTextsApart()
{
    QFETCH(const QString, before);
    QFETCH(const QString, after);
    const auto bare = [](QString text) { return text.remove(u'[').remove(u']'); };
    const TextComparison compared = compareTexts(bare(before), bare(after));
    QCOMPARE(marked(bare(before), compared.before), before);
    QCOMPARE(marked(bare(after), compared.after), after);
    QTEST(compared.before.words, "gone");
    QTEST(compared.after.words, "added");
}

void tst_TextComparison::whatIsNotMarkedIsTheSameInBoth()
{
    QRandomGenerator random(7);
    for (int round = 0; round < 300; ++round) {
        // Now and then longer than what is compared exactly.
        const int length = round % 10 == 0 ? 3000 : random.bounded(40);
        QStringList words;
        for (int word = 0; word < length; ++word)
            words.append(u"w%1"_s.arg(random.bounded(round % 3 == 0 ? 100000 : 8)));
        QStringList changed = words;
        for (int change = random.bounded(10); change > 0 && !changed.isEmpty(); --change) {
            const int at = random.bounded(static_cast<int>(changed.size()));
            if (change % 3 == 0)
                changed.removeAt(at);
            else if (change % 3 == 1)
                changed.insert(at, u"new%1"_s.arg(change));
            else
                changed.move(at, 0);
        }
        const QString before = words.join(u' ');
        const QString after = changed.join(u' ');
        const TextComparison compared = compareTexts(before, after);
        QCOMPARE(unmarkedWords(before, compared.before), unmarkedWords(after, compared.after));
        if (before == after)
            QVERIFY(compared.before.stretches.empty());
    }
}

void tst_TextComparison::longTextsAreComparedInProportion_data()
{
    QTest::addColumn<bool>("alike");
    QTest::newRow("of few words, all others") << false;
    QTest::newRow("with a change here and there") << true;
}

// Were each word compared with each, it would be four billion comparisons.
void tst_TextComparison::longTextsAreComparedInProportion()
{
    QFETCH(const bool, alike);
    constexpr int length = 60000;
    QStringList before;
    QStringList after;
    for (int word = 0; word < length; ++word) {
        before.append(alike ? u"w%1"_s.arg(word % 20000) : u"a"_s + QString(word % 2, u'x'));
        after.append(alike ? (word % 100 == 0 ? u"changed"_s : before.back()) : u"b"_s + QString(word % 2, u'x'));
    }
    QElapsedTimer timer;
    timer.start();
    const TextComparison compared = compareTexts(before.join(u' '), after.join(u' '));
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    if (alike)
        QCOMPARE(compared.after.words, length / 100);
    else
        QCOMPARE(compared.before.words, length);
}

QTEST_GUILESS_MAIN(tst_TextComparison)
#include "tst_TextComparison.moc"
