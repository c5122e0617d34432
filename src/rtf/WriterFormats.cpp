// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Writer.h"

#include "rtf/FieldInstruction.h"
#include "rtf/TableFormats.h"

#include <QTextDocument>

#include <algorithm>
#include <array>

// Formatting in control words.
namespace rtf
{

namespace
{

enum class WordKind : quint8 {
    Flag,      // the word alone, or with 0
    Number,    // the word with the number
    Underline, // one word of several
    Script,
    Offset,
    Background, // two words, for readers that know one of them
};

// The order of CharWords::values.
enum class Slot : quint8 {
    Font,
    Size,
    Bold,
    Italic,
    Strike,
    DoubleStrike,
    Caps,
    SmallCaps,
    Hidden,
    Outline,
    Shadow,
    Emboss,
    Engrave,
    Deleted,
    Revised,
    Underline,
    UnderlineColor,
    Script,
    Offset,
    Foreground,
    Background,
    Spacing,
    Scale,
    Language,
    Count,
};

struct SlotRow {
    Slot slot;
    WordKind kind;
    const char *word;
    int plain;    // what it is in a text that says nothing; -1 where that is unknown
    quint32 flag; // CharFlag of a flag
};

constexpr SlotRow slotRows[] = {
    {Slot::Font, WordKind::Number, "\\f", -1, 0},
    {Slot::Size, WordKind::Number, "\\fs", -1, 0},
    {Slot::Bold, WordKind::Flag, "\\b", 0, Bold},
    {Slot::Italic, WordKind::Flag, "\\i", 0, Italic},
    {Slot::Strike, WordKind::Flag, "\\strike", 0, Strike},
    {Slot::DoubleStrike, WordKind::Number, "\\striked", 0, DoubleStrike},
    {Slot::Caps, WordKind::Flag, "\\caps", 0, Caps},
    {Slot::SmallCaps, WordKind::Flag, "\\scaps", 0, SmallCaps},
    {Slot::Hidden, WordKind::Flag, "\\v", 0, Hidden},
    {Slot::Outline, WordKind::Flag, "\\outl", 0, Outline},
    {Slot::Shadow, WordKind::Flag, "\\shad", 0, Shadow},
    {Slot::Emboss, WordKind::Flag, "\\embo", 0, Emboss},
    {Slot::Engrave, WordKind::Flag, "\\impr", 0, Engrave},
    {Slot::Deleted, WordKind::Flag, "\\deleted", 0, Deleted},
    {Slot::Revised, WordKind::Flag, "\\revised", 0, Revised},
    {Slot::Underline, WordKind::Underline, "", 0, 0},
    {Slot::UnderlineColor, WordKind::Number, "\\ulc", 0, 0},
    {Slot::Script, WordKind::Script, "", 0, 0},
    {Slot::Offset, WordKind::Offset, "", 0, 0},
    {Slot::Foreground, WordKind::Number, "\\cf", 0, 0},
    {Slot::Background, WordKind::Background, "", 0, 0},
    {Slot::Spacing, WordKind::Number, "\\expndtw", 0, 0},
    {Slot::Scale, WordKind::Number, "\\charscalex", 100, 0},
    {Slot::Language, WordKind::Number, "\\lang", 0, 0},
};
static_assert(std::size(slotRows) == std::size_t(Slot::Count));

constexpr const char *underlineWords[] = {
    "\\ulnone",     "\\ul",       "\\ulw",       "\\uldb",   "\\uld",      "\\uldash",
    "\\uldashd",    "\\uldashdd", "\\ulth",      "\\ulthd",  "\\ulthdash", "\\ulthdashd",
    "\\ulthdashdd", "\\ulldash",  "\\ulthldash", "\\ulwave", "\\ulhwave",  "\\ululdbwave",
};
static_assert(std::size(underlineWords) == std::size_t(UnderlineKind::Count));

constexpr const char *alignmentWords[] = {"", "\\qr", "\\qc", "\\qj"};

struct ParaWord {
    const char *word;
    int ParaLook::*number;
};

constexpr ParaWord paraWords[] = {
    {"\\li", &ParaLook::left},   {"\\ri", &ParaLook::right}, {"\\fi", &ParaLook::firstLine},
    {"\\sb", &ParaLook::before}, {"\\sa", &ParaLook::after}, {"\\sl", &ParaLook::lineSpacing},
};

struct ParaFlagWord {
    const char *word;
    ParaFlag flag;
};

constexpr ParaFlagWord paraFlagWords[] = {
    {"\\rtlpar", RightToLeft},        {"\\keep", KeepLines},       {"\\keepn", KeepNext},
    {"\\pagebb", PageBreakBefore},    {"\\sbauto1", BeforeIsAuto}, {"\\saauto1", AfterIsAuto},
    {"\\contextualspace", Contextual}};

constexpr const char *tabKindWords[] = {"", "\\tqr", "\\tqc", "\\tqdec"};
constexpr const char *tabLeaderWords[] = {"", "\\tldot", "\\tlmdot", "\\tlhyph", "\\tlul", "\\tlth", "\\tleq"};
constexpr const char *paraBorderWords[] = {"\\brdrt", "\\brdrl", "\\brdrb", "\\brdrr"};
constexpr const char *pictureKindWords[] = {
    "", "\\pngblip", "\\jpegblip", "\\dibitmap", "\\wbitmap", "\\wmetafile", "\\emfblip", "\\macpict", "\\pmmetafile"};

struct PictureWord {
    PictureNumber number;
    const char *word;
};

constexpr PictureWord pictureWords[] = {
    {PictureNumber::Width, "\\picw"},           {PictureNumber::Height, "\\pich"},
    {PictureNumber::GoalWidth, "\\picwgoal"},   {PictureNumber::GoalHeight, "\\pichgoal"},
    {PictureNumber::CropLeft, "\\piccropl"},    {PictureNumber::CropTop, "\\piccropt"},
    {PictureNumber::CropRight, "\\piccropr"},   {PictureNumber::CropBottom, "\\piccropb"},
    {PictureNumber::Bits, "\\wbmbitspixel"},    {PictureNumber::Planes, "\\wbmplanes"},
    {PictureNumber::Stride, "\\wbmwidthbytes"},
};

void writeSlot(Output &output, const SlotRow &row, int value)
{
    switch (row.kind) {
    case WordKind::Flag:
        if (value != 0) {
            output.word(row.word);
        } else {
            output.word(row.word, 0);
        }
        break;
    case WordKind::Number:
        output.word(row.word, value);
        break;
    case WordKind::Underline:
        output.word(underlineWords[value]);
        break;
    case WordKind::Script:
        output.word(value > 0 ? "\\super" : value < 0 ? "\\sub" : "\\nosupersub");
        break;
    case WordKind::Offset:
        output.word(value < 0 ? "\\dn" : "\\up", std::abs(value));
        break;
    case WordKind::Background:
        output.word("\\chcbpat", value);
        output.word("\\cb", value);
        break;
    }
}

} // namespace

const Writer::CharWords &Writer::charWords(int formatIndex)
{
    const auto known = m_charWords.constFind(formatIndex);
    if (known != m_charWords.constEnd()) {
        return *known;
    }
    return *m_charWords.emplace(formatIndex, wordsOf(m_formats.at(formatIndex).toCharFormat()));
}

// The formatting of an empty paragraph.
const Writer::CharWords &Writer::markWords(const QTextBlock &block, bool isFirstOfCell)
{
    const int index = block.charFormatIndex();
    if (!isFirstOfCell) {
        return charWords(index);
    }
    const auto known = m_cellMarkWords.constFind(index);
    return known != m_cellMarkWords.constEnd() ? *known
                                               : *m_cellMarkWords.emplace(index, wordsOf(cellMark(block.charFormat())));
}

Writer::CharWords Writer::wordsOf(const QTextCharFormat &format)
{
    const CharLook look = charLook(format, m_document.defaultFont());
    CharWords words;
    words.fields = look.outerFields.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    words.unshown = look.unshown;
    if (!look.instruction.isEmpty()) {
        words.fields << look.instruction;
    } else if (!look.target.isEmpty()) {
        words.fields << hyperlinkInstruction(look.target);
    }
    words.values.resize(std::size_t(Slot::Count));
    const auto set = [&words](Slot slot, int value) { words.values[std::size_t(slot)] = value; };
    for (const SlotRow &row : slotRows) {
        set(row.slot, row.flag != 0 && (look.flags & row.flag) != 0 ? 1 : 0);
    }
    set(Slot::Font, m_tables.font(look.family));
    set(Slot::Size, look.halfPoints);
    set(Slot::Underline, int(look.underline));
    set(Slot::UnderlineColor, m_tables.color(look.underlineColor));
    set(Slot::Script, look.script);
    set(Slot::Offset, look.offset);
    set(Slot::Foreground, m_tables.color(look.foreground));
    set(Slot::Background, m_tables.color(look.background));
    set(Slot::Spacing, look.spacing);
    set(Slot::Scale, look.scale);
    set(Slot::Language, look.language);
    words.isPictureFont = m_tables.isPictureFont(words.values[std::size_t(Slot::Font)]);
    return words;
}

void Writer::setChars(const CharWords &words)
{
    if (m_chars.empty()) {
        for (const SlotRow &row : slotRows) {
            m_chars.push_back(row.plain);
        }
    }
    if (m_chars == words.values) {
        return;
    }
    for (const SlotRow &row : slotRows) {
        const auto place = std::size_t(row.slot);
        if (m_chars[place] != words.values[place]) {
            writeSlot(m_body, row, words.values[place]);
        }
    }
    m_chars = words.values;
}

// Switches superscript off, where it is on. It must not reach over a paragraph's end: some word processors take what
// stands before one for the number of a note, and lose it.
bool Writer::endSuperscript()
{
    constexpr auto place = std::size_t(Slot::Script);
    if (m_chars.empty() || m_chars[place] <= 0) {
        return false;
    }
    m_chars[place] = 0;
    m_body.word("\\nosupersub");
    return true;
}

void Writer::writeParaLook(Output &output, const ParaLook &look, bool isInList)
{
    if (const int style = m_tables.style(look.styleName); style != 0) {
        output.word("\\s", style);
    }
    if (look.alignment != ParaAlignment::Left) {
        output.word(alignmentWords[std::size_t(look.alignment)]);
    }
    for (const ParaWord &row : paraWords) {
        // Some word processors take the other indents from the list where one of them is missing.
        const bool isListIndent = isInList && (row.number == &ParaLook::left || row.number == &ParaLook::right ||
                                               row.number == &ParaLook::firstLine);
        if (look.*row.number != 0 || isListIndent) {
            output.word(row.word, look.*row.number);
        }
    }
    if (look.lineSpacing != 0) {
        output.word("\\slmult", look.lineMultiple ? 1 : 0);
    }
    for (const ParaFlagWord &row : paraFlagWords) {
        if ((look.flags & row.flag) != 0) {
            output.word(row.word);
        }
    }
    if (look.outlineLevel < 9) {
        output.word("\\outlinelevel", look.outlineLevel);
    }
    if (look.shade) {
        output.word("\\cbpat", m_tables.color(look.shade));
    }
    for (std::size_t side = 0; side < look.borders.size(); ++side) {
        if (look.borders[side].style != BorderStyle::None) {
            output.word(paraBorderWords[side]);
            writeBorder(output, look.borders[side]);
        }
    }
    if (look.ruleWidth != 0) {
        output.word("\\qlrulew", look.ruleWidth);
    }
    for (const TabLook &tab : look.tabs) {
        if (tab.kind != TabKind::Left) {
            output.word(tabKindWords[std::size_t(tab.kind)]);
        }
        if (tab.leader != TabLeader::None) {
            output.word(tabLeaderWords[std::size_t(tab.leader)]);
        }
        output.word("\\tx", tab.position);
    }
}

void Writer::writeBorder(Output &output, const BorderLook &border)
{
    constexpr const char *styles[] = {"\\brdrnone",   "\\brdrs",      "\\brdrth",     "\\brdrdb",   "\\brdrdot",
                                      "\\brdrdash",   "\\brdrdashd",  "\\brdrdashdd", "\\brdrwavy", "\\brdrinset",
                                      "\\brdroutset", "\\brdremboss", "\\brdrengrave"};
    output.word(styles[std::size_t(border.style)]);
    output.word("\\brdrw", border.width);
    if (border.color != qRgb(0, 0, 0)) {
        output.word("\\brdrcf", m_tables.color(border.color));
    }
}

void Writer::writePicture(const Picture &picture)
{
    const bool needsWrap = picture.kind == PictureKind::Png || picture.kind == PictureKind::Jpeg;
    m_body.raw(needsWrap ? "{\\*\\shppict{\\pict" : "{\\pict");
    if (picture.kind == PictureKind::Png || picture.kind == PictureKind::Jpeg || picture.kind == PictureKind::Emf) {
        m_body.word(pictureKindWords[std::size_t(picture.kind)]);
    } else if (picture.kind != PictureKind::Unknown) {
        m_body.word(pictureKindWords[std::size_t(picture.kind)], picture[PictureNumber::KindNumber]);
    }
    for (const PictureWord &row : pictureWords) {
        if (picture[row.number] != 0) {
            m_body.word(row.word, picture[row.number]);
        }
    }
    m_body.lineEnd();
    m_body.hex(picture.data);
    m_body.raw(needsWrap ? "}}" : "}");
}

} // namespace rtf
