// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// The commands of the Tools menu that work on the active document.
namespace modTools
{

// Take back the last step, or do again the last one taken back, show where it acted and say in the status bar what it
// was.
void ToolsUndo();
void ToolsRedo();
// Goes back or forth until that many steps are done.
void ToolsGoTo(int position);

} // namespace modTools
