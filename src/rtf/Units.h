// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Limits.h"

#include <QtGlobal>

// Lengths: RTF counts twips (1440 to the inch), a text document counts pixels of 96 to the inch.
namespace rtf
{

constexpr qreal twipsPerPixel = 15.0;

constexpr qreal pixelsFromTwips(int twips)
{
    return twips / twipsPerPixel;
}

inline int twipsFromPixels(qreal pixels)
{
    return qRound(qBound(-2e6, pixels, 2e6) * twipsPerPixel);
}

} // namespace rtf
