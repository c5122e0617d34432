// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Output.h"

#include "rtf/CodePages.h"
#include "rtf/VisibleText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

namespace rtf
{

namespace
{

constexpr std::array<bool, 128> plainCharacters = [] {
    std::array<bool, 128> table{};
    for (std::size_t i = 0x20; i < 0x7F; ++i) {
        table[i] = i != '\\' && i != '{' && i != '}';
    }
    return table;
}();

bool isPlain(char16_t c)
{
    return c < 0x80 && plainCharacters[c];
}

constexpr char hexDigits[] = "0123456789abcdef";

// The longest escape, \u-12345?, and a blank.
constexpr qsizetype mostBytes = 9;
constexpr qsizetype chunkSize = 4096;

char *put(char *at, QByteArrayView bytes)
{
    std::memcpy(at, bytes.data(), std::size_t(bytes.size()));
    return at + bytes.size();
}

char *putUnicode(char *at, char16_t c)
{
    at = put(at, "\\u");
    at = std::to_chars(at, at + 6, static_cast<qint16>(c)).ptr;
    *at++ = '?';
    return at;
}

bool isHalf(QStringView text, qsizetype at)
{
    if (text[at].isHighSurrogate()) {
        return at + 1 >= text.size() || !text[at + 1].isLowSurrogate();
    }
    return text[at].isLowSurrogate() && (at == 0 || !text[at - 1].isHighSurrogate());
}

// The escape of a character that is not written as it is. A word that needs a blank behind it has it.
char *putEscaped(char *at, char16_t c, bool onlyUnicode)
{
    switch (c) {
    case '\t':
        return put(at, "\\tab ");
    case QChar::LineSeparator:
    case '\n':
        return put(at, "\\line ");
    case '\\':
    case '{':
    case '}':
        if (onlyUnicode) {
            break;
        }
        *at++ = '\\';
        *at++ = static_cast<char>(c);
        return at;
    case QChar::Nbsp:
        return put(at, "\\~");
    case QChar::SoftHyphen:
        return put(at, "\\-");
    case 0x2011:
        return put(at, "\\_");
    default:
        break;
    }
    if (const char16_t visible = visibleCharacter(c); visible != c) {
        return putEscaped(at, visible, onlyUnicode);
    }
    const int byte = onlyUnicode || c < 0x80 ? -1 : latinByte(c);
    if (byte < 0) {
        return putUnicode(at, c);
    }
    at = put(at, "\\'");
    *at++ = hexDigits[byte >> 4];
    *at++ = hexDigits[byte & 15];
    return at;
}

} // namespace

void Output::raw(QByteArrayView bytes)
{
    m_bytes.append(bytes);
    m_endsInWord = false;
}

void Output::word(QByteArrayView name)
{
    m_bytes.append(name);
    m_endsInWord = true;
}

void Output::word(QByteArrayView name, int number)
{
    char digits[16];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    m_bytes.append(name);
    m_bytes.append(QByteArrayView(digits, end));
    m_endsInWord = true;
}

void Output::lineEnd()
{
    raw("\n");
}

void Output::text(QStringView text, bool onlyUnicode)
{
    for (qsizetype begin = 0; begin < text.size();) {
        qsizetype size = std::min(chunkSize, text.size() - begin);
        if (begin + size < text.size() && text[begin + size].isLowSurrogate()) {
            --size; // the two halves of a character stay together
        }
        chunk(text.sliced(begin, size), onlyUnicode);
        begin += size;
    }
}

void Output::chunk(QStringView text, bool onlyUnicode)
{
    const qsizetype before = m_bytes.size();
    m_bytes.resize(before + text.size() * mostBytes + 1);
    char *begin = m_bytes.data() + before;
    char *at = begin;
    const auto isWrittenPlain = [onlyUnicode](char16_t c) { return isPlain(c) && (!onlyUnicode || c == ' '); };
    // An escape ends a word by itself.
    if (m_endsInWord && isWrittenPlain(text.front().unicode())) {
        *at++ = ' ';
    }
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (isWrittenPlain(c)) {
            *at++ = static_cast<char>(c);
        } else {
            at = putEscaped(at, isHalf(text, i) ? char16_t(QChar::ReplacementCharacter) : c, onlyUnicode);
        }
    }
    m_bytes.resize(before + (at - begin));
    m_endsInWord = false;
}

void Output::hex(const QByteArray &bytes)
{
    if (m_endsInWord) {
        raw(" ");
    }
    constexpr qsizetype bytesPerLine = 64;
    for (qsizetype begin = 0; begin < bytes.size(); begin += bytesPerLine) {
        raw(begin == 0 ? "" : "\n");
        m_bytes.append(bytes.mid(begin, bytesPerLine).toHex());
    }
}

void Output::append(const Output &other)
{
    m_bytes.append(other.m_bytes);
    m_endsInWord = other.m_endsInWord;
}

} // namespace rtf
