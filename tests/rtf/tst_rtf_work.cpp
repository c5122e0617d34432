// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Rtf.h"

#include <QTest>
#include <QTextDocument>

#include <functional>

namespace
{

qint64 s_steps = 0;

}

// The reader is compiled here so that it calls this wherever its way may fork.
extern "C" void __sanitizer_cov_trace_pc();

extern "C" void __sanitizer_cov_trace_pc()
{
    ++s_steps;
}

// How much work reading is, counted: a text that is twice as long may take twice as many steps, and not four times.
class TestRtfWork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextOfTwiceTheLengthIsTwiceTheWork_data();
    void aTextOfTwiceTheLengthIsTwiceTheWork();

private:
    using Text = QByteArray(int);

    static void row(const char *name, Text *text);
};

namespace
{

QByteArray repeated(int count, const std::function<QByteArray(const QByteArray &)> &part)
{
    QByteArray text;
    for (int i = 1; i <= count; ++i) {
        text += part(QByteArray::number(i));
    }
    return text;
}

// Each list is looked for by its number, the last one first.
QByteArray overridesOfLists(int count)
{
    const QByteArray lists = repeated(
        count, [](const QByteArray &number) { return "{\\list\\listid" + number + "{\\listlevel\\levelnfc0}}"; });
    QByteArray overrides;
    for (int i = 1; i <= count; ++i) {
        overrides +=
            "{\\listoverride\\listid" + QByteArray::number(count + 1 - i) + "\\ls" + QByteArray::number(i) + '}';
    }
    return "{\\*\\listtable" + lists + "}{\\*\\listoverridetable" + overrides + "}\\ls1 x";
}

QByteArray differentOldLists(int count)
{
    return repeated(count, [](const QByteArray &number) { return "{\\pn\\pndec\\pnstart1\\pnindent" + number + '}'; }) +
           'x';
}

QByteArray paragraphsOfDifferentLists(int count)
{
    const QByteArray lists = overridesOfLists(count);
    return lists + repeated(count, [](const QByteArray &number) { return "\\par\\pard\\ls" + number + "\\ilvl0 x"; });
}

QByteArray differentFonts(int count)
{
    return "{\\fonttbl" +
           repeated(count, [](const QByteArray &number) { return "{\\f" + number + " F" + number + ";}"; }) + '}' +
           repeated(count, [](const QByteArray &number) { return "\\f" + number + " x"; });
}

QByteArray differentStyles(int count)
{
    return "{\\stylesheet" +
           repeated(count, [](const QByteArray &number) { return "{\\s" + number + "\\li" + number + " S;}"; }) + '}' +
           repeated(count, [](const QByteArray &number) { return "\\pard\\s" + number + " x\\par"; });
}

QByteArray differentFields(int count)
{
    return repeated(count, [](const QByteArray &number) {
        return "{\\field{\\*\\fldinst HYPERLINK \"a" + number + "\"}{\\fldrslt x}}";
    });
}

QByteArray nestedGroups(int count)
{
    return QByteArray("{\\b x").repeated(count) + QByteArray("}").repeated(count);
}

} // namespace

void TestRtfWork::row(const char *name, Text *text)
{
    QTest::newRow(name) << text;
}

void TestRtfWork::aTextOfTwiceTheLengthIsTwiceTheWork_data()
{
    QTest::addColumn<QByteArray (*)(int)>("text");
    row("overrides of lists", overridesOfLists);
    row("old lists that all differ", differentOldLists);
    row("paragraphs of lists that all differ", paragraphsOfDifferentLists);
    row("fonts", differentFonts);
    row("styles", differentStyles);
    row("fields", differentFields);
    row("groups in groups", nestedGroups);
}

void TestRtfWork::aTextOfTwiceTheLengthIsTwiceTheWork()
{
    using TextOf = QByteArray (*)(int);
    QFETCH(const TextOf, text);
    const auto work = [&](int count) {
        const QByteArray rtf = "{\\rtf1 " + text(count) + '}';
        QTextDocument document;
        s_steps = 0;
        rtf::read(rtf, document);
        return s_steps;
    };
    work(1); // what is made once
    constexpr int count = 2000;
    const qint64 once = work(count);
    const qint64 twice = work(2 * count);
    QVERIFY2(once > 10 * count, "the reader's steps are not counted");
    QVERIFY2(twice < once * 5 / 2, qPrintable(QStringLiteral("%1 steps, then %2").arg(once).arg(twice)));
}

QTEST_MAIN(TestRtfWork)
#include "tst_rtf_work.moc"
