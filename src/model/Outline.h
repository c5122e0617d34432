// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryTree.h"
#include "model/ForeignRecords.h"
#include "model/clsFont.h"

#include <QByteArray>

// What a document's file holds: the entries with their texts, which of them is selected, and the fonts.
struct Outline {
    EntryTree tree;
    clsFont outlineFont;
    // What new texts are given.
    clsFont textFont;

    // What the file holds beside that and this program does not know: in the header, and behind the last entry.
    ForeignRecordList foreignHeader;
    QByteArray foreignTrailer;
};
