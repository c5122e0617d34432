// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/ShownText.h"

#include "model/EntryText.h"
#include "model/LayoutStrain.h"
#include "model/Limits.h"
#include "model/TextBounds.h"

#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"

#include <QTextDocument>

#include <algorithm>

namespace
{

bool isBearable(const QByteArray &text, const QFont &base)
{
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    document.setDefaultFont(base);
    readEntryText(text, document);
    return layoutStrain(document).isBearable(limits::shownStrain);
}

// A text's first characters, so many of them at most as can be laid out without formatting.
QByteArray beginningOf(QStringView text, qsizetype length, const QFont &base)
{
    for (;; length /= 2) {
        if (length < text.size() && length > 0 && text[length].isLowSurrogate())
            --length;
        QByteArray beginning = AnsiCodec::fromText(text.first(length));
        if (length <= limits::harmlessText || isBearable(beginning, base))
            return beginning;
    }
}

} // namespace

Inflated shownText(const QByteArray &storedText, const QFont &base)
{
    Inflated shown = inflated(storedText);
    if (shown.state != TextState::Beginning && shown.text.size() <= limits::harmlessText)
        return shown;
    const bool isRtf = rtf::isRtf(shown.text);
    const auto [text, cells] = isRtf ? rtf::plainContent(shown.text) : rtf::PlainContent{AnsiCodec::toText(shown.text)};
    const qsizetype length =
        mayBeLaidOut(text, isRtf ? LineFeed::WithinParagraph : LineFeed::EndsParagraph, limits::longestShownWord);
    if (shown.state != TextState::Beginning && length == text.size() && cells <= limits::mostShownCells &&
        isBearable(shown.text, base))
        return shown;
    shown.text = beginningOf(text, std::min(length, limits::shownBeginning), base);
    if (shown.state == TextState::Whole)
        shown.state = TextState::Beginning;
    return shown;
}
