// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/SessionEnd.h"
#include "document/modDoc.h"
#include "platform/MessageDialogs.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{

class FakeLogOut final : public LogOut
{
public:
    bool maySpeak() override
    {
        steps.append(u"asks to speak"_s);
        return granted;
    }

    void hasSpoken() override { steps.append(u"has spoken"_s); }

    void refuse() override { steps.append(u"refuses"_s); }

    bool granted = true;
    QStringList steps;
};

} // namespace

class tst_SessionEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_main = std::make_unique<MainFixture>();
        m_end = std::make_unique<SessionEnd>(m_main->main);
        m_main->start();
    }

    void cleanup()
    {
        m_end.reset();
        m_main.reset();
    }

    void aLogOutWithNothingUnsavedAsksNothingAndStoresTheSession();
    void aLogOutAsksAboutEachChangedDocumentAndSavesIt();
    void aCancelKeepsTheDesktopSession();
    void aFailedSaveKeepsTheDesktopSession();
    void whereNobodyMayBeAskedUnsavedChangesRefuseTheLogOut();
    void aFileThatTurnedReadOnlyIsAskedAboutToo();
    void aLabelBeingTypedIsAnUnsavedChange();
    void aDocumentInTheMiddleOfASaveRefusesTheLogOut();
    void afterAnAgreedLogOutTheDesktopsEndAsksNothing();
    void aLogOutThatAnotherProgramRefusedLosesNothing();
    void aSignalEndsAnOpenQuestionAsCancelled();
    void anEndBeforeTheEventLoopIsKept();
    void theSessionEndsOnce();

private:
    Document &openChanged(const QString &name) const
    {
        modDoc::DocLoad(m_main->app.makeFile(name, "label"));
        Document &document = *DocumentActive();
        document.history.touch();
        return document;
    }

    std::deque<Answer> &answers() const { return m_main->app.core.dialogs.answers; }

    QStringList &questions() const { return m_main->app.core.dialogs.questions; }

    int ends() const
    {
        return static_cast<int>(m_main->app.logLines().filter(QRegularExpression(u"^Session ended at "_s)).size());
    }

    std::unique_ptr<MainFixture> m_main;
    std::unique_ptr<SessionEnd> m_end;
};

void tst_SessionEnd::aLogOutWithNothingUnsavedAsksNothingAndStoresTheSession()
{
    const QString file = m_main->app.makeFile(u"a.txt"_s, "label");
    modDoc::DocLoad(file);
    FakeLogOut logOut;
    m_end->commitData(logOut);
    QCOMPARE(logOut.steps, QStringList());
    QCOMPARE(m_main->app.settings.value(u"Workspace"_s, u"1"_s), file);
    QCOMPARE(m_main->app.settings.value(u"MRU"_s, u"1"_s), file);
    QCOMPARE(ends(), 0);
    QVERIFY(m_main->main.isVisible());
}

void tst_SessionEnd::aLogOutAsksAboutEachChangedDocumentAndSavesIt()
{
    const Document &first = openChanged(u"a.txt"_s);
    modDoc::DocLoad(m_main->app.makeFile(u"b.txt"_s, "label"));
    const Document &third = openChanged(u"c.txt"_s);
    answers() = {Answer::Yes, Answer::No};
    FakeLogOut logOut;
    m_end->commitData(logOut);
    QCOMPARE(logOut.steps, QStringList({u"asks to speak"_s, u"has spoken"_s}));
    QCOMPARE(questions(), QStringList({u"Do you want to save the file "_s + first.m_sFile + u"?"_s,
                                       u"Do you want to save the file "_s + third.m_sFile + u"?"_s}));
    QVERIFY(!first.m_bDataChanged());
    QVERIFY(third.m_bDataChanged());
    QCOMPARE(m_main->main.windows().documents().size(), 3U);
}

void tst_SessionEnd::aCancelKeepsTheDesktopSession()
{
    const Document &document = openChanged(u"a.txt"_s);
    answers() = {Answer::Cancel};
    FakeLogOut logOut;
    m_end->commitData(logOut);
    QCOMPARE(logOut.steps, QStringList({u"asks to speak"_s, u"refuses"_s}));
    QVERIFY(document.m_bDataChanged());
    QVERIFY(m_main->main.isVisible());
}

void tst_SessionEnd::aFailedSaveKeepsTheDesktopSession()
{
    const Document &document = openChanged(u"a.txt"_s);
    QVERIFY(QDir(m_main->app.folder.path()).removeRecursively());
    answers() = {Answer::Yes};
    FakeLogOut logOut;
    m_end->commitData(logOut);
    QCOMPARE(logOut.steps.last(), u"refuses"_s);
    QVERIFY(document.m_bDataChanged());
}

void tst_SessionEnd::whereNobodyMayBeAskedUnsavedChangesRefuseTheLogOut()
{
    const Document &document = openChanged(u"a.txt"_s);
    FakeLogOut logOut;
    logOut.granted = false;
    m_end->commitData(logOut);
    QCOMPARE(questions(), QStringList());
    QCOMPARE(logOut.steps.last(), u"refuses"_s);
    QVERIFY(document.m_bDataChanged());
}

void tst_SessionEnd::aFileThatTurnedReadOnlyIsAskedAboutToo()
{
    const Document &document = openChanged(u"a.txt"_s);
    QVERIFY(QFile::setPermissions(document.m_sFile, QFile::ReadOwner));
    answers() = {Answer::Cancel};
    FakeLogOut logOut;
    m_end->commitData(logOut);
    QCOMPARE(logOut.steps, QStringList({u"asks to speak"_s, u"refuses"_s}));
}

void tst_SessionEnd::aLabelBeingTypedIsAnUnsavedChange()
{
    modDoc::DocLoad(m_main->app.makeFile(u"a.txt"_s, "label"));
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    m_main->choose("mnuOutlineRename");
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    QTest::keyClicks(QApplication::focusWidget(), u"typed"_s);
    answers() = {Answer::No};
    FakeLogOut logOut;
    m_end->commitData(logOut);
    QCOMPARE(questions().size(), 1);
    QCOMPARE(DocumentActive()->tree.root()->label(), u"typed"_s);
}

void tst_SessionEnd::aDocumentInTheMiddleOfASaveRefusesTheLogOut()
{
    openChanged(u"a.txt"_s);
    const BusyScope busy;
    FakeLogOut logOut;
    m_end->commitData(logOut);
    QCOMPARE(questions(), QStringList());
    QCOMPARE(logOut.steps.last(), u"refuses"_s);
}

void tst_SessionEnd::afterAnAgreedLogOutTheDesktopsEndAsksNothing()
{
    openChanged(u"a.txt"_s);
    answers() = {Answer::No};
    FakeLogOut logOut;
    m_end->commitData(logOut);
    questions().clear();
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
    QVERIFY(quit.isAccepted());
    QCOMPARE(questions(), QStringList());
    QCOMPARE(ends(), 1);
    QCOMPARE(m_end->exitStatus(), 0);
}

void tst_SessionEnd::aLogOutThatAnotherProgramRefusedLosesNothing()
{
    const Document &document = openChanged(u"a.txt"_s);
    answers() = {Answer::No};
    FakeLogOut logOut;
    m_end->commitData(logOut);
    questions().clear();
    answers() = {Answer::Cancel};
    m_main->choose("mnuFileClose");
    QCOMPARE(questions(), QStringList(u"Do you want to save the file "_s + document.m_sFile + u"?"_s));
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
}

void tst_SessionEnd::aSignalEndsAnOpenQuestionAsCancelled()
{
    MessageDialogs dialogs;
    ports().dialogs = &dialogs;
    openChanged(u"a.txt"_s);
    // The user is being asked whether to exit when the signal comes.
    QTimer::singleShot(0, &m_main->main, &QWidget::close);
    QTimer::singleShot(100, this, [] { raise(SIGTERM); });
    QCOMPARE(QCoreApplication::exec(), 128 + SIGTERM);
    ports().dialogs = &m_main->app.core.dialogs;
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
    QCOMPARE(ends(), 1);
}

void tst_SessionEnd::anEndBeforeTheEventLoopIsKept()
{
    QCOMPARE(m_end->exitStatus(), std::nullopt);
    raise(SIGHUP);
    QTRY_COMPARE(m_end->exitStatus(), 128 + SIGHUP);
}

void tst_SessionEnd::theSessionEndsOnce()
{
    m_end->end(3);
    m_end->end(4);
    QCOMPARE(m_end->exitStatus(), 3);
    QCOMPARE(ends(), 1);
}

QTEST_MAIN(tst_SessionEnd)
#include "tst_SessionEnd.moc"
