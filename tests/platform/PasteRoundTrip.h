// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/RichTextBox.h"
#include "rtf/Rtf.h"
#include "rtf/VisibleText.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

#include <algorithm>

// What holds for anything that is pasted into the text pane.
namespace pastetest
{

// The text without blanks and breaks, which may differ around tables and rules. What stands for no character counts as
// a picture, which is a blank.
inline QString wordsOf(const QString &text)
{
    QString words = rtf::visibleText(text);
    words.removeIf([](QChar c) { return c.isSpace() || c == QChar::ReplacementCharacter; });
    return words;
}

inline void paste(RichTextBox &box, const QByteArray &bytes)
{
    auto *data = new QMimeData;
    data->setData(rtf::isRtf(bytes) ? QStringLiteral("text/rtf") : QStringLiteral("text/html"), bytes);
    QApplication::clipboard()->setMimeData(data);
    box.paste();
}

// Pastes RTF, or HTML, and stores and shows the text; the reason why it is another one then, empty when it is not. What
// RTF cannot say of a web page is different the first time it is shown, but not again.
inline QString pasteFault(const QByteArray &bytes)
{
    RichTextBox box;
    paste(box, bytes);
    const QString pasted = wordsOf(box.Text());
    const QByteArray written = box.TextRTF();
    box.document()->undo();
    if (box.Text() != QString()) {
        return QStringLiteral("pasting is not undone");
    }
    box.setTextRTF(written);
    if (const QString shown = wordsOf(box.Text()); shown != pasted) {
        const auto [one, other] = std::ranges::mismatch(pasted, shown);
        return QStringLiteral("other words: ") + pasted.mid(one - pasted.begin(), 60) + QStringLiteral(" | became | ") +
               shown.mid(other - shown.begin(), 60);
    }
    const QByteArray stored = box.TextRTF();
    box.setTextRTF(stored);
    return box.TextRTF() == stored ? QString() : QStringLiteral("other bytes");
}

} // namespace pastetest
