// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/TextFind.h"

#include "model/TextSelection.h"

#include <algorithm>

namespace
{

bool isWordCharacter(const QString &text, qsizetype at)
{
    if (at < 0 || at >= text.size())
        return false;
    const QChar c = text[at];
    if (c.isLowSurrogate() && at > 0 && text[at - 1].isHighSurrogate())
        return QChar::isLetterOrNumber(QChar::surrogateToUcs4(text[at - 1], c));
    if (c.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return QChar::isLetterOrNumber(QChar::surrogateToUcs4(c, text[at + 1]));
    return c.isLetterOrNumber();
}

} // namespace

int findText(const QString &text, const QString &expression, int start, int end, int options)
{
    const qsizetype length = expression.size();
    const qsizetype limit = end < 0 ? text.size() : std::min<qsizetype>(end, text.size());
    const Qt::CaseSensitivity sensitivity = options & TextFind::MatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
    if (length == 0)
        return -1;
    for (qsizetype at = std::max(start, 0); at + length <= limit; ++at) {
        at = QStringView(text).first(limit).indexOf(expression, at, sensitivity);
        if (at < 0)
            return -1;
        const bool isPartOfWord = isWordCharacter(text, at - 1) || isWordCharacter(text, at + length);
        if (!(options & TextFind::WholeWord) || !isPartOfWord)
            return static_cast<int>(at);
    }
    return -1;
}

int findIn(TextSelection &text, const QString &expression, int start, int end, int options)
{
    const int found = findText(text.FindableText(), expression, start, end, options);
    if (found >= 0 && !(options & TextFind::NoHighlight)) {
        text.setSelStart(found);
        text.setSelLength(static_cast<int>(expression.size()));
    }
    return found;
}
