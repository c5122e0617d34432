// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/KeptOutline.h"

#include <vector>

// An entry whose text is known by the number under which it is stored; 0 is the empty text.
struct NumberedEntry {
    // Without its text.
    EntryRecord entry;
    qint64 text = 0;
};

// The structure of an outline as blocks of bytes, each some entries in outline order. Where a block ends depends on the
// entries there alone: what stands in front or behind can change without making other blocks of the rest.
std::vector<QByteArray> blocksOf(const std::vector<NumberedEntry> &entries);
// Adds the entries of a block; error 321 for bytes that are none.
void appendBlock(std::vector<NumberedEntry> &entries, const QByteArray &block);

// All but the entries.
QByteArray headOf(const KeptOutline &outline);
// Takes it into an outline.
void readHead(KeptOutline &outline, const QByteArray &head);

// Numbers that mostly follow one another.
QByteArray packedNumbers(const std::vector<qint64> &numbers);
std::vector<qint64> unpackedNumbers(const QByteArray &packed);
