// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/TextComparison.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace
{

struct WordAt {
    qsizetype start = 0;
    qsizetype length = 0;
    // The same for the same word, whichever text it is in.
    int number = 0;
    // Not a sign or the end of a paragraph.
    bool isWord = false;
    bool isMatched = false;
};

using Words = std::vector<WordAt>;

bool isPartOfWord(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character.isSurrogate() || character == u'_';
}

bool isEndOfParagraph(QChar character)
{
    return character == u'\n' || character == QChar::ParagraphSeparator;
}

Words wordsOf(QStringView text, QHash<QStringView, int> &numbers)
{
    Words words;
    for (qsizetype at = 0; at < text.size();) {
        const QChar first = text[at];
        if (first.isSpace() && !isEndOfParagraph(first)) {
            ++at;
            continue;
        }
        qsizetype end = at + 1;
        const bool isWord = isPartOfWord(first);
        while (isWord && end < text.size() && isPartOfWord(text[end]))
            ++end;
        const QStringView word = text.sliced(at, end - at);
        const int number = numbers.value(word, static_cast<int>(numbers.size()));
        numbers.insert(word, number);
        words.push_back({at, end - at, number, isWord, false});
        at = end;
    }
    return words;
}

// A part of both texts that is still to be compared.
struct Part {
    size_t beforeBegin;
    size_t beforeEnd;
    size_t afterBegin;
    size_t afterEnd;
};

// What is short is compared exactly. What is not is cut at words that both texts have equally often in the part, each
// with its counterpart, as far as they come in the same order; where there is none of those, the whole part is another.
class WordMatcher
{
public:
    WordMatcher(Words &before, Words &after, qsizetype numbers)
        : m_before(before)
        , m_after(after)
        , m_seen(static_cast<size_t>(numbers))
    {
    }

    void run()
    {
        m_parts.push_back({0, m_before.size(), 0, m_after.size()});
        while (!m_parts.empty()) {
            const Part part = withoutCommonEnds(m_parts.back());
            m_parts.pop_back();
            const size_t before = part.beforeEnd - part.beforeBegin;
            const size_t after = part.afterEnd - part.afterBegin;
            if (before == 0 || after == 0)
                continue;
            if (before <= mostCompared / after)
                matchExactly(part, before, after);
            else
                cut(part);
        }
    }

private:
    // Pairs of words that are looked at for one part.
    static constexpr size_t mostCompared = 1'000'000;

    struct Seen {
        int before = 0;
        int after = 0;
        // The first place after that is not paired yet.
        size_t placeAfter = 0;
    };

    bool isSame(size_t before, size_t after) const { return m_before[before].number == m_after[after].number; }

    void match(size_t before, size_t after)
    {
        m_before[before].isMatched = true;
        m_after[after].isMatched = true;
    }

    Part withoutCommonEnds(Part part)
    {
        while (part.beforeBegin < part.beforeEnd && part.afterBegin < part.afterEnd &&
               isSame(part.beforeBegin, part.afterBegin))
            match(part.beforeBegin++, part.afterBegin++);
        while (part.beforeBegin < part.beforeEnd && part.afterBegin < part.afterEnd &&
               isSame(part.beforeEnd - 1, part.afterEnd - 1))
            match(--part.beforeEnd, --part.afterEnd);
        return part;
    }

    // The longest sequence of words that both have.
    void matchExactly(const Part &part, size_t before, size_t after)
    {
        const size_t width = after + 1;
        std::vector<quint16> common((before + 1) * width, 0);
        for (size_t b = before; b-- > 0;) {
            for (size_t a = after; a-- > 0;)
                common[b * width + a] = isSame(part.beforeBegin + b, part.afterBegin + a)
                                            ? static_cast<quint16>(common[(b + 1) * width + a + 1] + 1)
                                            : std::max(common[(b + 1) * width + a], common[b * width + a + 1]);
        }
        for (size_t b = 0, a = 0; b < before && a < after;) {
            if (isSame(part.beforeBegin + b, part.afterBegin + a))
                match(part.beforeBegin + b++, part.afterBegin + a++);
            else if (common[(b + 1) * width + a] >= common[b * width + a + 1])
                ++b;
            else
                ++a;
        }
    }

    void cut(const Part &part)
    {
        for (size_t b = part.beforeBegin; b < part.beforeEnd; ++b)
            ++seen(m_before[b]).before;
        m_nextAlike.resize(m_after.size());
        for (size_t a = part.afterEnd; a-- > part.afterBegin;) {
            Seen &word = seen(m_after[a]);
            ++word.after;
            m_nextAlike[a] = std::exchange(word.placeAfter, a);
        }
        std::vector<std::pair<size_t, size_t>> anchors;
        for (size_t b = part.beforeBegin; b < part.beforeEnd; ++b) {
            if (Seen &word = seen(m_before[b]); word.before == word.after) {
                anchors.emplace_back(b, word.placeAfter);
                word.placeAfter = m_nextAlike[word.placeAfter];
            }
        }
        for (size_t b = part.beforeBegin; b < part.beforeEnd; ++b)
            seen(m_before[b]) = {};
        for (size_t a = part.afterBegin; a < part.afterEnd; ++a)
            seen(m_after[a]) = {};
        keepGrowing(anchors);
        Part rest = part;
        for (const auto &[before, after] : anchors) {
            match(before, after);
            m_parts.push_back({rest.beforeBegin, before, rest.afterBegin, after});
            rest.beforeBegin = before + 1;
            rest.afterBegin = after + 1;
        }
        if (!anchors.empty())
            m_parts.push_back(rest);
    }

    Seen &seen(const WordAt &word) { return m_seen[static_cast<size_t>(word.number)]; }

    // Keeps a longest part of which the second places grow, too.
    static void keepGrowing(std::vector<std::pair<size_t, size_t>> &anchors)
    {
        // The anchor at which the best sequence of each length ends, and for each anchor the one before it.
        std::vector<size_t> ends;
        std::vector<size_t> previous(anchors.size(), anchors.size());
        for (size_t index = 0; index < anchors.size(); ++index) {
            const auto end = std::ranges::lower_bound(ends, anchors[index].second, {},
                                                      [&anchors](size_t at) { return anchors[at].second; });
            if (end != ends.begin())
                previous[index] = *(end - 1);
            if (end == ends.end())
                ends.push_back(index);
            else
                *end = index;
        }
        std::vector<std::pair<size_t, size_t>> growing;
        for (size_t index = ends.empty() ? anchors.size() : ends.back(); index < anchors.size();
             index = previous[index])
            growing.push_back(anchors[index]);
        std::ranges::reverse(growing);
        anchors = std::move(growing);
    }

    Words &m_before;
    Words &m_after;
    std::vector<Seen> m_seen;
    // For each word after, the place of the next one like it in the part.
    std::vector<size_t> m_nextAlike;
    std::vector<Part> m_parts;
};

UnmatchedWords unmatchedOf(const Words &words)
{
    UnmatchedWords unmatched;
    for (size_t place = 0; place < words.size(); ++place) {
        const WordAt &word = words[place];
        if (word.isMatched)
            continue;
        unmatched.words += word.isWord ? 1 : 0;
        const bool goesOn = place > 0 && !words[place - 1].isMatched;
        if (!goesOn)
            unmatched.stretches.push_back({word.start, 0});
        TextStretch &stretch = unmatched.stretches.back();
        stretch.length = word.start + word.length - stretch.start;
    }
    return unmatched;
}

} // namespace

TextComparison compareTexts(QStringView before, QStringView after)
{
    QHash<QStringView, int> numbers;
    Words then = wordsOf(before, numbers);
    Words now = wordsOf(after, numbers);
    WordMatcher(then, now, numbers.size()).run();
    return {unmatchedOf(then), unmatchedOf(now)};
}
