// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <vector>

// HTML as it can be handed to a text document. What laying it out takes grows with nesting by powers, with the length
// of a list and the styles by squares; this says the same words in HTML whose cost is its length.
struct BoundedHtml {
    // Tables and elements nested beyond the bounds of model/Limits.h are gone and their words stand where they were;
    // a long list goes on in a new one; lengths beyond all measure are long ones; nothing floats; only so many font
    // families are named, and only so many elements have looks of their own (HtmlLooks). A table has no column in which
    // no cell begins. Every element is closed. In the place of a picture that is elsewhere stands the text that the
    // page has for it.
    QString html;
    // The files of the pictures that the text itself holds; in the HTML they are named pictureName and their number.
    std::vector<QByteArray> pictures;
    // Too many elements or cells to be laid out while somebody waits: only the words should be taken. The rest is not
    // filled then.
    bool isTooMuch = false;

    // Cells of all tables, as they will be laid out; each counts twice for each table around its own.
    qsizetype cells = 0;

    static constexpr QLatin1StringView pictureName{"quillery:pasted/"};
};

BoundedHtml boundedHtml(QStringView html);
