// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintRTF.h"

#include "print/PrintTarget.h"
#include "util/Procedure.h"

#include <QPainter>
#include <QPrinter>

namespace
{

// Fine enough for any printer, and coarse enough for the layout engine's heights to reach over thousands of pages.
constexpr int resolution = 600;

} // namespace

PrinterPaper paperOf(QPrinter &printer)
{
    printer.setResolution(resolution);
    printer.setFullPage(false);
    const QPageLayout layout = printer.pageLayout();
    printer.setPageMargins(layout.minimumMargins(), layout.units());
    return paperOf(printer.pageLayout(), resolution);
}

PrintOutcome PrintRTF(const PrintComposition &text, QPrinter &printer, const PrintMargins &margins,
                      const std::function<bool()> &goesOn)
{
    return procedure("frmPreview PrintRTF", [&] {
        const QRectF place = devicePixels(printer, drawingRectangle(paperOf(printer), margins));
        PrintTarget target(printer);
        const PrintOutcome outcome = paintPages(text, printer, target.begin(), place, goesOn);
        if (outcome == PrintOutcome::Failed)
            target.fail();
        if (outcome == PrintOutcome::Printed)
            target.complete();
        return outcome;
    });
}
