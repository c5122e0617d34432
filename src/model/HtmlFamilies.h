// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/HtmlTokens.h"

#include <QSet>
#include <QString>
#include <QStringView>

// The font families that a web page names. Reading it compares each look with all that differ from it in nothing but
// the family, so that only the first limits::mostHtmlFamilies stay; what is in a later one is in the family around it.
class HtmlFamilies
{
public:
    // Styles, or a style sheet, without the declarations of families beyond the bound.
    QString boundedStyles(const QString &styles);

    // The same of the value of a style attribute as it stands in the page.
    QString boundedAttribute(const QString &value);

    // Whether a family, or several in one value, is among those that stay.
    bool take(QStringView family);

private:
    QSet<QString> m_taken;
    HtmlCharacters m_characters;
};
