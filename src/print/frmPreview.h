// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "pages/PrintComposition.h"
#include "pages/PrintGeometry.h"
#include "print/PreviewPane.h"
#include "print/PrintRTF.h"

#include <QDialog>

#include <array>
#include <optional>

class PrinterDialogs;
class QLabel;
class QPrinter;
class QPushButton;

// The window through which everything is printed: it shows what the printer will make of a part of a document, or
// prints it without showing it.
class frmPreview final : public QDialog
{
    Q_OBJECT

public:
    // Printer and dialogs must live longer.
    frmPreview(const PrintExtent &extent, QPrinter &printer, PrinterDialogs &dialogs, QWidget *parent = nullptr);

    // Set before exec(): to close at once, or else to print at once, without showing anything first.
    bool m_bCloseAtOnce = false;
    bool m_bPrintAtOnce = false;
    // The file that is proposed to print to.
    QString m_sFile;

    // Prints or closes as the two flags say, or shows the window and returns when it is closed.
    int exec() override;

    // Error 32755 when the printer's dialog is cancelled.
    void ChoosePrinterAndPrintCopies();
    // Prints what is shown, behind a window that can stop it.
    void PrintCopies();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    enum Button { Print, Close };

    void makeControls();
    void Form_Load();
    void PreviewNodeAll();
    bool Form_Activate();
    void Form_Resize();
    void cmdInput_Click(Button index);
    qint32 WYSIWYG_RTF(PreviewPane &control, qint32 left, qint32 right);
    void showPlace();

    void layOutForPrinter();
    void tellOutcome(PrintOutcome outcome);

    PrintExtent m_extent;
    QPrinter &m_printer;
    PrinterDialogs &m_dialogs;
    // What is printed, assembled out of sight: the pane lays out a part of it at a time.
    std::optional<PrintComposition> txtFormat;
    PrintMargins m_margins;
    // What the pane's pages are laid out for.
    PreviewPane::Paper m_sheet;
    PreviewPane *txtDisplay = nullptr;
    QLabel *lblPlace = nullptr;
    std::array<QPushButton *, 2> cmdInput{};
};
