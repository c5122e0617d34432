// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/TableShape.h"

#include "rtf/Limits.h"

#include <algorithm>
#include <cstdlib>

namespace rtf
{

namespace
{

constexpr qint32 snapDistance = 40; // twips; edges nearer than that are one
constexpr qint32 narrowest = 60;    // a cell's width at least, twips
constexpr qint32 furthest = longestLength;
// So that the cells of the longest row have a width each.
constexpr qint32 furthestLeft = furthest - narrowest * qint32(mostCells);
constexpr qint32 widthWithout = 1440; // of a cell that the row does not define

// How many places the grid may have beyond what the cells need.
constexpr std::size_t freePlaces = 4096;
constexpr std::size_t placesPerCell = 8;

// The edge for a cell that should end at this place: a known one near it, if that leaves this cell and those behind it
// a width.
qint32 snapped(const std::vector<qint32> &edges, qint32 place, qint32 previous, qint32 limit)
{
    const auto above = std::ranges::lower_bound(edges, place);
    for (auto near : {above, above == edges.begin() ? edges.end() : above - 1}) {
        if (near != edges.end() && std::abs(*near - place) <= snapDistance && *near >= previous + narrowest &&
            *near <= limit) {
            return *near;
        }
    }
    return place;
}

void insertEdge(std::vector<qint32> &edges, qint32 edge)
{
    const auto place = std::ranges::lower_bound(edges, edge);
    if (place == edges.end() || *place != edge) {
        edges.insert(place, edge);
    }
}

} // namespace

bool TableShape::addRow(const RowState &row, const std::vector<bool> &isEmpty)
{
    std::vector<qint32> edges = m_edges;
    std::vector<Cell> cells;
    const std::size_t count = isEmpty.size();
    qint32 left = edges.empty() ? std::min(row.left, furthestLeft) : edges.front();
    if (edges.empty()) {
        edges.push_back(left);
    }
    for (std::size_t i = 0; i < count; ++i) {
        const bool isLast = i + 1 == count;
        const std::size_t definition = isLast && !row.cells.empty() ? std::max(i, row.cells.size() - 1) : i;
        const qint32 wanted = definition < row.cells.size() ? row.cells[definition].right : left + widthWithout;
        const qint32 limit = furthest - narrowest * qint32(count - 1 - i);
        const qint32 right = snapped(m_edges, std::max(std::min(wanted, limit), left + narrowest), left, limit);
        cells.push_back({left, right, Joined::No, 1, 0});
        left = right;
    }
    for (std::size_t i = 1; i < count; ++i) {
        if (i < row.cells.size() && (row.cells[i].flags & MergeNext) != 0 && isEmpty[i]) {
            cells[i].joined = Joined::Left;
        }
    }
    // A joined cell widens the one that it is joined to.
    for (std::size_t i = count; i-- > 1;) {
        if (cells[i].joined == Joined::Left) {
            cells[i - 1].right = cells[i].right;
        }
    }
    for (const Cell &cell : cells) {
        if (cell.joined == Joined::No) {
            insertEdge(edges, cell.right);
        }
    }
    const bool isFirst = m_rows.empty();
    if (!isFirst && (m_rows.size() + 1) * edges.size() > freePlaces + placesPerCell * (m_cells + count)) {
        return false;
    }
    for (std::size_t i = 0; i < count && !isFirst; ++i) {
        if (cells[i].joined != Joined::No || i >= row.cells.size() || (row.cells[i].flags & MergeDown) == 0 ||
            !isEmpty[i]) {
            continue;
        }
        joinUp(cells, i);
    }
    m_edges = std::move(edges);
    m_cells += count;
    m_rows.push_back(std::move(cells));
    return true;
}

// Whether only cells that are part of this one stand behind it.
bool TableShape::isLast(const std::vector<Cell> &row, std::size_t cell)
{
    return std::all_of(row.begin() + qsizetype(cell) + 1, row.end(),
                       [](const Cell &other) { return other.joined == Joined::Left; });
}

// Joins a cell to the one above that has the same edges, if there is one.
void TableShape::joinUp(std::vector<Cell> &row, std::size_t place)
{
    Cell &cell = row[place];
    const auto isAbove = [&cell](const Cell &other) {
        return other.joined != Joined::Left && other.left == cell.left && other.right == cell.right;
    };
    const std::vector<Cell> &before = m_rows.back();
    const auto above = std::ranges::find_if(before, isAbove);
    if (above == before.end() || isLast(before, std::size_t(above - before.begin())) != isLast(row, place)) {
        return;
    }
    cell.joined = Joined::Up;
    cell.owner = above->joined == Joined::Up ? above->owner : m_rows.size() - 1;
    ++std::ranges::find_if(m_rows[cell.owner], isAbove)->rows;
}

void TableShape::finish()
{
    const qint32 right = m_edges.back();
    std::vector<qint32> edges{m_edges.front()};
    for (std::vector<Cell> &row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (row[i].joined == Joined::Left) {
                continue;
            }
            row[i].right = isLast(row, i) ? right : row[i].right;
            insertEdge(edges, row[i].right);
        }
    }
    m_edges = std::move(edges);
}

int TableShape::column(qint32 edge) const
{
    return static_cast<int>(std::ranges::lower_bound(m_edges, edge) - m_edges.begin());
}

} // namespace rtf
