// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintRTF.h"

#include "print/PagedText.h"
#include "print/PrintTarget.h"
#include "util/RunTimeError.h"
#include "util/Twips.h"

#include <QPainter>
#include <QPrinter>

using namespace Qt::StringLiterals;

namespace
{

[[noreturn]] void failPrinting(const QPrinter &printer)
{
    const QString name = printer.outputFileName().isEmpty() ? printer.printerName() : printer.outputFileName();
    throw RunTimeError(ErrorNumber::PathFileAccess, u"The printer does not print: %1"_s.arg(name));
}

} // namespace

PrinterPaper paperOf(QPrinter &printer)
{
    printer.setFullPage(false);
    const QPageLayout layout = printer.pageLayout();
    printer.setPageMargins(layout.minimumMargins(), layout.units());
    const int dpi = printer.resolution();
    const QRect paper = printer.pageLayout().fullRectPixels(dpi);
    const QRect printable = printer.pageLayout().paintRectPixels(dpi);
    return {Twips::fromPixels(paper.width(), dpi), Twips::fromPixels(paper.height(), dpi),
            Twips::fromPixels(printable.left(), dpi), Twips::fromPixels(printable.top(), dpi)};
}

double printerPixels(const QPrinter &printer, double twips)
{
    return twips * printer.resolution() / Twips::perInch;
}

QRectF printerPixels(const QPrinter &printer, const PrintRectangle &twips)
{
    const auto pixels = [&](qint32 length) { return printerPixels(printer, double(length)); };
    return QRectF(QPointF(pixels(twips.left), pixels(twips.top)), QPointF(pixels(twips.right), pixels(twips.bottom)));
}

bool PrintRTF(const PrintComposition &text, QPrinter &printer, const PrintMargins &margins,
              const std::function<bool()> &goesOn)
{
    const QRectF place = printerPixels(printer, drawingRectangle(paperOf(printer), margins));
    PrintTarget target(printer);
    QPainter painter;
    if (!painter.begin(&printer))
        failPrinting(printer);
    PagedText pages(text, printer, place.size());
    int first = 0;
    while (true) {
        first = pages.format(&painter, place.topLeft(), first);
        if (!goesOn()) {
            printer.abort();
            return false;
        }
        if (pages.isWhole() && first >= pages.length())
            break;
        if (!printer.newPage())
            failPrinting(printer);
    }
    if (!painter.end() || printer.printerState() == QPrinter::Error)
        failPrinting(printer);
    target.complete();
    return true;
}
