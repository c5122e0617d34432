// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "EntryText.h"

#include "rtf/Units.h"

#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>

namespace
{

// The step of the program's own Indent command, in twips.
constexpr int indentStep = 300;

QTextCharFormat baseFormat(const clsFont &font)
{
    QTextCharFormat format;
    format.setFontFamilies({font.Name()});
    format.setFontPointSize(static_cast<qreal>(font.Size()) / clsFont::point);
    return format;
}

QTextBlockFormat blockFormat(const SourceParagraph &paragraph)
{
    QTextBlockFormat format;
    format.setAlignment(paragraph.alignment);
    if (!paragraph.bullet && paragraph.indent > 0)
        format.setLeftMargin(rtf::pixelsFromTwips(indentStep * paragraph.indent));
    QList<QTextOption::Tab> tabs;
    for (const int twips : paragraph.tabs)
        tabs.append(QTextOption::Tab(rtf::pixelsFromTwips(twips), QTextOption::LeftTab));
    if (!tabs.isEmpty())
        format.setTabPositions(tabs);
    return format;
}

// Neighbouring bullets of one depth are one list.
void addBullet(QTextCursor &cursor, const SourceParagraph &paragraph)
{
    const int depth = paragraph.indent + 1;
    QTextList *previous = cursor.block().previous().textList();
    if (previous && previous->format().indent() == depth) {
        previous->add(cursor.block());
        return;
    }
    QTextListFormat list;
    list.setStyle(QTextListFormat::ListDisc);
    list.setIndent(depth);
    cursor.createList(list);
}

} // namespace

void buildEntryText(const SourceEntry &entry, const clsFont &textFont, QTextDocument &document)
{
    const QTextCharFormat base = baseFormat(textFont);
    // Otherwise the document would name the font of the machine that it is made on.
    document.setDefaultFont(base.font());
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    bool first = true;
    for (const SourceParagraph &paragraph : entry.paragraphs) {
        if (first) {
            cursor.setBlockFormat(blockFormat(paragraph));
            cursor.setBlockCharFormat(base);
        } else {
            cursor.insertBlock(blockFormat(paragraph), base);
        }
        first = false;
        if (paragraph.bullet)
            addBullet(cursor, paragraph);
        for (const SourceRun &run : paragraph.runs) {
            QTextCharFormat format = base;
            format.merge(run.format);
            cursor.insertText(run.text, format);
        }
    }
    cursor.endEditBlock();
}
