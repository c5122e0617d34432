// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/AppPorts.h"

AppPorts &appPorts()
{
    static AppPorts instance;
    return instance;
}
