// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainSurface.h"

#include "app/AppPorts.h"
#include "app/CommandMenus.h"
#include "app/DocumentArea.h"
#include "app/StatusBar.h"
#include "app/Toolbar.h"
#include "commands/Dispatcher.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/Globals.h"
#include "document/TextPane.h"
#include "util/Procedure.h"
#include "window/frmDocument.h"

MainSurface::MainSurface(CommandMenus &menus, Toolbar &toolbar, StatusBar &statusBar, const DocumentArea &area,
                         const Dispatcher &dispatcher)
    : m_menus(menus)
    , m_toolbar(toolbar)
    , m_statusBar(statusBar)
    , m_area(area)
    , m_dispatcher(dispatcher)
{
}

void MainSurface::MenuEnable(int documentCount)
{
    procedure("modMain MenuEnable", [&] {
        noteKeptState();
        CommandState state = m_dispatcher.state();
        state.documentCount = documentCount;
        applyState(state);
    });
}

void MainSurface::MenuEnableDynamic()
{
    procedure("modMain MenuEnableDynamic", [this] {
        noteKeptState();
        applyState(m_dispatcher.state());
    });
}

// What depends on the open documents and what depends on the selected entry are one: nothing is left half said.
void MainSurface::applyState(const CommandState &state)
{
    m_menus.apply(state, g_options);
    m_toolbar.apply(state);
    showOverwriting();
}

void MainSurface::UpdateToolbarStatus()
{
    procedure("modMain UpdateToolbarStatus", [this] {
        showOverwriting();
        const Document *document = m_area.activeDocument();
        if (!document)
            return;
        m_toolbar.applyFormats(document->view()->txtRTF);
        CommandState state;
        state.ExpansionLevel = document->m_iExpansionLevel();
        m_toolbar.press(state);
    });
}

void MainSurface::showOverwriting()
{
    const frmDocument *form = m_area.activeForm();
    m_statusBar.setOverwriting(form ? std::optional(form->overwriting()) : std::nullopt);
}

void MainSurface::UpdateStatusBar(const Entry *entry)
{
    procedure("modMain UpdateStatusBar", [&] {
        if (entry)
            UpdateStatusBarText(entry->label());
    });
}

void MainSurface::UpdateStatusBarText(const QString &text)
{
    procedure("modMain UpdateStatusBarText", [&] { m_statusBar.setText(text); });
}
