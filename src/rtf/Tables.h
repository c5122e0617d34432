// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/State.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <deque>
#include <vector>

// What the formatting of an RTF text refers to by number: fonts, colours, lists and so on. The reader fills them while
// it reads; a sink may look up what an event's states name.
namespace rtf
{

struct Font {
    QString family;
    int codePage = 0;    // Windows number; 0 is the document's own
    bool symbol = false; // \fcharset2: the bytes are glyphs of a picture font
};

struct Color {
    bool isSet = false; // false: automatic
    quint8 parts[3] = {0, 0, 0};
};

enum class TabKind : quint8 { Left, Right, Center, Decimal };
enum class TabLeader : quint8 { None, Dots, MiddleDots, Hyphens, Line, ThickLine, EqualSigns };

// The stops of a paragraph as a chain: each names the one set before it.
struct TabStop {
    qint32 previous = 0; // place in Tables::tabs; 0 none
    qint32 position = 0; // twips
    TabKind kind = TabKind::Left;
    TabLeader leader = TabLeader::None;
    quint8 length = 0; // stops in the chain up to this one
};

// How a list numbers; the values are those of \levelnfc.
enum class NumberKind : quint8 {
    Decimal = 0,
    UpperRoman = 1,
    LowerRoman = 2,
    UpperLetter = 3,
    LowerLetter = 4,
    Bullet = 23,
    None = 255,
};

struct ListLevel {
    NumberKind kind = NumberKind::Decimal;
    qint32 start = 1;
    qint32 left = 0; // twips
    qint32 firstLine = 0;
    qint32 font = 0; // place in Tables::fonts
    QString text;    // the label; the characters 0 to 8 stand for the number of that level
};

struct List {
    qint32 id = 0;
    std::vector<ListLevel> levels;
};

// A list as paragraphs name it (\ls): one of the lists, and where its numbers start instead.
struct ListOverride {
    qint32 list = -1; // place in Tables::lists; -1 none
    QHash<int, qint32> starts;
};

// A list of the older kind (\pn), which each paragraph describes anew.
struct LegacyList {
    NumberKind kind = NumberKind::Bullet;
    qint32 start = 1;
    qint32 indent = 0; // twips
    qint32 font = 0;   // place in Tables::fonts
    QString before;
    QString after;
    bool operator==(const LegacyList &) const = default;

    friend std::size_t qHash(const LegacyList &list, std::size_t seed) noexcept
    {
        return qHashMulti(seed, int(list.kind), list.start, list.indent, list.font, list.before, list.after);
    }
};

enum class BorderStyle : qint16 {
    None,
    Single,
    Thick,
    Double,
    Dotted,
    Dashed,
    DashDot,
    DashDotDot,
    Wavy,
    Inset,
    Outset,
    Emboss,
    Engrave
};

enum class PictureKind : quint8 { Unknown, Png, Jpeg, Dib, Bitmap, Wmf, Emf, MacPict, Os2 };

enum class PictureNumber : quint8 {
    KindNumber, // the number behind the kind's word: the mapping mode of \wmetafile
    Width,      // as the picture's own format counts
    Height,
    GoalWidth, // twips
    GoalHeight,
    ScaleX, // percent
    ScaleY,
    CropLeft, // twips
    CropTop,
    CropRight,
    CropBottom,
    Bits, // of \wbitmap
    Planes,
    Stride,
    Count,
};

struct Picture {
    PictureKind kind = PictureKind::Unknown;
    std::array<qint32, std::size_t(PictureNumber::Count)> numbers{};
    QByteArray data;

    qint32 &operator[](PictureNumber number) { return numbers[std::size_t(number)]; }

    qint32 operator[](PictureNumber number) const { return numbers[std::size_t(number)]; }
};

// A field: its instruction as it stands, and the address when it or one around it is a hyperlink. Nothing ever follows
// the address.
struct Field {
    QString instruction;
    QString target;
    QString outer;     // the instructions of the fields around it, outermost first, one a line
    qint32 around = 0; // place of the field around; 0 none
    int depth = 0;     // fields, this one and those around it

    // The same with its own.
    QString all() const { return outer.isEmpty() ? instruction : outer + QLatin1Char('\n') + instruction; }
};

struct Tables {
    // Counts the times that a number already in use came to mean something else, as the default font does when a second
    // font table names another one: what was derived from the tables before is then out of date.
    quint32 revision = 0;
    std::vector<Font> fonts;   // 0 is the default font, its family empty when the text names none
    std::vector<Color> colors; // in the order of \colortbl
    QHash<int, QString> styleNames;
    std::vector<TabStop> tabs{1};
    std::vector<Borders> borders{1};
    std::vector<List> lists;
    QHash<int, ListOverride> listOverrides;
    std::deque<LegacyList> legacyLists{1};
    std::vector<Field> fields{1};
    QStringList unshown{QString()}; // instructions of fields that show nothing, those of one place one a line
    int defaultTab = 720;           // twips
};

} // namespace rtf
