// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/AppFixture.h"
#include "app/SessionKeeper.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_SessionKeeper : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_app = std::make_unique<AppFixture>();
        m_keeper = std::make_unique<SessionKeeper>();
        appPorts().keeper = m_keeper.get();
    }

    void cleanup()
    {
        m_keeper.reset();
        m_app.reset();
    }

    void aStartWithoutADocumentStoresNothing();
    void reopeningTheLastDocumentsStoresNothing();
    void anOpenedDocumentIsStoredAsOpenAndRecent();
    void aChangedOptionIsStored();
    void aMovedWindowIsStoredOnceForManyMoves();
    void aMinimisedWindowKeepsItsStoredPlace();
    void whatWasStoredForTheLastTimeStays();

private:
    // Lets the time pass in which changes are gathered.
    void settle() const { QTest::qWait(2 * SessionKeeper::delay); }

    std::optional<QString> stored(const QString &section, const QString &key) const
    {
        return m_app->settings.value(section, key);
    }

    std::unique_ptr<AppFixture> m_app;
    std::unique_ptr<SessionKeeper> m_keeper;
};

void tst_SessionKeeper::aStartWithoutADocumentStoresNothing()
{
    modMain::Initialise();
    noteKeptState();
    settle();
    QVERIFY(m_app->settings.section(u"Settings"_s).empty());
    QVERIFY(m_app->settings.section(u"MRU"_s).empty());
    QCOMPARE(m_app->settings.timesFlushed, 0);
}

void tst_SessionKeeper::reopeningTheLastDocumentsStoresNothing()
{
    const QString file = m_app->makeFile(u"a.txt"_s);
    m_app->settings.setValue(u"Workspace"_s, u"1"_s, file);
    m_app->settings.setValue(u"MRU"_s, u"1"_s, QString());
    m_app->settings.setValue(u"MRU"_s, u"2"_s, file);
    modMain::Initialise();
    QCOMPARE(m_app->openFiles(), QStringList(file));
    noteKeptState();
    settle();
    QVERIFY(m_app->settings.section(u"Settings"_s).empty());
}

void tst_SessionKeeper::anOpenedDocumentIsStoredAsOpenAndRecent()
{
    modMain::Initialise();
    const QString file = m_app->makeFile(u"a.txt"_s);
    m_app->core.windows.createDocument().m_sFile = file;
    m_app->recentFiles.UpdateMRUFile(file, false);
    QTRY_COMPARE(stored(u"Workspace"_s, u"1"_s), file);
    QCOMPARE(stored(u"MRU"_s, u"1"_s), file);
    QCOMPARE(stored(u"Settings"_s, u"Backup"_s), u"True"_s);
}

void tst_SessionKeeper::aChangedOptionIsStored()
{
    modMain::Initialise();
    g_options.AutoSplit = false;
    noteKeptState();
    QTRY_COMPARE(stored(u"Settings"_s, u"AutoSplit"_s), u"False"_s);
}

void tst_SessionKeeper::aMovedWindowIsStoredOnceForManyMoves()
{
    modMain::Initialise();
    const int before = m_app->settings.timesFlushed;
    for (int step = 1; step <= 50; ++step) {
        m_app->mainWindow.current.left = static_cast<float>(15 * step);
        noteKeptState();
    }
    QTRY_COMPARE(stored(u"Settings"_s, u"MainLeft"_s), u"750"_s);
    const int once = m_app->settings.timesFlushed;
    QVERIFY(once > before);
    noteKeptState();
    settle();
    QCOMPARE(m_app->settings.timesFlushed, once);
}

void tst_SessionKeeper::aMinimisedWindowKeepsItsStoredPlace()
{
    m_app->settings.setValue(u"Settings"_s, u"MainLeft"_s, u"300"_s);
    modMain::Initialise();
    m_app->mainWindow.isMinimised = true;
    m_app->mainWindow.current.left = -5000;
    noteKeptState();
    settle();
    QCOMPARE(stored(u"Settings"_s, u"MainLeft"_s), u"300"_s);
    QCOMPARE(stored(u"Settings"_s, u"Backup"_s), std::nullopt);
}

void tst_SessionKeeper::whatWasStoredForTheLastTimeStays()
{
    modMain::Initialise();
    m_app->core.windows.createDocument().m_sFile = u"/notes.qly"_s;
    modMain::Finalise();
    m_app->core.windows.open.clear();
    m_app->core.windows.active = nullptr;
    noteKeptState();
    settle();
    QCOMPARE(stored(u"Workspace"_s, u"1"_s), u"/notes.qly"_s);
}

QTEST_MAIN(tst_SessionKeeper)
#include "tst_SessionKeeper.moc"
