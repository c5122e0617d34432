// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class CommandMenus;
class Dispatcher;
class DocumentArea;
class Entry;
class QString;
class StatusBar;
class Toolbar;
struct CommandState;

// Menus, toolbar and status bar of the main window as they show the state of the documents. ActiveState says when.
class MainSurface
{
public:
    MainSurface(CommandMenus &menus, Toolbar &toolbar, StatusBar &statusBar, const DocumentArea &area,
                const Dispatcher &dispatcher);

    // Recomputes what depends on the number of open documents.
    void MenuEnable(int documentCount);
    // Recomputes what depends on the active document, its selection and its focus.
    void MenuEnableDynamic();
    // Shows the formats at the text's selection and the expansion level as pressed toolbar buttons, and whether typing
    // overwrites.
    void UpdateToolbarStatus();
    // Shows an entry's label in the first status panel; nothing for no entry.
    void UpdateStatusBar(const Entry *entry);
    void UpdateStatusBarText(const QString &text);

private:
    void applyState(const CommandState &state);
    void showOverwriting();

    CommandMenus &m_menus;
    Toolbar &m_toolbar;
    StatusBar &m_statusBar;
    const DocumentArea &m_area;
    const Dispatcher &m_dispatcher;
};
