// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "support/SlowTree.h"

// The commands on an outline done step by step in the plainest way: every move is a copy to the new place and the
// removal of the old entry, entries make room one by one, and tagged entries are pruned with restarts. What the program
// does must come out the same, whatever way it goes.
class LiteralOutline
{
public:
    // The entry that a paste copies, and the outline it lies in.
    struct Copied {
        LiteralOutline *outline = nullptr;
        SlowEntry *entry = nullptr;
    };

    explicit LiteralOutline(Copied &copiedEntry)
        : m_copied(copiedEntry)
    {
    }

    SlowEntry *selected() const { return tree.selected; }

    SlowEntry *root() const { return tree.root.get(); }

    void select(SlowEntry *entry)
    {
        if (!entry)
            return;
        tree.selected = entry;
        for (SlowEntry *ancestor = entry->parent; ancestor; ancestor = ancestor->parent)
            ancestor->expanded = true;
    }

    void insertEntry(Relationship relationship)
    {
        SlowEntry *entry = insert(std::make_unique<SlowEntry>(), relationship, selected());
        select(entry);
        entry->label = QStringLiteral("New Entry");
    }

    void indent()
    {
        if (selected() && previous(selected()))
            relocate(Relationship::tvwChild, previous(selected()));
    }

    void unindent()
    {
        const SlowEntry *entry = selected();
        if (entry && entry->parent && entry->parent->parent)
            relocate(Relationship::tvwNext, entry->parent);
    }

    void moveUp()
    {
        const SlowEntry *entry = selected();
        if (!entry || !entry->parent)
            return;
        if (previous(entry))
            relocate(Relationship::tvwPrevious, previous(entry));
        else if (previous(entry->parent))
            relocate(Relationship::tvwChild, previous(entry->parent));
    }

    void moveDown()
    {
        SlowEntry *entry = selected();
        if (!entry || !entry->parent)
            return;
        if (next(entry))
            return relocate(Relationship::tvwNext, next(entry));
        SlowEntry *beyond = next(entry->parent);
        if (!beyond)
            return;
        const bool makesRoom = !beyond->children.empty();
        SlowEntry *aside = nullptr;
        if (makesRoom) {
            aside = insert(std::make_unique<SlowEntry>(), Relationship::tvwNext, beyond);
            moveChildren(beyond, aside);
        }
        SlowEntry *copy = duplicate(entry, Relationship::tvwChild, beyond, true);
        if (makesRoom) {
            moveChildren(aside, beyond);
            remove(aside);
        }
        removeOld(entry);
        select(copy);
    }

    void moveFirst()
    {
        const SlowEntry *entry = selected();
        if (entry && entry->parent && previous(entry))
            relocate(Relationship::tvwPrevious, entry->parent->children.front().get());
    }

    void moveLast()
    {
        const SlowEntry *entry = selected();
        if (entry && entry->parent && next(entry))
            relocate(Relationship::tvwNext, entry->parent->children.back().get());
    }

    void copy() { m_copied = {selected() ? this : nullptr, selected()}; }

    void paste(bool removeSource)
    {
        SlowEntry *source = m_copied.entry;
        if (!source)
            return;
        const auto [relationship, relative] = placeForPaste(source);
        // A subtree that moves below itself would go with its only copy.
        const SlowEntry *newParent = !relative                                ? root()
                                     : relationship == Relationship::tvwChild ? relative
                                                                              : relative->parent;
        if (removeSource && isWithin(newParent, source))
            return;
        SlowEntry *pasted = duplicate(source, relationship, relative, false);
        // An outline keeps its root: of another document's it is a copy that comes.
        if (removeSource && source->parent) {
            LiteralOutline &from = *m_copied.outline;
            SlowEntry *survivor = from.survivorOf(source);
            const bool selectionGoes = isWithin(from.selected(), source);
            from.removeOld(source);
            if (selectionGoes)
                from.select(survivor);
        }
        select(pasted);
    }

    void deleteSelected()
    {
        SlowEntry *entry = selected();
        if (!entry)
            return;
        SlowEntry *survivor = survivorOf(entry);
        remove(entry);
        select(survivor);
    }

    void toggleTag()
    {
        if (selected() && selected()->parent)
            selected()->tagged = !selected()->tagged;
    }

    void pasteTagged()
    {
        for (SlowEntry *source : gatherTagged()) {
            const auto [relationship, relative] = placeForPaste(source);
            select(duplicate(source, relationship, relative, false));
        }
    }

    void deleteTagged()
    {
        SlowEntry *survivor = selected();
        if (!survivor)
            return;
        const std::vector<SlowEntry *> tagged = gatherTagged();
        for (const SlowEntry *top : tagged) {
            if (isWithin(survivor, top))
                survivor = root();
        }
        for (SlowEntry *entry : tagged)
            remove(entry);
        select(survivor);
    }

    void expand()
    {
        if (selected() && !selected()->children.empty())
            selected()->expanded = true;
    }

    void collapse()
    {
        if (selected())
            selected()->expanded = false;
    }

    void expandAll()
    {
        if (selected())
            SlowTree::setExpandedAll(root(), true);
    }

    void collapseAll()
    {
        if (!selected())
            return;
        select(root());
        SlowTree::setExpandedAll(root(), false);
    }

    void expandToLevel(int level)
    {
        if (!selected())
            return;
        SlowTree::expandToLevel(root(), 1, level);
        // A selection that is hidden now falls to the head of the branch that hides it.
        for (SlowEntry *ancestor = selected()->parent; ancestor; ancestor = ancestor->parent) {
            if (!ancestor->expanded)
                tree.selected = ancestor;
        }
    }

    void sortCurrent()
    {
        if (selected())
            SlowTree::sortChildren(selected());
    }

    void sortAll()
    {
        if (!selected())
            return;
        for (SlowEntry *entry : tree.inOutlineOrder())
            SlowTree::sortChildren(entry);
    }

    void goDown()
    {
        const SlowEntry *entry = selected();
        if (!entry)
            return;
        SlowEntry *target = nullptr;
        if (!next(entry)) {
            for (const SlowEntry *up = entry->parent; up && !target; up = up->parent)
                target = next(up);
        }
        if (!target)
            target = next(entry);
        if (!target && !entry->children.empty())
            target = entry->children.front().get();
        select(target);
    }

    struct Placements {
        bool previous = true;
        bool next = true;
        bool child = true;
    };

    Placements placements(const SlowEntry *dragged, const SlowEntry *target) const
    {
        if (target == root())
            return {false, false, true};
        Placements allowed;
        if (previous(target) == dragged)
            allowed.previous = false;
        if (next(target) == dragged)
            allowed.next = false;
        if ((!target->children.empty() && target->children.front().get() == dragged) || isWithin(target, dragged))
            allowed = {false, false, false};
        return allowed;
    }

    void drop(SlowEntry *dragged, SlowEntry *target, Relationship relationship, bool copies)
    {
        SlowEntry *relative = target;
        if (target == root() && !target->children.empty() && target->children.front().get() != dragged) {
            relative = target->children.front().get();
            relationship = Relationship::tvwPrevious;
        }
        SlowEntry *dropped = duplicate(dragged, relationship, relative, !copies);
        if (!copies)
            removeOld(dragged);
        select(dropped);
    }

    static bool isWithin(const SlowEntry *entry, const SlowEntry *top)
    {
        for (; entry; entry = entry->parent) {
            if (entry == top)
                return true;
        }
        return false;
    }

    static SlowEntry *next(const SlowEntry *entry) { return sibling(entry, 1); }

    static SlowEntry *previous(const SlowEntry *entry) { return sibling(entry, -1); }

    SlowTree tree;

private:
    struct Place {
        Relationship relationship;
        SlowEntry *relative;
    };

    static SlowEntry *sibling(const SlowEntry *entry, int step)
    {
        if (!entry->parent)
            return nullptr;
        const int place = SlowTree::placeOf(entry) + step;
        const bool exists = place >= 0 && place < static_cast<int>(entry->parent->children.size());
        return exists ? entry->parent->children[static_cast<size_t>(place)].get() : nullptr;
    }

    SlowEntry *insert(std::unique_ptr<SlowEntry> subtree, Relationship relationship, SlowEntry *relative)
    {
        if (root() && (!relative || relative == root()))
            return tree.add(std::move(subtree), Relationship::tvwChild, root());
        return tree.add(std::move(subtree), relationship, relative);
    }

    // With `moves` the copy takes the tags along, and the copied entry if that is in the subtree.
    SlowEntry *duplicate(SlowEntry *source, Relationship relationship, SlowEntry *relative, bool moves)
    {
        std::vector<SlowEntry *> from;
        SlowTree::gather(source, from);
        SlowEntry *top = insert(SlowTree::copyOf(source), relationship, relative);
        if (moves) {
            std::vector<SlowEntry *> to;
            SlowTree::gather(top, to);
            for (size_t i = 0; i < from.size(); ++i) {
                to[i]->tagged = from[i]->tagged;
                if (m_copied.entry == from[i])
                    m_copied.entry = to[i];
            }
        }
        select(top);
        return top;
    }

    void relocate(Relationship relationship, SlowEntry *relative)
    {
        SlowEntry *old = selected();
        SlowEntry *copy = duplicate(old, relationship, relative, true);
        removeOld(old);
        select(copy);
    }

    void moveChildren(SlowEntry *from, SlowEntry *to)
    {
        while (!from->children.empty()) {
            SlowEntry *child = from->children.front().get();
            duplicate(child, Relationship::tvwChild, to, true);
            remove(child);
        }
    }

    void removeOld(SlowEntry *entry)
    {
        if (isWithin(m_copied.entry, entry))
            m_copied = {};
        tree.remove(entry);
    }

    void remove(SlowEntry *entry)
    {
        SlowEntry *parent = entry->parent;
        removeOld(entry);
        if (parent && parent->children.empty())
            parent->expanded = false;
    }

    SlowEntry *survivorOf(const SlowEntry *entry) const
    {
        if (SlowEntry *before = previous(entry))
            return before;
        if (SlowEntry *behind = next(entry))
            return behind;
        return entry->parent;
    }

    Place placeForPaste(const SlowEntry *source) const
    {
        if (!selected())
            return {Relationship::tvwFirst, nullptr};
        if (selected() != root())
            return {Relationship::tvwNext, selected()};
        if (root()->children.empty() || root()->children.front().get() == source)
            return {Relationship::tvwChild, root()};
        return {Relationship::tvwPrevious, root()->children.front().get()};
    }

    std::vector<SlowEntry *> gatherTagged() const
    {
        std::vector<SlowEntry *> list;
        for (SlowEntry *entry : tree.collection) {
            if (entry->tagged && entry->parent)
                list.push_back(entry);
        }
        const auto inside = [&list](const SlowEntry *entry) {
            for (const SlowEntry *up = entry->parent; up; up = up->parent) {
                if (std::find(list.begin(), list.end(), up) != list.end())
                    return true;
            }
            return false;
        };
        for (auto found = std::find_if(list.begin(), list.end(), inside); found != list.end();
             found = std::find_if(list.begin(), list.end(), inside))
            list.erase(found);
        return list;
    }

    Copied &m_copied;
};
