// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class Document;

// What others do to the file of an open document.

// To be called when something may have happened to the file: tells of what did, and no longer tells of what is as it
// was. Of a file that is gone the document is the last copy, and counts as changed.
void lookForOutsideChange(Document &document);

// Whether the document's own file may be saved over: asks when it is not what the document read or wrote.
bool mayReplaceFile(Document &document);

// What a user can decide about a file that another has changed.

// Reads the file again, as one step of the history; the document is then what the file is. False when it has changes of
// its own, or the file cannot be read whole: then nothing has changed.
bool takeTheirs(Document &document);
// The next save replaces what was told of without another question.
void keepMine(Document &document);
// Shows the file as it is in another window, as a document without a file.
void openTheirsBeside(const Document &document);
