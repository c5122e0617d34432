// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QString>

#include <array>

namespace rtf
{

constexpr int windowsLatin = 1252;

// The code page of a Windows character set number (\fcharset); 0 where it is that of the document.
int codePageOfCharset(int charset);

// The Windows-1252 byte of a character, or -1 when that code page lacks it.
int latinByte(char16_t character);

// The character that the Symbol font shows for a byte, or for U+F000 and the byte.
char16_t symbolCharacter(quint8 byte);

// One code page: how its bytes are cut and what characters they are. What is undefined is U+FFFD.
class CodePage
{
public:
    explicit CodePage(int number);

    // Whether some characters take two bytes or more.
    bool isMultiByte() const { return m_multiByte; }

    // Whether this byte makes the next one part of its character, be that one ASCII or not.
    bool isLead(quint8 byte) const;

    // The character of a byte of a page that is not multi-byte.
    char16_t character(quint8 byte) const { return m_characters[byte]; }

    // The characters of a whole run of bytes of a multi-byte page.
    QString decode(QByteArrayView bytes) const;

private:
    std::array<char16_t, 256> m_characters{};
    int m_number;
    bool m_multiByte;
};

// The code page of that number, made when first asked for. A number that is none stands for Windows-1252.
const CodePage &codePage(int number);

} // namespace rtf
