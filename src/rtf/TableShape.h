// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/State.h"

#include <vector>

namespace rtf
{

// The grid of a table. RTF gives each row its own cell edges; a text document wants columns that all rows share. The
// edges of all rows become the columns, each cell spans those between its own edges, and empty cells that RTF joins to
// a neighbour are part of it. Rows that fit together so badly that the grid would be mostly void go into tables of
// their own.
class TableShape
{
public:
    enum class Joined : quint8 { No, Left, Up };

    // One cell as the text gives it.
    struct Cell {
        qint32 left = 0; // twips
        qint32 right = 0;
        Joined joined = Joined::No;
        int rows = 1;          // height, of a cell that is not joined to another
        std::size_t owner = 0; // the row of the cell that this one is joined to upwards
    };

    // Takes a row with as many cells as isEmpty tells of. False, and nothing is taken, when it needs a table of its
    // own; a first row never does.
    bool addRow(const RowState &row, const std::vector<bool> &isEmpty);

    // Call when all rows are in: the last cell of each row grows to the right edge of the table, and edges that no cell
    // has any more are given up.
    void finish();

    const std::vector<std::vector<Cell>> &rows() const { return m_rows; }

    // The edges of the columns, ascending; one more than there are columns.
    const std::vector<qint32> &edges() const { return m_edges; }

    // The column that begins at an edge.
    int column(qint32 edge) const;

private:
    static bool isLast(const std::vector<Cell> &row, std::size_t cell);
    void joinUp(std::vector<Cell> &row, std::size_t place);

    std::vector<std::vector<Cell>> m_rows;
    std::vector<qint32> m_edges;
    std::size_t m_cells = 0;
};

} // namespace rtf
