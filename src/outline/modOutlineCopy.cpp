// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Copying, pasting and deleting entries, and the tagged entries.

#include "outline/OutlineCommand.h"
#include "outline/modOutline.h"

#include "document/modNodes.h"
#include "model/ShownLabel.h"

#include <QScopeGuard>

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

} // namespace

namespace modOutline
{

EntryRef &copiedEntry()
{
    static EntryRef copied;
    return copied;
}

void OutlineCopy()
{
    onActiveDocument("modOutline OutlineCopy",
                     [](Document &document) { copiedEntry().set(&document.tree, document.tree.selected()); });
}

void OutlinePaste()
{
    changeActiveDocument("modOutline OutlinePaste",
                         [](Document &document) { modNodes::NodePaste(document, copiedEntry(), false); });
}

void OutlinePasteAndDelete()
{
    changeActiveDocument("modOutline OutlinePasteAndDelete",
                         [](Document &document) { modNodes::NodePaste(document, copiedEntry(), true); });
}

void OutlineDelete()
{
    changeActiveDocument("modOutline OutlineDelete", [](Document &document) {
        Entry *entry = document.tree.selected();
        if (!entry)
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
