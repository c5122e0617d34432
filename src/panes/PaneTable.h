// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/Pane.h"

#include <span>

// The program's panes, each in the file of its name.
std::span<const PaneRow> paneTable();

std::unique_ptr<Pane> makeFindPane(const PaneHost &host);
std::unique_ptr<Pane> makeHistoryPane(const PaneHost &host);
