// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/ProgramFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QString sharedFile(const QString &name)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../share/quillery/"_s + name);
}

QString programFile(const QString &name)
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString beside = folder.filePath(name);
    const QString shared = sharedFile(name);
    return !QFileInfo::exists(beside) && QFileInfo::exists(shared) ? shared : beside;
}
