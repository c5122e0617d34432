// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/BlockPlacer.h"

#include "rtf/Properties.h"
#include "rtf/TableFormats.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QTextTableFormat>

namespace rtf
{

BlockPlacer::BlockPlacer(QTextCursor &cursor, Start start, FormatCache &formats)
    : m_formats(formats)
    , m_lists(*cursor.document())
    , m_place{cursor, false, false, false}
    , m_isInText(start == Start::InText)
{
}

void BlockPlacer::place(const Paragraph &paragraph)
{
    place(paragraph, m_place);
}

void BlockPlacer::place(const Table &table)
{
    place(table, m_place);
}

void BlockPlacer::place(const Paragraph &paragraph, Place &place)
{
    ParaState para = paragraph.para;
    std::optional<ListLook> look = m_lists.look(para, m_formats.tables());
    QTextList *list = m_lists.find(para, look.has_value());
    QTextBlockFormat block = m_formats.blockFormat(para, look.has_value());
    if (paragraph.runs.empty()) {
        setRule(block, para[ParaNumber::RuleWidth]);
    }
    if (list != nullptr) {
        block.setObjectIndex(list->objectIndex());
    }
    // The formatting of a paragraph as such shows in its list label; it is that of its first character.
    const QTextCharFormat &mark = m_formats.at(paragraph.runs.empty() ? paragraph.mark : paragraph.runs.front().around);

    bool isFormatted = true;
    if (!place.hasBlock && m_isInText && &place == &m_place) {
        isFormatted = beginInText(block, mark);
    } else if (!place.hasBlock || place.afterTable) {
        place.cursor.setBlockFormat(block);
        if (place.isCell && !place.hasBlock) {
            place.cursor.mergeBlockCharFormat(cellMark(mark));
        } else {
            place.cursor.setBlockCharFormat(mark);
        }
    } else {
        applyFirstFormat();
        place.cursor.insertBlock(block, mark);
    }
    place.hasBlock = true;
    place.afterTable = false;
    if (look && list == nullptr && isFormatted) {
        look->group = m_lists.group(para);
        QTextListFormat format = listFormat(*look);
        if (m_lists.goesOn()) {
            format.setProperty(ListGoesOnProperty, true);
        }
        m_lists.join(para, place.cursor.createList(format));
    }
    qsizetype begin = 0;
    for (const Run &run : paragraph.runs) {
        const QTextCharFormat &format = m_formats.at(run.format);
        if (run.isPicture) {
            place.cursor.insertImage(format.toImageFormat());
        } else {
            // Not a copy: the document takes the characters over before the paragraph goes.
            place.cursor.insertText(QString::fromRawData(paragraph.text.constData() + begin, run.length), format);
        }
        begin += run.length;
    }
}

// The first paragraph of a text that goes in at a cursor. An empty paragraph takes its format; at the beginning of
// another one, it does when more paragraphs follow; elsewhere the paragraph stays as it is. Whether the format is set
// already.
bool BlockPlacer::beginInText(const QTextBlockFormat &block, const QTextCharFormat &mark)
{
    QTextCursor &cursor = m_place.cursor;
    if (cursor.block().length() == 1) {
        cursor.setBlockFormat(block);
        cursor.setBlockCharFormat(mark);
        return true;
    }
    if (cursor.atBlockStart()) {
        m_firstBlock = cursor.position();
        m_firstFormat = block;
    }
    return false;
}

// Another paragraph follows the first.
void BlockPlacer::applyFirstFormat()
{
    if (m_firstBlock >= 0) {
        QTextCursor first(m_place.cursor.document());
        first.setPosition(std::exchange(m_firstBlock, -1));
        first.setBlockFormat(m_firstFormat);
    }
}

void BlockPlacer::place(const std::vector<Content> &contents, Place &place)
{
    for (const Content &content : contents) {
        if (content.table) {
            this->place(*content.table, place);
        } else {
            this->place(content.paragraph, place);
        }
    }
    if (place.afterTable) {
        this->place(plainParagraph(), place);
    }
}

void BlockPlacer::place(const Table &table, Place &place)
{
    if (place.afterTable) {
        this->place(plainParagraph(), place);
    }
    applyFirstFormat();
    QTextCursor &cursor = place.cursor;
    if (!place.hasBlock && !(m_isInText && &place == &m_place)) {
        QTextBlockFormat lead;
        lead.setProperty(TableLeadProperty, true);
        cursor.setBlockFormat(lead);
    }
    const TableShape &shape = table.shape;
    const int rows = static_cast<int>(shape.rows().size());
    const int columns = static_cast<int>(shape.edges().size()) - 1;
    QTextTable *target = cursor.insertTable(rows, columns, tableFormat(table));
    mergeCells(shape, *target);
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        fillRow(table, row, *target);
    }
    cursor.setPosition(target->lastCursorPosition().position() + 1);
    place.hasBlock = true;
    place.afterTable = true;
}

QTextTableFormat BlockPlacer::tableFormat(const Table &table)
{
    QTextTableFormat format = rtf::tableFormat(table, m_formats.tables());
    if (++m_tables > mostUnspreadFormats) {
        const std::vector<qint32> &edges = table.shape.edges();
        format.setProperty(SpreadProperty, static_cast<int>(qHashRange(edges.begin(), edges.end())));
    }
    return format;
}

void BlockPlacer::fillRow(const Table &table, std::size_t row, QTextTable &target)
{
    const auto &shapes = table.shape.rows()[row];
    const Row &source = table.rows[row];
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (shapes[i].joined != TableShape::Joined::No) {
            continue;
        }
        QTextTableCell cell = target.cellAt(static_cast<int>(row), table.shape.column(shapes[i].left));
        const CellState state = i < source.state.cells.size() ? source.state.cells[i] : CellState();
        // The cell's own format holds how many columns and rows it spans.
        QTextCharFormat format = cell.format();
        format.merge(cellFormat(state, source.state.padding, m_formats.tables()));
        if (source.state.height != 0) {
            format.setProperty(RowHeightProperty, source.state.height);
        }
        if (source.state.keep) {
            format.setProperty(RowKeepProperty, true);
        }
        cell.setFormat(format);
        QTextCursor cursor = cell.firstCursorPosition();
        Place inside{cursor, false, false, true};
        place(source.cells[i].contents, inside);
    }
}

void BlockPlacer::finish()
{
    if (m_place.afterTable) {
        place(plainParagraph(), m_place);
    }
}

Paragraph BlockPlacer::plainParagraph()
{
    Paragraph paragraph;
    paragraph.para = ParaState::plain();
    paragraph.mark = m_formats.charFormat(CharState::plain());
    return paragraph;
}

} // namespace rtf
