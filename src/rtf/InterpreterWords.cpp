// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Interpreter.h"

#include "rtf/Units.h"

#include <algorithm>

// What each control word does to the formatting in force.
namespace rtf
{

namespace
{

struct Range {
    qint32 lowest;
    qint32 highest;
};

WidthKind preferredWidthKind(qint32 number)
{
    return number >= 0 && number <= int(WidthKind::Twips) ? static_cast<WidthKind>(number) : WidthKind::Edges;
}

constexpr Range charRanges[] = {
    {0, qint32(mostFonts) - 1},            // Font
    {2, 3276},                             // Size
    {-1, mostColors},                      // Foreground
    {-1, mostColors},                      // Background
    {-1, mostColors},                      // Pattern
    {-1, mostColors},                      // Highlight
    {0, qint32(UnderlineKind::Count) - 1}, // Underline
    {-1, mostColors},                      // UnderlineColor
    {-1, 1},                               // Script
    {-3276, 3276},                         // Offset
    {0, 65535},                            // Language
    {-longestLength, longestLength},       // Spacing
    {1, 600},                              // Scale
    {0, 0x7FFFFFFF},                       // Link
    {0, 0x7FFFFFFF},                       // Unshown
};
static_assert(std::size(charRanges) == std::size_t(CharNumber::Count));

constexpr Range paraRanges[] = {
    {0, 3},                          // Alignment
    {-longestLength, longestLength}, // Left
    {-longestLength, longestLength}, // Right
    {-longestLength, longestLength}, // FirstLine
    {0, longestLength},              // Before
    {0, longestLength},              // After
    {-longestLength, longestLength}, // LineSpacing
    {0, 1},                          // LineMultiple
    {0, 65535},                      // Style
    {0, 9},                          // OutlineLevel
    {0, 0x7FFFFFFF},                 // ListNumber
    {0, 8},                          // ListLevel
    {0, 0x7FFFFFFF},                 // LegacyList
    {0, 0x7FFFFFFF},                 // Tabs
    {0, 0x7FFFFFFF},                 // Border
    {-1, mostColors},                // Shade
    {0, deepestTable},               // TableDepth
    {0, 0x7FFFFFFF},                 // Field
    {0, 0x7FFFFFFF},                 // Unshown
    {-100 * 100, longestLength},     // RuleWidth
};
static_assert(std::size(paraRanges) == std::size_t(ParaNumber::Count));

qint32 clampTo(const Range &range, qint32 value)
{
    return std::clamp(value, range.lowest, range.highest);
}

bool isStyleable(Action action)
{
    return action == Action::CharFlag || action == Action::CharNumber || action == Action::CharSet ||
           action == Action::Underline || action == Action::Alignment || action == Action::ParaNumber ||
           action == Action::ParaFlag || action == Action::TabKind || action == Action::TabLeader;
}

// Words that a style may hold beyond those.
bool isStyleable(const ControlWord &word)
{
    if (word.action != Action::Special) {
        return isStyleable(word.action);
    }
    const auto special = static_cast<Special>(word.argument);
    return special == Special::Font || special == Special::Tab || special == Special::Lower ||
           special == Special::Expand;
}

// Words that stand for a character, so that they may be what \u tells to pass over.
bool isCharacter(const ControlWord &word)
{
    return word.action == Action::Character;
}

} // namespace

void Interpreter::apply(const ControlWord &word, qint32 number, bool hasNumber)
{
    if (isCharacter(word)) {
        appendCharacter(static_cast<char16_t>(word.argument));
        return;
    }
    m_fallback = 0;
    if (m_state.destination == Destination::StyleSheet && isStyleable(word) && m_style.words.size() < mostStyleWords) {
        m_style.words.push_back({&word, number, hasNumber});
    }
    const bool isOn = !hasNumber || number != 0;
    switch (word.action) {
    case Action::Destination:
        enter(static_cast<Destination>(word.argument));
        break;
    case Action::CodePage:
        m_documentPage = static_cast<int>(word.argument);
        m_pageFont = -1;
        break;
    case Action::BorderKind:
        changeBorders(&Border::style, static_cast<qint32>(word.argument));
        break;
    case Action::CellBorder:
        m_borderTarget = BorderTarget::Cell;
        m_borderSides = 1u << word.argument;
        break;
    case Action::ParaBorder:
        m_borderTarget = BorderTarget::Paragraph;
        m_borderSides = 1u << word.argument;
        break;
    case Action::CellFlag:
        m_cell.flags |= static_cast<quint16>(word.argument);
        break;
    case Action::CellAlignment:
        m_cell.verticalAlign = static_cast<qint16>(word.argument);
        break;
    case Action::CellPadding:
        m_cell.padding.sides[word.argument].twips = std::clamp(number, 0, longestLength);
        break;
    case Action::CellPaddingUnit:
        m_cell.padding.sides[word.argument].isVoid = number == 0;
        break;
    case Action::RowPadding:
        currentRow().padding.sides[word.argument].twips = std::clamp(number, 0, longestLength);
        break;
    case Action::RowPaddingUnit:
        currentRow().padding.sides[word.argument].isVoid = number == 0;
        break;
    case Action::RowSpacing:
        currentRow().spacing.sides[word.argument].twips = std::clamp(number, 0, longestLength);
        break;
    case Action::RowSpacingUnit:
        currentRow().spacing.sides[word.argument].isVoid = number == 0;
        break;
    case Action::RowAlignment:
        currentRow().alignment = static_cast<qint16>(word.argument);
        break;
    case Action::ColorPart:
        flush();
        m_color.isSet = true;
        m_color.parts[word.argument] = static_cast<quint8>(std::clamp(number, 0, 255));
        break;
    case Action::LegacyKind:
        m_legacyList.kind = static_cast<NumberKind>(word.argument);
        break;
    case Action::PictureKind:
        m_picture.kind = static_cast<PictureKind>(word.argument);
        m_picture[PictureNumber::KindNumber] = number;
        break;
    case Action::PictureNumber:
        m_picture[static_cast<PictureNumber>(word.argument)] = number;
        break;
    case Action::RowWord:
        applyRowWord(static_cast<RowWord>(word.argument), hasNumber ? number : word.value);
        break;
    case Action::DefinitionWord:
        applyDefinition(static_cast<DefinitionWord>(word.argument), hasNumber ? number : word.value, hasNumber);
        break;
    case Action::Special:
        applySpecial(static_cast<Special>(word.argument), hasNumber ? number : word.value);
        break;
    default:
        applyStyleable(word, hasNumber ? number : word.value, isOn);
    }
}

// Words that set one thing of the character or paragraph formatting.
void Interpreter::applyStyleable(const ControlWord &word, qint32 number, bool isOn)
{
    switch (word.action) {
    case Action::CharFlag:
        setCharFlag(static_cast<CharFlag>(word.argument), isOn);
        break;
    case Action::CharNumber:
        setChar(static_cast<CharNumber>(word.argument), number);
        break;
    case Action::CharSet:
        setChar(static_cast<CharNumber>(word.argument), isOn ? word.value : 0);
        break;
    case Action::Underline:
        setChar(CharNumber::Underline, isOn ? static_cast<qint32>(word.argument) : 0);
        break;
    case Action::Alignment:
        setPara(ParaNumber::Alignment, static_cast<qint32>(word.argument));
        break;
    case Action::ParaNumber:
        setPara(static_cast<ParaNumber>(word.argument), number);
        break;
    case Action::ParaFlag:
        setParaFlag(static_cast<ParaFlag>(word.argument), isOn && word.value != 0);
        break;
    case Action::TabKind:
        m_tabKind = static_cast<TabKind>(word.argument);
        break;
    case Action::TabLeader:
        m_tabLeader = static_cast<TabLeader>(word.argument);
        break;
    default:
        break;
    }
}

void Interpreter::applySpecial(Special word, qint32 number)
{
    switch (word) {
    case Special::Paragraph:
        if (isContent()) {
            endParagraph(tableDepth());
        }
        break;
    case Special::Section:
        if (isContent()) {
            endContentParagraph();
            m_sectionEnded = m_hasParagraph;
        }
        break;
    case Special::SectionBreaks:
    case Special::SectionGoesOn:
        m_sectionsBreak = word == Special::SectionBreaks;
        break;
    case Special::Page:
        // Behind a row the paragraph formatting is often that of its cells still.
        if (isContent() && (tableDepth() == 0 || m_openRows.empty())) {
            flush();
            if (m_hasContent && tableDepth() == 0) {
                endParagraph(0);
            }
            m_pageBreak = true;
        }
        break;
    case Special::Cell:
        endCell(1);
        break;
    case Special::NestedCell:
        endCell(qMax(2, tableDepth()));
        break;
    case Special::Row:
        if (isContent()) {
            endRow(1, m_row);
        }
        break;
    case Special::NestedRow:
        endNestedRow();
        break;
    case Special::ParagraphDefaults:
        m_state.para = ParaState::plain();
        m_borderTarget = BorderTarget::None;
        m_paragraphLegacy = isContent() ? 0 : m_paragraphLegacy;
        break;
    case Special::CharDefaults:
        applyCharDefaults();
        m_isPlain = m_isPlain || isContent();
        break;
    case Special::Unicode:
        if (collectsText()) {
            choosePage();
            m_characters.appendUnicode(static_cast<quint32>(number < 0 ? number + 0x10000 : number));
        }
        m_fallback = m_state.fallbackLength;
        break;
    case Special::FallbackLength:
        m_state.fallbackLength = static_cast<quint16>(std::clamp(number, 0, 1000));
        break;
    case Special::AnsiCodePage:
        m_documentPage = number == 0 ? windowsLatin : number;
        m_hasDocumentPage = true;
        m_pageFont = -1;
        break;
    case Special::FieldLock:
        if (!m_openFields.empty()) {
            m_openFields.back().isLocked = true;
        }
        break;
    case Special::DefaultFont:
        m_defaultFont = number;
        break;
    case Special::Font:
        if (m_state.destination == Destination::FontTable) {
            defineFont(number);
        } else {
            setChar(CharNumber::Font, fontPlace(number));
        }
        break;
    case Special::Lower:
        setChar(CharNumber::Offset, -std::clamp(number, -3276, 3276));
        break;
    case Special::Expand:
        setChar(CharNumber::Spacing, std::clamp(number, -6336, 6336) * 5);
        break;
    case Special::Style:
    case Special::CharStyle:
    case Special::OtherStyle:
        applyStyleNumber(word, number);
        break;
    case Special::Tab:
        addTab(std::clamp(number, -longestLength, longestLength));
        break;
    case Special::BarTab:
        m_tabKind = TabKind::Left;
        m_tabLeader = TabLeader::None;
        break;
    case Special::DefaultTab:
        m_tables.defaultTab = std::clamp(number, 1, longestLength);
        break;
    case Special::FormResult:
    case Special::FormStandard:
        if (m_state.destination == Destination::FormField && !m_openFields.empty()) {
            FormField &form = m_openFields.back().form;
            (word == Special::FormResult ? form.result : form.standard) = number;
        }
        break;
    }
}

void Interpreter::applyRowWord(RowWord word, qint32 number)
{
    switch (word) {
    case RowWord::RowDefaults:
        m_nestedRowIsDefined = m_state.destination == Destination::NestedRow;
        currentRow() = {};
        m_cell = {};
        break;
    case RowWord::CellEdge:
        m_cell.right = std::clamp(number, -longestLength, longestLength);
        if (currentRow().cells.size() < mostCells) {
            currentRow().cells.push_back(m_cell);
        }
        m_cell = {};
        break;
    case RowWord::RowGap:
        currentRow().gap = std::clamp(number, 0, longestLength);
        break;
    case RowWord::RowLeft:
        currentRow().left = std::clamp(number, -longestLength, longestLength);
        break;
    case RowWord::RowHeight:
        currentRow().height = std::clamp(number, -longestLength, longestLength);
        break;
    case RowWord::RowKeep:
        currentRow().keep = true;
        break;
    case RowWord::RowHeader:
        currentRow().header = true;
        break;
    case RowWord::RowWidthKind:
        currentRow().width.kind = preferredWidthKind(number);
        break;
    case RowWord::RowWidth:
        currentRow().width.number = std::clamp(number, 0, longestLength);
        break;
    case RowWord::CellWidthKind:
        m_cell.width.kind = preferredWidthKind(number);
        break;
    case RowWord::CellWidth:
        m_cell.width.number = std::clamp(number, 0, longestLength);
        break;
    case RowWord::CellShade:
        m_cell.shade = static_cast<qint16>(std::clamp(number, -1, mostColors));
        break;
    case RowWord::ParagraphBox:
        m_borderTarget = BorderTarget::Paragraph;
        m_borderSides = (1u << quint32(Side::Count)) - 1;
        break;
    case RowWord::OtherBorder:
        m_borderTarget = BorderTarget::None;
        break;
    case RowWord::BorderWidth:
        changeBorders(&Border::width, std::clamp(number, 0, 255));
        break;
    case RowWord::BorderColor:
        changeBorders(&Border::color, std::clamp(number, 0, mostColors));
        break;
    }
}

void Interpreter::applyCharDefaults()
{
    const qint32 link = m_state.chars[CharNumber::Link];
    CharState plain = CharState::plain();
    plain[CharNumber::Link] = link;
    if (plain != m_state.chars) {
        beforeCharChange();
        m_state.chars = plain;
    }
}

void Interpreter::setChar(CharNumber number, qint32 value)
{
    const qint32 wanted = clampTo(charRanges[std::size_t(number)], value);
    if (m_state.chars[number] != wanted) {
        beforeCharChange();
        m_state.chars[number] = wanted;
    }
}

void Interpreter::setCharFlag(CharFlag flag, bool on)
{
    if (m_state.chars.has(flag) != on) {
        beforeCharChange();
        m_state.chars.flags ^= flag;
    }
}

// Paragraph formatting holds for the whole paragraph, whenever it is set before its end.
void Interpreter::setPara(ParaNumber number, qint32 value)
{
    if (number == ParaNumber::ListNumber && m_state.destination == Destination::Override) {
        m_overrideNumber = qMax(0, value);
        return;
    }
    if (number == ParaNumber::ListNumber && value == 0 && m_tables.listOverrides.contains(listZero)) {
        value = listZero;
    }
    m_state.para[number] = clampTo(paraRanges[std::size_t(number)], value);
    if (number == ParaNumber::Left) {
        m_state.para.flags |= LeftIsSet;
    } else if (number == ParaNumber::FirstLine) {
        m_state.para.flags |= FirstLineIsSet;
    }
}

void Interpreter::setParaFlag(ParaFlag flag, bool on)
{
    m_state.para.flags = on ? m_state.para.flags | flag : m_state.para.flags & ~flag;
}

void Interpreter::addTab(qint32 position)
{
    // A paragraph that sets stops sets all of them, those of its style once more.
    const qint32 previous = m_state.para.has(TabsAreStyles) ? 0 : m_state.para[ParaNumber::Tabs];
    m_state.para.flags &= ~quint32(TabsAreStyles);
    const quint8 length = m_tables.tabs[std::size_t(previous)].length;
    if (length < mostTabs) {
        const std::array key{previous, position, qint32(m_tabKind), qint32(m_tabLeader)};
        const auto [place, isNew] = m_tabPlaces.try_emplace(key, qint32(m_tables.tabs.size()));
        if (isNew) {
            m_tables.tabs.push_back({previous, position, m_tabKind, m_tabLeader, quint8(length + 1)});
        }
        m_state.para[ParaNumber::Tabs] = place->second;
    }
    m_tabKind = TabKind::Left;
    m_tabLeader = TabLeader::None;
}

// Changes one part of the borders that the last border word chose.
void Interpreter::changeBorders(qint16 Border::*part, qint32 value)
{
    if (m_borderTarget == BorderTarget::None) {
        return;
    }
    const bool isCell = m_borderTarget == BorderTarget::Cell;
    Borders borders = isCell ? m_cell.borders : m_tables.borders[std::size_t(m_state.para[ParaNumber::Border])];
    for (std::size_t side = 0; side < borders.size(); ++side) {
        if ((m_borderSides & (1u << side)) != 0) {
            borders[side].*part = static_cast<qint16>(value);
        }
    }
    if (isCell) {
        m_cell.borders = borders;
        return;
    }
    const auto [place, isNew] = m_borderPlaces.try_emplace(borders, qint32(m_tables.borders.size()));
    if (isNew) {
        m_tables.borders.push_back(borders);
    }
    m_state.para[ParaNumber::Border] = place->second;
}

} // namespace rtf
