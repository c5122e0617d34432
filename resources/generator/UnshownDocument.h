// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"
#include "document/DocumentWindow.h"
#include "document/OutlinePane.h"
#include "document/TextPane.h"

// Panes and a window that show nothing, for documents that only exist to be written to a file.

class UnshownOutlinePane final : public OutlinePane
{
public:
    bool PaneVisible() const override { return false; }

    void setPaneVisible(bool) override {}

    QFont Font() const override { return {}; }

    void setFont(const QFont &) override {}

    LabelEditMode LabelEdit() const override { return LabelEditMode::tvwManual; }

    void setLabelEdit(LabelEditMode) override {}

    void StartLabelEdit() override {}

    void EndLabelEdit() override {}

    void ScrollTo(const Entry *) override {}

    QRect SelectedRow() const override { return {}; }

    void ClearDropHighlight() override {}

    void setFocus() override {}
};

class UnshownTextPane final : public TextPane
{
public:
    QTextCursor caret() const override { return QTextCursor(const_cast<QTextDocument *>(&m_document)); }

    void setCaret(const QTextCursor &) override {}

    QByteArray TextRTF() const override { return {}; }

    void setTextRTF(const QByteArray &) override {}

    bool pasteRTF(const QByteArray &) override { return false; }

    bool pasteText(const QString &) override { return false; }

    bool pastePicture(const QByteArray &) override { return false; }

    QRect SelectionOnScreen() const override { return {}; }

    QFont Font() const override { return {}; }

    void setFont(const QFont &) override {}

    void changeFont(const QFont &) override {}

    bool Locked() const override { return true; }

    void setLocked(bool) override {}

    bool PaneVisible() const override { return false; }

    void setPaneVisible(bool) override {}

    void setFocus() override {}

private:
    QTextDocument m_document;
};

class UnshownWindow final : public DocumentWindow
{
public:
    QString caption() const override { return {}; }

    void setCaption(const QString &) override {}

    void activate() override {}

    void bringToFront() override {}

    bool close() override { return true; }

    void autoFitSplit() override {}

    void noticesChanged() override {}

    void holdKeys() override {}
};

class UnshownDocument
{
    UnshownOutlinePane m_outlinePane;
    UnshownTextPane m_textPane;
    UnshownWindow m_window;

public:
    Document document{m_outlinePane, m_textPane, m_window};
};
