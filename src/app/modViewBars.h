// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

namespace modView
{

// Flips the option and shows or hides the main window's status bar.
void ViewStatusBar();

} // namespace modView
