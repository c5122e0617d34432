// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <functional>
#include <optional>

// The program as the session's bus knows it: org.freedesktop.Application under the name org.quillery.Quillery. There is
// one a session; whoever starts it once more gets the window that is there.
class BusApplication final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    struct Receiver {
        // Shows the window.
        std::function<void()> show;
        // Opens files. False when that is impossible now.
        std::function<bool(const QStringList &files)> open;
    };

    explicit BusApplication(const QDBusConnection &bus, QObject *parent = nullptr);
    ~BusApplication() override;

    // Hands files over to the program that the session has, which shows its window. False when there is none: then this
    // one is it, as far as there is a bus.
    bool handOver(const QStringList &files);

    // What was handed over before waits for the receiver, and so does what it cannot take yet.
    void setReceiver(Receiver receiver);

    // How long the other program may take to answer, and how long what is impossible now waits; in milliseconds.
    static constexpr int answerTime = 5000;
    static constexpr int retryTime = 200;

public Q_SLOTS:
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    // The program names no actions.
    void ActivateAction(const QString &action, const QVariantList &parameter, const QVariantMap &platformData);

private:
    void deliver();
    void openFiles();

    QDBusConnection m_bus;
    std::optional<Receiver> m_receiver;
    QTimer m_retry;
    QStringList m_files;
    bool m_isWanted = false;
};
