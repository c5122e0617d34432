// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/State.h"
#include "rtf/TableShape.h"

#include <QString>

#include <memory>
#include <vector>

// Paragraphs and tables on their way into a text document.
namespace rtf
{

struct Run {
    qsizetype length = 0;
    int format = 0; // place in FormatCache
    bool isPicture = false;
    int around = 0; // place in FormatCache of the text format where a picture stands
};

struct Paragraph {
    QString text;
    std::vector<Run> runs;
    ParaState para;
    int mark = 0; // place in FormatCache of the formatting at its end
};

struct Table;

// A paragraph, or a table instead of it.
struct Content {
    Paragraph paragraph;
    std::unique_ptr<Table> table;
};

struct Cell {
    std::vector<Content> contents;

    // Whether it holds nothing but one paragraph without text.
    bool isEmpty() const
    {
        return contents.size() == 1 && !contents.front().table && contents.front().paragraph.text.isEmpty();
    }
};

struct Row {
    RowState state;
    std::vector<Cell> cells;
};

struct Table {
    TableShape shape;
    std::vector<Row> rows;
};

} // namespace rtf
