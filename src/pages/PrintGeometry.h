// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

// Where on the paper a text is printed. Everything in twips, 1440 to the inch; a printer's coordinates begin at the
// upper left corner of what it can print on.

struct PrintMargins {
    qint32 left = 1440;
    qint32 top = 1440;
    qint32 right = 1440;
    qint32 bottom = 1440;
};

struct PrinterPaper {
    double width = 0;
    double height = 0;
    // How wide the borders are that cannot be printed on.
    double offsetX = 0;
    double offsetY = 0;
};

struct PrintRectangle {
    qint32 left = 0;
    qint32 top = 0;
    qint32 right = 0;
    qint32 bottom = 0;

    bool operator==(const PrintRectangle &other) const = default;
};

// What the margins, which are measured from the paper's edges, leave for the text, in the printer's coordinates. On a
// paper too small for them a little is left all the same.
PrintRectangle drawingRectangle(const PrinterPaper &paper, const PrintMargins &margins);

// How wide a line of that length is at least when it is shown: two thirds of it.
qint32 leastShownWidth(qint32 lineWidth);
