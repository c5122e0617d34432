// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/FindRun.h"

#include <QObject>
#include <QTest>

#include <map>
#include <vector>

// Who listens to a run, and knows by what it tells what there is.
class FoundEntries
{
public:
    explicit FoundEntries(FindRun &run)
        : m_run(run)
    {
        QObject::connect(&run, &FindRun::found, &run, [this](const std::vector<EntryHits> &entries) {
            for (const EntryHits &each : entries) {
                m_inOrder.push_back(each.entry);
                m_hits[each.entry] = each;
            }
        });
        QObject::connect(&run, &FindRun::finished, &run, [this] { ++m_finished; });
        QObject::connect(&run, &FindRun::changed, &run, [this](EntryId entry, const EntryHits &hits) {
            m_hits[entry] = hits;
            ++m_changes;
        });
        QObject::connect(&run, &FindRun::gone, &run, [this](EntryId entry) { m_gone += int(m_hits.erase(entry)); });
    }

    bool wait() const
    {
        return QTest::qWaitFor([this] { return m_run.isUpToDate(); }, 20'000);
    }

    const std::map<EntryId, EntryHits> &hits() const { return m_hits; }

    // As they were found at first.
    const std::vector<EntryId> &inOrder() const { return m_inOrder; }

    int finished() const { return m_finished; }

    int changes() const { return m_changes; }

    int gone() const { return m_gone; }

private:
    FindRun &m_run;
    std::map<EntryId, EntryHits> m_hits;
    std::vector<EntryId> m_inOrder;
    int m_finished = 0;
    int m_changes = 0;
    int m_gone = 0;
};
