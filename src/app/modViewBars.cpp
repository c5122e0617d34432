// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/modViewBars.h"

#include "app/AppPorts.h"
#include "document/Globals.h"
#include "document/Ports.h"
#include "util/Procedure.h"

namespace modView
{

void ViewToolbar()
{
    procedure("modView ViewToolbar", [] {
        g_options.ViewToolbar = !g_options.ViewToolbar;
        appPorts().mainWindow->setToolbarVisible(g_options.ViewToolbar);
        ports().commands->MenuEnableDynamic();
    });
}

void ViewStatusBar()
{
    procedure("modView ViewStatusBar", [] {
        g_options.ViewStatusbar = !g_options.ViewStatusbar;
        appPorts().mainWindow->setStatusBarVisible(g_options.ViewStatusbar);
        ports().commands->MenuEnableDynamic();
    });
}

} // namespace modView
