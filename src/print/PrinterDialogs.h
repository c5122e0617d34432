// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QPrinter;
class QWidget;

// The dialogs about printers. A dialog that is cancelled answers false and changes nothing.
class PrinterDialogs
{
public:
    virtual ~PrinterDialogs() = default;
    // Which printer prints how many copies; for a printer that prints to a file, to which one. It is preset to what
    // the printer has, and to that file when the printer has none.
    virtual bool choose(QPrinter &printer, const QString &file, QWidget *parent) = 0;
    // Which printer and paper are to be used from now on.
    virtual bool setUp(QPrinter &printer, QWidget *parent) = 0;
};

// The desktop's own.
class DesktopPrinterDialogs final : public PrinterDialogs
{
public:
    bool choose(QPrinter &printer, const QString &file, QWidget *parent) override;
    bool setUp(QPrinter &printer, QWidget *parent) override;
};
