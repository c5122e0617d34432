// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/NameRanking.h"

#include "find/Folding.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr int noWay = std::numeric_limits<int>::min();

// Longer ways than this are not told apart from their ends.
constexpr std::size_t longestWay = 8;

bool isSeparator(QChar c)
{
    return c == u'/' || c == u'>';
}

std::optional<int> rankIn(const LetterPattern &pattern, const NameList::Name &name)
{
    if ((pattern.bits() & ~name.bits) != 0)
        return std::nullopt;
    return pattern.rank(name.folded);
}

bool isBefore(const NameRanking::Found &one, const NameRanking::Found &other)
{
    return one.rank != other.rank ? one.rank > other.rank : one.place < other.place;
}

} // namespace

void NameList::add(const QString &name, int above, bool isSought)
{
    const QString looked = folded(name);
    m_names.push_back({name, looked, LetterPattern::bitsOf(looked), above, isSought});
}

void NameList::add(Name known)
{
    m_names.push_back(std::move(known));
}

NamePattern::NamePattern(QStringView typed)
{
    qsizetype start = 0;
    for (qsizetype at = 0; at < typed.size() && m_way.size() < longestWay; ++at) {
        if (!isSeparator(typed[at]))
            continue;
        const LetterPattern part(typed.sliced(start, at - start));
        if (!part.isEmpty())
            m_way.push_back(part);
        start = at + 1;
    }
    m_name = LetterPattern(typed.sliced(start));
    if (!m_way.empty())
        m_whole = LetterPattern(typed);
}

bool NamePattern::hasWayOf(const NamePattern &other) const
{
    return std::equal(m_way.begin(), m_way.end(), other.m_way.begin(), other.m_way.end(),
                      [](const LetterPattern &a, const LetterPattern &b) { return a.letters() == b.letters(); });
}

bool NamePattern::narrows(const NamePattern &other) const
{
    return hasWayOf(other) && m_name.narrows(other.m_name) && m_whole.narrows(other.m_whole);
}

std::vector<int> NamePattern::places(QStringView folded) const
{
    if (!m_way.empty()) {
        if (std::vector<int> found = m_whole.places(folded); !found.empty())
            return found;
    }
    return m_name.places(folded);
}

// A name stands below all that it stands below by its parent, and the parent itself may stand for one part more.
void NameRanking::goTheWay(const NamePattern &pattern)
{
    const std::size_t parts = pattern.way().size();
    m_ways.assign(static_cast<std::size_t>(m_names.count()) * (parts + 1), noWay);
    for (int place = 0; place < m_names.count(); ++place) {
        const NameList::Name &name = m_names.at(place);
        int *here = &m_ways[static_cast<std::size_t>(place) * (parts + 1)];
        const int *above = name.above < 0 ? nullptr : &m_ways[static_cast<std::size_t>(name.above) * (parts + 1)];
        here[0] = 0;
        for (std::size_t part = 0; part < parts; ++part) {
            const int before = above ? above[part] : part == 0 ? 0 : noWay;
            int best = above ? above[part + 1] : noWay;
            if (before != noWay) {
                if (const std::optional<int> rank = rankIn(pattern.way()[part], name))
                    best = std::max(best, before + *rank);
            }
            here[part + 1] = best;
        }
    }
}

std::optional<int> NameRanking::rank(const NamePattern &pattern, const NameList::Name &name) const
{
    const std::size_t parts = pattern.way().size();
    if (parts == 0)
        return rankIn(pattern.name(), name);
    std::optional<int> best = rankIn(pattern.whole(), name);
    if (name.above < 0)
        return best;
    const int way = m_ways[static_cast<std::size_t>(name.above) * (parts + 1) + parts];
    if (way == noWay)
        return best;
    if (const std::optional<int> rank = rankIn(pattern.name(), name))
        best = std::max(best.value_or(noWay), way + *rank);
    return best;
}

const std::vector<NameRanking::Found> &NameRanking::find(const NamePattern &pattern)
{
    if (!m_pattern || !pattern.hasWayOf(*m_pattern))
        goTheWay(pattern);
    const bool narrower = m_pattern && pattern.narrows(*m_pattern);
    std::vector<Found> matching;
    const auto look = [&](int place) {
        const NameList::Name &name = m_names.at(place);
        if (!name.isSought)
            return;
        if (const std::optional<int> found = rank(pattern, name))
            matching.push_back({place, *found});
    };
    if (narrower) {
        m_lookedAt = count();
        for (const Found &each : m_matching)
            look(each.place);
    } else {
        m_lookedAt = m_names.count();
        for (int place = 0; place < m_names.count(); ++place)
            look(place);
    }
    m_pattern = pattern;
    m_matching = std::move(matching);
    m_best = m_matching;
    const auto end = m_best.begin() + std::min<std::ptrdiff_t>(mostFound, std::ssize(m_best));
    std::partial_sort(m_best.begin(), end, m_best.end(), isBefore);
    m_best.erase(end, m_best.end());
    return m_best;
}
