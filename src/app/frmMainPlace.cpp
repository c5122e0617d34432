// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/frmMain.h"

#include "app/DocumentArea.h"
#include "app/ScreenPlacement.h"
#include "app/StatusBar.h"
#include "app/Toolbar.h"
#include "panes/PaneDocks.h"

#include <QGuiApplication>
#include <QScreen>

namespace
{

QList<QRect> freeScreenAreas()
{
    QList<QRect> areas;
    for (const QScreen *screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

} // namespace

bool frmMain::minimised() const
{
    return isMinimized();
}

WindowPlace frmMain::place() const
{
    return placeFromPixels(QRect(pos(), size()), logicalDpiX());
}

void frmMain::setPlace(const WindowPlace &place)
{
    const QRect placed = placedOnScreens(pixelsFromPlace(place, logicalDpiX()), freeScreenAreas());
    resize(placed.size());
    move(placed.topLeft());
}

WindowStates frmMain::states() const
{
    return {isMaximized(), m_documents->isMaximised(), placeFromPixels(normalGeometry(), logicalDpiX()),
            m_panes ? m_panes->state() : QString()};
}

void frmMain::setMaximised(bool mainWindow, bool documents)
{
    setWindowState(windowState().setFlag(Qt::WindowMaximized, mainWindow));
    m_documents->setMaximised(documents);
}

void frmMain::setPanes(const QString &panes)
{
    m_panes->restore(panes);
}

void frmMain::fitToScreen()
{
    // The frame is not there yet; titles are about this high.
    constexpr QMargins frame(4, 32, 4, 4);
    const QRect fitted = fittedToScreen(QRect(pos(), size()).marginsAdded(frame), freeScreenAreas());
    resize(fitted.marginsRemoved(frame).size());
    move(fitted.topLeft());
}

void frmMain::setToolbarVisible(bool visible)
{
    m_toolbar->setVisible(visible);
}

void frmMain::setStatusBarVisible(bool visible)
{
    m_statusBar->setVisible(visible);
}
