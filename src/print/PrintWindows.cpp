// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintWindows.h"

#include "document/Document.h"
#include "document/DocumentWindow.h"
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
    QString name = document.m_sFile.isEmpty() ? document.caption() : QFileInfo(document.m_sFile).completeBaseName();
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

// Names the job. The answer is the file that it is to go to if it goes to one: in the folder chosen last.
QString PrintWindows::nameJob(const Document &document)
{
    const QString name = baseName(document);
    QPrinter &target = printer();
    target.setDocName(name);
    const QString last = target.outputFileName();
    if (!last.isEmpty() && last != m_proposed)
        m_folder = QFileInfo(last).absolutePath();
    const bool isThere = !m_folder.isEmpty() && QFileInfo(m_folder).isDir();
    m_proposed = QDir(isThere ? m_folder : documentsFolder()).filePath(name + u".pdf"_s);
    if (target.outputFormat() == QPrinter::PdfFormat)
        target.setOutputFileName(m_proposed);
    return m_proposed;
}

void PrintWindows::print(const PrintExtent &extent)
{
    const QString file = nameJob(*extent.document);
    frmPreview window(extent, printer(), m_dialogs, m_parent);
    window.m_bCloseAtOnce = !m_dialogs.choose(printer(), file, m_parent);
    window.m_bPrintAtOnce = true;
    window.exec();
}

void PrintWindows::preview(const PrintExtent &extent)
{
    const QString file = nameJob(*extent.document);
    frmPreview window(extent, printer(), m_dialogs, m_parent);
    window.m_sFile = file;
    window.exec();
}

void PrintWindows::setUp()
{
    if (!m_dialogs.setUp(printer(), m_parent))
        throw RunTimeError(ErrorNumber::Cancelled);
}
