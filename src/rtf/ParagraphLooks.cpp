// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Looks.h"

#include "rtf/Properties.h"
#include "rtf/Units.h"

#include <QStringList>
#include <QTextOption>

#include <algorithm>

namespace rtf
{

namespace
{

constexpr quint32 keptFlags = KeepLines | KeepNext | BeforeIsAuto | AfterIsAuto | Contextual;

constexpr int automaticSpace = 280; // twips
constexpr int singleSpacing = 240;  // \sl of a line of its own height

int length(qreal pixels)
{
    return std::clamp(twipsFromPixels(pixels), -longestLength, longestLength);
}

Qt::Alignment qtAlignment(const ParaLook &look)
{
    constexpr Qt::AlignmentFlag flags[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter, Qt::AlignJustify};
    const Qt::Alignment alignment = flags[std::size_t(look.alignment)];
    // Left and right are the sides of the page, in a paragraph that runs from the right as well.
    return (look.flags & RightToLeft) != 0 ? alignment | Qt::AlignAbsolute : alignment;
}

ParaAlignment alignmentOf(const QTextBlockFormat &format)
{
    const Qt::Alignment alignment = format.alignment();
    const bool isMirrored = format.layoutDirection() == Qt::RightToLeft && !(alignment & Qt::AlignAbsolute);
    if (alignment & Qt::AlignRight) {
        return isMirrored ? ParaAlignment::Left : ParaAlignment::Right;
    }
    if (alignment & Qt::AlignHCenter) {
        return ParaAlignment::Center;
    }
    if (alignment & Qt::AlignJustify) {
        return ParaAlignment::Justify;
    }
    return isMirrored ? ParaAlignment::Right : ParaAlignment::Left;
}

void setLineSpacing(QTextBlockFormat &format, const ParaLook &look)
{
    if (look.lineMultiple) {
        format.setLineHeight(100.0 * look.lineSpacing / singleSpacing, QTextBlockFormat::ProportionalHeight);
    } else if (look.lineSpacing > 0) {
        format.setLineHeight(pixelsFromTwips(look.lineSpacing), QTextBlockFormat::MinimumHeight);
    } else if (look.lineSpacing < 0) {
        format.setLineHeight(pixelsFromTwips(-look.lineSpacing), QTextBlockFormat::FixedHeight);
    }
}

void takeLineSpacing(ParaLook &look, const QTextBlockFormat &format)
{
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        look.lineSpacing = std::clamp(qRound(format.lineHeight() * singleSpacing / 100.0), 1, longestLength);
        look.lineMultiple = look.lineSpacing != singleSpacing;
        look.lineSpacing = look.lineMultiple ? look.lineSpacing : 0;
        break;
    case QTextBlockFormat::MinimumHeight:
        look.lineSpacing = std::max(0, length(format.lineHeight()));
        break;
    case QTextBlockFormat::FixedHeight:
        look.lineSpacing = -std::max(0, length(format.lineHeight()));
        break;
    default:
        break;
    }
}

// A stop is counted from the paragraph's own left edge in a document, from the page margin in RTF.
QTextOption::Tab qtTab(const TabLook &tab, int left)
{
    constexpr QTextOption::TabType types[] = {QTextOption::LeftTab, QTextOption::RightTab, QTextOption::CenterTab,
                                              QTextOption::DelimiterTab};
    const bool isDecimal = tab.kind == TabKind::Decimal;
    // The delimiter means nothing to the other kinds; it keeps the leader there.
    const QChar delimiter = isDecimal ? QChar(QLatin1Char('.')) : QChar(char16_t(tab.leader));
    return QTextOption::Tab(pixelsFromTwips(tab.position - left), types[std::size_t(tab.kind)], delimiter);
}

TabLook tabLook(const QTextOption::Tab &tab, int left)
{
    TabLook look;
    look.position = std::clamp(twipsFromPixels(tab.position) + left, -longestLength, longestLength);
    look.kind = tab.type == QTextOption::RightTab       ? TabKind::Right
                : tab.type == QTextOption::CenterTab    ? TabKind::Center
                : tab.type == QTextOption::DelimiterTab ? TabKind::Decimal
                                                        : TabKind::Left;
    const bool hasLeader = look.kind != TabKind::Decimal && tab.delimiter.unicode() <= char16_t(TabLeader::EqualSigns);
    look.leader = hasLeader ? static_cast<TabLeader>(tab.delimiter.unicode()) : TabLeader::None;
    return look;
}

// Four sides, each "width style colour" in hexadecimal.
QString bordersText(const BorderLooks &borders)
{
    QStringList sides;
    for (const BorderLook &side : borders) {
        sides << QString::number(side.width, 16) + QLatin1Char(' ') + QString::number(int(side.style), 16) +
                     QLatin1Char(' ') + QString::number(side.color, 16);
    }
    return sides.join(QLatin1Char(','));
}

BorderLooks bordersOf(const QString &text)
{
    BorderLooks borders;
    const QStringList sides = text.split(QLatin1Char(','));
    for (qsizetype i = 0; i < std::min<qsizetype>(sides.size(), qsizetype(borders.size())); ++i) {
        const QStringList parts = sides[i].split(QLatin1Char(' '));
        BorderLook &side = borders[std::size_t(i)];
        side.width = std::clamp(parts.value(0).toInt(nullptr, 16), 0, 255);
        side.style =
            static_cast<BorderStyle>(std::clamp(parts.value(1).toInt(nullptr, 16), 0, int(BorderStyle::Engrave)));
        side.color = parts.value(2).toUInt(nullptr, 16) | 0xFF000000;
    }
    return borders;
}

// The bullets that a text document draws by itself.
struct Bullet {
    char16_t character;
    QTextListFormat::Style style;
};

constexpr Bullet bullets[] = {
    {0x2022, QTextListFormat::ListDisc},   {0x25E6, QTextListFormat::ListCircle}, {0x25AA, QTextListFormat::ListSquare},
    {0x25CF, QTextListFormat::ListDisc},   {0xF0B7, QTextListFormat::ListDisc},   {0x00B7, QTextListFormat::ListDisc},
    {0x25CB, QTextListFormat::ListCircle}, {'o', QTextListFormat::ListCircle},    {0x25A0, QTextListFormat::ListSquare},
    {0xF0A7, QTextListFormat::ListSquare}, {0x00A7, QTextListFormat::ListSquare},
};

struct Numbering {
    NumberKind kind;
    QTextListFormat::Style style;
};

constexpr Numbering numberings[] = {
    {NumberKind::Decimal, QTextListFormat::ListDecimal},
    {NumberKind::UpperRoman, QTextListFormat::ListUpperRoman},
    {NumberKind::LowerRoman, QTextListFormat::ListLowerRoman},
    {NumberKind::UpperLetter, QTextListFormat::ListUpperAlpha},
    {NumberKind::LowerLetter, QTextListFormat::ListLowerAlpha},
};

QTextListFormat::Style styleOf(const ListLook &look)
{
    if (look.kind == int(NumberKind::Bullet)) {
        const char16_t character = look.label.isEmpty() ? char16_t(0) : look.label.front().unicode();
        const auto *bullet = std::ranges::find(bullets, character, &Bullet::character);
        return bullet == std::ranges::end(bullets) ? QTextListFormat::ListDisc : bullet->style;
    }
    const auto *numbering = std::ranges::find(numberings, NumberKind(look.kind), &Numbering::kind);
    return numbering == std::ranges::end(numberings) ? QTextListFormat::ListDecimal : numbering->style;
}

// The kind and label that the style, prefix and suffix alone mean.
ListLook plainListLook(const QTextListFormat &format)
{
    ListLook look;
    look.level = format.intProperty(ListLevelProperty);
    const auto *bullet = std::ranges::find(bullets, format.style(), &Bullet::style);
    if (bullet != std::ranges::end(bullets)) {
        look.kind = int(NumberKind::Bullet);
        look.label = QChar(bullet->character);
        return look;
    }
    const auto *numbering = std::ranges::find(numberings, format.style(), &Numbering::style);
    look.kind = numbering == std::ranges::end(numberings) ? int(NumberKind::Decimal) : int(numbering->kind);
    const QString suffix =
        format.hasProperty(QTextFormat::ListNumberSuffix) ? format.numberSuffix() : QStringLiteral(".");
    look.label = format.numberPrefix() + QChar(char16_t(look.level)) + suffix;
    return look;
}

// What a width of a rule is written as.
int ruleWidthOf(const QTextLength &width)
{
    constexpr int whole = 100;
    if (width.type() == QTextLength::FixedLength) {
        return std::clamp(twipsFromPixels(width.rawValue()), 1, longestLength);
    }
    const int percent = width.type() == QTextLength::PercentageLength ? qRound(width.rawValue() * whole) : 0;
    return percent <= 0 || percent >= whole * whole ? 0 : -percent;
}

} // namespace

ParaLook paraLook(const ParaState &state, const Tables &tables)
{
    ParaLook look;
    look.alignment = static_cast<ParaAlignment>(state[ParaNumber::Alignment]);
    look.left = state[ParaNumber::Left];
    look.right = state[ParaNumber::Right];
    look.firstLine = state[ParaNumber::FirstLine];
    look.before = state[ParaNumber::Before];
    look.after = state[ParaNumber::After];
    look.lineSpacing = state[ParaNumber::LineSpacing];
    look.lineMultiple = state[ParaNumber::LineMultiple] != 0 && look.lineSpacing != 0;
    if (look.lineMultiple) {
        look.lineSpacing = std::abs(look.lineSpacing);
        look.lineMultiple = look.lineSpacing != singleSpacing;
        look.lineSpacing = look.lineMultiple ? look.lineSpacing : 0;
    }
    look.flags = state.flags & (RightToLeft | PageBreakBefore | keptFlags);
    look.before = (look.flags & BeforeIsAuto) != 0 ? automaticSpace : look.before;
    look.after = (look.flags & AfterIsAuto) != 0 ? automaticSpace : look.after;
    look.outlineLevel = state[ParaNumber::OutlineLevel];
    const qint32 shade = state[ParaNumber::Shade];
    if (shade > 0 && std::size_t(shade) < tables.colors.size() && tables.colors[std::size_t(shade)].isSet) {
        const auto &parts = tables.colors[std::size_t(shade)].parts;
        look.shade = qRgb(parts[0], parts[1], parts[2]);
    }
    look.styleName = tables.styleNames.value(state[ParaNumber::Style]);
    look.openFields = tables.fields[std::size_t(state[ParaNumber::Field])].all();
    look.lastFields = tables.unshown[state[ParaNumber::Unshown]];
    for (qint32 place = state[ParaNumber::Tabs]; place > 0; place = tables.tabs[std::size_t(place)].previous) {
        const TabStop &stop = tables.tabs[std::size_t(place)];
        look.tabs.push_back({stop.position, stop.kind, stop.kind == TabKind::Decimal ? TabLeader::None : stop.leader});
    }
    std::ranges::reverse(look.tabs);
    const Borders &borders = tables.borders[std::size_t(state[ParaNumber::Border])];
    for (std::size_t i = 0; i < borders.size(); ++i) {
        look.borders[i] = borderLook(borders[i], tables);
    }
    return look;
}

BorderLook borderLook(const Border &border, const Tables &tables)
{
    BorderLook look;
    look.style = static_cast<BorderStyle>(border.style);
    if (look.style == BorderStyle::None) {
        return look;
    }
    look.width = border.width > 0 ? border.width : defaultBorderWidth;
    const auto place = std::size_t(border.color);
    if (place > 0 && place < tables.colors.size() && tables.colors[place].isSet) {
        const auto &parts = tables.colors[place].parts;
        look.color = qRgb(parts[0], parts[1], parts[2]);
    }
    return look;
}

QTextBlockFormat blockFormat(const ParaLook &look, bool isInList)
{
    QTextBlockFormat format;
    const bool isRightToLeft = (look.flags & RightToLeft) != 0;
    if (isRightToLeft) {
        format.setLayoutDirection(Qt::RightToLeft);
    }
    if (look.alignment != ParaAlignment::Left || isRightToLeft) {
        format.setAlignment(qtAlignment(look));
    }
    if (look.left != 0) {
        format.setLeftMargin(pixelsFromTwips(look.left));
    }
    if (look.right != 0) {
        format.setRightMargin(pixelsFromTwips(look.right));
    }
    if (isInList && look.firstLine < 0) {
        format.setProperty(HangProperty, look.firstLine);
    } else if (look.firstLine != 0) {
        format.setTextIndent(pixelsFromTwips(look.firstLine));
    }
    if (look.before != 0) {
        format.setTopMargin(pixelsFromTwips(look.before));
    }
    if (look.after != 0) {
        format.setBottomMargin(pixelsFromTwips(look.after));
    }
    setLineSpacing(format, look);
    if ((look.flags & keptFlags) != 0) {
        format.setProperty(ParagraphFlagsProperty, int(look.flags & keptFlags));
    }
    if ((look.flags & PageBreakBefore) != 0) {
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    }
    if (look.outlineLevel < 9) {
        format.setHeadingLevel(look.outlineLevel + 1);
    }
    if (look.shade) {
        format.setBackground(QColor(*look.shade));
    }
    if (!look.styleName.isEmpty()) {
        format.setProperty(StyleNameProperty, look.styleName);
    }
    if (!look.tabs.empty()) {
        QList<QTextOption::Tab> tabs;
        for (const TabLook &tab : look.tabs) {
            tabs << qtTab(tab, look.left);
        }
        format.setTabPositions(tabs);
    }
    if (look.borders != BorderLooks{}) {
        format.setProperty(BordersProperty, bordersText(look.borders));
    }
    if (!look.openFields.isEmpty()) {
        format.setProperty(OpenFieldsProperty, look.openFields);
    }
    if (!look.lastFields.isEmpty()) {
        format.setProperty(LastFieldsProperty, look.lastFields);
    }
    return format;
}

void setRule(QTextBlockFormat &format, int width)
{
    if (!format.hasProperty(BordersProperty)) {
        return;
    }
    BorderLooks others = bordersOf(format.stringProperty(BordersProperty));
    const BorderLook below = std::exchange(others[std::size_t(Side::Bottom)], {});
    if (below.style != BorderStyle::None && others == BorderLooks{}) {
        const QTextLength length = width > 0
                                       ? QTextLength(QTextLength::FixedLength, pixelsFromTwips(width))
                                       : QTextLength(QTextLength::PercentageLength, width < 0 ? -width / 100.0 : 100);
        format.setProperty(QTextFormat::BlockTrailingHorizontalRulerWidth, length);
    }
}

ParaLook paraLook(const QTextBlockFormat &format, bool isInList, qreal indent)
{
    ParaLook look;
    look.alignment = alignmentOf(format);
    look.left = length(format.leftMargin() + indent);
    look.right = length(format.rightMargin());
    const bool hangs = isInList && format.hasProperty(HangProperty);
    look.firstLine =
        hangs ? std::clamp(format.intProperty(HangProperty), -longestLength, 0) : length(format.textIndent());
    if (isInList && !hangs && look.firstLine == 0 && indent > 0) {
        look.firstLine = -std::clamp(look.left, 0, defaultHang);
    }
    look.before = std::max(0, length(format.topMargin()));
    look.after = std::max(0, length(format.bottomMargin()));
    takeLineSpacing(look, format);
    look.flags = static_cast<quint32>(format.intProperty(ParagraphFlagsProperty)) & keptFlags;
    if (format.layoutDirection() == Qt::RightToLeft) {
        look.flags |= RightToLeft;
    }
    if (format.pageBreakPolicy().testFlag(QTextFormat::PageBreak_AlwaysBefore)) {
        look.flags |= PageBreakBefore;
    }
    look.outlineLevel = format.headingLevel() > 0 ? std::min(format.headingLevel(), 9) - 1 : 9;
    if (const QBrush brush = format.background(); brush.style() != Qt::NoBrush) {
        look.shade = brush.color().rgb() | 0xFF000000;
    }
    look.styleName = format.stringProperty(StyleNameProperty);
    for (const QTextOption::Tab &tab : format.tabPositions()) {
        look.tabs.push_back(tabLook(tab, look.left));
    }
    if (format.hasProperty(BordersProperty)) {
        look.borders = bordersOf(format.stringProperty(BordersProperty));
    } else if (format.hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth)) {
        constexpr QRgb shownColor = qRgb(128, 128, 128);
        look.borders[std::size_t(Side::Bottom)] = {defaultBorderWidth, BorderStyle::Single, shownColor};
    }
    look.ruleWidth = ruleWidthOf(format.lengthProperty(QTextFormat::BlockTrailingHorizontalRulerWidth));
    look.openFields = format.stringProperty(OpenFieldsProperty);
    look.lastFields = format.stringProperty(LastFieldsProperty);
    return look;
}

QTextListFormat listFormat(const ListLook &look)
{
    QTextListFormat format;
    format.setIndent(0);
    format.setStyle(styleOf(look));
    if (look.level != 0) {
        format.setProperty(ListLevelProperty, look.level);
    }
    if (look.kind != int(NumberKind::Bullet)) {
        const qsizetype place = look.label.indexOf(QChar(char16_t(look.level)));
        const bool hasOtherLevels = std::ranges::any_of(
            look.label, [&](QChar c) { return c.unicode() <= 8 && c.unicode() != char16_t(look.level); });
        if (place > 0 && !hasOtherLevels) {
            format.setNumberPrefix(look.label.first(place));
        }
        format.setNumberSuffix(look.label.mid(place + 1));
    }
    const ListLook plain = plainListLook(format);
    if (plain.label != look.label) {
        format.setProperty(ListLabelProperty, look.label);
    }
    if (plain.kind != look.kind) {
        format.setProperty(ListKindProperty, look.kind);
    }
    if (look.group != 0) {
        format.setProperty(ListGroupProperty, look.group);
    }
    if (look.start != 1) {
        format.setProperty(ListStartProperty, look.start);
    }
    if (!look.font.isEmpty()) {
        format.setProperty(ListFontProperty, look.font);
    }
    return format;
}

ListLook listLook(const QTextListFormat &format)
{
    ListLook look = plainListLook(format);
    look.level = std::clamp(look.level, 0, 8);
    look.group = format.intProperty(ListGroupProperty);
    look.start = format.hasProperty(ListStartProperty) ? format.intProperty(ListStartProperty) : 1;
    look.font = format.stringProperty(ListFontProperty);
    if (format.hasProperty(ListKindProperty)) {
        look.kind = format.intProperty(ListKindProperty);
    }
    if (format.hasProperty(ListLabelProperty)) {
        look.label = format.stringProperty(ListLabelProperty);
    }
    return look;
}

bool staysWithNext(const QTextBlockFormat &format)
{
    return (static_cast<quint32>(format.intProperty(ParagraphFlagsProperty)) & KeepNext) != 0;
}

void setStaysWithNext(QTextBlockFormat &format)
{
    format.setProperty(ParagraphFlagsProperty, format.intProperty(ParagraphFlagsProperty) | int(KeepNext));
}

} // namespace rtf
