// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/ShownText.h"

#include "model/EntryText.h"
#include "model/LayoutStrain.h"
#include "model/Limits.h"
#include "model/SealedDocument.h"
#include "model/TextBounds.h"

#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"

#include <algorithm>

namespace
{

bool isHarmless(const Inflated &text)
{
    return text.state != TextState::Beginning && text.text.size() <= limits::harmlessText;
}

bool isBearable(const QTextDocument &document)
{
    return layoutStrain(document).isBearable(limits::shownStrain);
}

// Reads a text's first characters, so many of them at most as can be laid out without formatting.
QByteArray readBeginning(QStringView text, qsizetype length, QTextDocument &document)
{
    for (;; length /= 2) {
        if (length < text.size() && length > 0 && text[length].isLowSurrogate())
            --length;
        QByteArray beginning = AnsiCodec::fromText(text.first(length));
        document.clear();
        readEntryText(beginning, document);
        if (length <= limits::harmlessText || isBearable(document))
            return beginning;
    }
}

// Reads what can be shown of a text that has to be looked at first.
Inflated readBearable(Inflated shown, QTextDocument &document)
{
    const bool isRtf = rtf::isRtf(shown.text);
    const auto [text, cells] = isRtf ? rtf::plainContent(shown.text) : rtf::PlainContent{AnsiCodec::toText(shown.text)};
    const qsizetype length =
        mayBeLaidOut(text, isRtf ? LineFeed::WithinParagraph : LineFeed::EndsParagraph, limits::longestShownWord);
    if (shown.state != TextState::Beginning && length == text.size() && cells <= limits::mostShownCells) {
        readEntryText(shown.text, document);
        if (isBearable(document))
            return shown;
    }
    shown.text = readBeginning(text, std::min(length, limits::shownBeginning), document);
    if (shown.state == TextState::Whole)
        shown.state = TextState::Beginning;
    return shown;
}

} // namespace

Inflated shownText(const QByteArray &storedText, const QFont &base)
{
    Inflated stored = inflated(storedText);
    if (isHarmless(stored))
        return stored;
    SealedDocument document;
    document.setUndoRedoEnabled(false);
    document.setDefaultFont(base);
    return readBearable(std::move(stored), document);
}

Inflated readShownText(const QByteArray &storedText, QTextDocument &document)
{
    Inflated stored = inflated(storedText);
    if (!isHarmless(stored))
        return readBearable(std::move(stored), document);
    readEntryText(stored.text, document);
    return stored;
}
