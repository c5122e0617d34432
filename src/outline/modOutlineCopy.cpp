// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Copying, pasting and deleting entries, and the tagged entries.

#include "outline/OutlineCommand.h"
#include "outline/SelectedEntries.h"
#include "outline/modOutline.h"

#include "document/StepProcedure.h"
#include "document/modNodes.h"
#include "model/OutlineOrder.h"
#include "model/ShownLabel.h"

#include <QScopeGuard>

#include <algorithm>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace
{

// The tagged entries in their order of insertion, without the root and without those that lie inside another one.
std::vector<Entry *> gatherTagged(const EntryTree &tree)
{
    std::unordered_set<const Entry *> inside;
    const Entry *root = tree.root();
    for (const Entry *entry = root; entry; entry = nextInOutline(entry, root)) {
        const Entry *parent = entry->parent();
        if (parent && ((parent->tagged() && !parent->isRoot()) || inside.contains(parent)))
            inside.insert(entry);
    }
    std::vector<Entry *> gathered;
    const EntryCollection &entries = tree.collection();
    for (int index = 1; index <= entries.count(); ++index) {
        Entry *entry = entries.at(index);
        if (entry->tagged() && !entry->isRoot() && !inside.contains(entry))
            gathered.push_back(entry);
    }
    return gathered;
}

bool liesWithin(const Entry *entry, const std::vector<Entry *> &subtrees)
{
    const std::unordered_set<const Entry *> tops(subtrees.begin(), subtrees.end());
    for (; entry; entry = entry->parent()) {
        if (tops.contains(entry))
            return true;
    }
    return false;
}

void deleteAll(Document &document, const std::vector<Entry *> &entries)
{
    if (entries.empty())
        return;
    const modNodes::ActionScope action;
    const HistoryBulk bulk(document.history);
    std::unordered_set<Entry *> parents;
    for (const Entry *entry : entries)
        parents.insert(entry->parent());
    document.history.removeAll(entries);
    document.dismiss(NoticeKind::DocumentFull);
    // As NodeDelete does for each.
    for (Entry *parent : parents) {
        if (parent->childCount() > 0)
            continue;
        // A bulk change tells nobody of it.
        if (parent->expanded())
            document.setExpansionLevel(parent->isRoot() ? 1 : 0);
        document.history.setExpanded(parent, false);
    }
}

void select(Document &document, Entry *entry)
{
    modNodes::NodeSelect(document, entry);
    modNodes::NodeTextGet(document, entry);
}

void deleteBranches(Document &document, const std::vector<Entry *> &branches)
{
    if (!userAgrees(
            u"Do you really want to delete the %1 selected entries, including any children?"_s.arg(branches.size())))
        return;
    const History::Step step(document.history, stepName("deletion of"_L1, branches));
    Entry *survivor = survivorOf(branches, document.tree.selected());
    deleteAll(document, branches);
    select(document, survivor);
}

// What a paste copies.
struct Copied {
    EntryRef first;
    // None without the first, be it that this one is gone.
    std::vector<EntryRef> others;
};

Copied &copied()
{
    static Copied entries;
    return entries;
}

// The copied entries that are still there, with their outline.
struct CopiedBranches {
    const EntryTree *tree = nullptr;
    std::vector<Entry *> entries;
};

CopiedBranches copiedBranches()
{
    CopiedBranches branches;
    const auto add = [&branches](const EntryRef &each) {
        Entry *entry = each.entry();
        if (!entry)
            return;
        branches.tree = each.tree();
        branches.entries.push_back(entry);
    };
    add(copied().first);
    if (copied().first.id() != EntryId::None)
        std::ranges::for_each(copied().others, add);
    // They may have been moved since.
    branches.entries = branchesOf(branches.entries);
    return branches;
}

void copy(const EntryTree &tree)
{
    const std::vector<Entry *> branches = branchesOf(tree.selectedEntries());
    copied().first.set(&tree, branches.empty() ? nullptr : branches.front());
    copied().others.clear();
    for (size_t i = 1; i < branches.size(); ++i)
        copied().others.emplace_back(&tree, branches[i]);
}

// Removes what copies now stand for. A document that loses its current entry by that shows another one.
void removePasted(const CopiedBranches &sources)
{
    Document *document = modNodes::documentOf(*sources.tree);
    if (!document)
        return;
    const History::Step step(document->history, stepName("deletion of"_L1, sources.entries));
    Entry *selected = document->tree.selected();
    Entry *survivor = selected ? survivorOf(sources.entries, selected) : nullptr;
    document->history.removeAll(sources.entries);
    if (survivor != selected)
        modNodes::NodeSelect(*document, survivor);
}

// Each in turn, as one is pasted.
void pasteSeveral(Document &document, const CopiedBranches &sources, bool removeSources)
{
    const modNodes::ActionScope action;
    const modNodes::PastePlace place = modNodes::placeForPaste(document, sources.entries.front());
    const Entry *parent = modNodes::parentOfPaste(place);
    // Moved below one of them, they would be removed together with their only copies.
    if (removeSources && liesWithin(parent, sources.entries))
        return;
    const History::Step step(document.history, stepName("pasting of"_L1, sources.entries));
    const std::vector<Entry *> copies =
        insertCopies(document, *sources.tree, sources.entries, place.relationship, place.relative);
    if (removeSources) {
        removePasted(sources);
        copied() = Copied();
    }
    selectEntries(document, copies.back(), copies);
}

void paste(Document &document, bool removeSources)
{
    const CopiedBranches sources = copiedBranches();
    if (sources.entries.size() > 1) {
        stepProcedure(&document, "modNodes NodePaste", [&] { pasteSeveral(document, sources, removeSources); });
        return;
    }
    if (!sources.entries.empty())
        copied() = {EntryRef(sources.tree, sources.entries.front()), {}};
    modNodes::NodePaste(document, copied().first, removeSources);
}

// Where some are tagged and some are not, all are tagged.
void tagEntries(Document &document, const std::vector<Entry *> &entries)
{
    const bool untag = std::ranges::all_of(entries, &Entry::tagged);
    const History::Step step(document.history, stepName(untag ? "untagging of"_L1 : "tagging of"_L1, entries));
    const QuietChange quiet(document, entries.size());
    for (Entry *entry : entries)
        document.history.setTagged(entry, !untag);
    document.history.select(document.tree.selected(), entries);
}

} // namespace

namespace modOutline
{

EntryRef &copiedEntry()
{
    return copied().first;
}

bool areEntriesCopied()
{
    const auto isThere = [](const EntryRef &each) { return each.entry() != nullptr; };
    return isThere(copied().first) ||
           (copied().first.id() != EntryId::None && std::ranges::any_of(copied().others, isThere));
}

void OutlineCopy()
{
    onActiveDocument("modOutline OutlineCopy", [](Document &document) { copy(document.tree); });
}

void OutlinePaste()
{
    changeActiveDocument("modOutline OutlinePaste", [](Document &document) { paste(document, false); });
}

void OutlinePasteAndDelete()
{
    changeActiveDocument("modOutline OutlinePasteAndDelete", [](Document &document) { paste(document, true); });
}

void OutlineDelete()
{
    changeActiveDocument("modOutline OutlineDelete", [](Document &document) {
        const std::vector<Entry *> branches = branchesOf(document.tree.selectedEntries());
        if (branches.empty())
            return;
        if (branches.size() > 1) {
            deleteBranches(document, branches);
            return;
        }
        Entry *entry = branches.front();
        // Only by itself.
        if (entry->isRoot() && document.tree.areSeveralSelected())
            return;
        constexpr qsizetype mostOfLabel = 80;
        const QString question =
            u"Do you really want to delete the entry '"_s + briefLabel(entry->label(), mostOfLabel) + u"'?"_s;
        if (!userAgrees(question))
            return;
        const History::Step step(document.history, stepName("deletion of"_L1, *entry));
        Entry *survivor = modNodes::survivorOf(*entry);
        modNodes::NodeDelete(document, entry);
        if (survivor)
            select(document, survivor);
        else
            modNodes::showNothing(document);
    });
}

void OutlineTaggedEntry()
{
    changeActiveDocument("modOutline OutlineTaggedEntry", [](Document &document) {
        Entry *entry = document.tree.selected();
        if (document.tree.areSeveralSelected()) {
            if (!document.tree.isSelected(document.tree.root()))
                tagEntries(document, document.tree.selectedEntries());
            return;
        }
        if (!entry || entry->isRoot())
            return;
        modNodes::NodeTagToggle(document, entry);
    });
}

void OutlinePasteTaggedEntries()
{
    changeActiveDocument("modOutline OutlinePasteTaggedEntries", [](Document &document) {
        const std::vector<Entry *> tagged = gatherTagged(document.tree);
        if (tagged.empty())
            return;
        const modNodes::ActionScope action;
        History::Step step(document.history, tagged.size() == 1 ? stepName("pasting of"_L1, *tagged.front())
                                                                : u"pasting of %1 tagged entries"_s.arg(tagged.size()));
        // Also when the outline fills up before the last of them, so that the text pane shows the selected entry's
        // text.
        const auto showSelected = qScopeGuard([&document] {
            procedure("modOutline OutlinePasteTaggedEntries",
                      [&document] { modNodes::NodeSelect(document, document.tree.selected()); });
        });
        const HistoryBulk bulk(document.history);
        // Each copy is the place of the next, so the copies stand in the order of their sources.
        for (const Entry *source : tagged) {
            const modNodes::PastePlace place = modNodes::placeForPaste(document, source);
            Entry *copy = modNodes::withRoom(document, [&] {
                return document.history.insertCopy(document.tree, source, place.relationship, place.relative);
            });
            modNodes::noteExpandedCopy(document, *copy);
            document.history.select(copy);
            // What there was room for stays.
            step.keep();
        }
    });
}

void OutlineDeleteTaggedEntries()
{
    changeActiveDocument("modOutline OutlineDeleteTaggedEntries", [](Document &document) {
        Entry *selected = document.tree.selected();
        const bool confirmed =
            selected && userAgrees(u"Do you really want to delete the tagged entries, including any children?"_s);
        if (confirmed) {
            const std::vector<Entry *> tagged = gatherTagged(document.tree);
            const History::Step step(document.history, tagged.size() == 1
                                                           ? stepName("deletion of"_L1, *tagged.front())
                                                           : u"deletion of %1 tagged entries"_s.arg(tagged.size()));
            if (liesWithin(selected, tagged))
                selected = document.tree.root();
            deleteAll(document, tagged);
            select(document, selected);
            return;
        }
        select(document, selected);
    });
}

} // namespace modOutline
