// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryTree.h"

#include <algorithm>
#include <memory>
#include <vector>

// An outline that is as slow as it is obvious: what tests of random sequences compare the entry tree with. It recurses
// on its depth, so it is for small outlines.

struct SlowEntry {
    // An entry is known by its number: a later one may lie at the same address.
    const int number = ++s_count;
    QString label;
    QByteArray text;
    bool tagged = false;
    bool expanded = false;
    SlowEntry *parent = nullptr;
    std::vector<std::unique_ptr<SlowEntry>> children;
    // Free for whoever compares.
    size_t mark = 0;

private:
    static inline int s_count = 0;
};

class SlowTree
{
public:
    std::unique_ptr<SlowEntry> root;
    // In the order of insertion.
    std::vector<SlowEntry *> collection;
    SlowEntry *selected = nullptr;

    std::vector<SlowEntry *> inOutlineOrder() const
    {
        std::vector<SlowEntry *> all;
        if (root)
            gather(root.get(), all);
        return all;
    }

    static int placeOf(const SlowEntry *node)
    {
        const auto &siblings = node->parent->children;
        for (size_t i = 0; i < siblings.size(); ++i) {
            if (siblings[i].get() == node)
                return static_cast<int>(i);
        }
        return -1;
    }

    static QString keyOf(const SlowEntry *node)
    {
        return node->parent ? keyOf(node->parent) + u'.' + QString::number(placeOf(node) + 1) : QStringLiteral("KEY0");
    }

    SlowEntry *add(std::unique_ptr<SlowEntry> subtree, Relationship relationship, SlowEntry *relative)
    {
        SlowEntry *top = subtree.get();
        if (!relative) {
            root = std::move(subtree);
        } else {
            SlowEntry *parent = relationship == Relationship::tvwChild ? relative : relative->parent;
            int place = static_cast<int>(parent->children.size());
            if (relationship == Relationship::tvwFirst)
                place = 0;
            else if (relationship == Relationship::tvwPrevious)
                place = placeOf(relative);
            else if (relationship == Relationship::tvwNext)
                place = placeOf(relative) + 1;
            top->parent = parent;
            parent->children.insert(parent->children.begin() + place, std::move(subtree));
        }
        gather(top, collection);
        return top;
    }

    static std::unique_ptr<SlowEntry> copyOf(const SlowEntry *source)
    {
        auto copy = std::make_unique<SlowEntry>();
        copy->label = source->label;
        copy->text = source->text;
        copy->expanded = source->expanded;
        for (const auto &child : source->children) {
            copy->children.push_back(copyOf(child.get()));
            copy->children.back()->parent = copy.get();
        }
        return copy;
    }

    void move(SlowEntry *node, Relationship relationship, SlowEntry *relative)
    {
        // A stand-in keeps the place while the node is taken out, so that the place cannot shift.
        std::unique_ptr<SlowEntry> standIn = std::make_unique<SlowEntry>();
        const SlowEntry *marker = add(std::move(standIn), relationship, relative);
        collection.pop_back();
        auto &old = node->parent->children;
        const auto from = old.begin() + placeOf(node);
        std::unique_ptr<SlowEntry> moving = std::move(*from);
        old.erase(from);
        SlowEntry *parent = marker->parent;
        moving->parent = parent;
        parent->children[static_cast<size_t>(placeOf(marker))] = std::move(moving);
        std::vector<SlowEntry *> moved;
        gather(node, moved);
        for (SlowEntry *each : moved) {
            std::erase(collection, each);
            collection.push_back(each);
        }
    }

    void remove(SlowEntry *node)
    {
        std::vector<SlowEntry *> gone;
        gather(node, gone);
        for (SlowEntry *each : gone) {
            std::erase(collection, each);
            if (selected == each)
                selected = nullptr;
        }
        if (node->parent)
            node->parent->children.erase(node->parent->children.begin() + placeOf(node));
        else
            root.reset();
    }

    static void expandToLevel(SlowEntry *node, int depth, int level)
    {
        if (node->children.empty())
            return;
        node->expanded = depth < level;
        if (!node->expanded)
            return;
        for (const auto &child : node->children)
            expandToLevel(child.get(), depth + 1, level);
    }

    static void setExpandedAll(SlowEntry *node, bool expanded)
    {
        node->expanded = expanded;
        for (const auto &child : node->children)
            setExpandedAll(child.get(), expanded);
    }

    static void sortChildren(SlowEntry *node)
    {
        std::stable_sort(node->children.begin(), node->children.end(), [](const auto &a, const auto &b) {
            return a->label.compare(b->label, Qt::CaseInsensitive) < 0;
        });
    }

    static void gather(SlowEntry *node, std::vector<SlowEntry *> &all)
    {
        all.push_back(node);
        for (const auto &child : node->children)
            gather(child.get(), all);
    }
};
