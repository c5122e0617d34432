// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/RoundTrip.h"

#include <QDir>
#include <QFile>
#include <QTest>

// The inputs of the fuzz targets, replayed: the seeds, and what fuzzing has found, each file named after what was
// wrong.
class TestFuzzSeeds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rtf_data();
    void rtf();
};

void TestFuzzSeeds::rtf_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &folder : {QStringLiteral(QUILLERY_SOURCE_DIR "/fuzz/seeds/fuzz_rtf"),
                                  QStringLiteral(QUILLERY_TEST_DATA "/rtf-findings")}) {
        const QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name);
        QVERIFY(!names.isEmpty());
        for (const QString &name : names) {
            QTest::newRow(qPrintable(name)) << folder + QLatin1Char('/') + name;
        }
    }
}

void TestFuzzSeeds::rtf()
{
    QFETCH(const QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(rtftest::roundTripFault(file.readAll()), QString());
}

QTEST_MAIN(TestFuzzSeeds)
#include "tst_fuzz_seeds.moc"
