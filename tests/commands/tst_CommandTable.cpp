// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandKeys.h"
#include "commands/CommandTable.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_CommandTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTableReadsAsItShould();
    void captionsShowTheirKeysBehindBlanks();
    void everyRowHasItsRule();
    void aNameThatIsNoCommandHasNoRow();
    void theTagItemSaysWhatItDoes();
};

namespace
{

QString keysText(const CommandRow &row)
{
    constexpr const char *modifiers[] = {"any ", "keypad ", "", "Alt+", "Ctrl+", "Ctrl+Shift+", "Ctrl+Alt+"};
    constexpr const char *roads[] = {"", " in menu", " in menu and editors", " in window"};
    QStringList keys;
    for (const CommandKey &key : row.keys) {
        if (key.key != 0)
            keys += QLatin1StringView(modifiers[key.modifiers]) + QKeySequence(key.key).toString() +
                    QLatin1StringView(roads[static_cast<int>(key.road)]);
    }
    return keys.isEmpty() ? QString() : u" ["_s + keys.join(u", "_s) + u']';
}

QString lineOf(const CommandRow &row, int depth)
{
    QString line = QString(2 * depth, u' ') + toText(row.name);
    if (row.kind == RowKind::Separator)
        return line + u" ----"_s;
    if (row.kind == RowKind::Menu)
        return line + u" > \"%1\""_s.arg(toText(row.caption));
    if (row.kind == RowKind::Command)
        line += u" \"%1\""_s.arg(toText(row.caption));
    if (row.kind == RowKind::IndexedCommand)
        line += u" (indexed)"_s;
    line += u" = "_s + (row.routine.name.empty() ? u"(nothing)"_s : toText(row.routine.name));
    if (row.argument != 0)
        line += u' ' + QString::number(row.argument);
    return line + keysText(row);
}

int depthOf(const CommandRow &row)
{
    return row.parent.empty() ? 0 : 1 + depthOf(commandTable[commandRow(row.parent)]);
}

} // namespace

// The menu bar as a user reads it, with what each item runs and its keys, stands in a file, so that a change of a
// caption, of an order or of a key is always made on purpose. The table as it is, is left in the build folder.
void tst_CommandTable::theTableReadsAsItShould()
{
    QString actual;
    for (const CommandRow &row : commandTable)
        actual += lineOf(row, depthOf(row)) + u'\n';
    QFile file(QStringLiteral(QUILLERY_TEST_DATA "/command-table.txt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString expected = QString::fromUtf8(file.readAll());
    if (actual == expected)
        return;
    QFile out(u"command-table.txt"_s);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(actual.toUtf8());
    const QStringList is = actual.split(u'\n');
    const QStringList was = expected.split(u'\n');
    qsizetype line = 0;
    while (is.value(line) == was.value(line))
        ++line;
    QFAIL(qPrintable(u"line %1 is\n  %2\nand was\n  %3\nThe table as it is: %4"_s.arg(line + 1).arg(
        is.value(line), was.value(line), out.fileName())));
}

void tst_CommandTable::captionsShowTheirKeysBehindBlanks()
{
    // The width of the blanks is part of the caption: they line the keys up.
    QCOMPARE(commandTable.at(commandRow("mnuFileExit")).caption.find("Alt+F4"), 52U);
    QCOMPARE(commandTable.at(commandRow("mnuOutlineExpand")).caption.find("Plus"), 20U);
    QCOMPARE(commandTable.at(commandRow("mnuEditInsertShortDate")).caption.find("Ctrl+D"), 20U);
}

void tst_CommandTable::everyRowHasItsRule()
{
    for (const CommandRow &row : commandTable)
        QVERIFY2(row.rule, row.name.data());
}

void tst_CommandTable::aNameThatIsNoCommandHasNoRow()
{
    QCOMPARE(commandRow("mnuFileOpenn"), noRow);
    QCOMPARE(commandRow(""), noRow);
}

void tst_CommandTable::theTagItemSaysWhatItDoes()
{
    const CommandRow &row = commandTable[commandRow("mnuOutlineTaggedEntry")];
    QCOMPARE(row.captionNow(CommandState{.Tagged = true}), u"Unta&g entry    Alt+T"_s);
    QCOMPARE(row.captionNow({}), u"Ta&g entry      Alt+T"_s);
}

QTEST_APPLESS_MAIN(tst_CommandTable)
#include "tst_CommandTable.moc"
