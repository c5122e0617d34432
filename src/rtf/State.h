// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <array>
#include <compare>
#include <cstddef>
#include <vector>

// The formatting that is in force at a place of an RTF text: plain values, copied when a group opens and put back when
// it closes. Numbers are kept as RTF counts them (half points, twips); those that name a thing are its place in Tables.
namespace rtf
{

enum class CharNumber : quint8 {
    Font,           // place in Tables::fonts; 0 is the default font
    Size,           // half points
    Foreground,     // place in Tables::colors; -1 and colours without value are automatic
    Background,     // the same, of \cb
    Pattern,        // the same, of \chcbpat
    Highlight,      // the same, of \highlight
    Underline,      // UnderlineKind
    UnderlineColor, // place in Tables::colors
    Script,         // 1 superscript, -1 subscript
    Offset,         // half points above the base line
    Language,       // Windows language number; 0 none
    Spacing,        // twips between characters
    Scale,          // width of the characters in percent
    Link,           // place in Tables::fields; 0 none
    Unshown,        // place in Tables::unshown of the fields before it; 0 none
    Count,
};

enum CharFlag : quint32 {
    Bold = 1u << 0,
    Italic = 1u << 1,
    Strike = 1u << 2,
    DoubleStrike = 1u << 3,
    Caps = 1u << 4,
    SmallCaps = 1u << 5,
    Hidden = 1u << 6,
    Outline = 1u << 7,
    Shadow = 1u << 8,
    Emboss = 1u << 9,
    Engrave = 1u << 10,
    Deleted = 1u << 11, // by a change that was tracked
    Revised = 1u << 12, // added by one
};

// The underlines of RTF; the order is that of the control words in the writer's table.
enum class UnderlineKind : qint16 {
    None,
    Single,
    Words,
    Double,
    Dotted,
    Dash,
    DashDot,
    DashDotDot,
    Thick,
    ThickDotted,
    ThickDash,
    ThickDashDot,
    ThickDashDotDot,
    LongDash,
    ThickLongDash,
    Wave,
    HeavyWave,
    DoubleWave,
    Count,
};

struct CharState {
    // First, because it is what states differ in most often.
    quint32 flags = 0;
    std::array<qint32, std::size_t(CharNumber::Count)> numbers{};

    qint32 &operator[](CharNumber number) { return numbers[std::size_t(number)]; }

    qint32 operator[](CharNumber number) const { return numbers[std::size_t(number)]; }

    bool has(CharFlag flag) const { return (flags & flag) != 0; }

    bool operator==(const CharState &) const = default;

    // What \plain sets: the default font, 12 points, everything else off.
    static CharState plain();
};

enum class ParaNumber : quint8 {
    Alignment, // ParaAlignment
    Left,      // twips, as are the next four
    Right,
    FirstLine,
    Before,
    After,
    LineSpacing,  // \sl
    LineMultiple, // \slmult
    Style,        // the number of the paragraph style
    OutlineLevel, // 0 to 8; 9 is body text
    ListNumber,   // \ls; 0 none, listZero \ls0 where that is a list
    ListLevel,    // 0 to 8
    LegacyList,   // place in Tables::legacyLists; 0 none
    Tabs,         // place in Tables::tabs; 0 none
    Border,       // place in Tables::borders; 0 none
    Shade,        // place in Tables::colors; -1 none
    TableDepth,   // \itap
    Field,        // place in Tables::fields of the field that goes on behind the paragraph; 0 none
    Unshown,      // place in Tables::unshown of the fields at its end; 0 none
    RuleWidth,    // \qlrulew; of a rule: twips, or hundredths of a percent below zero; 0 all
    Count,
};

enum ParaFlag : quint32 {
    InTable = 1u << 0,
    RightToLeft = 1u << 1,
    KeepLines = 1u << 2,
    KeepNext = 1u << 3,
    PageBreakBefore = 1u << 4,
    LeftIsSet = 1u << 5,      // \li since \pard; if not, a list's own indent holds
    FirstLineIsSet = 1u << 6, // the same of \fi
    TabsAreStyles = 1u << 7,  // the stops are those of the style, none of the paragraph's own
    BeforeIsAuto = 1u << 8,   // the space is that of a web page's paragraphs
    AfterIsAuto = 1u << 9,
    Contextual = 1u << 10, // no space between paragraphs of one style
};

enum class ParaAlignment : qint16 { Left, Right, Center, Justify };

constexpr qint32 listZero = 0x7FFFFFFF;

struct ParaState {
    std::array<qint32, std::size_t(ParaNumber::Count)> numbers{};
    quint32 flags = 0;

    qint32 &operator[](ParaNumber number) { return numbers[std::size_t(number)]; }

    qint32 operator[](ParaNumber number) const { return numbers[std::size_t(number)]; }

    bool has(ParaFlag flag) const { return (flags & flag) != 0; }

    bool operator==(const ParaState &) const = default;

    // What \pard sets.
    static ParaState plain();
};

enum CellFlag : quint16 {
    MergeFirst = 1u << 0,
    MergeNext = 1u << 1, // joined to the cell at its left
    MergeTop = 1u << 2,
    MergeDown = 1u << 3, // joined to the cell above
};

struct Border {
    qint16 width = 0; // twips; 0 none
    qint16 style = 0; // BorderStyle
    qint16 color = 0; // place in Tables::colors
    // NOLINTNEXTLINE(modernize-use-nullptr): it takes the 0 that the compiler compares with for a pointer.
    auto operator<=>(const Border &) const = default;
};

enum class Side : quint8 { Top, Left, Bottom, Right, Count };
using Borders = std::array<Border, std::size_t(Side::Count)>;

enum class WidthKind : qint16 {
    Edges,   // what lies between the edges
    Content, // as wide as the content needs
    Percent, // fiftieths of a percent
    Twips,
};

// What a table or a cell would like to be wide (\trftsWidth and \trwWidth, \clftsWidth and \clwWidth).
struct PreferredWidth {
    WidthKind kind = WidthKind::Edges;
    qint32 number = 0;
};

constexpr qint32 wholeWidth = 5000; // a hundred percent

// The room between the edges of a cell and its text, or around it, where it is said; the other sides have that of the
// row, or of the table.
struct Padding {
    struct Room {
        qint32 twips = -1;   // -1 not said
        bool isVoid = false; // it has no unit, and so counts for nothing

        bool isSaid() const { return twips >= 0 && !isVoid; }
    };

    std::array<Room, std::size_t(Side::Count)> sides{};
};

struct CellState {
    qint32 right = 0; // twips from the left margin
    quint16 flags = 0;
    qint16 shade = -1;        // place in Tables::colors
    qint16 verticalAlign = 0; // 0 top, 1 centre, 2 bottom
    Borders borders{};
    PreferredWidth width;
    Padding padding;
};

struct RowState {
    qint32 left = 0;      // twips
    qint32 gap = 0;       // half the space between the texts of two cells, twips
    qint16 alignment = 0; // ParaAlignment
    bool header = false;
    bool keep = false; // on one page
    qint32 height = 0; // twips; at least so high, a negative one exactly, 0 as its text needs
    PreferredWidth width;
    Padding padding;
    Padding spacing; // each side's share of the room between two cells
    std::vector<CellState> cells;
};

} // namespace rtf
