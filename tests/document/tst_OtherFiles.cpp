// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modFile.h"
#include "model/StoredText.h"
#include "support/FormatsFixture.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Files that are something other than their names say, or than this program knows: they are shown as far as that goes,
// and no ordinary save turns them into something else.
class tst_OtherFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void whatIsNoOutlineAndNoTextIsShownWithoutItsName_data();
    void whatIsNoOutlineAndNoTextIsShownWithoutItsName();
    void plainTextKeepsItsName_data();
    void plainTextKeepsItsName();

    void anOutlineUnderAnotherNameIsSavedUnderItsOwn_data();
    void anOutlineUnderAnotherNameIsSavedUnderItsOwn();
    void anOutlineOnceSavedAsTextIsText();

    void formattingIsAskedAboutBeforeItGoes_data();
    void formattingIsAskedAboutBeforeItGoes();
    void anOutlineOfOneEntryIsAskedAboutBeforeItBecomesText();

private:
    QString path(const QString &name) const { return (*m_folder)(name); }

    Document &active() const { return m_fixture->active()->document; }

    // A native file's bytes, of that many entries.
    QByteArray outline(int entries) const;

    std::unique_ptr<FormatsFixture> m_fixture;
    std::unique_ptr<TestFolder> m_folder;
};

void tst_OtherFiles::init()
{
    m_fixture = std::make_unique<FormatsFixture>();
    m_folder = std::make_unique<TestFolder>();
}

void tst_OtherFiles::cleanup()
{
    const bool allAsked = m_fixture->fake.dialogs.answers.empty() && m_fixture->fake.dialogs.saveNames.empty();
    m_fixture.reset();
    m_folder.reset();
    QVERIFY(allAsked);
}

QByteArray tst_OtherFiles::outline(int entries) const
{
    QStringList lines = {u"Root <"_s};
    for (int i = 1; i < entries; ++i)
        lines.append(u" Entry"_s);
    const QByteArray bytes = FormatsFixture::savedNative(m_fixture->plant(lines).document);
    m_fixture->closeAll();
    return bytes;
}

void tst_OtherFiles::whatIsNoOutlineAndNoTextIsShownWithoutItsName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("shown");
    const QByteArray rtf = "{\\rtf1\\ansi{\\b Bold} words\\par}";
    QTest::newRow("rich text") << u"letter.rtf"_s << rtf << rtf;
    QTest::newRow("rich text called .txt") << u"letter.txt"_s << rtf << rtf;
    QTest::newRow("a picture") << u"pic.png"_s << QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0", 18) << QByteArray();
    QTest::newRow("a packed document") << u"letter.odt"_s << QByteArray("PK\x03\x04\x14\0\0\x08mimetype", 16)
                                       << QByteArray();
    QTest::newRow("text with a broken character")
        << u"notes.txt"_s << u"\u00FC\u00DF\u00E4\u00F6"_s.toUtf8() + "\xC3(" << QByteArray();
    QTest::newRow("an outline of a later version")
        << u"later.qly"_s << QByteArray("{\\qlf_formatversion 2}\r\n{\\qlf_new x}\r\n") << QByteArray();
    QTest::newRow("one of a later version called .txt")
        << u"later.txt"_s << QByteArray("{\\qlf_formatversion 3}\r\n") << QByteArray();
}

void tst_OtherFiles::whatIsNoOutlineAndNoTextIsShownWithoutItsName()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    QFETCH(const QByteArray, shown);
    m_folder->write(name, content);
    QVERIFY(!modDoc::DocLoad(path(name)));
    const Document &document = active();
    QVERIFY(document.m_sFile.isEmpty());
    QCOMPARE(document.view()->window.caption(), u"Document 1"_s);
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"321 modDoc DocLoad"_s));
    QCOMPARE(m_fixture->fake.statusText(), u"The file %1 could not be read whole"_s.arg(path(name)));
    QVERIFY(document.hasNotice(NoticeKind::NotReadWhole));
    QVERIFY(m_fixture->fake.recentFiles.updates.empty());
    QVERIFY(document.tree.root());
    if (!shown.isEmpty())
        QVERIFY(document.tree.storedText(document.tree.root()).startsWith(shown));
    // Save asks for a name, with or without changes.
    m_fixture->fake.dialogs.saveNames = {std::nullopt};
    QVERIFY(!modFile::FileSave());
    QCOMPARE(m_folder->read(name), content);
    QCOMPARE(m_folder->names(), QStringList(name));
}

void tst_OtherFiles::plainTextKeepsItsName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("text") << u"notes.txt"_s << QByteArray("one\r\ntwo");
    QTest::newRow("a script") << u"run.sh"_s << QByteArray("#!/bin/sh\nexit 0\n");
    QTest::newRow("UTF-8") << u"notes.md"_s << u"# \u00DCber \u03B1\n"_s.toUtf8();
    QTest::newRow("an older character set") << u"notes"_s
                                            << QByteArray("Gr\xFC\xDF"
                                                          "e");
    QTest::newRow("empty") << u"empty.txt"_s << QByteArray("");
}

void tst_OtherFiles::plainTextKeepsItsName()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    m_folder->write(name, content);
    QVERIFY(modDoc::DocLoad(path(name)));
    QCOMPARE(active().m_sFile, path(name));
    QVERIFY(active().notices().empty());
    QVERIFY(modFile::FileSave());
    QVERIFY(m_fixture->fake.dialogs.questions.isEmpty());
}

void tst_OtherFiles::anOutlineUnderAnotherNameIsSavedUnderItsOwn_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("entries");
    QTest::newRow("a backup") << u"notes.bak"_s << 3;
    QTest::newRow("a backup of one entry") << u"notes.bak"_s << 1;
    QTest::newRow("called a text") << u"notes.txt"_s << 2;
    QTest::newRow("without an extension") << u"notes"_s << 2;
}

void tst_OtherFiles::anOutlineUnderAnotherNameIsSavedUnderItsOwn()
{
    QFETCH(const QString, name);
    QFETCH(const int, entries);
    const QByteArray content = outline(entries);
    m_folder->write(name, content);
    QVERIFY(modDoc::DocLoad(path(name)));
    QCOMPARE(active().tree.entryCount(), entries);
    QCOMPARE(active().m_sFile, path(name));
    active().history.touch();
    m_fixture->fake.dialogs.saveNames = {std::nullopt};
    QVERIFY(!modFile::FileSave());
    QVERIFY(active().m_bDataChanged());
    QCOMPARE(m_folder->read(name), content);
    m_fixture->fake.dialogs.saveNames = {path(u"notes.qly"_s)};
    QVERIFY(modFile::FileSave());
    QCOMPARE(m_fixture->fake.dialogs.saveRequests.back().initialName, path(u"notes"_s));
    QCOMPARE(m_folder->read(u"notes.qly"_s), content);
    QCOMPARE(m_folder->read(name), content);
    // From now on it has a name of its own.
    QVERIFY(modFile::FileSave());
    QVERIFY(m_fixture->fake.dialogs.questions.isEmpty());
}

void tst_OtherFiles::anOutlineOnceSavedAsTextIsText()
{
    m_folder->write(u"notes.qly"_s, outline(2));
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    m_fixture->fake.dialogs.saveNames = {path(u"notes.txt"_s)};
    m_fixture->fake.dialogs.answers = {Answer::Yes};
    QVERIFY(modFile::FileSaveAs());
    // The warning of several entries comes each time, and no dialog.
    m_fixture->fake.dialogs.answers = {Answer::Yes};
    QVERIFY(modFile::FileSave());
    QCOMPARE(m_fixture->fake.dialogs.saveRequests.size(), size_t(1));
}

void tst_OtherFiles::formattingIsAskedAboutBeforeItGoes_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("asks");
    const QByteArray head = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 ";
    QTest::newRow("words alone") << head + "one\\par two}" << false;
    QTest::newRow("words in another font")
        << QByteArray(head).replace("Arial", "Courier New") + "one\\par two}" << true;
    QTest::newRow("a bold word") << head + "one {\\b two}}" << true;
    QTest::newRow("a table") << head + "\\trowd\\cellx1000 a\\cell\\row}" << true;
}

void tst_OtherFiles::formattingIsAskedAboutBeforeItGoes()
{
    QFETCH(const QByteArray, text);
    QFETCH(const bool, asks);
    m_folder->write(u"notes.txt"_s, "as it was");
    QVERIFY(modDoc::DocLoad(path(u"notes.txt"_s)));
    rawOutline(active()).textFont.setName(u"Arial"_s);
    rawOutline(active()).textFont.setSize(10 * clsFont::point);
    rawOutline(active()).tree.setStoredText(active().tree.root(), NodeTextCompressIfRequired(text));
    active().history.touch();
    if (asks) {
        m_fixture->fake.dialogs.answers = {Answer::No};
        QVERIFY(!modFile::FileSave());
        QVERIFY(active().m_bDataChanged());
        QCOMPARE(m_folder->names(), QStringList(u"notes.txt"_s));
        QCOMPARE(m_folder->read(u"notes.txt"_s), QByteArray("as it was"));
        m_fixture->fake.dialogs.answers = {Answer::Yes};
    }
    QVERIFY(modFile::FileSave());
    QVERIFY(m_folder->read(u"notes.txt"_s).startsWith("0 Text"));
    QCOMPARE(m_folder->read(u"notes.bak"_s), QByteArray("as it was"));
}

void tst_OtherFiles::anOutlineOfOneEntryIsAskedAboutBeforeItBecomesText()
{
    m_folder->write(u"notes.qly"_s, outline(1));
    QVERIFY(modDoc::DocLoad(path(u"notes.qly"_s)));
    m_fixture->fake.dialogs.answers = {Answer::No};
    m_fixture->fake.dialogs.saveNames = {path(u"notes.txt"_s)};
    QVERIFY(!modFile::FileSaveAs());
    QCOMPARE(active().m_sFile, path(u"notes.qly"_s));
    QCOMPARE(m_folder->names(), QStringList(u"notes.qly"_s));
}

QTEST_MAIN(tst_OtherFiles)
#include "tst_OtherFiles.moc"
