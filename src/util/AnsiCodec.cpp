// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/AnsiCodec.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <optional>

namespace
{

// Windows-1252, bytes 0x80 to 0x9F; every other byte is the character of the same number.
constexpr std::array<char16_t, 32> upperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool isAscii(QByteArrayView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<uchar>(byte) < 0x80; });
}

std::optional<QString> decodeUtf8(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

std::optional<QByteArray> encodeAnsi(QStringView text)
{
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char *to = bytes.data();
    for (const QChar character : text) {
        const std::optional<char> byte = AnsiCodec::byteOf(character.unicode());
        if (!byte)
            return std::nullopt;
        *to++ = *byte;
    }
    return bytes;
}

} // namespace

QByteArray AnsiCodec::fromText(QStringView text)
{
    const std::optional<QByteArray> bytes = encodeAnsi(text);
    if (!bytes || (!isAscii(*bytes) && decodeUtf8(*bytes)))
        return text.toUtf8();
    return *bytes;
}

QString AnsiCodec::toText(QByteArrayView bytes)
{
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    if (const std::optional<QString> text = decodeUtf8(bytes))
        return *text;
    QString text(bytes.size(), Qt::Uninitialized);
    QChar *to = text.data();
    for (const char byte : bytes) {
        const uchar value = static_cast<uchar>(byte);
        *to++ = value >= 0x80 && value <= 0x9F ? QChar(upperControls[value - 0x80]) : QChar(char16_t(value));
    }
    return text;
}

std::optional<char> AnsiCodec::byteOf(char16_t character)
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return static_cast<char>(character);
    const auto *found = std::find(upperControls.begin(), upperControls.end(), character);
    if (found == upperControls.end())
        return std::nullopt;
    return static_cast<char>(0x80 + (found - upperControls.begin()));
}
