// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Looks.h"

#include "rtf/FieldInstruction.h"
#include "rtf/Properties.h"
#include "rtf/Units.h"

#include <QStringList>

#include <algorithm>

namespace rtf
{

namespace
{

constexpr quint32 effects = Outline | Shadow | Emboss | Engrave | DoubleStrike | Deleted | Revised;

struct UnderlineRow {
    UnderlineKind kind;
    QTextCharFormat::UnderlineStyle style;
};

// How each underline is shown; the first kind of a style is the one that the style alone means.
constexpr UnderlineRow underlineRows[] = {
    {UnderlineKind::None, QTextCharFormat::NoUnderline},
    {UnderlineKind::Single, QTextCharFormat::SingleUnderline},
    {UnderlineKind::Words, QTextCharFormat::SingleUnderline},
    {UnderlineKind::Double, QTextCharFormat::SingleUnderline},
    {UnderlineKind::Thick, QTextCharFormat::SingleUnderline},
    {UnderlineKind::Dotted, QTextCharFormat::DotLine},
    {UnderlineKind::ThickDotted, QTextCharFormat::DotLine},
    {UnderlineKind::Dash, QTextCharFormat::DashUnderline},
    {UnderlineKind::ThickDash, QTextCharFormat::DashUnderline},
    {UnderlineKind::LongDash, QTextCharFormat::DashUnderline},
    {UnderlineKind::ThickLongDash, QTextCharFormat::DashUnderline},
    {UnderlineKind::DashDot, QTextCharFormat::DashDotLine},
    {UnderlineKind::ThickDashDot, QTextCharFormat::DashDotLine},
    {UnderlineKind::DashDotDot, QTextCharFormat::DashDotDotLine},
    {UnderlineKind::ThickDashDotDot, QTextCharFormat::DashDotDotLine},
    {UnderlineKind::Wave, QTextCharFormat::WaveUnderline},
    {UnderlineKind::HeavyWave, QTextCharFormat::WaveUnderline},
    {UnderlineKind::DoubleWave, QTextCharFormat::WaveUnderline},
    {UnderlineKind::Wave, QTextCharFormat::SpellCheckUnderline},
};

OptionalColor colorAt(const Tables &tables, qint32 place)
{
    if (place < 0 || std::size_t(place) >= tables.colors.size() || !tables.colors[std::size_t(place)].isSet) {
        return {};
    }
    const auto &parts = tables.colors[std::size_t(place)].parts;
    return qRgb(parts[0], parts[1], parts[2]);
}

// Black as the first colour of the table is how some writers spell the automatic colour.
OptionalColor textColorAt(const Tables &tables, qint32 place)
{
    const OptionalColor color = colorAt(tables, place);
    return place == 0 && color == qRgb(0, 0, 0) ? OptionalColor() : color;
}

OptionalColor brushColor(const QTextFormat &format, int property)
{
    const QBrush brush = format.brushProperty(property);
    if (brush.style() == Qt::NoBrush) {
        return {};
    }
    return brush.color().rgb() | 0xFF000000;
}

UnderlineKind underlineKind(const QTextCharFormat &format, bool isDefault)
{
    const auto style = !format.hasProperty(QTextFormat::TextUnderlineStyle) && isDefault
                           ? QTextCharFormat::SingleUnderline
                           : format.underlineStyle();
    const auto kept = static_cast<UnderlineKind>(format.intProperty(UnderlineKindProperty));
    const auto *row = std::ranges::find(underlineRows, style, &UnderlineRow::style);
    const bool isKept = std::ranges::any_of(underlineRows, [&](const UnderlineRow &r) {
        return r.style == style && r.kind == kept && kept != UnderlineKind::None;
    });
    return isKept ? kept : row == std::ranges::end(underlineRows) ? UnderlineKind::Single : row->kind;
}

int halfPointsOf(const QTextCharFormat &format, const QFont &font)
{
    // The steps of HTML's relative sizes, from -2 to 4.
    constexpr qreal steps[] = {0.7, 0.8, 1.0, 1.2, 1.5, 2.0, 2.4};
    qreal points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * 0.75;
    if (format.hasProperty(QTextFormat::FontPointSize)) {
        points = format.fontPointSize();
    } else if (format.hasProperty(QTextFormat::FontPixelSize)) {
        points = format.intProperty(QTextFormat::FontPixelSize) * 0.75;
    }
    if (format.hasProperty(QTextFormat::FontSizeAdjustment)) {
        points *= steps[std::clamp(format.intProperty(QTextFormat::FontSizeAdjustment) + 2, 0, 6)];
    }
    return std::clamp(qRound(points * 2), 2, 3276);
}

int scriptOf(const QTextCharFormat &format)
{
    switch (format.verticalAlignment()) {
    case QTextCharFormat::AlignSuperScript:
        return 1;
    case QTextCharFormat::AlignSubScript:
        return -1;
    default:
        return 0;
    }
}

// What text is that has no effects: a document's default font may have some. Most looks differ from it in few things,
// and copying it costs less than setting each.
const QTextCharFormat &ordinaryFormat()
{
    static const QTextCharFormat ordinary = [] {
        QTextCharFormat format;
        format.setFontWeight(QFont::Normal);
        format.setFontItalic(false);
        format.setFontStrikeOut(false);
        format.setUnderlineStyle(QTextCharFormat::NoUnderline);
        return format;
    }();
    return ordinary;
}

bool flagOf(const QTextFormat &format, int property, bool otherwise)
{
    return format.hasProperty(property) ? format.boolProperty(property) : otherwise;
}

} // namespace

CharLook charLook(const CharState &state, const Tables &tables)
{
    CharLook look;
    look.family = tables.fonts[std::size_t(state[CharNumber::Font])].family;
    if (look.family.isEmpty()) {
        look.family = tables.fonts[0].family;
    }
    look.halfPoints = state[CharNumber::Size];
    look.flags = state.flags;
    look.foreground = textColorAt(tables, state[CharNumber::Foreground]);
    for (const CharNumber number : {CharNumber::Highlight, CharNumber::Pattern, CharNumber::Background}) {
        if (!look.background && state[number] > 0) {
            look.background = colorAt(tables, state[number]);
        }
    }
    look.underline = static_cast<UnderlineKind>(state[CharNumber::Underline]);
    if (look.underline != UnderlineKind::None && state[CharNumber::UnderlineColor] > 0) {
        look.underlineColor = colorAt(tables, state[CharNumber::UnderlineColor]);
    }
    look.script = state[CharNumber::Script];
    look.offset = state[CharNumber::Offset];
    look.language = state[CharNumber::Language];
    look.spacing = state[CharNumber::Spacing];
    look.scale = state[CharNumber::Scale];
    const Field &field = tables.fields[std::size_t(state[CharNumber::Link])];
    look.target = field.target;
    if (field.target.isEmpty() || field.instruction != hyperlinkInstruction(field.target)) {
        look.instruction = field.instruction;
    }
    look.outerFields = field.outer;
    look.unshown = tables.unshown[state[CharNumber::Unshown]];
    return look;
}

QTextCharFormat charFormat(const CharLook &look)
{
    QTextCharFormat format = ordinaryFormat();
    if (!look.family.isEmpty()) {
        format.setFontFamilies({look.family});
    }
    format.setFontPointSize(look.halfPoints / 2.0);
    if ((look.flags & Bold) != 0) {
        format.setFontWeight(QFont::Bold);
    }
    if ((look.flags & Italic) != 0) {
        format.setFontItalic(true);
    }
    if ((look.flags & (Strike | DoubleStrike | Deleted)) != 0) {
        format.setFontStrikeOut(true);
    }
    const auto *row = std::ranges::find(underlineRows, look.underline, &UnderlineRow::kind);
    if (row->style != QTextCharFormat::NoUnderline) {
        format.setUnderlineStyle(row->style);
    }
    if (std::ranges::find(underlineRows, row->style, &UnderlineRow::style)->kind != look.underline) {
        format.setProperty(UnderlineKindProperty, int(look.underline));
    }
    if (look.underlineColor) {
        format.setUnderlineColor(QColor(*look.underlineColor));
    }
    if (look.foreground) {
        format.setForeground(QColor(*look.foreground));
    }
    if (look.background) {
        format.setBackground(QColor(*look.background));
    }
    if ((look.flags & (Caps | SmallCaps)) != 0) {
        format.setFontCapitalization((look.flags & Caps) != 0 ? QFont::AllUppercase : QFont::SmallCaps);
    }
    if (look.script != 0) {
        format.setVerticalAlignment(look.script > 0 ? QTextCharFormat::AlignSuperScript
                                                    : QTextCharFormat::AlignSubScript);
    }
    if (look.offset != 0) {
        format.setProperty(OffsetProperty, look.offset);
        // The document measures in percent of the line height, which is some 1.2 times the size.
        format.setBaselineOffset(100.0 * look.offset / (1.2 * look.halfPoints));
    }
    if (look.spacing != 0) {
        format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
        format.setFontLetterSpacing(pixelsFromTwips(look.spacing));
    }
    if (look.scale != 100) {
        format.setFontStretch(look.scale);
    }
    if (look.language != 0) {
        format.setProperty(LanguageProperty, look.language);
    }
    if ((look.flags & Hidden) != 0) {
        format.setProperty(HiddenProperty, true);
    }
    if ((look.flags & effects) != 0) {
        // What is struck out because it is deleted may be struck out itself.
        const quint32 strike = (look.flags & Deleted) != 0 ? look.flags & Strike : 0;
        format.setProperty(EffectsProperty, int((look.flags & effects) | strike));
    }
    if (!look.target.isEmpty()) {
        format.setAnchor(true);
        format.setAnchorHref(look.target);
    }
    if (!look.instruction.isEmpty()) {
        format.setProperty(FieldProperty, look.instruction);
    }
    if (!look.outerFields.isEmpty()) {
        format.setProperty(OuterFieldsProperty, look.outerFields);
    }
    if (!look.unshown.isEmpty()) {
        format.setProperty(UnshownFieldsProperty, look.unshown);
    }
    return format;
}

CharLook charLook(const QTextCharFormat &format, const QFont &defaultFont)
{
    CharLook look;
    const QStringList families = format.fontFamilies().toStringList();
    look.family = families.isEmpty() ? defaultFont.family() : families.front();
    look.halfPoints = halfPointsOf(format, defaultFont);
    const bool isBold = format.hasProperty(QTextFormat::FontWeight) ? format.fontWeight() >= QFont::DemiBold
                                                                    : defaultFont.weight() >= QFont::DemiBold;
    const bool isStruck = flagOf(format, QTextFormat::FontStrikeOut, defaultFont.strikeOut());
    const auto keptEffects = static_cast<quint32>(format.intProperty(EffectsProperty)) & (effects | Strike);
    look.flags = (isBold ? Bold : 0u) | (flagOf(format, QTextFormat::FontItalic, defaultFont.italic()) ? Italic : 0u) |
                 (format.boolProperty(HiddenProperty) ? Hidden : 0u) |
                 (keptEffects & ~quint32(Strike | DoubleStrike | Deleted));
    if (isStruck && (keptEffects & Deleted) != 0) {
        look.flags |= keptEffects & (Strike | DoubleStrike | Deleted);
    } else if (isStruck) {
        look.flags |= (keptEffects & DoubleStrike) != 0 ? DoubleStrike : Strike;
    }
    if (format.fontCapitalization() == QFont::AllUppercase) {
        look.flags |= Caps;
    } else if (format.fontCapitalization() == QFont::SmallCaps) {
        look.flags |= SmallCaps;
    }
    look.underline = underlineKind(format, defaultFont.underline());
    if (look.underline != UnderlineKind::None && format.underlineColor().isValid()) {
        look.underlineColor = format.underlineColor().rgb() | 0xFF000000;
    }
    look.foreground = brushColor(format, QTextFormat::ForegroundBrush);
    look.background = brushColor(format, QTextFormat::BackgroundBrush);
    look.script = scriptOf(format);
    look.offset = format.intProperty(OffsetProperty);
    look.language = format.intProperty(LanguageProperty);
    if (format.fontLetterSpacingType() == QFont::AbsoluteSpacing) {
        look.spacing = std::clamp(twipsFromPixels(format.fontLetterSpacing()), -longestLength, longestLength);
    }
    if (format.hasProperty(QTextFormat::FontStretch) && format.fontStretch() > 0) {
        look.scale = std::clamp(format.fontStretch(), 1, 600);
    }
    look.target = format.isAnchor() ? format.anchorHref() : QString();
    look.instruction = format.stringProperty(FieldProperty);
    look.outerFields = format.stringProperty(OuterFieldsProperty);
    look.unshown = format.stringProperty(UnshownFieldsProperty);
    // An address that is not the instruction's was set since; it stands for itself.
    if (!look.instruction.isEmpty() &&
        fieldsTarget(look.outerFields.split(QLatin1Char('\n')) << look.instruction) != look.target) {
        look.instruction.clear();
        look.outerFields.clear();
    }
    return look;
}

} // namespace rtf
