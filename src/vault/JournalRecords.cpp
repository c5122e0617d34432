// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What a journal takes down, and how it is handed over.

#include "vault/Journal.h"

#include "document/Document.h"
#include "document/Ports.h"
#include "util/Procedure.h"

#include <QElapsedTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

void Journal::noteChange()
{
    m_changedAt = ports().clock ? ports().clock->now() : QDateTime();
}

void Journal::add(LogRecord::Kind kind, LoggedStep step, qint64 target)
{
    noteChange();
    m_records.push_back({++m_lastRecord, kind, target, std::move(step)});
    m_keeper.wake();
}

void Journal::addLine(Line line, LoggedStep step)
{
    line.record = m_lastRecord + 1;
    m_lines.resize(m_done);
    m_lines.push_back(line);
    ++m_done;
    add(LogRecord::Kind::Step, std::move(step));
}

// Typed or not: a text was changed, and a step of it may have been told of before or may go on.
void Journal::noteTyping(EntryId entry)
{
    guard([&] {
        if (!m_begun || m_move)
            return;
        if (m_document->history.isStepOpen())
            m_touched.push_back(entry);
        else
            noteLooseTyping(entry);
    });
}

// What was changed within a step without a step of its own went into one from before.
void Journal::takeInTouchedTexts()
{
    for (const EntryId entry : std::exchange(m_touched, {})) {
        const bool isKnown = std::ranges::any_of(m_open, [entry](const LoggedChange &change) {
            const auto *text = std::get_if<logged::Text>(&change);
            return text && text->entry == entry;
        });
        if (!isKnown)
            m_open.emplace_back(logged::Text{entry, QByteArray(), logged::Text::State::ToBeMade});
    }
}

void Journal::noteLooseTyping(EntryId entry)
{
    if (!m_typing || m_typing->entry != entry) {
        endTyping();
        m_typing = Typing();
        m_typing->entry = entry;
        const Line *last = m_done > 0 && m_done == m_lines.size() ? &m_lines.back() : nullptr;
        if (last && last->typedIn == entry) {
            m_typing->first = last->first;
            m_typing->last = last->last;
            m_typing->changes = last->changes;
            m_typing->record = last->record;
        }
        const std::vector<History::StepInfo> steps = m_document->history.steps();
        const int position = m_document->history.position();
        if (const Entry *typed = m_document->tree.entry(entry))
            m_typing->step.name = stepName("typing in"_L1, *typed);
        if (position > 0)
            m_typing->step.time = steps[static_cast<size_t>(position) - 1].time;
        m_typing->step.selectedBefore = selected();
    }
    if (!std::exchange(m_typing->isDirty, true))
        m_typing->since = m_keeper.now();
    noteChange();
    m_keeper.wake();
}

void Journal::noteTypedStep(EntryId entry, const History::StepInfo &info, EntryId selectedBefore, size_t changes)
{
    // What is not taken down yet cannot be told apart any more.
    if (!m_typing || m_typing->entry != entry || !m_typing->isDirty) {
        endTyping();
        m_typing = Typing();
        m_typing->entry = entry;
        m_typing->first = info.serial;
        m_typing->changes = static_cast<qint64>(changes);
        m_typing->step.name = info.name;
        m_typing->step.selectedBefore = selectedBefore;
        m_typing->since = m_keeper.now();
    } else if (const Entry *changed = m_document->tree.entry(entry); changed && m_typing->step.name != info.name) {
        // What is taken down together is of several kinds.
        m_typing->step.name = stepName("change of text of"_L1, *changed);
    }
    m_typing->last = info.serial;
    m_typing->step.time = info.time;
    m_typing->isDirty = true;
    noteChange();
    m_keeper.wake();
}

// Puts in the texts that only the end of a step tells: the last of each entry.
void Journal::makeTexts()
{
    std::vector<EntryId> made;
    for (auto change = m_open.rbegin(); change != m_open.rend(); ++change) {
        auto *text = std::get_if<logged::Text>(&*change);
        if (!text)
            continue;
        const bool isKnown = std::ranges::find(made, text->entry) != made.end();
        if (text->state == logged::Text::State::ToBeMade && !isKnown)
            *text = textOf(text->entry);
        made.push_back(text->entry);
    }
    // One that was removed in the same step had its text made then.
    std::erase_if(m_open, [](const LoggedChange &change) {
        const auto *text = std::get_if<logged::Text>(&change);
        return text && text->state == logged::Text::State::ToBeMade;
    });
}

void Journal::takeDownTyping()
{
    Typing &typing = *m_typing;
    typing.isDirty = false;
    QElapsedTimer timer;
    timer.start();
    logged::Text text = textOf(typing.entry);
    constexpr qint64 share = 20;
    m_typingDelay = std::clamp(timer.elapsed() * share, typingDelay, longestTypingDelay);
    if (text.state == logged::Text::State::ToBeMade)
        return;
    LoggedStep step = typing.step;
    step.changes.emplace_back(std::move(text));
    if (typing.record == 0) {
        Line line;
        line.first = typing.first;
        line.last = typing.last;
        // Where it goes back in one step, that step has one change.
        line.changes = typing.first == typing.last ? typing.changes : -1;
        line.typedIn = typing.entry;
        if (line.changes != 1)
            line.changes = -1;
        addLine(line, std::move(step));
        typing.record = m_lastRecord;
        return;
    }
    if (Line &line = m_lines[m_done - 1]; line.last != typing.last) {
        line.last = typing.last;
        line.changes = -1;
    }
    const auto waiting = std::ranges::find(m_records, typing.record, &LogRecord::number);
    if (waiting != m_records.end())
        replaceWaiting(*waiting, std::move(step));
    else
        m_records.push_back({typing.record, LogRecord::Kind::Step, 0, std::move(step)});
}

void Journal::endTyping()
{
    if (m_typing && m_typing->isDirty)
        takeDownTyping();
    m_typing.reset();
}

// Whether the document counts as changed may be all that is new: where its file goes, what was undone is not saved.
bool Journal::isToBeWritten() const
{
    return m_base || !m_records.empty() ||
           (m_begun && m_document && m_document->hasUnsavedChanges() != m_isHandedOverAsChanged);
}

bool Journal::hasWaiting() const
{
    return isToBeWritten() || (m_typing && m_typing->isDirty);
}

bool Journal::isTypingDue() const
{
    return m_typing && m_typing->isDirty && m_keeper.now() - m_typing->since >= m_typingDelay;
}

RecoveryBatch Journal::takeBatch()
{
    RecoveryBatch batch;
    batch.base = std::exchange(m_base, nullptr);
    batch.records = std::exchange(m_records, {});
    batch.state.isChanged = m_isHandedOverAsChanged = m_document->hasUnsavedChanges();
    batch.state.selected = selected();
    batch.state.time = m_changedAt;
    batch.state.steps = static_cast<int>(m_done);
    batch.state.lastRecord = m_lastRecord;
    return batch;
}

bool Journal::look()
{
    if (!m_document)
        return false;
    if (m_broken && m_keeper.now() >= m_retryAt && !m_document->history.isStepOpen()) {
        m_broken = false;
        m_inFlight = false;
        guard([&] { begin(); });
    }
    guard([&] { beginIfUnsaved(); });
    guard([&] {
        if (m_document->history.isStepOpen() || m_move)
            return;
        if (isTypingDue())
            takeDownTyping();
        // While the writer is busy it waits here, where what comes later takes the place of what it replaces.
        if (!m_inFlight && isToBeWritten()) {
            m_inFlight = true;
            m_keeper.write(m_number, takeBatch());
        }
    });
    return m_broken || hasWaiting();
}

void Journal::handOver()
{
    guard([&] {
        beginIfUnsaved();
        if (m_typing && m_typing->isDirty)
            takeDownTyping();
        if (!isToBeWritten())
            return;
        m_inFlight = true;
        m_keeper.write(m_number, takeBatch());
    });
}

void Journal::noteWritten(qint64 size)
{
    m_inFlight = false;
    if (!m_document || !m_begun)
        return;
    if (std::exchange(m_isTold, false))
        m_document->dismiss(NoticeKind::NoRecovery);
    if (m_baseSize == 0)
        m_baseSize = size;
    if (size - m_baseSize > m_roomForLog + (logFactor - 1) * m_baseSize && !m_document->history.isStepOpen())
        guard([&] { begin(); });
    m_keeper.wake();
}

void Journal::noteFailed(const QString &why, const QString &said)
{
    m_inFlight = false;
    if (!m_document || !m_begun)
        return;
    reset();
    m_broken = true;
    m_retryAt = m_keeper.now() + retryDelay;
    m_keeper.wake();
    remark(u"%1: changes are not kept against a crash: %2"_s.arg(m_document->caption(), why));
    m_isTold = true;
    m_document->tell({NoticeKind::NoRecovery,
                      u"What you change in this document is not kept against a crash at the moment: %1. It is "
                      "tried again by itself; save the document to be sure."_s.arg(said)});
}
