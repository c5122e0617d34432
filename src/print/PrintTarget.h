// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/SafeFile.h"
#include "print/SpoolFolder.h"

#include <QPainter>
#include <QString>

#include <optional>

class QPrinter;

// One print job. A printer that prints to a file writes beside the file of that name first, which is replaced only when
// all is written; the pages for a printer with paper are collected and only then handed to it. Without complete()
// nothing is left of either, and the old file is as it was.
class PrintTarget
{
public:
    // Error 5 when the printer has no file name, or the file errors of SafeFile.
    explicit PrintTarget(QPrinter &printer);
    ~PrintTarget();
    PrintTarget(const PrintTarget &) = delete;
    PrintTarget &operator=(const PrintTarget &) = delete;

    // Starts the job; what is painted is on its first page. Error 75 when the printer cannot print.
    QPainter &begin();

    // Ends the job. Error 75 when the printer failed, 61 when not all of the file could be written.
    void complete();

    // Error 75, which names the printer or its file.
    [[noreturn]] void fail() const;

private:
    QPrinter &m_printer;
    QString m_name;
    std::optional<SafeFile> m_file;
    std::optional<SpoolFolder> m_spool;
    QPainter m_painter;
};
