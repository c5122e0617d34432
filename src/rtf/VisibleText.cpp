// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/VisibleText.h"

#include <QChar>

namespace rtf
{

char16_t visibleCharacter(char16_t unit)
{
    constexpr char16_t controlPictures = 0x2400;
    switch (unit) {
    case '\t':
    case '\n':
    case '\r':
        return unit;
    case '\v':
    case '\f':
        return QChar::LineSeparator;
    case QChar::ObjectReplacementCharacter: // a picture's place
    case 0xFDD0:                            // the marks of frames and cells inside a text document
    case 0xFDD1:
    case 0xFFFE:
    case 0xFFFF:
        return QChar::ReplacementCharacter;
    default:
        return unit < 0x20 ? char16_t(controlPictures + unit) : unit;
    }
}

QString visibleText(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            ++i;
        } else if (QChar::isSurrogate(unit)) {
            text[i] = QChar::ReplacementCharacter;
        } else if (unit == '\f') {
            text[i] = QChar::ParagraphSeparator;
        } else if (const char16_t visible = visibleCharacter(unit); visible != unit) {
            text[i] = QChar(visible);
        }
    }
    return text;
}

} // namespace rtf
