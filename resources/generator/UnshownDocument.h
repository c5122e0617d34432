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
    QByteArray TextRTF() const override { return {}; }

    void setTextRTF(const QByteArray &) override {}

    QString Text() const override { return {}; }

    QByteArray SelRTF() const override { return {}; }

    void setSelRTF(const QByteArray &) override {}

    QString SelText() const override { return {}; }

    void setSelText(const QString &) override {}

    bool pasteRTF(const QByteArray &) override { return false; }

    bool pasteText(const QString &) override { return false; }

    bool pastePicture(const QByteArray &) override { return false; }

    void mapSelText(const std::function<QString(const QString &)> &) override {}

    void changeSelection(const rtf::CharChange &) override {}

    void changeText(const rtf::CharChange &) override {}

    void replaceText(const std::vector<TextReplacement> &) override {}

    void beginEditGroup() override {}

    void endEditGroup() override {}

    void beginJoinedSteps() override {}

    void endJoinedSteps() override {}

    bool SelHoldsCells() const override { return false; }

    QString FindableText() const override { return {}; }

    QRect SelectionOnScreen() const override { return {}; }

    void clearText() override {}

    int SelStart() const override { return 0; }

    void setSelStart(int) override {}

    int SelLength() const override { return 0; }

    void setSelLength(int) override {}

    std::optional<bool> SelBold() const override { return {}; }

    void setSelBold(bool) override {}

    std::optional<bool> SelItalic() const override { return {}; }

    void setSelItalic(bool) override {}

    std::optional<bool> SelUnderline() const override { return {}; }

    void setSelUnderline(bool) override {}

    std::optional<bool> SelStrikeThru() const override { return {}; }

    void setSelStrikeThru(bool) override {}

    std::optional<QString> SelFontName() const override { return {}; }

    void setSelFontName(const QString &) override {}

    std::optional<double> SelFontSize() const override { return {}; }

    void setSelFontSize(double) override {}

    std::optional<QColor> SelColor() const override { return {}; }

    void setSelColor(const QColor &) override {}

    std::optional<bool> SelBullet() const override { return {}; }

    void setSelBullet(bool) override {}

    std::optional<int> SelIndent() const override { return {}; }

    void setSelIndent(int) override {}

    std::optional<Alignment> SelAlignment() const override { return {}; }

    void setSelAlignment(Alignment) override {}

    QFont Font() const override { return {}; }

    void setFont(const QFont &) override {}

    void changeFont(const QFont &) override {}

    bool Locked() const override { return true; }

    void setLocked(bool) override {}

    bool PaneVisible() const override { return false; }

    void setPaneVisible(bool) override {}

    void setFocus() override {}

    int Find(const QString &, int, int, int) override { return -1; }
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
