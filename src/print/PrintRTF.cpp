// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintRTF.h"

#include "print/PagedText.h"
#include "print/PrintTarget.h"
#include "util/Procedure.h"
#include "util/Twips.h"

#include <QPainter>
#include <QPrinter>

namespace
{

// Fine enough for any printer, and coarse enough for the layout engine's heights to reach over thousands of pages.
constexpr int resolution = 600;

} // namespace

PrinterPaper paperOf(QPageLayout layout, int dotsPerInch)
{
    layout.setMode(QPageLayout::StandardMode);
    layout.setMargins(layout.minimumMargins());
    const QRect paper = layout.fullRectPixels(dotsPerInch);
    const QRect printable = layout.paintRectPixels(dotsPerInch);
    return {Twips::fromPixels(paper.width(), dotsPerInch), Twips::fromPixels(paper.height(), dotsPerInch),
            Twips::fromPixels(printable.left(), dotsPerInch), Twips::fromPixels(printable.top(), dotsPerInch)};
}

PrinterPaper paperOf(QPrinter &printer)
{
    printer.setResolution(resolution);
    printer.setFullPage(false);
    const QPageLayout layout = printer.pageLayout();
    printer.setPageMargins(layout.minimumMargins(), layout.units());
    return paperOf(printer.pageLayout(), resolution);
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

PrintOutcome PrintRTF(const PrintComposition &text, QPrinter &printer, const PrintMargins &margins,
                      const std::function<bool()> &goesOn)
{
    return procedure("frmPreview PrintRTF", [&] {
        const QRectF place = printerPixels(printer, drawingRectangle(paperOf(printer), margins));
        PrintTarget target(printer);
        QPainter &painter = target.begin();
        PagedText pages(text, printer, place.size());
        int first = 0;
        while (true) {
            first = pages.format(&painter, place.topLeft(), first);
            if (!goesOn())
                return PrintOutcome::Stopped;
            if (pages.isWhole() && first >= pages.length())
                break;
            target.newPage();
        }
        target.complete();
        return PrintOutcome::Printed;
    });
}
