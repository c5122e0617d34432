// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// Commands that need several rooms of the core at once.

namespace modOutline
{

// Lets the user change the font of the active document's outline.
void OutlineFont();

} // namespace modOutline

// The keys that change the size of the selected text, of which there has to be some.
namespace textSize
{

void makeSmaller();
void makeLarger();

} // namespace textSize

namespace documentWindows
{

// Activates the document window opened after the active one, and after the last one the first.
void activateNext();

} // namespace documentWindows
