// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The text pane's characters, and finding in them.

#include "platform/RichTextBox.h"

#include "model/TextFind.h"
#include "rtf/PlainText.h"

#include <QTextCursor>

QString RichTextBox::Text() const
{
    learnText();
    return m_text;
}

QString RichTextBox::FindableText() const
{
    learnText();
    return m_findableText;
}

void RichTextBox::learnText() const
{
    if (m_textKnown)
        return;
    m_findableText = rtf::findableText(*document());
    m_text = m_findableText;
    m_text.replace(QChar(QChar::ObjectReplacementCharacter), QChar(QChar::Space));
    // A group of changes is announced at its end.
    m_textKnown = m_editGroups == 0;
}

QRect RichTextBox::SelectionOnScreen() const
{
    if (!textCursor().hasSelection())
        return {};
    QTextCursor start = textCursor();
    start.setPosition(start.selectionStart());
    const QRect shown = cursorRect(start).united(cursorRect()) & viewport()->rect();
    return shown.isEmpty() ? QRect() : QRect(viewport()->mapToGlobal(shown.topLeft()), shown.size());
}

int RichTextBox::Find(const QString &expression, int start, int end, int options)
{
    const int found = findText(FindableText(), expression, start, end, options);
    if (found >= 0 && !(options & NoHighlight)) {
        setSelStart(found);
        setSelLength(static_cast<int>(expression.size()));
    }
    return found;
}
