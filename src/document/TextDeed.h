// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/TextPane.h"

#include <QLatin1StringView>

#include <memory>

// Names what is done to the text of a pane while it lives, as in "bold in": the step that comes of it is one of its
// own, whatever is typed before and behind. When that is undone, what was selected before is selected again, and redone
// what was behind it. Without a name it is typing, which goes on merging.
class TextDeed
{
public:
    TextDeed(const TextPane &pane, QLatin1StringView what);
    ~TextDeed();
    TextDeed(const TextDeed &) = delete;
    TextDeed &operator=(const TextDeed &) = delete;

private:
    const TextPane &m_pane;
    // Null where the pane shows none. The pane may turn to another.
    const std::shared_ptr<EntryDocument> m_text;
    const QLatin1StringView m_outer;
    const bool m_isNamed;
    EntryDocument::Selection m_before;
    int m_depth = 0;
};
