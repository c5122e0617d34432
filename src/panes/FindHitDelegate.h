// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>
#include <QTextLayout>

#include <functional>

class FindHitsModel;
struct FindHit;

// Draws what was found: of an entry its label and where it stands, of a hit its line with what was found marked in it.
// With a replacement, what was found is struck out and what takes its place marked behind it. Every row is one line.
class FindHitDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // What a hit would become; null while nothing is to be replaced.
    using Replacement = std::function<QString(const FindHit &)>;

    FindHitDelegate(const FindHitsModel &model, QObject *parent);

    void setReplacement(Replacement replacement) { m_replacement = std::move(replacement); }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

    // Whether a point of a row lies on its check mark. The option has the row's place.
    bool isOnCheck(const QStyleOptionViewItem &option, const QModelIndex &index, const QPoint &place) const;

    // Behind and in the text of what is marked, in rows that are selected or not.
    static QTextCharFormat markOf(const QPalette &colours, QPalette::ColorGroup group, bool isSelected);

private:
    struct Line {
        QString text = {};
        QList<QTextLayout::FormatRange> looks = {};
        // What is to be seen of it in any case.
        qsizetype start = 0;
        qsizetype end = 0;
        bool isCutBefore = false;
        bool isCutBehind = false;
    };

    Line lineOf(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    Line hitLine(const FindHit &hit, const QPalette &colours, QPalette::ColorGroup group, bool isSelected) const;
    static QRect checkPlace(const QStyleOptionViewItem &option, int indent);
    int drawCount(QPainter &painter, const QStyleOptionViewItem &option, const QRect &place,
                  const QModelIndex &index) const;
    static int indentOf(const QStyleOptionViewItem &option, const QModelIndex &index, const FindHitsModel &model);
    static void draw(QPainter &painter, Line line, const QRect &place, const QStyleOptionViewItem &option,
                     const QColor &colour);

    const FindHitsModel &m_model;
    Replacement m_replacement;
};
