// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/TextBounds.h"

#include <QChar>
#include <QTextBoundaryFinder>

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

// Where in a paragraph its first too long word passes the bound, or the paragraph's end.
qsizetype endOfBoundedWords(QStringView text, qsizetype start, qsizetype end, qsizetype longestWord)
{
    const auto words = unbrokenStretches(text.sliced(start, end - start), longestWord);
    return words.empty() ? end : start + words.front().from + longestWord;
}

} // namespace

std::vector<UnbrokenStretch> unbrokenStretches(QStringView paragraph, qsizetype longerThan)
{
    // These always end a word, which spares nearly every text a closer look.
    constexpr auto isBlank = [](QChar character) {
        return character == u' ' || character == u'\n' || character == QChar::LineSeparator;
    };
    std::vector<UnbrokenStretch> found;
    const auto *at = paragraph.begin();
    while (at != paragraph.end()) {
        const auto *end = std::find_if(at, paragraph.end(), isBlank);
        if (end - at > longerThan) {
            const qsizetype from = at - paragraph.begin();
            QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, at, end - at);
            qsizetype last = 0;
            for (qsizetype next = breaks.toNextBoundary(); next >= 0; next = breaks.toNextBoundary()) {
                if (next - last > longerThan)
                    found.push_back({from + last, from + next});
                last = next;
            }
        }
        at = std::find_if_not(end, paragraph.end(), isBlank);
    }
    return found;
}

qsizetype mayBeLaidOut(QStringView text, LineFeed lineFeed, qsizetype longestWord)
{
    // Bounds on the characters alone let nearly every text through without a look at it.
    if (text.size() <= std::min({limits::longestParagraph, limits::mostParagraphs, longestWord}))
        return text.size();
    qsizetype start = 0;
    for (qsizetype paragraphs = 0; start < text.size(); ++paragraphs) {
        if (paragraphs == limits::mostParagraphs)
            return start;
        const qsizetype end = lineEndFrom(text, start, lineFeed);
        const qsizetype longest = std::min(limits::longestParagraph, limits::longestText - start);
        const qsizetype laidOut = endOfBoundedWords(text, start, std::min(end, start + longest), longestWord);
        if (laidOut < end)
            return wholeCharacters(text, laidOut);
        start = behindLineEnd(text, end);
        if (start >= limits::longestText)
            return std::min(start, text.size());
    }
    return start;
}
