// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/SessionKeeper.h"

#include "app/modMRU.h"
#include "app/modMain.h"

SessionKeeper::SessionKeeper(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(delay);
    connect(&m_timer, &QTimer::timeout, this, &SessionKeeper::storeNow);
}

void SessionKeeper::start()
{
    m_stored = currentState();
    // No document is open yet.
    m_stored.openFiles = modMain::WorkingFiles();
    m_started = true;
}

void SessionKeeper::note()
{
    if (m_started && !m_timer.isActive())
        m_timer.start();
}

void SessionKeeper::storeNow()
{
    m_timer.stop();
    if (!m_started)
        return;
    State state = currentState();
    if (appPorts().mainWindow->minimised()) {
        state.place = m_stored.place;
        state.states = m_stored.states;
    }
    if (state == m_stored)
        return;
    m_stored = state;
    modMain::StoreState();
}

void SessionKeeper::stop()
{
    m_timer.stop();
    m_started = false;
}

SessionKeeper::State SessionKeeper::currentState()
{
    State state{g_options, appPorts().mainWindow->place(), appPorts().mainWindow->states(),
                appPorts().recentFiles->list(), modMain::OpenFiles()};
    // Elements without a name come and go with each start.
    state.recentFiles.removeAll(QString());
    return state;
}
