// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class Document;
class DocumentWindow;
class OutlinePane;
class TextPane;

// What shows a document: its panes and its window. It is attached to the document while it lives, which the document
// must outlive, and which needs no view for anything else than being seen.
class DocumentView final : public QObject
{
    Q_OBJECT

public:
    DocumentView(Document &document, OutlinePane &outlinePane, TextPane &textPane, DocumentWindow &documentWindow);
    ~DocumentView() override;
    DocumentView(const DocumentView &) = delete;
    DocumentView &operator=(const DocumentView &) = delete;

    // A hidden pane draws nothing of what happens to it.
    void setPanesVisible(bool visible);

    // Which of the panes had the keyboard last; neither before one had it.
    bool m_bOutlineHasFocus() const { return m_focus == Focus::Outline; }

    bool m_bTextHasFocus() const { return m_focus == Focus::Text; }

    // To be called by whoever sees that a pane gets the keyboard.
    void outlineGotFocus() { setFocus(Focus::Outline); }

    void textGotFocus() { setFocus(Focus::Text); }

    OutlinePane &trvOutline;
    TextPane &txtRTF;
    DocumentWindow &window;

Q_SIGNALS:
    // Another pane has the keyboard.
    void focusChanged();

private:
    enum class Focus { Neither, Outline, Text };

    void setFocus(Focus focus);

    Document &m_document;
    Focus m_focus = Focus::Neither;
};
