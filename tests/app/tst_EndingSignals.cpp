// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <functional>
#include <memory>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

// The real program in a process of its own, on a platform without a screen, and real signals.
class tst_EndingSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init();
    void cleanup();

    void aSignalEndsTheSessionInOrder_data();
    void aSignalEndsTheSessionInOrder();
    void aSignalAsksNothingAndWritesNoDocument();
    void whatTheProgramWasStartedToIgnoreStaysIgnored();
    void aSessionThatIsKilledHasKeptItsDocumentsAndFiles();
    void aFileSizeLimitIsAFailedWrite();

private:
    // Starts the program and waits until it has stored that these documents are open.
    void start(const QStringList &files, const std::function<void()> &prepare = {});

    void send(int signal) const { QCOMPARE(kill(static_cast<pid_t>(m_program->processId()), signal), 0); }

    QString path(const QString &name) const { return m_folder->filePath(name); }

    QString makeFile(const QString &name) const;
    QString stored(const QString &key) const;
    QByteArray contents(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_program;
};

void tst_EndingSignals::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_program = std::make_unique<QProcess>();
    QVERIFY(QDir(m_folder->path()).mkdir(u"bin"_s));
    // A copy, so that its session log is this test's own.
    QVERIFY(QFile::copy(QStringLiteral(QUILLERY_PROGRAM), path(u"bin/quillery"_s)));
}

void tst_EndingSignals::cleanup()
{
    if (m_program->state() != QProcess::NotRunning) {
        m_program->kill();
        m_program->waitForFinished();
    }
    m_program.reset();
    m_folder.reset();
}

void tst_EndingSignals::start(const QStringList &files, const std::function<void()> &prepare)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.insert(u"HOME"_s, m_folder->path());
    environment.insert(u"XDG_CONFIG_HOME"_s, path(u"config"_s));
    environment.insert(u"XDG_STATE_HOME"_s, path(u"state"_s));
    m_program->setProcessEnvironment(environment);
    m_program->setChildProcessModifier(prepare);
    m_program->setProcessChannelMode(QProcess::ForwardedChannels);
    m_program->start(path(u"bin/quillery"_s), files);
    QVERIFY(m_program->waitForStarted());
    for (qsizetype place = 1; place <= files.size(); ++place)
        QTRY_COMPARE_WITH_TIMEOUT(stored(u"Workspace/%1"_s.arg(place)), files.at(place - 1), 30'000);
}

QString tst_EndingSignals::makeFile(const QString &name) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write("some words") < 0)
        QTest::qFail("cannot make a file", __FILE__, __LINE__);
    return file.fileName();
}

QString tst_EndingSignals::stored(const QString &key) const
{
    return QSettings(path(u"config/Quillery/Quillery.ini"_s), QSettings::IniFormat).value(key).toString();
}

QByteArray tst_EndingSignals::contents(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_EndingSignals::aSignalEndsTheSessionInOrder_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("a service manager's") << SIGTERM;
    QTest::newRow("a terminal that closes") << SIGHUP;
    QTest::newRow("Ctrl+C in the terminal") << SIGINT;
}

void tst_EndingSignals::aSignalEndsTheSessionInOrder()
{
    QFETCH(const int, signal);
    const QString file = makeFile(u"notes.txt"_s);
    start({file});
    send(signal);
    QVERIFY(m_program->waitForFinished());
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 128 + signal);
    QVERIFY(contents(u"bin/Quillery.log"_s).contains("Session ended at "));
    QCOMPARE(stored(u"Workspace/1"_s), file);
    QCOMPARE(stored(u"MRU/1"_s), file);
    QCOMPARE(stored(u"Settings/ViewToolbar"_s), u"True"_s);
}

void tst_EndingSignals::aSignalAsksNothingAndWritesNoDocument()
{
    // A new document has changes from the start: closing it would ask.
    QVERIFY(QDir(m_folder->path()).mkpath(u"config/Quillery"_s));
    QFile settings(path(u"config/Quillery/Quillery.ini"_s));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    QVERIFY(settings.write("[Settings]\nStartWithNewDocument=True\n") > 0);
    settings.close();
    start({});
    QTRY_VERIFY_WITH_TIMEOUT(contents(u"config/Quillery/Quillery.ini"_s).contains("[Workspace]"), 30'000);
    const QStringList before = QDir(m_folder->path()).entryList(QDir::Files);
    send(SIGTERM);
    QVERIFY(m_program->waitForFinished());
    QCOMPARE(m_program->exitCode(), 128 + SIGTERM);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), before);
}

void tst_EndingSignals::whatTheProgramWasStartedToIgnoreStaysIgnored()
{
    start({makeFile(u"notes.txt"_s)}, [] { std::signal(SIGHUP, SIG_IGN); });
    send(SIGHUP);
    QVERIFY(!m_program->waitForFinished(1'000));
    send(SIGTERM);
    QVERIFY(m_program->waitForFinished());
    QCOMPARE(m_program->exitCode(), 128 + SIGTERM);
}

void tst_EndingSignals::aSessionThatIsKilledHasKeptItsDocumentsAndFiles()
{
    const QStringList files{makeFile(u"one.txt"_s), makeFile(u"two.txt"_s)};
    start(files);
    send(SIGKILL);
    QVERIFY(m_program->waitForFinished());
    QCOMPARE(stored(u"Workspace/1"_s), files.at(0));
    QCOMPARE(stored(u"Workspace/2"_s), files.at(1));
    QCOMPARE(stored(u"MRU/1"_s), files.at(1));
    QCOMPARE(stored(u"MRU/2"_s), files.at(0));
}

void tst_EndingSignals::aFileSizeLimitIsAFailedWrite()
{
    start({}, [] {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_FSIZE, &none);
    });
    // It wanted to write its log at once, and would have been ended by the attempt.
    QVERIFY(!m_program->waitForFinished(3'000));
    send(SIGTERM);
    QVERIFY(m_program->waitForFinished());
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 128 + SIGTERM);
}

QTEST_GUILESS_MAIN(tst_EndingSignals)
#include "tst_EndingSignals.moc"
