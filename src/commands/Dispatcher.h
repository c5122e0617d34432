// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandState.h"

#include <QStringList>

#include <functional>
#include <map>
#include <string_view>

struct CommandRow;

// The one road to a command, whether a menu, a button, a key or a context menu was used.
class Dispatcher
{
public:
    using Run = std::function<void(int argument)>;

    // Where the rules' state is taken from.
    explicit Dispatcher(std::function<CommandState()> state = currentCommandState);
    Dispatcher(const Dispatcher &) = delete;
    Dispatcher &operator=(const Dispatcher &) = delete;

    // Says what a command runs, instead of its row.
    void bind(std::string_view command, Run run);

    // Runs whenever a command is done.
    void whenDone(std::function<void()> done) { m_whenDone = std::move(done); }

    // The state that the rules are asked about.
    CommandState state() const { return m_state(); }

    // Whether there is something that a command runs.
    bool isBound(std::string_view command) const;

    // The commands whose routine is to be bound and is not.
    QStringList unbound() const;

    // Whether a command can be run, or a menu opened: its own rule and that of every menu above it hold.
    bool isEnabled(std::string_view command) const { return isEnabled(command, m_state()); }

    bool isEnabled(std::string_view command, const CommandState &state) const;

    // Runs a command with the argument of its row, or of an indexed item with the item's number. Nothing happens where
    // it cannot be run. What goes wrong is reported and ends the command.
    void run(std::string_view command);
    void run(std::string_view command, int argument);

    // The command that runs, the innermost one; null while none does.
    const CommandRow *running() const { return m_running; }

private:
    std::function<CommandState()> m_state;
    std::function<void()> m_whenDone;
    const CommandRow *m_running = nullptr;
    // By the names in the table.
    std::map<std::string_view, Run> m_bound;
};
