// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Limits.h"
#include "rtf/Tables.h"

#include <QLatin1StringView>
#include <QTextImageFormat>

#include <optional>

class QTextDocument;

namespace rtf
{

// How the names of pictures in a document's resources begin. They name no file, and every one has its resource, so that
// nothing looks for one.
inline constexpr QLatin1StringView pictureNames("quillery:picture/");

// Puts a picture into the document's resources and gives the format that shows it. PNG, JPEG, BMP and DIB are shown; of
// other kinds, damaged ones and too large ones, the place is. The bytes stay as they came. No file is ever looked for.
// What it shows is taken from `pixelsLeft`.
QTextImageFormat addPicture(QTextDocument &document, const Picture &picture, const QTextCharFormat &around,
                            qint64 &pixelsLeft);

// The bytes of a picture as they came, by its format's name: what the document has of them, and put into another
// document, in which the picture then is, though it shows nothing.
QByteArray pictureBytes(const QTextDocument &document, const QString &name);
void addPictureBytes(QTextDocument &document, const QString &name, const QByteArray &bytes);

// The picture that a format of the document shows, sizes as they are shown now; none for one that is not held in the
// document.
std::optional<Picture> pictureOf(const QTextDocument &document, const QTextImageFormat &format);

} // namespace rtf
