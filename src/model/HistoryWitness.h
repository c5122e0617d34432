// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/History.h"

// Is told of all that a history does, in the order in which it is done, so that it can be done again elsewhere. It is
// told while that happens: it may look at the outline, and change nothing.
class HistoryWitness
{
public:
    virtual ~HistoryWitness() = default;

    // A step begins that is more than a text's own.
    virtual void stepBegins() noexcept = 0;
    // A change is about to be applied; the outline is as it was before.
    virtual void aboutToApply(const Change &change) noexcept = 0;
    // A change was carried out, and this would take it back. What it did is to be read from the outline; of a step of a
    // live text, which goes on, once the step is over.
    virtual void carriedOut(const Change &inverse) noexcept = 0;
    // The last change told of was taken back.
    virtual void takenBack() noexcept = 0;

    // What was told of since the last call of one of these is a step, which holds that many changes;
    virtual void stepEnded(const History::StepInfo &info, EntryId selectedBefore, size_t changes) noexcept = 0;
    // or is none, because it only opened and closed something, which stays so when steps are undone and redone.
    virtual void expandedAlone() noexcept = 0;

    // A step, which holds that many changes, is about to be undone or redone;
    virtual void aboutToMove(const History::StepInfo &info, bool forth, size_t changes) noexcept = 0;
    // and was, or it was impossible and nothing has changed.
    virtual void moved(bool done) noexcept = 0;

    // The outline counts as saved.
    virtual void saved() noexcept = 0;
    // Nothing leads back any more.
    virtual void startedAnew() noexcept = 0;
    // The history and its outline go.
    virtual void aboutToGo() noexcept = 0;
};
