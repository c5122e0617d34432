// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Application.h"

#include "app/modMain.h"
#include "search/frmSearch.h"
#include "search/modSearch.h"
#include "util/Procedure.h"

#include <QCoreApplication>

Application::Application(const QString &commandLine)
    : m_log(SessionLog::folders(QCoreApplication::applicationDirPath()))
    , m_recentFiles(m_settings, m_mainWindow.recentFileItems())
{
    ports() = {&m_mainWindow,  &m_mainWindow, &m_dialogs, &m_pointer,
               &m_recentFiles, &m_clipboard,  &m_formats, &m_clock};
    appPorts() = {&m_settings, &m_mainWindow, &m_recentFiles, &m_log, commandLine, &m_lockKeys};
    searchPorts() = {&m_settings, [this] { frmSearch(&m_mainWindow).exec(); }, modMain::SaveSettings};
    setErrorReporter(modMain::ReportError);
}

Application::~Application()
{
    setErrorReporter(nullptr);
}

void Application::Main()
{
    procedure("modMain Main", [this] {
        m_mainWindow.MDIForm_Load();
        m_mainWindow.show();
    });
}

QDateTime Application::SystemClock::now() const
{
    return QDateTime::currentDateTime();
}
