// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/SafeFile.h"

#include <QString>

#include <optional>

class QPrinter;

// Where a printer that prints to a file puts it: first beside the file of that name, which it replaces only when it is
// complete. Without complete() nothing is left of it and the old file is as it was. A printer with paper needs nothing.
class PrintTarget
{
public:
    // Error 5 when the printer has no file name, or the file errors of SafeFile.
    explicit PrintTarget(QPrinter &printer);
    ~PrintTarget();
    PrintTarget(const PrintTarget &) = delete;
    PrintTarget &operator=(const PrintTarget &) = delete;

    // To be called when the printing has ended. Error 61 when not all of the file could be written.
    void complete();

private:
    QPrinter &m_printer;
    QString m_name;
    std::optional<SafeFile> m_file;
};
