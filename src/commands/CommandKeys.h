// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandRow.h"

#include <QKeySequence>
#include <QString>

#include <span>

class QKeyEvent;

// The keys of the command table. A key acts only while its command can be run.

// A key and the command that it runs.
struct KeyBinding : CommandKey {
    std::string_view command;
};

// Every key of a road, in the order of the table.
std::span<const KeyBinding> keysOf(CommandKey::Road road);

// The key of a road that a key press is, whether or not its command can be run; null when it is none.
const KeyBinding *bindingOf(const QKeyEvent &event, CommandKey::Road road = CommandKey::Road::Panes);

// Whether a press was found by the place of its key, for a layout that has another script's letter there.
bool isByPlace(const KeyBinding &binding, const QKeyEvent &event);

// Such as Ctrl+N.
QKeyCombination combinationOf(const CommandKey &key);

// The key of a menu item as people read it: that of the desktop, else the one that its caption shows. Empty without
// one.
QString keyTextOf(const CommandRow &row);
