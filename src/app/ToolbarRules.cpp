// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/ToolbarRules.h"

#include "util/Procedure.h"

bool keepsPlaces(ButtonGroup group, const CommandState &state)
{
    if (group == ButtonGroup::File)
        return true;
    // One of the two is shown at a time, in the one place.
    if (group == ButtonGroup::Panes)
        return false;
    return group < ButtonGroup::Text ? state.OutlineFocus : state.TextFocus;
}

namespace modMain
{

qint16 SetButtonValue(std::optional<bool> value)
{
    return procedure("modMain SetButtonValue", [&] { return static_cast<qint16>(value.value_or(false)); });
}

} // namespace modMain
