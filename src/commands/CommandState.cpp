// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandState.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/modNodes.h"
#include "outline/modOutline.h"

#include <algorithm>

namespace
{

bool canMoveDown(const Entry *entry)
{
    for (; entry; entry = entry->parent()) {
        if (entry->next())
            return true;
    }
    return false;
}

void describeEntry(const Entry &entry, CommandState &state)
{
    state.IsRoot = entry.isRoot();
    state.HasChildren = entry.childCount() > 0;
    state.Expanded = entry.expanded();
    state.FirstSibling = !entry.previous();
    state.LastSibling = !entry.next();
    state.HasPrevious = entry.previous() != nullptr;
    state.ParentIsRoot = entry.parent() && entry.parent()->isRoot();
    state.Tagged = entry.tagged();
    state.CanMoveDown = canMoveDown(&entry);
}

// A command ends a label that is being typed first: the renaming is what is undone then, and nothing can be redone.
void describeSteps(const Document &document, CommandState &state)
{
    const Entry *renamed = document.view() ? document.view()->trvOutline.EntryToBeRenamed() : nullptr;
    state.CanUndo = state.ActiveWritable && (renamed || document.history.canUndo());
    state.CanRedo = state.ActiveWritable && !renamed && document.history.canRedo();
    state.undoName = renamed ? stepName(change::Label{renamed->id(), {}}, document.tree) : document.history.undoName();
    state.redoName = document.history.redoName();
}

} // namespace

CommandState currentCommandState()
{
    CommandState state;
    state.documentCount = iDocumentCount;
    const Document *active = DocumentActive();
    if (!active)
        return state;
    state.ActiveWritable = !active->bReadOnlyAsSeen();
    state.ActiveSavable = active->mayBeSavedAsSeen();
    describeSteps(*active, state);
    const Entry *entry = active->tree.selected();
    if (!entry)
        return state;
    state.Selected = true;
    state.Writable = state.ActiveWritable;
    state.Savable = state.ActiveSavable;
    const std::vector<Document *> all = ports().windows->documents();
    state.AnyWritable = std::ranges::any_of(all, &Document::mayBeSavedAsSeen);
    state.TaggedExist = modNodes::NodesTaggedExist();
    state.Copied = modOutline::areEntriesCopied();
    state.TextWithheld = active->bTextWithheld();
    if (const DocumentView *view = active->view()) {
        state.OutlineFocus = view->m_bOutlineHasFocus();
        state.TextFocus = view->m_bTextHasFocus();
    }
    state.ExpansionLevel = active->m_iExpansionLevel();
    describeEntry(*entry, state);
    state.Several = severalSelected(*active);
    return state;
}
