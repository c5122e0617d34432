// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrinterDialogs.h"

#include "print/frmPrintSetup.h"

#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>

using namespace Qt::StringLiterals;

namespace
{

// A printer as it was before a dialog, which changes it as soon as it is made and with every printer looked at in it.
class PrinterBefore
{
public:
    explicit PrinterBefore(QPrinter &printer)
        : m_printer(printer)
        , m_format(printer.outputFormat())
        , m_name(printer.printerName())
        , m_file(printer.outputFileName())
        , m_layout(printer.pageLayout())
        , m_copies(printer.copyCount())
    {
    }

    bool isFile() const { return m_format == QPrinter::PdfFormat; }

    void restore() const
    {
        // The empty name of a file stands for no file, the name of a PDF file for that format.
        m_printer.setOutputFileName(QString());
        if (isFile())
            m_printer.setOutputFormat(m_format);
        else if (!m_name.isEmpty())
            m_printer.setPrinterName(m_name);
        if (!m_file.isEmpty())
            m_printer.setOutputFileName(m_file);
        m_printer.setPageLayout(m_layout);
        m_printer.setCopyCount(m_copies);
    }

private:
    QPrinter &m_printer;
    QPrinter::OutputFormat m_format;
    QString m_name;
    QString m_file;
    QPageLayout m_layout;
    int m_copies;
};

} // namespace

bool DesktopPrinterDialogs::choose(QPrinter &printer, const QString &file, QWidget *parent)
{
    const PrinterBefore before(printer);
    QPrintDialog dialog(&printer, parent);
    // Where there are printers the dialog begins with one of them, also when a file was printed to last.
    if (before.isFile())
        before.restore();
    dialog.setWindowTitle(u"Print"_s);
    // Everything is printed: there are no pages to choose.
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintCollateCopies |
                      QAbstractPrintDialog::PrintShowPageSize);
    // Of its own the dialog proposes a file in the home folder, named after the job up to its last stop, or none.
    if (auto *name = dialog.findChild<QLineEdit *>(u"filename"_s); name && printer.outputFileName().isEmpty())
        name->setText(file);
    const bool isChosen = dialog.exec() == QDialog::Accepted;
    if (!isChosen)
        before.restore();
    return isChosen;
}

bool DesktopPrinterDialogs::setUp(QPrinter &printer, QWidget *parent)
{
    return frmPrintSetup(printer, parent).exec() == QDialog::Accepted;
}
