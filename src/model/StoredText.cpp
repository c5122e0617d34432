// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/StoredText.h"

#include "model/modCompress.h"

#include "util/Numbers.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <limits>

QByteArray NodeTextCompressIfRequired(const QByteArray &text)
{
    QByteArray storedText = text;
    procedure("modNodes NodeTextCompressIfRequired", [&] {
        // A length of 0 would not be read as one: an empty text stays empty.
        QByteArray compressed;
        if (bCompressText && !text.isEmpty() && modCompress::CompressString(text, compressed) == 0)
            storedText = QByteArray::number(text.size()) + ',' + compressed;
    });
    return storedText;
}

namespace
{

// What a stored form holds: where its compressed bytes begin and how long their text is; 0 for a plain text.
struct CompressedPart {
    qsizetype start = 0;
    qint32 length = 0;
};

CompressedPart compressedPart(const QByteArray &storedText)
{
    if (storedText.startsWith('{'))
        return {};
    const qsizetype comma = storedText.indexOf(',');
    if (comma < 0)
        return {};
    if (comma + 1 > std::numeric_limits<qint16>::max())
        throw RunTimeError(ErrorNumber::Overflow);
    const double length = Numbers::leadingNumber(QByteArrayView(storedText).first(comma));
    return {comma + 1, length > 0 ? Numbers::toInt32(length) : 0};
}

} // namespace

bool readsAsCompressed(const QByteArray &text)
{
    try {
        return compressedPart(text).length > 0;
    } catch (const RunTimeError &) {
        return false;
    }
}

QByteArray NodeTextDecompressIfRequired(const QByteArray &storedText)
{
    constexpr auto name = "modNodes NodeTextDecompressIfRequired";
    detail::enterProcedure(name);
    CompressedPart part;
    try {
        part = compressedPart(storedText);
    } catch (const RunTimeError &error) {
        // Reported here rather than passed on: a text that reads like no stored form is still a text to show and save.
        reportError(name, error);
    }
    if (part.length == 0)
        return storedText;
    const QByteArray compressed = storedText.sliced(part.start);
    QByteArray text;
    return modCompress::DecompressString(compressed, part.length, text) == 0 ? text : compressed;
}

bool isUninflated(const QByteArray &text, const QByteArray &storedText)
{
    return readsAsCompressed(storedText) && text == QByteArrayView(storedText).sliced(storedText.indexOf(',') + 1);
}
