// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "print/PrintGeometry.h"

#include <QPageLayout>
#include <QRectF>

#include <functional>

class PrintComposition;
class QPrinter;

// The paper of a layout of pages, of which the least margins that it allows cannot be printed on.
PrinterPaper paperOf(QPageLayout layout, int dotsPerInch);

// Has the printer count 600 dots to the inch, from the corner of what it can print on, and gives its paper.
PrinterPaper paperOf(QPrinter &printer);

// A length in the printer's pixels.
double printerPixels(const QPrinter &printer, double twips);
QRectF printerPixels(const QPrinter &printer, const PrintRectangle &twips);

enum class PrintOutcome { Failed, Stopped, Printed };

// Prints the whole text page by page. After each page `goesOn` is asked; false stops the printing, of which then
// nothing is left. Reports error 75 when the printer cannot print, or those of PrintTarget and PagedText.
PrintOutcome PrintRTF(const PrintComposition &text, QPrinter &printer, const PrintMargins &margins,
                      const std::function<bool()> &goesOn);
