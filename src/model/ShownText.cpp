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

// No character takes less than a byte, so that a short text passes no bound unless it has tables.
bool isShort(const QByteArray &text)
{
    return text.size() <= std::min({limits::longestParagraph, limits::mostParagraphs, limits::longestWord}) &&
           !text.contains("cell");
}

} // namespace

Inflated shownText(const QByteArray &storedText)
{
    Inflated shown = inflated(storedText);
    if (shown.state != TextState::Beginning && isShort(shown.text))
        return shown;
    const bool isRtf = rtf::isRtf(shown.text);
    const auto [text, cells] = isRtf ? rtf::plainContent(shown.text) : rtf::PlainContent{AnsiCodec::toText(shown.text)};
    const qsizetype length = mayBeLaidOut(text, isRtf ? LineFeed::WithinParagraph : LineFeed::EndsParagraph);
    if (shown.state != TextState::Beginning && length == text.size() && cells <= limits::mostShownCells)
        return shown;
    qsizetype beginning = std::min(length, limits::shownBeginning);
    if (beginning < text.size() && beginning > 0 && text[beginning].isLowSurrogate())
        --beginning;
    shown.text = AnsiCodec::fromText(QStringView(text).first(beginning));
    if (shown.state == TextState::Whole)
        shown.state = TextState::Beginning;
    return shown;
}
