// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/FindReplace.h"

using namespace Qt::StringLiterals;

namespace
{

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

} // namespace

Replacement::Replacement(const QString &text, const FindQuery &query)
{
    if (query.options().regularExpression)
        read(text, query.groupCount());
    else
        append(text);
}

void Replacement::append(QStringView text)
{
    if (m_parts.empty() || m_parts.back().group >= 0)
        m_parts.emplace_back();
    m_parts.back().text += text;
}

void Replacement::read(QStringView text, int groupCount)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if ((c != u'\\' && c != u'$') || at + 1 == text.size()) {
            append(text.sliced(at, 1));
            continue;
        }
        const bool isBraced = c == u'$' && text[at + 1] == u'{';
        qsizetype end = at + (isBraced ? 2 : 1);
        int group = -1;
        // Two digits only where there are so many groups.
        for (; end < text.size() && isAsciiDigit(text[end]); ++end) {
            const int next = std::max(group, 0) * 10 + text[end].digitValue();
            if (group >= 0 && next > groupCount && !isBraced)
                break;
            group = std::min(next, 1000);
        }
        const bool isClosed = !isBraced || (end < text.size() && text[end] == u'}');
        if (group >= 0 && isClosed) {
            if (group > groupCount && m_error.isEmpty())
                m_error = u"The expression has no group %1. A %2 itself is written \\%2."_s.arg(group).arg(c);
            m_parts.push_back({QString(), group});
            at = isBraced ? end : end - 1;
        } else if (c == u'\\' && (text[at + 1] == u'\\' || text[at + 1] == u'$')) {
            append(text.sliced(++at, 1));
        } else if (c == u'\\' && text[at + 1] == u't') {
            append(u"\t");
            ++at;
        } else {
            append(text.sliced(at, 1));
        }
    }
}

QString Replacement::of(const QStringList &groups) const
{
    QString text;
    for (const Part &part : m_parts)
        text += part.group < 0 ? part.text : groups.value(part.group);
    return text;
}
