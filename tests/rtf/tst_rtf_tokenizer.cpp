// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Tokenizer.h"

#include <QTest>

// How bytes are cut into tokens.
class TestRtfTokenizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokens_data();
    void tokens();
    void skipsGroups();

private:
    static QString describe(const rtf::Token &token);
};

QString TestRtfTokenizer::describe(const rtf::Token &token)
{
    const QString bytes = QString::fromLatin1(token.bytes);
    switch (token.kind) {
    case rtf::Token::Kind::End:
        return QStringLiteral("end");
    case rtf::Token::Kind::GroupOpen:
        return QStringLiteral("{");
    case rtf::Token::Kind::GroupClose:
        return QStringLiteral("}");
    case rtf::Token::Kind::Word:
        return token.hasNumber ? QStringLiteral("word %1=%2").arg(bytes).arg(token.number)
                               : QStringLiteral("word ") + bytes;
    case rtf::Token::Kind::Symbol:
        return QStringLiteral("symbol ") + QChar(char16_t(token.byte));
    case rtf::Token::Kind::Text:
        return QStringLiteral("text ") + bytes;
    case rtf::Token::Kind::Byte:
        return QStringLiteral("byte %1").arg(token.byte, 2, 16, QLatin1Char('0'));
    case rtf::Token::Kind::Binary:
        return QStringLiteral("binary %1").arg(bytes.size());
    }
    return {};
}

void TestRtfTokenizer::tokens_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing") << QByteArray() << QStringLiteral("end");
    QTest::newRow("groups and text") << QByteArray("{a b}") << QStringLiteral("{, text a b, }, end");
    QTest::newRow("words") << QByteArray("\\b\\fs20 x\\li-5\\par")
                           << QStringLiteral("word b, word fs=20, text x, word li=-5, word par, end");
    QTest::newRow("only one blank ends a word") << QByteArray("\\b  x") << QStringLiteral("word b, text  x, end");
    QTest::newRow("a minus without digits is text") << QByteArray("\\b-x") << QStringLiteral("word b, text -x, end");
    QTest::newRow("line ends are nothing")
        << QByteArray("a\r\nb\\b\nc") << QStringLiteral("text a, text b, word b, text c, end");
    QTest::newRow("escapes") << QByteArray("\\\\\\{\\~\\*")
                             << QStringLiteral("symbol \\, symbol {, symbol ~, symbol *, end");
    QTest::newRow("hexadecimal bytes") << QByteArray("\\'e4\\'E4") << QStringLiteral("byte e4, byte e4, end");
    QTest::newRow("a lacking digit") << QByteArray("\\'4x\\'zz")
                                     << QStringLiteral("byte 04, text x, byte 3f, text zz, end");
    QTest::newRow("bytes above ASCII and tabs")
        << QByteArray("a\xe4\tb") << QStringLiteral("text a, byte e4, byte 09, text b, end");
    QTest::newRow("control characters") << QByteArray("a\0b\x0b\x1f", 5)
                                        << QStringLiteral("text a, byte 00, text b, byte 0b, byte 1f, end");
    QTest::newRow("binary") << QByteArray("\\bin3 }{\\x") << QStringLiteral("binary 3, text x, end");
    QTest::newRow("binary beyond the end") << QByteArray("\\bin2000000000 ab") << QStringLiteral("binary 2, end");
    QTest::newRow("binary of a negative length")
        << QByteArray("\\bin-5 ab") << QStringLiteral("binary 0, text ab, end");
    QTest::newRow("a huge number") << QByteArray("\\fs99999999999999999999\\fs-99999999999")
                                   << QStringLiteral("word fs=2147483647, word fs=-2147483647, end");
    QTest::newRow("cut in an escape") << QByteArray("a\\") << QStringLiteral("text a, end");
    QTest::newRow("cut in a byte") << QByteArray("\\'") << QStringLiteral("byte 3f, end");
}

void TestRtfTokenizer::tokens()
{
    QFETCH(const QByteArray, rtf);
    QFETCH(const QString, expected);
    rtf::Tokenizer tokenizer(rtf);
    QStringList found;
    do {
        found << describe(tokenizer.next());
    } while (found.back() != QStringLiteral("end"));
    QCOMPARE(found.join(QStringLiteral(", ")), expected);
}

void TestRtfTokenizer::skipsGroups()
{
    const QByteArray rtf("{a{b\\}\\bin2 }}{}}c}d");
    rtf::Tokenizer tokenizer(rtf);
    tokenizer.next();
    tokenizer.skipGroup();
    QCOMPARE(describe(tokenizer.next()), QStringLiteral("}"));
    QCOMPARE(describe(tokenizer.next()), QStringLiteral("text d"));
    tokenizer.skipGroup();
    QCOMPARE(describe(tokenizer.next()), QStringLiteral("end"));
}

QTEST_MAIN(TestRtfTokenizer)
#include "tst_rtf_tokenizer.moc"
