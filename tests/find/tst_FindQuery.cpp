// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/ExpressionWords.h"
#include "find/FindModel.h"
#include "find/FindQuery.h"
#include "find/Folding.h"
#include "find/RandomText.h"
#include "find/TextSignature.h"

#include <QDebug>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_FindQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsWholeCharactersWhereTheyStand_data();
    void findsWholeCharactersWhereTheyStand();
    void saysWhatIsWrongWithAnExpression();
    void aSearchForNothingIsEmpty();
    void ofOverlappingWordsTheFirstAndLongestCounts();
    void tellsWhichWordsATextHolds();
    void aLineThatTakesAnExpressionTooLongIsGivenUp();
    void whatMayMatchNothingFindsAllTheRest_data();
    void whatMayMatchNothingFindsAllTheRest();
    void anExpressionThatTakesTooLongEverywhereIsTriedNoMore();
    void halvesOfCharactersDoNotStopAnExpression();
    void noExpressionCanRaiseItsOwnLimit();
    void findsWhatAReaderOfCharactersFinds();
    void whatIsFoundIsNeverRuledOutBySignatures();
    void anExpressionGoesByLinesWhateverEndsThem();
    void knowsWhatAnExpressionCannotDoWithout_data();
    void knowsWhatAnExpressionCannotDoWithout();
    void whatAnExpressionFindsHoldsWhatItCannotDoWithout();
};

namespace
{

FindOptions optionsOf(const QString &letters)
{
    FindOptions options;
    options.matchCase = letters.contains(u'c');
    options.wholeWord = letters.contains(u'w');
    options.regularExpression = letters.contains(u'r');
    options.accents = letters.contains(u'a');
    return options;
}

// The text with each match in brackets.
QString marked(QString text, const FindQuery &query)
{
    const std::vector<FindMatch> matches = query.matchesIn(text);
    for (auto each = matches.rbegin(); each != matches.rend(); ++each)
        text.insert(each->start + each->length, u']').insert(each->start, u'[');
    return text;
}

} // namespace

void tst_FindQuery::findsWholeCharactersWhereTheyStand_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("expected");

    QTest::newRow("a word in whichever case") << u"Word"_s << u""_s << u"a [word], [WORD]s and s[wOrD]fish"_s;
    QTest::newRow("a word in its case") << u"Word"_s << u"c"_s << u"a word, WORDs and s[Word]fish"_s;
    QTest::newRow("a whole word") << u"word"_s << u"w"_s << u"words [word] sword [WORD], 1word word\u0301s"_s;
    QTest::newRow("no accents asked for")
        << u"resume"_s << u""_s << u"[r\u00e9sum\u00e9] [re\u0301sume\u0301] [RESUME]"_s;
    QTest::newRow("accents in what is asked for") << u"r\u00e9sum\u00e9"_s << u""_s << u"[resume] [r\u00e9sum\u00e9]"_s;
    QTest::newRow("accents count") << u"r\u00e9sume"_s << u"a"_s
                                   << u"resume [r\u00e9sume] r\u00e9sum\u00e9 [re\u0301sume] re\u0301sume\u0301"_s;
    QTest::newRow("several words") << u"two one"_s << u""_s << u"[one] [two] three [one]"_s;
    QTest::newRow("a phrase") << u"\"two one\""_s << u""_s << u"one [two one] two  one [two\u00a0one]"_s;
    QTest::newRow("a phrase that is being typed") << u"\"two on"_s << u""_s << u"one [two on]e"_s;
    QTest::newRow("a phrase and a word") << u"three\"two one\""_s << u""_s << u"[two one] [three] two"_s;
    QTest::newRow("matches side by side") << u"aa"_s << u""_s << u"[aa][aa]a"_s;
    QTest::newRow("beyond the first plane") << u"\U00010428"_s << u""_s << u"[\U00010428][\U00010400]\U00010401"_s;
    QTest::newRow("emoji, one of them with a selector") << u"\u2764"_s << u""_s << u"[\u2764][\u2764\ufe0f]"_s;
    QTest::newRow("soft hyphens") << u"together"_s << u""_s << u"[to\u00adge\u00adther]\u00ad, [together]"_s;
    QTest::newRow("a syllable is no part of another")
        << u"\uac00"_s << u""_s << u"[\uac00] \uac01 [\u1100\u1161] \u1100\u1161\u11a8"_s;
    QTest::newRow("voicing is no accent") << u"\u304b"_s << u""_s << u"[\u304b] \u304c \u304b\u3099"_s;
    QTest::newRow("vowel points are") << u"\u05d1"_s << u""_s << u"[\u05d1\u05b0] [\u05d1]"_s;
    QTest::newRow("dotless and dotted") << u"i"_s << u""_s << u"[i] [I] \u0131 [\u0130]"_s;
    QTest::newRow("long s and Kelvin") << u"sk"_s << u""_s << u"[sk] [\u017f\u212a]"_s;
    QTest::newRow("an expression") << u"\\d+"_s << u"r"_s << u"[12] a[3]"_s;
    QTest::newRow("an expression goes by lines") << u"^a.*$"_s << u"r"_s << u"[ab]\r\nba\n[a]\r\n\r\n[abc]"_s;
    QTest::newRow("an expression does not leave its line") << u"a\\s*b"_s << u"r"_s << u"[a b] a\r\nb a\nb"_s;
    QTest::newRow("an expression in whichever case") << u"\u00e9t"_s << u"r"_s << u"[\u00c9T] [\u00e9t] et"_s;
    QTest::newRow("an expression for whole words") << u"\\w"_s << u"rw"_s << u"ab [c] d\u0301e [f]"_s;
    QTest::newRow("an expression that matches nothing") << u"x*"_s << u"r"_s << u"a[xx]b"_s;
    QTest::newRow("quotes in an expression") << u"\"a b\""_s << u"r"_s << u"a b [\"a b\"]"_s;
}

void tst_FindQuery::findsWholeCharactersWhereTheyStand()
{
    QFETCH(QString, expression);
    QFETCH(QString, options);
    QFETCH(QString, expected);
    QString text = expected;
    text.remove(u'[').remove(u']');
    QCOMPARE(marked(text, FindQuery(expression, optionsOf(options))), expected);
}

void tst_FindQuery::saysWhatIsWrongWithAnExpression()
{
    const FindQuery query(u"ab(c"_s, optionsOf(u"r"_s));
    QVERIFY(query.isEmpty());
    QVERIFY2(query.error().contains(u"character 5"_s), qPrintable(query.error()));
    QVERIFY(query.matchesIn(u"abc").empty());
    QVERIFY(FindQuery(u"ab(c"_s, FindOptions()).error().isEmpty());
}

void tst_FindQuery::aSearchForNothingIsEmpty()
{
    for (const QString &text : {u""_s, u"  \t"_s, u"\"\""_s, u"\" "_s, u"\u00ad"_s, u"\u0301"_s})
        QVERIFY2(FindQuery(text, FindOptions()).isEmpty(), qPrintable(text));
    QVERIFY(FindQuery(QString(), optionsOf(u"r"_s)).isEmpty());
    QVERIFY(FindQuery().isEmpty());
    QVERIFY(!FindQuery(u"\u0301"_s, optionsOf(u"a"_s)).isEmpty());
    FindOptions nowhere;
    nowhere.labels = nowhere.texts = false;
    QVERIFY(FindQuery(u"a"_s, nowhere).isEmpty());
}

void tst_FindQuery::ofOverlappingWordsTheFirstAndLongestCounts()
{
    QCOMPARE(marked(u"abcd bcde"_s, FindQuery(u"bc ab abc cd"_s, FindOptions())), u"[abc]d [bc]de"_s);
}

void tst_FindQuery::tellsWhichWordsATextHolds()
{
    const FindQuery query(u"one two three"_s, FindOptions());
    QCOMPARE(query.lookIn(u"three and one").words, quint64(5));
    QCOMPARE(query.lookIn(u"three and one", 4).words, quint64(4));
    QCOMPARE(query.allWords(), quint64(7));
}

void tst_FindQuery::aLineThatTakesAnExpressionTooLongIsGivenUp()
{
    const FindQuery query(u"(a+)+$|b"_s, optionsOf(u"r"_s));
    const QString line(40, u'a');
    const FindQuery::Found found = query.lookIn(line + u"!\r\nb\r\n"_s + line + u'!');
    QVERIFY(found.isGivenUp);
    QCOMPARE(found.matches, (std::vector<FindMatch>{{43, 1, {u"b"_s}}}));
    QVERIFY(!query.lookIn(u"aaa b").isGivenUp);
}

void tst_FindQuery::whatMayMatchNothingFindsAllTheRest_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QStringList>("found");
    QTest::newRow("any number") << u"a*"_s << QStringList{u"a"_s, u"aa"_s, u"a"_s};
    QTest::newRow("one or none") << u"(ba)?"_s << QStringList{u"ba"_s};
    QTest::newRow("a choice of nothing") << u"c|"_s << QStringList{u"c"_s};
    QTest::newRow("nothing first") << u"|aa"_s << QStringList{u"aa"_s};
    QTest::newRow("the rest") << u".*"_s << QStringList{u"ab"_s, u"c aa"_s, u"ba"_s};
    QTest::newRow("a beginning") << u"^"_s << QStringList();
    QTest::newRow("an end") << u"$"_s << QStringList();
    QTest::newRow("an edge") << uR"(\b)"_s << QStringList();
}

void tst_FindQuery::whatMayMatchNothingFindsAllTheRest()
{
    QFETCH(const QString, expression);
    const FindQuery query(expression, optionsOf(u"r"_s));
    const QString text = u"ab\r\n\r\nc aa\r\nba"_s;
    const FindQuery::Found found = query.lookIn(text);
    QVERIFY(!found.isGivenUp);
    QStringList matches;
    for (const FindMatch &match : found.matches)
        matches.append(text.mid(match.start, match.length));
    QTEST(matches, "found");
}

void tst_FindQuery::anExpressionThatTakesTooLongEverywhereIsTriedNoMore()
{
    const FindQuery query(u"(*LIMIT_MATCH=100)(a+)+$|b"_s, optionsOf(u"r"_s));
    const QString line = QString(40, u'a') + u"!\r\n"_s;
    QVERIFY(query.lookIn(line.repeated(100) + u'b').matches.size() == 1);
    QVERIFY(query.lookIn(u"b").matches.size() == 1);
    const FindQuery::Found found = query.lookIn(line.repeated(200) + u'b');
    QVERIFY(found.matches.empty() && found.isGivenUp);
    QVERIFY(query.lookIn(u"b").matches.empty() && query.lookIn(u"b").isGivenUp);
}

void tst_FindQuery::halvesOfCharactersDoNotStopAnExpression()
{
    const FindQuery query(u"a+"_s, optionsOf(u"r"_s));
    const FindQuery::Found found = query.lookIn(u"\xd800 aa \xdc00\xd83d\xde00 a");
    QVERIFY(!found.isGivenUp);
    QCOMPARE(found.matches, (std::vector<FindMatch>{{2, 2, {u"aa"_s}}, {9, 1, {u"a"_s}}}));
}

void tst_FindQuery::noExpressionCanRaiseItsOwnLimit()
{
    const FindQuery query(u"(*LIMIT_MATCH=4000000000)(a+)+$"_s, optionsOf(u"r"_s));
    QVERIFY(query.error().isEmpty());
    QVERIFY(query.lookIn(QString(40, u'a') + u'!').isGivenUp);
}

// Texts and words of characters from all over Unicode; each word is mostly a part of the text, in another form.
void tst_FindQuery::findsWhatAReaderOfCharactersFinds()
{
    RandomText random(7);
    int found = 0;
    for (int round = 0; round < 6000; ++round) {
        const QString text = random.text(30);
        QStringList words;
        for (int i = random.below(3); i >= 0; --i) {
            const int from = random.below(int(text.size()) + 1);
            QString word = random.anotherForm(text.mid(from, 1 + random.below(4)));
            word.removeIf([](QChar c) { return c == u'"'; });
            if (!word.trimmed().isEmpty())
                words.append(word);
        }
        FindOptions options;
        options.matchCase = random.below(2) == 0;
        options.accents = random.below(2) == 0;
        options.wholeWord = random.below(4) == 0;
        const FindQuery query(u'"' + words.join(u"\"\""_s) + u'"', options);
        const std::vector<FindMatch> expected = findModel::matchesOfWords(text, words, options);
        const std::vector<FindMatch> actual = query.matchesIn(text);
        found += int(expected.size());
        QVERIFY2(actual == expected,
                 qPrintable(u"round %1: %2 in %3"_s.arg(round).arg(QDebug::toString(words), QDebug::toString(text))));
    }
    QVERIFY2(found > 4000, qPrintable(QString::number(found)));
}

void tst_FindQuery::whatIsFoundIsNeverRuledOutBySignatures()
{
    RandomText random(8);
    int ruledOut = 0;
    for (int round = 0; round < 6000; ++round) {
        const QString text = random.text(30);
        const QString source = random.below(3) == 0 ? random.text(30) : text;
        const QString word = random.anotherForm(source.mid(random.below(int(source.size()) + 1), 3 + random.below(5)));
        FindOptions options;
        options.matchCase = random.below(2) == 0;
        options.accents = random.below(2) == 0;
        const FindQuery query(u'"' + word + u'"', options);
        for (int i = 0; i < query.wordCount(); ++i) {
            const bool isFound = (query.lookIn(text).words >> i & 1) != 0;
            const bool mayBe = TextSignature(text).mayHold(SoughtTrigrams(query.certainPartsOf(i).at(0)));
            QVERIFY2(mayBe || !isFound, qPrintable(QDebug::toString(word) + QDebug::toString(text)));
            ruledOut += mayBe ? 0 : 1;
        }
    }
    QVERIFY2(ruledOut > 300, qPrintable(QString::number(ruledOut)));
}

void tst_FindQuery::anExpressionGoesByLinesWhateverEndsThem()
{
    static const QString parts[] = {u"a"_s,  u"b"_s,      u" "_s,      u"\r\n"_s, u"\n"_s,
                                    u"\r"_s, u"\u2028"_s, u"\u2029"_s, u"ab"_s};
    RandomText random(10);
    int found = 0;
    for (int round = 0; round < 4000; ++round) {
        // Mostly as the text pane has them.
        const int kinds = random.below(3) == 0 ? int(std::size(parts)) : 5;
        QString text;
        for (int i = random.below(20); i > 0; --i)
            text += parts[random.below(kinds)];
        const QString expression =
            QStringList{u"a"_s, u"^a"_s, u"b$"_s, u"a\\s*b"_s, u"^.*$"_s, u"\\Aa|b\\z"_s, u"[^a]+"_s}.at(
                random.below(7));
        FindOptions options = optionsOf(random.below(4) == 0 ? u"rw"_s : u"r"_s);
        const std::vector<FindMatch> expected = findModel::matchesOfExpression(text, expression, options);
        found += int(expected.size());
        QVERIFY2(FindQuery(expression, options).matchesIn(text) == expected,
                 qPrintable(expression + QDebug::toString(text)));
    }
    QVERIFY(found > 2000);
}

void tst_FindQuery::knowsWhatAnExpressionCannotDoWithout_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("characters") << u"word here"_s << QStringList{u"word here"_s};
    QTest::newRow("classes and groups between")
        << u"\\bone[tw]o(three)?four."_s << QStringList{u"one"_s, u"o"_s, u"four"_s};
    QTest::newRow("quantifiers") << u"ab+cd*e?f{0,2}gh{2}ij+?k"_s
                                 << QStringList{u"ab"_s, u"bc"_s, u"g"_s, u"ij"_s, u"jk"_s};
    QTest::newRow("escaped") << u"a\\.b\\\\c"_s << QStringList{u"a.b\\c"_s};
    QTest::newRow("ways") << u"one|two"_s << QStringList();
    QTest::newRow("ways in a group") << u"a(?:one|t(w)o[)])b"_s << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("switches") << u"(?x)one two"_s << QStringList();
    QTest::newRow("quoted") << u"\\Qa+\\E"_s << QStringList();
    QTest::newRow("a character by its number") << u"\\x{61}bc"_s << QStringList();
    QTest::newRow("a pair of surrogates") << u"\U0001f600?a"_s << QStringList{u"a"_s};
    QTest::newRow("a class of brackets") << u"[]a]b[^]]c"_s << QStringList{u"b"_s, u"c"_s};
}

void tst_FindQuery::knowsWhatAnExpressionCannotDoWithout()
{
    QFETCH(QString, expression);
    QFETCH(QStringList, expected);
    QVERIFY(QRegularExpression(expression).isValid());
    QCOMPARE(certainWords(expression), expected);
}

void tst_FindQuery::whatAnExpressionFindsHoldsWhatItCannotDoWithout()
{
    static const QString parts[] = {u"a"_s,       u"b"_s,      u"cd"_s,   u"+"_s,    u"*"_s,     u"?"_s,     u"{0,1}"_s,
                                    u"{2}"_s,     u"("_s,      u")"_s,    u"(?:"_s,  u"(?=b)"_s, u"(?!a)"_s, u"|"_s,
                                    u"[ab]"_s,    u"[^a]"_s,   u"."_s,    u"^"_s,    u"$"_s,     u"\\b"_s,   u"\\w"_s,
                                    u"\\."_s,     u"\u00e9"_s, u"\\Qa"_s, u"(?i)"_s, u"(?x)"_s,  u" "_s,     u"#"_s,
                                    u"\\x{61}"_s, u"{"_s,      u"]"_s,    u"[]b]"_s, u"(?#c)"_s, u"\\1"_s};
    RandomText random(9);
    int found = 0;
    int known = 0;
    for (int round = 0; round < 60'000; ++round) {
        QString expression;
        for (int i = 1 + random.below(7); i > 0; --i)
            expression += parts[random.below(int(std::size(parts)))];
        const FindQuery query(expression, optionsOf(u"r"_s));
        if (query.isEmpty())
            continue;
        QString text;
        for (int i = random.below(12); i > 0; --i)
            text += u"aAbBcCdD\u00c9\u00e9.# {]1"[random.below(16)];
        if (query.matchesIn(text).empty())
            continue;
        ++found;
        for (const QString &part : query.certainPartsOf(0)) {
            ++known;
            QVERIFY2(folded(text).contains(folded(part)),
                     qPrintable(u"%1 in %2 without %3"_s.arg(expression, text, part)));
        }
    }
    QVERIFY2(found > 3000 && known > 800, qPrintable(u"%1 %2"_s.arg(found).arg(known)));
}

QTEST_GUILESS_MAIN(tst_FindQuery)
#include "tst_FindQuery.moc"
