// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/ErrorRecorder.h"
#include "vault/VersionStore.h"

#include "model/Outline.h"
#include "model/StoredText.h"
#include "vault/PackedBytes.h"
#include "vault/TextWords.h"
#include "vault/VersionThinning.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QDateTime noon(QDate(2026, 3, 4), QTime(12, 0)); // a Wednesday

VersionSave saveAt(const QDateTime &time, const QByteArray &digest = {})
{
    return {time, u"/notes/plan.qly"_s, digest};
}

EntryRecord recordOf(int level, const QString &label, const QByteArray &text)
{
    EntryRecord record;
    record.level = level;
    record.label = label;
    record.storedText = text;
    return record;
}

// Many entries with texts that are their own.
KeptOutline largeOutline(int count)
{
    KeptOutline outline;
    outline.entries.reserve(static_cast<size_t>(count));
    for (int place = 0; place < count; ++place) {
        const int level = place == 0 ? 0 : place % 10 == 1 ? 1 : 2;
        outline.entries.push_back(
            recordOf(level, u"Entry number %1"_s.arg(place),
                     NodeTextCompressIfRequired("{\\rtf1 Some words of the entry " + QByteArray::number(place) + "}")));
    }
    outline.selected = 0;
    return outline;
}

// A subtree's end.
size_t endOfBranch(const KeptOutline &outline, size_t top)
{
    size_t end = top + 1;
    while (end < outline.entries.size() && outline.entries[end].level > outline.entries[top].level)
        ++end;
    return end;
}

void changeAtRandom(KeptOutline &outline, QRandomGenerator &random)
{
    const auto any = [&] { return static_cast<size_t>(random.bounded(static_cast<quint32>(outline.entries.size()))); };
    const size_t place = any();
    EntryRecord &entry = outline.entries[place];
    switch (random.bounded(9)) {
    case 0:
        entry.label = random.bounded(4) == 0 ? QString(QChar(0xd800)) + u"\0x"_s
                                             : u"\u00e4 \U0001f600 %1"_s.arg(random.generate());
        break;
    case 1:
        entry.storedText =
            random.bounded(3) == 0 ? QByteArray() : NodeTextCompressIfRequired(QByteArray::number(random.bounded(20)));
        break;
    case 2:
        entry.tagged = !entry.tagged;
        entry.expanded = !entry.expanded;
        break;
    case 3:
        entry.sorted = !entry.sorted;
        entry.foreignRecords = {{random.bounded(3), "{unknown " + QByteArray::number(random.bounded(100)) + "}"}};
        break;
    case 4:
    case 5: {
        EntryRecord added = recordOf(entry.level + 1, u"new"_s, "text");
        outline.entries.insert(outline.entries.begin() + static_cast<qptrdiff>(place) + 1, added);
        break;
    }
    case 6:
        if (place > 0)
            outline.entries.erase(outline.entries.begin() + static_cast<qptrdiff>(place),
                                  outline.entries.begin() + static_cast<qptrdiff>(endOfBranch(outline, place)));
        break;
    case 7:
        outline.outlineFont.setName(u"Font %1"_s.arg(random.bounded(3)));
        outline.outlineFont.setSize(random.bounded(200000));
        outline.textFont.setBold(random.bounded(2) == 0);
        outline.textFont.setUnderline(random.bounded(2) == 0);
        break;
    default:
        outline.foreignHeader = {{1, QByteArray::number(random.bounded(5))}};
        outline.foreignTrailer = QByteArray(random.bounded(3), '\0');
        break;
    }
    outline.selected = random.bounded(static_cast<int>(outline.entries.size()) + 1) - 1;
}

qint64 bytesOf(const QString &path)
{
    qint64 bytes = 0;
    for (const QString &file : Database::filesOf(path))
        bytes += QFile(file).size();
    return bytes;
}

} // namespace

class tst_VersionStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyVersionOfARandomHistoryIsReadAsItWasSaved();
    void anOutlineOfAVersionIsTheOutline();
    void aChangedEntryCostsALittle_data();
    void aChangedEntryCostsALittle();
    void whatIsTheSameIsNoNewVersion();
    void theListTellsWhatChanged();
    void wordsAreThoseThatAreSeen();
    void aVersionIsVerifiedOnlyWhenItIsWhatWasSaved();
    void thinningKeepsLessTheOlderItIs_data();
    void thinningKeepsLessTheOlderItIs();
    void thinningTwiceIsThinningOnce();
    void theLastVerifiedAndTheNewestVersionStay();
    void whatNoVersionNeedsGoes();
    void theOldestGoWhereThereIsNoRoom();
    void aFileIsKnownByWhatItHeld();
    void damageIsAnErrorAndNeverAnotherText();
    void packedBytesComeBackAndDamageIsAnError();
};

void tst_VersionStore::everyVersionOfARandomHistoryIsReadAsItWasSaved()
{
    const QTemporaryDir folder;
    QRandomGenerator random(3);
    for (int round = 0; round < 6; ++round) {
        const QString path = folder.filePath(u"%1.db"_s.arg(round));
        KeptOutline outline = largeOutline(1 + random.bounded(300));
        std::vector<std::pair<qint64, KeptOutline>> saved;
        for (int save = 0; save < 25; ++save) {
            VersionStore store(path, save == 0 ? Database::Opening::Create : Database::Opening::Existing);
            saved.emplace_back(store.keep(outline, saveAt(noon.addSecs(save))), outline);
            QVERIFY(store.verify(saved.back().first, outline));
            for (int change = random.bounded(4); change > 0; --change)
                changeAtRandom(outline, random);
        }
        VersionStore store(path, Database::Opening::Existing);
        for (const auto &[version, content] : saved)
            QVERIFY(store.read(version) == content);
    }
}

void tst_VersionStore::anOutlineOfAVersionIsTheOutline()
{
    QRandomGenerator random(4);
    KeptOutline kept = largeOutline(50);
    for (int change = 0; change < 60; ++change) {
        changeAtRandom(kept, random);
        const std::unique_ptr<Outline> outline = outlineOf(kept);
        QCOMPARE(outline->tree.brokenInvariant(), QString());
        QVERIFY(keptOutline(*outline) == kept);
    }
    QVERIFY(keptOutline(Outline()) == KeptOutline());
    QCOMPARE(outlineOf(KeptOutline())->tree.entryCount(), 0);
}

void tst_VersionStore::aChangedEntryCostsALittle_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change : {"text", "label", "new entry", "removed entry", "expansion", "selection"})
        QTest::newRow(change) << QString::fromLatin1(change);
}

void tst_VersionStore::aChangedEntryCostsALittle()
{
    QFETCH(QString, change);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"versions.db"_s);
    KeptOutline outline = largeOutline(10'000);
    VersionStore(path, Database::Opening::Create).keep(outline, saveAt(noon));
    const qint64 before = bytesOf(path);
    constexpr int saves = 20;
    for (int save = 1; save <= saves; ++save) {
        const size_t place = static_cast<size_t>(save) * 397;
        EntryRecord &entry = outline.entries[place];
        if (change == u"text")
            entry.storedText = "another text";
        else if (change == u"label")
            entry.label += u"!"_s;
        else if (change == u"new entry")
            outline.entries.insert(outline.entries.begin() + static_cast<qptrdiff>(place), recordOf(2, u"new"_s, {}));
        else if (change == u"removed entry")
            outline.entries.erase(outline.entries.begin() + static_cast<qptrdiff>(endOfBranch(outline, place)) - 1);
        else if (change == u"expansion")
            entry.expanded = true;
        else
            outline.selected = static_cast<int>(place);
        VersionStore(path, Database::Opening::Existing).keep(outline, saveAt(noon.addSecs(save)));
    }
    const qint64 cost = (bytesOf(path) - before) / saves;
    constexpr qint64 mostBytes = 8192;
    QVERIFY2(cost <= mostBytes, qPrintable(u"%1 bytes a version, %2 the first"_s.arg(cost).arg(before)));
}

void tst_VersionStore::whatIsTheSameIsNoNewVersion()
{
    const QTemporaryDir folder;
    VersionStore store(folder.filePath(u"versions.db"_s), Database::Opening::Create);
    KeptOutline outline = largeOutline(20);
    const qint64 first = store.keep(outline, saveAt(noon, "a"));
    QCOMPARE(store.keep(outline, saveAt(noon.addSecs(1), "b")), first);
    outline.entries[3].label = u"another"_s;
    const qint64 second = store.keep(outline, saveAt(noon.addSecs(2)));
    QVERIFY(second > first);
    // What was there before, but not last, is a version of its own.
    outline.entries[3].label = u"Entry number 3"_s;
    QVERIFY(store.keep(outline, saveAt(noon.addSecs(3))) > second);
    QVERIFY(store.hasFileOf("a") && store.hasFileOf("b"));
}

void tst_VersionStore::theListTellsWhatChanged()
{
    const QTemporaryDir folder;
    VersionStore store(folder.filePath(u"versions.db"_s), Database::Opening::Create);
    KeptOutline outline;
    outline.entries = {recordOf(0, u"Plan of the year"_s, {}), recordOf(1, u"Spring"_s, "two words"),
                       recordOf(1, u"Summer"_s, {})};
    store.verify(store.keep(outline, saveAt(noon)), outline);
    outline.entries[1].storedText = "three words now";
    outline.entries.pop_back();
    outline.entries.push_back(recordOf(2, u"March"_s, {}));
    outline.entries.push_back(recordOf(2, u"April"_s, {}));
    store.keep(outline, saveAt(noon.addSecs(60)));
    const std::vector<VersionInfo> versions = store.list();
    QCOMPARE(versions.size(), 2U);
    QCOMPARE(versions[0].time, noon);
    QCOMPARE(versions[0].entries, 3);
    QCOMPARE(versions[0].words, 8);
    QVERIFY(versions[0].isVerified);
    QCOMPARE(versions[0].changes, (DifferenceCounts{3, 0, 0}));
    QCOMPARE(versions[1].time, noon.addSecs(60));
    QCOMPARE(versions[1].entries, 4);
    QCOMPARE(versions[1].words, 10);
    QVERIFY(!versions[1].isVerified);
    QCOMPARE(versions[1].changes, (DifferenceCounts{2, 1, 1}));
}

void tst_VersionStore::wordsAreThoseThatAreSeen()
{
    QCOMPARE(wordCount(u""), 0);
    QCOMPARE(wordCount(u"  one two\u00a0three - 4 \r\n\u00fcber"), 5);
    QCOMPARE(wordsOfText("{\\rtf1\\b bold} words"), 1);
    QCOMPARE(wordsOfText(NodeTextCompressIfRequired("{\\rtf1 {\\fonttbl{\\f0 Arial;}}one two\\par three}")), 3);
    QCOMPARE(wordsOfText("100,no stream"), 0);
    QCOMPARE(wordsOfText("plain words"), 2);
}

void tst_VersionStore::aVersionIsVerifiedOnlyWhenItIsWhatWasSaved()
{
    const QTemporaryDir folder;
    VersionStore store(folder.filePath(u"versions.db"_s), Database::Opening::Create);
    KeptOutline outline = largeOutline(5);
    const qint64 version = store.keep(outline, saveAt(noon));
    outline.entries[2].storedText += 'x';
    QVERIFY(!store.verify(version, outline));
    QVERIFY(!store.list()[0].isVerified);
}

void tst_VersionStore::thinningKeepsLessTheOlderItIs_data()
{
    QTest::addColumn<qint64>("age");
    QTest::addColumn<qint64>("apart");
    QTest::addColumn<bool>("goes");
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    constexpr qint64 day = 24 * hour;
    QTest::newRow("a second apart, a day old") << day << qint64(1) << false;
    QTest::newRow("a second apart, over a day old") << day + 1 << qint64(1) << true;
    QTest::newRow("in the next hour, over a day old") << day + 1 << hour << false;
    QTest::newRow("in the next hour, a week old") << 7 * day << hour << false;
    QTest::newRow("in one hour, a week old") << 7 * day << minute << true;
    QTest::newRow("in the next hour, over a week old") << 7 * day + 1 << hour << true;
    QTest::newRow("on the next day, over a week old") << 7 * day + 1 << day << false;
    QTest::newRow("on the next day, a quarter old") << 91 * day << day << false;
    QTest::newRow("on the next day, over a quarter old") << 91 * day + 1 << day << true;
    QTest::newRow("in the next week, over a quarter old") << 91 * day + 1 << 7 * day << false;
    QTest::newRow("in the next week, years old") << 3000 * day << 7 * day << false;
    QTest::newRow("in the future") << -day << qint64(1) << false;
}

void tst_VersionStore::thinningKeepsLessTheOlderItIs()
{
    QFETCH(qint64, age);
    QFETCH(qint64, apart);
    QFETCH(bool, goes);
    // Neither at the end of an hour, nor of a day, nor of a week.
    const QDateTime older(QDate(2026, 3, 4), QTime(12, 10));
    const QDateTime now = older.addSecs(age);
    const std::vector<VersionAge> versions = {{older, false}, {older.addSecs(apart), false}, {now.addSecs(10), false}};
    QCOMPARE(supernumeraryVersions(versions, now), goes ? std::vector<size_t>{0} : std::vector<size_t>());
}

void tst_VersionStore::thinningTwiceIsThinningOnce()
{
    // A save every three quarters of an hour for half a year, thinned after each as it comes, or at the end alone.
    std::vector<VersionAge> often;
    std::vector<VersionAge> once;
    QDateTime time = noon;
    const auto thin = [&time](std::vector<VersionAge> &versions) {
        const std::vector<size_t> places = supernumeraryVersions(versions, time);
        for (auto place = places.rbegin(); place != places.rend(); ++place)
            versions.erase(versions.begin() + static_cast<qptrdiff>(*place));
    };
    for (int save = 0; save < 180 * 32; ++save) {
        time = time.addSecs(2700);
        often.push_back({time, false});
        once.push_back({time, false});
        thin(often);
    }
    thin(once);
    const auto timesOf = [](const std::vector<VersionAge> &versions) {
        QList<QDateTime> times;
        for (const VersionAge &version : versions)
            times.append(version.time);
        return times;
    };
    QCOMPARE(timesOf(often), timesOf(once));
    // A day of all, six days of hours, twelve weeks of days, thirteen weeks.
    QVERIFY2(often.size() > 240 && often.size() < 290, qPrintable(QString::number(often.size())));
}

void tst_VersionStore::theLastVerifiedAndTheNewestVersionStay()
{
    std::vector<VersionAge> versions;
    for (int second = 0; second < 5; ++second)
        versions.push_back({noon.addSecs(second), second == 1 || second == 2});
    const QDateTime later = noon.addYears(1);
    QCOMPARE(supernumeraryVersions(versions, later), (std::vector<size_t>{0, 1, 3}));
    QCOMPARE(firstToGo(versions), std::optional<size_t>(0));
    QCOMPARE(firstToGo({versions[2], versions[3], versions[4]}), std::optional<size_t>(1));
    QCOMPARE(firstToGo({versions[2], versions[4]}), std::nullopt);
    QCOMPARE(firstToGo({versions[4]}), std::nullopt);
    QCOMPARE(firstToGo({}), std::nullopt);
}

void tst_VersionStore::whatNoVersionNeedsGoes()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"versions.db"_s);
    VersionStore store(path, Database::Opening::Create);
    KeptOutline outline = largeOutline(200);
    const KeptOutline first = outline;
    store.keep(outline, saveAt(noon, "first"));
    outline.entries[7].storedText = "a secret that is given up";
    store.keep(outline, saveAt(noon.addSecs(1), "second"));
    outline.entries[7].storedText = "what takes its place";
    outline.entries.push_back(recordOf(1, u"added"_s, {}));
    const qint64 last = store.keep(outline, saveAt(noon.addSecs(2), "last"));
    QVERIFY(store.thin(noon.addDays(200), VersionStore::schema().version() * (qint64(1) << 30)));
    const std::vector<VersionInfo> versions = store.list();
    QCOMPARE(versions.size(), 1U);
    QVERIFY(store.read(last) == outline);
    QCOMPARE(versions[0].changes, (DifferenceCounts{201, 0, 0}));
    QVERIFY(!store.hasFileOf("first"));
    QVERIFY(store.hasFileOf("last"));
    QVERIFY(!store.thin(noon.addDays(200), qint64(1) << 30));
}

void tst_VersionStore::theOldestGoWhereThereIsNoRoom()
{
    const QTemporaryDir folder;
    VersionStore store(folder.filePath(u"versions.db"_s), Database::Opening::Create);
    KeptOutline outline = largeOutline(3);
    QRandomGenerator random(5);
    constexpr qint64 mostBytes = 1 << 20;
    for (int save = 0; save < 12; ++save) {
        // Nothing that can be deflated: each version costs a quarter.
        QByteArray text(mostBytes / 4, '\0');
        for (char &byte : text)
            byte = static_cast<char>(random.generate());
        outline.entries[1].storedText = text;
        store.verify(store.keep(outline, saveAt(noon.addSecs(save))), outline);
        store.thin(noon.addSecs(save), mostBytes);
        QVERIFY(store.size() <= mostBytes);
    }
    QCOMPARE(store.list().size(), 3U);
    QVERIFY(store.read(store.list().back().number) == outline);
    // One that is larger than all that there is room for stays all the same.
    store.thin(noon, 1);
    QCOMPARE(store.list().size(), 1U);
}

void tst_VersionStore::aFileIsKnownByWhatItHeld()
{
    const QTemporaryDir folder;
    VersionStore store(folder.filePath(u"versions.db"_s), Database::Opening::Create);
    store.keep(largeOutline(2), saveAt(noon, VersionStore::digestOf("bytes")));
    QVERIFY(store.hasFileOf(VersionStore::digestOf("bytes")));
    QVERIFY(!store.hasFileOf(VersionStore::digestOf("other bytes")));
    QCOMPARE(store.file(), u"/notes/plan.qly"_s);
    store.setFile(u"/other/plan.qly"_s);
    QCOMPARE(store.file(), u"/other/plan.qly"_s);
}

void tst_VersionStore::damageIsAnErrorAndNeverAnotherText()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"versions.db"_s);
    const KeptOutline outline = largeOutline(300);
    qint64 version = 0;
    {
        VersionStore store(path, Database::Opening::Create);
        version = store.keep(outline, saveAt(noon));
    }
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    file.close();
    QRandomGenerator random(6);
    int refused = 0;
    for (int round = 0; round < 120; ++round) {
        QByteArray damaged = whole;
        const auto place = static_cast<qsizetype>(random.bounded(static_cast<quint32>(whole.size())));
        const qsizetype length = std::min<qsizetype>(1 + random.bounded(200), whole.size() - place);
        for (qsizetype at = place; at < place + length; ++at)
            damaged[at] = static_cast<char>(random.generate());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(damaged);
        file.close();
        const int error = errorNumberOf([&] {
            VersionStore store(path, Database::Opening::Existing);
            const KeptOutline read = store.read(version);
            QVERIFY(read == outline);
        });
        refused += error != 0;
    }
    QVERIFY2(refused > 30, qPrintable(QString::number(refused)));
}

void tst_VersionStore::packedBytesComeBackAndDamageIsAnError()
{
    Packer packer;
    const QList<qint64> numbers = {
        0, 1, -1, 63, -64, 64, 1LL << 40, std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()};
    for (const qint64 number : numbers) {
        packer.difference(number);
        packer.number(static_cast<quint64>(number));
    }
    const QString odd = QString(QChar(0xdc00)) + u"a\0\U0001f600"_s;
    packer.words(odd);
    packer.words(u"\u00e4"_s);
    packer.bytes("bytes");
    Unpacker unpacker(packer.packed());
    for (const qint64 number : numbers) {
        QCOMPARE(unpacker.difference(), number);
        QCOMPARE(unpacker.number(), static_cast<quint64>(number));
    }
    QCOMPARE(unpacker.words(), odd);
    QCOMPARE(unpacker.words(), u"\u00e4"_s);
    QCOMPARE(unpacker.bytes(), "bytes");
    QVERIFY(unpacker.atEnd());
    QCOMPARE(errorNumberOf([&] { unpacker.number(); }), 321);
    QCOMPARE(errorNumberOf([] {
                 Unpacker("\x05"
                          "ab")
                     .bytes();
             }),
             321);
    QCOMPARE(errorNumberOf([] { Unpacker(QByteArray(11, '\xff')).number(); }), 321);
    QCOMPARE(inflatedBytes(deflated("some bytes")), "some bytes");
    QCOMPARE(inflatedBytes(deflated({})), QByteArray());
    QCOMPARE(errorNumberOf([] {
                 inflatedBytes("\x05"
                               "no stream");
             }),
             321);
    QCOMPARE(unpackedNumbers(packedNumbers({5, 6, 7, 3, 900})), (std::vector<qint64>{5, 6, 7, 3, 900}));
}

QTEST_GUILESS_MAIN(tst_VersionStore)
#include "tst_VersionStore.moc"
