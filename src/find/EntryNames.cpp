// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/EntryNames.h"

#include "find/Folding.h"
#include "model/EntryTree.h"

#include <optional>
#include <utility>

namespace
{

// What was known of entries, asked for mostly in the order in which it was known.
class KnownNames
{
public:
    KnownNames(const NameList &names, const std::vector<EntryId> &entries)
        : m_names(names)
        , m_entries(entries)
    {
    }

    // Null where the entry is new, or has another label.
    const NameList::Name *find(EntryId entry, const QString &label)
    {
        const std::optional<std::size_t> place = placeOf(entry);
        if (!place)
            return nullptr;
        m_next = *place + 1;
        const NameList::Name &known = m_names.at(static_cast<int>(*place));
        return known.name == label ? &known : nullptr;
    }

private:
    std::optional<std::size_t> placeOf(EntryId entry)
    {
        if (m_next < m_entries.size() && m_entries[m_next] == entry)
            return m_next;
        if (m_places.empty()) {
            m_places.reserve(m_entries.size());
            for (std::size_t place = 0; place < m_entries.size(); ++place)
                m_places.emplace(m_entries[place], place);
        }
        const auto found = m_places.find(entry);
        return found == m_places.end() ? std::nullopt : std::optional(found->second);
    }

    const NameList &m_names;
    const std::vector<EntryId> &m_entries;
    std::unordered_map<EntryId, std::size_t> m_places;
    std::size_t m_next = 0;
};

} // namespace

void EntryNames::take(const EntryTree &tree)
{
    const NameList names = std::exchange(m_names, NameList());
    const std::vector<EntryId> entries = std::exchange(m_entries, {});
    KnownNames known(names, entries);
    m_names.reserve(tree.entryCount());
    m_entries.reserve(static_cast<std::size_t>(tree.entryCount()));
    m_folded = 0;
    // The places of the entry that was taken last and of its ancestors.
    std::vector<std::pair<const Entry *, int>> way;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root())) {
        while (!way.empty() && way.back().first != entry->parent())
            way.pop_back();
        const int above = way.empty() ? -1 : way.back().second;
        way.emplace_back(entry, m_names.count());
        m_entries.push_back(entry->id());
        if (const NameList::Name *same = known.find(entry->id(), entry->label())) {
            NameList::Name name = *same;
            name.above = above;
            m_names.add(std::move(name));
            continue;
        }
        ++m_folded;
        m_names.add(entry->label(), above);
    }
}
