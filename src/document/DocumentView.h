// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class Document;
class DocumentWindow;
class OutlinePane;
class TextPane;

// What shows a document: its panes and its window. It is attached to the document while it lives, which the document
// must outlive, and which needs no view for anything else than being seen.
class DocumentView
{
public:
    DocumentView(Document &document, OutlinePane &outlinePane, TextPane &textPane, DocumentWindow &documentWindow);
    ~DocumentView();
    DocumentView(const DocumentView &) = delete;
    DocumentView &operator=(const DocumentView &) = delete;

    // A hidden pane draws nothing of what happens to it.
    void setPanesVisible(bool visible);

    OutlinePane &trvOutline;
    TextPane &txtRTF;
    DocumentWindow &window;

private:
    Document &m_document;
};
