// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/NativeRoundTrip.h"

#include <QDir>
#include <QFile>
#include <QTest>

// The inputs of fuzz_native, replayed: the seeds, and what fuzzing has found, each file named after what was wrong.
class tst_native_seeds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readAndWrittenTwice_data();
    void readAndWrittenTwice();
    void everyCutOfTheSeedsReadAndWrittenTwice();
};

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_native_seeds::readAndWrittenTwice_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &folder : {QStringLiteral(QUILLERY_SOURCE_DIR "/fuzz/seeds/fuzz_native"),
                                  QStringLiteral(QUILLERY_TEST_DATA "/native-findings")}) {
        const QDir files(folder);
        const QStringList names = files.entryList(QDir::Files, QDir::Name);
        for (const QString &name : names)
            QTest::newRow(qPrintable(files.dirName() + u'/' + name)) << files.filePath(name);
    }
}

void tst_native_seeds::readAndWrittenTwice()
{
    QFETCH(const QString, path);
    const QByteArray bytes = contentOf(path);
    QVERIFY(!bytes.isEmpty());
    QCOMPARE(formatstest::nativeFault(bytes), QString());
}

void tst_native_seeds::everyCutOfTheSeedsReadAndWrittenTwice()
{
    const QDir files(QStringLiteral(QUILLERY_SOURCE_DIR "/fuzz/seeds/fuzz_native"));
    const QStringList names = files.entryList(QDir::Files, QDir::Name);
    QVERIFY(!names.isEmpty());
    for (const QString &name : names) {
        const QByteArray bytes = contentOf(files.filePath(name));
        for (qsizetype length = 0; length < bytes.size(); ++length) {
            const QString fault = formatstest::nativeFault(bytes.first(length));
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("%1, %2 bytes: %3").arg(name).arg(length).arg(fault)));
        }
    }
}

QTEST_MAIN(tst_native_seeds)
#include "tst_native_seeds.moc"
