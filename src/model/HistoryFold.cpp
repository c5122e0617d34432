// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Letting go of live texts: what they could undo becomes texts.

#include "model/History.h"

#include "model/Outline.h"

#include <algorithm>

// Steps of a text that follow each other without anything between them: the first change among them and
// the last, and how many they are.
struct History::TextRun {
    struct Spot {
        size_t step = 0;
        size_t change = 0;
    };

    Spot first;
    Spot last;
    int count = 0;
    QByteArray text;
};

namespace
{

bool isTextStepOf(const Change &change, EntryId entry)
{
    const auto *step = std::get_if<change::TextStep>(&change);
    return step && step->entry == entry;
}

// Whether a text was replaced: what is beyond belongs to another live text.
bool replacesTextOf(const Change &change, EntryId entry)
{
    const auto *stored = std::get_if<change::StoredText>(&change);
    return stored && stored->entry == entry;
}

// Whether a step is nothing but steps of that text, so that several can be one.
bool isTypingIn(const std::vector<Change> &changes, EntryId entry)
{
    return std::ranges::all_of(changes, [entry](const Change &change) { return isTextStepOf(change, entry); });
}

} // namespace

// The runs of a stretch of steps in the order of time: from the newest back to where the text was replaced while they
// are done, from the oldest on while they are undone.
std::vector<History::TextRun> History::textRuns(EntryId entry, bool undone) const
{
    std::vector<TextRun> runs;
    bool open = false;
    const size_t begin = undone ? static_cast<size_t>(m_position) : 0;
    const size_t end = undone ? m_steps.size() : static_cast<size_t>(m_position);
    for (size_t i = 0; i < end - begin; ++i) {
        const size_t step = undone ? begin + i : end - 1 - i;
        const std::vector<Change> &changes = m_steps[step].changes;
        const size_t border = undone ? step : step + 1;
        open = open && isTypingIn(changes, entry) && m_saved != static_cast<int>(border);
        for (size_t j = 0; j < changes.size(); ++j) {
            const size_t at = undone ? j : changes.size() - 1 - j;
            if (replacesTextOf(changes[at], entry))
                return runs;
            if (!isTextStepOf(changes[at], entry)) {
                open = open && std::holds_alternative<change::Expand>(changes[at]);
                continue;
            }
            if (!open)
                runs.push_back({{step, at}, {step, at}, 0, {}});
            open = true;
            (undone ? runs.back().last : runs.back().first) = {step, at};
            ++runs.back().count;
        }
        open = open && isTypingIn(changes, entry);
    }
    return runs;
}

void History::foldTextSteps(EntryId entry, const std::function<QByteArray(int stepsBack)> &textAt)
{
    if (m_depth > 0 || m_moving)
        return;
    std::vector<TextRun> done = textRuns(entry, false);
    std::vector<TextRun> undone = textRuns(entry, true);
    int stepsBack = 0;
    for (TextRun &run : done)
        run.text = textAt(stepsBack += run.count);
    stepsBack = 0;
    for (TextRun &run : undone)
        run.text = textAt(stepsBack -= run.count);
    // From the newest to the oldest, so that what goes does not move what is still to be looked at.
    std::ranges::reverse(undone);
    for (TextRun &run : undone)
        fold(entry, run);
    for (TextRun &run : done)
        fold(entry, run);
    if (done.empty() && undone.empty())
        return;
    dropBeyondWeight();
    Q_EMIT stepsChanged();
    Q_EMIT positionChanged();
}

void History::fold(EntryId entry, TextRun &run)
{
    const auto stepAt = [this](size_t step) { return m_steps.begin() + static_cast<std::ptrdiff_t>(step); };
    const size_t first = run.first.step;
    const size_t last = run.last.step;
    Recorded &step = m_steps[first];
    const auto isNamedOtherwise = [&step](const Recorded &later) { return later.info.name != step.info.name; };
    const bool isOfSeveralKinds = std::any_of(stepAt(first), stepAt(last + 1), isNamedOtherwise);
    step.changes[run.first.change] = change::StoredText{entry, run.text, nullptr};
    const auto dropTextSteps = [&](std::vector<Change> &changes, size_t from, size_t to) {
        const auto at = [&changes](size_t change) { return changes.begin() + static_cast<std::ptrdiff_t>(change); };
        changes.erase(
            std::remove_if(at(from), at(to), [entry](const Change &change) { return isTextStepOf(change, entry); }),
            at(to));
    };
    dropTextSteps(step.changes, run.first.change + 1, first == last ? run.last.change + 1 : step.changes.size());
    for (size_t other = first + 1; other <= last; ++other) {
        Recorded &later = m_steps[other];
        dropTextSteps(later.changes, 0, later.changes.size());
        // How it was before the first of them is older.
        step.trail.merge(later.trail);
        step.selectedAfter = later.selectedAfter;
        step.severalAfter = std::move(later.severalAfter);
        m_weight -= later.weight;
    }
    m_steps.erase(stepAt(first + 1), stepAt(last + 1));
    const int gone = static_cast<int>(last - first);
    // Several that became one are none of those that a witness was told of.
    if (gone > 0)
        step.info.serial = ++m_lastSerial;
    // Nor did it what the first of them is called.
    if (isOfSeveralKinds)
        step.info.name = stepName(step.changes[run.first.change], m_outline.tree);
    if (static_cast<size_t>(m_position) > last)
        m_position -= gone;
    if (m_saved && static_cast<size_t>(*m_saved) > last)
        *m_saved -= gone;
    weigh(m_steps[first]);
}
