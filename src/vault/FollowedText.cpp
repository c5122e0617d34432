// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/FollowedText.h"

#include "model/EntryText.h"
#include "model/StoredText.h"
#include "rtf/EditBlock.h"
#include "rtf/Pictures.h"
#include "rtf/Rtf.h"

#include <QFont>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextOption>
#include <QTextTable>

#include <algorithm>

namespace
{

QTextFormat formatOf(const LiveStretch::Properties &properties, QTextFormat::FormatType type)
{
    QTextFormat format(type);
    for (auto property = properties.begin(); property != properties.end(); ++property)
        format.setProperty(property.key(), property.value());
    return format;
}

// Gives each format once: a document takes one that it knows by its address.
class Formats
{
public:
    explicit Formats(const LiveStretch &stretch)
        : m_stretch(stretch)
        , m_made(stretch.formats.size())
    {
    }

    QTextCharFormat chars(int place) { return at(place, QTextFormat::CharFormat).toCharFormat(); }

    QTextBlockFormat block(int place) { return at(place, QTextFormat::BlockFormat).toBlockFormat(); }

    QTextTableFormat table(int place) { return at(place, QTextFormat::FrameFormat).toTableFormat(); }

    QTextListFormat list(int place) { return at(place, QTextFormat::ListFormat).toListFormat(); }

private:
    const QTextFormat &at(int place, QTextFormat::FormatType type)
    {
        QTextFormat &made = m_made[static_cast<size_t>(place)];
        if (!made.isValid())
            made = formatOf(m_stretch.formats[static_cast<size_t>(place)], type);
        return made;
    }

    const LiveStretch &m_stretch;
    std::vector<QTextFormat> m_made;
};

// Makes the tables of a text that is put together from its beginning, and says where each cell's content goes.
class TablesMade
{
public:
    TablesMade(const LiveStretch &stretch, Formats &formats)
        : m_stretch(stretch)
        , m_formats(formats)
    {
    }

    // The next cell of the table that is open, or the first one of a table that begins there.
    bool beginCell(int at, QTextCursor &cursor)
    {
        if (m_next < m_stretch.tables.size() && m_stretch.tables[m_next].begin == at)
            return begin(m_stretch.tables[m_next++], cursor);
        if (m_open.empty())
            return false;
        auto &[table, row, column] = m_open.back();
        do {
            if (++column == table->columns()) {
                column = 0;
                ++row;
            }
            if (row == table->rows())
                return false;
        } while (table->cellAt(row, column).row() != row || table->cellAt(row, column).column() != column);
        cursor = table->cellAt(row, column).firstCursorPosition();
        return true;
    }

    bool end(QTextCursor &cursor)
    {
        if (m_open.empty())
            return false;
        cursor.setPosition(m_open.back().table->lastPosition() + 1);
        m_open.pop_back();
        return true;
    }

private:
    struct Open {
        QTextTable *table;
        int row = 0;
        int column = 0;
    };

    bool begin(const LiveStretch::Table &wanted, QTextCursor &cursor)
    {
        QTextTable *table = cursor.insertTable(wanted.rows, wanted.columns, m_formats.table(wanted.format));
        if (!table)
            return false;
        for (const LiveStretch::Cell &cell : wanted.cells)
            table->mergeCells(cell.row, cell.column, cell.rows, cell.columns);
        m_open.push_back({table});
        cursor = table->cellAt(0, 0).firstCursorPosition();
        return true;
    }

    const LiveStretch &m_stretch;
    Formats &m_formats;
    std::vector<Open> m_open;
    size_t m_next = 0;
};

} // namespace

FollowedText::FollowedText(const QByteArray &storedText, const BaseFont &baseFont)
    : m_baseFont(baseFont)
{
    m_document.setUndoRedoEnabled(false);
    m_document.setDefaultFont(baseFont.toFont());
    readEntryText(soundText(storedText).value_or(QByteArray()), m_document);
}

void FollowedText::takeBaseFont(const BaseFont &font)
{
    if (m_baseFont == font)
        return;
    m_baseFont = font;
    m_document.setDefaultFont(font.toFont());
}

bool FollowedText::agreesWith(const LiveStretch &stretch) const
{
    return m_document.characterCount() == stretch.characters && m_document.blockCount() == stretch.paragraphCount;
}

bool FollowedText::take(const LiveStretch &stretch)
{
    takeBaseFont(stretch.baseFont);
    QTextOption option = m_document.defaultTextOption();
    option.setTabStopDistance(stretch.tabStop);
    m_document.setDefaultTextOption(option);
    m_document.setIndentWidth(stretch.indent);
    for (const LiveStretch::Picture &picture : stretch.pictures)
        rtf::addPictureBytes(m_document, picture.name, picture.bytes);
    return replace(stretch) && agreesWith(stretch);
}

bool FollowedText::replace(const LiveStretch &stretch)
{
    const int end = stretch.from + stretch.removed;
    if (stretch.from < 0 || end >= m_document.characterCount() || stretch.paragraphs.empty())
        return false;
    QTextCursor cursor(&m_document);
    const EditBlock edit(cursor);
    cursor.setPosition(stretch.from);
    const int firstParagraph = cursor.blockNumber();
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    const QString gone = cursor.selectedText();
    if (gone.size() != stretch.removed || hasFrameBounds(gone))
        return false;
    cursor.removeSelectedText();
    return insert(stretch, cursor) && formatParagraphs(stretch, firstParagraph) &&
           takeIntoLists(stretch, firstParagraph);
}

bool FollowedText::insert(const LiveStretch &stretch, QTextCursor &cursor)
{
    Formats formats(stretch);
    TablesMade tables(stretch, formats);
    size_t run = 0;
    int at = 0;
    const auto size = static_cast<int>(stretch.text.size());
    while (at < size) {
        const char16_t c = stretch.text[at].unicode();
        if (c == QChar::ParagraphSeparator) {
            cursor.insertBlock();
            ++at;
        } else if (c == cellBegin || c == tableEnd) {
            if (!(c == cellBegin ? tables.beginCell(at, cursor) : tables.end(cursor)))
                return false;
            ++at;
        } else {
            if (run >= stretch.runs.size())
                return false;
            const auto &[length, format] = stretch.runs[run++];
            cursor.insertText(stretch.text.mid(at, length), formats.chars(format));
            at += length;
        }
    }
    return true;
}

bool FollowedText::formatParagraphs(const LiveStretch &stretch, int firstParagraph)
{
    Formats formats(stretch);
    QTextBlock block = m_document.findBlockByNumber(firstParagraph);
    for (const LiveStretch::Paragraph &paragraph : stretch.paragraphs) {
        if (!block.isValid())
            return false;
        QTextCursor cursor(block);
        cursor.setBlockFormat(formats.block(paragraph.format));
        cursor.setBlockCharFormat(formats.chars(paragraph.mark));
        block = block.next();
    }
    QTextCursor(m_document.firstBlock()).setBlockCharFormat(formats.chars(stretch.firstMark));
    return true;
}

bool FollowedText::takeIntoLists(const LiveStretch &stretch, int firstParagraph)
{
    Formats formats(stretch);
    std::vector<QTextList *> lists(stretch.lists.size());
    QTextBlock block = m_document.findBlockByNumber(firstParagraph);
    for (const LiveStretch::Paragraph &paragraph : stretch.paragraphs) {
        if (!block.isValid())
            return false;
        if (paragraph.list >= 0) {
            QTextCursor cursor(block);
            const LiveStretch::List &wanted = stretch.lists[static_cast<size_t>(paragraph.list)];
            QTextList *&list = lists[static_cast<size_t>(paragraph.list)];
            if (!list)
                list = wanted.elsewhere >= 0 ? m_document.findBlockByNumber(wanted.elsewhere).textList()
                                             : cursor.createList(formats.list(wanted.format));
            if (!list)
                return false;
            QTextBlockFormat format = formats.block(paragraph.format);
            format.setObjectIndex(list->objectIndex());
            cursor.setBlockFormat(format);
        }
        block = block.next();
    }
    return true;
}

QByteArray FollowedText::toRtf() const
{
    return rtf::write(m_document);
}
