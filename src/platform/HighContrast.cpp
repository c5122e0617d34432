// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/HighContrast.h"

#include "model/Contrast.h"

#include <QPalette>

#include <utility>

namespace
{

// By how much the style darkens the window's colour for its outlines, in percent.
constexpr int shadeOfOutlines = 140;

// Below it colours look the same: a little less than the usual dark windows have, and pale greyed text on light ones.
constexpr double leastShade = 1.05;
constexpr double leastGreyed = 1.5;

// On the way from black to white this is a dark grey on which white and yellow keep more than 11 to 1.
constexpr double lift = 0.19;

// On the way from the background to the text: greyed, but easily read.
constexpr double strengthOfGreyed = 0.6;

constexpr QPalette::ColorGroup everyGroup[] = {QPalette::Active, QPalette::Inactive, QPalette::Disabled};

constexpr QPalette::ColorRole edgeRoles[] = {QPalette::Light, QPalette::Midlight, QPalette::Mid, QPalette::Dark};

// Text and what it stands on.
constexpr std::pair<QPalette::ColorRole, QPalette::ColorRole> textRoles[] = {
    {QPalette::WindowText, QPalette::Window},
    {QPalette::ButtonText, QPalette::Button},
    {QPalette::Text, QPalette::Base},
};

bool hasNoShade(const QColor &colour)
{
    return Contrast::between(colour, colour.darker(shadeOfOutlines)) < leastShade;
}

bool liftGrounds(QPalette &colours)
{
    const QColor window = colours.color(QPalette::Active, QPalette::Window);
    const QColor button = colours.color(QPalette::Active, QPalette::Button);
    if (!hasNoShade(window))
        return false;
    const QColor lifted = Contrast::mixed(window, Qt::white, lift);
    const QColor liftedButton = hasNoShade(button) ? Contrast::mixed(button, Qt::white, lift) : button;
    const QPalette edges(liftedButton, lifted);
    for (const auto group : everyGroup) {
        colours.setColor(group, QPalette::Window, lifted);
        colours.setColor(group, QPalette::Button, liftedButton);
        for (const auto role : edgeRoles)
            colours.setColor(group, role, edges.color(QPalette::Active, role));
    }
    return true;
}

bool mendGreyed(QPalette &colours, double least)
{
    bool changed = false;
    for (const auto &[text, ground] : textRoles) {
        const QColor behind = colours.color(QPalette::Disabled, ground);
        const QColor mixture = Contrast::mixed(behind, colours.color(QPalette::Active, text), strengthOfGreyed);
        if (Contrast::between(colours.color(QPalette::Disabled, text), behind) >= least)
            continue;
        colours.setColor(QPalette::Disabled, text, mixture);
        changed = true;
    }
    return changed;
}

} // namespace

bool HighContrast::shadesVanish(const QPalette &colours)
{
    return hasNoShade(colours.color(QPalette::Active, QPalette::Window));
}

bool HighContrast::mend(QPalette &colours)
{
    const bool lifted = liftGrounds(colours);
    const bool mended = mendGreyed(colours, lifted ? Contrast::discernible : leastGreyed);
    return lifted || mended;
}
