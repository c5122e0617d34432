// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/ScrolledTogether.h"

#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

namespace
{

// Goes through the characters that the other text has, too, in their order: those of words, as blanks count for
// nothing. `each` is given the place and answers whether to go on.
template <typename Each>
void throughMatched(QStringView text, const UnmatchedWords &unmatched, Each &&each)
{
    auto stretch = unmatched.stretches.begin();
    for (qsizetype place = 0; place < text.size(); ++place) {
        while (stretch != unmatched.stretches.end() && stretch->start + stretch->length <= place)
            ++stretch;
        const bool isUnmatched = stretch != unmatched.stretches.end() && stretch->start <= place;
        if (!isUnmatched && !text[place].isSpace() && !each(place))
            return;
    }
}

} // namespace

qsizetype placeBeside(QStringView text, const UnmatchedWords &its, qsizetype place, QStringView other,
                      const UnmatchedWords &others)
{
    qsizetype left = 0;
    throughMatched(text, its, [&](qsizetype at) {
        left += at < place ? 1 : 0;
        return at < place;
    });
    qsizetype beside = other.size();
    throughMatched(other, others, [&](qsizetype at) {
        beside = at;
        return left-- > 0;
    });
    return beside;
}

ScrolledTogether::ScrolledTogether(QPlainTextEdit &before, QPlainTextEdit &after)
{
    for (QPlainTextEdit *text : {&before, &after}) {
        m_last[text] = text->verticalScrollBar()->value();
        // The scroll bar does not tell of what the caret scrolled.
        connect(text, &QPlainTextEdit::updateRequest, this, [this, text, &before, &after] {
            if (!m_compared || m_isFollowing || m_last[text] == text->verticalScrollBar()->value())
                return;
            if (text == &before)
                follow(before, m_compared->before, after, m_compared->after);
            else
                follow(after, m_compared->after, before, m_compared->before);
            for (const QPlainTextEdit *each : {&before, &after})
                m_last[each] = each->verticalScrollBar()->value();
        });
    }
}

void ScrolledTogether::setCompared(const std::optional<TextComparison> &compared)
{
    m_compared = compared;
    for (auto &[text, last] : m_last)
        last = text->verticalScrollBar()->value();
}

void ScrolledTogether::follow(const QPlainTextEdit &scrolled, const UnmatchedWords &its, QPlainTextEdit &other,
                              const UnmatchedWords &others)
{
    const QScopedValueRollback following(m_isFollowing, true);
    const QScrollBar &bar = *scrolled.verticalScrollBar();
    QScrollBar &otherBar = *other.verticalScrollBar();
    // Both ends of one are both ends of the other, whatever stands there.
    if (bar.value() == bar.minimum() || bar.value() == bar.maximum()) {
        otherBar.setValue(bar.value() == bar.minimum() ? otherBar.minimum() : otherBar.maximum());
        return;
    }
    const int top = scrolled.cursorForPosition(QPoint(0, 0)).position();
    const auto beside = static_cast<int>(placeBeside(scrolled.toPlainText(), its, top, other.toPlainText(), others));
    const QTextBlock block = other.document()->findBlock(beside);
    // The scroll bar counts lines.
    const QTextLine line = block.layout()->lineForTextPosition(beside - block.position());
    otherBar.setValue(block.firstLineNumber() + (line.isValid() ? line.lineNumber() : 0));
}
