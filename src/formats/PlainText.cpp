// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/PlainText.h"

#include "model/StoredText.h"

#include "rtf/PlainText.h"
#include "rtf/Rtf.h"

#include "util/AnsiCodec.h"
#include "util/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace
{

QString withBreaks(const QString &text, QStringView lineBreak)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool pair = text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n';
        if (text[at] == u'\r' || text[at] == u'\n')
            result += lineBreak;
        else
            result += text[at];
        at += pair ? 1 : 0;
    }
    return result;
}

} // namespace

QString withLineEnds(const QString &text)
{
    QString lines = withBreaks(text, u"\r\n");
    if (!lines.isEmpty() && !lines.endsWith("\r\n"_L1))
        lines += "\r\n"_L1;
    return lines;
}

QString plainTextOf(const QByteArray &storedText)
{
    const auto [text, state] = inflated(storedText);
    if (state == TextState::Beginning)
        throw RunTimeError(ErrorNumber::OutOfMemory,
                           u"Out of memory: a text is too long to be written as characters"_s);
    // A line break within a paragraph, which the text pane counts as one character, ends a line of the file like any.
    return withBreaks(rtf::isRtf(text) ? rtf::toPlainText(text) : AnsiCodec::toText(text), u"\r\n");
}
