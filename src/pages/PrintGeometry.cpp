// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PrintGeometry.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr qint32 leastSide = 360;

qint32 rounded(double length)
{
    return static_cast<qint32>(std::nearbyint(length));
}

} // namespace

PrintRectangle drawingRectangle(const PrinterPaper &paper, const PrintMargins &margins)
{
    const qint32 leftOffset = rounded(paper.offsetX);
    const qint32 topOffset = rounded(paper.offsetY);
    PrintRectangle place;
    place.left = margins.left - leftOffset;
    place.top = margins.top - topOffset;
    place.right = std::max(rounded(paper.width) - margins.right - leftOffset, place.left + leastSide);
    place.bottom = std::max(rounded(paper.height) - margins.bottom - topOffset, place.top + leastSide);
    return place;
}

qint32 leastShownWidth(qint32 lineWidth)
{
    return rounded(lineWidth / 1.5);
}
