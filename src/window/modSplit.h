// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class frmDocument;

// The split between the outline and the text pane of a document window. Positions are in twips.
namespace modSplit
{

// No pane is narrower than this, except in a window too narrow for both.
inline constexpr float minimumPaneWidth = 1500;
// The text pane starts this far right of the split position.
inline constexpr float gap = 40;
// The gap and the window's frame: the text pane is narrower by this than the window without the outline.
inline constexpr float rightHandAllowance = 140;
// How far an arrow key moves the split.
inline constexpr float keyboardStep = 100;

// Clamps a position to the minimum pane width; the upper bound wins in a narrow window.
void SplitCheckPosition(const frmDocument &form, float &fPosition);
// Lays the two panes and the bar between them out for a position.
void SplitSizeControls(frmDocument &form, float fPosition);

// Begin a move of the split with the ghost bar, move it, and accept or cancel the move.
void SplitMoveStart(frmDocument &form);
void SplitMove(frmDocument &form, float fPosition);
void SplitMoveEnd(frmDocument &form);
void SplitMoveCancel(frmDocument &form);

} // namespace modSplit
