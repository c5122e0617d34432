// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QTextFormat>

class QColor;
class QTextCursor;
class QTextDocument;

namespace rtf
{

// A change of the formatting of characters. What it does not set stays as it is.
class CharChange
{
public:
    void setBold(bool on);
    void setItalic(bool on);
    void setUnderline(bool on);
    void setStrikeOut(bool on);
    void setFamily(const QString &family);
    // In points; texts are kept with their sizes in half points from 1 to 1638.
    void setSize(double points);
    // An invalid colour is the automatic one.
    void setColour(const QColor &colour);

    // A format as the change makes it.
    QTextCharFormat appliedTo(QTextCharFormat format) const;
    // Whether it makes a difference that is seen, in characters that are selected or in those of a format.
    bool isSeenIn(const QTextCursor &selection) const;
    bool isSeenIn(const QTextCharFormat &format, const QTextDocument &document) const;
    // To all characters that are selected, as one step of undo; of selected cells also to what is typed next into an
    // empty one.
    void applyTo(const QTextCursor &selection) const;

private:
    bool meets(const QTextCharFormat &format) const;
    void applyTo(QTextCursor part, int start, int end) const;

    QTextCharFormat m_change;
    // Taken away before: what would override the change, or has no neutral value.
    QList<int> m_obsolete;
};

// The sizes that texts can have, in points.
constexpr double smallestSize = 1;
constexpr double largestSize = 1638;
// The nearest of them: they are half points.
double sizeInHalfPoints(double points);

} // namespace rtf
