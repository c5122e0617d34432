// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>

class QMimeData;

namespace rtf
{
struct Picture;
}

// Pictures from the clipboard, from drops and out of web pages.
namespace PastedPicture
{

bool isIn(const QMimeData &source);

// The file of the picture, in its own format where rich text holds that; empty when there is none.
QByteArray fileIn(const QMimeData &source);

// A picture as a text holds it, by its own size but no wider than that many pixels. Nothing for what is no picture,
// and for one beyond the bounds (limits::largestPicture, rtf::mostPicturePixels).
std::optional<rtf::Picture> fromFile(const QByteArray &file, int widest);

} // namespace PastedPicture
