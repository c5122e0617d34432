// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Sink.h"
#include "rtf/TableShape.h"

#include <QString>

#include <vector>

namespace rtf
{

// Collects the plain text that a document built from the same events would have: the same paragraphs, those that a text
// document has before and behind a table included, and those of cells that are part of another left out.
class PlainTextSink final : public Sink
{
public:
    // A picture is that character.
    explicit PlainTextSink(QChar picture = QLatin1Char(' '))
        : m_picture(picture)
    {
    }

    void begin(const Tables &tables) override;
    void text(QStringView text, const CharState &state) override;
    void picture(const Picture &picture, const CharState &state) override;
    void endParagraph(const ParaState &state, const CharState &mark, int depth) override;
    void endCell(int depth) override;
    void endRow(const RowState &row, int depth) override;
    void end() override;

    // The whole text, once the events have ended.
    QString takeText() { return std::move(m_text); }

    // How many cells all tables have then, as PlainContent counts them.
    qsizetype cells() const { return m_cells; }

private:
    struct OpenCell {
        qsizetype start = 0;
        qsizetype end = 0;
        bool isEmpty = false;
    };

    // What holds paragraphs: the document, or the cell that is open in a table.
    struct Container {
        bool hasBlock = false;
        bool endsInTable = false;
    };

    struct OpenTable {
        TableShape shape;
        std::vector<OpenCell> cells; // of the row
        qsizetype cellStart = 0;
        Container cell;
    };

    Container &container(std::size_t depth);
    void addEmptyBlock();
    void openTable();
    void closeTables(std::size_t depth);
    void endShape(TableShape &shape, int depth);

    const QChar m_picture;
    QString m_text;                 // every paragraph behind its CR LF
    qsizetype m_paragraphStart = 0; // of the paragraph that is being collected, at its CR LF
    Container m_document;
    std::vector<OpenTable> m_tables;
    qsizetype m_cells = 0;
};

} // namespace rtf
