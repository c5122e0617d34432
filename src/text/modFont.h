// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/clsFont.h"

#include <QtGlobal>

class TextPane;
class TextSelection;

// The font that is about to become that of a document's texts.
inline clsFont g_fntPendingTextFont;

// Choosing and changing fonts. A dialog that is cancelled changes nothing and answers False; what it leaves open stays
// as it is.
namespace modFont
{

// Lets the user change a font description.
bool ChangeFontDetails(clsFont &font);
// The same, and gives the font to the active document's outline.
bool ChangeTreeviewFont(clsFont &font);
// Lets the user choose the font of all of a pane's text and of what is typed next at the caret, as one step of undo. It
// concerns this text alone: what other texts begin with stays as it was.
bool ChangeRTFFont(TextPane &pane);
// Lets the user change the font, effects and colour of what is selected, as one step of undo.
bool ChangeRTFSelFont(TextSelection &selection);

// Gives every text of the active document, or of all open ones, the pending font.
void ChangeDocumentTextFontDetails(bool bAllDocuments);

// Steps the size of the selected text to the next larger one (a positive direction) or smaller one that there is. A
// selection of several sizes stays as it is.
void ChangeSelectedFontSize(qint16 iDirection);

} // namespace modFont
