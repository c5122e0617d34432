// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/OutlineDifference.h"
#include "formats/modDocV1.h"
#include "support/NativeBytes.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

using Alteration = std::function<void(Outline &)>;
Q_DECLARE_METATYPE(Alteration)

// Whether an outline that was written is there again where it is read: nothing that was lost may go unseen, and nothing
// that the format can hold may be taken for lost, which would keep a document from being saved.
class tst_OutlineDifference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsAnotherIsSeen_data();
    void whatIsAnotherIsSeen();
    void whateverCanBeWrittenIsThereAgain_data();
    void whateverCanBeWrittenIsThereAgain();
};

namespace
{

void plant(Outline &outline)
{
    plantOutline(outline.tree, {u"Root +"_s, u" First *"_s, u"  Below"_s, u" Second <"_s});
    for (Entry *entry = outline.tree.root(); entry; entry = nextInOutline(entry, outline.tree.root()))
        outline.tree.setStoredText(entry, "text of " + entry->label().toUtf8());
    outline.outlineFont.setName(u"Arial"_s);
    outline.textFont.setName(u"Courier"_s);
    outline.textFont.setSize(105000);
}

} // namespace

void tst_OutlineDifference::whatIsAnotherIsSeen_data()
{
    QTest::addColumn<Alteration>("alter");
    QTest::addColumn<QString>("difference");
    QTest::newRow("nothing") << Alteration([](Outline &) {}) << QString();
    QTest::newRow("an entry less") << Alteration([](Outline &outline) {
        outline.tree.remove(outline.tree.itemByKey(u"KEY0.1.1"_s));
    }) << u"3 entries in place of 4"_s;
    QTest::newRow("an entry elsewhere") << Alteration([](Outline &outline) {
        outline.tree.move(outline.tree.itemByKey(u"KEY0.1.1"_s), Relationship::tvwLast,
                          outline.tree.itemByKey(u"KEY0.2"_s));
    }) << u"another number of entries below entry 0"_s;
    QTest::newRow("a label") << Alteration([](Outline &outline) {
        outline.tree.setLabel(outline.tree.itemByKey(u"KEY0.1.1"_s), u"below"_s);
    }) << u"another label of entry 0.1.1"_s;
    QTest::newRow("a tag") << Alteration([](Outline &outline) {
        outline.tree.setTagged(outline.tree.itemByKey(u"KEY0.1"_s), false);
    }) << u"another tag of entry 0.1"_s;
    QTest::newRow("a text") << Alteration([](Outline &outline) {
        outline.tree.setStoredText(outline.tree.itemByKey(u"KEY0.2"_s), "text of Secand");
    }) << u"another text of entry 0.2"_s;
    QTest::newRow("the outline's font") << Alteration([](Outline &outline) { outline.outlineFont.setBold(true); })
                                        << u"other fonts"_s;
    QTest::newRow("the texts' font") << Alteration([](Outline &outline) { outline.textFont.setName(u"Courier New"_s); })
                                     << u"other fonts"_s;
}

void tst_OutlineDifference::whatIsAnotherIsSeen()
{
    QFETCH(const Alteration, alter);
    QFETCH(const QString, difference);
    Outline written;
    plant(written);
    const ReadOutline read = modDocV1::read(nativeBytes(written));
    alter(*read.outline);
    QCOMPARE(outlineDifference(written, *read.outline), difference);
}

void tst_OutlineDifference::whateverCanBeWrittenIsThereAgain_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QByteArray>("text");
    const QString lone = QString(QChar(0xD800));
    for (const QString &label :
         {u""_s, u" "_s, u"}"_s, u"a } b } c"_s, u"two\r\nlines\n"_s, u"{\\qlf_nodekey 0.7}"_s, u"{\\qlf_nodetext "_s,
          u"\u00C3\u00A4 and \u20AC"_s, u"\uFEFFmark"_s, QString(QChar(0)) + u"null"_s, lone, lone + u"}"_s,
          u"\U0001F600 } \U0001F600"_s, QString(70000, u'x')})
        QTest::addRow("the label \"%s\"", qPrintable(label.left(20))) << label << QByteArray("text");
    for (const QByteArray &text :
         {QByteArray(), QByteArray("}"), QByteArray("}\r\n"), QByteArray("a\r\n{\\qlf_nodekey 0.9}\r\n"),
          QByteArray("{\\qlf_"), QByteArray("12,no stream"), QByteArray("\0\1\2", 3), QByteArray(300000, 'x'),
          NodeTextCompressIfRequired(QByteArray(300000, '\xE4'))})
        QTest::addRow("the text \"%s\"", text.left(20).toPercentEncoding(" ").constData()) << u"label"_s << text;
}

void tst_OutlineDifference::whateverCanBeWrittenIsThereAgain()
{
    QFETCH(const QString, label);
    QFETCH(const QByteArray, text);
    for (const QString &font : {u"Arial"_s, u"A}B"_s, u"{\\qlf_new"_s, u"\u65B0\u7D30"_s}) {
        Outline written;
        plant(written);
        written.outlineFont.setName(font);
        for (const QString &key : {u"KEY0"_s, u"KEY0.1.1"_s, u"KEY0.2"_s}) {
            written.tree.setLabel(written.tree.itemByKey(key), label);
            written.tree.setStoredText(written.tree.itemByKey(key), text);
        }
        const ReadOutline read = modDocV1::read(nativeBytes(written));
        QVERIFY(!read.failure);
        QCOMPARE(outlineDifference(written, *read.outline), QString());
    }
}

QTEST_MAIN(tst_OutlineDifference)
#include "tst_OutlineDifference.moc"
