// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/Document.h"

#include "model/DocumentWindow.h"

#include <QFileInfo>

#include <algorithm>

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

void Document::tell(DocumentNotice told)
{
    const auto place = std::ranges::lower_bound(m_notices, told.kind, {}, &DocumentNotice::kind);
    if (place == m_notices.end() || place->kind != told.kind)
        m_notices.insert(place, std::move(told));
    else if (*place == told)
        return;
    else
        *place = std::move(told);
    window.noticesChanged();
}

void Document::dismiss(NoticeKind kind)
{
    if (std::erase_if(m_notices, [kind](const DocumentNotice &told) { return told.kind == kind; }) > 0)
        window.noticesChanged();
}

bool Document::hasNotice(NoticeKind kind) const
{
    return std::ranges::find(m_notices, kind, &DocumentNotice::kind) != m_notices.end();
}
