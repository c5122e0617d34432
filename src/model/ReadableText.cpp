// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/ReadableText.h"

#include "model/Contrast.h"

#include <QPalette>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

namespace
{

QColor blackOrWhite(const QColor &background)
{
    return Contrast::between(Qt::black, background) >= Contrast::between(Qt::white, background) ? Qt::black : Qt::white;
}

// A colour laid over another one.
QColor over(const QColor &top, const QColor &bottom)
{
    return Contrast::mixed(bottom, top, top.alphaF());
}

// What is seen behind something of a format that stands on a background.
QColor backgroundOf(const QTextFormat &format, const QColor &behind)
{
    const QBrush brush = format.background();
    return brush.style() == Qt::SolidPattern ? over(brush.color(), behind) : behind;
}

// What is seen behind the paragraphs of a place.
QColor backgroundOfFrame(const QTextFrame *frame, int position, const QColor &base)
{
    if (!frame)
        return base;
    const QColor behind = backgroundOfFrame(frame->parentFrame(), frame->firstPosition() - 1, base);
    const QColor own = backgroundOf(frame->frameFormat(), behind);
    const auto *table = qobject_cast<const QTextTable *>(frame);
    const QTextTableCell cell = table ? table->cellAt(position) : QTextTableCell();
    return cell.isValid() ? backgroundOf(cell.format(), own) : own;
}

bool signHasAColourOfItsOwn(const QTextBlock &block)
{
    switch (block.textList()->format().style()) {
    case QTextListFormat::ListDisc:
    case QTextListFormat::ListCircle:
    case QTextListFormat::ListSquare:
        return false;
    default:
        return block.charFormat().foreground().style() != Qt::NoBrush;
    }
}

class Finder
{
public:
    explicit Finder(const QPalette &palette)
        : m_palette(palette)
    {
    }

    void look(const QTextBlock &block);

    QList<QAbstractTextDocumentLayout::Selection> take() { return std::move(m_found); }

private:
    QColor shownColour(const QTextCharFormat &format, const QColor &background) const;
    void add(const QTextBlock &block, int from, int to, const QColor &colour);

    const QPalette &m_palette;
    QList<QAbstractTextDocumentLayout::Selection> m_found;
};

void Finder::look(const QTextBlock &block)
{
    const QTextCursor place(block);
    const QColor page = backgroundOfFrame(place.currentFrame(), block.position(), m_palette.color(QPalette::Base));
    const QColor behind = backgroundOf(block.blockFormat(), page);
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat format = fragment.charFormat();
        const QColor colour = shownColour(format, backgroundOf(format, behind));
        if (colour.isValid())
            add(block, fragment.position(), fragment.position() + fragment.length(), colour);
    }
}

// An invalid colour where the text can be read as it is.
QColor Finder::shownColour(const QTextCharFormat &format, const QColor &background) const
{
    const QBrush own = format.foreground();
    const QColor text = own.style() == Qt::NoBrush ? m_palette.color(QPalette::Text) : own.color();
    if (own.style() != Qt::NoBrush && !format.isAnchor())
        return {};
    if (Contrast::between(text, background) >=
        (own.style() == Qt::NoBrush ? Contrast::readable : Contrast::discernible))
        return {};
    const QColor link = m_palette.color(QPalette::Link);
    return format.isAnchor() && Contrast::between(link, background) >= Contrast::discernible ? link
                                                                                             : blackOrWhite(background);
}

// What stands side by side in one colour is one selection: the layout mixes up the edges of selections that touch.
void Finder::add(const QTextBlock &block, int from, int to, const QColor &colour)
{
    if (!m_found.isEmpty() && m_found.back().cursor.block() == block && m_found.back().cursor.position() == from &&
        m_found.back().format.foreground().color() == colour) {
        m_found.back().cursor.setPosition(to, QTextCursor::KeepAnchor);
        return;
    }
    QAbstractTextDocumentLayout::Selection selection;
    selection.cursor = QTextCursor(block);
    selection.cursor.setPosition(from);
    selection.cursor.setPosition(to, QTextCursor::KeepAnchor);
    selection.format.setForeground(colour);
    m_found.append(selection);
}

} // namespace

QList<QAbstractTextDocumentLayout::Selection> readableText(const QTextBlock &first, const QTextBlock &last,
                                                           const QPalette &palette)
{
    Finder finder(palette);
    for (QTextBlock block = first; block.isValid() && block.position() <= last.position(); block = block.next())
        finder.look(block);
    return finder.take();
}

// Signs stand beside their paragraph's own background.
std::vector<ReadableSign> readableSigns(const QTextBlock &first, const QTextBlock &last, const QPalette &palette)
{
    std::vector<ReadableSign> found;
    for (QTextBlock block = first; block.isValid() && block.position() <= last.position(); block = block.next()) {
        if (!block.textList() || signHasAColourOfItsOwn(block))
            continue;
        const QColor ground =
            backgroundOfFrame(QTextCursor(block).currentFrame(), block.position(), palette.color(QPalette::Base));
        if (Contrast::between(palette.color(QPalette::Text), ground) < Contrast::readable)
            found.push_back({block, blackOrWhite(ground)});
    }
    return found;
}
