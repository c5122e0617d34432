// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/LetterPattern.h"

#include "find/Folding.h"

#include <algorithm>
#include <array>

namespace
{

constexpr int impossible = -1;

bool isOfWord(QChar c)
{
    return c.isSurrogate() || c.isLetterOrNumber();
}

// What a letter is worth by its place alone.
struct Worth {
    int beginning = 0;
    bool endsWord = false;
};

Worth worthOf(QStringView name, qsizetype at)
{
    if (!isOfWord(name[at]))
        return {};
    Worth worth;
    if (at == 0)
        worth.beginning = LetterPattern::wordBeginning + LetterPattern::nameBeginning;
    else if (!isOfWord(name[at - 1]))
        worth.beginning = LetterPattern::wordBeginning;
    worth.endsWord = at + 1 == name.size() || !isOfWord(name[at + 1]);
    return worth;
}

// The best that the letters so far come to when the last one stands at a place: in a run that fills a word from its
// beginning, and in another.
struct Best {
    int ofWord = impossible;
    int other = impossible;

    int either() const { return std::max(ofWord, other); }
};

// The same with one letter more. `run` is the best with the letter before it directly before, `apart` the best with it
// further away.
Best oneMore(const Worth &worth, const Best &run, int apart)
{
    const auto behind = [](int before) {
        return before == impossible ? impossible : before + LetterPattern::behindTheLast;
    };
    Best best;
    if (worth.beginning > 0) {
        const int before = std::max(behind(run.either()), apart);
        best.ofWord = before == impossible ? impossible : before + worth.beginning;
    } else {
        best.ofWord = behind(run.ofWord);
        best.other = std::max(behind(run.other), apart);
    }
    if (worth.endsWord && best.ofWord != impossible)
        best.ofWord += LetterPattern::wholeWord;
    return best;
}

// Reads from left to right where the letters may stand at the earliest; -1 where they do not all stand.
qsizetype firstEnd(QStringView letters, QStringView name)
{
    qsizetype found = 0;
    for (qsizetype at = 0; at < name.size(); ++at) {
        if (name[at] == letters[found] && ++found == letters.size())
            return at;
    }
    return -1;
}

// One row a letter, one column a place in the name. `take` gets each row when it is done.
template <typename Take>
void tabulate(QStringView letters, QStringView name, Take &&take)
{
    std::array<Best, LetterPattern::longestLooked> row;
    std::array<Best, LetterPattern::longestLooked> next;
    std::array<Worth, LetterPattern::longestLooked> worths;
    const auto size = static_cast<std::size_t>(name.size());
    for (std::size_t at = 0; at < size; ++at)
        worths[at] = worthOf(name, static_cast<qsizetype>(at));
    for (qsizetype letter = 0; letter < letters.size(); ++letter) {
        // Before the first letter there is nothing that it could stand behind.
        int apart = letter == 0 ? 0 : impossible;
        for (std::size_t at = 0; at < size; ++at) {
            if (letter > 0 && at > 1)
                apart = std::max(apart, row[at - 2].either());
            const Best run = letter > 0 && at > 0 ? row[at - 1] : Best();
            next[at] = name[static_cast<qsizetype>(at)] == letters[letter] ? oneMore(worths[at], run, apart) : Best();
        }
        std::copy_n(next.begin(), size, row.begin());
        take(letter, row);
    }
}

} // namespace

LetterPattern::LetterPattern(QStringView typed)
    : m_letters(folded(typed))
{
    m_letters.remove(QChar(u'\0'));
    m_bits = bitsOf(m_letters);
}

quint64 LetterPattern::bitsOf(QStringView folded)
{
    quint64 bits = 0;
    for (const QChar c : folded)
        bits |= quint64(1) << (c.unicode() % 64);
    return bits;
}

std::optional<int> LetterPattern::rank(QStringView folded) const
{
    if (isEmpty())
        return 0;
    const QStringView name = folded.first(std::min(folded.size(), longestLooked));
    if (firstEnd(m_letters, name) < 0)
        return std::nullopt;
    int best = impossible;
    tabulate(m_letters, name, [&](qsizetype letter, const std::array<Best, longestLooked> &row) {
        if (letter + 1 < m_letters.size())
            return;
        for (qsizetype at = 0; at < name.size(); ++at)
            best = std::max(best, row[static_cast<std::size_t>(at)].either());
    });
    return unit * best - static_cast<int>(std::min<qsizetype>(folded.size(), longestCounted));
}

// The table is gone back from its end: which of a letter's places led to the next one's worth.
std::vector<int> LetterPattern::places(QStringView folded) const
{
    const QStringView name = folded.first(std::min(folded.size(), longestLooked));
    if (isEmpty() || firstEnd(m_letters, name) < 0)
        return {};
    std::vector<std::vector<Best>> table;
    tabulate(m_letters, name, [&](qsizetype, const std::array<Best, longestLooked> &row) {
        table.emplace_back(row.begin(), row.begin() + name.size());
    });
    std::vector<int> found(table.size());
    const std::vector<Best> &last = table.back();
    const auto end = std::max_element(last.begin(), last.end(),
                                      [](const Best &a, const Best &b) { return a.either() < b.either(); });
    auto at = static_cast<int>(end - last.begin());
    bool ofWord = end->ofWord >= end->other;
    for (std::size_t letter = table.size(); letter-- > 0;) {
        found[letter] = at;
        if (letter == 0)
            break;
        const Worth worth = worthOf(name, at);
        const Best here = table[letter][static_cast<std::size_t>(at)];
        const int wanted = ofWord ? here.ofWord : here.other;
        const std::vector<Best> &before = table[letter - 1];
        // Directly before it, in a run of either kind, or the first place that is as good further away.
        const auto leadsHere = [&](const Best &run, int apart) {
            const Best reached = oneMore(worth, run, apart);
            return (ofWord ? reached.ofWord : reached.other) == wanted;
        };
        const Best run = at > 0 ? before[static_cast<std::size_t>(at) - 1] : Best();
        if (run.ofWord != impossible && leadsHere({run.ofWord, impossible}, impossible)) {
            ofWord = true;
            --at;
        } else if (run.other != impossible && leadsHere({impossible, run.other}, impossible)) {
            ofWord = false;
            --at;
        } else {
            int place = 0;
            while (!leadsHere({}, before[static_cast<std::size_t>(place)].either()))
                ++place;
            at = place;
            const Best &there = before[static_cast<std::size_t>(place)];
            ofWord = there.ofWord >= there.other;
        }
    }
    return found;
}
