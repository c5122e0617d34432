// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Limits.h"
#include "rtf/State.h"
#include "rtf/Tables.h"

#include <QFont>
#include <QRgb>
#include <QString>
#include <QTextFormat>

#include <optional>
#include <vector>

// Formatting free of numbers into tables: what stands between RTF and the formats of a text document. For every look
// that the reader makes, the look of its format is that look again; this is why texts do not change by being stored.
namespace rtf
{

using OptionalColor = std::optional<QRgb>; // none: automatic

struct CharLook {
    QString family;
    int halfPoints = 24;
    quint32 flags = 0; // CharFlag
    OptionalColor foreground;
    OptionalColor background;
    OptionalColor underlineColor;
    UnderlineKind underline = UnderlineKind::None;
    int script = 0;
    int offset = 0;
    int language = 0;
    int spacing = 0;
    int scale = 100;
    QString target;      // of a hyperlink
    QString instruction; // of a field, where the target does not say it all
    QString outerFields; // the instructions of the fields around it, outermost first, one a line
    QString unshown;     // the same of fields before its word that show nothing

    bool operator==(const CharLook &) const = default;
};

struct TabLook {
    int position = 0;
    TabKind kind = TabKind::Left;
    TabLeader leader = TabLeader::None;
    bool operator==(const TabLook &) const = default;
};

struct BorderLook {
    int width = 0; // twips
    BorderStyle style = BorderStyle::None;
    QRgb color = 0xFF000000;
    bool operator==(const BorderLook &) const = default;
};

using BorderLooks = std::array<BorderLook, std::size_t(Side::Count)>;

struct ParaLook {
    ParaAlignment alignment = ParaAlignment::Left;
    int left = 0;
    int right = 0;
    int firstLine = 0;
    int before = 0;
    int after = 0;
    int lineSpacing = 0;
    bool lineMultiple = false;
    quint32 flags = 0; // ParaFlag: right to left, keep, keep with next, page break
    int outlineLevel = 9;
    OptionalColor shade;
    QString styleName;
    std::vector<TabLook> tabs;
    BorderLooks borders;
    int ruleWidth = 0;  // ParaNumber::RuleWidth, where it is a rule
    QString openFields; // the instructions of the fields that go on behind it
    QString lastFields; // the same of fields at its end that show nothing

    bool operator==(const ParaLook &) const = default;
};

struct ListLook {
    int group = 0; // levels of one list share it; 0 none
    int level = 0;
    int kind = 0; // \levelnfc
    int start = 1;
    QString label; // the characters 0 to 8 are the levels' numbers
    QString font;  // of a bullet; empty for the paragraph's own

    bool operator==(const ListLook &) const = default;
};

// What a border without a stated width has, and a list's paragraph without a stated indent of its first line; twips.
constexpr int defaultBorderWidth = 15;
constexpr int defaultHang = 360;

BorderLook borderLook(const Border &border, const Tables &tables);
CharLook charLook(const CharState &state, const Tables &tables);
ParaLook paraLook(const ParaState &state, const Tables &tables);

QTextCharFormat charFormat(const CharLook &look);

// The families and sizes that a format leaves open are those of the font.
CharLook charLook(const QTextCharFormat &format, const QFont &defaultFont);

// A list's paragraph hangs its label by itself: its first line is not shown to the left of the others.
QTextBlockFormat blockFormat(const ParaLook &look, bool isInList);

// The indent is what lists and block indents add to the margin, in pixels.
// Shows a line below an empty paragraph that has a border there and nowhere else; no other border is shown.
void setRule(QTextBlockFormat &format, int width);

ParaLook paraLook(const QTextBlockFormat &format, bool isInList, qreal indent);

// Whether a paragraph is to be on the page of the one behind it (\keepn).
bool staysWithNext(const QTextBlockFormat &format);
void setStaysWithNext(QTextBlockFormat &format);

QTextListFormat listFormat(const ListLook &look);
ListLook listLook(const QTextListFormat &format);

} // namespace rtf
