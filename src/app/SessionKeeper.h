// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AppPorts.h"
#include "document/Globals.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

// Stores the settings, the recent files and the list of open documents soon after one of them changes, so that a
// session that comes to no end of its own has kept them all the same. What did not change is not written.
class SessionKeeper final : public QObject
{
    Q_OBJECT

public:
    // How long changes are gathered, as a window being moved makes many; in milliseconds.
    static constexpr int delay = 300;

    explicit SessionKeeper(QObject *parent = nullptr);

    // From now on what differs from the stored state is stored. The settings and the recent files must be loaded.
    void start();
    // Something of the state may have changed.
    void note();
    // Stores what was not stored yet, now.
    void storeNow();
    // The state was stored for the last time: what changes while the windows close is nobody's wish.
    void stop();

private:
    struct State {
        Options options;
        WindowPlace place;
        WindowStates states;
        QStringList recentFiles;
        QStringList openFiles;

        bool operator==(const State &other) const = default;
    };

    static State currentState();

    QTimer m_timer;
    State m_stored;
    bool m_started = false;
};
