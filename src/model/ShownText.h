// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/StoredText.h"

#include <QFont>

class QTextDocument;

// What the text pane shows of a stored text, where the base font is what nothing else is said of: all of it; the
// beginning of its words as plain characters where it is too long or too much formatted to be laid out; or the bytes
// that could not be inflated, and no more of those than may be laid out.
Inflated shownText(const QByteArray &storedText, const QFont &base);

// The same, read into an empty document without undo, whose default font is the base font. Of most texts nobody can say
// whether they can be laid out before they are read: this way they are read once only.
Inflated readShownText(const QByteArray &storedText, QTextDocument &document);
