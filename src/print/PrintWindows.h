// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

#include <QString>

#include <memory>

class PrinterDialogs;
class QPrinter;
class QWidget;

// Printing with the desktop's printers. The printer that was chosen last, and its paper, are kept as long as this
// lives.
class PrintWindows final : public Printing
{
public:
    // The dialogs must live longer; windows open over `parent`.
    explicit PrintWindows(PrinterDialogs &dialogs, QWidget *parent = nullptr);
    ~PrintWindows() override;

    void print(const PrintExtent &extent) override;
    void preview(const PrintExtent &extent) override;
    // Error 32755 when it is cancelled.
    void setUp() override;

    QPrinter &printer();

private:
    QString nameJob(const Document &document);

    PrinterDialogs &m_dialogs;
    QWidget *m_parent;
    // Made when first asked for: that looks for printers.
    std::unique_ptr<QPrinter> m_printer;
    // The name of a PDF file as it was proposed last, and the folder of the last one that the user chose otherwise.
    QString m_proposed;
    QString m_folder;
};
