// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/RichTextBox.h"

#include "model/EntryText.h"
#include "model/SealedDocument.h"
#include "platform/AltCharacter.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"
#include "rtf/SelectedStretches.h"
#include "rtf/VisibleText.h"
#include "util/AnsiCodec.h"

#include <QDragEnterEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A program's text with its CR LF, CR and LF as the document's own breaks; a lone LF stays in its paragraph.
QString withDocumentBreaks(QString text)
{
    return rtf::visibleText(std::move(text))
        .replace("\r\n"_L1, "\r"_L1)
        .replace(u'\r', QChar::ParagraphSeparator)
        .replace(u'\n', QChar::LineSeparator);
}

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

bool isRedoKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Y && event.modifiers() == Qt::ControlModifier;
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
    showDocument(freshDocument());
}

RichTextBox::~RichTextBox() = default;

QByteArray RichTextBox::TextRTF() const
{
    return rtf::write(*document());
}

QTextDocument *RichTextBox::freshDocument()
{
    auto *fresh = new SealedDocument(this);
    fresh->setDefaultFont(m_font);
    return fresh;
}

void RichTextBox::setTextRTF(const QByteArray &rtf)
{
    // Built before it is shown: no layout runs meanwhile, and its undo history begins behind the text.
    QTextDocument *fresh = freshDocument();
    fresh->setUndoRedoEnabled(false);
    readEntryText(rtf, *fresh);
    fresh->setUndoRedoEnabled(true);
    showDocument(fresh);
}

void RichTextBox::showDocument(QTextDocument *fresh)
{
    QTextDocument *old = document();
    const bool own = old->parent() == this;
    m_loading = true;
    m_fonts = {m_font};
    setExtraSelections({});
    m_coloured.reset();
    setDocument(fresh);
    // The control keeps the format at the old caret for what is typed next; the new text has its own.
    setTextCursor(QTextCursor(fresh));
    if (own)
        delete old;
    m_loading = false;
    m_textKnown = false;
    if (m_stepsBefore)
        m_stepsBefore = 0;
    connect(fresh, &QTextDocument::contentsChanged, this, &RichTextBox::noteChange);
    m_noted.reset();
    noteSelection();
}

void RichTextBox::noteChange()
{
    m_textKnown = false;
    takeFont();
    if (!m_loading)
        Q_EMIT changed();
    noteSelection();
}

// One step of the caret or one change of format is announced once, though the editor reports it in several ways.
void RichTextBox::noteSelection()
{
    if (m_loading)
        return;
    const QTextCursor cursor = textCursor();
    const Noted now = {cursor.anchor(), cursor.position(), cursor.charFormat(), cursor.blockFormat()};
    if (m_noted && *m_noted == now)
        return;
    m_noted = now;
    Q_EMIT selectionMoved();
}

// Takes the selection away and leaves the cursor where what replaces it goes: of cells, the first one.
void RichTextBox::removeSelection(QTextCursor &cursor)
{
    std::optional<int> firstCell;
    if (cursor.hasComplexSelection())
        firstCell = rtf::selectedStretches(cursor).front().from;
    cursor.removeSelectedText();
    if (firstCell)
        cursor.setPosition(*firstCell);
}

// A text from elsewhere, in which every kind of line break ends a paragraph.
QString RichTextBox::withParagraphs(QString text)
{
    return withDocumentBreaks(text.replace("\r\n"_L1, "\n"_L1).replace(u'\n', u'\r'));
}

QByteArray RichTextBox::SelRTF() const
{
    return rtf::write(textCursor());
}

void RichTextBox::setSelRTF(const QByteArray &rtf)
{
    if (!rtf::isRtf(rtf)) {
        insertPlain(withParagraphs(AnsiCodec::toText(rtf)));
        return;
    }
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    removeSelection(cursor);
    rtf::insert(rtf, cursor);
    cursor.endEditBlock();
    setTextCursor(cursor);
}

QString RichTextBox::SelText() const
{
    return rtf::plainText(textCursor());
}

void RichTextBox::setSelText(const QString &text)
{
    insertPlain(withDocumentBreaks(text));
}

void RichTextBox::insertPlain(const QString &text)
{
    QTextCursor cursor = textCursor();
    // Nothing in the place of nothing is no change.
    if (text.isEmpty() && !cursor.hasSelection())
        return;
    QTextCharFormat format = currentCharFormat();
    if (cursor.hasSelection()) {
        // The new text looks like the beginning of what it replaces.
        const rtf::SelectedStretch replaced = rtf::selectedStretches(cursor).front();
        QTextCursor first(document());
        first.setPosition(std::min(replaced.from + 1, replaced.to));
        format = first.charFormat();
    }
    format.clearProperty(QTextFormat::ObjectType);
    if (m_stepsBefore && document()->availableUndoSteps() > *m_stepsBefore)
        cursor.joinPreviousEditBlock();
    else
        cursor.beginEditBlock();
    removeSelection(cursor);
    cursor.insertText(text, format);
    cursor.endEditBlock();
    setTextCursor(cursor);
}

void RichTextBox::mapSelText(const std::function<QString(const QString &)> &map)
{
    struct Piece {
        int position;
        int length;
        QString text;
        QTextCharFormat format;
    };

    QTextCursor cursor = textCursor();
    std::vector<Piece> pieces;
    const std::vector<rtf::SelectedStretch> selected = rtf::selectedStretches(cursor);
    bool isFirst = true;
    for (const auto [from, to] : selected) {
        for (QTextBlock block = document()->findBlock(from); block.isValid() && block.position() <= to;
             block = block.next()) {
            if (!isFirst)
                map(u"\r\n"_s);
            isFirst = false;
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextFragment fragment = it.fragment();
                const int begin = std::max(from, fragment.position());
                const int last = std::min(to, fragment.position() + fragment.length());
                if (begin >= last)
                    continue;
                const QString old = fragment.text().mid(begin - fragment.position(), last - begin);
                const QString fresh = map(old);
                if (fresh != old && !fragment.charFormat().isImageFormat())
                    pieces.push_back({begin, last - begin, fresh, fragment.charFormat()});
            }
        }
    }
    // From the end on, so that the places of those before stay right.
    int grown = 0;
    QTextCursor editor(document());
    editor.beginEditBlock();
    for (auto piece = pieces.crbegin(); piece != pieces.crend(); ++piece) {
        editor.setPosition(piece->position);
        editor.setPosition(piece->position + piece->length, QTextCursor::KeepAnchor);
        editor.insertText(piece->text, piece->format);
        grown += static_cast<int>(piece->text.size()) - piece->length;
    }
    editor.endEditBlock();
    if (!selected.empty())
        cursor.setPosition(selected.back().to + grown);
    setTextCursor(cursor);
}

void RichTextBox::changeText(const rtf::CharChange &change)
{
    ::changeText(*document(), change);
}

void RichTextBox::replaceText(const std::vector<TextReplacement> &replacements)
{
    ::replaceText(*document(), replacements);
}

void RichTextBox::beginEditGroup()
{
    ++m_editGroups;
    m_textKnown = false;
    QTextCursor(document()).beginEditBlock();
}

void RichTextBox::endEditGroup()
{
    QTextCursor(document()).endEditBlock();
    --m_editGroups;
}

void RichTextBox::beginJoinedSteps()
{
    m_stepsBefore = document()->availableUndoSteps();
}

void RichTextBox::endJoinedSteps()
{
    m_stepsBefore.reset();
}

void RichTextBox::clearText()
{
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.setBlockCharFormat(QTextCharFormat());
    cursor.endEditBlock();
    setTextCursor(cursor);
    setCurrentCharFormat(QTextCharFormat());
}

bool RichTextBox::SelHoldsCells() const
{
    return textCursor().hasComplexSelection();
}

int RichTextBox::SelStart() const
{
    const std::vector<rtf::SelectedStretch> selected = rtf::selectedStretches(textCursor());
    return rtf::textOffset(*document(), selected.empty() ? textCursor().position() : selected.front().from);
}

void RichTextBox::setSelStart(int start)
{
    QTextCursor cursor = textCursor();
    cursor.setPosition(rtf::documentPosition(*document(), std::max(start, 0)));
    setTextCursor(cursor);
}

int RichTextBox::SelLength() const
{
    const std::vector<rtf::SelectedStretch> selected = rtf::selectedStretches(textCursor());
    return selected.empty() ? 0 : rtf::textOffset(*document(), selected.back().to) - SelStart();
}

void RichTextBox::setSelLength(int length)
{
    const qint64 end = qint64(SelStart()) + std::max(length, 0);
    QTextCursor cursor = textCursor();
    cursor.setPosition(cursor.selectionStart());
    cursor.setPosition(
        rtf::documentPosition(*document(), static_cast<int>(std::min<qint64>(end, std::numeric_limits<int>::max()))),
        QTextCursor::KeepAnchor);
    setTextCursor(cursor);
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
        if (isForeignKey(key) || isRedoKey(key)) {
            event->setAccepted(isRedoKey(key) && !Locked());
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
    // Alt with a letter is a command that somebody else knows, or nothing; the editor would type the letter.
    if (isAltCharacter(*event) || isForeignKey(*event))
        event->ignore();
    else if (isRedoKey(*event) && !Locked())
        redo();
    else if (const QString typed = typedText(*event); !typed.isEmpty() && SelHoldsCells() && !Locked())
        // The editor would type it where the selection ends.
        insertPlain(typed);
    else
        QTextEdit::keyPressEvent(event);
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
