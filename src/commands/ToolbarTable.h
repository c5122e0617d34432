// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandTable.h"

// The toolbar's buttons in the order in which they stand, gathered from the commands' rows.

struct ToolbarRow : CommandButton {
    // The row of the command that a click runs.
    std::size_t command = noRow;
};

namespace detail
{

constexpr std::size_t countButtons()
{
    std::size_t count = 0;
    for (const CommandRow &row : commandTable)
        count += row.button.key.empty() ? 0 : 1;
    return count;
}

constexpr auto gatherButtons()
{
    std::array<ToolbarRow, countButtons()> found{};
    std::size_t place = 0;
    for (std::size_t row = 0; row < commandTable.size(); ++row) {
        if (commandTable[row].button.key.empty())
            continue;
        const ToolbarRow made{commandTable[row].button, row};
        std::size_t at = place++;
        const auto follows = [&made](const ToolbarRow &other) {
            return other.group > made.group || (other.group == made.group && other.place > made.place);
        };
        for (; at > 0 && follows(found[at - 1]); --at)
            found[at] = found[at - 1];
        found[at] = made;
    }
    return found;
}

} // namespace detail

inline constexpr auto toolbarTable = detail::gatherButtons();

inline constexpr std::size_t noButton = toolbarTable.size();

// The row of a button, or noButton.
constexpr std::size_t toolbarRow(std::string_view key)
{
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        if (toolbarTable[row].key == key)
            return row;
    }
    return noButton;
}

namespace detail
{

// Every key occurs once, and every group counts its places from 1.
constexpr bool isButtonRow()
{
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        const bool sameGroup = row > 0 && toolbarTable[row].group == toolbarTable[row - 1].group;
        if (toolbarRow(toolbarTable[row].key) != row ||
            toolbarTable[row].place != (sameGroup ? toolbarTable[row - 1].place + 1 : 1))
            return false;
    }
    return true;
}

} // namespace detail

static_assert(detail::isButtonRow());
