// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/TextFind.h"
#include "util/Bracket.h"

#include <QByteArray>
#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

struct TextReplacement;

namespace rtf
{
class CharChange;
}

// The rich-text pane of a document window as the core sees it. Offsets count UTF-16 units of Text(), in which a
// paragraph break is the two characters CR LF and a line break within a paragraph one, so that Text().mid(SelStart(),
// SelLength()) == SelText() holds; but selected cells of a table are these cells alone in whatever is read from the
// selection or done to it, and SelStart and SelLength reach from the first to the last of them. A selection property is
// empty when the selection mixes values.
class TextPane
{
public:
    using enum TextFind::Option;

    enum Alignment { Left = 0, Right = 1, Centre = 2 };

    virtual ~TextPane() = default;

    // The whole text as an RTF document (pure ASCII). Assigning bytes that are no RTF shows them as plain text (see
    // AnsiCodec); assigning leaves no undo step and does not count as a change by the user.
    virtual QByteArray TextRTF() const = 0;
    virtual void setTextRTF(const QByteArray &rtf) = 0;
    virtual QString Text() const = 0;
    // The text as Find looks at it: a picture, which Text() has a blank for, is U+FFFC.
    virtual QString FindableText() const = 0;

    virtual QByteArray SelRTF() const = 0;
    virtual void setSelRTF(const QByteArray &rtf) = 0;
    virtual QString SelText() const = 0;
    virtual void setSelText(const QString &text) = 0;
    // These put what comes from elsewhere in the place of the selection. What is too much to be laid out with its
    // formatting comes as words alone, if the user agrees; what is too much even so is refused and the user is told.
    // False when nothing was put in.
    virtual bool pasteRTF(const QByteArray &rtf) = 0;
    virtual bool pasteText(const QString &text) = 0;
    // The picture's file.
    virtual bool pastePicture(const QByteArray &file) = 0;
    // Replaces the selected text, each stretch of one look by what `map` makes of it, in order, and leaves the caret
    // behind it. A stretch of line breaks is shown to `map` but stays.
    virtual void mapSelText(const std::function<QString(const QString &)> &map) = 0;
    // Changes the look of the selection as one step of undo, or at a caret that of what is typed next.
    virtual void changeSelection(const rtf::CharChange &change) = 0;
    // Changes the look of the whole text, an empty first paragraph's too, as one step of undo.
    virtual void changeText(const rtf::CharChange &change) = 0;
    // Makes replacements (see EntryText.h) as one step of undo.
    virtual void replaceText(const std::vector<TextReplacement> &replacements) = 0;
    // What is changed between these two is one step of undo. They nest; see EditGroup.
    virtual void beginEditGroup() = 0;
    virtual void endEditGroup() = 0;
    // What setSelText changes between these two is one step of undo, though each change shows at once; see JoinedSteps.
    virtual void beginJoinedSteps() = 0;
    virtual void endJoinedSteps() = 0;
    // Takes all text away, and all formatting of paragraphs; a step that can be undone.
    virtual void clearText() = 0;
    // Whether cells of a table are selected: a replacement empties them, and leaves the table as it is.
    virtual bool SelHoldsCells() const = 0;
    virtual int SelStart() const = 0;
    virtual void setSelStart(int start) = 0;
    virtual int SelLength() const = 0;
    virtual void setSelLength(int length) = 0;
    // Where on the screen the selected text is to be seen; empty when there is none.
    virtual QRect SelectionOnScreen() const = 0;

    virtual std::optional<bool> SelBold() const = 0;
    virtual void setSelBold(bool on) = 0;
    virtual std::optional<bool> SelItalic() const = 0;
    virtual void setSelItalic(bool on) = 0;
    virtual std::optional<bool> SelUnderline() const = 0;
    virtual void setSelUnderline(bool on) = 0;
    virtual std::optional<bool> SelStrikeThru() const = 0;
    virtual void setSelStrikeThru(bool on) = 0;
    virtual std::optional<QString> SelFontName() const = 0;
    virtual void setSelFontName(const QString &name) = 0;
    // In points.
    virtual std::optional<double> SelFontSize() const = 0;
    virtual void setSelFontSize(double points) = 0;
    // An invalid colour is the automatic one.
    virtual std::optional<QColor> SelColor() const = 0;
    virtual void setSelColor(const QColor &colour) = 0;
    virtual std::optional<bool> SelBullet() const = 0;
    virtual void setSelBullet(bool on) = 0;
    // In twips.
    virtual std::optional<int> SelIndent() const = 0;
    virtual void setSelIndent(int twips) = 0;
    virtual std::optional<Alignment> SelAlignment() const = 0;
    virtual void setSelAlignment(Alignment alignment) = 0;

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

    // The offset of the first match at or after `start` that ends by `end` (-1: the end of the text), or -1; selects
    // the match unless NoHighlight is among the options.
    virtual int Find(const QString &expression, int start, int end, int options) = 0;
};

// Makes what is changed in a pane while it lives one step of undo.
using EditGroup = Bracket<TextPane, &TextPane::beginEditGroup, &TextPane::endEditGroup>;

// Makes the replacements of a pane's selection while it lives one step of undo.
using JoinedSteps = Bracket<TextPane, &TextPane::beginJoinedSteps, &TextPane::endJoinedSteps>;

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
