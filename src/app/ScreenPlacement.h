// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AppPorts.h"

#include <QList>
#include <QRect>

// Where a window goes that wants a place, given the free areas of the screens (the first is the primary one): its own
// place while enough of its title can be grabbed there, else the nearest one on a screen, no larger than it.
// A window of a wanted place, frame included, cut and moved so that it lies on the nearest screen whole.
QRect fittedToScreen(const QRect &wanted, const QList<QRect> &screens);

QRect placedOnScreens(const QRect &wanted, const QList<QRect> &screens);

// A place in pixels, at a resolution in dots per logical inch. Values beyond any screen are cut, not overflowed.
QRect pixelsFromPlace(const WindowPlace &place, double dotsPerInch);
WindowPlace placeFromPixels(const QRect &pixels, double dotsPerInch);
