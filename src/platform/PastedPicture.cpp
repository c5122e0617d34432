// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/PastedPicture.h"

#include "model/Limits.h"
#include "rtf/Limits.h"
#include "rtf/Tables.h"
#include "rtf/Units.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QMimeData>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

QByteArray pngOf(const QImage &image)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "PNG") ? file : QByteArray();
}

} // namespace

bool PastedPicture::isIn(const QMimeData &source)
{
    return source.hasImage() || source.hasFormat("image/png"_L1) || source.hasFormat("image/jpeg"_L1);
}

QByteArray PastedPicture::fileIn(const QMimeData &source)
{
    for (const QLatin1StringView type : {"image/png"_L1, "image/jpeg"_L1}) {
        if (const QByteArray file = source.data(type); !file.isEmpty())
            return file;
    }
    const QImage image = source.hasImage() ? qvariant_cast<QImage>(source.imageData()) : QImage();
    return image.isNull() ? QByteArray() : pngOf(image);
}

std::optional<rtf::Picture> PastedPicture::fromFile(const QByteArray &file, int widest)
{
    rtf::Picture picture;
    picture.data = file;
    QBuffer buffer(&picture.data);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format();
    const QSize size = reader.size();
    if (file.size() > limits::largestPicture || !size.isValid() || size.isEmpty() ||
        qint64(size.width()) * size.height() > rtf::mostPicturePixels)
        return {};
    picture.kind = format == "jpeg" ? rtf::PictureKind::Jpeg : rtf::PictureKind::Png;
    if (format != "png" && format != "jpeg") {
        const QImage image = reader.read();
        picture.data = image.isNull() ? QByteArray() : pngOf(image);
        if (picture.data.isEmpty() || picture.data.size() > limits::largestPicture)
            return {};
    }
    const double scale = std::min(1.0, double(widest) / size.width());
    picture[rtf::PictureNumber::Width] = size.width();
    picture[rtf::PictureNumber::Height] = size.height();
    picture[rtf::PictureNumber::GoalWidth] = std::max(15, rtf::twipsFromPixels(size.width() * scale));
    picture[rtf::PictureNumber::GoalHeight] = std::max(15, rtf::twipsFromPixels(size.height() * scale));
    return picture;
}
