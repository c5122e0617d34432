// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Expanding, collapsing, sorting and renaming.

#include "outline/OutlineCommand.h"
#include "outline/SelectedEntries.h"
#include "outline/modOutline.h"

#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/OutlinePane.h"
#include "document/modNodes.h"
#include "util/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace
{

// The selected entry, without which error 91 ends the command.
Entry *requireSelected(const Document &document)
{
    if (Entry *entry = document.tree.selected())
        return entry;
    throw RunTimeError(ErrorNumber::ObjectNotSet,
                       u"%1: no entry is selected"_s.arg(errorDescription(ErrorNumber::ObjectNotSet)));
}

// Null when the entry is visible, or there is none.
Entry *outermostClosedAncestor(const Entry *entry)
{
    Entry *closed = nullptr;
    for (Entry *ancestor = entry ? entry->parent() : nullptr; ancestor; ancestor = ancestor->parent()) {
        if (!ancestor->expanded())
            closed = ancestor;
    }
    return closed;
}

} // namespace

namespace modOutline
{

void OutlineExpand()
{
    changeActiveDocument("modOutline OutlineExpand", [](Document &document) {
        Entry *entry = requireSelected(document);
        selectCurrentAlone(document);
        if (entry->childCount() > 0)
            document.history.setExpanded(entry, true);
    });
}

void OutlineCollapse()
{
    changeActiveDocument("modOutline OutlineCollapse", [](Document &document) {
        Entry *entry = requireSelected(document);
        selectCurrentAlone(document);
        document.history.setExpanded(entry, false);
    });
}

void OutlineExpandAll()
{
    changeActiveDocument("modOutline OutlineExpandAll", [](Document &document) {
        Entry *root = modNodes::NodeGetRoot(document);
        if (!root)
            return;
        modNodes::NodeExpandAll(document, root);
        document.setExpansionLevel(-1);
        document.autoFitSplit();
    });
}

void OutlineCollapseAll()
{
    changeActiveDocument("modOutline OutlineCollapseAll", [](Document &document) {
        Entry *root = modNodes::NodeGetRoot(document);
        modNodes::NodeSelect(document, root);
        if (!root)
            return;
        modNodes::NodeCollapseAll(document, root);
        modNodes::NodeTextGet(document, root);
        document.setExpansionLevel(1);
        document.autoFitSplit();
    });
}

void OutlineExpandToLevel(int iLevel)
{
    changeActiveDocument("modOutline OutlineExpandToLevel", [&](Document &document) {
        if (Entry *root = modNodes::NodeGetRoot(document)) {
            modNodes::NodeExpandToLevel(document, root, iLevel);
            // A selection that is hidden now falls to the head of the branch that hides it.
            if (Entry *head = outermostClosedAncestor(document.tree.selected()))
                modNodes::NodeSelect(document, head);
            document.setExpansionLevel(iLevel);
        }
        document.autoFitSplit();
    });
}

void OutlineSortCurrent()
{
    changeActiveDocument("modOutline OutlineSortCurrent", [](Document &document) {
        Entry *entry = document.tree.selected();
        if (!entry)
            return;
        const History::Step step(document.history, stepName("sorting below"_L1, *entry));
        // Set and taken back at once: the children are sorted now, and later insertions stay where they are put.
        document.history.setSorted(entry, true);
        document.history.setSorted(entry, false);
    });
}

void OutlineSortAll()
{
    changeActiveDocument("modOutline OutlineSortAll", [](Document &document) {
        if (Entry *root = modNodes::NodeGetRoot(document))
            modNodes::NodeSortAll(document, root, true);
    });
}

void OutlineRename()
{
    changeActiveDocument("modOutline OutlineRename", [](Document &document) {
        if (!document.tree.selected())
            return;
        selectCurrentAlone(document);
        if (DocumentView *view = document.view())
            view->trvOutline.StartLabelEdit();
    });
}

} // namespace modOutline
