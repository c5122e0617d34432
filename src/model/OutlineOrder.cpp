// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/OutlineOrder.h"

#include "model/Entry.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace
{

// Walks only the ways that lead to the entries.
std::vector<Entry *> walked(const std::vector<Entry *> &entries, bool intoThem)
{
    const std::unordered_set<const Entry *> wanted(entries.begin(), entries.end());
    std::unordered_set<const Entry *> onTheWay;
    std::unordered_map<const Entry *, std::vector<Entry *>> ways;
    for (Entry *entry : entries) {
        for (Entry *each = entry; each && onTheWay.insert(each).second; each = each->parent())
            ways[each->parent()].push_back(each);
    }
    std::vector<Entry *> found;
    found.reserve(wanted.size());
    std::vector<Entry *> pending = ways[nullptr];
    while (!pending.empty()) {
        Entry *each = pending.back();
        pending.pop_back();
        const bool isWanted = wanted.contains(each);
        if (isWanted)
            found.push_back(each);
        const auto below = ways.find(each);
        if (below == ways.end() || (isWanted && !intoThem))
            continue;
        // The first of them is the next to be looked at.
        std::ranges::sort(below->second, [](const Entry *a, const Entry *b) { return a->row() > b->row(); });
        pending.insert(pending.end(), below->second.begin(), below->second.end());
    }
    return found;
}

} // namespace

std::vector<Entry *> inOutlineOrder(const std::vector<Entry *> &entries)
{
    return entries.size() < 2 ? entries : walked(entries, true);
}

std::vector<Entry *> branchesOf(const std::vector<Entry *> &entries)
{
    return entries.size() < 2 ? entries : walked(entries, false);
}
