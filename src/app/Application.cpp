// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Application.h"

#include "app/RecoveryList.h"
#include "app/frmAbout.h"
#include "app/modMain.h"
#include "platform/WorkProgress.h"
#include "search/frmSearch.h"
#include "search/modSearch.h"
#include "util/Numbers.h"
#include "util/Procedure.h"
#include "util/ProgramFiles.h"
#include "util/RunTimeError.h"
#include "util/SettingsStore.h"
#include "vault/RecoveryFolder.h"
#include "vault/VersionFolder.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QTimer>
#include <QUrl>

namespace
{

// The desktop's viewers open a help file at its contents only.
void showHelpFile(const QString &sFile, HelpTopic)
{
    if (!QFileInfo::exists(sFile) || !QDesktopServices::openUrl(QUrl::fromLocalFile(sFile)))
        throw RunTimeError(ErrorNumber::FileNotFound);
}

// What a user who wants other versions, or none, writes into the settings; the program itself stores none of it.
void takeVersionSettings(VersionKeeper &versions, const SettingsStore &settings)
{
    const QString section = QStringLiteral("Versions");
    constexpr int megabyteBits = 20;
    if (const auto keep = settings.value(section, QStringLiteral("Keep")))
        versions.setKeeping(Numbers::toBoolean(*keep));
    if (const auto most = settings.value(section, QStringLiteral("MostMegabytes")))
        versions.setMostBytes(qint64(Numbers::toInt32(Numbers::toNumber(*most))) << megabyteBits);
}

} // namespace

Application::Application(const QStringList &arguments)
    : m_log(SessionLog::folders(QCoreApplication::applicationDirPath()))
    , m_settings(IniSettingsStore::FirstSettings{sharedFile(QStringLiteral("first.ini"))})
    , m_versions(versionsFolder())
    , m_vault(Vault::Settings{recoveryFolder()})
    , m_recentFiles(m_settings, m_mainWindow.recentFileItems())
    , m_printing(m_printerDialogs, &m_mainWindow)
    , m_sessionEnd(m_mainWindow)
{
    ports() = {&m_mainWindow.windows(),
               &m_dialogs,
               &m_pointer,
               &m_recentFiles,
               &m_clipboard,
               &m_clock,
               &m_printing,
               &m_versions};
    appPorts() = {&m_settings, &m_mainWindow, &m_recentFiles, &m_log, arguments.join(u' '), &m_lockKeys};
    appPorts().arguments = arguments;
    appPorts().showHelpFile = showHelpFile;
    appPorts().keeper = &m_keeper;
    appPorts().vault = &m_vault;
    appPorts().versions = &m_versions;
    searchPorts() = {&m_settings, [this] { frmSearch(&m_mainWindow).exec(); }, modMain::SaveSettings,
                     [](const QString &what) { return workProgress(what, QApplication::activeWindow()); }};
    setErrorReporter(modMain::ReportError);
    setRemarkWriter(modMain::WriteLog);
    procedure("Application takeVersionSettings", [this] { takeVersionSettings(m_versions, m_settings); });
}

Application::~Application()
{
    appPorts().keeper = nullptr;
    appPorts().vault = nullptr;
    appPorts().versions = nullptr;
    setErrorReporter(nullptr);
    setRemarkWriter(nullptr);
}

void Application::Main()
{
    procedure("modMain Main", [this] {
        // Whoever opens large documents sees at once that the program has started.
        frmAbout banner(nullptr, frmAbout::Banner);
        banner.show();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        m_mainWindow.MDIForm_Load();
        banner.close();
        m_mainWindow.show();
        // Once the window is there to be seen.
        QTimer::singleShot(0, &m_mainWindow, [this] { RecoveryList::offer(m_vault, &m_mainWindow); });
    });
}

int Application::exec()
{
    return m_sessionEnd.exitStatus() ? *m_sessionEnd.exitStatus() : QApplication::exec();
}

QDateTime Application::SystemClock::now() const
{
    return QDateTime::currentDateTime();
}
