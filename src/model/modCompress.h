// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

// Compression of entry texts into zlib streams (RFC 1950). Both return zlib's result code; the result is set on 0.
namespace modCompress
{

// zlib's `compress` at its default level into a buffer of length x 1.01 + 12.
int CompressString(const QByteArray &text, QByteArray &compressed);

// zlib's `uncompress` into a buffer of the stated length; a length that the bytes cannot reach is not allocated, nor
// one beyond limits::longestInflated. When the buffer is too short (-5), the text is the beginning that it holds.
int DecompressString(const QByteArray &compressed, qint32 length, QByteArray &text);

} // namespace modCompress
