// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindHitDelegate.h"

#include "document/Document.h"
#include "find/FindHit.h"
#include "model/Contrast.h"
#include "panes/FindHitsModel.h"

#include <QApplication>
#include <QFileInfo>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

using HitRow = FindHitsModel::RowKind;

// Paler than what matters more, and still easily read.
QColor palerOf(const QColor &behind, const QColor &text)
{
    for (const double share : {0.65, 0.8}) {
        const QColor paler = Contrast::mixed(behind, text, share);
        if (Contrast::between(paler, behind) >= Contrast::readable)
            return paler;
    }
    return text;
}

// Where an entry stands, or a document's file.
QString placeOf(const FindHitsModel::Row &row)
{
    if (!row.document)
        return {};
    if (row.kind == HitRow::Entry)
        return pathOf(*row.document, row.found->entry, PathFrom::BelowRoot);
    const QString &file = row.document->m_sFile;
    return row.kind == HitRow::Document && !file.isEmpty() ? QFileInfo(file).path() : QString();
}

void addLook(QList<QTextLayout::FormatRange> &looks, qsizetype start, qsizetype length, const QTextCharFormat &look)
{
    looks.append({static_cast<int>(start), static_cast<int>(length), look});
}

// One line whatever the text holds, unit for unit.
QString onOneLine(QString text)
{
    for (QChar &each : text) {
        if (each.isSpace() || each.category() == QChar::Other_Control || each == QChar::ObjectReplacementCharacter)
            each = u' ';
    }
    return text;
}

// Takes away units at a line's beginning, or all from a unit on.
void cutLooks(QList<QTextLayout::FormatRange> &looks, qsizetype units, qsizetype size)
{
    QList<QTextLayout::FormatRange> kept;
    for (QTextLayout::FormatRange each : looks) {
        const int end = std::min(each.start + each.length - static_cast<int>(units), static_cast<int>(size));
        each.start = std::max(each.start - static_cast<int>(units), 0);
        each.length = end - each.start;
        if (each.length > 0)
            kept.append(each);
    }
    looks = kept;
}

// The next beginning of a word, where that is near and not behind a place.
qsizetype wordFrom(const QString &text, qsizetype from, qsizetype behind)
{
    constexpr qsizetype longestCut = 15;
    const qsizetype blank = text.indexOf(u' ', std::max<qsizetype>(from - 1, 0));
    if (blank >= 0 && blank < behind && blank - from < longestCut)
        return blank + 1;
    while (from < behind && text[from].isLowSurrogate())
        ++from;
    return from;
}

QTextLine layOut(QTextLayout &layout, const QList<QTextLayout::FormatRange> &looks, bool isRightToLeft)
{
    QTextOption direction;
    direction.setTextDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    layout.setTextOption(direction);
    layout.setFormats(looks);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    return line;
}

double widthOf(const QString &text, const QFont &font, const QList<QTextLayout::FormatRange> &looks)
{
    QTextLayout layout(text, font);
    const QTextLine line = layOut(layout, looks, text.isRightToLeft());
    return line.isValid() ? line.naturalTextWidth() : 0;
}

} // namespace

FindHitDelegate::FindHitDelegate(const FindHitsModel &model, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_model(model)
{
}

QSize FindHitDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    // In any script's tallest letters the line above and below stays off.
    constexpr int room = 4;
    return {1, std::max(option.fontMetrics.height(), option.fontMetrics.lineSpacing()) + room};
}

QTextCharFormat FindHitDelegate::markOf(const QPalette &colours, QPalette::ColorGroup group, bool isSelected)
{
    const QColor behind = colours.color(group, isSelected ? QPalette::Highlight : QPalette::Base);
    const QColor text = colours.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    const QColor tint = isSelected ? text : colours.color(QPalette::Active, QPalette::Highlight);
    QTextCharFormat mark;
    mark.setFontWeight(QFont::Bold);
    mark.setForeground(text);
    for (const double share : {0.35, 0.25, 0.15}) {
        const QColor tinted = Contrast::mixed(behind, tint, share);
        if (Contrast::between(tinted, text) < Contrast::readable)
            continue;
        mark.setBackground(tinted);
        return mark;
    }
    // No tint leaves the text readable.
    mark.setFontUnderline(true);
    return mark;
}

FindHitDelegate::Line FindHitDelegate::hitLine(const FindHit &hit, const QPalette &colours, QPalette::ColorGroup group,
                                               bool isSelected) const
{
    Line line{onOneLine(hit.line), {}, hit.start, hit.start + hit.length, hit.isCutBefore, hit.isCutBehind};
    const QTextCharFormat mark = markOf(colours, group, isSelected);
    if (!m_replacement) {
        addLook(line.looks, hit.start, hit.length, mark);
        return line;
    }
    const QString after = onOneLine(m_replacement(hit));
    QTextCharFormat struck;
    struck.setFontStrikeOut(true);
    struck.setForeground(palerOf(colours.color(group, isSelected ? QPalette::Highlight : QPalette::Base),
                                 colours.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text)));
    addLook(line.looks, hit.start, hit.length, struck);
    line.text.insert(hit.start + hit.length, after);
    addLook(line.looks, line.end, after.size(), mark);
    line.end += after.size();
    return line;
}

FindHitDelegate::Line FindHitDelegate::lineOf(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const FindHitsModel::Row row = m_model.row(index.row());
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const auto group = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    if (const FindHit *hit = row.hit())
        return hitLine(*hit, option.palette, group, isSelected);
    Line line;
    line.text = onOneLine(index.data().toString());
    const auto labelEnd = line.text.size();
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    if (row.kind != HitRow::More)
        addLook(line.looks, 0, labelEnd, bold);
    line.end = std::min<qsizetype>(labelEnd, 1);
    const QString path = placeOf(row);
    if (!path.isEmpty()) {
        line.text += u"   "_s + onOneLine(path);
        QTextCharFormat paler;
        paler.setForeground(
            palerOf(option.palette.color(group, isSelected ? QPalette::Highlight : QPalette::Base),
                    option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text)));
        addLook(line.looks, labelEnd, line.text.size() - labelEnd, paler);
    }
    return line;
}

// Hits stand further in than their entry, and that further in than its document.
int FindHitDelegate::indentOf(const QStyleOptionViewItem &option, const QModelIndex &index, const FindHitsModel &model)
{
    const HitRow kind = model.row(index.row()).kind;
    const int step = option.fontMetrics.averageCharWidth() * 2;
    const int margin = option.fontMetrics.averageCharWidth() / 2;
    return margin + (kind == HitRow::Hit || kind == HitRow::More ? step : 0);
}

QRect FindHitDelegate::checkPlace(const QStyleOptionViewItem &option, int indent)
{
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    const int width = style->pixelMetric(QStyle::PM_IndicatorWidth, &option, option.widget);
    const int height = style->pixelMetric(QStyle::PM_IndicatorHeight, &option, option.widget);
    const QRect place(option.rect.left() + indent, option.rect.top() + (option.rect.height() - height) / 2, width,
                      height);
    return QStyle::visualRect(option.direction, option.rect, place);
}

bool FindHitDelegate::isOnCheck(const QStyleOptionViewItem &option, const QModelIndex &index, const QPoint &place) const
{
    return index.flags().testFlag(Qt::ItemIsUserCheckable) &&
           checkPlace(option, indentOf(option, index, m_model)).contains(place);
}

bool FindHitDelegate::editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                                  const QModelIndex &index)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (!isPress && event->type() != QEvent::MouseButtonRelease)
        return false;
    const auto &mouse = *static_cast<QMouseEvent *>(event);
    if (mouse.button() != Qt::LeftButton || !isOnCheck(option, index, mouse.position().toPoint()))
        return false;
    return isPress ||
           model->setData(index, index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? Qt::Unchecked : Qt::Checked,
                          Qt::CheckStateRole);
}

void FindHitDelegate::paint(QPainter *painter, const QStyleOptionViewItem &given, const QModelIndex &index) const
{
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    const HitRow kind = m_model.row(index.row()).kind;
    option.text.clear();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    if (kind == HitRow::Document && !isSelected)
        option.backgroundBrush = option.palette.brush(QPalette::AlternateBase);
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    const int indent = indentOf(option, index, m_model);
    const int step = option.fontMetrics.averageCharWidth();
    QRect place = option.rect.adjusted(indent, 0, -step / 2, 0);
    if (option.features.testFlag(QStyleOptionViewItem::HasCheckIndicator)) {
        QStyleOptionViewItem box = option;
        box.rect = checkPlace(option, indent);
        box.state.setFlag(QStyle::State_HasFocus, false);
        box.state.setFlag(QStyle::State_Enabled, index.flags().testFlag(Qt::ItemIsUserCheckable));
        box.state.setFlag(option.checkState == Qt::Checked            ? QStyle::State_On
                          : option.checkState == Qt::PartiallyChecked ? QStyle::State_NoChange
                                                                      : QStyle::State_Off);
        style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, option.widget);
        place.setLeft(box.rect.right() + step);
    }
    if (kind == HitRow::Document || kind == HitRow::Entry)
        place.setRight(drawCount(*painter, option, place, index));
    const auto group = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    const QColor colour = option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    draw(*painter, lineOf(option, index), place, option, colour);
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.state |= QStyle::State_KeyboardFocusChange | QStyle::State_Item;
        focus.backgroundColor = option.palette.color(isSelected ? QPalette::Highlight : QPalette::Base);
        style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
    }
}

// How many hits there are, at the row's end; answers with where the room before it ends.
int FindHitDelegate::drawCount(QPainter &painter, const QStyleOptionViewItem &option, const QRect &place,
                               const QModelIndex &index) const
{
    const QString count = QLocale().toString(m_model.countOf(index.row()));
    const int width = option.fontMetrics.horizontalAdvance(count);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const auto group = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    painter.save();
    painter.setFont(option.font);
    painter.setPen(palerOf(option.palette.color(group, isSelected ? QPalette::Highlight : QPalette::Base),
                           option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text)));
    painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter, count);
    painter.restore();
    return place.right() - width - option.fontMetrics.averageCharWidth();
}

// Of a line that is longer than its place, what stands around the match is shown.
void FindHitDelegate::draw(QPainter &painter, Line line, const QRect &place, const QStyleOptionViewItem &option,
                           const QColor &colour)
{
    constexpr QChar dots = u'…';
    // With more of what follows than of what comes before.
    constexpr double shareBefore = 0.6;
    const double width = place.width();
    if (width <= 0)
        return;
    const auto fits = [&](qsizetype from) {
        QList<QTextLayout::FormatRange> looks = line.looks;
        cutLooks(looks, from, line.end - from);
        return widthOf(line.text.sliced(from, line.end - from), option.font, looks) <= width * shareBefore;
    };
    qsizetype from = 0;
    if (widthOf(line.text, option.font, line.looks) > width && !fits(0)) {
        qsizetype least = 0;
        qsizetype most = line.start;
        while (least < most) {
            const qsizetype middle = (least + most) / 2;
            if (fits(middle))
                most = middle;
            else
                least = middle + 1;
        }
        from = most;
        from = wordFrom(line.text, from, line.start);
    }
    if (from > 0) {
        line.text = line.text.sliced(from);
        cutLooks(line.looks, from, line.text.size());
    }
    if (from > 0 || line.isCutBefore) {
        line.text.prepend(dots);
        for (QTextLayout::FormatRange &each : line.looks)
            ++each.start;
    }
    if (line.isCutBehind)
        line.text.append(dots);
    QTextLayout layout(line.text, option.font);
    const bool isRightToLeft = line.text.isRightToLeft();
    QTextLine shown = layOut(layout, line.looks, isRightToLeft);
    if (shown.isValid() && shown.naturalTextWidth() > width && !isRightToLeft) {
        const double room = width - option.fontMetrics.horizontalAdvance(dots);
        const int cut = shown.xToCursor(std::max(room, 0.0), QTextLine::CursorOnCharacter);
        layout.setText(line.text.left(cut) + dots);
        cutLooks(line.looks, 0, cut + 1);
        shown = layOut(layout, line.looks, false);
    }
    if (!shown.isValid())
        return;
    const double top = place.top() + (place.height() - shown.height()) / 2;
    const double left = isRightToLeft ? place.right() - shown.naturalTextWidth() : place.left();
    painter.save();
    painter.setClipRect(place);
    painter.setPen(colour);
    layout.draw(&painter, QPointF(left, top));
    painter.restore();
}
