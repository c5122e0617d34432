// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// Plain-text exchange through the clipboard.
namespace modDocClipboard
{

// Puts the active document's plain-text layout on the clipboard.
void DocExport();
// Makes one entry of the clipboard's text in the active document, which must be empty.
void DocImport();

} // namespace modDocClipboard
