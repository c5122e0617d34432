// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/TextCheck.h"
#include "document/modNodes.h"
#include "formats/modDocV1.h"
#include "model/StoredText.h"
#include "rtf/Rtf.h"
#include "support/FormatsFixture.h"
#include "support/NativeChecker.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_modDocV1 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aWholeFileByteForByte();
    void oneRecord();
    void anEmptyOutlineWritesNothing();
    void aSubtreeAlone();
    void theSelectionIsWrittenAsItsKey();
    void visibleFlags();
    void aRootWith12Children();
    void anEmptyText();
    void theLastTextEndsThreeBytesBeforeTheEnd();
    void labelsOfEveryKind_data();
    void labelsOfEveryKind();
    void labelsThatTheirRecordCannotCarry_data();
    void labelsThatTheirRecordCannotCarry();
    void anExactLabelThatIsNotItsLabelsIsDamage_data();
    void anExactLabelThatIsNotItsLabelsIsDamage();
    void textsOfAnyBytes_data();
    void textsOfAnyBytes();
    void aTextWithARecordsOpenerIsStoredSoThatItDoesNotShow_data();
    void aTextWithARecordsOpenerIsStoredSoThatItDoesNotShow();
    void noiseWithARecordsOpenerComesBack();
    void aTextThatReadsAsCompressedIsNotLaidBare();
    void textsOfNoiseAndOpenersComeBack();

    void savedLoadedAndSavedAgain_data();
    void savedLoadedAndSavedAgain();
    void randomDocumentsSavedLoadedAndSavedAgain();
    void changingOneEntryLeavesAllOthersAsStored();
    void aSaveThatFailedForLackOfMemoryLeavesTheNewTextToTheNextOne();
    void aFullOutlineComesBack();
    void aChainOf2000LevelsComesBack();

    void theFormatFollowsVersionAndExtension_data();
    void theFormatFollowsVersionAndExtension();
    void afterLoadingTheTextPaneHasTheOutlinesFont();
    void aDamagedTextIsLockedToldOfAndKept();
    void damagedTextsAreFoundBehindTheOpening();
    void whatIsToldOfDamagedTextsGoesWithTheirEntries();
    void aDismissedNoticeOfDamagedTextsStaysAway();
    void soundTextsOfEveryKindAreNotToldOf();
    void aMissingSelectedKeySelectsTheRoot();
    void unknownRecordsAreWrittenBackWhereTheyStood();
    void unknownRecordsGoWhereTheirEntryGoes();
    void ofHeaderRecordsOfOneNameTheFirstStaysTheFirst();
    void aHeaderRecordEndsWhereTheNextOneOpens();
    void anUnknownRecordEndsWhereTheNextOneOpens();
    void whatIsUnderstoodAllTheSameIsARemark_data();
    void whatIsUnderstoodAllTheSameIsARemark();
    void aLabelThatWasWrittenWithABraceOnlyIsCutAndTold();
    void failedLoads_data();
    void failedLoads();
    void oneEntryTooMany();

private:
    // Loads bytes as a native file and returns the active document.
    FakeDocument &load(const QByteArray &bytes, const QString &name = u"a.qly"_s)
    {
        m_folder->write(name, bytes);
        m_loaded = modDoc::DocLoad((*m_folder)(name));
        return *m_fixture->active();
    }

    std::unique_ptr<FormatsFixture> m_fixture;
    std::unique_ptr<TestFolder> m_folder;
    bool m_loaded = false;
};

namespace
{

const QByteArray header = "{\\qlf_formatversion 1}\r\n"
                          "{\\qlf_selecteditemkey KEY0}\r\n"
                          "{\\qlf_outlinefontname MS Sans Serif}\r\n"
                          "{\\qlf_outlinefontsize 8.25}\r\n"
                          "{\\qlf_outlinefontbold False}\r\n"
                          "{\\qlf_outlinefontitalic False}\r\n"
                          "{\\qlf_outlinefontstrikethrough False}\r\n"
                          "{\\qlf_outlinefontunderline False}\r\n"
                          "{\\qlf_textfontname Arial}\r\n"
                          "{\\qlf_textfontsize 10}\r\n"
                          "{\\qlf_textfontbold False}\r\n"
                          "{\\qlf_textfontitalic False}\r\n"
                          "{\\qlf_textfontstrikethrough False}\r\n"
                          "{\\qlf_textfontunderline False}\r\n";

QByteArray entry(const QByteArray &path, const QByteArray &label, const QByteArray &text = "{\\rtf1 x}",
                 const QByteArray &tagged = "False", const QByteArray &visible = "True")
{
    return "{\\qlf_nodekey " + path + "}\r\n{\\qlf_nodelabel " + label + "}\r\n{\\qlf_nodetagged " + tagged +
           "}\r\n{\\qlf_nodevisible " + visible + "}\r\n{\\qlf_nodetext " + text + "}\r\n";
}

} // namespace

void tst_modDocV1::init()
{
    m_fixture = std::make_unique<FormatsFixture>();
    m_folder = std::make_unique<TestFolder>();
}

void tst_modDocV1::cleanup()
{
    QVERIFY(!bBusy);
    for (const auto &open : m_fixture->fake.windows.open)
        QCOMPARE(open->document.tree.brokenInvariant(), QString());
    m_fixture.reset();
    m_folder.reset();
}

void tst_modDocV1::aWholeFileByteForByte()
{
    Document &document = m_fixture->plant({u"Notes +"_s, u" First *<"_s, u" Second"_s}).document;
    rawOutline(document).textFont.setUnderline(true);
    rawOutline(document).textFont.setItalic(true);
    rawOutline(document).tree.setStoredText(document.tree.root(), "{\\rtf1 notes}");
    rawOutline(document).tree.setStoredText(document.tree.root()->child(1), "{\\rtf1 two\r\nlines}");
    QByteArray expected = header + entry("0", "Notes", "{\\rtf1 notes}") + entry("0.1", "First", "", "True") +
                          entry("0.2", "Second", "{\\rtf1 two\r\nlines}");
    expected.replace("KEY0}", "KEY0.1}");
    expected.replace("textfontunderline False", "textfontunderline True");
    expected.replace("textfontitalic False", "textfontitalic True");
    const QByteArray saved = FormatsFixture::savedNative(document);
    QCOMPARE(saved, expected);
    QCOMPARE(checkNative(saved).fault, QString());
}

void tst_modDocV1::oneRecord()
{
    MemorySink sink;
    modDocV1::DocSaveNodeTag(sink, "nodelabel", "two words");
    modDocV1::DocSaveNodeTag(sink, "nodetext", "");
    QCOMPARE(sink.bytes, QByteArray("{\\qlf_nodelabel two words}\r\n{\\qlf_nodetext }\r\n"));
}

void tst_modDocV1::anEmptyOutlineWritesNothing()
{
    QCOMPARE(FormatsFixture::savedNative(m_fixture->plant({}).document), QByteArray());
}

void tst_modDocV1::aSubtreeAlone()
{
    const Document &document =
        m_fixture->plant({u"Root +"_s, u" A +"_s, u"  A1"_s, u"   A11"_s, u"  A2"_s, u" B"_s}).document;
    MemorySink sink;
    modDocV1::DocSaveNodeAll(document.outline(), entryLabelled(document.tree, u"A"_s), "0.1", sink);
    QCOMPARE(sink.bytes, entry("0.1", "A", "") + entry("0.1.1", "A1", "") +
                             entry("0.1.1.1", "A11", "", "False", "False") + entry("0.1.2", "A2", ""));
    MemorySink deeper;
    modDocV1::DocSaveNodeAll(document.outline(), entryLabelled(document.tree, u"A11"_s), "0.1.1.1", deeper);
    QCOMPARE(deeper.bytes, entry("0.1.1.1", "A11", "", "False", "False"));
}

void tst_modDocV1::theSelectionIsWrittenAsItsKey()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s, u" B"_s, u"  B1"_s}).document;
    QCOMPARE(checkNative(FormatsFixture::savedNative(document)).header.value("selecteditemkey"), QByteArray("KEY0"));
    rawOutline(document).tree.select(entryLabelled(document.tree, u"B1"_s));
    QCOMPARE(checkNative(FormatsFixture::savedNative(document)).header.value("selecteditemkey"),
             QByteArray("KEY0.2.1"));
    rawOutline(document).tree.remove(entryLabelled(document.tree, u"A"_s));
    QCOMPARE(checkNative(FormatsFixture::savedNative(document)).header.value("selecteditemkey"),
             QByteArray("KEY0.1.1"));
}

void tst_modDocV1::visibleFlags()
{
    const Document &document =
        m_fixture->plant({u"Root +"_s, u" A"_s, u"  A1 +"_s, u"   A11"_s, u" B +"_s, u"  B1 +"_s, u"   B11"_s, u" C"_s})
            .document;
    const NativeFile file = checkNative(FormatsFixture::savedNative(document));
    QCOMPARE(file.fault, QString());
    QList<QByteArray> visible;
    for (const NativeEntry &each : file.entries) {
        if (each.visible)
            visible.append(each.label);
    }
    QCOMPARE(visible, QList<QByteArray>({"Root", "A", "B", "B1", "B11", "C"}));
}

void tst_modDocV1::aRootWith12Children()
{
    QStringList lines{u"Root +"_s};
    for (int i = 1; i <= 12; ++i)
        lines.append(u" Child %1"_s.arg(i));
    const QByteArray saved = FormatsFixture::savedNative(m_fixture->plant(lines).document);
    const NativeFile file = checkNative(saved);
    QCOMPARE(file.fault, QString());
    QCOMPARE(file.paths(), QList<QByteArray>({"0", "0.1", "0.2", "0.3", "0.4", "0.5", "0.6", "0.7", "0.8", "0.9",
                                              "0.10", "0.11", "0.12"}));
    const Document &loaded = load(saved).document;
    QCOMPARE(loaded.tree.root()->child(11)->label(), u"Child 12"_s);
    QCOMPARE(loaded.tree.key(loaded.tree.root()->child(11)), u"KEY0.12"_s);
    // Without its elder, the twelfth has no place.
    QByteArray without = saved;
    without.replace("nodekey 0.11}", "nodekey 0.1.1}");
    load(without);
    QVERIFY(!m_loaded);
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"35601 modDoc DocLoad"_s));
}

void tst_modDocV1::anEmptyText()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root()->child(0), "{\\rtf1 x}");
    const QByteArray saved = FormatsFixture::savedNative(document);
    QVERIFY(saved.contains("{\\qlf_nodetext }\r\n{\\qlf_nodekey 0.1}\r\n"));
    const Document &loaded = load(saved).document;
    QCOMPARE(loaded.tree.storedText(loaded.tree.root()), QByteArray());
    QCOMPARE(loaded.tree.storedText(loaded.tree.root()->child(0)), QByteArray("{\\rtf1 x}"));
}

void tst_modDocV1::theLastTextEndsThreeBytesBeforeTheEnd()
{
    const QByteArray bytes = header + entry("0", "Root", "{\\rtf1 a}}\r\n{b}");
    const Document &loaded = load(bytes).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.tree.storedText(loaded.tree.root()), QByteArray("{\\rtf1 a}}\r\n{b}"));
    QCOMPARE(m_fixture->errors.count(), 0);
}

void tst_modDocV1::labelsOfEveryKind_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("plain") << u"Notes"_s << QByteArray("Notes");
    QTest::newRow("empty") << QString() << QByteArray();
    QTest::newRow("blanks around it") << u"  two  words "_s << QByteArray("  two  words ");
    QTest::newRow("accents") << u"\u00C9t\u00E9 \u20AC"_s << QByteArray("\xC9t\xE9 \x80");
    QTest::newRow("Greek") << u"\u03B1\u03B2"_s << QByteArray("\xCE\xB1\xCE\xB2");
    QTest::newRow("beyond the first plane") << u"\U0001F600"_s << QByteArray("\xF0\x9F\x98\x80");
    QTest::newRow("what would read as UTF-8") << u"\u00C3\u00A9"_s << QByteArray("\xC3\x83\xC2\xA9");
    QTest::newRow("an opening brace and a backslash") << u"{\\x"_s << QByteArray("{\\x");
}

void tst_modDocV1::labelsOfEveryKind()
{
    QFETCH(const QString, label);
    QFETCH(const QByteArray, bytes);
    Document &document = m_fixture->plant({u"Root"_s}).document;
    rawOutline(document).tree.setLabel(document.tree.root(), label);
    const QByteArray saved = FormatsFixture::savedNative(document);
    QCOMPARE(checkNative(saved).entry("0").label, bytes);
    QVERIFY(!saved.contains("nodelabelexact"));
    const Document &loaded = load(saved).document;
    QCOMPARE(loaded.tree.root()->label(), label);
    QCOMPARE(m_fixture->errors.count(), 0);
}

void tst_modDocV1::labelsThatTheirRecordCannotCarry_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QString>("skipping");
    QTest::newRow("a closing brace") << u"call f{x} and keep these words"_s
                                     << QByteArray("{\\qlf_nodelabel call f{x} and keep these words}\r\n"
                                                   "{\\qlf_nodelabelexact call f%7Bx%7D and keep these words}\r\n")
                                     << u"call f{x"_s;
    QTest::newRow("a closing brace first")
        << u"}x"_s << QByteArray("{\\qlf_nodelabel }x}\r\n{\\qlf_nodelabelexact %7Dx}\r\n") << QString();
    QTest::newRow("records of the format")
        << u"about {\\qlf_nodetext } and {\\qlf_nodekey 0.9} records"_s
        << QByteArray("{\\qlf_nodelabel about {\\qlf_nodetext }\r\n{\\qlf_nodelabelexact about "
                      "%7B%5Cqlf_nodetext %7D and %7B%5Cqlf_nodekey 0.9%7D records}\r\n")
        << u"about {\\qlf_nodetext "_s;
    QTest::newRow("a line end") << u"a\r\nb"_s
                                << QByteArray("{\\qlf_nodelabel a\r\nb}\r\n{\\qlf_nodelabelexact a%0D%0Ab}\r\n")
                                << u"a\r\nb"_s;
    QTest::newRow("other scripts") << u"\u00C9}\u03B1%"_s
                                   << QByteArray("{\\qlf_nodelabel \xC3\x89}\xCE\xB1%}\r\n"
                                                 "{\\qlf_nodelabelexact %C3%89%7D%CE%B1%25}\r\n")
                                   << u"\u00C9"_s;
    QTest::newRow("a byte order mark first") << u"\uFEFFa}b"_s
                                             << QByteArray("{\\qlf_nodelabel \xEF\xBB\xBF"
                                                           "a}b}\r\n{\\qlf_nodelabelexact %EF%BB%BFa%7Db}\r\n")
                                             << u"\uFEFFa"_s;
}

void tst_modDocV1::labelsThatTheirRecordCannotCarry()
{
    QFETCH(const QString, label);
    QFETCH(const QByteArray, records);
    QFETCH(const QString, skipping);
    Document &document = m_fixture->plant({u"Root +"_s, u" A"_s, u" next"_s}).document;
    rawOutline(document).tree.setLabel(document.tree.root()->child(0), label);
    const QByteArray saved = FormatsFixture::savedNative(document);
    QVERIFY2(saved.contains(records), saved.constData());
    // The checker takes every opener for that of a record, also one before the brace that ends a label.
    if (!label.contains(u"{\\qlf_"_s)) {
        QCOMPARE(checkNative(saved).fault, QString());
        QCOMPARE(checkNative(saved).entry("0.1").exactLabel, label.toUtf8());
    }
    const Document &loaded = load(saved).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.tree.root()->child(0)->label(), label);
    QCOMPARE(loaded.tree.root()->child(1)->label(), u"next"_s);
    QCOMPARE(m_fixture->errors.remarks(), QStringList());
    QVERIFY(loaded.notices().empty());
    QCOMPARE(FormatsFixture::savedNative(loaded), saved);
    // To a reader that skips what it does not know, the label ends where it always did, and no entry more is there.
    QByteArray old = saved;
    const Document &known = load(old.replace("{\\qlf_nodelabelexact ", "{\\qlf_other ")).document;
    QVERIFY(m_loaded);
    QCOMPARE(known.tree.root()->child(0)->label(), skipping);
    QCOMPARE(known.tree.entryCount(), 3);
}

void tst_modDocV1::anExactLabelThatIsNotItsLabelsIsDamage_data()
{
    QTest::addColumn<QByteArray>("label");
    QTest::addColumn<QByteArray>("exact");
    QTest::newRow("another label") << QByteArray("a}b") << QByteArray("x%7Db");
    QTest::newRow("no label that needs one") << QByteArray("a") << QByteArray("a");
    QTest::newRow("not encoded") << QByteArray("a") << QByteArray("a\r\nb");
    QTest::newRow("broken encoding") << QByteArray("a}b") << QByteArray("a%7db");
}

void tst_modDocV1::anExactLabelThatIsNotItsLabelsIsDamage()
{
    QFETCH(const QByteArray, label);
    QFETCH(const QByteArray, exact);
    QByteArray bytes = header + entry("0", label);
    bytes.insert(bytes.indexOf("{\\qlf_nodetagged"), "{\\qlf_nodelabelexact " + exact + "}\r\n");
    const Document &loaded = load(bytes).document;
    QVERIFY(!m_loaded);
    QVERIFY(loaded.m_sFile.isEmpty());
}

void tst_modDocV1::textsOfAnyBytes_data()
{
    QTest::addColumn<QByteArray>("text");
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    QTest::newRow("every byte") << all;
    QTest::newRow("braces and line ends") << QByteArray("}\r\n}\r\n{\\qlf");
    QTest::newRow("ends like a record") << QByteArray("{\\rtf1 a}}\r\n");
    QTest::newRow("an opener cut off at its end") << QByteArray("{\\rtf1 a}{\\qlf");
    QTest::newRow("plain text of an import") << QByteArray("Line one\r\nLine two\r\n");
    QTest::newRow("compressed") << NodeTextCompressIfRequired("{\\rtf1 a text that is stored compressed}");
}

void tst_modDocV1::textsOfAnyBytes()
{
    QFETCH(const QByteArray, text);
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root(), text);
    const QByteArray saved = FormatsFixture::savedNative(document);
    QCOMPARE(checkNative(saved).fault, QString());
    const Document &loaded = load(saved).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.tree.storedText(loaded.tree.root()), text);
    QCOMPARE(loaded.tree.entryCount(), 2);
    QCOMPARE(m_fixture->errors.count(), 0);
}

void tst_modDocV1::aTextWithARecordsOpenerIsStoredSoThatItDoesNotShow_data()
{
    QTest::addColumn<QByteArray>("stored");
    const QByteArray text = "An opener: {\\qlf_nodekey 0.1} and more";
    QTest::newRow("plain text") << text;
    // Compressed bytes that hold it by chance: a stream of stored blocks shows its text.
    QByteArray stream = QByteArray::fromHex("7801");
    stream += QByteArray::fromHex("01") + char(text.size()) + '\0' + char(~text.size()) + '\xFF' + text;
    quint32 a = 1;
    quint32 b = 0;
    for (const char byte : text) {
        a = (a + static_cast<uchar>(byte)) % 65521;
        b = (b + a) % 65521;
    }
    for (const quint32 part : {b >> 8, b & 0xFF, a >> 8, a & 0xFF})
        stream += static_cast<char>(part);
    QTest::newRow("compressed bytes") << QByteArray::number(text.size()) + ',' + stream;
}

void tst_modDocV1::aTextWithARecordsOpenerIsStoredSoThatItDoesNotShow()
{
    QFETCH(const QByteArray, stored);
    const QByteArray text = NodeTextDecompressIfRequired(stored);
    QVERIFY(text.startsWith("An opener: {\\qlf_nodekey 0.1}"));
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root(), stored);
    const QByteArray saved = FormatsFixture::savedNative(document);
    const NativeFile file = checkNative(saved);
    QCOMPARE(file.fault, QString());
    QCOMPARE(file.entries.size(), 2);
    QCOMPARE(file.entry("0").text, text);
    const Document &loaded = load(saved).document;
    QCOMPARE(NodeTextDecompressIfRequired(loaded.tree.storedText(loaded.tree.root())), text);
}

// So many random bytes that zlib keeps stretches of them as they are.
static QByteArray noise(QRandomGenerator &random, int size)
{
    QByteArray bytes(static_cast<qsizetype>(size), '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

void tst_modDocV1::noiseWithARecordsOpenerComesBack()
{
    QRandomGenerator random(7);
    const QByteArray text =
        "x" + noise(random, 40000) + "{\\qlf_nodekey 0.1}\r\n{\\qlf_nodelabel injected}\r\n" + noise(random, 40000);
    QVERIFY2(NodeTextCompressIfRequired(text).contains("{\\qlf_"), "compressing alone would have done");
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root(), text);
    const QByteArray saved = FormatsFixture::savedNative(document);
    QCOMPARE(checkNative(saved).fault, QString());
    const Document &loaded = load(saved).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.tree.entryCount(), 2);
    QVERIFY(NodeTextDecompressIfRequired(loaded.tree.storedText(loaded.tree.root())) == text);
    QVERIFY(FormatsFixture::savedNative(loaded) == saved);
}

void tst_modDocV1::aTextThatReadsAsCompressedIsNotLaidBare()
{
    // Its compressed form shows an opener, but laid bare it would be taken for another compressed text.
    const QByteArray text = "12, which reads like the length of something";
    const QByteArray unread = NodeTextCompressIfRequired(text) + "{\\qlf_";
    QCOMPARE(NodeTextDecompressIfRequired(unread), text);
    Document &document = m_fixture->plant({u"Root"_s}).document;
    rawOutline(document).tree.setStoredText(document.tree.root(), unread);
    const Document &loaded = load(FormatsFixture::savedNative(document)).document;
    QVERIFY(m_loaded);
    QCOMPARE(NodeTextDecompressIfRequired(loaded.tree.storedText(loaded.tree.root())), text);
}

void tst_modDocV1::textsOfNoiseAndOpenersComeBack()
{
    QRandomGenerator random(20260314);
    for (int i = 0; i < 60; ++i) {
        Document &document = m_fixture->plant({u"Root"_s}).document;
        Entry *root = document.tree.root();
        std::vector<QByteArray> texts;
        for (int number = 0; number < 4; ++number) {
            QByteArray text = number % 2 == 0 ? QByteArray() : QByteArray("77,");
            for (int parts = 1 + random.bounded(6); parts > 0; --parts) {
                text += noise(random, random.bounded(i % 10 == 0 ? 90000 : 200));
                text += QByteArrayView("{\\qlf_nodetext }\r\n{\\qlf_").first(random.bounded(25)).toByteArray();
            }
            Entry *entry = rawOutline(document).tree.insert(Relationship::tvwChild, root);
            rawOutline(document).tree.setStoredText(entry,
                                                    readsAsCompressed(text) ? NodeTextCompressIfRequired(text) : text);
            texts.push_back(NodeTextDecompressIfRequired(document.tree.storedText(entry)));
        }
        const QByteArray saved = FormatsFixture::savedNative(document);
        QCOMPARE(checkNative(saved).fault, QString());
        const Document &loaded = load(saved).document;
        QVERIFY2(m_loaded, qPrintable(u"document %1"_s.arg(i)));
        QCOMPARE(loaded.tree.entryCount(), 5);
        for (int number = 0; number < 4; ++number) {
            const Entry *entry = loaded.tree.root()->child(number);
            QVERIFY(NodeTextDecompressIfRequired(loaded.tree.storedText(entry)) == texts[static_cast<size_t>(number)]);
        }
        QVERIFY(FormatsFixture::savedNative(loaded) == saved);
        m_fixture->closeAll();
    }
}

void tst_modDocV1::savedLoadedAndSavedAgain_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("one entry") << QStringList{u"Root <"_s};
    QTest::newRow("tags, a selection and levels")
        << QStringList{u"Root +"_s, u" A +*"_s, u"  A1 *<"_s, u"  A2"_s, u" B"_s, u"  B1 *"_s, u" C"_s};
    QTest::newRow("all collapsed") << QStringList{u"Root <"_s, u" A"_s, u"  A1"_s, u" B *"_s};
    QTest::newRow("labels in several scripts")
        << QStringList{u"\u00C9t\u00E9 +<"_s, u" \u03B1 \u20AC"_s, u" \u65E5\u672C"_s, u" \u00C3\u00A9"_s};
    QTest::newRow("open below closed") << QStringList{u"Root +<"_s, u" A"_s, u"  A1 +"_s, u"   A11"_s};
}

void tst_modDocV1::savedLoadedAndSavedAgain()
{
    QFETCH(const QStringList, lines);
    Document &document = m_fixture->plant(lines).document;
    int number = 0;
    for (const Entry *each = document.tree.root(); each; each = nextInOutline(each, document.tree.root()))
        rawOutline(document).tree.setStoredText(
            const_cast<Entry *>(each),
            NodeTextCompressIfRequired("{\\rtf1 text " + QByteArray::number(++number) + '}'));
    const QByteArray first = FormatsFixture::savedNative(document);
    QCOMPARE(checkNative(first).fault, QString());
    FakeDocument &loaded = load(first);
    QVERIFY(m_loaded);
    QCOMPARE(m_fixture->errors.summary(), QStringList());
    QCOMPARE(modDoc::DocSave((*m_folder)(u"b.qly"_s)), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"b.qly"_s), first);
    QCOMPARE(loaded.document.tree.taggedCount(), document.tree.taggedCount());
}

// A random outline: any shape, labels of any script, texts plain, compressed, empty or noise.
static void growRandomly(EntryTree &tree, QRandomGenerator &random)
{
    std::vector<Entry *> entries = {tree.insert(Relationship::tvwFirst, nullptr)};
    const int count = 1 + random.bounded(30);
    while (static_cast<int>(entries.size()) < count) {
        Entry *relative = entries[random.bounded(static_cast<quint32>(entries.size()))];
        const auto relationship = relative->isRoot() ? Relationship::tvwChild : Relationship(random.bounded(5));
        entries.push_back(tree.insert(relationship, relative));
    }
    for (Entry *each : entries) {
        QString label;
        for (int length = random.bounded(12); length > 0; --length) {
            const char16_t ranges[] = {u' ', u'A', u'\u00C0', u'\u0391', u'\u4E00'};
            label += QChar(static_cast<char16_t>(ranges[random.bounded(5)] + random.bounded(25)));
        }
        tree.setLabel(each, label);
        tree.setTagged(each, random.bounded(3) == 0);
        tree.setExpanded(each, each->childCount() > 0 && random.bounded(2) == 0);
        QByteArray text(static_cast<qsizetype>(random.bounded(200)), '\0');
        for (char &byte : text)
            byte = static_cast<char>(random.bounded(256));
        const QByteArray kinds[] = {QByteArray(), "{\\rtf1 " + text + '}', NodeTextCompressIfRequired(text), text};
        tree.setStoredText(each, kinds[random.bounded(4)]);
    }
    tree.select(entries[random.bounded(static_cast<quint32>(entries.size()))]);
    tree.expandAncestors(tree.selected());
}

void tst_modDocV1::randomDocumentsSavedLoadedAndSavedAgain()
{
    QRandomGenerator random(20260202);
    for (int i = 0; i < 300; ++i) {
        Document &document = m_fixture->plant({}).document;
        growRandomly(rawOutline(document).tree, random);
        const QByteArray first = FormatsFixture::savedNative(document);
        const Document &loaded = load(first).document;
        QVERIFY2(m_loaded, qPrintable(u"document %1"_s.arg(i)));
        QCOMPARE(m_fixture->errors.summary(), QStringList());
        const QByteArray second = FormatsFixture::savedNative(loaded);
        if (second != first)
            QCOMPARE(second.toPercentEncoding(" {}\\"), first.toPercentEncoding(" {}\\"));
        m_fixture->closeAll();
    }
}

void tst_modDocV1::changingOneEntryLeavesAllOthersAsStored()
{
    QStringList lines{u"Root +"_s};
    for (int i = 1; i <= 40; ++i)
        lines.append(u" Child %1"_s.arg(i));
    QByteArray before;
    {
        Document &document = m_fixture->plant(lines).document;
        for (int row = 0; row < 40; ++row) {
            // Compressed elsewhere at another level, so that compressing it again would show.
            QByteArray text = "{\\rtf1 text " + QByteArray::number(row) + '}';
            const QByteArray stream = qCompress(text, 1).mid(4);
            rawOutline(document).tree.setStoredText(document.tree.root()->child(row),
                                                    QByteArray::number(text.size()) + ',' + stream);
        }
        before = FormatsFixture::savedNative(document);
    }
    FakeDocument &loaded = load(before);
    Entry *changed = loaded.document.tree.root()->child(20);
    // As the window does it: select, show, type, store.
    modNodes::NodeSelectFull(loaded.document, changed);
    loaded.text.type(u"another text"_s);
    modNodes::NodeTextPut(loaded.document, changed);
    modNodes::NodeSelectFull(loaded.document, loaded.document.tree.root()->child(3));
    const NativeFile old = checkNative(before);
    const NativeFile now = checkNative(FormatsFixture::savedNative(loaded.document));
    QCOMPARE(now.fault, QString());
    QCOMPARE(rtf::toPlainText(now.entry("0.21").text), u"another text"_s);
    for (const NativeEntry &each : old.entries) {
        if (each.path != "0.21")
            QCOMPARE(now.entry(each.path).storedText, each.storedText);
    }
}

void tst_modDocV1::aSaveThatFailedForLackOfMemoryLeavesTheNewTextToTheNextOne()
{
    FakeDocument &loaded = load(header + entry("0", "Root", "{\\rtf1 old}"));
    loaded.document.history.touch();
    bool isMemoryLeft = false;
    rawOutline(loaded.document).tree.setPendingText(loaded.document.tree.root(), [&isMemoryLeft]() -> QByteArray {
        if (!isMemoryLeft)
            throw std::bad_alloc();
        return "{\\rtf1 new}";
    });
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.qly"_s)), SaveOutcome::Failed);
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"7 modDoc DocSave"_s));
    QCOMPARE(checkNative(m_folder->read(u"a.qly"_s)).entry("0").text, QByteArray("{\\rtf1 old}"));
    isMemoryLeft = true;
    QCOMPARE(modDoc::DocSave((*m_folder)(u"a.qly"_s)), SaveOutcome::Saved);
    QCOMPARE(checkNative(m_folder->read(u"a.qly"_s)).entry("0").text, QByteArray("{\\rtf1 new}"));
}

void tst_modDocV1::aFullOutlineComesBack()
{
    Document &document = m_fixture->plant({u"Root +"_s}).document;
    while (document.tree.entryCount() < EntryTree::maximumCount) {
        Entry *parent = document.tree.root();
        if (const int count = document.tree.entryCount(); count % 3 != 0)
            parent = document.tree.collection().at(count);
        rawOutline(document).tree.insert(Relationship::tvwChild, parent);
    }
    const QByteArray first = FormatsFixture::savedNative(document);
    QCOMPARE(checkNative(first).fault, QString());
    const Document &loaded = load(first).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.tree.entryCount(), 32767);
    QVERIFY(FormatsFixture::savedNative(loaded) == first);
}

void tst_modDocV1::aChainOf2000LevelsComesBack()
{
    Document &document = m_fixture->plant({}).document;
    Entry *deepest = nullptr;
    for (int level = 0; level < 2000; ++level)
        deepest = rawOutline(document).tree.insert(Relationship::tvwChild, deepest);
    rawOutline(document).tree.setExpandedAll(document.tree.root(), true);
    rawOutline(document).tree.setExpanded(deepest, false);
    rawOutline(document).tree.select(deepest);
    const QByteArray first = FormatsFixture::savedNative(document);
    const Document &loaded = load(first).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.tree.selected()->level(), 2000);
    QVERIFY(FormatsFixture::savedNative(loaded) == first);
    QCOMPARE(m_fixture->errors.count(), 0);
}

void tst_modDocV1::theFormatFollowsVersionAndExtension_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("native");
    QTest::newRow("qly without a version is native") << u"a.qly"_s << QByteArray() << true;
    QTest::newRow("txt of version 1 is native") << u"a.txt"_s << QByteArray("1") << true;
    QTest::newRow("qly of version 2 is text") << u"a.qly"_s << QByteArray("2") << false;
    QTest::newRow("txt without a version is text") << u"a.txt"_s << QByteArray() << false;
}

void tst_modDocV1::theFormatFollowsVersionAndExtension()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, version);
    QFETCH(const bool, native);
    QByteArray bytes = header + entry("0", "Root") + entry("0.1", "A");
    bytes.replace("{\\qlf_formatversion 1}\r\n",
                  version.isEmpty() ? QByteArray() : "{\\qlf_formatversion " + version + "}\r\n");
    const Document &loaded = load(bytes, name).document;
    // What is shown of a later version is not what the file is.
    QCOMPARE(m_loaded, version != "2");
    QCOMPARE(loaded.m_sFile.isEmpty(), version == "2");
    QCOMPARE(loaded.tree.root()->label(), native ? u"Root"_s : u"Text"_s);
    QCOMPARE(loaded.tree.entryCount(), native ? 2 : 1);
}

void tst_modDocV1::afterLoadingTheTextPaneHasTheOutlinesFont()
{
    QByteArray bytes = header + entry("0", "Root");
    bytes.replace("outlinefontname MS Sans Serif", "outlinefontname Courier 10 Pitch");
    bytes.replace("outlinefontbold False", "outlinefontbold True");
    bytes.replace("textfontitalic False", "textfontitalic True");
    const FakeDocument &loaded = load(bytes);
    QCOMPARE(loaded.outline.font.family(), u"Courier 10 Pitch"_s);
    QCOMPARE(loaded.outline.font.pointSizeF(), 8.25);
    QCOMPARE(loaded.text.font.family(), u"Courier 10 Pitch"_s);
    QCOMPARE(loaded.text.font.pointSizeF(), 8.25);
    QVERIFY(loaded.text.font.bold() && !loaded.text.font.italic());
    QCOMPARE(loaded.document.m_fntTextFont.Name(), u"Arial"_s);
    QCOMPARE(loaded.document.m_fntTextFont.Size(), 100000);
    QVERIFY(loaded.document.m_fntTextFont.Italic() && !loaded.document.m_fntTextFont.Bold());
}

void tst_modDocV1::aDamagedTextIsLockedToldOfAndKept()
{
    const QByteArray stream = NodeTextCompressIfRequired("{\\rtf1 some text}").mid(3);
    const QByteArray record = "{\\qlf_nodetext 16," + stream.chopped(3) + "}\r\n";
    FakeDocument &loaded = load(header + entry("0", "Root", "16," + stream.chopped(3)) + entry("0.1", "A"));
    Document &document = loaded.document;
    Entry *root = document.tree.root();
    QVERIFY(m_loaded);
    QVERIFY(loaded.text.locked);
    QVERIFY(document.bTextWithheld());
    QCOMPARE(m_fixture->errors.summary(), QStringList());
    QCOMPARE(document.notices().size(), size_t(1));
    QCOMPARE(document.notices()[0].kind, NoticeKind::DamagedText);
    QVERIFY(document.notices()[0].text.contains(u"\"Root\""_s));
    // Whatever comes of the bytes in the pane, the stored ones stay.
    loaded.text.type(u"typed"_s);
    modNodes::NodeTextPut(document, root);
    QVERIFY(FormatsFixture::savedNative(document).contains(record));
    modNodes::NodeSelectFull(document, root->child(0));
    QVERIFY(!loaded.text.locked);
    QVERIFY(!document.bTextWithheld());
    modNodes::NodeSelectFull(document, root);
    QVERIFY(loaded.text.locked);
    QVERIFY(FormatsFixture::savedNative(document).contains(record));
    // Until they are given up.
    document.history.markSaved();
    modNodes::NodeTextDiscard(document);
    QVERIFY(document.m_bDataChanged());
    QVERIFY(!loaded.text.locked);
    QCOMPARE(loaded.text.Text(), QString());
    loaded.text.type(u"new"_s);
    modNodes::NodeTextPut(document, root);
    QCOMPARE(rtf::toPlainText(checkNative(FormatsFixture::savedNative(document)).entry("0").text), u"new"_s);
    QTRY_VERIFY(document.notices().empty());
}

void tst_modDocV1::damagedTextsAreFoundBehindTheOpening()
{
    QRandomGenerator random(5);
    QByteArray bytes = header + entry("0", "Root");
    for (int i = 1; i <= 20; ++i) {
        const QByteArray text = "{\\rtf1 " + noise(random, 30000).toHex() + '}';
        QByteArray stored = NodeTextCompressIfRequired(text);
        if (i % 5 == 0)
            stored[stored.size() / 2] = static_cast<char>(~stored[stored.size() / 2]);
        bytes += entry("0." + QByteArray::number(i), "Entry " + QByteArray::number(i), stored);
    }
    const Document &loaded = load(bytes).document;
    QVERIFY(m_loaded);
    QVERIFY2(loaded.notices().empty(), "the opening does not wait for it");
    QTRY_COMPARE(loaded.notices().size(), size_t(1));
    QCOMPARE(loaded.notices()[0].kind, NoticeKind::DamagedText);
    QVERIFY(loaded.notices()[0].text.contains(u"4 entries"_s));
    QVERIFY(loaded.notices()[0].text.contains(u"\"Entry 5\", \"Entry 10\", \"Entry 15\", \"Entry 20\""_s));
    QCOMPARE(m_fixture->errors.remarks().size(), 1);
    QCOMPARE(FormatsFixture::savedNative(loaded), bytes);
}

void tst_modDocV1::whatIsToldOfDamagedTextsGoesWithTheirEntries()
{
    const QByteArray damaged = "40," + NodeTextCompressIfRequired("{\\rtf1 some words}").sliced(3, 12);
    Document &document = load(header + entry("0", "Root") + entry("0.1", "A", damaged) + entry("0.2", "B") +
                              entry("0.2.1", "C", damaged) + entry("0.3", "D"))
                             .document;
    QVERIFY(m_loaded);
    QTRY_COMPARE(document.notices().size(), size_t(1));
    QVERIFY(document.notices()[0].text.contains(u"2 entries"_s));
    modNodes::NodeDelete(document, document.tree.root()->child(2));
    modNodes::NodeDelete(document, document.tree.root()->child(0));
    QTRY_VERIFY(document.notices()[0].text.contains(u"The text of \"C\""_s));
    rawOutline(document).tree.removeAll({document.tree.root()->child(0)});
    QTRY_VERIFY(document.notices().empty());
}

void tst_modDocV1::aDismissedNoticeOfDamagedTextsStaysAway()
{
    const QByteArray damaged = "40," + NodeTextCompressIfRequired("{\\rtf1 some words}").sliced(3, 12);
    Document &document = load(header + entry("0", "Root") + entry("0.1", "A", damaged) + entry("0.2", "B")).document;
    QTRY_COMPARE(document.notices().size(), size_t(1));
    document.dismiss(NoticeKind::DamagedText);
    modNodes::NodeDelete(document, document.tree.root()->child(1));
    QTest::qWait(200);
    QVERIFY(document.notices().empty());
}

void tst_modDocV1::soundTextsOfEveryKindAreNotToldOf()
{
    QRandomGenerator random(6);
    const QByteArray texts[] = {NodeTextCompressIfRequired("{\\rtf1 x}"),
                                NodeTextCompressIfRequired(noise(random, 300000)),
                                NodeTextCompressIfRequired(QByteArray(65536, 'x')),
                                NodeTextCompressIfRequired(QByteArray(5'000'000, 'x')),
                                "2147483647" + NodeTextCompressIfRequired("{\\rtf1 x}").sliced(1),
                                QByteArray(),
                                "{\\rtf1 12,plain}",
                                "plain, too",
                                QByteArray(40000, 'y') + ","};
    Document &document = m_fixture->plant({u"Root"_s}).document;
    for (const QByteArray &text : texts)
        rawOutline(document).tree.setStoredText(
            rawOutline(document).tree.insert(Relationship::tvwChild, document.tree.root()), text);
    TextCheck check(document);
    while (check.goOn()) {
    }
    QVERIFY(document.notices().empty());
    QCOMPARE(m_fixture->errors.summary(), QStringList());
}

void tst_modDocV1::aMissingSelectedKeySelectsTheRoot()
{
    QByteArray bytes = header + entry("0", "Root") + entry("0.1", "A");
    bytes.replace("{\\qlf_selecteditemkey KEY0}\r\n", "");
    const Document &loaded = load(bytes).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.tree.selected(), loaded.tree.root());
}

void tst_modDocV1::unknownRecordsAreWrittenBackWhereTheyStood()
{
    const QByteArray before = "{\\qlf_before everything}\r\n";
    const QByteArray inHeader = "{\\qlf_colour blue}\r\n{\\qlf_notes {\\rtf1 with } braces}}\r\n";
    const QByteArray ofLabel = "{\\qlf_nodelabelcolour red}\r\n";
    const QByteArray ofEntry = "{\\qlf_nodenotes x}\r\n{\\qlf_extra y}\r\n";
    const QByteArray ofLast = "{\\qlf_nodenotes z}\r\n";
    const QByteArray atEnd = "{\\qlf_end 2 entries}\r\n{\\qlf_nodecount 2}\r\n";
    QByteArray bytes = before + header + entry("0", "Root") + ofEntry + entry("0.1", "A") + ofLast + atEnd;
    bytes.insert(bytes.indexOf("{\\qlf_outlinefontname"), inHeader);
    bytes.insert(bytes.indexOf("{\\qlf_nodetagged"), ofLabel);
    Document &loaded = load(bytes).document;
    QVERIFY(m_loaded);
    QCOMPARE(m_fixture->errors.summary(), QStringList());
    QCOMPARE(m_fixture->errors.remarks().size(), 1);
    QVERIFY(m_fixture->errors.remarks()[0].contains(u"an unknown record"_s));
    QVERIFY(loaded.notices().empty());
    QCOMPARE(loaded.tree.entryCount(), 2);
    QCOMPARE(loaded.m_sFile, (*m_folder)(u"a.qly"_s));
    QCOMPARE(FormatsFixture::savedNative(loaded), bytes);
    // A new entry comes behind what is known of the last one, and before what the file ends with.
    rawOutline(loaded).tree.setLabel(rawOutline(loaded).tree.insert(Relationship::tvwChild, loaded.tree.root()),
                                     u"B"_s);
    QCOMPARE(FormatsFixture::savedNative(loaded), bytes.replace(atEnd, entry("0.2", "B", "") + atEnd));
}

void tst_modDocV1::unknownRecordsGoWhereTheirEntryGoes()
{
    const QByteArray ofA = "{\\qlf_nodenotes of A}\r\n";
    Document &loaded =
        load(header + entry("0", "Root") + entry("0.1", "A") + ofA + entry("0.2", "B") + entry("0.3", "C")).document;
    EntryTree &tree = rawOutline(loaded).tree;
    tree.move(tree.root()->child(0), Relationship::tvwNext, tree.root()->child(1));
    tree.insertCopy(tree, tree.root()->child(1), Relationship::tvwChild, tree.root());
    QCOMPARE(FormatsFixture::savedNative(loaded), header + entry("0", "Root") + entry("0.1", "B") + entry("0.2", "A") +
                                                      ofA + entry("0.3", "C") + entry("0.4", "A") + ofA);
    tree.remove(tree.root()->child(1));
    tree.remove(tree.root()->child(2));
    QVERIFY(!FormatsFixture::savedNative(loaded).contains("nodenotes"));
}

void tst_modDocV1::ofHeaderRecordsOfOneNameTheFirstStaysTheFirst()
{
    QByteArray bytes = header + entry("0", "Root");
    bytes.replace("{\\qlf_textfontname Arial}\r\n", "{\\qlf_textfontname Courier}\r\n");
    bytes.replace("{\\qlf_outlinefontsize", "{\\qlf_textfontname Times}\r\n{\\qlf_outlinefontsize");
    const Document &loaded = load(bytes).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.m_fntTextFont.Name(), u"Times"_s);
    const Document &again = load(FormatsFixture::savedNative(loaded), u"b.qly"_s).document;
    QCOMPARE(again.m_fntTextFont.Name(), u"Times"_s);
}

void tst_modDocV1::aHeaderRecordEndsWhereTheNextOneOpens()
{
    QByteArray bytes = header + entry("0", "Root");
    bytes.replace("{\\qlf_outlinefontname MS Sans Serif}\r\n", "{\\qlf_outlinefontname MS Sans {\\qlf_unknown x}\r\n");
    const Document &loaded = load(bytes).document;
    QVERIFY(!m_loaded);
    QVERIFY(loaded.hasNotice(NoticeKind::NotReadWhole));
    QCOMPARE(loaded.m_fntOutlineFont.Name(), u"MS Sans "_s);
    QVERIFY(loaded.outline().foreignHeader.at(0).bytes.contains("unknown x"));
}

void tst_modDocV1::anUnknownRecordEndsWhereTheNextOneOpens()
{
    QByteArray bytes = header + entry("0", "Root");
    bytes.replace("{\\qlf_outlinefontname", "{\\qlf_textfontsize 20}\r\n{\\qlf_outlinefontname");
    bytes.replace("{\\qlf_textfontname Arial}", "{\\qlf_unknown x");
    const Document &loaded = load(bytes).document;
    QVERIFY(!m_loaded);
    const Document &again = load(FormatsFixture::savedNative(loaded), u"b.qly"_s).document;
    QCOMPARE(again.m_fntTextFont.Size(), loaded.m_fntTextFont.Size());
}

void tst_modDocV1::whatIsUnderstoodAllTheSameIsARemark_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("saved");

    const QByteArray root = entry("0", "Root", "{\\rtf1 r}", "True");
    const QByteArray a = entry("0.1", "A");
    const QByteArray whole = header + root + a;
    const auto row = [&whole](const char *name, const QByteArray &bytes) { QTest::newRow(name) << bytes << whole; };
    const auto changed = [&whole](const QByteArray &before, const QByteArray &after) {
        return QByteArray(whole).replace(before, after);
    };
    row("no flags", changed("{\\qlf_nodetagged False}\r\n{\\qlf_nodevisible True}\r\n{\\qlf_nodetext {\\rtf1 x}",
                            "{\\qlf_nodevisible True}\r\n{\\qlf_nodetext {\\rtf1 x}"));
    row("the label behind the flags", changed("{\\qlf_nodelabel A}\r\n{\\qlf_nodetagged False}\r\n",
                                              "{\\qlf_nodetagged False}\r\n{\\qlf_nodelabel A}\r\n"));
    row("the text first", header + root +
                              "{\\qlf_nodekey 0.1}\r\n{\\qlf_nodetext {\\rtf1 x}}\r\n{\\qlf_nodelabel A}\r\n"
                              "{\\qlf_nodetagged False}\r\n{\\qlf_nodevisible True}\r\n");
    row("a flag in small letters", changed("nodetagged False", "nodetagged false"));
    row("a header record behind the entries",
        changed("{\\qlf_textfontname Arial}\r\n", "") + "{\\qlf_textfontname Arial}\r\n");
    row("a byte order mark", "\xEF\xBB\xBF" + whole);
    row("an empty line first", "\r\n" + whole);
    row("an empty line in the header", changed("{\\qlf_textfontname", "\r\n{\\qlf_textfontname"));
    row("an empty line within an entry", changed("{\\qlf_nodetagged", "\r\n{\\qlf_nodetagged"));
    row("an empty line behind a text", header + root + "\r\n" + a);
    row("an empty line at the end", whole + "\r\n");
    row("blanks at the end", whole + "  \t\r\n");
    row("the end mark of old systems", whole + '\x1A');
    row("bare line feeds in the header", QByteArray(header).replace("\r\n", "\n") + root + a);

    const QByteArray stray = "{\\qlf_nodelabel stray}\r\n{\\qlf_nodetext of nobody}\r\n";
    QTest::newRow("records of an entry before the first one") << header + stray + root + a << header + stray + root + a;
    const QByteArray twice = header + "{\\qlf_textfontname Courier}\r\n" + root + "{\\qlf_textfontsize 30}\r\n" + a;
    QTest::newRow("header records given twice") << twice << twice;
    QTest::newRow("small letters for True") << QByteArray(whole).replace("nodetagged True", "nodetagged true")
                                            << QByteArray(whole).replace("nodetagged True", "nodetagged False");
}

void tst_modDocV1::whatIsUnderstoodAllTheSameIsARemark()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, saved);
    const Document &loaded = load(bytes).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.m_sFile, (*m_folder)(u"a.qly"_s));
    QCOMPARE(m_fixture->errors.summary(), QStringList());
    QCOMPARE(m_fixture->errors.remarks().size(), 1);
    QVERIFY(loaded.notices().empty());
    QCOMPARE(dumpOutline(loaded.tree).size(), 2);
    QCOMPARE(FormatsFixture::savedNative(loaded), saved);
}

void tst_modDocV1::aLabelThatWasWrittenWithABraceOnlyIsCutAndTold()
{
    const Document &loaded = load(header + entry("0", "before} after") + entry("0.1", "next")).document;
    QVERIFY(m_loaded);
    QCOMPARE(loaded.tree.root()->label(), u"before"_s);
    QCOMPARE(loaded.tree.root()->child(0)->label(), u"next"_s);
    QCOMPARE(m_fixture->errors.summary(), QStringList());
    QCOMPARE(m_fixture->errors.remarks().size(), 1);
    QCOMPARE(loaded.notices().size(), size_t(1));
    QCOMPARE(loaded.notices()[0].kind, NoticeKind::NotReadWhole);
    QVERIFY(loaded.notices()[0].text.contains(u"\"}\""_s));
}

void tst_modDocV1::failedLoads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("report");
    QTest::addColumn<QStringList>("kept");

    const QByteArray root = entry("0", "Root");
    const QByteArray whole = header + root + entry("0.1", "A") + entry("0.2", "B");
    const QString damage = u"321 modDoc DocLoad"_s;
    const QString noPlace = u"35601 modDoc DocLoad"_s;
    const QString noValue = u"13 modDoc DocLoad"_s;
    QByteArray bytes = whole;
    QTest::newRow("a font record is missing") << bytes.replace("{\\qlf_textfontbold False}\r\n", "") << noValue
                                              << QStringList{u"Root +<"_s, u" A"_s, u" B"_s};
    bytes = whole;
    QTest::newRow("a font's size is no number")
        << bytes.replace("fontsize 10", "fontsize ten") << noValue << QStringList{u"Root +<"_s, u" A"_s, u" B"_s};
    QTest::newRow("a font record is missing and the end as well")
        << QByteArray(header + root + entry("0.1", "A")).replace("{\\qlf_outlinefontsize 8.25}\r\n", "").chopped(28)
        << noValue << QStringList{u"Root +<"_s, u" A"_s};
    QTest::newRow("a font record is missing and a place does not exist")
        << QByteArray(header + root + entry("0.2", "B")).replace("{\\qlf_outlinefontsize 8.25}\r\n", "") << noValue
        << QStringList{u"Root <"_s};
    QTest::newRow("an empty file") << QByteArray() << noValue << QStringList();
    QTest::newRow("a file of another kind") << QByteArray("%PDF-1.4\n%\xE2\xE3\n") << noValue << QStringList();
    QTest::newRow("no entry") << header << damage << QStringList();
    QTest::newRow("an entry's place does not exist")
        << header + root + entry("0.2", "B") + entry("0.3", "C") << noPlace << QStringList{u"Root <"_s};
    QTest::newRow("a child of an entry that does not exist")
        << header + root + entry("0.1.1", "A1") << noPlace << QStringList{u"Root <"_s};
    QTest::newRow("the first entry is not the root") << header + entry("0.1", "A") << noPlace << QStringList();
    QTest::newRow("a place that is no number")
        << header + root + entry("0.x", "A") << noValue << QStringList{u"Root <"_s};
    QTest::newRow("a place beyond 16 bits")
        << header + root + entry("0.40000", "A") << u"6 modDoc DocLoad"_s << QStringList{u"Root <"_s};
    QTest::newRow("a second root") << header + root + entry("0", "B") << damage << QStringList{u"Root +<"_s, u" B"_s};
    QTest::newRow("a path twice") << header + root + entry("0.1", "A") + entry("0.1", "B") << damage
                                  << QStringList{u"Root +<"_s, u" A"_s, u" B"_s};
    QTest::newRow("two labels of one entry") << header + root + "{\\qlf_nodelabel again}\r\n"
                                             << damage << QStringList{u"again <"_s};
    QTest::newRow("an entry without a label")
        << QByteArray(header + root).replace("{\\qlf_nodelabel Root}\r\n", "") << damage << QStringList{u" <"_s};
    QTest::newRow("an entry without a text") << QByteArray(header + root).replace("{\\qlf_nodetext {\\rtf1 x}}\r\n", "")
                                             << damage << QStringList{u"Root <"_s};
    QTest::newRow("a flag that is neither True nor False")
        << QByteArray(header + root).replace("False}\r\n{\\qlf_nodev", "Fals}\r\n{\\qlf_nodev") << damage
        << QStringList{u"Root <"_s};
    QTest::newRow("an unknown record without its end")
        << header + root + "{\\qlf_colour blue" << damage << QStringList{u"Root <"_s};
    QTest::newRow("bytes behind an unknown record")
        << header + root + "{\\qlf_colour blue}\r\nx\r\n" + entry("0.1", "A") << damage
        << QStringList{u"Root +<"_s, u" A"_s};
    QTest::newRow("line feeds alone") << QByteArray(header + root + entry("0.1", "A")).replace("\r\n", "\n") << damage
                                      << QStringList{u"Root +<"_s, u" A"_s};
    QTest::newRow("cut off within a path")
        << header + root + "{\\qlf_nodekey 0.1" << damage << QStringList{u"Root <"_s, u" "_s};
    QTest::newRow("cut off within a label")
        << header + root + "{\\qlf_nodekey 0.1}\r\n{\\qlf_nodelabel A" << damage << QStringList{u"Root <"_s, u" A"_s};
    QTest::newRow("cut off within a text")
        << (header + root + entry("0.1", "A")).chopped(4) << damage << QStringList{u"Root +<"_s, u" A"_s};
    QTest::newRow("cut off behind an entry's flags")
        << (header + root + entry("0.1", "A")).chopped(28) << damage << QStringList{u"Root +<"_s, u" A"_s};
    QTest::newRow("bytes before the first record") << "x" + header + root << damage << QStringList{u"Root <"_s};
    QTest::newRow("bytes behind the last record") << header + root + "x" << damage << QStringList{u"Root <"_s};
    bytes = whole;
    QTest::newRow("the selected entry does not exist")
        << bytes.replace("KEY0}", "KEY0.7}") << noPlace << QStringList{u"Root +<"_s, u" A"_s, u" B"_s};
}

void tst_modDocV1::failedLoads()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, report);
    QFETCH(const QStringList, kept);
    const FakeDocument &loaded = load(bytes);
    QVERIFY(!m_loaded);
    QCOMPARE(m_fixture->errors.summary(), QStringList(report));
    QCOMPARE(dumpOutline(loaded.document.tree), kept);
    QVERIFY(loaded.document.m_sFile.isEmpty());
    // Only where no entry takes what is typed.
    QCOMPARE(loaded.text.locked, kept.isEmpty());
    QVERIFY(m_fixture->fake.recentFiles.updates.empty());
    QCOMPARE(m_folder->read(u"a.qly"_s), bytes.isNull() ? QByteArray("") : bytes);
    QCOMPARE(m_folder->names(), QStringList(u"a.qly"_s));
}

void tst_modDocV1::oneEntryTooMany()
{
    QByteArray bytes = header + entry("0", "Root");
    for (int i = 1; i <= 32767; ++i)
        bytes += entry("0." + QByteArray::number(i), QByteArray::number(i), "");
    const FakeDocument &loaded = load(bytes);
    QVERIFY(!m_loaded);
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"6 modDoc DocLoad"_s));
    QCOMPARE(loaded.document.tree.entryCount(), 32767);
    QCOMPARE(loaded.document.tree.root()->child(32765)->label(), u"32766"_s);
    QVERIFY(loaded.document.m_sFile.isEmpty());
    // The window stays usable: an entry goes and another comes.
    modNodes::NodeDelete(m_fixture->active()->document, loaded.document.tree.root()->child(0));
    QVERIFY(modNodes::NodeInsert(m_fixture->active()->document, Relationship::tvwChild, nullptr));
    QVERIFY(loaded.outline.visible && loaded.text.visible);
}

QTEST_MAIN(tst_modDocV1)
#include "tst_modDocV1.moc"
