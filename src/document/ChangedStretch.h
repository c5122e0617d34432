// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>

// The stretch of a text in which all its changes lie: what was removed is of the text as it was before the first of
// them, what was added of the text as it is now. Positions are a text document's.
struct ChangedStretch {
    int from = 0;
    int removed = 0;
    int added = 0;

    bool isEmpty() const { return removed == 0 && added == 0; }

    // Takes in one more change.
    void note(int position, int charsRemoved, int charsAdded)
    {
        if (isEmpty()) {
            *this = {position, charsRemoved, charsAdded};
            return;
        }
        const int begin = std::min(from, position);
        const int end = std::max(from + added, position + charsRemoved);
        removed = end - added + removed - begin;
        added = end - charsRemoved + charsAdded - begin;
        from = begin;
    }
};
