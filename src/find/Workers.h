// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QThreadPool>

// Who looks at texts, behind whatever else the machine has to do.
QThreadPool &findWorkers();
