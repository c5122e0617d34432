// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/HtmlLooks.h"

#include "model/Limits.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool isOfName(QChar c)
{
    return c.isLetterOrNumber() || c == u'-' || c == u'_';
}

} // namespace

void HtmlLooks::addSheet(QStringView sheet)
{
    for (qsizetype at = sheet.indexOf(u'#'); at >= 0; at = sheet.indexOf(u'#', at)) {
        const auto *begin = sheet.begin() + at + 1;
        const auto *end = std::find_if_not(begin, sheet.end(), isOfName);
        m_inSheets.insert(QStringView(begin, end).toString());
        at = end - sheet.begin();
    }
}

bool HtmlLooks::take(const QString &tagName, const HtmlAttribute &attribute)
{
    if (attribute.name == "id"_L1) {
        const QString name = attribute.value.toString();
        return m_inSheets.contains(name) && takeUpTo(m_names, name);
    }
    if (attribute.name == "name"_L1)
        return tagName != "a"_L1;
    return attribute.name != "style"_L1 || takeStyle(attribute.value);
}

bool HtmlLooks::takeStyle(QStringView value)
{
    const QString style = value.contains(u'&') ? m_characters.of(value) : value.toString();
    return !style.contains("gradient"_L1, Qt::CaseInsensitive) || takeUpTo(m_gradients, style);
}

bool HtmlLooks::takeWidths(const QString &widths)
{
    return widths.isEmpty() || takeUpTo(m_widths, widths);
}

bool HtmlLooks::takeUpTo(QSet<QString> &taken, const QString &look)
{
    if (taken.contains(look))
        return true;
    if (taken.size() >= limits::mostHtmlLooks)
        return false;
    taken.insert(look);
    return true;
}
