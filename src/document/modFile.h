// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// The commands of the File menu. Each does nothing without what it needs: an active document, an answered dialog.
namespace modFile
{

// A new document with one entry, "New Entry", whose label is being edited.
void FileNew();
void FileOpen();
// Opens the file of a 1-based place in the recent-file list.
void FileMRU(int iIndex);
// True when the active document is saved afterwards; likewise below.
bool FileSave();
bool FileSaveAs();
// Saves every document that is not read-only.
void FileSaveAll();
void FileClose();
void FileExit();
void FileImportText();
void FileImportClipboard();
void FileExportText();
void FileExportClipboard();
// Ask how much is to be printed: the selected entry alone (No), it with all its descendants (Yes for the "current
// entry" items), or the whole document (Yes for the others).
void FilePrint(bool bCurrentEntry);
void FilePrintPreview(bool bCurrentEntry);
void FilePrintSetup();

} // namespace modFile
