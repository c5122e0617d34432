// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DroppedFiles.h"

#include <QMimeData>
#include <QUrl>

using namespace Qt::StringLiterals;

QStringList droppedFiles(const QMimeData &data)
{
    QStringList files;
    for (const QUrl &url : data.urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    if (!files.isEmpty())
        return files;
    if (data.hasText() && !data.hasUrls())
        return {data.text()};
    for (const QString &format : {u"text/rtf"_s, u"application/rtf"_s, u"text/richtext"_s}) {
        if (data.hasFormat(format))
            return {QString::fromLatin1(data.data(format))};
    }
    return files;
}
