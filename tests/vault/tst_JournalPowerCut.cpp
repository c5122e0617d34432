// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/PowerCut.h"
#include "vault/RecoveryFixture.h"
#include "vault/VersionStore.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

// Every state in which the disk may be when the power goes while a journal or a version is written: what was written
// down once is there, and what was not is there whole or not at all.
class tst_JournalPowerCut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatWasTakenDownIsRecovered_data();
    void whatWasTakenDownIsRecovered();
    void whatWasKeptIsAVersion();
};

namespace
{

QString describe(const std::vector<std::unique_ptr<LeftBehind>> &left, const PowerCut::Disk &disk)
{
    QStringList lines;
    for (const auto &each : left)
        lines.append(each->name() + u' ' + each->damage());
    for (const auto &[name, file] : disk.names) {
        const auto content = disk.contents.find(file);
        lines.append(QFile::decodeName(name).section(u'/', -1) + u' ' +
                     QString::number(content == disk.contents.end() ? 0 : content->second.size()));
    }
    return lines.join(u"; ");
}

// The environment variable asks for more than takes a moment.
bool isTorture()
{
    return qEnvironmentVariableIsSet("QUILLERY_TORTURE_KILLS");
}

// How many ways of losing writes are taken at each change.
int samplesOr(int few)
{
    constexpr int often = 10;
    return isTorture() ? few * often : few;
}

} // namespace

void tst_JournalPowerCut::whatWasTakenDownIsRecovered_data()
{
    QTest::addColumn<bool>("grows");
    QTest::addColumn<bool>("isTyped");
    QTest::newRow("some changes") << false << false;
    QTest::newRow("typing into a long text") << false << true;
    // So that the log of the database is written into it.
    QTest::newRow("so much that the log is carried over") << true << false;
}

void tst_JournalPowerCut::whatWasTakenDownIsRecovered()
{
    QFETCH(const bool, grows);
    QFETCH(const bool, isTyped);
    const QTemporaryDir folder(u"/dev/shm/XXXXXX"_s);
    qint64 time = 5'000'000;
    Vault vault({folder.filePath(u"state/recovery"_s), [&time] { return time; }, false});
    auto outline = std::make_unique<Outline>();
    Entry *root = outline->tree.insert(Relationship::tvwFirst, nullptr);
    QByteArray longText("{\\rtf1 ");
    for (int line = 0; line < 100; ++line)
        longText += "line no. " + QByteArray::number(line) + "\\par ";
    Entry *typedIn = outline->tree.insert(Relationship::tvwChild, root);
    outline->tree.setStoredText(typedIn, longText + "}");
    Document document(std::move(outline));
    document.m_sFile = u"/nowhere/notes.qly"_s;
    vault.attach(document);
    QRandomGenerator random(11);
    const std::shared_ptr<EntryDocument> live = document.texts.open(*typedIn, QFont());
    QTextCursor cursor(&live->document());
    PowerCut::record({QFile::encodeName(folder.path())});
    // What each mark promises.
    std::vector<QStringList> states;
    const int batches = grows ? 40 : 6;
    for (int batch = 0; batch < batches; ++batch) {
        Entry *entry = nullptr;
        if (!isTyped) {
            entry = document.history.insert(Relationship::tvwChild, root);
            document.history.setLabel(entry, u"entry %1"_s.arg(batch));
        }
        if (isTyped) {
            // Here and there, so that a text is kept anew now and then.
            cursor.setPosition(random.bounded(live->document().characterCount()));
            cursor.insertText(QString(300, QChar(u'a' + batch)));
            time += Journal::typingDelay;
        } else if (grows) {
            // Nothing that can be made smaller.
            QByteArray text(150'000, Qt::Uninitialized);
            std::ranges::generate(text, [&random] { return static_cast<char>('!' + random.bounded(90)); });
            document.history.setStoredText(entry, text);
        } else if (batch % 2 == 1) {
            document.history.undo();
        }
        time += Journal::lookInterval;
        vault.look();
        QVERIFY(vault.waitUntilWritten());
        PowerCut::mark();
        states.push_back(documentState(document));
    }
    PowerCut::stop();
    // The folder is watched from now on for what is put there; the vault's own files are open and go on elsewhere.
    int disks = 0;
    QString fault;
    const size_t changes = PowerCut::changeCount();
    // Not every change of so many.
    const size_t step = !grows ? 1 : isTorture() ? 7 : 23;
    for (size_t change = 0; change <= changes; change += step) {
        const int promised = PowerCut::marksBefore(change);
        PowerCut::everyDisk(change, samplesOr(grows ? 1 : 4), [&](const PowerCut::Disk &disk) {
            if (!fault.isEmpty())
                return;
            ++disks;
            PowerCut::restore(disk);
            const auto left = LeftBehind::find(folder.filePath(u"state/recovery"_s));
            QStringList found;
            if (left.size() == 1 && left.front()->damage().isEmpty()) {
                const RecoveredDocument recovered = recoveredFrom(*left.front());
                found = documentState(*recovered.document);
                if (recovered.notPlayed != 0 || recovered.content.lostRecords != 0 ||
                    recovered.content.damagedEntries != 0)
                    fault = u"some of it is damaged"_s;
            }
            const size_t latest = std::min(states.size(), static_cast<size_t>(promised) + 1);
            bool isRight = left.empty() && promised == 0;
            for (size_t state = promised > 0 ? static_cast<size_t>(promised) - 1 : 0; state < latest; ++state)
                isRight = isRight || found == states[state];
            if (!isRight)
                fault += u"what is recovered is nothing that was promised: "_s + describe(left, disk);
            if (!fault.isEmpty())
                fault = u"before change %1 of %2, disk %3, %4 promised: "_s.arg(change).arg(changes).arg(disks).arg(
                            promised) +
                        fault;
        });
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
    QVERIFY2(disks > 100, qPrintable(QString::number(disks)));
    qInfo("%d disks at %d changes", disks, int(changes));
}

void tst_JournalPowerCut::whatWasKeptIsAVersion()
{
    const QTemporaryDir folder(u"/dev/shm/XXXXXX"_s);
    const QString path = folder.filePath(u"versions.db"_s);
    PowerCut::record({QFile::encodeName(folder.path())});
    std::vector<KeptOutline> kept;
    for (int version = 0; version < 4; ++version) {
        KeptOutline outline;
        for (int entry = 0; entry < 30; ++entry) {
            EntryRecord record;
            record.level = entry > 0 ? 1 : 0;
            record.label = u"entry %1 of %2"_s.arg(entry).arg(entry % 4 == version ? version : 0);
            record.storedText = QByteArray(500, static_cast<char>('a' + (entry % 7 == version ? version : 0)));
            outline.entries.push_back(record);
        }
        {
            VersionStore store(path, version == 0 ? Database::Opening::Create : Database::Opening::Existing);
            store.keep(outline, {QDateTime(QDate(2026, 3, 4 + version), QTime(1, 2, 3)), u"/nowhere"_s, {}});
        }
        PowerCut::mark();
        kept.push_back(outline);
    }
    PowerCut::stop();
    int disks = 0;
    QString fault;
    for (size_t change = 0; change <= PowerCut::changeCount(); ++change) {
        const auto promised = static_cast<size_t>(PowerCut::marksBefore(change));
        PowerCut::everyDisk(change, samplesOr(4), [&](const PowerCut::Disk &disk) {
            if (!fault.isEmpty())
                return;
            ++disks;
            PowerCut::restore(disk);
            size_t found = 0;
            try {
                if (QFile::exists(path)) {
                    VersionStore store(path, Database::Opening::Existing);
                    for (const VersionInfo &info : store.list()) {
                        if (found >= kept.size() || !(store.read(info.number) == kept[found]))
                            fault = u"a version is another"_s;
                        ++found;
                    }
                }
            } catch (const std::exception &error) {
                // One that was never finished holds nothing.
                if (promised > 0)
                    fault = QString::fromUtf8(error.what());
            }
            if (found < promised)
                fault = u"%1 versions, %2 promised"_s.arg(found).arg(promised);
            if (!fault.isEmpty())
                fault =
                    u"before change %1 of %2, disk %3: "_s.arg(change).arg(PowerCut::changeCount()).arg(disks) + fault;
        });
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
    QVERIFY2(disks > 100, qPrintable(QString::number(disks)));
    qInfo("%d disks", disks);
}

QTEST_GUILESS_MAIN(tst_JournalPowerCut)
#include "tst_JournalPowerCut.moc"
