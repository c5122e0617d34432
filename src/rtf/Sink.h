// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/State.h"
#include "rtf/Tables.h"

#include <QStringView>

namespace rtf
{

// What an RTF text says, in order, with everything that is only notation resolved. Tables are well formed: a row's
// cells are all ended before the row, a deeper table's rows before the cell around it, and no cell lacks its last
// paragraph.
class Sink
{
public:
    virtual ~Sink() = default;

    // The tables outlive the sink's last event and grow while the text is read.
    virtual void begin(const Tables &tables) = 0;

    // Never empty. Tabs are U+0009, soft line breaks U+2028; no other control characters, no object placeholders.
    virtual void text(QStringView text, const CharState &state) = 0;

    virtual void picture(const Picture &picture, const CharState &state) = 0;

    // The text so far belongs to a paragraph of the table that is depth deep (0 none). The mark is the character
    // formatting at its end.
    virtual void endParagraph(const ParaState &state, const CharState &mark, int depth) = 0;

    // The paragraphs since the last cell end at this depth are a cell.
    virtual void endCell(int depth) = 0;

    virtual void endRow(const RowState &row, int depth) = 0;

    virtual void end() = 0;

protected:
    Sink() = default;
    Q_DISABLE_COPY_MOVE(Sink)
};

} // namespace rtf
