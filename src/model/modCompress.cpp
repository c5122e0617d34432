// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/modCompress.h"

#include "util/Numbers.h"

#include <zlib.h>

#include <algorithm>

namespace modCompress
{

int CompressString(const QByteArray &text, QByteArray &compressed)
{
    const qint32 bufferSize = Numbers::toInt32(static_cast<double>(text.size()) * 1.01 + 12);
    QByteArray buffer(bufferSize, Qt::Uninitialized);
    uLongf size = static_cast<uLongf>(bufferSize);
    const int result = compress(reinterpret_cast<Bytef *>(buffer.data()), &size,
                                reinterpret_cast<const Bytef *>(text.constData()), static_cast<uLong>(text.size()));
    if (result == Z_OK) {
        buffer.truncate(static_cast<qsizetype>(size));
        buffer.squeeze();
        compressed = buffer;
    }
    return result;
}

int DecompressString(const QByteArray &compressed, qint32 length, QByteArray &text)
{
    // Deflate expands at most 1032 times, so a longer stated length is never reached and need not be allocated.
    constexpr qint64 maximumExpansion = 1032;
    const qint64 reachable = static_cast<qint64>(compressed.size()) * maximumExpansion;
    QByteArray buffer(static_cast<qsizetype>(std::min<qint64>(length, reachable)), Qt::Uninitialized);
    uLongf size = static_cast<uLongf>(buffer.size());
    const int result =
        uncompress(reinterpret_cast<Bytef *>(buffer.data()), &size,
                   reinterpret_cast<const Bytef *>(compressed.constData()), static_cast<uLong>(compressed.size()));
    if (result == Z_OK) {
        buffer.truncate(static_cast<qsizetype>(size));
        text = buffer;
    }
    return result;
}

} // namespace modCompress
