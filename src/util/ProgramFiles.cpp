// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/ProgramFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QString sharedFolder(const QString &programFolder)
{
    return QDir::cleanPath(programFolder + u'/' + QStringLiteral(QUILLERY_DATA_FROM_PROGRAM));
}

QString sharedFile(const QString &name)
{
    return sharedFolder(QCoreApplication::applicationDirPath()) + u'/' + name;
}

QString programFile(const QString &name)
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString beside = folder.filePath(name);
    const QString shared = sharedFile(name);
    return !QFileInfo::exists(beside) && QFileInfo::exists(shared) ? shared : beside;
}
