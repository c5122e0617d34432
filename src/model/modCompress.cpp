// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/modCompress.h"

#include "model/Limits.h"

#include "util/Numbers.h"

#include <zlib.h>

#include <algorithm>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace
{

// Every compression takes some 256 KB and gives them back. Returned to the system each time, as the C library would do,
// they cost more than compressing an ordinary text.
void keepFreedMemory()
{
#ifdef __GLIBC__
    constexpr int keptBytes = 16 << 20;
    [[maybe_unused]] static const bool kept =
        mallopt(M_MMAP_THRESHOLD, keptBytes / 4) != 0 && mallopt(M_TRIM_THRESHOLD, keptBytes) != 0;
#endif
}

} // namespace

namespace modCompress
{

int CompressString(const QByteArray &text, QByteArray &compressed)
{
    keepFreedMemory();
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
    const qint64 bounded = std::min<qint64>(reachable, limits::longestInflated);
    QByteArray buffer(static_cast<qsizetype>(std::min<qint64>(length, bounded)), Qt::Uninitialized);
    uLongf size = static_cast<uLongf>(buffer.size());
    const int result =
        uncompress(reinterpret_cast<Bytef *>(buffer.data()), &size,
                   reinterpret_cast<const Bytef *>(compressed.constData()), static_cast<uLong>(compressed.size()));
    if (result == Z_OK || result == Z_BUF_ERROR) {
        buffer.truncate(static_cast<qsizetype>(size));
        text = buffer;
    }
    return result;
}

} // namespace modCompress
