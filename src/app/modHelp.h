// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

namespace modHelp
{

// Shows the about box over its owner and returns when it is closed.
void HelpAbout(QWidget *owner);

} // namespace modHelp
