// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Tokenizer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace rtf
{

namespace
{

constexpr qint64 largestNumber = std::numeric_limits<qint32>::max();

constexpr std::array<bool, 256> plainBytes = [] {
    std::array<bool, 256> table{};
    for (std::size_t i = 0x20; i < 0x80; ++i) {
        table[i] = i != '\\' && i != '{' && i != '}';
    }
    return table;
}();

bool isPlainByte(char c)
{
    return plainBytes[static_cast<quint8>(c)];
}

// The first byte that is not plain. Looks at eight bytes at once: text is most of what there is to read.
const char *endOfPlain(const char *at, const char *end)
{
    constexpr quint64 ones = 0x0101010101010101u;
    constexpr quint64 tops = 0x80 * ones;
    // Sets the top bit of every byte that is zero (and at times of the one above it, which only costs a second look).
    const auto zeros = [](quint64 bytes) { return (bytes - ones) & ~bytes & tops; };
    for (; end - at >= 8; at += 8) {
        quint64 bytes = 0;
        std::memcpy(&bytes, at, sizeof bytes);
        const quint64 controls = (bytes - 0x20 * ones) | bytes;
        const quint64 special =
            zeros(bytes ^ ('\\' * ones)) | zeros(bytes ^ ('{' * ones)) | zeros(bytes ^ ('}' * ones));
        if (((controls & tops) | special) != 0) {
            break;
        }
    }
    return std::find_if_not(at, end, isPlainByte);
}

bool isLetter(char c)
{
    const auto lower = static_cast<quint8>(c | 0x20);
    return lower >= 'a' && lower <= 'z';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int hexValue(char c)
{
    if (isDigit(c)) {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

Token simpleToken(Token::Kind kind)
{
    Token token;
    token.kind = kind;
    return token;
}

Token byteToken(Token::Kind kind, quint8 byte)
{
    Token token;
    token.kind = kind;
    token.byte = byte;
    return token;
}

} // namespace

Tokenizer::Tokenizer(QByteArrayView rtf)
    : m_at(rtf.data())
    , m_end(rtf.data() + rtf.size())
{
}

Token Tokenizer::next()
{
    while (m_at != m_end) {
        const char c = *m_at;
        if (isPlainByte(c)) {
            const char *begin = m_at;
            m_at = endOfPlain(m_at, m_end);
            Token token = simpleToken(Token::Kind::Text);
            token.bytes = QByteArrayView(begin, m_at);
            return token;
        }
        ++m_at;
        switch (c) {
        case '{':
            return simpleToken(Token::Kind::GroupOpen);
        case '}':
            return simpleToken(Token::Kind::GroupClose);
        case '\\':
            return readControl();
        case '\r':
        case '\n':
            break;
        default:
            return byteToken(Token::Kind::Byte, static_cast<quint8>(c));
        }
    }
    return {};
}

Token Tokenizer::readControl()
{
    if (m_at == m_end) {
        return {};
    }
    if (isLetter(*m_at)) {
        return readWord();
    }
    const char c = *m_at++;
    return c == '\'' ? readHex() : byteToken(Token::Kind::Symbol, static_cast<quint8>(c));
}

Token Tokenizer::readWord()
{
    Token token = simpleToken(Token::Kind::Word);
    const char *begin = m_at;
    m_at = std::find_if_not(m_at, m_end, isLetter);
    token.bytes = QByteArrayView(begin, m_at);

    const bool negative = m_end - m_at >= 2 && *m_at == '-' && isDigit(m_at[1]);
    if (negative) {
        ++m_at;
    }
    qint64 number = 0;
    for (; m_at != m_end && isDigit(*m_at); ++m_at) {
        number = std::min(number * 10 + (*m_at - '0'), largestNumber);
        token.hasNumber = true;
    }
    token.number = static_cast<qint32>(negative ? -number : number);
    if (m_at != m_end && *m_at == ' ') {
        ++m_at;
    }
    const bool isBinary = token.bytes.size() == 3 && begin[0] == 'b' && begin[1] == 'i' && begin[2] == 'n';
    return isBinary ? readBinary(token.number) : token;
}

// A digit that is missing counts as 0, a pair without any as a question mark: the text around it survives.
Token Tokenizer::readHex()
{
    int value = 0;
    int digits = 0;
    for (; digits < 2 && m_at != m_end && hexValue(*m_at) >= 0; ++digits) {
        value = value * 16 + hexValue(*m_at++);
    }
    return byteToken(Token::Kind::Byte, digits == 0 ? quint8('?') : static_cast<quint8>(value));
}

Token Tokenizer::readBinary(qint32 length)
{
    const std::ptrdiff_t size = std::clamp<std::ptrdiff_t>(length, 0, m_end - m_at);
    Token token = simpleToken(Token::Kind::Binary);
    token.bytes = QByteArrayView(m_at, size);
    m_at += size;
    return token;
}

void Tokenizer::skipGroup()
{
    qsizetype depth = 0;
    while (m_at != m_end) {
        const char c = *m_at;
        if (c == '{') {
            ++depth;
        } else if (c == '}' && depth-- == 0) {
            return;
        }
        ++m_at;
        if (c == '\\') {
            readControl();
        }
    }
}

} // namespace rtf
