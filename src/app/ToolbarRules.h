// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CommandState.h"
#include "app/ToolbarTable.h"

#include <optional>

class TextSelection;

// When which button is shown and pressed.

// A button and the condition under which it is shown.
struct ButtonRule {
    std::string_view button;
    bool (*shown)(const CommandState &);
};

// The buttons that depend on the open documents. MenuEnable sets these and hides every other one.
std::span<const ButtonRule> menuEnableButtons();
// The buttons that depend on the selected entry and the focus, set by MenuEnableDynamic.
std::span<const ButtonRule> menuEnableDynamicButtons();

// Whether a group's hidden buttons leave gaps. While the pane that a group belongs to has the focus they do, so that
// the other buttons stay under the pointer when the selection moves.
bool keepsPlaces(ButtonGroup group, const CommandState &state);

// A toggle button and whether it is pressed.
struct PressedButton {
    std::string_view button;
    bool pressed;
};

// The eight expansion buttons for the level that the outline was last expanded to: -1 all levels, 0 none of them.
std::array<PressedButton, 8> pressedExpansion(int expansionLevel);
// The buttons of the text's character formats and alignment, as the pane's selection has them.
std::array<PressedButton, 6> pressedFormats(const TextSelection &text);

// The tooltip of the button "Tag Entry".
QString tagEntryToolTip(bool tagged);

namespace modMain
{

// 1 for a pressed button, 0 for a released one. A selection that mixes values has none, and shows it released.
qint16 SetButtonValue(std::optional<bool> value);

} // namespace modMain
