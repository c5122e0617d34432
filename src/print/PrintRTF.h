// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "pages/PaintPages.h"

class QPrinter;

// Has the printer count 600 dots to the inch, from the corner of what it can print on, and gives its paper.
PrinterPaper paperOf(QPrinter &printer);

// Prints the whole text page by page. After each page `goesOn` is asked; false stops the printing, of which then
// nothing is left. Reports error 75 when the printer cannot print, or those of PrintTarget and PagedText.
PrintOutcome PrintRTF(const PrintComposition &text, QPrinter &printer, const PrintMargins &margins,
                      const std::function<bool()> &goesOn);
