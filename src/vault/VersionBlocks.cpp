// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/VersionBlocks.h"

#include "vault/PackedBytes.h"

#include <zlib.h>

#include <array>
#include <utility>

namespace
{

// A block ends behind an entry whose check sum is a multiple of this, or at the bound.
constexpr uLong entriesOfBlock = 32;
constexpr int mostOfBlock = 256;

enum EntryFlag : quint64 { Tagged = 1, Expanded = 2, Sorted = 4, WithForeign = 8 };

void pack(Packer &packer, const ForeignRecordList &records)
{
    packer.number(records.size());
    for (const ForeignRecords &each : records) {
        packer.difference(each.behind);
        packer.bytes(each.bytes);
    }
}

ForeignRecordList unpackForeign(Unpacker &unpacker)
{
    ForeignRecordList records;
    for (quint64 left = unpacker.number(); left > 0; --left) {
        const auto behind = static_cast<int>(unpacker.difference());
        records.push_back({behind, unpacker.bytes()});
    }
    return records;
}

void pack(Packer &packer, const clsFont &font)
{
    constexpr int places = 4;
    const std::array<bool, places> switches = {font.Bold(), font.Italic(), font.StrikeThrough(), font.Underline()};
    quint64 bits = 0;
    for (size_t place = 0; place < switches.size(); ++place)
        bits |= quint64(switches[place]) << place;
    packer.number(bits);
    packer.words(font.Name());
    packer.difference(font.Size());
}

clsFont unpackFont(Unpacker &unpacker)
{
    clsFont font;
    const quint64 bits = unpacker.number();
    font.setBold((bits & 1) != 0);
    font.setItalic((bits & 2) != 0);
    font.setStrikeThrough((bits & 4) != 0);
    font.setUnderline((bits & 8) != 0);
    font.setName(unpacker.words());
    font.setSize(unpacker.difference());
    return font;
}

QByteArray packedEntry(const NumberedEntry &numbered)
{
    const EntryRecord &entry = numbered.entry;
    Packer packer;
    quint64 flags = 0;
    for (const auto &[isSet, flag] :
         {std::pair(entry.tagged, Tagged), std::pair(entry.expanded, Expanded), std::pair(entry.sorted, Sorted),
          std::pair(!entry.foreignRecords.empty(), WithForeign)})
        flags |= isSet ? quint64(flag) : 0;
    packer.number(flags);
    packer.number(static_cast<quint64>(entry.level));
    packer.words(entry.label);
    packer.number(static_cast<quint64>(numbered.text));
    if (!entry.foreignRecords.empty())
        pack(packer, entry.foreignRecords);
    return packer.packed();
}

bool endsBlock(const QByteArray &packed)
{
    const uLong sum = crc32(0, reinterpret_cast<const Bytef *>(packed.constData()), static_cast<uInt>(packed.size()));
    return sum % entriesOfBlock == 0;
}

} // namespace

std::vector<QByteArray> blocksOf(const std::vector<NumberedEntry> &entries)
{
    std::vector<QByteArray> blocks;
    QByteArray open;
    int count = 0;
    for (const NumberedEntry &entry : entries) {
        const QByteArray packed = packedEntry(entry);
        open += packed;
        if (++count < mostOfBlock && !endsBlock(packed))
            continue;
        blocks.push_back(open);
        open.clear();
        count = 0;
    }
    if (count > 0)
        blocks.push_back(open);
    return blocks;
}

void appendBlock(std::vector<NumberedEntry> &entries, const QByteArray &block)
{
    Unpacker unpacker(block);
    while (!unpacker.atEnd()) {
        NumberedEntry numbered;
        EntryRecord &entry = numbered.entry;
        const quint64 flags = unpacker.number();
        entry.tagged = (flags & Tagged) != 0;
        entry.expanded = (flags & Expanded) != 0;
        entry.sorted = (flags & Sorted) != 0;
        entry.level = static_cast<int>(unpacker.number());
        entry.label = unpacker.words();
        numbered.text = static_cast<qint64>(unpacker.number());
        if ((flags & WithForeign) != 0)
            entry.foreignRecords = unpackForeign(unpacker);
        entries.push_back(std::move(numbered));
    }
}

QByteArray headOf(const KeptOutline &outline)
{
    Packer packer;
    packer.number(outline.entries.size());
    packer.difference(outline.selected);
    pack(packer, outline.outlineFont);
    pack(packer, outline.textFont);
    pack(packer, outline.foreignHeader);
    packer.bytes(outline.foreignTrailer);
    return packer.packed();
}

void readHead(KeptOutline &outline, const QByteArray &head)
{
    Unpacker unpacker(head);
    unpacker.number();
    outline.selected = static_cast<int>(unpacker.difference());
    outline.outlineFont = unpackFont(unpacker);
    outline.textFont = unpackFont(unpacker);
    outline.foreignHeader = unpackForeign(unpacker);
    outline.foreignTrailer = unpacker.bytes();
}

QByteArray packedNumbers(const std::vector<qint64> &numbers)
{
    Packer packer;
    qint64 last = 0;
    for (const qint64 number : numbers) {
        packer.difference(number - last - 1);
        last = number;
    }
    return deflated(packer.packed());
}

std::vector<qint64> unpackedNumbers(const QByteArray &packed)
{
    Unpacker unpacker(inflatedBytes(packed));
    std::vector<qint64> numbers;
    qint64 last = 0;
    while (!unpacker.atEnd()) {
        last += unpacker.difference() + 1;
        numbers.push_back(last);
    }
    return numbers;
}
