// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/HtmlGrid.h"

#include <algorithm>

void HtmlGrid::startRow()
{
    ++m_rows;
    m_column = 0;
}

HtmlGrid::Cell HtmlGrid::addCell(int columns, int rows)
{
    if (m_rows == 0)
        startRow();
    while (m_column < m_all.size() && m_all[m_column].takenUntil >= m_rows)
        ++m_column;
    const Cell cell{m_column, m_column + std::size_t(columns)};
    m_all.resize(std::max(m_all.size(), cell.end));
    m_columns += m_all[cell.begin].begins ? 0 : 1;
    m_all[cell.begin].begins = true;
    for (; m_column < cell.end; ++m_column)
        m_all[m_column].takenUntil = m_rows + rows - 1;
    return cell;
}

std::vector<int> HtmlGrid::columnsBefore() const
{
    std::vector<int> before{0};
    before.reserve(m_all.size() + 1);
    for (const Column &column : m_all)
        before.push_back(before.back() + (column.begins ? 1 : 0));
    return before;
}
