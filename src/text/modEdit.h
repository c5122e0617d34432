// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// The commands of the Edit menu: they act on the text pane of the active document and do nothing without one. Storing
// the changed text in its entry is the pane's own affair.
namespace modEdit
{

// Puts the selection on the clipboard as plain text alone, and takes it out.
void EditCut();

// Puts the selection on the clipboard as rich text alone.
void EditCopy();

// Inserts the clipboard's rich text, else its plain text, else its picture.
void EditPaste();

// Inserts the clipboard's text without formatting.
void EditPasteSpecial();

void EditDelete();
void EditSelectAll();

// Takes all text of the entry away, after asking.
void EditClearEntryText();

void EditInsertTab();

// The date in the system's long form, in its short form, and the time as hours and minutes.
void EditInsertLongDate();
void EditInsertShortDate();
void EditInsertTime();

void EditCaseLower();
void EditCaseUpper();

// The first letter, and each behind a blank, a digit or a line break, becomes a capital; all others become small.
void EditCaseProper();

// From small letters to proper names to capitals and round again; the selection stays.
void EditCaseToggle();

// These change to the other state, or off where the selection is mixed.
void EditFormatBold();
void EditFormatItalic();
void EditFormatUnderline();
void EditFormatStrikeThrough();
void EditFormatBullet();

// By a step of 300 twips. Paragraphs of different indents are left alone by the first and set to 0 by the second.
void EditFormatIndent();
void EditFormatUnindent();

// Ask for a font: for the selected text, or without a selection for the entry's whole text; and for all texts of the
// document.
void EditCurrentFont();
void EditDocumentFont();

void EditFormatLeft();
void EditFormatCentre();
void EditFormatRight();

} // namespace modEdit
