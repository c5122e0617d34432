// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QPageSize>

class QComboBox;
class QPrinter;
class QRadioButton;

// The printer setup: which printer, and which paper it is to use. Without a printer there is still the one that prints
// to a PDF file.
class frmPrintSetup final : public QDialog
{
    Q_OBJECT

public:
    explicit frmPrintSetup(QPrinter &printer, QWidget *parent = nullptr);

    // Sets the printer as chosen.
    void accept() override;

private:
    void listPrinters();
    void listPapers();
    bool isFileChosen() const;

    QPrinter &m_printer;
    QComboBox *cmbPrinter = nullptr;
    QComboBox *cmbPaper = nullptr;
    QRadioButton *optPortrait = nullptr;
    QRadioButton *optLandscape = nullptr;
};
