// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class Dispatcher;
class QMdiArea;
class QWidget;

// Binds the commands that need the main window or the area of its document windows, which must outlive the dispatcher,
// and those of the rooms below. What remains shows and hides panes.
void bindAppCommands(Dispatcher &dispatcher, QWidget &mainWindow, QMdiArea &area);
