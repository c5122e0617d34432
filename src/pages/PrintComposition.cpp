// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PrintComposition.h"

#include "document/Document.h"
#include "model/ShownLabel.h"
#include "model/ShownText.h"
#include "model/StoredText.h"
#include "rtf/Looks.h"
#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <QSet>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextOption>
#include <QTextTable>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

// By depth; what lies deeper has the last size.
constexpr qreal headingSizes[] = {20, 17, 15, 13.5, 12, 11, 10};

// Lengths of a text document, 96 to the inch.
constexpr qreal spaceAboveHeading = 16;
constexpr qreal spaceBelowHeading = 4;
constexpr qreal spaceBetweenHeadings = 6;
constexpr qreal tabDistance = 48;

// The text's own paragraphs may be headings too, so a property of our own tells which are labels.
constexpr int headingProperty = QTextFormat::UserProperty + 0x700;

// An empty paragraph at the end: the last one when nothing is in it, or a new one.
QTextCursor freeParagraph(QTextDocument &document, bool isLastFree)
{
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    if (isLastFree) {
        cursor.setBlockFormat(QTextBlockFormat());
        cursor.setBlockCharFormat(QTextCharFormat());
    } else {
        cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    }
    return cursor;
}

// How many characters a piece may become longer than it should.
constexpr qsizetype mostMore = 20000;

// Whether a piece may end here: what stays with the next paragraph does not end one, within bounds.
bool isLongEnough(const QTextDocument &document, bool isLastFree, qsizetype characters)
{
    const qsizetype length = document.characterCount();
    if (length <= characters)
        return false;
    const QTextBlock last = isLastFree ? document.lastBlock().previous() : document.lastBlock();
    return !last.isValid() || !rtf::staysWithNext(last.blockFormat()) || length - characters > mostMore;
}

// As lines of ordinary text; a device that has more to a line or less differs by a small factor.
constexpr int charactersALine = 80;

int linesOf(const QTextBlock &block)
{
    return 1 + block.length() / charactersALine;
}

qsizetype linesFrom(QTextBlock block)
{
    qsizetype lines = 0;
    for (; block.isValid(); block = block.next())
        lines += linesOf(block);
    return lines;
}

bool isInTable(const QTextBlock &block)
{
    return QTextCursor(block).currentTable();
}

// Only between two paragraphs of the text itself: a table is laid out as a whole, and an empty paragraph behind it
// stands where the table lets it.
bool canBeginPiece(const QTextBlock &block)
{
    return !isInTable(block) && !isInTable(block.previous());
}

// How many paragraphs longer a piece of a text may become to keep those together that stay with the next.
constexpr int mostKeptTogether = 50;

// The tables stay, for the layout passes over paragraphs only, but take no room.
void flatten(QTextTable &table)
{
    QTextTableFormat format = table.format();
    format.setBorder(0);
    format.setCellPadding(0);
    format.setCellSpacing(0);
    format.setMargin(0);
    format.setHeaderRowCount(0);
    format.setHeight(QTextLength());
    format.clearProperty(QTextFormat::PageBreakPolicy);
    table.setFormat(format);
    for (int row = 0; row < table.rows(); ++row) {
        for (int column = 0; column < table.columns(); ++column)
            table.cellAt(row, column).setFormat(QTextTableCellFormat());
    }
}

// The layout heeds what a paragraph that it passes over wants of the one behind it.
void releaseNext(const QTextBlock &block, bool isLast)
{
    QTextBlockFormat format = block.blockFormat();
    if (!format.hasProperty(QTextFormat::PageBreakPolicy) && !(isLast && format.bottomMargin() > 0))
        return;
    format.clearProperty(QTextFormat::PageBreakPolicy);
    if (isLast)
        format.clearProperty(QTextFormat::BlockBottomMargin);
    QTextCursor(block).setBlockFormat(format);
}

// Hides paragraphs, from one on to before another, or to the last when there is none.
void hide(QTextBlock block, const QTextBlock &end)
{
    const bool hasTables = !block.document()->rootFrame()->childFrames().isEmpty();
    QSet<const QTextTable *> flat;
    for (; block.isValid() && block != end; block = block.next()) {
        block.setVisible(false);
        releaseNext(block, block.next() == end);
        QTextTable *table = hasTables ? QTextCursor(block).currentTable() : nullptr;
        if (table && !flat.contains(table)) {
            flatten(*table);
            flat.insert(table);
        }
    }
}

// Of a text that begins with a paragraph, shows only what belongs to a piece: what lies behind so many paragraphs, up
// to a number of lines. Behind how many paragraphs the next piece begins; 0 when the text ends in this one.
int showPiece(const QTextBlock &begin, int paragraphs, qsizetype mostLines)
{
    QTextBlock block = begin.document()->findBlockByNumber(begin.blockNumber() + paragraphs);
    if (paragraphs > 0)
        hide(begin, block);
    qsizetype lines = 0;
    int keptTogether = 0;
    for (; block.isValid(); block = block.next()) {
        if (lines >= mostLines && canBeginPiece(block)) {
            if (!rtf::staysWithNext(block.previous().blockFormat()) || ++keptTogether > mostKeptTogether) {
                hide(block, QTextBlock());
                return block.blockNumber() - begin.blockNumber();
            }
        }
        lines += linesOf(block);
    }
    return 0;
}

// Takes the empty paragraph at the end away; the one before stays as it is.
void removeLastParagraph(QTextDocument &document)
{
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    const QTextBlock before = cursor.block().previous();
    if (!before.isValid())
        return;
    const QTextBlockFormat format = before.blockFormat();
    const QTextCharFormat mark = before.charFormat();
    cursor.deletePreviousChar();
    cursor.setBlockFormat(format);
    cursor.setBlockCharFormat(mark);
}

} // namespace

PrintComposition::PrintComposition(const PrintExtent &extent, const QFont &base)
    : m_tree(extent.document->tree)
    , m_top(extent.top)
    , m_bDescendants(extent.bDescendants)
    , m_base(base)
{
}

qreal PrintComposition::headingSize(int depth)
{
    return headingSizes[std::min(std::size_t(depth), std::size(headingSizes) - 1)];
}

bool PrintComposition::isHeading(const QTextBlock &block)
{
    return block.blockFormat().boolProperty(headingProperty);
}

PrintPlace PrintComposition::compose(QTextDocument &document, const PrintPlace &from, const PieceLength &length,
                                     Damage damage) const
{
    document.setUndoRedoEnabled(false);
    document.setDefaultFont(m_base);
    document.setDocumentMargin(0);
    QTextOption option = document.defaultTextOption();
    option.setTabStopDistance(tabDistance);
    document.setDefaultTextOption(option);

    QTextCursor whole(&document);
    whole.beginEditBlock();
    bool isLastFree = true;
    PrintPlace place = from;
    while (place.entry && !isLongEnough(document, isLastFree, length.characters)) {
        if (place.paragraph == 0 && !place.entry->label().isEmpty()) {
            QTextCursor cursor = freeParagraph(document, isLastFree);
            addHeading(cursor, place.entry, place.entry == m_top);
            isLastFree = false;
        }
        QTextCursor cursor = freeParagraph(document, isLastFree);
        const int begin = cursor.position();
        addText(cursor, place.entry, damage);
        cursor.movePosition(QTextCursor::End);
        isLastFree = cursor.position() == begin && !cursor.currentList();
        if (place.paragraph > 0 || linesFrom(document.findBlock(begin)) > length.lines) {
            // Where the tables are is known when the text has been edited.
            whole.endEditBlock();
            place.paragraph = showPiece(document.findBlock(begin), place.paragraph, length.lines);
            whole.beginEditBlock();
        }
        if (place.paragraph > 0)
            break;
        place.entry = m_bDescendants ? nextInOutline(place.entry, m_top) : nullptr;
    }
    if (isLastFree)
        removeLastParagraph(document);
    whole.endEditBlock();
    return place;
}

void PrintComposition::addHeading(QTextCursor &cursor, const Entry *entry, bool isFirst) const
{
    constexpr int deepest = int(std::size(headingSizes)) - 1;
    int depth = 0;
    for (const Entry *above = entry; above != m_top && depth < deepest; above = above->parent())
        ++depth;
    QTextBlockFormat paragraph;
    paragraph.setProperty(headingProperty, true);
    rtf::setStaysWithNext(paragraph);
    const bool isBelowHeading = isHeading(cursor.block().previous());
    paragraph.setTopMargin(isFirst ? 0 : isBelowHeading ? spaceBetweenHeadings : spaceAboveHeading);
    paragraph.setBottomMargin(spaceBelowHeading);
    QTextCharFormat characters;
    characters.setFontFamilies({m_base.family()});
    characters.setFontPointSize(headingSize(depth));
    characters.setFontWeight(QFont::Bold);
    cursor.setBlockFormat(paragraph);
    cursor.setBlockCharFormat(characters);
    // A label is one line, whatever characters it holds.
    QString label = shownLabel(entry->label(), limits::printedLabel);
    for (QChar &character : label) {
        if (character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator)
            character = u' ';
    }
    cursor.insertText(label, characters);
}

void PrintComposition::addText(QTextCursor &cursor, const Entry *entry, Damage damage) const
{
    // What is too long to be laid out in the text pane is too long for paper as well: its beginning is printed.
    const QByteArray stored = m_tree.storedText(entry);
    const auto [text, state] = m_whole.contains(entry) ? inflated(stored) : shownText(stored, m_base);
    if (state == TextState::Whole)
        m_whole.insert(entry);
    if (state == TextState::Damaged) {
        if (damage == Damage::Ignore)
            return;
        reportError("frmPreview PreviewNodeAll",
                    RunTimeError(ErrorNumber::InvalidFileFormat,
                                 u"%1: the text of the entry %2 is damaged and not printed"_s.arg(
                                     errorDescription(ErrorNumber::InvalidFileFormat), m_tree.key(entry))));
        return;
    }
    if (rtf::isRtf(text))
        rtf::append(text, cursor);
    else if (!text.isEmpty())
        cursor.insertText(AnsiCodec::toText(text));
    if (state == TextState::Beginning) {
        cursor.insertBlock();
        cursor.insertText(u"(This text is too long to be printed whole.)"_s);
    }
}
