// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextCursor>

// Makes one step of undo of all that is edited in a cursor's document while it lives, and ends it however it is left: a
// document whose edit is never ended announces nothing any more. The cursor must outlive it.
class EditBlock
{
public:
    explicit EditBlock(QTextCursor &cursor)
        : m_cursor(cursor)
    {
        m_cursor.beginEditBlock();
    }

    ~EditBlock() { m_cursor.endEditBlock(); }

    EditBlock(const EditBlock &) = delete;
    EditBlock &operator=(const EditBlock &) = delete;

private:
    QTextCursor &m_cursor;
};
