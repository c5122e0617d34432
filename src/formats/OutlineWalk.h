// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Entry.h"

#include <QByteArray>

// Steps through a subtree in outline order, keeping the path and the visibility of the entry that it stands on.
class OutlineWalk
{
public:
    // The path is the top entry's.
    OutlineWalk(const Entry *top, const QByteArray &path);

    // Null behind the last entry.
    const Entry *entry() const { return m_entry; }

    const QByteArray &path() const { return m_path; }

    // Whether all ancestors of the entry are expanded.
    bool visible() const { return !m_hidden; }

    void next();

private:
    void climb();

    const Entry *m_top;
    const Entry *m_entry;
    QByteArray m_path;
    bool m_hidden;
    // The collapsed ancestor within the subtree that hides the entry.
    const Entry *m_hiddenBy = nullptr;
};
