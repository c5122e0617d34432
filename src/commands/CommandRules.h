// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandState.h"

// When commands can be run and buttons are shown, as functions of the state alone.
namespace rules
{

using State = const CommandState &;

constexpr bool always(State)
{
    return true;
}

constexpr bool never(State)
{
    return false;
}

constexpr bool documentOpen(State s)
{
    return s.Open();
}

constexpr bool activeSavable(State s)
{
    return s.Open() && s.ActiveSavable;
}

constexpr bool savable(State s)
{
    return s.Savable;
}

constexpr bool anyWritable(State s)
{
    return s.AnyWritable;
}

// Another file can be written whatever the document's own is.
constexpr bool selected(State s)
{
    return s.Selected;
}

constexpr bool writable(State s)
{
    return s.Writable;
}

constexpr bool writableAndSelected(State s)
{
    return s.Writable && s.Selected;
}

constexpr bool belowRoot(State s)
{
    return !s.IsRoot;
}

constexpr bool writableBelowRoot(State s)
{
    return s.Writable && !s.IsRoot;
}

// The root stays: a document without entries could only replace its file by nothing.
constexpr bool deletable(State s)
{
    return s.Writable && s.Selected && !s.IsRoot;
}

constexpr bool movable(State s)
{
    return s.Movable();
}

constexpr bool indentable(State s)
{
    return s.Movable() && s.HasPrevious;
}

constexpr bool unindentable(State s)
{
    return s.Movable() && !s.ParentIsRoot;
}

constexpr bool movableUp(State s)
{
    return s.CanMoveUp();
}

constexpr bool movableDown(State s)
{
    return s.CanMoveDown;
}

constexpr bool movableFirst(State s)
{
    return s.Movable() && !s.FirstSibling;
}

constexpr bool movableLast(State s)
{
    return s.Movable() && !s.LastSibling;
}

constexpr bool expandable(State s)
{
    return s.HasChildren && !s.Expanded && s.Selected;
}

constexpr bool collapsible(State s)
{
    return s.HasChildren && s.Expanded && s.Selected;
}

constexpr bool sortable(State s)
{
    return s.Writable && s.HasChildren && s.Selected;
}

constexpr bool entryCopied(State s)
{
    return s.Copied && s.Writable && s.Selected;
}

constexpr bool taggedExist(State s)
{
    return s.TaggedExist;
}

constexpr bool inText(State s)
{
    return s.TextFocus;
}

constexpr bool inWritableText(State s)
{
    return s.Writable && s.TextFocus;
}

constexpr bool inChangeableText(State s)
{
    return s.Writable && s.TextFocus && !s.TextWithheld;
}

constexpr bool inOutline(State s)
{
    return s.OutlineFocus;
}

// A rule in the outline alone: the buttons that go with the commands are shown while the outline has the keyboard.
template <bool (*rule)(State)>
constexpr bool inOutlineAnd(State s)
{
    return s.OutlineFocus && rule(s);
}

constexpr bool selectedBelowRoot(State s)
{
    return s.Selected && !s.IsRoot;
}

constexpr bool withChildren(State s)
{
    return s.HasChildren;
}

constexpr bool withChildrenShown(State s)
{
    return s.HasChildren && s.Expanded;
}

constexpr bool withChildrenHidden(State s)
{
    return s.HasChildren && !s.Expanded;
}

template <int level>
constexpr bool expandedTo(State s)
{
    return s.ExpansionLevel == level;
}

} // namespace rules
