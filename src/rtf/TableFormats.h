// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Content.h"
#include "rtf/Looks.h"

#include <QTextTableCellFormat>
#include <QTextTableFormat>

class QTextTable;

// Tables of a text document: widths, alignment, shading and borders.
namespace rtf
{

QTextTableFormat tableFormat(const Table &table, const Tables &tables);

QTextTableCellFormat cellFormat(const CellState &cell, const Padding &rowPadding, const Tables &tables);

// The formatting of the first paragraph of a cell, without what would be the cell's own: a text document keeps both in
// one place.
QTextCharFormat cellMark(QTextCharFormat mark);

// What RTF says of a cell.
struct CellLook {
    OptionalColor shade;
    int verticalAlign = 0; // 0 top, 1 centre, 2 bottom
    BorderLooks borders;
    std::array<int, std::size_t(Side::Count)> padding{-1, -1, -1, -1}; // twips; -1 that of the table
};

// A cell without borders of its own has those of its table.
CellLook cellLook(const QTextTableCellFormat &cell, const QTextTableFormat &table);

// Joins the cells of a fresh table as its shape says.
void mergeCells(const TableShape &shape, QTextTable &table);

} // namespace rtf
