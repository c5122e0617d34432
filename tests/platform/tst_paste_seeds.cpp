// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/PasteRoundTrip.h"

#include <QDir>
#include <QFile>
#include <QTest>

// The inputs of fuzz_paste, replayed: the seeds, and what fuzzing has found, each file named after what was wrong.
class tst_paste_seeds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pasted_data();
    void pasted();
};

void tst_paste_seeds::pasted_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &folder : {QStringLiteral(QUILLERY_SOURCE_DIR "/fuzz/seeds/fuzz_paste"),
                                  QStringLiteral(QUILLERY_SOURCE_DIR "/fuzz/seeds/fuzz_rtf"),
                                  QStringLiteral(QUILLERY_TEST_DATA "/paste-findings")}) {
        const QDir files(folder);
        const QStringList names = files.entryList(QDir::Files, QDir::Name);
        for (const QString &name : names)
            QTest::newRow(qPrintable(files.dirName() + u'/' + name)) << files.filePath(name);
    }
}

void tst_paste_seeds::pasted()
{
    QFETCH(const QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(pastetest::pasteFault(file.readAll()), QString());
}

QTEST_MAIN(tst_paste_seeds)
#include "tst_paste_seeds.moc"
