// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>

namespace rtf
{

// One piece of RTF. The views point into the bytes that the tokenizer was given.
struct Token {
    enum class Kind : quint8 {
        End,
        GroupOpen,
        GroupClose,
        Word,   // \word with an optional number
        Symbol, // \ and one character that is no letter
        Text,   // bytes of 0x20 to 0x7F without special ones
        Byte,   // \'hh, or a byte above 0x7F or below 0x20, but for line ends
        Binary, // the data of \bin
    };

    Kind kind = Kind::End;
    bool hasNumber = false;
    quint8 byte = 0;      // of Symbol and Byte
    qint32 number = 0;    // of Word; clamped to 32 bits
    QByteArrayView bytes; // the name of Word, the characters of Text, the data of Binary
};

// Cuts RTF into tokens. It knows groups, control words and binary runs, and nothing of what they mean. Never reads
// beyond the bytes; every call but the last moves forward.
class Tokenizer
{
public:
    explicit Tokenizer(QByteArrayView rtf);

    Token next();

    // Moves to the brace that closes the current group, so that the next token is its GroupClose (or End).
    void skipGroup();

private:
    Token readControl();
    Token readWord();
    Token readHex();
    Token readBinary(qint32 length);

    const char *m_at;
    const char *m_end;
};

} // namespace rtf
