// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/ReadableText.h"

#include <QPalette>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>

#include <algorithm>
#include <cmath>

namespace
{

// Ratios of luminance: what is comfortable to read, and what can just be made out.
constexpr double readable = 4.5;
constexpr double discernible = 3.0;

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double first = luminance(one) + 0.05;
    const double second = luminance(other) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

QColor blackOrWhite(const QColor &background)
{
    return contrast(Qt::black, background) >= contrast(Qt::white, background) ? Qt::black : Qt::white;
}

// A colour laid over another one.
QColor over(const QColor &top, const QColor &bottom)
{
    const double alpha = top.alphaF();
    const auto mixed = [alpha](double upper, double lower) { return float(alpha * upper + (1 - alpha) * lower); };
    return QColor::fromRgbF(mixed(top.redF(), bottom.redF()), mixed(top.greenF(), bottom.greenF()),
                            mixed(top.blueF(), bottom.blueF()));
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
    if (contrast(text, background) >= (own.style() == Qt::NoBrush ? readable : discernible))
        return {};
    const QColor link = m_palette.color(QPalette::Link);
    return format.isAnchor() && contrast(link, background) >= discernible ? link : blackOrWhite(background);
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
