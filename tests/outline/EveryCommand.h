// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"
#include "document/Ports.h"
#include "document/modNodes.h"
#include "outline/EntryDrag.h"
#include "outline/modOutline.h"

#include <array>

// Everything that can be done to an outline without further words.
struct OutlineRoutine {
    // Of a command of the Outline menu the routine's name, and behind a blank its argument.
    const char *name;
    void (*run)();
    // Whether the document counts as changed even when nothing came of it.
    bool marksChanged = true;
};

// Drops the selected entry on the root, which makes it the first child.
template <bool copies>
void dropOnTheRoot()
{
    Document *document = DocumentActive();
    Entry *dragged = document ? document->tree.selected() : nullptr;
    if (!dragged || !dropPlacements(*dragged, *document->tree.root()).any() || dragged->isRoot())
        return;
    dragState().entry.set(&document->tree, dragged);
    dragState().relationship = Relationship::tvwChild;
    dragState().copy = copies;
    dropEntry(*document, *document->tree.root());
    ResetDraggingFlags();
}

inline void goDown()
{
    if (Document *document = DocumentActive())
        modNodes::NodeGoDown(*document);
}

inline constexpr std::array everyCommand = {
    OutlineRoutine{"OutlineInsertAbove", modOutline::OutlineInsertAbove},
    OutlineRoutine{"OutlineInsertBelow", modOutline::OutlineInsertBelow},
    OutlineRoutine{"OutlineInsertChild", modOutline::OutlineInsertChild},
    OutlineRoutine{"OutlineIndent", modOutline::OutlineIndent},
    OutlineRoutine{"OutlineUnindent", modOutline::OutlineUnindent},
    OutlineRoutine{"OutlineMoveUp", modOutline::OutlineMoveUp},
    OutlineRoutine{"OutlineMoveDown", modOutline::OutlineMoveDown},
    OutlineRoutine{"OutlineMoveFirst", modOutline::OutlineMoveFirst},
    OutlineRoutine{"OutlineMoveLast", modOutline::OutlineMoveLast},
    OutlineRoutine{"OutlineCopy", modOutline::OutlineCopy, false},
    OutlineRoutine{"OutlinePaste", modOutline::OutlinePaste},
    OutlineRoutine{"OutlinePasteAndDelete", modOutline::OutlinePasteAndDelete},
    OutlineRoutine{"OutlineDelete", modOutline::OutlineDelete},
    OutlineRoutine{"OutlineTaggedEntry", modOutline::OutlineTaggedEntry},
    OutlineRoutine{"OutlinePasteTaggedEntries", modOutline::OutlinePasteTaggedEntries},
    OutlineRoutine{"OutlineDeleteTaggedEntries", modOutline::OutlineDeleteTaggedEntries},
    OutlineRoutine{"OutlineExpand", modOutline::OutlineExpand},
    OutlineRoutine{"OutlineCollapse", modOutline::OutlineCollapse},
    OutlineRoutine{"OutlineExpandAll", modOutline::OutlineExpandAll},
    OutlineRoutine{"OutlineCollapseAll", modOutline::OutlineCollapseAll},
    OutlineRoutine{"OutlineExpandToLevel 1", [] { modOutline::OutlineExpandToLevel(1); }},
    OutlineRoutine{"OutlineExpandToLevel 7", [] { modOutline::OutlineExpandToLevel(7); }},
    OutlineRoutine{"OutlineSortCurrent", modOutline::OutlineSortCurrent},
    OutlineRoutine{"OutlineSortAll", modOutline::OutlineSortAll},
    OutlineRoutine{"OutlineRename", modOutline::OutlineRename},
    OutlineRoutine{"go down", goDown, false},
    OutlineRoutine{"drop a copy on the root", dropOnTheRoot<true>, false},
    OutlineRoutine{"drop on the root", dropOnTheRoot<false>, false},
};

// Shapes that a careless loop or recursion would not survive, and the entry to try the commands on.
inline Entry *growChain(EntryTree &tree, int levels, int selectedLevel)
{
    const BulkChange bulk(tree);
    Entry *entry = tree.insert(Relationship::tvwChild, nullptr);
    Entry *chosen = entry;
    for (int level = 1; level <= levels; ++level) {
        tree.setExpanded(entry, true);
        // The entry tried has siblings, so that it can move.
        if (level == selectedLevel)
            tree.insert(Relationship::tvwChild, entry);
        Entry *child = tree.insert(Relationship::tvwChild, entry);
        if (level == selectedLevel) {
            tree.insert(Relationship::tvwChild, entry);
            chosen = child;
        }
        entry = child;
    }
    return chosen;
}

inline Entry *growSiblings(EntryTree &tree, int siblings)
{
    const BulkChange bulk(tree);
    Entry *root = tree.insert(Relationship::tvwChild, nullptr);
    Entry *parent = tree.insert(Relationship::tvwChild, root);
    tree.setExpanded(root, true);
    tree.setExpanded(parent, true);
    for (int i = 0; i < siblings; ++i)
        tree.setLabel(tree.insert(Relationship::tvwChild, parent), QString::number(i * 7919 % 10007));
    return parent->child(siblings / 2);
}
