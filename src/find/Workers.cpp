// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/Workers.h"

QThreadPool &findWorkers()
{
    static QThreadPool pool;
    pool.setThreadPriority(QThread::LowestPriority);
    return pool;
}
