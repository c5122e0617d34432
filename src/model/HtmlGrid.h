// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <cstddef>
#include <vector>

// The columns and rows of a table of a web page. Every row gets as many places as the widest one has. A column in which
// no cell begins is none: whatever cells say that they span, a table has no more columns than cells.
class HtmlGrid
{
public:
    // Columns as the page counts them: where a cell begins, and behind where it ends.
    struct Cell {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    // Those so far.
    qsizetype places() const { return m_rows * m_columns; }

    void startRow();
    Cell addCell(int columns, int rows);

    // How many columns there are before each one of the page, and in all behind them.
    std::vector<int> columnsBefore() const;

private:
    struct Column {
        // The last row that a cell takes of it.
        qsizetype takenUntil = 0;
        // Whether a cell begins in it.
        bool begins = false;
    };

    qsizetype m_rows = 0;
    qsizetype m_columns = 0;
    std::size_t m_column = 0; // behind the last cell of the last row
    std::vector<Column> m_all;
};
