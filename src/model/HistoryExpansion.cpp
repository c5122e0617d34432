// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What is opened and closed alone, which is no step, and what a file holds of that.

#include "model/History.h"

#include "model/Outline.h"

#include <algorithm>
#include <utility>

namespace
{

// The next entry that is not below this one; null behind the last.
const Entry *nextBeside(const Entry *entry, const Entry *root)
{
    while (entry != root && !entry->next())
        entry = entry->parent();
    return entry == root ? nullptr : entry->next();
}

// Calls visit(entry) for what is open where it is seen, which is what a file tells, until it answers false.
template <typename Visit>
void visitOpen(const Entry *root, Visit visit)
{
    for (const Entry *entry = root; entry;) {
        const bool isOpen = entry->expanded() && entry->childCount() > 0;
        if (isOpen && !visit(*entry))
            return;
        entry = isOpen ? entry->firstChild() : nextBeside(entry, root);
    }
}

} // namespace

// No text is let go meanwhile, whatever is shown because of it: that would make fewer steps of those that there are.
void History::expandAlone(Change change)
{
    const Step step(*this, QString(), StepKind::OfOneChange);
    apply(std::move(change));
}

// What is as it was before is forgotten.
void History::addToTrail(const change::Expand &inverse)
{
    Trail &trail = m_position > 0 ? m_steps[static_cast<size_t>(m_position) - 1].trail : m_firstTrail;
    const auto add = [&trail](EntryId id, bool before) {
        if (const auto known = trail.try_emplace(id, before); !known.second && known.first->second != before)
            trail.erase(known.first);
    };
    for (const EntryId id : inverse.expansion.opened)
        add(id, true);
    for (const EntryId id : inverse.expansion.closed)
        add(id, false);
}

// What was opened and closed behind a step that is undone stays so, as if that had been done before the step; but for
// what the step itself opened or closed, which is as it was before it.
void History::passOver(Recorded &step, Trail &below, const std::vector<EntryId> &own) noexcept
{
    for (const EntryId id : own)
        step.trail.erase(id);
    // What is known of before is older.
    below.merge(step.trail);
    step.trail.clear();
    std::erase_if(below, [this](const auto &each) {
        const Entry *entry = m_outline.tree.entry(each.first);
        return !entry || entry->expanded() == each.second;
    });
}

void History::noteSight()
{
    if (m_saved == m_position && std::exchange(m_touched, !isAsSaved()) != m_touched)
        Q_EMIT positionChanged();
}

// The outline is then as it was before the first step in everything that is saved.
bool History::takeBackFirstTrail()
{
    change::Expand back;
    for (const auto &[id, wasOpen] : m_firstTrail)
        (wasOpen ? back.expansion.opened : back.expansion.closed).push_back(id);
    expandAlone(std::move(back));
    // What is selected is not to be hidden now, or it would be opened again.
    Entry *selected = m_outline.tree.selected();
    for (Entry *above = selected ? selected->parent() : nullptr; above; above = above->parent()) {
        if (!above->expanded())
            selected = above;
    }
    select(selected);
    if (m_saved == m_position)
        m_touched = !isAsSaved();
    Q_EMIT positionChanged();
    return true;
}

History::Look History::look() const
{
    Look seen;
    seen.selected = selectedId();
    visitOpen(m_outline.tree.root(), [&seen](const Entry &entry) {
        seen.open.push_back(entry.id());
        return true;
    });
    std::ranges::sort(seen.open);
    return seen;
}

bool History::looksLike(const Look &seen) const noexcept
{
    size_t open = 0;
    bool isSame = true;
    visitOpen(m_outline.tree.root(), [&](const Entry &entry) {
        ++open;
        return isSame = std::ranges::binary_search(seen.open, entry.id());
    });
    return isSame && open == seen.open.size() && selectedId() == seen.selected;
}

// What was selected and opened by no user, and counts as no change, is no change when the history comes back either.
void History::leave() noexcept
{
    if (m_saved != m_position || m_touched)
        return;
    try {
        m_leftLook = look();
    } catch (...) {
        // It may count as changed then, which only asks for a save too many.
        return;
    }
}
