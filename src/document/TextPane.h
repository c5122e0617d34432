// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/EntryDocument.h"
#include "model/TextSelection.h"

#include <QFont>
#include <QRect>

#include <memory>

// The rich-text pane of a document window as the core sees it: the text that it shows with what is selected there, and
// what can be had only of a pane.
class TextPane : public TextSelection
{
public:
    // Shows a text, with the caret at its start. Counts as no change of it, and leaves none that could be undone. The
    // pane keeps the text that it shows.
    virtual void showText(std::shared_ptr<EntryDocument> text) = 0;
    virtual const std::shared_ptr<EntryDocument> &shown() const = 0;

    // The same of a text that is no entry's: RTF, or bytes that are shown as plain text (see AnsiCodec).
    void setTextRTF(const QByteArray &rtf) { showText(std::make_shared<EntryDocument>(Inflated{rtf}, Font())); }

    // These put what comes from elsewhere in the place of the selection. What is too much to be laid out with its
    // formatting comes as words alone, if the user agrees; what is too much even so is refused and the user is told.
    // False when nothing was put in.
    virtual bool pasteRTF(const QByteArray &rtf) = 0;
    virtual bool pasteText(const QString &text) = 0;
    // The picture's file.
    virtual bool pastePicture(const QByteArray &file) = 0;

    // Where on the screen the selected text is to be seen; empty when there is none.
    virtual QRect SelectionOnScreen() const = 0;

    // The pane's base font: that of text which names none.
    virtual QFont Font() const = 0;
    virtual void setFont(const QFont &font) = 0;
    // The same as a change of the text, which can be undone.
    virtual void changeFont(const QFont &font) = 0;
    // Locked text can be read and copied, not changed by the user.
    virtual bool Locked() const = 0;
    virtual void setLocked(bool locked) = 0;
    // A hidden pane draws nothing of what happens to it; it keeps its place and the keyboard focus.
    virtual bool PaneVisible() const = 0;
    virtual void setPaneVisible(bool visible) = 0;
    virtual void setFocus() = 0;
};

// Keeps a pane from drawing while it lives.
class HiddenText
{
public:
    explicit HiddenText(TextPane &pane)
        : m_pane(pane)
        , m_wasVisible(pane.PaneVisible())
    {
        m_pane.setPaneVisible(false);
    }

    ~HiddenText() { m_pane.setPaneVisible(m_wasVisible); }

    HiddenText(const HiddenText &) = delete;
    HiddenText &operator=(const HiddenText &) = delete;

private:
    TextPane &m_pane;
    bool m_wasVisible;
};
