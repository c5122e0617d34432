// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/State.h"
#include "rtf/Tables.h"

#include <QTextBlockFormat>
#include <QTextCharFormat>

#include <deque>
#include <unordered_map>

namespace rtf
{

// The formats of a text document for RTF's states, each made once.
class FormatCache
{
public:
    void setTables(const Tables &tables) { m_tables = &tables; }

    const Tables &tables() const { return *m_tables; }

    // A family for text whose RTF names no font.
    void setDefaultFamily(const QString &family) { m_defaultFamily = family; }

    // The place of the format for a state.
    int charFormat(const CharState &state);

    // Adds a format that no state stands for: a picture's.
    int add(const QTextCharFormat &format);

    const QTextCharFormat &at(int place) const { return m_charFormats[std::size_t(place)]; }

    const QTextBlockFormat &blockFormat(const ParaState &state, bool isInList);

private:
    template <typename State>
    struct StateHash {
        std::size_t operator()(const State &state) const noexcept
        {
            return qHashRange(state.numbers.begin(), state.numbers.end(), state.flags);
        }
    };

    const Tables *m_tables = nullptr;
    QString m_defaultFamily;
    std::deque<QTextCharFormat> m_charFormats;
    std::unordered_map<CharState, int, StateHash<CharState>> m_charPlaces;
    std::unordered_map<ParaState, QTextBlockFormat, StateHash<ParaState>> m_blockFormats[2];
    quint32 m_revision = 0; // of the tables, when the places were last right
    CharState m_lastState;
    int m_lastPlace = -1;
};

} // namespace rtf
