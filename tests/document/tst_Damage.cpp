// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modNodes.h"
#include "model/StoredText.h"
#include "support/FormatsFixture.h"
#include "support/NativeChecker.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

// Damaged files of every kind: nothing crashes or hangs, the file stays as it is, and either the file is another whole
// document, which would be saved as the same bytes, or the session log has a record or a remark.
class tst_Damage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void everyCut();
    void everyBitOfEveryByte_data();
    void everyBitOfEveryByte();
    void randomMutations_data();
    void randomMutations();
    void randomBytes();

    void hostileFiles_data();
    void hostileFiles();
    void aStatedTextLengthOfTwoGigabytes();
    void aReadOnlyFileIsReadAndLeftAlone();

private:
    QString fileName() const { return (*m_folder)(u"a.qly"_s); }

    // Whether the session log tells that the file is not as a save would have written it.
    bool told() const { return m_fixture->errors.count() > 0 || !m_fixture->errors.remarks().isEmpty(); }

    // Loads the bytes as a file and looks at every text. What is wrong, in words; empty when nothing is.
    QString judge(const QByteArray &bytes);

    // The document that all others are made from.
    QByteArray m_whole;
    std::unique_ptr<FormatsFixture> m_fixture;
    std::unique_ptr<TestFolder> m_folder;
};

namespace
{

// A small document with all that a document can have.
QByteArray smallDocument()
{
    FormatsFixture fixture;
    Document &document = fixture
                             .plant({u"Notes +"_s, u" First +*"_s, u"  \u00C9t\u00E9 <"_s, u"  Below"_s,
                                     u" \u03B1 second"_s, u"  Hidden"_s})
                             .document;
    rawOutline(document).textFont.setBold(true);
    int number = 0;
    for (const Entry *entry = document.tree.root(); entry; entry = nextInOutline(entry, document.tree.root())) {
        const QByteArray text =
            "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Text " + QByteArray::number(++number) + "\\par}";
        const QByteArray kinds[] = {NodeTextCompressIfRequired(text), text, QByteArray()};
        rawOutline(document).tree.setStoredText(const_cast<Entry *>(entry), kinds[number % 3]);
    }
    return FormatsFixture::savedNative(document);
}

QString firstDifference(const QByteArray &file, const QByteArray &saved)
{
    const auto [at, other] = std::mismatch(file.begin(), file.end(), saved.begin(), saved.end());
    const qsizetype place = at - file.begin();
    const auto shown = [place](const QByteArray &bytes) {
        return QString::fromLatin1(bytes.mid(qMax(place - 40, qsizetype(0)), 100).toPercentEncoding(" {}\\"));
    };
    return u"at byte %1 \"%2\" would become \"%3\""_s.arg(place).arg(shown(file), shown(saved));
}

QByteArray part(const QByteArray &bytes, QRandomGenerator &random, int longest = 60)
{
    const qsizetype start = random.bounded(static_cast<int>(bytes.size()));
    return bytes.mid(start, 1 + random.bounded(longest));
}

QList<QByteArray> recordsOf(const QByteArray &bytes)
{
    QList<QByteArray> records;
    qsizetype at = 0;
    while (at < bytes.size()) {
        qsizetype end = bytes.indexOf("{\\qlf_", at + 1);
        if (end < 0)
            end = bytes.size();
        records.append(bytes.mid(at, end - at));
        at = end;
    }
    return records;
}

enum Mutation {
    BitFlips,
    Overwrite,
    RandomByte,
    Insert,
    Remove,
    Duplicate,
    SwapRecords,
    RepeatRecord,
    DropRecord,
    MutationCount
};

QByteArray mutateRecords(const QByteArray &bytes, Mutation mutation, QRandomGenerator &random)
{
    QList<QByteArray> records = recordsOf(bytes);
    const auto any = [&] { return static_cast<qsizetype>(random.bounded(static_cast<int>(records.size()))); };
    if (mutation == SwapRecords)
        records.swapItemsAt(any(), any());
    else if (mutation == RepeatRecord)
        records.insert(any(), records[any()]);
    else
        records.removeAt(any());
    return records.join();
}

QByteArray mutate(QByteArray bytes, Mutation mutation, QRandomGenerator &random)
{
    const qsizetype at = random.bounded(static_cast<int>(bytes.size()));
    switch (mutation) {
    case BitFlips:
        for (int flips = 1 + random.bounded(4); flips > 0; --flips)
            bytes[random.bounded(static_cast<int>(bytes.size()))] ^= static_cast<char>(1 << random.bounded(8));
        return bytes;
    case Overwrite:
        return bytes.replace(at, 1 + random.bounded(20), part(bytes, random, 20));
    case RandomByte:
        bytes[at] = static_cast<char>(random.bounded(256));
        return bytes;
    case Insert:
        return bytes.insert(at, part(bytes, random));
    case Remove:
        return bytes.remove(at, 1 + random.bounded(60));
    case Duplicate:
        return bytes.insert(at, bytes.mid(at, 1 + random.bounded(200)));
    default:
        return mutateRecords(bytes, mutation, random);
    }
}

} // namespace

void tst_Damage::initTestCase()
{
    m_whole = smallDocument();
    QCOMPARE(checkNative(m_whole).fault, QString());
}

void tst_Damage::init()
{
    m_fixture = std::make_unique<FormatsFixture>();
    m_folder = std::make_unique<TestFolder>();
}

void tst_Damage::cleanup()
{
    m_fixture.reset();
    m_folder.reset();
}

QString tst_Damage::judge(const QByteArray &bytes)
{
    m_fixture->errors.clear();
    m_folder->write(u"a.qly"_s, bytes);
    const bool whole = modDoc::DocLoad(fileName());
    FakeDocument &fake = *m_fixture->active();
    Document &document = fake.document;
    QString wrong;
    if (const QString broken = document.tree.brokenInvariant(); !broken.isEmpty())
        wrong = broken;
    else if (bBusy || iActionDepth != 0 || m_fixture->fake.pointer.hourglass || !fake.outline.visible ||
             !fake.text.visible)
        wrong = u"the window is not as after any command"_s;
    else if (whole == document.m_sFile.isEmpty())
        wrong = u"the window's file name does not say whether the file was read whole"_s;
    else if (!whole && m_fixture->errors.count() == 0)
        wrong = u"the load failed without a record"_s;
    const bool reported = told();
    // What the file would be saved as, before any text is shown.
    const QByteArray saved = FormatsFixture::savedNative(document);
    if (wrong.isEmpty() && !reported && saved != bytes)
        wrong = u"it was read without a record, but would be saved otherwise: "_s + firstDifference(bytes, saved);
    for (const Entry *entry = document.tree.root(); entry; entry = nextInOutline(entry, document.tree.root()))
        modNodes::NodeTextGet(document, const_cast<Entry *>(entry));
    if (wrong.isEmpty() && FormatsFixture::savedNative(document) != saved)
        wrong = u"looking at the texts changed the document"_s;
    if (wrong.isEmpty() && (m_folder->read(u"a.qly"_s) != bytes || m_folder->names().size() != 1))
        wrong = u"the file on disk was changed"_s;
    m_fixture->closeAll();
    return wrong;
}

void tst_Damage::everyCut()
{
    const QByteArray &bytes = m_whole;
    QCOMPARE(judge(bytes), QString());
    QVERIFY(!told());
    for (qsizetype size = 0; size < bytes.size(); ++size) {
        const QString wrong = judge(bytes.left(size));
        QVERIFY2(wrong.isEmpty(), qPrintable(u"Cut to %1 bytes: %2"_s.arg(size).arg(wrong)));
        // Cut right behind an entry, a file is a whole document of fewer entries, which nothing in it belies.
        if (!checkNative(bytes.left(size)).fault.isEmpty())
            QVERIFY2(told(), qPrintable(u"Cut to %1 bytes without a record"_s.arg(size)));
        const QString behind = judge(bytes.mid(size + 1));
        QVERIFY2(behind.isEmpty(), qPrintable(u"Without its first %1 bytes: %2"_s.arg(size + 1).arg(behind)));
    }
}

void tst_Damage::everyBitOfEveryByte_data()
{
    QTest::addColumn<int>("bit");
    for (int bit = 0; bit < 8; ++bit)
        QTest::addRow("bit %d", bit) << bit;
}

void tst_Damage::everyBitOfEveryByte()
{
    QFETCH(const int, bit);
    const QByteArray &bytes = m_whole;
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        QByteArray flipped = bytes;
        flipped[at] ^= static_cast<char>(1 << bit);
        const QString wrong = judge(flipped);
        QVERIFY2(wrong.isEmpty(), qPrintable(u"Byte %1: %2"_s.arg(at).arg(wrong)));
    }
}

void tst_Damage::randomMutations_data()
{
    QTest::addColumn<int>("mutation");
    QTest::newRow("flipped bits") << int(BitFlips);
    QTest::newRow("a chunk written over another") << int(Overwrite);
    QTest::newRow("a random byte") << int(RandomByte);
    QTest::newRow("a chunk inserted elsewhere") << int(Insert);
    QTest::newRow("a chunk removed") << int(Remove);
    QTest::newRow("a chunk doubled") << int(Duplicate);
    QTest::newRow("two records swapped") << int(SwapRecords);
    QTest::newRow("a record repeated elsewhere") << int(RepeatRecord);
    QTest::newRow("a record dropped") << int(DropRecord);
    QTest::newRow("several at once") << int(MutationCount);
}

void tst_Damage::randomMutations()
{
    QFETCH(const int, mutation);
    const QByteArray &bytes = m_whole;
    QRandomGenerator random(static_cast<quint32>(1000 + mutation));
    for (int i = 0; i < 1200; ++i) {
        QByteArray mutated = bytes;
        if (mutation < MutationCount) {
            mutated = mutate(mutated, static_cast<Mutation>(mutation), random);
        } else {
            for (int times = 2 + random.bounded(4); times > 0; --times)
                mutated = mutate(mutated, static_cast<Mutation>(random.bounded(int(MutationCount))), random);
        }
        const QString wrong = judge(mutated);
        QVERIFY2(wrong.isEmpty(), qPrintable(u"Mutation %1: %2"_s.arg(i).arg(wrong)));
    }
}

void tst_Damage::randomBytes()
{
    QRandomGenerator random(99);
    for (int i = 0; i < 1000; ++i) {
        QByteArray bytes(static_cast<qsizetype>(random.bounded(2000)), '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random.bounded(256));
        const QString wrong = judge(bytes);
        QVERIFY2(wrong.isEmpty(), qPrintable(u"File %1: %2"_s.arg(i).arg(wrong)));
        QVERIFY(told());
    }
}

void tst_Damage::hostileFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("valid");

    const QByteArray &whole = m_whole;
    const QByteArray header = whole.left(whole.indexOf("{\\qlf_nodekey"));
    const auto times = [](const QByteArray &bytes, int count) { return bytes.repeated(count); };
    QTest::newRow("a million openers without a brace") << times("{\\qlf_", 1000000) << false;
    QTest::newRow("a million openers behind a whole document") << whole + times("{\\qlf_", 1000000) << false;
    QTest::newRow("a million paths without a brace") << header + times("{\\qlf_nodekey 0", 1000000) << false;
    QTest::newRow("a million texts without an end") << whole + times("{\\qlf_nodetext ", 1000000) << false;
    QTest::newRow("a million labels") << whole + times("{\\qlf_nodelabel x}\r\n", 1000000) << false;
    QTest::newRow("a million roots") << header + times("{\\qlf_nodekey 0}\r\n", 1000000) << false;
    QTest::newRow("a million braces") << whole + times("}", 1000000) << false;
    QTest::newRow("a path of 100,000 components") << whole + "{\\qlf_nodekey 0" + times(".1", 100000) + "}\r\n"
                                                  << false;
    QTest::newRow("a path of a million digits") << whole + "{\\qlf_nodekey 0." + times("1", 1000000) + "}\r\n" << false;
    QTest::newRow("a selected key of 100,000 components")
        << QByteArray(whole).replace("KEY0.1.1}", "KEY0" + times(".1", 100000) + '}') << false;
    QTest::newRow("a label of ten million characters")
        << QByteArray(whole).replace("nodelabel Below", "nodelabel " + times("x", 10000000)) << true;
    QTest::newRow("a font size of a million digits")
        << QByteArray(whole).replace("fontsize 10}", "fontsize " + times("9", 1000000) + '}') << false;
    QTest::newRow("a version of a million digits")
        << QByteArray(whole).replace("formatversion 1}", "formatversion " + times("1", 1000000) + '}') << false;
    QTest::newRow("a NUL for every byte") << QByteArray(1000000, '\0') << false;

    QByteArray chain = header;
    QByteArray path = "0";
    for (int level = 0; level < 3000; ++level, path += ".1")
        chain += "{\\qlf_nodekey " + path + "}\r\n";
    QTest::newRow("a chain of 3,000 levels without labels and texts") << chain << false;

    QByteArray many = header;
    for (int i = 0; i < 32768; ++i)
        many += (i == 0 ? "{\\qlf_nodekey 0}\r\n" : "{\\qlf_nodekey 0." + QByteArray::number(i) + "}\r\n") +
                "{\\qlf_nodelabel x}\r\n{\\qlf_nodetagged False}\r\n{\\qlf_nodevisible True}\r\n{\\qlf_nodetext }\r\n";
    QTest::newRow("32,768 entries") << many << false;

    // Every entry takes the place of the one before it.
    QByteArray pushing =
        header + "{\\qlf_nodekey 0}\r\n{\\qlf_nodekey 0.1}\r\n" + times("{\\qlf_nodekey 0.2}\r\n", 32000);
    QTest::newRow("32,000 entries in one place") << pushing << false;
}

void tst_Damage::hostileFiles()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, valid);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(judge(bytes), QString());
    QCOMPARE(!told(), valid);
    // Far above what it takes, far below what an algorithm that grows with the square would take.
    QVERIFY2(timer.elapsed() < 20000, qPrintable(u"it took %1 ms"_s.arg(timer.elapsed())));
}

void tst_Damage::aStatedTextLengthOfTwoGigabytes()
{
    const QByteArray text = "{\\rtf1 some text}";
    QByteArray bytes = m_whole;
    const QByteArray stored = NodeTextCompressIfRequired(text).replace(0, 3, "2147483647,");
    bytes.replace("{\\qlf_nodetext }", "{\\qlf_nodetext " + stored + '}');
    const QString wrong = judge(bytes);
    QCOMPARE(wrong, QString());
    QCOMPARE(NodeTextDecompressIfRequired(stored), text);
}

void tst_Damage::aReadOnlyFileIsReadAndLeftAlone()
{
    const QByteArray &bytes = m_whole;
    m_folder->write(u"Help.qly"_s, bytes, 0444);
    QVERIFY(modDoc::DocLoad((*m_folder)(u"Help.qly"_s)));
    const FakeDocument &fake = *m_fixture->active();
    QVERIFY(fake.document.bReadOnly());
    QVERIFY(fake.text.locked);
    QCOMPARE(fake.window.text, (*m_folder)(u"Help.qly"_s) + u" (read-only)"_s);
    QCOMPARE(modDoc::DocSave((*m_folder)(u"Help.qly"_s)), SaveOutcome::Failed);
    QCOMPARE(m_folder->read(u"Help.qly"_s), bytes);
    QCOMPARE(m_folder->names(), QStringList(u"Help.qly"_s));
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"70 modDoc DocSave"_s));
}

QTEST_MAIN(tst_Damage)
#include "tst_Damage.moc"
