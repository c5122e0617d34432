// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/BlockPlacer.h"
#include "rtf/Content.h"
#include "rtf/Limits.h"
#include "rtf/Sink.h"

class QTextDocument;

#include <memory>
#include <vector>

namespace rtf
{

// Builds the events' content into a text document where the cursor stands. Paragraphs outside tables go in as they end;
// a table is held until it is whole, because a text document wants its size first.
class DocumentSink final : public Sink
{
public:
    DocumentSink(QTextCursor &cursor, BlockPlacer::Start start);

    void begin(const Tables &tables) override;
    void text(QStringView text, const CharState &state) override;
    void picture(const Picture &picture, const CharState &state) override;
    void endParagraph(const ParaState &state, const CharState &mark, int depth) override;
    void endCell(int depth) override;
    void endRow(const RowState &row, int depth) override;
    void end() override;

private:
    struct OpenTable {
        std::unique_ptr<Table> table = std::make_unique<Table>();
        Row row;
        Cell cell;
    };

    void closeTables(std::size_t depth);
    void addTable(std::size_t depth, std::unique_ptr<Table> table);

    QTextDocument &m_document;
    qint64 m_pixelsLeft = mostTextPixels;
    FormatCache m_formats;
    BlockPlacer m_placer;
    Paragraph m_paragraph;
    std::vector<OpenTable> m_open;
};

} // namespace rtf
