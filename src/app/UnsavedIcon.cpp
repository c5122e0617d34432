// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/UnsavedIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace
{

class UnsavedIconEngine final : public QIconEngine
{
public:
    explicit UnsavedIconEngine(QIcon icon)
        : m_icon(std::move(icon))
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        m_icon.paint(painter, rect, Qt::AlignCenter, mode, state);
        // Large enough to be seen in the sixteen pixels of a title, with a ring that sets it off from any icon, and in
        // a colour that the titles of no desktop have.
        constexpr qreal share = 0.5;
        constexpr QColor colour(240, 120, 32);
        const qreal side = std::min(rect.width(), rect.height()) * share;
        const qreal ring = std::max(side / 8, 0.5);
        const QRectF dot(rect.right() + 1 - side, rect.bottom() + 1 - side, side, side);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setBrush(colour);
        painter->setPen(QPen(QGuiApplication::palette().color(QPalette::Base), ring));
        painter->drawEllipse(dot.adjusted(ring / 2, ring / 2, -ring / 2, -ring / 2));
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap drawing(size);
        drawing.fill(Qt::transparent);
        QPainter painter(&drawing);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return drawing;
    }

    QIconEngine *clone() const override { return new UnsavedIconEngine(m_icon); }

private:
    QIcon m_icon;
};

} // namespace

QIcon unsavedIcon(const QIcon &icon)
{
    return QIcon(new UnsavedIconEngine(icon));
}
