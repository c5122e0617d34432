// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintWindows.h"

#include "model/Document.h"
#include "model/DocumentWindow.h"
#include "print/PrinterDialogs.h"
#include "print/frmPreview.h"
#include "util/RunTimeError.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QPrinter>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

// A document's name as that of a file without extension.
QString baseName(const Document &document)
{
    QString name =
        document.m_sFile.isEmpty() ? document.window.caption() : QFileInfo(document.m_sFile).completeBaseName();
    name.replace(u'/', u'-');
    return name.isEmpty() ? u"Quillery"_s : name;
}

QString documentsFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

} // namespace

PrintWindows::PrintWindows(PrinterDialogs &dialogs, QWidget *parent)
    : m_dialogs(dialogs)
    , m_parent(parent)
{
}

PrintWindows::~PrintWindows() = default;

QPrinter &PrintWindows::printer()
{
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setCreator(u"Quillery"_s);
        if (m_printer->outputFormat() == QPrinter::PdfFormat) {
            const bool isUS = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
            m_printer->setPageSize(QPageSize(isUS ? QPageSize::Letter : QPageSize::A4));
        }
    }
    return *m_printer;
}

// What the job is called, and the file that it goes to if it goes to one: beside the one printed last.
void PrintWindows::nameJob(const Document &document)
{
    const QString name = baseName(document);
    QPrinter &target = printer();
    target.setDocName(name);
    if (target.outputFormat() != QPrinter::PdfFormat)
        return;
    const QString last = target.outputFileName();
    const bool isChosen = !last.isEmpty() && last != m_proposed;
    const QString folder = isChosen ? QFileInfo(last).absolutePath() : documentsFolder();
    m_proposed = QDir(folder).filePath(name + u".pdf"_s);
    target.setOutputFileName(m_proposed);
}

void PrintWindows::print(const PrintExtent &extent)
{
    nameJob(*extent.document);
    frmPreview window(extent, printer(), m_dialogs, m_parent);
    window.m_bCloseAtOnce = !m_dialogs.choose(printer(), m_parent);
    window.m_bPrintAtOnce = true;
    window.exec();
}

void PrintWindows::preview(const PrintExtent &extent)
{
    nameJob(*extent.document);
    frmPreview(extent, printer(), m_dialogs, m_parent).exec();
}

void PrintWindows::setUp()
{
    if (!m_dialogs.setUp(printer(), m_parent))
        throw RunTimeError(ErrorNumber::Cancelled);
}
