// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AppPorts.h"
#include "app/SessionEnd.h"
#include "app/SessionKeeper.h"
#include "app/SessionLog.h"
#include "app/frmMain.h"
#include "app/modMRU.h"
#include "platform/DesktopClipboard.h"
#include "platform/DesktopColours.h"
#include "platform/IniSettingsStore.h"
#include "platform/LockKeys.h"
#include "platform/MessageDialogs.h"
#include "platform/ScreenPointer.h"
#include "print/PrintWindows.h"
#include "print/PrinterDialogs.h"
#include "vault/Vault.h"
#include "vault/VersionKeeper.h"

// The program's parts put together, with every port registered as long as it lives. It needs a QApplication.
class Application
{
public:
    // The arguments of the command line, which name files.
    explicit Application(const QStringList &arguments);
    ~Application();
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    // Loads the main window and shows it.
    void Main();
    // Runs the program to its end; the exit status.
    int exec();

    frmMain &mainWindow() { return m_mainWindow; }

private:
    class SystemClock final : public Clock
    {
    public:
        QDateTime now() const override;
    };

    SessionLog m_log;
    SystemClock m_clock;
    IniSettingsStore m_settings;
    MessageDialogs m_dialogs;
    VersionKeeper m_versions;
    ScreenPointer m_pointer;
    DesktopClipboard m_clipboard;
    DesktopColours m_colours;
    DesktopLockKeys m_lockKeys;
    // The documents go first.
    Vault m_vault;
    frmMain m_mainWindow;
    modMRU m_recentFiles;
    DesktopPrinterDialogs m_printerDialogs;
    PrintWindows m_printing;
    SessionKeeper m_keeper;
    SessionEnd m_sessionEnd;
};
