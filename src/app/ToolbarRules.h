// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/ToolbarTable.h"

// Whether a group's hidden buttons leave gaps. While the pane that a group belongs to has the focus they do, so that
// the other buttons stay under the pointer when the selection moves.
bool keepsPlaces(ButtonGroup group, const CommandState &state);

namespace modMain
{

// 1 for a pressed button, 0 for a released one. A selection that mixes values has none, and shows it released.
qint16 SetButtonValue(std::optional<bool> value);

} // namespace modMain
