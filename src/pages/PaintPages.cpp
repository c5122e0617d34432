// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PaintPages.h"

#include "pages/PagedText.h"
#include "util/Twips.h"

#include <QPagedPaintDevice>

PrinterPaper paperOf(QPageLayout layout, int dotsPerInch)
{
    layout.setMode(QPageLayout::StandardMode);
    layout.setMargins(layout.minimumMargins());
    const QRect paper = layout.fullRectPixels(dotsPerInch);
    const QRect printable = layout.paintRectPixels(dotsPerInch);
    return {Twips::fromPixels(paper.width(), dotsPerInch), Twips::fromPixels(paper.height(), dotsPerInch),
            Twips::fromPixels(printable.left(), dotsPerInch), Twips::fromPixels(printable.top(), dotsPerInch)};
}

double devicePixels(const QPagedPaintDevice &device, double twips)
{
    return twips * device.logicalDpiX() / Twips::perInch;
}

QRectF devicePixels(const QPagedPaintDevice &device, const PrintRectangle &twips)
{
    const auto pixels = [&](qint32 length) { return devicePixels(device, double(length)); };
    return QRectF(QPointF(pixels(twips.left), pixels(twips.top)), QPointF(pixels(twips.right), pixels(twips.bottom)));
}

PrintOutcome paintPages(const PrintComposition &text, QPagedPaintDevice &device, QPainter &painter, const QRectF &place,
                        const std::function<bool()> &goesOn)
{
    PagedText pages(text, device, place.size());
    int first = 0;
    while (true) {
        first = pages.format(&painter, place.topLeft(), first);
        if (!goesOn())
            return PrintOutcome::Stopped;
        if (pages.isWhole() && first >= pages.length())
            return PrintOutcome::Printed;
        if (!device.newPage())
            return PrintOutcome::Failed;
    }
}
