// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Document.h"
#include "model/Ports.h"
#include "model/modNodes.h"
#include "outline/EntryDrag.h"
#include "outline/modOutline.h"

#include <array>

// Everything that can be done to an outline without further words.
struct OutlineRoutine {
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
    OutlineRoutine{"insert above", modOutline::OutlineInsertAbove},
    OutlineRoutine{"insert below", modOutline::OutlineInsertBelow},
    OutlineRoutine{"insert child", modOutline::OutlineInsertChild},
    OutlineRoutine{"indent", modOutline::OutlineIndent},
    OutlineRoutine{"unindent", modOutline::OutlineUnindent},
    OutlineRoutine{"move up", modOutline::OutlineMoveUp},
    OutlineRoutine{"move down", modOutline::OutlineMoveDown},
    OutlineRoutine{"move first", modOutline::OutlineMoveFirst},
    OutlineRoutine{"move last", modOutline::OutlineMoveLast},
    OutlineRoutine{"copy", modOutline::OutlineCopy, false},
    OutlineRoutine{"paste", modOutline::OutlinePaste},
    OutlineRoutine{"paste and delete", modOutline::OutlinePasteAndDelete},
    OutlineRoutine{"delete", modOutline::OutlineDelete},
    OutlineRoutine{"tag", modOutline::OutlineTaggedEntry},
    OutlineRoutine{"paste tagged", modOutline::OutlinePasteTaggedEntries},
    OutlineRoutine{"delete tagged", modOutline::OutlineDeleteTaggedEntries},
    OutlineRoutine{"expand", modOutline::OutlineExpand},
    OutlineRoutine{"collapse", modOutline::OutlineCollapse},
    OutlineRoutine{"expand all", modOutline::OutlineExpandAll},
    OutlineRoutine{"collapse all", modOutline::OutlineCollapseAll},
    OutlineRoutine{"expand to level 1", [] { modOutline::OutlineExpandToLevel(1); }},
    OutlineRoutine{"expand to level 7", [] { modOutline::OutlineExpandToLevel(7); }},
    OutlineRoutine{"sort current", modOutline::OutlineSortCurrent},
    OutlineRoutine{"sort all", modOutline::OutlineSortAll},
    OutlineRoutine{"rename", modOutline::OutlineRename},
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
