// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/RecordTags.h"

#include <QTest>

class tst_RecordTags : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tags_data();
    void tags();
    void tagsAtAPosition_data();
    void tagsAtAPosition();
};

void tst_RecordTags::tags_data()
{
    QTest::addColumn<QByteArray>("buffer");
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("value");

    QTest::newRow("a record") << QByteArray("{\\qlf_a 1}\r\n{\\qlf_b 2}\r\n") << QByteArray("b") << QByteArray("2");
    QTest::newRow("the first of two") << QByteArray("{\\qlf_a 1}{\\qlf_a 2}") << QByteArray("a") << QByteArray("1");
    QTest::newRow("none") << QByteArray("{\\qlf_a 1}") << QByteArray("b") << QByteArray();
    QTest::newRow("an empty buffer") << QByteArray() << QByteArray("a") << QByteArray();
    QTest::newRow("a longer name is another") << QByteArray("{\\qlf_ab 1}") << QByteArray("a") << QByteArray();
    QTest::newRow("an empty value") << QByteArray("{\\qlf_a }") << QByteArray("a") << QByteArray();
    QTest::newRow("without the blank") << QByteArray("{\\qlf_a}") << QByteArray("a") << QByteArray();
    QTest::newRow("a value with blanks") << QByteArray("{\\qlf_a  x y }") << QByteArray("a") << QByteArray(" x y ");
    QTest::newRow("a value over lines") << QByteArray("{\\qlf_a x\r\ny}") << QByteArray("a") << QByteArray("x\r\ny");
    QTest::newRow("without a brace") << QByteArray("{\\qlf_a cut o") << QByteArray("a") << QByteArray("cut o");
    QTest::newRow("in the midst of other bytes") << QByteArray("xx{\\qlf_a 1}") << QByteArray("a") << QByteArray("1");
}

void tst_RecordTags::tags()
{
    QFETCH(const QByteArray, buffer);
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, value);
    QCOMPARE(modDoc::DocLoadTag(buffer, tag), value);
}

void tst_RecordTags::tagsAtAPosition_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("end");

    // {\qlf_a one}{\qlf_bb two
    QTest::newRow("at the first record") << 1 << QByteArray("a") << true << QByteArray("one") << 12;
    QTest::newRow("one behind it") << 2 << QByteArray("a") << false << QByteArray() << 0;
    QTest::newRow("another tag") << 1 << QByteArray("bb") << false << QByteArray() << 0;
    QTest::newRow("a shorter tag of the same beginning") << 13 << QByteArray("b") << false << QByteArray() << 0;
    QTest::newRow("cut off within the value") << 13 << QByteArray("bb") << true << QByteArray("two") << 25;
    QTest::newRow("behind the end") << 1000 << QByteArray("a") << false << QByteArray() << 0;
}

void tst_RecordTags::tagsAtAPosition()
{
    QFETCH(const int, position);
    QFETCH(const QByteArray, tag);
    QFETCH(const bool, found);
    QFETCH(const QByteArray, value);
    QFETCH(const int, end);
    qsizetype endPosition = 0;
    QByteArray read = "before";
    QCOMPARE(modDoc::DocLoadTagAtPosition("{\\qlf_a one}{\\qlf_bb two", tag, position, endPosition, read), found);
    QCOMPARE(read, value);
    QCOMPARE(endPosition, end);
}

QTEST_GUILESS_MAIN(tst_RecordTags)
#include "tst_RecordTags.moc"
