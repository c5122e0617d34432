// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cmath>

// Positions and sizes are in twips: 1440 to the logical inch, which is 15 to a pixel at 96 dots per inch.
namespace Twips
{

inline constexpr double perInch = 1440;

inline double fromPixels(double pixels, double dotsPerInch)
{
    return pixels * perInch / dotsPerInch;
}

// The nearest whole pixel.
inline int toPixels(double twips, double dotsPerInch)
{
    return static_cast<int>(std::lround(twips * dotsPerInch / perInch));
}

} // namespace Twips
