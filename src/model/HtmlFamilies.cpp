// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/HtmlFamilies.h"

#include "model/Limits.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool endsDeclaration(QChar c)
{
    return c == u';' || c == u'{' || c == u'}';
}

// A backslash may hide a letter of the name.
bool namesFamily(QStringView property)
{
    return property.contains(u'\\') || property.compare("font-family"_L1, Qt::CaseInsensitive) == 0 ||
           property.compare("font"_L1, Qt::CaseInsensitive) == 0;
}

// What stands in a comment ends no declaration, and a name may stand behind it.
QString withoutStyleComments(const QString &styles)
{
    QString without;
    for (qsizetype at = 0; at < styles.size();) {
        const qsizetype start = styles.indexOf("/*"_L1, at);
        without += QStringView(styles).sliced(at, (start < 0 ? styles.size() : start) - at);
        const qsizetype end = start < 0 ? -1 : styles.indexOf("*/"_L1, start + 2);
        if (end < 0)
            break;
        without += u' ';
        at = end + 2;
    }
    return without;
}

} // namespace

QString HtmlFamilies::boundedStyles(const QString &styles)
{
    const bool hasFamilies = styles.contains("font"_L1, Qt::CaseInsensitive) || styles.contains(u'\\');
    if (!hasFamilies)
        return styles;
    if (styles.contains("/*"_L1))
        return boundedStyles(withoutStyleComments(styles));
    QString bounded;
    const QStringView all(styles);
    for (qsizetype at = 0; at < all.size();) {
        const qsizetype end = std::find_if(all.begin() + at, all.end(), endsDeclaration) - all.begin();
        const QStringView declaration = all.sliced(at, end - at);
        const qsizetype colon = declaration.indexOf(u':');
        const bool stays =
            colon < 0 || !namesFamily(declaration.first(colon).trimmed()) || take(declaration.sliced(colon + 1));
        if (stays)
            bounded += declaration;
        if (end < all.size())
            bounded += all[end];
        at = end + 1;
    }
    return bounded;
}

QString HtmlFamilies::boundedAttribute(const QString &value)
{
    if (!value.contains(u'&'))
        return boundedStyles(value);
    const QString styles = m_characters.of(value);
    const QString bounded = boundedStyles(styles);
    if (bounded == styles)
        return value;
    return QString(bounded).replace(u'&', "&amp;"_L1).replace(u'"', "&quot;"_L1).replace(u'<', "&lt;"_L1);
}

bool HtmlFamilies::take(QStringView family)
{
    const QString trimmed = family.trimmed().toString();
    if (m_taken.contains(trimmed))
        return true;
    if (m_taken.size() >= limits::mostHtmlFamilies)
        return false;
    m_taken.insert(trimmed);
    return true;
}
