// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

class QTextDocument;

// What laying out a text takes beyond what its length takes, roughly and without doing it. The text engine is quick
// with whatever people write; with some few things its effort grows by the square of their number.
struct LayoutStrain {
    // Pixels that the text is tall in a narrow pane.
    qreal height = 0;
    // Microseconds that the text engine may need for what it is slow with: fonts, words without end, tabulators,
    // floating tables, emoji and heaps of marks.
    qreal effort = 0;

    LayoutStrain &operator+=(const LayoutStrain &other);

    // Within the bounds of model/Limits.h, or that many times these.
    bool isBearable(qreal times = 1) const;
};

LayoutStrain layoutStrain(const QTextDocument &document);
