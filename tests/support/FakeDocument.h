// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"
#include "document/DocumentWindow.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/TextPane.h"
#include "model/EntryText.h"
#include "rtf/CharChange.h"

#include <functional>

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

    void ScrollTo(const Entry *entry) override { scrolledTo = entry; }

    QRect SelectedRow() const override { return selectedRow; }

    void ClearDropHighlight() override { ++timesDropHighlightCleared; }

    void setFocus() override { ++timesFocused; }

    bool visible = true;
    QFont font;
    LabelEditMode labelEdit = LabelEditMode::tvwManual;
    std::vector<LabelEditMode> labelEditHistory;
    bool editingLabel = false;
    const Entry *scrolledTo = nullptr;
    QRect selectedRow;
    int timesHidden = 0;
    int timesDropHighlightCleared = 0;
    int timesFocused = 0;
};

// Holds the bytes that it was given; its formatting is one value for the whole text.
class FakeTextPane final : public TextPane
{
public:
    QByteArray TextRTF() const override
    {
        if (onTextRead)
            onTextRead();
        return rtf;
    }

    void setTextRTF(const QByteArray &newRtf) override
    {
        rtf = newRtf;
        start = length = 0;
        ++timesTextSet;
        if (onTextSet)
            onTextSet();
    }

    QString Text() const override { return QString::fromLatin1(rtf); }

    QByteArray SelRTF() const override { return rtf.mid(start, length); }

    void setSelRTF(const QByteArray &newRtf) override
    {
        rtf.replace(start, length, newRtf);
        start += static_cast<int>(newRtf.size());
        length = 0;
    }

    QString SelText() const override { return Text().mid(start, length); }

    void setSelText(const QString &text) override { setSelRTF(text.toLatin1()); }

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

    void mapSelText(const std::function<QString(const QString &)> &map) override { setSelText(map(SelText())); }

    void changeSelection(const rtf::CharChange &change) override
    {
        const QTextCharFormat format = change.appliedTo({});
        const auto take = [&format](auto &value, int property, const auto &changed) {
            if (format.hasProperty(property))
                value = changed;
        };
        take(bold, QTextFormat::FontWeight, format.fontWeight() > QFont::Medium);
        take(italic, QTextFormat::FontItalic, format.fontItalic());
        take(underline, QTextFormat::TextUnderlineStyle, format.fontUnderline());
        take(strikeThru, QTextFormat::FontStrikeOut, format.fontStrikeOut());
        take(fontName, QTextFormat::FontFamilies, format.fontFamilies().toStringList().value(0));
        take(fontSize, QTextFormat::FontPointSize, format.fontPointSize());
        take(colour, QTextFormat::ForegroundBrush, format.foreground().color());
    }

    void changeText(const rtf::CharChange &change) override { changeSelection(change); }

    void replaceText(const std::vector<TextReplacement> &replacements) override
    {
        for (auto each = replacements.crbegin(); each != replacements.crend(); ++each)
            rtf.replace(each->start, each->length, each->text.toLatin1());
    }

    void beginEditGroup() override { ++editGroups; }

    void endEditGroup() override { ++editGroupsEnded; }

    void beginJoinedSteps() override {}

    void endJoinedSteps() override {}

    void clearText() override
    {
        rtf.clear();
        start = length = 0;
    }

    bool SelHoldsCells() const override { return false; }

    QString FindableText() const override { return Text(); }

    QRect SelectionOnScreen() const override { return {}; }

    int SelStart() const override { return start; }

    void setSelStart(int newStart) override
    {
        start = newStart;
        length = 0;
    }

    int SelLength() const override { return length; }

    void setSelLength(int newLength) override { length = newLength; }

    std::optional<bool> SelBold() const override { return bold; }

    void setSelBold(bool on) override { bold = on; }

    std::optional<bool> SelItalic() const override { return italic; }

    void setSelItalic(bool on) override { italic = on; }

    std::optional<bool> SelUnderline() const override { return underline; }

    void setSelUnderline(bool on) override { underline = on; }

    std::optional<bool> SelStrikeThru() const override { return strikeThru; }

    void setSelStrikeThru(bool on) override { strikeThru = on; }

    std::optional<QString> SelFontName() const override { return fontName; }

    void setSelFontName(const QString &name) override { fontName = name; }

    std::optional<double> SelFontSize() const override { return fontSize; }

    void setSelFontSize(double points) override
    {
        if (!keepsFontSize)
            fontSize = points;
    }

    std::optional<QColor> SelColor() const override { return colour; }

    void setSelColor(const QColor &newColour) override { colour = newColour; }

    std::optional<bool> SelBullet() const override { return bullet; }

    void setSelBullet(bool on) override { bullet = on; }

    std::optional<int> SelIndent() const override { return indent; }

    void setSelIndent(int twips) override { indent = twips; }

    std::optional<Alignment> SelAlignment() const override { return alignment; }

    void setSelAlignment(Alignment newAlignment) override { alignment = newAlignment; }

    QFont Font() const override { return font; }

    void setFont(const QFont &newFont) override { font = newFont; }

    void changeFont(const QFont &newFont) override { font = newFont; }

    bool Locked() const override { return locked; }

    void setLocked(bool on) override { locked = on; }

    bool PaneVisible() const override { return visible; }

    void setPaneVisible(bool on) override { visible = on; }

    void setFocus() override { ++timesFocused; }

    int Find(const QString &expression, int from, int end, int) override
    {
        if (onFind)
            onFind();
        const qsizetype found = Text().left(end < 0 ? rtf.size() : end).indexOf(expression, from);
        return static_cast<int>(found);
    }

    QByteArray rtf;
    int start = 0;
    int length = 0;
    std::optional<bool> bold = false;
    std::optional<bool> italic = false;
    std::optional<bool> underline = false;
    std::optional<bool> strikeThru = false;
    std::optional<bool> bullet = false;
    std::optional<QString> fontName = QString();
    std::optional<double> fontSize = 10;
    // Whether every size that is set is turned down.
    bool keepsFontSize = false;
    std::optional<QColor> colour = QColor();
    std::optional<int> indent = 0;
    std::optional<Alignment> alignment = Left;
    QFont font;
    bool locked = false;
    bool visible = true;
    int timesTextSet = 0;
    int editGroups = 0;
    int editGroupsEnded = 0;
    int timesFocused = 0;
    // Runs after setTextRTF, as a change notification of a real pane would.
    std::function<void()> onTextSet;
    // Run before TextRTF and before Find, which end in what they throw.
    std::function<void()> onTextRead;
    std::function<void()> onFind;
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

    void holdKeys() override { ++timesKeysHeld; }

    QString text;
    int timesActivated = 0;
    int timesSplitFitted = 0;
    int timesNoticesChanged = 0;
    int timesKeysHeld = 0;
    std::function<void()> onActivate;
    // Closes the window; false when it stays.
    std::function<bool()> onClose;
};

struct FakeDocument {
    FakeOutlinePane outline;
    FakeTextPane text;
    FakeDocumentWindow window;
    Document document{outline, text, window};
};
