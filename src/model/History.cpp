// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/History.h"

#include "model/HistoryWitness.h"
#include "model/Outline.h"
#include "model/ShownLabel.h"
#include "util/MakeRoom.h"
#include "util/RunTimeError.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// Where more changes than this are undone at once, one reset is quicker than all announcements.
constexpr size_t mostAnnounced = 64;

bool isExpansion(const Change &change)
{
    return std::holds_alternative<change::Expand>(change);
}

bool concernsView(const Change &change)
{
    const ChangeKind kind = kindOf(change);
    return kind != ChangeKind::Text && kind != ChangeKind::Fonts && kind != ChangeKind::Foreign;
}

// Whether a change takes back the one before it: how an entry was sorted is a state that nobody sees.
bool takesBack(const Change &change, const Change &before)
{
    const auto *sorted = std::get_if<change::Sorted>(&change);
    const auto *earlier = std::get_if<change::Sorted>(&before);
    return sorted && earlier && sorted->entry == earlier->entry;
}

} // namespace

// Tells of a change before it is carried out, and once it is.
class History::Announcement
{
public:
    Announcement(History &history, const Change &change)
        : m_history(history)
        , m_kind(kindOf(change))
        , m_entries(entriesOf(change))
    {
        Q_EMIT m_history.aboutToChange(m_kind);
    }

    void done() const { Q_EMIT m_history.changed(m_kind, m_entries); }

private:
    History &m_history;
    ChangeKind m_kind;
    std::vector<EntryId> m_entries;
};

// Goes back and forth in one reset where many changes are seen.
class History::Moving
{
public:
    Moving(History &history, const Recorded &step, bool forth)
        : m_history(history)
        , m_selected(history.selectedId())
        , m_several(history.m_outline.tree.severalIds())
    {
        const std::vector<Change> &changes = step.changes;
        m_history.m_moving = true;
        if (m_history.m_witness)
            m_history.m_witness->aboutToMove(step.info, forth, changes.size());
        if (static_cast<size_t>(std::ranges::count_if(changes, concernsView)) > mostAnnounced)
            m_bulk.emplace(history);
    }

    ~Moving()
    {
        m_history.m_moving = false;
        if (m_history.m_witness)
            m_history.m_witness->moved(m_done);
    }

    Moving(const Moving &) = delete;
    Moving &operator=(const Moving &) = delete;

    void selectAgain() const { m_history.selectAgain(m_selected, m_several); }

    void setDone() { m_done = true; }

private:
    History &m_history;
    EntryId m_selected;
    std::vector<EntryId> m_several;
    bool m_done = false;
    std::optional<HistoryBulk> m_bulk;
};

QString stepName(QLatin1StringView what, const Entry &entry)
{
    return u"%1 \"%2\""_s.arg(what, briefLabel(entry.label()));
}

QString stepName(const Change &change, const EntryTree &tree)
{
    constexpr QLatin1StringView names[] = {"insertion of"_L1,         "deletion of"_L1,      "move of"_L1,
                                           "renaming of"_L1,          "tagging of"_L1,       "expansion of"_L1,
                                           "sorting of"_L1,           "sorting below"_L1,    "renewal of"_L1,
                                           "change of text of"_L1,    "change of fonts"_L1,  "typing in"_L1,
                                           "change of records of"_L1, "change of records"_L1};
    static_assert(std::size(names) == std::variant_size_v<Change>);
    const Entry *entry = tree.entry(entryOf(change));
    if (const auto *tag = std::get_if<change::Tag>(&change); tag && entry && !tag->tagged)
        return stepName("untagging of"_L1, *entry);
    return entry ? stepName(names[change.index()], *entry) : names[change.index()].toString();
}

History::History(Outline &outline)
    : m_outline(outline)
    , m_savedLook(look())
{
    m_outline.tree.setLabelWriter([this](Entry *entry, const QString &label) {
        apply(change::Label{entry->id(), label});
    });
}

History::~History()
{
    if (m_witness)
        m_witness->aboutToGo();
    m_outline.tree.setLabelWriter({});
}

QAbstractItemModel &History::itemModel()
{
    return m_outline.tree;
}

void History::setMaximumWeight(qsizetype weight)
{
    m_maximumWeight = weight;
    if (dropBeyondWeight())
        Q_EMIT stepsChanged();
}

Entry *History::apply(Change change)
{
    if (m_moving) {
        // Whoever shows the outline may have to open something for that.
        if (!isExpansion(change))
            throw RunTimeError(ErrorNumber::InvalidCall, u"Nothing can be changed while something is undone"_s);
        m_deferred.push_back(std::move(change));
        return nullptr;
    }
    if (m_depth == 0 && isExpansion(change)) {
        const EntryId id = entryOf(change);
        expandAlone(std::move(change));
        return m_outline.tree.entry(id);
    }
    if (m_witness)
        m_witness->aboutToApply(change);
    const Step step(*this, m_depth == 0 ? stepName(change, m_outline.tree) : QString(), StepKind::OfOneChange);
    const Announcement announcement(*this, change);
    const EntryId id = entryOf(change);
    std::vector<Change> &changes = m_open.changes;
    makeRoomBehind(changes, 1);
    if (carryOut(change, m_outline, m_liveTexts)) {
        if (!changes.empty() && takesBack(change, changes.back())) {
            changes.pop_back();
            if (m_witness)
                m_witness->takenBack();
        } else {
            changes.push_back(std::move(change));
            if (m_witness)
                m_witness->carriedOut(changes.back());
        }
        announcement.done();
    }
    return m_outline.tree.entry(id);
}

void History::appendTextStep(EntryId entry, QLatin1StringView what)
{
    if (m_moving)
        return;
    Change change = change::TextStep{entry, false};
    QString name;
    if (const Entry *changed = m_outline.tree.entry(entry); m_depth == 0)
        name = changed && !what.isEmpty() ? stepName(what, *changed) : stepName(change, m_outline.tree);
    begin(name, StepKind::OfText);
    std::vector<Change> &changes = m_open.changes;
    const size_t before = changes.size();
    try {
        changes.push_back(std::move(change));
        if (m_witness)
            m_witness->carriedOut(changes.back());
        Q_EMIT changed(ChangeKind::Text, {entry});
    } catch (...) {
        if (changes.size() > before) {
            changes.pop_back();
            if (m_witness)
                m_witness->takenBack();
        }
        m_openIsBroken = m_depth > 1;
        end();
        throw;
    }
    end();
}

void History::forgetUndone()
{
    if (!canRedo())
        return;
    dropRedoable();
    Q_EMIT stepsChanged();
    Q_EMIT positionChanged();
}

bool History::undo()
{
    if (m_depth > 0 || m_moving || !canUndo())
        return false;
    if (m_position == 0)
        return takeBackFirstTrail();
    leave();
    Recorded &step = m_steps[static_cast<size_t>(m_position) - 1];
    std::vector<EntryId> own;
    for (const Change &change : step.changes) {
        const std::vector<EntryId> expanded = isExpansion(change) ? entriesOf(change) : std::vector<EntryId>();
        own.insert(own.end(), expanded.begin(), expanded.end());
    }
    goBack(step);
    passOver(step, m_position > 1 ? m_steps[static_cast<size_t>(m_position) - 2].trail : m_firstTrail, own);
    landOn(m_position - 1, step.selectedBefore, step.severalBefore);
    return true;
}

bool History::redo()
{
    if (m_depth > 0 || m_moving || !canRedo())
        return false;
    leave();
    Recorded &step = m_steps[static_cast<size_t>(m_position)];
    goForth(step);
    landOn(m_position + 1, step.selectedAfter, step.severalAfter);
    return true;
}

void History::goBack(Recorded &step)
{
    std::vector<Change> &changes = step.changes;
    Moving moving(*this, step, false);
    size_t left = changes.size();
    try {
        while (left > 0) {
            const Announcement announcement(*this, changes[left - 1]);
            if (carryOut(changes[left - 1], m_outline, m_liveTexts) && m_witness)
                m_witness->carriedOut(changes[left - 1]);
            --left;
            announcement.done();
        }
        moving.setDone();
    } catch (...) {
        for (; left < changes.size(); ++left)
            carryOut(changes[left], m_outline, m_liveTexts);
        moving.selectAgain();
        throw;
    }
}

void History::goForth(Recorded &step)
{
    std::vector<Change> &changes = step.changes;
    Moving moving(*this, step, true);
    size_t done = 0;
    try {
        while (done < changes.size()) {
            const Announcement announcement(*this, changes[done]);
            if (carryOut(changes[done], m_outline, m_liveTexts) && m_witness)
                m_witness->carriedOut(changes[done]);
            ++done;
            announcement.done();
        }
        moving.setDone();
    } catch (...) {
        while (done > 0)
            carryOut(changes[--done], m_outline, m_liveTexts);
        moving.selectAgain();
        throw;
    }
}

void History::landOn(int position, EntryId selected, const std::vector<EntryId> &several)
{
    m_position = position;
    selectAgain(selected, several);
    // The step that was undone or redone.
    if (canRedo())
        weigh(m_steps[static_cast<size_t>(position)]);
    if (m_position > 0)
        weigh(m_steps[static_cast<size_t>(position) - 1]);
    if (m_liveTexts)
        m_liveTexts->endMerging();
    if (m_saved == m_position)
        m_touched = !isAsSaved();
    if (dropBeyondWeight())
        Q_EMIT stepsChanged();
    Q_EMIT positionChanged();
    for (Change &expansion : std::exchange(m_deferred, {}))
        expandAlone(std::move(expansion));
}

bool History::goTo(int position)
{
    // The oldest steps may go on the way, which moves the others down.
    while (m_position != position && position >= 0 && position <= stepCount()) {
        const int before = m_position;
        const int count = stepCount();
        if (!(m_position > position ? undo() : redo()))
            return false;
        const int gone = m_position > before ? 0 : std::max(0, count - stepCount());
        position -= std::min(position, gone);
    }
    if (position == 0 && m_position == 0 && canUndo())
        return undo();
    return m_position == position;
}

QString History::undoName() const
{
    if (m_position == 0)
        return canUndo() ? u"opening and closing of branches"_s : QString();
    return m_steps[static_cast<size_t>(m_position) - 1].info.name;
}

QString History::redoName() const
{
    return canRedo() ? m_steps[static_cast<size_t>(m_position)].info.name : QString();
}

std::vector<History::StepInfo> History::steps() const
{
    std::vector<StepInfo> infos;
    infos.reserve(m_steps.size());
    for (const Recorded &step : m_steps)
        infos.push_back(step.info);
    return infos;
}

bool History::isChanged() const
{
    return m_touched || m_saved != m_position;
}

void History::markSaved()
{
    m_saved = m_position;
    m_savedLook = look();
    m_leftLook.reset();
    // Nothing leads back behind what is in the file now but steps.
    if (m_position == 0)
        m_firstTrail.clear();
    m_touched = false;
    if (m_liveTexts)
        m_liveTexts->endMerging();
    if (m_witness)
        m_witness->saved();
    Q_EMIT positionChanged();
}

void History::touch()
{
    if (std::exchange(m_touched, true))
        return;
    Q_EMIT positionChanged();
}

void History::forgetSaved()
{
    m_saved.reset();
    Q_EMIT positionChanged();
}

void History::startAnew()
{
    const bool wasChanged = isChanged();
    m_steps.clear();
    m_firstTrail.clear();
    m_position = 0;
    m_weight = 0;
    m_savedLook = look();
    m_leftLook.reset();
    m_touched = false;
    m_saved = wasChanged ? std::nullopt : std::optional(0);
    if (m_witness)
        m_witness->startedAnew();
    Q_EMIT stepsChanged();
    Q_EMIT positionChanged();
}

void History::select(Entry *entry)
{
    m_outline.tree.select(entry);
}

void History::select(Entry *current, const std::vector<Entry *> &several)
{
    m_outline.tree.select(current, several);
    m_openSelects = true;
}

void History::selectAgain(EntryId selected, const std::vector<EntryId> &several)
{
    Entry *current = m_outline.tree.entry(selected);
    try {
        m_outline.tree.select(current, m_outline.tree.entriesOf(several));
    } catch (const std::bad_alloc &) {
        // What was done is done, whether or not there is memory to say of what.
        m_outline.tree.select(current, {});
    }
}

EntryId History::selectedId() const
{
    const Entry *selected = m_outline.tree.selected();
    return selected ? selected->id() : EntryId::None;
}
