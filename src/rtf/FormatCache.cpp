// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FormatCache.h"

#include "rtf/Looks.h"

namespace rtf
{

int FormatCache::charFormat(const CharState &state)
{
    if (m_revision != m_tables->revision) {
        m_revision = m_tables->revision;
        m_charPlaces.clear();
        m_lastPlace = -1;
    }
    if (m_lastPlace >= 0 && state == m_lastState) {
        return m_lastPlace;
    }
    const auto [entry, isNew] = m_charPlaces.try_emplace(state, static_cast<int>(m_charFormats.size()));
    if (isNew) {
        CharLook look = charLook(state, *m_tables);
        if (look.family.isEmpty()) {
            look.family = m_defaultFamily;
        }
        m_charFormats.push_back(rtf::charFormat(look));
    }
    m_lastState = state;
    m_lastPlace = entry->second;
    return m_lastPlace;
}

int FormatCache::add(const QTextCharFormat &format)
{
    m_charFormats.push_back(format);
    return static_cast<int>(m_charFormats.size()) - 1;
}

const QTextBlockFormat &FormatCache::blockFormat(const ParaState &state, bool isInList)
{
    auto &formats = m_blockFormats[isInList ? 1 : 0];
    const auto [entry, isNew] = formats.try_emplace(state);
    if (isNew) {
        entry->second = rtf::blockFormat(paraLook(state, *m_tables), isInList);
    }
    return entry->second;
}

} // namespace rtf
