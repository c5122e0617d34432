// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"
#include "model/ForeignRecords.h"

#include <QByteArray>
#include <QString>

#include <vector>

// All of an entry but its place, as a value that another thread may hold.
struct EntryRecord {
    EntryId id = EntryId::None;
    // 0 for the top of what is recorded, and one more for each entry between.
    int level = 0;
    // Its place in the order of insertion.
    qint64 insertion = 0;
    QString label;
    QByteArray storedText;
    ForeignRecordList foreignRecords;
    bool tagged = false;
    bool expanded = false;
    bool sorted = false;

    bool operator==(const EntryRecord &) const = default;
};

// A subtree in outline order.
using EntryRecords = std::vector<EntryRecord>;
