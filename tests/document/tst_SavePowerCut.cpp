// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/SafeFile.h"
#include "document/UnfinishedSaves.h"
#include "document/modDoc.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"
#include "support/Obstacles.h"
#include "support/PowerCut.h"
#include "support/RawOutline.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Every state in which the disk may be when the power goes at any moment of saving: the file is whole, old or new, and
// new once the save has said that it succeeded. One that is written over where it stands may be neither; then both are
// there and are offered.
class tst_SavePowerCut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void whateverTheDiskKeepsTheFileIsWhole_data();
    void whateverTheDiskKeepsTheFileIsWhole();

private:
    std::unique_ptr<FakePorts> m_fake;
    std::unique_ptr<ErrorRecorder> m_errors;
    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<TestFolder> m_state;
};

namespace
{

const QByteArray oldContent = "{\\qlf_formatversion 1}\r\nold";
const QByteArray olderContent = "{\\qlf_formatversion 1}\r\nolder";

} // namespace

void tst_SavePowerCut::init()
{
    m_fake = std::make_unique<FakePorts>();
    m_errors = std::make_unique<ErrorRecorder>();
    m_folder = std::make_unique<TestFolder>();
    m_state = std::make_unique<TestFolder>();
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_state->path()));
}

void tst_SavePowerCut::cleanup()
{
    PowerCut::stop();
    m_errors.reset();
    m_fake.reset();
}

void tst_SavePowerCut::whateverTheDiskKeepsTheFileIsWhole_data()
{
    QTest::addColumn<bool>("existed");
    QTest::addColumn<bool>("twoNames");
    QTest::addColumn<bool>("fullFolder");
    QTest::addColumn<bool>("backup");
    QTest::newRow("a new file") << false << false << false << true;
    QTest::newRow("without a backup") << true << false << false << false;
    QTest::newRow("with a backup over an older one") << true << false << false << true;
    QTest::newRow("a file with two names") << true << true << false << true;
    QTest::newRow("a file with two names, without a backup") << true << true << false << false;
    QTest::newRow("a folder that takes no new file") << true << false << true << false;
}

void tst_SavePowerCut::whateverTheDiskKeepsTheFileIsWhole()
{
    QFETCH(const bool, existed);
    QFETCH(const bool, twoNames);
    QFETCH(const bool, fullFolder);
    QFETCH(const bool, backup);
    if (existed)
        m_folder->write(u"a.qly"_s, oldContent);
    if (backup)
        m_folder->write(u"a.bak"_s, olderContent);
    if (twoNames)
        QCOMPARE(link(qPrintable((*m_folder)(u"a.qly"_s)), qPrintable((*m_folder)(u"twin.qly"_s))), 0);
    g_options.Backup = backup;
    Document &document = m_fake->windows.createDocument();
    EntryTree &tree = rawOutline(document).tree;
    plantOutline(tree, {u"Root"_s, u" A"_s});
    // More than what is written at once.
    tree.setStoredText(tree.root(), QByteArray(1'500'000, 'n'));
    document.history.touch();
    m_fake->dialogs.answers.assign(3, Answer::Yes);

    PowerCut::record({QFile::encodeName(m_folder->path()), QFile::encodeName(m_state->path())});
    {
        std::optional<OrdinaryUser> user;
        if (fullFolder) {
            m_folder->setMode(QString(), 0555);
            user.emplace();
        }
        QCOMPARE(modDoc::save(document, (*m_folder)(u"a.qly"_s)), SaveOutcome::Saved);
    }
    m_folder->setMode(QString(), 0777);
    PowerCut::mark();
    PowerCut::stop();
    const QByteArray whole = nativeBytes(document.outline());
    QCOMPARE(m_folder->read(u"a.qly"_s), whole);

    int disks = 0;
    QString fault;
    for (size_t change = 0; change <= PowerCut::changeCount(); ++change) {
        PowerCut::everyDisk(change, 10, [&](const PowerCut::Disk &disk) {
            if (!fault.isEmpty())
                return;
            ++disks;
            PowerCut::restore(disk);
            const QByteArray content = m_folder->read(u"a.qly"_s);
            const bool isOld = existed ? content == oldContent : content.isNull();
            const bool isNew = content == whole;
            const std::vector<UnfinishedSave> unfinished = unfinishedSaves((*m_folder)(u"a.qly"_s));
            const auto holds = [&](const QByteArray &expected) {
                return std::ranges::any_of(
                    unfinished, [&](const UnfinishedSave &each) { return readWholeFile(each.path) == expected; });
            };
            if (PowerCut::marksBefore(change) > 0 && !isNew)
                fault = u"what was saved is not there"_s;
            else if (!isOld && !isNew && !((twoNames || fullFolder) && holds(oldContent) && holds(whole)))
                fault = u"the file is neither the old nor the new one"_s;
            for (const UnfinishedSave &each : unfinished) {
                const QByteArray offered = readWholeFile(each.path);
                if (offered != whole && offered != oldContent)
                    fault = u"what is offered is torn"_s;
            }
            const QByteArray kept = m_folder->read(u"a.bak"_s);
            if (kept != (backup ? olderContent : QByteArray()) && (!backup || !existed || kept != oldContent))
                fault = u"the backup is torn"_s;
            if (!fault.isEmpty())
                fault = u"before change %1 of %2, disk %3: "_s.arg(change).arg(PowerCut::changeCount()).arg(disks) +
                        fault + u"; "_s + m_folder->names().join(u' ');
        });
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
    QVERIFY2(disks > 5, qPrintable(QString::number(disks)));
    qInfo("%d disks", disks);
}

QTEST_GUILESS_MAIN(tst_SavePowerCut)
#include "tst_SavePowerCut.moc"
