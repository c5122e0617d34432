// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Writer.h"

#include "rtf/ColumnWidths.h"
#include "rtf/Limits.h"
#include "rtf/Properties.h"
#include "rtf/TableFormats.h"
#include "rtf/Units.h"

#include <QTextTable>

#include <algorithm>

// Tables of a text document as rows of cells.
namespace rtf
{

void Writer::writeTable(const CellRange &cells, int depth)
{
    const ColumnWidths widths = columnWidths(*cells.table);
    for (int row = cells.firstRow; row < cells.endRow(); ++row) {
        if (depth == 1) {
            writeRowDefinition(cells, widths, row);
        } else {
            // Word processors refuse a nested row that does not begin by saying how deep it is.
            m_paragraphWords.clear();
            m_plainFormatIndex = -1;
        }
        for (int column = cells.firstColumn; column < cells.endColumn();) {
            const QTextTableCell cell = cells.table->cellAt(row, column);
            if (row == std::max(cell.row(), cells.firstRow)) {
                Paragraphs place{depth, false};
                writeFrame(cell.begin(), cell.end(), place);
            } else {
                writeEmptyCell(depth);
            }
            closeFields(0);
            endWith(depth == 1 ? "\\cell" : "\\nestcell");
            column = std::max(column + 1, cell.column() + cell.columnSpan());
        }
        if (depth > 1) {
            m_body.raw("{\\*\\nesttableprops");
            writeRowDefinition(cells, widths, row);
            m_body.word("\\nestrow");
            m_body.raw("}");
        } else {
            m_body.word("\\row");
        }
        m_body.lineEnd();
    }
}

// A cell that only goes on with the one above it.
void Writer::writeEmptyCell(int depth)
{
    Output words;
    words.word("\\pard");
    words.word("\\intbl");
    if (depth > 1) {
        words.word("\\itap", depth);
    }
    setParagraphWords(words);
    m_plainFormatIndex = -1;
}

void Writer::writeRowDefinition(const CellRange &cells, const ColumnWidths &widths, int row)
{
    const QTextTableFormat format = cells.table->format();
    const std::vector<int> &edges = widths.edges;
    const int before = edges[std::size_t(cells.firstColumn)] - edges.front(); // of columns that are not written
    m_body.word("\\trowd");
    m_body.word("\\trgaph", std::max(0, twipsFromPixels(format.cellPadding())));
    m_body.word("\\trleft", edges.front());
    writeCellSpacing(format);
    if (format.alignment() & Qt::AlignHCenter) {
        m_body.word("\\trqc");
    } else if (format.alignment() & Qt::AlignRight) {
        m_body.word("\\trqr");
    }
    if (row < format.headerRowCount()) {
        m_body.word("\\trhdr");
    }
    writeRowHeight(cells, row);
    writeTableWidth(format, widths);
    for (int column = cells.firstColumn; column < cells.endColumn();) {
        const int first = column;
        const QTextTableCell cell = cells.table->cellAt(row, column);
        column = std::clamp(cell.column() + cell.columnSpan(), column + 1, cells.endColumn());
        writeCellDefinition(cells, cell, row);
        writePreferredWidth("\\clftsWidth", "\\clwWidth", widths.preferredOf(first, column));
        m_body.word("\\cellx", edges[std::size_t(column)] - before);
    }
}

// Each side of a cell has half of the room between two.
void Writer::writeCellSpacing(const QTextTableFormat &format)
{
    constexpr std::pair<const char *, const char *> words[] = {
        {"\\trspdl", "\\trspdfl"}, {"\\trspdt", "\\trspdft"}, {"\\trspdb", "\\trspdfb"}, {"\\trspdr", "\\trspdfr"}};
    constexpr int inTwips = 3;
    const int spacing = format.borderCollapse() ? 0 : std::min(twipsFromPixels(format.cellSpacing()), longestLength);
    if (spacing <= 0) {
        return;
    }
    for (const auto &[share, unit] : words) {
        const bool isFirst = share == words[0].first || share == words[1].first;
        m_body.word(share, isFirst ? spacing / 2 : spacing - spacing / 2);
        m_body.word(unit, inTwips);
    }
}

// The cells that begin in the row know it.
void Writer::writeRowHeight(const CellRange &cells, int row)
{
    for (int column = cells.firstColumn; column < cells.endColumn(); ++column) {
        const QTextTableCell cell = cells.table->cellAt(row, column);
        if (cell.row() != row) {
            continue;
        }
        const QTextCharFormat format = cell.format();
        if (format.boolProperty(RowKeepProperty)) {
            m_body.word("\\trkeep");
        }
        if (const int height = format.intProperty(RowHeightProperty); height != 0) {
            m_body.word("\\trrh", height);
        }
        return;
    }
}

// A table all of whose columns are told by edges is as wide as they are.
void Writer::writeTableWidth(const QTextTableFormat &format, const ColumnWidths &widths)
{
    const auto isFree = [](const PreferredWidth &width) { return width.kind != WidthKind::Edges; };
    if (std::ranges::none_of(widths.preferred, isFree)) {
        return;
    }
    m_body.word("\\trautofit", 1);
    const QTextLength width = format.width();
    PreferredWidth wanted{WidthKind::Content, 0};
    if (width.type() == QTextLength::PercentageLength) {
        wanted = {WidthKind::Percent, qRound(std::clamp(width.rawValue(), 0.0, 100.0) * wholeWidth / 100)};
    } else if (width.type() == QTextLength::FixedLength) {
        wanted = {WidthKind::Twips, std::clamp(twipsFromPixels(width.rawValue()), 0, longestLength)};
    }
    writePreferredWidth("\\trftsWidth", "\\trwWidth", wanted);
}

void Writer::writePreferredWidth(const char *kindWord, const char *word, const PreferredWidth &width)
{
    if (width.kind != WidthKind::Edges) {
        m_body.word(kindWord, int(width.kind));
    }
    if (width.kind == WidthKind::Percent || width.kind == WidthKind::Twips) {
        m_body.word(word, width.number);
    }
}

void Writer::writeCellDefinition(const CellRange &cells, const QTextTableCell &cell, int row)
{
    const int top = std::max(cell.row(), cells.firstRow);
    if (std::min(cell.row() + cell.rowSpan(), cells.endRow()) - top > 1) {
        m_body.word(row == top ? "\\clvmgf" : "\\clvmrg");
    }
    constexpr const char *borderWords[] = {"\\clbrdrt", "\\clbrdrl", "\\clbrdrb", "\\clbrdrr"};
    const CellLook look = cellLook(cell.format().toTableCellFormat(), cells.table->format());
    if (look.verticalAlign != 0) {
        m_body.word(look.verticalAlign == 1 ? "\\clvertalc" : "\\clvertalb");
    }
    for (std::size_t side = 0; side < look.borders.size(); ++side) {
        if (look.borders[side].style != BorderStyle::None) {
            m_body.word(borderWords[side]);
            writeBorder(m_body, look.borders[side]);
        }
    }
    if (look.shade) {
        m_body.word("\\clcbpat", m_tables.color(look.shade));
    }
    // In the order of the sides, with the words that word processors have for them (see the reader's table).
    constexpr const char *paddingWords[] = {"\\clpadl", "\\clpadt", "\\clpadb", "\\clpadr"};
    constexpr const char *unitWords[] = {"\\clpadfl", "\\clpadft", "\\clpadfb", "\\clpadfr"};
    for (std::size_t side = 0; side < look.padding.size(); ++side) {
        if (look.padding[side] >= 0) {
            m_body.word(unitWords[side], int(WidthKind::Twips));
            m_body.word(paddingWords[side], look.padding[side]);
        }
    }
}

} // namespace rtf
