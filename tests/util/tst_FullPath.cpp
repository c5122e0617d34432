// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/FullPath.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_FullPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void paths_data();
    void paths();

private:
    QTemporaryDir m_folder;
    QString m_before;
};

void tst_FullPath::initTestCase()
{
    m_before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder.path()));
}

void tst_FullPath::cleanupTestCase()
{
    QVERIFY(QDir::setCurrent(m_before));
}

void tst_FullPath::paths_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("full");
    const QString here = QDir::currentPath();

    QTest::newRow("a name in the current folder") << u"notes.qly"_s << here + u"/notes.qly"_s;
    QTest::newRow("below the current folder") << u"a/notes.qly"_s << here + u"/a/notes.qly"_s;
    QTest::newRow("absolute") << u"/a/notes.qly"_s << u"/a/notes.qly"_s;
    QTest::newRow("dots and doubled separators") << u"/a/./b//../notes.qly"_s << u"/a/notes.qly"_s;
    QTest::newRow("up from the current folder") << u"x/../notes.qly"_s << here + u"/notes.qly"_s;
    QTest::newRow("blanks within are kept") << u"/a/two words.qly"_s << u"/a/two words.qly"_s;
    QTest::newRow("empty") << QString() << QString();
}

void tst_FullPath::paths()
{
    QFETCH(const QString, name);
    QFETCH(const QString, full);
    QCOMPARE(FullPathName(name), full);
}

QTEST_APPLESS_MAIN(tst_FullPath)
#include "tst_FullPath.moc"
