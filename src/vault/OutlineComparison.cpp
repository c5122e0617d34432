// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/OutlineComparison.h"

#include "vault/KeptOutline.h"

#include <QHash>

#include <algorithm>
#include <deque>
#include <unordered_map>

namespace
{

constexpr size_t seed = 0x51'75'69'6c;

size_t mixedHash(size_t one, size_t other)
{
    return qHashMulti(seed, one, other);
}

// One of the two outlines, with what its entries are recognised by.
struct ComparedSide {
    explicit ComparedSide(const std::vector<ComparedEntry> &compared)
        : entries(compared)
        , label(compared.size())
        , text(compared.size())
        , below(compared.size(), 0)
        , branch(compared.size())
        , children(compared.size())
        , match(compared.size(), -1)
    {
        std::vector<int> levels;
        levels.reserve(compared.size());
        for (const ComparedEntry &entry : compared)
            levels.push_back(entry.level);
        parent = parentsOf(levels);
        for (size_t place = 0; place < compared.size(); ++place) {
            label[place] = qHash(compared[place].label, seed);
            text[place] = qHash(compared[place].text, seed);
            if (parent[place] >= 0)
                children[static_cast<size_t>(parent[place])].push_back(static_cast<int>(place));
        }
        // What stands below an entry comes behind it.
        for (size_t place = compared.size(); place-- > 0;) {
            for (const int child : children[place])
                below[place] = mixedHash(below[place], branch[static_cast<size_t>(child)]);
            branch[place] = mixedHash(mixedHash(label[place], text[place]), below[place]);
        }
    }

    bool isMatched(int place) const { return match[static_cast<size_t>(place)] >= 0; }

    const std::vector<ComparedEntry> &entries;
    std::vector<int> parent;
    std::vector<size_t> label;
    std::vector<size_t> text;
    // Of all that stands below an entry, and the same with the entry itself.
    std::vector<size_t> below;
    std::vector<size_t> branch;
    std::vector<std::vector<int>> children;
    std::vector<int> match;
};

enum class Several { InOrder, None };

class Matcher
{
public:
    Matcher(ComparedSide &before, ComparedSide &after)
        : m_before(before)
        , m_after(after)
    {
    }

    void run()
    {
        if (m_before.entries.empty() || m_after.entries.empty())
            return;
        match(0, 0);
        matchBelow();
        // What changed its parent: the whole branch, the entry, or one of the two.
        const auto everywhere = [this](Several several, auto keyOf) {
            matchAlike(unmatched(m_before), unmatched(m_after), several, keyOf);
            matchBelow();
        };
        everywhere(Several::InOrder, [](const ComparedSide &side, size_t place) { return side.branch[place]; });
        everywhere(Several::None, [](const ComparedSide &side, size_t place) {
            return mixedHash(side.label[place], side.text[place]);
        });
        everywhere(Several::None, [](const ComparedSide &side, size_t place) {
            return side.entries[place].text.isEmpty() ? 0 : side.text[place];
        });
        everywhere(Several::None, [](const ComparedSide &side, size_t place) {
            return side.entries[place].label.isEmpty() ? 0 : side.label[place];
        });
    }

private:
    void match(int before, int after)
    {
        m_before.match[static_cast<size_t>(before)] = after;
        m_after.match[static_cast<size_t>(after)] = before;
        m_pending.push_back({before, after});
    }

    static std::vector<int> unmatched(const ComparedSide &side)
    {
        std::vector<int> places;
        for (int place = 0; static_cast<size_t>(place) < side.entries.size(); ++place) {
            if (!side.isMatched(place))
                places.push_back(place);
        }
        return places;
    }

    static std::vector<int> unmatchedOf(const ComparedSide &side, const std::vector<int> &among)
    {
        std::vector<int> places;
        std::ranges::copy_if(among, std::back_inserter(places), [&](int place) { return !side.isMatched(place); });
        return places;
    }

    // Matches entries of the same key, in their order. A key of 0 is none. Without an order to go by, several of one
    // key are told apart by nothing.
    template <typename KeyOf>
    void matchAlike(const std::vector<int> &before, const std::vector<int> &after, Several several, KeyOf keyOf)
    {
        if (before.empty() || after.empty())
            return;

        struct Group {
            std::vector<int> before;
            std::vector<int> after;
        };

        std::unordered_map<size_t, Group> groups;
        std::vector<size_t> order;
        for (const int place : before) {
            if (const size_t key = keyOf(m_before, static_cast<size_t>(place))) {
                Group &group = groups[key];
                if (group.before.empty())
                    order.push_back(key);
                group.before.push_back(place);
            }
        }
        for (const int place : after) {
            if (const size_t key = keyOf(m_after, static_cast<size_t>(place))) {
                if (const auto group = groups.find(key); group != groups.end())
                    group->second.after.push_back(place);
            }
        }
        for (const size_t key : order) {
            const Group &group = groups[key];
            if (several == Several::None && (group.before.size() != 1 || group.after.size() != 1))
                continue;
            const size_t count = std::min(group.before.size(), group.after.size());
            for (size_t index = 0; index < count; ++index) {
                // The entry may have been matched meanwhile, as a part of a branch.
                if (!m_before.isMatched(group.before[index]) && !m_after.isMatched(group.after[index]))
                    match(group.before[index], group.after[index]);
            }
        }
    }

    // Matches what stands below what was matched.
    void matchBelow()
    {
        while (!m_pending.empty()) {
            const auto [before, after] = m_pending.front();
            m_pending.pop_front();
            const std::vector<int> &beforeChildren = m_before.children[static_cast<size_t>(before)];
            const std::vector<int> &afterChildren = m_after.children[static_cast<size_t>(after)];
            const auto among = [&](Several several, auto keyOf) {
                matchAlike(unmatchedOf(m_before, beforeChildren), unmatchedOf(m_after, afterChildren), several, keyOf);
            };
            among(Several::InOrder, [](const ComparedSide &side, size_t place) { return side.branch[place]; });
            among(Several::InOrder, [](const ComparedSide &side, size_t place) {
                return mixedHash(side.label[place], side.text[place]);
            });
            among(Several::InOrder, [](const ComparedSide &side, size_t place) { return side.label[place]; });
            // Renamed ones.
            among(Several::None, [](const ComparedSide &side, size_t place) {
                return mixedHash(side.text[place], side.below[place]);
            });
            among(Several::None, [](const ComparedSide &side, size_t place) {
                return side.entries[place].text.isEmpty() ? 0 : side.text[place];
            });
            among(Several::None, [](const ComparedSide &side, size_t place) { return side.below[place]; });
        }
    }

    struct Pair {
        int before;
        int after;
    };

    ComparedSide &m_before;
    ComparedSide &m_after;
    std::deque<Pair> m_pending;
};

// Which of several numbers, all different, are not in a longest part of them that grows.
std::vector<bool> outOfOrder(const std::vector<int> &numbers)
{
    // The index at which the best part of each length ends, and for each index the one before it in its part.
    std::vector<size_t> ends;
    std::vector<size_t> previous(numbers.size(), numbers.size());
    for (size_t index = 0; index < numbers.size(); ++index) {
        const auto end = std::ranges::lower_bound(ends, numbers[index], {}, [&](size_t at) { return numbers[at]; });
        if (end != ends.begin())
            previous[index] = *(end - 1);
        if (end == ends.end())
            ends.push_back(index);
        else
            *end = index;
    }
    std::vector<bool> out(numbers.size(), true);
    for (size_t index = ends.empty() ? numbers.size() : ends.back(); index < numbers.size(); index = previous[index])
        out[index] = false;
    return out;
}

std::vector<bool> movedEntries(const ComparedSide &before, const ComparedSide &after)
{
    std::vector<bool> moved(after.entries.size(), false);
    for (size_t parent = 0; parent < after.entries.size(); ++parent) {
        std::vector<int> stayed;
        std::vector<int> places;
        for (const int child : after.children[parent]) {
            const int match = after.match[static_cast<size_t>(child)];
            if (match < 0)
                continue;
            if (before.parent[static_cast<size_t>(match)] != after.match[parent]) {
                moved[static_cast<size_t>(child)] = true;
                continue;
            }
            stayed.push_back(child);
            places.push_back(match);
        }
        const std::vector<bool> overtaken = outOfOrder(places);
        for (size_t index = 0; index < stayed.size(); ++index) {
            if (overtaken[index])
                moved[static_cast<size_t>(stayed[index])] = true;
        }
    }
    return moved;
}

// Those removed, by the place after which each would stand (-1 where nothing is before it).
std::vector<std::vector<int>> removedBehind(const ComparedSide &before, const ComparedSide &after)
{
    std::vector<std::vector<int>> removed(after.entries.size() + 1);
    int behind = -1;
    for (size_t place = 0; place < before.entries.size(); ++place) {
        if (before.match[place] >= 0)
            behind = before.match[place];
        else
            removed[static_cast<size_t>(behind + 1)].push_back(static_cast<int>(place));
    }
    return removed;
}

} // namespace

std::vector<ComparedEntry> comparedEntries(const KeptOutline &outline)
{
    std::vector<ComparedEntry> entries;
    entries.reserve(outline.entries.size());
    for (const EntryRecord &entry : outline.entries)
        entries.push_back({entry.level, entry.label, entry.storedText, entry.tagged});
    return entries;
}

OutlineComparison compareOutlines(const std::vector<ComparedEntry> &before, const std::vector<ComparedEntry> &after)
{
    ComparedSide from(before);
    ComparedSide to(after);
    Matcher(from, to).run();
    const std::vector<bool> moved = movedEntries(from, to);
    const std::vector<std::vector<int>> removed = removedBehind(from, to);
    OutlineComparison comparison;
    const auto addRemoved = [&](size_t slot) {
        for (const int place : removed[slot])
            comparison.differences.push_back({place, -1});
    };
    addRemoved(0);
    for (size_t place = 0; place < after.size(); ++place) {
        EntryDifference difference{to.match[place], static_cast<int>(place)};
        if (difference.before >= 0) {
            const ComparedEntry &old = before[static_cast<size_t>(difference.before)];
            difference.isRenamed = old.label != after[place].label;
            difference.hasOtherText = old.text != after[place].text;
            difference.hasOtherTag = old.tagged != after[place].tagged;
            difference.isMoved = moved[place];
        }
        if (difference != EntryDifference{to.match[place], static_cast<int>(place)} || difference.isAdded())
            comparison.differences.push_back(difference);
        addRemoved(place + 1);
    }
    comparison.afterOf = std::move(from.match);
    comparison.beforeOf = std::move(to.match);
    return comparison;
}

DifferenceCounts countsOf(const std::vector<EntryDifference> &differences)
{
    DifferenceCounts counts;
    for (const EntryDifference &difference : differences)
        ++(difference.isAdded() ? counts.added : difference.isRemoved() ? counts.removed : counts.changed);
    return counts;
}
