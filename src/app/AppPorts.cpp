// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/AppPorts.h"

#include "app/SessionKeeper.h"

AppPorts &appPorts()
{
    static AppPorts instance;
    return instance;
}

void noteKeptState()
{
    if (appPorts().keeper)
        appPorts().keeper->note();
}
