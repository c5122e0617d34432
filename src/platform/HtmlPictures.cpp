// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/HtmlPictures.h"

#include "model/Limits.h"
#include "rtf/Pictures.h"

#include <QBuffer>
#include <QHash>
#include <QImageReader>
#include <QTextDocument>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto sourceBegin = "src=\""_L1;

// A picture as an address that holds it; empty for what is no file of a picture.
QByteArray pictureAddress(QByteArray file)
{
    QBuffer buffer(&file);
    QImageReader reader(&buffer);
    QByteArray format = reader.format();
    if (format.isEmpty())
        return {};
    // Others than these are not shown everywhere.
    if (format != "png" && format != "jpeg" && format != "gif") {
        const QImage image = reader.read();
        buffer.close();
        QBuffer png(&file);
        if (image.isNull() || !image.save(&png, "PNG"))
            return {};
        format = "png";
    }
    return "data:image/" + format + ";base64," + file.toBase64();
}

} // namespace

QString htmlWithPictures(const QString &html, const QTextDocument &document)
{
    const QString begin = sourceBegin + QString(rtf::pictureNames);
    QHash<QString, QByteArray> addresses;
    qsizetype left = limits::mostCopiedPictures;
    QString page;
    qsizetype done = 0;
    for (qsizetype at = html.indexOf(begin); at >= 0; at = html.indexOf(begin, done)) {
        const qsizetype nameAt = at + sourceBegin.size();
        const qsizetype end = html.indexOf(u'"', nameAt);
        if (end < 0)
            break;
        const QString name = html.sliced(nameAt, end - nameAt);
        if (!addresses.contains(name)) {
            const QByteArray file = document.resource(QTextDocument::ImageResource, QUrl(name)).toByteArray();
            addresses[name] = file.size() <= left ? pictureAddress(file) : QByteArray();
        }
        const QByteArray &address = addresses[name];
        const bool fits = !address.isEmpty() && address.size() <= left;
        page += QStringView(html).sliced(done, at - done);
        page += fits ? sourceBegin + QString::fromLatin1(address) : u"alt=\""_s;
        left -= fits ? address.size() : 0;
        done = end;
    }
    page += QStringView(html).sliced(done);
    return page;
}
