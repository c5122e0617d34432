// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandState.h"
#include "document/Globals.h"

#include <QObject>

#include <optional>

class CommandMenus;
class Dispatcher;
class DocumentArea;
class MainSurface;
class Toolbar;
class frmDocument;

// Keeps menus, toolbar and status bar at what the documents are: it listens to all that they announce, and nobody who
// changes something has to tell. Many announcements make one refresh, which comes when the event loop comes round, and
// before that when a menu opens or a command is done.
class ActiveState final : public QObject
{
    Q_OBJECT

public:
    ActiveState(DocumentArea &area, Dispatcher &dispatcher, CommandMenus &menus, Toolbar &toolbar,
                MainSurface &surface);

    // What decides over commands beside the documents was changed.
    void noteCommands() { note(Commands); }

    // Shows what is due.
    void showNow();

private:
    // What is shown, each by its own rules and with its own costs.
    enum Part { Commands = 1, Formats = 2, StatusText = 4 };

    void follow(frmDocument *form);
    void note(int parts);
    void noteOfActive(const frmDocument *form, int parts);
    void showCommands();
    void showStatusText();

    DocumentArea &m_area;
    Dispatcher &m_dispatcher;
    MainSurface &m_surface;
    int m_due = 0;
    bool m_posted = false;
    // What menus and toolbar show now; none when they may show something else.
    std::optional<CommandState> m_shown;
    Options m_shownOptions;
};
