// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "outline/SelectedEntries.h"

#include <QString>

// What menus and toolbar depend on: facts about the open documents and the selected entry. Without an active document,
// or without a selected entry in it, all of it but the number of documents and what begins with Active is false. What
// the file system says is what it said when the documents' files were last looked at.
struct CommandState {
    int documentCount = 0;
    // An active document may be written, whether or not an entry is selected.
    bool ActiveWritable = false;
    // It may be saved: it may be written, or might be when it was opened or last saved.
    bool ActiveSavable = false;
    // Any document may be saved.
    bool AnyWritable = false;

    bool Selected = false;
    bool Writable = false;
    bool Savable = false;
    bool IsRoot = false;
    bool HasChildren = false;
    bool Expanded = false;
    bool FirstSibling = false;
    bool LastSibling = false;
    bool HasPrevious = false;
    bool ParentIsRoot = false;
    bool Tagged = false;
    bool TaggedExist = false;
    // The text pane shows damaged bytes or the beginning of a long text, which only clearing the text can change.
    bool TextWithheld = false;
    bool OutlineFocus = false;
    bool TextFocus = false;
    // The entry copy buffer holds copied entries.
    bool Copied = false;
    // The entry or one of its ancestors has a sibling after it.
    bool CanMoveDown = false;
    // The level that the outline was last expanded to: -1 all levels, 0 none in particular.
    int ExpansionLevel = 0;
    // What is said above is said of the current entry.
    SeveralSelected Several = {};

    // The active document may be written, and has a step to be undone or redone; with their names.
    bool CanUndo = false;
    bool CanRedo = false;
    QString undoName = {};
    QString redoName = {};

    // There is a place to go back to, or forth, in any document. Told by who keeps the places.
    bool CanGoBack = false;
    bool CanGoForward = false;

    bool Open() const { return documentCount > 0; }

    bool Movable() const { return Selected && Writable && !IsRoot; }

    bool operator==(const CommandState &) const = default;

    bool CanMoveUp() const { return Movable() && !(ParentIsRoot && FirstSibling); }
};

// The state as the registered document windows have it now.
CommandState currentCommandState();
