// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandTable.h"
#include "commands/Dispatcher.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "util/Procedure.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_Dispatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_fakes.reset(); }

    void aCommandIsRunWithTheArgumentOfItsRow();
    void anIndexedCommandIsRunWithItsNumber();
    void aCommandWhoseRuleDoesNotHoldIsNotRun();
    void aCommandInAMenuThatCannotBeOpenedIsNotRun();
    void aCommandWithoutARoutineIsNotRun();
    void aNameThatIsNoCommandRunsNothing();
    void aLabelBeingEditedIsFinishedFirst();
    void thatItIsDoneIsSaidOnceAfterwards();
    void aFailureIsReportedInTheCommandsName();
    void whatNeedsAWindowIsToBeBound();

private:
    std::unique_ptr<FakePorts> m_fakes;
    CommandState m_state;
};

void tst_Dispatcher::init()
{
    m_fakes = std::make_unique<FakePorts>();
    m_state = {};
}

void tst_Dispatcher::aCommandIsRunWithTheArgumentOfItsRow()
{
    Dispatcher dispatcher([this] { return m_state; });
    QList<int> arguments;
    m_state.documentCount = 1;
    for (const char *name : {"mnuOutlineExpandLevel3", "mnuFilePrintEntry", "mnuFilePrint"}) {
        dispatcher.bind(name, [&](int argument) { arguments.append(argument); });
        dispatcher.run(name);
    }
    QCOMPARE(arguments, QList<int>({3, 1, 0}));
}

void tst_Dispatcher::anIndexedCommandIsRunWithItsNumber()
{
    Dispatcher dispatcher([this] { return m_state; });
    QList<int> arguments;
    dispatcher.bind("mnuFileMRU", [&](int argument) { arguments.append(argument); });
    dispatcher.run("mnuFileMRU", 7);
    QCOMPARE(arguments, QList<int>({7}));
}

void tst_Dispatcher::aCommandWhoseRuleDoesNotHoldIsNotRun()
{
    Dispatcher dispatcher([this] { return m_state; });
    int times = 0;
    dispatcher.bind("mnuFileClose", [&](int) { ++times; });
    QVERIFY(!dispatcher.isEnabled("mnuFileClose"));
    dispatcher.run("mnuFileClose");
    QCOMPARE(times, 0);
    m_state.documentCount = 1;
    QVERIFY(dispatcher.isEnabled("mnuFileClose"));
    dispatcher.run("mnuFileClose");
    QCOMPARE(times, 1);
}

void tst_Dispatcher::aCommandInAMenuThatCannotBeOpenedIsNotRun()
{
    Dispatcher dispatcher([this] { return m_state; });
    int times = 0;
    dispatcher.bind("mnuOutlineMoveDown", [&](int) { ++times; });
    m_state.documentCount = 1;
    m_state.CanMoveDown = true;
    QVERIFY(!dispatcher.isEnabled("mnuOutlineMove"));
    dispatcher.run("mnuOutlineMoveDown");
    QCOMPARE(times, 0);
    m_state.Selected = m_state.Writable = true;
    dispatcher.run("mnuOutlineMoveDown");
    QCOMPARE(times, 1);
    m_state.documentCount = 0;
    QVERIFY(!dispatcher.isEnabled("mnuOutlineMoveDown"));
}

void tst_Dispatcher::aCommandWithoutARoutineIsNotRun()
{
    Dispatcher dispatcher([this] { return m_state; });
    QVERIFY(dispatcher.isEnabled("mnuFileNew"));
    dispatcher.bind("mnuFileNew", nullptr);
    QVERIFY(!dispatcher.isBound("mnuFileNew"));
    QVERIFY(!dispatcher.isEnabled("mnuFileNew"));
    dispatcher.run("mnuFileNew");
    QCOMPARE(m_fakes->windows.open.size(), 0U);
    QVERIFY(!dispatcher.isEnabled("mnuViewMDITaskbar"));
    dispatcher.run("mnuViewMDITaskbar");
}

void tst_Dispatcher::aNameThatIsNoCommandRunsNothing()
{
    Dispatcher dispatcher([this] { return m_state; });
    QVERIFY(!dispatcher.isEnabled("mnuFileNeww"));
    int done = 0;
    dispatcher.whenDone([&] { ++done; });
    dispatcher.run("mnuFileNeww");
    dispatcher.run("mnuFileNeww", 1);
    QCOMPARE(done, 0);
}

void tst_Dispatcher::aLabelBeingEditedIsFinishedFirst()
{
    Dispatcher dispatcher([this] { return m_state; });
    Document &document = m_fakes->windows.createDocument();
    FakeOutlinePane &pane = m_fakes->windows.fakeOf(document).outline;
    pane.editingLabel = true;
    bool edited = true;
    dispatcher.bind("mnuHelpContents", [&](int) { edited = pane.editingLabel; });
    dispatcher.run("mnuHelpContents");
    QVERIFY(!edited);
}

void tst_Dispatcher::thatItIsDoneIsSaidOnceAfterwards()
{
    Dispatcher dispatcher([this] { return m_state; });
    int done = 0;
    int during = -1;
    dispatcher.whenDone([&] { ++done; });
    dispatcher.bind("mnuHelpContents", [&](int) { during = done; });
    dispatcher.run("mnuHelpContents");
    QCOMPARE(during, 0);
    QCOMPARE(done, 1);
}

void tst_Dispatcher::aFailureIsReportedInTheCommandsName()
{
    const ErrorRecorder errors;
    Dispatcher dispatcher([this] { return m_state; });
    QString during;
    dispatcher.bind("mnuHelpContents", [&](int) {
        during = g_sProcedure;
        throw RunTimeError(ErrorNumber::FileNotFound);
    });
    dispatcher.run("mnuHelpContents");
    QCOMPARE(during, u"mnuHelpContents"_s);
    QCOMPARE(g_sProcedure, u"mnuHelpContents"_s);
    QCOMPARE(errors.summary(), QStringList(u"53 mnuHelpContents"_s));
}

void tst_Dispatcher::whatNeedsAWindowIsToBeBound()
{
    Dispatcher dispatcher;
    QVERIFY(dispatcher.unbound().contains(u"mnuHelpAbout"_s));
    dispatcher.bind("mnuHelpAbout", [](int) {});
    QVERIFY(!dispatcher.unbound().contains(u"mnuHelpAbout"_s));
    // What runs nothing is not missed.
    QVERIFY(!dispatcher.unbound().contains(u"mnuViewMDITaskbar"_s));
    for (const QString &name : dispatcher.unbound())
        QVERIFY2(!commandTable[commandRow(name.toStdString())].routine.run, qPrintable(name));
}

QTEST_GUILESS_MAIN(tst_Dispatcher)
#include "tst_Dispatcher.moc"
