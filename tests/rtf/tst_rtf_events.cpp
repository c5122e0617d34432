// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Interpreter.h"

#include <QTest>

namespace
{

// Writes down what it is told.
class LoggingSink final : public rtf::Sink
{
public:
    void begin(const rtf::Tables &tables) override
    {
        Q_UNUSED(tables)
        note(QStringLiteral("begin"));
    }

    void text(QStringView text, const rtf::CharState &state) override
    {
        note(QStringLiteral("text '%1'").arg(text) + looks(state));
    }

    void picture(const rtf::Picture &picture, const rtf::CharState &state) override
    {
        note(QStringLiteral("picture ") + QString::fromLatin1(picture.data.toHex()) + looks(state));
    }

    void endParagraph(const rtf::ParaState &state, const rtf::CharState &mark, int depth) override
    {
        QString line = QStringLiteral("paragraph") + looks(mark);
        if (state[rtf::ParaNumber::Left] != 0) {
            line += QStringLiteral(" left %1").arg(state[rtf::ParaNumber::Left]);
        }
        note(line + at(depth));
    }

    void endCell(int depth) override { note(QStringLiteral("cell") + at(depth)); }

    void endRow(const rtf::RowState &row, int depth) override
    {
        note(QStringLiteral("row of %1").arg(row.cells.size()) + at(depth));
    }

    void end() override { note(QStringLiteral("end")); }

    QString log() const { return m_log.join(QStringLiteral("; ")); }

private:
    static QString looks(const rtf::CharState &state)
    {
        return QString(state.has(rtf::Bold) ? QStringLiteral(" bold") : QString()) +
               (state.has(rtf::Italic) ? QStringLiteral(" italic") : QString());
    }

    static QString at(int depth) { return depth == 0 ? QString() : QStringLiteral(" in %1").arg(depth); }

    void note(const QString &line) { m_log << line; }

    QStringList m_log;
};

} // namespace

// The events that a text consists of, whatever sink they reach.
class TestRtfEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void events_data();
    void events();
    void textAloneIsNotCutByLooks();
};

void TestRtfEvents::events_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &body, const char *events) {
        QTest::newRow(name) << "{\\rtf1" + body + "}"
                            << QStringLiteral("begin; ") + QString::fromUtf8(events) + QStringLiteral("; end");
    };
    QTest::newRow("nothing") << QByteArray() << QStringLiteral("begin; paragraph; end");
    row("one paragraph, ended or not", " a\\par", "text 'a'; paragraph");
    row("a paragraph without an end", " a", "text 'a'; paragraph");
    row("two paragraphs", " a\\par b", "text 'a'; paragraph; text 'b'; paragraph");
    row("looks", " a{\\b b\\i c}d", "text 'a'; text 'b' bold; text 'c' bold italic; text 'd'; paragraph");
    row("words that change nothing cut nothing", " a\\b0 b\\i0{c}", "text 'abc'; paragraph");
    row("a paragraph's looks are those at its end", "\\b a\\li20\\b0\\par", "text 'a' bold; paragraph left 20");
    row("a row", "\\trowd\\cellx100\\cellx200\\intbl a\\cell b\\cell\\row",
        "text 'a'; paragraph in 1; cell in 1; text 'b'; paragraph in 1; cell in 1; row of 2 in 1");
    row("an unfinished row", "\\trowd\\cellx100\\intbl a\\cell", "text 'a'; paragraph in 1; cell in 1; row of 1 in 1");
    row("a cell without an end", "\\trowd\\cellx100\\intbl a", "text 'a'; paragraph in 1; cell in 1; row of 1 in 1");
    row("a row inside a cell",
        "\\trowd\\cellx900\\intbl\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\cellx100\\nestrow}"
        "\\itap1\\cell\\row",
        "text 'a'; paragraph in 2; cell in 2; row of 1 in 2; paragraph in 1; cell in 1; row of 1 in 1");
    row("a picture", "{\\pict\\pngblip 0a0B}", "picture 0a0b; paragraph");
    row("what is no text", "{\\info{\\title t}}{\\header h}a{\\footnote f}{\\*\\bkmkstart b}c",
        "text 'a'; text 'c'; paragraph");
}

void TestRtfEvents::events()
{
    QFETCH(const QByteArray, rtf);
    QFETCH(const QString, expected);
    LoggingSink sink;
    rtf::Interpreter(rtf, sink).run();
    QCOMPARE(sink.log(), expected);
}

void TestRtfEvents::textAloneIsNotCutByLooks()
{
    LoggingSink sink;
    rtf::Interpreter("{\\rtf1 a{\\b b\\i c}d{\\pict 0a}}", sink, rtf::Interpreter::Detail::TextOnly).run();
    QCOMPARE(sink.log(), QStringLiteral("begin; text 'abcd'; picture ; paragraph; end"));
}

QTEST_MAIN(TestRtfEvents)
#include "tst_rtf_events.moc"
