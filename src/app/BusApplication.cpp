// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/BusApplication.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// The names of the bus, of the object and of what a launcher adds to a call.
const QString serviceName = u"org.quillery.Quillery"_s;
const QString objectPath = u"/org/quillery/Quillery"_s;
const QString interfaceName = u"org.freedesktop.Application"_s;
const QString activationToken = u"activation-token"_s;
const QString startupId = u"desktop-startup-id"_s;

constexpr const char *activationVariable = "XDG_ACTIVATION_TOKEN";
constexpr const char *startupVariable = "DESKTOP_STARTUP_ID";

// What shows the desktop that the user wants the window in front.
QVariantMap launchData()
{
    QVariantMap data;
    for (const auto &[key, variable] :
         {std::pair(activationToken, activationVariable), std::pair(startupId, startupVariable)}) {
        if (const QString value = qEnvironmentVariable(variable); !value.isEmpty())
            data.insert(key, value);
    }
    return data;
}

QDBusMessage callFor(const QStringList &files)
{
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName, objectPath, interfaceName,
                                                       files.isEmpty() ? u"Activate"_s : u"Open"_s);
    if (!files.isEmpty()) {
        QStringList uris;
        for (const QString &file : files)
            uris.append(QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded()));
        call << uris;
    }
    return call << launchData();
}

} // namespace

BusApplication::BusApplication(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryTime);
    connect(&m_retry, &QTimer::timeout, this, &BusApplication::openFiles);
}

BusApplication::~BusApplication()
{
    if (!m_bus.isConnected())
        return;
    // Who asks from now on is to start on its own.
    m_bus.unregisterService(serviceName);
    m_bus.unregisterObject(objectPath);
}

bool BusApplication::handOver(const QStringList &files)
{
    if (!m_bus.isConnected())
        return false;
    // Before the name: whoever finds that may call at once.
    m_bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
    // Once more for one that ended just when it was asked.
    for (int attempt = 0; attempt < 2; ++attempt) {
        const auto reply = m_bus.interface()->registerService(serviceName, QDBusConnectionInterface::DontQueueService,
                                                              QDBusConnectionInterface::DontAllowReplacement);
        if (!reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered)
            return false;
        const QDBusMessage answer = m_bus.call(callFor(files), QDBus::Block, answerTime);
        if (answer.type() == QDBusMessage::ReplyMessage)
            return true;
    }
    return false;
}

void BusApplication::setReceiver(Receiver receiver)
{
    m_receiver = std::move(receiver);
    deliver();
}

void BusApplication::Activate(const QVariantMap &platformData)
{
    Open({}, platformData);
}

void BusApplication::Open(const QStringList &uris, const QVariantMap &platformData)
{
    for (const QString &uri : uris) {
        if (const QUrl url(uri); url.isLocalFile())
            m_files.append(url.toLocalFile());
    }
    // Where the window's platform looks for it.
    if (const QString token = platformData.value(activationToken).toString(); !token.isEmpty())
        qputenv(activationVariable, token.toUtf8());
    m_isWanted = true;
    // The caller waits for an answer, and a document may take its time, or ask.
    QMetaObject::invokeMethod(this, &BusApplication::deliver, Qt::QueuedConnection);
}

void BusApplication::ActivateAction(const QString &, const QVariantList &, const QVariantMap &platformData)
{
    Activate(platformData);
}

void BusApplication::deliver()
{
    if (!m_isWanted || !m_receiver)
        return;
    m_isWanted = false;
    m_receiver->show();
    openFiles();
}

void BusApplication::openFiles()
{
    // More may come while these are opened.
    const QStringList files = std::exchange(m_files, {});
    if (files.isEmpty() || m_receiver->open(files))
        return;
    m_files = files + m_files;
    m_retry.start();
}
