// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FormatCache.h"

#include "rtf/Limits.h"
#include "rtf/Properties.h"

#include <QHash>

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
        const auto [known, isNewLook] = m_lookPlaces.try_emplace(look, static_cast<int>(m_charFormats.size()));
        if (isNewLook) {
            QTextCharFormat format = rtf::charFormat(look);
            if (m_lookPlaces.size() > mostUnspreadFormats) {
                format.setProperty(SpreadProperty, static_cast<int>(qHash(look.family)));
            }
            add(format);
        }
        entry->second = known->second;
    }
    m_recent[m_oldest] = {state, entry->second};
    m_oldest = (m_oldest + 1) % m_recent.size();
    return entry->second;
}

std::size_t FormatCache::LookHash::operator()(const CharLook &look) const noexcept
{
    return qHashMulti(0, look.family, look.halfPoints, look.flags, look.foreground.value_or(0),
                      look.background.value_or(0), int(look.underline), look.script, look.offset, look.language,
                      look.target, look.instruction, look.unshown);
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
        const ParaLook look = paraLook(state, *m_tables);
        entry->second = rtf::blockFormat(look, isInList);
        if (formats.size() > mostUnspreadFormats && !look.tabs.empty()) {
            std::size_t hash = 0;
            for (const TabLook &tab : look.tabs) {
                hash = qHashMulti(hash, tab.position, int(tab.kind), int(tab.leader));
            }
            entry->second.setProperty(SpreadProperty, static_cast<int>(hash));
        }
    }
    m_lastPara = state;
    m_lastIsInList = isInList;
    m_lastBlock = &entry->second; // which stays where it is
    return entry->second;
}

} // namespace rtf
