// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/RtfSupport.h"

#include <QTextCursor>
#include <QTextTable>

// What the written bytes must say beside what a document needs to come back: other readers lean on it.
class TestRtfWritten : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRowOfANestedTableSaysWhereItIs();
};

// Word processors refuse a text whose nested row begins with bare text.
void TestRtfWritten::everyRowOfANestedTableSaysWhereItIs()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextTable *outer = cursor.insertTable(2, 1);
    QTextTable *inner = outer->cellAt(0, 0).lastCursorPosition().insertTable(3, 2);
    QTextTable *innermost = inner->cellAt(1, 0).lastCursorPosition().insertTable(2, 1);
    for (int row = 0; row < 3; ++row) {
        inner->cellAt(row, 1).firstCursorPosition().insertText(QStringLiteral("inner %1").arg(row));
    }
    for (int row = 0; row < 2; ++row) {
        innermost->cellAt(row, 0).firstCursorPosition().insertText(QStringLiteral("deep %1").arg(row));
    }
    const QByteArray written = rtf::write(document);
    // A row ends where its definition does; the next one opens with its depth.
    QList<QByteArray> rows;
    qsizetype begin = 0;
    for (qsizetype end = written.indexOf("\\nestrow}"); end >= 0; end = written.indexOf("\\nestrow}", begin)) {
        rows << written.sliced(begin, end - begin);
        begin = end + 9;
    }
    QCOMPARE(rows.size(), 5);
    const QByteArray middle("\n\\pard\\intbl\\itap2");
    const QByteArray deep("\n\\pard\\intbl\\itap3");
    QVERIFY2(rows[0].contains("\\pard\\intbl\\itap2"), rows[0]);
    QVERIFY2(rows[1].startsWith(middle) && rows[1].contains("\\pard\\intbl\\itap3"), rows[1]);
    QVERIFY2(rows[2].startsWith(deep), rows[2]);
    QVERIFY2(rows[3].startsWith(middle), rows[3]);
    QVERIFY2(rows[4].startsWith(middle), rows[4]);
    const auto read = rtftest::documentOf(written);
    QCOMPARE(rtf::write(*read), written);
}

QTEST_MAIN(TestRtfWritten)
#include "tst_rtf_written.moc"
