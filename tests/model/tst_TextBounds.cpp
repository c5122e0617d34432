// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/Limits.h"
#include "model/TextBounds.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QString words(qsizetype length)
{
    return u"words and "_s.repeated(length / 10 + 1).left(length);
}

} // namespace

class tst_TextBounds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void atTheBoundAndOneBeyond_data();
    void atTheBoundAndOneBeyond();
    void wordsEndWhereALineMayBreak_data();
    void wordsEndWhereALineMayBreak();
    void aLineFeedIsAsTheTextHasIt();
    void noCharacterIsHalved();
};

void tst_TextBounds::atTheBoundAndOneBeyond_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qsizetype>("length");
    const auto row = [](const char *name, const QString &text, qsizetype length) {
        QTest::newRow(name) << text << length;
    };
    const QString longest = words(limits::longestParagraph);
    row("nothing", QString(), 0);
    row("a short text", u"one\r\ntwo\r\n"_s, 10);
    row("the longest paragraph", longest, limits::longestParagraph);
    row("a longer one", longest + u'x', limits::longestParagraph);
    row("the longest paragraph twice", longest + u"\r\n"_s + longest, 2 * limits::longestParagraph + 2);
    row("a longer one behind it", longest + u"\r\n"_s + longest + u'x', 2 * limits::longestParagraph + 2);

    const QString word(limits::longestWord, u'x');
    row("the longest word", word, limits::longestWord);
    row("a longer word", word + u'x', limits::longestWord);
    row("longest words", word + u' ' + word + u"\r\n"_s + word, 3 * limits::longestWord + 3);
    row("a longer word behind another", u"a "_s + word + u'x', limits::longestWord + 2);
    const QString ideographs(2 * limits::longestWord, u'\u6f22');
    row("a script without blanks", ideographs, 2 * limits::longestWord);

    const QString lines = u"a\r\n"_s.repeated(limits::mostParagraphs);
    row("the most paragraphs", lines, lines.size());
    row("one more", lines + u'b', lines.size());
    const QString empty(limits::mostParagraphs, u'\r');
    row("empty paragraphs", empty, limits::mostParagraphs);
    row("one more empty paragraph", empty + u'\r', limits::mostParagraphs);

    const QString whole = (words(999'998) + u"\r\n"_s).repeated(limits::longestText / 1'000'000);
    row("the longest text", whole, limits::longestText);
    row("a longer text", whole + u'x', limits::longestText);
}

void tst_TextBounds::atTheBoundAndOneBeyond()
{
    QFETCH(const QString, text);
    QFETCH(const qsizetype, length);
    QCOMPARE(mayBeLaidOut(text, LineFeed::EndsParagraph), length);
    QCOMPARE(mayBeLaidOut(text, LineFeed::WithinParagraph), length);
}

void tst_TextBounds::wordsEndWhereALineMayBreak_data()
{
    QTest::addColumn<QString>("piece");
    QTest::addColumn<bool>("isOneWord");
    QTest::newRow("letters of several scripts") << u"a\u0431\u03b3\u05d0"_s << true;
    QTest::newRow("marks") << u"\u0301"_s << true;
    QTest::newRow("blanks that do not break") << u"word\u00a0"_s << true;
    QTest::newRow("ideographs that are joined") << u"\u6f22\u2060"_s << true;
    QTest::newRow("emoji that are joined") << u"\U0001F469\u200d"_s << true;
    QTest::newRow("emoji") << u"\U0001F469"_s << false;
    QTest::newRow("hyphens") << u"ab-"_s << false;
    QTest::newRow("soft hyphens") << u"ab\u00ad"_s << false;
    QTest::newRow("blanks without a width") << u"ab\u200b"_s << false;
    QTest::newRow("tabulators") << u"ab\t"_s << false;
    QTest::newRow("blanks of ideographs") << u"ab\u3000"_s << false;
}

void tst_TextBounds::wordsEndWhereALineMayBreak()
{
    QFETCH(const QString, piece);
    QFETCH(const bool, isOneWord);
    const QString text = piece.repeated(2 * limits::longestWord / piece.size());
    for (const LineFeed lineFeed : {LineFeed::EndsParagraph, LineFeed::WithinParagraph})
        QCOMPARE(mayBeLaidOut(text, lineFeed) < text.size(), isOneWord);
    const std::vector<UnbrokenStretch> words = unbrokenStretches(text, 100);
    QCOMPARE(words.size(), std::size_t(isOneWord ? 1 : 0));
    if (isOneWord)
        QVERIFY(words.front().from == 0 && words.front().to == text.size());
}

void tst_TextBounds::aLineFeedIsAsTheTextHasIt()
{
    const QString text = u"0123456789\n"_s.repeated(100'000);
    QCOMPARE(mayBeLaidOut(text, LineFeed::EndsParagraph), text.size());
    QCOMPARE(mayBeLaidOut(text, LineFeed::WithinParagraph), limits::longestParagraph);
}

void tst_TextBounds::noCharacterIsHalved()
{
    const QString text = u"x"_s + u"\U0001F600"_s.repeated(limits::longestParagraph);
    QCOMPARE(mayBeLaidOut(text, LineFeed::EndsParagraph), limits::longestParagraph - 1);
    const QString lines = (words(999'998) + u"\r\n"_s).repeated(limits::longestText / 1'000'000);
    QCOMPARE(mayBeLaidOut(u"x"_s + lines, LineFeed::EndsParagraph), lines.size() + 1);
}

QTEST_APPLESS_MAIN(tst_TextBounds)
#include "tst_TextBounds.moc"
