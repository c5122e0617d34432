// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

class Document;
class Entry;

// What a text of another program holds that Quillery neither shows nor writes, as it is named in a sentence; empty for
// most texts.
QString leftOutParts(const QByteArray &text);

// Tells the user what of the text that the pane shows would go with its first change, or takes the notice back where
// nothing would: the text has nothing more, or it cannot be changed. No entry has nothing.
void tellOfLeftOutParts(Document &document);
