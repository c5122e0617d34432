// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/ShownText.h"

#include "model/Limits.h"
#include "model/TextBounds.h"

#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"

#include <algorithm>

namespace
{

// No character and no end of a paragraph takes less than a byte, or as rich text less than four.
bool isShort(const QByteArray &text, bool isRtf)
{
    constexpr qsizetype shortestBreak = 4;
    return text.size() <=
           std::min(limits::longestParagraph, isRtf ? limits::mostParagraphs * shortestBreak : limits::mostParagraphs);
}

} // namespace

Inflated shownText(const QByteArray &storedText)
{
    Inflated shown = inflated(storedText);
    const bool isRtf = rtf::isRtf(shown.text);
    if (shown.state != TextState::Beginning && isShort(shown.text, isRtf))
        return shown;
    const QString text = isRtf ? rtf::toPlainText(shown.text) : AnsiCodec::toText(shown.text);
    const qsizetype length = mayBeLaidOut(text, isRtf ? LineFeed::WithinParagraph : LineFeed::EndsParagraph);
    if (shown.state != TextState::Beginning && length == text.size())
        return shown;
    qsizetype beginning = std::min(length, limits::shownBeginning);
    if (beginning < text.size() && beginning > 0 && text[beginning].isLowSurrogate())
        --beginning;
    shown.text = AnsiCodec::fromText(QStringView(text).first(beginning));
    if (shown.state == TextState::Whole)
        shown.state = TextState::Beginning;
    return shown;
}
