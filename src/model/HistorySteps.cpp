// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// How changes become steps, and how steps go.

#include "model/History.h"

#include "model/HistoryWitness.h"
#include "model/Outline.h"
#include "util/MakeRoom.h"

#include <algorithm>
#include <exception>
#include <utility>

History::Step::Step(History &history, const QString &name, StepKind kind)
    : m_history(history)
    , m_exceptions(std::uncaught_exceptions())
{
    m_history.begin(name, kind);
    m_begin = m_history.m_open.changes.size();
    m_selected = m_history.selectedId();
}

History::Step::~Step()
{
    if (std::uncaught_exceptions() > m_exceptions)
        takeBack();
    m_history.end();
}

void History::Step::setName(const QString &name)
{
    if (m_history.m_depth == 1)
        m_history.m_open.info.name = name;
}

void History::Step::keep()
{
    m_begin = m_history.m_open.changes.size();
    m_selected = m_history.selectedId();
}

void History::Step::takeBack()
{
    m_history.rollBack(m_begin, m_selected);
}

void History::begin(const QString &name, StepKind kind)
{
    if (m_depth == 0) {
        if (m_witness && kind != StepKind::OfText)
            m_witness->stepBegins();
        // What an action does to a text is its own step, and not the end of what was typed before.
        if (m_liveTexts && kind == StepKind::OfAction)
            m_liveTexts->endMerging();
        // What is needed to end it, so that nothing that was done is lost for lack of memory.
        makeRoomBehind(m_steps, 1);
        m_open = Recorded();
        m_open.info.name = name;
        m_open.selectedBefore = selectedId();
        m_open.severalBefore = m_outline.tree.severalIds();
        m_openSelects = false;
    }
    ++m_depth;
}

void History::end() noexcept
{
    if (m_depth > 1) {
        --m_depth;
        return;
    }
    bool isDone = false;
    try {
        if (!m_openIsBroken) {
            commit();
            isDone = true;
        }
    } catch (...) {
        // It is taken back like one that is broken.
        isDone = false;
    }
    if (!isDone)
        rollBack(0, m_open.selectedBefore);
    m_openIsBroken = false;
    m_open = Recorded();
    m_depth = 0;
}

// What was carried out can be taken back: it needs no more than it took.
void History::rollBack(size_t begin, EntryId selected) noexcept
{
    std::vector<Change> &changes = m_open.changes;
    if (changes.size() <= begin)
        return;
    try {
        while (changes.size() > begin) {
            carryOut(changes.back(), m_outline, m_liveTexts);
            // What was typed within the step is not to be redone either, and took away what could be redone before.
            if (const auto *text = std::get_if<change::TextStep>(&changes.back()); text && m_liveTexts) {
                m_liveTexts->forgetUndone(text->entry);
                forgetUndone();
            }
            changes.pop_back();
            if (m_witness)
                m_witness->takenBack();
        }
        selectAgain(selected, begin == 0 ? m_open.severalBefore : std::vector<EntryId>());
        Q_EMIT rolledBack();
    } catch (...) {
        // There is nothing better to be done than to leave it as it is, with what could not be taken back recorded.
        return;
    }
}

void History::commit()
{
    const auto expands = [](const Change &change) { return std::holds_alternative<change::Expand>(change); };
    const auto opener = std::ranges::find_if_not(m_open.changes, expands);
    if (opener == m_open.changes.end()) {
        for (const Change &change : m_open.changes)
            addToTrail(std::get<change::Expand>(change));
        if (m_witness)
            m_witness->expandedAlone();
        return;
    }
    leave();
    m_open.info.entry = entryOf(*opener);
    m_open.info.time = m_clock ? m_clock() : QDateTime();
    if (!m_openSelects)
        m_outline.tree.select(m_outline.tree.selected(), {});
    m_open.selectedAfter = selectedId();
    m_open.severalAfter = m_outline.tree.severalIds();
    const bool typing = std::ranges::all_of(
        m_open.changes, [](const Change &change) { return std::holds_alternative<change::TextStep>(change); });
    m_open.info.serial = ++m_lastSerial;
    dropRedoable();
    m_steps.push_back(std::move(m_open));
    ++m_position;
    if (m_witness)
        m_witness->stepEnded(m_steps.back().info, m_steps.back().selectedBefore, m_steps.back().changes.size());
    weigh(m_steps.back());
    dropBeyondWeight();
    if (m_liveTexts && !typing)
        m_liveTexts->endMerging();
    // The step is over for whoever is told of it.
    m_open = Recorded();
    m_depth = 0;
    Q_EMIT stepsChanged();
    Q_EMIT positionChanged();
}

void History::weigh(Recorded &step)
{
    qsizetype weight = static_cast<qsizetype>(sizeof(Recorded));
    for (const Change &change : step.changes)
        weight += weightOf(change);
    weight += static_cast<qsizetype>((step.severalBefore.size() + step.severalAfter.size()) * sizeof(EntryId));
    m_weight += weight - step.weight;
    step.weight = weight;
}

void History::dropRedoable() noexcept
{
    while (canRedo()) {
        const Recorded &step = m_steps.back();
        for (const Change &change : step.changes) {
            if (const auto *text = std::get_if<change::TextStep>(&change); text && m_liveTexts)
                m_liveTexts->forgetUndone(text->entry);
        }
        m_weight -= step.weight;
        m_steps.pop_back();
    }
    if (m_saved && *m_saved > m_position)
        m_saved.reset();
}

// The oldest first, then what would be redone last; but never the step that is undone or redone next.
bool History::dropBeyondWeight() noexcept
{
    const int before = stepCount();
    int oldest = 0;
    while (m_weight > m_maximumWeight && m_position - oldest > 1)
        m_weight -= m_steps[static_cast<size_t>(oldest++)].weight;
    if (oldest > 0)
        m_firstTrail = std::move(m_steps[static_cast<size_t>(oldest) - 1].trail);
    m_steps.erase(m_steps.begin(), m_steps.begin() + oldest);
    m_position -= oldest;
    if (m_saved)
        m_saved = *m_saved >= oldest ? std::optional(*m_saved - oldest) : std::nullopt;
    while (m_weight > m_maximumWeight && stepCount() - m_position > 1) {
        m_weight -= m_steps.back().weight;
        m_steps.pop_back();
    }
    if (m_saved && *m_saved > stepCount())
        m_saved.reset();
    return stepCount() != before;
}

HistoryBulk::HistoryBulk(History &history)
    : m_history(history)
{
    m_history.m_outline.tree.beginBulkChange();
}

HistoryBulk::~HistoryBulk()
{
    m_history.m_outline.tree.endBulkChange();
}
