// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/EntryDocument.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

#include <optional>
#include <vector>

class QFont;
class QTextDocument;

// What is written of a font. Two threads must not have the same one, which keeps what it works out for itself.
struct BaseFont {
    BaseFont() = default;
    explicit BaseFont(const QFont &font);

    QFont toFont() const;

    bool operator==(const BaseFont &) const = default;

    QString family;
    // One of them is -1.
    qreal points = -1;
    int pixels = -1;
    int weight = 400;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
};

// What takes the place of a stretch of a text document, as values that another thread may hold: formats go by their
// properties, as a format that two threads have keeps what it works out for itself.
struct LiveStretch {
    using Properties = QMap<int, QVariant>;

    struct Run {
        int length = 0;
        // In the list of formats.
        int format = 0;
    };

    struct Paragraph {
        int format = 0;
        // How the paragraph's mark looks.
        int mark = 0;
        // In the list of lists; -1 for none.
        int list = -1;
    };

    struct List {
        int format = 0;
        // The number of a paragraph of it that is not in the stretch; -1 where all are.
        int elsewhere = -1;
    };

    struct Picture {
        QString name;
        QByteArray bytes;
    };

    struct Cell {
        int row = 0;
        int column = 0;
        int rows = 1;
        int columns = 1;
    };

    struct Table {
        // In the stretch's text.
        int begin = 0;
        int rows = 0;
        int columns = 0;
        int format = 0;
        // Those that cover more than one place.
        std::vector<Cell> cells;
    };

    // In the text as it was.
    int from = 0;
    int removed = 0;
    // A separator ends each paragraph but the last one: of a paragraph, or where a cell or a table's end comes.
    QString text;
    // Of all of the text but the separators.
    std::vector<Run> runs;
    // All that the stretch touches.
    std::vector<Paragraph> paragraphs;
    std::vector<List> lists;
    // In the order in which they begin; only of a whole text.
    std::vector<Table> tables;
    std::vector<Properties> formats;
    std::vector<Picture> pictures;
    // Of the whole text document. Nothing tells that the first paragraph's mark looks different.
    int firstMark = 0;
    BaseFont baseFont;
    qreal tabStop = 0;
    qreal indent = 0;
    int characters = 0;
    int paragraphCount = 0;
};

// The characters that begin each cell of a table, and that end it, in a text document. Other frames have them too.
inline constexpr char16_t cellBegin = 0xfdd0;
inline constexpr char16_t tableEnd = 0xfdd1;

bool hasFrameBounds(QStringView text);

// What stands in a stretch now; nothing where it reaches over the bounds of cells, or where the numbers say that it is
// not all that was changed.
std::optional<LiveStretch> liveStretch(const QTextDocument &document, const EntryDocument::Changes &changes);

// The whole text in the place of an empty one; nothing where it has frames that are no tables.
std::optional<LiveStretch> wholeStretch(const QTextDocument &document);
