// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Characters.h"

#include "rtf/VisibleText.h"

namespace rtf
{

namespace
{

// The character that a text document can hold in place of one read.
char16_t acceptable(char16_t unit)
{
    if (unit >= 0x20 && unit < 0x2028) {
        return unit;
    }
    const bool isBreak = unit == '\n' || unit == '\r' || unit == QChar::ParagraphSeparator;
    return isBreak ? char16_t(QChar::LineSeparator) : visibleCharacter(unit);
}

} // namespace

void Characters::setPage(const CodePage &page, Glyphs glyphs)
{
    if (&page != m_page) {
        decodeBytes();
    }
    m_page = &page;
    m_glyphs = glyphs;
}

void Characters::appendPlain(QByteArrayView bytes)
{
    if (m_glyphs != Glyphs::None) {
        for (const char byte : bytes) {
            appendByte(static_cast<quint8>(byte));
        }
        return;
    }
    if (m_leadPending && !bytes.isEmpty()) {
        appendByte(static_cast<quint8>(bytes.front()));
        bytes = bytes.sliced(1);
    }
    complete();
    m_endsInReturn = false;
    m_text.append(QLatin1StringView(bytes));
}

void Characters::appendByte(quint8 byte)
{
    if (m_glyphs != Glyphs::None) {
        const bool isBlank = byte <= 0x20;
        appendUnit(isBlank                      ? char16_t(byte)
                   : m_glyphs == Glyphs::Symbol ? symbolCharacter(byte)
                                                : static_cast<char16_t>(0xF000 + byte));
    } else if (m_page->isMultiByte() && (byte >= 0x80 || m_leadPending)) {
        m_bytes.append(static_cast<char>(byte));
        m_leadPending = !m_leadPending && m_page->isLead(byte);
    } else {
        appendUnit(m_page->isMultiByte() ? char16_t(byte) : m_page->character(byte));
    }
}

void Characters::appendUnicode(quint32 number)
{
    if (number > QChar::LastValidCodePoint) {
        appendUnit(QChar::ReplacementCharacter);
    } else if (number > 0xFFFF) {
        appendUnit(QChar::highSurrogate(number));
        appendUnit(QChar::lowSurrogate(number));
    } else if (m_glyphs == Glyphs::Symbol && number > 0xF020 && number <= 0xF0FF) {
        appendUnit(symbolCharacter(static_cast<quint8>(number)));
    } else {
        appendUnit(static_cast<char16_t>(number));
    }
}

void Characters::appendRaw(char16_t unit)
{
    complete();
    m_endsInReturn = false;
    m_text.append(QChar(unit));
}

void Characters::complete()
{
    decodeBytes();
    if (m_highSurrogate != 0) {
        m_highSurrogate = 0;
        m_text.append(QChar(QChar::ReplacementCharacter));
    }
}

QStringView Characters::text()
{
    complete();
    return m_text;
}

void Characters::clear()
{
    m_text.resize(0);
    if (!m_bytes.isEmpty()) {
        m_bytes.resize(0);
    }
    m_leadPending = false;
    m_endsInReturn = false;
    m_highSurrogate = 0;
}

void Characters::decodeBytes()
{
    m_leadPending = false;
    if (m_bytes.isEmpty()) {
        return;
    }
    QByteArray bytes;
    bytes.swap(m_bytes);
    for (const QChar c : m_page->decode(bytes)) {
        appendUnit(c.unicode());
    }
    bytes.resize(0);
    m_bytes.swap(bytes);
}

void Characters::appendUnit(char16_t unit)
{
    decodeBytes();
    const char16_t high = std::exchange(m_highSurrogate, char16_t(0));
    if (QChar::isLowSurrogate(unit)) {
        if (high == 0) {
            m_text.append(QChar(QChar::ReplacementCharacter));
            return;
        }
        m_text.append(QChar(high));
        m_text.append(QChar(unit));
        return;
    }
    if (high != 0) {
        m_text.append(QChar(QChar::ReplacementCharacter));
    }
    if (QChar::isHighSurrogate(unit)) {
        m_highSurrogate = unit;
        return;
    }
    // CR LF are one break.
    const bool isSecondHalf = unit == '\n' && m_endsInReturn;
    m_endsInReturn = unit == '\r';
    if (!isSecondHalf) {
        m_text.append(QChar(acceptable(unit)));
    }
}

} // namespace rtf
