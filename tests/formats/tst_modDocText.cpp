// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/TextExchange.h"
#include "document/modNodes.h"
#include "formats/modDocText.h"
#include "model/Limits.h"
#include "model/StoredText.h"
#include "support/FormatsFixture.h"
#include "support/NativeChecker.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"
#include "util/AnsiCodec.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_modDocText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aLineTooLongForThePaneIsShownInPartAndKeptWhole();
    void cleanup();

    void theLayoutOfAnOutline();
    void allTextsEmpty();
    void anEmptyOutlineIsAnEmptyText();
    void trailingEmptyLines_data();
    void trailingEmptyLines();
    void formattedAndCompressedTexts();
    void everyLineEndsWithCrLf();
    void headingsOfADeepOutline();
    void exportLeavesTheDocumentAsItWas();
    void exportedBytes_data();
    void exportedBytes();
    void exportThatFailsLeavesTheOldFile_data();
    void exportThatFailsLeavesTheOldFile();

    void reading_data();
    void reading();
    void aTextThatLooksCompressedIsShownWhole_data();
    void aTextThatLooksCompressedIsShownWhole();
    void importingAnEmptyFile();
    void theStateAfterAnImport_data();
    void theStateAfterAnImport();
    void importingAFileThatIsGone();
    void anExportedFileReopensAsOneEntry();
    void anImportedDocumentIsSavedAndLoaded();
    void withoutADocumentNothingHappens();

private:
    QString path(const QString &name) const { return (*m_folder)(name); }

    std::unique_ptr<FormatsFixture> m_fixture;
    std::unique_ptr<TestFolder> m_folder;
};

void tst_modDocText::init()
{
    m_fixture = std::make_unique<FormatsFixture>();
    m_folder = std::make_unique<TestFolder>();
}

void tst_modDocText::cleanup()
{
    QVERIFY(!bBusy);
    QVERIFY(!m_fixture->fake.pointer.hourglass);
    m_fixture.reset();
    m_folder.reset();
}

void tst_modDocText::theLayoutOfAnOutline()
{
    Document &document = m_fixture->plant({u"Notes"_s, u" First"_s, u" Second"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root(), "Top");
    rawOutline(document).tree.setStoredText(document.tree.root()->child(0), "Line one\r\nLine two");
    QCOMPARE(modDocText::plainTextLayout(document.outline()), u"0 Notes\r\nTop\r\n\r\n"
                                                              "0.1 First\r\nLine one\r\nLine two\r\n\r\n"
                                                              "0.2 Second\r\n\r\n"_s);
}

void tst_modDocText::allTextsEmpty()
{
    const Document &document = m_fixture->plant({u"Root"_s, u" A"_s, u"  A1"_s, u" B"_s}).document;
    QCOMPARE(modDocText::plainTextLayout(document.outline()),
             u"0 Root\r\n\r\n0.1 A\r\n\r\n0.1.1 A1\r\n\r\n0.2 B\r\n\r\n"_s);
}

void tst_modDocText::anEmptyOutlineIsAnEmptyText()
{
    QCOMPARE(modDocText::plainTextLayout(Outline()), QString());
}

void tst_modDocText::trailingEmptyLines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("written");
    QTest::newRow("one line end") << QByteArray("a\r\n") << u"a\r\n\r\n"_s;
    QTest::newRow("several") << QByteArray("a\r\n\r\n\r\n") << u"a\r\n\r\n"_s;
    QTest::newRow("inner ones stay") << QByteArray("a\r\n\r\n\r\nb\r\n") << u"a\r\n\r\n\r\nb\r\n\r\n"_s;
    QTest::newRow("leading ones stay") << QByteArray("\r\n\r\na") << u"\r\n\r\na\r\n\r\n"_s;
    QTest::newRow("nothing but line ends") << QByteArray("\r\n\r\n") << u"\r\n"_s;
    QTest::newRow("a blank at the end stays") << QByteArray("a \r\n") << u"a \r\n\r\n"_s;
}

void tst_modDocText::trailingEmptyLines()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, written);
    Document &document = m_fixture->plant({u"Root"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root(), text);
    QCOMPARE(modDocText::plainTextLayout(document.outline()), u"0 Root\r\n"_s + written);
}

void tst_modDocText::formattedAndCompressedTexts()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s}).document;
    const QByteArray rtf = "{\\rtf1\\ansi{\\b Bold} and plain\\par second}";
    rawOutline(document).tree.setStoredText(document.tree.root(), rtf);
    rawOutline(document).tree.setStoredText(document.tree.root()->child(0), NodeTextCompressIfRequired(rtf));
    QCOMPARE(modDocText::plainTextLayout(document.outline()), u"0 Root\r\nBold and plain\r\nsecond\r\n\r\n"
                                                              "0.1 A\r\nBold and plain\r\nsecond\r\n\r\n"_s);
}

void tst_modDocText::everyLineEndsWithCrLf()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s}).document;
    rawOutline(document).tree.setLabel(document.tree.root(), u"two\nlines"_s);
    rawOutline(document).tree.setStoredText(document.tree.root(), "{\\rtf1 one\\line two\\par three\\line}");
    rawOutline(document).tree.setStoredText(document.tree.root()->child(0), "one\ntwo\rthree");
    QCOMPARE(modDocText::plainTextLayout(document.outline()), u"0 two\r\nlines\r\none\r\ntwo\r\nthree\r\n\r\n"
                                                              "0.1 A\r\none\r\ntwo\r\nthree\r\n\r\n"_s);
}

void tst_modDocText::headingsOfADeepOutline()
{
    QStringList lines{u"Root"_s};
    for (int i = 1; i <= 11; ++i)
        lines.append(u" Child %1"_s.arg(i));
    lines.append(u"  Below the last"_s);
    const QString layout = modDocText::plainTextLayout(m_fixture->plant(lines).document.outline());
    QVERIFY(layout.endsWith(u"0.10 Child 10\r\n\r\n0.11 Child 11\r\n\r\n0.11.1 Below the last\r\n\r\n"_s));
}

void tst_modDocText::exportLeavesTheDocumentAsItWas()
{
    FakeDocument &fake = m_fixture->plant({u"Root"_s, u" A *"_s, u" B <"_s});
    modNodes::NodeSelectFull(fake.document, entryLabelled(fake.document.tree, u"B"_s));
    const QStringList before = dumpOutline(fake.document.tree);
    fake.text.type(u"shown"_s);
    fake.document.m_sFile = path(u"a.qly"_s);
    modDocText::DocExport(path(u"b.txt"_s));
    QCOMPARE(dumpOutline(fake.document.tree), before);
    QCOMPARE(fake.text.Text(), u"shown"_s);
    QVERIFY(fake.text.visible && fake.outline.visible);
    QCOMPARE(fake.document.m_sFile, path(u"a.qly"_s));
    QCOMPARE(fake.document.m_iFileFormatVersion, 1);
    QCOMPARE(m_folder->names(), QStringList(u"b.txt"_s));
}

void tst_modDocText::exportedBytes_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("ASCII") << u"Root"_s << QByteArray("0 Root\r\n\r\n");
    QTest::newRow("the code page") << u"caf\u00E9"_s << QByteArray("0 caf\xE9\r\n\r\n");
    QTest::newRow("UTF-8") << u"\u03B1"_s << QByteArray("0 \xCE\xB1\r\n\r\n");
}

void tst_modDocText::exportedBytes()
{
    QFETCH(const QString, label);
    QFETCH(const QByteArray, bytes);
    m_fixture->plant({label});
    modDocText::DocExport(path(u"b.txt"_s));
    QCOMPARE(m_folder->read(u"b.txt"_s), bytes);
    QCOMPARE(m_fixture->errors.count(), 0);
}

void tst_modDocText::exportThatFailsLeavesTheOldFile_data()
{
    QTest::addColumn<bool>("full");
    QTest::newRow("the disk is full") << true;
    QTest::newRow("the file may not be written") << false;
}

void tst_modDocText::exportThatFailsLeavesTheOldFile()
{
    QFETCH(const bool, full);
    m_fixture->plant({u"Root"_s});
    m_folder->write(u"b.txt"_s, "old", full ? 0644 : 0444);
    if (full) {
        const FullDisk disk(3);
        modDocText::DocExport(path(u"b.txt"_s));
    } else {
        modDocText::DocExport(path(u"b.txt"_s));
    }
    QCOMPARE(m_fixture->errors.summary(), QStringList((full ? u"61 "_s : u"70 "_s) + u"modDocText DocExport"_s));
    QCOMPARE(m_folder->read(u"b.txt"_s), QByteArray("old"));
    QCOMPARE(m_folder->names(), QStringList(u"b.txt"_s));
    QVERIFY(m_fixture->fake.statusText().contains(path(u"b.txt"_s)));
}

void tst_modDocText::reading_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("one line") << QByteArray("one") << QByteArray("one\r\n");
    QTest::newRow("one line with its end") << QByteArray("one\r\n") << QByteArray("one\r\n");
    QTest::newRow("line feeds alone") << QByteArray("one\ntwo\n") << QByteArray("one\r\ntwo\r\n");
    QTest::newRow("carriage returns alone") << QByteArray("one\rtwo") << QByteArray("one\r\ntwo\r\n");
    QTest::newRow("mixed ends") << QByteArray("a\r\nb\nc\rd") << QByteArray("a\r\nb\r\nc\r\nd\r\n");
    QTest::newRow("empty lines") << QByteArray("\n\na\n\n") << QByteArray("\r\n\r\na\r\n\r\n");
    QTest::newRow("the code page") << QByteArray("caf\xE9") << QByteArray("caf\xE9\r\n");
    QTest::newRow("UTF-8 that the code page holds too") << QByteArray("caf\xC3\xA9") << QByteArray("caf\xE9\r\n");
    QTest::newRow("UTF-8 beyond the code page") << QByteArray("\xCE\xB1") << QByteArray("\xCE\xB1\r\n");
    QTest::newRow("UTF-8 with its mark") << QByteArray("\xEF\xBB\xBF\xCE\xB1") << QByteArray("\xCE\xB1\r\n");
    QTest::newRow("UTF-16 with its mark") << QByteArray("\xFF\xFE"
                                                        "a\0\n\0b\0",
                                                        8)
                                          << QByteArray("a\r\nb\r\n");
}

void tst_modDocText::reading()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, stored);
    m_folder->write(u"a.txt"_s, bytes);
    QVERIFY(modDoc::DocLoad(path(u"a.txt"_s)));
    const FakeDocument &fake = *m_fixture->active();
    QCOMPARE(dumpOutline(fake.document.tree), QStringList(u"Text <"_s));
    QCOMPARE(fake.document.tree.storedText(fake.document.tree.root()), stored);
    QCOMPARE(fake.text.Text(), AnsiCodec::toText(stored));
    QCOMPARE(fake.document.m_iFileFormatVersion, -1);
    QCOMPARE(m_fixture->errors.count(), 0);
}

void tst_modDocText::aTextThatLooksCompressedIsShownWhole_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("a number and a comma") << QByteArray("12,abc\r\n");
    QTest::newRow("a number, words and a comma") << QByteArray("3 men, a boat\r\n");
    QTest::newRow("a table of numbers") << QByteArray("1,2,3\r\n4,5,6\r\n");
}

void tst_modDocText::aTextThatLooksCompressedIsShownWhole()
{
    QFETCH(const QByteArray, text);
    m_folder->write(u"a.txt"_s, text);
    QVERIFY(modDoc::DocLoad(path(u"a.txt"_s)));
    QCOMPARE(m_fixture->active()->text.Text(), QString::fromLatin1(text));
    QCOMPARE(modDoc::DocSave(path(u"b.txt"_s)), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"b.txt"_s), "0 Text\r\n" + text + "\r\n");
}

void tst_modDocText::importingAnEmptyFile()
{
    m_folder->write(u"a.txt"_s, QByteArray());
    QVERIFY(modDocText::DocImport(path(u"a.txt"_s)));
    const FakeDocument &fake = *m_fixture->active();
    QCOMPARE(dumpOutline(fake.document.tree), QStringList(u"Text <"_s));
    QCOMPARE(fake.document.tree.storedText(fake.document.tree.root()), QByteArray());
    QCOMPARE(m_fixture->errors.count(), 0);
}

void tst_modDocText::theStateAfterAnImport_data()
{
    QTest::addColumn<bool>("automatic");
    QTest::newRow("manual label editing") << false;
    QTest::newRow("automatic label editing") << true;
}

void tst_modDocText::theStateAfterAnImport()
{
    QFETCH(const bool, automatic);
    g_options.AutoLabelEdit = automatic;
    m_folder->write(u"a.txt"_s, "one\ntwo");
    QVERIFY(modDocText::DocImport(path(u"a.txt"_s)));
    const FakeDocument &fake = *m_fixture->active();
    QCOMPARE(fake.outline.labelEdit, automatic ? LabelEditMode::tvwAutomatic : LabelEditMode::tvwManual);
    QCOMPARE(fake.text.Text(), u"one\r\ntwo\r\n"_s);
    QVERIFY(fake.outline.visible);
    QCOMPARE(fake.outline.timesHidden, 1);
    QCOMPARE(fake.window.timesSplitFitted, 1);
    QCOMPARE(m_fixture->fake.pointer.timesHourglass, 1);
    QVERIFY(fake.document.m_sFile.isEmpty());
    QCOMPARE(modNodes::nodCurrent().entry(), fake.document.tree.root());
}

void tst_modDocText::importingAFileThatIsGone()
{
    QVERIFY(!modDocText::DocImport(path(u"gone.txt"_s)));
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"53 modDocText DocImport"_s));
    QVERIFY(m_fixture->fake.windows.open.empty());
}

void tst_modDocText::anExportedFileReopensAsOneEntry()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root(), "Top");
    modDocText::DocExport(path(u"b.txt"_s));
    QVERIFY(modDoc::DocLoad(path(u"b.txt"_s)));
    const FakeDocument &fake = *m_fixture->active();
    QCOMPARE(dumpOutline(fake.document.tree), QStringList(u"Text <"_s));
    QCOMPARE(fake.text.Text(), u"0 Root\r\nTop\r\n\r\n0.1 A\r\n\r\n"_s);
}

void tst_modDocText::anImportedDocumentIsSavedAndLoaded()
{
    const QByteArray text = "One, two}\r\n{\\qlf_nodekey 0.1}\r\n12,3\r\n";
    m_folder->write(u"a.txt"_s, text);
    QVERIFY(modDocText::DocImport(path(u"a.txt"_s)));
    QCOMPARE(modDoc::DocSave(path(u"a.qly"_s)), SaveOutcome::Saved);
    QCOMPARE(checkNativeFile(path(u"a.qly"_s)).fault, QString());
    QVERIFY(modDoc::DocLoad(path(u"a.qly"_s)));
    QCOMPARE(m_fixture->active()->text.Text(), QString::fromLatin1(text));
}

void tst_modDocText::withoutADocumentNothingHappens()
{
    modDocText::DocExport(path(u"b.txt"_s));
    QCOMPARE(m_folder->names(), QStringList());
    QCOMPARE(m_fixture->errors.count(), 0);
}

void tst_modDocText::aLineTooLongForThePaneIsShownInPartAndKeptWhole()
{
    const QByteArray line = QByteArray(2 * limits::longestParagraph, 'x');
    m_folder->write(u"a.txt"_s, line + "\r\n");
    QVERIFY(modDoc::DocLoad((*m_folder)(u"a.txt"_s)));
    FakeDocument &loaded = *m_fixture->active();
    QCOMPARE(loaded.text.Text(), QString::fromLatin1(line.left(limits::longestShownWord)));
    QVERIFY(loaded.text.locked);
    QCOMPARE(loaded.document.notices().size(), size_t(1));
    QCOMPARE(loaded.document.notices()[0].kind, NoticeKind::LongText);
    // A short text may have too much formatting.
    QVERIFY(loaded.document.notices()[0].text.contains(u"too long or too elaborately formatted"_s));
    loaded.text.type(u"typed"_s);
    modNodes::NodeTextPutSelected();
    QVERIFY(loaded.document.tree.storedText(loaded.document.tree.root()) == line + "\r\n");
    // Where a text is short again, the pane is free and the notice gone.
    Entry *other = rawOutline(loaded.document).tree.insert(Relationship::tvwChild, loaded.document.tree.root());
    modNodes::NodeSelectFull(loaded.document, other);
    QVERIFY(!loaded.text.locked);
    QVERIFY(loaded.document.notices().empty());
}

QTEST_MAIN(tst_modDocText)
#include "tst_modDocText.moc"
