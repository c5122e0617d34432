// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/TextBounds.h"

#include "model/Limits.h"

#include <QChar>

#include <algorithm>

namespace
{

qsizetype lineEndFrom(QStringView text, qsizetype from, LineFeed lineFeed)
{
    const auto ends = [lineFeed](QChar character) {
        return character == u'\r' || character == QChar::ParagraphSeparator ||
               (lineFeed == LineFeed::EndsParagraph && character == u'\n');
    };
    return std::find_if(text.begin() + from, text.end(), ends) - text.begin();
}

qsizetype behindLineEnd(QStringView text, qsizetype at)
{
    if (at == text.size())
        return at;
    return at + (text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n' ? 2 : 1);
}

// As many characters, but no half of one.
qsizetype wholeCharacters(QStringView text, qsizetype length)
{
    const bool halved =
        length > 0 && length < text.size() && text[length].isLowSurrogate() && text[length - 1].isHighSurrogate();
    return halved ? length - 1 : length;
}

// Lines break at blanks, and between the characters of the scripts of East Asia.
bool endsWord(QChar character)
{
    constexpr char16_t firstEastAsian = u'\u2e80';
    return character.isSpace() || character >= firstEastAsian;
}

// Where in a paragraph its first too long word passes the bound, or the paragraph's end.
qsizetype endOfBoundedWords(QStringView text, qsizetype start, qsizetype end)
{
    if (end - start <= limits::longestWord)
        return end;
    qsizetype word = start;
    for (qsizetype at = start; at < end; ++at) {
        if (endsWord(text[at]))
            word = at + 1;
        else if (at - word == limits::longestWord)
            return at;
    }
    return end;
}

} // namespace

qsizetype mayBeLaidOut(QStringView text, LineFeed lineFeed)
{
    // Bounds on the characters alone let nearly every text through without a look at it.
    if (text.size() <= std::min({limits::longestParagraph, limits::mostParagraphs, limits::longestWord}))
        return text.size();
    qsizetype start = 0;
    for (qsizetype paragraphs = 0; start < text.size(); ++paragraphs) {
        if (paragraphs == limits::mostParagraphs)
            return start;
        const qsizetype end = lineEndFrom(text, start, lineFeed);
        const qsizetype longest = std::min(limits::longestParagraph, limits::longestText - start);
        const qsizetype laidOut = endOfBoundedWords(text, start, std::min(end, start + longest));
        if (laidOut < end)
            return wholeCharacters(text, laidOut);
        start = behindLineEnd(text, end);
        if (start >= limits::longestText)
            return std::min(start, text.size());
    }
    return start;
}
