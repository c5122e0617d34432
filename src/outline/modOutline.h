// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// The commands of the Outline menu. Each works on the active document and does nothing without one.
namespace modOutline
{

// Opens the in-place editor on the selected entry's label; marks the document changed.
void OutlineRename();

} // namespace modOutline
