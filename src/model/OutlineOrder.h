// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

class Entry;

// Entries of one outline in the order in which it shows them, each once. What it costs grows with their number and that
// of their ancestors, whatever else the outline holds.
std::vector<Entry *> inOutlineOrder(const std::vector<Entry *> &entries);

// The same without those that lie below another: what is done to that is done to them.
std::vector<Entry *> branchesOf(const std::vector<Entry *> &entries);
