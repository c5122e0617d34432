// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

// Gives a widget the drag icon of the current drag as its pointer: "FolderDrag.ico" or "FolderDragCopy.ico" where a
// drop is allowed, "NoDrop.ico" where it is not. A missing file is reported, and an ordinary pointer stands in for it.
void ChangeDragIcon(QWidget &control, bool allowed);
