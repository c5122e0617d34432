// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryText.h"

#include "rtf/CharChange.h"
#include "rtf/EditBlock.h"
#include "rtf/PlainText.h"
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

void changeText(QTextDocument &document, const rtf::CharChange &change)
{
    QTextCursor all(&document);
    all.select(QTextCursor::Document);
    const EditBlock edit(all);
    if (all.hasSelection())
        change.applyTo(all);
    // The mark of the first paragraph is in no selection.
    if (const QTextBlock first = document.begin(); first.length() == 1)
        QTextCursor(first).setBlockCharFormat(change.appliedTo(first.charFormat()));
}

void replaceText(QTextDocument &document, const std::vector<TextReplacement> &replacements)
{
    QTextCursor cursor(&document);
    const EditBlock edit(cursor);
    // From the end on, so that the places of those before stay right.
    for (auto each = replacements.crbegin(); each != replacements.crend(); ++each) {
        const int start = rtf::documentPosition(document, each->start);
        cursor.setPosition(start + 1);
        QTextCharFormat format = cursor.charFormat();
        format.clearProperty(QTextFormat::ObjectType);
        cursor.setPosition(start);
        cursor.setPosition(rtf::documentPosition(document, each->start + each->length), QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        cursor.insertText(each->text, format);
    }
}

EntryText::EntryText(const QByteArray &text, const QFont &base)
{
    m_document.setUndoRedoEnabled(false);
    m_document.setDefaultFont(base);
    readEntryText(text, m_document);
}

QString EntryText::findableText() const
{
    return rtf::findableText(m_document);
}

void EntryText::change(const rtf::CharChange &change)
{
    changeText(m_document, change);
}

void EntryText::replace(const std::vector<TextReplacement> &replacements)
{
    replaceText(m_document, replacements);
}

QByteArray EntryText::toRtf() const
{
    return rtf::write(m_document);
}
