// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/PlainTextSink.h"

namespace rtf
{

namespace
{

constexpr QLatin1StringView paragraphBreak("\r\n");

} // namespace

void PlainTextSink::begin(const Tables &tables)
{
    Q_UNUSED(tables)
    m_text = paragraphBreak;
}

void PlainTextSink::text(QStringView text, const CharState &state)
{
    Q_UNUSED(state)
    m_text += text;
}

void PlainTextSink::picture(const Picture &picture, const CharState &state)
{
    Q_UNUSED(picture)
    Q_UNUSED(state)
    m_text += m_picture;
}

void PlainTextSink::endParagraph(const ParaState &state, const CharState &mark, int depth)
{
    Q_UNUSED(state)
    Q_UNUSED(mark)
    closeTables(std::size_t(depth));
    while (m_tables.size() < std::size_t(depth)) {
        openTable();
    }
    container(std::size_t(depth)) = {true, false};
    m_paragraphStart = m_text.size();
    m_text += paragraphBreak;
}

void PlainTextSink::endCell(int depth)
{
    closeTables(std::size_t(depth));
    OpenTable &table = m_tables.back();
    if (table.cell.endsInTable) {
        addEmptyBlock();
    }
    const bool isEmpty = m_paragraphStart - table.cellStart == paragraphBreak.size();
    table.cells.push_back({table.cellStart, m_paragraphStart, isEmpty});
    table.cellStart = m_paragraphStart;
    table.cell = {};
}

void PlainTextSink::endRow(const RowState &row, int depth)
{
    closeTables(std::size_t(depth));
    OpenTable &table = m_tables.back();
    std::vector<bool> isEmpty;
    for (const OpenCell &cell : table.cells) {
        isEmpty.push_back(cell.isEmpty);
    }
    if (!table.shape.addRow(row, isEmpty)) {
        endShape(table.shape, depth);
        table.shape.addRow(row, isEmpty);
        m_text.insert(table.cells.front().start, paragraphBreak);
        m_paragraphStart += paragraphBreak.size();
        for (OpenCell &cell : table.cells) {
            cell.start += paragraphBreak.size();
            cell.end += paragraphBreak.size();
        }
    }
    const auto &shapes = table.shape.rows().back();
    for (std::size_t i = table.cells.size(); i-- > 0;) {
        if (shapes[i].joined != TableShape::Joined::No) {
            m_text.remove(table.cells[i].start, paragraphBreak.size());
            m_paragraphStart -= paragraphBreak.size();
        }
    }
    table.cells.clear();
    table.cellStart = m_paragraphStart;
}

void PlainTextSink::end()
{
    closeTables(0);
    if (m_document.endsInTable) {
        addEmptyBlock();
    }
    m_text.truncate(m_paragraphStart);
    m_text.remove(0, paragraphBreak.size());
    m_text.replace(QChar(QChar::LineSeparator), QLatin1Char('\n'));
}

PlainTextSink::Container &PlainTextSink::container(std::size_t depth)
{
    return depth == 0 ? m_document : m_tables[depth - 1].cell;
}

// Puts an empty paragraph before the one that is being collected.
void PlainTextSink::addEmptyBlock()
{
    m_text.insert(m_paragraphStart, paragraphBreak);
    m_paragraphStart += paragraphBreak.size();
}

// A table stands behind a paragraph of its own container, never at its beginning or right behind another table.
void PlainTextSink::openTable()
{
    Container &outer = container(m_tables.size());
    if (!outer.hasBlock || outer.endsInTable) {
        addEmptyBlock();
        outer = {true, false};
    }
    m_tables.emplace_back();
    m_tables.back().cellStart = m_paragraphStart;
}

void PlainTextSink::closeTables(std::size_t depth)
{
    while (m_tables.size() > depth) {
        endShape(m_tables.back().shape, static_cast<int>(m_tables.size()));
        m_tables.pop_back();
        container(m_tables.size()).endsInTable = true;
    }
}

void PlainTextSink::endShape(TableShape &shape, int depth)
{
    if (!shape.rows().empty()) {
        shape.finish();
        m_cells += (qsizetype(shape.rows().size()) * (qsizetype(shape.edges().size()) - 1)) << (depth - 1);
    }
    shape = {};
}

} // namespace rtf
