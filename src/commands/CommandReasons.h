// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandState.h"

#include <QString>

#include <string_view>

// Why a command cannot be run in a state, as the end of a sentence ("no entry is selected"): by the first of the menus
// that it is in, or else the command itself, whose rule does not hold. Empty where all rules hold.
QString whyNot(std::string_view command, const CommandState &state);
