// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

struct DropPlacements;

// The pop-up menus that ask what a drop with the right button is to do. Both return when the menu has closed; a choice
// sets the drag state (see outline/EntryDrag.h) and its dragging flag again, Cancel leaves that flag clear.
void confirmDrop(const DropPlacements &placements);
void confirmIndent();
