// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/SpoolFolder.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryFile>
#include <QTest>

#include <stdexcept>

using namespace Qt::StringLiterals;

// Where the pages of a job for a printer with paper wait until it is complete.
class tst_SpoolFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void temporaryFilesAreMadeInIt()
    {
        const SpoolFolder spool;
        spool.collect([&] {
            QTemporaryFile file;
            QVERIFY(file.open());
            QCOMPARE(QFileInfo(file.fileName()).path(), spool.path());
        });
        QTemporaryFile other;
        QVERIFY(other.open());
        QVERIFY(QFileInfo(other.fileName()).path() != spool.path());
    }

    void theEnvironmentIsAsBefore()
    {
        const QByteArray outside = qgetenv("TMPDIR");
        const auto restore = qScopeGuard([&] {
            if (outside.isNull())
                qunsetenv("TMPDIR");
            else
                qputenv("TMPDIR", outside);
        });
        qunsetenv("TMPDIR");
        SpoolFolder().collect([] { QVERIFY(qEnvironmentVariableIsSet("TMPDIR")); });
        QVERIFY(!qEnvironmentVariableIsSet("TMPDIR"));
        const QByteArray before = QFile::encodeName(QDir::homePath());
        const SpoolFolder spool;
        qputenv("TMPDIR", before);
        spool.collect([&] { QVERIFY(qgetenv("TMPDIR") != before); });
        QCOMPARE(qgetenv("TMPDIR"), before);
        // Also when what was run fails.
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, spool.collect([] { throw std::runtime_error("no printer"); }));
        QCOMPARE(qgetenv("TMPDIR"), before);
    }

    void whatWasCollectedCanBeRemoved()
    {
        QString path;
        {
            const SpoolFolder spool;
            path = spool.path();
            for (const QString &name : {u"pages"_s, u".hidden"_s}) {
                QFile file(QDir(path).filePath(name));
                QVERIFY(file.open(QIODevice::WriteOnly) && file.write("%PDF") == 4);
            }
            spool.clear();
            QCOMPARE(QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
            QVERIFY(QDir(path).exists());
        }
        QVERIFY(!QDir(path).exists());
    }
};

QTEST_GUILESS_MAIN(tst_SpoolFolder)
#include "tst_SpoolFolder.moc"
