// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Interpreter.h"

#include <algorithm>

// Where paragraphs, cells and rows end. Word processors set the table words with varying care; the sink sees whole
// tables.
namespace rtf
{

int Interpreter::tableDepth() const
{
    const qint32 depth = m_state.para[ParaNumber::TableDepth];
    return depth > 0 ? depth : m_state.para.has(InTable) ? 1 : 0;
}

void Interpreter::endParagraph(int depth)
{
    flush();
    takeBlanks();
    closeRowsBelow(depth);
    while (m_openRows.size() < std::size_t(depth)) {
        m_openRows.emplace_back();
    }
    for (OpenRow &row : m_openRows) {
        row.cellIsOpen = true;
    }
    ParaState para = m_state.para;
    const qint32 legacy = std::exchange(m_paragraphLegacy, 0);
    if (para[ParaNumber::LegacyList] == 0) {
        para[ParaNumber::LegacyList] = legacy;
    }
    // Of the two ways to say a paragraph's list, the newer one is for readers that know it.
    const auto list = m_tables.listOverrides.constFind(para[ParaNumber::ListNumber]);
    if (list != m_tables.listOverrides.constEnd() && list->list >= 0) {
        para[ParaNumber::LegacyList] = 0;
    }
    const bool isNewSection = std::exchange(m_sectionEnded, false) && m_sectionsBreak;
    if (std::exchange(m_pageBreak, false) || isNewSection) {
        para.flags |= PageBreakBefore;
    }
    // A field goes on behind the paragraph where it has shown something before, but not from cell to cell.
    const bool isBehindOther = std::exchange(m_shownDepth, depth) == depth || m_hasContent;
    m_shownField = isBehindOther ? commonField(m_shownField, m_state.chars[CharNumber::Link]) : 0;
    para[ParaNumber::Field] = m_shownField;
    // A paragraph that was made of the one before by a line break has its fields a second time.
    m_unshownBefore = 0;
    const qint32 unshown = internUnshown();
    const bool isRepeated = unshown == std::exchange(m_lastUnshown, unshown);
    para[ParaNumber::Unshown] = isRepeated ? 0 : unshown;
    m_sink.endParagraph(para, m_state.chars, depth);
    ++m_shown;
    m_isPlain = false;
    m_hasContent = false;
    m_hasParagraph = true;
}

void Interpreter::endContentParagraph()
{
    flush();
    takeBlanks();
    if (m_hasContent) {
        endParagraph(tableDepth());
    }
}

void Interpreter::endCell(int depth)
{
    if (!isContent()) {
        return;
    }
    endParagraph(depth);
    m_shownField = 0;
    OpenRow &row = m_openRows.back();
    if (row.cells + 1 < mostCells) {
        row.cellIsOpen = false;
        ++row.cells;
        m_sink.endCell(depth);
    }
}

// Ends the row at this depth and all inside it. A row without cells is none.
void Interpreter::endRow(int depth, const RowState &row)
{
    flush();
    m_blanks.clear(); // between the last cell and the end of its row they are notation
    endContentParagraph();
    m_shownField = 0;
    closeRowsBelow(depth);
    if (m_openRows.size() < std::size_t(depth)) {
        return;
    }
    OpenRow &open = m_openRows.back();
    if (open.cellIsOpen) {
        m_sink.endCell(depth);
        ++open.cells;
    }
    if (open.cells > 0) {
        m_sink.endRow(row, depth);
    }
    open = {};
    if (depth == 1) {
        m_openRows.clear();
    }
}

// Whether a cell has ended and nothing of another one has come.
bool Interpreter::isBehindCell() const
{
    return !m_hasContent && m_state.chars[CharNumber::Link] == 0 && !m_openRows.empty() &&
           m_openRows.back().cells > 0 && !m_openRows.back().cellIsOpen;
}

// Blanks behind a cell that turn out to be text.
void Interpreter::takeBlanks()
{
    if (!m_blanks.isEmpty()) {
        m_sink.text(m_blanks, m_blankChars);
        m_blanks.clear();
        m_hasContent = true;
        ++m_shown;
        m_shownField = 0;
    }
}

// Ends a row of a table in a table. One that is not defined is like the last one that was, at its own depth: the rows
// of deeper tables may have come between.
void Interpreter::endNestedRow()
{
    const int depth = qMax(2, tableDepth());
    RowState &last = m_nestedRows[depth];
    if (std::exchange(m_nestedRowIsDefined, false)) {
        last = m_nestedRow;
    } else if (!last.cells.empty()) {
        m_nestedRow = last;
    }
    endRow(depth, m_nestedRow);
}

// Ends the rows that are deeper than the paragraph that comes.
void Interpreter::closeRowsBelow(int depth)
{
    while (m_openRows.size() > std::size_t(depth)) {
        const int last = static_cast<int>(m_openRows.size());
        OpenRow &open = m_openRows.back();
        if (open.cellIsOpen) {
            m_sink.endCell(last);
            ++open.cells;
        }
        if (open.cells > 0) {
            m_sink.endRow(last == 1 ? m_row : m_nestedRow, last);
        }
        m_openRows.pop_back();
    }
}

// The last paragraph may lack its \par; a text without any is one empty paragraph.
void Interpreter::finish()
{
    flush();
    takeBlanks();
    const auto isPicture = [](const Group &group) { return group.destination == Destination::Picture; };
    if (isPicture(m_state) || std::ranges::any_of(m_stack, isPicture)) {
        finishPicture(); // the text was cut off inside it
    }
    if (m_hasContent || !m_hasParagraph) {
        endParagraph(tableDepth());
    }
    closeRowsBelow(0);
}

RowState &Interpreter::currentRow()
{
    return m_state.destination == Destination::NestedRow ? m_nestedRow : m_row;
}

} // namespace rtf
