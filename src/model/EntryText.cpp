// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryText.h"

#include "model/SealedDocument.h"
#include "model/StoredText.h"
#include "rtf/CharChange.h"
#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"

#include <QTextBlock>
#include <QTextCursor>

void readEntryText(const QByteArray &text, QTextDocument &document)
{
    if (rtf::isRtf(text))
        rtf::read(text, document);
    else if (!text.isEmpty())
        document.setPlainText(AnsiCodec::toText(text));
}

QByteArray changedText(const QByteArray &storedText, const rtf::CharChange &change, const QFont &base)
{
    const QByteArray text = NodeTextDecompressIfRequired(storedText);
    if (isUninflated(text, storedText))
        return {};
    SealedDocument document;
    document.setUndoRedoEnabled(false);
    document.setDefaultFont(base);
    readEntryText(text, document);
    QTextCursor all(&document);
    all.select(QTextCursor::Document);
    if (all.hasSelection())
        change.applyTo(all);
    // What is typed into an empty first paragraph looks like the paragraph's mark, which no selection can hold.
    if (const QTextBlock first = document.begin(); first.length() == 1)
        QTextCursor(first).setBlockCharFormat(change.appliedTo(first.charFormat()));
    return NodeTextCompressIfRequired(rtf::write(document));
}
