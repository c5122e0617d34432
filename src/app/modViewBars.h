// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

namespace modView
{

// Each flips its option and shows or hides the main window's bar.
void ViewToolbar();
void ViewStatusBar();

} // namespace modView
