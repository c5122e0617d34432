// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/modString.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_modString : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void existingFiles();
    void characterClasses_data();
    void characterClasses();
    void extensions_data();
    void extensions();
};

void tst_modString::existingFiles()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"caf\u00E9 \u03B1.qly"_s);
    QVERIFY(!modString::FileExists(name));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(modString::FileExists(name));
    QVERIFY2(!modString::FileExists(folder.path()), "a folder is no file");
    QVERIFY(!modString::FileExists(QString()));

    const QString link = folder.filePath(u"link"_s);
    QVERIFY(QFile::link(name, link));
    QVERIFY2(modString::FileExists(link), "a link to a file is one");
    QVERIFY(file.remove());
    QVERIFY2(!modString::FileExists(link), "a link to nothing is none");
}

void tst_modString::characterClasses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("alphanumeric");
    QTest::addColumn<bool>("upperCase");

    QTest::newRow("empty") << QString() << true << true;
    QTest::newRow("capitals") << u"AZ"_s << true << true;
    QTest::newRow("small letters") << u"az"_s << true << false;
    QTest::newRow("digits") << u"09"_s << true << false;
    QTest::newRow("one small letter among capitals") << u"ABc"_s << true << false;
    QTest::newRow("below and above the capitals") << u"@["_s << false << false;
    QTest::newRow("below and above the small letters") << u"`{"_s << false << false;
    QTest::newRow("below and above the digits") << u"/:"_s << false << false;
    QTest::newRow("a blank") << u" "_s << false << false;
    QTest::newRow("an underscore") << u"_"_s << false << false;
    QTest::newRow("an accented capital") << u"\u00C9"_s << false << false;
    QTest::newRow("a digit of another script") << u"\u0663"_s << false << false;
}

void tst_modString::characterClasses()
{
    QFETCH(const QString, text);
    QFETCH(const bool, alphanumeric);
    QFETCH(const bool, upperCase);
    QCOMPARE(modString::StringAlphanumeric(text), alphanumeric);
    QCOMPARE(modString::StringUpperCaseAlpha(text), upperCase);
}

void tst_modString::extensions_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("rest");

    QTest::newRow("a plain name") << u"/a/notes.qly"_s << u"qly"_s << u"/a/notes"_s;
    QTest::newRow("in lower case") << u"/a/notes.QLY"_s << u"qly"_s << u"/a/notes"_s;
    QTest::newRow("the last of two") << u"/a/notes.qly.txt"_s << u"txt"_s << u"/a/notes.qly"_s;
    QTest::newRow("none") << u"/a/notes"_s << QString() << u"/a/notes"_s;
    QTest::newRow("a stop in a folder's name") << u"/a.d/notes"_s << QString() << u"/a.d/notes"_s;
    QTest::newRow("a stop at the end") << u"/a/notes."_s << QString() << u"/a/notes"_s;
    QTest::newRow("a hidden file") << u"/a/.qly"_s << QString() << u"/a/.qly"_s;
    QTest::newRow("a hidden file with an extension") << u"/a/.notes.qly"_s << u"qly"_s << u"/a/.notes"_s;
    QTest::newRow("a name without a folder") << u"notes.bak"_s << u"bak"_s << u"notes"_s;
    QTest::newRow("beyond ASCII") << u"/a/\u00E9.\u03A3"_s << u"\u03C3"_s << u"/a/\u00E9"_s;
    QTest::newRow("empty") << QString() << QString() << QString();
}

void tst_modString::extensions()
{
    QFETCH(const QString, path);
    QFETCH(const QString, extension);
    QFETCH(const QString, rest);
    QCOMPARE(modString::StringExtension(path), extension);
    QCOMPARE(modString::StringWithoutExtension(path), rest);
}

QTEST_APPLESS_MAIN(tst_modString)
#include "tst_modString.moc"
