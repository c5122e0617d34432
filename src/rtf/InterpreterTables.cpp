// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Interpreter.h"

#include "rtf/FieldInstruction.h"
#include "rtf/FieldText.h"

#include <algorithm>

// The destinations: what may stand where, and what their text puts into the tables.
namespace rtf
{

namespace
{

struct Nesting {
    Destination inner;
    Destination outer;
};

// Groups that mean something only inside another kind.
constexpr Nesting nestings[] = {
    {Destination::List, Destination::ListTable},         {Destination::ListLevel, Destination::List},
    {Destination::LevelText, Destination::ListLevel},    {Destination::Override, Destination::OverrideTable},
    {Destination::OverrideLevel, Destination::Override}, {Destination::LegacyBefore, Destination::LegacyList},
    {Destination::LegacyAfter, Destination::LegacyList}, {Destination::FieldInstruction, Destination::Field},
    {Destination::FieldResult, Destination::Field},      {Destination::FormEntry, Destination::FormField},
    {Destination::FormText, Destination::FormField},
};

// Whether text, and so pictures, fields and the tables, may come in such a group.
bool mayHoldText(Destination destination)
{
    return destination == Destination::Content || destination == Destination::Container ||
           destination == Destination::ShapeText || destination == Destination::Field;
}

bool mayNest(Destination inner, Destination outer)
{
    const auto *row = std::ranges::find(nestings, inner, &Nesting::inner);
    if (row != std::ranges::end(nestings)) {
        return row->outer == outer;
    }
    return mayHoldText(outer) || (inner == Destination::FormField && outer == Destination::FieldInstruction);
}

} // namespace

// Makes the current group one of that kind, or skips it where that kind means nothing. The outermost group stays text.
void Interpreter::enter(Destination destination)
{
    if (m_stack.size() <= 1 || m_unstacked > 0) {
        return;
    }
    const Destination outer = m_state.destination;
    if (outer == Destination::FieldInstruction && destination != Destination::FormField) {
        // Of a field inside an instruction, its result is part of the instruction.
        if (destination == Destination::Skip || destination == Destination::Picture ||
            destination == Destination::FieldInstruction) {
            m_tokens.skipGroup();
        }
        return;
    }
    if (destination == Destination::Skip || !mayNest(destination, outer)) {
        flush();
        m_tokens.skipGroup();
        return;
    }
    flush();
    m_state.destination = destination;
    switch (destination) {
    case Destination::Content:
        m_state.destination = outer == Destination::ShapeText ? outer : Destination::Content;
        break;
    case Destination::ShapeText:
        endContentParagraph();
        break;
    case Destination::StyleSheet:
        m_styleDepth = m_stack.size();
        break;
    case Destination::List:
        m_tables.lists.emplace_back();
        break;
    case Destination::ListLevel:
        m_state.chars = CharState::plain();
        m_state.para = ParaState::plain();
        if (m_tables.lists.back().levels.size() < mostListLevels) {
            m_tables.lists.back().levels.emplace_back();
        }
        break;
    case Destination::Override:
        m_override = {};
        m_overrideNumber = -1;
        m_overrideLevel = -1;
        break;
    case Destination::OverrideLevel:
        ++m_overrideLevel;
        break;
    case Destination::LegacyList:
        m_legacyList = {};
        m_legacyIsContinued = false;
        break;
    case Destination::Picture:
        m_picture = {};
        m_nibble = -1;
        break;
    case Destination::FormEntry:
        if (!m_openFields.empty()) {
            m_openFields.back().form.entries << QString();
        }
        break;
    case Destination::Field:
        m_openFields.push_back({m_stack.size(), {}, m_shown, false, {}});
        break;
    case Destination::FieldResult:
        m_state.destination = Destination::Content;
        if (!m_openFields.empty()) {
            const OpenField &field = m_openFields.back();
            // What is locked is text: other programs would make it anew. A link stays one.
            if (!field.isLocked || !hyperlinkTarget(field.instruction).isEmpty()) {
                qint32 &link = m_state.chars[CharNumber::Link];
                link = internField(field.instruction, link);
            }
        }
        break;
    default:
        break;
    }
}

void Interpreter::defineFont(int number)
{
    flush();
    finishFont();
    if (m_tables.fonts.size() >= mostFonts) {
        return;
    }
    m_openFont = static_cast<int>(m_tables.fonts.size());
    m_tables.fonts.emplace_back();
    m_fontPlaces.insert(number, m_openFont);
    m_lastFontNumber = -1;
}

void Interpreter::setFontPage(DefinitionWord kind, int number)
{
    if (m_openFont < 0 || m_state.destination != Destination::FontTable) {
        return;
    }
    Font &font = m_tables.fonts[std::size_t(m_openFont)];
    font.codePage = kind == DefinitionWord::FontCodePage ? number : codePageOfCharset(number);
    font.symbol = font.symbol || (kind == DefinitionWord::FontCharset && number == 2);
}

// A name ends with a semicolon; what follows it belongs to no font.
void Interpreter::addFontName(QStringView text)
{
    if (m_openFont < 0) {
        return;
    }
    const qsizetype end = text.indexOf(QLatin1Char(';'));
    m_fontName += end < 0 ? text : text.first(end);
    if (end >= 0) {
        finishFont();
    }
}

void Interpreter::finishFont()
{
    if (m_openFont < 0) {
        return;
    }
    const QString family = m_fontName.trimmed();
    m_tables.fonts[std::size_t(m_openFont)].family = family;
    m_familyPlaces.insert(family.toLower(), m_openFont);
    m_fontName.clear();
    m_openFont = -1;
}

int Interpreter::fontPlace(int number)
{
    if (number != m_lastFontNumber) {
        m_lastFontNumber = number;
        m_lastFontPlace = m_fontPlaces.value(number, 0);
    }
    return m_lastFontPlace;
}

// Place 0 becomes a copy of the font that \deff names, or of the first one.
void Interpreter::resolveDefaultFont()
{
    if (m_tables.fonts.size() > 1) {
        ++m_tables.revision;
        m_tables.fonts[0] = m_tables.fonts[std::size_t(m_fontPlaces.value(m_defaultFont, 1))];
    }
    m_pageFont = -1;
}

void Interpreter::addColorText(QStringView text)
{
    for (const QChar c : text) {
        if (c == QLatin1Char(';')) {
            m_tables.colors.push_back(m_color);
            m_color = {};
        }
    }
}

void Interpreter::applyDefinition(DefinitionWord word, qint32 number, bool hasNumber)
{
    switch (word) {
    case DefinitionWord::FontCharset:
    case DefinitionWord::FontCodePage:
        setFontPage(word, number);
        break;
    case DefinitionWord::BasedOn:
        m_style.basedOn = number;
        break;
    case DefinitionWord::LegacyContinue:
        m_legacyIsContinued = true;
        break;
    case DefinitionWord::LegacyStart:
        m_legacyList.start = std::clamp(number, 0, 32767);
        break;
    case DefinitionWord::LegacyIndent:
        m_legacyList.indent = std::clamp(number, 0, longestLength);
        break;
    case DefinitionWord::LegacyFont:
        m_legacyList.font = fontPlace(number);
        break;
    case DefinitionWord::LevelKind:
    case DefinitionWord::LevelStart:
    case DefinitionWord::ListId:
    case DefinitionWord::OverrideStart:
        if (hasNumber) {
            applyListDefinition(word, number);
        }
        break;
    }
}

void Interpreter::applyListDefinition(DefinitionWord word, qint32 number)
{
    const Destination destination = m_state.destination;
    if (word == DefinitionWord::ListId && destination == Destination::List) {
        m_tables.lists.back().id = number;
    } else if (word == DefinitionWord::ListId && destination == Destination::Override) {
        m_override.list = m_listPlaces.value(number, -1);
    } else if (destination == Destination::OverrideLevel && word == DefinitionWord::LevelStart) {
        m_override.starts.insert(m_overrideLevel, std::clamp(number, 0, 32767));
    } else if (destination == Destination::ListLevel && word == DefinitionWord::LevelStart) {
        m_tables.lists.back().levels.back().start = std::clamp(number, 0, 32767);
    } else if (destination == Destination::ListLevel && word == DefinitionWord::LevelKind) {
        m_tables.lists.back().levels.back().kind = static_cast<NumberKind>(std::clamp(number, 0, 255));
    }
}

// Of lists with one number, the first is meant.
void Interpreter::finishList()
{
    const qint32 id = m_tables.lists.back().id;
    if (!m_listPlaces.contains(id)) {
        m_listPlaces.insert(id, static_cast<qint32>(m_tables.lists.size()) - 1);
    }
}

void Interpreter::finishListLevel()
{
    ListLevel &level = m_tables.lists.back().levels.back();
    level.left = m_state.para[ParaNumber::Left];
    level.firstLine = m_state.para[ParaNumber::FirstLine];
    level.font = m_state.chars[CharNumber::Font];
    // The first character counts those that follow; the last one is a semicolon.
    level.text = level.text.mid(1);
    level.text.removeIf([](QChar c) { return c.unicode() > 8 && c.unicode() < 0x20 && c != QLatin1Char('\t'); });
    if (level.text.endsWith(QLatin1Char(';'))) {
        level.text.chop(1);
    }
}

void Interpreter::finishOverride()
{
    if (m_overrideNumber >= 0) {
        m_tables.listOverrides.insert(m_overrideNumber == 0 ? listZero : m_overrideNumber, m_override);
    }
}

int Interpreter::internLegacyList()
{
    int &place = m_legacyPlaces[m_legacyList];
    if (place == 0) {
        place = static_cast<int>(m_tables.legacyLists.size());
        m_tables.legacyLists.push_back(m_legacyList);
    }
    return place;
}

int Interpreter::internField(const QString &text, int around)
{
    const QString instruction = text.left(longestFieldInstruction).simplified();
    if (instruction.isEmpty()) {
        return around;
    }
    const Field outer = m_tables.fields[std::size_t(around)];
    const bool isAlone =
        outer.depth >= deepestField || outer.outer.size() + outer.instruction.size() >= longestOuterFields;
    int &place = m_fieldPlaces[{isAlone ? 0 : around, instruction}];
    if (place == 0) {
        Field field{instruction, hyperlinkTarget(instruction), {}, 0, 1};
        if (!isAlone) {
            field.target = field.target.isEmpty() ? outer.target : field.target;
            field.outer = outer.all();
            field.around = around;
            field.depth = outer.depth + 1;
        }
        place = static_cast<int>(m_tables.fields.size());
        m_tables.fields.push_back(field);
    }
    return place;
}

// The innermost field that holds what both do.
qint32 Interpreter::commonField(qint32 one, qint32 other) const
{
    const std::vector<Field> &fields = m_tables.fields;
    while (one != other) {
        qint32 &deeper = fields[std::size_t(one)].depth > fields[std::size_t(other)].depth ? one : other;
        deeper = fields[std::size_t(deeper)].around;
    }
    return one;
}

void Interpreter::addPictureText(QByteArrayView bytes)
{
    if (m_detail == Detail::TextOnly) {
        return;
    }
    for (const char c : bytes) {
        const int digit = c >= '0' && c <= '9'                     ? c - '0'
                          : (c | 0x20) >= 'a' && (c | 0x20) <= 'f' ? (c | 0x20) - 'a' + 10
                                                                   : -1;
        if (digit < 0) {
            continue;
        }
        if (m_nibble < 0) {
            m_nibble = digit;
        } else {
            m_picture.data.append(static_cast<char>(m_nibble * 16 + digit));
            m_nibble = -1;
        }
    }
}

void Interpreter::finishPicture()
{
    takeBlanks();
    m_sink.picture(m_picture, charsOfWord());
    m_hasContent = true;
    ++m_shown;
    m_shownField = m_state.chars[CharNumber::Link];
    m_picture = {};
}

void Interpreter::finishField()
{
    const OpenField field = m_openFields.back();
    m_openFields.pop_back();
    if (!isContent()) {
        return;
    }
    flush();
    if (m_shown == field.shownBefore) {
        showField(field);
    }
}

// What a field without a result shows is the field's all the same.
void Interpreter::showField(const OpenField &field)
{
    const QString instruction = field.instruction.left(longestFieldInstruction).simplified();
    const FieldText shown = fieldText(instruction, field.form);
    if (shown.text.isEmpty()) {
        keepUnshown(instruction);
        return;
    }
    const CharState around = m_state.chars;
    setChar(CharNumber::Link, internField(instruction, around[CharNumber::Link]));
    if (const int font = m_familyPlaces.value(shown.font.toLower(), 0); font > 0) {
        setChar(CharNumber::Font, font);
    }
    if (shown.halfPoints > 0) {
        setChar(CharNumber::Size, shown.halfPoints);
    }
    choosePage();
    for (const QChar c : shown.text) {
        m_characters.appendUnicode(c.unicode());
    }
    flush();
    m_state.chars = around;
}

// An index entry, a variable or a condition without a result shows nothing, but stays where it is: before the word that
// comes, or at the end of its paragraph.
void Interpreter::keepUnshown(const QString &instruction)
{
    if (m_detail == Detail::TextOnly || m_unshown.size() + instruction.size() >= longestUnshownFields) {
        return;
    }
    if (!m_unshown.isEmpty() && !instruction.isEmpty()) {
        m_unshown += QLatin1Char('\n');
    }
    m_unshown += instruction;
}

int Interpreter::internUnshown()
{
    if (m_unshown.isEmpty()) {
        return 0;
    }
    int &place = m_unshownPlaces[m_unshown];
    if (place == 0) {
        place = static_cast<int>(m_tables.unshown.size());
        m_tables.unshown.push_back(m_unshown);
    }
    m_unshown.clear();
    return place;
}

// The formatting of text and pictures up to the next blank: what stands before the word belongs to all of it, so that
// the word is not torn.
CharState Interpreter::charsOfWord()
{
    if (!m_unshown.isEmpty()) {
        m_unshownBefore = internUnshown();
    }
    CharState chars = m_state.chars;
    chars[CharNumber::Unshown] = m_unshownBefore;
    return chars;
}

void Interpreter::sendText(QStringView text)
{
    if (m_unshown.isEmpty() && m_unshownBefore == 0) {
        m_sink.text(text, m_state.chars);
        return;
    }
    const qint32 before = m_unshownBefore;
    const CharState chars = charsOfWord();
    // Where a word begins, a blank is one too.
    const qsizetype least = m_unshownBefore != before ? 1 : 0;
    const auto *blank = std::find_if(text.begin() + least, text.end(), [](QChar c) { return c.isSpace(); });
    const qsizetype length = blank - text.begin();
    if (length > 0) {
        m_sink.text(text.first(length), chars);
    }
    if (length < text.size()) {
        m_unshownBefore = 0;
        m_sink.text(text.sliced(length), m_state.chars);
    }
}

} // namespace rtf
