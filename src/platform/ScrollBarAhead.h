// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractScrollArea>

// Shows the scroll bar of a text before more comes than fits. Where the bar comes behind the text, that is laid out for
// the whole width first, and then twice for what the bar leaves of it.
class ScrollBarAhead
{
public:
    // As long as this lives, for a text of so many characters and paragraphs.
    ScrollBarAhead(QAbstractScrollArea &area, qsizetype characters, qsizetype paragraphs)
        : m_area(area)
        , m_policy(area.verticalScrollBarPolicy())
    {
        if (m_policy == Qt::ScrollBarAsNeeded && (characters > fewCharacters || paragraphs > fewParagraphs))
            m_area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    }

    ~ScrollBarAhead() { m_area.setVerticalScrollBarPolicy(m_policy); }

    ScrollBarAhead(const ScrollBarAhead &) = delete;
    ScrollBarAhead &operator=(const ScrollBarAhead &) = delete;

    // What no pane shows at once, and what is laid out twice in no time.
    static constexpr qsizetype fewCharacters = 20'000;
    static constexpr qsizetype fewParagraphs = 400;

private:
    QAbstractScrollArea &m_area;
    const Qt::ScrollBarPolicy m_policy;
};
