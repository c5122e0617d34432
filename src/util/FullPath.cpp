// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/FullPath.h"

#include <QDir>
#include <QFileInfo>

QString FullPathName(const QString &sFile)
{
    if (sFile.isEmpty())
        return QString();
    return QDir::cleanPath(QFileInfo(sFile).absoluteFilePath());
}
