// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

// Names an entry for as long as the program runs: no two entries ever have the same, and an entry keeps its own while
// it is out of its tree. What outlives a single operation remembers this and never a pointer.
enum class EntryId : quint64 { None = 0 };
