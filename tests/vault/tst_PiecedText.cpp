// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/PiecedText.h"

#include <QRandomGenerator>
#include <QTest>

class tst_PiecedText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsWhatTheChangesMadeOfIt();
    void whatIsTypedInOnePlaceIsOnePiece();
    void ofOthersThatAreTooShortItIsNothing();
};

void tst_PiecedText::itIsWhatTheChangesMadeOfIt()
{
    QRandomGenerator random(5);
    for (int round = 0; round < 200; ++round) {
        QByteArray others(random.bounded(60), Qt::Uninitialized);
        std::ranges::generate(others, [&random] { return static_cast<char>('a' + random.bounded(26)); });
        QByteArray expected = others;
        PiecedText text(others.size());
        for (int change = 0; change < 30; ++change) {
            const auto from = random.bounded(static_cast<int>(expected.size()) + 1);
            const auto length = random.bounded(std::min(8, static_cast<int>(expected.size()) - from) + 1);
            const QByteArray bytes(random.bounded(5), static_cast<char>('A' + random.bounded(26)));
            text.replace(from, length, bytes);
            expected.replace(from, length, bytes);
            QCOMPARE(text.of(others), expected);
            QCOMPARE(text.size(), expected.size());
            QCOMPARE(PiecedText(text.pieces()).of(others), expected);
        }
    }
}

void tst_PiecedText::whatIsTypedInOnePlaceIsOnePiece()
{
    PiecedText text(1000);
    for (int key = 0; key < 100; ++key)
        text.replace(500 + key, 0, "x");
    QCOMPARE(text.pieces().size(), size_t(3));
    QCOMPARE(text.weight(), 3 * 24 + 100);
}

void tst_PiecedText::ofOthersThatAreTooShortItIsNothing()
{
    PiecedText text(10);
    text.replace(3, 2, "own");
    QVERIFY(!text.of("123456789"));
    QVERIFY(text.of("1234567890"));
}

QTEST_GUILESS_MAIN(tst_PiecedText)
#include "tst_PiecedText.moc"
