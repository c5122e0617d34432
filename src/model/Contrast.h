// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QColor;

// How well colours can be told apart, as ratios of luminance: 1 for a colour and itself, 21 for black and white.
namespace Contrast
{

// What is comfortable to read, and what can just be made out.
inline constexpr double readable = 4.5;
inline constexpr double discernible = 3.0;

double between(const QColor &one, const QColor &other);

// A colour on the way from one to another; a share of 1 is the other one.
QColor mixed(const QColor &one, const QColor &other, double share);

} // namespace Contrast
