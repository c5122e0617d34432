// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/CharChange.h"

#include "rtf/EditBlock.h"
#include "rtf/Properties.h"
#include "rtf/SelectedStretches.h"

#include <QColor>
#include <QFont>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

#include <algorithm>
#include <vector>

namespace rtf
{

double sizeInHalfPoints(double points)
{
    return qRound(std::clamp(points, smallestSize, largestSize) * 2) / 2.0;
}

void CharChange::setBold(bool on)
{
    m_change.setFontWeight(on ? QFont::Bold : QFont::Normal);
}

void CharChange::setItalic(bool on)
{
    m_change.setFontItalic(on);
}

void CharChange::setUnderline(bool on)
{
    m_change.setFontUnderline(on);
    m_obsolete.append(UnderlineKindProperty);
}

void CharChange::setStrikeOut(bool on)
{
    m_change.setFontStrikeOut(on);
}

void CharChange::setFamily(const QString &family)
{
    m_change.setFontFamilies({family});
}

void CharChange::setSize(double points)
{
    m_change.setFontPointSize(sizeInHalfPoints(points));
    m_obsolete += {QTextFormat::FontPixelSize, QTextFormat::FontSizeAdjustment};
}

void CharChange::setColour(const QColor &colour)
{
    if (colour.isValid()) {
        m_change.setForeground(colour);
    }
    m_obsolete.append(QTextFormat::ForegroundBrush);
}

QTextCharFormat CharChange::appliedTo(QTextCharFormat format) const
{
    for (const int property : m_obsolete) {
        format.clearProperty(property);
    }
    format.merge(m_change);
    return format;
}

// Whether merging is not enough, because something must be taken away first.
bool CharChange::meets(const QTextCharFormat &format) const
{
    return std::any_of(m_obsolete.begin(), m_obsolete.end(), [&format](int id) { return format.hasProperty(id); });
}

bool CharChange::isSeenIn(const QTextCharFormat &format, const QTextDocument &document) const
{
    const QTextCharFormat after = appliedTo(format);
    const QFont base = document.defaultFont();
    // A format's font does not always know of its underline.
    const auto isUnderlined = [&base](const QTextCharFormat &each) {
        return each.hasProperty(QTextFormat::TextUnderlineStyle) ? each.underlineStyle() != QTextCharFormat::NoUnderline
                                                                 : base.underline();
    };
    if (format.font().resolve(base) != after.font().resolve(base) || format.foreground() != after.foreground() ||
        isUnderlined(format) != isUnderlined(after)) {
        return true;
    }
    return std::any_of(m_obsolete.begin(), m_obsolete.end(), [&](int id) {
        return id != QTextFormat::ForegroundBrush && format.property(id) != after.property(id);
    });
}

bool CharChange::isSeenIn(const QTextCursor &selection) const
{
    const QTextDocument &document = *selection.document();
    int known = -1;
    for (const auto [from, to] : selectedStretches(selection)) {
        for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() <= to;
             block = block.next()) {
            // The mark before a paragraph looks as the paragraph begins.
            if (block.position() > from && isSeenIn(block.charFormat(), document)) {
                return true;
            }
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextFragment fragment = it.fragment();
                const bool isTouched = fragment.position() < to && fragment.position() + fragment.length() > from;
                if (!isTouched || fragment.charFormatIndex() == known) {
                    continue;
                }
                known = fragment.charFormatIndex();
                if (isSeenIn(fragment.charFormat(), document)) {
                    return true;
                }
            }
        }
        if (selection.hasComplexSelection() && document.findBlock(from).length() == 1 &&
            isSeenIn(selection.currentTable()->cellAt(from).format(), document)) {
            return true;
        }
    }
    return false;
}

void CharChange::applyTo(const QTextCursor &selection) const
{
    QTextCursor part(selection);
    const EditBlock edit(part);
    for (const SelectedStretch &stretch : selectedStretches(selection)) {
        applyTo(part, stretch.from, stretch.to);
        if (!selection.hasComplexSelection()) {
            continue;
        }
        // The mark of a cell's first paragraph stands before the cell's content.
        QTextTableCell cell = selection.currentTable()->cellAt(stretch.from);
        if (selection.document()->findBlock(stretch.from).length() == 1) {
            cell.setFormat(appliedTo(cell.format()));
        }
    }
}

void CharChange::applyTo(QTextCursor part, int start, int end) const
{
    struct Stretch {
        int from;
        int to;
        QTextCharFormat format;
    };

    std::vector<Stretch> stretches;
    int known = -1;
    bool meetsKnown = false;
    for (QTextBlock block = part.document()->findBlock(start); block.isValid() && block.position() < end;
         block = block.next()) {
        for (auto it = block.begin(); !m_obsolete.isEmpty() && !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.charFormatIndex() != known) {
                known = fragment.charFormatIndex();
                meetsKnown = meets(fragment.charFormat());
            }
            const int from = std::max(fragment.position(), start);
            const int to = std::min(fragment.position() + fragment.length(), end);
            if (meetsKnown && from < to) {
                stretches.push_back({from, to, appliedTo(fragment.charFormat())});
            }
        }
    }
    const auto select = [&part](int from, int to) {
        part.setPosition(from);
        part.setPosition(to, QTextCursor::KeepAnchor);
        return from < to;
    };
    // From the start to the end and nothing twice: undo adds up the lengths to find the place for the caret.
    int done = start;
    for (const Stretch &stretch : stretches) {
        if (select(done, stretch.from)) {
            part.mergeCharFormat(m_change);
        }
        select(stretch.from, stretch.to);
        part.setCharFormat(stretch.format);
        done = stretch.to;
    }
    if (select(done, end)) {
        part.mergeCharFormat(m_change);
    }
}

} // namespace rtf
