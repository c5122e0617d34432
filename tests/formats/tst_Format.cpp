// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/Format.h"
#include "support/NativeBytes.h"
#include "util/RunTimeError.h"

#include <QTest>

using namespace Qt::StringLiterals;

// The table of formats: bytes become outlines and outlines bytes, without a file or a document.
class tst_Format : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachIsFoundByItsVersionAndItsExtension();
    void whatNoFormatClaimsIsPlainText();
    void aStatedVersionGoesBeforeTheExtension_data();
    void aStatedVersionGoesBeforeTheExtension();
    void aVersionBeyond16BitsIsAnOverflow();
    void eachReadsWhatItWrites();
    void aBrokenReadingHasWhatWasReadByThen();
};

void tst_Format::eachIsFoundByItsVersionAndItsExtension()
{
    QVERIFY(!formats().empty());
    for (const Format &format : formats()) {
        QCOMPARE(&formatOfVersion(format.version), &format);
        QCOMPARE(&formatOfExtension(u"/a.b/notes."_s + format.extension), &format);
        QCOMPARE(&formatOfExtension(u"/a.b/notes."_s + format.extension.toUpper()), &format);
        QCOMPARE(format.pattern, u"*."_s + format.extension);
        QVERIFY(format.filter.endsWith(u" ("_s + format.pattern + u')'));
    }
}

void tst_Format::whatNoFormatClaimsIsPlainText()
{
    const Format &text = formatOfVersion(formatVersion::plainText);
    QCOMPARE(text.extension, u"txt"_s);
    QCOMPARE(&formatOfVersion(7), &text);
    for (const QString &file : {u"notes.doc"_s, u"notes"_s, QString(), u"/a.qly/notes"_s})
        QCOMPARE(&formatOfExtension(file), &text);
}

void tst_Format::aStatedVersionGoesBeforeTheExtension_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint16>("version");
    QTest::newRow("stated") << u"a.txt"_s << nativeBytes({u"Root"_s}) << formatVersion::native;
    QTest::newRow("a later one") << u"a.qly"_s << QByteArray("{\\qlf_formatversion 2}") << qint16(2);
    QTest::newRow("no number") << u"a.qly"_s << QByteArray("{\\qlf_formatversion x}") << formatVersion::native;
    QTest::newRow("none") << u"a.txt"_s << QByteArray("words") << formatVersion::plainText;
}

void tst_Format::aStatedVersionGoesBeforeTheExtension()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, bytes);
    QFETCH(const qint16, version);
    QCOMPARE(formatVersionOf(file, bytes), version);
}

void tst_Format::aVersionBeyond16BitsIsAnOverflow()
{
    try {
        formatVersionOf(u"a.qly"_s, "{\\qlf_formatversion 40000}");
        QFAIL("no error");
    } catch (const RunTimeError &error) {
        QCOMPARE(error.number(), ErrorNumber::Overflow);
    }
}

void tst_Format::eachReadsWhatItWrites()
{
    for (const Format &format : formats()) {
        Outline outline;
        plantOutline(outline.tree, {u"Text <"_s});
        outline.tree.setStoredText(outline.tree.root(), "words\r\n");
        MemorySink written;
        format.write(outline, written);
        const ReadOutline read = format.read(written.bytes);
        QVERIFY(!read.failure);
        QCOMPARE(read.damage, QString());
        QCOMPARE(dumpOutline(read.outline->tree), QStringList(u"Text <"_s));
        QVERIFY(read.outline->tree.storedText(read.outline->tree.root()).contains("words\r\n"));
    }
}

void tst_Format::aBrokenReadingHasWhatWasReadByThen()
{
    const ReadOutline read = modDocV1::read(nativeBytes({u"Root"_s, u" A *"_s}) + "{\\qlf_nodekey 0.5}\r\n");
    QVERIFY(read.failure);
    QCOMPARE(dumpOutline(read.outline->tree), QStringList({u"Root <"_s, u" A *"_s}));
}

QTEST_GUILESS_MAIN(tst_Format)
#include "tst_Format.moc"
