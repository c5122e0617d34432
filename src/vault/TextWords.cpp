// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/TextWords.h"

#include "model/StoredText.h"
#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"

#include <QString>

qint64 wordCount(QStringView characters)
{
    qint64 words = 0;
    bool inWord = false;
    for (const QChar character : characters) {
        if (character.isSpace())
            inWord = false;
        else if (!inWord && (character.isLetterOrNumber() || character.isSurrogate())) {
            inWord = true;
            ++words;
        }
    }
    return words;
}

qint64 wordsOfText(const QByteArray &storedText)
{
    const std::optional<QByteArray> text = soundText(storedText);
    if (!text)
        return 0;
    return wordCount(rtf::isRtf(*text) ? rtf::toPlainText(*text) : AnsiCodec::toText(*text));
}
