// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/CodePages.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace rtf
{

// Collects the characters of a stretch of text from bytes of a code page and from UTF-16 units. Double-byte characters
// may be spelt in any mixture of plain and escaped bytes; what no text document can hold is replaced by something
// visible.
class Characters
{
public:
    enum class Glyphs : quint8 {
        None,   // an ordinary font
        Symbol, // the Symbol font: bytes are Greek and mathematical signs
        Other,  // another picture font: bytes are private characters, U+F000 and the byte
    };

    void setPage(const CodePage &page, Glyphs glyphs);

    // Bytes of 0x20 to 0x7F.
    void appendPlain(QByteArrayView bytes);
    void appendByte(quint8 byte);

    // A number of \u: UTF-16, or a whole code point beyond 0xFFFF.
    void appendUnicode(quint32 number);

    // A unit as it is.
    void appendRaw(char16_t unit);

    bool isEmpty() const { return m_text.isEmpty() && m_bytes.isEmpty() && m_highSurrogate == 0; }

    // Decodes all bytes and replaces half a character at the end.
    void complete();

    // The text, completed. Valid until the next call.
    QStringView text();

    void clear();

private:
    void decodeBytes();
    void appendUnit(char16_t unit);

    QString m_text;
    QByteArray m_bytes; // of a double-byte page, not decoded yet
    const CodePage *m_page = nullptr;
    Glyphs m_glyphs = Glyphs::None;
    bool m_leadPending = false;
    bool m_endsInReturn = false;
    char16_t m_highSurrogate = 0;
};

} // namespace rtf
