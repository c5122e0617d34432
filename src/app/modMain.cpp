// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/modMain.h"

#include "app/AppPorts.h"
#include "app/SessionKeeper.h"
#include "app/SessionLog.h"
#include "app/modHelp.h"
#include "app/modMRU.h"
#include "document/Document.h"
#include "document/Globals.h"
#include "document/Ports.h"
#include "document/modDoc.h"
#include "document/modFile.h"
#include "util/Blanks.h"
#include "util/FullPath.h"
#include "util/Procedure.h"
#include "util/SettingsStore.h"
#include "util/modString.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace
{

constexpr QLatin1StringView recordLineEnd("\r\n");

// The base of the error numbers that components define for themselves.
constexpr qint32 objectErrorBase = -2147221504;

const QString workspaceSection = u"Workspace"_s;

QString dateAndTime()
{
    const QDateTime now = ports().clock->now();
    const QLocale locale = QLocale::system();
    return locale.toString(now.date(), QLocale::ShortFormat) + u' ' + locale.toString(now.time(), QLocale::ShortFormat);
}

QString applicationHelpFile()
{
    const QFileInfo program(QCoreApplication::applicationFilePath());
    return program.dir().filePath(program.baseName() + u".hlp"_s);
}

QString errorRecord(const ErrorReport &report)
{
    QString record = u"Error "_s;
    qint32 number = report.number;
    // Only the base itself counts as a component's error, not the numbers above it.
    if (number == objectErrorBase) {
        record += u"returned by VB object "_s;
        number -= objectErrorBase;
    }
    return record + QString::number(number) + u" - "_s + report.description + recordLineEnd + report.source + u' ' +
           g_sProcedure;
}

} // namespace

namespace modMain
{

void Initialise()
{
    procedure("modMain Initialise", [] {
        WriteLog(u"Session started at "_s + dateAndTime());
        appPorts().helpFile = applicationHelpFile();
        InitialiseGlobals();
        LoadSettings();
        appPorts().recentFiles->LoadMRUFiles();
        if (appPorts().keeper)
            appPorts().keeper->start();
        LoadInitialFiles();
    });
}

void Finalise()
{
    procedure("modMain Finalise", [] {
        if (appPorts().keeper)
            appPorts().keeper->stop();
        StoreState();
        WriteLog(u"Session ended at "_s + dateAndTime());
    });
}

void StoreState()
{
    SaveSettings();
    appPorts().recentFiles->SaveMRUFiles();
    SaveWorkingFiles();
}

QStringList GetCommandLineFiles(const QString &arguments)
{
    return procedure("modMain GetCommandLineFiles", [&] {
        QStringList files;
        const QString text = withoutOuterBlanks(arguments);
        for (const QString &name : text.split(u' ', Qt::SkipEmptyParts)) {
            const QString sFile = FullPathName(name);
            if (modString::FileExists(sFile))
                files.append(sFile);
        }
        return files.isEmpty() ? QStringList(QString()) : files;
    });
}

QStringList GetArgumentFiles(const QStringList &arguments)
{
    return procedure("modMain GetArgumentFiles", [&] {
        QStringList files;
        for (const QString &argument : arguments) {
            const QString sFile = argument.isEmpty() ? QString() : FullPathName(argument);
            if (!sFile.isEmpty() && modString::FileExists(sFile))
                files.append(sFile);
            else
                files.append(GetCommandLineFiles(argument));
        }
        return files;
    });
}

QStringList ExistingFiles(const QStringList &names)
{
    QStringList files;
    for (const QString &name : names) {
        if (const QString sFile = FullPathName(name); modString::FileExists(sFile))
            files.append(sFile);
    }
    return files;
}

void LoadInitialFiles()
{
    procedure("modMain LoadInitialFiles", [] {
        bool bFileGiven = false;
        const QStringList &arguments = appPorts().arguments;
        for (const QString &sFile : ExistingFiles(arguments.isEmpty() ? GetCommandLineFiles(appPorts().commandLine)
                                                                      : GetArgumentFiles(arguments))) {
            bFileGiven = true;
            if (!modDoc::showOrLoad(sFile))
                return;
        }
        if (bFileGiven)
            return;
        if (g_options.StartWithLatestDocuments)
            LoadWorkingFiles();
        if (g_options.StartWithNewDocument)
            modFile::FileNew();
    });
}

QStringList WorkingFiles()
{
    QStringList files;
    for (const auto &[key, name] : appPorts().settings->section(workspaceSection))
        files.append(name);
    return files;
}

QStringList OpenFiles()
{
    QStringList files;
    for (const Document *document : ports().windows->documents())
        files.append(document->m_sFile);
    return files;
}

void LoadWorkingFiles()
{
    procedure("modMain LoadWorkingFiles", [] {
        for (const QString &name : WorkingFiles()) {
            const QString sFile = FullPathName(name);
            // One damaged document is no reason to lose sight of the others.
            if (modString::FileExists(sFile))
                modDoc::DocLoad(sFile);
        }
    });
}

void SaveWorkingFiles()
{
    procedure("modMain SaveWorkingFiles", [] {
        SettingsStore &settings = *appPorts().settings;
        for (const auto &[key, name] : settings.section(workspaceSection))
            settings.removeValue(workspaceSection, key);
        int counter = 0;
        for (const QString &sFile : OpenFiles())
            settings.setValue(workspaceSection, QString::number(++counter), sFile);
        settings.flush();
    });
}

void WriteLog(const QString &record)
{
    try {
        g_sProcedure = u"modMain WriteLog"_s;
        if (appPorts().log)
            appPorts().log->append(record);
    } catch (...) {
        // A report of this failure would have to be written to the very same log.
    }
}

void ReportError(const ErrorReport &report)
{
    WriteLog(errorRecord(report));
    if (MousePointer *pointer = ports().pointer)
        pointer->setHourglass(false);
}

} // namespace modMain
