// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Inserting, indenting and moving entries.

#include "outline/BranchMoves.h"
#include "outline/OutlineCommand.h"
#include "outline/modOutline.h"

#include "document/modNodes.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace
{

void insertEntry(const char *name, Relationship relationship)
{
    changeActiveDocument(name, [&](Document &document) {
        const History::Step step(document.history, u"insertion of an entry"_s);
        Entry *entry = modNodes::NodeInsert(document, relationship, document.tree.selected());
        modNodes::NodeInitialise(document, entry);
    });
}

// Where a move puts the entry; nowhere when there is no such place.
struct Target {
    Relationship relationship = Relationship::tvwNext;
    Entry *relative = nullptr;
};

// Moves the selected entry to where a rule says, or several as one of them. The root has no siblings, so no rule finds
// a place for it.
template <typename Rule>
void moveEntry(const char *name, BranchMove move, Rule &&rule)
{
    changeActiveDocument(name, [&](Document &document) {
        if (document.tree.areSeveralSelected()) {
            moveSelectedBranches(document, move);
            return;
        }
        Entry *entry = document.tree.selected();
        const Target target = entry ? rule(*entry) : Target();
        if (!target.relative)
            return;
        const modNodes::ActionScope action;
        const History::Step step(document.history, stepName("move of"_L1, *entry));
        document.history.move(entry, target.relationship, target.relative);
        modNodes::NodeSelect(document, entry);
    });
}

} // namespace

namespace modOutline
{

void OutlineInsertAbove()
{
    insertEntry("modOutline OutlineInsertAbove", Relationship::tvwPrevious);
}

void OutlineInsertBelow()
{
    insertEntry("modOutline OutlineInsertBelow", Relationship::tvwNext);
}

void OutlineInsertChild()
{
    insertEntry("modOutline OutlineInsertChild", Relationship::tvwChild);
}

void OutlineIndent()
{
    moveEntry("modOutline OutlineIndent", BranchMove::Indent, [](const Entry &entry) {
        return Target{Relationship::tvwChild, entry.previous()};
    });
}

void OutlineUnindent()
{
    moveEntry("modOutline OutlineUnindent", BranchMove::Unindent, [](const Entry &entry) {
        Entry *parent = entry.parent();
        return Target{Relationship::tvwNext, parent && !parent->isRoot() ? parent : nullptr};
    });
}

void OutlineMoveUp()
{
    moveEntry("modOutline OutlineMoveUp", BranchMove::Up, [](const Entry &entry) {
        if (Entry *previous = entry.previous())
            return Target{Relationship::tvwPrevious, previous};
        return Target{Relationship::tvwChild, entry.parent() ? entry.parent()->previous() : nullptr};
    });
}

void OutlineMoveDown()
{
    changeActiveDocument("modOutline OutlineMoveDown", [](Document &document) {
        if (document.tree.areSeveralSelected()) {
            moveSelectedBranches(document, BranchMove::Down);
            return;
        }
        Entry *entry = document.tree.selected();
        Entry *beyond = entry && entry->parent() ? entry->parent()->next() : nullptr;
        if (!entry || (!entry->next() && !beyond))
            return;
        const modNodes::ActionScope action;
        const History::Step step(document.history, stepName("move of"_L1, *entry));
        if (Entry *next = entry->next()) {
            document.history.move(entry, Relationship::tvwNext, next);
        } else if (beyond->childCount() > 0) {
            Entry *first = beyond->firstChild();
            document.history.move(entry, Relationship::tvwPrevious, first);
            // The children make room and come back behind the entry, so they count as inserted after it.
            for (Entry *child = first; child; child = child->next())
                document.history.renewInsertion(child);
        } else {
            document.history.move(entry, Relationship::tvwChild, beyond);
        }
        modNodes::NodeSelect(document, entry);
    });
}

void OutlineMoveFirst()
{
    moveEntry("modOutline OutlineMoveFirst", BranchMove::First, [](const Entry &entry) {
        Entry *first = entry.firstSibling();
        return Target{Relationship::tvwPrevious, first != &entry ? first : nullptr};
    });
}

void OutlineMoveLast()
{
    moveEntry("modOutline OutlineMoveLast", BranchMove::Last, [](const Entry &entry) {
        Entry *last = entry.lastSibling();
        return Target{Relationship::tvwNext, last != &entry ? last : nullptr};
    });
}

} // namespace modOutline
