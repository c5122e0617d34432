// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/RecordText.h"

#include "formats/RecordNames.h"
#include "model/StoredText.h"

#include "util/RunTimeError.h"

#include <zlib.h>

#include <cstring>

using namespace Qt::StringLiterals;

namespace
{

qsizetype findOpener(QByteArrayView bytes, qsizetype from)
{
    const QByteArrayView rest = bytes.sliced(from);
    // Of a text without bytes there may be no address either, which memmem does not take.
    if (rest.size() < recordNames::opener.size())
        return -1;
    const void *found = memmem(rest.data(), static_cast<size_t>(rest.size()), recordNames::opener.data(),
                               static_cast<size_t>(recordNames::opener.size()));
    return found ? static_cast<const char *>(found) - bytes.data() : -1;
}

bool holdsOpener(QByteArrayView bytes)
{
    return findOpener(bytes, 0) >= 0;
}

// A block of a deflate stream that holds its bytes as they are (RFC 1951, 3.2.4).
void appendStoredBlock(QByteArray &stream, QByteArrayView bytes, char lastBlock)
{
    const auto size = static_cast<quint16>(bytes.size());
    stream += lastBlock;
    for (const int part : {size & 0xFF, size >> 8, ~size & 0xFF, ~size >> 8})
        stream += static_cast<char>(part);
    stream += bytes;
}

// A zlib stream of stored blocks that end within every opener. The five bytes before a block hide what stands around
// them: the first is none of an opener's, and the last is none either, because no block is longer than 32767 bytes. The
// empty block at the end does the same for the check sum.
QByteArray streamWithoutOpener(QByteArrayView text)
{
    constexpr qsizetype longestBlock = 32767;
    QByteArray stream = QByteArray::fromHex("7801");
    stream.reserve(text.size() + text.size() / longestBlock * 5 + 64);
    qsizetype start = 0;
    qsizetype opener = findOpener(text, 0);
    while (start < text.size()) {
        if (opener >= 0 && opener < start)
            opener = findOpener(text, start);
        const qsizetype end = opener >= 0 ? opener + 1 : text.size();
        const qsizetype size = qMin(end - start, longestBlock);
        appendStoredBlock(stream, text.sliced(start, size), 0);
        start += size;
    }
    appendStoredBlock(stream, {}, 1);
    const uLong sum = adler32_z(adler32_z(0, nullptr, 0), reinterpret_cast<const Bytef *>(text.data()),
                                static_cast<z_size_t>(text.size()));
    for (const int shift : {24, 16, 8, 0})
        stream += static_cast<char>(sum >> shift);
    return stream;
}

} // namespace

QByteArray recordText(const QByteArray &storedText)
{
    if (!holdsOpener(storedText))
        return storedText;
    const auto [text, state] = inflated(storedText);
    if (state == TextState::Beginning)
        throw RunTimeError(ErrorNumber::OutOfMemory, u"Out of memory: a text is too long to be written"_s);
    if (text != storedText && !readsAsCompressed(text) && !holdsOpener(text))
        return text;
    const QByteArray compressed = NodeTextCompressIfRequired(text);
    if (!holdsOpener(compressed))
        return compressed;
    return QByteArray::number(text.size()) + ',' + streamWithoutOpener(text);
}
