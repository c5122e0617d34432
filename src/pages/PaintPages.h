// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "pages/PrintGeometry.h"

#include <QPageLayout>
#include <QRectF>

#include <functional>

class PrintComposition;
class QPagedPaintDevice;
class QPainter;

// The paper of a layout of pages, of which the least margins that it allows cannot be printed on.
PrinterPaper paperOf(QPageLayout layout, int dotsPerInch);

// A length in a device's pixels.
double devicePixels(const QPagedPaintDevice &device, double twips);
QRectF devicePixels(const QPagedPaintDevice &device, const PrintRectangle &twips);

enum class PrintOutcome { Failed, Stopped, Printed };

// Paints the whole text into `place` of one page after the other of any device that has pages, with a painter that
// stands on its first page. After each page `goesOn` is asked; false stops. Failed when the device takes no more pages.
// Errors as PagedText.
PrintOutcome paintPages(const PrintComposition &text, QPagedPaintDevice &device, QPainter &painter, const QRectF &place,
                        const std::function<bool()> &goesOn);
