// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class Document;

// Going back and forth in a document's history, with its panes showing where that leads: the entry that was selected
// then, and its text. Each answers whether it got anywhere; what fails is reported and changes nothing.

bool undoStep(Document &document);
bool redoStep(Document &document);
// Until so many steps are done.
bool goToStep(Document &document, int position);
