// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/WriterTables.h"

#include "rtf/Limits.h"
#include "rtf/ListLabels.h"
#include "rtf/Properties.h"

#include <QTextList>

#include <algorithm>
#include <array>

namespace rtf
{

namespace
{

bool isPictureFamily(const QString &family)
{
    constexpr QLatin1StringView families[] = {QLatin1StringView("Symbol"), QLatin1StringView("Wingdings"),
                                              QLatin1StringView("Webdings")};
    return std::ranges::any_of(
        families, [&family](QLatin1StringView name) { return family.startsWith(name, Qt::CaseInsensitive); });
}

// A name as it can stand before a semicolon.
QString tableName(const QString &name)
{
    QString plain = name;
    return plain.remove(QLatin1Char(';')).trimmed();
}

} // namespace

int WriterTables::font(const QString &family)
{
    const QString name = tableName(family);
    const auto known = m_fontPlaces.constFind(name);
    if (known != m_fontPlaces.constEnd()) {
        return *known;
    }
    const int place = static_cast<int>(m_fonts.size());
    m_fontPlaces.insert(name, place);
    m_fonts.push_back(name);
    m_pictureFonts.push_back(isPictureFamily(name));
    return place;
}

int WriterTables::color(const OptionalColor &color)
{
    if (!color) {
        return 0;
    }
    int &place = m_colorPlaces[*color];
    if (place == 0) {
        m_colors.push_back(*color);
        place = static_cast<int>(m_colors.size());
    }
    return place;
}

int WriterTables::style(const QString &name)
{
    const QString plain = tableName(name);
    if (plain.isEmpty()) {
        return 0;
    }
    int &place = m_stylePlaces[plain];
    if (place == 0) {
        m_styles.push_back(plain);
        place = static_cast<int>(m_styles.size());
    }
    return place;
}

// Whether a reader would put the next paragraph into this list if it stood at the group's level.
bool WriterTables::fits(const Group &group, const ListLook &look, const QTextList &list) const
{
    const auto level = std::size_t(look.level);
    if (level >= group.levels.size() || !group.levels[level].isUsed) {
        return true;
    }
    ListLook known = group.levels[level].look;
    known.group = look.group;
    const bool isCounted = look.kind != int(NumberKind::Bullet);
    const QTextList *before = group.levels[level].list;
    return known == look && (!isCounted || before == nullptr || before == &list ||
                             before->count() >= longestNumberList || list.format().boolProperty(ListGoesOnProperty));
}

WriterTables::ListPlace WriterTables::list(const QTextList &list, const ParaLook &paragraph)
{
    const ListLook look = listLook(list.format());
    int place = m_listPlaces.value(&list, -1);
    if (place < 0 && look.group != 0) {
        place = m_groupPlaces.value(look.group, -1);
    }
    if (place < 0 || !fits(m_groups[std::size_t(place)], look, list)) {
        place = static_cast<int>(m_groups.size());
        m_groups.emplace_back();
        if (look.group != 0) {
            m_groupPlaces.insert(look.group, place);
        }
    }
    m_listPlaces.insert(&list, place);
    std::vector<Level> &levels = m_groups[std::size_t(place)].levels;
    if (levels.size() <= std::size_t(look.level)) {
        levels.resize(std::size_t(look.level) + 1);
    }
    Level &level = levels[std::size_t(look.level)];
    if (!level.isUsed) {
        level = {look, paragraph, nullptr, 0, true};
        if (!look.font.isEmpty()) {
            font(look.font);
        }
    }
    level.count = level.list == nullptr ? look.start : level.count + 1;
    level.list = &list;
    for (std::size_t deeper = std::size_t(look.level) + 1; deeper < levels.size(); ++deeper) {
        levels[deeper].list = nullptr;
    }
    const int labelFont = look.font.isEmpty() ? -1 : font(look.font);
    return {place + 1, look.level, label(m_groups[std::size_t(place)], look), labelFont};
}

QString WriterTables::label(const Group &group, const ListLook &look) const
{
    if (look.kind == int(NumberKind::Bullet)) {
        return look.label;
    }
    std::array<CountedLevel, mostListLevels> counted;
    for (std::size_t i = 0; i < std::min(group.levels.size(), counted.size()); ++i) {
        if (group.levels[i].isUsed) {
            counted[i] = {group.levels[i].look.kind, group.levels[i].count};
        }
    }
    return countedLabel(look.label, counted);
}

void WriterTables::write(Output &output) const
{
    output.raw("{\\fonttbl");
    for (std::size_t i = 0; i < m_fonts.size(); ++i) {
        output.raw("{");
        output.word("\\f", static_cast<int>(i));
        output.word("\\fnil");
        output.word("\\fcharset", m_pictureFonts[i] ? 2 : 0);
        output.text(m_fonts[i]);
        output.raw(";}");
    }
    output.raw("}");
    if (!m_colors.empty()) {
        output.raw("{\\colortbl;");
        for (const QRgb color : m_colors) {
            output.word("\\red", qRed(color));
            output.word("\\green", qGreen(color));
            output.word("\\blue", qBlue(color));
            output.raw(";");
        }
        output.raw("}");
    }
    if (!m_styles.empty()) {
        output.raw("{\\stylesheet");
        for (std::size_t i = 0; i < m_styles.size(); ++i) {
            output.raw("{");
            output.word("\\s", static_cast<int>(i) + 1);
            output.text(m_styles[i]);
            output.raw(";}");
        }
        output.raw("}");
    }
    writeLists(output);
    output.lineEnd();
}

void WriterTables::writeLists(Output &output) const
{
    if (m_groups.empty()) {
        return;
    }
    output.raw("{\\*\\listtable");
    for (std::size_t i = 0; i < m_groups.size(); ++i) {
        output.raw("{\\list");
        output.word("\\listtemplateid", static_cast<int>(i) + 1);
        const std::vector<Level> &levels = m_groups[i].levels;
        for (std::size_t level = 0; level < levels.size(); ++level) {
            writeLevel(output, levels[level], static_cast<int>(level));
        }
        output.word("\\listid", static_cast<int>(i) + 1);
        output.raw("}");
    }
    output.raw("}{\\*\\listoverridetable");
    for (std::size_t i = 0; i < m_groups.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        output.raw("{\\listoverride");
        output.word("\\listid", number);
        output.word("\\listoverridecount", 0);
        output.word("\\ls", number);
        output.raw("}");
    }
    output.raw("}");
}

void WriterTables::writeLevel(Output &output, const Level &level, int number) const
{
    const QString label =
        level.isUsed ? level.look.label.left(longestListLabel) : QString(QChar(char16_t(number))) + QLatin1Char('.');
    output.raw("{\\listlevel");
    output.word("\\levelnfc", level.isUsed ? level.look.kind : 0);
    output.word("\\leveljc", 0);
    output.word("\\levelfollow", 0);
    output.word("\\levelstartat", level.isUsed ? level.look.start : 1);
    output.raw("{\\leveltext");
    const auto byte = [&output](int value) { output.raw("\\'" + QByteArray::number(value + 256, 16).sliced(1)); };
    byte(static_cast<int>(label.size()));
    QByteArray places;
    for (qsizetype i = 0; i < label.size(); ++i) {
        if (label[i].unicode() <= 8) {
            byte(label[i].unicode());
            places += "\\'" + QByteArray::number(int(i) + 1 + 256, 16).sliced(1);
        } else {
            const bool isPair = label[i].isHighSurrogate() && i + 1 < label.size() && label[i + 1].isLowSurrogate();
            output.text(QStringView(label).sliced(i, isPair ? 2 : 1));
            i += isPair ? 1 : 0;
        }
    }
    output.raw(";}{\\levelnumbers");
    output.raw(places + ";}");
    if (level.isUsed && !level.look.font.isEmpty()) {
        output.word("\\f", m_fontPlaces.value(tableName(level.look.font)));
    }
    output.word("\\fi", level.paragraph.firstLine);
    output.word("\\li", level.paragraph.left);
    output.raw("}");
}

} // namespace rtf
