// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/History.h"
#include "vault/RecoveryDatabase.h"

#include <map>
#include <memory>
#include <vector>

// The outline that a snapshot was made of, with its root selected.
std::unique_ptr<Outline> outlineOf(const Snapshot &snapshot);

// Does once more, through a history, what a journal took down.
class Replay
{
public:
    // The history's outline was made of the snapshot.
    Replay(History &history, const Snapshot &snapshot);
    ~Replay();
    Replay(const Replay &) = delete;
    Replay &operator=(const Replay &) = delete;

    // False when that is impossible, and then nothing has changed.
    bool play(const LogRecord &record);

    // The entry that has the place of one of the journal's; null without one.
    Entry *entry(EntryId journalled) const;

private:
    void playStep(const LoggedStep &step);
    void playChange(const LoggedChange &change);
    void noteExpansions(const LoggedStep &step);
    bool undo(qint64 record);
    bool redo(qint64 record);
    void remember(const EntryRecords &records, const Entry *top);
    EntryId idOf(EntryId journalled) const;
    std::vector<EntryId> idsOf(const std::vector<EntryId> &journalled) const;

    History &m_history;
    const std::function<QDateTime()> m_clock;
    // An entry that was taken out and put back as another one had several ids.
    std::map<EntryId, std::vector<EntryId>> m_ids;
    // Whether a record has made a step: one that made no difference here has not.
    std::map<qint64, bool> m_madeStep;
    // The records of the steps that are done.
    std::vector<qint64> m_done;
    // What was opened and closed in steps that were not made. The history has it in the step before.
    std::map<qint64, std::vector<change::Expand>> m_expansions;
};
