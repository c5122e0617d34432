// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Looks.h"
#include "rtf/Output.h"

#include <QHash>
#include <QString>

#include <vector>

class QTextList;

namespace rtf
{

// The tables at the head of an RTF text, filled in the order in which the body first uses each thing.
class WriterTables
{
public:
    int font(const QString &family);

    // Whether the bytes of a font are no letters (\fcharset2).
    bool isPictureFont(int font) const { return m_pictureFonts[std::size_t(font)]; }

    // 0 for the automatic colour.
    int color(const OptionalColor &color);

    // 0 for no style.
    int style(const QString &name);

    struct ListPlace {
        int number = 0; // \ls
        int level = 0;
        QString label; // as it shows before this paragraph
        int font = -1; // of the label; -1 for the paragraph's own
    };

    // The place of a list's next paragraph. Called once for every paragraph of a list, in order: lists of one group
    // stay together as far as a reader would number them the same.
    ListPlace list(const QTextList &list, const ParaLook &paragraph);

    void write(Output &output) const;

private:
    struct Level {
        ListLook look;
        ParaLook paragraph;
        const QTextList *list = nullptr; // that paragraphs of this level go on with; null where one may begin
        int count = 0;                   // the number of the last paragraph
        bool isUsed = false;
    };

    struct Group {
        std::vector<Level> levels;
    };

    bool fits(const Group &group, const ListLook &look, const QTextList &list) const;
    QString label(const Group &group, const ListLook &look) const;
    void writeLists(Output &output) const;
    void writeLevel(Output &output, const Level &level, int number) const;

    QHash<QString, int> m_fontPlaces;
    std::vector<QString> m_fonts;
    std::vector<bool> m_pictureFonts;
    QHash<QRgb, int> m_colorPlaces;
    std::vector<QRgb> m_colors;
    QHash<QString, int> m_stylePlaces;
    std::vector<QString> m_styles;
    std::vector<Group> m_groups;
    QHash<int, int> m_groupPlaces; // by the group number of the lists
    QHash<const QTextList *, int> m_listPlaces;
};

} // namespace rtf
