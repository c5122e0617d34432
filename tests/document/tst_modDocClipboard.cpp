// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/TextExchange.h"
#include "document/modFile.h"
#include "document/modNodes.h"
#include "support/FormatsFixture.h"
#include "support/RawOutline.h"
#include "util/AnsiCodec.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_modDocClipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void exportPutsTheLayoutOnTheClipboard();
    void exportReplacesWhatWasThere();
    void importMakesOneEntry_data();
    void importMakesOneEntry();
    void importByTheMenuOpensAWindow();
    void exportAndImport();
    void withoutADocumentNothingHappens();

private:
    std::unique_ptr<FormatsFixture> m_fixture;
};

void tst_modDocClipboard::init()
{
    m_fixture = std::make_unique<FormatsFixture>();
}

void tst_modDocClipboard::cleanup()
{
    QVERIFY(!bBusy);
    QVERIFY(!m_fixture->fake.pointer.hourglass);
    QCOMPARE(m_fixture->errors.summary(), QStringList());
    m_fixture.reset();
}

void tst_modDocClipboard::exportPutsTheLayoutOnTheClipboard()
{
    Document &document = m_fixture->plant({u"Notes"_s, u" \u03B1 First"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root(), "Top\r\n\r\n");
    modDocClipboard::DocExport();
    QCOMPARE(m_fixture->fake.clipboard.held, u"0 Notes\r\nTop\r\n\r\n0.1 \u03B1 First\r\n\r\n"_s);
}

void tst_modDocClipboard::exportReplacesWhatWasThere()
{
    m_fixture->fake.clipboard.held = u"before"_s;
    m_fixture->plant({u"Notes"_s});
    modDocClipboard::DocExport();
    QCOMPARE(m_fixture->fake.clipboard.held, u"0 Notes\r\n\r\n"_s);
}

void tst_modDocClipboard::importMakesOneEntry_data()
{
    QTest::addColumn<QString>("clipboard");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("two lines") << u"one\ntwo"_s << QByteArray("one\r\ntwo\r\n");
    QTest::newRow("nothing") << QString() << QByteArray();
    QTest::newRow("Greek") << u"\u03B1"_s << QByteArray("\xCE\xB1\r\n");
    QTest::newRow("accents") << u"caf\u00E9"_s << QByteArray("caf\xE9\r\n");
    QTest::newRow("what looks compressed") << u"12,abc"_s << QByteArray("12,abc\r\n");
}

void tst_modDocClipboard::importMakesOneEntry()
{
    QFETCH(const QString, clipboard);
    QFETCH(const QByteArray, text);
    m_fixture->fake.clipboard.held = clipboard;
    QVERIFY(modDocClipboard::DocImport());
    const FakeDocument &fake = *m_fixture->active();
    QCOMPARE(dumpOutline(fake.document.tree), QStringList(u"Text <"_s));
    QCOMPARE(fake.text.Text(), AnsiCodec::toText(text));
    QVERIFY(fake.outline.visible);
    QCOMPARE(fake.window.timesSplitFitted, 1);
}

void tst_modDocClipboard::importByTheMenuOpensAWindow()
{
    g_options.AutoLabelEdit = true;
    m_fixture->fake.clipboard.held = u"one"_s;
    modFile::FileImportClipboard();
    const FakeDocument &fake = *m_fixture->active();
    QCOMPARE(fake.window.text, u"Document 1"_s);
    QCOMPARE(dumpOutline(fake.document.tree), QStringList(u"Text <"_s));
    QCOMPARE(fake.outline.labelEdit, LabelEditMode::tvwAutomatic);
    QVERIFY(fake.document.m_bDataChanged());
}

void tst_modDocClipboard::exportAndImport()
{
    m_fixture->plant({u"Root"_s, u" A"_s});
    modFile::FileExportClipboard();
    modFile::FileImportClipboard();
    QCOMPARE(m_fixture->active()->text.Text(), u"0 Root\r\n\r\n0.1 A\r\n\r\n"_s);
}

void tst_modDocClipboard::withoutADocumentNothingHappens()
{
    m_fixture->fake.clipboard.held = u"before"_s;
    modDocClipboard::DocExport();
    QCOMPARE(m_fixture->fake.clipboard.held, u"before"_s);
    QVERIFY(m_fixture->fake.windows.open.empty());
}

QTEST_MAIN(tst_modDocClipboard)
#include "tst_modDocClipboard.moc"
