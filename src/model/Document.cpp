// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/Document.h"

#include <QFileInfo>

bool Document::bReadOnly() const
{
    const QString sFile = m_sFile.trimmed();
    if (sFile.isEmpty())
        return false;
    const QFileInfo info(sFile);
    if (!info.exists())
        return false;
    // A file marked read-only is read-only even to those, such as the superuser, whom the mark would not stop.
    return !info.permission(QFileDevice::WriteOwner) || !info.isWritable();
}
