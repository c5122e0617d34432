// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/HtmlTokens.h"

#include <QSet>
#include <QString>
#include <QStringView>

// What gives an element of a web page, or a table, a look that nothing else has: the name of a place, a gradient, the
// widths of columns. Reading the page compares each look with all that differ from it in nothing but one of these, so
// that only the first limits::mostHtmlLooks of each kind stay. Nothing in an entry leads to a place by its name; names
// stay for the style sheets that speak of them.
class HtmlLooks
{
public:
    // A style sheet of the page, before the elements that it is for.
    void addSheet(QStringView sheet);

    // Whether an attribute of a start tag stays.
    bool take(const QString &tagName, const HtmlAttribute &attribute);

    // Whether the cells of a table keep their widths; these in one text, empty when none has one.
    bool takeWidths(const QString &widths);

private:
    bool takeStyle(QStringView value);
    static bool takeUpTo(QSet<QString> &taken, const QString &look);

    // What stands behind a number sign in the sheets.
    QSet<QString> m_inSheets;
    QSet<QString> m_names;
    QSet<QString> m_gradients;
    QSet<QString> m_widths;
    HtmlCharacters m_characters;
};
