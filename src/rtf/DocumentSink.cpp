// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/DocumentSink.h"

#include "rtf/Pictures.h"

#include <QTextDocument>

namespace rtf
{

DocumentSink::DocumentSink(QTextCursor &cursor, BlockPlacer::Start start)
    : m_document(*cursor.document())
    , m_placer(cursor, start, m_formats)
{
    m_formats.setDefaultFamily(m_document.defaultFont().family());
}

void DocumentSink::begin(const Tables &tables)
{
    m_formats.setTables(tables);
}

void DocumentSink::text(QStringView text, const CharState &state)
{
    const int format = m_formats.charFormat(state);
    m_paragraph.text += text;
    if (!m_paragraph.runs.empty() && m_paragraph.runs.back().format == format) {
        m_paragraph.runs.back().length += text.size();
    } else {
        m_paragraph.runs.push_back({text.size(), format, false, format});
    }
}

void DocumentSink::picture(const Picture &picture, const CharState &state)
{
    const int around = m_formats.charFormat(state);
    const int format = m_formats.add(addPicture(m_document, picture, m_formats.at(around), m_pixelsLeft));
    m_paragraph.text += QChar(QChar::ObjectReplacementCharacter);
    m_paragraph.runs.push_back({1, format, true, around});
}

void DocumentSink::endParagraph(const ParaState &state, const CharState &mark, int depth)
{
    closeTables(std::size_t(depth));
    m_open.resize(std::size_t(depth));
    m_paragraph.para = state;
    // The mark itself is never part of a field.
    CharState unlinked = mark;
    unlinked[CharNumber::Link] = 0;
    m_paragraph.mark = m_formats.charFormat(unlinked);
    if (depth == 0) {
        m_placer.place(m_paragraph);
        m_paragraph.text.resize(0);
        m_paragraph.runs.clear();
        return;
    }
    m_open.back().cell.contents.push_back({std::exchange(m_paragraph, {}), nullptr});
}

void DocumentSink::endCell(int depth)
{
    closeTables(std::size_t(depth));
    OpenTable &open = m_open.back();
    // No field goes on behind a cell.
    if (!open.cell.contents.empty()) {
        open.cell.contents.back().paragraph.para[ParaNumber::Field] = 0;
    }
    open.row.cells.push_back(std::exchange(open.cell, {}));
}

void DocumentSink::endRow(const RowState &row, int depth)
{
    closeTables(std::size_t(depth));
    OpenTable &open = m_open.back();
    open.row.state = row;
    std::vector<bool> isEmpty;
    for (const Cell &cell : open.row.cells) {
        isEmpty.push_back(cell.isEmpty());
    }
    if (!open.table->shape.addRow(row, isEmpty)) {
        addTable(std::size_t(depth) - 1, std::exchange(open.table, std::make_unique<Table>()));
        open.table->shape.addRow(row, isEmpty);
    }
    open.table->rows.push_back(std::exchange(open.row, {}));
}

void DocumentSink::end()
{
    closeTables(0);
    m_placer.finish();
}

void DocumentSink::closeTables(std::size_t depth)
{
    while (m_open.size() > depth) {
        std::unique_ptr<Table> table = std::move(m_open.back().table);
        m_open.pop_back();
        addTable(m_open.size(), std::move(table));
    }
}

// Puts a whole table into the document or the cell that is open at that depth.
void DocumentSink::addTable(std::size_t depth, std::unique_ptr<Table> table)
{
    if (table->rows.empty()) {
        return;
    }
    table->shape.finish();
    if (depth == 0) {
        m_placer.place(*table);
    } else {
        m_open[depth - 1].cell.contents.push_back({{}, std::move(table)});
    }
}

} // namespace rtf
