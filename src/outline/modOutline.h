// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

class Document;
class Entry;
class EntryRef;

// The commands of the Outline menu. Each works on the active document and does nothing without one. A command that
// changes the outline marks the document changed before it looks whether there is anything to do.
namespace modOutline
{

// Insert a new entry directly above or below the selected one, or as its last child, with its label open for editing.
void OutlineInsertAbove();
void OutlineInsertBelow();
void OutlineInsertChild();

// Move the selected entry with its subtree, tags and expansion included; it stays selected. The root never moves.
// Several are moved if each of them can be, and keep their order.
// Indent: to the last child of the previous sibling. Unindent: directly behind the parent, unless that is the root.
void OutlineIndent();
void OutlineUnindent();
// Up: before the previous sibling, or for a first child to the last child of the parent's previous sibling.
void OutlineMoveUp();
// Down: behind the next sibling, or for a last child to the first child of the parent's next sibling.
void OutlineMoveDown();
void OutlineMoveFirst();
void OutlineMoveLast();

// The entry that a paste copies: a reference that all documents share and that empties itself when the entry goes. Of
// several it is the first.
EntryRef &copiedEntry();
// Whether there is an entry that a paste would copy.
bool areEntriesCopied();
// Makes the selected entries the copied ones.
void OutlineCopy();
// Paste copies of the copied entries after the current one; PasteAndDelete removes the copied entries then.
void OutlinePaste();
void OutlinePasteAndDelete();
// Asks, then deletes the selected entries with their subtrees.
void OutlineDelete();

// Toggles the selected entry's tag; the root is never tagged. Of several all are tagged, unless all of them are.
void OutlineTaggedEntry();
// Paste copies of the tagged entries after the selected one, in their order of insertion; what lies inside another
// tagged entry comes along with it only.
void OutlinePasteTaggedEntries();
// Asks, then deletes every tagged entry with its subtree.
void OutlineDeleteTaggedEntries();

// Open or close the selected entry; with none selected they report error 91.
void OutlineExpand();
void OutlineCollapse();
void OutlineExpandAll();
void OutlineCollapseAll();
// Opens the outline down to a level (1 is the root's) and closes it there.
void OutlineExpandToLevel(int iLevel);
// Sorts the selected entry's children, or those of every entry, by label.
void OutlineSortCurrent();
void OutlineSortAll();
// Opens the in-place editor on the selected entry's label.
void OutlineRename();

// Puts the next sibling's label and text behind the selected entry's text, and its children behind the children. The
// label is left out where it is the text's first line, or the selected entry's own. Several that stand one behind the
// other become one in the same way.
void OutlineJoin();
// Makes an entry of the text from the caret on: the next sibling, or of the root the first child. Its label is the
// text's first line.
void OutlineSplit();

// Joins entries, none of which lies inside another, into the first of them, in their order, as OutlineJoin does. False
// when that is impossible, and then nothing has changed; the status bar says why.
bool joinEntries(Document &document, const std::vector<Entry *> &entries);

} // namespace modOutline
