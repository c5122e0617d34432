// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/ShownLabel.h"

QString shownLabel(const QString &label, qsizetype longest)
{
    if (label.size() <= longest)
        return label;
    qsizetype end = longest - 1;
    // Half a character is no text.
    if (label.at(end).isLowSurrogate() && label.at(end - 1).isHighSurrogate())
        --end;
    return label.first(end) + u'\u2026';
}

QString briefLabel(const QString &label)
{
    constexpr qsizetype longest = 40;
    return shownLabel(label, longest);
}
