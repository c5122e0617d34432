// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/TextPane.h"

#include <functional>
#include <memory>

// A document whose panes and window are plain memory: what the core sets can be read back, and what it asks for is
// counted.

class FakeOutlinePane final : public OutlinePane
{
public:
    bool PaneVisible() const override { return visible; }

    void setPaneVisible(bool on) override
    {
        visible = on;
        if (!on)
            ++timesHidden;
    }

    QFont Font() const override { return font; }

    void setFont(const QFont &newFont) override { font = newFont; }

    LabelEditMode LabelEdit() const override { return labelEdit; }

    void setLabelEdit(LabelEditMode mode) override
    {
        labelEdit = mode;
        labelEditHistory.push_back(mode);
    }

    void StartLabelEdit() override { editingLabel = true; }

    void EndLabelEdit() override { editingLabel = false; }

    const Entry *EntryToBeRenamed() const override { return toBeRenamed; }

    void ScrollTo(const Entry *entry) override { scrolledTo = entry; }

    QRect SelectedRow() const override { return selectedRow; }

    void ClearDropHighlight() override { ++timesDropHighlightCleared; }

    void setFocus() override { ++timesFocused; }

    bool visible = true;
    QFont font;
    LabelEditMode labelEdit = LabelEditMode::tvwManual;
    std::vector<LabelEditMode> labelEditHistory;
    bool editingLabel = false;
    const Entry *toBeRenamed = nullptr;
    const Entry *scrolledTo = nullptr;
    QRect selectedRow;
    int timesHidden = 0;
    int timesDropHighlightCleared = 0;
    int timesFocused = 0;
};

class FakeTextPane final : public TextPane
{
public:
    FakeTextPane() { setTextRTF({}); }

    QTextCursor caret() const override { return m_caret; }

    void setCaret(const QTextCursor &caret) override { m_caret = caret; }

    void showText(std::shared_ptr<EntryDocument> text) override
    {
        m_shown = std::move(text);
        m_caret = QTextCursor(&m_shown->document());
        ++timesTextShown;
        if (onTextShown)
            onTextShown();
    }

    const std::shared_ptr<EntryDocument> &shown() const override { return m_shown; }

    // Puts a text in the place of what is shown, as a user would.
    void type(const QString &text)
    {
        m_caret.select(QTextCursor::Document);
        setSelText(text);
    }

    bool pasteRTF(const QByteArray &newRtf) override
    {
        setSelRTF(newRtf);
        return true;
    }

    bool pasteText(const QString &text) override
    {
        setSelText(text);
        return true;
    }

    bool pastePicture(const QByteArray &) override { return false; }

    QRect SelectionOnScreen() const override { return {}; }

    QFont Font() const override { return font; }

    void setFont(const QFont &newFont) override { font = newFont; }

    void changeFont(const QFont &newFont) override
    {
        font = newFont;
        m_shown->changeFont(newFont);
    }

    bool Locked() const override { return locked; }

    void setLocked(bool on) override { locked = on; }

    bool PaneVisible() const override { return visible; }

    void setPaneVisible(bool on) override { visible = on; }

    void setFocus() override { ++timesFocused; }

    QFont font;
    bool locked = false;
    bool visible = true;
    int timesTextShown = 0;
    int timesFocused = 0;
    // Runs once another text is shown.
    std::function<void()> onTextShown;

private:
    std::shared_ptr<EntryDocument> m_shown;
    QTextCursor m_caret;
};

class FakeDocumentWindow final : public DocumentWindow
{
public:
    QString caption() const override { return text; }

    void setCaption(const QString &newCaption) override { text = newCaption; }

    void activate() override
    {
        ++timesActivated;
        if (onActivate)
            onActivate();
    }

    void bringToFront() override { activate(); }

    bool close() override { return onClose ? onClose() : false; }

    void autoFitSplit() override { ++timesSplitFitted; }

    void noticesChanged() override { ++timesNoticesChanged; }

    void fileTaken() override { ++timesFileTaken; }

    void holdKeys() override { ++timesKeysHeld; }

    QString text;
    int timesActivated = 0;
    int timesSplitFitted = 0;
    int timesNoticesChanged = 0;
    int timesFileTaken = 0;
    int timesKeysHeld = 0;
    std::function<void()> onActivate;
    // Closes the window; false when it stays.
    std::function<bool()> onClose;
};

struct FakeDocument {
    explicit FakeDocument(std::unique_ptr<Outline> read = nullptr)
        : document(std::move(read))
        , view(document, outline, text, window)
    {
    }

    FakeOutlinePane outline;
    FakeTextPane text;
    FakeDocumentWindow window;
    Document document;
    DocumentView view;
};
