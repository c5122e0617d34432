// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/BusApplication.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

// The program on a bus of the test's own, and others that come to it.
class tst_BusApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void theFirstStartGoesOn();
    void aSecondStartHandsItsFilesOver();
    void aStartWithoutFilesShowsTheWindow();
    void filesWaitUntilTheyCanBeOpened();
    void filesThatComeBeforeTheWindowAreNotLost();
    void whatIsNoFileIsPassedOver();
    void afterTheEndTheNextStartGoesOn();
    void withoutABusEachStartGoesOn();

private:
    QDBusConnection connection(const QString &name) const { return QDBusConnection::connectToBus(m_address, name); }

    // A start of the program once more, as a process of its own would do it.
    bool startOnceMore(const QStringList &files);
    void take(BusApplication &program);

    std::unique_ptr<QProcess> m_daemon;
    QString m_address;
    int m_starts = 0;
    int m_shown = 0;
    bool m_isBusy = false;
    QList<QStringList> m_opened;
};

void tst_BusApplication::initTestCase()
{
    const QString daemon = QStandardPaths::findExecutable(u"dbus-daemon"_s);
    if (daemon.isEmpty())
        QSKIP("there is no dbus-daemon");
    m_daemon = std::make_unique<QProcess>();
    m_daemon->start(daemon, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    QVERIFY(m_daemon->waitForStarted());
    QVERIFY(m_daemon->waitForReadyRead(30'000));
    m_address = QString::fromUtf8(m_daemon->readLine()).trimmed();
}

void tst_BusApplication::init()
{
    m_shown = 0;
    m_isBusy = false;
    m_opened.clear();
}

void tst_BusApplication::cleanup()
{
    QDBusConnection::disconnectFromBus(u"first"_s);
}

bool tst_BusApplication::startOnceMore(const QStringList &files)
{
    const QString name = u"start %1"_s.arg(++m_starts);
    bool isHandedOver = false;
    bool isDone = false;
    std::thread other([&] {
        {
            BusApplication program(connection(name));
            isHandedOver = program.handOver(files);
        }
        QDBusConnection::disconnectFromBus(name);
        QMetaObject::invokeMethod(
            this, [&] { isDone = true; }, Qt::QueuedConnection);
    });
    const bool isInTime = QTest::qWaitFor([&] { return isDone; }, 60'000);
    other.join();
    return isInTime && isHandedOver;
}

void tst_BusApplication::take(BusApplication &program)
{
    program.setReceiver({[this] { ++m_shown; },
                         [this](const QStringList &files) {
                             if (!m_isBusy)
                                 m_opened.append(files);
                             return !m_isBusy;
                         }});
}

void tst_BusApplication::theFirstStartGoesOn()
{
    BusApplication program(connection(u"first"_s));
    QVERIFY(!program.handOver({u"/home/me/notes.qly"_s}));
    take(program);
    QCOMPARE(m_shown, 0);
}

void tst_BusApplication::aSecondStartHandsItsFilesOver()
{
    BusApplication program(connection(u"first"_s));
    QVERIFY(!program.handOver({}));
    take(program);
    const QStringList files{u"/home/me/notes.qly"_s, u"/home/me/50% \u00fcber # alles.qly"_s};
    QVERIFY(startOnceMore(files));
    QTRY_COMPARE(m_opened, QList<QStringList>{files});
    QCOMPARE(m_shown, 1);
}

void tst_BusApplication::aStartWithoutFilesShowsTheWindow()
{
    BusApplication program(connection(u"first"_s));
    QVERIFY(!program.handOver({}));
    take(program);
    QVERIFY(startOnceMore({}));
    QTRY_COMPARE(m_shown, 1);
    QVERIFY(m_opened.isEmpty());
}

void tst_BusApplication::filesWaitUntilTheyCanBeOpened()
{
    BusApplication program(connection(u"first"_s));
    QVERIFY(!program.handOver({}));
    take(program);
    m_isBusy = true;
    QVERIFY(startOnceMore({u"/one"_s}));
    QVERIFY(startOnceMore({u"/two"_s}));
    QTRY_COMPARE(m_shown, 2);
    QVERIFY(m_opened.isEmpty());
    m_isBusy = false;
    QTRY_COMPARE(m_opened, (QList<QStringList>{{u"/one"_s, u"/two"_s}}));
    QCOMPARE(m_shown, 2);
}

void tst_BusApplication::filesThatComeBeforeTheWindowAreNotLost()
{
    BusApplication program(connection(u"first"_s));
    QVERIFY(!program.handOver({}));
    QVERIFY(startOnceMore({u"/early"_s}));
    QVERIFY(m_opened.isEmpty());
    take(program);
    QTRY_COMPARE(m_opened, (QList<QStringList>{{u"/early"_s}}));
    QCOMPARE(m_shown, 1);
}

void tst_BusApplication::whatIsNoFileIsPassedOver()
{
    BusApplication program(connection(u"first"_s));
    QVERIFY(!program.handOver({}));
    take(program);
    QDBusMessage call = QDBusMessage::createMethodCall(u"org.quillery.Quillery"_s, u"/org/quillery/Quillery"_s,
                                                       u"org.freedesktop.Application"_s, u"Open"_s);
    call << QStringList{u"https://example.org/a.qly"_s, u"file:///one"_s, u"\u0000"_s, QString()} << QVariantMap();
    connection(u"caller"_s).asyncCall(call);
    QTRY_COMPARE(m_opened, (QList<QStringList>{{u"/one"_s}}));
    QDBusConnection::disconnectFromBus(u"caller"_s);
}

void tst_BusApplication::afterTheEndTheNextStartGoesOn()
{
    {
        BusApplication program(connection(u"first"_s));
        QVERIFY(!program.handOver({}));
    }
    QVERIFY(!startOnceMore({u"/one"_s}));
}

void tst_BusApplication::withoutABusEachStartGoesOn()
{
    for (int start = 0; start < 2; ++start) {
        BusApplication program(QDBusConnection(u"none"_s));
        QVERIFY(!program.handOver({u"/one"_s}));
        take(program);
    }
    QVERIFY(m_opened.isEmpty());
}

QTEST_GUILESS_MAIN(tst_BusApplication)

#include "tst_BusApplication.moc"
