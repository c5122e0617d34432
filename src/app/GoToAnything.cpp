// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/GoToAnything.h"

#include "app/AppPorts.h"
#include "app/DocumentArea.h"
#include "app/PlaceKeeper.h"
#include "app/modMRU.h"
#include "commands/Dispatcher.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "panes/frmGoTo.h"
#include "window/frmDocument.h"

GoToAnything::GoToAnything(const DocumentArea &area, Dispatcher &dispatcher, PlaceKeeper &places, QWidget &mainWindow)
    : m_area(area)
    , m_dispatcher(dispatcher)
    , m_places(places)
    , m_mainWindow(mainWindow)
{
    dispatcher.bind("mnuToolsGoToAnything", [this](int) { show(); });
}

void GoToAnything::show()
{
    // Items of the menu without a name are not shown there, and not counted.
    QStringList recentFiles = appPorts().recentFiles->list();
    recentFiles.removeAll(QString());
    std::optional<GoToTarget> chosen;
    {
        const GoToWorld world{.active = m_area.activeDocument(),
                              .documents = m_area.documents(),
                              .recentFiles = recentFiles,
                              .visited = m_places.trail().others(),
                              .dispatcher = m_dispatcher};
        frmGoTo line(world, m_known, &m_mainWindow);
        line.exec();
        chosen = line.chosen();
    }
    // The window that the line lay over has the keyboard again, in the pane that had it.
    m_mainWindow.activateWindow();
    if (frmDocument *form = m_area.activeForm())
        form->restorePaneFocus();
    if (chosen)
        goTo(*chosen);
}

void GoToAnything::goTo(const GoToTarget &target)
{
    switch (target.kind) {
    case GoToKind::Entry:
        m_places.goTo(target.place);
        break;
    case GoToKind::Command:
        m_dispatcher.run(target.command);
        break;
    case GoToKind::Document:
        if (DocumentView *view = target.place.document ? target.place.document->view() : nullptr)
            view->window.bringToFront();
        break;
    case GoToKind::File:
        m_dispatcher.run("mnuFileMRU", target.file);
        break;
    }
}
