// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class frmDocument;

// The commands of the View menu that concern the panes and the options. Each works on the active document window.
namespace modView
{

// A new window's split: a third of both panes' width is the outline's.
void ViewInitialise(frmDocument &form);

void ViewGoToOutline();
void ViewGoToText();

void ViewMaximiseLeft();
void ViewMaximiseRight();
void ViewEqualiseLeftAndRight();
// The narrowest outline that shows every visible label whole, in steps of 100 twips from the minimum on.
void ViewFitSplit();
// Begins a move of the split with the arrow keys.
void ViewMoveSplit();
// Fits a window's split when the option says so and no bulk operation runs.
void ViewAutoFitSplit(frmDocument &form);

// Flip an option; the command surface shows its check mark.
void ViewOptionsAutoFitSplit();
void ViewOptionsBackupOnSave();
void ViewOptionsStartWithNewDoc();
void ViewOptionsStartWithPrevDocs();
// Also tells every open outline whether a click on the selected label renames it.
void ViewOptionsClickToRenameEntry();

} // namespace modView
