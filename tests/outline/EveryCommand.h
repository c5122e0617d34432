// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandTable.h"
#include "document/Document.h"
#include "document/Ports.h"
#include "document/modNodes.h"
#include "outline/EntryDrag.h"
#include "outline/modOutline.h"
#include "support/FakePorts.h"
#include "util/Procedure.h"

#include <QScopeGuard>
#include <functional>
#include <string_view>

#include <vector>

// Something that can be done to an outline without further words.
struct OutlineRoutine {
    // Of a command the routine's name, and behind a blank its argument if it has one.
    QByteArray name;
    std::function<void()> run;
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
    // As the window reports it, and lets go of what was dragged in any case.
    const auto reset = qScopeGuard(ResetDraggingFlags);
    procedure("frmDocument trvOutline_DragDrop", [document] { dropEntry(*document, *document->tree.root()); });
}

inline void goDown()
{
    if (Document *document = DocumentActive())
        modNodes::NodeGoDown(*document);
}

// The commands of the outline as the rows of the command table have them, and what else the mouse and the keys do.
inline const std::vector<OutlineRoutine> everyCommand = [] {
    constexpr std::string_view module = "modOutline::";
    std::vector<OutlineRoutine> all;
    for (const CommandRow &row : commandTable) {
        if (row.kind != RowKind::Command || !row.routine.name.starts_with(module))
            continue;
        QByteArray name(row.routine.name.substr(module.size()).data(),
                        static_cast<qsizetype>(row.routine.name.size() - module.size()));
        if (row.argument != 0)
            name += ' ' + QByteArray::number(row.argument);
        const bool marksChanged = name != "OutlineCopy" && name != "OutlineJoin" && name != "OutlineSplit";
        all.push_back({name, [&row] { row.routine.run(row.argument); }, marksChanged});
    }
    all.push_back({"go down", goDown, false});
    all.push_back({"drop a copy on the root", dropOnTheRoot<true>, false});
    all.push_back({"drop on the root", dropOnTheRoot<false>, false});
    return all;
}();

// What the commands may ask: Yes, and another font.
inline void answerCommands(FakeDialogs &dialogs)
{
    FontAttributes font;
    font.name = QStringLiteral("DejaVu Serif");
    font.size = 15;
    dialogs.answers = {Answer::Yes};
    dialogs.fonts = {font};
}

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
