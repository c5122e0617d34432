// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/WindowCommands.h"

#include "commands/Dispatcher.h"
#include "window/modView.h"

#include <array>

namespace
{

struct WindowCommand {
    std::string_view name;
    void (*routine)();
};

constexpr std::array windowCommands{
    WindowCommand{"mnuViewGoToOutline", modView::ViewGoToOutline},
    WindowCommand{"mnuViewGoToText", modView::ViewGoToText},
    WindowCommand{"mnuViewMaximiseLeft", modView::ViewMaximiseLeft},
    WindowCommand{"mnuViewMaximiseRight", modView::ViewMaximiseRight},
    WindowCommand{"mnuViewEqualiseLeftAndRight", modView::ViewEqualiseLeftAndRight},
    WindowCommand{"mnuViewFitSplit", modView::ViewFitSplit},
    WindowCommand{"mnuViewMoveSplit", modView::ViewMoveSplit},
    WindowCommand{"mnuViewOptionsBackupOnSave", modView::ViewOptionsBackupOnSave},
    WindowCommand{"mnuViewOptionsAutoFitSplit", modView::ViewOptionsAutoFitSplit},
    WindowCommand{"mnuViewOptionsStartWithNewDoc", modView::ViewOptionsStartWithNewDoc},
    WindowCommand{"mnuViewOptionsStartWithPrevDocs", modView::ViewOptionsStartWithPrevDocs},
    WindowCommand{"mnuViewOptionsClickToRenameEntry", modView::ViewOptionsClickToRenameEntry},
};

} // namespace

void bindWindowCommands(Dispatcher &dispatcher)
{
    for (const WindowCommand &command : windowCommands)
        dispatcher.bind(command.name, [routine = command.routine](int) { routine(); });
}
