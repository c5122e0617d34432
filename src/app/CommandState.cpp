// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/CommandState.h"

#include "document/Document.h"
#include "document/Ports.h"
#include "document/modNodes.h"
#include "outline/modOutline.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

using State = const CommandState &;

bool always(State)
{
    return true;
}

bool documentOpen(State s)
{
    return s.Open();
}

bool activeWritable(State s)
{
    return s.Open() && s.ActiveWritable;
}

bool activeSavable(State s)
{
    return s.Open() && s.ActiveSavable;
}

bool savable(State s)
{
    return s.Savable;
}

bool writable(State s)
{
    return s.Writable;
}

bool writableAndSelected(State s)
{
    return s.Writable && s.Selected;
}

// Another file can be written whatever the document's own is.
bool selected(State s)
{
    return s.Selected;
}

// The root stays: a document without entries could only replace its file by nothing.
bool canDelete(State s)
{
    return s.Writable && s.Selected && !s.IsRoot;
}

bool textFocus(State s)
{
    return s.TextFocus;
}

bool writableAndTextFocus(State s)
{
    return s.Writable && s.TextFocus;
}

bool changeableText(State s)
{
    return s.Writable && s.TextFocus && !s.TextWithheld;
}

bool taggedExist(State s)
{
    return s.TaggedExist;
}

bool canPasteEntry(State s)
{
    return s.Copied && s.Writable && s.Selected;
}

constexpr EnableRule staticRules[] = {
    {"mnuFile", always},
    {"mnuFileNew", always},
    {"mnuFileOpen", always},
    {"mnuFilePrintSetup", always},
    {"mnuFileExit", always},
    {"mnuHelp", always},
    {"mnuView", always},
    {"mnuWindow", always},
    {"mnuFileClose", documentOpen},
    {"mnuFilePrint", documentOpen},
    {"mnuFilePrintPreview", documentOpen},
    {"mnuFileExport", documentOpen},
    {"mnuoutline", documentOpen},
    {"mnuFileSave", activeSavable},
    {"mnuFileSaveAll", activeSavable},
    {"mnuFileSaveAs", documentOpen},
    {"mnuEdit", activeWritable},
};

constexpr EnableRule dynamicRules[] = {
    {"mnuFileSave", savable},
    {"mnuFileSaveAs", selected},
    {"mnuFileSaveAll", [](State s) { return s.AnyWritable; }},
    // Whatever the entry, but not without a document: the start of the program leaves the menu greyed.
    {"mnuoutline", documentOpen},
    {"mnuOutlineDelete", canDelete},
    {"mnuOutlineInsertAbove", [](State s) { return s.Writable && !s.IsRoot; }},
    {"mnuOutlineInsertBelow", writable},
    {"mnuOutlineInsertChild", writable},
    {"mnuOutlineSortAll", writable},
    {"mnuOutlineTaggedEntry", [](State s) { return !s.IsRoot; }},
    {"mnuOutlinePasteTaggedEntries", taggedExist},
    {"mnuOutlineDeleteTaggedEntries", taggedExist},
    {"mnuOutlineSortCurrent", [](State s) { return s.Writable && s.HasChildren && s.Selected; }},
    {"mnuOutlineExpand", [](State s) { return s.HasChildren && !s.Expanded && s.Selected; }},
    {"mnuOutlineCollapse", [](State s) { return s.HasChildren && s.Expanded && s.Selected; }},
    {"mnuOutlineMove", [](State s) { return s.Movable(); }},
    {"mnuOutlineIndent", [](State s) { return s.Movable() && s.HasPrevious; }},
    {"mnuOutlineUnindent", [](State s) { return s.Movable() && !s.ParentIsRoot; }},
    {"mnuOutlinePaste", canPasteEntry},
    {"mnuOutlinePasteAndDelete", canPasteEntry},
    {"mnuOutlineRename", writableAndSelected},
    {"mnuOutlineMoveFirst", [](State s) { return s.Movable() && !s.FirstSibling; }},
    {"mnuOutlineMoveLast", [](State s) { return s.Movable() && !s.LastSibling; }},
    {"mnuOutlineMoveUp", [](State s) { return s.CanMoveUp(); }},
    {"mnuOutlineMoveDown", [](State s) { return s.CanMoveDown; }},
    {"mnuEdit", textFocus},
    {"mnuEditCopy", textFocus},
    {"mnuEditSelectAll", textFocus},
    {"mnuEditCase", changeableText},
    {"mnuEditClearEntryText", writableAndTextFocus},
    {"mnuEditCurrentFont", changeableText},
    {"mnuEditCut", changeableText},
    {"mnuEditDelete", changeableText},
    {"mnuEditDocumentFont", writableAndTextFocus},
    {"mnuEditFormat", changeableText},
    {"mnuEditInsert", changeableText},
    {"mnuEditPaste", changeableText},
    {"mnuEditPasteSpecial", changeableText},
    {"mnuSearchReplace", writable},
};

constexpr CheckRule checkMarks[] = {
    {"mnuViewStatusBar", &Options::ViewStatusbar},
    {"mnuViewToolbar", &Options::ViewToolbar},
    {"mnuViewOptionsAutoFitSplit", &Options::AutoSplit},
    {"mnuViewOptionsBackupOnSave", &Options::Backup},
    {"mnuViewOptionsClickToRenameEntry", &Options::AutoLabelEdit},
    {"mnuViewOptionsStartWithNewDoc", &Options::StartWithNewDocument},
    {"mnuViewOptionsStartWithPrevDocs", &Options::StartWithLatestDocuments},
};

template <typename Rules>
constexpr bool allItemsExist(const Rules &rules)
{
    for (const auto &rule : rules) {
        if (commandRow(rule.item) == noRow)
            return false;
    }
    return true;
}

static_assert(allItemsExist(staticRules) && allItemsExist(dynamicRules) && allItemsExist(checkMarks));

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
    const Entry *entry = active->tree.selected();
    if (!entry)
        return state;
    state.Selected = true;
    state.Writable = state.ActiveWritable;
    state.Savable = state.ActiveSavable;
    const std::vector<Document *> all = ports().windows->documents();
    state.AnyWritable = std::ranges::any_of(all, &Document::mayBeSavedAsSeen);
    state.TaggedExist = modNodes::NodesTaggedExist();
    state.Copied = modOutline::copiedEntry().entry() != nullptr;
    state.TextWithheld = active->bTextWithheld();
    state.OutlineFocus = active->m_bOutlineHasFocus;
    state.TextFocus = active->m_bTextHasFocus;
    state.ExpansionLevel = active->m_iExpansionLevel;
    describeEntry(*entry, state);
    return state;
}

std::span<const EnableRule> menuEnableRules()
{
    return staticRules;
}

std::span<const EnableRule> menuEnableDynamicRules()
{
    return dynamicRules;
}

std::span<const CheckRule> checkRules()
{
    return checkMarks;
}

QString taggedEntryCaption(bool tagged)
{
    return tagged ? u"Unta&g entry    Alt+T"_s : u"Ta&g entry      Alt+T"_s;
}
