// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrinterDialogs.h"

#include "print/frmPrintSetup.h"

#include <QPrintDialog>

using namespace Qt::StringLiterals;

bool DesktopPrinterDialogs::choose(QPrinter &printer, QWidget *parent)
{
    QPrintDialog dialog(&printer, parent);
    dialog.setWindowTitle(u"Print"_s);
    // Everything is printed: there are no pages to choose.
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintCollateCopies |
                      QAbstractPrintDialog::PrintShowPageSize);
    return dialog.exec() == QDialog::Accepted;
}

bool DesktopPrinterDialogs::setUp(QPrinter &printer, QWidget *parent)
{
    return frmPrintSetup(printer, parent).exec() == QDialog::Accepted;
}
