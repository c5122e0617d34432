// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/Replay.h"

#include "model/Outline.h"
#include "util/RunTimeError.h"

#include <limits>

using namespace Qt::StringLiterals;

std::unique_ptr<Outline> outlineOf(const Snapshot &snapshot)
{
    auto outline = std::make_unique<Outline>();
    outline->outlineFont = snapshot.outlineFont;
    outline->textFont = snapshot.textFont;
    outline->foreignHeader = snapshot.foreignHeader;
    outline->foreignTrailer = snapshot.foreignTrailer;
    if (Subtree all = EntryTree::subtreeOf(snapshot.entries)) {
        outline->tree.put(all, {nullptr, 0});
        outline->tree.select(outline->tree.root());
    }
    return outline;
}

Replay::Replay(History &history, const Snapshot &snapshot)
    : m_history(history)
    , m_clock(history.clock())
{
    // A step that the journal goes back to must not have gone meanwhile.
    m_history.setMaximumWeight(std::numeric_limits<qsizetype>::max());
    remember(snapshot.entries, m_history.outline().tree.root());
}

Replay::~Replay()
{
    m_history.setClock(m_clock);
    m_history.setMaximumWeight(History::maximumWeight);
}

void Replay::remember(const EntryRecords &records, const Entry *top)
{
    const Entry *entry = top;
    for (const EntryRecord &record : records) {
        if (!entry)
            return;
        if (record.id != EntryId::None)
            m_ids[record.id].push_back(entry->id());
        entry = nextInOutline(entry, top);
    }
}

Entry *Replay::entry(EntryId journalled) const
{
    const auto found = m_ids.find(journalled);
    if (found == m_ids.end())
        return nullptr;
    for (const EntryId id : found->second) {
        if (Entry *entry = m_history.outline().tree.entry(id))
            return entry;
    }
    return nullptr;
}

EntryId Replay::idOf(EntryId journalled) const
{
    if (const Entry *found = entry(journalled))
        return found->id();
    throw RunTimeError(ErrorNumber::ElementNotFound, u"Element not found: a recovered change is about no entry"_s);
}

std::vector<EntryId> Replay::idsOf(const std::vector<EntryId> &journalled) const
{
    std::vector<EntryId> ids;
    ids.reserve(journalled.size());
    for (const EntryId id : journalled)
        ids.push_back(idOf(id));
    return ids;
}

void Replay::playChange(const LoggedChange &change)
{
    if (const auto *insert = std::get_if<logged::Insert>(&change)) {
        change::Insert again;
        for (const logged::Insert::Top &top : insert->tops) {
            const EntryId parent = top.parent == EntryId::None ? EntryId::None : idOf(top.parent);
            const Entry *above = m_history.outline().tree.entry(parent);
            if (top.row < 0 || (above ? top.row > above->childCount() + static_cast<int>(insert->tops.size())
                                      : m_history.outline().tree.root() != nullptr))
                throw RunTimeError(ErrorNumber::InvalidCall);
            again.subtrees.push_back({parent, top.row, EntryTree::subtreeOf(top.entries)});
            remember(top.entries, again.subtrees.back().subtree.top());
        }
        m_history.apply(std::move(again));
    } else if (const auto *remove = std::get_if<change::Remove>(&change)) {
        m_history.apply(change::Remove{idsOf(remove->entries)});
    } else if (const auto *move = std::get_if<change::Move>(&change)) {
        m_history.apply(change::Move{idOf(move->entry), idOf(move->parent), move->row, move->insertion});
    } else if (const auto *label = std::get_if<change::Label>(&change)) {
        m_history.apply(change::Label{idOf(label->entry), label->label});
    } else if (const auto *tag = std::get_if<change::Tag>(&change)) {
        m_history.apply(change::Tag{idOf(tag->entry), tag->tagged});
    } else if (const auto *expand = std::get_if<change::Expand>(&change)) {
        m_history.apply(change::Expand{{idsOf(expand->expansion.opened), idsOf(expand->expansion.closed)}, false});
    } else if (const auto *sorted = std::get_if<change::Sorted>(&change)) {
        m_history.apply(change::Sorted{idOf(sorted->entry), sorted->sorted});
    } else if (const auto *reorder = std::get_if<change::Reorder>(&change)) {
        m_history.apply(change::Reorder{idOf(reorder->parent), reorder->order});
    } else if (const auto *renew = std::get_if<change::Renew>(&change)) {
        m_history.apply(change::Renew{idOf(renew->entry), renew->insertion});
    } else if (const auto *text = std::get_if<logged::Text>(&change)) {
        m_history.apply(change::StoredText{idOf(text->entry), text->text, nullptr});
    } else if (const auto *fonts = std::get_if<change::Fonts>(&change)) {
        m_history.apply(change::Fonts{*fonts});
    } else if (const auto *foreign = std::get_if<change::Foreign>(&change)) {
        m_history.apply(change::Foreign{idOf(foreign->entry), foreign->records});
    } else if (const auto *ofFile = std::get_if<change::FileForeign>(&change)) {
        m_history.apply(change::FileForeign{*ofFile});
    }
}

void Replay::playStep(const LoggedStep &step)
{
    m_history.setClock([time = step.time] { return time; });
    const History::Step again(m_history, step.name);
    if (Entry *selected = entry(step.selectedBefore))
        m_history.select(selected);
    for (const LoggedChange &change : step.changes)
        playChange(change);
}

// What a record opened and closed that made no step here is undone with it all the same.
void Replay::noteExpansions(const LoggedStep &step)
{
    if (m_done.empty() || m_madeStep[m_done.back()])
        return;
    for (const LoggedChange &change : step.changes) {
        if (const auto *expand = std::get_if<change::Expand>(&change))
            m_expansions[m_done.back()].push_back(*expand);
    }
}

bool Replay::undo(qint64 record)
{
    if (m_madeStep[record] && !m_history.undo())
        return false;
    std::erase(m_done, record);
    const std::vector<change::Expand> &expansions = m_expansions[record];
    for (auto expand = expansions.rbegin(); expand != expansions.rend(); ++expand)
        playChange(change::Expand{{expand->expansion.closed, expand->expansion.opened}, false});
    return true;
}

bool Replay::redo(qint64 record)
{
    if (m_madeStep[record] && !m_history.redo())
        return false;
    m_done.push_back(record);
    for (const change::Expand &expand : m_expansions[record])
        playChange(expand);
    return true;
}

bool Replay::play(const LogRecord &record)
{
    const int position = m_history.position();
    try {
        switch (record.kind) {
        case LogRecord::Kind::Step:
            playStep(record.step);
            m_madeStep[record.number] = m_history.position() != position;
            m_done.push_back(record.number);
            noteExpansions(record.step);
            return true;
        case LogRecord::Kind::Expansion:
            for (const LoggedChange &change : record.step.changes)
                playChange(change);
            return true;
        case LogRecord::Kind::Undo:
            return undo(record.target);
        case LogRecord::Kind::Redo:
            return redo(record.target);
        }
    } catch (const std::exception &) {
        return false;
    }
    return false;
}
