// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Pictures.h"

#include "rtf/Properties.h"
#include "rtf/Units.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>
#include <QImageReader>
#include <QStringList>
#include <QTextDocument>
#include <QUrl>
#include <QtEndian>

#include <algorithm>

namespace rtf
{

namespace
{

constexpr int originalBytes = QTextDocument::UserResource + 1;

// Where the bytes are kept as they came: a document keeps one resource under each name, whatever its type.
QUrl originalUrl(const QString &name)
{
    return QUrl(name + QLatin1StringView("/original"));
}

constexpr qint32 himetricPerInch = 2540;
constexpr qint32 twipsPerInch = 1440;
constexpr int defaultPixels = 32;

quint32 littleEndian32(const QByteArray &bytes, qsizetype at)
{
    return at + 4 <= bytes.size() ? qFromLittleEndian<quint32>(bytes.constData() + at) : 0;
}

quint16 littleEndian16(const QByteArray &bytes, qsizetype at)
{
    return at + 2 <= bytes.size() ? qFromLittleEndian<quint16>(bytes.constData() + at) : quint16(0);
}

// A device-independent bitmap is a BMP file without its first 14 bytes.
QByteArray bmpFromDib(const QByteArray &dib)
{
    constexpr quint32 fileHeader = 14;
    constexpr quint32 infoHeader = 40;
    constexpr quint32 bitFields = 3;
    const quint32 header = littleEndian32(dib, 0);
    const quint16 bits = littleEndian16(dib, 14);
    quint32 palette = 0;
    if (header >= infoHeader) {
        const quint32 used = littleEndian32(dib, 32);
        palette = 4 * (bits <= 8 ? (used != 0 ? used : 1u << bits) : 0);
        palette += header == infoHeader && littleEndian32(dib, 16) == bitFields ? 12 : 0;
    } else if (bits <= 8) {
        palette = 3 * (1u << bits);
    }
    QByteArray file("BM");
    const auto append = [&file](quint32 value) {
        const quint32 bytes = qToLittleEndian(value);
        file.append(reinterpret_cast<const char *>(&bytes), sizeof bytes);
    };
    append(static_cast<quint32>(dib.size()) + fileHeader);
    append(0);
    append(fileHeader + header + palette);
    return file + dib;
}

// What the document's resources hold for a picture's kind: a file that Qt reads, or nothing.
QByteArray shownBytes(const Picture &picture)
{
    switch (picture.kind) {
    case PictureKind::Wmf:
    case PictureKind::Emf:
    case PictureKind::MacPict:
    case PictureKind::Os2:
    case PictureKind::Bitmap:
        return {};
    case PictureKind::Dib:
        return bmpFromDib(picture.data);
    default:
        return picture.data;
    }
}

QImage placeholder()
{
    QImage image(defaultPixels, defaultPixels, QImage::Format_RGB32);
    image.fill(qRgb(128, 128, 128));
    for (int y = 1; y < defaultPixels - 1; ++y) {
        for (int x = 1; x < defaultPixels - 1; ++x) {
            image.setPixel(x, y, qRgb(224, 224, 224));
        }
    }
    return image;
}

// One side of a picture in twips: as the text wants it, else by the picture's own size.
qint32 side(const Picture &picture, PictureNumber goal, PictureNumber scale, PictureNumber own, int pixels)
{
    qint64 twips = picture[goal];
    if (twips <= 0) {
        const bool isMetafile = picture.kind == PictureKind::Wmf || picture.kind == PictureKind::Emf;
        const qint64 size = std::clamp(picture[own], 0, 1'000'000);
        // Pictures of the Macintosh count in points, others in pixels.
        const int unit = picture.kind == PictureKind::MacPict ? 20 : 15;
        twips = isMetafile ? size * twipsPerInch / himetricPerInch : size * unit;
    }
    if (twips <= 0) {
        twips = (pixels > 0 ? pixels : defaultPixels) * 15;
    }
    twips = std::min<qint64>(twips, 100 * longestLength);
    const qint32 percent = picture[scale] > 0 ? std::min(picture[scale], 10000) : 100;
    return static_cast<qint32>(std::clamp<qint64>((twips * percent + 50) / 100, 15, longestLength));
}

// The numbers that the image format does not hold, in the order in which they stand in its property.
constexpr PictureNumber keptNumbers[] = {
    PictureNumber::KindNumber, PictureNumber::Width,     PictureNumber::Height,     PictureNumber::CropLeft,
    PictureNumber::CropTop,    PictureNumber::CropRight, PictureNumber::CropBottom, PictureNumber::Bits,
    PictureNumber::Planes,     PictureNumber::Stride,
};

} // namespace

QTextImageFormat addPicture(QTextDocument &document, const Picture &picture, const QTextCharFormat &around,
                            qint64 &pixelsLeft)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(picture.data);
    const char kind = static_cast<char>(picture.kind);
    hash.addData(QByteArrayView(&kind, 1));
    const QString name = pictureNames + QString::fromLatin1(hash.result().toHex());

    QByteArray bytes = shownBytes(picture);
    QBuffer buffer(&bytes);
    const QSize size = bytes.isEmpty() ? QSize() : QImageReader(&buffer).size();
    const qint64 pixels = size.isValid() ? qint64(size.width()) * size.height() : 0;
    const bool isShown = size.isValid() && pixels <= std::min(mostPicturePixels, pixelsLeft);
    if (isShown) {
        pixelsLeft -= pixels;
    }
    const QUrl url(name);
    document.addResource(QTextDocument::ImageResource, url, isShown ? QVariant(bytes) : QVariant(placeholder()));
    addPictureBytes(document, name, picture.data);

    QTextImageFormat format;
    format.merge(around);
    format.setName(name);
    format.setWidth(pixelsFromTwips(side(picture, PictureNumber::GoalWidth, PictureNumber::ScaleX, PictureNumber::Width,
                                         isShown ? size.width() : 0)));
    format.setHeight(pixelsFromTwips(side(picture, PictureNumber::GoalHeight, PictureNumber::ScaleY,
                                          PictureNumber::Height, isShown ? size.height() : 0)));
    QStringList kept{QString::number(int(picture.kind))};
    for (const PictureNumber number : keptNumbers) {
        kept << QString::number(picture[number]);
    }
    format.setProperty(PictureProperty, kept.join(QLatin1Char(' ')));
    return format;
}

QByteArray pictureBytes(const QTextDocument &document, const QString &name)
{
    return document.resource(originalBytes, originalUrl(name)).toByteArray();
}

void addPictureBytes(QTextDocument &document, const QString &name, const QByteArray &bytes)
{
    document.addResource(originalBytes, originalUrl(name), bytes);
}

std::optional<Picture> pictureOf(const QTextDocument &document, const QTextImageFormat &format)
{
    if (!format.name().startsWith(pictureNames)) {
        return {};
    }
    Picture picture;
    const QStringList kept = format.stringProperty(PictureProperty).split(QLatin1Char(' '));
    picture.kind = static_cast<PictureKind>(std::clamp(kept.value(0).toInt(), 0, int(PictureKind::Os2)));
    for (std::size_t i = 0; i < std::size(keptNumbers); ++i) {
        picture[keptNumbers[i]] = kept.value(qsizetype(i) + 1).toInt();
    }
    picture[PictureNumber::GoalWidth] = std::clamp(twipsFromPixels(format.width()), 15, longestLength);
    picture[PictureNumber::GoalHeight] = std::clamp(twipsFromPixels(format.height()), 15, longestLength);
    picture.data = pictureBytes(document, format.name());
    return picture;
}

} // namespace rtf
