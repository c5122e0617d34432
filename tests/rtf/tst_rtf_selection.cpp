// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/RtfSupport.h"

#include <QRandomGenerator>
#include <QTextCursor>
#include <QTextTable>

// What is written of a part of a text: exactly what is selected, so that cutting it and pasting it again loses nothing.
class TestRtfSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectedCellsAreARectangle_data();
    void selectedCellsAreARectangle();
    void joinedCellsAreWrittenAsFarAsTheyAreSelected();
    void selectedColumnsKeepTheirWidths();
    void selectedRowsOfANestedTableAreATable();
    void aPartOfACellIsNoTable();
    void aTextBesideATableLeavesItOut_data();
    void aTextBesideATableLeavesItOut();
    void aSelectionThatEndsInAParagraphLeavesItOpen();
    void aSelectedBreakIsWritten();

    void anyPartOfATextGoesElsewhereWhole_data() { rtftest::sampleRows(); }

    void anyPartOfATextGoesElsewhereWhole();

private:
    // A table whose cells are named after their place, row and column, between two paragraphs.
    static QTextTable *tableBetween(QTextDocument &document, int rows, int columns)
    {
        QTextCursor cursor(&document);
        cursor.insertText(QStringLiteral("before"));
        QTextTable *table = cursor.insertTable(rows, columns);
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                table->cellAt(row, column)
                    .firstCursorPosition()
                    .insertText(QStringLiteral("%1%2").arg(row).arg(column));
            }
        }
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(QStringLiteral("behind"));
        return table;
    }

    // As dragging from the beginning of one cell to the end of another selects.
    static QTextCursor dragged(const QTextTable &table, int row, int column, int toRow, int toColumn)
    {
        QTextCursor cursor = table.cellAt(row, column).firstCursorPosition();
        cursor.setPosition(table.cellAt(toRow, toColumn).lastPosition(), QTextCursor::KeepAnchor);
        return cursor;
    }

    static QTextTable *tableIn(const QTextDocument &document)
    {
        const QList<QTextFrame *> frames = document.rootFrame()->childFrames();
        return frames.isEmpty() ? nullptr : qobject_cast<QTextTable *>(frames.first());
    }

    static QStringList textsOf(const QTextTable &table)
    {
        QStringList texts;
        for (int row = 0; row < table.rows(); ++row) {
            for (int column = 0; column < table.columns(); ++column) {
                const QTextTableCell cell = table.cellAt(row, column);
                if (cell.row() == row && cell.column() == column) {
                    QTextCursor cursor = cell.firstCursorPosition();
                    cursor.setPosition(cell.lastPosition(), QTextCursor::KeepAnchor);
                    texts << cursor.selectedText();
                }
            }
        }
        return texts;
    }
};

void TestRtfSelection::selectedCellsAreARectangle_data()
{
    QTest::addColumn<QList<int>>("from");
    QTest::addColumn<QList<int>>("to");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QList<int> &from, const QList<int> &to, const char *text) {
        QTest::newRow(name) << from << to << QString::fromLatin1(text);
    };
    row("the whole table", {0, 0}, {2, 2}, "00\t01\t02\r\n10\t11\t12\r\n20\t21\t22");
    row("the whole table, backwards", {2, 2}, {0, 0}, "00\t01\t02\r\n10\t11\t12\r\n20\t21\t22");
    row("a row", {1, 0}, {1, 2}, "10\t11\t12");
    row("a column", {0, 1}, {2, 1}, "01\r\n11\r\n21");
    row("a column, backwards", {2, 1}, {0, 1}, "01\r\n11\r\n21");
    row("some rows", {1, 0}, {2, 2}, "10\t11\t12\r\n20\t21\t22");
    row("a corner", {1, 1}, {2, 2}, "11\t12\r\n21\t22");
    row("the other diagonal", {0, 2}, {1, 1}, "01\t02\r\n11\t12");
}

void TestRtfSelection::selectedCellsAreARectangle()
{
    QFETCH(const QList<int>, from);
    QFETCH(const QList<int>, to);
    QFETCH(const QString, text);
    QTextDocument document;
    QTextTable *table = tableBetween(document, 3, 3);
    QTextCursor cursor = dragged(*table, from[0], from[1], to[0], to[1]);
    QVERIFY(cursor.hasComplexSelection());
    QCOMPARE(rtf::plainText(cursor), text);

    const QByteArray written = rtf::write(cursor);
    const auto copy = rtftest::documentOf(written);
    const QTextTable *copied = tableIn(*copy);
    QVERIFY(copied);
    const QStringList lines = text.split(QStringLiteral("\r\n"));
    QCOMPARE(copied->rows(), int(lines.size()));
    QCOMPARE(copied->columns(), int(lines.first().split(QLatin1Char('\t')).size()));
    QStringList expected;
    for (const QString &line : lines) {
        expected += line.split(QLatin1Char('\t'));
    }
    QCOMPARE(textsOf(*copied), expected);

    // Those are the cells that cutting empties.
    const QStringList before = textsOf(*table);
    cursor.removeSelectedText();
    QStringList removed = before;
    for (const QString &left : textsOf(*table)) {
        removed.removeAll(left);
    }
    QCOMPARE(removed, expected);
}

void TestRtfSelection::joinedCellsAreWrittenAsFarAsTheyAreSelected()
{
    QTextDocument document;
    QTextTable *table = tableBetween(document, 3, 3);
    table->mergeCells(0, 0, 3, 1);
    table->mergeCells(1, 1, 1, 2);
    for (const QPoint place : {QPoint(0, 0), QPoint(1, 1)}) {
        QTextCursor text = table->cellAt(place.x(), place.y()).firstCursorPosition();
        text.setPosition(table->cellAt(place.x(), place.y()).lastPosition(), QTextCursor::KeepAnchor);
        text.insertText(place.x() == 0 ? QStringLiteral("left") : QStringLiteral("wide"));
    }

    const QTextCursor all = dragged(*table, 0, 0, 2, 2);
    QCOMPARE(rtf::plainText(all), QStringLiteral("left\t01\t02\r\n\twide\t\r\n\t21\t22"));
    const auto whole = rtftest::documentOf(rtf::write(all));
    QCOMPARE(textsOf(*tableIn(*whole)), QStringLiteral("left 01 02 wide 21 22").split(QLatin1Char(' ')));
    QCOMPARE(tableIn(*whole)->cellAt(0, 0).rowSpan(), 3);
    QCOMPARE(tableIn(*whole)->cellAt(1, 1).columnSpan(), 2);

    // The wide cell reaches out of the last column and belongs to it all the same.
    const QTextCursor part = dragged(*table, 0, 2, 1, 2);
    const QString text = rtf::plainText(part);
    const auto copy = rtftest::documentOf(rtf::write(part));
    QVERIFY(text.contains(QStringLiteral("wide")));
    QVERIFY(textsOf(*tableIn(*copy)).contains(QStringLiteral("wide")));
}

void TestRtfSelection::selectedColumnsKeepTheirWidths()
{
    QTextDocument document;
    QTextTable *table = tableBetween(document, 1, 3);
    QTextTableFormat format = table->format();
    format.setColumnWidthConstraints({QTextLength(QTextLength::FixedLength, 40),
                                      QTextLength(QTextLength::FixedLength, 100),
                                      QTextLength(QTextLength::FixedLength, 60)});
    table->setFormat(format);
    const auto copy = rtftest::documentOf(rtf::write(dragged(*table, 0, 1, 0, 2)));
    const QList<QTextLength> widths = tableIn(*copy)->format().columnWidthConstraints();
    QCOMPARE(widths.size(), 2);
    QCOMPARE(widths[0].rawValue(), 100.0);
    QCOMPARE(widths[1].rawValue(), 60.0);
    QCOMPARE(tableIn(*copy)->format().leftMargin(), 0.0);
}

void TestRtfSelection::selectedRowsOfANestedTableAreATable()
{
    QTextDocument document;
    QTextTable *outer = tableBetween(document, 1, 2);
    QTextTable *inner = outer->cellAt(0, 1).lastCursorPosition().insertTable(2, 2);
    inner->cellAt(1, 0).firstCursorPosition().insertText(QStringLiteral("a"));
    inner->cellAt(1, 1).firstCursorPosition().insertText(QStringLiteral("b"));
    const QTextCursor row = dragged(*inner, 1, 0, 1, 1);
    QCOMPARE(rtf::plainText(row), QStringLiteral("a\tb"));
    const auto copy = rtftest::documentOf(rtf::write(row));
    QCOMPARE(textsOf(*tableIn(*copy)), QStringLiteral("a b").split(QLatin1Char(' ')));
    // A cell that holds a table is copied with it.
    const auto both = rtftest::documentOf(rtf::write(dragged(*outer, 0, 0, 0, 1)));
    QCOMPARE(rtf::plainText(*both), QStringLiteral("\r\n00\r\n01\r\n\r\n\r\na\r\nb\r\n\r\n"));
}

void TestRtfSelection::aPartOfACellIsNoTable()
{
    QTextDocument document;
    QTextTable *table = tableBetween(document, 2, 2);
    QTextCursor cursor = table->cellAt(0, 1).firstCursorPosition();
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    QCOMPARE(rtf::plainText(cursor), QStringLiteral("0"));
    const QByteArray written = rtf::write(cursor);
    QVERIFY2(!written.contains("\\trowd") && !written.contains("\\cell"), written);
    QTextDocument target(QStringLiteral("xy"));
    QTextCursor caret(&target);
    caret.setPosition(1);
    rtf::insert(written, caret);
    QCOMPARE(rtf::plainText(target), QStringLiteral("x0y"));
}

void TestRtfSelection::aTextBesideATableLeavesItOut_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("before it") << QStringLiteral("before");
    QTest::newRow("behind it") << QStringLiteral("behind");
}

void TestRtfSelection::aTextBesideATableLeavesItOut()
{
    QFETCH(const QString, text);
    QTextDocument document;
    tableBetween(document, 2, 2);
    const QTextCursor cursor = document.find(text);
    QCOMPARE(rtf::plainText(cursor), text);
    const QByteArray written = rtf::write(cursor);
    QVERIFY2(!written.contains("\\trowd"), written);
    QTextDocument target(QStringLiteral("xy"));
    QTextCursor caret(&target);
    caret.setPosition(1);
    rtf::insert(written, caret);
    QCOMPARE(rtf::plainText(target), QLatin1Char('x') + text + QLatin1Char('y'));
}

void TestRtfSelection::aSelectionThatEndsInAParagraphLeavesItOpen()
{
    QTextDocument document(QStringLiteral("one\ntwo\nthree"));
    QTextCursor cursor(&document);
    cursor.setPosition(1);
    cursor.setPosition(6, QTextCursor::KeepAnchor);
    QCOMPARE(rtf::plainText(cursor), QStringLiteral("ne\r\ntw"));
    const QByteArray written = rtf::write(cursor);
    QCOMPARE(written.count("\\par\n"), 1);
    QTextDocument target(QStringLiteral("xy"));
    QTextCursor caret(&target);
    caret.setPosition(1);
    rtf::insert(written, caret);
    QCOMPARE(rtf::plainText(target), QStringLiteral("xne\r\ntwy"));
}

void TestRtfSelection::aSelectedBreakIsWritten()
{
    QTextDocument document(QStringLiteral("one\ntwo\nthree"));
    QTextCursor cursor(&document);
    cursor.setPosition(1);
    cursor.setPosition(4, QTextCursor::KeepAnchor);
    QCOMPARE(rtf::plainText(cursor), QStringLiteral("ne\r\n"));
    QTextDocument target(QStringLiteral("xy"));
    QTextCursor caret(&target);
    caret.setPosition(1);
    rtf::insert(rtf::write(cursor), caret);
    QCOMPARE(rtf::plainText(target), QStringLiteral("xne\r\ny"));
}

void TestRtfSelection::anyPartOfATextGoesElsewhereWhole()
{
    QFETCH(const QByteArray, whole);
    const auto document = rtftest::documentOf(whole);
    QRandomGenerator random(1);
    for (int i = 0; i < 40; ++i) {
        QTextCursor cursor(document.get());
        cursor.setPosition(random.bounded(document->characterCount()));
        cursor.setPosition(random.bounded(document->characterCount()), QTextCursor::KeepAnchor);
        if (!rtf::plainText(cursor).isValidUtf16()) {
            continue; // half a character
        }
        const QByteArray written = rtf::write(cursor);
        QTextDocument target(QStringLiteral("xy"));
        QTextCursor caret(&target);
        caret.setPosition(1);
        rtf::insert(written, caret);
        QString expected = QLatin1Char('x') + rtf::plainText(cursor) + QLatin1Char('y');
        QString inserted = rtf::plainText(target);
        if (written.contains("\\trowd")) {
            // A table has paragraphs of its own around it.
            for (QString *text : {&expected, &inserted}) {
                text->removeIf(
                    [](QChar c) { return c == QLatin1Char('\t') || c == QLatin1Char('\r') || c == QLatin1Char('\n'); });
            }
        }
        QVERIFY2(inserted == expected,
                 qPrintable(QStringLiteral("%1 to %2").arg(cursor.anchor()).arg(cursor.position())));
    }
}

QTEST_MAIN(TestRtfSelection)
#include "tst_rtf_selection.moc"
