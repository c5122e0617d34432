// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

namespace modOutline
{

// Lets the user change the font of the active document's outline.
void OutlineFont();

} // namespace modOutline
