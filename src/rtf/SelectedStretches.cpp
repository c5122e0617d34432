// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/SelectedStretches.h"

#include <QTextCursor>
#include <QTextTable>

#include <algorithm>

namespace rtf
{

std::vector<SelectedStretch> selectedStretches(const QTextCursor &selection)
{
    if (!selection.hasSelection()) {
        return {};
    }
    if (!selection.hasComplexSelection()) {
        return {{selection.selectionStart(), selection.selectionEnd()}};
    }
    int firstRow = -1;
    int rows = 0;
    int firstColumn = -1;
    int columns = 0;
    selection.selectedTableCells(&firstRow, &rows, &firstColumn, &columns);
    const QTextTable *table = selection.currentTable();
    std::vector<SelectedStretch> stretches;
    for (int row = firstRow; row < firstRow + rows; ++row) {
        for (int column = firstColumn; column < firstColumn + columns; ++column) {
            const QTextTableCell cell = table->cellAt(row, column);
            stretches.push_back({cell.firstPosition(), cell.lastPosition()});
        }
    }
    // A merged cell is met at each place that it covers.
    std::ranges::sort(stretches, {}, &SelectedStretch::from);
    stretches.erase(std::unique(stretches.begin(), stretches.end()), stretches.end());
    return stretches;
}

} // namespace rtf
