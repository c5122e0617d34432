// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/clsFont.h"

#include <QtGlobal>

// The application-wide state of the core. One user-interface thread reads and writes it.

// The user's options, filled from the settings store at start-up.
struct Options {
    qint16 MaxMRUFiles = 10;
    bool AutoLabelEdit = false;
    bool AutoSplit = true;
    bool Backup = true;
    bool PreserveSettings = true;
    bool StartWithNewDocument = false;
    bool StartWithLatestDocuments = true;
    bool ViewStatusbar = true;
    bool ViewToolbar = true;

    bool operator==(const Options &other) const = default;
};

inline Options g_options;

// The fonts that a new document gets.
inline clsFont g_fntDefaultOutlineFont;
inline clsFont g_fntDefaultTextFont;

// True while a document is loaded, saved, imported or exported: event handlers do nothing, and selecting an entry does
// not load its text.
inline bool bBusy = false;

// Sets the busy flag while it lives.
class BusyScope
{
public:
    BusyScope()
        : m_before(bBusy)
    {
        bBusy = true;
    }

    ~BusyScope() { bBusy = m_before; }

    BusyScope(const BusyScope &) = delete;
    BusyScope &operator=(const BusyScope &) = delete;

private:
    bool m_before;
};

// How deep NodeActionStart is nested.
inline qint16 iActionDepth = 0;

// How many document windows are open.
inline qint16 iDocumentCount = 0;
