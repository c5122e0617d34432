// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Characters that a text document or RTF has no place for: they mean something of their own there, or nothing at all.
namespace rtf
{

// What stands for such a character, in sight: a line break for breaks, the picture of a control character, the
// replacement character. Any other character, and each half of a surrogate pair, stands for itself.
char16_t visibleCharacter(char16_t unit);

// A text from elsewhere as it can be put into a document. Halves of a character that lack the other one are replaced
// too; tabs, CR, LF and the line and paragraph separators are kept, and a form feed ends a paragraph.
QString visibleText(QString text);

} // namespace rtf
