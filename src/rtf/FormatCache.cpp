// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FormatCache.h"

#include "rtf/Looks.h"

#include <algorithm>

namespace rtf
{

int FormatCache::charFormat(const CharState &state)
{
    if (m_revision != m_tables->revision) {
        m_revision = m_tables->revision;
        m_charPlaces.clear();
        m_recent = {};
    }
    for (const Recent &recent : m_recent) {
        if (recent.place >= 0 && recent.state == state) {
            return recent.place;
        }
    }
    const auto [entry, isNew] = m_charPlaces.try_emplace(state, 0);
    if (isNew) {
        CharLook look = charLook(state, *m_tables);
        if (look.family.isEmpty()) {
            look.family = m_defaultFamily;
        }
        entry->second = placeOf(rtf::charFormat(look));
    }
    m_recent[m_oldest] = {state, entry->second};
    m_oldest = (m_oldest + 1) % m_recent.size();
    return entry->second;
}

// The place of a format that may look like one of the latest, as automatic and no colour do: a document takes a format
// that it knows by its address, and compares one that it does not property by property, at each use.
int FormatCache::placeOf(const QTextCharFormat &format)
{
    constexpr std::ptrdiff_t mostCompared = 32;
    const auto count = static_cast<std::ptrdiff_t>(m_charFormats.size());
    const auto begin = m_charFormats.end() - std::min(count, mostCompared);
    const auto same = std::find(begin, m_charFormats.end(), format);
    return same != m_charFormats.end() ? static_cast<int>(same - m_charFormats.begin()) : add(format);
}

int FormatCache::add(const QTextCharFormat &format)
{
    m_charFormats.push_back(format);
    return static_cast<int>(m_charFormats.size()) - 1;
}

const QTextBlockFormat &FormatCache::blockFormat(const ParaState &state, bool isInList)
{
    auto &formats = m_blockFormats[isInList ? 1 : 0];
    if (m_lastBlock != nullptr && m_lastIsInList == isInList && m_lastPara == state) {
        return *m_lastBlock;
    }
    const auto [entry, isNew] = formats.try_emplace(state);
    if (isNew) {
        entry->second = rtf::blockFormat(paraLook(state, *m_tables), isInList);
    }
    m_lastPara = state;
    m_lastIsInList = isInList;
    m_lastBlock = &entry->second; // which stays where it is
    return entry->second;
}

} // namespace rtf
