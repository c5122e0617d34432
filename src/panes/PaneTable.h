// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/Pane.h"

#include <span>

// The program's panes.
std::span<const PaneRow> paneTable();
