// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/OutlineWalk.h"

OutlineWalk::OutlineWalk(const Entry *top, const QByteArray &path)
    : m_top(top)
    , m_entry(top)
    , m_path(path)
    , m_hidden(!top->visible())
{
}

void OutlineWalk::next()
{
    if (const Entry *child = m_entry->firstChild()) {
        if (!m_hidden && !m_entry->expanded()) {
            m_hidden = true;
            m_hiddenBy = m_entry;
        }
        m_path += ".1";
        m_entry = child;
        return;
    }
    while (m_entry != m_top && !m_entry->next())
        climb();
    if (m_entry == m_top) {
        m_entry = nullptr;
        return;
    }
    m_entry = m_entry->next();
    m_path.truncate(m_path.lastIndexOf('.') + 1);
    m_path += QByteArray::number(m_entry->row() + 1);
}

void OutlineWalk::climb()
{
    m_path.truncate(m_path.lastIndexOf('.'));
    m_entry = m_entry->parent();
    if (m_entry == m_hiddenBy) {
        m_hidden = false;
        m_hiddenBy = nullptr;
    }
}
