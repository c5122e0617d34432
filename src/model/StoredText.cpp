// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/StoredText.h"

#include "model/modCompress.h"

#include "util/Numbers.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <zlib.h>

#include <limits>

QByteArray NodeTextCompressIfRequired(const QByteArray &text)
{
    QByteArray storedText = text;
    procedure("modNodes NodeTextCompressIfRequired", [&] { storedText = compressedText(text); });
    return storedText;
}

QByteArray compressedText(const QByteArray &text)
{
    // A length of 0 would not be read as one: an empty text stays empty.
    QByteArray compressed;
    if (bCompressText && !text.isEmpty() && modCompress::CompressString(text, compressed) == 0)
        return QByteArray::number(text.size()) + ',' + compressed;
    return text;
}

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

bool readsAsCompressed(const QByteArray &text)
{
    try {
        return compressedPart(text).length > 0;
    } catch (const RunTimeError &) {
        return false;
    }
}

Inflated inflated(const QByteArray &storedText)
{
    constexpr auto name = "modNodes NodeTextDecompressIfRequired";
    CompressedPart part;
    try {
        part = compressedPart(storedText);
    } catch (const RunTimeError &error) {
        // Reported here rather than passed on: a text that reads like no stored form is still a text to show and save.
        reportError(name, error);
    }
    if (part.length == 0)
        return {storedText, TextState::Whole};
    const QByteArray compressed = storedText.sliced(part.start);
    QByteArray text;
    switch (modCompress::DecompressString(compressed, part.length, text)) {
    case Z_OK:
        return {text, TextState::Whole};
    case Z_BUF_ERROR:
        // A text that goes on behind its stated length is damaged, and one behind the bound is not.
        if (text.size() < part.length)
            return {text, TextState::Beginning};
        break;
    default:
        break;
    }
    return {compressed, TextState::Damaged};
}

std::optional<QByteArray> soundText(const QByteArray &storedText)
{
    if (!readsAsCompressed(storedText))
        return storedText;
    const CompressedPart part = compressedPart(storedText);
    QByteArray text;
    if (modCompress::DecompressString(storedText.sliced(part.start), part.length, text) != Z_OK)
        return std::nullopt;
    return text;
}

QByteArray NodeTextDecompressIfRequired(const QByteArray &storedText)
{
    detail::enterProcedure("modNodes NodeTextDecompressIfRequired");
    return inflated(storedText).text;
}
