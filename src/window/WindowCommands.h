// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class Dispatcher;

// Binds the commands that work on the active document's window.
void bindWindowCommands(Dispatcher &dispatcher);
