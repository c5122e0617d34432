// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/ColumnWidths.h"

#include "rtf/Looks.h"
#include "rtf/Units.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>

#include <algorithm>

namespace rtf
{

namespace
{

constexpr int textWidth = 9000; // twips between the margins of a page
constexpr int narrowestColumn = 60;
constexpr int narrowestText = 300;

// About what the longest paragraph of a cell needs, twips.
int contentWidth(const QTextTableCell &cell, const QTextDocument &document)
{
    int longest = 0;
    int halfPoints = 0;
    for (QTextBlock block = document.findBlock(cell.firstPosition());
         block.isValid() && block.position() <= cell.lastPosition(); block = block.next()) {
        const QTextBlock::iterator first = block.begin();
        if (halfPoints == 0 && !first.atEnd()) {
            halfPoints = charLook(first.fragment().charFormat(), document.defaultFont()).halfPoints;
        }
        longest = std::max(longest, block.length() - 1);
    }
    // Letters are half as wide as they are high, taken together.
    constexpr int twipsPerHalfPoint = 5;
    return std::min(longest, textWidth) * std::min(halfPoints, 200) * twipsPerHalfPoint + narrowestText;
}

int columnContentWidth(const QTextTable &table, int column)
{
    int width = narrowestText;
    for (int row = 0; row < table.rows() && width < textWidth; ++row) {
        const QTextTableCell cell = table.cellAt(row, column);
        if (cell.row() == row && cell.column() == column && cell.columnSpan() == 1) {
            width = std::max(width, contentWidth(cell, *table.document()));
        }
    }
    return std::min(width, textWidth);
}

} // namespace

PreferredWidth ColumnWidths::preferredOf(int begin, int end) const
{
    PreferredWidth all = preferred[std::size_t(begin)];
    for (int column = begin + 1; column < end; ++column) {
        const PreferredWidth &each = preferred[std::size_t(column)];
        if (each.kind != all.kind) {
            return {};
        }
        all.number += each.number;
    }
    return all;
}

ColumnWidths columnWidths(const QTextTable &table)
{
    const QTextTableFormat format = table.format();
    const QList<QTextLength> lengths = format.columnWidthConstraints();
    const int columns = table.columns();
    ColumnWidths widths;
    std::vector<int> twips;
    int fixed = 0;
    int free = 0;
    for (int column = 0; column < columns; ++column) {
        const QTextLength length = lengths.value(column);
        PreferredWidth wanted;
        int width = 0;
        if (length.type() == QTextLength::FixedLength) {
            width = twipsFromPixels(length.rawValue());
        } else if (length.type() == QTextLength::PercentageLength) {
            const qreal percent = std::clamp(length.rawValue(), 0.0, 100.0);
            width = std::max(narrowestColumn, qRound(textWidth * percent / 100));
            wanted = {WidthKind::Percent, qRound(percent * wholeWidth / 100)};
        } else {
            width = columnContentWidth(table, column);
            wanted.kind = WidthKind::Content;
        }
        (wanted.kind == WidthKind::Content ? free : fixed) += std::max(1, width);
        twips.push_back(std::max(1, width));
        widths.preferred.push_back(wanted);
    }
    // What does not fit on a page shares what is left of it.
    const int room = std::max(textWidth - fixed, 0);
    widths.edges.push_back(twipsFromPixels(format.leftMargin()));
    for (std::size_t column = 0; column < twips.size(); ++column) {
        int width = twips[column];
        if (widths.preferred[column].kind == WidthKind::Content && free > room) {
            width = std::max(narrowestColumn, static_cast<int>(qint64(width) * room / free));
        }
        widths.edges.push_back(widths.edges.back() + width);
    }
    return widths;
}

} // namespace rtf
