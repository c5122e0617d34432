// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/FailingCalls.h"
#include "vault/RecoveryFixture.h"
#include "vault/VersionFolder.h"
#include "vault/VersionKeeper.h"
#include "vault/VersionStore.h"

#include "util/RunTimeError.h"

#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;

// Each file call of writing a journal or a version fails in turn, with every error of a disk that is full, damaged or
// not to be written: it is told, nothing that was there is lost, and all is well once the disk is.

namespace
{

constexpr int diskErrors[] = {ENOSPC, EDQUOT, EIO, EROFS};

// A document and its journal, which is written in this thread.
class KeptDocument final : private JournalKeeper
{
public:
    KeptDocument()
        : m_writer(m_folder.filePath(u"recovery"_s))
    {
        auto outline = std::make_unique<Outline>();
        Entry *root = outline->tree.insert(Relationship::tvwFirst, nullptr);
        outline->tree.setLabel(root, u"root"_s);
        document = std::make_unique<Document>(std::move(outline));
        document->m_sFile = u"/nowhere/notes.qly"_s;
        m_journal = std::make_unique<Journal>(static_cast<JournalKeeper &>(*this), 1, *document);
        QObject::connect(&m_writer, &JournalWriter::written, m_journal.get(),
                         [this](int, qint64 size) { m_journal->noteWritten(size); });
        QObject::connect(&m_writer, &JournalWriter::failed, m_journal.get(),
                         [this](int, const QString &why, const QString &said) { m_journal->noteFailed(why, said); });
    }

    void name(const QString &label)
    {
        document->history.setLabel(document->tree.root(), label);
        look();
    }

    void look() { m_journal->look(); }

    void wait(qint64 milliseconds) { m_time += milliseconds; }

    bool isWritten() const { return m_journal->isWritten(); }

    // The label that a start would find if the program were killed now; empty when there is nothing.
    QString recovered()
    {
        const QString crashed = m_folder.filePath(u"crashed %1"_s.arg(++m_crashes));
        copyAsLeft(m_folder.filePath(u"recovery"_s), crashed);
        const auto left = LeftBehind::find(crashed);
        if (left.size() != 1 || !left.front()->damage().isEmpty())
            return QString::number(left.size());
        return recoveredFrom(*left.front()).document->tree.root()->label();
    }

    std::unique_ptr<Document> document;

private:
    qint64 now() const override { return m_time; }

    void wake() override {}

    void write(int journal, RecoveryBatch batch) override { m_writer.write(journal, batch); }

    void discard(int journal) override { m_writer.discard(journal); }

    void leave(int journal) override { m_writer.leave(journal); }

    const QTemporaryDir m_folder{u"/dev/shm/XXXXXX"_s};
    qint64 m_time = 1'000'000;
    int m_crashes = 0;
    JournalWriter m_writer;
    std::unique_ptr<Journal> m_journal;
};

KeptOutline outlineNamed(const QString &name)
{
    KeptOutline outline;
    for (int entry = 0; entry < 20; ++entry) {
        EntryRecord record;
        record.level = entry > 0 ? 1 : 0;
        record.label = u"%1 %2"_s.arg(name).arg(entry);
        record.storedText = QByteArray(400, static_cast<char>('a' + entry));
        outline.entries.push_back(record);
    }
    return outline;
}

VersionSave saveOf(int day)
{
    return {QDateTime(QDate(2026, 3, day), QTime(1, 2, 3)), u"/nowhere"_s, {}};
}

} // namespace

class tst_VaultFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aJournalGoesOnWhenTheDiskDoes_data();
    void aJournalGoesOnWhenTheDiskDoes();
    void versionsStayWhenKeepingOneFails();
    void aDiskThatFailsOnceSetsNoVersionsAside();
};

void tst_VaultFaults::aJournalGoesOnWhenTheDiskDoes_data()
{
    QTest::addColumn<bool>("isFirst");
    QTest::addColumn<bool>("forGood");
    QTest::newRow("beginning, one call fails") << true << false;
    QTest::newRow("beginning, all from one on fail") << true << true;
    QTest::newRow("going on, one call fails") << false << false;
    QTest::newRow("going on, all from one on fail") << false << true;
}

void tst_VaultFaults::aJournalGoesOnWhenTheDiskDoes()
{
    QFETCH(const bool, isFirst);
    QFETCH(const bool, forGood);
    size_t calls = 0;
    {
        KeptDocument kept;
        if (!isFirst)
            kept.name(u"before"_s);
        FailingCalls::startListing();
        kept.name(u"named"_s);
        calls = FailingCalls::stopListing().size();
        QCOMPARE(kept.recovered(), u"named"_s);
    }
    QVERIFY2(calls > (isFirst ? 20 : 3), qPrintable(QString::number(calls)));
    int told = 0;
    for (const int error : diskErrors) {
        for (size_t call = 0; call < calls; ++call) {
            KeptDocument kept;
            if (!isFirst)
                kept.name(u"before"_s);
            (forGood ? FailingCalls::failFrom : FailingCalls::failAt)(static_cast<int>(call), error);
            kept.name(u"named"_s);
            FailingCalls::stop();
            const QByteArray where = QByteArray::number(call) + ": " + strerror(error);
            const bool isTold = kept.document->notice(NoticeKind::NoRecovery);
            told += isTold;
            QVERIFY2(isTold != kept.isWritten(), where.constData());
            // A disk that fails once may have written all the same.
            const QString left = kept.recovered();
            QVERIFY2(left == u"named"_s || (isTold && left == (isFirst ? u"0"_s : u"before"_s)),
                     (where + ' ' + left.toUtf8()).constData());
            kept.wait(Journal::retryDelay);
            kept.look();
            QVERIFY2(kept.isWritten() && !kept.document->notice(NoticeKind::NoRecovery), where.constData());
            QCOMPARE(kept.recovered(), u"named"_s);
            kept.name(u"named again"_s);
            QCOMPARE(kept.recovered(), u"named again"_s);
        }
    }
    QVERIFY(told > 4);
}

void tst_VaultFaults::versionsStayWhenKeepingOneFails()
{
    const QTemporaryDir folder(u"/dev/shm/XXXXXX"_s);
    const QString before = folder.filePath(u"before"_s);
    for (int day = 1; day < 3; ++day) {
        VersionStore store(before, day == 1 ? Database::Opening::Create : Database::Opening::Existing);
        store.keep(outlineNamed(QString::number(day)), saveOf(day));
    }
    const QString path = folder.filePath(u"versions"_s);
    const auto keepThird = [&] {
        VersionStore store(path, Database::Opening::Existing);
        store.keep(outlineNamed(u"3"_s), saveOf(3));
    };
    QVERIFY(QFile::copy(before, path));
    FailingCalls::startListing();
    keepThird();
    const std::vector<std::string> names = FailingCalls::stopListing();
    const size_t calls = names.size();
    QVERIFY2(calls > 10, qPrintable(QString::number(calls)));
    int failures = 0;
    for (const bool forGood : {false, true}) {
        for (const int error : diskErrors) {
            for (size_t call = 0; call < calls; ++call) {
                for (const QString &file : Database::filesOf(path))
                    QFile::remove(file);
                QVERIFY(QFile::copy(before, path));
                const QByteArray where = QByteArray::number(call) + ": " + strerror(error);
                (forGood ? FailingCalls::failFrom : FailingCalls::failAt)(static_cast<int>(call), error);
                bool isKept = true;
                ErrorNumber number = {};
                try {
                    keepThird();
                } catch (const RunTimeError &failure) {
                    isKept = false;
                    number = failure.number();
                }
                FailingCalls::stop();
                failures += !isKept;
                // As damage it would be set aside. SQLite takes what cannot be read for that.
                const bool isReadWrongly = error == EIO && (forGood || names[call] == "read");
                QVERIFY2(number != ErrorNumber::InvalidFileFormat || isReadWrongly, where.constData());
                VersionStore store(path, Database::Opening::Existing);
                const std::vector<VersionInfo> versions = store.list();
                QVERIFY2(versions.size() == 3 || (!isKept && versions.size() == 2), where.constData());
                for (size_t place = 0; place < versions.size(); ++place)
                    QVERIFY2(store.read(versions[place].number) == outlineNamed(QString::number(place + 1)),
                             where.constData());
                store.keep(outlineNamed(u"3"_s), saveOf(3));
                QCOMPARE(store.list().size(), size_t(3));
            }
        }
    }
    QVERIFY(failures > 10);
}

void tst_VaultFaults::aDiskThatFailsOnceSetsNoVersionsAside()
{
    bool interfered = true;
    int calls = 0;
    for (; interfered && calls < 1000; ++calls) {
        const QTemporaryDir folder(u"/dev/shm/XXXXXX"_s);
        const QString versions = folder.filePath(u"versions"_s);
        auto outline = std::make_unique<Outline>();
        Entry *root = outline->tree.insert(Relationship::tvwFirst, nullptr);
        Document document(std::move(outline));
        document.m_sFile = folder.filePath(u"notes.qly"_s);
        for (int save = 0; save < 3; ++save) {
            document.history.setLabel(root, QString::number(save));
            VersionKeeper keeper(versions);
            // The last one meets the failure.
            if (save == 2) {
                FailingCalls::countMainThread(false);
                FailingCalls::failAt(calls, EIO);
            }
            keeper.fileWritten(document);
        }
        interfered = FailingCalls::stop();
        FailingCalls::countMainThread(true);
        const QStringList files = QDir(versions).entryList(QDir::Files);
        QVERIFY2(files.filter(u"damaged"_s).isEmpty(), qPrintable(u"call %1: %2"_s.arg(calls).arg(files.join(u' '))));
        VersionStore store(versionsPathOf(versions, document.m_sFile), Database::Opening::Existing);
        QVERIFY2(store.list().size() >= 2, qPrintable(QString::number(calls)));
    }
    QVERIFY2(calls > 10 && calls < 1000, qPrintable(QString::number(calls)));
}

QTEST_GUILESS_MAIN(tst_VaultFaults)
#include "tst_VaultFaults.moc"
