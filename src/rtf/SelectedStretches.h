// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

class QTextCursor;

namespace rtf
{

// The positions [from, to) of a document.
struct SelectedStretch {
    int from;
    int to;

    bool operator==(const SelectedStretch &) const = default;
};

// What a cursor selects, in the document's order: one stretch, or where cells of a table are selected, the content of
// each, which may be empty. It is exactly what removing the selection takes away. None when nothing is selected.
std::vector<SelectedStretch> selectedStretches(const QTextCursor &selection);

} // namespace rtf
