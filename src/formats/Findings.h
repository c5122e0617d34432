// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// What is met in a file, of one gravity: the first in words, and how many more.
class Findings
{
public:
    void note(QStringView what)
    {
        if (m_count++ == 0)
            m_first = what.toString();
    }

    // The same with its place, a byte of the file.
    void note(QStringView what, qsizetype at)
    {
        if (m_count++ == 0)
            m_first = QStringLiteral("%1 (at byte %2)").arg(what).arg(at);
    }

    // Empty when nothing was met.
    QString summary() const
    {
        return m_count < 2 ? m_first : QStringLiteral("%1 and %2 more").arg(m_first).arg(m_count - 1);
    }

private:
    QString m_first;
    qsizetype m_count = 0;
};
