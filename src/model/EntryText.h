// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

class QFont;
class QTextDocument;

namespace rtf
{
class CharChange;
}

// Entry texts without the text pane: read, changed and stored with the same result as by way of the pane.

// Fills an empty document with an entry's text: rich text, or characters (see AnsiCodec).
void readEntryText(const QByteArray &text, QTextDocument &document);

// The stored form of a text with all its characters changed, shown in a base font; empty for a damaged one.
QByteArray changedText(const QByteArray &storedText, const rtf::CharChange &change, const QFont &base);
