// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/LiveStretch.h"

#include "rtf/Pictures.h"

#include <QFont>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextOption>
#include <QTextTable>

#include <algorithm>
#include <map>

namespace
{

// Gathers formats, each once.
class FormatList
{
public:
    FormatList(const QTextDocument &document, LiveStretch &stretch)
        : m_document(document)
        , m_stretch(stretch)
    {
    }

    int chars(const QTextCharFormat &format, int index)
    {
        const auto [place, isNew] = m_chars.try_emplace(index, size());
        if (isNew) {
            add(format);
            const QString name = format.isImageFormat() ? format.toImageFormat().name() : QString();
            if (name.startsWith(rtf::pictureNames))
                m_stretch.pictures.push_back({name, rtf::pictureBytes(m_document, name)});
        }
        return place->second;
    }

    // Of a paragraph's mark, which has no number to go by.
    int mark(const QTextCharFormat &format)
    {
        if (!m_isMarkKnown || format != m_lastMark) {
            m_isMarkKnown = true;
            m_lastMark = format;
            m_lastMarkPlace = add(format);
        }
        return m_lastMarkPlace;
    }

    int blocks(const QTextBlock &block)
    {
        const auto [place, isNew] = m_blocks.try_emplace(block.blockFormatIndex(), size());
        if (isNew)
            add(block.blockFormat());
        return place->second;
    }

    // What list or cell it belongs to is another number in another document.
    int add(const QTextFormat &format)
    {
        m_stretch.formats.push_back(format.properties());
        m_stretch.formats.back().remove(QTextFormat::ObjectIndex);
        return size() - 1;
    }

private:
    int size() const { return static_cast<int>(m_stretch.formats.size()); }

    const QTextDocument &m_document;
    LiveStretch &m_stretch;
    std::map<int, int> m_chars;
    std::map<int, int> m_blocks;
    bool m_isMarkKnown = false;
    QTextCharFormat m_lastMark;
    int m_lastMarkPlace = 0;
};

// A paragraph of the list outside of those from the first to the last one.
int memberElsewhere(const QTextList &list, int first, int last)
{
    for (const int place : {0, list.count() - 1}) {
        const int number = list.item(place).blockNumber();
        if (number < first || number > last)
            return number;
    }
    return -1;
}

void addParagraph(LiveStretch &stretch, const QTextBlock &block, int from, int to, FormatList &formats)
{
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const int begin = std::max(from, fragment.position());
        const int end = std::min(to, fragment.position() + fragment.length());
        if (fragment.position() >= to)
            break;
        if (begin < end)
            stretch.runs.push_back({end - begin, formats.chars(fragment.charFormat(), fragment.charFormatIndex())});
    }
    stretch.paragraphs.push_back({formats.blocks(block), formats.mark(block.charFormat()), -1});
}

// The tables in the order in which they begin; false where there are other frames.
bool addTables(LiveStretch &stretch, const QTextFrame &within, FormatList &formats)
{
    std::vector<const QTextFrame *> waiting{&within};
    std::vector<const QTextTable *> tables;
    while (!waiting.empty()) {
        const QTextFrame *frame = waiting.back();
        waiting.pop_back();
        for (const QTextFrame *inner : frame->childFrames()) {
            const auto *table = qobject_cast<const QTextTable *>(inner);
            if (!table)
                return false;
            tables.push_back(table);
            waiting.push_back(inner);
        }
    }
    std::ranges::sort(tables, {}, [](const QTextTable *table) { return table->firstPosition(); });
    for (const QTextTable *table : tables) {
        LiveStretch::Table &added = stretch.tables.emplace_back();
        added.begin = table->firstPosition() - 1;
        added.rows = table->rows();
        added.columns = table->columns();
        added.format = formats.add(table->format());
        for (int row = 0; row < table->rows(); ++row) {
            for (int column = 0; column < table->columns(); ++column) {
                const QTextTableCell cell = table->cellAt(row, column);
                const bool isWide = cell.rowSpan() > 1 || cell.columnSpan() > 1;
                if (isWide && cell.row() == row && cell.column() == column)
                    added.cells.push_back({row, column, cell.rowSpan(), cell.columnSpan()});
            }
        }
    }
    return true;
}

// All but the tables.
LiveStretch stretchOf(const QTextDocument &document, int from, int removed, int added)
{
    LiveStretch stretch;
    stretch.from = from;
    stretch.removed = removed;
    const int to = from + added;
    QTextCursor cursor(const_cast<QTextDocument *>(&document));
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    stretch.text = cursor.selectedText();
    FormatList formats(document, stretch);
    const QTextBlock first = document.findBlock(from);
    const QTextBlock last = document.findBlock(to);
    std::vector<const QTextList *> lists;
    for (QTextBlock block = first; block.isValid(); block = block.next()) {
        addParagraph(stretch, block, from, to, formats);
        if (const QTextList *list = block.textList()) {
            const auto known = std::ranges::find(lists, list);
            stretch.paragraphs.back().list = static_cast<int>(known - lists.begin());
            if (known == lists.end()) {
                lists.push_back(list);
                stretch.lists.push_back(
                    {formats.add(list->format()), memberElsewhere(*list, first.blockNumber(), last.blockNumber())});
            }
        }
        if (block == last)
            break;
    }
    stretch.firstMark = formats.mark(document.firstBlock().charFormat());
    stretch.baseFont = BaseFont(document.defaultFont());
    stretch.tabStop = document.defaultTextOption().tabStopDistance();
    stretch.indent = document.indentWidth();
    stretch.characters = document.characterCount();
    stretch.paragraphCount = document.blockCount();
    return stretch;
}

} // namespace

BaseFont::BaseFont(const QFont &font)
    : family(font.family())
    , points(font.pointSizeF())
    , pixels(font.pixelSize())
    , weight(font.weight())
    , italic(font.italic())
    , underline(font.underline())
    , strikeOut(font.strikeOut())
{
}

QFont BaseFont::toFont() const
{
    QFont font(family);
    if (points > 0)
        font.setPointSizeF(points);
    else if (pixels > 0)
        font.setPixelSize(pixels);
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setItalic(italic);
    font.setUnderline(underline);
    font.setStrikeOut(strikeOut);
    return font;
}

bool hasFrameBounds(QStringView text)
{
    return std::ranges::any_of(text, [](QChar c) { return c == cellBegin || c == tableEnd; });
}

std::optional<LiveStretch> liveStretch(const QTextDocument &document, const EntryDocument::Changes &changes)
{
    ChangedStretch changed = changes.stretch;
    if (!changes.isKnown || changes.charactersBefore - changed.removed + changed.added != document.characterCount() ||
        changes.framesBefore != frameCount(document))
        return {};
    // The end of the last paragraph stays, whatever is said of it.
    const int beyond = std::max(0, changed.from + changed.added - (document.characterCount() - 1));
    changed.added -= beyond;
    changed.removed -= beyond;
    if (changed.added < 0 || changed.removed < 0)
        return {};
    LiveStretch stretch = stretchOf(document, changed.from, changed.removed, changed.added);
    if (stretch.text.size() != changed.added || hasFrameBounds(stretch.text))
        return {};
    return stretch;
}

std::optional<LiveStretch> wholeStretch(const QTextDocument &document)
{
    LiveStretch stretch = stretchOf(document, 0, 0, document.characterCount() - 1);
    FormatList formats(document, stretch);
    if (stretch.text.size() != document.characterCount() - 1 || !addTables(stretch, *document.rootFrame(), formats))
        return {};
    return stretch;
}
