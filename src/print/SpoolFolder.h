// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTemporaryDir>

#include <functional>

// A folder of one print job's own for what the print system collects there until the job is handed over, so that it
// can be taken away from it before.
class SpoolFolder
{
public:
    // Error 75 when no such folder can be made.
    SpoolFolder();

    QString path() const { return m_folder.path(); }

    // Runs something whose temporary files are to be made here: with TMPDIR as this folder, and as before behind it.
    void collect(const std::function<void()> &run) const;

    // Removes what was collected.
    void clear() const;

private:
    QTemporaryDir m_folder;
};
