// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/State.h"
#include "rtf/Tables.h"

#include <QByteArrayView>

#include <span>
#include <string_view>

// The control words of RTF 1.9.1 that the reader understands, and what each of them does. A word that is not here is
// passed over; its text is not.
namespace rtf
{

// What a control word does with its number; the kind of argument stands behind each.
enum class Action : quint8 {
    Character,       // a UTF-16 unit
    CharFlag,        // CharFlag, off with the number 0
    CharNumber,      // CharNumber, set to the number or, without one, to the value
    CharSet,         // CharNumber, set to the value; 0 with the number 0
    Underline,       // UnderlineKind, none with the number 0
    Alignment,       // ParaAlignment
    ParaNumber,      // ParaNumber, set to the number or, without one, to the value
    ParaFlag,        // ParaFlag, set when the value is not 0; off with the number 0
    Destination,     // Destination
    CodePage,        // Windows number of the document's code page
    BorderKind,      // BorderStyle
    CellBorder,      // Side
    ParaBorder,      // Side
    CellFlag,        // CellFlag
    CellAlignment,   // 0 top, 1 centre, 2 bottom
    CellPadding,     // Side
    CellPaddingUnit, // Side
    RowAlignment,    // ParaAlignment
    RowPadding,      // Side
    RowPaddingUnit,  // Side
    RowSpacing,      // Side
    RowSpacingUnit,  // Side
    TabKind,         // TabKind
    TabLeader,       // TabLeader
    ColorPart,       // 0 red, 1 green, 2 blue
    LegacyKind,      // NumberKind
    PictureKind,     // PictureKind
    PictureNumber,   // PictureNumber
    RowWord,         // RowWord
    DefinitionWord,  // DefinitionWord
    Special,         // Special
};

// What the text of a group is.
enum class Destination : quint8 {
    Content,   // the text itself
    Container, // nothing, but groups in it may be text
    Skip,      // nothing, and nothing in it is anything
    FontTable,
    ColorTable,
    StyleSheet,
    ListTable,
    List,
    ListLevel,
    LevelText,
    OverrideTable,
    Override,
    OverrideLevel,
    LegacyList,
    LegacyBefore,
    LegacyAfter,
    Picture,
    Field,
    FieldInstruction,
    FieldResult,
    FormField,
    FormEntry,
    FormText,
    ShapeText,
    NestedRow,
};

// Words of a row, of the cell that it describes next, and of borders.
enum class RowWord : quint8 {
    BorderColor,
    BorderWidth,
    CellEdge,
    CellShade,
    CellWidth,
    CellWidthKind,
    OtherBorder,
    ParagraphBox,
    RowDefaults,
    RowGap,
    RowHeader,
    RowHeight,
    RowKeep,
    RowLeft,
    RowWidth,
    RowWidthKind,
};

// Words of what is defined before it is used: fonts, styles and lists.
enum class DefinitionWord : quint8 {
    BasedOn,
    FontCharset,
    FontCodePage,
    LegacyContinue,
    LegacyFont,
    LegacyIndent,
    LegacyStart,
    LevelKind,
    LevelStart,
    ListId,
    OverrideStart,
};

// Words that are like no other.
enum class Special : quint8 {
    AnsiCodePage,
    BarTab,
    Cell,
    CharDefaults,
    CharStyle,
    DefaultFont,
    DefaultTab,
    Expand,
    FallbackLength,
    FieldLock,
    Font,
    FormResult,
    FormStandard,
    Lower,
    NestedCell,
    NestedRow,
    OtherStyle,
    Page,
    Paragraph,
    ParagraphDefaults,
    Row,
    Section,
    SectionBreaks,
    SectionGoesOn,
    Style,
    Tab,
    Unicode,
};

struct ControlWord {
    std::string_view name;
    Action action;
    quint32 argument;
    qint32 value;
};

// The word of that name; null when the reader does not know it.
const ControlWord *findControlWord(QByteArrayView name);

// Every word that the reader knows, sorted by name.
std::span<const ControlWord> allControlWords();

} // namespace rtf
