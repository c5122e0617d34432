// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/RichTextBox.h"

#include "document/TextDeed.h"
#include "model/LayoutStrain.h"
#include "platform/AltCharacter.h"
#include "platform/ScrollBarAhead.h"

#include <QDragEnterEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Characters of a paragraph that is looked through at each step of the caret.
constexpr int mostLookedThrough = 20'000;

// Keys of the desktop's text fields that would surprise here: they delete or jump by single letters that are, or may
// become, commands of the menus.
bool isForeignKey(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_D:
    case Qt::Key_E:
    case Qt::Key_K:
    case Qt::Key_U:
        return event.modifiers() == Qt::ControlModifier;
    default:
        return false;
    }
}

bool isUndoKey(const QKeyEvent &event)
{
    return event.matches(QKeySequence::Undo) || (event.key() == Qt::Key_Z && event.modifiers() == Qt::ControlModifier);
}

bool isRedoKey(const QKeyEvent &event)
{
    return event.matches(QKeySequence::Redo) || (event.key() == Qt::Key_Y && event.modifiers() == Qt::ControlModifier);
}

// What a key does to selected text that is no typing.
QLatin1StringView deedOf(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Cut))
        return "cutting from"_L1;
    const bool isDeletion = event.key() == Qt::Key_Delete || event.key() == Qt::Key_Backspace;
    return isDeletion ? "deletion in"_L1 : QLatin1StringView();
}

// The text that a key types; empty for one that types none.
QString typedText(const QKeyEvent &event)
{
    if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        if (event.modifiers().testFlag(Qt::ControlModifier))
            return {};
        return QString(event.modifiers().testFlag(Qt::ShiftModifier) ? QChar::LineSeparator
                                                                     : QChar::ParagraphSeparator);
    }
    const QString text = event.text();
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (text.isEmpty() || modifiers == Qt::ControlModifier)
        return {};
    const bool isText = text[0].isPrint() || text[0].isSurrogate() || text[0].category() == QChar::Other_Format ||
                        text[0].category() == QChar::Other_PrivateUse;
    return isText ? text : QString();
}

} // namespace

RichTextBox::RichTextBox(QWidget *parent)
    : QTextEdit(parent)
    , m_font(font())
{
    setObjectName("txtRTF"_L1);
    setAccessibleName(u"Entry text"_s);
    setTabChangesFocus(true);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QTextEdit::cursorPositionChanged, this, &RichTextBox::noteSelection);
    connect(this, &QTextEdit::selectionChanged, this, &RichTextBox::noteSelection);
    connect(this, &QTextEdit::currentCharFormatChanged, this, &RichTextBox::noteSelection);
    setTextRTF({});
}

// The editor is not left with a text that goes before it.
RichTextBox::~RichTextBox()
{
    m_loading = true;
    setDocument(nullptr);
}

QTextCursor RichTextBox::caret() const
{
    return textCursor();
}

// A format to type in is no move of the caret, which would bring it into sight.
void RichTextBox::setCaret(const QTextCursor &caret)
{
    const QTextCursor old = textCursor();
    const bool isOldPlace = caret.position() == old.position() && caret.anchor() == old.anchor();
    if (isOldPlace && caret.charFormat() != old.charFormat())
        setCurrentCharFormat(caret.charFormat());
    else
        setTextCursor(caret);
}

QRect RichTextBox::SelectionOnScreen() const
{
    if (!textCursor().hasSelection())
        return {};
    QTextCursor start = textCursor();
    start.setPosition(start.selectionStart());
    const QRect shown = cursorRect(start).united(cursorRect()) & viewport()->rect();
    return shown.isEmpty() ? QRect() : QRect(viewport()->mapToGlobal(shown.topLeft()), shown.size());
}

void RichTextBox::showText(std::shared_ptr<EntryDocument> text)
{
    if (text == m_shown) {
        setTextCursor(QTextCursor(document()));
        return;
    }
    m_loading = true;
    if (m_shown) {
        m_shown->place = {textCursor().position(), verticalScrollBar()->value()};
        m_shown->document().disconnect(this);
    }
    text->setFont(m_font);
    setExtraSelections({});
    m_coloured.reset();
    {
        const ScrollBarAhead bar(*this, text->document().characterCount(), text->document().blockCount());
        setDocument(&text->document());
    }
    // The one before may go now.
    m_shown = std::move(text);
    // The control keeps the format at the old caret for what is typed next; the new text has its own.
    setTextCursor(QTextCursor(document()));
    m_loading = false;
    connect(document(), &QTextDocument::contentsChanged, this, &RichTextBox::noteChange);
    m_noted.reset();
    noteSelection();
}

void RichTextBox::returnToPlace()
{
    const EntryDocument::Place place = m_shown->place;
    QTextCursor caret(document());
    caret.setPosition(std::min(place.caret, document()->characterCount() - 1));
    setTextCursor(caret);
    if (place.scrolled > 0)
        verticalScrollBar()->setValue(place.scrolled);
}

void RichTextBox::noteChange()
{
    takeFont();
    noteSelection();
}

// What lays out a paragraph, asks where the caret is in it and draws it works out its glyphs each time, unless they are
// kept. With pictures among them, each of which is unpacked anew, the paragraph that is typed into keeps them.
void RichTextBox::keepGlyphs()
{
    const QTextBlock paragraph = textCursor().block();
    // While the whole text is replaced, the caret may stand nowhere yet.
    if (!paragraph.isValid())
        return;
    if (const QTextBlock before = m_kept.block(); before != paragraph) {
        if (before.isValid())
            before.layout()->setCacheEnabled(false);
        m_kept = QTextCursor(paragraph);
        // What is typed at its beginning takes it along into another paragraph otherwise.
        m_kept.setKeepPositionOnInsert(true);
    }
    QTextLayout *layout = paragraph.layout();
    if (!layout->cacheEnabled() && paragraph.length() <= mostLookedThrough && hasEmoji(paragraph.text()))
        layout->setCacheEnabled(true);
}

// One step of the caret or one change of format is announced once, though the editor reports it in several ways.
void RichTextBox::noteSelection()
{
    if (m_loading)
        return;
    keepGlyphs();
    const QTextCursor cursor = textCursor();
    const Noted now = {cursor.anchor(), cursor.position(), cursor.charFormat(), cursor.blockFormat()};
    if (m_noted && *m_noted == now)
        return;
    m_noted = now;
    Q_EMIT selectionMoved();
}

QFont RichTextBox::Font() const
{
    return m_font;
}

void RichTextBox::setFont(const QFont &font)
{
    m_shown->setFont(font);
    takeFont();
}

void RichTextBox::changeFont(const QFont &font)
{
    m_shown->changeFont(font);
    takeFont();
}

// The base font is that of the text that is shown, which may have got another one by undoing.
void RichTextBox::takeFont()
{
    m_shown->takeFont();
    if (m_font == m_shown->font())
        return;
    m_font = m_shown->font();
    QTextEdit::setFont(m_font);
    document()->setDefaultFont(m_font);
}

bool RichTextBox::Locked() const
{
    return isReadOnly();
}

void RichTextBox::setLocked(bool locked)
{
    setTextInteractionFlags(locked ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                   : Qt::TextEditorInteraction);
    // The editor shows the caret of a locked text only once it gets the focus.
    if (hasFocus()) {
        QFocusEvent focus(QEvent::FocusIn, Qt::OtherFocusReason);
        QTextEdit::focusInEvent(&focus);
    }
}

bool RichTextBox::PaneVisible() const
{
    return m_paneVisible;
}

void RichTextBox::setPaneVisible(bool visible)
{
    m_paneVisible = visible;
    setUpdatesEnabled(visible);
}

void RichTextBox::setFocus()
{
    QTextEdit::setFocus(Qt::OtherFocusReason);
}

bool RichTextBox::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (isForeignKey(key) || isUndoKey(key) || isRedoKey(key)) {
            event->setAccepted(!isForeignKey(key) && !Locked());
            return true;
        }
    }
    return QTextEdit::event(event);
}

void RichTextBox::changeEvent(QEvent *event)
{
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        document()->setDefaultFont(m_font);
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    // What a key does to what is selected, which undoing it selects again.
    std::optional<TextDeed> deed;
    if (textCursor().hasSelection())
        deed.emplace(*this, deedOf(*event));
    // Alt with a letter is a command that somebody else knows, or nothing; the editor would type the letter.
    if (isAltCharacter(*event) || isForeignKey(*event))
        event->ignore();
    else if (isUndoKey(*event) || isRedoKey(*event))
        goBackOrForth(isUndoKey(*event));
    else if (const QString typed = typedText(*event); !typed.isEmpty() && SelHoldsCells() && !Locked())
        // The editor would type it where the selection ends.
        insertPlain(typed);
    else
        QTextEdit::keyPressEvent(event);
}

// What is dragged away from here is taken out at the end of the drag.
void RichTextBox::mouseMoveEvent(QMouseEvent *event)
{
    std::optional<TextDeed> deed;
    if (event->buttons().testFlag(Qt::LeftButton) && textCursor().hasSelection())
        deed.emplace(*this, "dragging of text from"_L1);
    QTextEdit::mouseMoveEvent(event);
}

// A text that is no entry's knows its own steps.
void RichTextBox::goBackOrForth(bool isBack)
{
    if (Locked())
        return;
    if (m_shown->entry() == EntryId::None)
        isBack ? undo() : redo();
    else if (isBack)
        Q_EMIT undoWanted();
    else
        Q_EMIT redoWanted();
}

void RichTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    if (Locked()) {
        event->ignore();
        return;
    }
    const bool typesText =
        !event->commitString().isEmpty() || !event->preeditString().isEmpty() || event->replacementLength() > 0;
    if (typesText && SelHoldsCells()) {
        // As with a key; what is still being composed follows in the first cell.
        insertPlain(event->commitString());
        event->setCommitString({});
    }
    QTextEdit::inputMethodEvent(event);
}

void RichTextBox::focusInEvent(QFocusEvent *event)
{
    QTextEdit::focusInEvent(event);
    Q_EMIT gotFocus();
}

void RichTextBox::wheelEvent(QWheelEvent *event)
{
    // With Ctrl the editor would change the base font of a locked text.
    if (event->modifiers() & Qt::ControlModifier)
        event->ignore();
    else
        QTextEdit::wheelEvent(event);
}

// Files and addresses are for the window behind, which opens them; what is refused here is never dropped here.
void RichTextBox::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->ignore();
    else
        QTextEdit::dragEnterEvent(event);
}
