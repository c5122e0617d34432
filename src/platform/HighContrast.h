// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QPalette;

// Colours of the desktop on which the toolkit's own style shows too little. It makes outlines and edges of darker
// shades of the window's colour, of which black has none, and some desktops give greyed text a colour that black
// swallows.
namespace HighContrast
{

// Whether a darker shade of the window's colour can hardly be told from it.
bool shadesVanish(const QPalette &colours);

// Lifts a window and buttons whose shades vanish off the text's background, which stays, and makes greyed text of a
// colour that vanishes a mixture of text and background. Returns whether anything had to be changed.
bool mend(QPalette &colours);

} // namespace HighContrast
