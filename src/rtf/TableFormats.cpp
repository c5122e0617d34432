// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/TableFormats.h"

#include "rtf/Limits.h"
#include "rtf/Units.h"

#include <QTextTable>

#include <algorithm>

namespace rtf
{

namespace
{

constexpr Qt::Alignment tableAlignments[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};

struct BorderRow {
    BorderStyle style;
    QTextFrameFormat::BorderStyle shown;
};

// How each border is shown; the first row of a shown style is what that style is written as.
constexpr BorderRow borderRows[] = {
    {BorderStyle::None, QTextFrameFormat::BorderStyle_None},
    {BorderStyle::Single, QTextFrameFormat::BorderStyle_Solid},
    {BorderStyle::Thick, QTextFrameFormat::BorderStyle_Solid},
    {BorderStyle::Wavy, QTextFrameFormat::BorderStyle_Solid},
    {BorderStyle::Double, QTextFrameFormat::BorderStyle_Double},
    {BorderStyle::Dotted, QTextFrameFormat::BorderStyle_Dotted},
    {BorderStyle::Dashed, QTextFrameFormat::BorderStyle_Dashed},
    {BorderStyle::DashDot, QTextFrameFormat::BorderStyle_DotDash},
    {BorderStyle::DashDotDot, QTextFrameFormat::BorderStyle_DotDotDash},
    {BorderStyle::Inset, QTextFrameFormat::BorderStyle_Inset},
    {BorderStyle::Outset, QTextFrameFormat::BorderStyle_Outset},
    {BorderStyle::Emboss, QTextFrameFormat::BorderStyle_Ridge},
    {BorderStyle::Engrave, QTextFrameFormat::BorderStyle_Groove},
};

QTextFrameFormat::BorderStyle shownStyle(BorderStyle style)
{
    return std::ranges::find(borderRows, style, &BorderRow::style)->shown;
}

BorderStyle writtenStyle(QTextFrameFormat::BorderStyle shown)
{
    const auto *row = std::ranges::find(borderRows, shown, &BorderRow::shown);
    return row == std::ranges::end(borderRows) ? BorderStyle::Single : row->style;
}

struct CellSide {
    Side side;
    QTextFormat::Property width;
    QTextFormat::Property style;
    QTextFormat::Property brush;
    QTextFormat::Property padding;
};

constexpr CellSide cellSides[] = {
    {Side::Top, QTextFormat::TableCellTopBorder, QTextFormat::TableCellTopBorderStyle,
     QTextFormat::TableCellTopBorderBrush, QTextFormat::TableCellTopPadding},
    {Side::Left, QTextFormat::TableCellLeftBorder, QTextFormat::TableCellLeftBorderStyle,
     QTextFormat::TableCellLeftBorderBrush, QTextFormat::TableCellLeftPadding},
    {Side::Bottom, QTextFormat::TableCellBottomBorder, QTextFormat::TableCellBottomBorderStyle,
     QTextFormat::TableCellBottomBorderBrush, QTextFormat::TableCellBottomPadding},
    {Side::Right, QTextFormat::TableCellRightBorder, QTextFormat::TableCellRightBorderStyle,
     QTextFormat::TableCellRightBorderBrush, QTextFormat::TableCellRightPadding},
};

// What the columns want to be beside what their edges say. Fixed widths are left to the edges.
std::vector<PreferredWidth> preferredWidths(const Table &table)
{
    std::vector<PreferredWidth> widths(table.shape.edges().size() - 1);
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        const auto &shapes = table.shape.rows()[row];
        const std::vector<CellState> &states = table.rows[row].state.cells;
        for (std::size_t i = 0; i < std::min(shapes.size(), states.size()); ++i) {
            const PreferredWidth &wanted = states[i].width;
            if (shapes[i].joined != TableShape::Joined::No ||
                (wanted.kind != WidthKind::Content && wanted.kind != WidthKind::Percent)) {
                continue;
            }
            const int begin = table.shape.column(shapes[i].left);
            const int end = table.shape.column(shapes[i].right);
            if (wanted.kind == WidthKind::Content || end == begin + 1) {
                std::fill(widths.begin() + begin, widths.begin() + end, wanted);
            }
        }
    }
    return widths;
}

qreal percentOf(const PreferredWidth &width)
{
    return 100.0 * std::min(width.number, wholeWidth) / wholeWidth;
}

// Of two cells that stand beside each other, else above each other: a text document has one distance only.
int spacingOf(const Padding &spacing)
{
    const auto share = [&spacing](Side side) {
        const Padding::Room &room = spacing.sides[std::size_t(side)];
        return room.isSaid() ? room.twips : 0;
    };
    const int beside = share(Side::Left) + share(Side::Right);
    return beside > 0 ? beside : share(Side::Top) + share(Side::Bottom);
}

int borderWidth(qreal pixels)
{
    return std::clamp(twipsFromPixels(pixels), 1, 255);
}

} // namespace

QTextTableFormat tableFormat(const Table &table, const Tables &tables)
{
    Q_UNUSED(tables)
    QTextTableFormat format;
    const RowState &row = table.rows.front().state;
    const std::vector<qint32> &edges = table.shape.edges();
    QList<QTextLength> widths;
    const std::vector<PreferredWidth> wanted = preferredWidths(table);
    bool isFree = false;
    for (std::size_t i = 1; i < edges.size(); ++i) {
        const PreferredWidth &width = wanted[i - 1];
        isFree = isFree || width.kind != WidthKind::Edges;
        if (width.kind == WidthKind::Content) {
            widths << QTextLength();
        } else if (width.kind == WidthKind::Percent) {
            widths << QTextLength(QTextLength::PercentageLength, percentOf(width));
        } else {
            widths << QTextLength(QTextLength::FixedLength, pixelsFromTwips(edges[i] - edges[i - 1]));
        }
    }
    format.setColumnWidthConstraints(widths);
    if (isFree && row.width.kind == WidthKind::Percent) {
        format.setWidth(QTextLength(QTextLength::PercentageLength, percentOf(row.width)));
    } else if (isFree && row.width.kind == WidthKind::Twips) {
        format.setWidth(pixelsFromTwips(row.width.number));
    }
    const int spacing = std::min(spacingOf(row.spacing), longestLength);
    format.setCellSpacing(pixelsFromTwips(spacing));
    format.setCellPadding(pixelsFromTwips(row.gap));
    format.setBorder(0);
    format.setBorderCollapse(spacing == 0);
    format.setAlignment(tableAlignments[row.alignment % 3]);
    if (edges.front() != 0) {
        format.setLeftMargin(pixelsFromTwips(edges.front()));
    }
    int headers = 0;
    for (const Row &candidate : table.rows) {
        if (!candidate.state.header) {
            break;
        }
        ++headers;
    }
    if (headers > 0) {
        format.setHeaderRowCount(headers);
    }
    return format;
}

QTextTableCellFormat cellFormat(const CellState &cell, const Padding &rowPadding, const Tables &tables)
{
    QTextTableCellFormat format;
    if (cell.shade > 0 && std::size_t(cell.shade) < tables.colors.size() &&
        tables.colors[std::size_t(cell.shade)].isSet) {
        const auto &parts = tables.colors[std::size_t(cell.shade)].parts;
        format.setBackground(QColor(parts[0], parts[1], parts[2]));
    }
    if (cell.verticalAlign > 0) {
        format.setVerticalAlignment(cell.verticalAlign == 1 ? QTextCharFormat::AlignMiddle
                                                            : QTextCharFormat::AlignBottom);
    }
    for (const CellSide &side : cellSides) {
        const BorderLook look = borderLook(cell.borders[std::size_t(side.side)], tables);
        if (look.style != BorderStyle::None) {
            format.setProperty(side.width, pixelsFromTwips(look.width));
            format.setProperty(side.style, int(shownStyle(look.style)));
            format.setProperty(side.brush, QBrush(QColor(look.color)));
        }
        const auto place = std::size_t(side.side);
        const Padding::Room &own = cell.padding.sides[place];
        const Padding::Room &room = own.isSaid() ? own : rowPadding.sides[place];
        if (room.isSaid()) {
            format.setProperty(side.padding, pixelsFromTwips(room.twips));
        }
    }
    return format;
}

QTextCharFormat cellMark(QTextCharFormat mark)
{
    mark.clearBackground();
    mark.clearProperty(QTextFormat::TextVerticalAlignment);
    return mark;
}

CellLook cellLook(const QTextTableCellFormat &cell, const QTextTableFormat &table)
{
    CellLook look;
    if (const QBrush brush = cell.background(); brush.style() != Qt::NoBrush) {
        look.shade = brush.color().rgb() | 0xFF000000;
    }
    if (cell.verticalAlignment() == QTextCharFormat::AlignMiddle) {
        look.verticalAlign = 1;
    } else if (cell.verticalAlignment() == QTextCharFormat::AlignBottom) {
        look.verticalAlign = 2;
    }
    bool hasOwn = false;
    for (const CellSide &side : cellSides) {
        if (cell.hasProperty(side.padding)) {
            look.padding[std::size_t(side.side)] =
                std::clamp(twipsFromPixels(cell.doubleProperty(side.padding)), 0, longestLength);
        }
        const auto shown = static_cast<QTextFrameFormat::BorderStyle>(cell.intProperty(side.style));
        if (!cell.hasProperty(side.width) || shown == QTextFrameFormat::BorderStyle_None) {
            continue;
        }
        hasOwn = true;
        const QBrush brush = cell.brushProperty(side.brush);
        const QRgb color = brush.style() == Qt::NoBrush ? qRgb(0, 0, 0) : brush.color().rgb() | 0xFF000000;
        look.borders[std::size_t(side.side)] = {borderWidth(cell.doubleProperty(side.width)), writtenStyle(shown),
                                                color};
    }
    if (!hasOwn && table.border() > 0) {
        look.borders.fill({borderWidth(table.border()), BorderStyle::Single, qRgb(0, 0, 0)});
    }
    return look;
}

void mergeCells(const TableShape &shape, QTextTable &table)
{
    for (std::size_t row = 0; row < shape.rows().size(); ++row) {
        for (const TableShape::Cell &cell : shape.rows()[row]) {
            if (cell.joined != TableShape::Joined::No) {
                continue;
            }
            const int column = shape.column(cell.left);
            const int span = shape.column(cell.right) - column;
            if (span > 1 || cell.rows > 1) {
                table.mergeCells(static_cast<int>(row), column, cell.rows, span);
            }
        }
    }
}

} // namespace rtf
