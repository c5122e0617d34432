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

QString ShownPathName(const QString &sFile)
{
    const QString home = QDir::homePath();
    return sFile == home || sFile.startsWith(home + u'/') ? u'~' + sFile.sliced(home.size()) : sFile;
}

QString RealPathName(const QString &sFile)
{
    const QFileInfo file(sFile);
    if (const QString sReal = file.canonicalFilePath(); !sReal.isEmpty())
        return sReal;
    const QString sFolder = QFileInfo(file.absolutePath()).canonicalFilePath();
    return sFolder.isEmpty() ? sFile : sFolder + u'/' + file.fileName();
}
