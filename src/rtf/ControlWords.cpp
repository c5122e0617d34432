// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/ControlWords.h"

#include "rtf/ControlWordTable.h"

#include <algorithm>
#include <array>

namespace rtf
{

namespace
{

static_assert(std::ranges::is_sorted(controlWords, {}, &ControlWord::name), "a row is out of order");
static_assert(std::ranges::adjacent_find(controlWords, {}, &ControlWord::name) == std::ranges::end(controlWords),
              "a row is double");

// A name as a number that is quick to hash and to compare: its first eight letters, and a sum over those behind them.
struct NameKey {
    quint64 head = 0;
    quint32 rest = 0;
    bool operator==(const NameKey &) const = default;
};

constexpr NameKey keyOf(const char *name, std::size_t size)
{
    NameKey key;
    const std::size_t headSize = std::min<std::size_t>(size, 8);
    for (std::size_t i = 0; i < headSize; ++i) {
        key.head = (key.head << 8) | static_cast<quint8>(name[i]);
    }
    for (std::size_t i = headSize; i < size; ++i) {
        key.rest = key.rest * 31 + static_cast<quint8>(name[i]);
    }
    return key;
}

// Places in the table by hash of the name; the next slot is taken on a clash.
struct WordSlot {
    NameKey key;
    quint32 size = 0; // of the name; 0 where there is none
    quint32 place = 0;
};

constexpr std::size_t slotCount = 2048;
static_assert(std::size(controlWords) * 4 < slotCount);

constexpr std::size_t slotOf(const NameKey &key)
{
    return ((key.head + key.rest) * 0x9E3779B97F4A7C15u) >> 53;
}

constexpr std::array<WordSlot, slotCount> slots = [] {
    std::array<WordSlot, slotCount> table{};
    for (std::size_t i = 0; i < std::size(controlWords); ++i) {
        const std::string_view name = controlWords[i].name;
        const NameKey key = keyOf(name.data(), name.size());
        std::size_t slot = slotOf(key);
        while (table[slot].size != 0) {
            slot = (slot + 1) % slotCount;
        }
        table[slot] = {key, static_cast<quint32>(name.size()), static_cast<quint32>(i)};
    }
    return table;
}();

} // namespace

const ControlWord *findControlWord(QByteArrayView name)
{
    const auto size = std::size_t(name.size());
    const NameKey key = keyOf(name.data(), size);
    for (std::size_t slot = slotOf(key); slots[slot].size != 0; slot = (slot + 1) % slotCount) {
        if (slots[slot].key == key && slots[slot].size == size) {
            const ControlWord &word = controlWords[slots[slot].place];
            // The head holds all of a short name.
            if (size <= 8 || std::equal(name.begin(), name.end(), word.name.begin())) {
                return &word;
            }
        }
    }
    return nullptr;
}

std::span<const ControlWord> allControlWords()
{
    return controlWords;
}

} // namespace rtf
