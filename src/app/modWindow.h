// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QMdiArea;

// The arrangements of the document windows. Minimised windows keep their icons, and the others leave these visible.
namespace modWindow
{

void WindowCascade(QMdiArea &area);
// One above the other.
void WindowTileHorizontal(QMdiArea &area);
// Side by side.
void WindowTileVertical(QMdiArea &area);
// Lines the icons of minimised windows up along the bottom edge.
void WindowArrangeIcons(QMdiArea &area);

} // namespace modWindow
