// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CommandMenus.h"

class QMdiArea;
class QWidget;

// The routines behind the menu items and toolbar buttons, for a main window and the area of its document windows, which
// must outlive them.
BoundRoutines boundRoutines(QWidget &mainWindow, QMdiArea &area);
