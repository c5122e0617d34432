// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintTarget.h"

#include "util/RunTimeError.h"

#include <QFile>
#include <QPrinter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A PDF file ends with this mark: the printer does not tell when the disk is full.
bool isWholePdf(const QString &name)
{
    constexpr qint64 tail = 32;
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(std::max<qint64>(0, file.size() - tail)))
        return false;
    return file.readAll().contains("%%EOF");
}

} // namespace

PrintTarget::PrintTarget(QPrinter &printer)
    : m_printer(printer)
    , m_name(printer.outputFileName())
{
    if (printer.outputFormat() != QPrinter::PdfFormat) {
        m_spool.emplace();
        return;
    }
    if (m_name.isEmpty())
        throw RunTimeError(ErrorNumber::InvalidCall, u"There is no file to print to"_s);
    m_file.emplace(m_name);
    m_printer.setOutputFileName(m_file->temporaryName());
}

PrintTarget::~PrintTarget()
{
    // The print system cannot be told to forget a job, and takes what it finds when the painting ends.
    if (m_spool)
        m_spool->clear();
    if (m_painter.isActive())
        m_painter.end();
    if (m_file)
        m_printer.setOutputFileName(m_name);
}

void PrintTarget::fail() const
{
    throw RunTimeError(ErrorNumber::PathFileAccess,
                       u"The printer does not print: %1"_s.arg(m_name.isEmpty() ? m_printer.printerName() : m_name));
}

QPainter &PrintTarget::begin()
{
    bool hasBegun = false;
    const auto start = [&] { hasBegun = m_painter.begin(&m_printer); };
    if (m_spool)
        m_spool->collect(start);
    else
        start();
    if (!hasBegun)
        fail();
    return m_painter;
}

void PrintTarget::complete()
{
    if (!m_painter.end() || m_printer.printerState() == QPrinter::Error)
        fail();
    if (!m_file)
        return;
    if (!isWholePdf(m_file->temporaryName()))
        throw RunTimeError(ErrorNumber::DiskFull, u"%1: %2"_s.arg(errorDescription(ErrorNumber::DiskFull), m_name));
    m_file->flushToDisk();
    m_file->replace();
}
