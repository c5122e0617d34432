// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintComposition.h"

#include "model/Document.h"
#include "model/StoredText.h"
#include "rtf/Looks.h"
#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextOption>

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

const Entry *PrintComposition::compose(QTextDocument &document, const Entry *from, qsizetype characters,
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
    const Entry *entry = from;
    while (entry && !isLongEnough(document, isLastFree, characters)) {
        if (!entry->label().isEmpty()) {
            QTextCursor cursor = freeParagraph(document, isLastFree);
            addHeading(cursor, entry, entry == m_top);
            isLastFree = false;
        }
        QTextCursor cursor = freeParagraph(document, isLastFree);
        const int begin = cursor.position();
        addText(cursor, entry, damage);
        cursor.movePosition(QTextCursor::End);
        isLastFree = cursor.position() == begin && !cursor.currentList();
        entry = m_bDescendants ? nextInOutline(entry, m_top) : nullptr;
    }
    if (isLastFree)
        removeLastParagraph(document);
    whole.endEditBlock();
    return entry;
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
    QString label = entry->label();
    for (QChar &character : label) {
        if (character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator)
            character = u' ';
    }
    cursor.insertText(label, characters);
}

void PrintComposition::addText(QTextCursor &cursor, const Entry *entry, Damage damage) const
{
    const QByteArray storedText = m_tree.storedText(entry);
    const QByteArray text = NodeTextDecompressIfRequired(storedText);
    if (isUninflated(text, storedText)) {
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
}
