// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <vector>

// Records of a native file that this program does not know, as they stood there: they are written back unchanged.
struct ForeignRecords {
    // How many of the program's own records of the header, or of the entry, stand before them.
    int behind = 0;
    QByteArray bytes;

    bool operator==(const ForeignRecords &) const = default;
};

// Those of a header or an entry, in the order of the file, at most one for each place.
using ForeignRecordList = std::vector<ForeignRecords>;
