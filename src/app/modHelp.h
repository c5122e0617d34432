// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

// The commands of the Help menu.
namespace modHelp
{

// Whether the help is the outline document "Help.qly". When it is not, it is the application help file, which the
// desktop's own viewer shows. Set at the start of the program.
inline bool g_bHelpIsOutline = true;

// Shows the help from its beginning.
void HelpContents();
// Shows the help and asks what to look for in it.
void HelpSearch();
// Brings the window of the help document to the front; opens the document when it is not open.
void LoadHelpQLYFile();

// Shows the about box over its owner and returns when it is closed.
void HelpAbout(QWidget *owner);

} // namespace modHelp
