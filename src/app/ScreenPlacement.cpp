// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/ScreenPlacement.h"

#include "util/Twips.h"

#include <algorithm>
#include <limits>

namespace
{

// What of the title must lie on a screen for the window to be moved by the mouse.
constexpr int titleHeight = 24;
constexpr int grabWidth = 80;

// No desktop is larger; sums of such values are far from overflowing.
constexpr double largestPixel = 1'000'000;

int toPixel(double twips, double dotsPerInch)
{
    const double largestTwips = Twips::fromPixels(largestPixel, dotsPerInch);
    return Twips::toPixels(std::clamp(twips, -largestTwips, largestTwips), dotsPerInch);
}

bool canBeGrabbed(const QRect &window, const QRect &screen)
{
    const QRect title(window.topLeft(), QSize(window.width(), titleHeight));
    const QRect visible = title.intersected(screen);
    return visible.height() == titleHeight && visible.width() >= std::min(grabWidth, window.width());
}

qint64 distanceBetween(const QRect &window, const QRect &screen)
{
    const QPoint away = window.center() - screen.center();
    return qint64{away.x()} * away.x() + qint64{away.y()} * away.y();
}

} // namespace

QRect fittedToScreen(const QRect &wanted, const QList<QRect> &screens)
{
    if (screens.isEmpty())
        return wanted;
    const QRect screen = *std::min_element(screens.begin(), screens.end(), [&](const QRect &a, const QRect &b) {
        return distanceBetween(wanted, a) < distanceBetween(wanted, b);
    });
    QRect placed(wanted.topLeft(), wanted.size().boundedTo(screen.size()));
    placed.moveLeft(std::clamp(placed.left(), screen.left(), screen.right() + 1 - placed.width()));
    placed.moveTop(std::clamp(placed.top(), screen.top(), screen.bottom() + 1 - placed.height()));
    return placed;
}

QRect placedOnScreens(const QRect &wanted, const QList<QRect> &screens)
{
    const auto grabbable = [&](const QRect &screen) { return canBeGrabbed(wanted, screen); };
    if (screens.isEmpty() || std::any_of(screens.begin(), screens.end(), grabbable))
        return wanted;
    return fittedToScreen(wanted, screens);
}

QRect pixelsFromPlace(const WindowPlace &place, double dotsPerInch)
{
    const QSize size(std::max(1, toPixel(static_cast<double>(place.width), dotsPerInch)),
                     std::max(1, toPixel(static_cast<double>(place.height), dotsPerInch)));
    return QRect(QPoint(toPixel(static_cast<double>(place.left), dotsPerInch),
                        toPixel(static_cast<double>(place.top), dotsPerInch)),
                 size);
}

WindowPlace placeFromPixels(const QRect &pixels, double dotsPerInch)
{
    const auto twips = [dotsPerInch](int value) { return static_cast<float>(Twips::fromPixels(value, dotsPerInch)); };
    return {twips(pixels.left()), twips(pixels.top()), twips(pixels.width()), twips(pixels.height())};
}
