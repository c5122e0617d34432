// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandState.h"

// When commands can be run and buttons are shown, as functions of the state alone.
namespace rules
{

using State = const CommandState &;

inline bool always(State)
{
    return true;
}

inline bool never(State)
{
    return false;
}

inline bool documentOpen(State s)
{
    return s.Open();
}

inline bool activeSavable(State s)
{
    return s.Open() && s.ActiveSavable;
}

inline bool savable(State s)
{
    return s.Savable;
}

inline bool anyWritable(State s)
{
    return s.AnyWritable;
}

// Another file can be written whatever the document's own is.
inline bool selected(State s)
{
    return s.Selected;
}

inline bool writable(State s)
{
    return s.Writable;
}

inline bool writableAndSelected(State s)
{
    return s.Writable && s.Selected;
}

inline bool belowRoot(State s)
{
    return !s.IsRoot;
}

inline bool writableBelowRoot(State s)
{
    return s.Writable && !s.IsRoot;
}

// The root stays: a document without entries could only replace its file by nothing.
inline bool deletable(State s)
{
    return s.Writable && s.Selected && !(s.Several ? s.Several.withRoot : s.IsRoot);
}

inline bool movable(State s)
{
    return s.Several ? s.Writable && !s.Several.withRoot : s.Movable();
}

// What moves several must be possible for each of them.
inline bool indentable(State s)
{
    return s.Several ? s.Writable && s.Several.indentable : s.Movable() && s.HasPrevious;
}

inline bool unindentable(State s)
{
    return s.Several ? s.Writable && s.Several.unindentable : s.Movable() && !s.ParentIsRoot;
}

inline bool movableUp(State s)
{
    return s.Several ? s.Writable && s.Several.movableUp : s.CanMoveUp();
}

inline bool movableDown(State s)
{
    return s.Several ? s.Writable && s.Several.movableDown : s.CanMoveDown;
}

inline bool movableFirst(State s)
{
    return s.Several ? s.Writable && s.Several.movableFirst : s.Movable() && !s.FirstSibling;
}

inline bool movableLast(State s)
{
    return s.Several ? s.Writable && s.Several.movableLast : s.Movable() && !s.LastSibling;
}

inline bool taggable(State s)
{
    return !(s.Several ? s.Several.withRoot : s.IsRoot);
}

inline bool expandable(State s)
{
    return s.HasChildren && !s.Expanded && s.Selected;
}

inline bool collapsible(State s)
{
    return s.HasChildren && s.Expanded && s.Selected;
}

// Its text is to be seen whole, and there is one behind it.
inline bool joinable(State s)
{
    return s.Several ? s.Writable && s.Several.joinable : s.Writable && s.Selected && !s.LastSibling && !s.TextWithheld;
}

inline bool sortable(State s)
{
    return s.Writable && s.HasChildren && s.Selected;
}

inline bool entryCopied(State s)
{
    return s.Copied && s.Writable && s.Selected;
}

inline bool taggedExist(State s)
{
    return s.TaggedExist;
}

inline bool inText(State s)
{
    return s.TextFocus;
}

inline bool inWritableText(State s)
{
    return s.Writable && s.TextFocus;
}

inline bool inChangeableText(State s)
{
    return s.Writable && s.TextFocus && !s.TextWithheld;
}

inline bool inOutline(State s)
{
    return s.OutlineFocus;
}

// A rule in the outline alone: the buttons that go with the commands are shown while the outline has the keyboard.
template <bool (*rule)(State)>
bool inOutlineAnd(State s)
{
    return s.OutlineFocus && rule(s);
}

inline bool selectedBelowRoot(State s)
{
    return s.Selected && taggable(s);
}

inline bool withChildren(State s)
{
    return s.HasChildren;
}

inline bool withChildrenShown(State s)
{
    return s.HasChildren && s.Expanded;
}

inline bool withChildrenHidden(State s)
{
    return s.HasChildren && !s.Expanded;
}

inline bool undoable(State s)
{
    return s.CanUndo;
}

inline bool redoable(State s)
{
    return s.CanRedo;
}

inline bool undoableOrRedoable(State s)
{
    return s.CanUndo || s.CanRedo;
}

inline bool placesBehind(State s)
{
    return s.CanGoBack;
}

inline bool placesAhead(State s)
{
    return s.CanGoForward;
}

template <int level>
bool expandedTo(State s)
{
    return s.ExpansionLevel == level;
}

} // namespace rules
