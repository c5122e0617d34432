// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/AppCommands.h"

#include "app/AppPorts.h"
#include "app/RecoveryList.h"
#include "app/frmDebug.h"
#include "app/modHelp.h"
#include "app/modViewBars.h"
#include "app/modWindow.h"
#include "commands/Dispatcher.h"
#include "document/Ports.h"
#include "panes/frmVersions.h"
#include "window/WindowCommands.h"

namespace
{

void showVersions(QWidget &mainWindow)
{
    Document *document = DocumentActive();
    if (document && appPorts().versions)
        frmVersions(*appPorts().versions, *document, &mainWindow).exec();
}

void showRecovery(QWidget &mainWindow)
{
    if (appPorts().vault)
        RecoveryList::showWhatIsLeft(*appPorts().vault, &mainWindow);
}

} // namespace

void bindAppCommands(Dispatcher &dispatcher, QWidget &mainWindow, QMdiArea &area)
{
    bindWindowCommands(dispatcher);
    const auto bind = [&dispatcher](std::string_view name, auto routine) {
        dispatcher.bind(name, [routine](int) { routine(); });
    };
    bind("mnuViewToolbar", modView::ViewToolbar);
    bind("mnuViewStatusBar", modView::ViewStatusBar);
    bind("mnuWindowCascade", [&area] { modWindow::WindowCascade(area); });
    bind("mnuWindowTileHorizontal", [&area] { modWindow::WindowTileHorizontal(area); });
    bind("mnuWindowTileVertical", [&area] { modWindow::WindowTileVertical(area); });
    bind("mnuWindowArrangeIcons", [&area] { modWindow::WindowArrangeIcons(area); });
    bind("mnuHelpContents", modHelp::HelpContents);
    bind("mnuHelpSearch", modHelp::HelpSearch);
    bind("mnuHelpAbout", [&mainWindow] { modHelp::HelpAbout(&mainWindow); });
    bind("mnuToolsVersions", [&mainWindow] { showVersions(mainWindow); });
    bind("mnuToolsRecover", [&mainWindow] { showRecovery(mainWindow); });
    bind("keyDiagnostics", frmDebug::showModally);
}
