// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Looks.h"
#include "rtf/State.h"
#include "rtf/Tables.h"

#include <QTextBlockFormat>
#include <QTextCharFormat>

#include <array>
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
            quint64 hash = state.flags;
            for (const qint32 number : state.numbers) {
                hash = (hash ^ static_cast<quint32>(number)) * 0x9E3779B97F4A7C15u;
                hash ^= hash >> 32;
            }
            return hash;
        }
    };

    struct LookHash {
        std::size_t operator()(const CharLook &look) const noexcept;
    };

    const Tables *m_tables = nullptr;
    QString m_defaultFamily;
    std::deque<QTextCharFormat> m_charFormats;
    std::unordered_map<CharState, int, StateHash<CharState>> m_charPlaces;
    // Equal looks have one format: a document takes a format that it knows by its address, and compares one that it
    // does not property by property, at each use.
    std::unordered_map<CharLook, int, LookHash> m_lookPlaces;
    std::unordered_map<ParaState, QTextBlockFormat, StateHash<ParaState>> m_blockFormats[2];
    quint32 m_revision = 0; // of the tables, when the places were last right

    // What the last paragraph was; most have one like them before.
    ParaState m_lastPara;
    bool m_lastIsInList = false;
    const QTextBlockFormat *m_lastBlock = nullptr;

    // The states asked for last: the runs of a text take turns between a few.
    struct Recent {
        CharState state;
        int place = -1;
    };

    std::array<Recent, 4> m_recent;
    std::size_t m_oldest = 0;
};

} // namespace rtf
