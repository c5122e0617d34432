// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/CellRange.h"

#include <QTextCursor>
#include <QTextTable>

namespace rtf
{

CellRange allCells(const QTextTable &table)
{
    return {&table, 0, table.rows(), 0, table.columns()};
}

std::optional<CellRange> selectedCells(const QTextCursor &cursor)
{
    if (!cursor.hasComplexSelection()) {
        return {};
    }
    CellRange cells;
    cells.table = cursor.currentTable();
    cursor.selectedTableCells(&cells.firstRow, &cells.rows, &cells.firstColumn, &cells.columns);
    return cells;
}

} // namespace rtf
