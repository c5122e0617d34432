// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"

#include <QtGlobal>

#include <memory>

// A text as it is worked on, with its own steps of undo. The history keeps one, unseen, for as long as a change could
// bring it back.
class LiveText
{
public:
    virtual ~LiveText() = default;

    // The memory that it holds, in bytes, about.
    virtual qsizetype weight() const = 0;
};

// What the history asks of the texts that are worked on. An entry has at most one; it may have one while it is out of
// its tree. What is done here must not be told to the history as a new step.
class LiveTextPort
{
public:
    virtual ~LiveTextPort() = default;

    // Undo, or redo, the last step of the entry's text. Throw when that is impossible, and then nothing has changed.
    virtual void undoText(EntryId entry) = 0;
    virtual void redoText(EntryId entry) = 0;
    // What is undone of the entry's text will not be redone.
    virtual void forgetUndone(EntryId entry) noexcept = 0;
    // Takes the entry's text away, stored in the tree before if it was ahead of that; null when there is none. The
    // entry's stored text is about to become another, or has just become the one that `text` belongs to. Whoever shows
    // the text shows the new one once the step is over.
    virtual std::shared_ptr<LiveText> takeOut(EntryId entry) = 0;
    virtual void putBack(EntryId entry, std::shared_ptr<LiveText> text) = 0;
    // Another step follows, so that what is typed next is not to be merged with what was typed last.
    virtual void endMerging() noexcept = 0;
};
