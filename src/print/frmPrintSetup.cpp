// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/frmPrintSetup.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPrinter>
#include <QPrinterInfo>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace
{

constexpr QPageSize::PageSizeId fileSizes[] = {
    QPageSize::A3,     QPageSize::A4,    QPageSize::A5,     QPageSize::B4,      QPageSize::B5,
    QPageSize::Letter, QPageSize::Legal, QPageSize::Ledger, QPageSize::Tabloid, QPageSize::Executive};

} // namespace

frmPrintSetup::frmPrintSetup(QPrinter &printer, QWidget *parent)
    : QDialog(parent)
    , m_printer(printer)
{
    setObjectName(u"frmPrintSetup"_s);
    setWindowTitle(u"Print Setup"_s);
    auto *form = new QFormLayout(this);
    cmbPrinter = new QComboBox;
    cmbPrinter->setObjectName(u"cmbPrinter"_s);
    form->addRow(u"P&rinter"_s, cmbPrinter);
    cmbPaper = new QComboBox;
    cmbPaper->setObjectName(u"cmbPaper"_s);
    form->addRow(u"Paper &size"_s, cmbPaper);

    auto *line = new QHBoxLayout;
    optPortrait = new QRadioButton(u"&Portrait"_s);
    optPortrait->setObjectName(u"optPortrait"_s);
    optLandscape = new QRadioButton(u"&Landscape"_s);
    optLandscape->setObjectName(u"optLandscape"_s);
    line->addWidget(optPortrait);
    line->addWidget(optLandscape);
    line->addStretch();
    form->addRow(u"Orientation"_s, line);
    const bool isLandscape = m_printer.pageLayout().orientation() == QPageLayout::Landscape;
    (isLandscape ? optLandscape : optPortrait)->setChecked(true);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmPrintSetup::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmPrintSetup::reject);
    form->addRow(buttons);

    listPrinters();
    listPapers();
    connect(cmbPrinter, &QComboBox::currentIndexChanged, this, &frmPrintSetup::listPapers);
}

void frmPrintSetup::listPrinters()
{
    for (const QString &name : QPrinterInfo::availablePrinterNames())
        cmbPrinter->addItem(name, name);
    // Last, as in the print dialog.
    cmbPrinter->addItem(u"Print to File (PDF)"_s);
    const int current =
        m_printer.outputFormat() == QPrinter::PdfFormat ? -1 : cmbPrinter->findData(m_printer.printerName());
    cmbPrinter->setCurrentIndex(current < 0 ? cmbPrinter->count() - 1 : current);
}

bool frmPrintSetup::isFileChosen() const
{
    return cmbPrinter->currentIndex() == cmbPrinter->count() - 1;
}

// The papers of the chosen printer; the paper chosen before stays chosen when it is among them.
void frmPrintSetup::listPapers()
{
    QList<QPageSize> papers;
    if (isFileChosen()) {
        for (const QPageSize::PageSizeId id : fileSizes)
            papers.append(QPageSize(id));
    } else {
        papers = QPrinterInfo::printerInfo(cmbPrinter->currentData().toString()).supportedPageSizes();
    }
    const QPageSize before =
        cmbPaper->count() > 0 ? cmbPaper->currentData().value<QPageSize>() : m_printer.pageLayout().pageSize();
    if (!papers.contains(before))
        papers.prepend(before);
    cmbPaper->clear();
    for (const QPageSize &paper : papers)
        cmbPaper->addItem(paper.name(), QVariant::fromValue(paper));
    cmbPaper->setCurrentIndex(static_cast<int>(papers.indexOf(before)));
}

void frmPrintSetup::accept()
{
    if (isFileChosen())
        m_printer.setOutputFormat(QPrinter::PdfFormat);
    else
        m_printer.setPrinterName(cmbPrinter->currentData().toString());
    m_printer.setPageSize(cmbPaper->currentData().value<QPageSize>());
    m_printer.setPageOrientation(optLandscape->isChecked() ? QPageLayout::Landscape : QPageLayout::Portrait);
    QDialog::accept();
}
