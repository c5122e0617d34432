// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/modViewBars.h"

#include "app/AppPorts.h"
#include "document/Globals.h"
#include "util/Procedure.h"

namespace modView
{

void ViewToolbar()
{
    procedure("modView ViewToolbar", [] {
        g_options.ViewToolbar = !g_options.ViewToolbar;
        appPorts().mainWindow->setToolbarVisible(g_options.ViewToolbar);
    });
}

void ViewStatusBar()
{
    procedure("modView ViewStatusBar", [] {
        g_options.ViewStatusbar = !g_options.ViewStatusbar;
        appPorts().mainWindow->setStatusBarVisible(g_options.ViewStatusbar);
    });
}

} // namespace modView
