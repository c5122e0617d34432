// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The 8-bit text of documents and plain-text files: Windows-1252, with UTF-8 for what does not fit into it.
namespace AnsiCodec
{

// The bytes of a text: Windows-1252 when every character fits and the bytes do not happen to read as multi-byte UTF-8;
// otherwise UTF-8. toText(fromText(s)) == s for every text without lone surrogates.
QByteArray fromText(QStringView text);

// The text of 8-bit bytes: UTF-8 when they are valid UTF-8 with at least one multi-byte sequence, else Windows-1252.
// Any byte value has a character; the five bytes that the code page leaves undefined are the C1 controls of that
// number.
QString toText(QByteArrayView bytes);

// The byte of a character in Windows-1252. A C1 control is that of its number only where the code page leaves the byte
// undefined.
std::optional<char> byteOf(char16_t character);

} // namespace AnsiCodec
