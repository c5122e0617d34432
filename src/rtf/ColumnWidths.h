// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/State.h"

#include <vector>

class QTextTable;

namespace rtf
{

// The columns of a table as RTF tells them: edges in any case, and what a column wants to be where it has no width that
// is told by edges.
struct ColumnWidths {
    std::vector<int> edges; // twips; one more than there are columns
    std::vector<PreferredWidth> preferred;

    // Of the columns [begin, end), which one cell spans.
    PreferredWidth preferredOf(int begin, int end) const;
};

// Columns that are as wide as their content get edges by the length of their paragraphs, for readers that know edges
// only. It does not depend on the fonts that there are.
ColumnWidths columnWidths(const QTextTable &table);

} // namespace rtf
