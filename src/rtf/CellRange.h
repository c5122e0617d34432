// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>

class QTextCursor;
class QTextTable;

namespace rtf
{

// A rectangle of cells of one table. Joined cells that reach into it belong to it whole.
struct CellRange {
    const QTextTable *table = nullptr;
    int firstRow = 0;
    int rows = 0;
    int firstColumn = 0;
    int columns = 0;

    int endRow() const { return firstRow + rows; }

    int endColumn() const { return firstColumn + columns; }
};

CellRange allCells(const QTextTable &table);

// The cells that a cursor selects, which are those that removing its selection empties; nothing when it selects text.
std::optional<CellRange> selectedCells(const QTextCursor &cursor);

} // namespace rtf
