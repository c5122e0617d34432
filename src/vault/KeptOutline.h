// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryRecord.h"
#include "model/clsFont.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

struct Outline;

// All that an outline holds, as a value: the entries in outline order, without ids and without an order of insertion,
// which of them is selected (-1 for none), the fonts, and what its file says beside that.
struct KeptOutline {
    EntryRecords entries;
    int selected = -1;
    clsFont outlineFont;
    clsFont textFont;
    ForeignRecordList foreignHeader;
    QByteArray foreignTrailer;

    bool operator==(const KeptOutline &) const = default;
};

// Its texts are shared with the outline's, not copied.
KeptOutline keptOutline(const Outline &outline);

// An outline of the same content. Error 321 when an entry has no parent, 6 when there are too many.
std::unique_ptr<Outline> outlineOf(const KeptOutline &kept);

// For each entry the place of its parent; -1 for the root. Error 321 when one has none.
std::vector<int> parentsOf(const std::vector<int> &levels);
