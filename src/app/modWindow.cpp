// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/modWindow.h"

#include "util/Procedure.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include <algorithm>

namespace
{

QList<QMdiSubWindow *> windows(const QMdiArea &area, bool minimised)
{
    QList<QMdiSubWindow *> found;
    for (QMdiSubWindow *window : area.subWindowList(QMdiArea::CreationOrder)) {
        if (!window->isHidden() && window->isMinimized() == minimised)
            found.append(window);
    }
    return found;
}

// The part of the area that icons of minimised windows do not need.
QRect roomAboveIcons(const QMdiArea &area)
{
    QRect room = area.viewport()->rect();
    int iconHeight = 0;
    for (const QMdiSubWindow *icon : windows(area, true))
        iconHeight = std::max(iconHeight, icon->height());
    room.setHeight(std::max(0, room.height() - iconHeight));
    return room;
}

void tile(QMdiArea &area, Qt::Orientation direction)
{
    const QList<QMdiSubWindow *> tiled = windows(area, false);
    const QRect room = roomAboveIcons(area);
    const int count = static_cast<int>(tiled.size());
    // Cut at proportional places, so that rounding leaves no gap at the far edge.
    const auto cut = [count](int length, int place) { return static_cast<int>(qint64{length} * place / count); };
    for (int place = 0; place < count; ++place) {
        QMdiSubWindow *window = tiled.at(place);
        if (window->isMaximized())
            window->showNormal();
        QRect slot = room;
        if (direction == Qt::Horizontal) {
            slot.setLeft(room.left() + cut(room.width(), place));
            slot.setWidth(cut(room.width(), place + 1) - cut(room.width(), place));
        } else {
            slot.setTop(room.top() + cut(room.height(), place));
            slot.setHeight(cut(room.height(), place + 1) - cut(room.height(), place));
        }
        window->setGeometry(slot);
    }
}

} // namespace

namespace modWindow
{

void WindowCascade(QMdiArea &area)
{
    procedure("modWindow WindowCascade", [&] { area.cascadeSubWindows(); });
}

void WindowTileHorizontal(QMdiArea &area)
{
    procedure("modWindow WindowTileHorizontal", [&] { tile(area, Qt::Vertical); });
}

void WindowTileVertical(QMdiArea &area)
{
    procedure("modWindow WindowTileVertical", [&] { tile(area, Qt::Horizontal); });
}

void WindowArrangeIcons(QMdiArea &area)
{
    procedure("modWindow WindowArrangeIcons", [&] {
        const QRect room = area.viewport()->rect();
        int left = room.left();
        int bottom = room.top() + room.height();
        for (QMdiSubWindow *icon : windows(area, true)) {
            if (left > room.left() && left + icon->width() > room.left() + room.width()) {
                left = room.left();
                bottom -= icon->height();
            }
            icon->move(left, bottom - icon->height());
            left += icon->width();
        }
    });
}

} // namespace modWindow
