// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The user's folder for what the program keeps from one session to the next, $XDG_STATE_HOME/Quillery; it need not
// exist yet.
QString stateFolder();
