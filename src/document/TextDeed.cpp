// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/TextDeed.h"

namespace
{

EntryDocument::Selection selectionIn(const TextPane &pane)
{
    const QTextCursor caret = pane.caret();
    return {caret.anchor(), caret.position()};
}

} // namespace

TextDeed::TextDeed(const TextPane &pane, QLatin1StringView what)
    : m_pane(pane)
    , m_text(pane.shown())
    , m_outer(m_text ? m_text->deed() : QLatin1StringView())
    , m_isNamed(!what.isEmpty())
{
    if (!m_text)
        return;
    m_before = selectionIn(pane);
    m_depth = m_text->depth();
    m_text->setDeed(what);
    if (m_isNamed)
        m_text->endMerging();
}

TextDeed::~TextDeed()
{
    if (!m_text)
        return;
    m_text->setDeed(m_outer);
    if (m_text->depth() <= m_depth)
        return;
    const bool isShown = m_pane.shown() == m_text;
    // What is typed on makes more of the step.
    m_text->markStep(m_before, m_isNamed && isShown ? std::optional(selectionIn(m_pane)) : std::nullopt);
    if (m_isNamed)
        m_text->endMerging();
}
