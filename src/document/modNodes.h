// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryTree.h"

#include <functional>

class Document;
class clsFont;

// The operations on a document's entries. Everything that works on the outline goes through them.
namespace modNodes
{

// The entry most recently selected by NodeSelectFull: the one whose text the text pane shows.
EntryRef &nodCurrent();

// Adds an empty, untagged entry and returns it (null after a reported error, such as 6 for a full tree). The first
// entry becomes the root; with no relative, or the root as relative, any later one becomes the root's last child.
Entry *NodeInsert(Document &document, Relationship relationship, Entry *relative);
// The same, but throws instead of reporting.
Entry *insertEntry(Document &document, Relationship relationship, Entry *relative);

// Runs what adds entries to a document's outline and answers what that answers. The user is told when the outline has
// no room for them, until it has, and what is typed next is kept out of the panes.
Entry *withRoom(Document &document, const std::function<Entry *()> &add);

// Makes a just-inserted entry ready for the user: selected, labelled "New Entry", its label open for editing.
void NodeInitialise(Document &document, Entry *entry);

// The root of the selected entry, or null when nothing is selected.
Entry *NodeGetRoot(const Document &document);

// The next sibling, or for a last sibling that of the nearest ancestor with one; else the first child. Null for none.
Entry *entryBelow(const Entry *entry);
// Selects the entry below the selected one.
void NodeGoDown(Document &document);

// Selects an entry: only marks it while the busy flag is set, else as NodeSelectFull. Nothing for no entry.
void NodeSelect(Document &document, Entry *entry);
// Selects an entry, and shows its row and its text, unless the text pane shows that already.
void NodeSelectFull(Document &document, Entry *entry);

void NodeTagOn(Document &document, Entry *entry);
void NodeTagOff(Document &document, Entry *entry);
void NodeTagToggle(Document &document, Entry *entry);
bool NodeTagged(const Entry *entry);
// Whether any entry of the active document is tagged.
bool NodesTaggedExist();

// Copies a subtree, which may be another document's, to a place and selects the copy, which is untagged. Without a
// relative only the root of an empty tree can be made (relationship first). Null when nothing was copied.
Entry *NodeDuplicate(Document &document, const EntryTree &sourceTree, Entry *source, Entry *relative,
                     Relationship relationship);

// Pastes a copy of the source's subtree after the selected entry; before the root's first child when the root is
// selected. With `removeSource` the source is removed and the reference emptied; a selection that another document
// loses by that falls to the source's survivor.
void NodePaste(Document &document, EntryRef &source, bool removeSource);

// Where a paste puts a copy of an entry, seen from the selected entry.
struct PastePlace {
    Entry *relative = nullptr;
    Relationship relationship = Relationship::tvwFirst;
};

// To be called for a copy that was inserted: one with open entries in it opens a part of the outline by hand, so that
// no level that the outline was expanded to applies any more.
void noteExpandedCopy(Document &document, const Entry &copy);

PastePlace placeForPaste(const Document &document, const Entry *source);
// The entry that a copy becomes a child of there; null in an empty outline.
const Entry *parentOfPaste(const PastePlace &place);

// The open document of an outline; null for none.
Document *documentOf(const EntryTree &tree);

// Where the selection goes when an entry is removed: to the previous sibling, else the next one, else the parent.
Entry *survivorOf(const Entry &entry);

// Shows that an outline lost its last entry: an empty text pane, and no label in the status bar.
void showNothing(Document &document);

// Removes an entry with its subtree; a parent left without children is collapsed.
void NodeDelete(Document &document, Entry *entry);

void NodeExpandAll(Document &document, Entry *entry);
void NodeCollapseAll(Document &document, Entry *entry);
// Opens the subtree down to a level (1 is the root's) and closes it there; deeper states stay.
void NodeExpandToLevel(Document &document, Entry *entry, int level);
// Sets the sorted state of an entry and every descendant; True sorts their children by label.
void NodeSortAll(Document &document, Entry *entry, bool sorted);
// Applies a font description to the pane's own font and to the whole text of an entry and every descendant; the pane
// must show its entry's text anew then. A text that is not to be had whole stays as it is.
void NodeSetFontAll(Document &document, Entry *entry, const clsFont &font);

// Bracket a structural change: the panes are hidden from the first start to the last end, and the split is fitted then.
void NodeActionStart();
void NodeActionEnd();

// The pair of them, so that an error cannot leave the panes hidden.
class ActionScope
{
public:
    ActionScope() { NodeActionStart(); }

    ~ActionScope() { NodeActionEnd(); }

    ActionScope(const ActionScope &) = delete;
    ActionScope &operator=(const ActionScope &) = delete;
};

// Shows an entry's text in the document's pane; an empty pane for no entry.
void NodeTextGet(Document &document, Entry *entry);
// Stores the pane's text into an entry, or into the one that it still shows when it could not be filled anew. Does
// nothing while NodeTextGet fills the pane.
void NodeTextPut(Document &document, Entry *entry);
// The same for the active document and its selected entry.
void NodeTextGetSelected();
void NodeTextPutSelected();
// Gives up a text that is not shown whole: the entry in the pane has no text then, and the pane is unlocked.
void NodeTextDiscard(Document &document);

} // namespace modNodes
