// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/ShownLabel.h"

#include <QTextBoundaryFinder>

namespace
{

// The last place up to a given one where a label can be cut: between two characters as they are read, where a letter
// has its accents. One that is longer than any real one ends where it has to, though not in half a code point.
qsizetype cutBefore(const QString &label, qsizetype end)
{
    constexpr qsizetype longestCharacter = 64;
    const qsizetype start = qMax<qsizetype>(0, end - longestCharacter);
    const QString around = label.sliced(start, qMin(label.size(), end + 2) - start);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, around);
    finder.setPosition(end - start);
    const qsizetype found = finder.isAtBoundary() ? end - start : finder.toPreviousBoundary();
    if (found > 0)
        return start + found;
    return label.at(end).isLowSurrogate() && label.at(end - 1).isHighSurrogate() ? end - 1 : end;
}

} // namespace

QString shownLabel(const QString &label, qsizetype longest)
{
    return label.size() <= longest ? label : label.first(cutBefore(label, longest - 1)) + u'\u2026';
}

QString briefLabel(const QString &label, qsizetype longest)
{
    if (label.size() <= longest && !label.contains(u'\n'))
        return label;
    return shownLabel(label.simplified(), longest);
}
