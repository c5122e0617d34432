// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

class CommandMenus;
class DocumentArea;
class StatusBar;
class Toolbar;
struct CommandState;

// Menus, toolbar and status bar of the main window, as they follow the documents.
class MainSurface final : public CommandSurface
{
public:
    MainSurface(CommandMenus &menus, Toolbar &toolbar, StatusBar &statusBar, const DocumentArea &area);

    void MenuEnable(int documentCount) override;
    void MenuEnableDynamic() override;
    void UpdateToolbarStatus() override;
    void UpdateStatusBar(const Entry *entry) override;
    void UpdateStatusBarText(const QString &text) override;

private:
    void applyState(const CommandState &state);
    void showOverwriting();

    CommandMenus &m_menus;
    Toolbar &m_toolbar;
    StatusBar &m_statusBar;
    const DocumentArea &m_area;
};
