// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/FileNature.h"

#include "model/SealedDocument.h"

#include "rtf/Looks.h"
#include "rtf/Rtf.h"

#include <QStringDecoder>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Tabs, line ends and form feeds, and what terminals and old editors leave in texts.
bool isTextByte(char byte)
{
    constexpr QByteArrayView allowed = "\b\t\n\v\f\r\x1A\x1B";
    return static_cast<uchar>(byte) >= 0x20 || (byte != '\0' && allowed.contains(byte));
}

// Windows-1252, which all that is no UTF-8 is taken for, has no such characters.
bool hasNoCharacter(char byte)
{
    return QByteArrayView("\x81\x8D\x8F\x90\x9D").contains(byte);
}

bool decodesWhole(const QByteArray &bytes, QStringConverter::Encoding encoding)
{
    // The decoder waits for the rest of a character that is cut off at the end.
    const bool isUtf16 = encoding == QStringConverter::Utf16BE || encoding == QStringConverter::Utf16LE;
    const qsizetype unit = encoding == QStringConverter::Utf8 ? 1 : isUtf16 ? 2 : 4;
    if (bytes.size() % unit != 0)
        return false;
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    return !decoder.hasError() && !text.contains(QChar(0));
}

// The length of the valid UTF-8 sequence of several bytes at a place; 0 when there is none.
qsizetype sequenceLength(QByteArrayView bytes)
{
    const uchar lead = static_cast<uchar>(bytes[0]);
    const qsizetype length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length)
        return 0;
    const bool valid = std::all_of(bytes.begin() + 1, bytes.begin() + length,
                                   [](char byte) { return (static_cast<uchar>(byte) & 0xC0) == 0x80; });
    return valid ? length : 0;
}

// Whether bytes are UTF-8 but for a few places. Text of an older character set has hardly a valid sequence.
bool isBrokenUtf8(QByteArrayView bytes)
{
    qsizetype valid = 0;
    qsizetype broken = 0;
    while (!bytes.isEmpty()) {
        const bool ascii = static_cast<uchar>(bytes[0]) < 0x80;
        const qsizetype length = ascii ? 0 : sequenceLength(bytes);
        valid += length > 0 ? 1 : 0;
        broken += !ascii && length == 0 ? 1 : 0;
        bytes = bytes.sliced(qMax<qsizetype>(length, 1));
    }
    return broken > 0 && valid > broken;
}

// Whether characters look as in the font. Nobody sees what language they are marked with.
bool looksPlain(const QTextCharFormat &format, const QFont &font)
{
    if (format.isImageFormat() || format.isAnchor())
        return false;
    rtf::CharLook look = rtf::charLook(format, font);
    look.language = 0;
    return look == rtf::charLook(QTextCharFormat(), font);
}

// Which way a paragraph is read its characters say too.
bool looksPlain(const QTextBlock &block)
{
    if (block.textList() || block.blockFormat().indent() != 0)
        return false;
    rtf::ParaLook look = rtf::paraLook(block.blockFormat(), false, 0);
    look.flags &= ~quint32(rtf::RightToLeft);
    return look == rtf::ParaLook();
}

} // namespace

QString whyNoPlainText(const QByteArray &bytes)
{
    if (rtf::isRtf(bytes))
        return u"it is a document in Rich Text Format, with more than plain text"_s;
    const QString noText = u"it is no text file"_s;
    if (const auto encoding = QStringConverter::encodingForData(bytes))
        return decodesWhole(bytes, *encoding) ? QString() : noText;
    if (!std::all_of(bytes.begin(), bytes.end(), isTextByte))
        return noText;
    if (decodesWhole(bytes, QStringConverter::Utf8))
        return QString();
    if (isBrokenUtf8(bytes) || std::any_of(bytes.begin(), bytes.end(), hasNoCharacter))
        return u"some of its characters cannot be read"_s;
    return QString();
}

bool looksPlain(const QByteArray &text, const QFont &font)
{
    if (!rtf::isRtf(text))
        return true;
    SealedDocument document;
    rtf::read(text, document);
    if (!document.rootFrame()->childFrames().isEmpty())
        return false;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (!looksPlain(block))
            return false;
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            if (!looksPlain(at.fragment().charFormat(), font))
                return false;
        }
    }
    return true;
}
