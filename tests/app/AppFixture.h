// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AppFakes.h"
#include "app/SessionLog.h"
#include "app/modMRU.h"
#include "app/modMain.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"
#include "util/Procedure.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

// A run of the program without its windows: every port a fake, the session log a real file in a folder of its own,
// errors reported as the program does.
class AppFixture
{
public:
    AppFixture()
        : m_before(appPorts())
    {
        ports().recentFiles = &recentFiles;
        appPorts() = {&settings, &mainWindow, &recentFiles, &log, QString(), &lockKeys};
        setErrorReporter(modMain::ReportError);
    }

    ~AppFixture()
    {
        setErrorReporter(nullptr);
        appPorts() = m_before;
    }

    AppFixture(const AppFixture &) = delete;
    AppFixture &operator=(const AppFixture &) = delete;

    // The session log's lines.
    QStringList logLines() const
    {
        QFile file(folder.filePath(QStringLiteral("Quillery.log")));
        if (!file.open(QIODevice::ReadOnly))
            return QStringList();
        return QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    }

    // Makes a file in the fixture's folder and returns its path.
    // A document of one entry, unless the contents say otherwise.
    QString makeFile(const QString &name, const QByteArray &contents = nativeBytes({QStringLiteral("Root")})) const
    {
        const QString path = folder.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
            QTest::qFail("cannot make a file", __FILE__, __LINE__);
        return path;
    }

    // The files of the open documents.
    QStringList openFiles() const
    {
        QStringList files;
        for (const auto &fake : core.windows.open)
            files.append(fake->document.m_sFile);
        return files;
    }

    QTemporaryDir folder;
    FakePorts core;
    FakeSettingsStore settings;
    FakeMainWindow mainWindow;
    FakeRecentFileItems recentFileItems;
    modMRU recentFiles{settings, recentFileItems};
    FakeClock &clock = core.clock;
    FakeLockKeys lockKeys;
    SessionLog log{{folder.path()}};

private:
    AppPorts m_before;
};
