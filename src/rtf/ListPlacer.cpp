// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/ListPlacer.h"

#include "rtf/Properties.h"

#include <QTextDocument>
#include <QTextList>

#include <algorithm>

namespace rtf
{

namespace
{

// Bullets that picture fonts hold, as the characters that any font has.
void normalizeBullet(ListLook &look)
{
    const char16_t character = look.label.isEmpty() ? char16_t(0x2022) : look.label.front().unicode();
    const auto isIn = [&look](QLatin1StringView family) { return look.font.startsWith(family, Qt::CaseInsensitive); };
    char16_t known = 0;
    if (character == 0x2022 || character == 0xF0B7 ||
        (character == 0xB7 && (look.font.isEmpty() || isIn(QLatin1StringView("Symbol"))))) {
        known = 0x2022;
    } else if (character == 0xF0A7 || (character == 0xA7 && isIn(QLatin1StringView("Wingdings")))) {
        known = 0x25AA;
    } else if (character == 'o' && isIn(QLatin1StringView("Courier"))) {
        known = 0x25E6;
    } else if (character == 0x25E6 || character == 0x25AA) {
        known = character;
    }
    if (known != 0) {
        look.label = QChar(known);
        look.font.clear();
    }
}

ListLook legacyLook(const LegacyList &legacy, const Tables &tables)
{
    ListLook look;
    look.kind = int(legacy.kind);
    look.start = legacy.start;
    look.label = legacy.before;
    if (legacy.kind == NumberKind::Bullet) {
        look.font = legacy.font > 0 ? tables.fonts[std::size_t(legacy.font)].family : QString();
        look.start = 1;
    } else {
        look.label += QChar(char16_t(0)) + legacy.after;
    }
    return look;
}

} // namespace

ListPlacer::ListPlacer(const QTextDocument &document)
{
    const QList<QTextFormat> formats = document.allFormats();
    for (const QTextFormat &format : formats) {
        m_groups = std::max(m_groups, format.intProperty(ListGroupProperty));
    }
}

std::optional<ListLook> ListPlacer::look(ParaState &para, const Tables &tables) const
{
    if (para[ParaNumber::LegacyList] <= 0 && para[ParaNumber::ListNumber] <= 0) {
        return {};
    }
    ListLook look;
    if (const qint32 place = para[ParaNumber::LegacyList]; place > 0) {
        const LegacyList &legacy = tables.legacyLists[std::size_t(place)];
        look = legacyLook(legacy, tables);
        // \pnindent is the room for the label of a paragraph that says nothing of its own indents.
        if (legacy.indent > 0 && !para.has(LeftIsSet) && !para.has(FirstLineIsSet)) {
            para[ParaNumber::Left] = legacy.indent;
            para[ParaNumber::FirstLine] = -legacy.indent;
        }
    } else {
        const auto entry = tables.listOverrides.constFind(para[ParaNumber::ListNumber]);
        if (entry == tables.listOverrides.constEnd() || entry->list < 0) {
            return {};
        }
        const std::vector<ListLevel> &levels = tables.lists[std::size_t(entry->list)].levels;
        if (levels.empty()) {
            return {};
        }
        para[ParaNumber::ListLevel] = std::min(para[ParaNumber::ListLevel], qint32(levels.size()) - 1);
        look.level = para[ParaNumber::ListLevel];
        const ListLevel &level = levels[std::size_t(look.level)];
        look.kind = int(level.kind);
        look.start = entry->starts.value(look.level, level.start);
        look.label = level.text;
        if (level.kind == NumberKind::Bullet) {
            look.font = level.font > 0 ? tables.fonts[std::size_t(level.font)].family : QString();
            look.start = 1;
        }
        if (!para.has(LeftIsSet)) {
            para[ParaNumber::Left] = level.left;
        }
        if (!para.has(FirstLineIsSet)) {
            para[ParaNumber::FirstLine] = level.firstLine;
        }
    }
    if (look.kind == int(NumberKind::None)) {
        return {};
    }
    look.label.truncate(longestListLabel);
    if (look.label.size() == longestListLabel && look.label.back().isHighSurrogate()) {
        look.label.chop(1);
    }
    if (look.kind == int(NumberKind::Bullet)) {
        normalizeBullet(look);
    }
    return look;
}

ListPlacer::Levels &ListPlacer::levels(const ParaState &para)
{
    return para[ParaNumber::LegacyList] > 0 ? m_legacy : m_lists[para[ParaNumber::ListNumber]];
}

QTextList *ListPlacer::find(const ParaState &para, bool isInList)
{
    const qint32 legacyPlace = isInList ? para[ParaNumber::LegacyList] : 0;
    if (legacyPlace != std::exchange(m_legacyPlace, legacyPlace) || legacyPlace == 0) {
        m_legacy = {};
    }
    m_goesOn = false;
    if (!isInList) {
        return nullptr;
    }
    const auto level = legacyPlace > 0 ? 0 : para[ParaNumber::ListLevel];
    auto &lists = levels(para).lists;
    std::fill(lists.begin() + level + 1, lists.end(), nullptr);
    QTextList *list = lists[std::size_t(level)];
    // The numbers of a list are counted through the whole of it, so that more of them than of bullets stay together.
    const int count = list != nullptr ? list->count() : 0;
    const bool isLong = count >= longestBulletList;
    const bool isOfNumbers = isLong && listLook(list->format()).kind != int(NumberKind::Bullet);
    m_goesOn = count >= longestNumberList || (isLong && (!isOfNumbers || m_looks > mostListLooks));
    m_looks += isOfNumbers ? count : 0;
    return m_goesOn ? nullptr : list;
}

void ListPlacer::join(const ParaState &para, QTextList *list)
{
    const auto level = para[ParaNumber::LegacyList] > 0 ? 0 : para[ParaNumber::ListLevel];
    levels(para).lists[std::size_t(level)] = list;
}

int ListPlacer::group(const ParaState &para)
{
    int &group = levels(para).group;
    if (group == 0) {
        group = ++m_groups;
    }
    return group;
}

} // namespace rtf
