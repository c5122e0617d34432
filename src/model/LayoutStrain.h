// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>
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
    // Microseconds that a key typed into its heaviest paragraph may need, which is laid out whole each time.
    qreal key = 0;

    LayoutStrain &operator+=(const LayoutStrain &other);

    // Within the bounds of model/Limits.h, or that many times these.
    bool isBearable(qreal times = 1) const;
};

LayoutStrain layoutStrain(const QTextDocument &document);

// Whether a text has a character that is drawn as a picture. The text engine unpacks it whenever it asks how wide it
// is.
bool hasEmoji(QStringView text);
